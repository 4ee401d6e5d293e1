#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "cutwindow/clipboard.h"
#include "imaging/color_table.h"
#include "shell/shell_fixture.h"

namespace sorvel {
namespace {

using testshell::ShellTest;

class CutWindowPictures : public ShellTest {
 protected:
  void SetUp() override {
    ShellTest::SetUp();
    ResetClipboardBlock();
  }
  void TearDown() override {
    maskFlags = 0;
    ShellTest::TearDown();
    ResetClipboardBlock();
  }

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
  void Mouse(uint32_t message, int32_t x, int32_t y) {
    platform::Send(Cut()->window, message, 0, platform::PackPoint({x, y}));
  }
  void Click(int32_t x, int32_t y) {
    Mouse(platform::kMessageLeftDown, x, y);
    Mouse(platform::kMessageLeftUp, x, y);
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

  // A picture of one grey on the clipboard, pasted.
  void PastePicture(int32_t width, int32_t height, uint8_t grey) {
    const std::vector<uint8_t> pixels(static_cast<size_t>(width) * static_cast<size_t>(height) * 3, grey);
    ASSERT_TRUE(platform::headless::SetClipboardPicture(width, height, pixels));
    Command(40091);
  }
};

// The view.

TEST_F(CutWindowPictures, AreaPartlyOutsideTheCanvasIsCleared) {
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

TEST_F(CutWindowPictures, AreaBesideTheCanvasIsShownAtFullSizeAlone) {
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

TEST_F(CutWindowPictures, OnePixelAtAThirdIsAWholePixelOfTheWindow) {
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

TEST_F(CutWindowPictures, AreaBeginsAtAColumnOfTheScrollPositionsParity) {
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

// The limit has six bits, and 0 of them stands for all records.
TEST_F(CutWindowPictures, MosaicAtRecord63TakesTheRecordsAboveItToo) {
  CutWindow* cut = MakeShownCut(40, 30);
  Frame* shown = CurrentFrame();
  Layer* lower = CurrentLayer();
  while (shown->records.Count() < 64) shown->AddRecord(lower, 0, 0, 0);
  Layer* top = cut->AddLayer("B", 40, 30, &cut->prototype);
  top->CellAt(0)->Fill(kToneBlack);
  shown->AddRecord(top, 0, 0, 0);
  Command(40086);
  shown->SelectRecord(62);
  Click(8, 8);
  EXPECT_EQ(lower->CellAt(0)->GetPixel(8, 8), kToneWhite);
  shown->SelectRecord(63);
  Click(16, 8);
  EXPECT_EQ(lower->CellAt(0)->GetPixel(16, 8), kToneBlack);
}

// The clipboards.

TEST_F(CutWindowPictures, CopiedPictureHasTheBuiltInColours) {
  MakeCut(8, 4);
  const auto kept = ColorTable;
  ColorTable[0] = {1, 2, 3, 0};
  ColorTable[15] = {4, 5, 6, 0};
  Command(40124);
  ColorTable = kept;
  const std::vector<uint8_t>& dib = platform::headless::ClipboardDib();
  ASSERT_GE(dib.size(), 104u);
  for (size_t i = 0; i < 16; ++i) {
    EXPECT_EQ(dib[40 + 4 * i], DefaultColors[i].blue) << i;
    EXPECT_EQ(dib[41 + 4 * i], DefaultColors[i].green) << i;
    EXPECT_EQ(dib[42 + 4 * i], DefaultColors[i].red) << i;
    EXPECT_EQ(dib[43 + 4 * i], 0) << i;
  }
}

TEST_F(CutWindowPictures, PastedPictureLeavesProtectedPixelsOfTheBlock) {
  MakeCut(8, 4);
  PastePicture(4, 2, 255);
  EXPECT_EQ(testdoc::Picture(ClipboardImage()), "4444/4444");
  // A resize of the block keeps what it held.
  maskFlags = 1u << kToneWhite;
  PastePicture(5, 2, 0);
  EXPECT_EQ(testdoc::Picture(ClipboardImage()), "44441/44441");
  maskFlags = 1u << kTransparent;
  PastePicture(6, 1, 0);
  EXPECT_EQ(testdoc::Picture(ClipboardImage()), "111110");
}

TEST_F(CutWindowPictures, PastedPictureKeepsItsPlaceInTheCutThatStoredABlockLast) {
  CutWindow* cut = MakeCut(40, 30);
  PastePicture(8, 6, 255);
  CurrentFrame()->OffsetRecord(0, 5, 3);
  Command(40062);
  EXPECT_EQ(cut->undoRect, (Rect{0, 0, 8, 6}));
  cut->StoreBlock(0, 0, 2, 2, 0);
  PastePicture(8, 6, 255);
  EXPECT_EQ(cut->undoRect, (Rect{0, 0, 8, 6}));
  CurrentFrame()->OffsetRecord(0, 2, 1);
  Command(40062);
  EXPECT_EQ(cut->undoRect, (Rect{-2, -1, 8, 6}));
}

}  // namespace
}  // namespace sorvel
