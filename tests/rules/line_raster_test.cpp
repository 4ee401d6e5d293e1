#include <gtest/gtest.h>

#include <utility>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"

namespace rules {
namespace {

PixelMatrix Drawn(const Point& from, const Point& to) {
  DrawingSession session;
  session.DrawInkLine(from.x, from.y, to.x, to.y);
  return session.NowView();
}

InkModel Dots(std::initializer_list<Point> points) {
  InkModel model;
  for (const Point& point : points) model.Set(point.x, point.y, 8);
  return model;
}

TEST(LineRaster, AFlatLineStepsSidewaysFirst) {
  EXPECT_TRUE(Shows(Drawn({0, 0}, {4, 2}), Dots({{0, 0}, {1, 1}, {2, 1}, {3, 2}, {4, 2}})));
}

TEST(LineRaster, TheSameLineBackwardsHasOtherMiddlePoints) {
  EXPECT_TRUE(Shows(Drawn({4, 2}, {0, 0}), Dots({{4, 2}, {3, 1}, {2, 1}, {1, 0}, {0, 0}})));
}

TEST(LineRaster, ASteepLineStepsDownFirst) {
  EXPECT_TRUE(Shows(Drawn({0, 0}, {2, 4}), Dots({{0, 0}, {1, 1}, {1, 2}, {2, 3}, {2, 4}})));
}

TEST(LineRaster, AnEvenDiagonalHasNoSteps) {
  EXPECT_TRUE(Shows(Drawn({5, 8}, {8, 5}), Dots({{5, 8}, {6, 7}, {7, 6}, {8, 5}})));
}

TEST(LineRaster, ALineOfNoLengthIsOneStamp) {
  EXPECT_TRUE(Shows(Drawn({7, 9}, {7, 9}), Dots({{7, 9}})));
}

class LineDirection : public testing::TestWithParam<std::pair<Point, Point>> {};

TEST_P(LineDirection, FollowsTheError) {
  const auto& [from, to] = GetParam();
  InkModel model;
  model.Line(from.x, from.y, to.x, to.y);
  EXPECT_TRUE(Shows(Drawn(from, to), model));
}

INSTANTIATE_TEST_SUITE_P(
    All, LineDirection,
    testing::Values(std::pair(Point{30, 20}, Point{47, 26}), std::pair(Point{30, 20}, Point{36, 41}),
                    std::pair(Point{30, 20}, Point{13, 31}), std::pair(Point{30, 20}, Point{25, 45}),
                    std::pair(Point{30, 20}, Point{11, 13}), std::pair(Point{30, 20}, Point{27, 2}),
                    std::pair(Point{30, 20}, Point{55, 9}), std::pair(Point{30, 20}, Point{33, 1}),
                    std::pair(Point{30, 20}, Point{30, 40}), std::pair(Point{30, 20}, Point{5, 20}),
                    std::pair(Point{50, 40}, Point{90, 61})));

TEST(LineRaster, ADitheredBlackIsNotTurnedIntoLineBlack) {
  DrawingSession session;
  session.StartWith("[setup]\r\nbrush=11, 2, 1, 4, 1, 0\r\n");
  session.Command(kToolLine);
  session.Press(10, 10);
  session.Release(40, 20);
  InkModel model;
  model.Line(10, 10, 40, 20, {.shape = 11, .tone = 4, .colorA = 2, .colorB = 1});
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(LineRaster, APlainGreyStaysAsItIs) {
  DrawingSession session;
  session.Command(kToolLine);
  session.PickPlain(3);
  session.Press(10, 10);
  session.Release(40, 20);
  InkModel model;
  model.Line(10, 10, 40, 20, {.colorA = 2, .colorB = 3});
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(LineRaster, ALineTurnsALineBlackPenIntoPlainBlack) {
  DrawingSession session;
  session.StartWith("[setup]\r\nbrush=7, 0, 8, 0, 1, 0\r\n");
  session.Command(kToolLine);
  session.Press(10, 10);
  session.Release(40, 20);
  InkModel model;
  model.Line(10, 10, 40, 20);
  EXPECT_TRUE(Shows(session.NowView(), model));
  EXPECT_EQ(session.NowState()["pen"]["colorB"], 1);
}

TEST(LineRaster, PlainBlackIsPlainBlackAgainAfterTheLine) {
  DrawingSession session;
  session.DrawInkLine(10, 10, 40, 20);
  EXPECT_EQ(session.NowState()["pen"]["colorB"], 1);
}

TEST(LineRaster, AMaskHoldsAtEveryStamp) {
  DrawingSession session;
  session.FillArea(20, 0, 6, 48, 4);
  session.FillArea(30, 0, 6, 48, 3);
  session.Mask({4});
  session.PickSize(6);
  session.Command(kToolLine);
  session.Press(10, 10);
  session.Release(50, 20);
  InkModel model;
  model.Fill(20, 0, 6, 48, 4);
  model.Fill(30, 0, 6, 48, 3);
  model.Line(10, 10, 50, 20, {.shape = 13}, 1U << 4);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

}  // namespace
}  // namespace rules
