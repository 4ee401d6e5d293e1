#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "platform/text.h"
#include "resources/ids.h"
#include "support/places.h"
#include "support/test_scripts.h"
#include "support/test_streams.h"

namespace sorvel {
namespace {

using namespace teststreams;
using Json = nlohmann::ordered_json;

// A cut of 8 by 4 pixels with one blank cell in a window of that size: window and canvas coordinates agree.
const char kSmallCut[] =
    "client 8 4\n"
    "dialog 107 1002=8 1001=4 1041=24 1055=on ok\n"
    "dialog 106 1000=A ok\n"
    "command 40050\n";

// What a script leaves in its file "s.json".
Json RunForState(const Folder& folder, const std::string& lines) {
  const Answer run = RunScript(folder, lines + "state s.json\n");
  EXPECT_EQ(run.status, 0) << run;
  EXPECT_EQ(run.err, "");
  const Bytes text = folder.Read("s.json");
  return Json::parse(text.begin(), text.end(), nullptr, false);
}

Bytes TextFile(const std::string& text) {
  return Bytes(text.begin(), text.end());
}

std::string Settings(const Folder& folder) {
  const Bytes bytes = folder.Read("settings.ini");
  std::string text;
  EXPECT_TRUE(platform::ShiftJisToUtf8(std::string(bytes.begin(), bytes.end()), &text));
  return text;
}

// The line can't be carried out, and the message names it.
void ExpectRefused(const std::string& before, const std::string& line, int32_t number) {
  SCOPED_TRACE(line);
  const Folder folder;
  const Answer run = RunScript(folder, before + line + "\nstate reached.json\n");
  EXPECT_EQ(run.status, 3) << run;
  EXPECT_EQ(run.out, "");
  const std::string start = "test.sorvel:" + std::to_string(number) + ": ";
  EXPECT_EQ(run.err.rfind(start, 0), 0u) << run;
  EXPECT_GT(run.err.size(), start.size() + 1);
  EXPECT_EQ(run.err.find('\n'), run.err.size() - 1);
  EXPECT_FALSE(folder.Has("reached.json"));
  // Nothing is written of what the end of a run writes.
  EXPECT_EQ(Settings(folder).find("[setup]"), std::string::npos);
}

std::vector<std::string> Keys(const Json& object) {
  std::vector<std::string> keys;
  for (const auto& [key, value] : object.items()) keys.push_back(key);
  return keys;
}

// Usage and files.

class Run : public testing::Test {
 protected:
  const Folder folder;
};

TEST_F(Run, HelpAnswers) {
  const Answer run = folder.Sorvel({"run", "--help"});
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.out.find("sorvel run SCRIPT [--settings FILE] [--recovery FOLDER]"), std::string::npos);
}

TEST_F(Run, WrongUsageIsStatusTwo) {
  folder.Write("a.sorvel", {});
  for (const std::vector<std::string>& words : {std::vector<std::string>{"run"},
                                                {"run", "a.sorvel", "b.sorvel"},
                                                {"run", "a.sorvel", "--settings"},
                                                {"run", "a.sorvel", "--nonsense"}}) {
    const Answer run = folder.Sorvel(words);
    EXPECT_EQ(run.status, 2) << run;
    EXPECT_TRUE(run.IsOneLineAbout("")) << run;
  }
}

TEST_F(Run, AScriptThatCantBeReadIsStatusOne) {
  folder.MakeFolder("d.sorvel");
  for (const char* name : {"no.sorvel", "d.sorvel"}) {
    const Answer run = folder.Sorvel({"run", name});
    EXPECT_EQ(run.status, 1) << run;
    EXPECT_TRUE(run.IsOneLineAbout(name)) << run;
  }
}

TEST_F(Run, AnEmptyScriptEndsWithoutWritingSettings) {
  const Answer run = RunScript(folder, "");
  EXPECT_EQ(run.status, 0) << run;
  EXPECT_EQ(run.out + run.err, "");
  EXPECT_EQ(folder.List(), "test.sorvel");
}

TEST_F(Run, AScriptWithoutExitAsksNothing) {
  const Answer run = RunScript(folder, std::string(kSmallCut) + "mouse ldown 2 2\n");
  EXPECT_EQ(run.status, 0) << run;
  EXPECT_EQ(run.err, "");
  // The dialog of a new cut writes its own keys at once; what the end of a run writes is missing.
  EXPECT_NE(Settings(folder).find("width=8"), std::string::npos);
  EXPECT_EQ(Settings(folder).find("[setup]"), std::string::npos);
}

TEST_F(Run, OutputsThatCantBeWrittenAreNamed) {
  for (const char* action : {"state no/s.json", "view no/s.json", "screen no/s.json", "player no/s.json"}) {
    SCOPED_TRACE(action);
    const Folder own;
    const Answer run = RunScript(own, std::string(kSmallCut) + action + "\nstate reached.json\n");
    EXPECT_EQ(run.status, 1) << run;
    EXPECT_TRUE(run.IsOneLineAbout("no/s.json")) << run;
    EXPECT_FALSE(own.Has("reached.json"));
  }
}

TEST_F(Run, APictureForTheClipboardThatCantBeReadIsNamed) {
  const Answer run = RunScript(folder, "clipboard no.bmp\n");
  EXPECT_EQ(run.status, 1) << run;
  EXPECT_TRUE(run.IsOneLineAbout("no.bmp")) << run;
}

// Lines and words.

TEST_F(Run, CommentsAndBlankLinesCountAsLines) {
  ExpectRefused("# a comment\n\n   \t\n\r\n", "nonsense", 5);
}

TEST_F(Run, LinesMayEndInCarriageReturns) {
  EXPECT_EQ(RunScript(folder, "client 20 10\r\nstate s.json\r\n").status, 0);
  EXPECT_TRUE(folder.Has("s.json"));
}

TEST_F(Run, TheLastLineNeedsNoEnd) {
  EXPECT_EQ(RunScript(folder, "state s.json").status, 0);
  EXPECT_TRUE(folder.Has("s.json"));
}

TEST_F(Run, QuotedWordsHoldBlanksAndEscapes) {
  const Json state = RunForState(folder, std::string(kSmallCut) + "panel 10006 \"a  \\\"b\\\" \\\\ #c\"\n");
  EXPECT_EQ(state["panels"]["10006"], "a  \"b\" \\ #c");
}

TEST_F(Run, AnEmptyWordIsWrittenInQuotes) {
  EXPECT_EQ(RunForState(folder, std::string(kSmallCut) + "panel 10005 \"\"\n")["panels"]["10005"], "");
}

TEST_F(Run, TextGoesInAsShiftJis) {
  // A frame's comment is cut to 255 bytes; 表 has two in Shift JIS and three in UTF-8.
  std::string comment;
  for (int i = 0; i < 127; ++i) comment += "表";
  const Json state = RunForState(folder, std::string(kSmallCut) + "panel 10006 " + comment + "\nkey F3\n");
  EXPECT_EQ(state["cuts"][0]["frames"][0]["comment"], comment);
}

TEST_F(Run, LinesThatCantBeTakenApartAreRefused) {
  ExpectRefused("", "state \"s.json", 1);
  ExpectRefused("", "state \"s\\x.json\"", 1);
  ExpectRefused("", "state \"s\\", 1);
  ExpectRefused("", "panel 10006 \xFF", 1);
}

TEST_F(Run, TextThatShiftJisLacksIsRefused) {
  ExpectRefused(kSmallCut, "panel 10006 \xF0\x9F\x98\x80", 5);
  ExpectRefused("", "open \xF0\x9F\x98\x80.cut", 1);
}

TEST_F(Run, UnknownActionsAndWrongWordsAreRefused) {
  for (const char* line : {"draw",
                           "client 640",
                           "client 640 480 1",
                           "client -1 480",
                           "client 30000 30000",
                           "command",
                           "command F4",
                           "command 70000",
                           "command 40050x",
                           "key",
                           "char ab",
                           "char \"\"",
                           "timer 1",
                           "click",
                           "click 10002",
                           "focus",
                           "focus 10001",
                           "focus 10008",
                           "focus film",
                           "focus 10099",
                           "panel 10002",
                           "panel 10003 1",
                           "panel 10009 1",
                           "panel 10099 x",
                           "panel 10006 \"a\\nb\"",
                           "select 10003",
                           "select 10002 0",
                           "select 10099 0",
                           "dblclick 10003",
                           "dialog 107",
                           "dialog ok",
                           "dialog 107 1002=1",
                           "dialog 107 1002 ok",
                           "dialog 107 =1 ok",
                           "dialog cut ok",
                           "file",
                           "file \"\"",
                           "answer",
                           "answer maybe",
                           "color 12345",
                           "color 1234567",
                           "color 12345g",
                           "color -12345",
                           "tick",
                           "tick -1",
                           "tick many",
                           "close now",
                           "state",
                           "exit now"}) {
    ExpectRefused("", line, 1);
  }
  for (const char* line :
       {"mouse click 1 1", "mouse ldown 1", "mouse ldown one 1", "mouse ldown 40000 1", "mouse ldown 1 1 alt",
        "mouse ldown 1 1 ctrl shift ctrl", "mouse jump 1 2", "picker ldown 1 1 ctrl", "scroll x lineup", "scroll h up",
        "scroll h thumbtrack far", "scroll h thumbtrack 65536", "activate one"}) {
    ExpectRefused(kSmallCut, line, 5);
  }
}

TEST_F(Run, ActionsWithoutAnObjectAreRefused) {
  for (const char* line :
       {"mouse move 1 1", "char a", "close", "scroll h lineup", "focus cut", "view v.bmp", "screen s.bmp", "activate 0",
        "select 10003 0", "select 10004 0", "dblclick 10003 0", "save-clipboard c"}) {
    ExpectRefused("", line, 1);
  }
  for (const char* line : {"activate 1", "activate -1", "select 10004 1", "select 10004 -1", "dblclick 10004 1",
                           "select 10004 one", "select 10003 0"}) {
    ExpectRefused(kSmallCut, line, 5);
  }
}

TEST_F(Run, UnknownKeysAreRefused) {
  for (const char* key : {"F0", "F25", "F04", "FF", "Alt+F4", "Shift+", "Ctrl+Ctrl+N", "Return", "enter", "", "-"}) {
    ExpectRefused("", std::string("key \"") + key + "\"", 1);
  }
}

// Answers.

TEST_F(Run, DialogsWithoutAnAnswerAreRefused) {
  ExpectRefused("", "command 40050", 1);
  ExpectRefused("dialog 107 ok\n", "command 40050", 2);
  ExpectRefused("", "command 40056", 1);
  ExpectRefused("", "command 40137", 1);
  ExpectRefused(kSmallCut, "close", 5);
  ExpectRefused(kSmallCut, "command 40122", 5);
  ExpectRefused(kSmallCut, "exit", 5);
}

TEST_F(Run, AnAnswerForAnotherDialogIsRefused) {
  ExpectRefused("dialog 106 ok\n", "command 40050", 2);
}

TEST_F(Run, AControlThatADialogLacksIsRefused) {
  ExpectRefused("dialog 108 1002=4 ok\n", "command 40040", 2);
}

TEST_F(Run, AnswersAreQueuedByKind) {
  const Json state = RunForState(folder, std::string("file b.cut\nanswer yes\n") + kSmallCut + "close\n");
  EXPECT_TRUE(state["cuts"].empty());
  EXPECT_TRUE(folder.Has("b.cut"));
}

TEST_F(Run, AFileWithoutExtensionGetsThatOfTheDialog) {
  const Json state = RunForState(folder, std::string(kSmallCut) + "file ./x/../a\ncommand 40052\n");
  EXPECT_EQ(state["cuts"][0]["path"], folder.Path("a.cut"));
  EXPECT_TRUE(folder.Has("a.cut"));
}

// Windows, keys and the mouse.

TEST_F(Run, CutWindowsAre640By480AtFirst) {
  const Json state = RunForState(folder, "dialog 107 ok\ndialog 106 ok\ncommand 40050\nscreen s.bmp\n");
  // A canvas of 240 by 180 is smaller than the window: the scroll bars put the position below 0.
  EXPECT_EQ(state["cuts"][0]["scrollX"], 240 - 640);
  EXPECT_EQ(state["cuts"][0]["scrollY"], 180 - 480);
  const Bytes screen = folder.Read("s.bmp");
  ASSERT_GE(screen.size(), 54u);
  EXPECT_EQ(U32At(screen, 18), 640u);
  EXPECT_EQ(U32At(screen, 22), 480u);
}

TEST_F(Run, ClientSizesEveryWindow) {
  const Json state = RunForState(folder, std::string(kSmallCut) + kSmallCut + "client 10 6\n");
  for (const Json& cut : state["cuts"]) {
    EXPECT_EQ(cut["scrollX"], -2);
    EXPECT_EQ(cut["scrollY"], -2);
  }
}

TEST_F(Run, KeysWithoutACommandDoNothing) {
  // Ctrl+F2 is no accelerator, nor is a letter alone: only char types.
  const std::string keys = "key Ctrl+F2\nkey Shift+Ctrl+F2\nkey Ctrl+Shift+Enter\nkey F24\nkey 2\nkey a\nkey Space\n";
  const Json state = RunForState(folder, std::string(kSmallCut) + "command 40004\n" + keys);
  EXPECT_EQ(state["cuts"][0]["currentFrame"], 1);
  EXPECT_EQ(state["frame"]["currentTool"], kToolFreePen);
  EXPECT_EQ(state["frame"]["panelsShown"], true);
}

TEST_F(Run, ShiftAndControlPan) {
  const std::string large =
      "client 8 4\n"
      "dialog 107 1002=16 1001=8 ok\n"
      "dialog 106 1000=A ok\n"
      "command 40050\n";
  const Json state =
      RunForState(folder, large + "mouse move 6 3 ctrl shift\nmouse move 2 1 shift ctrl\nmouse move 2 1\n");
  EXPECT_EQ(state["cuts"][0]["scrollX"], 4);
  EXPECT_EQ(state["cuts"][0]["scrollY"], 2);
}

TEST_F(Run, TheTimerOpensThePopupOfTools) {
  // What the popup shows isn't part of the state; a timer that isn't set is no error.
  EXPECT_EQ(RunScript(folder, "timer\n").status, 0);
  EXPECT_EQ(RunScript(folder, std::string(kSmallCut) + "mouse rdown 1 1\ntimer\nmouse rup 1 1\ntimer\n").status, 0);
}

// Panels and lists.

TEST_F(Run, AReadOnlyEditKeepsItsText) {
  const Json state = RunForState(folder, std::string(kSmallCut) + "click 10009\npanel 10002 7\n");
  EXPECT_EQ(state["panels"]["10002"], "1");
  EXPECT_EQ(state["panels"]["10009"]["checked"], true);
}

TEST_F(Run, SelectMakesALayerCurrent) {
  const std::string layers = std::string(kSmallCut) + "dialog 106 1000=B ok\ncommand 40014\n";
  EXPECT_EQ(RunForState(folder, layers)["cuts"][0]["frames"][0]["currentRecord"], 1);
  const Json state = RunForState(folder, layers + "focus cut\nselect 10004 0\n");
  EXPECT_EQ(state["cuts"][0]["frames"][0]["currentRecord"], 0);
  EXPECT_EQ(state["panels"]["10004"]["selected"], Json::array({0}));
  // The focus stays in the cut window.
  EXPECT_EQ(state["frame"]["status"], "");
}

TEST_F(Run, SelectTakesExactlyTheseLines) {
  folder.Write("f.flm", TextFile("t\na\n8, 4\na.cut\nb.cut\nc.cut\n"));
  const Json state = RunForState(folder, "open f.flm\nselect 10003 2 1\n");
  EXPECT_EQ(state["panels"]["10003"]["selected"], Json({1, 2}));
  EXPECT_EQ(state["panels"]["10003"]["caret"], 1);
}

// Documents.

TEST_F(Run, AnAbsolutePathStaysAsItIs) {
  folder.Write("a.cut", SmallCutFile());
  const std::string path = folder.path + "/./a.cut";
  EXPECT_EQ(RunForState(folder, "open " + path + "\n")["cuts"][0]["path"], path);
}

TEST_F(Run, CutsStandInTheOrderOfOpening) {
  for (const char* name : {"a.cut", "b.cut", "c.cut"}) folder.Write(name, SmallCutFile());
  const std::string open = "open c.cut\nopen a.cut\nopen b.cut\n";
  const auto titles = [&](const std::string& lines) {
    Json list = Json::array();
    const Json state = RunForState(folder, open + lines);
    for (const Json& cut : state["cuts"]) {
      list.push_back(cut["title"].get<std::string>() + (cut["active"] ? "!" : ""));
    }
    return list;
  };
  EXPECT_EQ(titles(""), Json({"c.cut", "a.cut", "b.cut!"}));
  EXPECT_EQ(titles("activate 0\n"), Json({"c.cut!", "a.cut", "b.cut"}));
  EXPECT_EQ(titles("activate 1\nclose\nopen a.cut\nactivate 0\n"), Json({"c.cut!", "b.cut", "a.cut"}));
}

TEST_F(Run, TicksAreThoseOfTheTimer) {
  folder.Write("a.cut", SmallCutFile());
  const auto player = [&](const std::string& lines) { return RunForState(folder, "open a.cut\n" + lines)["player"]; };
  EXPECT_EQ(player("tick 3\n"), Json({{"visible", false}, {"title", ""}, {"timer", false}}));
  EXPECT_EQ(player("key F5\ntick 1000\n"), Json({{"visible", true}, {"title", "75 byte"}, {"timer", true}}));
  EXPECT_EQ(player("key F5\nkey Esc\ntick 1\n"), Json({{"visible", false}, {"title", "75 byte"}, {"timer", false}}));
  // The stream lies beside the cut.
  EXPECT_EQ(folder.Read("a.ca"), SmallCutCompiled());
}

// Pictures.

TEST_F(Run, ViewIsThatOfTheViewCommand) {
  folder.Write("a.cut", SmallCutFile());
  EXPECT_EQ(RunScript(folder, "open a.cut\nview v.bmp\n").status, 0);
  EXPECT_EQ(folder.Sorvel({"view", "a.cut", "2", "expected.bmp"}).status, 0);
  EXPECT_FALSE(folder.Read("v.bmp").empty());
  EXPECT_EQ(folder.Read("v.bmp"), folder.Read("expected.bmp"));
}

TEST_F(Run, ScreenShowsTheViewInItsColours) {
  EXPECT_EQ(RunScript(folder, std::string("client 3 2\n") + "dialog 107 1002=3 1001=2 ok\ndialog 106 1000=A ok\n" +
                                  "command 40050\nmouse ldown 2 0\nmouse lup 2 0\nscreen s.bmp\n")
                .status,
            0);
  const Bytes rows = Hex("FFFFE1 FFFFE1 FFFFE1 000000  FFFFE1 FFFFE1 000000 000000");
  EXPECT_EQ(folder.Read("s.bmp"), Bmp(3, 2, 24, {}, rows));
}

TEST_F(Run, ScreenShowsOverlays) {
  const std::string band = std::string(kSmallCut) + "screen before.bmp\ncommand 40037\nmouse ldown 1 1\n";
  EXPECT_EQ(RunScript(folder, band + "mouse move 6 1\nscreen with.bmp\nmouse rup 6 1\nmouse move 7 3\ncommand 40029\n" +
                                  "screen after.bmp\n")
                .status,
            0);
  EXPECT_NE(folder.Read("with.bmp"), folder.Read("before.bmp"));
  EXPECT_EQ(folder.Read("after.bmp"), folder.Read("before.bmp"));
}

TEST_F(Run, PlayerIsTheClientAreaOfTheAnimation) {
  folder.Write("a.cut", SmallCutFile());
  EXPECT_EQ(RunScript(folder, "open a.cut\nkey F4\nplayer p.pgm\n").status, 0);
  EXPECT_EQ(folder.Read("p.pgm"), Join({TextFile("P5\n4 2\n255\n"), Hex("00 55 AA FF  FF 00 FF FF")}));
}

// State.

TEST_F(Run, StateHasItsKeysInTheirOrder) {
  folder.Write("f.flm", TextFile("t\na\n8, 4\na.cut\n"));
  const Json state = RunForState(folder, std::string("open f.flm\n") + kSmallCut);
  using Names = std::vector<std::string>;
  EXPECT_EQ(Keys(state), (Names{"frame", "panels", "pen", "film", "cuts", "player"}));
  EXPECT_EQ(Keys(state["frame"]), (Names{"title", "status", "currentTool", "previousTool", "panelsShown",
                                         "statusBarVisible", "toolBarVisible", "checked"}));
  EXPECT_EQ(Keys(state["panels"]), (Names{"10002", "10005", "10006", "10007", "10009", "10003", "10004"}));
  EXPECT_EQ(Keys(state["panels"]["10009"]), (Names{"text", "checked"}));
  EXPECT_EQ(Keys(state["panels"]["10003"]), (Names{"lines", "selected", "caret"}));
  EXPECT_EQ(Keys(state["panels"]["10004"]), (Names{"lines", "selected", "caret"}));
  EXPECT_EQ(Keys(state["pen"]), (Names{"shape", "tone", "colorA", "colorB", "penSign", "muraRemoval", "maskFlags",
                                       "gridWidth", "gridHeight"}));
  EXPECT_EQ(Keys(state["film"]), (Names{"path", "title", "author", "width", "height", "modified", "cuts"}));
  EXPECT_EQ(Keys(state["film"]["cuts"][0]), (Names{"name", "open"}));
  EXPECT_EQ(Keys(state["cuts"][0]), (Names{"path",          "title",         "active",          "width",
                                           "height",        "frameWidth",    "frameHeight",     "fps",
                                           "credit",        "antialias",     "currentFrame",    "modified",
                                           "imagesStale",   "timingStale",   "viewFlags",       "lineEmphasis",
                                           "floatingPaste", "zoomNumerator", "zoomDenominator", "scrollX",
                                           "scrollY",       "selection",     "undoRect",        "view",
                                           "frames",        "layers"}));
  EXPECT_EQ(Keys(state["cuts"][0]["frames"][0]),
            (Names{"time", "loop", "x", "y", "brightness", "comment", "currentRecord", "records"}));
  EXPECT_EQ(Keys(state["cuts"][0]["frames"][0]["records"][0]), (Names{"layer", "cell", "x", "y"}));
  EXPECT_EQ(Keys(state["cuts"][0]["layers"][0]), (Names{"name", "width", "height", "followFrame", "cells"}));
  EXPECT_EQ(Keys(state["player"]), (Names{"visible", "title", "timer"}));
}

TEST_F(Run, AnEmptyLayerNameIsNoNullName) {
  folder.Write("a.cut", CutFile(4, 2, "", {LayerBlock("", {Hex("12 34 41 00")})},
                                {FrameRecordBytes(0, 0, 1, 1, 50, "", {{0, 0, 0, 0}})}));
  const Json state = RunForState(folder, "open a.cut\n");
  EXPECT_EQ(state["cuts"][0]["layers"][0]["name"], "");
  EXPECT_EQ(state["panels"]["10004"]["lines"], Json({" (1/1)"}));
}

TEST_F(Run, TwoStatesInARowAreEqual) {
  EXPECT_EQ(RunScript(folder, std::string(kSmallCut) + "command 40004\nstate a.json\nstate b.json\n").status, 0);
  EXPECT_EQ(folder.Read("a.json"), folder.Read("b.json"));
}

// The end.

TEST_F(Run, ExitWritesTheSettings) {
  const Answer run = RunScript(folder, "command 40074\nchar_is_not_reached\n");
  EXPECT_EQ(run.status, 3);
  EXPECT_FALSE(folder.Has("settings.ini"));
  EXPECT_EQ(RunScript(folder, "command 40074\nexit\nstate not_reached.json\n").status, 0);
  EXPECT_FALSE(folder.Has("not_reached.json"));
  EXPECT_NE(Settings(folder).find("brush=7, 0, 1, 0, 1, 1"), std::string::npos) << Settings(folder);
  EXPECT_NE(Settings(folder).find("font=ＭＳ Ｐゴシック, 24, 12, 400"), std::string::npos) << Settings(folder);
  EXPECT_NE(Settings(folder).find("film="), std::string::npos) << Settings(folder);
}

TEST_F(Run, TheExitCommandEndsTheScriptToo) {
  EXPECT_EQ(RunScript(folder, "command 40001\nstate not_reached.json\n").status, 0);
  EXPECT_FALSE(folder.Has("not_reached.json"));
  EXPECT_TRUE(folder.Has("settings.ini"));
}

TEST_F(Run, WithoutSettingsTheFileBesideTheProgramCounts) {
  std::error_code error;
  std::filesystem::copy_file(kProgramPath, folder.Path("program"), error);
  ASSERT_FALSE(error);
  folder.Write("a.sorvel", TextFile("exit\n"));
  EXPECT_EQ(std::system(("cd / && " + folder.Path("program") + " run " + folder.Path("a.sorvel")).c_str()), 0);
  EXPECT_EQ(folder.List(), "a.sorvel program program.ini");
}

}  // namespace
}  // namespace sorvel
