#include "document/frame.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

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

// Three layers of four cells each, which show the drawings 1 to 4.
struct Layers {
  Layers() {
    for (Layer* layer : {&a, &b, &c}) NumberCells(layer, 4);
  }
  Layer a{4, 2, "A", nullptr, 0};
  Layer b{4, 2, "B", nullptr, 0};
  Layer c{4, 2, "C", nullptr, 0};
};

TEST(Frame, NewFrameHasItsDefaults) {
  Frame frame(320, 240);
  EXPECT_EQ(frame.records.Count(), 0);
  EXPECT_EQ(frame.time, 1);
  EXPECT_EQ(frame.loop, 1);
  EXPECT_EQ(frame.currentRecord, -1);
  EXPECT_EQ(frame.x, 0);
  EXPECT_EQ(frame.y, 0);
  EXPECT_EQ(frame.width, 320);
  EXPECT_EQ(frame.height, 240);
  EXPECT_EQ(frame.brightness, 50);
  EXPECT_EQ(frame.comment, EmptyString);
}

TEST(Frame, AddRecordPutsItBehindTheCurrentOne) {
  Layers layers;
  Frame frame(10, 10);
  EXPECT_TRUE(frame.AddRecord(&layers.a, 1, 5, -6));
  EXPECT_EQ(frame.currentRecord, 0);
  EXPECT_TRUE(frame.AddRecord(&layers.b, 0, 0, 0));
  EXPECT_EQ(frame.currentRecord, 1);
  frame.SelectRecord(0);
  EXPECT_TRUE(frame.AddRecord(&layers.c, 0, 0, 0));
  EXPECT_EQ(frame.currentRecord, 1);
  EXPECT_EQ(Stacking(&frame), "ACB");
  EXPECT_EQ(*frame.records.At(0), (FrameRecord{&layers.a, 1, 5, -6}));
}

TEST(Frame, AddRecordGoesByTheCurrentRecordAndNotByTheLastOneRead) {
  Layers layers;
  Frame frame(10, 10);
  frame.AddRecord(&layers.a, 0, 0, 0);
  frame.AddRecord(&layers.b, 0, 0, 0);
  frame.LayerAt(0);
  frame.AddRecord(&layers.c, 0, 0, 0);
  EXPECT_EQ(Stacking(&frame), "ABC");
}

TEST(Frame, InsertRecordTakesTheIndexOfTheCurrentOne) {
  Layers layers;
  Frame frame(10, 10);
  frame.AddRecord(&layers.a, 0, 0, 0);
  frame.AddRecord(&layers.b, 0, 0, 0);
  EXPECT_TRUE(frame.InsertRecord(&layers.c, 2, 3, 4));
  EXPECT_EQ(frame.currentRecord, 1);
  EXPECT_EQ(Stacking(&frame), "ACB");
  EXPECT_EQ(*frame.records.At(1), (FrameRecord{&layers.c, 2, 3, 4}));
}

TEST(Frame, InsertRecordWithoutACurrentOnePutsItInTwice) {
  Layers layers;
  Frame frame(10, 10);
  EXPECT_TRUE(frame.InsertRecord(&layers.a, 1, 2, 3));
  EXPECT_EQ(Stacking(&frame), "AA");
  EXPECT_EQ(frame.currentRecord, 0);
  EXPECT_EQ(*frame.records.At(0), *frame.records.At(1));
}

TEST(Frame, RemovingTheLayerOfTheLastRecordSelectsTheNewLast) {
  Layers layers;
  Frame frame(10, 10);
  for (Layer* layer : {&layers.a, &layers.b, &layers.c}) frame.AddRecord(layer, 0, 0, 0);
  ASSERT_EQ(frame.currentRecord, 2);
  frame.RemoveLayer(&layers.c);
  EXPECT_EQ(frame.currentRecord, 1);
  EXPECT_EQ(Stacking(&frame), "AB");
}

TEST(Frame, RemovingTheCurrentLayerInTheMiddleSelectsItsSuccessor) {
  Layers layers;
  Frame frame(10, 10);
  for (Layer* layer : {&layers.a, &layers.b, &layers.c}) frame.AddRecord(layer, 0, 0, 0);
  frame.SelectRecord(1);
  frame.RemoveLayer(&layers.b);
  EXPECT_EQ(frame.currentRecord, 1);
  EXPECT_EQ(frame.LayerAt(1), &layers.c);
}

TEST(Frame, RemovingALayerBelowKeepsTheCurrentRecord) {
  Layers layers;
  Frame frame(10, 10);
  for (Layer* layer : {&layers.a, &layers.b, &layers.a, &layers.c}) frame.AddRecord(layer, 0, 0, 0);
  ASSERT_EQ(frame.currentRecord, 3);
  frame.RemoveLayer(&layers.a);
  EXPECT_EQ(Stacking(&frame), "BC");
  EXPECT_EQ(frame.currentRecord, 1);
}

TEST(Frame, RemovingALayerAboveKeepsTheCurrentRecord) {
  Layers layers;
  Frame frame(10, 10);
  for (Layer* layer : {&layers.a, &layers.b, &layers.b}) frame.AddRecord(layer, 0, 0, 0);
  frame.SelectRecord(0);
  frame.RemoveLayer(&layers.b);
  EXPECT_EQ(Stacking(&frame), "A");
  EXPECT_EQ(frame.currentRecord, 0);
}

TEST(Frame, RemovingTheOnlyLayerLeavesNoCurrentRecord) {
  Layers layers;
  Frame frame(10, 10);
  frame.AddRecord(&layers.a, 0, 0, 0);
  frame.AddRecord(&layers.a, 1, 0, 0);
  frame.RemoveLayer(&layers.a);
  EXPECT_EQ(frame.records.Count(), 0);
  EXPECT_EQ(frame.currentRecord, -1);
}

TEST(Frame, RemovingAForeignLayerChangesNothing) {
  Layers layers;
  Frame frame(10, 10);
  frame.RemoveLayer(&layers.c);
  EXPECT_EQ(frame.currentRecord, -1);
  frame.AddRecord(&layers.a, 0, 0, 0);
  frame.AddRecord(&layers.b, 0, 0, 0);
  frame.SelectRecord(0);
  frame.RemoveLayer(&layers.c);
  EXPECT_EQ(Stacking(&frame), "AB");
  EXPECT_EQ(frame.currentRecord, 0);
}

TEST(Frame, SelectRecordRefusesABadIndex) {
  Layers layers;
  Frame frame(10, 10);
  EXPECT_FALSE(frame.SelectRecord(0));
  EXPECT_EQ(frame.currentRecord, -1);
  frame.AddRecord(&layers.a, 0, 0, 0);
  frame.AddRecord(&layers.b, 0, 0, 0);
  EXPECT_FALSE(frame.SelectRecord(2));
  EXPECT_FALSE(frame.SelectRecord(-1));
  EXPECT_EQ(frame.currentRecord, 1);
  EXPECT_TRUE(frame.SelectRecord(0));
  EXPECT_EQ(frame.currentRecord, 0);
}

TEST(Frame, MoveRecordUpSwapsItWithItsSuccessor) {
  Layers layers;
  Frame frame(10, 10);
  for (Layer* layer : {&layers.a, &layers.b, &layers.c}) frame.AddRecord(layer, 0, 0, 0);
  frame.SelectRecord(0);
  EXPECT_TRUE(frame.MoveRecordUp(-1));
  EXPECT_EQ(Stacking(&frame), "BAC");
  EXPECT_EQ(frame.currentRecord, 1);
  EXPECT_TRUE(frame.MoveRecordUp(1));
  EXPECT_EQ(Stacking(&frame), "BCA");
  EXPECT_EQ(frame.currentRecord, 2);
  EXPECT_FALSE(frame.MoveRecordUp(-1));
  EXPECT_EQ(Stacking(&frame), "BCA");
  EXPECT_EQ(frame.currentRecord, 2);
}

TEST(Frame, MoveRecordDownSwapsItWithItsPredecessor) {
  Layers layers;
  Frame frame(10, 10);
  for (Layer* layer : {&layers.a, &layers.b, &layers.c}) frame.AddRecord(layer, 0, 0, 0);
  EXPECT_TRUE(frame.MoveRecordDown(-1));
  EXPECT_EQ(Stacking(&frame), "ACB");
  EXPECT_EQ(frame.currentRecord, 1);
  EXPECT_TRUE(frame.MoveRecordDown(1));
  EXPECT_EQ(Stacking(&frame), "CAB");
  EXPECT_EQ(frame.currentRecord, 0);
  EXPECT_FALSE(frame.MoveRecordDown(-1));
  EXPECT_EQ(Stacking(&frame), "CAB");
  EXPECT_EQ(frame.currentRecord, 0);
}

TEST(Frame, MovingAnotherRecordLeavesTheCurrentIndex) {
  Layers layers;
  Frame frame(10, 10);
  for (Layer* layer : {&layers.a, &layers.b, &layers.c}) frame.AddRecord(layer, 0, 0, 0);
  frame.SelectRecord(1);
  EXPECT_TRUE(frame.MoveRecordUp(0));
  EXPECT_EQ(Stacking(&frame), "BAC");
  EXPECT_EQ(frame.currentRecord, 1);
  EXPECT_TRUE(frame.MoveRecordDown(2));
  EXPECT_EQ(Stacking(&frame), "BCA");
  EXPECT_EQ(frame.currentRecord, 1);
}

TEST(Frame, MovingABadIndexIsFalse) {
  Layers layers;
  Frame frame(10, 10);
  frame.AddRecord(&layers.a, 0, 0, 0);
  frame.AddRecord(&layers.b, 0, 0, 0);
  for (int32_t index : {2, 7, -2}) {
    EXPECT_FALSE(frame.MoveRecordUp(index));
    EXPECT_FALSE(frame.MoveRecordDown(index));
  }
  EXPECT_EQ(Stacking(&frame), "AB");
  EXPECT_EQ(frame.currentRecord, 1);
}

TEST(Frame, GetRecordGivesRawFields) {
  Layers layers;
  layers.a.followFrame = 1;
  Frame frame(10, 10);
  frame.x = 100;
  frame.AddRecord(&layers.a, -3, 7, 8);
  Layer* layer = nullptr;
  int32_t x = 0;
  int32_t y = 0;
  int32_t cell = 0;
  EXPECT_TRUE(frame.GetRecord(0, &layer, &x, &y, &cell));
  EXPECT_EQ(layer, &layers.a);
  EXPECT_EQ(x, 7);
  EXPECT_EQ(y, 8);
  EXPECT_EQ(cell, -3);
}

TEST(Frame, BadIndexIsFalseOrNullInEveryRecordOperation) {
  Layers layers;
  Frame frame(10, 10);
  frame.AddRecord(&layers.a, 1, 2, 3);
  Frame other(10, 10);
  other.AddRecord(&layers.a, 1, 20, 30);
  for (int32_t index : {-1, 1, 9}) {
    Layer* layer = nullptr;
    int32_t x = 77;
    int32_t y = 77;
    int32_t cell = 77;
    EXPECT_FALSE(frame.GetRecord(index, &layer, &x, &y, &cell));
    EXPECT_EQ(frame.LayerAt(index), nullptr);
    EXPECT_EQ(frame.VisibleCell(index, &x, &y), nullptr);
    EXPECT_FALSE(frame.GetRecordPosition(index, &x, &y));
    EXPECT_FALSE(frame.SetRecordPosition(index, 5, 5));
    EXPECT_FALSE(frame.OffsetRecord(index, 5, 5));
    EXPECT_FALSE(frame.CopyRecordPosition(index, &other));
    EXPECT_EQ(frame.PreviousCell(index), nullptr);
    EXPECT_EQ(frame.NextCell(index), nullptr);
    EXPECT_EQ(x, 77);
    EXPECT_EQ(y, 77);
  }
  EXPECT_EQ(*frame.records.At(0), (FrameRecord{&layers.a, 1, 2, 3}));
}

TEST(Frame, LayerAtGivesTheLayer) {
  Layers layers;
  Frame frame(10, 10);
  frame.AddRecord(&layers.a, 0, 0, 0);
  frame.AddRecord(&layers.b, -1, 0, 0);
  EXPECT_EQ(frame.LayerAt(0), &layers.a);
  EXPECT_EQ(frame.LayerAt(1), &layers.b);
}

TEST(Frame, ClearRecordsCentresTheFrameAndKeepsItsProperties) {
  Frame frame(321, 240);
  frame.time = 9;
  frame.loop = 4;
  frame.brightness = -31;
  frame.currentRecord = 3;
  AssignString(&frame.comment, "note");
  frame.ClearRecords();
  EXPECT_EQ(frame.records.Count(), 0);
  EXPECT_EQ(frame.currentRecord, -1);
  EXPECT_EQ(frame.time, 1);
  EXPECT_EQ(frame.x, 160);
  EXPECT_EQ(frame.y, 120);
  EXPECT_EQ(frame.loop, 4);
  EXPECT_EQ(frame.brightness, -31);
  EXPECT_STREQ(frame.comment, "note");
}

TEST(Frame, CopyTakesRecordsTimeAndPosition) {
  Layers layers;
  Frame source(30, 40);
  source.AddRecord(&layers.a, 1, 2, 3);
  source.AddRecord(&layers.b, -2, 4, 5);
  source.SelectRecord(0);
  source.time = -7;
  source.x = 11;
  source.y = 12;
  Frame copy(1, 1);
  copy.CopyFrom(&source);
  EXPECT_TRUE(copy.SameAs(&source));
  EXPECT_EQ(copy.currentRecord, 0);
  EXPECT_EQ(copy.time, -7);
  EXPECT_EQ(copy.x, 11);
  EXPECT_EQ(copy.y, 12);
  EXPECT_EQ(copy.width, 30);
  EXPECT_EQ(copy.height, 40);
  EXPECT_NE(copy.records.At(0), source.records.At(0));
  copy.OffsetRecord(0, 1, 1);
  EXPECT_EQ(source.records.At(0)->x, 2);
}

TEST(Frame, CopyDoesNotRestartALoop) {
  for (const auto& [loop, copied] : {std::pair{1, 1}, {3, 0}, {0, 0}, {-1, 0}, {2, 0}}) {
    Frame source(10, 10);
    source.loop = loop;
    Frame copy(10, 10);
    copy.CopyFrom(&source);
    EXPECT_EQ(copy.loop, copied);
  }
}

TEST(Frame, CopyKeepsItsOwnBrightnessAndComment) {
  Frame source(10, 10);
  source.brightness = -81;
  AssignString(&source.comment, "source");
  Frame copy(10, 10);
  copy.CopyFrom(&source);
  EXPECT_EQ(copy.brightness, 50);
  EXPECT_EQ(copy.comment, EmptyString);
}

TEST(Frame, SameFramesMayDifferInTimingBrightnessAndComment) {
  Layers layers;
  Frame a(10, 10);
  Frame b(10, 10);
  EXPECT_TRUE(a.SameAs(&b));
  a.AddRecord(&layers.a, 1, 2, 3);
  b.AddRecord(&layers.a, 1, 2, 3);
  a.time = 5;
  a.loop = 0;
  a.brightness = -1;
  a.width = 99;
  a.currentRecord = -1;
  AssignString(&a.comment, "a");
  EXPECT_TRUE(a.SameAs(&b));
  EXPECT_TRUE(b.SameAs(&a));
}

TEST(Frame, FramesDifferByAnyRecordFieldOrderCountOrPosition) {
  Layers layers;
  const FrameRecord changes[] = {
      {&layers.b, 1, 2, 3}, {&layers.a, 0, 2, 3}, {&layers.a, 1, 0, 3}, {&layers.a, 1, 2, 0}};
  for (const FrameRecord& change : changes) {
    Frame a(10, 10);
    Frame b(10, 10);
    a.AddRecord(&layers.a, 1, 2, 3);
    b.AddRecord(change.layer, change.cell, change.x, change.y);
    EXPECT_FALSE(a.SameAs(&b));
  }
  Frame a(10, 10);
  Frame b(10, 10);
  a.x = 1;
  EXPECT_FALSE(a.SameAs(&b));
  b.x = 1;
  b.y = 1;
  EXPECT_FALSE(a.SameAs(&b));
  a.y = 1;
  a.AddRecord(&layers.a, 0, 0, 0);
  EXPECT_FALSE(a.SameAs(&b));
  EXPECT_FALSE(b.SameAs(&a));
  a.AddRecord(&layers.b, 0, 0, 0);
  b.AddRecord(&layers.b, 0, 0, 0);
  b.AddRecord(&layers.a, 0, 0, 0);
  EXPECT_FALSE(a.SameAs(&b));
}

TEST(Frame, VisibleCellComesWithItsPlaceOnTheCut) {
  Layers layers;
  layers.b.followFrame = 1;
  Frame frame(10, 10);
  frame.x = 100;
  frame.y = -50;
  frame.AddRecord(&layers.a, 1, 2, 3);
  frame.AddRecord(&layers.b, 3, 2, 3);
  int32_t x = 0;
  int32_t y = 0;
  EXPECT_EQ(frame.VisibleCell(0, &x, &y), layers.a.CellAt(1));
  EXPECT_EQ(x, 2);
  EXPECT_EQ(y, 3);
  EXPECT_EQ(frame.VisibleCell(1, &x, &y), layers.b.CellAt(3));
  EXPECT_EQ(x, 102);
  EXPECT_EQ(y, -47);
}

TEST(Frame, BlankRecordShowsNothingAndWritesNoPosition) {
  Layers layers;
  Frame frame(10, 10);
  frame.AddRecord(&layers.a, -1, 2, 3);
  int32_t x = 77;
  int32_t y = 88;
  EXPECT_EQ(frame.VisibleCell(0, &x, &y), nullptr);
  EXPECT_EQ(x, 77);
  EXPECT_EQ(y, 88);
}

TEST(Frame, StaleCellNumberShowsNothing) {
  Layers layers;
  Frame frame(10, 10);
  frame.AddRecord(&layers.a, 4, 2, 3);
  int32_t x = 0;
  int32_t y = 0;
  EXPECT_EQ(frame.VisibleCell(0, &x, &y), nullptr);
}

TEST(Frame, BlankRecordHasAPosition) {
  Layers layers;
  layers.a.followFrame = 1;
  Frame frame(10, 10);
  frame.x = 10;
  frame.y = 20;
  frame.AddRecord(&layers.a, -1, 2, 3);
  int32_t x = 0;
  int32_t y = 0;
  EXPECT_TRUE(frame.GetRecordPosition(0, &x, &y));
  EXPECT_EQ(x, 12);
  EXPECT_EQ(y, 23);
}

TEST(Frame, SetRecordPositionStoresRelativeToTheFrameForAFollowingLayer) {
  Layers layers;
  layers.b.followFrame = 1;
  Frame frame(10, 10);
  frame.x = 10;
  frame.y = 20;
  frame.AddRecord(&layers.a, 0, 0, 0);
  frame.AddRecord(&layers.b, 0, 0, 0);
  EXPECT_TRUE(frame.SetRecordPosition(0, 5, 6));
  EXPECT_TRUE(frame.SetRecordPosition(1, 5, 6));
  EXPECT_EQ(*frame.records.At(0), (FrameRecord{&layers.a, 0, 5, 6}));
  EXPECT_EQ(*frame.records.At(1), (FrameRecord{&layers.b, 0, -5, -14}));
}

TEST(Frame, OffsetRecordAddsToTheRawPosition) {
  Layers layers;
  layers.a.followFrame = 1;
  Frame frame(10, 10);
  frame.x = 10;
  frame.AddRecord(&layers.a, -1, 1, 2);
  EXPECT_TRUE(frame.OffsetRecord(0, 5, -6));
  EXPECT_EQ(*frame.records.At(0), (FrameRecord{&layers.a, -1, 6, -4}));
}

TEST(Frame, CopyRecordPositionCopiesTheRawPosition) {
  Layers layers;
  layers.a.followFrame = 1;
  Frame frame(10, 10);
  Frame other(10, 10);
  other.x = 100;
  frame.AddRecord(&layers.a, 2, 1, 1);
  other.AddRecord(&layers.b, 3, 7, 8);
  EXPECT_TRUE(frame.CopyRecordPosition(0, &other));
  EXPECT_EQ(*frame.records.At(0), (FrameRecord{&layers.a, 2, 7, 8}));
}

TEST(Frame, CopyRecordPositionNeedsTheRecordInBothFrames) {
  Layers layers;
  Frame frame(10, 10);
  Frame other(10, 10);
  frame.AddRecord(&layers.a, 2, 1, 1);
  EXPECT_FALSE(frame.CopyRecordPosition(0, &other));
  EXPECT_FALSE(other.CopyRecordPosition(0, &frame));
  EXPECT_EQ(*frame.records.At(0), (FrameRecord{&layers.a, 2, 1, 1}));
}

TEST(Frame, NeighboursOfTheShownCellGoRound) {
  Layers layers;
  Frame frame(10, 10);
  frame.AddRecord(&layers.a, 0, 0, 0);
  frame.AddRecord(&layers.a, 1, 0, 0);
  frame.AddRecord(&layers.a, 3, 0, 0);
  EXPECT_EQ(Drawing(frame.PreviousCell(0)), 4);
  EXPECT_EQ(Drawing(frame.NextCell(0)), 2);
  EXPECT_EQ(Drawing(frame.PreviousCell(1)), 1);
  EXPECT_EQ(Drawing(frame.NextCell(1)), 3);
  EXPECT_EQ(Drawing(frame.PreviousCell(2)), 3);
  EXPECT_EQ(Drawing(frame.NextCell(2)), 1);
}

TEST(Frame, OnlyCellIsItsOwnNeighbour) {
  Layer layer(2, 2, nullptr, nullptr, 0);
  NumberCells(&layer, 1);
  Frame frame(10, 10);
  frame.AddRecord(&layer, 0, 0, 0);
  EXPECT_EQ(frame.PreviousCell(0), layer.CellAt(0));
  EXPECT_EQ(frame.NextCell(0), layer.CellAt(0));
}

TEST(Frame, BlankRecordHasNoNeighbours) {
  Layers layers;
  Frame frame(10, 10);
  frame.AddRecord(&layers.a, -2, 0, 0);
  EXPECT_EQ(frame.PreviousCell(0), nullptr);
  EXPECT_EQ(frame.NextCell(0), nullptr);
}

TEST(Frame, AddCellHereShowsTheNewCellBehind) {
  Layers layers;
  Frame frame(10, 10);
  frame.AddRecord(&layers.a, 1, 0, 0);
  EXPECT_TRUE(frame.AddCellHere(9));
  EXPECT_EQ(CellNumber(&frame, 0), 2);
  EXPECT_EQ(Drawings(&layers.a), "12934");
}

TEST(Frame, AddCellHereFailsOnAStaleNumber) {
  Layers layers;
  Frame frame(10, 10);
  frame.AddRecord(&layers.a, 4, 0, 0);
  EXPECT_FALSE(frame.AddCellHere(9));
  EXPECT_EQ(CellNumber(&frame, 0), 4);
  EXPECT_EQ(Drawings(&layers.a), "1234");
}

TEST(Frame, InsertCellHereShowsTheNewCellAhead) {
  Layers layers;
  Frame frame(10, 10);
  frame.AddRecord(&layers.a, 1, 0, 0);
  EXPECT_TRUE(frame.InsertCellHere(9));
  EXPECT_EQ(CellNumber(&frame, 0), 1);
  EXPECT_EQ(Drawings(&layers.a), "19234");
}

TEST(Frame, RemoveCellHereShowsTheSuccessor) {
  Layers layers;
  Frame frame(10, 10);
  frame.AddRecord(&layers.a, 1, 0, 0);
  EXPECT_TRUE(frame.RemoveCellHere());
  EXPECT_EQ(CellNumber(&frame, 0), 1);
  EXPECT_EQ(Drawings(&layers.a), "134");
}

TEST(Frame, RemoveCellHereOfTheLastCellShowsThePredecessor) {
  Layers layers;
  Frame frame(10, 10);
  frame.AddRecord(&layers.a, 3, 0, 0);
  EXPECT_TRUE(frame.RemoveCellHere());
  EXPECT_EQ(CellNumber(&frame, 0), 2);
  EXPECT_EQ(Drawings(&layers.a), "123");
}

TEST(Frame, RemoveCellHereKeepsTheOnlyCell) {
  Layer layer(2, 2, nullptr, nullptr, 0);
  NumberCells(&layer, 1);
  Frame frame(10, 10);
  frame.AddRecord(&layer, 0, 0, 0);
  EXPECT_FALSE(frame.RemoveCellHere());
  EXPECT_EQ(layer.cells.Count(), 1);
}

TEST(Frame, CellStepsStopAtTheEnds) {
  Layers layers;
  Frame frame(10, 10);
  frame.AddRecord(&layers.a, 1, 0, 0);
  EXPECT_TRUE(frame.StepCellBack());
  EXPECT_EQ(CellNumber(&frame, 0), 0);
  EXPECT_FALSE(frame.StepCellBack());
  EXPECT_EQ(CellNumber(&frame, 0), 0);
  for (int32_t cell = 1; cell <= 3; ++cell) {
    EXPECT_TRUE(frame.StepCellForward());
    EXPECT_EQ(CellNumber(&frame, 0), cell);
  }
  EXPECT_FALSE(frame.StepCellForward());
  EXPECT_EQ(CellNumber(&frame, 0), 3);
}

TEST(Frame, FirstAndLastCellAreReachedFromAnywhere) {
  Layers layers;
  Frame frame(10, 10);
  frame.AddRecord(&layers.a, 2, 0, 0);
  EXPECT_TRUE(frame.FirstCellHere());
  EXPECT_EQ(CellNumber(&frame, 0), 0);
  EXPECT_TRUE(frame.FirstCellHere());
  EXPECT_TRUE(frame.LastCellHere());
  EXPECT_EQ(CellNumber(&frame, 0), 3);
  EXPECT_TRUE(frame.LastCellHere());
}

TEST(Frame, CellOperationsActOnTheCurrentRecord) {
  Layers layers;
  Frame frame(10, 10);
  frame.AddRecord(&layers.a, 1, 0, 0);
  frame.AddRecord(&layers.b, 1, 0, 0);
  frame.AddRecord(&layers.c, 1, 0, 0);
  frame.SelectRecord(1);
  frame.LayerAt(2);
  EXPECT_TRUE(frame.StepCellForward());
  EXPECT_EQ(CellNumber(&frame, 0), 1);
  EXPECT_EQ(CellNumber(&frame, 1), 2);
  EXPECT_EQ(CellNumber(&frame, 2), 1);
}

TEST(Frame, CellOperationsRefuseABlankRecord) {
  Layers layers;
  Frame frame(10, 10);
  frame.AddRecord(&layers.a, -2, 0, 0);
  EXPECT_FALSE(frame.AddCellHere(9));
  EXPECT_FALSE(frame.InsertCellHere(9));
  EXPECT_FALSE(frame.RemoveCellHere());
  EXPECT_FALSE(frame.StepCellBack());
  EXPECT_FALSE(frame.StepCellForward());
  EXPECT_FALSE(frame.FirstCellHere());
  EXPECT_FALSE(frame.LastCellHere());
  EXPECT_EQ(CellNumber(&frame, 0), -2);
  EXPECT_EQ(Drawings(&layers.a), "1234");
}

TEST(Frame, BlankHoldsTheComplementOfTheNumber) {
  Layers layers;
  Frame frame(10, 10);
  frame.AddRecord(&layers.a, 0, 0, 0);
  frame.ToggleBlank();
  EXPECT_EQ(CellNumber(&frame, 0), -1);
  frame.ToggleBlank();
  EXPECT_EQ(CellNumber(&frame, 0), 0);
  frame.LastCellHere();
  frame.ToggleBlank();
  EXPECT_EQ(CellNumber(&frame, 0), -4);
  frame.ToggleBlank();
  EXPECT_EQ(CellNumber(&frame, 0), 3);
}

TEST(Frame, ToggleBlankNeedsACurrentRecord) {
  Layers layers;
  Frame frame(10, 10);
  frame.ToggleBlank();
  frame.AddRecord(&layers.a, 0, 0, 0);
  for (int32_t current : {-1, 1, 5}) {
    frame.currentRecord = current;
    frame.ToggleBlank();
    EXPECT_EQ(CellNumber(&frame, 0), 0);
  }
}

TEST(Frame, ShiftMovesTheNumbersOfOneLayerFromAPointOn) {
  Layers layers;
  Frame frame(10, 10);
  for (int32_t cell : {0, 1, 2}) frame.AddRecord(&layers.a, cell, 0, 0);
  frame.AddRecord(&layers.b, 2, 0, 0);
  frame.ShiftCellRefs(&layers.a, 1, 1);
  EXPECT_EQ(CellNumber(&frame, 0), 0);
  EXPECT_EQ(CellNumber(&frame, 1), 2);
  EXPECT_EQ(CellNumber(&frame, 2), 3);
  EXPECT_EQ(CellNumber(&frame, 3), 2);
  frame.ShiftCellRefs(&layers.a, 2, -1);
  EXPECT_EQ(CellNumber(&frame, 0), 0);
  EXPECT_EQ(CellNumber(&frame, 1), 1);
  EXPECT_EQ(CellNumber(&frame, 2), 2);
}

TEST(Frame, ShiftClipsToTheLastCell) {
  Layers layers;
  Frame frame(10, 10);
  frame.AddRecord(&layers.a, 3, 0, 0);
  frame.AddRecord(&layers.a, 9, 0, 0);
  frame.ShiftCellRefs(&layers.a, 2, 1);
  EXPECT_EQ(CellNumber(&frame, 0), 3);
  EXPECT_EQ(CellNumber(&frame, 1), 3);
}

TEST(Frame, ShiftClipsNumbersBelowItsPointToo) {
  Layers layers;
  Frame frame(10, 10);
  frame.AddRecord(&layers.a, 9, 0, 0);
  frame.ShiftCellRefs(&layers.a, 20, 1);
  EXPECT_EQ(CellNumber(&frame, 0), 3);
}

TEST(Frame, ShiftNeverTouchesABlankRecord) {
  Layers layers;
  Frame frame(10, 10);
  frame.AddRecord(&layers.a, -3, 0, 0);
  frame.AddRecord(&layers.a, -100, 0, 0);
  frame.ShiftCellRefs(&layers.a, 0, 1);
  frame.ShiftCellRefs(&layers.a, 0, -1);
  EXPECT_EQ(CellNumber(&frame, 0), -3);
  EXPECT_EQ(CellNumber(&frame, 1), -100);
}

TEST(Frame, BlankSwitchedOffPastTheLastCellShowsNothing) {
  Layers layers;
  Frame frame(10, 10);
  frame.AddRecord(&layers.a, 3, 0, 0);
  frame.ToggleBlank();
  layers.a.DeleteCell(0);
  frame.ShiftCellRefs(&layers.a, 1, -1);
  frame.ToggleBlank();
  EXPECT_EQ(CellNumber(&frame, 0), 3);
  int32_t x = 0;
  int32_t y = 0;
  EXPECT_EQ(frame.VisibleCell(0, &x, &y), nullptr);
}

// Two layers of one cell, 4 by 2 below and 3 by 2 above.
struct MergePair {
  MergePair(int32_t dx, int32_t dy) {
    lower.AddCell(0, 0, nullptr);
    upper.AddCell(0, 0, nullptr);
    frame.AddRecord(&lower, 0, 10, 20);
    frame.AddRecord(&upper, 0, 10 + dx, 20 + dy);
  }
  Layer lower{4, 2, nullptr, nullptr, 0};
  Layer upper{3, 2, nullptr, nullptr, 0};
  Frame frame{50, 50};
};

TEST(Frame, MergeDownDrawsInkOverTheCellBelow) {
  MergePair pair(0, 0);
  Paint(pair.lower.CellAt(0), "4444/4444");
  Paint(pair.upper.CellAt(0), "080/506");
  EXPECT_TRUE(pair.frame.MergeDown(0));
  EXPECT_EQ(Picture(pair.lower.CellAt(0)), "4844/5464");
  EXPECT_EQ(Picture(pair.upper.CellAt(0)), "080/506");
}

TEST(Frame, MergeDownShiftsByTheDifferenceOfThePositions) {
  MergePair pair(2, -1);
  Paint(pair.upper.CellAt(0), "888/123");
  EXPECT_TRUE(pair.frame.MergeDown(0));
  EXPECT_EQ(Picture(pair.lower.CellAt(0)), "0012/0000");
  MergePair other(-1, 1);
  Paint(other.upper.CellAt(0), "123/888");
  EXPECT_TRUE(other.frame.MergeDown(0));
  EXPECT_EQ(Picture(other.lower.CellAt(0)), "0000/2300");
}

TEST(Frame, MergeDownBesideTheCellBelowChangesNothingAndGivesTrue) {
  MergePair pair(40, 0);
  Paint(pair.lower.CellAt(0), "4444/4444");
  Paint(pair.upper.CellAt(0), "888/888");
  EXPECT_TRUE(pair.frame.MergeDown(0));
  EXPECT_EQ(Picture(pair.lower.CellAt(0)), "4444/4444");
}

TEST(Frame, MergeDownComparesRawPositions) {
  MergePair pair(1, 0);
  pair.upper.followFrame = 1;
  pair.frame.x = 100;
  Paint(pair.upper.CellAt(0), "123/000");
  EXPECT_TRUE(pair.frame.MergeDown(0));
  EXPECT_EQ(Picture(pair.lower.CellAt(0)), "0123/0000");
}

TEST(Frame, MergeDownAppliesToneMarks) {
  MergePair pair(0, 0);
  Paint(pair.lower.CellAt(0), "1800/4000");
  Paint(pair.upper.CellAt(0), "bbb/e00");
  EXPECT_TRUE(pair.frame.MergeDown(0));
  EXPECT_EQ(Picture(pair.lower.CellAt(0)), "33b0/2000");
}

TEST(Frame, MergeDownLeavesProtectedPixelsBelow) {
  MergePair pair(0, 0);
  Paint(pair.lower.CellAt(0), "4800/5000");
  Paint(pair.upper.CellAt(0), "111/188");
  EXPECT_TRUE(pair.frame.MergeDown(1u << 8 | 1u << 5));
  EXPECT_EQ(Picture(pair.lower.CellAt(0)), "1810/5880");
}

TEST(Frame, MergeDownMaskDoesNotConcernTheUpperPixels) {
  MergePair pair(0, 0);
  Paint(pair.lower.CellAt(0), "0000/4000");
  Paint(pair.upper.CellAt(0), "888/888");
  EXPECT_TRUE(pair.frame.MergeDown(1u << 8));
  EXPECT_EQ(Picture(pair.lower.CellAt(0)), "8880/8880");
}

TEST(Frame, MergeDownUsesTheRecordDirectlyBelowTheCurrentOne) {
  MergePair pair(0, 0);
  Layer top(4, 2, nullptr, nullptr, 0);
  top.AddCell(0, 7, nullptr);
  pair.frame.AddRecord(&top, 0, 10, 20);
  pair.frame.SelectRecord(1);
  Paint(pair.upper.CellAt(0), "111/000");
  EXPECT_TRUE(pair.frame.MergeDown(0));
  EXPECT_EQ(Picture(pair.lower.CellAt(0)), "1110/0000");
  EXPECT_EQ(Picture(top.CellAt(0)), "7777/7777");
}

TEST(Frame, MergeDownNeedsARecordBelow) {
  MergePair pair(0, 0);
  pair.upper.CellAt(0)->Fill(1);
  pair.frame.SelectRecord(0);
  EXPECT_FALSE(pair.frame.MergeDown(0));
  Frame empty(10, 10);
  EXPECT_FALSE(empty.MergeDown(0));
  EXPECT_EQ(Picture(pair.lower.CellAt(0)), "0000/0000");
}

TEST(Frame, MergeDownNeedsBothCellsVisible) {
  for (int32_t hidden : {0, 1}) {
    for (int32_t cell : {-1, 1}) {
      MergePair pair(0, 0);
      pair.upper.CellAt(0)->Fill(1);
      pair.frame.records.At(hidden)->cell = cell;
      EXPECT_FALSE(pair.frame.MergeDown(0));
      EXPECT_EQ(Picture(pair.lower.CellAt(0)), "0000/0000");
    }
  }
}

TEST(Frame, KeyMarkerKeepsTheBrightness) {
  for (const auto& [brightness, key] : {std::pair{0, -1}, {50, -51}, {100, -101}, {1, -2}}) {
    Frame frame(10, 10);
    frame.brightness = brightness;
    EXPECT_FALSE(frame.IsKey());
    frame.SetKey(true);
    EXPECT_EQ(frame.brightness, key);
    EXPECT_TRUE(frame.IsKey());
    EXPECT_EQ(frame.DecodedBrightness(), brightness);
    frame.SetKey(true);
    EXPECT_EQ(frame.brightness, key);
    frame.SetKey(false);
    EXPECT_EQ(frame.brightness, brightness);
    frame.SetKey(false);
    EXPECT_EQ(frame.brightness, brightness);
  }
}

TEST(Frame, BrightnessKeepsTheKeyMarker) {
  Frame frame(10, 10);
  frame.SetBrightness(30);
  EXPECT_EQ(frame.brightness, 30);
  frame.SetKey(true);
  frame.SetBrightness(0);
  EXPECT_EQ(frame.brightness, -1);
  frame.SetBrightness(100);
  EXPECT_EQ(frame.brightness, -101);
}

}  // namespace
}  // namespace sorvel
