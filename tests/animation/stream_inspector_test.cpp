#include "animation/stream_inspector.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "support/test_streams.h"

namespace sorvel {
namespace {

using namespace teststreams;

struct Inspected {
  explicit Inspected(const Bytes& bytes) : input(bytes) { known = InspectStream(&input.stream, &info, &report); }

  Input input;
  StreamInfo info;
  LoadReport report;
  bool known;
};

bool IsSound(const Bytes& bytes) {
  Inspected inspected(bytes);
  return inspected.known && !inspected.report.IsDamaged();
}

Bytes Replaced(Bytes bytes, size_t at, const Bytes& by) {
  for (size_t i = 0; i < by.size(); ++i) bytes.at(at + i) = by[i];
  return bytes;
}

// The head takes 17 bytes, a frame of one block 28.
Bytes SmallCut() {
  return Compiled({}, {Block(1, 1, 0x1B), Block(-2, 2, 0xE4), Still(0, 0)});
}

// Title and author are empty: the table stands at 18 and the first cut at 26.
Bytes SmallFilm() {
  return Container(
      12, 6, 8, 1,
      {CutRecord({}, {Block(1, 1, 0x1B), Still(2, 1)}),
       CutRecord({"", 8, 1, 6, 1, 12, 13}, {FrameBytes({1, 1, 60, 0, 0, {0, 0, 8, 1}}, {1}, {0x10}, {0x21, 0xC3})})});
}

TEST(StreamInspector, CompiledCut) {
  Inspected inspected(Compiled({"credit", 4, 2, 3, 5, 30, 4},
                               {FrameBytes({7, 3, 50, -1, 2, {0, 0, 4, 2}}, {1, 1}, {0x00, 0x04}, {0x1B}),
                                FrameBytes({-2, 0, 99, 0, 0, {2, 1, 2, 1}}, {1}, {0x0F}, {}), Still(1, 1)}));
  ASSERT_TRUE(inspected.known);
  EXPECT_FALSE(inspected.report.IsDamaged()) << inspected.report.problem;
  EXPECT_FALSE(inspected.info.isContainer);
  EXPECT_EQ(inspected.info.size, static_cast<uint32_t>(inspected.input.stream.size));
  ASSERT_EQ(inspected.info.cuts.size(), 1u);
  const StreamCutInfo& cut = inspected.info.cuts[0];
  EXPECT_EQ(cut.offset, 6);
  EXPECT_EQ(cut.credit, "credit");
  EXPECT_EQ(static_cast<const StreamCutHead&>(cut), (StreamCutHead{4, 2, 3, 5, 30, 4}));
  ASSERT_EQ(cut.frames.size(), 3u);
  EXPECT_EQ(cut.frames[0], (StreamFrameHead{{7, 3, 50, -1, 2}, {0, 0, 4, 2}, 2, 1}));
  EXPECT_EQ(cut.frames[0].MapSize(), 2);
  EXPECT_EQ(cut.frames[1], (StreamFrameHead{{-2, 0, 99, 0, 0}, {2, 1, 2, 1}, 1, 0}));
  EXPECT_EQ(cut.frames[2], (StreamFrameHead{{1, 1, 50, 0, 0}, {}, 0, 0}));
}

TEST(StreamInspector, Container) {
  const Bytes film = Container(
      320, 240, 8, 1,
      {CutRecord({"one"}, {Block(1, 1, 0x1B), Still(2, 1)}),
       CutRecord({"two", 8, 1, 6, 1, 12, 13}, {FrameBytes({1, 1, 60, 0, 0, {0, 0, 8, 1}}, {1}, {0x10}, {0x21, 0xC3})})},
      "a title", "an author");
  Inspected inspected(film);
  ASSERT_TRUE(inspected.known);
  EXPECT_FALSE(inspected.report.IsDamaged()) << inspected.report.problem;
  const StreamInfo& info = inspected.info;
  EXPECT_TRUE(info.isContainer);
  EXPECT_EQ(info.size, film.size());
  EXPECT_EQ(info.title, "a title");
  EXPECT_EQ(info.author, "an author");
  EXPECT_EQ(static_cast<const ContainerHead&>(info), (ContainerHead{320, 240, 8, 1, 2}));
  // 6 + 8 + 10 + 10 and two entries.
  EXPECT_EQ(info.offsets, (std::vector<uint32_t>{42, 42 + 14 + 28 + 25}));
  ASSERT_EQ(info.cuts.size(), 2u);
  EXPECT_EQ(info.cuts[0].offset, 42);
  EXPECT_EQ(info.cuts[0].credit, "one");
  EXPECT_EQ(info.cuts[0].frames.size(), 2u);
  EXPECT_EQ(info.cuts[1].credit, "two");
  EXPECT_EQ(info.cuts[1].levels, 13);
  EXPECT_EQ(info.cuts[1].fps, 12);
  ASSERT_EQ(info.cuts[1].frames.size(), 1u);
  EXPECT_EQ(info.cuts[1].frames[0].literalSize, 2u);
}

TEST(StreamInspector, SmallOnesAreSound) {
  EXPECT_TRUE(IsSound(SmallCut()));
  EXPECT_TRUE(IsSound(SmallFilm()));
}

TEST(StreamInspector, OtherKindsAreRefused) {
  for (const Bytes& bytes :
       {Bytes{}, Hex("43"), Hex("53"), Hex("42 4D 00 00"), Text("Sorvelin Cut"), Hex("00 00 00")}) {
    EXPECT_FALSE(Inspected(bytes).known);
  }
}

TEST(StreamInspector, EveryTruncationIsNoticed) {
  for (const Bytes& whole : {SmallCut(), SmallFilm()}) {
    for (size_t length = 0; length < whole.size(); ++length) {
      SCOPED_TRACE(length);
      EXPECT_FALSE(IsSound(Part(whole, 0, length)));
    }
  }
}

TEST(StreamInspector, BytesBehindTheEndAreNoticed) {
  for (const Bytes& whole : {SmallCut(), SmallFilm()}) {
    Bytes bytes = whole;
    for (int i = 0; i < 60; ++i) {
      bytes.push_back(0);
      EXPECT_FALSE(IsSound(bytes));
    }
  }
}

TEST(StreamInspector, FlippedBitsDoNoHarm) {
  for (const Bytes& whole : {SmallCut(), SmallFilm()}) {
    for (size_t bit = 0; bit < whole.size() * 8; ++bit) {
      Bytes bytes = whole;
      bytes[bit / 8] = static_cast<uint8_t>(bytes[bit / 8] ^ 1 << bit % 8);
      const Inspected inspected(bytes);
      EXPECT_LE(inspected.info.cuts.size(), bytes.size());
    }
  }
}

TEST(StreamInspector, WrongSizeIsNoticed) {
  EXPECT_FALSE(IsSound(Replaced(SmallCut(), 2, Le32(0))));
  EXPECT_FALSE(IsSound(Replaced(SmallCut(), 2, Le32(static_cast<uint32_t>(SmallCut().size() + 1)))));
  EXPECT_FALSE(IsSound(Replaced(SmallFilm(), 2, Le32(6))));
}

TEST(StreamInspector, BoxesThatNobodyWritesAreNoticed) {
  // The second frame's box stands at 17 + 28 + 9.
  const size_t box = 54;
  for (const Rect& rect : {Rect{2, 0, 4, 1}, Rect{0, 1, 4, 1}, Rect{-2, 0, 4, 1}, Rect{0, -1, 4, 1}, Rect{0, 0, 5, 1},
                           Rect{0, 0, 4, 2}, Rect{0, 0, -4, 1}, Rect{0, 0, 4, -1}, Rect{0, 0, 32767, 32767},
                           Rect{1, 0, 3, 1}, Rect{0, 0, 0, 1}, Rect{0, 0, 4, 0}, Rect{0, 0, 0, 0}}) {
    SCOPED_TRACE(std::to_string(rect.x) + " " + std::to_string(rect.y) + " " + std::to_string(rect.width) + " " +
                 std::to_string(rect.height));
    EXPECT_FALSE(
        IsSound(Replaced(SmallCut(), box, Join({Le16(rect.x), Le16(rect.y), Le16(rect.width), Le16(rect.height)}))));
  }
}

TEST(StreamInspector, SectionsOfTheWrongLengthAreNoticed) {
  for (uint32_t size : {0u, 2u, 100u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
    SCOPED_TRACE(size);
    EXPECT_FALSE(IsSound(Replaced(SmallCut(), 17 + 17, Le32(size))));
    EXPECT_FALSE(IsSound(Replaced(SmallCut(), 17 + 21, Le32(size))));
    EXPECT_FALSE(IsSound(Replaced(SmallCut(), 17 + 28 + 17, Le32(size))));
    EXPECT_FALSE(IsSound(Replaced(SmallCut(), 17 + 28 + 21, Le32(size))));
  }
}

TEST(StreamInspector, FirstFrameThatIsntFullIsNoticed) {
  EXPECT_FALSE(IsSound(Compiled({}, {Still(1, 1)})));
  EXPECT_FALSE(IsSound(Compiled({"", 8, 1, 8, 1, 24, 4}, {Block(1, 1, 0)})));
}

TEST(StreamInspector, FirstFrameWithoutALoopIsNoticed) {
  EXPECT_FALSE(IsSound(Replaced(SmallCut(), 19, Le16(0))));
}

TEST(StreamInspector, TimeZeroAndAnyLoopAreSound) {
  EXPECT_TRUE(IsSound(Replaced(SmallCut(), 17, Le16(0))));
  EXPECT_TRUE(IsSound(Replaced(SmallCut(), 19, Le16(-3))));
  EXPECT_TRUE(IsSound(Replaced(SmallCut(), 19, Le16(32767))));
}

TEST(StreamInspector, OtherNumbersOfLevelsAreNoticed) {
  for (int stored : {0, 1, 2, 4, 11, 13, 127, 255}) {
    EXPECT_FALSE(IsSound(Replaced(SmallCut(), 16, {static_cast<uint8_t>(stored)})));
  }
}

TEST(StreamInspector, CutWithoutFramesIsNoticed) {
  EXPECT_FALSE(IsSound(Compiled({}, {})));
}

TEST(StreamInspector, OffsetTableThatPointsNowhereIsNoticed) {
  for (size_t entry : {size_t{18}, size_t{22}}) {
    for (uint32_t offset : {0u, 6u, 25u, 27u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
      SCOPED_TRACE(offset);
      EXPECT_FALSE(IsSound(Replaced(SmallFilm(), entry, Le32(offset))));
    }
  }
}

TEST(StreamInspector, WrongCountIsNoticed) {
  for (int32_t count : {0, 1, 3, 32767, -1, -32768}) {
    SCOPED_TRACE(count);
    EXPECT_FALSE(IsSound(Replaced(SmallFilm(), 16, Le16(count))));
  }
}

TEST(StreamInspector, WrongLargestSizeIsNoticed) {
  EXPECT_FALSE(IsSound(Replaced(SmallFilm(), 12, Le16(4))));
  EXPECT_FALSE(IsSound(Replaced(SmallFilm(), 14, Le16(0))));
}

TEST(StreamInspector, CompleteStreamEndsBehindItsLastFrame) {
  const Bytes cut = SmallCut();
  for (size_t length = 0; length <= cut.size(); ++length) {
    Input input(Part(cut, 0, length));
    EXPECT_EQ(IsCompleteStream(&input.stream), length == cut.size()) << length;
    if (length < 6 || length == cut.size()) continue;
    // Where a frame ends, a stream may end.
    Input saysSo(Replaced(Part(cut, 0, length), 2, Le32(static_cast<uint32_t>(length))));
    EXPECT_EQ(IsCompleteStream(&saysSo.stream), (length == 45 || length == 73)) << length;
  }
  Bytes longer = cut;
  longer.push_back(0);
  Input more(longer);
  EXPECT_FALSE(IsCompleteStream(&more.stream));
  Input film(SmallFilm());
  EXPECT_FALSE(IsCompleteStream(&film.stream));
  Input empty({});
  EXPECT_FALSE(IsCompleteStream(&empty.stream));
}

}  // namespace
}  // namespace sorvel
