#include <gtest/gtest.h>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"

namespace rules {
namespace {

struct AreaSelection : testing::Test {
  void Area(int x, int y, int width, int height, int index) {
    session.FillArea(x, y, width, height, index);
    model.Fill(x, y, width, height, index);
  }
  void Select(int left, int top, int right, int bottom) {
    session.Command(kToolAreaSelect);
    session.LeftDrag(left, top, right, bottom);
  }
  DrawingSession session;
  InkModel model;
};

TEST_F(AreaSelection, ADragMarksItsRectangle) {
  Select(10, 12, 30, 25);
  EXPECT_EQ(session.NowSelection(), (rules::Area{10, 12, 30, 25}));
}

TEST_F(AreaSelection, TheSelectionFollowsEveryMove) {
  session.Command(kToolAreaSelect);
  session.Press(10, 12);
  session.Move(30, 25);
  session.Move(20, 40);
  EXPECT_EQ(session.NowSelection(), (rules::Area{10, 12, 20, 40}));
}

TEST_F(AreaSelection, MovesToTheUpperLeftDoNotCount) {
  session.Command(kToolAreaSelect);
  session.Press(20, 20);
  session.Move(30, 30);
  session.Move(10, 40);
  session.Move(40, 10);
  session.Release(40, 10);
  EXPECT_EQ(session.NowSelection(), (rules::Area{20, 20, 30, 30}));
}

TEST_F(AreaSelection, ADragMarksNothingInTheCell) {
  Select(10, 12, 30, 25);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(AreaSelection, TheFrameStandsOnTheScreen) {
  session.Command(kToolAreaSelect);
  const PixelMatrix screen = session.NowScreen();
  session.LeftDrag(10, 12, 30, 25);
  EXPECT_FALSE(session.NowScreen() == screen);
  session.RightClick(5, 5);
  EXPECT_TRUE(session.NowScreen() == screen);
}

TEST_F(AreaSelection, ARightClickSelectsTheWholeCell) {
  session.Command(kToolAreaSelect).RightClick(20, 20);
  EXPECT_EQ(session.NowSelection(), (rules::Area{0, 0, 64, 48}));
}

TEST_F(AreaSelection, ASecondRightClickClearsTheSelection) {
  session.Command(kToolAreaSelect).RightClick(20, 20).RightClick(20, 20);
  EXPECT_FALSE(session.HasSelection());
}

TEST_F(AreaSelection, ARightClickSelectsTheCellWhereItStands) {
  session.AddLayer("B", 20, 10);
  session.Command(kToolLayerPosition);
  session.LeftDrag(10, 10, 13, 15);
  session.Command(kToolAreaSelect).RightClick(20, 20);
  EXPECT_EQ(session.NowSelection(), (rules::Area{25, 24, 45, 34}));
}

TEST_F(AreaSelection, ARightClickDuringADragIsIgnored) {
  session.Command(kToolAreaSelect);
  session.Press(10, 12);
  session.Move(30, 25);
  session.RightRelease(30, 25);
  EXPECT_EQ(session.NowSelection(), (rules::Area{10, 12, 30, 25}));
}

TEST_F(AreaSelection, APulseEndsTheSelection) {
  Select(10, 12, 30, 25);
  session.Repaint();
  EXPECT_FALSE(session.HasSelection());
}

TEST_F(AreaSelection, AToolChangeEndsTheSelection) {
  Select(10, 12, 30, 25);
  session.Command(kToolFreePen);
  EXPECT_FALSE(session.HasSelection());
}

TEST_F(AreaSelection, APressBesideItBeginsANewOne) {
  Select(10, 12, 30, 25);
  session.LeftDrag(40, 30, 50, 45);
  EXPECT_EQ(session.NowSelection(), (rules::Area{40, 30, 50, 45}));
}

class LeftEdge : public AreaSelection, public testing::WithParamInterface<int> {};

TEST_P(LeftEdge, IsCaughtWithinOnePixel) {
  Select(20, 15, 40, 30);
  session.LeftDrag(GetParam(), 20, GetParam() - 5, 20);
  EXPECT_EQ(session.NowSelection(), (rules::Area{15, 15, 45, 30}));
}

INSTANTIATE_TEST_SUITE_P(All, LeftEdge, testing::Values(19, 20, 21));

TEST_F(AreaSelection, TheLeftEdgeShrinksTheFrameToo) {
  Select(20, 15, 40, 30);
  session.LeftDrag(20, 20, 23, 28);
  EXPECT_EQ(session.NowSelection(), (rules::Area{23, 15, 37, 30}));
}

TEST_F(AreaSelection, TwoPixelsFromTheLeftEdgeIsInside) {
  Select(20, 15, 40, 30);
  session.LeftDrag(22, 20, 27, 20);
  EXPECT_EQ(session.NowSelection(), (rules::Area{25, 15, 45, 30}));
}

TEST_F(AreaSelection, TwoPixelsLeftOfTheEdgeIsOutside) {
  Select(20, 15, 40, 30);
  session.LeftDrag(18, 20, 25, 25);
  EXPECT_EQ(session.NowSelection(), (rules::Area{18, 20, 25, 25}));
}

TEST_F(AreaSelection, TheLeftEdgeIsCaughtAboveAndBelowTheFrameToo) {
  Select(20, 15, 40, 30);
  session.LeftDrag(20, 45, 15, 45);
  EXPECT_EQ(session.NowSelection(), (rules::Area{15, 15, 45, 30}));
}

TEST_F(AreaSelection, TheTopEdgeGrowsTheFrameUpAndDown) {
  Select(20, 15, 40, 30);
  session.LeftDrag(30, 16, 30, 11);
  EXPECT_EQ(session.NowSelection(), (rules::Area{20, 10, 40, 35}));
}

TEST_F(AreaSelection, TheLeftEdgeComesBeforeTheTopEdge) {
  Select(20, 15, 40, 30);
  session.LeftDrag(20, 15, 16, 5);
  EXPECT_EQ(session.NowSelection(), (rules::Area{16, 15, 44, 30}));
}

TEST_F(AreaSelection, AnEdgeDragMovesNoInk) {
  Area(22, 17, 5, 5, 2);
  Select(20, 15, 40, 30);
  session.LeftDrag(20, 20, 15, 20);
  session.LeftDrag(30, 15, 30, 10);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(AreaSelection, RightAndBottomEdgeLieOutside) {
  Select(20, 15, 40, 30);
  session.LeftDrag(40, 20, 50, 40);
  EXPECT_EQ(session.NowSelection(), (rules::Area{40, 20, 50, 40}));
  session.LeftDrag(45, 40, 60, 45);
  EXPECT_EQ(session.NowSelection(), (rules::Area{45, 40, 60, 45}));
}

TEST_F(AreaSelection, ADragInsideMovesTheInk) {
  Area(12, 12, 4, 5, 2);
  Select(10, 10, 20, 20);
  session.LeftDrag(15, 15, 25, 18);
  InkModel moved;
  moved.Fill(22, 15, 4, 5, 2);
  EXPECT_TRUE(Shows(session.NowView(), moved));
  EXPECT_EQ(session.NowSelection(), (rules::Area{20, 13, 30, 23}));
}

TEST_F(AreaSelection, AMoveByOnePixelCarriesASolidBarInEveryDirection) {
  const std::pair<int, int> steps[] = {{1, 0}, {-1, 0}, {0, 1}, {0, -1}, {1, 1}, {-1, -1}};
  for (const auto& [dx, dy] : steps) {
    DrawingSession fresh;
    fresh.FillArea(12, 12, 10, 10, 3);
    fresh.Command(kToolAreaSelect).LeftDrag(10, 10, 30, 30).LeftDrag(20, 20, 20 + dx, 20 + dy);
    InkModel moved;
    moved.Fill(12 + dx, 12 + dy, 10, 10, 3);
    EXPECT_TRUE(Shows(fresh.NowView(), moved)) << dx << ", " << dy;
  }
}

TEST_F(AreaSelection, InkOutsideTheFrameStays) {
  Area(5, 12, 20, 4, 2);
  Select(10, 10, 20, 20);
  session.LeftDrag(15, 15, 15, 30);
  InkModel moved;
  moved.Fill(5, 12, 20, 4, 2);
  moved.Fill(10, 12, 10, 4, 0);
  moved.Fill(10, 27, 10, 4, 2);
  EXPECT_TRUE(Shows(session.NowView(), moved));
}

TEST_F(AreaSelection, HolesInTheBlockShowWhatLayAtTheTarget) {
  Area(30, 10, 20, 20, 3);
  Area(12, 12, 2, 2, 2);
  Area(16, 12, 2, 2, 2);
  Select(10, 10, 20, 20);
  session.LeftDrag(15, 15, 35, 17);
  model.Fill(12, 12, 6, 2, 0);
  model.Fill(32, 14, 2, 2, 2);
  model.Fill(36, 14, 2, 2, 2);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(AreaSelection, ProtectedPixelsStayBehind) {
  Area(12, 12, 2, 4, 2);
  Area(14, 12, 2, 4, 3);
  session.Mask({3});
  Select(10, 10, 20, 20);
  session.LeftDrag(15, 15, 35, 15);
  model.Fill(12, 12, 2, 4, 0);
  model.Fill(32, 12, 2, 4, 2);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(AreaSelection, ProtectedTargetPixelsStay) {
  Area(12, 12, 4, 4, 2);
  Area(34, 10, 10, 10, 3);
  session.Mask({3});
  Select(10, 10, 20, 20);
  session.LeftDrag(15, 15, 35, 15);
  model.Fill(12, 12, 4, 4, 0);
  model.Fill(32, 12, 2, 4, 2);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(AreaSelection, InkMovedOverTheEdgeIsLost) {
  Area(50, 12, 8, 4, 2);
  Select(48, 10, 60, 20);
  session.LeftDrag(54, 15, 62, 15);
  InkModel moved;
  moved.Fill(58, 12, 6, 4, 2);
  EXPECT_TRUE(Shows(session.NowView(), moved));
}

TEST_F(AreaSelection, TwoMovesInARowAreOneMoveFromTheFirstPlace) {
  Area(12, 12, 4, 4, 2);
  Area(24, 10, 8, 10, 3);
  Select(10, 10, 20, 20);
  session.LeftDrag(15, 15, 29, 15);
  session.LeftDrag(27, 16, 42, 26);
  model.Fill(12, 12, 4, 4, 0);
  model.Fill(41, 22, 4, 4, 2);
  EXPECT_TRUE(Shows(session.NowView(), model));
  EXPECT_EQ(session.NowSelection(), (rules::Area{39, 20, 49, 30}));
}

TEST_F(AreaSelection, ThreeMovesInARowAreOneMoveFromTheFirstPlace) {
  Area(12, 12, 4, 4, 2);
  Area(24, 10, 8, 10, 3);
  Select(10, 10, 20, 20);
  session.LeftDrag(15, 15, 29, 15);
  session.LeftDrag(27, 16, 29, 17);
  session.LeftDrag(31, 17, 42, 26);
  model.Fill(12, 12, 4, 4, 0);
  model.Fill(39, 22, 4, 4, 2);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(AreaSelection, UndoAfterTwoMovesGivesTheFirstState) {
  Area(12, 12, 4, 4, 2);
  Area(24, 10, 8, 10, 3);
  Select(10, 10, 20, 20);
  session.LeftDrag(15, 15, 29, 15);
  session.LeftDrag(27, 16, 42, 26);
  session.Command(kCommandUndo);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(AreaSelection, TheUndoRectCoversSourceAndTarget) {
  Area(12, 12, 4, 5, 2);
  Select(10, 10, 20, 20);
  session.LeftDrag(15, 15, 25, 18);
  EXPECT_EQ(session.NowUndoRect(), (rules::Area{10, 10, 20, 13}));
}

TEST_F(AreaSelection, UndoTakesAMoveBack) {
  Area(12, 12, 4, 5, 2);
  Select(10, 10, 20, 20);
  session.LeftDrag(15, 15, 25, 18);
  session.Command(kCommandUndo);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(AreaSelection, PointsOfANewFrameSnapToTheGrid) {
  session.Grid(8, 8);
  Select(11, 13, 30, 27);
  EXPECT_EQ(session.NowSelection(), (rules::Area{8, 16, 32, 24}));
}

TEST_F(AreaSelection, PositionsAreSigned) {
  Select(-5, -3, 20, 10);
  EXPECT_EQ(session.NowSelection(), (rules::Area{-5, -3, 20, 10}));
}

TEST_F(AreaSelection, ABlankRecordCantBeSelectedOn) {
  session.Command(kCommandBlankCell);
  Select(10, 12, 30, 25);
  EXPECT_FALSE(session.HasSelection());
}

TEST_F(AreaSelection, ALayerElsewhereMovesItsInkUnderTheFrame) {
  Area(12, 12, 4, 5, 2);
  session.Command(kToolLayerPosition);
  session.LeftDrag(10, 10, 15, 13);
  Select(15, 13, 25, 23);
  session.LeftDrag(20, 18, 30, 21);
  InkModel moved;
  moved.Fill(27, 18, 4, 5, 2);
  EXPECT_TRUE(Shows(session.NowView(), moved));
}

// A pasted block floats until a press beside it.
struct FloatingPaste : AreaSelection {
  FloatingPaste() {
    Area(12, 12, 4, 4, 2);
    Area(40, 10, 10, 20, 3);
    Select(10, 10, 20, 20);
    session.Command(kCommandCopy).Command(kCommandPaste);
  }
};

TEST_F(FloatingPaste, ADragTakesThePasteElsewhere) {
  session.LeftDrag(15, 15, 45, 25);
  model.Fill(42, 22, 4, 4, 2);
  EXPECT_TRUE(Shows(session.NowView(), model));
  EXPECT_EQ(session.NowSelection(), (rules::Area{40, 20, 50, 30}));
}

TEST_F(FloatingPaste, ASecondDragLeavesNoTrace) {
  session.LeftDrag(15, 15, 45, 25);
  session.LeftDrag(42, 24, 22, 34);
  model.Fill(22, 32, 4, 4, 2);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(FloatingPaste, StaysAfloatWhileItIsDragged) {
  session.LeftDrag(15, 15, 45, 25);
  EXPECT_EQ(session.NowCut()["floatingPaste"], true);
}

TEST_F(FloatingPaste, APressBesideItMakesItFinal) {
  session.LeftDrag(50, 40, 55, 45);
  EXPECT_EQ(session.NowCut()["floatingPaste"], false);
}

TEST_F(FloatingPaste, ARightClickMakesItFinal) {
  session.RightClick(15, 15);
  EXPECT_EQ(session.NowCut()["floatingPaste"], false);
  EXPECT_FALSE(session.HasSelection());
}

TEST_F(FloatingPaste, AToolChangeEndsTheSelectionAndLeavesThePasteAfloat) {
  session.Command(kToolFreePen);
  EXPECT_FALSE(session.HasSelection());
  EXPECT_EQ(session.NowCut()["floatingPaste"], true);
}

TEST_F(FloatingPaste, UndoAfterTheDragTakesThePasteAway) {
  session.LeftDrag(15, 15, 45, 25);
  session.Command(kCommandUndo);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

// The commands that take the selection as their area.

TEST_F(AreaSelection, UnderdrawingIsMadeInTheSelectionAlone) {
  Area(10, 10, 20, 20, 1);
  Select(5, 5, 15, 15);
  session.Command(kCommandToSketch);
  model.Fill(10, 10, 5, 5, 5);
  EXPECT_TRUE(Shows(session.NowView(), model));
  EXPECT_EQ(session.NowUndoRect(), (rules::Area{5, 5, 10, 10}));
}

TEST_F(AreaSelection, OldUnderdrawingGoesAsNewIsMade) {
  Area(10, 10, 20, 10, 1);
  session.Command(kCommandToSketch);
  Area(10, 20, 20, 10, 2);
  session.Command(kCommandToSketch);
  model.Fill(10, 10, 20, 10, 0);
  model.Fill(10, 20, 20, 10, 6);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(AreaSelection, UnderdrawingIsClearedInTheSelectionAlone) {
  Area(10, 10, 20, 20, 1);
  session.Command(kCommandToSketch);
  Select(5, 5, 15, 15);
  session.Command(kCommandEraseSketch);
  model.Fill(10, 10, 20, 20, 5);
  model.Fill(10, 10, 5, 5, 0);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(AreaSelection, ACellIsErasedInTheSelectionAlone) {
  Area(10, 10, 20, 20, 1);
  Select(5, 5, 15, 15);
  session.Command(kCommandEraseCell);
  model.Fill(10, 10, 5, 5, 0);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(AreaSelection, RandomDotsWithAGapOfOneCoverTheSelection) {
  session.PickPlain(3);
  Select(10, 10, 20, 15);
  session.Dialog(kRandomDotsDialog, {{kDotGapEdit, "1"}}).Command(kCommandRandomDots);
  model.Fill(10, 10, 10, 5, 3);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(AreaSelection, RandomDotsKeepToTheMask) {
  Area(0, 0, 30, 48, 4);
  session.Mask({4});
  session.PickPlain(3);
  session.Dialog(kRandomDotsDialog, {{kDotGapEdit, "1"}}).Command(kCommandRandomDots);
  model.Fill(30, 0, 34, 48, 3);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(AreaSelection, AGridIsDrawnInUnderdrawingBetweenTheInk) {
  Area(10, 10, 20, 20, 4);
  session.Dialog(kGridDialog, {{kGridWidthEdit, "8"}, {kGridHeightEdit, "12"}}).Command(kCommandDrawGrid);
  for (int y = 0; y < 48; ++y) {
    for (int x = 0; x < 64; ++x) {
      if ((x % 8 == 0 || y % 12 == 0) && model.At(x, y) == 0) model.Set(x, y, 5);
    }
  }
  EXPECT_TRUE(Shows(session.NowView(), model));
  EXPECT_EQ(session.NowState()["pen"]["gridWidth"], 1);
}

TEST_F(AreaSelection, AGridStartsAtTheSelectionsCorner) {
  Select(11, 13, 40, 40);
  session.Dialog(kGridDialog, {{kGridWidthEdit, "8"}, {kGridHeightEdit, "12"}}).Command(kCommandDrawGrid);
  const PixelMatrix view = session.NowView();
  EXPECT_EQ(view.Count(5, 11, 14, 28, 10), 4 * 10);
  EXPECT_EQ(view.At(11, 20), 5u);
  EXPECT_EQ(view.At(35, 20), 5u);
  EXPECT_EQ(view.At(20, 13), 5u);
  EXPECT_EQ(view.At(20, 25), 5u);
  EXPECT_EQ(view.At(5, 13), 0u);
}

}  // namespace
}  // namespace rules
