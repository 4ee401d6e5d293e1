#include <gtest/gtest.h>

#include <string>

#include "document/cut.h"
#include "document/frame.h"
#include "document/layer.h"
#include "document/load_report.h"
#include "foundation/byte_stream.h"
#include "support/test_images.h"

namespace sorvel {
namespace {

using namespace testimages;

const Bytes kMagic = Text("Sorvelin Layer");

// A layer "N" of 4 by 1 that follows the frame, with two cells.
const Bytes kFile = kMagic + Hex("4E 00 04 00 01 00 01 02 00"
                                 "01 00 00 00 02 00 00 00 01 00 12 34"
                                 "01 00 00 00 02 00 00 00 01 00 56 78");

bool LoadLayer(Cut* cut, const Bytes& bytes, LoadReport* report = nullptr) {
  InputBytes input(bytes);
  return cut->LoadLayer(&input.stream, report);
}

Bytes SavedLayer(Cut* cut) {
  OutputBytes output;
  EXPECT_TRUE(cut->SaveLayer(&output.stream));
  return output.Written();
}

// Two layers of 8 by 3 with three cells, shown in two frames; the upper one is current.
class LayerFile : public ::testing::Test {
 protected:
  LayerFile() : cut_(240, 180, 24, "", 0) {
    lower_ = cut_.AddLayer("lower", 8, 3, nullptr);
    upper_ = cut_.AddLayer("upper", 8, 3, nullptr);
    for (Layer* layer : {lower_, upper_}) {
      layer->AddCell(0, 3, nullptr);
      layer->AddCell(1, 4, nullptr);
    }
    for (int32_t i = 0; i < 2; ++i) {
      Frame* frame = cut_.AddFrame();
      frame->AddRecord(lower_, 1, 0, 0);
      frame->AddRecord(upper_, i + 1, 10, 20);
    }
    cut_.stateFlags = 0;
  }

  Cut cut_;
  Layer* lower_;
  Layer* upper_;
};

TEST_F(LayerFile, HoldsTheMagicAndTheBlockOfTheCurrentLayer) {
  ASSERT_TRUE(LoadLayer(&cut_, kFile));
  EXPECT_EQ(SavedLayer(&cut_), kFile);
  EXPECT_EQ(Head(SavedLayer(&cut_), 15), Text("Sorvelin Layer"));
}

TEST_F(LayerFile, TheCurrentRecordOfTheCurrentFrameDecides) {
  cut_.currentFrame = 0;
  cut_.CurrentFrame()->SelectRecord(0);
  Bytes bytes = SavedLayer(&cut_);
  EXPECT_EQ(std::string(bytes.begin() + 15, bytes.begin() + 20), "lower");
  cut_.currentFrame = 1;
  bytes = SavedLayer(&cut_);
  EXPECT_EQ(std::string(bytes.begin() + 15, bytes.begin() + 20), "upper");
}

TEST_F(LayerFile, SavingChangesNoFlag) {
  for (uint32_t flags : {0u, 0x3Fu}) {
    cut_.stateFlags = flags;
    SavedLayer(&cut_);
    EXPECT_EQ(cut_.stateFlags, flags);
  }
}

TEST_F(LayerFile, BlankRecordSavesTheWholeLayer) {
  Bytes shown = SavedLayer(&cut_);
  cut_.CurrentFrame()->ToggleBlank();
  EXPECT_EQ(SavedLayer(&cut_), shown);
}

TEST_F(LayerFile, LoadingReplacesTheLayerForAllFrames) {
  LoadReport report;
  EXPECT_TRUE(LoadLayer(&cut_, kFile, &report));
  EXPECT_FALSE(report.IsDamaged()) << report.problem;
  ASSERT_EQ(cut_.layers.Count(), 2);
  EXPECT_EQ(cut_.layers.At(1), upper_);
  EXPECT_STREQ(upper_->name, "N");
  EXPECT_EQ(upper_->width, 4);
  EXPECT_EQ(upper_->height, 1);
  EXPECT_EQ(upper_->followFrame, 1u);
  ASSERT_EQ(upper_->cells.Count(), 2);
  EXPECT_EQ(Picture(*upper_->CellAt(0)), "1234\n");
  EXPECT_EQ(Picture(*upper_->CellAt(1)), "5678\n");
  EXPECT_EQ(lower_->cells.Count(), 3);
  EXPECT_STREQ(lower_->name, "lower");
  // Cell numbers stay, also those that are now out of range.
  EXPECT_EQ(*cut_.frames.At(0)->records.At(1), (FrameRecord{upper_, 1, 10, 20}));
  EXPECT_EQ(*cut_.frames.At(1)->records.At(1), (FrameRecord{upper_, 2, 10, 20}));
  EXPECT_EQ(cut_.currentFrame, 1);
  EXPECT_EQ(cut_.CurrentCell(), nullptr);
}

TEST_F(LayerFile, LoadingMarksImages) {
  EXPECT_TRUE(LoadLayer(&cut_, kFile));
  EXPECT_EQ(cut_.stateFlags, static_cast<uint32_t>(kModified | kImagesStale | kTimingStale));
}

TEST_F(LayerFile, LoadingForgetsTheUndoOfTheReplacedCells) {
  ASSERT_TRUE(cut_.SaveUndo());
  ASSERT_EQ(cut_.undoCell, upper_->CellAt(2));
  EXPECT_TRUE(LoadLayer(&cut_, kFile));
  ASSERT_EQ(cut_.undoCell, nullptr);
  EXPECT_FALSE(cut_.Undo());
}

TEST_F(LayerFile, LoadingKeepsTheUndoOfAnotherLayer) {
  cut_.CurrentFrame()->SelectRecord(0);
  ASSERT_TRUE(cut_.SaveUndo());
  CellImage* cell = lower_->CellAt(1);
  cell->SetPixel(2, 1, 9);
  cut_.CurrentFrame()->SelectRecord(1);
  EXPECT_TRUE(LoadLayer(&cut_, kFile));
  EXPECT_EQ(cut_.undoCell, cell);
  EXPECT_TRUE(cut_.Undo());
  EXPECT_EQ(Picture(*cell), "33333333\n33333333\n33333333\n");
}

TEST_F(LayerFile, LoadingMakesRoomToUndo) {
  Layer big(200, 100, "big", nullptr, 0);
  Cut other(200, 100, 1, "", 0);
  Layer* layer = other.AddLayer("big", 200, 100, nullptr);
  other.AddFrame()->AddRecord(layer, 0, 0, 0);
  EXPECT_TRUE(LoadLayer(&cut_, SavedLayer(&other)));
  EXPECT_GE(cut_.undoCapacity, 100 * 100);
  cut_.CurrentFrame()->FirstCellHere();
  EXPECT_TRUE(cut_.SaveUndo());
}

TEST_F(LayerFile, OneChangedByteOfTheMagicGivesFalseAndLeavesTheCut) {
  Bytes before = SavedLayer(&cut_);
  for (size_t at = 0; at < 14; ++at) {
    Bytes bytes = kFile;
    bytes[at] = static_cast<uint8_t>(bytes[at] + 1);
    LoadReport report;
    EXPECT_FALSE(LoadLayer(&cut_, bytes, &report)) << at;
    EXPECT_TRUE(report.IsDamaged());
    EXPECT_EQ(cut_.stateFlags, 0u);
    EXPECT_EQ(SavedLayer(&cut_), before);
  }
}

TEST_F(LayerFile, FifteenthByteOfTheMagicCountsAsItsEnd) {
  Bytes bytes = kFile;
  bytes[14] = 'X';
  EXPECT_TRUE(LoadLayer(&cut_, bytes));
  EXPECT_STREQ(upper_->name, "N");
  EXPECT_EQ(upper_->width, 4);
}

TEST_F(LayerFile, ShorterMagicGivesFalse) {
  EXPECT_FALSE(LoadLayer(&cut_, Text("Sorvelin Laye") + Bytes(30, 0)));
  EXPECT_FALSE(LoadLayer(&cut_, Text("Sorvelin Cut") + Bytes(30, 0)));
  EXPECT_FALSE(LoadLayer(&cut_, {}));
  EXPECT_STREQ(upper_->name, "upper");
}

TEST(LayerFileInEmptyCut, LoadingMakesALayerThatEveryFrameShows) {
  Cut cut(240, 180, 24, "", 0);
  cut.AddFrame();
  cut.AddFrame();
  cut.AddFrame();
  cut.currentFrame = 1;
  EXPECT_TRUE(LoadLayer(&cut, kFile));
  ASSERT_EQ(cut.layers.Count(), 1);
  Layer* layer = cut.layers.At(0);
  EXPECT_STREQ(layer->name, "N");
  EXPECT_EQ(layer->cells.Count(), 2);
  EXPECT_EQ(layer->prototype, nullptr);
  for (int32_t i = 0; i < 3; ++i) {
    ASSERT_EQ(cut.frames.At(i)->records.Count(), 1) << i;
    EXPECT_EQ(*cut.frames.At(i)->records.At(0), (FrameRecord{layer, 0, 0, 0}));
    EXPECT_EQ(cut.frames.At(i)->currentRecord, 0);
  }
  EXPECT_EQ(cut.currentFrame, 1);
  EXPECT_TRUE(cut.SaveUndo());
}

TEST(LayerFileInEmptyCut, WrongMagicMakesNoLayer) {
  Cut cut(240, 180, 24, "", 0);
  cut.AddFrame();
  EXPECT_FALSE(LoadLayer(&cut, Text("Sorvelin layer")));
  EXPECT_EQ(cut.layers.Count(), 0);
  EXPECT_EQ(cut.frames.At(0)->records.Count(), 0);
}

TEST(LayerFileInEmptyCut, NullNameComesBackAsUntitled) {
  Cut cut(240, 180, 24, "", 0);
  Layer* layer = cut.AddLayer("x", 4, 4, nullptr);
  layer->SetName(nullptr);
  cut.AddFrame()->AddRecord(layer, 0, 0, 0);
  Bytes bytes = SavedLayer(&cut);
  Cut other(1, 1, 1, "", 0);
  other.AddFrame();
  EXPECT_TRUE(LoadLayer(&other, bytes));
  EXPECT_STREQ(other.layers.At(0)->name, "UNTITLED");
}

TEST_F(LayerFile, DamagedCellIsNotedAndTheLoadStillGivesTrue) {
  Bytes bytes = kFile;
  bytes[15 + 9 + 12 + 4] = 6;
  LoadReport report;
  EXPECT_TRUE(LoadLayer(&cut_, bytes, &report));
  EXPECT_TRUE(report.IsDamaged());
  EXPECT_TRUE(cut_.Has(kModified));
  EXPECT_STREQ(upper_->name, "N");
  EXPECT_EQ(Picture(*upper_->CellAt(0)), "1234\n");
}

TEST_F(LayerFile, EveryTruncationIsReported) {
  for (size_t length = 0; length < kFile.size(); ++length) {
    Cut cut(240, 180, 24, "", 0);
    cut.AddFrame();
    LoadReport report;
    bool result = LoadLayer(&cut, Head(kFile, length), &report);
    EXPECT_EQ(result, length >= 14) << length;
    EXPECT_TRUE(report.IsDamaged()) << length;
    EXPECT_EQ(cut.layers.Count(), result ? 1 : 0);
    LoadLayer(&cut_, Head(kFile, length));
    EXPECT_EQ(cut_.layers.At(1), upper_);
    SavedLayer(&cut_);
  }
}

TEST_F(LayerFile, EveryFlippedBitIsSurvived) {
  ForEachFlippedBit(kFile, [this](const Bytes& damaged, size_t at) {
    LoadReport report;
    EXPECT_EQ(LoadLayer(&cut_, damaged, &report), at >= 14) << at;
    cut_.SaveUndo();
  });
}

TEST_F(LayerFile, LargestNumbersAnywhereAreSurvived) {
  ForEachLargestNumber(kFile, 15, [this](const Bytes& damaged, size_t at) {
    LoadReport report;
    EXPECT_TRUE(LoadLayer(&cut_, damaged, &report)) << at;
    cut_.SaveUndo();
  });
}

TEST_F(LayerFile, SizesThatTheFileCanNotHoldAreReported) {
  LoadReport report;
  EXPECT_TRUE(LoadLayer(&cut_, kMagic + Bytes{'N', 0, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0xFF, 0xFF, 0, 0, 0, 0}, &report));
  EXPECT_TRUE(report.IsDamaged());
  EXPECT_FALSE(cut_.Undo());
}

TEST_F(LayerFile, BytesBehindTheLayerAreLeftAlone) {
  InputBytes input(kFile + Bytes{7, 7, 7});
  EXPECT_TRUE(cut_.LoadLayer(&input.stream));
  EXPECT_EQ(input.stream.Tell(), static_cast<int32_t>(kFile.size()));
  EXPECT_EQ(SavedLayer(&cut_), kFile);
}

}  // namespace
}  // namespace sorvel
