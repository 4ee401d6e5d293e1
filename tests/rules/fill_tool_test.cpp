#include <gtest/gtest.h>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"
#include "rules/rule_table.h"

namespace rules {
namespace {

struct FillTool : DrawingTest {};

// Fills at a point of the window with the plain ink of an index.
ScriptSession FillAt(int x, int y, int index) {
  return Do().PickPlain(index).Command(kToolFill).LeftClick(x, y);
}

Rule::Steps DrawBox(int x, int y, int right, int bottom) {
  return {Do().Command(kToolRectangle).Press(x, y).Release(right, bottom), Ink().Outline(x, y, right, bottom, 8)};
}

// A line of index 5 from top to bottom.
Rule::Steps DrawSketchColumn(int x) {
  ScriptSession draw;
  draw.PickPlain(1).Command(kToolFocusLines).LeftClick(x, 0).LeftClick(x, 47, "ctrl");
  return {draw, Ink().Fill(x, 0, 1, 48, 5)};
}

TEST_F(FillTool, APlainBoundaryPenScattersOverTheArea) {
  for (const int index : {9, 10}) {
    DrawingSession fresh;
    fresh.FillArea(8, 8, 16, 16, 4).PickPlain(index).Command(kToolFill).LeftClick(10, 10);
    InkModel scatter;
    for (int y = 8; y < 24; y += 4) {
      for (int x = 11; x < 24; x += 4) scatter.Set(x, y, index);
    }
    EXPECT_TRUE(Shows(fresh.NowView(), scatter)) << index;
  }
}

TEST_F(FillTool, APlainBoundaryPenStopsAtItsOwnColour) {
  session.FillArea(30, 0, 1, 48, 9);
  model.Fill(30, 0, 1, 48, 9);
  session.Then(FillAt(5, 5, 9));
  for (int y = 0; y < 48; y += 4) {
    for (int x = 3; x < 30; x += 4) model.Set(x, y, 9);
  }
  EXPECT_TRUE(ViewShows(model));
}

const Rules<FillTool, "FillTool"> kFillToolRules = {
    {"AFillRunsIntoEveryBay", Filled{10, 0, 2, 40, 3}, Filled{20, 8, 2, 40, 3}, Filled{30, 0, 2, 40, 3},
     Filled{22, 20, 6, 2, 3}, FillAt(0, 0, 1),
     OnEmpty()
         .Fill(0, 0, 64, 48, 1)
         .Fill(10, 0, 2, 40, 3)
         .Fill(20, 8, 2, 40, 3)
         .Fill(30, 0, 2, 40, 3)
         .Fill(22, 20, 6, 2, 3)},
    {"ADiagonalLineHoldsTheFill", Do().DrawInkLine(0, 20, 20, 0), FillAt(2, 2, 2),
     Has("pixel/10/9", 2, "pixel/10/10", 8, "pixel/10/11", 0, "pixels/2", 210)},
    {"TheGridDoesNotMoveTheClick", DrawBox(9, 9, 15, 15), Do().Grid(8, 8), FillAt(14, 14, 2),
     Ink().Fill(10, 10, 5, 5, 2), Has("pen/gridWidth,gridHeight", "8 8")},
    {"TheScatterLeavesPenAndMaskAsTheyAre", FillAt(5, 5, 9), Has("pen/tone,colorA,colorB,maskFlags", "0 0 9 0")},
    {"AFillInsideStopsAtLines", DrawBox(10, 10, 30, 30), FillAt(20, 20, 2), Ink().Fill(11, 11, 19, 19, 2)},
    {"AFillOutsideStopsAtLines", DrawBox(10, 10, 30, 30), FillAt(0, 0, 2),
     Ink().Fill(0, 0, 64, 48, 2).Fill(11, 11, 19, 19, 0).Outline(10, 10, 30, 30, 8)},
    {"AFillFlowsAcrossASketchLine", DrawSketchColumn(30), FillAt(5, 5, 2), Ink().Fill(0, 0, 64, 48, 2)},
    {"AFillOfInkFlowsAcrossASketchLineToo", Filled{0, 0, 64, 48, 4},
     Do().DrawInkLine(30, 0, 30, 47).Mask({4}).Command(kCommandToSketch), Ink().Fill(30, 0, 1, 48, 5), Do().Mask({}),
     FillAt(5, 5, 3), Ink().Fill(0, 0, 64, 48, 3)},
    {"ASketchSeedCountsAsTransparent", DrawSketchColumn(30), FillAt(30, 20, 2), Ink().Fill(0, 0, 64, 48, 2)},
    {"ATouchedBoundaryGoesWithItsRun", Filled{30, 0, 1, 48, 9}, FillAt(5, 5, 2), Ink().Fill(0, 0, 31, 48, 2)},
    {"ABoundaryRunGoesAsFarAsItIsConnected", DrawBox(20, 10, 40, 30), Filled{30, 5, 1, 20, 10}, Filled{50, 20, 3, 3, 9},
     Filled{60, 0, 4, 48, 3}, FillAt(25, 20, 2),
     Ink().Fill(21, 11, 9, 19, 2).Fill(31, 11, 9, 19, 2).Fill(30, 5, 1, 25, 2)},
    {"AnUntouchedBoundaryStays", Filled{30, 0, 2, 48, 4}, Filled{32, 0, 1, 48, 9}, FillAt(5, 5, 2),
     Ink().Fill(0, 0, 30, 48, 2)},
    {"AMaskedBoundaryStopsTheFill", Filled{30, 0, 1, 48, 9}, Do().Mask({9}), FillAt(5, 5, 2),
     Ink().Fill(0, 0, 30, 48, 2)},
    {"AClickOnABoundaryFillsThatBoundary", Filled{0, 0, 64, 48, 4}, Filled{10, 20, 20, 1, 9}, FillAt(15, 20, 2),
     Ink().Fill(10, 20, 20, 1, 2)},
    {"AClickOnABoundaryFillsTheTransparentSidesToo", Filled{30, 0, 1, 48, 10}, FillAt(30, 20, 2),
     Ink().Fill(0, 0, 64, 48, 2)},
    {"AClickOnAProtectedBoundaryChangesNothing", Filled{30, 0, 1, 48, 9}, Do().Mask({9}), FillAt(30, 20, 2), Ink()},
    {"AProtectedSeedChangesNothing", Filled{10, 10, 20, 20, 4}, Do().Mask({4}), FillAt(15, 15, 2), Ink(),
     Has("cut/undoRect", Area{0, 0, 0, 0})},
    {"TheInkOfTheSeedLeavesThePicture", Filled{10, 10, 20, 20, 4}, FillAt(15, 15, 4), Ink()},
    {"APlainBlackFillIsFillBlack", Filled{10, 10, 20, 20, 4}, FillAt(15, 15, 1), Ink().Fill(10, 10, 20, 20, 1)},
    {"APlainBoundaryPenConsumesTheOtherBoundary", Filled{30, 0, 1, 48, 10}, FillAt(5, 5, 9), Has("pixels/10", 0)},
    {"ADitherThatHoldsTheSeedColourFillsTheWholeArea", Filled{10, 10, 20, 20, 3},
     Do().Pick(6, 2).Command(kToolFill).LeftClick(15, 15),
     Ink().FillWith({.tone = 6, .colorA = 2, .colorB = 3}, 10, 10, 20, 20)},
    {"APressAloneFillsNothing", Do().Command(kToolFill).Press(5, 5), Ink()},
    {"AReleaseBeforeTheFirstPressFillsNothing", Do().Command(kToolFill).Release(5, 5), Ink()},
    {"AfterTheFirstPressAReleaseAloneFills", DrawBox(10, 10, 30, 30), FillAt(20, 20, 2), Do().Release(40, 40),
     Ink().Fill(0, 0, 64, 48, 2).Outline(10, 10, 30, 30, 8)},
    {"TheReleaseGivesThePoint", DrawBox(10, 10, 30, 30),
     Do().PickPlain(2).Command(kToolFill).Press(40, 40).Release(20, 20), Ink().Fill(11, 11, 19, 19, 2)},
    {"TheUndoRectOfOnePixelHasAMarginOfOne", DrawBox(9, 9, 11, 11), FillAt(10, 10, 2),
     Has("cut/undoRect", Area{5, 5, 10, 10})},
    {"UndoTakesTheFillBack", DrawBox(10, 10, 30, 30), FillAt(20, 20, 2), Do().Command(kCommandUndo), Ink()},
    {"ABlankRecordIsNotFilled", Do().Command(kCommandBlankCell), FillAt(5, 5, 2), Do().Command(kCommandBlankCell),
     Ink()},
};

TEST(FillOutside, AClickOutsideTheCellTakesTheUndoCopyAlone) {
  DrawingSession session({.clientWidth = 84, .clientHeight = 68});
  session.DrawInkLine(20, 20, 40, 20).Command(kToolFill).LeftClick(3, 3);
  InkModel model;
  model.Line(10, 10, 30, 10);
  EXPECT_TRUE(Shows(session.NowView(), model));
  session.Command(kCommandUndo);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

}  // namespace
}  // namespace rules
