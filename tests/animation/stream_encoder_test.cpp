#include "animation/stream_encoder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "imaging/packed_image.h"
#include "support/test_streams.h"

namespace sorvel {
namespace {

using namespace teststreams;

// A cut without layers whose frames show nothing.
std::unique_ptr<Cut> PlainCut(int32_t width, int32_t height, int32_t frames, int32_t antialias = 0,
                              const char* credit = "") {
  std::unique_ptr<Cut> cut(new Cut(width, height, 24, credit, antialias));
  for (int32_t i = 0; i < frames; ++i) cut->AddFrame();
  for (int32_t i = 0; i < frames; ++i) {
    cut->frames.At(i)->x = 0;
    cut->frames.At(i)->y = 0;
  }
  return cut;
}

constexpr size_t kHeadSize = 17;  // with an empty credit
constexpr size_t kFrameHeadSize = 25;
const Bytes kEmptyBox(16, 0);  // with sections of no size

// The last frame, from its head on. Without credit.
Bytes LastFrame(Cut* cut) {
  const int32_t count = cut->frames.Count();
  return From(Compile(cut), count == 1 ? kHeadSize : Compile(cut, 0, count - 2).size());
}

// The same behind its head: map, codes and literals.
Bytes LastSections(Cut* cut) {
  return From(LastFrame(cut), kFrameHeadSize);
}

Bytes LastBox(Cut* cut) {
  return Part(LastFrame(cut), 9, 8);
}

// Compiles a range with a packed composition and planes that hold `planes`; gives the encoder's answer.
int32_t CompilePacked(Cut* cut, int32_t first, int32_t last, Output* output, int32_t fill = 0, const Bytes& planes = {},
                      int32_t capacity = 1) {
  NibbleBitmap bitmap;
  bitmap.Create(cut->width, cut->height);
  std::copy(planes.begin(), planes.end(), bitmap.bits);
  PackedImage composition;
  composition.Resize(cut->width, cut->height, 0);
  composition.Fill(fill);
  AnimationEncoder encoder(&output->stream, &bitmap, capacity);
  return encoder.EncodeCut(cut, &composition, first, last);
}

// A frame like the last one of the cut, at its end and current.
Frame* AddCopy(Cut* cut) {
  Frame* last = cut->frames.At(cut->frames.Count() - 1);
  Frame* copy = cut->AddFrame();
  copy->CopyFrom(last);
  return copy;
}

TEST(StreamEncoder, PlainPictureIsOneLiteralAndThenCopies) {
  auto cut = PlainCut(8, 3, 1);
  EXPECT_EQ(Compile(cut.get()), Hex("43 41  30 00 00 00  00"
                                    "08 00  03 00  08 00  03 00  18  03"
                                    "01 00  01 00  32  00 00  00 00"
                                    "00 00  00 00  08 00  03 00  02 00 00 00  01 00 00 00"
                                    "01 01 00"
                                    "10 14"
                                    "FF"));
}

TEST(StreamEncoder, CreditStandsWithoutItsLength) {
  auto cut = PlainCut(4, 1, 1, 0, "\x95\x5C");
  EXPECT_EQ(Part(Compile(cut.get()), 0, 19), Hex("43 41  2F 00 00 00  95 5C 00"
                                                 "04 00  01 00  04 00  01 00  18  03"));
}

TEST(StreamEncoder, FpsAbove127IsTheSameByte) {
  auto cut = PlainCut(4, 1, 1);
  cut->fps = 200;
  EXPECT_EQ(Compile(cut.get()).at(15), 200);
}

TEST(StreamEncoder, FrameRectangleStandsBesideThePicture) {
  auto cut = PlainCut(8, 4, 1);
  cut->frameWidth = 6;
  cut->frameHeight = 300;
  EXPECT_EQ(Part(Compile(cut.get()), 7, 8), Hex("08 00 04 00 06 00 2C 01"));
}

TEST(StreamEncoder, StreamStaysAtTheCutRecord) {
  auto cut = PlainCut(4, 1, 1);
  Output output;
  ASSERT_EQ(CompilePacked(cut.get(), 0, 0, &output), 1);
  EXPECT_EQ(output.stream.Tell(), 6);
}

TEST(StreamEncoder, SizeFieldIsTheLengthOfTheFile) {
  auto cut = MakeCut(12, 5, {"1234", "/1.2.3", "//4444"});
  const Bytes bytes = Compile(cut.get());
  EXPECT_EQ(U32At(bytes, 2), bytes.size());
}

TEST(StreamEncoder, PackedCompositionGivesTheSameBytes) {
  auto cut = MakeCut(12, 5, {"1234", "/1.2.3", "//4444"});
  Output output;
  ASSERT_EQ(CompilePacked(cut.get(), 0, 2, &output), 1);
  EXPECT_EQ(output.Written(), Compile(cut.get()));
}

TEST(StreamEncoder, CompositionIsScratch) {
  auto cut = MakeCut(4, 2, {"....", "/.1"});
  Output output;
  ASSERT_EQ(CompilePacked(cut.get(), 0, 1, &output, 9), 1);
  EXPECT_EQ(output.Written(), Compile(cut.get()));
}

// What is refused.

TEST(StreamEncoder, BadRangesAreRefusedWithNothingWritten) {
  auto cut = PlainCut(4, 1, 3);
  Output output;
  for (const auto& [first, last] : {std::pair{2, 1}, {-1, 1}, {0, 3}, {3, 3}}) {
    EXPECT_EQ(CompilePacked(cut.get(), first, last, &output), 0);
  }
  EXPECT_TRUE(output.Written().empty());
}

TEST(StreamEncoder, OutputSizeThreeIsRefused) {
  auto cut = PlainCut(4, 1, 1);
  cut->stateFlags |= 3u << kAntialiasShift;
  EXPECT_TRUE(Compile(cut.get()).empty());
}

TEST(StreamEncoder, NoRoomForACutIsRefused) {
  auto cut = PlainCut(4, 1, 1);
  Output output;
  EXPECT_EQ(CompilePacked(cut.get(), 0, 0, &output, 0, {}, 0), 0);
  EXPECT_TRUE(output.Written().empty());
}

// Heads of frames.

TEST(StreamEncoder, FramesThatDifferOnlyInTimingTake25Bytes) {
  auto cut = MakeCut(4, 2, {"1"});
  Frame* second = AddCopy(cut.get());
  second->time = -3;
  second->loop = 0;
  second->brightness = 7;
  AssignString(&second->comment, "fade");
  EXPECT_EQ(LastFrame(cut.get()), Hex("FD FF  00 00  07  00 00  00 00") + kEmptyBox);
}

TEST(StreamEncoder, FrameThatDiffersOnlyInItsPositionHasAnEmptyBox) {
  auto cut = MakeCut(4, 2, {"1"});
  Frame* second = AddCopy(cut.get());
  second->x = 5;
  second->y = -2;
  EXPECT_EQ(LastFrame(cut.get()), Hex("01 00  01 00  32  05 00  FE FF") + kEmptyBox);
}

TEST(StreamEncoder, LayerThatFollowsTheFrameMovesWithItsPosition) {
  auto cut = MakeCut(8, 2, {"/.1"});
  cut->layers.At(0)->followFrame = 1;
  AddCopy(cut.get())->x = 4;
  EXPECT_EQ(LastBox(cut.get()), Hex("00 00  01 00  06 00  01 00"));
}

TEST(StreamEncoder, FrameBehindAnUnchangedOneIsComparedWithItsPicture) {
  auto cut = MakeCut(8, 3, {"", "/.1"});
  const Bytes direct = LastFrame(cut.get());
  cut->currentFrame = 0;
  cut->AddFrame()->CopyFrom(cut->frames.At(0));
  EXPECT_EQ(LastFrame(cut.get()), direct);
}

TEST(StreamEncoder, FirstFrameOfARangeIsFullEvenInTheMiddle) {
  auto cut = MakeCut(4, 2, {"", "/.1", "/.1"});
  cut->frames.At(2)->time = -5;
  cut->frames.At(2)->loop = 0;
  cut->frames.At(2)->brightness = 80;
  const Bytes bytes = Compile(cut.get(), 2, 2);
  EXPECT_EQ(From(bytes, kHeadSize), Hex("05 00  01 00  50  00 00  00 00"
                                        "00 00  00 00  04 00  02 00  01 00 00 00  02 00 00 00"
                                        "01 00  00  FF F3"));
}

TEST(StreamEncoder, TimeAndLoopGoIntoTheHead) {
  const struct {
    const char* name;
    bool isFirst;
    int32_t time;
    int32_t loop;
    const char* bytes;
  } rows[] = {
      {"FirstFrameKeepsAPositiveTimeAndALoop", true, 300, 3, "2C 01 03 00"},
      {"FirstFrameKeepsANegativeLoop", true, 1, -1, "01 00 FF FF"},
      {"LaterFramesKeepSignAndZero", false, -2, 0, "FE FF 00 00"},
      {"TimeZeroIsWrittenAsItIsInTheFirstFrame", true, 0, 1, "00 00 01 00"},
      {"TimeZeroIsWrittenAsItIs", false, 0, 1, "00 00 01 00"},
      {"LoopIsCutToItsLowSixteenBits", false, 1, 40000 + 65536, "01 00 40 9C"},
  };
  for (const auto& row : rows) {
    auto cut = PlainCut(4, 1, row.isFirst ? 1 : 2);
    Frame* last = cut->frames.At(cut->frames.Count() - 1);
    last->time = row.time;
    last->loop = row.loop;
    EXPECT_EQ(Part(LastFrame(cut.get()), 0, 4), Hex(row.bytes)) << row.name;
  }
}

TEST(StreamEncoder, BrightnessOfAKeyFrameIsDecoded) {
  auto cut = PlainCut(4, 1, 2);
  cut->frames.At(0)->brightness = -101;
  cut->frames.At(1)->brightness = -1;
  EXPECT_EQ(Compile(cut.get()).at(kHeadSize + 4), 100);
  EXPECT_EQ(LastFrame(cut.get()).at(4), 0);
}

TEST(StreamEncoder, KeyFramesLeaveTheInBetweensTheirTime) {
  const struct {
    const char* name;
    std::vector<int32_t> times;
    std::vector<int32_t> keys;
    int32_t first;
    int32_t last;
    std::vector<int32_t> written;
  } rows[] = {
      {"KeyFrameLeavesItsInBetweensTheirTime", {10, 2, 3, 6}, {0, 3}, 0, 3, {5, 2, 3, 6}},
      {"KeyFrameCountsInBetweensBehindTheRange", {10, 3}, {0}, 0, 0, {7}},
      {"KeyFrameStandsAtLeastOneTick", {4, 3, -3}, {0}, 0, 0, {1}},
      {"NegativeKeyFrameKeepsItsSignBehindTheFirst", {1, -10, 2}, {1}, 0, 2, {1, -8, 2}},
      {"NegativeKeyFrameThatIsFirstLosesItsSign", {1, -10, 2}, {1}, 1, 2, {8, 2}},
  };
  for (const auto& row : rows) {
    auto cut = PlainCut(4, 1, static_cast<int32_t>(row.times.size()));
    for (size_t i = 0; i < row.times.size(); ++i) cut->frames.At(static_cast<int32_t>(i))->time = row.times[i];
    for (int32_t key : row.keys) cut->frames.At(key)->SetKey(true);
    const Bytes bytes = Compile(cut.get(), row.first, row.last);
    std::vector<int32_t> written;
    // A frame without changes takes 25 bytes; the first one, of one block, three more.
    for (int32_t i = row.first; i <= row.last; ++i) {
      const size_t index = static_cast<size_t>(i - row.first);
      written.push_back(I16At(bytes, kHeadSize + kFrameHeadSize * index + (index > 0 ? 3 : 0)));
    }
    EXPECT_EQ(written, row.written) << row.name;
  }
}

// Sizes.

TEST(StreamEncoder, HalfSizeDividesTruncating) {
  auto cut = PlainCut(9, 5, 1, 1);
  cut->frameWidth = 7;
  cut->frameHeight = 3;
  cut->frames.At(0)->x = -3;
  cut->frames.At(0)->y = 5;
  const Bytes bytes = Compile(cut.get());
  EXPECT_EQ(Part(bytes, 7, 10), Hex("04 00 02 00 03 00 01 00 18 0C"));
  EXPECT_EQ(Part(bytes, kHeadSize + 5, 12), Hex("FF FF 02 00  00 00 00 00 04 00 02 00"));
}

TEST(StreamEncoder, QuarterSizeDividesTruncating) {
  auto cut = PlainCut(19, 11, 1, 2);
  cut->frames.At(0)->x = -7;
  cut->frames.At(0)->y = 11;
  const Bytes bytes = Compile(cut.get());
  EXPECT_EQ(Part(bytes, 7, 10), Hex("04 00 02 00 04 00 02 00 18 0C"));
  EXPECT_EQ(Part(bytes, kHeadSize + 5, 12), Hex("FF FF 02 00  00 00 00 00 04 00 02 00"));
}

TEST(StreamEncoder, OddCanvasAtHalfSizeLosesItsLastColumn) {
  auto empty = PlainCut(9, 5, 1, 1);
  auto cut = MakeCut(9, 5, {"........1/........1/........1/........1/111111111"}, 1);
  EXPECT_EQ(Compile(cut.get()), Compile(empty.get()));
}

TEST(StreamEncoder, WidthThatIsNoMultipleOfFourHasWholeBlocks) {
  auto cut = PlainCut(6, 2, 1);
  EXPECT_EQ(From(LastFrame(cut.get()), 9), Hex("00 00  00 00  06 00  02 00  02 00 00 00  02 00 00 00"
                                               "01 01"
                                               "00 44"
                                               "FF 0F"));
}

TEST(StreamEncoder, OddNumberOfBlocksLeavesTheLastHighNibbleZero) {
  auto cut = PlainCut(12, 2, 1);
  EXPECT_EQ(LastSections(cut.get()), Hex("03 01"
                                         "10 01 14"
                                         "FF"));
}

TEST(StreamEncoder, MapRowHasABitForEachByteOfCodes) {
  auto cut = MakeCut(72, 2, {std::string(68, '.') + "1..."});
  const Bytes bytes = Compile(cut.get());
  // In the second row the last block is like its left neighbour.
  EXPECT_EQ(From(bytes, kHeadSize + 17), Hex("04 00 00 00  02 00 00 00"
                                             "01 01  01 01"
                                             "10 01  14 11"
                                             "FF FC"));
}

// Levels.

TEST(StreamEncoder, EachColourIndexHasItsLevelAtFullSize) {
  auto cut = MakeCut(16, 1, {".123456789abcdef"});
  EXPECT_EQ(LastSections(cut.get()), Hex("03"
                                         "00 20"
                                         "93 FF E4"));
}

TEST(StreamEncoder, HalfSizeAddsUpFourPixels) {
  auto cut = MakeCut(8, 2, {"1112248./11332344"}, 1);
  EXPECT_EQ(LastSections(cut.get()), Hex("01 00 50 97"));
}

TEST(StreamEncoder, QuarterSizeOfAPlainPictureIsTwelve) {
  auto cut = PlainCut(16, 4, 1, 2);
  EXPECT_EQ(LastSections(cut.get()), Hex("01 00 CC CC"));
}

// Codes of blocks.

TEST(StreamEncoder, DifferentBlocksAreLiterals) {
  const auto blocks = DifferentBlocks();
  auto cut = MakeCut(20, 9, {BlockPicture(blocks, '1')});
  Bytes expected =
      Hex("01 00  01 00  32  00 00  00 00  00 00  00 00  14 00  09 00  03 00 00 00  2D 00 00 00"
          "07 00 00 00 00 00 00 00 00"
          "00 00 00");
  for (int32_t block : blocks) expected.push_back(static_cast<uint8_t>(block));
  EXPECT_EQ(LastFrame(cut.get()), expected);
}

TEST(StreamEncoder, EachCodeCopiesFromItsOffset) {
  for (const CopyOffset& offset : kCopyOffsets) {
    SCOPED_TRACE(offset.code);
    auto blocks = DifferentBlocks();
    blocks[44] = blocks[SourceBlock(offset.code)];
    auto cut = MakeCut(20, 9, {BlockPicture(blocks, '1')});
    Bytes expected =
        Hex("04 00 00 00  2C 00 00 00"
            "07 00 00 00 00 00 00 00 04"
            "00 00 00");
    expected.push_back(static_cast<uint8_t>(offset.code));
    for (size_t n = 0; n < 44; ++n) expected.push_back(static_cast<uint8_t>(blocks[n]));
    EXPECT_EQ(From(LastFrame(cut.get()), 17), expected);
  }
}

TEST(StreamEncoder, CodesAreTriedInAFixedOrder) {
  const int32_t order[] = {1, 4, 5, 6, 7, 9, 10, 2, 8, 11, 12, 13, 14, 3};
  for (size_t i = 0; i + 1 < std::size(order); ++i) {
    SCOPED_TRACE(order[i]);
    auto blocks = DifferentBlocks();
    blocks[44] = blocks[SourceBlock(order[i])];
    blocks[SourceBlock(order[i + 1])] = blocks[44];
    auto cut = MakeCut(20, 9, {BlockPicture(blocks, '1')});
    const Bytes bytes = Compile(cut.get());
    const uint32_t codeSize = U32At(bytes, kHeadSize + 17);
    EXPECT_EQ(bytes.at(kHeadSize + kFrameHeadSize + 9 + codeSize - 1), order[i]);
  }
}

TEST(StreamEncoder, CodeOfTheRowAboveIsTriedFirst) {
  auto blocks = DifferentBlocks();
  blocks[39] = blocks[19];               // row 7 copies from four rows above
  blocks[43] = blocks[44] = blocks[24];  // and so can row 8, which has the same block to its left
  auto cut = MakeCut(20, 9, {BlockPicture(blocks, '1')});
  const Bytes bytes = Compile(cut.get());
  EXPECT_EQ(Part(bytes, kHeadSize + kFrameHeadSize, 9), Hex("07 00 00 00 00 00 00 04 00"));
  EXPECT_EQ(U32At(bytes, kHeadSize + 17), 4u);
  EXPECT_EQ(bytes.at(kHeadSize + kFrameHeadSize + 9 + 3), 9);
}

TEST(StreamEncoder, TopRowUsesOnlyItsLeft) {
  // The third block is that two to its left, the fourth that to its left, the seventh that four to its left.
  auto cut = MakeCut(32, 1, {"11112222111111113333444411112222"});
  EXPECT_EQ(LastSections(cut.get()), Hex("0F"
                                         "00 12 00 03"
                                         "00 55 AA FF 55"));
}

TEST(StreamEncoder, SixteenToTheLeftWorksInTheTopRow) {
  auto cut = MakeCut(20, 1, {"11112222333344441111"});
  EXPECT_EQ(LastSections(cut.get()), Hex("07"
                                         "00 00 03"
                                         "00 55 AA FF"));
}

TEST(StreamEncoder, FirstFrameNeverUsesTheFrameBefore) {
  // The planes still hold the very picture.
  auto cut = MakeCut(4, 2, {"1234/4321"});
  Output output;
  ASSERT_EQ(CompilePacked(cut.get(), 0, 0, &output, 0, Hex("00 11 22 33 33 22 11 00")), 1);
  EXPECT_EQ(From(output.Written(), kHeadSize + kFrameHeadSize), Hex("01 00 00 E4 1B"));
}

TEST(StreamEncoder, UnchangedBlockInsideTheBoxIsCopiedFromTheFrameBefore) {
  const auto blocks = DifferentBlocks();
  auto changed = blocks;
  // Block 5 (7 + 25 = 32: 0 0 2 0) gets another second pixel, block 7 (42: 2 2 2 0) another first one.
  changed[5] = 32 + 3 * 4;
  changed[7] = 42 + 1;
  auto cut = MakeCut(20, 9, {BlockPicture(blocks, '1'), BlockPicture(changed, '1')});
  EXPECT_EQ(LastFrame(cut.get()), Hex("01 00  01 00  32  00 00  00 00"
                                      "00 00  01 00  09 00  01 00  02 00 00 00  02 00 00 00"
                                      "03"
                                      "F0 00"
                                      "2C 2B"));
}

TEST(StreamEncoder, FrameBeforeComesBehindTwoRowsAboveInTheOrder) {
  // A picture of equal blocks: codes 1, 4, 5 and 6 hold as well as 15.
  auto cut = MakeCut(8, 4, {"", "///.1.....1"});
  // Changed pixels (1, 3) and (7, 3): both blocks are new.
  EXPECT_EQ(From(LastFrame(cut.get()), 9), Hex("00 00  03 00  08 00  01 00  01 00 00 00  02 00 00 00"
                                               "01 00 F3 3F"));
}

TEST(StreamEncoder, TopRowOfALaterFrameMayUseTheFrameBefore) {
  auto cut = MakeCut(12, 2, {"123421434123", "1234214341../.1.........1"});
  // The box runs from (0, 0): its first two blocks are those of the frame before.
  EXPECT_EQ(From(LastFrame(cut.get()), 9), Hex("00 00  00 00  0C 00  02 00  03 00 00 00  03 00 00 00"
                                               "03 01"
                                               "FF 00 F0"
                                               "F3 F3 3F"));
}

// Boxes.

TEST(StreamEncoder, MovedLayerTakesItsOldAndItsNewInkIntoTheBox) {
  auto cut = MakeCut(16, 8, {"/..1"});
  AddCopy(cut.get())->OffsetRecord(0, 7, 4);
  EXPECT_EQ(LastBox(cut.get()), Hex("02 00  01 00  08 00  05 00"));
}

TEST(StreamEncoder, BoxBeginsAtAnEvenColumn) {
  auto cut = MakeCut(12, 4, {"", "/.....1/.......1"});
  EXPECT_EQ(LastBox(cut.get()), Hex("04 00  01 00  04 00  02 00"));
}

TEST(StreamEncoder, BlocksFollowTheBoxAndNotThePicture) {
  auto cut = MakeCut(12, 4, {"", "/..1....1"});
  EXPECT_EQ(From(LastFrame(cut.get()), 9), Hex("02 00  01 00  06 00  01 00  01 00 00 00  02 00 00 00"
                                               "01 00 FC F3"));
}

TEST(StreamEncoder, LastBlockOfABoxReachesIntoTheNextRow) {
  auto cut = MakeCut(8, 4, {"//1", "/..1....1/1"});
  // The second block holds (6, 1), (7, 1), (0, 2) and (1, 2).
  EXPECT_EQ(From(LastFrame(cut.get()), 9), Hex("02 00  01 00  06 00  01 00  01 00 00 00  02 00 00 00"
                                               "01 00 FC C3"));
}

TEST(StreamEncoder, ChangesInColumnZeroAloneAreDropped) {
  auto cut = MakeCut(8, 4, {"", "/1/1/1"});
  EXPECT_EQ(From(LastFrame(cut.get()), 9), kEmptyBox);
}

TEST(StreamEncoder, ChangesInRowZeroAloneAreDropped) {
  auto cut = MakeCut(8, 4, {"", ".1111111"});
  EXPECT_EQ(From(LastFrame(cut.get()), 9), kEmptyBox);
}

TEST(StreamEncoder, DroppedChangesCountAsSentAfterwards) {
  auto cut = MakeCut(8, 4, {"", "/1", "/1....1"});
  EXPECT_EQ(LastBox(cut.get()), Hex("04 00  01 00  02 00  01 00"));
}

TEST(StreamEncoder, BlockThatTouchesADroppedChangeCarriesIt) {
  auto cut = MakeCut(8, 4, {"", "/1", "/11"});
  EXPECT_EQ(From(LastFrame(cut.get()), 9), Hex("00 00  01 00  02 00  01 00  01 00 00 00  01 00 00 00"
                                               "01 00 F0"));
}

TEST(StreamEncoder, InkOutsideTheCanvasChangesNothing) {
  auto cut = MakeCut(8, 4, {"/.1"});
  cut->AddFrame()->AddRecord(cut->layers.At(0), 0, 100, 100);
  cut->AddFrame()->AddRecord(cut->layers.At(0), 0, -50, 100);
  EXPECT_EQ(From(LastFrame(cut.get()), 9), kEmptyBox);
}

TEST(StreamEncoder, SketchAndToneMarksNeverShow) {
  auto cut = MakeCut(8, 4, {"", "/.567bcde"});
  EXPECT_EQ(From(LastFrame(cut.get()), 9), kEmptyBox);
}

TEST(StreamEncoder, BlankRecordShowsNothing) {
  auto cut = MakeCut(8, 4, {"", "/.1"});
  cut->frames.At(1)->records.At(0)->cell = -2;
  EXPECT_EQ(From(LastFrame(cut.get()), 9), kEmptyBox);
}

TEST(StreamEncoder, HalfSizeBoxIsInReducedPixels) {
  auto cut = MakeCut(16, 8, {"", "///......1....1"}, 1);
  // Of (6, 3) and (11, 3): the reduced pixels (3, 1) and (5, 1).
  EXPECT_EQ(From(LastFrame(cut.get()), 9), Hex("02 00  01 00  04 00  01 00  01 00 00 00  02 00 00 00"
                                               "01 00 9C 9C"));
}

// The current record.

TEST(StreamEncoder, CurrentCellOnlyLeavesOtherLayersOut) {
  auto cut = MakeCut(4, 2, {"1111"});
  Layer* top = cut->AddLayer("B", 4, 2, nullptr);
  Paint(top->CellAt(0), "/2222");
  cut->frames.At(0)->AddRecord(top, 0, 0, 0);
  cut->viewFlags = kCurrentCellOnly;
  EXPECT_EQ(LastSections(cut.get()), Hex("01 00 00 FF 55"));
  cut->frames.At(0)->SelectRecord(0);
  EXPECT_EQ(LastSections(cut.get()), Hex("01 00 00 00 FF"));
}

TEST(StreamEncoder, OtherDisplayFlagsDontReachTheOutput) {
  auto cut = MakeCut(4, 2, {"1111", "/2222"});
  const Bytes plain = Compile(cut.get());
  cut->viewFlags = kOnionPrevious | kOnionNext | kDimOthers | 1u << kDrawLimitShift;
  EXPECT_EQ(Compile(cut.get()), plain);
}

TEST(StreamEncoder, RecordUnderEditBecomesCurrentInAllComposedFrames) {
  auto cut = MakeCut(4, 2, {"1111", "/2222", "/.3"});
  Layer* top = cut->AddLayer("B", 4, 2, nullptr);
  for (int32_t i = 0; i < 3; ++i) cut->frames.At(i)->AddRecord(top, 0, 0, 0);
  AddCopy(cut.get())->SelectRecord(1);
  cut->currentFrame = 1;
  cut->frames.At(1)->SelectRecord(0);
  ASSERT_FALSE(Compile(cut.get()).empty());
  EXPECT_EQ(cut->frames.At(0)->currentRecord, 0);
  EXPECT_EQ(cut->frames.At(1)->currentRecord, 0);
  EXPECT_EQ(cut->frames.At(2)->currentRecord, 0);
  EXPECT_EQ(cut->frames.At(3)->currentRecord, 1) << "it wasn't composed";
}

TEST(StreamEncoder, FrameWithoutThatRecordKeepsItsOwn) {
  auto cut = MakeCut(4, 2, {"1111", "/2222"});
  Layer* top = cut->AddLayer("B", 4, 2, nullptr);
  cut->frames.At(1)->AddRecord(top, 0, 0, 0);
  ASSERT_EQ(cut->currentFrame, 1);
  ASSERT_FALSE(Compile(cut.get()).empty());
  EXPECT_EQ(cut->frames.At(0)->currentRecord, 0);
}

TEST(StreamEncoder, CompilingMarksNothing) {
  auto cut = MakeCut(4, 2, {"1111", "/2222"});
  cut->stateFlags = kTimingStale;
  ASSERT_FALSE(Compile(cut.get()).empty());
  EXPECT_EQ(cut->stateFlags, static_cast<uint32_t>(kTimingStale));
}

}  // namespace
}  // namespace sorvel
