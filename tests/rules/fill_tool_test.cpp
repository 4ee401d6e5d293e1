#include <gtest/gtest.h>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"
#include "rules/rule_table.h"

namespace rules {
namespace {

struct FillTool : DrawingTest {
  // Fills at a point of the window with the plain ink of an index.
  void FillAt(int x, int y, int index) {
    session.PickPlain(index);
    session.Command(kToolFill);
    session.LeftClick(x, y);
  }
  void DrawBox(int x, int y, int right, int bottom) {
    session.Command(kToolRectangle);
    session.Press(x, y);
    session.Release(right, bottom);
    model.Outline(x, y, right, bottom, 8);
  }
  void Area(int x, int y, int width, int height, int index) {
    session.FillArea(x, y, width, height, index);
    model.Fill(x, y, width, height, index);
  }
  // A line of index 5 from top to bottom.
  void DrawSketchColumn(int x) {
    session.PickPlain(1);
    session.Command(kToolFocusLines);
    session.LeftClick(x, 0);
    session.LeftClick(x, 47, "ctrl");
    model.Fill(x, 0, 1, 48, 5);
  }
};

TEST_F(FillTool, AFillInsideStopsAtLines) {
  DrawBox(10, 10, 30, 30);
  FillAt(20, 20, 2);
  EXPECT_TRUE(ViewShows(model.Fill(11, 11, 19, 19, 2)));
}

TEST_F(FillTool, AFillOutsideStopsAtLines) {
  DrawBox(10, 10, 30, 30);
  FillAt(0, 0, 2);
  EXPECT_TRUE(ViewShows(model.Fill(0, 0, 64, 48, 2).Fill(11, 11, 19, 19, 0).Outline(10, 10, 30, 30, 8)));
}

TEST_F(FillTool, AFillRunsIntoEveryBay) {
  Area(10, 0, 2, 40, 3);
  Area(20, 8, 2, 40, 3);
  Area(30, 0, 2, 40, 3);
  Area(22, 20, 6, 2, 3);
  FillAt(0, 0, 1);
  InkModel filled;
  for (int y = 0; y < 48; ++y) {
    for (int x = 0; x < 64; ++x) filled.Set(x, y, model.At(x, y) == 0 ? 1 : model.At(x, y));
  }
  EXPECT_TRUE(ViewShows(filled));
}

TEST_F(FillTool, ADiagonalLineHoldsTheFill) {
  session.DrawInkLine(0, 20, 20, 0);
  FillAt(2, 2, 2);
  const PixelMatrix view = session.NowView();
  EXPECT_EQ(view.At(10, 9), 2u);
  EXPECT_EQ(view.At(10, 10), 8u);
  EXPECT_EQ(view.At(10, 11), 0u);
  EXPECT_EQ(view.Count(2), 210);
}

TEST_F(FillTool, AFillFlowsAcrossASketchLine) {
  DrawSketchColumn(30);
  FillAt(5, 5, 2);
  EXPECT_TRUE(ViewShows(model.Fill(0, 0, 64, 48, 2)));
}

TEST_F(FillTool, AFillOfInkFlowsAcrossASketchLineToo) {
  Area(0, 0, 64, 48, 4);
  session.DrawInkLine(30, 0, 30, 47).Mask({4}).Command(kCommandToSketch);
  EXPECT_TRUE(ViewShows(model.Fill(30, 0, 1, 48, 5)));
  session.Mask({});
  FillAt(5, 5, 3);
  EXPECT_TRUE(ViewShows(model.Fill(0, 0, 64, 48, 3)));
}

TEST_F(FillTool, ASketchSeedCountsAsTransparent) {
  DrawSketchColumn(30);
  FillAt(30, 20, 2);
  EXPECT_TRUE(ViewShows(model.Fill(0, 0, 64, 48, 2)));
}

TEST_F(FillTool, ATouchedBoundaryGoesWithItsRun) {
  Area(30, 0, 1, 48, 9);
  FillAt(5, 5, 2);
  EXPECT_TRUE(ViewShows(model.Fill(0, 0, 31, 48, 2)));
}

TEST_F(FillTool, ABoundaryRunGoesAsFarAsItIsConnected) {
  DrawBox(20, 10, 40, 30);
  Area(30, 5, 1, 20, 10);
  Area(50, 20, 3, 3, 9);
  Area(60, 0, 4, 48, 3);
  FillAt(25, 20, 2);
  EXPECT_TRUE(ViewShows(model.Fill(21, 11, 9, 19, 2).Fill(31, 11, 9, 19, 2).Fill(30, 5, 1, 25, 2)));
}

TEST_F(FillTool, AnUntouchedBoundaryStays) {
  Area(30, 0, 2, 48, 4);
  Area(32, 0, 1, 48, 9);
  FillAt(5, 5, 2);
  EXPECT_TRUE(ViewShows(model.Fill(0, 0, 30, 48, 2)));
}

TEST_F(FillTool, AMaskedBoundaryStopsTheFill) {
  Area(30, 0, 1, 48, 9);
  session.Mask({9});
  FillAt(5, 5, 2);
  EXPECT_TRUE(ViewShows(model.Fill(0, 0, 30, 48, 2)));
}

TEST_F(FillTool, AClickOnABoundaryFillsThatBoundary) {
  Area(0, 0, 64, 48, 4);
  Area(10, 20, 20, 1, 9);
  FillAt(15, 20, 2);
  EXPECT_TRUE(ViewShows(model.Fill(10, 20, 20, 1, 2)));
}

TEST_F(FillTool, AClickOnABoundaryFillsTheTransparentSidesToo) {
  Area(30, 0, 1, 48, 10);
  FillAt(30, 20, 2);
  EXPECT_TRUE(ViewShows(model.Fill(0, 0, 64, 48, 2)));
}

TEST_F(FillTool, AClickOnAProtectedBoundaryChangesNothing) {
  Area(30, 0, 1, 48, 9);
  session.Mask({9});
  FillAt(30, 20, 2);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(FillTool, AProtectedSeedChangesNothing) {
  Area(10, 10, 20, 20, 4);
  session.Mask({4});
  FillAt(15, 15, 2);
  EXPECT_TRUE(ViewShows(model));
  EXPECT_EQ(session.NowUndoRect(), (rules::Area{0, 0, 0, 0}));
}

TEST_F(FillTool, TheInkOfTheSeedLeavesThePicture) {
  Area(10, 10, 20, 20, 4);
  FillAt(15, 15, 4);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(FillTool, APlainBlackFillIsFillBlack) {
  Area(10, 10, 20, 20, 4);
  FillAt(15, 15, 1);
  EXPECT_TRUE(ViewShows(model.Fill(10, 10, 20, 20, 1)));
}

TEST_F(FillTool, ADitherThatHoldsTheSeedColourFillsTheWholeArea) {
  Area(10, 10, 20, 20, 3);
  session.Pick(6, 2).Command(kToolFill).LeftClick(15, 15);
  EXPECT_TRUE(ViewShows(model.FillWith({.tone = 6, .colorA = 2, .colorB = 3}, 10, 10, 20, 20)));
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
  Area(30, 0, 1, 48, 9);
  FillAt(5, 5, 9);
  for (int y = 0; y < 48; y += 4) {
    for (int x = 3; x < 30; x += 4) model.Set(x, y, 9);
  }
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(FillTool, APlainBoundaryPenConsumesTheOtherBoundary) {
  Area(30, 0, 1, 48, 10);
  FillAt(5, 5, 9);
  EXPECT_EQ(session.NowView().Count(10), 0);
}

TEST_F(FillTool, TheScatterLeavesPenAndMaskAsTheyAre) {
  FillAt(5, 5, 9);
  const nlohmann::json pen = session.NowState()["pen"];
  EXPECT_EQ(pen["tone"], 0);
  EXPECT_EQ(pen["colorA"], 0);
  EXPECT_EQ(pen["colorB"], 9);
  EXPECT_EQ(pen["maskFlags"], 0);
}

const Rules<FillTool, "FillTool"> kFillToolRules = {
    {"APressAloneFillsNothing", Do().Command(kToolFill).Press(5, 5), Ink()},
    {"AReleaseBeforeTheFirstPressFillsNothing", Do().Command(kToolFill).Release(5, 5), Ink()},
};

TEST_F(FillTool, AfterTheFirstPressAReleaseAloneFills) {
  DrawBox(10, 10, 30, 30);
  FillAt(20, 20, 2);
  session.Release(40, 40);
  EXPECT_TRUE(ViewShows(model.Fill(0, 0, 64, 48, 2).Outline(10, 10, 30, 30, 8)));
}

TEST_F(FillTool, TheReleaseGivesThePoint) {
  DrawBox(10, 10, 30, 30);
  session.PickPlain(2).Command(kToolFill).Press(40, 40).Release(20, 20);
  EXPECT_TRUE(ViewShows(model.Fill(11, 11, 19, 19, 2)));
}

TEST_F(FillTool, TheGridDoesNotMoveTheClick) {
  DrawBox(9, 9, 15, 15);
  session.Grid(8, 8);
  FillAt(14, 14, 2);
  EXPECT_TRUE(ViewShows(model.Fill(10, 10, 5, 5, 2)));
  const nlohmann::json pen = session.NowState()["pen"];
  EXPECT_EQ(pen["gridWidth"], 8);
  EXPECT_EQ(pen["gridHeight"], 8);
}

TEST_F(FillTool, TheUndoRectOfOnePixelHasAMarginOfOne) {
  DrawBox(9, 9, 11, 11);
  FillAt(10, 10, 2);
  EXPECT_EQ(session.NowUndoRect(), (rules::Area{5, 5, 10, 10}));
}

TEST_F(FillTool, UndoTakesTheFillBack) {
  DrawBox(10, 10, 30, 30);
  FillAt(20, 20, 2);
  session.Command(kCommandUndo);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(FillTool, ABlankRecordIsNotFilled) {
  session.Command(kCommandBlankCell);
  FillAt(5, 5, 2);
  session.Command(kCommandBlankCell);
  EXPECT_TRUE(ViewShows(model));
}

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
