#include "document/undo_history.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "support/test_streams.h"

namespace sorvel {
namespace {

using teststreams::MakeCut;
using Origin = UndoHistory::Origin;

// All tests of this program, most of which do something to a cut.
[[maybe_unused]] const bool kChecksAll = UndoHistory::checksAll = true;

// A cut of one layer with three cells, one for each of three frames; the first frame is current.
class UndoHistoryTest : public testing::Test {
 protected:
  void SetUp() override {
    cut = MakeCut(16, 4, {"1", "2", "3"});
    cut->FirstFrame();
    history = std::make_unique<UndoHistory>(cut.get(), &area);
    EXPECT_FALSE(history->Record(Origin::kCommand));
    cut->stateFlags &= ~static_cast<uint32_t>(kModified | kImagesStale | kTimingStale);
  }
  // The history looks at the cut when it ends.
  void TearDown() override { history.reset(); }

  CellImage* Cell(int32_t index) { return cut->layers.At(0)->CellAt(index); }
  int32_t Pixel(int32_t cell, int32_t x) { return Cell(cell)->GetPixel(x, 1); }
  void Draw(int32_t x, int32_t value, Origin origin = Origin::kGesture) {
    cut->CurrentCell()->SetPixel(x, 1, value);
    cut->MarkImages();
    history->Record(origin);
  }
  void Stroke(int32_t x, int32_t value) {
    cut->SaveUndo();
    Draw(x, value);
  }
  std::string Bytes() {
    teststreams::Output output;
    const uint32_t marks = cut->stateFlags;
    cut->Save(&output.stream);
    cut->stateFlags = marks;
    const auto& written = output.Written();
    return std::string(written.begin(), written.end());
  }

  std::unique_ptr<Cut> cut;
  Rect area;
  std::unique_ptr<UndoHistory> history;
};

TEST_F(UndoHistoryTest, BeginsWithoutSteps) {
  EXPECT_EQ(history->StepsBack(), 0u);
  EXPECT_EQ(history->StepsForward(), 0u);
  EXPECT_FALSE(history->Back());
  EXPECT_FALSE(history->Forward());
}

TEST_F(UndoHistoryTest, TakesStrokesBackAndForward) {
  for (int32_t x = 0; x < 10; ++x) Stroke(x, 8);
  EXPECT_EQ(history->StepsBack(), 10u);
  for (int32_t x = 9; x >= 0; --x) {
    EXPECT_EQ(Pixel(0, x), 8);
    EXPECT_TRUE(history->Back());
    EXPECT_EQ(Pixel(0, x), 0) << x;
  }
  EXPECT_FALSE(history->Back());
  for (int32_t x = 0; x < 10; ++x) {
    EXPECT_TRUE(history->Forward());
    EXPECT_EQ(Pixel(0, x), 8);
  }
  EXPECT_FALSE(history->Forward());
}

TEST_F(UndoHistoryTest, MakesNoStepOfWhatChangesNothing) {
  EXPECT_FALSE(history->Record(Origin::kCommand));
  // Written to, but as it was.
  Draw(3, 0);
  cut->NextFrame();
  cut->SaveUndo();
  EXPECT_FALSE(history->Record(Origin::kCommand));
  EXPECT_EQ(history->StepsBack(), 0u);
}

TEST_F(UndoHistoryTest, ForgetsWhatWasTakenBackAtTheNextChange) {
  Stroke(1, 8);
  Stroke(2, 8);
  history->Back();
  Stroke(3, 8);
  EXPECT_EQ(history->StepsForward(), 0u);
  EXPECT_FALSE(history->Forward());
  history->Back();
  EXPECT_EQ(Pixel(0, 1), 8);
  EXPECT_EQ(Pixel(0, 3), 0);
}

TEST_F(UndoHistoryTest, JoinsPartsOfAGestureThatSaveTheSingleUndoOnce) {
  cut->SaveUndo();
  history->Record(Origin::kGesture);
  for (int32_t x = 0; x < 5; ++x) Draw(x, 8);
  EXPECT_EQ(history->StepsBack(), 1u);
  history->Back();
  for (int32_t x = 0; x < 5; ++x) EXPECT_EQ(Pixel(0, x), 0);
  history->Forward();
  for (int32_t x = 0; x < 5; ++x) EXPECT_EQ(Pixel(0, x), 8);
  // What comes after a step back is another one.
  Draw(7, 8);
  EXPECT_EQ(history->StepsBack(), 2u);
}

TEST_F(UndoHistoryTest, DoesNotJoinCommandsOrOtherCells) {
  Stroke(1, 8);
  Draw(2, 8, Origin::kCommand);
  EXPECT_EQ(history->StepsBack(), 2u);
  Stroke(3, 8);
  Cell(2)->SetPixel(0, 0, 8);
  history->Record(Origin::kGesture);
  EXPECT_EQ(history->StepsBack(), 4u);
}

TEST_F(UndoHistoryTest, RestoresTheSingleUndo) {
  Stroke(1, 8);
  area = {1, 1, 2, 2};
  cut->NextFrame();
  cut->SaveUndo();
  area = {5, 5, 6, 6};
  Draw(2, 9);
  EXPECT_EQ(cut->undoCell, Cell(1));
  history->Back();
  EXPECT_EQ(cut->undoCell, Cell(0));
  EXPECT_TRUE(cut->Undo());
  EXPECT_EQ(Pixel(0, 1), 0);
  EXPECT_TRUE(cut->Undo());
  EXPECT_FALSE(history->Record(Origin::kCommand));
  EXPECT_TRUE(history->Forward());
  EXPECT_EQ(cut->undoCell, Cell(1));
  EXPECT_EQ(area, (Rect{5, 5, 6, 6}));
}

TEST_F(UndoHistoryTest, MakesTheSingleUndoAStep) {
  Stroke(1, 8);
  cut->Undo();
  EXPECT_TRUE(history->Record(Origin::kCommand));
  EXPECT_EQ(Pixel(0, 1), 0);
  history->Back();
  EXPECT_EQ(Pixel(0, 1), 8);
  history->Back();
  EXPECT_EQ(Pixel(0, 1), 0);
}

TEST_F(UndoHistoryTest, KeepsWhatWasSavedForTheSingleUndoBetweenSteps) {
  Stroke(1, 8);
  Stroke(2, 8);
  history->Back();
  // No step, but the state holds another copy from now on.
  cut->NextFrame();
  cut->SaveUndo();
  history->Back();
  history->Forward();
  EXPECT_EQ(cut->undoCell, Cell(1));
  history->Forward();
  EXPECT_EQ(cut->undoCell, Cell(0));
  EXPECT_TRUE(cut->Undo());
  EXPECT_EQ(Pixel(0, 2), 0);
  EXPECT_EQ(Pixel(0, 1), 8);
}

TEST_F(UndoHistoryTest, ShowsTheFrameThatChanged) {
  cut->NextFrame();
  history->Record(Origin::kCommand);
  Stroke(1, 8);
  cut->FirstFrame();
  history->Record(Origin::kCommand);
  history->Back();
  EXPECT_EQ(cut->currentFrame, 1);
  cut->LastFrame();
  history->Forward();
  EXPECT_EQ(cut->currentFrame, 1);
  // A cell that the frame doesn't show.
  cut->LastFrame();
  history->Record(Origin::kCommand);
  Cell(0)->SetPixel(5, 1, 8);
  history->Record(Origin::kCommand);
  history->Back();
  EXPECT_EQ(cut->currentFrame, 0);
  // Another frame's values.
  cut->frames.At(2)->time = 9;
  history->Record(Origin::kCommand);
  history->Back();
  EXPECT_EQ(cut->currentFrame, 2);
}

TEST_F(UndoHistoryTest, MarksAsTheChangeMarkedAndClearsNothing) {
  Stroke(1, 8);
  cut->CurrentFrame()->time = 7;
  cut->MarkTiming();
  history->Record(Origin::kCommand);
  cut->InsertFrame();
  history->Record(Origin::kCommand);
  constexpr uint32_t all = kModified | kImagesStale | kTimingStale;
  const auto marksOf = [&](bool (UndoHistory::*step)()) {
    cut->stateFlags &= ~all;
    EXPECT_TRUE((history.get()->*step)());
    return cut->stateFlags & all;
  };
  EXPECT_EQ(marksOf(&UndoHistory::Back), 0u);
  EXPECT_EQ(marksOf(&UndoHistory::Back), kModified | kTimingStale);
  EXPECT_EQ(marksOf(&UndoHistory::Back), all);
  EXPECT_EQ(marksOf(&UndoHistory::Forward), all);
  cut->stateFlags |= all;
  history->Forward();
  EXPECT_EQ(cut->stateFlags & all, all);
}

TEST_F(UndoHistoryTest, BringsDeletedCellsAndLayersBack) {
  const std::string before = Bytes();
  Layer* second = cut->AddLayer("B", 6, 2, nullptr);
  second->CellAt(0)->SetPixel(5, 1, 8);
  cut->AttachLayer(1, 3, 4);
  history->Record(Origin::kCommand);
  const std::string added = Bytes();
  cut->SaveUndo();
  cut->DeleteLayer(0);
  history->Record(Origin::kCommand);
  const std::string deleted = Bytes();
  history->Back();
  EXPECT_EQ(Bytes(), added);
  EXPECT_EQ(cut->undoCell, nullptr);
  history->Back();
  EXPECT_EQ(Bytes(), before);
  history->Forward();
  EXPECT_EQ(Bytes(), added);
  history->Forward();
  EXPECT_EQ(Bytes(), deleted);
  history->Back();
  EXPECT_EQ(Bytes(), added);
}

TEST_F(UndoHistoryTest, KeepsTheObjectsThatAreOnBothSides) {
  Frame* frame = cut->frames.At(2);
  Layer* layer = cut->layers.At(0);
  CellImage* cell = Cell(2);
  cut->AddCurrentCell(0);
  history->Record(Origin::kCommand);
  cut->AddFrame();
  history->Record(Origin::kCommand);
  history->Back();
  history->Back();
  EXPECT_EQ(cut->frames.At(2), frame);
  EXPECT_EQ(cut->layers.At(0), layer);
  EXPECT_EQ(Cell(2), cell);
}

TEST_F(UndoHistoryTest, TakesSizesAndNamesBack) {
  const std::string before = Bytes();
  cut->width = 30;
  cut->fps = 12;
  cut->SetAntialias(2);
  AssignString(&cut->credit, "x");
  cut->layers.At(0)->SetName("other");
  cut->layers.At(0)->followFrame = 1;
  cut->layers.At(0)->Resize(9, 9, 2);
  AssignString(&cut->frames.At(1)->comment, "c");
  EXPECT_TRUE(history->Record(Origin::kCommand));
  const std::string after = Bytes();
  EXPECT_TRUE(history->Back());
  EXPECT_EQ(Bytes(), before);
  EXPECT_TRUE(history->Forward());
  EXPECT_EQ(Bytes(), after);
}

TEST_F(UndoHistoryTest, TakesAWholeReplacedLayerBack) {
  const std::string before = Bytes();
  teststreams::Output output;
  cut->SaveLayer(&output.stream);
  Layer* layer = cut->layers.At(0);
  layer->Clear();
  layer->width = layer->height = 3;
  layer->AddCell(0, 1, nullptr);
  layer->AddCell(0, 2, nullptr);
  EXPECT_TRUE(history->Record(Origin::kCommand));
  history->Back();
  EXPECT_EQ(Bytes(), before);
  EXPECT_EQ(history->StepsForward(), 1u);
}

TEST_F(UndoHistoryTest, TakesManyChangesInOneStepBack) {
  const std::string before = Bytes();
  Layer* layer = cut->layers.At(0);
  layer->InsertCell(0, 1, nullptr);
  layer->CellAt(2)->SetPixel(1, 1, 9);
  layer->AddCell(3, 2, nullptr);
  layer->DeleteCell(1);
  for (const char* name : {"B", "C", "D"}) cut->AddLayer(name, 2, 2, nullptr);
  history->Record(Origin::kCommand);
  const std::string three = Bytes();
  // Every other one goes.
  cut->PurgeUnusedLayers();
  EXPECT_TRUE(history->Record(Origin::kCommand));
  history->Back();
  EXPECT_EQ(Bytes(), three);
  history->Back();
  EXPECT_EQ(Bytes(), before);
  history->Forward();
  EXPECT_EQ(Bytes(), three);
}

TEST_F(UndoHistoryTest, SurvivesASave) {
  Stroke(1, 8);
  const std::string saved = Bytes();
  EXPECT_TRUE(cut->Has(kModified));
  teststreams::Output output;
  cut->Save(&output.stream);
  EXPECT_FALSE(history->Record(Origin::kCommand));
  EXPECT_TRUE(history->Back());
  EXPECT_TRUE(cut->Has(kModified));
  EXPECT_TRUE(history->Forward());
  EXPECT_EQ(Bytes(), saved);
}

TEST_F(UndoHistoryTest, FindsChangesOfAFrameThatIsKept) {
  Frame* frame = cut->frames.At(2);
  FrameRecord* record = frame->records.At(0);
  Stroke(1, 8);
  frame->time = 9;
  EXPECT_TRUE(history->Record(Origin::kCommand));
  record->x = 4;
  EXPECT_TRUE(history->Record(Origin::kCommand));
  history->Back();
  EXPECT_EQ(cut->frames.At(2)->records.At(0)->x, 0);
  history->Back();
  EXPECT_EQ(cut->frames.At(2)->time, 1);
}

// What the other tests rely on.
TEST_F(UndoHistoryTest, EndsTheProgramWhenTheCheckFindsAMissedChange) {
  Frame* frame = cut->frames.At(2);
  EXPECT_FALSE(history->Record(Origin::kCommand));
  history->Settle();
  frame->time = 9;
  EXPECT_DEATH(history->Record(Origin::kCommand), "missed a change");
}

TEST_F(UndoHistoryTest, FindsOneChangeAndManyInALongCut) {
  for (int32_t i = 0; i < 200; ++i) cut->AddFrame();
  for (int32_t i = 0; i < 20; ++i) cut->layers.At(0)->AddCell(0, 0, nullptr);
  history->Record(Origin::kCommand);
  // Called when all is recorded. Saving looks at all frames.
  const auto bytes = [&] {
    const std::string written = Bytes();
    history->Settle();
    return written;
  };
  const auto changes = [&](int32_t first, int32_t last, int32_t step) {
    const std::string before = bytes();
    for (int32_t i = first; i <= last; i += step) {
      cut->frames.At(i)->time = 5;
      if (i < 20) Cell(i)->SetPixel(0, 1, 8);
    }
    EXPECT_TRUE(history->Record(Origin::kCommand));
    const std::string after = bytes();
    EXPECT_NE(after, before);
    EXPECT_TRUE(history->Back());
    EXPECT_EQ(bytes(), before);
    EXPECT_TRUE(history->Forward());
    EXPECT_EQ(bytes(), after);
    EXPECT_TRUE(history->Back());
  };
  changes(150, 150, 1);
  changes(2, 2, 1);
  changes(3, 190, 187);
  changes(10, 60, 7);
  changes(0, 199, 1);
}

TEST_F(UndoHistoryTest, AddsUpTimesWhateverChanged) {
  const auto times = [&] { return std::vector<int32_t>{history->TimeBefore(2), history->TimeBefore(1)}; };
  EXPECT_EQ(times(), (std::vector<int32_t>{2, 1}));
  history->Settle();
  EXPECT_EQ(times(), (std::vector<int32_t>{2, 1}));
  cut->frames.At(0)->time = -5;
  EXPECT_EQ(times(), (std::vector<int32_t>{6, 5}));
  history->Record(Origin::kCommand);
  history->Settle();
  EXPECT_EQ(times(), (std::vector<int32_t>{6, 5}));
  history->Back();
  EXPECT_EQ(times(), (std::vector<int32_t>{2, 1}));
  history->Settle();
  cut->frames.At(0)->SetKey(true);
  cut->frames.At(0)->time = 9;
  history->Record(Origin::kCommand);
  history->Settle();
  EXPECT_EQ(times(), (std::vector<int32_t>{8, 7}));
  cut->frames.At(2)->time = 3;
  EXPECT_EQ(times(), (std::vector<int32_t>{6, 5}));
  cut->AddFrame();
  cut->CurrentFrame()->time = 2;
  EXPECT_EQ(times(), (std::vector<int32_t>{5, 3}));
}

TEST_F(UndoHistoryTest, RestoresTheNumberOfAContent) {
  const uint64_t number = Cell(0)->ContentNumber();
  const uint64_t other = Cell(1)->ContentNumber();
  Stroke(1, 8);
  EXPECT_NE(Cell(0)->ContentNumber(), number);
  EXPECT_EQ(Cell(1)->ContentNumber(), other);
  history->Back();
  EXPECT_EQ(Cell(0)->ContentNumber(), number);
}

TEST_F(UndoHistoryTest, TakesMuchLessThanTheCellsThatItChanges) {
  Layer* layer = cut->AddLayer("large", 2000, 1000, nullptr);
  history->Record(Origin::kCommand);
  const int64_t before = history->ByteCount();
  layer->CellAt(0)->SetPixel(1999, 999, 8);
  history->Record(Origin::kCommand);
  EXPECT_LT(history->ByteCount() - before, 2000);
}

// Of noise a step holds every byte.
class UndoMemory : public testing::Test {
 protected:
  static constexpr int32_t kSide = 2000;

  UndoMemory() : cut(kSide, kSide, 24, "", 0), history(&cut, &area) {
    cut.AddFrame();
    cut.AddLayer("A", kSide, kSide, nullptr);
    cut.AttachLayer(0, 0, 0);
    history.Record(Origin::kCommand);
  }
  void MakeNoise() {
    CellImage* cell = cut.CurrentCell();
    cell->UseRows(0, kSide);
    for (int32_t i = 0; i < cell->ByteCount(); ++i) cell->bits[i] = static_cast<uint8_t>(random() >> 8);
    EXPECT_TRUE(history.Record(Origin::kCommand));
  }

  Cut cut;
  Rect area;
  UndoHistory history;
  std::minstd_rand random;
};

TEST_F(UndoMemory, LetsTheOldestStepsGo) {
  constexpr int32_t steps = 80;
  const uint64_t cellBytes = static_cast<uint64_t>(cut.CurrentCell()->ByteCount());
  for (int32_t i = 0; i < steps; ++i) MakeNoise();
  EXPECT_LE(history.ByteCount(), UndoHistory::kLeastLimit);
  EXPECT_LT(history.StepsBack(), 70u);
  EXPECT_GE(history.StepsBack() + 2, static_cast<uint64_t>(UndoHistory::kLeastLimit) / cellBytes);
  const std::vector<uint8_t> last(cut.CurrentCell()->bits, cut.CurrentCell()->bits + cellBytes);
  const size_t kept = history.StepsBack();
  for (size_t i = 0; i < kept; ++i) EXPECT_TRUE(history.Back());
  EXPECT_FALSE(history.Back());
  for (size_t i = 0; i < kept; ++i) EXPECT_TRUE(history.Forward());
  EXPECT_TRUE(std::equal(last.begin(), last.end(), cut.CurrentCell()->bits));
}

TEST_F(UndoMemory, MayTakeHalfOfALargeCut) {
  // 320 MB of blank cells take next to no memory, and still count.
  constexpr int32_t side = 8000;
  for (int32_t i = 0; i < 10; ++i) cut.AddLayer("large", side, side, nullptr);
  history.Record(Origin::kCommand);
  const size_t before = history.StepsBack();
  for (int32_t i = 0; i < 76; ++i) MakeNoise();
  EXPECT_GT(history.ByteCount(), UndoHistory::kLeastLimit);
  EXPECT_EQ(history.StepsBack(), before + 76);
}

TEST_F(UndoMemory, KeepsTheNewestStepWhateverItTakes) {
  Layer* layer = cut.AddLayer("large", kSide, kSide, nullptr);
  for (int32_t i = 0; i < 79; ++i) layer->AddCell(0, 0, nullptr);
  history.Record(Origin::kCommand);
  cut.DeleteLayer(1);
  EXPECT_TRUE(history.Record(Origin::kCommand));
  EXPECT_GT(history.ByteCount(), UndoHistory::kLeastLimit);
  EXPECT_EQ(history.StepsBack(), 1u);
  EXPECT_TRUE(history.Back());
  EXPECT_EQ(cut.layers.Count(), 2);
  EXPECT_EQ(cut.layers.At(1)->cells.Count(), 80);
}

}  // namespace
}  // namespace sorvel
