#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "resources/ids.h"
#include "rules/rule_table.h"
#include "rules/script_session.h"

namespace rules {
namespace {

using nlohmann::json;

// Lines that can't be carried out when no cut is open.
class LineWithoutObject : public SessionTest, public testing::WithParamInterface<const char*> {};

TEST_P(LineWithoutObject, EndsTheScriptWithItsLineNumber) {
  session.Line("# a comment").Line("").Line(GetParam());
  const int state = session.State();
  session.Run(3);
  EXPECT_NE(session.Errors().find("script.txt:3: "), std::string::npos) << session.Errors();
  EXPECT_FALSE(session.Exists("state-" + std::to_string(state) + ".json"));
}

INSTANTIATE_TEST_SUITE_P(Script, LineWithoutObject,
                         testing::Values("mouse move 1 2", "mouse ldown 1 2", "char a", "close", "key Nothing",
                                         "nonsense", "select 10003 0", "select 10004 0", "select 10099 0",
                                         "dblclick 10003 0", "panel 10099 x", "activate 0", "focus cut", "focus 10099",
                                         "click 10002", "command", "command x", "mouse jump 1 2"));

using Script = SessionTest;

TEST_F(Script, ErrorsAreOneLineOnStandardError) {
  session.Line("nonsense").Run(3);
  const std::string errors = session.Errors();
  ASSERT_FALSE(errors.empty());
  EXPECT_EQ(errors.find('\n'), errors.size() - 1);
}

TEST_F(Script, LinesAfterExitAreNotRun) {
  session.Exit().Line("nonsense");
  EXPECT_FALSE(session.Exists("state-" + std::to_string(kNow) + ".json"));
}

TEST_F(Script, EndWithoutExitAsksNothing) {
  session.NewCut().Dialog(kFilmDialog, {}).Command(kCommandFilmProperties).Run();
  EXPECT_FALSE(session.Files().size() > 0);
}

TEST_F(Script, ActivateOfAWindowThatDoesNotExistIsRefused) {
  session.OpenCut("a.cut", CutFile::WithoutLayers(1)).Activate(1).Run(3);
}

TEST_F(Script, LineOfAListThatDoesNotExistIsRefused) {
  session.OpenCut("a.cut", CutFile::Showing({1}, {0})).Select(kLayerList, {1}).Run(3);
}

TEST_F(Script, UnusedAnswersAreNoFault) {
  session.Answer("yes").File("cancel").Line("color cancel").Dialog(kCutDialog, {}).Run();
  EXPECT_EQ(session.Errors(), "");
}

TEST_F(Script, ExitWithACutThatAsksAndNoAnswerIsRefused) {
  session.NewCut().Exit().Run(3);
}

const Rules<SessionTest, "Settings"> kSettingsRules = {
    {"TitleAndAuthorOfTheNewFilmAreReadIntoEightyBytes",
     Do().SetSettings("[OnNewFilm]\r\ntitle=" + std::string(100, 't') + "\r\nauthor=" + std::string(100, 'a') + "\r\n"),
     Do().Dialog(kFilmDialog, {}).Command(kCommandNewFilm),
     Has("film/title", std::string(79, 't'), "film/author", std::string(79, 'a'))},
    {"CreditOfTheNewCutIsReadIntoEightyBytes",
     Do().SetSettings("[OnNewCut]\r\ncredit=" + std::string(100, 'c') + "\r\n").Dialog(kCutDialog, {}),
     Do().Dialog(kLayerDialog, {}, "cancel").Command(kCommandNewCut), Has("cut/credit", std::string(79, 'c'))},
    {"KeysOfOtherProgramsStay",
     Do().SetSettings("[other]\r\nkey=value\r\n[setup]\r\nbrush=8, 0, 1, 0, 1, 0\r\nmine=kept\r\n").Exit(),
     Has("settings/other/key", "value", "settings/setup/mine", "kept", "settings/setup/brush", "8, 0, 1, 0, 1, 0")},
    {"SectionsAndKeysAreFoundInAnyCase", Do().SetSettings("[SETUP]\r\nBrush=8, 0, 1, 0, 1, 0\r\n"),
     Has("pen/shape", 8)},
};

const Rules<SessionTest, "WindowList"> kWindowListRules = {
    {"NumbersOfTheWindowsReachTheDefaultAndActivateThem",
     Do().OpenCut("a.cut", CutFile::WithoutLayers(1)).OpenCut("b.cut", CutFile::WithoutLayers(1)).Command(58000),
     Has("cut/path", "a.cut"), Do().Command(58001), Has("cut/path", "b.cut")},
};

}  // namespace
}  // namespace rules
