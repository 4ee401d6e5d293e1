#include <gtest/gtest.h>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"

namespace rules {
namespace {

constexpr Point a = {8, 40};
constexpr Point b = {20, 12};
constexpr Point c = {45, 10};
constexpr Point d = {55, 38};

struct CurveTool : DrawingTest {
  CurveTool() { session.Command(kToolCurve); }
  void Click(const Point& point, std::string_view keys = "") { session.LeftClick(point.x, point.y, keys); }
  void End() { session.RightClick(1, 1); }
};

TEST_F(CurveTool, OneClickAndARightClickDrawNothing) {
  Click(a);
  End();
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(CurveTool, TwoClicksAndARightClickDrawACubicWithDoubledEnds) {
  Click(a);
  Click(b);
  EXPECT_TRUE(ViewShows(model));
  End();
  EXPECT_TRUE(ViewShows(model.Curve({a, a, b, b})));
}

TEST_F(CurveTool, ASegmentIsDrawnOneClickLate) {
  Click(a);
  Click(b);
  Click(c);
  EXPECT_TRUE(ViewShows(model.Curve({a, a, b, c})));
  End();
  EXPECT_TRUE(ViewShows(model.Curve({a, b, c, c})));
}

TEST_F(CurveTool, AMiddleSegmentRunsThroughFourPoints) {
  Click(a);
  Click(b);
  Click(c);
  Click(d);
  EXPECT_TRUE(ViewShows(model.Curve({a, a, b, c}).Curve({a, b, c, d})));
}

TEST_F(CurveTool, FivePointsShiftTheFourByOne) {
  const Point e = {30, 44};
  Click(a);
  Click(b);
  Click(c);
  Click(d);
  Click(e);
  End();
  EXPECT_TRUE(ViewShows(model.Curve({a, a, b, c}).Curve({a, b, c, d}).Curve({b, c, d, e}).Curve({c, d, e, e})));
}

TEST_F(CurveTool, ACurvePassesThroughItsPoints) {
  Click(a);
  Click(b);
  Click(c);
  End();
  const PixelMatrix view = session.NowView();
  for (const Point& point : {a, b, c}) EXPECT_EQ(view.At(point.x, point.y), 8u) << point.x;
}

TEST_F(CurveTool, PointsOnALineGiveTheLine) {
  Click({10, 20});
  Click({30, 20});
  End();
  EXPECT_TRUE(ViewShows(model.Fill(10, 20, 21, 1, 8)));
}

TEST_F(CurveTool, TheSamePointTwiceIsOneStamp) {
  Click({10, 20});
  Click({10, 20});
  End();
  EXPECT_TRUE(ViewShows(model.Set(10, 20, 8)));
}

TEST_F(CurveTool, OnlyTheReleaseCounts) {
  session.Press(10, 20).Press(30, 20);
  End();
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(CurveTool, CtrlAtAClickLeavesOutTheSegmentOfTheNextClick) {
  Click(a);
  Click(b, "ctrl");
  Click(c);
  EXPECT_TRUE(ViewShows(model));
  End();
  EXPECT_TRUE(ViewShows(model.Curve({a, b, c, c})));
}

TEST_F(CurveTool, TheLastSegmentIsDrawnInSpiteOfCtrl) {
  Click(a);
  Click(b, "ctrl");
  End();
  EXPECT_TRUE(ViewShows(model.Curve({a, a, b, b})));
}

TEST_F(CurveTool, ASegmentHasTheShapeOfTheClickBeforeTheOneThatDraws) {
  Click(a);
  session.Char('f').Char('f');
  Click(b);
  session.Char('d').Char('d');
  Click(c);
  EXPECT_TRUE(ViewShows(model.Curve({a, a, b, c}, {.shape = 9})));
  EXPECT_EQ(session.NowState()["pen"]["shape"], 7);
}

TEST_F(CurveTool, AChainOfCurvesIsOneUndoStep) {
  session.DrawInkLine(40, 44, 50, 44).Command(kToolCurve);
  Click(a);
  Click(b);
  Click(c);
  End();
  session.Command(kCommandUndo);
  EXPECT_TRUE(ViewShows(model.Line(40, 44, 50, 44)));
}

TEST_F(CurveTool, ARightClickEndsTheCurve) {
  Click(a);
  Click(b);
  End();
  Click(c);
  End();
  EXPECT_TRUE(ViewShows(model.Curve({a, a, b, b})));
}

TEST_F(CurveTool, APulseDropsThePendingSegment) {
  Click(a);
  Click(b);
  Click(c);
  session.Repaint();
  End();
  EXPECT_TRUE(ViewShows(model.Curve({a, a, b, c})));
}

TEST_F(CurveTool, TheFirstClickForgetsTheUndoRect) {
  session.DrawInkLine(40, 44, 50, 44).Command(kToolCurve);
  Click(a);
  EXPECT_EQ(session.NowUndoRect(), (Area{0, 0, 0, 0}));
}

TEST_F(CurveTool, TheUndoRectOfAStampHasAMarginOfOne) {
  Click({20, 20});
  Click({20, 20});
  End();
  EXPECT_EQ(session.NowUndoRect(), (Area{15, 15, 10, 10}));
}

TEST_F(CurveTool, TheUndoRectCoversTheSegmentAndItsMargin) {
  Click({10, 20});
  Click({30, 20});
  End();
  const Area rect = session.NowUndoRect();
  EXPECT_EQ(rect[0] + rect[2], 35);
  EXPECT_EQ(rect[1], 15);
  EXPECT_EQ(rect[1] + rect[3], 25);
}

TEST_F(CurveTool, TheBandInvertsTheScreen) {
  Click({10, 20});
  session.Move(30, 20);
  EXPECT_EQ(session.NowScreen().At(20, 20), 0x1E0000u);
  End();
  EXPECT_EQ(session.NowScreen().At(20, 20), 0xE1FFFFu);
}

TEST_F(CurveTool, TheMarkGoesWithTheRightClick) {
  Click(a);
  session.Move(30, 20);
  EXPECT_EQ(session.NowView().At(30, 20), 1u);
  End();
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(CurveTool, AMaskHoldsOnTheCurve) {
  session.FillArea(0, 20, 64, 6, 4).Mask({4}).Command(kToolCurve);
  Click(a);
  Click(b);
  Click(c);
  EXPECT_TRUE(ViewShows(model.Fill(0, 20, 64, 6, 4).Curve({a, a, b, c}, {}, 1U << 4)));
}

}  // namespace
}  // namespace rules
