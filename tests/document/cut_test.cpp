#include "document/cut.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>

#include "imaging/indexed_image.h"
#include "support/test_document.h"

namespace sorvel {
namespace {

using testdoc::CellNumber;
using testdoc::Drawing;
using testdoc::Drawings;
using testdoc::NumberCells;
using testdoc::Paint;
using testdoc::Picture;
using testdoc::Stacking;

constexpr uint32_t kMarks = kModified | kImagesStale | kTimingStale;
constexpr uint32_t kTimingMarks = kModified | kTimingStale;

// A cut of some frames and of layers A, B, C and so on, with four cells each that show the drawings 1 to 4. All
// frames hold all layers, the first frame with the top record is current, and nothing is marked.
struct TestCut {
  TestCut(int32_t frames, int32_t layers) {
    for (int32_t i = 0; i < frames; ++i) cut.AddFrame();
    for (int32_t i = 0; i < layers; ++i) {
      const char name[] = {static_cast<char>('A' + i), '\0'};
      NumberCells(cut.AddLayer(name, 4, 2, nullptr), 4);
      cut.AttachLayer(i, 0, 0);
    }
    cut.currentFrame = 0;
    cut.stateFlags = 0;
  }

  Frame* FrameAt(int32_t index) { return cut.frames.At(index); }
  Layer* LayerAt(int32_t index) { return cut.layers.At(index); }
  int32_t& Cell(int32_t frame, int32_t record) { return FrameAt(frame)->records.At(record)->cell; }
  int32_t Shown(int32_t frame, int32_t record = 0) {
    int32_t x = 0;
    int32_t y = 0;
    return Drawing(FrameAt(frame)->VisibleCell(record, &x, &y));
  }
  std::string Marks() {
    std::string marks;
    if (cut.Has(kModified)) marks += 'm';
    if (cut.Has(kImagesStale)) marks += 'i';
    if (cut.Has(kTimingStale)) marks += 't';
    cut.stateFlags &= ~kMarks;
    return marks;
  }

  Cut cut{20, 10, 24, "someone", 0};
};

TEST(Cut, NewCutHasItsDefaults) {
  char credit[] = "someone";
  Cut cut(320, 240, 12, credit, 0);
  credit[0] = 'x';
  EXPECT_EQ(cut.path, EmptyString);
  EXPECT_EQ(cut.frames.Count(), 0);
  EXPECT_EQ(cut.layers.Count(), 0);
  EXPECT_EQ(cut.width, 320);
  EXPECT_EQ(cut.height, 240);
  EXPECT_EQ(cut.frameWidth, 320);
  EXPECT_EQ(cut.frameHeight, 240);
  EXPECT_EQ(cut.fps, 12);
  EXPECT_STREQ(cut.credit, "someone");
  EXPECT_EQ(cut.currentFrame, -1);
  EXPECT_EQ(cut.undoCell, nullptr);
  EXPECT_EQ(cut.undoPixels, nullptr);
  EXPECT_EQ(cut.undoCapacity, 0);
  EXPECT_EQ(cut.viewFlags, 0u);
  EXPECT_EQ(cut.stateFlags, 1u << 2);
}

TEST(Cut, OutputSizeLiesInBitsFourAndFiveOfTheState) {
  for (int32_t antialias : {0, 1, 2}) {
    Cut cut(10, 10, 24, "", antialias);
    EXPECT_EQ(cut.stateFlags, 1u << 2 | static_cast<uint32_t>(antialias) << 4);
    EXPECT_EQ(cut.Antialias(), antialias);
  }
  Cut cut(10, 10, 24, "", 2);
  cut.stateFlags |= kHasWindow | kModified;
  cut.SetAntialias(1);
  EXPECT_EQ(cut.stateFlags, 1u << 0 | 1u << 1 | 1u << 2 | 1u << 4);
}

TEST(Cut, EmptyCreditIsTheSharedText) {
  Cut cut(10, 10, 24, "", 0);
  EXPECT_EQ(cut.credit, EmptyString);
}

TEST(Cut, OutputScalesAreOneTwoAndFour) {
  EXPECT_EQ(OutputScale(0), 1);
  EXPECT_EQ(OutputScale(1), 2);
  EXPECT_EQ(OutputScale(2), 4);
  EXPECT_EQ(OutputScale(3), 1);
  EXPECT_EQ(OutputLevels(1), 4);
  EXPECT_EQ(OutputLevels(2), 13);
  EXPECT_EQ(OutputLevels(4), 13);
}

TEST(Cut, MarksAreTheirBits) {
  Cut cut(10, 10, 24, "", 0);
  cut.stateFlags = 0;
  cut.MarkTiming();
  EXPECT_EQ(cut.stateFlags, 1u << 1 | 1u << 3);
  cut.stateFlags = 0;
  cut.MarkImages();
  EXPECT_EQ(cut.stateFlags, 1u << 1 | 1u << 2 | 1u << 3);
}

TEST(Cut, EveryOperationOnACutWithoutFramesIsRefused) {
  Cut cut(10, 10, 24, "", 0);
  cut.AddLayer("A", 4, 4, nullptr);
  cut.stateFlags = 0;
  int32_t x = 0;
  int32_t y = 0;
  EXPECT_EQ(cut.CurrentFrame(), nullptr);
  EXPECT_EQ(cut.CurrentCell(&x, &y), nullptr);
  EXPECT_FALSE(cut.InsertFrame());
  EXPECT_FALSE(cut.DeleteFrame());
  EXPECT_FALSE(cut.LayerUp());
  EXPECT_FALSE(cut.LayerDown());
  EXPECT_FALSE(cut.AddCurrentCell(0));
  EXPECT_FALSE(cut.InsertCurrentCell(0));
  EXPECT_FALSE(cut.DeleteCurrentCell());
  EXPECT_FALSE(cut.PreviousCellOfFrame());
  EXPECT_FALSE(cut.NextCellOfFrame());
  EXPECT_FALSE(cut.FirstCellOfFrame());
  EXPECT_FALSE(cut.LastCellOfFrame());
  EXPECT_FALSE(cut.EraseDraft());
  EXPECT_FALSE(cut.ConvertToDraft(0));
  EXPECT_FALSE(cut.EraseLayerDraft());
  EXPECT_FALSE(cut.SaveUndo());
  EXPECT_FALSE(cut.Undo());
  cut.SetFrameProperties("x", 2, 2, true, 2);
  EXPECT_EQ(cut.stateFlags, 0u);
  EXPECT_EQ(cut.currentFrame, -1);
}

TEST(Cut, FrameWithoutRecordsRefusesTheOperationsOnItsRecord) {
  TestCut test(2, 0);
  Cut& cut = test.cut;
  int32_t x = 0;
  int32_t y = 0;
  EXPECT_EQ(cut.CurrentCell(&x, &y), nullptr);
  EXPECT_FALSE(cut.LayerUp());
  EXPECT_FALSE(cut.LayerDown());
  EXPECT_FALSE(cut.AddCurrentCell(0));
  EXPECT_FALSE(cut.InsertCurrentCell(0));
  EXPECT_FALSE(cut.DeleteCurrentCell());
  EXPECT_FALSE(cut.PreviousCellOfFrame());
  EXPECT_FALSE(cut.NextCellOfFrame());
  EXPECT_FALSE(cut.FirstCellOfFrame());
  EXPECT_FALSE(cut.LastCellOfFrame());
  EXPECT_FALSE(cut.EraseDraft());
  EXPECT_FALSE(cut.EraseDraftRect(0, 0, 1, 1));
  EXPECT_FALSE(cut.ConvertToDraft(0));
  EXPECT_FALSE(cut.ConvertToDraftRect(0, 0, 1, 1, 0));
  EXPECT_FALSE(cut.EraseLayerDraft());
  EXPECT_FALSE(cut.SaveUndo());
  EXPECT_EQ(test.Marks(), "");
}

TEST(Cut, AddLayerMakesItWithOneBlankCellAndMarksImages) {
  TestCut test(1, 0);
  Layer* layer = test.cut.AddLayer("back", 6, 3, nullptr);
  ASSERT_NE(layer, nullptr);
  EXPECT_EQ(test.LayerAt(0), layer);
  EXPECT_STREQ(layer->name, "back");
  EXPECT_EQ(layer->followFrame, 0u);
  EXPECT_EQ(layer->prototype, nullptr);
  ASSERT_EQ(layer->cells.Count(), 1);
  EXPECT_EQ(Picture(layer->CellAt(0)), "000000/000000/000000");
  EXPECT_EQ(test.Marks(), "mit");
  EXPECT_EQ(test.FrameAt(0)->records.Count(), 0);
  EXPECT_GE(test.cut.undoCapacity, layer->CellAt(0)->pitch * 3);
}

TEST(Cut, AddLayerUsesThePrototype) {
  TestCut test(1, 0);
  IndexedImage prototype;
  Layer* layer = test.cut.AddLayer("a", 6, 3, &prototype);
  EXPECT_EQ(layer->prototype, &prototype);
  EXPECT_EQ(layer->CellAt(0)->colors, 256);
}

TEST(Cut, LayerWithoutANameIsNumberedByTheLayersBeforeIt) {
  TestCut test(1, 0);
  EXPECT_STREQ(test.cut.AddLayer(nullptr, 1, 1, nullptr)->name, "LAYER 0");
  EXPECT_STREQ(test.cut.AddLayer("", 1, 1, nullptr)->name, "LAYER 1");
  while (test.cut.layers.Count() < 9) test.cut.AddLayer("x", 1, 1, nullptr);
  EXPECT_STREQ(test.cut.AddLayer(nullptr, 1, 1, nullptr)->name, "LAYER 9");
  EXPECT_STREQ(test.cut.AddLayer(nullptr, 1, 1, nullptr)->name, "LAYER10");
}

TEST(Cut, NewLayerComesLastWhereverTheCursorIs) {
  TestCut test(1, 3);
  test.cut.layers.SeekFirst();
  Layer* layer = test.cut.AddLayer("D", 1, 1, nullptr);
  EXPECT_EQ(test.cut.layers.Count(), 4);
  EXPECT_EQ(test.LayerAt(3), layer);
}

TEST(Cut, AttachedLayerStandsBehindTheSameIndexInAllFrames) {
  TestCut test(3, 2);
  test.FrameAt(0)->SelectRecord(0);
  test.cut.AddLayer("C", 4, 2, nullptr);
  test.cut.stateFlags = 0;
  EXPECT_TRUE(test.cut.AttachLayer(2, 7, -8));
  for (int32_t i = 0; i < 3; ++i) {
    EXPECT_EQ(Stacking(test.FrameAt(i)), "ACB");
    EXPECT_EQ(test.FrameAt(i)->currentRecord, 1);
    EXPECT_EQ(*test.FrameAt(i)->records.At(1), (FrameRecord{test.LayerAt(2), 0, 7, -8}));
  }
  EXPECT_EQ(test.Marks(), "");
}

TEST(Cut, AttachLayerSkipsFramesWithoutThatIndex) {
  TestCut test(3, 4);
  test.FrameAt(1)->RemoveLayer(test.LayerAt(3));
  test.FrameAt(1)->RemoveLayer(test.LayerAt(2));
  ASSERT_EQ(test.FrameAt(0)->currentRecord, 3);
  test.cut.AddLayer("E", 4, 2, nullptr);
  EXPECT_TRUE(test.cut.AttachLayer(4, 0, 0));
  EXPECT_EQ(Stacking(test.FrameAt(0)), "ABCDE");
  EXPECT_EQ(Stacking(test.FrameAt(1)), "AB");
  EXPECT_EQ(test.FrameAt(1)->currentRecord, 1);
  EXPECT_EQ(Stacking(test.FrameAt(2)), "ABCDE");
}

TEST(Cut, AttachLayerWithoutACurrentRecordAddsToEveryFrame) {
  TestCut test(2, 0);
  test.cut.AddLayer("A", 4, 2, nullptr);
  EXPECT_TRUE(test.cut.AttachLayer(0, 1, 2));
  EXPECT_EQ(Stacking(test.FrameAt(0)), "A");
  EXPECT_EQ(Stacking(test.FrameAt(1)), "A");
  EXPECT_EQ(test.FrameAt(1)->currentRecord, 0);
}

TEST(Cut, AttachingAMissingLayerIsFalse) {
  TestCut test(1, 1);
  for (int32_t index : {-1, 1, 5}) {
    EXPECT_FALSE(test.cut.AttachLayer(index, 0, 0));
    EXPECT_FALSE(test.cut.AttachLayerBefore(index, 0, 0));
  }
  EXPECT_EQ(Stacking(test.FrameAt(0)), "A");
  EXPECT_EQ(test.Marks(), "");
}

TEST(Cut, AttachLayerBeforePutsItUnderTheSameIndexAndMarksImages) {
  TestCut test(3, 2);
  test.FrameAt(1)->RemoveLayer(test.LayerAt(1));
  ASSERT_EQ(test.FrameAt(0)->currentRecord, 1);
  test.cut.AddLayer("C", 4, 2, nullptr);
  test.cut.stateFlags = 0;
  EXPECT_TRUE(test.cut.AttachLayerBefore(2, 7, 8));
  EXPECT_EQ(Stacking(test.FrameAt(0)), "ACB");
  EXPECT_EQ(test.FrameAt(0)->currentRecord, 1);
  EXPECT_EQ(*test.FrameAt(0)->records.At(1), (FrameRecord{test.LayerAt(2), 0, 7, 8}));
  EXPECT_EQ(Stacking(test.FrameAt(1)), "A");
  EXPECT_EQ(Stacking(test.FrameAt(2)), "ACB");
  EXPECT_EQ(test.Marks(), "mit");
}

TEST(Cut, AttachLayerBeforeWithoutACurrentRecordEntersTwice) {
  TestCut test(2, 0);
  test.cut.AddLayer("A", 4, 2, nullptr);
  EXPECT_TRUE(test.cut.AttachLayerBefore(0, 0, 0));
  EXPECT_EQ(Stacking(test.FrameAt(0)), "AA");
  EXPECT_EQ(Stacking(test.FrameAt(1)), "AA");
}

TEST(Cut, DeleteLayerTakesItOutOfAllFrames) {
  TestCut test(3, 3);
  test.FrameAt(1)->RemoveLayer(test.LayerAt(1));
  test.FrameAt(1)->SelectRecord(0);
  EXPECT_TRUE(test.cut.DeleteLayer(1));
  EXPECT_EQ(test.cut.layers.Count(), 2);
  EXPECT_STREQ(test.LayerAt(1)->name, "C");
  for (int32_t i = 0; i < 3; ++i) EXPECT_EQ(Stacking(test.FrameAt(i)), "AC");
  EXPECT_EQ(test.FrameAt(0)->currentRecord, 1);
  EXPECT_EQ(test.FrameAt(1)->currentRecord, 0);
  EXPECT_EQ(test.Marks(), "mit");
}

TEST(Cut, DeletingAMissingLayerIsFalse) {
  TestCut test(1, 2);
  EXPECT_FALSE(test.cut.DeleteLayer(2));
  EXPECT_FALSE(test.cut.DeleteLayer(-1));
  EXPECT_EQ(test.cut.layers.Count(), 2);
  EXPECT_EQ(Stacking(test.FrameAt(0)), "AB");
  EXPECT_EQ(test.Marks(), "");
}

TEST(Cut, DeletedLayersCellCannotBeUndoneInto) {
  TestCut test(1, 2);
  test.Cell(0, 1) = 3;
  EXPECT_TRUE(test.cut.SaveUndo());
  ASSERT_EQ(test.cut.undoCell, test.LayerAt(1)->CellAt(3));
  EXPECT_TRUE(test.cut.DeleteLayer(1));
  EXPECT_EQ(test.cut.undoCell, nullptr);
  EXPECT_FALSE(test.cut.Undo());
}

TEST(Cut, DeletingAnotherLayerKeepsTheUndo) {
  TestCut test(1, 2);
  test.cut.SaveUndo();
  CellImage* cell = test.cut.undoCell;
  EXPECT_TRUE(test.cut.DeleteLayer(0));
  EXPECT_EQ(test.cut.undoCell, cell);
  EXPECT_TRUE(test.cut.Undo());
}

TEST(Cut, LayerUpRaisesItFromTheCurrentFrameOn) {
  TestCut test(4, 3);
  for (int32_t i = 0; i < 4; ++i) test.FrameAt(i)->SelectRecord(0);
  test.cut.currentFrame = 1;
  EXPECT_TRUE(test.cut.LayerUp());
  EXPECT_EQ(Stacking(test.FrameAt(0)), "ABC");
  EXPECT_EQ(test.FrameAt(0)->currentRecord, 0);
  for (int32_t i = 1; i < 4; ++i) {
    EXPECT_EQ(Stacking(test.FrameAt(i)), "BAC");
    EXPECT_EQ(test.FrameAt(i)->currentRecord, 1);
  }
  EXPECT_EQ(test.Marks(), "mit");
}

TEST(Cut, LayerDownLowersItFromTheCurrentFrameOn) {
  TestCut test(3, 3);
  test.cut.currentFrame = 1;
  EXPECT_TRUE(test.cut.LayerDown());
  EXPECT_EQ(Stacking(test.FrameAt(0)), "ABC");
  EXPECT_EQ(test.FrameAt(0)->currentRecord, 2);
  for (int32_t i = 1; i < 3; ++i) {
    EXPECT_EQ(Stacking(test.FrameAt(i)), "ACB");
    EXPECT_EQ(test.FrameAt(i)->currentRecord, 1);
  }
  EXPECT_EQ(test.Marks(), "mit");
}

TEST(Cut, LayerUpOnlySelectsWhereAnotherLayerStandsAtTheIndex) {
  TestCut test(4, 3);
  test.FrameAt(1)->MoveRecordDown(1);
  test.FrameAt(2)->RemoveLayer(test.LayerAt(2));
  test.FrameAt(2)->RemoveLayer(test.LayerAt(1));
  test.FrameAt(0)->SelectRecord(1);
  EXPECT_TRUE(test.cut.LayerUp());
  EXPECT_EQ(Stacking(test.FrameAt(0)), "ACB");
  EXPECT_EQ(test.FrameAt(0)->currentRecord, 2);
  EXPECT_EQ(Stacking(test.FrameAt(1)), "BAC");
  EXPECT_EQ(test.FrameAt(1)->currentRecord, 1);
  EXPECT_EQ(Stacking(test.FrameAt(2)), "A");
  EXPECT_EQ(test.FrameAt(2)->currentRecord, 0);
  EXPECT_EQ(Stacking(test.FrameAt(3)), "ACB");
}

TEST(Cut, LayerUpStopsAtTheTopOfTheCurrentFrame) {
  TestCut test(2, 2);
  EXPECT_FALSE(test.cut.LayerUp());
  EXPECT_EQ(Stacking(test.FrameAt(0)), "AB");
  EXPECT_EQ(Stacking(test.FrameAt(1)), "AB");
  EXPECT_EQ(test.Marks(), "");
}

TEST(Cut, LayerDownStopsAtTheBottomOfTheCurrentFrame) {
  TestCut test(2, 2);
  test.FrameAt(0)->SelectRecord(0);
  EXPECT_FALSE(test.cut.LayerDown());
  EXPECT_EQ(Stacking(test.FrameAt(0)), "AB");
  EXPECT_EQ(test.Marks(), "");
}

TEST(Cut, LayerUpPassesLaterFramesWhereItIsOnTop) {
  TestCut test(2, 3);
  test.FrameAt(0)->SelectRecord(1);
  test.FrameAt(1)->RemoveLayer(test.LayerAt(2));
  EXPECT_TRUE(test.cut.LayerUp());
  EXPECT_EQ(Stacking(test.FrameAt(0)), "ACB");
  EXPECT_EQ(Stacking(test.FrameAt(1)), "AB");
  EXPECT_EQ(test.FrameAt(1)->currentRecord, 1);
}

TEST(Cut, PurgeDeletesUnusedLayersButPassesOverTheNeighbour) {
  TestCut test(2, 3);
  for (int32_t i = 0; i < 2; ++i) {
    test.FrameAt(i)->RemoveLayer(test.LayerAt(0));
    test.FrameAt(i)->RemoveLayer(test.LayerAt(1));
  }
  test.cut.PurgeUnusedLayers();
  ASSERT_EQ(test.cut.layers.Count(), 2);
  EXPECT_STREQ(test.LayerAt(0)->name, "B");
  EXPECT_STREQ(test.LayerAt(1)->name, "C");
  test.cut.PurgeUnusedLayers();
  ASSERT_EQ(test.cut.layers.Count(), 1);
  EXPECT_STREQ(test.LayerAt(0)->name, "C");
  test.cut.PurgeUnusedLayers();
  EXPECT_EQ(test.cut.layers.Count(), 1);
}

TEST(Cut, PurgeKeepsLayersThatAnyFrameRefersToEvenBlank) {
  TestCut test(3, 2);
  test.FrameAt(0)->RemoveLayer(test.LayerAt(0));
  test.FrameAt(1)->RemoveLayer(test.LayerAt(0));
  test.Cell(2, 0) = -1;
  test.cut.PurgeUnusedLayers();
  EXPECT_EQ(test.cut.layers.Count(), 2);
}

TEST(Cut, PurgeForgetsTheUndoOfAPurgedLayerAlone) {
  TestCut test(1, 2);
  test.FrameAt(0)->SelectRecord(0);
  test.cut.SaveUndo();
  test.FrameAt(0)->RemoveLayer(test.LayerAt(1));
  test.cut.PurgeUnusedLayers();
  ASSERT_EQ(test.cut.layers.Count(), 1);
  EXPECT_EQ(test.cut.undoCell, test.LayerAt(0)->CellAt(0));
  test.FrameAt(0)->RemoveLayer(test.LayerAt(0));
  test.cut.PurgeUnusedLayers();
  EXPECT_EQ(test.cut.layers.Count(), 0);
  EXPECT_EQ(test.cut.undoCell, nullptr);
}

TEST(Cut, PurgeOnACutWithoutFramesFollowsTheSameWalk) {
  TestCut test(0, 0);
  for (const char* name : {"A", "B", "C"}) test.cut.AddLayer(name, 1, 1, nullptr);
  test.cut.PurgeUnusedLayers();
  ASSERT_EQ(test.cut.layers.Count(), 1);
  EXPECT_STREQ(test.LayerAt(0)->name, "B");
}

TEST(Cut, FirstFrameBecomesTheCurrentOne) {
  Cut cut(30, 20, 24, "", 0);
  cut.stateFlags = 0;
  Frame* frame = cut.AddFrame();
  ASSERT_NE(frame, nullptr);
  EXPECT_EQ(cut.currentFrame, 0);
  EXPECT_EQ(cut.frames.At(0), frame);
  EXPECT_EQ(cut.CurrentFrame(), frame);
  EXPECT_EQ(frame->width, 30);
  EXPECT_EQ(frame->height, 20);
  EXPECT_EQ(frame->records.Count(), 0);
  EXPECT_EQ(cut.stateFlags, kMarks);
}

TEST(Cut, AddFramePutsItBehindTheCurrentOne) {
  TestCut test(3, 1);
  Frame* second = test.FrameAt(1);
  test.cut.currentFrame = 1;
  test.cut.frames.SeekFirst();
  Frame* frame = test.cut.AddFrame();
  EXPECT_EQ(test.cut.currentFrame, 2);
  EXPECT_EQ(test.cut.frames.Count(), 4);
  EXPECT_EQ(test.FrameAt(1), second);
  EXPECT_EQ(test.FrameAt(2), frame);
  EXPECT_EQ(frame->records.Count(), 0);
  EXPECT_EQ(test.Marks(), "mit");
}

TEST(Cut, InsertFramePutsItAheadOfTheCurrentOneAndMarksNothing) {
  TestCut test(3, 1);
  Frame* second = test.FrameAt(1);
  test.cut.currentFrame = 1;
  test.cut.frames.SeekFirst();
  EXPECT_TRUE(test.cut.InsertFrame());
  EXPECT_EQ(test.cut.currentFrame, 1);
  EXPECT_EQ(test.cut.frames.Count(), 4);
  EXPECT_EQ(test.FrameAt(2), second);
  EXPECT_EQ(test.FrameAt(1)->records.Count(), 0);
  EXPECT_EQ(test.FrameAt(1)->width, 20);
  EXPECT_EQ(test.FrameAt(1)->height, 10);
  EXPECT_EQ(test.Marks(), "");
}

TEST(Cut, OnlyFrameIsNotDeleted) {
  TestCut test(1, 1);
  EXPECT_FALSE(test.cut.DeleteFrame());
  EXPECT_EQ(test.cut.frames.Count(), 1);
  EXPECT_EQ(test.cut.currentFrame, 0);
  EXPECT_EQ(test.Marks(), "");
}

TEST(Cut, DeletingTheLastFrameSelectsTheNewLast) {
  TestCut test(3, 1);
  test.cut.currentFrame = 2;
  Frame* second = test.FrameAt(1);
  EXPECT_TRUE(test.cut.DeleteFrame());
  EXPECT_EQ(test.cut.currentFrame, 1);
  EXPECT_EQ(test.cut.CurrentFrame(), second);
  EXPECT_EQ(test.Marks(), "mit");
}

TEST(Cut, DeletingAFrameKeepsTheRecordUnderEdit) {
  TestCut test(3, 3);
  test.cut.currentFrame = 1;
  test.FrameAt(1)->SelectRecord(0);
  Frame* third = test.FrameAt(2);
  ASSERT_EQ(third->currentRecord, 2);
  EXPECT_TRUE(test.cut.DeleteFrame());
  EXPECT_EQ(test.cut.currentFrame, 1);
  EXPECT_EQ(test.cut.CurrentFrame(), third);
  EXPECT_EQ(third->currentRecord, 0);
}

TEST(Cut, DeletingAFrameLeavesAShorterFrameItsOwnRecord) {
  TestCut test(2, 3);
  test.FrameAt(1)->RemoveLayer(test.LayerAt(2));
  test.FrameAt(1)->SelectRecord(0);
  EXPECT_TRUE(test.cut.DeleteFrame());
  EXPECT_EQ(test.cut.CurrentFrame()->currentRecord, 0);
}

TEST(Cut, AddedCellLiftsTheNumbersBehindIt) {
  TestCut test(4, 1);
  test.Cell(0, 0) = 1;
  test.Cell(1, 0) = 2;
  test.Cell(2, 0) = 1;
  test.Cell(3, 0) = 3;
  EXPECT_TRUE(test.cut.AddCurrentCell(9));
  EXPECT_EQ(Drawings(test.LayerAt(0)), "12934");
  EXPECT_EQ(test.Cell(0, 0), 2);
  EXPECT_EQ(test.Cell(1, 0), 3);
  EXPECT_EQ(test.Cell(2, 0), 1);
  EXPECT_EQ(test.Cell(3, 0), 4);
  EXPECT_EQ(test.Shown(0), 9);
  EXPECT_EQ(test.Shown(1), 3);
  EXPECT_EQ(test.Shown(2), 2);
  EXPECT_EQ(test.Shown(3), 4);
  EXPECT_EQ(test.Marks(), "mit");
}

TEST(Cut, CellAddedBehindTheLastIsShown) {
  TestCut test(2, 1);
  test.Cell(0, 0) = 3;
  test.Cell(1, 0) = 3;
  EXPECT_TRUE(test.cut.AddCurrentCell(9));
  EXPECT_EQ(Drawings(test.LayerAt(0)), "12349");
  EXPECT_EQ(test.Cell(0, 0), 4);
  EXPECT_EQ(test.Cell(1, 0), 3);
}

TEST(Cut, InsertedCellLiftsTheOldNumberToo) {
  TestCut test(4, 1);
  test.Cell(0, 0) = 1;
  test.Cell(1, 0) = 2;
  test.Cell(2, 0) = 1;
  test.Cell(3, 0) = 0;
  EXPECT_TRUE(test.cut.InsertCurrentCell(9));
  EXPECT_EQ(Drawings(test.LayerAt(0)), "19234");
  EXPECT_EQ(test.Cell(0, 0), 1);
  EXPECT_EQ(test.Cell(1, 0), 3);
  EXPECT_EQ(test.Cell(2, 0), 2);
  EXPECT_EQ(test.Cell(3, 0), 0);
  EXPECT_EQ(test.Shown(0), 9);
  EXPECT_EQ(test.Shown(1), 3);
  EXPECT_EQ(test.Shown(2), 2);
  EXPECT_EQ(test.Shown(3), 1);
  EXPECT_EQ(test.Marks(), "mit");
}

TEST(Cut, CellEntersWithoutTouchingOtherLayersAndBlankRecords) {
  TestCut test(2, 2);
  test.Cell(0, 0) = 3;
  test.Cell(1, 0) = 2;
  test.Cell(1, 1) = -3;
  EXPECT_TRUE(test.cut.AddCurrentCell(9));
  EXPECT_EQ(test.Cell(0, 1), 1);
  EXPECT_EQ(test.Cell(0, 0), 3);
  EXPECT_EQ(test.Cell(1, 0), 2);
  EXPECT_EQ(test.Cell(1, 1), -3);
  EXPECT_EQ(Drawings(test.LayerAt(0)), "1234");
}

TEST(Cut, OtherRecordsOfTheLayerInTheSameFrameAreRenumbered) {
  TestCut test(1, 1);
  test.FrameAt(0)->AddRecord(test.LayerAt(0), 2, 0, 0);
  test.FrameAt(0)->SelectRecord(0);
  EXPECT_TRUE(test.cut.AddCurrentCell(9));
  EXPECT_EQ(test.Cell(0, 0), 1);
  EXPECT_EQ(test.Cell(0, 1), 3);
}

TEST(Cut, DeletingACellShowsItsSuccessorInEveryFrame) {
  TestCut test(4, 1);
  test.Cell(0, 0) = 2;
  test.Cell(1, 0) = 2;
  test.Cell(2, 0) = 3;
  test.Cell(3, 0) = 1;
  EXPECT_TRUE(test.cut.DeleteCurrentCell());
  EXPECT_EQ(Drawings(test.LayerAt(0)), "124");
  EXPECT_EQ(test.Cell(0, 0), 2);
  EXPECT_EQ(test.Cell(1, 0), 2);
  EXPECT_EQ(test.Cell(2, 0), 2);
  EXPECT_EQ(test.Cell(3, 0), 1);
  EXPECT_EQ(test.Shown(1), 4);
  EXPECT_EQ(test.Marks(), "mit");
}

TEST(Cut, DeletingTheLastCellShowsItsPredecessorInEveryFrame) {
  TestCut test(3, 1);
  test.Cell(0, 0) = 3;
  test.Cell(1, 0) = 3;
  test.Cell(2, 0) = 2;
  EXPECT_TRUE(test.cut.DeleteCurrentCell());
  EXPECT_EQ(Drawings(test.LayerAt(0)), "123");
  EXPECT_EQ(test.Cell(0, 0), 2);
  EXPECT_EQ(test.Cell(1, 0), 2);
  EXPECT_EQ(test.Cell(2, 0), 2);
}

TEST(Cut, OnlyCellOfALayerIsNotDeleted) {
  TestCut test(1, 0);
  test.cut.AddLayer("A", 4, 2, nullptr);
  test.cut.AttachLayer(0, 0, 0);
  test.cut.stateFlags = 0;
  EXPECT_FALSE(test.cut.DeleteCurrentCell());
  EXPECT_EQ(test.LayerAt(0)->cells.Count(), 1);
  EXPECT_EQ(test.Marks(), "");
}

TEST(Cut, DeletedCellCannotBeUndoneInto) {
  TestCut test(1, 1);
  test.cut.SaveUndo();
  EXPECT_TRUE(test.cut.DeleteCurrentCell());
  EXPECT_EQ(test.cut.undoCell, nullptr);
  EXPECT_FALSE(test.cut.Undo());
}

TEST(Cut, DeletingAnotherCellKeepsTheUndo) {
  TestCut test(1, 1);
  test.cut.SaveUndo();
  CellImage* cell = test.cut.undoCell;
  test.Cell(0, 0) = 2;
  EXPECT_TRUE(test.cut.DeleteCurrentCell());
  EXPECT_EQ(test.cut.undoCell, cell);
}

TEST(Cut, BlankRecordRefusesTheCellOperations) {
  TestCut test(2, 1);
  test.Cell(0, 0) = -2;
  EXPECT_FALSE(test.cut.AddCurrentCell(9));
  EXPECT_FALSE(test.cut.InsertCurrentCell(9));
  EXPECT_FALSE(test.cut.DeleteCurrentCell());
  EXPECT_FALSE(test.cut.PreviousCellOfFrame());
  EXPECT_FALSE(test.cut.NextCellOfFrame());
  EXPECT_FALSE(test.cut.FirstCellOfFrame());
  EXPECT_FALSE(test.cut.LastCellOfFrame());
  EXPECT_EQ(test.Cell(0, 0), -2);
  EXPECT_EQ(test.Cell(1, 0), 0);
  EXPECT_EQ(Drawings(test.LayerAt(0)), "1234");
  EXPECT_EQ(test.Marks(), "");
}

TEST(Cut, CellStepsTouchTheCurrentFrameAloneAndMarkImages) {
  TestCut test(3, 1);
  test.cut.currentFrame = 1;
  EXPECT_TRUE(test.cut.NextCellOfFrame());
  EXPECT_EQ(test.Cell(1, 0), 1);
  EXPECT_EQ(test.Marks(), "mit");
  EXPECT_TRUE(test.cut.LastCellOfFrame());
  EXPECT_EQ(test.Cell(1, 0), 3);
  EXPECT_EQ(test.Marks(), "mit");
  EXPECT_TRUE(test.cut.PreviousCellOfFrame());
  EXPECT_EQ(test.Cell(1, 0), 2);
  EXPECT_EQ(test.Marks(), "mit");
  EXPECT_TRUE(test.cut.FirstCellOfFrame());
  EXPECT_EQ(test.Cell(1, 0), 0);
  EXPECT_EQ(test.Marks(), "mit");
  EXPECT_EQ(test.Cell(0, 0), 0);
  EXPECT_EQ(test.Cell(2, 0), 0);
}

TEST(Cut, CellStepsAtTheEndsMarkNothing) {
  TestCut test(1, 1);
  EXPECT_FALSE(test.cut.PreviousCellOfFrame());
  EXPECT_EQ(test.Marks(), "");
  test.Cell(0, 0) = 3;
  EXPECT_FALSE(test.cut.NextCellOfFrame());
  EXPECT_EQ(test.Marks(), "");
  EXPECT_EQ(test.Cell(0, 0), 3);
}

TEST(Cut, CurrentCellComesWithItsPlaceOnTheCut) {
  TestCut test(2, 1);
  test.cut.currentFrame = 1;
  test.LayerAt(0)->followFrame = 1;
  test.FrameAt(1)->x = 10;
  test.FrameAt(1)->y = 20;
  test.FrameAt(1)->OffsetRecord(0, 1, 2);
  test.Cell(1, 0) = 2;
  int32_t x = 0;
  int32_t y = 0;
  EXPECT_EQ(test.cut.CurrentCell(&x, &y), test.LayerAt(0)->CellAt(2));
  EXPECT_EQ(x, 11);
  EXPECT_EQ(y, 22);
}

TEST(Cut, NoCurrentCellOnABlankRecordOrWithoutAValidFrame) {
  TestCut test(2, 1);
  int32_t x = 0;
  int32_t y = 0;
  for (int32_t frame : {-1, 2}) {
    test.cut.currentFrame = frame;
    EXPECT_EQ(test.cut.CurrentCell(&x, &y), nullptr);
  }
  test.cut.currentFrame = 0;
  EXPECT_NE(test.cut.CurrentCell(&x, &y), nullptr);
  test.Cell(0, 0) = -1;
  EXPECT_EQ(test.cut.CurrentCell(&x, &y), nullptr);
}

TEST(Cut, EraseDraftClearsTheSketchOfTheCurrentCell) {
  TestCut test(1, 1);
  CellImage* cell = test.LayerAt(0)->CellAt(0);
  Paint(cell, "1567/8b40");
  test.LayerAt(0)->CellAt(1)->Fill(5);
  EXPECT_TRUE(test.cut.EraseDraft());
  EXPECT_EQ(Picture(cell), "1000/8b40");
  EXPECT_EQ(Picture(test.LayerAt(0)->CellAt(1)), "5555/5555");
  EXPECT_EQ(test.Marks(), "mit");
}

TEST(Cut, EraseDraftRectStaysInTheRectangle) {
  TestCut test(1, 1);
  CellImage* cell = test.LayerAt(0)->CellAt(0);
  Paint(cell, "5555/5555");
  EXPECT_TRUE(test.cut.EraseDraftRect(1, 0, 2, 1));
  EXPECT_EQ(Picture(cell), "5005/5555");
  EXPECT_EQ(test.Marks(), "mit");
}

TEST(Cut, ConvertToDraftTurnsInkIntoSketchAndWhiteIntoNothing) {
  TestCut test(1, 1);
  CellImage* cell = test.LayerAt(0)->CellAt(0);
  Paint(cell, "1234/89ab");
  EXPECT_TRUE(test.cut.ConvertToDraft(0));
  EXPECT_EQ(Picture(cell), "5670/567b");
  EXPECT_EQ(test.Marks(), "mit");
}

TEST(Cut, ConvertToDraftLeavesProtectedColors) {
  TestCut test(1, 1);
  CellImage* cell = test.LayerAt(0)->CellAt(0);
  Paint(cell, "1234/89ab");
  EXPECT_TRUE(test.cut.ConvertToDraft(1u << 1 | 1u << 4 | 1u << 9));
  EXPECT_EQ(Picture(cell), "1674/597b");
}

TEST(Cut, ConvertToDraftRectStaysInTheRectangle) {
  TestCut test(1, 1);
  CellImage* cell = test.LayerAt(0)->CellAt(0);
  Paint(cell, "8888/8884");
  EXPECT_TRUE(test.cut.ConvertToDraftRect(2, 1, 2, 1, 0));
  EXPECT_EQ(Picture(cell), "8888/8850");
  EXPECT_TRUE(test.cut.ConvertToDraftRect(0, 0, 4, 1, 1u << 8));
  EXPECT_EQ(Picture(cell), "8888/8850");
}

TEST(Cut, EraseLayerDraftReachesEveryCellOfTheLayer) {
  TestCut test(1, 2);
  for (int32_t i = 0; i < 4; ++i) {
    Paint(test.LayerAt(0)->CellAt(i), "5678/5678");
    Paint(test.LayerAt(1)->CellAt(i), "5678/5678");
  }
  EXPECT_TRUE(test.cut.EraseLayerDraft());
  for (int32_t i = 0; i < 4; ++i) {
    EXPECT_EQ(Picture(test.LayerAt(0)->CellAt(i)), "5678/5678");
    EXPECT_EQ(Picture(test.LayerAt(1)->CellAt(i)), "0008/0008");
  }
  EXPECT_EQ(test.Marks(), "mit");
}

TEST(Cut, BlankRecordRefusesTheDraftOperationsAndSaveUndo) {
  TestCut test(1, 1);
  for (int32_t i = 0; i < 4; ++i) Paint(test.LayerAt(0)->CellAt(i), "5678/5678");
  test.Cell(0, 0) = -1;
  EXPECT_FALSE(test.cut.EraseDraft());
  EXPECT_FALSE(test.cut.EraseDraftRect(0, 0, 4, 2));
  EXPECT_FALSE(test.cut.ConvertToDraft(0));
  EXPECT_FALSE(test.cut.ConvertToDraftRect(0, 0, 4, 2, 0));
  EXPECT_FALSE(test.cut.EraseLayerDraft());
  EXPECT_FALSE(test.cut.SaveUndo());
  for (int32_t i = 0; i < 4; ++i) EXPECT_EQ(Picture(test.LayerAt(0)->CellAt(i)), "5678/5678");
  EXPECT_EQ(test.cut.undoCell, nullptr);
  EXPECT_EQ(test.Marks(), "");
}

TEST(Cut, UndoExchangesAndASecondOneRedoes) {
  TestCut test(1, 1);
  CellImage* cell = test.LayerAt(0)->CellAt(0);
  Paint(cell, "1234/5678");
  EXPECT_TRUE(test.cut.SaveUndo());
  EXPECT_EQ(test.Marks(), "mit");
  EXPECT_EQ(test.cut.undoCell, cell);
  Paint(cell, "8888/0000");
  EXPECT_TRUE(test.cut.Undo());
  EXPECT_EQ(Picture(cell), "1234/5678");
  EXPECT_EQ(test.Marks(), "mit");
  EXPECT_TRUE(test.cut.Undo());
  EXPECT_EQ(Picture(cell), "8888/0000");
}

TEST(Cut, UndoWithoutASavedCellIsFalse) {
  TestCut test(1, 1);
  EXPECT_FALSE(test.cut.Undo());
  EXPECT_EQ(test.Marks(), "");
}

TEST(Cut, UndoWorksOnTheSavedCellAndNotOnTheCurrentOne) {
  TestCut test(2, 2);
  CellImage* cell = test.LayerAt(1)->CellAt(0);
  test.cut.SaveUndo();
  cell->Fill(9);
  test.FrameAt(0)->SelectRecord(0);
  test.cut.currentFrame = 1;
  test.Cell(1, 1) = 2;
  EXPECT_TRUE(test.cut.Undo());
  EXPECT_EQ(Drawing(cell), 1);
  EXPECT_EQ(Drawings(test.LayerAt(0)), "1234");
  EXPECT_EQ(Drawings(test.LayerAt(1)), "1234");
}

TEST(Cut, SaveUndoReplacesTheOneLevel) {
  TestCut test(1, 1);
  CellImage* first = test.LayerAt(0)->CellAt(0);
  CellImage* second = test.LayerAt(0)->CellAt(1);
  test.cut.SaveUndo();
  first->Fill(8);
  test.Cell(0, 0) = 1;
  test.cut.SaveUndo();
  second->Fill(9);
  EXPECT_TRUE(test.cut.Undo());
  EXPECT_EQ(Drawing(first), 8);
  EXPECT_EQ(Drawing(second), 2);
}

TEST(Cut, UndoBufferHoldsThePixelBytesOfTheCell) {
  TestCut test(1, 1);
  CellImage* cell = test.LayerAt(0)->CellAt(0);
  Paint(cell, "1234/5678");
  test.cut.SaveUndo();
  ASSERT_EQ(cell->pitch, 4);
  const uint8_t rows[2][2] = {{0x12, 0x34}, {0x56, 0x78}};
  EXPECT_EQ(std::memcmp(test.cut.undoPixels, rows[0], 2), 0);
  EXPECT_EQ(std::memcmp(test.cut.undoPixels + 4, rows[1], 2), 0);
}

TEST(Cut, UndoBufferOnlyGrows) {
  TestCut test(1, 0);
  test.cut.AddLayer("A", 4, 2, nullptr);
  EXPECT_EQ(test.cut.undoCapacity, 8);
  test.cut.AddLayer("B", 9, 10, nullptr);
  EXPECT_EQ(test.cut.undoCapacity, 80);
  uint8_t* pixels = test.cut.undoPixels;
  test.cut.AddLayer("C", 1, 1, nullptr);
  test.cut.AddLayer("D", 9, 10, nullptr);
  EXPECT_EQ(test.cut.undoCapacity, 80);
  EXPECT_EQ(test.cut.undoPixels, pixels);
}

TEST(Cut, GrowingUndoBufferKeepsItsCopy) {
  TestCut test(1, 1);
  CellImage* cell = test.LayerAt(0)->CellAt(0);
  Paint(cell, "1234/5678");
  test.cut.SaveUndo();
  cell->Fill(9);
  test.cut.AddLayer("B", 100, 100, nullptr);
  EXPECT_GE(test.cut.undoCapacity, 52 * 100);
  EXPECT_EQ(test.cut.undoCell, cell);
  EXPECT_TRUE(test.cut.Undo());
  EXPECT_EQ(Picture(cell), "1234/5678");
}

TEST(Cut, FramePropertiesAreStoredAndMarkTiming) {
  TestCut test(2, 0);
  test.cut.currentFrame = 1;
  test.cut.SetFrameProperties("note", -3, 0, true, 30);
  Frame* frame = test.FrameAt(1);
  EXPECT_STREQ(frame->comment, "note");
  EXPECT_EQ(frame->time, -3);
  EXPECT_EQ(frame->loop, 0);
  EXPECT_EQ(frame->brightness, -31);
  EXPECT_EQ(test.cut.stateFlags, kTimingMarks);
  EXPECT_EQ(test.FrameAt(0)->time, 1);
  test.cut.SetFrameProperties("note", -3, 0, false, 30);
  EXPECT_EQ(frame->brightness, 30);
}

TEST(Cut, PresentFramePropertiesMarkNothing) {
  TestCut test(1, 0);
  test.cut.SetFrameProperties("", 1, 1, false, 50);
  EXPECT_EQ(test.Marks(), "");
  test.cut.SetFrameProperties("a", 2, 3, true, 0);
  EXPECT_EQ(test.Marks(), "mt");
  EXPECT_EQ(test.FrameAt(0)->brightness, -1);
  test.cut.SetFrameProperties("a", 2, 3, true, 0);
  EXPECT_EQ(test.Marks(), "");
}

TEST(Cut, EachFramePropertyAloneMarksTiming) {
  TestCut test(1, 0);
  test.cut.SetFrameProperties("b", 1, 1, false, 50);
  EXPECT_EQ(test.Marks(), "mt");
  test.cut.SetFrameProperties("b", 2, 1, false, 50);
  EXPECT_EQ(test.Marks(), "mt");
  test.cut.SetFrameProperties("b", 2, 0, false, 50);
  EXPECT_EQ(test.Marks(), "mt");
  test.cut.SetFrameProperties("b", 2, 0, true, 50);
  EXPECT_EQ(test.Marks(), "mt");
  test.cut.SetFrameProperties("b", 2, 0, true, 51);
  EXPECT_EQ(test.Marks(), "mt");
  EXPECT_EQ(test.FrameAt(0)->brightness, -52);
}

// Layers that nothing shows go without a trace: a save drops them, and the compiled stream stays current.
TEST(Cut, PurgeOfUnusedLayersMarksNothing) {
  Cut cut(20, 10, 24, "", 0);
  cut.AddFrame();
  cut.AddLayer("A", 4, 2, nullptr);
  cut.AddLayer("B", 4, 2, nullptr);
  cut.AttachLayer(0, 0, 0);
  cut.stateFlags = 0;
  cut.PurgeUnusedLayers();
  EXPECT_EQ(cut.layers.Count(), 1);
  EXPECT_EQ(cut.stateFlags & (kModified | kImagesStale | kTimingStale), 0u);
}

}  // namespace
}  // namespace sorvel
