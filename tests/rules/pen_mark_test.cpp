#include <gtest/gtest.h>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"

namespace rules {
namespace {

class MarkingTool : public testing::TestWithParam<int> {};

TEST_P(MarkingTool, ShowsThePenOnTheViewAlone) {
  DrawingSession session;
  const std::string cell = session.NowCut()["layers"][0]["cells"][0];
  session.Command(GetParam());
  session.PickSize(2);
  session.Move(30, 20);
  InkModel model;
  model.Stamp(30, 20, {.shape = 9});
  EXPECT_TRUE(Shows(session.NowView(), model));
  EXPECT_EQ(session.NowCut()["layers"][0]["cells"][0], cell);
}

TEST_P(MarkingTool, MovesTheMarkWithTheMouse) {
  DrawingSession session;
  session.Command(GetParam());
  session.Move(30, 20);
  session.Move(32, 25);
  InkModel model;
  model.Set(32, 25, 1);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_P(MarkingTool, LosesTheMarkAtAToolChange) {
  DrawingSession session;
  session.Command(GetParam());
  session.Move(30, 20);
  session.Command(kToolFill);
  EXPECT_TRUE(Shows(session.NowView(), InkModel()));
}

TEST_P(MarkingTool, ShowsNoMarkOnABlankRecord) {
  DrawingSession session;
  session.Command(GetParam());
  session.Command(kCommandBlankCell);
  session.Move(30, 20);
  EXPECT_TRUE(Shows(session.NowView(), InkModel()));
}

INSTANTIATE_TEST_SUITE_P(All, MarkingTool,
                         testing::Values(kToolFreePen, kToolLine, kToolFocusLines, kToolParallelLines));

class MarklessTool : public testing::TestWithParam<int> {};

TEST_P(MarklessTool, ShowsNoMark) {
  DrawingSession session;
  session.Command(GetParam());
  session.Move(30, 20);
  EXPECT_TRUE(Shows(session.NowView(), InkModel()));
}

INSTANTIATE_TEST_SUITE_P(All, MarklessTool,
                         testing::Values(kToolCurve, kToolRectangle, kToolFill, kToolGradient, kToolEdging, kToolEraser,
                                         kToolAreaSelect, kToolMosaic, kToolText, kToolZoom, kToolLayerPosition,
                                         kToolFramePosition));

TEST(PenMark, RestoresTheInkBelow) {
  DrawingSession session;
  session.FillArea(20, 15, 20, 15, 3);
  session.PickSize(5);
  session.Move(30, 20);
  session.Move(50, 40);
  InkModel model;
  model.Fill(20, 15, 20, 15, 3);
  model.Stamp(50, 40, {.shape = 12});
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(PenMark, KeepsToTheMaskAgainstTheView) {
  DrawingSession session;
  session.FillArea(30, 10, 10, 20, 3);
  session.Mask({0});
  session.Command(kCommandSquarePen);
  session.PickSize(7);
  session.Move(30, 20);
  InkModel model;
  model.Fill(30, 10, 10, 20, 3);
  model.Fill(30, 16, 4, 8, 1);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(PenMark, StandsOnTheSnappedPoint) {
  DrawingSession session;
  session.Grid(8, 8);
  session.Move(29, 12);
  InkModel model;
  model.Set(32, 8, 1);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(PenMark, FollowsALayerThatStandsElsewhere) {
  DrawingSession session;
  session.Command(kToolLayerPosition);
  session.LeftDrag(10, 10, 15, 13);
  session.Command(kToolFreePen);
  session.Move(30, 20);
  InkModel model;
  model.Set(30, 20, 1);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(PenMark, ReachesTheScreen) {
  DrawingSession session;
  session.Move(30, 20);
  EXPECT_EQ(session.NowScreen().At(30, 20), 0x000000u);
  session.Move(40, 20);
  EXPECT_EQ(session.NowScreen().At(30, 20), 0xE1FFFFu);
}

}  // namespace
}  // namespace rules
