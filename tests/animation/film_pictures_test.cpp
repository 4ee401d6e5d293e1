#include "animation/film_pictures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "animation/cut_times.h"
#include "animation/stream_encoder.h"
#include "animation/stream_inspector.h"
#include "document/cut.h"
#include "imaging/indexed_image.h"
#include "platform/headless/headless.h"
#include "reference/reference.h"
#include "support/random_cut.h"
#include "support/test_streams.h"

namespace sorvel {
namespace {

using namespace teststreams;

// The greys of a picture, or those that the window shows.
using Greys = std::vector<uint8_t>;

Greys GreysOf(const FilmPictures& film) {
  return Greys(film.Pixels(), film.Pixels() + film.Width() * film.Height());
}

std::string Line(const std::vector<int32_t>& numbers) {
  std::string text;
  for (const int32_t number : numbers) text += (text.empty() ? "" : " ") + std::to_string(number);
  return text;
}

// The ticks of a film as its cuts count them.
int32_t CountedTicks(ByteStream* stream) {
  StreamInfo info;
  LoadReport report;
  EXPECT_TRUE(InspectStream(stream, &info, &report));
  EXPECT_STREQ(report.problem, "");
  int32_t ticks = 0;
  for (const StreamCutInfo& cut : info.cuts) {
    CutTimes times;
    for (const StreamFrameHead& frame : cut.frames) times.Add(frame);
    times.Close();
    ticks += times.Ticks();
    if (times.Ends()) break;
  }
  return ticks;
}

// Plays the stream in a window too, and expects the same pictures for as many ticks as the cuts count.
void ExpectLikeThePlayer(const Bytes& bytes) {
  Input played(bytes);
  Input drawn(bytes);
  const int32_t ticks = CountedTicks(&drawn.stream);
  AnimationWindow player;
  platform::WindowHandle window = platform::MakeCaptionWindow("", "", nullptr, &player);
  FilmPictures film;
  ASSERT_TRUE(film.Open(&drawn.stream));
  Greys before;
  for (int32_t tick = 0; tick < ticks; ++tick) {
    ASSERT_TRUE(film.Next()) << tick;
    if (tick == 0) {
      ASSERT_EQ(player.Play(&played.stream), 1);
    } else if (player.timerId != 0) {
      player.TimerTick();
    }
    if (player.timerId == 0) {
      platform::DeviceContext* context = platform::BeginDrawing(window);
      player.Paint(context);
      platform::EndDrawing(window, context);
    } else {
      ASSERT_EQ(film.Fps(), player.timerFps) << tick;
    }
    Greys shown;
    for (const platform::ColorEntry& color : window->pixels) shown.push_back(color.red);
    const Greys greys = GreysOf(film);
    ASSERT_EQ(greys, shown) << tick;
    const Rect& changed = film.Changed();
    if (tick == 0) {
      EXPECT_EQ(changed, (Rect{0, 0, film.Width(), film.Height()}));
    } else {
      Rect different;
      for (int32_t y = 0; y < film.Height(); ++y) {
        for (int32_t x = 0; x < film.Width(); ++x) {
          const size_t place = static_cast<size_t>(y * film.Width() + x);
          if (greys[place] != before[place]) UnionRect(&different, {x, y, 1, 1});
        }
      }
      ASSERT_EQ(changed, different) << tick;
    }
    before = greys;
  }
  EXPECT_FALSE(film.Next());
  EXPECT_FALSE(film.Next());
  player.StopTimer();
  platform::DestroyWindow(window);
}

// The greys of the first row, tick by tick.
std::string Played(const Bytes& bytes) {
  Input input(bytes);
  FilmPictures film;
  EXPECT_TRUE(film.Open(&input.stream));
  std::string text;
  while (film.Next()) {
    const Greys greys = GreysOf(film);
    text += (text.empty() ? "" : " | ") + Line({greys.begin(), greys.begin() + film.Width()});
  }
  return text;
}

TEST(FilmPictures, FilmEndsBehindItsLastTick) {
  const Bytes film = Compiled({}, {Block(2, 1, 0xE4), Block(1, 1, 0xFF)});
  EXPECT_EQ(Played(film), "0 85 170 255 | 0 85 170 255 | 255 255 255 255");
  ExpectLikeThePlayer(film);
}

TEST(FilmPictures, StillLastsItsTime) {
  EXPECT_EQ(Played(Compiled({}, {Block(3, 1, 0xE4)})), "0 85 170 255 | 0 85 170 255 | 0 85 170 255");
  EXPECT_EQ(Played(Compiled({}, {Block(-2, 1, 0xFF)})), "255 255 255 255 | 255 255 255 255");
  EXPECT_EQ(Played(Compiled({}, {Block(0, 1, 0xFF)})), "255 255 255 255");
  ExpectLikeThePlayer(Compiled({}, {Block(3, 1, 0xE4)}));
}

TEST(FilmPictures, StillHasTheRateOfItsCut) {
  Input input(Compiled({"", 4, 1, 4, 1, 7, 4}, {Block(3, 1, 0xE4)}));
  FilmPictures film;
  ASSERT_TRUE(film.Open(&input.stream));
  while (film.Next()) EXPECT_EQ(film.Fps(), 7);
}

TEST(FilmPictures, FrameWithoutTimeIsTheLastTick) {
  const Bytes film = Compiled({}, {Block(1, 1, 0xE4), Block(0, 1, 0xFF), Block(1, 1, 0)});
  EXPECT_EQ(Played(film), "0 85 170 255 | 255 255 255 255");
  ExpectLikeThePlayer(film);
}

TEST(FilmPictures, LoopAtTheEndOfAFilmRunsAsOftenAsItSays) {
  const Bytes film = Compiled({}, {Block(1, 1, 0), Block(1, 3, 0xE4), Block(1, 0, 0xFF)});
  EXPECT_EQ(Played(film),
            "0 0 0 0 | 0 85 170 255 | 255 255 255 255 | 0 85 170 255 | 255 255 255 255 | 0 85 170 255 | "
            "255 255 255 255");
  ExpectLikeThePlayer(film);
}

TEST(FilmPictures, RateIsThatOfTheCutThatIsShown) {
  Input input(Container(4, 1, 4, 1,
                        {CutRecord({"", 4, 1, 4, 1, 24, 4}, {Block(2, 1, 0xE4)}),
                         CutRecord({"", 4, 1, 4, 1, 8, 4}, {Block(1, 1, 0xFF)})}));
  FilmPictures film;
  ASSERT_TRUE(film.Open(&input.stream));
  std::string rates;
  while (film.Next()) rates += std::to_string(film.Fps()) + " ";
  EXPECT_EQ(rates, "24 24 8 ");
}

TEST(FilmPictures, OnlyWhatChangesCountsAsChanged) {
  Input input(Container(6, 1, 4, 1, {CutRecord({"", 4, 1, 4, 1, 24, 4}, {Block(2, 1, 0xE4), Block(1, 1, 0xD4)})}));
  FilmPictures film;
  ASSERT_TRUE(film.Open(&input.stream));
  std::string rects;
  while (film.Next())
    rects += Line({film.Changed().x, film.Changed().y, film.Changed().width, film.Changed().height}) + " | ";
  EXPECT_EQ(rects, "0 0 6 1 | 0 0 0 0 | 3 0 1 1 | ");
}

TEST(FilmPictures, WhatAFrameDoesntCoverKeepsOlderPixels) {
  const Bytes film = Compiled({}, {Block(1, 1, 0xE4), Block(1, 1, 0xFF, 50, 2)});
  EXPECT_EQ(Played(film), "0 85 170 255 | 255 255 170 255");
  ExpectLikeThePlayer(film);
}

TEST(FilmPictures, EmptyPictureAreaDoesntOpen) {
  Input input(Compiled({"", 4, 1, 0, 1, 24, 4}, {Block(1, 1, 0xE4)}));
  FilmPictures film;
  EXPECT_FALSE(film.Open(&input.stream));
  EXPECT_FALSE(film.Next());
}

TEST(FilmPictures, CanBeOpenedAgain) {
  Input first(Compiled({}, {Block(1, 1, 0xFF), Block(1, 1, 0xE4)}));
  Input second(Compiled({}, {Block(1, 1, 0xE4, 50, 2)}));
  FilmPictures film;
  ASSERT_TRUE(film.Open(&first.stream));
  ASSERT_TRUE(film.Next());
  ASSERT_TRUE(film.Open(&second.stream));
  ASSERT_TRUE(film.Next());
  EXPECT_EQ(GreysOf(film), (Greys{170, 255, 0, 0}));
  EXPECT_FALSE(film.Next());
}

// Random cuts, alone and three of them as a film of another size.

Bytes CutRecordOf(const reference::CutData& data, reference::CutData* head) {
  Bytes bytes = reference::WriteCut(data);
  BufferStream stream;
  stream.buffer = bytes.data();
  stream.size = stream.capacity = static_cast<int32_t>(bytes.size());
  Cut cut(0, 0, 24, "", 0);
  LoadReport report;
  EXPECT_TRUE(cut.Load(&stream, nullptr, &report));
  const int32_t scale = OutputScale(cut.Antialias());
  head->width = cut.width / scale;
  head->height = cut.height / scale;
  NibbleBitmap bitmap;
  IndexedImage composition;
  EXPECT_EQ(bitmap.Create(head->width, head->height), 1);
  EXPECT_TRUE(composition.Resize(cut.width, cut.height, 0));
  ChunkStream out;
  AnimationEncoder encoder(&out, &bitmap, 1);
  EXPECT_EQ(encoder.EncodeCut(&cut, &composition, 0, cut.frames.Count() - 1), 1);
  Bytes encoded(static_cast<size_t>(out.Size()));
  out.Seek(0, kFromStart);
  EXPECT_EQ(ReadUpTo(out, encoded.data(), out.Size()), out.Size());
  return encoded;
}

TEST(FilmPictures, RandomCutsAreDrawnAsThePlayerShowsThem) {
  for (uint32_t i = 0; i < 60; ++i) {
    SCOPED_TRACE(i);
    testing_support::RandomCuts random(1000 + i);
    std::vector<Bytes> records;
    int32_t width = 1;
    int32_t height = 1;
    for (int cut = 0; cut < 3; ++cut) {
      reference::CutData head;
      const Bytes stream = CutRecordOf(random.Chance(50) ? random.Make() : random.MakeScene(), &head);
      width = std::max(width, head.width);
      height = std::max(height, head.height);
      ExpectLikeThePlayer(stream);
      records.emplace_back(stream.begin() + kCutRecordOffset, stream.end());
    }
    ExpectLikeThePlayer(Container(48, 40, width, height, records));
    if (testing::Test::HasFatalFailure()) return;
  }
}

}  // namespace
}  // namespace sorvel
