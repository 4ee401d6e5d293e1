#include "cutwindow/clipboard.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "imaging/color_table.h"
#include "resources/ids.h"
#include "shell/shell_fixture.h"

namespace sorvel {
namespace {

class Clipboards : public testshell::ShellTest {
 protected:
  // A picture of one grey on the clipboard, pasted.
  void PastePicture(int32_t width, int32_t height, uint8_t grey) {
    const std::vector<uint8_t> pixels(static_cast<size_t>(width) * static_cast<size_t>(height) * 3, grey);
    ASSERT_TRUE(platform::headless::SetClipboardPicture(width, height, pixels));
    Command(kCommandPasteFromClipboard);
  }
};

TEST_F(Clipboards, CopiedPictureHasTheBuiltInColours) {
  MakeCut(8, 4);
  const auto kept = ColorTable;
  ColorTable[0] = {1, 2, 3, 0};
  ColorTable[15] = {4, 5, 6, 0};
  Command(kCommandCopyToClipboard);
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

TEST_F(Clipboards, PastedPictureLeavesProtectedPixelsOfTheBlock) {
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

TEST_F(Clipboards, PastedPictureKeepsItsPlaceInTheCutThatStoredABlockLast) {
  CutWindow* cut = MakeCut(40, 30);
  PastePicture(8, 6, 255);
  CurrentFrame()->OffsetRecord(0, 5, 3);
  Command(kCommandPaste);
  EXPECT_EQ(cut->undoRect, (Rect{0, 0, 8, 6}));
  cut->StoreBlock(0, 0, 2, 2, 0);
  PastePicture(8, 6, 255);
  EXPECT_EQ(cut->undoRect, (Rect{0, 0, 8, 6}));
  CurrentFrame()->OffsetRecord(0, 2, 1);
  Command(kCommandPaste);
  EXPECT_EQ(cut->undoRect, (Rect{-2, -1, 8, 6}));
}

}  // namespace
}  // namespace sorvel
