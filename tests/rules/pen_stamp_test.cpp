#include <gtest/gtest.h>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"
#include "rules/rule_table.h"
#include "support/ink_rules.h"

namespace rules {
namespace {

template <typename Session>
ScriptSession& PickShape(Session&& session, int shape) {
  if (shape < 7) session.Command(kCommandSquarePen);
  return session.PickSize(shape < 7 ? 7 - shape : shape - 7);
}

class PenShape : public DrawingTest, public testing::WithParamInterface<int> {};

TEST_P(PenShape, StampsItsRowsAroundThePoint) {
  PickShape(session, GetParam());
  session.Press(20, 20);
  for (int dy = -4; dy < 4; ++dy) {
    for (int dx = -4; dx < 4; ++dx) {
      if (inkrules::Covers(GetParam(), dx, dy)) model.Set(20 + dx, 20 + dy, 1);
    }
  }
  EXPECT_TRUE(ViewShows(model));
}

INSTANTIATE_TEST_SUITE_P(All, PenShape, testing::Range(0, 15));

const Rules<DrawingTest, "PenStamp"> kPenStampRules = {
    {"TheFinestPenSetsThePointAlone", Do().Press(10, 10), Ink().Set(10, 10, 1)},
    {"TheLargestSquareCoversFourToTheLeftAndThreeToTheRight", PickShape(Do(), 0).Press(10, 10),
     Ink().Fill(6, 6, 8, 8, 1)},
    {"NearACornerOnlyThePixelsInsideAreSet", PickShape(Do(), 0).LeftClick(1, 2).LeftClick(62, 46),
     Ink().Fill(0, 0, 5, 6, 8).Fill(58, 42, 6, 6, 8)},
    {"AMaskHoldsOverTheWholeWidthOfThePen", Do().FillArea(20, 18, 2, 9, 3).FillArea(22, 18, 2, 9, 2).Mask({3}),
     PickShape(Do(), 0).Press(22, 22),
     Ink().Fill(20, 18, 2, 9, 3).Fill(22, 18, 2, 9, 2).Fill(18, 18, 8, 8, 1).Fill(20, 18, 2, 9, 3)},
};

class PenTone : public testing::TestWithParam<int> {
 protected:
  PixelMatrix Filled(int tone) {
    DrawingSession session;
    session.Command(kToolRectangle);
    session.Pick(tone, 2);
    session.Press(4, 4);
    session.Release(20, 20, "ctrl");
    return session.NowView();
  }
};

TEST_P(PenTone, LiesOnTheTilesOfTheCell) {
  InkModel model;
  model.FillWith({.shape = 7, .tone = GetParam(), .colorA = 2, .colorB = 3}, 4, 4, 16, 16);
  EXPECT_TRUE(Shows(Filled(GetParam()), model));
}

INSTANTIATE_TEST_SUITE_P(All, PenTone, testing::Range(0, 16));

TEST_F(PenTone, ToneOneSetsTheFourthPixelOfTheTilesFirstRow) {
  const PixelMatrix view = Filled(1);
  EXPECT_EQ(view.At(7, 4), 2u);
  EXPECT_EQ(view.Count(2, 4, 4, 4, 4), 1);
}

}  // namespace
}  // namespace rules
