#include <gtest/gtest.h>

#include <string>
#include <vector>

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
  session.Dialog(109, {std::to_string(GetParam().control) + "=on"}).Command(40046);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Mask(session, state), GetParam().mask);
}

TEST_P(MaskDialogBox, StartsFromTheMask) {
  ScriptSession session;
  session.Dialog(109, {"1050=click"}).Command(40046);
  session.Dialog(109, {std::to_string(GetParam().control) + "=off"}).Command(40046);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Mask(session, state), 0x7F1F & ~GetParam().mask);
}

INSTANTIATE_TEST_SUITE_P(Dialogs, MaskDialogBox,
                         testing::Values(MaskBox{1013, 1}, MaskBox{1009, 2}, MaskBox{1011, 4}, MaskBox{1012, 8},
                                         MaskBox{1010, 16}, MaskBox{1017, 256}, MaskBox{1018, 512}, MaskBox{1019, 1024},
                                         MaskBox{1046, 2048}, MaskBox{1045, 4096}, MaskBox{1047, 8192},
                                         MaskBox{1048, 16384}));

TEST(MaskDialog, InvertAfterClearChecksAllTwelveBoxes) {
  ScriptSession session;
  session.Dialog(109, {"1009=on", "1049=click", "1050=click"}).Command(40046);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Mask(session, state), 0x7F1F);
}

TEST(MaskDialog, ClearTakesAllChecksAway) {
  ScriptSession session;
  session.Dialog(109, {"1050=click"}).Command(40046).Dialog(109, {"1049=click"}).Command(40046);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Mask(session, state), 0);
}

TEST(MaskDialog, InvertTakesTheMaskItWasOpenedWithAndNotTheBoxes) {
  ScriptSession session;
  session.Dialog(109, {"1009=on"}).Command(40046).Dialog(109, {"1013=on", "1050=click"}).Command(40046);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Mask(session, state), 0x7F1F & ~2);
}

TEST(MaskDialog, InvertTwiceComesBack) {
  ScriptSession session;
  session.Dialog(109, {"1009=on", "1048=on"}).Command(40046).Dialog(109, {"1050=click", "1050=click"}).Command(40046);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Mask(session, state), 2 | 16384);
}

TEST(MaskDialog, BoxesAfterAButtonCount) {
  ScriptSession session;
  session.Dialog(109, {"1050=click", "1049=click", "1012=on"}).Command(40046);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Mask(session, state), 8);
}

TEST(MaskDialog, CancelKeepsTheMaskInSpiteOfTheButtons) {
  ScriptSession session;
  session.Dialog(109, {"1009=on"}).Command(40046).Dialog(109, {"1049=click"}, "cancel").Command(40046);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Mask(session, state), 2);
}

struct RadioButton {
  const char* word;
  int antialias;
};

class AntialiasButton : public testing::TestWithParam<RadioButton> {};

TEST_P(AntialiasButton, SwitchesTheOthersOff) {
  ScriptSession session;
  CutFile file = CutFile::WithoutLayers(1);
  file.antialias = GetParam().antialias == 0 ? 2 : 0;
  session.OpenCut("a.cut", file).Dialog(107, {GetParam().word}).Command(40077);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["antialias"], GetParam().antialias);
}

INSTANTIATE_TEST_SUITE_P(Dialogs, AntialiasButton,
                         testing::Values(RadioButton{"1055=on", 0}, RadioButton{"1056=on", 1},
                                         RadioButton{"1057=on", 2}));

TEST(CutDialog, WithNoAntialiasButtonOnTheValueStays) {
  ScriptSession session;
  CutFile file = CutFile::WithoutLayers(1);
  file.antialias = 2;
  session.OpenCut("a.cut", file).Dialog(107, {"1057=off"}).Command(40077);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["antialias"], 2);
}

TEST(CutDialog, SizeOfZeroNeverComesThrough) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::WithoutLayers(1)).Dialog(123, {"1002=0", "1001=-4"}).Command(40112);
  const int state = session.State();
  session.Run();
  EXPECT_GE(session.Cut(state)["frameWidth"], 1);
  EXPECT_GE(session.Cut(state)["frameHeight"], 1);
}

TEST(CutDialog, LargestSizeIsTaken) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::WithoutLayers(1)).Dialog(123, {"1002=32767", "1001=1"}).Command(40112);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["frameWidth"], 32767);
  EXPECT_EQ(session.Cut(state)["frameHeight"], 1);
}

TEST(CutDialog, LaterValuesOverEarlierOnes) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::WithoutLayers(1)).Dialog(123, {"1002=5", "1002=6"}).Command(40112);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["frameWidth"], 6);
}

TEST(CutDialog, CreditTakesJapaneseText) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::WithoutLayers(1)).Dialog(107, {"1037=表 原画"}).Command(40077);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["credit"], "表 原画");
}

TEST(LayerDialog, NameTakesBlanksAndQuotes) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1}, {0})).Dialog(106, {"1000=a \"b\" c"}).Command(40022);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["layers"][0]["name"], "a \"b\" c");
}

TEST(LayerDialog, EmptyNameOfALayerThatExistsStaysEmpty) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1}, {0})).Dialog(106, {"1000="}).Command(40022);
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
  session.OpenCut("a.cut", CutFile::Showing({1}, {0})).Dialog(108, {}).Command(GetParam().first).Run(3);
}

INSTANTIATE_TEST_SUITE_P(Dialogs, RangeDialog,
                         testing::Values(std::pair{40093, 115}, std::pair{40101, 117}, std::pair{40069, 112}));

TEST(RangeDialogOfManyFrames, WrapsSoThatItsStartIsNoFrame) {
  ScriptSession session;
  CutFile file = CutFile::WithoutLayers(40000);
  file.frames[0].brightness = 0;
  session.OpenCut("a.cut", file).Command(40041).Dialog(115, {}).Command(40093);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Frame(state, 1)["brightness"], 50);
  EXPECT_EQ(session.Cut(state)["modified"], false);
}

TEST(FontDialog, NumbersGoIntoTheFont) {
  ScriptSession session;
  session.Dialog(113, {"1001=30", "1022=5", "1042=700"}).Command(40072).Exit().Run();
  const std::string font = session.Setting("setup", "font");
  ASSERT_GE(font.size(), 12U);
  EXPECT_EQ(font.substr(font.size() - 12), ", 30, 5, 700");
}

TEST(FontDialog, LowestValuesAreTaken) {
  ScriptSession session;
  session.Dialog(113, {"1001=1", "1022=0", "1042=0"}).Command(40072).Exit().Run();
  const std::string font = session.Setting("setup", "font");
  ASSERT_GE(font.size(), 9U);
  EXPECT_EQ(font.substr(font.size() - 9), ", 1, 0, 0");
}

TEST(FontDialog, StartsWithTheFontsNumbers) {
  ScriptSession session;
  session.SetSettings("[setup]\r\nfont=Some Face, 31, 7, 650\r\n");
  session.Dialog(113, {}).Command(40072).Exit().Run();
  const std::string font = session.Setting("setup", "font");
  ASSERT_GE(font.size(), 12U);
  EXPECT_EQ(font.substr(font.size() - 12), ", 31, 7, 650");
}

TEST(FontDialog, FontThatIsNotThereFallsToTheFirstLine) {
  ScriptSession session;
  session.SetSettings("[setup]\r\nfont=No Such Face, 31, 7, 650\r\n");
  session.Dialog(113, {}).Command(40072).Exit().Run();
  EXPECT_EQ(session.Setting("setup", "font").find("No Such Face"), std::string::npos);
}

TEST(FontDialog, CancelKeepsTheFont) {
  ScriptSession session;
  session.SetSettings("[setup]\r\nfont=No Such Face, 31, 7, 650\r\n");
  session.Dialog(113, {"1001=99"}, "cancel").Command(40072).Exit().Run();
  EXPECT_EQ(session.Setting("setup", "font"), "No Such Face, 31, 7, 650");
}

TEST(RandomDotsDialog, GapOfOneStampsEveryPixel) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({0}, {0})).Dialog(127, {"1001=1"}).Command(40126);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["layers"][0]["cells"], json::array({rules::PlainCell(1)}));
}

TEST(Answers, AreTakenInTheirOrder) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::WithoutLayers(1)).Dialog(123, {"1002=5"}).Dialog(123, {"1002=6"});
  session.Command(40112);
  const int first = session.State();
  session.Command(40112);
  const int second = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(first)["frameWidth"], 5);
  EXPECT_EQ(session.Cut(second)["frameWidth"], 6);
}

TEST(Answers, DialogWithoutOneEndsTheScript) {
  ScriptSession session;
  session.Command(40046).Run(3);
  EXPECT_NE(session.Errors().find("script.txt:1:"), std::string::npos) << session.Errors();
}

TEST(Answers, ControlThatDoesNotExistEndsTheScript) {
  ScriptSession session;
  session.Dialog(109, {"1234=on"}).Command(40046).Run(3);
}

}  // namespace
