#include "document/cut.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "imaging/indexed_image.h"
#include "support/test_document.h"

namespace sorvel {
namespace {

using testdoc::Drawing;
using testdoc::NumberCells;
using testdoc::Paint;
using testdoc::Picture;

using Numbers = std::vector<int32_t>;
using Texts = std::vector<std::string>;

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
  // The letters of each frame's records, the current one in brackets.
  Texts Stacks() {
    Texts stacks;
    for (int32_t i = 0; i < cut.frames.Count(); ++i) stacks.push_back(testdoc::Stack(FrameAt(i)));
    return stacks;
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

void ExpectNoCell(Cut* cut) {
  int32_t x = 0;
  int32_t y = 0;
  EXPECT_EQ(cut->CurrentCell(&x, &y), nullptr);
  EXPECT_EQ(cut->CurrentCell(), nullptr);
}

// Every operation on the current record gives false.
void ExpectRecordRefused(Cut* cut) {
  ExpectNoCell(cut);
  for (bool (Cut::*run)() :
       {&Cut::DeleteCurrentCell, &Cut::PreviousCellOfFrame, &Cut::NextCellOfFrame, &Cut::FirstCellOfFrame,
        &Cut::LastCellOfFrame, &Cut::EraseDraft, &Cut::EraseLayerDraft, &Cut::SaveUndo}) {
    EXPECT_FALSE((cut->*run)());
  }
  EXPECT_FALSE(cut->AddCurrentCell(9));
  EXPECT_FALSE(cut->InsertCurrentCell(9));
  EXPECT_FALSE(cut->EraseDraftRect(0, 0, 4, 2));
  EXPECT_FALSE(cut->ConvertToDraft(0));
  EXPECT_FALSE(cut->ConvertToDraftRect(0, 0, 4, 2, 0));
}

TEST(Cut, EveryOperationOnACutWithoutFramesIsRefused) {
  Cut cut(10, 10, 24, "", 0);
  cut.AddLayer("A", 4, 4, nullptr);
  cut.stateFlags = 0;
  ExpectRecordRefused(&cut);
  EXPECT_EQ(cut.CurrentFrame(), nullptr);
  for (bool (Cut::*run)() : {&Cut::InsertFrame, &Cut::DeleteFrame, &Cut::LayerUp, &Cut::LayerDown, &Cut::Undo}) {
    EXPECT_FALSE((cut.*run)());
  }
  cut.SetFrameProperties("x", 2, 2, true, 2);
  EXPECT_EQ(cut.stateFlags, 0u);
  EXPECT_EQ(cut.currentFrame, -1);
}

TEST(Cut, FrameWithoutRecordsRefusesTheOperationsOnItsRecord) {
  TestCut test(2, 0);
  ExpectRecordRefused(&test.cut);
  EXPECT_FALSE(test.cut.LayerUp());
  EXPECT_FALSE(test.cut.LayerDown());
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

TEST(Cut, AttachLayerWithoutACurrentRecordAddsToEveryFrame) {
  TestCut test(2, 0);
  test.cut.AddLayer("A", 4, 2, nullptr);
  EXPECT_TRUE(test.cut.AttachLayer(0, 1, 2));
  EXPECT_EQ(test.Stacks(), Texts({"[A]", "[A]"}));
}

TEST(Cut, AttachingAMissingLayerIsFalse) {
  TestCut test(1, 1);
  for (int32_t index : {-1, 1, 5}) {
    EXPECT_FALSE(test.cut.AttachLayer(index, 0, 0));
    EXPECT_FALSE(test.cut.AttachLayerBefore(index, 0, 0));
  }
  EXPECT_EQ(test.Stacks(), Texts({"[A]"}));
  EXPECT_EQ(test.Marks(), "");
}

TEST(Cut, AttachLayerBeforePutsItUnderTheSameIndexAndMarksImages) {
  TestCut test(3, 2);
  test.FrameAt(1)->RemoveLayer(test.LayerAt(1));
  ASSERT_EQ(test.FrameAt(0)->currentRecord, 1);
  test.cut.AddLayer("C", 4, 2, nullptr);
  test.cut.stateFlags = 0;
  EXPECT_TRUE(test.cut.AttachLayerBefore(2, 7, 8));
  EXPECT_EQ(test.Stacks(), Texts({"A[C]B", "[A]", "A[C]B"}));
  EXPECT_EQ(*test.FrameAt(0)->records.At(1), (FrameRecord{test.LayerAt(2), 0, 7, 8}));
  EXPECT_EQ(test.Marks(), "mit");
}

TEST(Cut, DeletingAMissingLayerIsFalse) {
  TestCut test(1, 2);
  EXPECT_FALSE(test.cut.DeleteLayer(2));
  EXPECT_FALSE(test.cut.DeleteLayer(-1));
  EXPECT_EQ(test.cut.layers.Count(), 2);
  EXPECT_EQ(test.Stacks(), Texts({"A[B]"}));
  EXPECT_EQ(test.Marks(), "");
}

TEST(Cut, DeletingAnotherLayerKeepsTheUndo) {
  TestCut test(1, 2);
  test.cut.SaveUndo();
  CellImage* cell = test.cut.undoCell;
  EXPECT_TRUE(test.cut.DeleteLayer(0));
  EXPECT_EQ(test.cut.undoCell, cell);
  EXPECT_TRUE(test.cut.Undo());
}

TEST(Cut, LayerUpPassesLaterFramesWhereItIsOnTop) {
  TestCut test(2, 3);
  test.FrameAt(0)->SelectRecord(1);
  test.FrameAt(1)->RemoveLayer(test.LayerAt(2));
  EXPECT_TRUE(test.cut.LayerUp());
  EXPECT_EQ(test.Stacks(), Texts({"AC[B]", "A[B]"}));
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

TEST(Cut, DeletingAFrameLeavesAShorterFrameItsOwnRecord) {
  TestCut test(2, 3);
  test.FrameAt(1)->RemoveLayer(test.LayerAt(2));
  test.FrameAt(1)->SelectRecord(0);
  EXPECT_TRUE(test.cut.DeleteFrame());
  EXPECT_EQ(test.cut.CurrentFrame()->currentRecord, 0);
}

TEST(Cut, OtherRecordsOfTheLayerInTheSameFrameAreRenumbered) {
  TestCut test(1, 1);
  test.FrameAt(0)->AddRecord(test.LayerAt(0), 2, 0, 0);
  test.FrameAt(0)->SelectRecord(0);
  EXPECT_TRUE(test.cut.AddCurrentCell(9));
  EXPECT_EQ(test.Cell(0, 0), 1);
  EXPECT_EQ(test.Cell(0, 1), 3);
}

TEST(Cut, DeletingAnotherCellKeepsTheUndo) {
  TestCut test(1, 1);
  test.cut.SaveUndo();
  CellImage* cell = test.cut.undoCell;
  test.Cell(0, 0) = 2;
  EXPECT_TRUE(test.cut.DeleteCurrentCell());
  EXPECT_EQ(test.cut.undoCell, cell);
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
  for (int32_t frame : {-1, 2}) {
    test.cut.currentFrame = frame;
    ExpectNoCell(&test.cut);
  }
  test.cut.currentFrame = 0;
  EXPECT_NE(test.cut.CurrentCell(), nullptr);
  test.Cell(0, 0) = -1;
  ExpectRecordRefused(&test.cut);
}

TEST(Cut, BlankRecordRefusesTheDraftOperationsAndSaveUndo) {
  TestCut test(1, 1);
  for (int32_t i = 0; i < 4; ++i) Paint(test.LayerAt(0)->CellAt(i), "5678/5678");
  test.Cell(0, 0) = -1;
  ExpectRecordRefused(&test.cut);
  for (int32_t i = 0; i < 4; ++i) EXPECT_EQ(Picture(test.LayerAt(0)->CellAt(i)), "5678/5678");
  EXPECT_EQ(test.cut.undoCell, nullptr);
  EXPECT_EQ(test.Marks(), "");
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
  const struct {
    const char* comment;
    int32_t time;
    int32_t loop;
    bool key;
    int32_t brightness;
  } rows[] = {{"b", 1, 1, false, 50},
              {"b", 2, 1, false, 50},
              {"b", 2, 0, false, 50},
              {"b", 2, 0, true, 50},
              {"b", 2, 0, true, 51}};
  for (const auto& row : rows) {
    test.cut.SetFrameProperties(row.comment, row.time, row.loop, row.key, row.brightness);
    EXPECT_EQ(test.Marks(), "mt");
  }
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
