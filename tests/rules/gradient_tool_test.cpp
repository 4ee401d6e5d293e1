#include <gtest/gtest.h>

#include <algorithm>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"

namespace rules {
namespace {

struct PickerPlace {
  int column;
  int row;
  int Level() const { return row == 0 ? 0 : (row - 1) * 16 + 16 - column; }
};

constexpr PickerPlace black = {0, 0};
constexpr PickerPlace almostBlack = {15, 1};
constexpr PickerPlace darkGrey = {0, 1};
constexpr PickerPlace lightTone = {4, 3};
constexpr PickerPlace white = {0, 3};

int Step(int start, int position, int delta, int span) {
  return std::clamp(span == 0 ? start : start + position * delta / span, 0, 48);
}

struct GradientTool : DrawingTest {
  void Click(const PickerPlace& pen, int x, int y) {
    session.Pick(pen.column, pen.row);
    session.Command(kToolGradient);
    session.LeftClick(x, y);
  }
  // The ramp over a rectangle of the model.
  void Ramp(bool horizontal, int origin, int span, int start, int end, int x, int y, int width, int height) {
    for (int j = y; j < y + height; ++j) {
      for (int i = x; i < x + width; ++i) {
        const int level = Step(start, (horizontal ? i : j) - origin, end - start, span);
        model.Set(i, j, ModelInkAt(ModelPenOfLevel(level), i, j));
      }
    }
  }
};

TEST_F(GradientTool, TheFirstClickDrawsNothing) {
  Click(black, 10, 10);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(GradientTool, TheSecondClickFillsFromBlackToWhite) {
  Click(black, 10, 10);
  Click(white, 50, 12);
  Ramp(true, 10, 40, 0, 48, 0, 0, 64, 48);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(GradientTool, TheRampStopsAtBlackAndWhiteBeyondTheClicks) {
  Click(black, 10, 10);
  Click(white, 50, 12);
  const PixelMatrix view = session.NowView();
  EXPECT_EQ(view.Count(1, 0, 0, 11, 48), 11 * 48);
  EXPECT_EQ(view.Count(4, 50, 0, 14, 48), 14 * 48);
}

TEST_F(GradientTool, ASteepPairOfClicksRunsDownwards) {
  Click(white, 10, 5);
  Click(darkGrey, 30, 40);
  Ramp(false, 5, 35, 48, 16, 0, 0, 64, 48);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(GradientTool, ATieRunsDownwards) {
  Click(almostBlack, 10, 10);
  Click(lightTone, 30, 30);
  Ramp(false, 10, 20, 1, 44, 0, 0, 64, 48);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(GradientTool, ASpanToTheLeftIsNegative) {
  Click(lightTone, 50, 20);
  Click(almostBlack, 13, 22);
  Ramp(true, 50, -37, 44, 1, 0, 0, 64, 48);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(GradientTool, TheTopRowOfThePickerIsAlwaysBlack) {
  Click({2, 0}, 10, 10);
  Click(white, 50, 12);
  Ramp(true, 10, 40, 0, 48, 0, 0, 64, 48);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(GradientTool, EqualPensFillEvenly) {
  Click(lightTone, 10, 10);
  Click(lightTone, 40, 30);
  Ramp(false, 10, 20, 44, 44, 0, 0, 64, 48);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(GradientTool, ASpanOfZeroKeepsTheFirstLevel) {
  Click(lightTone, 10, 10);
  Click(black, 10, 10);
  Ramp(false, 10, 0, 44, 0, 0, 0, 64, 48);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(GradientTool, TheFirstClickIsTheSeed) {
  session.Command(kToolRectangle).Press(10, 10).Release(40, 30);
  Click(black, 20, 20);
  Click(white, 60, 22);
  model.Outline(10, 10, 40, 30, 8);
  Ramp(true, 20, 40, 0, 48, 11, 11, 29, 19);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(GradientTool, TheSecondClickMayLieOnProtectedInk) {
  session.FillArea(40, 0, 24, 48, 3).Mask({3});
  Click(black, 10, 20);
  Click(white, 50, 22);
  model.Fill(40, 0, 24, 48, 3);
  Ramp(true, 10, 40, 0, 48, 0, 0, 40, 48);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(GradientTool, AProtectedSeedIsRefused) {
  session.Mask({0});
  Click(black, 10, 20);
  Click(white, 50, 22);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(GradientTool, ASketchSeedFillsTheSketchAlone) {
  session.Command(kToolFocusLines).LeftClick(30, 0).LeftClick(30, 47, "ctrl");
  Click(black, 30, 10);
  Click(white, 30, 40);
  Ramp(false, 10, 30, 0, 48, 30, 0, 1, 48);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(GradientTool, ProtectedBoundariesAreConsumedAllTheSame) {
  session.FillArea(30, 0, 1, 48, 9).Mask({9});
  Click(black, 5, 10);
  Click(white, 45, 12);
  Ramp(true, 5, 40, 0, 48, 0, 0, 31, 48);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(GradientTool, AProtectedBoundarySeedIsRefused) {
  session.FillArea(30, 0, 1, 48, 9).Mask({9});
  Click(black, 30, 10);
  Click(white, 30, 40);
  EXPECT_TRUE(ViewShows(model.Fill(30, 0, 1, 48, 9)));
}

TEST_F(GradientTool, ARightClickKeepsTheFirstClickArmed) {
  session.FillArea(0, 0, 64, 4, 4);
  Click(black, 10, 20);
  session.RightClick(20, 2);
  Click(white, 50, 22);
  model.Fill(0, 0, 64, 4, 4);
  Ramp(true, 10, 40, 0, 48, 0, 4, 64, 44);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(GradientTool, TheThirdClickIsAFirstClickAgain) {
  Click(black, 10, 10);
  Click(white, 50, 12);
  Click(black, 10, 40);
  Ramp(true, 10, 40, 0, 48, 0, 0, 64, 48);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(GradientTool, AGradientIsOneUndoStep) {
  session.DrawInkLine(0, 30, 63, 30);
  Click(black, 10, 10);
  Click(white, 50, 12);
  session.Command(kCommandUndo);
  EXPECT_TRUE(ViewShows(model.Line(0, 30, 63, 30)));
}

TEST_F(GradientTool, TheGridDoesNotMoveTheClicks) {
  session.Grid(8, 8);
  Click(black, 11, 11);
  Click(white, 51, 14);
  Ramp(true, 11, 40, 0, 48, 0, 0, 64, 48);
  EXPECT_TRUE(ViewShows(model));
}

TEST_F(GradientTool, ThePenStaysTheSecondOne) {
  Click(black, 10, 10);
  Click(lightTone, 50, 12);
  const nlohmann::json pen = session.NowState()["pen"];
  EXPECT_EQ(pen["colorA"], 3);
  EXPECT_EQ(pen["colorB"], 4);
  EXPECT_EQ(pen["tone"], 4);
}

}  // namespace
}  // namespace rules
