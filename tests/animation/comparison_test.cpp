// The program's files, streams and plays against a second, plain implementation of the same rules.

#include <gtest/gtest.h>

#include <memory>

#include "animation/animation_window.h"
#include "animation/stream_encoder.h"
#include "animation/stream_inspector.h"
#include "document/cut.h"
#include "foundation/byte_stream.h"
#include "foundation/vectors.h"
#include "imaging/indexed_image.h"
#include "imaging/packed_image.h"
#include "platform/headless/headless.h"
#include "reference/reference.h"
#include "support/random_cut.h"
#include "support/test_threads.h"

namespace sorvel {
namespace {

using reference::Bytes;
using testing_support::RandomCuts;

constexpr uint32_t kCuts = 400;

Bytes Contents(ChunkStream* stream) {
  Bytes bytes;
  stream->Seek(0, kFromStart);
  for (int32_t byte = stream->GetC(); byte >= 0; byte = stream->GetC()) bytes.push_back(static_cast<uint8_t>(byte));
  return bytes;
}

BufferStream StreamOver(Bytes* bytes) {
  BufferStream stream;
  stream.buffer = bytes->data();
  stream.size = stream.capacity = static_cast<int32_t>(bytes->size());
  return stream;
}

std::unique_ptr<Cut> LoadBytes(Bytes bytes) {
  auto cut = std::make_unique<Cut>(0, 0, 24, "", 0);
  BufferStream stream = StreamOver(&bytes);
  LoadReport report;
  EXPECT_TRUE(cut->Load(&stream, nullptr, &report));
  EXPECT_STREQ(report.problem, "");
  return cut;
}

Bytes Encode(Cut* cut, CellImage* composition, int32_t first, int32_t last) {
  NibbleBitmap bitmap;
  const int32_t scale = OutputScale(cut->Antialias());
  EXPECT_EQ(bitmap.Create(cut->width / scale, cut->height / scale), 1);
  EXPECT_TRUE(composition->Resize(cut->width, cut->height, 0));
  ChunkStream stream;
  AnimationEncoder encoder(&stream, &bitmap, 1);
  EXPECT_EQ(encoder.EncodeCut(cut, composition, first, last), 1);
  return Contents(&stream);
}

Bytes Export(Cut* cut, int32_t frame) {
  NibbleBitmap bitmap;
  IndexedImage composition;
  EXPECT_TRUE(composition.Resize(cut->width, cut->height, 0));
  cut->currentFrame = frame;
  ChunkStream stream;
  EXPECT_TRUE(cut->ExportFrameBitmap(&stream, &bitmap, &composition));
  return Contents(&stream);
}

Bytes View(Cut* cut, int32_t frame, uint32_t flags) {
  IndexedImage view;
  EXPECT_TRUE(view.Resize(cut->width, cut->height, 0));
  cut->frames.At(frame)->ComposeFrame(&view, 0, 0, cut->width, cut->height, &flags, nullptr);
  Bytes pixels;
  for (int32_t y = 0; y < view.height; ++y) {
    pixels.insert(pixels.end(), view.bits + y * view.pitch, view.bits + y * view.pitch + view.width);
  }
  return pixels;
}

// Plays and compares every tick and every picture.
void ExpectSamePlay(Bytes bytes, int32_t count) {
  const std::vector<reference::Tick> expected = reference::Play(bytes, count);
  BufferStream stream = StreamOver(&bytes);
  AnimationWindow player;
  platform::MakeCaptionWindow("", "", nullptr, &player);
  size_t tick = 0;
  for (; tick < static_cast<size_t>(count); ++tick) {
    const int32_t before = player.window->paints;
    if (tick == 0) {
      ASSERT_EQ(player.Play(&stream), 1);
      if (player.window->paints == before) {
        platform::DeviceContext* context = platform::BeginDrawing(player.window);
        player.Paint(context);
        platform::EndDrawing(player.window, context);
      }
    } else if (!platform::headless::RunTimer()) {
      break;
    }
    ASSERT_LT(tick, expected.size());
    const reference::Tick& other = expected[tick];
    ASSERT_EQ(player.window->paints != before, other.painted) << "tick " << tick;
    ASSERT_EQ(platform::headless::RunningTimerPeriod(), other.delay) << "tick " << tick;
    ASSERT_EQ(player.ticks, other.ticks) << "tick " << tick;
    ASSERT_EQ(player.nextTime, other.nextTime) << "tick " << tick;
    ASSERT_EQ(player.viewLeft, other.viewLeft) << "tick " << tick;
    ASSERT_EQ(player.viewTop, other.viewTop) << "tick " << tick;
    const Rect viewport = {other.viewport[0], other.viewport[1], other.viewport[2], other.viewport[3]};
    ASSERT_EQ(player.viewport, viewport) << "tick " << tick;
    if (!other.painted) continue;
    ASSERT_EQ(player.window->pixels.size(), other.picture.size());
    for (size_t i = 0; i < other.picture.size(); ++i) {
      ASSERT_EQ(player.window->pixels[i].red, other.picture[i]) << "tick " << tick << " pixel " << i;
    }
  }
  ASSERT_EQ(tick, expected.size());
  player.StopTimer();
  platform::DestroyWindow(player.window);
}

// Whatever vectors the processor has, with every third cut it works as if it had none that are wide.
class Comparison : public ::testing::Test {
 protected:
  void TearDown() override { gMayUseWideVectors = true; }
  void ChooseVectors(uint32_t seed) { gMayUseWideVectors = seed % 3 != 0; }
};

TEST_F(Comparison, CutFilesLoadAndSaveTheSame) {
  for (uint32_t seed = 0; seed < kCuts; ++seed) {
    ChooseVectors(seed);
    const reference::CutData data = RandomCuts(seed).Make();
    const Bytes file = reference::WriteCut(data);
    const std::unique_ptr<Cut> cut = LoadBytes(file);
    ChunkStream stream;
    ASSERT_TRUE(cut->Save(&stream));
    // A loaded cell may encode differently from the new one, and so the second implementation loads it too.
    reference::CutData loaded;
    ASSERT_TRUE(reference::ReadCut(file, &loaded));
    ASSERT_EQ(Contents(&stream), reference::WriteCut(loaded)) << "seed " << seed;
  }
}

TEST_F(Comparison, StreamsAreTheSame) {
  for (uint32_t seed = 0; seed < kCuts; ++seed) {
    ChooseVectors(seed);
    RandomCuts random(seed);
    const reference::CutData data = random.Make();
    const int32_t last = static_cast<int32_t>(data.frames.size()) - 1;
    const int32_t first = random.Chance(70) ? 0 : random.Number(0, last);
    const std::unique_ptr<Cut> cut = LoadBytes(reference::WriteCut(data));
    reference::CutData loaded;
    ASSERT_TRUE(reference::ReadCut(reference::WriteCut(data), &loaded));
    const uint32_t flags = random.Chance(20) ? kCurrentCellOnly : 0u;
    cut->viewFlags = flags;
    bool refused = false;
    const Bytes expected = reference::EncodeCut(loaded, first, last, &refused, flags);
    ASSERT_FALSE(refused);
    PackedImage packed;
    IndexedImage indexed;
    CellImage* composition = seed % 2 == 0 ? static_cast<CellImage*>(&packed) : &indexed;
    const Bytes bytes = Encode(cut.get(), composition, first, last);
    ASSERT_EQ(bytes, expected) << "seed " << seed;

    Bytes copy = bytes;
    BufferStream stream = StreamOver(&copy);
    StreamInfo info;
    LoadReport report;
    ASSERT_TRUE(InspectStream(&stream, &info, &report));
    ASSERT_STREQ(report.problem, "") << "seed " << seed;
  }
}

// A stream, and all that else may be seen of the work afterwards.
struct Compiled {
  Bytes stream;
  Bytes planes;
  Bytes composition;
  std::vector<int32_t> marks;
  bool operator==(const Compiled&) const = default;
};

Compiled CompileBy(int32_t threadCount, const Bytes& file, uint32_t flags, bool packs) {
  const testing_support::Threads threads(threadCount);
  const std::unique_ptr<Cut> cut = LoadBytes(file);
  cut->viewFlags = flags;
  PackedImage packed;
  IndexedImage indexed;
  CellImage* composition = packs ? static_cast<CellImage*>(&packed) : &indexed;
  EXPECT_TRUE(composition->Resize(cut->width, cut->height, 0));
  NibbleBitmap bitmap;
  const int32_t scale = OutputScale(cut->Antialias());
  EXPECT_EQ(bitmap.Create(cut->width / scale, cut->height / scale), 1);
  // What an earlier film left, beside the pixels too.
  const int32_t size = bitmap.imageSize + platform::kSpareBytes;
  for (int32_t i = 0; i < size; ++i) bitmap.bits[i] = static_cast<uint8_t>(i * 7);
  ChunkStream stream;
  AnimationEncoder encoder(&stream, &bitmap, 1);
  EXPECT_EQ(encoder.EncodeCut(cut.get(), composition, 0, cut->frames.Count() - 1), 1);

  Compiled compiled;
  compiled.marks = {stream.Tell(), bitmap.frontIsHigh, cut->frames.CursorIndex()};
  compiled.stream = Contents(&stream);
  compiled.planes.assign(bitmap.bits, bitmap.bits + size);
  compiled.composition.assign(composition->bits, composition->bits + composition->ByteCount());
  for (Frame* frame : cut->frames) {
    compiled.marks.push_back(frame->currentRecord);
    compiled.marks.push_back(frame->records.CursorIndex());
  }
  for (const Layer* layer : cut->layers) compiled.marks.push_back(layer->cells.CursorIndex());
  return compiled;
}

TEST_F(Comparison, AnyNumberOfThreadsCompilesTheSame) {
  for (uint32_t seed = 0; seed < kCuts; ++seed) {
    RandomCuts random(seed);
    reference::CutData cut = random.Chance(80) ? random.MakeScene() : random.Make();
    // In long cuts each thread gets more than one run, of different lengths.
    const int last = static_cast<int>(cut.frames.size()) - 1;
    for (int i = random.Chance(50) ? random.Number(0, 80) : 0; i > 0; --i) {
      cut.frames.push_back(cut.frames[static_cast<size_t>(random.Number(0, last))]);
    }
    const Bytes file = reference::WriteCut(cut);
    const uint32_t flags = random.Chance(20) ? kCurrentCellOnly : 0u;
    const bool packs = random.Chance(50);
    const Compiled alone = CompileBy(1, file, flags, packs);
    for (const int32_t threads : {2, 5}) {
      ASSERT_TRUE(CompileBy(threads, file, flags, packs) == alone) << "seed " << seed << " threads " << threads;
    }
  }
}

TEST_F(Comparison, PlaysAreTheSame) {
  for (uint32_t seed = 0; seed < kCuts; ++seed) {
    const reference::CutData data = RandomCuts(seed).Make();
    bool refused = false;
    const Bytes stream = reference::EncodeCut(data, 0, static_cast<int>(data.frames.size()) - 1, &refused);
    ASSERT_NO_FATAL_FAILURE(ExpectSamePlay(stream, 60)) << "seed " << seed;
  }
}

TEST_F(Comparison, PlaysOfFilmsAreTheSame) {
  for (uint32_t seed = 0; seed < kCuts / 4; ++seed) {
    RandomCuts random(seed);
    std::vector<Bytes> streams;
    for (int i = random.Number(1, 4); i > 0; --i) {
      const reference::CutData data = random.Make();
      bool refused = false;
      streams.push_back(reference::EncodeCut(data, 0, static_cast<int>(data.frames.size()) - 1, &refused));
    }
    const Bytes film = reference::WriteContainer("title", "author", 64, 48, streams);
    ASSERT_NO_FATAL_FAILURE(ExpectSamePlay(film, 100)) << "seed " << seed;
  }
}

TEST_F(Comparison, ExportedFramesAreTheSame) {
  for (uint32_t seed = 0; seed < kCuts; ++seed) {
    const reference::CutData data = RandomCuts(seed).Make();
    const std::unique_ptr<Cut> cut = LoadBytes(reference::WriteCut(data));
    for (int32_t i = 0; i < cut->frames.Count(); ++i) {
      ASSERT_EQ(Export(cut.get(), i), reference::ExportFrame(data, i)) << "seed " << seed << " frame " << i;
    }
  }
}

TEST_F(Comparison, ViewsAreTheSame) {
  for (uint32_t seed = 0; seed < kCuts; ++seed) {
    ChooseVectors(seed);
    RandomCuts random(seed);
    const reference::CutData data = random.Make();
    const std::unique_ptr<Cut> cut = LoadBytes(reference::WriteCut(data));
    reference::CutData loaded;
    ASSERT_TRUE(reference::ReadCut(reference::WriteCut(data), &loaded));
    for (int32_t i = 0; i < cut->frames.Count(); ++i) {
      const uint32_t flags = static_cast<uint32_t>(random.Number(0, 15) | random.Number(0, 3) << kDrawLimitShift);
      const int32_t record = random.Number(-1, 3);
      cut->frames.At(i)->SelectRecord(record);
      ASSERT_EQ(View(cut.get(), i, flags), reference::ComposeView(loaded, i, record, flags))
          << "seed " << seed << " frame " << i;
    }
  }
}

}  // namespace
}  // namespace sorvel
