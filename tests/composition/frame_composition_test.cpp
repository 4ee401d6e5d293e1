#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "document/cut.h"
#include "document/frame.h"
#include "document/layer.h"
#include "reference/reference_internal.h"
#include "support/reference_data.h"
#include "support/test_images.h"

namespace sorvel {
namespace {

using namespace testimages;

constexpr Rect kUntouched{-91, -92, -93, -94};

uint32_t DrawLimit(int32_t count) {
  return static_cast<uint32_t>(count) << kDrawLimitShift;
}

// A layer whose cells are the given pictures.
std::unique_ptr<Layer> LayerOf(const std::vector<std::string>& pictures) {
  int32_t width = static_cast<int32_t>(pictures[0].find('\n'));
  int32_t height = static_cast<int32_t>(pictures[0].size()) / (width + 1);
  auto layer = std::make_unique<Layer>(width, height, nullptr, nullptr, 0u);
  for (size_t i = 0; i < pictures.size(); ++i) {
    layer->AddCell(static_cast<int32_t>(i) - 1, 0, nullptr);
    Draw(layer->CellAt(static_cast<int32_t>(i)), pictures[i]);
  }
  return layer;
}

std::string Composed(Frame* frame, uint32_t flags, int32_t width, int32_t height, Rect* boxes = nullptr) {
  OwnedImage image = MakeImage(false, width, height);
  EXPECT_TRUE(frame->ComposeFrame(image.get(), 0, 0, width, height, &flags, boxes));
  return Picture(*image);
}

// Five records of one layer each, side by side; record i shows the digit i + 1 in column i.
class FiveRecords : public ::testing::Test {
 protected:
  FiveRecords() : frame_(8, 1) {
    const char* pictures[] = {"1\n", "2\n", "3\n", "8\n", "9\n"};
    for (int32_t i = 0; i < 5; ++i) {
      layers_.push_back(LayerOf({pictures[i]}));
      frame_.AddRecord(layers_.back().get(), 0, i, 0);
    }
  }

  std::vector<std::unique_ptr<Layer>> layers_;
  Frame frame_;
};

// One layer of three cells; the middle one is shown at 1, 0.
class ThreeCells : public ::testing::Test {
 protected:
  ThreeCells() : layer_(LayerOf({"8...\n", ".8..\n", "..8.\n"})), frame_(6, 1) {
    frame_.AddRecord(layer_.get(), 1, 1, 0);
  }

  std::unique_ptr<Layer> layer_;
  Frame frame_;
};

TEST(ComposeFrame, FrameWithoutRecordsDrawsNothing) {
  Frame frame(4, 2);
  for (uint32_t flags : {0u, 1u, 2u, 3u, 4u, 8u, 12u, 63u << 4}) {
    EXPECT_EQ(Composed(&frame, flags, 4, 2), "....\n....\n") << flags;
  }
}

TEST(ComposeFrame, LaterRecordsLieOnTop) {
  auto lower = LayerOf({"111\n"});
  auto upper = LayerOf({".4.\n"});
  Frame frame(4, 1);
  frame.AddRecord(lower.get(), 0, 0, 0);
  frame.AddRecord(upper.get(), 0, 0, 0);
  EXPECT_EQ(Composed(&frame, 0, 4, 1), "141.\n");
  frame.MoveRecordDown(-1);
  EXPECT_EQ(Composed(&frame, 0, 4, 1), "111.\n");
}

TEST(ComposeFrame, NothingIsCleared) {
  auto layer = LayerOf({"1..\n"});
  Frame frame(3, 1);
  frame.AddRecord(layer.get(), 0, 0, 0);
  OwnedImage image = ImageOf(false, "777\n");
  uint32_t flags = 0;
  EXPECT_TRUE(frame.ComposeFrame(image.get(), 0, 0, 3, 1, &flags, nullptr));
  EXPECT_EQ(Picture(*image), "177\n");
}

TEST(ComposeFrame, NothingOutsideTheRectangleIsTouched) {
  auto layer = LayerOf({"1111\n1111\n1111\n"});
  Frame frame(6, 4);
  frame.AddRecord(layer.get(), 0, 1, 1);
  OwnedImage image = MakeImage(false, 6, 4);
  uint32_t flags = 0;
  EXPECT_TRUE(frame.ComposeFrame(image.get(), 2, 0, 2, 3, &flags, nullptr));
  EXPECT_EQ(Picture(*image), "......\n..11..\n..11..\n......\n");
}

TEST(ComposeFrame, ToneMarksWorkOnTheLayersBelow) {
  auto lower = LayerOf({"1234\n"});
  auto upper = LayerOf({"bbbb\n"});
  Frame frame(4, 1);
  frame.AddRecord(lower.get(), 0, 0, 0);
  frame.AddRecord(upper.get(), 0, 0, 0);
  EXPECT_EQ(Composed(&frame, 0, 4, 1), "3444\n");
}

TEST(ComposeFrame, LayerThatFollowsTheFrameMovesWithIt) {
  auto layer = LayerOf({"1\n"});
  layer->followFrame = 1;
  Frame frame(6, 3);
  frame.x = 3;
  frame.y = 1;
  frame.AddRecord(layer.get(), 0, 1, 1);
  EXPECT_EQ(Composed(&frame, 0, 6, 3), "......\n......\n....1.\n");
  layer->followFrame = 0;
  EXPECT_EQ(Composed(&frame, 0, 6, 3), "......\n.1....\n......\n");
}

TEST_F(ThreeCells, GhostOfTheCellBeforeIsGreenAndThatOfTheCellAfterRed) {
  EXPECT_EQ(Composed(&frame_, 0, 6, 1), "..8...\n");
  EXPECT_EQ(Composed(&frame_, kOnionPrevious, 6, 1), ".j8...\n");
  EXPECT_EQ(Composed(&frame_, kOnionNext, 6, 1), "..8m..\n");
  EXPECT_EQ(Composed(&frame_, kOnionPrevious | kOnionNext, 6, 1), ".j8m..\n");
}

TEST_F(ThreeCells, NextGhostCoversThePreviousAndTheCellCoversBoth) {
  Draw(layer_->CellAt(0), "88..\n");
  Draw(layer_->CellAt(2), "888.\n");
  EXPECT_EQ(Composed(&frame_, kOnionPrevious | kOnionNext, 6, 1), ".m8m..\n");
}

TEST_F(ThreeCells, GhostsGoRoundAtTheEnds) {
  frame_.FirstCellHere();
  EXPECT_EQ(Composed(&frame_, kOnionPrevious, 6, 1), ".8.j..\n");
  frame_.LastCellHere();
  EXPECT_EQ(Composed(&frame_, kOnionNext, 6, 1), ".m.8..\n");
}

TEST_F(ThreeCells, BlankRecordDrawsNothingAndNoGhosts) {
  frame_.ToggleBlank();
  for (uint32_t mode : {0u, static_cast<uint32_t>(kCurrentCellOnly), static_cast<uint32_t>(kDimOthers)}) {
    Rect boxes[2] = {kUntouched, kUntouched};
    EXPECT_EQ(Composed(&frame_, mode | kOnionPrevious | kOnionNext, 6, 1, boxes), "......\n");
    EXPECT_EQ(boxes[0], Rect{});
  }
}

TEST_F(ThreeCells, CellNumberPastTheEndDrawsNothingAndNoGhosts) {
  frame_.records.At(0)->cell = 3;
  Rect box = kUntouched;
  EXPECT_EQ(Composed(&frame_, kOnionPrevious | kOnionNext, 6, 1, &box), "......\n");
  EXPECT_EQ(box, Rect{});
}

TEST_F(ThreeCells, GhostsAreNotClippedByTheCellsOwnSize) {
  layer_->CellAt(0)->Resize(5, 1, 0);
  layer_->CellAt(0)->SetPixel(4, 0, 8);
  layer_->CellAt(1)->Resize(2, 1, 0);
  EXPECT_EQ(Composed(&frame_, kOnionPrevious, 6, 1), ".j8..j\n");
}

TEST_F(ThreeCells, PackedDestinationShowsNoGhosts) {
  OwnedImage image = MakeImage(true, 6, 1);
  uint32_t flags = kOnionPrevious | kOnionNext;
  EXPECT_TRUE(frame_.ComposeFrame(image.get(), 0, 0, 6, 1, &flags, nullptr));
  EXPECT_EQ(Picture(*image), "..8...\n");
}

TEST(ComposeFrame, OnlyCellOfALayerIsItsOwnGhost) {
  auto layer = LayerOf({"84..\n"});
  Frame frame(4, 1);
  frame.AddRecord(layer.get(), 0, 0, 0);
  EXPECT_EQ(Composed(&frame, kOnionPrevious | kOnionNext, 4, 1), "84..\n");
}

TEST(ComposeFrame, GhostsLieAboveLowerLayersAndBelowHigherOnes) {
  auto lower = LayerOf({"4444\n"});
  auto middle = LayerOf({"8...\n", ".88.\n"});
  auto upper = LayerOf({"..1.\n"});
  Frame frame(4, 1);
  frame.AddRecord(lower.get(), 0, 0, 0);
  frame.AddRecord(middle.get(), 0, 0, 0);
  frame.AddRecord(upper.get(), 0, 0, 0);
  frame.SelectRecord(1);
  EXPECT_EQ(Composed(&frame, kOnionNext, 4, 1), "8m14\n");
}

TEST(ComposeFrame, GhostsBelongToTheCurrentRecordAlone) {
  auto lower = LayerOf({"8...\n", ".8..\n"});
  auto upper = LayerOf({"..1.\n", "...1\n"});
  Frame frame(4, 1);
  frame.AddRecord(lower.get(), 0, 0, 0);
  frame.AddRecord(upper.get(), 0, 0, 0);
  EXPECT_EQ(Composed(&frame, kOnionNext, 4, 1), "8.1m\n");
}

TEST_F(FiveRecords, CurrentCellOnlyLeavesOutTheOthers) {
  frame_.SelectRecord(2);
  Rect boxes[6];
  for (Rect& box : boxes) box = kUntouched;
  EXPECT_EQ(Composed(&frame_, kCurrentCellOnly, 8, 1, boxes), "..3.....\n");
  EXPECT_EQ(boxes[0], (Rect{0, 0, 1, 1}));
  for (int32_t i = 1; i < 6; ++i) EXPECT_EQ(boxes[i], kUntouched);
}

TEST_F(FiveRecords, CurrentCellOnlyIgnoresTheDrawLimit) {
  EXPECT_EQ(Composed(&frame_, kCurrentCellOnly | DrawLimit(1), 8, 1), "....9...\n");
}

TEST_F(FiveRecords, CurrentCellOnlyWinsOverDimmedOthers) {
  EXPECT_EQ(Composed(&frame_, kCurrentCellOnly | kDimOthers, 8, 1), "....9...\n");
}

TEST_F(FiveRecords, WithoutACurrentRecordCurrentCellOnlyDrawsNothing) {
  frame_.currentRecord = -1;
  Rect box = kUntouched;
  EXPECT_EQ(Composed(&frame_, kCurrentCellOnly, 8, 1, &box), "........\n");
  EXPECT_EQ(box, Rect{});
}

TEST_F(FiveRecords, DimmedOthersArePaleAndTheCurrentOneIsNot) {
  frame_.SelectRecord(1);
  EXPECT_EQ(Composed(&frame_, kDimOthers, 8, 1), "g2igh...\n");
}

TEST_F(FiveRecords, WithoutACurrentRecordAllAreDimmed) {
  frame_.currentRecord = -1;
  EXPECT_EQ(Composed(&frame_, kDimOthers, 8, 1), "ghigh...\n");
}

TEST(ComposeFrame, CurrentRecordComesOnTopOfDimmedOthers) {
  auto lower = LayerOf({"444.\n"});
  auto upper = LayerOf({"88.8\n"});
  Frame frame(4, 1);
  frame.AddRecord(lower.get(), 0, 0, 0);
  frame.AddRecord(upper.get(), 0, 0, 0);
  frame.SelectRecord(0);
  EXPECT_EQ(Composed(&frame, kDimOthers, 4, 1), "444g\n");
  frame.SelectRecord(1);
  EXPECT_EQ(Composed(&frame, kDimOthers, 4, 1), "88.8\n");
}

TEST(ComposeFrame, DimmedOthersHaveNoGhostsButTheCurrentRecordHas) {
  auto lower = LayerOf({"8...\n", ".8..\n"});
  auto upper = LayerOf({"..1.\n", "...1\n"});
  Frame frame(4, 1);
  frame.AddRecord(lower.get(), 0, 0, 0);
  frame.AddRecord(upper.get(), 0, 0, 0);
  EXPECT_EQ(Composed(&frame, kDimOthers | kOnionPrevious, 4, 1), "g.1j\n");
}

TEST_F(FiveRecords, DrawLimitCutsTheRecordsFromTheTop) {
  EXPECT_EQ(Composed(&frame_, 0, 8, 1), "12389...\n");
  EXPECT_EQ(Composed(&frame_, DrawLimit(1), 8, 1), "1.......\n");
  EXPECT_EQ(Composed(&frame_, DrawLimit(4), 8, 1), "1238....\n");
  EXPECT_EQ(Composed(&frame_, DrawLimit(5), 8, 1), "12389...\n");
}

TEST_F(FiveRecords, DrawLimitBelowTheCurrentRecordShowsNoGhost) {
  layers_[3]->AddCell(0, 8, nullptr);
  frame_.SelectRecord(3);
  EXPECT_EQ(Composed(&frame_, DrawLimit(2) | kOnionNext, 8, 1), "12......\n");
}

TEST_F(FiveRecords, DrawLimitWithDimmedOthersStillShowsTheCurrentRecord) {
  frame_.SelectRecord(3);
  EXPECT_EQ(Composed(&frame_, DrawLimit(2) | kDimOthers, 8, 1), "gh.8....\n");
}

TEST_F(FiveRecords, DrawLimitAboveTheNumberOfRecordsIsAllowed) {
  std::vector<Rect> boxes(80, kUntouched);
  EXPECT_EQ(Composed(&frame_, DrawLimit(63), 8, 1, boxes.data()), "12389...\n");
  for (size_t i = 0; i < 5; ++i) EXPECT_EQ(boxes[i], (Rect{0, 0, 1, 1}));
  EXPECT_EQ(Composed(&frame_, DrawLimit(63) | kDimOthers, 8, 1), "ghig9...\n");
}

TEST_F(FiveRecords, HigherBitsOfTheFlagsAreIgnored) {
  EXPECT_EQ(Composed(&frame_, 0xFFFFFC00u, 8, 1), "12389...\n");
  EXPECT_EQ(Composed(&frame_, 0xFFFFFC00u | DrawLimit(1), 8, 1), "1.......\n");
}

TEST_F(FiveRecords, FlagsAreNotWritten) {
  uint32_t flags = kDimOthers | kOnionNext | DrawLimit(3);
  OwnedImage image = MakeImage(false, 8, 1);
  frame_.ComposeFrame(image.get(), 0, 0, 8, 1, &flags, nullptr);
  EXPECT_EQ(flags, kDimOthers | kOnionNext | DrawLimit(3));
  EXPECT_EQ(frame_.currentRecord, 4);
}

TEST(ComposeFrame, InkBoxesAreInCellCoordinatesOneForEachRecord) {
  auto inked = LayerOf({"......\n..1...\n...1..\n......\n"});
  auto empty = LayerOf({"....\n"});
  Frame frame(20, 20);
  frame.AddRecord(inked.get(), 0, 7, 9);
  frame.AddRecord(empty.get(), 0, 0, 0);
  frame.AddRecord(inked.get(), -1, 0, 0);
  frame.AddRecord(inked.get(), 0, 100, 100);
  Rect boxes[4] = {kUntouched, kUntouched, kUntouched, kUntouched};
  Composed(&frame, 0, 20, 20, boxes);
  EXPECT_EQ(boxes[0], (Rect{2, 1, 2, 2}));
  EXPECT_EQ(boxes[1], Rect{});
  EXPECT_EQ(boxes[2], Rect{});
  EXPECT_EQ(boxes[3], kUntouched);
}

TEST_F(FiveRecords, BoxOfTheCurrentRecordOverDimmedOthersGoesBehindTheOthers) {
  frame_.SelectRecord(1);
  Rect boxes[7];
  for (Rect& box : boxes) box = kUntouched;
  Composed(&frame_, kDimOthers, 8, 1, boxes);
  EXPECT_EQ(boxes[0], (Rect{0, 0, 1, 1}));
  EXPECT_EQ(boxes[1], kUntouched);
  EXPECT_EQ(boxes[4], (Rect{0, 0, 1, 1}));
  EXPECT_EQ(boxes[5], (Rect{0, 0, 1, 1}));
  EXPECT_EQ(boxes[6], kUntouched);
  frame_.ToggleBlank();
  boxes[1] = boxes[5] = kUntouched;
  Composed(&frame_, kDimOthers, 8, 1, boxes);
  EXPECT_EQ(boxes[1], Rect{});
  EXPECT_EQ(boxes[5], kUntouched);
}

TEST(ComposeFrame, AgreesWithThePlainRules) {
  Random random(61);
  for (int32_t round = 0; round < 3000; ++round) {
    std::vector<std::unique_ptr<Layer>> layers;
    int32_t layerCount = random.Between(1, 4);
    for (int32_t i = 0; i < layerCount; ++i) {
      layers.push_back(
          std::make_unique<Layer>(random.Between(1, 16), random.Between(1, 10), nullptr, nullptr, random.Word() & 1));
      int32_t cells = random.Between(1, 3);
      for (int32_t c = 0; c < cells; ++c) {
        layers.back()->AddCell(c - 1, 0, nullptr);
        CellImage* cell = layers.back()->CellAt(c);
        if (random.OneIn(6)) cell->Resize(random.Between(1, 16), random.Between(1, 10), 0);
        Scatter(cell, random, 14, random.Between(1, 12));
      }
    }
    reference::CutData cut;
    for (const auto& layer : layers) cut.layers.push_back(DataOf(*layer));
    reference::FrameData data;
    data.x = random.Between(-4, 6);
    data.y = random.Between(-4, 6);
    int32_t records = random.Between(0, 6);
    data.currentRecord = random.Between(-1, records - 1);
    Frame frame(20, 12);
    frame.x = data.x;
    frame.y = data.y;
    for (int32_t i = 0; i < records; ++i) {
      const reference::RecordData record = {random.Between(0, layerCount - 1), random.Between(-2, 3),
                                            random.Between(-12, 18), random.Between(-8, 10)};
      data.records.push_back(record);
      frame.AddRecord(layers[static_cast<size_t>(record.layer)].get(), record.cell, record.x, record.y);
    }
    frame.currentRecord = data.currentRecord;
    bool packed = random.OneIn(4);
    uint32_t flags = random.Word() & ~(63u << 4);
    if (random.OneIn(2)) flags &= ~(uint32_t{kCurrentCellOnly} | kDimOthers);
    // A packed image has no room for the pale family.
    if (packed) flags &= ~uint32_t{kDimOthers};
    if (random.OneIn(3)) flags |= DrawLimit(random.OneIn(4) ? random.Between(0, 63) : random.Between(0, 6));
    OwnedImage image = MakeImage(packed, 20, 12);
    Scatter(image.get(), random, packed ? 15 : 24, random.Between(1, 20));
    reference::Canvas expected(20, 12);
    for (int32_t y = 0; y < 12; ++y) {
      for (int32_t x = 0; x < 20; ++x) expected.Set(x, y, static_cast<uint8_t>(image->GetPixel(x, y)));
    }
    Rect area{random.Between(-4, 18), random.Between(-4, 10), random.Between(0, 26), random.Between(0, 18)};
    if (random.OneIn(3)) area = {0, 0, 20, 12};
    std::vector<Rect> boxes(80, kUntouched);
    std::vector<reference::Box> expectedBoxes(80, {kUntouched.x, kUntouched.y, kUntouched.width, kUntouched.height});
    bool wantsBoxes = random.OneIn(2) && !((flags & kDimOthers) != 0 && frame.currentRecord < 0);
    ASSERT_TRUE(frame.ComposeFrame(image.get(), area.x, area.y, area.width, area.height, &flags,
                                   wantsBoxes ? boxes.data() : nullptr));
    // A packed image shows no ghosts.
    const uint32_t plainFlags = packed ? flags & ~(uint32_t{kOnionPrevious} | kOnionNext) : flags;
    reference::ComposeFrame(&expected, cut, data, {area.x, area.y, area.width, area.height}, plainFlags,
                            &expectedBoxes);
    for (int32_t y = 0; y < 12; ++y) {
      for (int32_t x = 0; x < 20; ++x) {
        ASSERT_EQ(image->GetPixel(x, y), expected.Get(x, y)) << round << " flags " << (flags & 1023);
      }
    }
    if (!wantsBoxes) continue;
    const auto boxAt = [&expectedBoxes](size_t i) {
      const reference::Box& box = expectedBoxes[i];
      return Rect{box.x, box.y, box.width, box.height};
    };
    size_t compared = static_cast<size_t>(records);
    for (size_t i = 0; i < compared; ++i) ASSERT_EQ(boxes[i], boxAt(i)) << round << " entry " << i;
    if ((flags & (kDimOthers | kCurrentCellOnly)) == kDimOthers) {
      size_t count = (flags >> 4 & 63) != 0 ? (flags >> 4 & 63) : compared;
      ASSERT_EQ(boxes[count], boxAt(count)) << round << " behind the others";
    }
  }
}

}  // namespace
}  // namespace sorvel
