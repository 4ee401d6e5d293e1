#include <gtest/gtest.h>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"
#include "rules/rule_table.h"

namespace rules {
namespace {

class MarkingTool : public DrawingTest, public testing::WithParamInterface<int> {};

TEST_P(MarkingTool, ShowsThePenOnTheViewAlone) {
  const std::string cell = session.Cut()["layers"][0]["cells"][0];
  session.Command(GetParam()).PickSize(2).Move(30, 20);
  EXPECT_TRUE(ViewShows(model.Stamp(30, 20, {.shape = 9})));
  EXPECT_EQ(session.Cut()["layers"][0]["cells"][0], cell);
}

TEST_P(MarkingTool, MovesTheMarkWithTheMouse) {
  session.Command(GetParam()).Move(30, 20).Move(32, 25);
  EXPECT_TRUE(ViewShows(model.Set(32, 25, 1)));
}

TEST_P(MarkingTool, LosesTheMarkAtAToolChange) {
  session.Command(GetParam()).Move(30, 20).Command(kToolFill);
  EXPECT_TRUE(ViewShows(InkModel()));
}

TEST_P(MarkingTool, ShowsNoMarkOnABlankRecord) {
  session.Command(GetParam()).Command(kCommandBlankCell).Move(30, 20);
  EXPECT_TRUE(ViewShows(InkModel()));
}

INSTANTIATE_TEST_SUITE_P(All, MarkingTool,
                         testing::Values(kToolFreePen, kToolLine, kToolFocusLines, kToolParallelLines));

class MarklessTool : public DrawingTest, public testing::WithParamInterface<int> {};

TEST_P(MarklessTool, ShowsNoMark) {
  session.Command(GetParam()).Move(30, 20);
  EXPECT_TRUE(ViewShows(InkModel()));
}

INSTANTIATE_TEST_SUITE_P(All, MarklessTool,
                         testing::Values(kToolCurve, kToolRectangle, kToolFill, kToolGradient, kToolEdging, kToolEraser,
                                         kToolAreaSelect, kToolMosaic, kToolText, kToolZoom, kToolLayerPosition,
                                         kToolFramePosition));

const Rules<DrawingTest, "PenMark"> kPenMarkRules = {
    {"RestoresTheInkBelow", Do().FillArea(20, 15, 20, 15, 3).PickSize(5).Move(30, 20).Move(50, 40),
     Ink().Fill(20, 15, 20, 15, 3).Stamp(50, 40, {.shape = 12})},
    {"KeepsToTheMaskAgainstTheView",
     Do().FillArea(30, 10, 10, 20, 3).Mask({0}).Command(kCommandSquarePen).PickSize(7).Move(30, 20),
     Ink().Fill(30, 10, 10, 20, 3).Fill(30, 16, 4, 8, 1)},
    {"StandsOnTheSnappedPoint", Do().Grid(8, 8).Move(29, 12), Ink().Set(32, 8, 1)},
    {"FollowsALayerThatStandsElsewhere",
     Do().Command(kToolLayerPosition).LeftDrag(10, 10, 15, 13).Command(kToolFreePen).Move(30, 20),
     Ink().Set(30, 20, 1)},
    {"ReachesTheScreen", Do().Move(30, 20), Has("screen/30/20", 0x000000), Do().Move(40, 20),
     Has("screen/30/20", 0xE1FFFF)},
};

}  // namespace
}  // namespace rules
