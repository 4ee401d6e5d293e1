#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "resources/ids.h"
#include "rules/script_session.h"

namespace {

using nlohmann::json;
using rules::CutFile;
using rules::ScriptSession;

// "ＭＳ Ｐゴシック" in Shift JIS.
const std::string kDefaultFont = "\x82\x6C\x82\x72 \x82\x6F\x83\x53\x83\x56\x83\x62\x83\x4E, 24, 12, 400";

TEST(ShellStartup, FirstStartHasAFilmOf320By240AndNoCut) {
  ScriptSession session;
  const int state = session.State();
  session.Run();
  json film = session.StateAt(state)["film"];
  EXPECT_EQ(film["width"], 320);
  EXPECT_EQ(film["height"], 240);
  EXPECT_EQ(film["title"], "");
  EXPECT_EQ(film["author"], "");
  EXPECT_EQ(film["path"], "");
  EXPECT_EQ(film["modified"], false);
  EXPECT_EQ(film["cuts"].size(), 0U);
  EXPECT_EQ(session.StateAt(state)["cuts"].size(), 0U);
}

TEST(ShellStartup, FirstStartSelectsTheFreePen) {
  ScriptSession session;
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["frame"]["currentTool"], kToolFreePen);
  EXPECT_EQ(session.StateAt(state)["frame"]["previousTool"], kToolFreePen);
  EXPECT_EQ(session.StateAt(state)["frame"]["title"], "Sorvel Developer");
}

TEST(ShellStartup, FirstStartShowsPanelsAndBars) {
  ScriptSession session;
  const int state = session.State();
  session.Run();
  json frame = session.StateAt(state)["frame"];
  EXPECT_EQ(frame["panelsShown"], true);
  EXPECT_EQ(frame["statusBarVisible"], true);
  EXPECT_EQ(frame["toolBarVisible"], true);
  EXPECT_EQ(frame["status"], "");
}

TEST(ShellStartup, FirstStartHasTheOnePixelRoundPenOfPlainBlack) {
  ScriptSession session;
  const int state = session.State();
  session.Run();
  json pen = session.StateAt(state)["pen"];
  EXPECT_EQ(pen["shape"], 7);
  EXPECT_EQ(pen["tone"], 0);
  EXPECT_EQ(pen["colorA"], 0);
  EXPECT_EQ(pen["colorB"], 1);
  EXPECT_EQ(pen["penSign"], 1);
  EXPECT_EQ(pen["muraRemoval"], 1);
  EXPECT_EQ(pen["maskFlags"], 0);
  EXPECT_EQ(pen["gridWidth"], 1);
  EXPECT_EQ(pen["gridHeight"], 1);
}

TEST(ShellStartup, ExitCreatesTheSettingsFileWithAnEmptyFilm) {
  ScriptSession session;
  session.Exit().Run();
  EXPECT_EQ(session.Setting("setup", "film"), "");
}

TEST(ShellStartup, ExitWritesTheDefaultBrushInItsTextForm) {
  ScriptSession session;
  session.Exit().Run();
  EXPECT_EQ(session.Setting("setup", "brush"), "7, 0, 1, 0, 1, 0");
}

TEST(ShellStartup, ExitWritesTheDefaultFontInItsTextForm) {
  ScriptSession session;
  session.Exit().Run();
  EXPECT_EQ(session.Setting("setup", "font"), kDefaultFont);
}

TEST(ShellStartup, ExitWritesNoSettingsBesideFilmFontAndBrush) {
  ScriptSession session;
  session.Exit().Run();
  EXPECT_EQ(session.Settings().find("OnNewCut"), std::string::npos);
  EXPECT_EQ(session.Settings().find("OnNewFilm"), std::string::npos);
  EXPECT_EQ(session.Settings().find("OnClipTrans"), std::string::npos);
  EXPECT_NE(session.Settings().find("setup"), std::string::npos);
}

TEST(ShellStartup, EndWithoutExitWritesNoSettings) {
  ScriptSession session;
  session.Command(kCommandSquarePen).Run();
  EXPECT_FALSE(session.Exists("settings.ini"));
}

TEST(ShellStartup, BrushIsReadInTheFilesOrder) {
  ScriptSession session;
  session.SetSettings("[setup]\r\nbrush=9, 2, 3, 4, 0, 0\r\n");
  const int state = session.State();
  session.Run();
  json pen = session.StateAt(state)["pen"];
  EXPECT_EQ(pen["shape"], 9);
  EXPECT_EQ(pen["colorA"], 2);
  EXPECT_EQ(pen["colorB"], 3);
  EXPECT_EQ(pen["tone"], 4);
  EXPECT_EQ(pen["muraRemoval"], 0);
  EXPECT_EQ(pen["penSign"], 1);
}

TEST(ShellStartup, SquareFlagOfTheBrushMirrorsItsShape) {
  ScriptSession session;
  session.SetSettings("[setup]\r\nbrush=3, 0, 1, 0, 1, 1\r\n");
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["pen"]["shape"], 11);
  EXPECT_EQ(session.StateAt(state)["pen"]["penSign"], -1);
}

TEST(ShellStartup, AnyNonZeroSquareFlagSelectsTheSquarePen) {
  ScriptSession session;
  session.SetSettings("[setup]\r\nbrush=3, 0, 1, 0, 1, 5\r\n");
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["pen"]["penSign"], -1);
}

TEST(ShellStartup, SquarePenIsWrittenAsItStandsWithSixthFieldOne) {
  ScriptSession session;
  session.SetSettings("[setup]\r\nbrush=10, 2, 3, 4, 0, 0\r\n");
  session.Command(kCommandSquarePen).Exit().Run();
  EXPECT_EQ(session.Setting("setup", "brush"), "4, 2, 3, 4, 0, 1");
}

TEST(ShellStartup, SquarePenComesBackAsARoundShapeMarkedSquare) {
  ScriptSession session;
  session.SetSettings("[setup]\r\nbrush=11, 0, 1, 0, 1, 0\r\n");
  session.Command(kCommandSquarePen).Exit().Run();
  ASSERT_EQ(session.Setting("setup", "brush"), "3, 0, 1, 0, 1, 1");
  session.Restart();
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["pen"]["shape"], 11);
  EXPECT_EQ(session.StateAt(state)["pen"]["penSign"], -1);
}

TEST(ShellStartup, MaskIsNotKeptFromRunToRun) {
  ScriptSession session;
  session.Dialog(kMaskDialog, {{kMaskBlackCheck, "on"}}).Command(kCommandMask).Exit().Run();
  session.Restart();
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["pen"]["maskFlags"], 0);
}

TEST(ShellStartup, FontIsKeptFromRunToRun) {
  ScriptSession session;
  session.SetSettings("[setup]\r\nfont=Some Face, 31, 7, 650\r\n");
  session.Exit().Run();
  EXPECT_EQ(session.Setting("setup", "font"), "Some Face, 31, 7, 650");
}

TEST(ShellStartup, ClipTransparencySwitchIsReadAtStart) {
  ScriptSession session;
  session.SetSettings("[OnClipTrans]\r\nFlag=1\r\n");
  const int state = session.State();
  session.Run();
  const json checked = session.StateAt(state)["frame"]["checked"];
  EXPECT_NE(std::find(checked.begin(), checked.end(), kCommandTransparentColor), checked.end());
}

TEST(ShellStartup, FilmOfTheLastExitIsOpenedAtTheNextStart) {
  ScriptSession session;
  session.File(session.Path("movie.flm")).Command(kCommandSaveFilmAs).Exit().Run();
  ASSERT_EQ(session.Setting("setup", "film"), session.Path("movie.flm"));
  session.Restart();
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["film"]["path"], session.Path("movie.flm"));
  EXPECT_EQ(session.StateAt(state)["frame"]["title"], "Sorvel Developer - movie");
}

TEST(ShellStartup, RememberedFilmThatHasGoneLeavesAnEmptyProgram) {
  ScriptSession session;
  session.SetSettings("[setup]\r\nfilm=" + session.Path("gone.flm") + "\r\n");
  const int state = session.State();
  session.Exit().Run();
  EXPECT_EQ(session.StateAt(state)["film"]["path"], "");
  EXPECT_EQ(session.StateAt(state)["frame"]["title"], "Sorvel Developer");
  EXPECT_EQ(session.Setting("setup", "film"), "");
}

TEST(ShellStartup, RememberedPathIsOpenedByItsExtension) {
  ScriptSession session;
  session.Write("one.cut", CutFile::WithoutLayers(2).Bytes());
  session.SetSettings("[setup]\r\nfilm=" + session.Path("one.cut") + "\r\n");
  const int state = session.State();
  session.Run();
  ASSERT_EQ(session.StateAt(state)["cuts"].size(), 1U);
  EXPECT_EQ(session.Cut(state)["path"], session.Path("one.cut"));
}

TEST(ShellStartup, ExitRecordsThePathOfTheFilmThatIsOpenThen) {
  ScriptSession session;
  session.SetSettings("[setup]\r\nfilm=" + session.Path("old.flm") + "\r\n");
  session.Write("old.flm", "t\na\n10, 20\n");
  session.Dialog(kFilmDialog, {}).Command(kCommandNewFilm).Exit().Run();
  EXPECT_EQ(session.Setting("setup", "film"), "");
}

class OpenByExtensionInAnyCase : public testing::TestWithParam<const char*> {};

TEST_P(OpenByExtensionInAnyCase, CutOpens) {
  ScriptSession session;
  session.OpenCut(GetParam(), CutFile::WithoutLayers(1));
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["cuts"].size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(ShellStartup, OpenByExtensionInAnyCase, testing::Values("a.cut", "a.CUT", "a.Cut", "a.cUt"));

TEST(ShellStartup, FilmOpensByAMixedCaseExtension) {
  ScriptSession session;
  session.Write("a.Flm", "title\nauthor\n100, 50\n");
  session.Open(session.Path("a.Flm"));
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["film"]["title"], "title");
  EXPECT_EQ(session.StateAt(state)["film"]["width"], 100);
}

TEST(ShellStartup, LayerOpensByAnUpperCaseExtension) {
  ScriptSession session;
  session.NewCut({.width = 20, .height = 10}).File(session.Path("a.LYR")).Command(kCommandSaveLayer);
  session.Open(session.Path("a.LYR"));
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["cuts"].size(), 2U);
}

class OpensNothing : public testing::TestWithParam<const char*> {};

TEST_P(OpensNothing, AndGivesNoMessage) {
  ScriptSession session;
  session.OpenCut(GetParam(), CutFile::WithoutLayers(1));
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["cuts"].size(), 0U);
  EXPECT_EQ(session.Errors(), "");
}

INSTANTIATE_TEST_SUITE_P(ShellStartup, OpensNothing,
                         testing::Values("noextension", "a.cut2", "a.cu", "a.ca", "cut", "a.lyr", "a.cut."));

TEST(ShellStartup, PathThatDoesNotExistOpensNothing) {
  ScriptSession session;
  session.Open(session.Path("none.cut")).Open(session.Path("none.lyr"));
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["cuts"].size(), 0U);
}

TEST(ShellStartup, FilmOpenedByExtensionReplacesAModifiedFilmWithoutAsking) {
  ScriptSession session;
  session.Write("a.flm", "fresh\nauthor\n100, 50\n");
  session.Dialog(kFilmDialog, {{kFilmTitleEdit, "mine"}}).Command(kCommandFilmProperties);
  const int before = session.State();
  session.Open(session.Path("a.flm"));
  const int after = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(before)["film"]["modified"], true);
  EXPECT_EQ(session.StateAt(after)["film"]["title"], "fresh");
  EXPECT_EQ(session.StateAt(after)["film"]["modified"], false);
}

TEST(ShellStartup, DroppedFilmReplacesAModifiedFilmWithoutAsking) {
  ScriptSession session;
  session.Write("a.flm", "fresh\nauthor\n100, 50\n");
  session.Dialog(kFilmDialog, {{kFilmTitleEdit, "mine"}}).Command(kCommandFilmProperties);
  session.Line("drop " + rules::Quoted(session.Path("a.flm")));
  const int after = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(after)["film"]["title"], "fresh");
}

TEST(ShellStartup, ExitAsksForEachModifiedCutAndThenForTheFilm) {
  ScriptSession session;
  session.Dialog(kFilmDialog, {{kFilmTitleEdit, "mine"}}).Command(kCommandFilmProperties).NewCut().NewCut();
  session.Answer("no").Answer("no").Answer("no").Exit().Run();
  EXPECT_EQ(session.Setting("setup", "brush"), "7, 0, 1, 0, 1, 0");
}

TEST(ShellStartup, ExitWithTooFewAnswersShowsThatTheFilmIsAskedToo) {
  ScriptSession session;
  session.Dialog(kFilmDialog, {{kFilmTitleEdit, "mine"}}).Command(kCommandFilmProperties).NewCut().NewCut();
  session.Answer("no").Answer("no").Exit().Run(3);
}

TEST(ShellStartup, ExitAsksForCutsBeforeTheFilm) {
  ScriptSession session;
  session.File(session.Path("movie.flm")).Command(kCommandSaveFilmAs);
  session.Dialog(kFilmDialog, {{kFilmTitleEdit, "changed"}}).Command(kCommandFilmProperties);
  session.OpenCut("one.cut", CutFile::WithoutLayers(1)).Panel(kCommentEdit, "typed");
  session.Answer("yes").Answer("no").Exit().Run();
  EXPECT_NE(session.Bytes("one.cut").find("typed"), std::string::npos);
  EXPECT_EQ(session.Bytes("movie.flm").find("changed"), std::string::npos);
}

TEST(ShellStartup, ExitAsksNothingWhenNothingIsModified) {
  ScriptSession session;
  session.OpenCut("one.cut", CutFile::WithoutLayers(1)).Exit().Run();
  EXPECT_EQ(session.Setting("setup", "film"), "");
}

TEST(ShellStartup, FilmSavedDuringExitIsTheOneRemembered) {
  ScriptSession session;
  session.Dialog(kFilmDialog, {{kFilmTitleEdit, "mine"}}).Command(kCommandFilmProperties);
  session.Answer("yes").File(session.Path("late.flm")).Exit().Run();
  EXPECT_TRUE(session.Exists("late.flm"));
  EXPECT_EQ(session.Setting("setup", "film"), session.Path("late.flm"));
}

TEST(FilesBesideTheExecutable, SettingsHaveItsNameWithTheExtensionReplaced) {
  ScriptSession session;
  session.Command(kCommandSquarePen).Exit().RunCopy("tool.bin");
  EXPECT_EQ(session.Files(), (std::vector<std::string>{"tool.bin", "tool.ini"}));
  EXPECT_NE(session.Bytes("tool.ini").find("brush=7, 0, 1, 0, 1, 1"), std::string::npos);
}

TEST(FilesBesideTheExecutable, SettingsAreReadFromThere) {
  ScriptSession session;
  session.Write("tool.ini", "[setup]\r\nbrush=9, 0, 1, 0, 1, 0\r\n");
  const int state = session.State();
  session.RunCopy("tool");
  EXPECT_EQ(session.StateAt(state)["pen"]["shape"], 9);
}

// A bitmap file of 8 bits with these numbers of bits and declared colours; entry i is (i, 2 i, 3 i).
std::string ColorsFile(uint8_t bits, uint8_t declared) {
  std::string bytes("BM");
  bytes.resize(14 + 40 + 256 * 4, '\0');
  bytes[14] = 40;
  bytes[28] = static_cast<char>(bits);
  bytes[46] = static_cast<char>(declared);
  for (size_t i = 0; i < 26; ++i) {
    bytes[54 + 4 * i] = static_cast<char>(3 * i);
    bytes[54 + 4 * i + 1] = static_cast<char>(2 * i);
    bytes[54 + 4 * i + 2] = static_cast<char>(i);
  }
  return bytes;
}

uint32_t ColorOfWhite(const std::string& colorsFile) {
  ScriptSession session;
  session.Write("Colors.bmp", colorsFile);
  session.OpenCut("a.cut", CutFile::Showing({4}, {0}));
  const int screen = session.Screen();
  session.RunCopy("tool");
  return session.ScreenAt(screen).At(320, 239);
}

TEST(FilesBesideTheExecutable, ColorsOfAnEightBitBitmapReplaceTheBuiltInOnes) {
  EXPECT_EQ(ColorOfWhite(ColorsFile(8, 26)), 0x04080CU);
}

TEST(FilesBesideTheExecutable, ColorsFileWithTooFewDeclaredColoursIsRejected) {
  EXPECT_EQ(ColorOfWhite(ColorsFile(8, 16)), 0xFFFFFFU);
}

TEST(FilesBesideTheExecutable, ColorsFileOfAnotherDepthIsRejected) {
  EXPECT_EQ(ColorOfWhite(ColorsFile(24, 26)), 0xFFFFFFU);
}

}  // namespace
