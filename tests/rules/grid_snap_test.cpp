#include <gtest/gtest.h>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"

namespace rules {
namespace {

TEST(GridSnap, StartsAtOneByOne) {
  ScriptSession session;
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["pen"]["gridWidth"], 1);
  EXPECT_EQ(session.StateAt(state)["pen"]["gridHeight"], 1);
}

TEST(GridSnap, TheDialogSetsIt) {
  DrawingSession session;
  session.Grid(8, 5);
  EXPECT_EQ(session.NowState()["pen"]["gridWidth"], 8);
  EXPECT_EQ(session.NowState()["pen"]["gridHeight"], 5);
}

TEST(GridSnap, ACancelledDialogKeepsIt) {
  DrawingSession session;
  session.Dialog(kGridDialog, {{kGridWidthEdit, "8"}, {kGridHeightEdit, "5"}}, "cancel").Command(kCommandSnapGrid);
  EXPECT_EQ(session.NowState()["pen"]["gridWidth"], 1);
}

// Where a press at a point of both axes stamps.
int SnappedTo(int grid, int point) {
  DrawingSession session;
  session.Grid(grid, grid);
  session.Press(point, point);
  const PixelMatrix view = session.NowView();
  for (int i = 0; i < 48; ++i) {
    if (view.At(i, i) != 0) return i;
  }
  return -1;
}

TEST(GridSnap, TheHalfIsNotRoundedUp) {
  EXPECT_EQ(SnappedTo(8, 11), 8);
  EXPECT_EQ(SnappedTo(8, 12), 8);
  EXPECT_EQ(SnappedTo(8, 13), 16);
  EXPECT_EQ(SnappedTo(8, 16), 16);
}

TEST(GridSnap, AnOddGridRoundsBehindItsTruncatedHalf) {
  EXPECT_EQ(SnappedTo(5, 11), 10);
  EXPECT_EQ(SnappedTo(5, 12), 10);
  EXPECT_EQ(SnappedTo(5, 13), 15);
}

TEST(GridSnap, WidthAndHeightAreApart) {
  DrawingSession session;
  session.Grid(8, 4);
  session.Press(13, 13);
  EXPECT_EQ(session.NowView().At(16, 12), 1u);
}

TEST(GridSnap, NegativeCoordinatesRoundTowardsZero) {
  DrawingSession session({.clientWidth = 104, .clientHeight = 88});
  session.Grid(8, 8);
  // 7 pixels left of the picture.
  session.Press(13, 40);
  InkModel model;
  model.Set(0, 16, 1);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(GridSnap, NegativeCoordinatesBeyondAStepRoundTowardsZero) {
  DrawingSession session({.clientWidth = 104, .clientHeight = 88});
  session.Dialog(kFrameSizeDialog, {{kFrameWidthEdit, "32"}, {kFrameHeightEdit, "24"}}).Command(kCommandFrameSize);
  session.Grid(8, 8);
  // From the picture's corner to 15 left of it.
  session.Command(kToolFramePosition).LeftDrag(20, 20, 5, 20);
  EXPECT_EQ(session.NowFrame()["x"], -8);
}

TEST(GridSnap, TheGridIsThatOfTheCutAndNotOfTheLayer) {
  DrawingSession session;
  session.Command(kToolLayerPosition).LeftDrag(10, 10, 13, 15);
  session.Grid(8, 8);
  session.Command(kToolFreePen);
  session.Press(18, 22);
  InkModel model;
  model.Set(16, 24, 1);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

class SnappedTool : public testing::TestWithParam<int> {};

TEST_P(SnappedTool, DrawsBetweenSnappedPoints) {
  DrawingSession session;
  session.Grid(8, 8);
  session.Command(GetParam());
  session.LeftClick(11, 13);
  session.LeftClick(30, 13);
  session.RightClick(40, 40);
  session.Command(kToolZoom);
  const PixelMatrix view = session.NowView();
  EXPECT_EQ(view.At(8, 16), 8u);
  EXPECT_EQ(view.At(32, 16), 8u);
  EXPECT_EQ(view.At(7, 16), 0u);
  EXPECT_EQ(view.At(33, 16), 0u);
}

INSTANTIATE_TEST_SUITE_P(All, SnappedTool,
                         testing::Values(kToolFreePen, kToolLine, kToolCurve, kToolFocusLines, kToolParallelLines));

TEST(GridSnap, ABoxSnapsBothCorners) {
  DrawingSession session;
  session.Grid(8, 8);
  session.Command(kToolRectangle).LeftDrag(11, 13, 30, 34);
  InkModel model;
  model.Outline(8, 16, 32, 32, 8);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

}  // namespace
}  // namespace rules
