#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "resources/ids.h"
#include "rules/script_session.h"

namespace {

using nlohmann::json;
using rules::CutFile;
using rules::ScriptSession;

json Mask(const ScriptSession& session, int state) {
  json whole = session.StateAt(state);
  return whole["pen"]["maskFlags"];
}

struct MaskBox {
  int control;
  int mask;
};

class MaskDialogBox : public testing::TestWithParam<MaskBox> {};

TEST_P(MaskDialogBox, StandsForItsBit) {
  ScriptSession session;
  session.Dialog(kMaskDialog, {{GetParam().control, "on"}}).Command(kCommandMask);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Mask(session, state), GetParam().mask);
}

TEST_P(MaskDialogBox, StartsFromTheMask) {
  ScriptSession session;
  session.Dialog(kMaskDialog, {{kMaskInvertButton, "click"}}).Command(kCommandMask);
  session.Dialog(kMaskDialog, {{GetParam().control, "off"}}).Command(kCommandMask);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Mask(session, state), 0x7F1F & ~GetParam().mask);
}

INSTANTIATE_TEST_SUITE_P(Dialogs, MaskDialogBox,
                         testing::Values(MaskBox{kMaskTransparentCheck, 1}, MaskBox{kMaskBlackCheck, 2},
                                         MaskBox{kMaskDarkCheck, 4}, MaskBox{kMaskLightCheck, 8},
                                         MaskBox{kMaskWhiteCheck, 16}, MaskBox{kMaskLineBlackCheck, 256},
                                         MaskBox{kMaskLineDarkCheck, 512}, MaskBox{kMaskLineLightCheck, 1024},
                                         MaskBox{kMaskPlus2Check, 2048}, MaskBox{kMaskPlus1Check, 4096},
                                         MaskBox{kMaskMinus1Check, 8192}, MaskBox{kMaskMinus2Check, 16384}));

TEST(MaskDialog, InvertAfterClearChecksAllTwelveBoxes) {
  ScriptSession session;
  session.Dialog(kMaskDialog, {{kMaskBlackCheck, "on"}, {kMaskClearButton, "click"}, {kMaskInvertButton, "click"}})
      .Command(kCommandMask);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Mask(session, state), 0x7F1F);
}

TEST(MaskDialog, ClearTakesAllChecksAway) {
  ScriptSession session;
  session.Dialog(kMaskDialog, {{kMaskInvertButton, "click"}})
      .Command(kCommandMask)
      .Dialog(kMaskDialog, {{kMaskClearButton, "click"}})
      .Command(kCommandMask);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Mask(session, state), 0);
}

TEST(MaskDialog, InvertTakesTheMaskItWasOpenedWithAndNotTheBoxes) {
  ScriptSession session;
  session.Dialog(kMaskDialog, {{kMaskBlackCheck, "on"}})
      .Command(kCommandMask)
      .Dialog(kMaskDialog, {{kMaskTransparentCheck, "on"}, {kMaskInvertButton, "click"}})
      .Command(kCommandMask);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Mask(session, state), 0x7F1F & ~2);
}

TEST(MaskDialog, InvertTwiceComesBack) {
  ScriptSession session;
  session.Dialog(kMaskDialog, {{kMaskBlackCheck, "on"}, {kMaskMinus2Check, "on"}})
      .Command(kCommandMask)
      .Dialog(kMaskDialog, {{kMaskInvertButton, "click"}, {kMaskInvertButton, "click"}})
      .Command(kCommandMask);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Mask(session, state), 2 | 16384);
}

TEST(MaskDialog, BoxesAfterAButtonCount) {
  ScriptSession session;
  session.Dialog(kMaskDialog, {{kMaskInvertButton, "click"}, {kMaskClearButton, "click"}, {kMaskLightCheck, "on"}})
      .Command(kCommandMask);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Mask(session, state), 8);
}

TEST(MaskDialog, CancelKeepsTheMaskInSpiteOfTheButtons) {
  ScriptSession session;
  session.Dialog(kMaskDialog, {{kMaskBlackCheck, "on"}})
      .Command(kCommandMask)
      .Dialog(kMaskDialog, {{kMaskClearButton, "click"}}, "cancel")
      .Command(kCommandMask);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Mask(session, state), 2);
}

struct RadioButton {
  rules::DialogValue value;
  int antialias;
};

class AntialiasButton : public testing::TestWithParam<RadioButton> {};

TEST_P(AntialiasButton, SwitchesTheOthersOff) {
  ScriptSession session;
  CutFile file = CutFile::WithoutLayers(1);
  file.antialias = GetParam().antialias == 0 ? 2 : 0;
  session.OpenCut("a.cut", file).Dialog(kCutDialog, {GetParam().value}).Command(kCommandCutProperties);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["antialias"], GetParam().antialias);
}

INSTANTIATE_TEST_SUITE_P(Dialogs, AntialiasButton,
                         testing::Values(RadioButton{{kCutWholeRadio, "on"}, 0}, RadioButton{{kCutHalfRadio, "on"}, 1},
                                         RadioButton{{kCutQuarterRadio, "on"}, 2}));

TEST(CutDialog, WithNoAntialiasButtonOnTheValueStays) {
  ScriptSession session;
  CutFile file = CutFile::WithoutLayers(1);
  file.antialias = 2;
  session.OpenCut("a.cut", file).Dialog(kCutDialog, {{kCutQuarterRadio, "off"}}).Command(kCommandCutProperties);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["antialias"], 2);
}

TEST(CutDialog, SizeOfZeroNeverComesThrough) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::WithoutLayers(1))
      .Dialog(kFrameSizeDialog, {{kFrameWidthEdit, "0"}, {kFrameHeightEdit, "-4"}})
      .Command(kCommandFrameSize);
  const int state = session.State();
  session.Run();
  EXPECT_GE(session.Cut(state)["frameWidth"], 1);
  EXPECT_GE(session.Cut(state)["frameHeight"], 1);
}

TEST(CutDialog, LargestSizeIsTaken) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::WithoutLayers(1))
      .Dialog(kFrameSizeDialog, {{kFrameWidthEdit, "32767"}, {kFrameHeightEdit, "1"}})
      .Command(kCommandFrameSize);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["frameWidth"], 32767);
  EXPECT_EQ(session.Cut(state)["frameHeight"], 1);
}

TEST(CutDialog, LaterValuesOverEarlierOnes) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::WithoutLayers(1))
      .Dialog(kFrameSizeDialog, {{kFrameWidthEdit, "5"}, {kFrameWidthEdit, "6"}})
      .Command(kCommandFrameSize);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["frameWidth"], 6);
}

TEST(CutDialog, CreditTakesJapaneseText) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::WithoutLayers(1))
      .Dialog(kCutDialog, {{kCutCreditEdit, "表 原画"}})
      .Command(kCommandCutProperties);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["credit"], "表 原画");
}

TEST(LayerDialog, NameTakesBlanksAndQuotes) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1}, {0}))
      .Dialog(kLayerDialog, {{kLayerNameEdit, "a \"b\" c"}})
      .Command(kCommandLayerProperties);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["layers"][0]["name"], "a \"b\" c");
}

TEST(LayerDialog, EmptyNameOfALayerThatExistsStaysEmpty) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1}, {0}))
      .Dialog(kLayerDialog, {{kLayerNameEdit, ""}})
      .Command(kCommandLayerProperties);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["layers"][0]["name"], "");
  EXPECT_EQ(session.StateAt(state)["panels"]["10004"]["lines"], json::array({" (1/1)"}));
}

class RangeDialog : public testing::TestWithParam<std::pair<int, int>> {};

TEST_P(RangeDialog, OnACutOfOneFrameOffersOnlyOne) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1}, {0})).Dialog(GetParam().second, {}).Command(GetParam().first);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["modified"], false);
}

TEST_P(RangeDialog, OfAnotherTemplateEndsTheScript) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1}, {0})).Dialog(kGridDialog, {}).Command(GetParam().first).Run(3);
}

INSTANTIATE_TEST_SUITE_P(Dialogs, RangeDialog,
                         testing::Values(std::pair{kCommandBrightnessRamp, kBrightnessRampDialog},
                                         std::pair{kCommandFrameRamp, kFrameRampDialog},
                                         std::pair{kCommandLayerRamp, kLayerRampDialog}));

TEST(RangeDialogOfManyFrames, WrapsSoThatItsStartIsNoFrame) {
  ScriptSession session;
  CutFile file = CutFile::WithoutLayers(40000);
  file.frames[0].brightness = 0;
  session.OpenCut("a.cut", file)
      .Command(kCommandFirstFrame)
      .Dialog(kBrightnessRampDialog, {})
      .Command(kCommandBrightnessRamp);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Frame(state, 1)["brightness"], 50);
  EXPECT_EQ(session.Cut(state)["modified"], false);
}

TEST(FontDialog, NumbersGoIntoTheFont) {
  ScriptSession session;
  session.Dialog(kFontDialog, {{kFontSizeEdit, "30"}, {kFontSpacingEdit, "5"}, {kFontWeightEdit, "700"}})
      .Command(kCommandFont)
      .Exit()
      .Run();
  const std::string font = session.Setting("setup", "font");
  ASSERT_GE(font.size(), 12U);
  EXPECT_EQ(font.substr(font.size() - 12), ", 30, 5, 700");
}

TEST(FontDialog, LowestValuesAreTaken) {
  ScriptSession session;
  session.Dialog(kFontDialog, {{kFontSizeEdit, "1"}, {kFontSpacingEdit, "0"}, {kFontWeightEdit, "0"}})
      .Command(kCommandFont)
      .Exit()
      .Run();
  const std::string font = session.Setting("setup", "font");
  ASSERT_GE(font.size(), 9U);
  EXPECT_EQ(font.substr(font.size() - 9), ", 1, 0, 0");
}

TEST(FontDialog, StartsWithTheFontsNumbers) {
  ScriptSession session;
  session.SetSettings("[setup]\r\nfont=Some Face, 31, 7, 650\r\n");
  session.Dialog(kFontDialog, {}).Command(kCommandFont).Exit().Run();
  const std::string font = session.Setting("setup", "font");
  ASSERT_GE(font.size(), 12U);
  EXPECT_EQ(font.substr(font.size() - 12), ", 31, 7, 650");
}

TEST(FontDialog, FontThatIsNotThereFallsToTheFirstLine) {
  ScriptSession session;
  session.SetSettings("[setup]\r\nfont=No Such Face, 31, 7, 650\r\n");
  session.Dialog(kFontDialog, {}).Command(kCommandFont).Exit().Run();
  EXPECT_EQ(session.Setting("setup", "font").find("No Such Face"), std::string::npos);
}

TEST(FontDialog, CancelKeepsTheFont) {
  ScriptSession session;
  session.SetSettings("[setup]\r\nfont=No Such Face, 31, 7, 650\r\n");
  session.Dialog(kFontDialog, {{kFontSizeEdit, "99"}}, "cancel").Command(kCommandFont).Exit().Run();
  EXPECT_EQ(session.Setting("setup", "font"), "No Such Face, 31, 7, 650");
}

TEST(RandomDotsDialog, GapOfOneStampsEveryPixel) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({0}, {0}))
      .Dialog(kRandomDotsDialog, {{kDotGapEdit, "1"}})
      .Command(kCommandRandomDots);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["layers"][0]["cells"], json::array({rules::PlainCell(1)}));
}

TEST(Answers, AreTakenInTheirOrder) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::WithoutLayers(1))
      .Dialog(kFrameSizeDialog, {{kFrameWidthEdit, "5"}})
      .Dialog(kFrameSizeDialog, {{kFrameWidthEdit, "6"}});
  session.Command(kCommandFrameSize);
  const int first = session.State();
  session.Command(kCommandFrameSize);
  const int second = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(first)["frameWidth"], 5);
  EXPECT_EQ(session.Cut(second)["frameWidth"], 6);
}

TEST(Answers, DialogWithoutOneEndsTheScript) {
  ScriptSession session;
  session.Command(kCommandMask).Run(3);
  EXPECT_NE(session.Errors().find("script.txt:1:"), std::string::npos) << session.Errors();
}

TEST(Answers, ControlThatDoesNotExistEndsTheScript) {
  ScriptSession session;
  session.Dialog(kMaskDialog, {{1234, "on"}}).Command(kCommandMask).Run(3);
}

}  // namespace
