#include <gtest/gtest.h>

#include <array>
#include <utility>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"
#include "rules/rule_table.h"

namespace rules {
namespace {

using Json = nlohmann::json;
// Shape, tone, first and second colour.
using PenValues = std::array<int, 4>;

PenValues PenOf(const Json& state) {
  const Json& pen = state["pen"];
  return {pen["shape"].get<int>(), pen["tone"].get<int>(), pen["colorA"].get<int>(), pen["colorB"].get<int>()};
}

PenValues PenNow(ScriptSession& session) {
  const int state = session.State();
  session.Run();
  return PenOf(session.StateAt(state));
}

constexpr int Middle(int place) {
  return 10 + 14 * place;
}

class PickerColour : public SessionTest, public testing::WithParamInterface<std::pair<int, int>> {};

TEST_P(PickerColour, IsPlainInk) {
  const auto& [column, index] = GetParam();
  session.Picker("ldown", Middle(5), Middle(2)).Picker("ldown", Middle(column), Middle(0));
  EXPECT_EQ(PenNow(session), (PenValues{7, 0, 0, index}));
}

INSTANTIATE_TEST_SUITE_P(TopRow, PickerColour,
                         testing::Values(std::pair(0, 1), std::pair(1, 9), std::pair(2, 10), std::pair(3, 11),
                                         std::pair(4, 12), std::pair(5, 0), std::pair(6, 13), std::pair(7, 14)));

using Picker = SessionTest;

TEST_F(Picker, TonesSetBothColoursAndTheTone) {
  for (int row = 1; row <= 3; ++row) {
    for (const int column : {0, 1, 8, 15}) {
      ScriptSession fresh;
      fresh.Picker("ldown", Middle(column), Middle(row));
      EXPECT_EQ(PenNow(fresh), (PenValues{7, column, row, row + 1}));
    }
  }
}

TEST_F(Picker, SizesSetTheShapeAlone) {
  for (int step = 0; step < 8; ++step) {
    ScriptSession fresh;
    fresh.Picker("ldown", Middle(5), Middle(2)).Picker("ldown", Middle(8 + step), Middle(0));
    EXPECT_EQ(PenNow(fresh), (PenValues{7 + step, 5, 2, 3}));
  }
}

TEST_F(Picker, SizesOfASquarePenCountDown) {
  for (int step = 0; step < 8; ++step) {
    ScriptSession fresh;
    fresh.Command(kCommandSquarePen).Picker("ldown", Middle(8 + step), Middle(0));
    EXPECT_EQ(PenNow(fresh)[0], 7 - step);
  }
}

const Rules<SessionTest, "Picker"> kPickerRules = {
    {"ARightPressPicksToo", Do().Picker("rdown", Middle(3), Middle(1)), Has("pen/shape,tone,colorA,colorB", "7 3 1 2")},
    {"AReleaseAndAMovePickNothing",
     Do().Picker("move", Middle(3), Middle(1)).Picker("lup", Middle(3), Middle(1)).Picker("rup", Middle(3), Middle(1)),
     Has("pen/shape,tone,colorA,colorB", "7 0 0 1")},
};

TEST_F(Picker, SquaresTakeInTheirEdges) {
  const std::pair<int, int> corners[] = {{32, 18}, {44, 18}, {32, 30}, {44, 30}};
  for (const auto& [x, y] : corners) {
    ScriptSession fresh;
    fresh.Picker("ldown", x, y);
    EXPECT_EQ(PenNow(fresh), (PenValues{7, 2, 1, 2})) << x << ", " << y;
  }
}

TEST_F(Picker, TheGapsBetweenTheSquaresPickNothing) {
  const std::pair<int, int> gaps[] = {{31, 24}, {45, 24}, {38, 17}, {38, 31}, {3, 24}, {227, 24}, {38, 59}};
  for (const auto& [x, y] : gaps) {
    ScriptSession fresh;
    fresh.Picker("ldown", x, y);
    EXPECT_EQ(PenNow(fresh), (PenValues{7, 0, 0, 1})) << x << ", " << y;
  }
}

TEST_F(Picker, TheTransparentPenErases) {
  DrawingSession fresh;
  fresh.FillArea(10, 10, 20, 20, 1).Pick(5, 0).Command(kCommandMuraRemoval).LeftDrag(5, 15, 40, 15);
  InkModel model;
  model.Fill(10, 10, 20, 20, 1).Fill(10, 15, 20, 1, 0);
  EXPECT_TRUE(Shows(fresh.NowView(), model));
}

// A right click of the fill tool reads the pen out of the cell.
struct PenFromTheCell : DrawingTest {};

// Makes the pen plain black of shape 10, and takes the pen of this point.
ScriptSession PickAt(int x, int y) {
  return Do().PickPlain(1).PickSize(3).Command(kToolFill).RightClick(x, y);
}

TEST_F(PenFromTheCell, TheBlockReachesTwoToTheUpperLeftAndOneToTheLowerRight) {
  session.FillArea(20, 20, 1, 1, 3);
  for (const int place : {22, 19}) {
    session.Then(PickAt(place, place));
    EXPECT_EQ(PenNow(session), (PenValues{10, 15, 0, 3}));
  }
  session.PickPlain(1).Command(kToolFill).RightClick(23, 20);
  EXPECT_NE(PenOf(session.NowState())[3], 3);
  session.RightClick(18, 20);
  EXPECT_NE(PenOf(session.NowState())[3], 3);
}

const Rules<PenFromTheCell, "PenFromTheCell"> kPenFromTheCellRules = {
    {"TheTwoBlacksMakeADither", Do().FillArea(20, 20, 10, 10, 1).DrawInkLine(20, 25, 29, 25), PickAt(25, 25),
     Has("pen/shape,tone,colorA,colorB", "10 12 1 8")},
    {"LineBlackGivesLineBlack", Do().PickSize(7).Command(kToolLine).LeftClick(20, 20), PickAt(20, 20),
     Has("pen/shape,tone,colorA,colorB", "10 0 0 8")},
    {"TheShapeStays", Do().FillArea(10, 10, 20, 20, 2), PickAt(20, 20), Has("pen/shape", 10)},
    {"ADitherOverTransparentCountsTheTransparentPixels", Do().FillArea(20, 20, 10, 10, 3), PickAt(20, 25),
     Has("pen/shape,tone,colorA,colorB", "10 8 0 3")},
    {"ThreeColoursKeepThePen", Do().FillArea(20, 20, 10, 10, 3).FillArea(20, 15, 10, 5, 2), PickAt(20, 20),
     Has("pen/shape,tone,colorA,colorB", "10 0 0 1")},
    {"TheGradientToolPicksToo", Do().FillArea(10, 10, 20, 20, 3).Command(kToolGradient).RightClick(20, 20),
     Has("pen/shape,tone,colorA,colorB", "7 0 2 3")},
    {"TheGridDoesNotMoveThePoint", Do().FillArea(10, 10, 5, 5, 3).Grid(32, 32), PickAt(12, 12),
     Has("pen/shape,tone,colorA,colorB", "10 0 2 3")},
};

TEST_F(PenFromTheCell, OtherToolsDoNotPick) {
  session.FillArea(10, 10, 20, 20, 3);
  for (const int other : {kToolFreePen, kToolLine, kToolCurve, kToolRectangle, kToolEdging, kToolFocusLines,
                          kToolParallelLines, kToolText}) {
    session.Command(other).RightClick(20, 20);
  }
  EXPECT_EQ(PenOf(session.NowState()), (PenValues{7, 0, 0, 1}));
}

TEST(PenOutsideTheCell, IsKept) {
  DrawingSession session({.clientWidth = 84, .clientHeight = 68});
  session.Pick(5, 2).Command(kToolFill).RightClick(3, 3);
  EXPECT_EQ(PenOf(session.NowState()), (PenValues{7, 5, 2, 3}));
}

}  // namespace
}  // namespace rules
