#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "resources/ids.h"
#include "rules/script_session.h"

namespace {

using nlohmann::json;
using rules::CutFile;
using rules::ScriptSession;

// Lines that can't be carried out when no cut is open.
class LineWithoutObject : public testing::TestWithParam<const char*> {};

TEST_P(LineWithoutObject, EndsTheScriptWithItsLineNumber) {
  ScriptSession session;
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

TEST(Script, ErrorsAreOneLineOnStandardError) {
  ScriptSession session;
  session.Line("nonsense").Run(3);
  const std::string errors = session.Errors();
  ASSERT_FALSE(errors.empty());
  EXPECT_EQ(errors.find('\n'), errors.size() - 1);
}

TEST(Script, LinesAfterExitAreNotRun) {
  ScriptSession session;
  session.Exit().Line("nonsense");
  const int state = session.State();
  session.Run();
  EXPECT_FALSE(session.Exists("state-" + std::to_string(state) + ".json"));
}

TEST(Script, EndWithoutExitAsksNothing) {
  ScriptSession session;
  session.NewCut().Dialog(kFilmDialog, {}).Command(kCommandFilmProperties).Run();
  EXPECT_FALSE(session.Files().size() > 0);
}

TEST(Script, ActivateOfAWindowThatDoesNotExistIsRefused) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::WithoutLayers(1)).Activate(1).Run(3);
}

TEST(Script, LineOfAListThatDoesNotExistIsRefused) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1}, {0})).Select(kLayerList, {1}).Run(3);
}

TEST(Script, UnusedAnswersAreNoFault) {
  ScriptSession session;
  session.Answer("yes").File("cancel").Line("color cancel").Dialog(kCutDialog, {}).Run();
  EXPECT_EQ(session.Errors(), "");
}

TEST(Script, ExitWithACutThatAsksAndNoAnswerIsRefused) {
  ScriptSession session;
  session.NewCut().Exit().Run(3);
}

TEST(Settings, CreditOfTheNewCutIsReadIntoEightyBytes) {
  ScriptSession session;
  session.SetSettings("[OnNewCut]\r\ncredit=" + std::string(100, 'c') + "\r\n");
  session.Dialog(kCutDialog, {}).Dialog(kLayerDialog, {}, "cancel").Command(kCommandNewCut);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["credit"], std::string(79, 'c'));
}

TEST(Settings, TitleAndAuthorOfTheNewFilmAreReadIntoEightyBytes) {
  ScriptSession session;
  session.SetSettings("[OnNewFilm]\r\ntitle=" + std::string(100, 't') + "\r\nauthor=" + std::string(100, 'a') + "\r\n");
  session.Dialog(kFilmDialog, {}).Command(kCommandNewFilm);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["film"]["title"], std::string(79, 't'));
  EXPECT_EQ(session.StateAt(state)["film"]["author"], std::string(79, 'a'));
}

TEST(Settings, KeysOfOtherProgramsStay) {
  ScriptSession session;
  session.SetSettings("[other]\r\nkey=value\r\n[setup]\r\nbrush=8, 0, 1, 0, 1, 0\r\nmine=kept\r\n");
  session.Exit().Run();
  EXPECT_EQ(session.Setting("other", "key"), "value");
  EXPECT_EQ(session.Setting("setup", "mine"), "kept");
  EXPECT_EQ(session.Setting("setup", "brush"), "8, 0, 1, 0, 1, 0");
}

TEST(Settings, SectionsAndKeysAreFoundInAnyCase) {
  ScriptSession session;
  session.SetSettings("[SETUP]\r\nBrush=8, 0, 1, 0, 1, 0\r\n");
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["pen"]["shape"], 8);
}

TEST(WindowList, NumbersOfTheWindowsReachTheDefaultAndActivateThem) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::WithoutLayers(1)).OpenCut("b.cut", CutFile::WithoutLayers(1)).Command(58000);
  const int first = session.State();
  session.Command(58001);
  const int second = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(first)["path"], session.Path("a.cut"));
  EXPECT_EQ(session.Cut(second)["path"], session.Path("b.cut"));
}

}  // namespace
