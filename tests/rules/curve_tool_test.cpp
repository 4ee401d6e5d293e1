#include <gtest/gtest.h>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"
#include "rules/rule_table.h"

namespace rules {
namespace {

constexpr Point a = {8, 40};
constexpr Point b = {20, 12};
constexpr Point c = {45, 10};
constexpr Point d = {55, 38};
constexpr Point e = {30, 44};

struct CurveTool : DrawingTest {
  CurveTool() { session.Command(kToolCurve); }
};

ScriptSession Click(const Point& point, std::string_view keys = "") {
  return Do().LeftClick(point.x, point.y, keys);
}

ScriptSession End() {
  return Do().RightClick(1, 1);
}

TEST_F(CurveTool, ACurvePassesThroughItsPoints) {
  session.Then(Click(a));
  session.Then(Click(b));
  session.Then(Click(c));
  session.Then(End());
  const PixelMatrix view = session.NowView();
  for (const Point& point : {a, b, c}) EXPECT_EQ(view.At(point.x, point.y), 8u) << point.x;
}

TEST_F(CurveTool, TheUndoRectCoversTheSegmentAndItsMargin) {
  session.Then(Click({10, 20}));
  session.Then(Click({30, 20}));
  session.Then(End());
  const Area rect = session.NowUndoRect();
  EXPECT_EQ(rect[0] + rect[2], 35);
  EXPECT_EQ(rect[1], 15);
  EXPECT_EQ(rect[1] + rect[3], 25);
}

TEST_F(CurveTool, TheBandInvertsTheScreen) {
  session.Then(Click({10, 20}));
  session.Move(30, 20);
  EXPECT_EQ(session.NowScreen().At(20, 20), 0x1E0000u);
  session.Then(End());
  EXPECT_EQ(session.NowScreen().At(20, 20), 0xE1FFFFu);
}

const Rules<CurveTool, "CurveTool"> kCurveToolRules = {
    {"FivePointsShiftTheFourByOne", Click(a), Click(b), Click(c), Click(d), Click(e), End(),
     Ink().Curve({a, a, b, c}).Curve({a, b, c, d}).Curve({b, c, d, e}).Curve({c, d, e, e})},
    {"OneClickAndARightClickDrawNothing", Click(a), End(), Ink()},
    {"TwoClicksAndARightClickDrawACubicWithDoubledEnds", Click(a), Click(b), Ink(), End(), Ink().Curve({a, a, b, b})},
    {"ASegmentIsDrawnOneClickLate", Click(a), Click(b), Click(c), Ink().Curve({a, a, b, c}), End(),
     Ink().Curve({a, b, c, c})},
    {"AMiddleSegmentRunsThroughFourPoints", Click(a), Click(b), Click(c), Click(d),
     Ink().Curve({a, a, b, c}).Curve({a, b, c, d})},
    {"PointsOnALineGiveTheLine", Click({10, 20}), Click({30, 20}), End(), Ink().Fill(10, 20, 21, 1, 8)},
    {"TheSamePointTwiceIsOneStamp", Click({10, 20}), Click({10, 20}), End(), Ink().Set(10, 20, 8)},
    {"OnlyTheReleaseCounts", Do().Press(10, 20).Press(30, 20), End(), Ink()},
    {"CtrlAtAClickLeavesOutTheSegmentOfTheNextClick", Click(a), Click(b, "ctrl"), Click(c), Ink(), End(),
     Ink().Curve({a, b, c, c})},
    {"TheLastSegmentIsDrawnInSpiteOfCtrl", Click(a), Click(b, "ctrl"), End(), Ink().Curve({a, a, b, b})},
    {"ASegmentHasTheShapeOfTheClickBeforeTheOneThatDraws", Click(a), Do().Char('f').Char('f'), Click(b),
     Do().Char('d').Char('d'), Click(c), Ink().Curve({a, a, b, c}, {.shape = 9}), Has("pen/shape", 7)},
    {"AChainOfCurvesIsOneUndoStep", Do().DrawInkLine(40, 44, 50, 44).Command(kToolCurve), Click(a), Click(b), Click(c),
     End(), Do().Command(kCommandUndo), Ink().Line(40, 44, 50, 44)},
    {"ARightClickEndsTheCurve", Click(a), Click(b), End(), Click(c), End(), Ink().Curve({a, a, b, b})},
    {"APulseDropsThePendingSegment", Click(a), Click(b), Click(c), Do().Repaint(), End(), Ink().Curve({a, a, b, c})},
    {"TheFirstClickForgetsTheUndoRect", Do().DrawInkLine(40, 44, 50, 44).Command(kToolCurve), Click(a),
     Has("cut/undoRect", Area{0, 0, 0, 0})},
    {"TheUndoRectOfAStampHasAMarginOfOne", Click({20, 20}), Click({20, 20}), End(),
     Has("cut/undoRect", Area{15, 15, 10, 10})},
    {"TheMarkGoesWithTheRightClick", Click(a), Do().Move(30, 20), Has("pixel/30/20", 1), End(), Ink()},
    {"AMaskHoldsOnTheCurve", Do().FillArea(0, 20, 64, 6, 4).Mask({4}).Command(kToolCurve), Click(a), Click(b), Click(c),
     Ink().Fill(0, 20, 64, 6, 4).Curve({a, a, b, c}, {}, 1U << 4)},
};

}  // namespace
}  // namespace rules
