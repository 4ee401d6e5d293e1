#include <gtest/gtest.h>

#include <utility>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"
#include "rules/rule_table.h"

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

using LineRaster = DrawingTest;

TEST_F(LineRaster, AFlatLineStepsSidewaysFirst) {
  EXPECT_TRUE(Shows(Drawn({0, 0}, {4, 2}), Dots({{0, 0}, {1, 1}, {2, 1}, {3, 2}, {4, 2}})));
}

TEST_F(LineRaster, TheSameLineBackwardsHasOtherMiddlePoints) {
  EXPECT_TRUE(Shows(Drawn({4, 2}, {0, 0}), Dots({{4, 2}, {3, 1}, {2, 1}, {1, 0}, {0, 0}})));
}

TEST_F(LineRaster, ASteepLineStepsDownFirst) {
  EXPECT_TRUE(Shows(Drawn({0, 0}, {2, 4}), Dots({{0, 0}, {1, 1}, {1, 2}, {2, 3}, {2, 4}})));
}

TEST_F(LineRaster, AnEvenDiagonalHasNoSteps) {
  EXPECT_TRUE(Shows(Drawn({5, 8}, {8, 5}), Dots({{5, 8}, {6, 7}, {7, 6}, {8, 5}})));
}

TEST_F(LineRaster, ALineOfNoLengthIsOneStamp) {
  EXPECT_TRUE(Shows(Drawn({7, 9}, {7, 9}), Dots({{7, 9}})));
}

const Rules<DrawingTest, "LineRaster"> kLineRasterRules = {
    {"ADitheredBlackIsNotTurnedIntoLineBlack",
     Do().SetSettings("[setup]\r\nbrush=11, 2, 1, 4, 1, 0\r\n").Command(kToolLine).Press(10, 10).Release(40, 20),
     Ink().Line(10, 10, 40, 20, {.shape = 11, .tone = 4, .colorA = 2, .colorB = 1})},
    {"APlainGreyStaysAsItIs", Do().Command(kToolLine).PickPlain(3).Press(10, 10).Release(40, 20),
     Ink().Line(10, 10, 40, 20, {.colorA = 2, .colorB = 3})},
    {"ALineTurnsALineBlackPenIntoPlainBlack",
     Do().SetSettings("[setup]\r\nbrush=7, 0, 8, 0, 1, 0\r\n").Command(kToolLine).Press(10, 10).Release(40, 20),
     Has("pen/colorB", 1), Ink().Line(10, 10, 40, 20)},
    {"PlainBlackIsPlainBlackAgainAfterTheLine", Do().DrawInkLine(10, 10, 40, 20), Has("pen/colorB", 1)},
    {"AMaskHoldsAtEveryStamp",
     Do().FillArea(20, 0, 6, 48, 4).FillArea(30, 0, 6, 48, 3).Mask({4}).PickSize(6).Command(kToolLine).Press(10, 10),
     Do().Release(50, 20),
     Ink().Fill(20, 0, 6, 48, 4).Fill(30, 0, 6, 48, 3).Line(10, 10, 50, 20, {.shape = 13}, 1U << 4)},
};

}  // namespace
}  // namespace rules
