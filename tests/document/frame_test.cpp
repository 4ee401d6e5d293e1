#include "document/frame.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "support/test_document.h"

namespace sorvel {
namespace {

using testdoc::Drawing;
using testdoc::Drawings;
using testdoc::NumberCells;
using testdoc::Paint;
using testdoc::Picture;

using Numbers = std::vector<int32_t>;

// A frame, and three layers A, B and C of four cells each, which show the drawings 1 to 4.
struct Stack {
  // Records of cell 0 at the origin, the bottom one first; the last one is current.
  explicit Stack(std::string_view letters = "") {
    for (Layer* layer : {&a, &b, &c}) NumberCells(layer, 4);
    for (char letter : letters) frame.AddRecord(LayerOf(letter), 0, 0, 0);
  }
  // Records of layer A.
  Stack(std::initializer_list<int32_t> cells) : Stack() {
    for (int32_t cell : cells) frame.AddRecord(&a, cell, 0, 0);
  }

  Layer* LayerOf(char letter) { return letter == 'A' ? &a : letter == 'B' ? &b : &c; }
  std::string Shown() { return testdoc::Stack(&frame); }
  Numbers Cells() {
    Numbers cells;
    for (int32_t i = 0; i < frame.records.Count(); ++i) cells.push_back(frame.records.At(i)->cell);
    return cells;
  }
  FrameRecord Record(int32_t index) { return *frame.records.At(index); }

  Layer a{4, 2, "A", nullptr, 0};
  Layer b{4, 2, "B", nullptr, 0};
  Layer c{4, 2, "C", nullptr, 0};
  Frame frame{10, 10};
};

struct Place {
  int32_t x;
  int32_t y;
  bool operator==(const Place&) const = default;
};

TEST(Frame, NewFrameHasItsDefaults) {
  Frame frame(320, 240);
  EXPECT_EQ(frame.records.Count(), 0);
  EXPECT_EQ(frame.currentRecord, -1);
  EXPECT_EQ(Numbers({frame.time, frame.loop, frame.brightness}), Numbers({1, 1, 50}));
  EXPECT_EQ(Numbers({frame.x, frame.y, frame.width, frame.height}), Numbers({0, 0, 320, 240}));
  EXPECT_EQ(frame.comment, EmptyString);
}

TEST(Frame, AddRecordPutsItBehindTheCurrentOne) {
  Stack test;
  EXPECT_TRUE(test.frame.AddRecord(&test.a, 1, 5, -6));
  EXPECT_EQ(test.Shown(), "[A]");
  EXPECT_TRUE(test.frame.AddRecord(&test.b, 0, 0, 0));
  EXPECT_EQ(test.Shown(), "A[B]");
  test.frame.SelectRecord(0);
  EXPECT_TRUE(test.frame.AddRecord(&test.c, 0, 0, 0));
  EXPECT_EQ(test.Shown(), "A[C]B");
  EXPECT_EQ(test.Record(0), (FrameRecord{&test.a, 1, 5, -6}));
}

TEST(Frame, AddRecordGoesByTheCurrentRecordAndNotByTheLastOneRead) {
  Stack test("AB");
  test.frame.LayerAt(0);
  test.frame.AddRecord(&test.c, 0, 0, 0);
  EXPECT_EQ(test.Shown(), "AB[C]");
}

TEST(Frame, InsertRecordTakesTheIndexOfTheCurrentOne) {
  Stack test("AB");
  EXPECT_TRUE(test.frame.InsertRecord(&test.c, 2, 3, 4));
  EXPECT_EQ(test.Shown(), "A[C]B");
  EXPECT_EQ(test.Record(1), (FrameRecord{&test.c, 2, 3, 4}));
}

TEST(Frame, InsertRecordWithoutACurrentOnePutsItInTwice) {
  Stack test;
  EXPECT_TRUE(test.frame.InsertRecord(&test.a, 1, 2, 3));
  EXPECT_EQ(test.Shown(), "[A]A");
  EXPECT_EQ(test.Record(0), (FrameRecord{&test.a, 1, 2, 3}));
  EXPECT_EQ(test.Record(1), test.Record(0));
}

TEST(Frame, RemovingALayerLeavesACurrentRecord) {
  const struct {
    const char* rule;
    const char* records;
    int32_t current;
    char removed;
    const char* left;
  } rows[] = {
      {"RemovingTheLayerOfTheLastRecordSelectsTheNewLast", "ABC", 2, 'C', "A[B]"},
      {"RemovingTheCurrentLayerInTheMiddleSelectsItsSuccessor", "ABC", 1, 'B', "A[C]"},
      {"RemovingALayerBelowKeepsTheCurrentRecord", "ABAC", 3, 'A', "B[C]"},
      {"RemovingALayerAboveKeepsTheCurrentRecord", "ABB", 0, 'B', "[A]"},
      {"RemovingTheOnlyLayerLeavesNoCurrentRecord", "AA", 1, 'A', ""},
      {"RemovingAForeignLayerChangesNothing", "AB", 0, 'C', "[A]B"},
      {"RemovingAForeignLayerChangesNothing", "", -1, 'C', ""},
  };
  for (const auto& row : rows) {
    Stack test(row.records);
    test.frame.currentRecord = row.current;
    test.frame.RemoveLayer(test.LayerOf(row.removed));
    EXPECT_EQ(test.Shown(), row.left) << row.rule;
    if (row.left[0] == 0) {
      EXPECT_EQ(test.frame.currentRecord, -1) << row.rule;
    }
  }
}

TEST(Frame, SelectRecordRefusesABadIndex) {
  Stack empty;
  EXPECT_FALSE(empty.frame.SelectRecord(0));
  EXPECT_EQ(empty.frame.currentRecord, -1);
  Stack test("AB");
  EXPECT_FALSE(test.frame.SelectRecord(2));
  EXPECT_FALSE(test.frame.SelectRecord(-1));
  EXPECT_EQ(test.Shown(), "A[B]");
  EXPECT_TRUE(test.frame.SelectRecord(0));
  EXPECT_EQ(test.Shown(), "[A]B");
}

TEST(Frame, MoveRecordUpSwapsItWithItsSuccessor) {
  Stack test("ABC");
  test.frame.SelectRecord(0);
  EXPECT_TRUE(test.frame.MoveRecordUp(-1));
  EXPECT_EQ(test.Shown(), "B[A]C");
  EXPECT_TRUE(test.frame.MoveRecordUp(1));
  EXPECT_EQ(test.Shown(), "BC[A]");
  EXPECT_FALSE(test.frame.MoveRecordUp(-1));
  EXPECT_EQ(test.Shown(), "BC[A]");
}

TEST(Frame, MoveRecordDownSwapsItWithItsPredecessor) {
  Stack test("ABC");
  EXPECT_TRUE(test.frame.MoveRecordDown(-1));
  EXPECT_EQ(test.Shown(), "A[C]B");
  EXPECT_TRUE(test.frame.MoveRecordDown(1));
  EXPECT_EQ(test.Shown(), "[C]AB");
  EXPECT_FALSE(test.frame.MoveRecordDown(-1));
  EXPECT_EQ(test.Shown(), "[C]AB");
}

TEST(Frame, MovingAnotherRecordLeavesTheCurrentIndex) {
  Stack test("ABC");
  test.frame.SelectRecord(1);
  EXPECT_TRUE(test.frame.MoveRecordUp(0));
  EXPECT_EQ(test.Shown(), "B[A]C");
  EXPECT_TRUE(test.frame.MoveRecordDown(2));
  EXPECT_EQ(test.Shown(), "B[C]A");
}

TEST(Frame, MovingABadIndexIsFalse) {
  Stack test("AB");
  for (int32_t index : {2, 7, -2}) {
    EXPECT_FALSE(test.frame.MoveRecordUp(index));
    EXPECT_FALSE(test.frame.MoveRecordDown(index));
  }
  EXPECT_EQ(test.Shown(), "A[B]");
}

TEST(Frame, GetRecordGivesRawFields) {
  Stack test;
  test.a.followFrame = 1;
  test.frame.x = 100;
  test.frame.AddRecord(&test.a, -3, 7, 8);
  FrameRecord read = {};
  EXPECT_TRUE(test.frame.GetRecord(0, &read.layer, &read.x, &read.y, &read.cell));
  EXPECT_EQ(read, (FrameRecord{&test.a, -3, 7, 8}));
}

TEST(Frame, BadIndexIsFalseOrNullInEveryRecordOperation) {
  Stack test;
  test.frame.AddRecord(&test.a, 1, 2, 3);
  Frame other(10, 10);
  other.AddRecord(&test.a, 1, 20, 30);
  for (int32_t index : {-1, 1, 9}) {
    FrameRecord read = {};
    Place place = {77, 77};
    EXPECT_FALSE(test.frame.GetRecord(index, &read.layer, &read.x, &read.y, &read.cell));
    EXPECT_EQ(test.frame.LayerAt(index), nullptr);
    EXPECT_EQ(test.frame.VisibleCell(index), nullptr);
    EXPECT_EQ(test.frame.VisibleCell(index, &place.x, &place.y), nullptr);
    EXPECT_FALSE(test.frame.GetRecordPosition(index, &place.x, &place.y));
    EXPECT_FALSE(test.frame.SetRecordPosition(index, 5, 5));
    EXPECT_FALSE(test.frame.OffsetRecord(index, 5, 5));
    EXPECT_FALSE(test.frame.CopyRecordPosition(index, &other));
    EXPECT_EQ(test.frame.PreviousCell(index), nullptr);
    EXPECT_EQ(test.frame.NextCell(index), nullptr);
    EXPECT_EQ(place, (Place{77, 77}));
  }
  EXPECT_EQ(test.Record(0), (FrameRecord{&test.a, 1, 2, 3}));
}

TEST(Frame, LayerAtGivesTheLayer) {
  Stack test("AB");
  test.frame.records.At(1)->cell = -1;
  EXPECT_EQ(test.frame.LayerAt(0), &test.a);
  EXPECT_EQ(test.frame.LayerAt(1), &test.b);
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
  EXPECT_EQ(Numbers({frame.time, frame.x, frame.y}), Numbers({1, 160, 120}));
  EXPECT_EQ(Numbers({frame.loop, frame.brightness}), Numbers({4, -31}));
  EXPECT_STREQ(frame.comment, "note");
}

TEST(Frame, CopyTakesRecordsTimeAndPosition) {
  Stack test;
  Frame source(30, 40);
  source.AddRecord(&test.a, 1, 2, 3);
  source.AddRecord(&test.b, -2, 4, 5);
  source.SelectRecord(0);
  source.time = -7;
  source.x = 11;
  source.y = 12;
  Frame copy(1, 1);
  copy.CopyFrom(&source);
  EXPECT_TRUE(copy.SameAs(&source));
  EXPECT_EQ(copy.currentRecord, 0);
  EXPECT_EQ(Numbers({copy.time, copy.x, copy.y, copy.width, copy.height}), Numbers({-7, 11, 12, 30, 40}));
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
  Stack test;
  Frame& a = test.frame;
  Frame b(10, 10);
  EXPECT_TRUE(a.SameAs(&b));
  a.AddRecord(&test.a, 1, 2, 3);
  b.AddRecord(&test.a, 1, 2, 3);
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
  Stack test;
  const FrameRecord changes[] = {{&test.b, 1, 2, 3}, {&test.a, 0, 2, 3}, {&test.a, 1, 0, 3}, {&test.a, 1, 2, 0}};
  for (const FrameRecord& change : changes) {
    Frame a(10, 10);
    Frame b(10, 10);
    a.AddRecord(&test.a, 1, 2, 3);
    b.AddRecord(change.layer, change.cell, change.x, change.y);
    EXPECT_FALSE(a.SameAs(&b));
  }
  Frame& a = test.frame;
  Frame b(10, 10);
  a.x = 1;
  EXPECT_FALSE(a.SameAs(&b));
  b.x = 1;
  b.y = 1;
  EXPECT_FALSE(a.SameAs(&b));
  a.y = 1;
  a.AddRecord(&test.a, 0, 0, 0);
  EXPECT_FALSE(a.SameAs(&b));
  EXPECT_FALSE(b.SameAs(&a));
  a.AddRecord(&test.b, 0, 0, 0);
  b.AddRecord(&test.b, 0, 0, 0);
  b.AddRecord(&test.a, 0, 0, 0);
  EXPECT_FALSE(a.SameAs(&b));
}

TEST(Frame, VisibleCellComesWithItsPlaceOnTheCut) {
  Stack test;
  test.b.followFrame = 1;
  test.frame.x = 100;
  test.frame.y = -50;
  test.frame.AddRecord(&test.a, 1, 2, 3);
  test.frame.AddRecord(&test.b, 3, 2, 3);
  Place place = {};
  EXPECT_EQ(test.frame.VisibleCell(0, &place.x, &place.y), test.a.CellAt(1));
  EXPECT_EQ(place, (Place{2, 3}));
  EXPECT_EQ(test.frame.VisibleCell(1, &place.x, &place.y), test.b.CellAt(3));
  EXPECT_EQ(place, (Place{102, -47}));
  EXPECT_EQ(test.frame.VisibleCell(1), test.b.CellAt(3));
}

TEST(Frame, BlankRecordShowsNothingAndWritesNoPosition) {
  Stack test({-1});
  Place place = {77, 88};
  EXPECT_EQ(test.frame.VisibleCell(0, &place.x, &place.y), nullptr);
  EXPECT_EQ(test.frame.VisibleCell(0), nullptr);
  EXPECT_EQ(place, (Place{77, 88}));
}

TEST(Frame, StaleCellNumberShowsNothing) {
  EXPECT_EQ(Stack({4}).frame.VisibleCell(0), nullptr);
}

TEST(Frame, BlankRecordHasAPosition) {
  Stack test;
  test.a.followFrame = 1;
  test.frame.x = 10;
  test.frame.y = 20;
  test.frame.AddRecord(&test.a, -1, 2, 3);
  Place place = {};
  EXPECT_TRUE(test.frame.GetRecordPosition(0, &place.x, &place.y));
  EXPECT_EQ(place, (Place{12, 23}));
}

TEST(Frame, SetRecordPositionStoresRelativeToTheFrameForAFollowingLayer) {
  Stack test("AB");
  test.b.followFrame = 1;
  test.frame.x = 10;
  test.frame.y = 20;
  EXPECT_TRUE(test.frame.SetRecordPosition(0, 5, 6));
  EXPECT_TRUE(test.frame.SetRecordPosition(1, 5, 6));
  EXPECT_EQ(test.Record(0), (FrameRecord{&test.a, 0, 5, 6}));
  EXPECT_EQ(test.Record(1), (FrameRecord{&test.b, 0, -5, -14}));
}

TEST(Frame, OffsetRecordAddsToTheRawPosition) {
  Stack test;
  test.a.followFrame = 1;
  test.frame.x = 10;
  test.frame.AddRecord(&test.a, -1, 1, 2);
  EXPECT_TRUE(test.frame.OffsetRecord(0, 5, -6));
  EXPECT_EQ(test.Record(0), (FrameRecord{&test.a, -1, 6, -4}));
}

TEST(Frame, CopyRecordPositionCopiesTheRawPosition) {
  Stack test;
  test.a.followFrame = 1;
  Frame other(10, 10);
  other.x = 100;
  test.frame.AddRecord(&test.a, 2, 1, 1);
  other.AddRecord(&test.b, 3, 7, 8);
  EXPECT_TRUE(test.frame.CopyRecordPosition(0, &other));
  EXPECT_EQ(test.Record(0), (FrameRecord{&test.a, 2, 7, 8}));
}

TEST(Frame, CopyRecordPositionNeedsTheRecordInBothFrames) {
  Stack test;
  Frame other(10, 10);
  test.frame.AddRecord(&test.a, 2, 1, 1);
  EXPECT_FALSE(test.frame.CopyRecordPosition(0, &other));
  EXPECT_FALSE(other.CopyRecordPosition(0, &test.frame));
  EXPECT_EQ(test.Record(0), (FrameRecord{&test.a, 2, 1, 1}));
}

TEST(Frame, NeighboursOfTheShownCellGoRound) {
  Stack test({0, 1, 3});
  const struct {
    int32_t previous;
    int32_t next;
  } drawings[] = {{4, 2}, {1, 3}, {3, 1}};
  for (int32_t i = 0; i < 3; ++i) {
    EXPECT_EQ(Drawing(test.frame.PreviousCell(i)), drawings[i].previous) << i;
    EXPECT_EQ(Drawing(test.frame.NextCell(i)), drawings[i].next) << i;
  }
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
  Stack test({-2});
  EXPECT_EQ(test.frame.PreviousCell(0), nullptr);
  EXPECT_EQ(test.frame.NextCell(0), nullptr);
}

TEST(Frame, CellsAreAddedAndRemovedAtTheShownOne) {
  const auto add = [](Frame& frame) { return frame.AddCellHere(9); };
  const auto insert = [](Frame& frame) { return frame.InsertCellHere(9); };
  const auto remove = [](Frame& frame) { return frame.RemoveCellHere(); };
  const struct {
    const char* rule;
    int32_t shown;
    bool (*run)(Frame&);
    bool result;
    int32_t shownAfter;
    const char* drawings;
  } rows[] = {
      {"AddCellHereShowsTheNewCellBehind", 1, add, true, 2, "12934"},
      {"AddCellHereFailsOnAStaleNumber", 4, add, false, 4, "1234"},
      {"InsertCellHereShowsTheNewCellAhead", 1, insert, true, 1, "19234"},
      {"RemoveCellHereShowsTheSuccessor", 1, remove, true, 1, "134"},
      {"RemoveCellHereOfTheLastCellShowsThePredecessor", 3, remove, true, 2, "123"},
  };
  for (const auto& row : rows) {
    Stack test({row.shown});
    EXPECT_EQ(row.run(test.frame), row.result) << row.rule;
    EXPECT_EQ(test.Cells(), Numbers({row.shownAfter})) << row.rule;
    EXPECT_EQ(Drawings(&test.a), row.drawings) << row.rule;
  }
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
  Stack test({1});
  for (const auto& [moves, cell] : {std::pair{true, 0}, {false, 0}}) {
    EXPECT_EQ(test.frame.StepCellBack(), moves);
    EXPECT_EQ(test.Cells(), Numbers({cell}));
  }
  for (const auto& [moves, cell] : {std::pair{true, 1}, {true, 2}, {true, 3}, {false, 3}}) {
    EXPECT_EQ(test.frame.StepCellForward(), moves);
    EXPECT_EQ(test.Cells(), Numbers({cell}));
  }
}

TEST(Frame, FirstAndLastCellAreReachedFromAnywhere) {
  Stack test({2});
  for (int32_t i = 0; i < 2; ++i) {
    EXPECT_TRUE(test.frame.FirstCellHere());
    EXPECT_EQ(test.Cells(), Numbers({0}));
  }
  for (int32_t i = 0; i < 2; ++i) {
    EXPECT_TRUE(test.frame.LastCellHere());
    EXPECT_EQ(test.Cells(), Numbers({3}));
  }
}

TEST(Frame, CellOperationsActOnTheCurrentRecord) {
  Stack test({1, 1, 1});
  test.frame.SelectRecord(1);
  test.frame.LayerAt(2);
  EXPECT_TRUE(test.frame.StepCellForward());
  EXPECT_EQ(test.Cells(), Numbers({1, 2, 1}));
}

TEST(Frame, CellOperationsRefuseABlankRecord) {
  Stack test({-2});
  EXPECT_FALSE(test.frame.AddCellHere(9));
  EXPECT_FALSE(test.frame.InsertCellHere(9));
  for (bool (Frame::*run)() : {&Frame::RemoveCellHere, &Frame::StepCellBack, &Frame::StepCellForward,
                               &Frame::FirstCellHere, &Frame::LastCellHere}) {
    EXPECT_FALSE((test.frame.*run)());
  }
  EXPECT_EQ(test.Cells(), Numbers({-2}));
  EXPECT_EQ(Drawings(&test.a), "1234");
}

TEST(Frame, BlankHoldsTheComplementOfTheNumber) {
  for (const auto& [cell, blank] : {std::pair{0, -1}, {3, -4}}) {
    Stack test({cell});
    test.frame.ToggleBlank();
    EXPECT_EQ(test.Cells(), Numbers({blank}));
    test.frame.ToggleBlank();
    EXPECT_EQ(test.Cells(), Numbers({cell}));
  }
}

TEST(Frame, ToggleBlankNeedsACurrentRecord) {
  Stack empty;
  empty.frame.ToggleBlank();
  Stack test({0});
  for (int32_t current : {-1, 1, 5}) {
    test.frame.currentRecord = current;
    test.frame.ToggleBlank();
    EXPECT_EQ(test.Cells(), Numbers({0}));
  }
}

TEST(Frame, ShiftMovesTheNumbersOfOneLayerFromAPointOn) {
  Stack test({0, 1, 2});
  test.frame.AddRecord(&test.b, 2, 0, 0);
  test.frame.ShiftCellRefs(&test.a, 1, 1);
  EXPECT_EQ(test.Cells(), Numbers({0, 2, 3, 2}));
  test.frame.ShiftCellRefs(&test.a, 2, -1);
  EXPECT_EQ(test.Cells(), Numbers({0, 1, 2, 2}));
}

TEST(Frame, ShiftClipsToTheLastCell) {
  Stack test({3, 9});
  test.frame.ShiftCellRefs(&test.a, 2, 1);
  EXPECT_EQ(test.Cells(), Numbers({3, 3}));
}

TEST(Frame, ShiftClipsNumbersBelowItsPointToo) {
  Stack test({9});
  test.frame.ShiftCellRefs(&test.a, 20, 1);
  EXPECT_EQ(test.Cells(), Numbers({3}));
}

TEST(Frame, ShiftNeverTouchesABlankRecord) {
  Stack test({-3, -100});
  test.frame.ShiftCellRefs(&test.a, 0, 1);
  test.frame.ShiftCellRefs(&test.a, 0, -1);
  EXPECT_EQ(test.Cells(), Numbers({-3, -100}));
}

TEST(Frame, BlankSwitchedOffPastTheLastCellShowsNothing) {
  Stack test({3});
  test.frame.ToggleBlank();
  test.a.DeleteCell(0);
  test.frame.ShiftCellRefs(&test.a, 1, -1);
  test.frame.ToggleBlank();
  EXPECT_EQ(test.Cells(), Numbers({3}));
  EXPECT_EQ(test.frame.VisibleCell(0), nullptr);
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

TEST(Frame, MergeDownDrawsOnTheCellBelow) {
  const struct {
    const char* rule;
    const char* below;
    const char* above;
    const char* merged;
    int32_t dx = 0;
    int32_t dy = 0;
    uint32_t mask = 0;
  } rows[] = {
      {"MergeDownDrawsInkOverTheCellBelow", "4444/4444", "080/506", "4844/5464"},
      {"MergeDownShiftsByTheDifferenceOfThePositions", "0000/0000", "888/123", "0012/0000", 2, -1},
      {"MergeDownShiftsByTheDifferenceOfThePositions", "0000/0000", "123/888", "0000/2300", -1, 1},
      {"MergeDownBesideTheCellBelowChangesNothingAndGivesTrue", "4444/4444", "888/888", "4444/4444", 40},
      {"MergeDownAppliesToneMarks", "1800/4000", "bbb/e00", "33b0/2000"},
      {"MergeDownLeavesProtectedPixelsBelow", "4800/5000", "111/188", "1810/5880", 0, 0, 1u << 8 | 1u << 5},
      {"MergeDownMaskDoesNotConcernTheUpperPixels", "0000/4000", "888/888", "8880/8880", 0, 0, 1u << 8},
  };
  for (const auto& row : rows) {
    MergePair pair(row.dx, row.dy);
    Paint(pair.lower.CellAt(0), row.below);
    Paint(pair.upper.CellAt(0), row.above);
    EXPECT_TRUE(pair.frame.MergeDown(row.mask)) << row.rule;
    EXPECT_EQ(Picture(pair.lower.CellAt(0)), row.merged) << row.rule;
    EXPECT_EQ(Picture(pair.upper.CellAt(0)), row.above) << row.rule;
  }
}

TEST(Frame, MergeDownComparesRawPositions) {
  MergePair pair(1, 0);
  pair.upper.followFrame = 1;
  pair.frame.x = 100;
  Paint(pair.upper.CellAt(0), "123/000");
  EXPECT_TRUE(pair.frame.MergeDown(0));
  EXPECT_EQ(Picture(pair.lower.CellAt(0)), "0123/0000");
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
  EXPECT_FALSE(Frame(10, 10).MergeDown(0));
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
    for (bool isKey : {true, true, false, false}) {
      frame.SetKey(isKey);
      EXPECT_EQ(frame.brightness, isKey ? key : brightness);
      EXPECT_EQ(frame.IsKey(), isKey);
      EXPECT_EQ(frame.DecodedBrightness(), brightness);
    }
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
