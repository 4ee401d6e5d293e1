#include <gtest/gtest.h>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"

namespace rules {
namespace {

struct BoxTool : testing::Test {
  BoxTool() { session.Command(kToolRectangle); }
  void Drag(int fromX, int fromY, int toX, int toY, std::string_view keys = "") {
    session.Press(fromX, fromY);
    session.Release(toX, toY, keys);
  }
  DrawingSession session;
  InkModel model;
};

TEST_F(BoxTool, ABoxHasItsCornersAtThePressAndAtTheRelease) {
  Drag(2, 2, 5, 5);
  model.Outline(2, 2, 5, 5, 8);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(BoxTool, ABoxToTheLeftIsShiftedByOne) {
  Drag(5, 10, 2, 14);
  model.Outline(3, 10, 6, 14, 8);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(BoxTool, ABoxUpwardsIsShiftedByOne) {
  Drag(20, 30, 26, 20);
  model.Outline(20, 21, 26, 31, 8);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(BoxTool, CtrlAtTheReleaseFillsInPlainBlack) {
  Drag(10, 10, 15, 13, "ctrl");
  model.Fill(10, 10, 5, 3, 1);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(BoxTool, CtrlAtThePressAloneDrawsTheOutline) {
  session.Press(10, 10, "ctrl");
  session.Release(15, 13);
  model.Outline(10, 10, 15, 13, 8);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(BoxTool, AFillToTheUpperLeftFillsTheNormalisedBox) {
  Drag(20, 20, 15, 12, "ctrl");
  model.Fill(16, 13, 5, 8, 1);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(BoxTool, AnEmptyExtentDrawsNothing) {
  Drag(10, 10, 10, 10);
  Drag(10, 20, 30, 20);
  Drag(40, 10, 40, 30, "ctrl");
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(BoxTool, TheUndoRectOfABoxHasTheMarginOfThePen) {
  Drag(10, 10, 20, 20);
  EXPECT_EQ(session.NowUndoRect(), (Area{5, 5, 20, 20}));
}

TEST_F(BoxTool, TheUndoRectOfAFillHoldsItsEdges) {
  Drag(30, 20, 40, 33, "ctrl");
  EXPECT_EQ(session.NowUndoRect(), (Area{30, 20, 40, 33}));
}

TEST_F(BoxTool, AWidePenDrawsAWideOutline) {
  session.PickSize(3);
  Drag(20, 15, 40, 30);
  const ModelPen pen = {.shape = 10};
  model.Line(20, 15, 40, 15, pen);
  model.Line(40, 15, 40, 30, pen);
  model.Line(40, 30, 20, 30, pen);
  model.Line(20, 30, 20, 15, pen);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(BoxTool, AFillKeepsProtectedPixels) {
  session.FillArea(10, 10, 4, 10, 3);
  session.FillArea(14, 10, 4, 10, 2);
  session.Mask({3});
  session.Command(kToolRectangle);
  Drag(8, 12, 30, 16, "ctrl");
  model.Fill(8, 12, 22, 4, 1);
  model.Fill(10, 10, 4, 10, 3);
  model.Fill(14, 10, 4, 2, 2);
  model.Fill(14, 16, 4, 4, 2);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(BoxTool, APulseIsIgnored) {
  session.Press(10, 10);
  session.Repaint();
  session.Release(20, 20);
  model.Outline(10, 10, 20, 20, 8);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(BoxTool, AReleaseWithoutAPressDrawsNothing) {
  session.Release(20, 20);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(BoxTool, ASecondReleaseDrawsNothing) {
  Drag(10, 10, 20, 20);
  session.Release(40, 40);
  model.Outline(10, 10, 20, 20, 8);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(BoxTool, ARightClickDoesNotEndTheDrag) {
  session.Press(10, 10);
  session.RightRelease(15, 15);
  session.Release(20, 20);
  model.Outline(10, 10, 20, 20, 8);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(BoxTool, ABoxIsOneUndoStep) {
  Drag(30, 30, 40, 40);
  Drag(10, 10, 20, 20);
  session.Command(kCommandUndo);
  model.Outline(30, 30, 40, 40, 8);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(BoxTool, TheFrameFollowsToTheLowerRightOnly) {
  const PixelMatrix screen = session.NowScreen();
  session.Press(30, 30);
  session.Move(20, 40);
  session.Move(40, 20);
  EXPECT_TRUE(session.NowScreen() == screen);
  session.Move(40, 40);
  EXPECT_FALSE(session.NowScreen() == screen);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(BoxTool, TheReleaseTakesTheFrameAway) {
  session.Press(10, 10);
  session.Move(50, 40);
  session.Release(20, 20);
  const PixelMatrix dragged = session.NowScreen();
  DrawingSession plain;
  plain.Command(kToolRectangle);
  plain.Press(10, 10);
  plain.Release(20, 20);
  EXPECT_TRUE(plain.NowScreen() == dragged);
}

TEST_F(BoxTool, PositionsAreUnsigned) {
  Drag(10, 10, -3, 20);
  model.Fill(10, 10, 54, 1, 8);
  model.Fill(10, 20, 54, 1, 8);
  model.Fill(10, 10, 1, 11, 8);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

// The picture stands 10 pixels in from the window's edge on each side.
struct BoxPastTheEdge : testing::Test {
  BoxPastTheEdge() : session({.clientWidth = 84, .clientHeight = 68}) { session.Command(kToolRectangle); }
  DrawingSession session;
  InkModel model;
};

TEST_F(BoxPastTheEdge, TheOutlineClosesAlongTheImagesEdge) {
  session.Press(5, 20);
  session.Release(20, 30);
  model.Outline(0, 10, 10, 20, 8);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(BoxPastTheEdge, TheRightLineLiesOutside) {
  session.Press(60, 20);
  session.Release(80, 30);
  model.Fill(50, 10, 14, 1, 8);
  model.Fill(50, 20, 14, 1, 8);
  model.Fill(50, 10, 1, 11, 8);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(BoxPastTheEdge, ABoxOutsideDrawsNothing) {
  session.Press(2, 20);
  session.Release(8, 30);
  session.Press(2, 20);
  session.Release(8, 30, "ctrl");
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(BoxPastTheEdge, AFillIsCutToTheImage) {
  session.Press(5, 4);
  session.Release(20, 30, "ctrl");
  model.Fill(0, 0, 10, 20, 1);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

}  // namespace
}  // namespace rules
