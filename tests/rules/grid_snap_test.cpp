#include <gtest/gtest.h>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"
#include "rules/rule_table.h"

namespace rules {
namespace {

using GridSnap = DrawingTest;

TEST_F(GridSnap, StartsAtOneByOne) {
  ScriptSession other;
  EXPECT_EQ(other.NowState()["pen"]["gridWidth"], 1);
  EXPECT_EQ(other.NowState()["pen"]["gridHeight"], 1);
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

TEST_F(GridSnap, TheHalfIsNotRoundedUp) {
  EXPECT_EQ(SnappedTo(8, 11), 8);
  EXPECT_EQ(SnappedTo(8, 12), 8);
  EXPECT_EQ(SnappedTo(8, 13), 16);
  EXPECT_EQ(SnappedTo(8, 16), 16);
}

TEST_F(GridSnap, AnOddGridRoundsBehindItsTruncatedHalf) {
  EXPECT_EQ(SnappedTo(5, 11), 10);
  EXPECT_EQ(SnappedTo(5, 12), 10);
  EXPECT_EQ(SnappedTo(5, 13), 15);
}

TEST_F(GridSnap, NegativeCoordinatesRoundTowardsZero) {
  DrawingSession other({.clientWidth = 104, .clientHeight = 88});
  other.Grid(8, 8);
  // 7 pixels left of the picture.
  other.Press(13, 40);
  model.Set(0, 16, 1);
  EXPECT_TRUE(Shows(other.NowView(), model));
}

TEST_F(GridSnap, NegativeCoordinatesBeyondAStepRoundTowardsZero) {
  DrawingSession other({.clientWidth = 104, .clientHeight = 88});
  other.Dialog(kFrameSizeDialog, {{kFrameWidthEdit, "32"}, {kFrameHeightEdit, "24"}}).Command(kCommandFrameSize);
  other.Grid(8, 8);
  // From the picture's corner to 15 left of it.
  other.Command(kToolFramePosition).LeftDrag(20, 20, 5, 20);
  EXPECT_EQ(other.Frame()["x"], -8);
}

class SnappedTool : public DrawingTest, public testing::WithParamInterface<int> {};

TEST_P(SnappedTool, DrawsBetweenSnappedPoints) {
  session.Grid(8, 8).Command(GetParam()).LeftClick(11, 13).LeftClick(30, 13).RightClick(40, 40).Command(kToolZoom);
  const PixelMatrix view = session.NowView();
  EXPECT_EQ(view.At(8, 16), 8u);
  EXPECT_EQ(view.At(32, 16), 8u);
  EXPECT_EQ(view.At(7, 16), 0u);
  EXPECT_EQ(view.At(33, 16), 0u);
}

INSTANTIATE_TEST_SUITE_P(All, SnappedTool,
                         testing::Values(kToolFreePen, kToolLine, kToolCurve, kToolFocusLines, kToolParallelLines));

const Rules<DrawingTest, "GridSnap"> kGridSnapRules = {
    {"TheDialogSetsIt", Do().Grid(8, 5), Has("pen/gridWidth,gridHeight", "8 5")},
    {"ACancelledDialogKeepsIt",
     Do().Dialog(kGridDialog, {{kGridWidthEdit, "8"}, {kGridHeightEdit, "5"}}, "cancel").Command(kCommandSnapGrid),
     Has("pen/gridWidth", 1)},
    {"WidthAndHeightAreApart", Do().Grid(8, 4).Press(13, 13), Has("pixel/16/12", 1)},
    {"TheGridIsThatOfTheCutAndNotOfTheLayer",
     Do().Command(kToolLayerPosition).LeftDrag(10, 10, 13, 15).Grid(8, 8).Command(kToolFreePen).Press(18, 22),
     Ink().Set(16, 24, 1)},
    {"ABoxSnapsBothCorners", Do().Grid(8, 8).Command(kToolRectangle).LeftDrag(11, 13, 30, 34),
     Ink().Outline(8, 16, 32, 32, 8)},
};

}  // namespace
}  // namespace rules
