#include <gtest/gtest.h>

#include <string>

#include "resources/ids.h"
#include "rules/rule_table.h"
#include "rules/script_session.h"

namespace rules {
namespace {

using nlohmann::json;

json Mask(ScriptSession& session, int state = kNow) {
  json whole = session.StateAt(state);
  return whole["pen"]["maskFlags"];
}

struct MaskBox {
  int control;
  int mask;
};

class MaskDialogBox : public SessionTest, public testing::WithParamInterface<MaskBox> {};

TEST_P(MaskDialogBox, StandsForItsBit) {
  session.Dialog(kMaskDialog, {{GetParam().control, "on"}}).Command(kCommandMask);
  EXPECT_EQ(Mask(session), GetParam().mask);
}

TEST_P(MaskDialogBox, StartsFromTheMask) {
  session.Dialog(kMaskDialog, {{kMaskInvertButton, "click"}}).Command(kCommandMask);
  session.Dialog(kMaskDialog, {{GetParam().control, "off"}}).Command(kCommandMask);
  EXPECT_EQ(Mask(session), 0x7F1F & ~GetParam().mask);
}

INSTANTIATE_TEST_SUITE_P(Dialogs, MaskDialogBox,
                         testing::Values(MaskBox{kMaskTransparentCheck, 1}, MaskBox{kMaskBlackCheck, 2},
                                         MaskBox{kMaskDarkCheck, 4}, MaskBox{kMaskLightCheck, 8},
                                         MaskBox{kMaskWhiteCheck, 16}, MaskBox{kMaskLineBlackCheck, 256},
                                         MaskBox{kMaskLineDarkCheck, 512}, MaskBox{kMaskLineLightCheck, 1024},
                                         MaskBox{kMaskPlus2Check, 2048}, MaskBox{kMaskPlus1Check, 4096},
                                         MaskBox{kMaskMinus1Check, 8192}, MaskBox{kMaskMinus2Check, 16384}));

const Rules<SessionTest, "MaskDialog"> kMaskDialogRules = {
    {"InvertAfterClearChecksAllTwelveBoxes",
     Do().Dialog(kMaskDialog, {{kMaskBlackCheck, "on"}, {kMaskClearButton, "click"}, {kMaskInvertButton, "click"}}),
     Do().Command(kCommandMask), Has("pen/maskFlags", 0x7F1F)},
    {"ClearTakesAllChecksAway", Do().Dialog(kMaskDialog, {{kMaskInvertButton, "click"}}).Command(kCommandMask),
     Do().Dialog(kMaskDialog, {{kMaskClearButton, "click"}}).Command(kCommandMask), Has("pen/maskFlags", 0)},
    {"InvertTakesTheMaskItWasOpenedWithAndNotTheBoxes",
     Do().Dialog(kMaskDialog, {{kMaskBlackCheck, "on"}}).Command(kCommandMask),
     Do().Dialog(kMaskDialog, {{kMaskTransparentCheck, "on"}, {kMaskInvertButton, "click"}}).Command(kCommandMask),
     Has("pen/maskFlags", 0x7F1F & ~2)},
    {"InvertTwiceComesBack",
     Do().Dialog(kMaskDialog, {{kMaskBlackCheck, "on"}, {kMaskMinus2Check, "on"}}).Command(kCommandMask),
     Do().Dialog(kMaskDialog, {{kMaskInvertButton, "click"}, {kMaskInvertButton, "click"}}).Command(kCommandMask),
     Has("pen/maskFlags", 2 | 16384)},
    {"BoxesAfterAButtonCount",
     Do().Dialog(kMaskDialog, {{kMaskInvertButton, "click"}, {kMaskClearButton, "click"}, {kMaskLightCheck, "on"}}),
     Do().Command(kCommandMask), Has("pen/maskFlags", 8)},
    {"CancelKeepsTheMaskInSpiteOfTheButtons", Do().Dialog(kMaskDialog, {{kMaskBlackCheck, "on"}}).Command(kCommandMask),
     Do().Dialog(kMaskDialog, {{kMaskClearButton, "click"}}, "cancel").Command(kCommandMask), Has("pen/maskFlags", 2)},
};

struct RadioButton {
  DialogValue value;
  int antialias;
};

class AntialiasButton : public SessionTest, public testing::WithParamInterface<RadioButton> {};

TEST_P(AntialiasButton, SwitchesTheOthersOff) {
  CutFile file = CutFile::WithoutLayers(1);
  file.antialias = GetParam().antialias == 0 ? 2 : 0;
  session.OpenCut("a.cut", file).Dialog(kCutDialog, {GetParam().value}).Command(kCommandCutProperties);
  EXPECT_EQ(session.Cut()["antialias"], GetParam().antialias);
}

INSTANTIATE_TEST_SUITE_P(Dialogs, AntialiasButton,
                         testing::Values(RadioButton{{kCutWholeRadio, "on"}, 0}, RadioButton{{kCutHalfRadio, "on"}, 1},
                                         RadioButton{{kCutQuarterRadio, "on"}, 2}));

using CutDialog = SessionTest;

TEST_F(CutDialog, SizeOfZeroNeverComesThrough) {
  session.OpenCut("a.cut", CutFile::WithoutLayers(1));
  session.Dialog(kFrameSizeDialog, {{kFrameWidthEdit, "0"}, {kFrameHeightEdit, "-4"}}).Command(kCommandFrameSize);
  EXPECT_GE(session.Cut()["frameWidth"], 1);
  EXPECT_GE(session.Cut()["frameHeight"], 1);
}

const Rules<SessionTest, "CutDialog"> kCutDialogRules = {
    {"WithNoAntialiasButtonOnTheValueStays",
     Do().OpenCut("a.cut", CutFile{.antialias = 2, .frames = {{}}}).Dialog(kCutDialog, {{kCutQuarterRadio, "off"}}),
     Do().Command(kCommandCutProperties), Has("cut/antialias", 2)},
    {"LargestSizeIsTaken", Do().OpenCut("a.cut", CutFile::WithoutLayers(1)),
     Do().Dialog(kFrameSizeDialog, {{kFrameWidthEdit, "32767"}, {kFrameHeightEdit, "1"}}).Command(kCommandFrameSize),
     Has("cut/frameWidth,frameHeight", "32767 1")},
    {"LaterValuesOverEarlierOnes", Do().OpenCut("a.cut", CutFile::WithoutLayers(1)),
     Do().Dialog(kFrameSizeDialog, {{kFrameWidthEdit, "5"}, {kFrameWidthEdit, "6"}}).Command(kCommandFrameSize),
     Has("cut/frameWidth", 6)},
    {"CreditTakesJapaneseText",
     Do().OpenCut("a.cut", CutFile::WithoutLayers(1)).Dialog(kCutDialog, {{kCutCreditEdit, "表 原画"}}),
     Do().Command(kCommandCutProperties), Has("cut/credit", "表 原画")},
};

const Rules<SessionTest, "LayerDialog"> kLayerDialogRules = {
    {"NameTakesBlanksAndQuotes",
     Do().OpenCut("a.cut", CutFile::Showing({1}, {0})).Dialog(kLayerDialog, {{kLayerNameEdit, "a \"b\" c"}}),
     Do().Command(kCommandLayerProperties), Has("cut/layers/0/name", "a \"b\" c")},
    {"EmptyNameOfALayerThatExistsStaysEmpty",
     Do().OpenCut("a.cut", CutFile::Showing({1}, {0})).Dialog(kLayerDialog, {{kLayerNameEdit, ""}}),
     Do().Command(kCommandLayerProperties),
     Has("cut/layers/0/name", "", "panels/layers/lines", json::array({" (1/1)"}))},
};

class RangeDialog : public SessionTest, public testing::WithParamInterface<std::pair<int, int>> {};

TEST_P(RangeDialog, OnACutOfOneFrameOffersOnlyOne) {
  session.OpenCut("a.cut", CutFile::Showing({1}, {0})).Dialog(GetParam().second, {}).Command(GetParam().first);
  EXPECT_EQ(session.Cut()["modified"], false);
}

INSTANTIATE_TEST_SUITE_P(Dialogs, RangeDialog,
                         testing::Values(std::pair{kCommandBrightnessRamp, kBrightnessRampDialog},
                                         std::pair{kCommandFrameRamp, kFrameRampDialog},
                                         std::pair{kCommandLayerRamp, kLayerRampDialog}));

TEST(RangeDialogOfManyFrames, WrapsSoThatItsStartIsNoFrame) {
  ScriptSession session;
  CutFile file = CutFile::WithoutLayers(40000);
  file.frames[0].brightness = 0;
  session.OpenCut("a.cut", file).Command(kCommandFirstFrame).Dialog(kBrightnessRampDialog, {});
  session.Command(kCommandBrightnessRamp);
  EXPECT_TRUE(Holds(session, "cut/frames/1/brightness", 50, "cut/modified", false));
}

using FontDialog = SessionTest;

struct FontNumbers {
  const char* name;
  const char* settings;
  DialogValues typed;
  std::string font;
};

class FontDialogNumbers : public SessionTest, public testing::WithParamInterface<FontNumbers> {};

TEST_P(FontDialogNumbers, GoIntoTheFont) {
  session.SetSettings(GetParam().settings).Dialog(kFontDialog, GetParam().typed).Command(kCommandFont).Exit().Run();
  const std::string font = session.Setting("setup", "font");
  EXPECT_TRUE(font.ends_with(GetParam().font)) << font;
}

INSTANTIATE_TEST_SUITE_P(
    Dialogs, FontDialogNumbers,
    testing::Values(FontNumbers{"NumbersGoIntoTheFont",
                                "",
                                {{kFontSizeEdit, "30"}, {kFontSpacingEdit, "5"}, {kFontWeightEdit, "700"}},
                                ", 30, 5, 700"},
                    FontNumbers{"LowestValuesAreTaken",
                                "",
                                {{kFontSizeEdit, "1"}, {kFontSpacingEdit, "0"}, {kFontWeightEdit, "0"}},
                                ", 1, 0, 0"},
                    FontNumbers{
                        "StartsWithTheFontsNumbers", "[setup]\r\nfont=Some Face, 31, 7, 650\r\n", {}, ", 31, 7, 650"}),
    [](const testing::TestParamInfo<FontNumbers>& test) { return std::string(test.param.name); });

TEST_F(FontDialog, FontThatIsNotThereFallsToTheFirstLine) {
  session.SetSettings("[setup]\r\nfont=No Such Face, 31, 7, 650\r\n").Dialog(kFontDialog, {}).Command(kCommandFont);
  session.Exit().Run();
  EXPECT_EQ(session.Setting("setup", "font").find("No Such Face"), std::string::npos);
}

const Rules<SessionTest, "FontDialog"> kFontDialogRules = {
    {"CancelKeepsTheFont", Do().SetSettings("[setup]\r\nfont=No Such Face, 31, 7, 650\r\n"),
     Do().Dialog(kFontDialog, {{kFontSizeEdit, "99"}}, "cancel").Command(kCommandFont).Exit(),
     Has("settings/setup/font", "No Such Face, 31, 7, 650")},
};

const Rules<SessionTest, "RandomDotsDialog"> kRandomDotsDialogRules = {
    {"GapOfOneStampsEveryPixel",
     Do().OpenCut("a.cut", CutFile::Showing({0}, {0})).Dialog(kRandomDotsDialog, {{kDotGapEdit, "1"}}),
     Do().Command(kCommandRandomDots), Has("cells", json::array({PlainCell(1)}))},
};

const Rules<SessionTest, "Answers"> kAnswersRules = {
    {"AreTakenInTheirOrder",
     Do().OpenCut("a.cut", CutFile::WithoutLayers(1)).Dialog(kFrameSizeDialog, {{kFrameWidthEdit, "5"}}),
     Do().Dialog(kFrameSizeDialog, {{kFrameWidthEdit, "6"}}).Command(kCommandFrameSize), Has("cut/frameWidth", 5),
     Do().Command(kCommandFrameSize), Has("cut/frameWidth", 6)},
};

}  // namespace
}  // namespace rules
