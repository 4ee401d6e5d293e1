#include <gtest/gtest.h>

#include <algorithm>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"
#include "rules/rule_table.h"

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

struct GradientTool : DrawingTest {};

ScriptSession Click(const PickerPlace& pen, int x, int y) {
  return Do().Pick(pen.column, pen.row).Command(kToolGradient).LeftClick(x, y);
}

// This ink, and over it the ramp in a rectangle.
Ink Ramp(bool horizontal, int origin, int span, int start, int end, int x, int y, int width, int height,
         Ink ink = Ink()) {
  for (int j = y; j < y + height; ++j) {
    for (int i = x; i < x + width; ++i) {
      const int level = Step(start, (horizontal ? i : j) - origin, end - start, span);
      ink.Set(i, j, ModelInkAt(ModelPenOfLevel(level), i, j));
    }
  }
  return ink;
}

TEST_F(GradientTool, TheRampStopsAtBlackAndWhiteBeyondTheClicks) {
  session.Then(Click(black, 10, 10));
  session.Then(Click(white, 50, 12));
  const PixelMatrix view = session.NowView();
  EXPECT_EQ(view.Count(1, 0, 0, 11, 48), 11 * 48);
  EXPECT_EQ(view.Count(4, 50, 0, 14, 48), 14 * 48);
}

const Rules<GradientTool, "GradientTool"> kGradientToolRules = {
    {"ThePenStaysTheSecondOne", Click(black, 10, 10), Click(lightTone, 50, 12), Has("pen/colorA,colorB,tone", "3 4 4")},
    {"TheFirstClickDrawsNothing", Click(black, 10, 10), Ink()},
    {"TheSecondClickFillsFromBlackToWhite", Click(black, 10, 10), Click(white, 50, 12),
     Ramp(true, 10, 40, 0, 48, 0, 0, 64, 48)},
    {"ASteepPairOfClicksRunsDownwards", Click(white, 10, 5), Click(darkGrey, 30, 40),
     Ramp(false, 5, 35, 48, 16, 0, 0, 64, 48)},
    {"ATieRunsDownwards", Click(almostBlack, 10, 10), Click(lightTone, 30, 30),
     Ramp(false, 10, 20, 1, 44, 0, 0, 64, 48)},
    {"ASpanToTheLeftIsNegative", Click(lightTone, 50, 20), Click(almostBlack, 13, 22),
     Ramp(true, 50, -37, 44, 1, 0, 0, 64, 48)},
    {"TheTopRowOfThePickerIsAlwaysBlack", Click({2, 0}, 10, 10), Click(white, 50, 12),
     Ramp(true, 10, 40, 0, 48, 0, 0, 64, 48)},
    {"EqualPensFillEvenly", Click(lightTone, 10, 10), Click(lightTone, 40, 30),
     Ramp(false, 10, 20, 44, 44, 0, 0, 64, 48)},
    {"ASpanOfZeroKeepsTheFirstLevel", Click(lightTone, 10, 10), Click(black, 10, 10),
     Ramp(false, 10, 0, 44, 0, 0, 0, 64, 48)},
    {"TheFirstClickIsTheSeed", Do().Command(kToolRectangle).Press(10, 10).Release(40, 30), Click(black, 20, 20),
     Click(white, 60, 22), Ramp(true, 20, 40, 0, 48, 11, 11, 29, 19, Ink().Outline(10, 10, 40, 30, 8))},
    {"TheSecondClickMayLieOnProtectedInk", Do().FillArea(40, 0, 24, 48, 3).Mask({3}), Click(black, 10, 20),
     Click(white, 50, 22), Ramp(true, 10, 40, 0, 48, 0, 0, 40, 48, Ink().Fill(40, 0, 24, 48, 3))},
    {"AProtectedSeedIsRefused", Do().Mask({0}), Click(black, 10, 20), Click(white, 50, 22), Ink()},
    {"ASketchSeedFillsTheSketchAlone", Do().Command(kToolFocusLines).LeftClick(30, 0).LeftClick(30, 47, "ctrl"),
     Click(black, 30, 10), Click(white, 30, 40), Ramp(false, 10, 30, 0, 48, 30, 0, 1, 48)},
    {"ProtectedBoundariesAreConsumedAllTheSame", Do().FillArea(30, 0, 1, 48, 9).Mask({9}), Click(black, 5, 10),
     Click(white, 45, 12), Ramp(true, 5, 40, 0, 48, 0, 0, 31, 48)},
    {"AProtectedBoundarySeedIsRefused", Do().FillArea(30, 0, 1, 48, 9).Mask({9}), Click(black, 30, 10),
     Click(white, 30, 40), Ink().Fill(30, 0, 1, 48, 9)},
    {"ARightClickKeepsTheFirstClickArmed", Do().FillArea(0, 0, 64, 4, 4), Click(black, 10, 20), Do().RightClick(20, 2),
     Click(white, 50, 22), Ramp(true, 10, 40, 0, 48, 0, 4, 64, 44, Ink().Fill(0, 0, 64, 4, 4))},
    {"TheThirdClickIsAFirstClickAgain", Click(black, 10, 10), Click(white, 50, 12), Click(black, 10, 40),
     Ramp(true, 10, 40, 0, 48, 0, 0, 64, 48)},
    {"AGradientIsOneUndoStep", Do().DrawInkLine(0, 30, 63, 30), Click(black, 10, 10), Click(white, 50, 12),
     Do().Command(kCommandUndo), Ink().Line(0, 30, 63, 30)},
    {"TheGridDoesNotMoveTheClicks", Do().Grid(8, 8), Click(black, 11, 11), Click(white, 51, 14),
     Ramp(true, 11, 40, 0, 48, 0, 0, 64, 48)},
};

}  // namespace
}  // namespace rules
