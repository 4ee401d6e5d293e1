#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "resources/ids.h"
#include "rules/clipboard_session.h"
#include "rules/little_bytes.h"
#include "rules/rule_table.h"

namespace rules {
namespace {

uint32_t Grey(int value) {
  return static_cast<uint32_t>(value) * 0x010101u;
}

struct PastedPicture : BlockScene {};

TEST_F(PastedPicture, TheLowestLevelHasOneSixteenthOfDarkGrey) {
  PastePicture(session, PlainPicture(16, 16, Grey(6)));
  const PixelMatrix view = session.NowView();
  EXPECT_EQ(view.Count(1), 240);
  EXPECT_EQ(view.Count(2), 16);
}

TEST_F(PastedPicture, ColoursWeighTwoFourAndOneSevenths) {
  const uint32_t colours[] = {0xFF0000, 0x00FF00, 0x0000FF, 0xC81E5A, 0x10E0A0, 0xFFFF00};
  const int levels[] = {13, 27, 6, 16, 29, 41};
  for (size_t i = 0; i < std::size(colours); ++i) {
    DrawingSession fresh;
    PastePicture(fresh, PlainPicture(8, 8, colours[i]));
    InkModel pasted;
    pasted.FillWith(ModelPenOfLevel(levels[i]), 0, 0, 8, 8);
    EXPECT_TRUE(Shows(fresh.NowView(), pasted)) << std::hex << colours[i];
  }
}

TEST(PastedPictureOfManyColours, EveryGreyHasItsLevel) {
  DrawingSession session({.width = 256, .height = 8});
  Picture picture{256, 8};
  InkModel model(256, 8);
  for (int y = 0; y < 8; ++y) {
    for (int x = 0; x < 256; ++x) {
      picture.pixels.push_back(Grey(x));
      model.Set(x, y, ModelInkAt(ModelPenOfLevel(x * 49 / 256), x, y));
    }
  }
  PastePicture(session, picture);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(PastedPictureOfManyColours, ThatIsLargeHasNoSeams) {
  DrawingSession session({.width = 230, .height = 210});
  Picture picture{230, 210};
  for (uint32_t y = 0; y < 210; ++y) {
    for (uint32_t x = 0; x < 230; ++x) picture.pixels.push_back(x << 16 | y << 8 | ((x + y) & 255));
  }
  PastePicture(session, picture);
  InkModel model(230, 210);
  DrawPasted(model, picture, 0, 0);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(PastedPicture, TheTransparentColourShowsWhatLiesBelow) {
  Ink(2, 0, 3, 20, 3);
  session.Line("color FFFFFF").Command(kCommandTransparentColor);
  Picture picture = PlainPicture(8, 6, 0xFFFFFF);
  for (size_t x = 0; x < 8; ++x) picture.pixels[x] = 0x000000;
  PastePicture(session, picture);
  EXPECT_TRUE(ViewShows(model.Fill(0, 0, 8, 1, 1)));
}

TEST_F(PastedPicture, SettingsGiveTheTransparentColourInRedGreenAndBlue) {
  session.SetSettings("[OnClipTrans]\r\nFlag=1\r\nRGB=#E0C0A0\r\n");
  PastePicture(session, {2, 1, {0xE0C0A0, 0xA0C0E0}});
  const PixelMatrix view = session.NowView();
  EXPECT_EQ(view.At(0, 0), 0u);
  EXPECT_NE(view.At(1, 0), 0u);
}

const Rules<PastedPicture, "PastedPicture"> kPastedPictureRules = {
    {"WhiteIsPlainWhite", PastePicture(Do(), PlainPicture(8, 6, 0xFFFFFF)), Ink().Fill(0, 0, 8, 6, 4)},
    {"BlackIsFillBlack", PastePicture(Do(), PlainPicture(8, 6, 0x000000)), Ink().Fill(0, 0, 8, 6, 1)},
    {"MiddleGreyIsAnEvenDitherOfTheTwoGreys", PastePicture(Do(), PlainPicture(8, 8, 0x808080)),
     Ink().FillWith({.tone = 8, .colorA = 2, .colorB = 3}, 0, 0, 8, 8)},
    {"FloatsAsASelectionOfTheAreaTool", PastePicture(Do(), PlainPicture(8, 6, 0xFFFFFF)),
     Has("cut/selection", Area{0, 0, 8, 6}, "cut/floatingPaste", true, "frame/currentTool", kToolAreaSelect,
         "cut/undoRect", Area{0, 0, 8, 6})},
    {"LandsAtTheLayersOrigin", Do().Command(kToolLayerPosition).LeftDrag(10, 10, 15, 13),
     PastePicture(Do(), PlainPicture(8, 6, 0xFFFFFF)), Ink().Fill(5, 3, 8, 6, 4)},
    {"LeavesProtectedPixelsOfTheCell", Filled{2, 0, 3, 20, 3}, Do().Mask({3}),
     PastePicture(Do(), PlainPicture(8, 6, 0xFFFFFF)), Ink().Fill(0, 0, 8, 6, 4).Fill(2, 0, 3, 20, 3)},
    {"IsOneUndoStep", Filled{2, 0, 3, 20, 3}, PastePicture(Do(), PlainPicture(8, 6, 0xFFFFFF)),
     Do().Command(kCommandUndo), Ink()},
    {"AnEmptyClipboardPastesNothing", Do().Command(kCommandPasteFromClipboard),
     Has("cut/floatingPaste", false, "frame/currentTool", kToolFreePen)},
    {"ABlankRecordTakesNone", Do().Command(kCommandBlankCell), PastePicture(Do(), PlainPicture(8, 6, 0xFFFFFF)),
     Has("cut/floatingPaste", false)},
    {"BecomesTheBlock", PastePicture(Do(), PlainPicture(8, 6, 0xFFFFFF)), Filled{}, Do().Command(kCommandPaste),
     Ink().Fill(0, 0, 8, 6, 4)},
    {"OnlyTheExactColourIsTransparent", Do().Line("color FFFFFF").Command(kCommandTransparentColor),
     PastePicture(Do(), PlainPicture(8, 6, 0xFFFFFE)), Has("pixels/4", 48)},
    {"ASecondCommandSwitchesTheTransparencyOff",
     Do().Line("color FFFFFF").Commands({kCommandTransparentColor, kCommandTransparentColor}),
     PastePicture(Do(), PlainPicture(8, 6, 0xFFFFFF)), Has("pixels/4", 48)},
};

// The cell as it goes out: 13 by 5 pixels, so that a row is seven bytes and its pitch eight.
struct CopiedPicture : DrawingTest {
  CopiedPicture() : DrawingTest({.width = 13, .height = 5}) { session.FillArea(2, 1, 3, 2, 3); }
  std::string Copied() {
    session.Command(kCommandCopyToClipboard).Line("save-clipboard " + Quoted(session.Path("clip.dib")));
    session.Run();
    return session.Bytes("clip.dib");
  }
};

TEST_F(CopiedPicture, HasTheHeaderOfAFourBitPicture) {
  const std::string bytes = Copied();
  ASSERT_EQ(bytes.size(), 104u + 8 * 5);
  EXPECT_EQ(LittleAt(bytes, 0, 4), 40u);
  EXPECT_EQ(LittleAt(bytes, 4, 4), 13u);
  EXPECT_EQ(LittleAt(bytes, 8, 4), 5u);
  EXPECT_EQ(LittleAt(bytes, 12, 2), 1u);
  EXPECT_EQ(LittleAt(bytes, 14, 2), 4u);
  for (size_t offset = 16; offset < 32; offset += 4) EXPECT_EQ(LittleAt(bytes, offset, 4), 0u) << offset;
  EXPECT_EQ(LittleAt(bytes, 32, 4), 16u);
  EXPECT_EQ(LittleAt(bytes, 36, 4), 0u);
}

TEST_F(CopiedPicture, HasTheColoursOfTheRoles) {
  constexpr uint32_t colours[] = {0xE1FFFF, 0x000000, 0x555555, 0xAAAAAA, 0xFFFFFF, 0x8F8FBF, 0xADADD9, 0xCECEF2,
                                  0x000000, 0x555555, 0xAAAAAA, 0xFFFF66, 0xD0D053, 0x70702D, 0x40401A, 0xFF0000};
  const std::string bytes = Copied();
  ASSERT_GE(bytes.size(), 104u);
  for (size_t i = 0; i < 16; ++i) EXPECT_EQ(LittleAt(bytes, 40 + 4 * i, 4), colours[i]) << i;
}

TEST_F(CopiedPicture, HasTheRowsFromTheBottom) {
  const std::string bytes = Copied();
  ASSERT_EQ(bytes.size(), 104u + 8 * 5);
  for (size_t row = 0; row < 5; ++row) {
    const size_t start = 104 + 8 * (4 - row);
    const bool inked = row == 1 || row == 2;
    const std::string expected = inked ? std::string("\0\x33\x30\0\0\0\0", 7) : std::string(7, '\0');
    EXPECT_EQ(bytes.substr(start, 7), expected) << row;
  }
}

TEST_F(CopiedPicture, IsTheWholeCellWhateverTheSelection) {
  const std::string whole = Copied();
  session.Command(kToolAreaSelect).LeftDrag(2, 1, 4, 3);
  EXPECT_EQ(Copied(), whole);
}

}  // namespace
}  // namespace rules
