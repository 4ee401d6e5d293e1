#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

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

TEST_F(ViewComposition, MarginAroundTheCanvasHasTheBackgroundColour) {
  platform::headless::SetClientSize(40, 30);
  CutWindow* cut = MakeCut(20, 10);
  Point corners[2] = {{0, 0}, {20, 10}};
  cut->CutToWindow(corners, 2);
  ASSERT_GT(corners[0].x, 0);
  ASSERT_GT(corners[0].y, 0);
  const platform::BrushHandle background = std::exchange(gMarginBrush, platform::MakeBrush(1, 2, 3));
  platform::InvalidateClient(cut->window, false);
  Show(cut);
  for (int32_t y = 0; y < 30; ++y) {
    for (int32_t x = 0; x < 40; ++x) {
      const bool isCanvas = x >= corners[0].x && x < corners[1].x && y >= corners[0].y && y < corners[1].y;
      ASSERT_EQ(IsColor(x, y, {3, 2, 1}), !isCanvas) << x << ", " << y;
    }
  }
  platform::DeleteBrush(gMarginBrush);
  gMarginBrush = background;
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
  for (int32_t i = 0; i < 9; ++i) cut->view.SetPixel(3 + i % 3, 3 + i / 3, kToneBlack);
  cut->view.SetPixel(6, 6, kToneBlack);
  EXPECT_TRUE(cut->RepaintAreaDirect(4, 4, 1, 1));
  EXPECT_EQ(BlackOf(0), "..........");
  EXPECT_EQ(BlackOf(1), ".#........");
  EXPECT_EQ(BlackOf(2), "..........");
}

// What the rule says, pixel by pixel.
ColorEntry ReducedColor(CellImage& view, const ColorEntry* table, int32_t side, int32_t column, int32_t row) {
  int64_t sums[3] = {};
  int64_t count = 0;
  int32_t line = kLineLast + 1;
  for (int32_t y = row * side; y < std::min((row + 1) * side, view.height); ++y) {
    for (int32_t x = column * side; x < std::min((column + 1) * side, view.width); ++x) {
      const int32_t index = view.GetPixel(x, y);
      sums[0] += table[index].blue;
      sums[1] += table[index].green;
      sums[2] += table[index].red;
      ++count;
      if (index >= kLineBlack && index <= kLineLast) line = std::min(line, index);
    }
  }
  int64_t parts[3];
  for (int i = 0; i < 3; ++i) parts[i] = (2 * sums[i] + count) / (2 * count);
  if (line <= kLineLast) {
    const int64_t lineParts[] = {table[line].blue, table[line].green, table[line].red};
    for (int i = 0; i < 3; ++i) parts[i] = std::min(parts[i], lineParts[i] + (255 - lineParts[i]) / 2);
  }
  return {static_cast<uint8_t>(parts[0]), static_cast<uint8_t>(parts[1]), static_cast<uint8_t>(parts[2]), 0};
}

// Random tones, with lines here and there.
void Scatter(CellImage* view, std::mt19937* random) {
  for (int32_t y = 0; y < view->height; ++y) {
    for (int32_t x = 0; x < view->width; ++x) {
      const bool isLine = (*random)() % 16 == 0;
      view->SetPixel(x, y, static_cast<int32_t>(isLine ? kLineBlack + (*random)() % 3 : (*random)() % 25));
    }
  }
}

TEST_F(ViewComposition, BelowFullSizeAPixelOfTheWindowIsTheAverageOfItsGroup) {
  std::mt19937 random(5);
  platform::headless::SetClientSize(41, 33);
  for (const int32_t canvas : {30, 67, 150}) {
    CutWindow* cut = MakeCut(canvas, canvas + 1);
    ColorEntry colors[256] = {};
    std::copy(ColorTable.begin(), ColorTable.end(), colors);
    for (int32_t side = 2; side < 90; side += side < 8 ? 1 : 17) {
      if (side == 6) {
        cut->ToggleLineEmphasis();
        platform::ReadBitmapColors(cut->view.bitmapHandle, colors);
        EXPECT_EQ(colors[kLineBlack].blue, 255);
      }
      while (cut->zoomDenominator < side) cut->ZoomOut({20, 16});
      Scatter(&cut->view, &random);
      platform::InvalidateClient(cut->window, true);
      platform::headless::PaintInvalid(cut->window);
      Point origin = {0, 0};
      cut->CutToWindow(&origin, 1);
      const int32_t columns = (cut->width + side - 1) / side;
      const int32_t rows = (cut->height + side - 1) / side;
      for (int32_t y = 0; y < 33; ++y) {
        for (int32_t x = 0; x < 41; ++x) {
          const int32_t column = x - origin.x;
          const int32_t row = y - origin.y;
          const bool isInside = column >= 0 && row >= 0 && column < columns && row < rows;
          const ColorEntry wanted =
              isInside ? ReducedColor(cut->view, colors, side, column, row) : ColorTable[kBackground];
          ASSERT_TRUE(IsColor(x, y, wanted)) << canvas << " at 1/" << side << ": " << x << ", " << y;
        }
      }
      // The same pixels come from parts: nothing changes where nothing changed.
      const std::vector<ColorEntry> whole = cut->window->pixels;
      for (int i = 0; i < 20; ++i) {
        const auto random31 = [&random] { return static_cast<int32_t>(random() % 60); };
        cut->RepaintAreaDirect(random31() - 10, random31() - 10, random31(), random31());
      }
      EXPECT_TRUE(std::equal(whole.begin(), whole.end(), cut->window->pixels.begin(),
                             [](const ColorEntry& a, const ColorEntry& b) {
                               return a.red == b.red && a.green == b.green && a.blue == b.blue;
                             }))
          << canvas << " at 1/" << side;
    }
  }
}

TEST_F(ViewComposition, AThinLineStaysHalfDarkHoweverSmallThePicture) {
  platform::headless::SetClientSize(10, 10);
  CutWindow* cut = MakeCut(100, 100);
  for (int i = 0; i < 9; ++i) cut->ZoomOut({5, 5});
  cut->view.Fill(kToneWhite);
  cut->view.SetPixel(12, 5, kLineBlack);
  cut->view.SetPixel(25, 5, kLineBlack + 1);
  cut->view.SetPixel(35, 5, kLineLast);
  cut->view.SetPixel(36, 5, kLineBlack);
  cut->view.SetPixel(45, 5, kToneBlack);
  platform::headless::PaintInvalid(cut->window);
  EXPECT_TRUE(IsColor(0, 0, {255, 255, 255, 0}));
  EXPECT_TRUE(IsColor(1, 0, {127, 127, 127, 0}));
  EXPECT_TRUE(IsColor(2, 0, {170, 170, 170, 0}));
  EXPECT_TRUE(IsColor(3, 0, {127, 127, 127, 0}));
  // 99 white pixels and a black one that is no line.
  EXPECT_TRUE(IsColor(4, 0, {252, 252, 252, 0}));
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
