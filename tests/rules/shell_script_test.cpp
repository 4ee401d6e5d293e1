#include <gtest/gtest.h>

#include <string>

#include "resources/ids.h"
#include "rules/rule_table.h"
#include "rules/script_session.h"

namespace rules {
namespace {

using Script = SessionTest;

TEST_F(Script, UnusedAnswersAreNoFault) {
  session.Answer("yes").File("cancel").Line("color cancel").Dialog(kCutDialog, {}).Run();
  EXPECT_EQ(session.Errors(), "");
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
