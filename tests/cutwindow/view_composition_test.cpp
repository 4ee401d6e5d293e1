#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "imaging/color_table.h"
#include "shell/shell_fixture.h"

namespace sorvel {
namespace {

using testshell::ShellTest;

class ViewComposition : public ShellTest {
 protected:
  // A cut whose window and canvas coordinates are the same, clean on the screen.
  CutWindow* MakeShownCut(int32_t width, int32_t height) {
    platform::headless::SetClientSize(width, height);
    return Show(MakeCut(width, height));
  }
  static CutWindow* Show(CutWindow* cut) {
    cut->RepaintAll();
    platform::headless::PaintInvalid(cut->window);
    return cut;
  }
  // '#' where a row of the screen is black, else '.'.
  std::string BlackOf(int32_t y) {
    std::string row;
    for (int32_t x = 0; x < Cut()->window->width; ++x) {
      row += IsColor(x, y, {0, 0, 0, 0}) ? '#' : '.';
    }
    return row;
  }
  bool IsColor(int32_t x, int32_t y, const ColorEntry& color) {
    const platform::ColorEntry& pixel = Cut()->window->pixels.at(static_cast<size_t>(y * Cut()->window->width + x));
    return pixel.red == color.red && pixel.green == color.green && pixel.blue == color.blue;
  }
};

TEST_F(ViewComposition, AreaPartlyOutsideTheCanvasIsCleared) {
  CutWindow* cut = MakeCut(40, 30);
  CurrentCell()->FillRect(0, 0, 40, 30, 2);
  CurrentCell()->FillRect(0, 0, 2, 2, kTransparent);
  SpoilView();
  EXPECT_TRUE(cut->RepaintArea(-5, -5, 8, 9, false));
  for (int32_t y = 0; y < 30; ++y) {
    for (int32_t x = 0; x < 40; ++x) {
      const int32_t composed = x < 2 && y < 2 ? 0 : 2;
      ASSERT_EQ(cut->view.GetPixel(x, y), x < 3 && y < 4 ? composed : kSpoiled) << x << ", " << y;
    }
  }
  EXPECT_TRUE(cut->RepaintArea(38, 29, 100, 100, false));
  EXPECT_EQ(cut->view.GetPixel(37, 29), kSpoiled);
  EXPECT_EQ(cut->view.GetPixel(38, 28), kSpoiled);
  EXPECT_EQ(cut->view.GetPixel(38, 29), 2);
  EXPECT_EQ(cut->view.GetPixel(39, 29), 2);
}

TEST_F(ViewComposition, AreaBesideTheCanvasIsShownAtFullSizeAlone) {
  CutWindow* cut = MakeShownCut(40, 30);
  EXPECT_TRUE(cut->RepaintAreaDirect(40, 0, 4, 4));
  EXPECT_TRUE(cut->RepaintArea(40, 0, 4, 4, true));
  cut->ZoomIn({20, 15});
  const int32_t paints = cut->window->paints;
  EXPECT_FALSE(cut->RepaintAreaDirect(40, 0, 4, 4));
  EXPECT_FALSE(cut->RepaintAreaDirect(0, 30, 4, 4));
  EXPECT_FALSE(cut->RepaintAreaDirect(-4, 0, 4, 4));
  EXPECT_FALSE(cut->RepaintAreaDirect(0, -4, 4, 4));
  EXPECT_FALSE(cut->RepaintAreaDirect(4, 4, 0, 4));
  EXPECT_FALSE(cut->RepaintArea(40, 0, 4, 4, true));
  EXPECT_EQ(cut->window->paints, paints);
  EXPECT_TRUE(cut->RepaintAreaDirect(-4, 0, 5, 4));
  EXPECT_TRUE(cut->RepaintAreaDirect(39, 29, 4, 4));
}

TEST_F(ViewComposition, OnePixelAtAThirdIsAWholePixelOfTheWindow) {
  platform::headless::SetClientSize(10, 10);
  CutWindow* cut = MakeCut(30, 30);
  cut->ZoomOut({5, 5});
  cut->ZoomOut({5, 5});
  Show(cut);
  // In the group of the pixel that is asked for, and in the next one.
  cut->view.SetPixel(3, 5, kToneBlack);
  cut->view.SetPixel(6, 6, kToneBlack);
  EXPECT_TRUE(cut->RepaintAreaDirect(4, 4, 1, 1));
  EXPECT_EQ(BlackOf(0), "..........");
  EXPECT_EQ(BlackOf(1), ".#........");
  EXPECT_EQ(BlackOf(2), "..........");
}

TEST_F(ViewComposition, AreaBeginsAtAColumnOfTheScrollPositionsParity) {
  platform::headless::SetClientSize(20, 20);
  CutWindow* cut = MakeCut(40, 30);
  cut->scrollX = 3;
  Show(cut);
  cut->view.Fill(kToneBlack);
  cut->RepaintAreaDirect(10, 5, 2, 1);
  EXPECT_EQ(BlackOf(5), "......###...........");
  cut->RepaintAreaDirect(11, 7, 2, 1);
  EXPECT_EQ(BlackOf(7), "........##..........");
  EXPECT_EQ(BlackOf(6), std::string(20, '.'));
}

}  // namespace
}  // namespace sorvel
