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

struct PastedPicture : BlockScene {
  void PastePlain(int width, int height, uint32_t colour) {
    PastePicture(session, PlainPicture(width, height, colour));
  }
  // 8 by 6 pixels.
  void PasteWhite() { PastePlain(8, 6, 0xFFFFFF); }
};

TEST_F(PastedPicture, WhiteIsPlainWhite) {
  PasteWhite();
  EXPECT_TRUE(ViewShows(model.Fill(0, 0, 8, 6, 4)));
}

TEST_F(PastedPicture, BlackIsFillBlack) {
  PastePlain(8, 6, 0x000000);
  EXPECT_TRUE(ViewShows(model.Fill(0, 0, 8, 6, 1)));
}

TEST_F(PastedPicture, MiddleGreyIsAnEvenDitherOfTheTwoGreys) {
  PastePlain(8, 8, 0x808080);
  EXPECT_TRUE(ViewShows(model.FillWith({.tone = 8, .colorA = 2, .colorB = 3}, 0, 0, 8, 8)));
}

TEST_F(PastedPicture, TheLowestLevelHasOneSixteenthOfDarkGrey) {
  PastePlain(16, 16, Grey(6));
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

TEST_F(PastedPicture, FloatsAsASelectionOfTheAreaTool) {
  PasteWhite();
  EXPECT_TRUE(Holds(session, "cut/selection", Area{0, 0, 8, 6}, "cut/floatingPaste", true, "frame/currentTool",
                    kToolAreaSelect, "cut/undoRect", Area{0, 0, 8, 6}));
}

TEST_F(PastedPicture, LandsAtTheLayersOrigin) {
  session.Command(kToolLayerPosition).LeftDrag(10, 10, 15, 13);
  PasteWhite();
  EXPECT_TRUE(ViewShows(model.Fill(5, 3, 8, 6, 4)));
}

TEST_F(PastedPicture, LeavesProtectedPixelsOfTheCell) {
  Ink(2, 0, 3, 20, 3);
  session.Mask({3});
  PasteWhite();
  EXPECT_TRUE(ViewShows(model.Fill(0, 0, 8, 6, 4).Fill(2, 0, 3, 20, 3)));
}

TEST_F(PastedPicture, IsOneUndoStep) {
  Ink(2, 0, 3, 20, 3);
  PasteWhite();
  EXPECT_TRUE(UndoShows(model));
}

TEST_F(PastedPicture, AnEmptyClipboardPastesNothing) {
  session.Command(kCommandPasteFromClipboard);
  EXPECT_TRUE(Holds(session, "cut/floatingPaste", false, "frame/currentTool", kToolFreePen));
}

TEST_F(PastedPicture, ABlankRecordTakesNone) {
  session.Command(kCommandBlankCell);
  PasteWhite();
  EXPECT_EQ(session.Cut()["floatingPaste"], false);
}

TEST_F(PastedPicture, BecomesTheBlock) {
  PasteWhite();
  Clear();
  model.Fill(0, 0, 8, 6, 4);
  EXPECT_TRUE(PasteShows(model));
}

TEST_F(PastedPicture, TheTransparentColourShowsWhatLiesBelow) {
  Ink(2, 0, 3, 20, 3);
  session.Line("color FFFFFF").Command(kCommandTransparentColor);
  Picture picture = PlainPicture(8, 6, 0xFFFFFF);
  for (size_t x = 0; x < 8; ++x) picture.pixels[x] = 0x000000;
  PastePicture(session, picture);
  EXPECT_TRUE(ViewShows(model.Fill(0, 0, 8, 1, 1)));
}

TEST_F(PastedPicture, OnlyTheExactColourIsTransparent) {
  session.Line("color FFFFFF").Command(kCommandTransparentColor);
  PastePlain(8, 6, 0xFFFFFE);
  EXPECT_EQ(session.NowView().Count(4), 48);
}

TEST_F(PastedPicture, SettingsGiveTheTransparentColourInRedGreenAndBlue) {
  session.SetSettings("[OnClipTrans]\r\nFlag=1\r\nRGB=#E0C0A0\r\n");
  PastePicture(session, {2, 1, {0xE0C0A0, 0xA0C0E0}});
  const PixelMatrix view = session.NowView();
  EXPECT_EQ(view.At(0, 0), 0u);
  EXPECT_NE(view.At(1, 0), 0u);
}

TEST_F(PastedPicture, ASecondCommandSwitchesTheTransparencyOff) {
  session.Line("color FFFFFF").Command(kCommandTransparentColor).Command(kCommandTransparentColor);
  PasteWhite();
  EXPECT_EQ(session.NowView().Count(4), 48);
}

using TransparentColour = SessionTest;

const Rules<SessionTest, "TransparentColour"> kTransparentColourRules = {
    {"IsWrittenWithItsSwitch", Do().Line("color C81E5A").Command(kCommandTransparentColor),
     Has("settings/OnClipTrans/RGB", "#C81E5A", "settings/OnClipTrans/Flag", "1")},
    {"IsKeptWhenTheSwitchGoesOff",
     Do().SetSettings("[OnClipTrans]\r\nFlag=1\r\nRGB=#C81E5A\r\n").Command(kCommandTransparentColor),
     Has("settings/OnClipTrans/RGB", "#C81E5A", "settings/OnClipTrans/Flag", "0")},
};

TEST_F(TransparentColour, ACancelChangesNothing) {
  session.Line("color cancel").Command(kCommandTransparentColor).Run();
  EXPECT_NE(session.Setting("OnClipTrans", "Flag"), "1");
}

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
