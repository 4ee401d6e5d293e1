#include <gtest/gtest.h>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"
#include "rules/rule_table.h"

namespace rules {
namespace {

struct AreaSelection : DrawingTest {
  void Select(int left, int top, int right, int bottom) {
    session.Command(kToolAreaSelect);
    session.LeftDrag(left, top, right, bottom);
  }
};

TEST_F(AreaSelection, TheFrameStandsOnTheScreen) {
  session.Command(kToolAreaSelect);
  const PixelMatrix screen = session.NowScreen();
  session.LeftDrag(10, 12, 30, 25);
  EXPECT_FALSE(session.NowScreen() == screen);
  session.RightClick(5, 5);
  EXPECT_TRUE(session.NowScreen() == screen);
}

class LeftEdge : public AreaSelection, public testing::WithParamInterface<int> {};

TEST_P(LeftEdge, IsCaughtWithinOnePixel) {
  Select(20, 15, 40, 30);
  session.LeftDrag(GetParam(), 20, GetParam() - 5, 20);
  EXPECT_EQ(session.NowSelection(), (rules::Area{15, 15, 45, 30}));
}

INSTANTIATE_TEST_SUITE_P(All, LeftEdge, testing::Values(19, 20, 21));

TEST_F(AreaSelection, AMoveByOnePixelCarriesASolidBarInEveryDirection) {
  const std::pair<int, int> steps[] = {{1, 0}, {-1, 0}, {0, 1}, {0, -1}, {1, 1}, {-1, -1}};
  for (const auto& [dx, dy] : steps) {
    DrawingSession fresh;
    fresh.FillArea(12, 12, 10, 10, 3).Command(kToolAreaSelect).LeftDrag(10, 10, 30, 30);
    fresh.LeftDrag(20, 20, 20 + dx, 20 + dy);
    InkModel moved;
    moved.Fill(12 + dx, 12 + dy, 10, 10, 3);
    EXPECT_TRUE(Shows(fresh.NowView(), moved)) << dx << ", " << dy;
  }
}

// A pasted block floats until a press beside it.
struct FloatingPaste : AreaSelection {
  FloatingPaste() {
    session.FillArea(12, 12, 4, 4, 2);
    model.Fill(12, 12, 4, 4, 2);
    session.FillArea(40, 10, 10, 20, 3);
    model.Fill(40, 10, 10, 20, 3);
    Select(10, 10, 20, 20);
    session.Command(kCommandCopy).Command(kCommandPaste);
  }
};

const Rules<FloatingPaste, "FloatingPaste"> kFloatingPasteRules = {
    {"ADragTakesThePasteElsewhere", Do().LeftDrag(15, 15, 45, 25), Ink().Fill(42, 22, 4, 4, 2),
     Has("cut/selection", Area{40, 20, 50, 30})},
    {"ASecondDragLeavesNoTrace", Do().LeftDrag(15, 15, 45, 25).LeftDrag(42, 24, 22, 34), Ink().Fill(22, 32, 4, 4, 2)},
    {"StaysAfloatWhileItIsDragged", Do().LeftDrag(15, 15, 45, 25), Has("cut/floatingPaste", true)},
    {"APressBesideItMakesItFinal", Do().LeftDrag(50, 40, 55, 45), Has("cut/floatingPaste", false)},
    {"ARightClickMakesItFinal", Do().RightClick(15, 15), Has("cut/floatingPaste", false, "cut/hasSelection", false)},
    {"AToolChangeEndsTheSelectionAndLeavesThePasteAfloat", Do().Command(kToolFreePen),
     Has("cut/hasSelection", false, "cut/floatingPaste", true)},
    {"UndoAfterTheDragTakesThePasteAway", Do().LeftDrag(15, 15, 45, 25).Command(kCommandUndo), Ink()},
};

// The commands that take the selection as their area.

const Rules<AreaSelection, "AreaSelection"> kAreaSelectionRules = {
    {"ADragInsideMovesTheInk", Filled{12, 12, 4, 5, 2}, Do().SelectArea(10, 10, 20, 20).LeftDrag(15, 15, 25, 18),
     OnEmpty().Fill(22, 15, 4, 5, 2), Has("cut/selection", Area{20, 13, 30, 23})},
    {"InkOutsideTheFrameStays", Filled{5, 12, 20, 4, 2}, Do().SelectArea(10, 10, 20, 20).LeftDrag(15, 15, 15, 30),
     OnEmpty().Fill(5, 12, 20, 4, 2).Fill(10, 12, 10, 4, 0).Fill(10, 27, 10, 4, 2)},
    {"HolesInTheBlockShowWhatLayAtTheTarget", Filled{30, 10, 20, 20, 3}, Filled{12, 12, 2, 2, 2},
     Filled{16, 12, 2, 2, 2}, Do().SelectArea(10, 10, 20, 20).LeftDrag(15, 15, 35, 17),
     Ink().Fill(12, 12, 6, 2, 0).Fill(32, 14, 2, 2, 2).Fill(36, 14, 2, 2, 2)},
    {"InkMovedOverTheEdgeIsLost", Filled{50, 12, 8, 4, 2}, Do().SelectArea(48, 10, 60, 20).LeftDrag(54, 15, 62, 15),
     OnEmpty().Fill(58, 12, 6, 4, 2)},
    {"TheUndoRectCoversSourceAndTarget", Filled{12, 12, 4, 5, 2},
     Do().SelectArea(10, 10, 20, 20).LeftDrag(15, 15, 25, 18), Has("cut/undoRect", Area{10, 10, 20, 13})},
    {"ALayerElsewhereMovesItsInkUnderTheFrame", Filled{12, 12, 4, 5, 2},
     Do().Command(kToolLayerPosition).LeftDrag(10, 10, 15, 13).SelectArea(15, 13, 25, 23).LeftDrag(20, 18, 30, 21),
     OnEmpty().Fill(27, 18, 4, 5, 2)},
    {"ADragMarksItsRectangle", Do().SelectArea(10, 12, 30, 25), Has("cut/selection", Area{10, 12, 30, 25})},
    {"TheSelectionFollowsEveryMove", Do().Command(kToolAreaSelect).Press(10, 12).Move(30, 25).Move(20, 40),
     Has("cut/selection", Area{10, 12, 20, 40})},
    {"MovesToTheUpperLeftDoNotCount",
     Do().Command(kToolAreaSelect).Press(20, 20).Move(30, 30).Move(10, 40).Move(40, 10).Release(40, 10),
     Has("cut/selection", Area{20, 20, 30, 30})},
    {"ADragMarksNothingInTheCell", Do().SelectArea(10, 12, 30, 25), Ink()},
    {"ARightClickSelectsTheWholeCell", Do().Command(kToolAreaSelect).RightClick(20, 20),
     Has("cut/selection", Area{0, 0, 64, 48})},
    {"ASecondRightClickClearsTheSelection", Do().Command(kToolAreaSelect).RightClick(20, 20).RightClick(20, 20),
     Has("cut/hasSelection", false)},
    {"ARightClickSelectsTheCellWhereItStands",
     Do().AddLayer("B", 20, 10).Command(kToolLayerPosition).LeftDrag(10, 10, 13, 15).Command(kToolAreaSelect),
     Do().RightClick(20, 20), Has("cut/selection", Area{25, 24, 45, 34})},
    {"ARightClickDuringADragIsIgnored", Do().Command(kToolAreaSelect).Press(10, 12).Move(30, 25).RightRelease(30, 25),
     Has("cut/selection", Area{10, 12, 30, 25})},
    {"APulseEndsTheSelection", Do().SelectArea(10, 12, 30, 25).Repaint(), Has("cut/hasSelection", false)},
    {"AToolChangeEndsTheSelection", Do().SelectArea(10, 12, 30, 25).Command(kToolFreePen),
     Has("cut/hasSelection", false)},
    {"APressBesideItBeginsANewOne", Do().SelectArea(10, 12, 30, 25).LeftDrag(40, 30, 50, 45),
     Has("cut/selection", Area{40, 30, 50, 45})},
    {"TheLeftEdgeShrinksTheFrameToo", Do().SelectArea(20, 15, 40, 30).LeftDrag(20, 20, 23, 28),
     Has("cut/selection", Area{23, 15, 37, 30})},
    {"TwoPixelsFromTheLeftEdgeIsInside", Do().SelectArea(20, 15, 40, 30).LeftDrag(22, 20, 27, 20),
     Has("cut/selection", Area{25, 15, 45, 30})},
    {"TwoPixelsLeftOfTheEdgeIsOutside", Do().SelectArea(20, 15, 40, 30).LeftDrag(18, 20, 25, 25),
     Has("cut/selection", Area{18, 20, 25, 25})},
    {"TheLeftEdgeIsCaughtAboveAndBelowTheFrameToo", Do().SelectArea(20, 15, 40, 30).LeftDrag(20, 45, 15, 45),
     Has("cut/selection", Area{15, 15, 45, 30})},
    {"TheTopEdgeGrowsTheFrameUpAndDown", Do().SelectArea(20, 15, 40, 30).LeftDrag(30, 16, 30, 11),
     Has("cut/selection", Area{20, 10, 40, 35})},
    {"TheLeftEdgeComesBeforeTheTopEdge", Do().SelectArea(20, 15, 40, 30).LeftDrag(20, 15, 16, 5),
     Has("cut/selection", Area{16, 15, 44, 30})},
    {"AnEdgeDragMovesNoInk",
     Do().FillArea(22, 17, 5, 5, 2).SelectArea(20, 15, 40, 30).LeftDrag(20, 20, 15, 20).LeftDrag(30, 15, 30, 10),
     Ink().Fill(22, 17, 5, 5, 2)},
    {"RightAndBottomEdgeLieOutside", Do().SelectArea(20, 15, 40, 30).LeftDrag(40, 20, 50, 40),
     Has("cut/selection", Area{40, 20, 50, 40}), Do().LeftDrag(45, 40, 60, 45),
     Has("cut/selection", Area{45, 40, 60, 45})},
    {"ProtectedPixelsStayBehind",
     Do().FillArea(12, 12, 2, 4, 2).FillArea(14, 12, 2, 4, 3).Mask({3}).SelectArea(10, 10, 20, 20),
     Do().LeftDrag(15, 15, 35, 15),
     Ink().Fill(12, 12, 2, 4, 2).Fill(14, 12, 2, 4, 3).Fill(12, 12, 2, 4, 0).Fill(32, 12, 2, 4, 2)},
    {"ProtectedTargetPixelsStay",
     Do().FillArea(12, 12, 4, 4, 2).FillArea(34, 10, 10, 10, 3).Mask({3}).SelectArea(10, 10, 20, 20),
     Do().LeftDrag(15, 15, 35, 15),
     Ink().Fill(12, 12, 4, 4, 2).Fill(34, 10, 10, 10, 3).Fill(12, 12, 4, 4, 0).Fill(32, 12, 2, 4, 2)},
    {"TwoMovesInARowAreOneMoveFromTheFirstPlace",
     Do().FillArea(12, 12, 4, 4, 2).FillArea(24, 10, 8, 10, 3).SelectArea(10, 10, 20, 20).LeftDrag(15, 15, 29, 15),
     Do().LeftDrag(27, 16, 42, 26), Has("cut/selection", Area{39, 20, 49, 30}),
     Ink().Fill(12, 12, 4, 4, 2).Fill(24, 10, 8, 10, 3).Fill(12, 12, 4, 4, 0).Fill(41, 22, 4, 4, 2)},
    {"ThreeMovesInARowAreOneMoveFromTheFirstPlace",
     Do().FillArea(12, 12, 4, 4, 2).FillArea(24, 10, 8, 10, 3).SelectArea(10, 10, 20, 20).LeftDrag(15, 15, 29, 15),
     Do().LeftDrag(27, 16, 29, 17).LeftDrag(31, 17, 42, 26),
     Ink().Fill(12, 12, 4, 4, 2).Fill(24, 10, 8, 10, 3).Fill(12, 12, 4, 4, 0).Fill(39, 22, 4, 4, 2)},
    {"UndoAfterTwoMovesGivesTheFirstState",
     Do().FillArea(12, 12, 4, 4, 2).FillArea(24, 10, 8, 10, 3).SelectArea(10, 10, 20, 20).LeftDrag(15, 15, 29, 15),
     Do().LeftDrag(27, 16, 42, 26).Command(kCommandUndo), Ink().Fill(12, 12, 4, 4, 2).Fill(24, 10, 8, 10, 3)},
    {"UndoTakesAMoveBack",
     Do().FillArea(12, 12, 4, 5, 2).SelectArea(10, 10, 20, 20).LeftDrag(15, 15, 25, 18).Command(kCommandUndo),
     Ink().Fill(12, 12, 4, 5, 2)},
    {"PointsOfANewFrameSnapToTheGrid", Do().Grid(8, 8).SelectArea(11, 13, 30, 27),
     Has("cut/selection", Area{8, 16, 32, 24})},
    {"PositionsAreSigned", Do().SelectArea(-5, -3, 20, 10), Has("cut/selection", Area{-5, -3, 20, 10})},
    {"ABlankRecordCantBeSelectedOn", Do().Command(kCommandBlankCell).SelectArea(10, 12, 30, 25),
     Has("cut/hasSelection", false)},
    {"UnderdrawingIsMadeInTheSelectionAlone",
     Do().FillArea(10, 10, 20, 20, 1).SelectArea(5, 5, 15, 15).Command(kCommandToSketch),
     Has("cut/undoRect", Area{5, 5, 10, 10}), Ink().Fill(10, 10, 20, 20, 1).Fill(10, 10, 5, 5, 5)},
    {"OldUnderdrawingGoesAsNewIsMade",
     Do().FillArea(10, 10, 20, 10, 1).Command(kCommandToSketch).FillArea(10, 20, 20, 10, 2).Command(kCommandToSketch),
     Ink().Fill(10, 10, 20, 10, 1).Fill(10, 20, 20, 10, 2).Fill(10, 10, 20, 10, 0).Fill(10, 20, 20, 10, 6)},
    {"UnderdrawingIsClearedInTheSelectionAlone",
     Do().FillArea(10, 10, 20, 20, 1).Command(kCommandToSketch).SelectArea(5, 5, 15, 15).Command(kCommandEraseSketch),
     Ink().Fill(10, 10, 20, 20, 1).Fill(10, 10, 20, 20, 5).Fill(10, 10, 5, 5, 0)},
    {"ACellIsErasedInTheSelectionAlone",
     Do().FillArea(10, 10, 20, 20, 1).SelectArea(5, 5, 15, 15).Command(kCommandEraseCell),
     Ink().Fill(10, 10, 20, 20, 1).Fill(10, 10, 5, 5, 0)},
    {"RandomDotsWithAGapOfOneCoverTheSelection",
     Do().PickPlain(3).SelectArea(10, 10, 20, 15).Dialog(kRandomDotsDialog, {{kDotGapEdit, "1"}}),
     Do().Command(kCommandRandomDots), Ink().Fill(10, 10, 10, 5, 3)},
    {"RandomDotsKeepToTheMask",
     Do().FillArea(0, 0, 30, 48, 4).Mask({4}).PickPlain(3).Dialog(kRandomDotsDialog, {{kDotGapEdit, "1"}}),
     Do().Command(kCommandRandomDots), Ink().Fill(0, 0, 30, 48, 4).Fill(30, 0, 34, 48, 3)},
};

TEST_F(AreaSelection, AGridIsDrawnInUnderdrawingBetweenTheInk) {
  session.FillArea(10, 10, 20, 20, 4);
  model.Fill(10, 10, 20, 20, 4);
  session.Dialog(kGridDialog, {{kGridWidthEdit, "8"}, {kGridHeightEdit, "12"}}).Command(kCommandDrawGrid);
  for (int y = 0; y < 48; ++y) {
    for (int x = 0; x < 64; ++x) {
      if ((x % 8 == 0 || y % 12 == 0) && model.At(x, y) == 0) model.Set(x, y, 5);
    }
  }
  EXPECT_TRUE(ViewShows(model));
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
