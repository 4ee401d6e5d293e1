#include <gtest/gtest.h>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"

namespace rules {
namespace {

constexpr unsigned paper = 0xE1FFFF;
constexpr unsigned invertedPaper = 0x1E0000;

struct LineTool : testing::Test {
  LineTool() { session.Command(kToolLine); }
  DrawingSession session;
  InkModel model;
};

TEST_F(LineTool, NothingIsDrawnBeforeTheRelease) {
  session.Press(10, 10);
  session.Move(30, 20);
  session.Repaint();
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(LineTool, TheLineRunsFromThePressToTheRelease) {
  session.LeftDrag(10, 10, 30, 20);
  model.Line(10, 10, 30, 20);
  EXPECT_EQ(session.NowView().Count(8), 21);
  session.Repaint();
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(LineTool, ADragEndsAtItsRelease) {
  session.LeftDrag(10, 10, 30, 20);
  session.LeftDrag(50, 40, 50, 30);
  session.Repaint();
  model.Line(10, 10, 30, 20);
  model.Line(50, 40, 50, 30);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(LineTool, AClickStampsOnce) {
  session.LeftClick(10, 10);
  model.Set(10, 10, 8);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(LineTool, TheUndoRectIsTheReachOfTheSegment) {
  session.Press(30, 10);
  session.Release(20, 15);
  EXPECT_EQ(session.NowUndoRect(), (Area{16, 6, 19, 14}));
}

TEST_F(LineTool, APressForgetsTheUndoRectOfTheLineBefore) {
  session.LeftDrag(10, 10, 20, 20);
  session.Press(40, 30);
  EXPECT_EQ(session.NowUndoRect(), (Area{0, 0, 0, 0}));
}

TEST_F(LineTool, ARightClickCancelsTheDrag) {
  session.Press(10, 10);
  session.Move(30, 20);
  session.RightRelease(30, 20);
  session.Repaint();
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(LineTool, ACancelledDragLeavesTheUndoCopyOfItsPress) {
  session.LeftDrag(40, 5, 50, 5);
  session.Press(10, 10);
  session.RightRelease(30, 20);
  session.Command(kCommandUndo);
  model.Line(40, 5, 50, 5);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(LineTool, CtrlAtTheReleaseOfADragDrawsNothing) {
  session.Press(10, 10);
  session.Release(30, 20, "ctrl");
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(LineTool, CtrlAtTheReleaseOfADragEndsIt) {
  session.Press(10, 10);
  session.Release(30, 20, "ctrl");
  session.LeftClick(50, 40);
  model.Set(50, 40, 8);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(LineTool, ACtrlClickBeginsAChainWithoutALine) {
  session.LeftClick(10, 10, "ctrl");
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(LineTool, EachClickOfAChainDrawsFromTheLastOne) {
  session.LeftClick(10, 10, "ctrl");
  session.LeftClick(30, 20);
  session.LeftClick(20, 40);
  model.Line(10, 10, 30, 20);
  model.Line(30, 20, 20, 40);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(LineTool, ACtrlClickInAChainSkips) {
  session.LeftClick(10, 10, "ctrl");
  session.LeftClick(30, 20);
  session.LeftClick(50, 20, "ctrl");
  session.LeftClick(50, 40);
  model.Line(10, 10, 30, 20);
  model.Line(50, 20, 50, 40);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(LineTool, ARightClickEndsTheChain) {
  session.LeftClick(10, 10, "ctrl");
  session.LeftClick(30, 20);
  session.RightClick(40, 40);
  session.LeftClick(50, 40);
  model.Line(10, 10, 30, 20);
  model.Set(50, 40, 8);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(LineTool, AChainIsOneUndoStep) {
  session.LeftDrag(40, 5, 50, 5);
  session.LeftClick(10, 10, "ctrl");
  session.LeftClick(30, 20);
  session.LeftClick(20, 40);
  session.Command(kCommandUndo);
  model.Line(40, 5, 50, 5);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(LineTool, TheUndoRectGrowsWithEverySegmentOfAChain) {
  session.LeftClick(10, 10, "ctrl");
  session.LeftClick(20, 10);
  session.LeftClick(20, 20);
  EXPECT_EQ(session.NowUndoRect(), (Area{6, 6, 19, 19}));
}

TEST_F(LineTool, ASkipDoesNotGrowTheUndoRect) {
  session.LeftClick(10, 10, "ctrl");
  session.LeftClick(20, 10);
  session.LeftClick(50, 40, "ctrl");
  EXPECT_EQ(session.NowUndoRect(), (Area{6, 6, 19, 9}));
}

TEST_F(LineTool, APulseEndsTheChain) {
  session.LeftClick(10, 10, "ctrl");
  session.Repaint();
  session.LeftClick(50, 40);
  model.Set(50, 40, 8);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(LineTool, BothEndsSnapToTheGrid) {
  session.Grid(8, 8);
  session.Press(13, 13);
  session.Release(27, 16);
  model.Line(16, 16, 24, 16);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(LineTool, PositionsAreUnsigned) {
  session.Press(10, 10);
  session.Release(-3, 10);
  model.Line(10, 10, 63, 10);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(LineTool, TheBandInvertsTheScreenAndLeavesTheView) {
  session.Press(10, 10);
  session.Move(30, 10);
  EXPECT_EQ(session.NowScreen().At(20, 10), invertedPaper);
  EXPECT_EQ(session.NowView().At(20, 10), 0u);
}

TEST_F(LineTool, TheBandFollowsTheMouse) {
  session.Press(10, 10);
  session.Move(30, 10);
  session.Move(10, 30);
  const PixelMatrix screen = session.NowScreen();
  EXPECT_EQ(screen.At(20, 10), paper);
  EXPECT_EQ(screen.At(10, 20), invertedPaper);
}

TEST_F(LineTool, ACancelledDragTakesTheBandAway) {
  session.Press(10, 10);
  session.Move(30, 10);
  session.RightRelease(30, 10);
  EXPECT_EQ(session.NowScreen().At(20, 10), paper);
}

TEST_F(LineTool, APulseTakesTheBandAway) {
  session.Press(10, 10);
  session.Move(30, 10);
  session.Command(kToolFill);
  EXPECT_EQ(session.NowScreen().At(20, 10), paper);
}

TEST_F(LineTool, ALayerElsewhereGetsTheLineUnderTheMouse) {
  session.Command(kToolLayerPosition);
  session.LeftDrag(10, 10, 15, 13);
  session.Command(kToolLine);
  session.Press(20, 20);
  session.Release(40, 25);
  model.Line(20, 20, 40, 25);
  EXPECT_TRUE(Shows(session.NowView(), model));
  EXPECT_EQ(session.NowUndoRect(), (Area{11, 13, 29, 14}));
}

TEST_F(LineTool, AtDoubleSizeTheEndsAreTakenBackToTheCell) {
  session.Command(kToolZoom);
  session.Press(32, 24);
  session.Release(32, 24);
  session.Line("client 128 96").Command(kToolLine);
  session.Press(21, 20);
  session.Release(81, 41);
  model.Line(10, 10, 40, 20);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

}  // namespace
}  // namespace rules
