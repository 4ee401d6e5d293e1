#include <gtest/gtest.h>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"
#include "rules/rule_table.h"

namespace rules {
namespace {

struct BoxTool : DrawingTest {
  BoxTool() { session.Command(kToolRectangle); }
};

TEST_F(BoxTool, AWidePenDrawsAWideOutline) {
  session.PickSize(3);
  session.Press(20, 15).Release(40, 30);
  const ModelPen pen = {.shape = 10};
  model.Line(20, 15, 40, 15, pen).Line(40, 15, 40, 30, pen).Line(40, 30, 20, 30, pen).Line(20, 30, 20, 15, pen);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(BoxTool, TheFrameFollowsToTheLowerRightOnly) {
  const PixelMatrix screen = session.NowScreen();
  session.Press(30, 30).Move(20, 40).Move(40, 20);
  EXPECT_TRUE(session.NowScreen() == screen);
  session.Move(40, 40);
  EXPECT_FALSE(session.NowScreen() == screen);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(BoxTool, TheReleaseTakesTheFrameAway) {
  session.Press(10, 10).Move(50, 40).Release(20, 20);
  const PixelMatrix dragged = session.NowScreen();
  DrawingSession plain;
  plain.Command(kToolRectangle).Press(10, 10).Release(20, 20);
  EXPECT_TRUE(plain.NowScreen() == dragged);
}

const Rules<BoxTool, "BoxTool"> kBoxToolRules = {
    {"ABoxHasItsCornersAtThePressAndAtTheRelease", Do().Press(2, 2).Release(5, 5), Ink().Outline(2, 2, 5, 5, 8)},
    {"ABoxToTheLeftIsShiftedByOne", Do().Press(5, 10).Release(2, 14), Ink().Outline(3, 10, 6, 14, 8)},
    {"ABoxUpwardsIsShiftedByOne", Do().Press(20, 30).Release(26, 20), Ink().Outline(20, 21, 26, 31, 8)},
    {"CtrlAtTheReleaseFillsInPlainBlack", Do().Press(10, 10).Release(15, 13, "ctrl"), Ink().Fill(10, 10, 5, 3, 1)},
    {"CtrlAtThePressAloneDrawsTheOutline", Do().Press(10, 10, "ctrl").Release(15, 13),
     Ink().Outline(10, 10, 15, 13, 8)},
    {"AFillToTheUpperLeftFillsTheNormalisedBox", Do().Press(20, 20).Release(15, 12, "ctrl"),
     Ink().Fill(16, 13, 5, 8, 1)},
    {"AnEmptyExtentDrawsNothing",
     Do().Press(10, 10).Release(10, 10).Press(10, 20).Release(30, 20).Press(40, 10).Release(40, 30, "ctrl"), Ink()},
    {"TheUndoRectOfABoxHasTheMarginOfThePen", Do().Press(10, 10).Release(20, 20),
     Has("cut/undoRect", Area{5, 5, 20, 20})},
    {"TheUndoRectOfAFillHoldsItsEdges", Do().Press(30, 20).Release(40, 33, "ctrl"),
     Has("cut/undoRect", Area{30, 20, 40, 33})},
    {"AFillKeepsProtectedPixels",
     Do().FillArea(10, 10, 4, 10, 3).FillArea(14, 10, 4, 10, 2).Mask({3}).Command(kToolRectangle).Press(8, 12),
     Do().Release(30, 16, "ctrl"),
     Ink().Fill(8, 12, 22, 4, 1).Fill(10, 10, 4, 10, 3).Fill(14, 10, 4, 2, 2).Fill(14, 16, 4, 4, 2)},
    {"APulseIsIgnored", Do().Press(10, 10).Repaint().Release(20, 20), Ink().Outline(10, 10, 20, 20, 8)},
    {"AReleaseWithoutAPressDrawsNothing", Do().Release(20, 20), Ink()},
    {"ASecondReleaseDrawsNothing", Do().Press(10, 10).Release(20, 20).Release(40, 40),
     Ink().Outline(10, 10, 20, 20, 8)},
    {"ARightClickDoesNotEndTheDrag", Do().Press(10, 10).RightRelease(15, 15).Release(20, 20),
     Ink().Outline(10, 10, 20, 20, 8)},
    {"ABoxIsOneUndoStep", Do().Press(30, 30).Release(40, 40).Press(10, 10).Release(20, 20).Command(kCommandUndo),
     Ink().Outline(30, 30, 40, 40, 8)},
    {"PositionsAreUnsigned", Do().Press(10, 10).Release(-3, 20),
     Ink().Fill(10, 10, 54, 1, 8).Fill(10, 20, 54, 1, 8).Fill(10, 10, 1, 11, 8)},
};

// The picture stands 10 pixels in from the window's edge on each side.
struct BoxPastTheEdge : DrawingTest {
  BoxPastTheEdge() : DrawingTest({.clientWidth = 84, .clientHeight = 68}) { session.Command(kToolRectangle); }
};

const Rules<BoxPastTheEdge, "BoxPastTheEdge"> kBoxPastTheEdgeRules = {
    {"TheOutlineClosesAlongTheImagesEdge", Do().Press(5, 20).Release(20, 30), Ink().Outline(0, 10, 10, 20, 8)},
    {"TheRightLineLiesOutside", Do().Press(60, 20).Release(80, 30),
     Ink().Fill(50, 10, 14, 1, 8).Fill(50, 20, 14, 1, 8).Fill(50, 10, 1, 11, 8)},
    {"ABoxOutsideDrawsNothing", Do().Press(2, 20).Release(8, 30).Press(2, 20).Release(8, 30, "ctrl"), Ink()},
    {"AFillIsCutToTheImage", Do().Press(5, 4).Release(20, 30, "ctrl"), Ink().Fill(0, 0, 10, 20, 1)},
};

}  // namespace
}  // namespace rules
