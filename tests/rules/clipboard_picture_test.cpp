#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "rules/drawing_session.h"
#include "rules/ink_model.h"

namespace rules {
namespace {

constexpr int copyPicture = 40124;
constexpr int pastePicture = 40091;
constexpr int transparentColour = 40137;

uint32_t Grey(int value) {
  return static_cast<uint32_t>(value) * 0x010101u;
}

int LevelOf(uint32_t colour) {
  const int red = static_cast<int>(colour >> 16);
  const int green = static_cast<int>(colour >> 8 & 255);
  const int blue = static_cast<int>(colour & 255);
  return (blue + (red + 2 * green) * 2) / 7 * 49 / 256;
}

void PutOnClipboard(DrawingSession& session, int width, int height, const std::vector<uint32_t>& pixels) {
  session.WriteBitmap("picture.bmp", width, height, pixels);
  session.Line("clipboard " + Quoted(session.Path("picture.bmp")));
}

void PastePlain(DrawingSession& session, int width, int height, uint32_t colour) {
  PutOnClipboard(session, width, height,
                 std::vector<uint32_t>(static_cast<size_t>(width) * static_cast<size_t>(height), colour));
  session.Command(pastePicture);
}

TEST(PastedPicture, WhiteIsPlainWhite) {
  DrawingSession session;
  PastePlain(session, 8, 6, 0xFFFFFF);
  InkModel model;
  model.Fill(0, 0, 8, 6, 4);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(PastedPicture, BlackIsFillBlack) {
  DrawingSession session;
  PastePlain(session, 8, 6, 0x000000);
  InkModel model;
  model.Fill(0, 0, 8, 6, 1);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(PastedPicture, MiddleGreyIsAnEvenDitherOfTheTwoGreys) {
  DrawingSession session;
  PastePlain(session, 8, 8, 0x808080);
  InkModel model;
  model.FillWith({.tone = 8, .colorA = 2, .colorB = 3}, 0, 0, 8, 8);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(PastedPicture, TheLowestLevelHasOneSixteenthOfDarkGrey) {
  DrawingSession session;
  PastePlain(session, 16, 16, Grey(6));
  const PixelMatrix view = session.NowView();
  EXPECT_EQ(view.Count(1), 240);
  EXPECT_EQ(view.Count(2), 16);
}

TEST(PastedPicture, ColoursWeighTwoFourAndOneSevenths) {
  const uint32_t colours[] = {0xFF0000, 0x00FF00, 0x0000FF, 0xC81E5A, 0x10E0A0, 0xFFFF00};
  const int levels[] = {13, 27, 6, 16, 29, 41};
  for (size_t i = 0; i < std::size(colours); ++i) {
    DrawingSession session;
    PastePlain(session, 8, 8, colours[i]);
    InkModel model;
    model.FillWith(ModelPenOfLevel(levels[i]), 0, 0, 8, 8);
    EXPECT_TRUE(Shows(session.NowView(), model)) << std::hex << colours[i];
  }
}

TEST(PastedPicture, EveryGreyHasItsLevel) {
  DrawingSession session({.width = 256, .height = 8});
  std::vector<uint32_t> pixels;
  for (int y = 0; y < 8; ++y) {
    for (int x = 0; x < 256; ++x) pixels.push_back(Grey(x));
  }
  PutOnClipboard(session, 256, 8, pixels);
  session.Command(pastePicture);
  InkModel model(256, 8);
  for (int y = 0; y < 8; ++y) {
    for (int x = 0; x < 256; ++x) model.Set(x, y, ModelInkAt(ModelPenOfLevel(x * 49 / 256), x, y));
  }
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(PastedPicture, ALargePictureHasNoSeams) {
  DrawingSession session({.width = 230, .height = 210});
  std::vector<uint32_t> pixels;
  for (uint32_t y = 0; y < 210; ++y) {
    for (uint32_t x = 0; x < 230; ++x) pixels.push_back(x << 16 | y << 8 | ((x + y) & 255));
  }
  PutOnClipboard(session, 230, 210, pixels);
  session.Command(pastePicture);
  InkModel model(230, 210);
  for (int y = 0; y < 210; ++y) {
    for (int x = 0; x < 230; ++x) {
      const uint32_t colour = pixels[static_cast<size_t>(y) * 230 + static_cast<size_t>(x)];
      model.Set(x, y, ModelInkAt(ModelPenOfLevel(LevelOf(colour)), x, y));
    }
  }
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(PastedPicture, FloatsAsASelectionOfTheAreaTool) {
  DrawingSession session;
  PastePlain(session, 8, 6, 0xFFFFFF);
  EXPECT_EQ(session.NowSelection(), (Area{0, 0, 8, 6}));
  EXPECT_EQ(session.NowCut()["floatingPaste"], true);
  EXPECT_EQ(session.NowState()["frame"]["currentTool"], tool::AreaSelect);
  EXPECT_EQ(session.NowUndoRect(), (Area{0, 0, 8, 6}));
}

TEST(PastedPicture, LandsAtTheLayersOrigin) {
  DrawingSession session;
  session.Command(tool::LayerPosition).LeftDrag(10, 10, 15, 13);
  PastePlain(session, 8, 6, 0xFFFFFF);
  InkModel model;
  model.Fill(5, 3, 8, 6, 4);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(PastedPicture, LeavesProtectedPixelsOfTheCell) {
  DrawingSession session;
  session.FillArea(2, 0, 3, 20, 3);
  session.Mask({3});
  PastePlain(session, 8, 6, 0xFFFFFF);
  InkModel model;
  model.Fill(0, 0, 8, 6, 4);
  model.Fill(2, 0, 3, 20, 3);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(PastedPicture, IsOneUndoStep) {
  DrawingSession session;
  session.FillArea(2, 0, 3, 20, 3);
  PastePlain(session, 8, 6, 0xFFFFFF);
  session.Command(command::Undo);
  InkModel model;
  model.Fill(2, 0, 3, 20, 3);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(PastedPicture, AnEmptyClipboardPastesNothing) {
  DrawingSession session;
  session.Command(pastePicture);
  EXPECT_EQ(session.NowCut()["floatingPaste"], false);
  EXPECT_EQ(session.NowState()["frame"]["currentTool"], tool::FreePen);
}

TEST(PastedPicture, ABlankRecordTakesNone) {
  DrawingSession session;
  session.Command(command::ToggleBlank);
  PastePlain(session, 8, 6, 0xFFFFFF);
  EXPECT_EQ(session.NowCut()["floatingPaste"], false);
}

TEST(PastedPicture, BecomesTheBlock) {
  DrawingSession session;
  PastePlain(session, 8, 6, 0xFFFFFF);
  session.FillArea(0, 0, 64, 48, 0);
  session.Command(40062);
  InkModel model;
  model.Fill(0, 0, 8, 6, 4);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(PastedPicture, TheTransparentColourShowsWhatLiesBelow) {
  DrawingSession session;
  session.FillArea(2, 0, 3, 20, 3);
  session.Line("color FFFFFF").Command(transparentColour);
  std::vector<uint32_t> pixels(48, 0xFFFFFF);
  for (size_t x = 0; x < 8; ++x) pixels[x] = 0x000000;
  PutOnClipboard(session, 8, 6, pixels);
  session.Command(pastePicture);
  InkModel model;
  model.Fill(2, 0, 3, 20, 3);
  model.Fill(0, 0, 8, 1, 1);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(PastedPicture, OnlyTheExactColourIsTransparent) {
  DrawingSession session;
  session.Line("color FFFFFF").Command(transparentColour);
  PastePlain(session, 8, 6, 0xFFFFFE);
  EXPECT_EQ(session.NowView().Count(4), 48);
}

TEST(PastedPicture, SettingsGiveTheTransparentColourInRedGreenAndBlue) {
  DrawingSession session;
  session.StartWith("[OnClipTrans]\r\nFlag=1\r\nRGB=#E0C0A0\r\n");
  PutOnClipboard(session, 2, 1, {0xE0C0A0, 0xA0C0E0});
  session.Command(pastePicture);
  const PixelMatrix view = session.NowView();
  EXPECT_EQ(view.At(0, 0), 0u);
  EXPECT_NE(view.At(1, 0), 0u);
}

TEST(PastedPicture, ASecondCommandSwitchesTheTransparencyOff) {
  DrawingSession session;
  session.Line("color FFFFFF").Command(transparentColour).Command(transparentColour);
  PastePlain(session, 8, 6, 0xFFFFFF);
  EXPECT_EQ(session.NowView().Count(4), 48);
}

TEST(TransparentColour, IsWrittenWithItsSwitch) {
  ScriptSession session;
  session.Line("color C81E5A").Command(transparentColour);
  session.Run();
  EXPECT_EQ(session.Setting("OnClipTrans", "RGB"), "#C81E5A");
  EXPECT_EQ(session.Setting("OnClipTrans", "Flag"), "1");
}

TEST(TransparentColour, IsKeptWhenTheSwitchGoesOff) {
  ScriptSession session;
  session.SetSettings("[OnClipTrans]\r\nFlag=1\r\nRGB=#C81E5A\r\n");
  session.Command(transparentColour);
  session.Run();
  EXPECT_EQ(session.Setting("OnClipTrans", "RGB"), "#C81E5A");
  EXPECT_EQ(session.Setting("OnClipTrans", "Flag"), "0");
}

TEST(TransparentColour, ACancelChangesNothing) {
  ScriptSession session;
  session.Line("color cancel").Command(transparentColour);
  session.Run();
  EXPECT_NE(session.Setting("OnClipTrans", "Flag"), "1");
}

// The cell as it goes out: 13 by 5 pixels, so that a row is seven bytes and its pitch eight.
struct CopiedPicture : testing::Test {
  CopiedPicture() : session({.width = 13, .height = 5}) { session.FillArea(2, 1, 3, 2, 3); }
  std::string Copied() {
    session.Command(copyPicture).Line("save-clipboard " + Quoted(session.Path("clip.dib")));
    session.Run();
    return session.Bytes("clip.dib");
  }
  static uint32_t Number(const std::string& bytes, size_t offset, size_t count) {
    uint32_t value = 0;
    for (size_t i = 0; i < count; ++i) {
      value |= static_cast<uint32_t>(static_cast<unsigned char>(bytes.at(offset + i))) << 8 * i;
    }
    return value;
  }
  DrawingSession session;
};

TEST_F(CopiedPicture, HasTheHeaderOfAFourBitPicture) {
  const std::string bytes = Copied();
  ASSERT_EQ(bytes.size(), 104u + 8 * 5);
  EXPECT_EQ(Number(bytes, 0, 4), 40u);
  EXPECT_EQ(Number(bytes, 4, 4), 13u);
  EXPECT_EQ(Number(bytes, 8, 4), 5u);
  EXPECT_EQ(Number(bytes, 12, 2), 1u);
  EXPECT_EQ(Number(bytes, 14, 2), 4u);
  for (size_t offset = 16; offset < 32; offset += 4) EXPECT_EQ(Number(bytes, offset, 4), 0u) << offset;
  EXPECT_EQ(Number(bytes, 32, 4), 16u);
  EXPECT_EQ(Number(bytes, 36, 4), 0u);
}

TEST_F(CopiedPicture, HasTheColoursOfTheRoles) {
  constexpr uint32_t colours[] = {0xE1FFFF, 0x000000, 0x555555, 0xAAAAAA, 0xFFFFFF, 0x8F8FBF, 0xADADD9, 0xCECEF2,
                                  0x000000, 0x555555, 0xAAAAAA, 0xFFFF66, 0xD0D053, 0x70702D, 0x40401A, 0xFF0000};
  const std::string bytes = Copied();
  ASSERT_GE(bytes.size(), 104u);
  for (size_t i = 0; i < 16; ++i) EXPECT_EQ(Number(bytes, 40 + 4 * i, 4), colours[i]) << i;
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
  session.Command(tool::AreaSelect).LeftDrag(2, 1, 4, 3);
  EXPECT_EQ(Copied(), whole);
}

}  // namespace
}  // namespace rules
