#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "resources/ids.h"
#include "rules/rule_table.h"
#include "rules/script_session.h"

namespace rules {
namespace {

using nlohmann::json;

// "ＭＳ Ｐゴシック" in Shift JIS.
const std::string kDefaultFont = "\x82\x6C\x82\x72 \x82\x6F\x83\x53\x83\x56\x83\x62\x83\x4E, 24, 12, 400";

using ShellStartup = SessionTest;

TEST_F(ShellStartup, ExitWritesNoSettingsBesideFilmFontAndBrush) {
  session.Exit().Run();
  EXPECT_EQ(session.Settings().find("OnNewCut"), std::string::npos);
  EXPECT_EQ(session.Settings().find("OnNewFilm"), std::string::npos);
  EXPECT_EQ(session.Settings().find("OnClipTrans"), std::string::npos);
  EXPECT_NE(session.Settings().find("setup"), std::string::npos);
}

TEST_F(ShellStartup, ClipTransparencySwitchIsReadAtStart) {
  session.SetSettings("[OnClipTrans]\r\nFlag=1\r\n");
  const json checked = session.NowState()["frame"]["checked"];
  EXPECT_NE(std::find(checked.begin(), checked.end(), kCommandTransparentColor), checked.end());
}

TEST_F(ShellStartup, FilmOfTheLastExitIsOpenedAtTheNextStart) {
  session.File("movie.flm").Command(kCommandSaveFilmAs).Exit().Run();
  ASSERT_EQ(session.Setting("setup", "film"), session.Path("movie.flm"));
  session.Restart();
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["film"]["path"], session.Path("movie.flm"));
  EXPECT_EQ(session.StateAt(state)["frame"]["title"], "Sorvel Developer - movie");
}

TEST_F(ShellStartup, RememberedPathIsOpenedByItsExtension) {
  session.Write("one.cut", CutFile::WithoutLayers(2).Bytes());
  session.SetSettings("[setup]\r\nfilm=" + session.Path("one.cut") + "\r\n");
  ASSERT_EQ(session.NowState()["cuts"].size(), 1U);
  EXPECT_EQ(session.Cut()["path"], session.Path("one.cut"));
}

class OpenByExtensionInAnyCase : public SessionTest, public testing::WithParamInterface<const char*> {};

TEST_P(OpenByExtensionInAnyCase, CutOpens) {
  session.OpenCut(GetParam(), CutFile::WithoutLayers(1));
  EXPECT_EQ(session.NowState()["cuts"].size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(ShellStartup, OpenByExtensionInAnyCase, testing::Values("a.cut", "a.CUT", "a.Cut", "a.cUt"));

class OpensNothing : public SessionTest, public testing::WithParamInterface<const char*> {};

TEST_P(OpensNothing, AndGivesNoMessage) {
  session.OpenCut(GetParam(), CutFile::WithoutLayers(1));
  EXPECT_EQ(session.NowState()["cuts"].size(), 0U);
  EXPECT_EQ(session.Errors(), "");
}

INSTANTIATE_TEST_SUITE_P(ShellStartup, OpensNothing,
                         testing::Values("noextension", "a.cut2", "a.cu", "a.ca", "cut", "a.lyr", "a.cut."));

TEST_F(ShellStartup, ExitWithTooFewAnswersShowsThatTheFilmIsAskedToo) {
  session.Dialog(kFilmDialog, {{kFilmTitleEdit, "mine"}}).Command(kCommandFilmProperties).NewCut().NewCut();
  session.Answer("no").Answer("no").Exit().Run(3);
}

TEST_F(ShellStartup, ExitAsksForCutsBeforeTheFilm) {
  session.File("movie.flm").Command(kCommandSaveFilmAs);
  session.Dialog(kFilmDialog, {{kFilmTitleEdit, "changed"}}).Command(kCommandFilmProperties);
  session.OpenCut("one.cut", CutFile::WithoutLayers(1)).Panel(kCommentEdit, "typed").Answer("yes").Answer("no").Exit();
  session.Run();
  EXPECT_NE(session.Bytes("one.cut").find("typed"), std::string::npos);
  EXPECT_EQ(session.Bytes("movie.flm").find("changed"), std::string::npos);
}

TEST_F(ShellStartup, RememberedFilmThatHasGoneLeavesAnEmptyProgram) {
  session.SetSettings("[setup]\r\nfilm=" + session.Path("gone.flm") + "\r\n");
  const int state = session.State();
  session.Exit().Run();
  EXPECT_EQ(session.StateAt(state)["film"]["path"], "");
  EXPECT_EQ(session.StateAt(state)["frame"]["title"], "Sorvel Developer");
  EXPECT_EQ(session.Setting("setup", "film"), "");
}

TEST_F(ShellStartup, ExitRecordsThePathOfTheFilmThatIsOpenThen) {
  session.SetSettings("[setup]\r\nfilm=" + session.Path("old.flm") + "\r\n").Write("old.flm", "t\na\n10, 20\n");
  session.Dialog(kFilmDialog, {}).Command(kCommandNewFilm).Exit().Run();
  EXPECT_EQ(session.Setting("setup", "film"), "");
}

const Rules<SessionTest, "ShellStartup"> kShellStartupRules = {
    {"FirstStartHasAFilmOf320By240AndNoCut",
     Has("film/width,height", "320 240", "film/title", "", "film/author", "", "film/path", "", "film/modified", false,
         "film/cuts/#", 0, "cuts/#", 0)},
    {"FirstStartSelectsTheFreePen",
     Has("frame/currentTool", kToolFreePen, "frame/previousTool", kToolFreePen, "frame/title", "Sorvel Developer")},
    {"FirstStartShowsPanelsAndBars",
     Has("frame/panelsShown", true, "frame/statusBarVisible", true, "frame/toolBarVisible", true, "frame/status", "")},
    {"ExitCreatesTheSettingsFileWithAnEmptyFilm", Do().Exit(), Has("settings/setup/film", "")},
    {"ExitWritesTheDefaultBrushInItsTextForm", Do().Exit(), Has("settings/setup/brush", "7, 0, 1, 0, 1, 0")},
    {"ExitWritesTheDefaultFontInItsTextForm", Do().Exit(), Has("settings/setup/font", kDefaultFont)},
    {"EndWithoutExitWritesNoSettings", Do().Command(kCommandSquarePen), Has("exists/settings.ini", false)},
    {"FontIsKeptFromRunToRun", Do().SetSettings("[setup]\r\nfont=Some Face, 31, 7, 650\r\n").Exit(),
     Has("settings/setup/font", "Some Face, 31, 7, 650")},
    {"FilmOpensByAMixedCaseExtension", Do().Write("a.Flm", "title\nauthor\n100, 50\n").Open("a.Flm"),
     Has("film/title", "title", "film/width", 100)},
    {"LayerOpensByAnUpperCaseExtension",
     Do().NewCut({.width = 20, .height = 10}).File("a.LYR").Command(kCommandSaveLayer).Open("a.LYR"), Has("cuts/#", 2)},
    {"PathThatDoesNotExistOpensNothing", Do().Open("none.cut").Open("none.lyr"), Has("cuts/#", 0)},
    {"FilmOpenedByExtensionReplacesAModifiedFilmWithoutAsking",
     Do().Write("a.flm", "fresh\nauthor\n100, 50\n").Dialog(kFilmDialog, {{kFilmTitleEdit, "mine"}}),
     Do().Command(kCommandFilmProperties), Has("film/modified", true), Do().Open("a.flm"),
     Has("film/title", "fresh", "film/modified", false)},
    {"DroppedFilmReplacesAModifiedFilmWithoutAsking",
     Do().Write("a.flm", "fresh\nauthor\n100, 50\n").Dialog(kFilmDialog, {{kFilmTitleEdit, "mine"}}),
     Do().Command(kCommandFilmProperties).Line("drop " + Quoted("a.flm")), Has("film/title", "fresh")},
    {"ExitAsksForEachModifiedCutAndThenForTheFilm",
     Do().Dialog(kFilmDialog, {{kFilmTitleEdit, "mine"}}).Command(kCommandFilmProperties).NewCut().NewCut(),
     Do().Answer("no").Answer("no").Answer("no").Exit(), Has("settings/setup/brush", "7, 0, 1, 0, 1, 0")},
    {"ExitAsksNothingWhenNothingIsModified", Do().OpenCut("one.cut", CutFile::WithoutLayers(1)).Exit(),
     Has("settings/setup/film", "")},
    {"FilmSavedDuringExitIsTheOneRemembered",
     Do().Dialog(kFilmDialog, {{kFilmTitleEdit, "mine"}}).Command(kCommandFilmProperties).Answer("yes"),
     Do().File("late.flm").Exit(), Has("exists/late.flm", true, "settings/setup/film", "late.flm")},
};

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
}  // namespace rules
