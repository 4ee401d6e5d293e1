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

json FrameOf(const ScriptSession& session, int state) {
  json whole = session.StateAt(state);
  return whole["frame"];
}

std::vector<int> Checked(const ScriptSession& session, int state) {
  std::vector<int> ids;
  json frame = FrameOf(session, state);
  for (const json& id : frame["checked"]) ids.push_back(id.is_number_integer() ? id.get<int>() : -1);
  return ids;
}

bool IsChecked(const ScriptSession& session, int state, int id) {
  const std::vector<int> ids = Checked(session, state);
  return std::find(ids.begin(), ids.end(), id) != ids.end();
}

std::string Status(const ScriptSession& session, int state) {
  json frame = FrameOf(session, state);
  return frame["status"].is_string() ? frame["status"].get<std::string>() : "(none)";
}

CutFile OneRecord() {
  return CutFile::Showing({1, 2}, {0});
}

class Tool : public testing::TestWithParam<int> {};

TEST_P(Tool, IsSelectedByItsCommandWithoutACut) {
  ScriptSession session;
  session.Command(kToolEraser).Command(GetParam() == kToolEraser ? kToolFreePen : GetParam());
  const int state = session.State();
  session.Run();
  EXPECT_EQ(FrameOf(session, state)["currentTool"], GetParam() == kToolEraser ? kToolFreePen : GetParam());
  EXPECT_EQ(FrameOf(session, state)["previousTool"], kToolEraser);
}

TEST_P(Tool, AloneOfTheToolsIsChecked) {
  ScriptSession session;
  session.Command(GetParam());
  const int state = session.State();
  session.Run();
  for (const int id : {kToolFramePosition, kToolLayerPosition, kToolZoom, kToolFreePen, kToolFill, kToolLine,
                       kToolCurve, kToolRectangle, kToolAreaSelect, kToolEraser, kToolGradient, kToolText, kToolEdging,
                       kToolMosaic, kToolFocusLines, kToolParallelLines}) {
    EXPECT_EQ(IsChecked(session, state, id), id == GetParam()) << id;
  }
}

INSTANTIATE_TEST_SUITE_P(Routing, Tool,
                         testing::Values(kToolFramePosition, kToolLayerPosition, kToolZoom, kToolFreePen, kToolFill,
                                         kToolLine, kToolCurve, kToolRectangle, kToolAreaSelect, kToolEraser,
                                         kToolGradient, kToolText, kToolEdging, kToolMosaic, kToolFocusLines,
                                         kToolParallelLines));

TEST(SelectTool, CurrentToolAgainKeepsThePreviousOne) {
  ScriptSession session;
  session.Command(kToolEraser).Command(kToolLine).Command(kToolLine);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(FrameOf(session, state)["currentTool"], kToolLine);
  EXPECT_EQ(FrameOf(session, state)["previousTool"], kToolEraser);
}

TEST(SelectTool, CurrentToolAgainSendsNoPulseSoThatASelectionStays) {
  ScriptSession session;
  session.NewCut().Command(kToolAreaSelect).LeftDrag(306, 230, 316, 240);
  const int before = session.State();
  session.Command(kToolAreaSelect);
  const int after = session.State();
  session.Run();
  EXPECT_NE(session.Cut(before)["selection"], json::array({0, 0, 0, 0}));
  EXPECT_EQ(session.Cut(after)["selection"], session.Cut(before)["selection"]);
}

TEST(SelectTool, AnotherToolSendsThePulseToTheOldOneSoThatItsSelectionEnds) {
  ScriptSession session;
  session.NewCut().Command(kToolAreaSelect).LeftDrag(306, 230, 316, 240).Command(kToolEraser);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["selection"][0], session.Cut(state)["selection"][2]);
}

class NumberWithoutHandler : public testing::TestWithParam<int> {};

TEST_P(NumberWithoutHandler, IsIgnored) {
  ScriptSession session;
  session.OpenCut("a.cut", OneRecord());
  const int before = session.State();
  session.Command(GetParam());
  const int after = session.State();
  session.Run();
  EXPECT_TRUE(session.StateAt(before).is_object());
  EXPECT_EQ(session.StateAt(after), session.StateAt(before));
}

INSTANTIATE_TEST_SUITE_P(Routing, NumberWithoutHandler,
                         testing::Values(kTextCircle, kTextStoryboard, kTextSearch, 40002, 40003, 40018, 40020, 40021,
                                         40035, 40036, 40039, 40055, 40078, 40079, 40087, 40089, 40098, 40100, 40107,
                                         40108, 40111, 40114, 40120, 40121, 40123, 40125, 40128, 40129, 40130,
                                         kTextSaveQuestion, kTextCloseAllQuestion, kTextDeleteQuestion, kTextAbout,
                                         40143, kStatusBarId, 1, 65535));

// Every command on a cut, a frame, a layer or a cell, and the film commands that need cuts in the film or an active
// cut.
class CommandWithoutItsObject : public testing::TestWithParam<int> {};

TEST_P(CommandWithoutItsObject, DoesNothingAndSaysNothing) {
  ScriptSession session;
  const int before = session.State();
  session.Command(GetParam());
  const int after = session.State();
  session.Run();
  EXPECT_TRUE(session.StateAt(before).is_object());
  EXPECT_EQ(session.StateAt(after), session.StateAt(before));
  EXPECT_EQ(session.Errors(), "");
}

INSTANTIATE_TEST_SUITE_P(
    Routing, CommandWithoutItsObject,
    testing::Values(kCommandAddFrame, kCommandInsertFrame, kCommandDeleteFrame, kCommandPreviousFrame,
                    kCommandNextFrame, kCommandDeleteCell, kCommandInsertCell, kCommandAddCell, kCommandPreviousCell,
                    kCommandNextCell, kCommandAddLayer, kCommandDeleteLayer, kCommandLayerUp, kCommandLayerDown,
                    kCommandLayerProperties, kCommandToSketch, kCommandEraseSketch, kCommandPlay, kCommandStop,
                    kCommandUndo, kCommandShowPrevious, kCommandShowNext, kCommandCurrentCellOnly, kCommandFirstFrame,
                    kCommandLastFrame, kCommandFirstCell, kCommandLastCell, kCommandAddCutToFilm,
                    kCommandInsertCutIntoFilm, kCommandRemoveCutFromFilm, kCommandSaveCutAs, kCommandPlaySelection,
                    kCommandBlankCell, kCommandCopy, kCommandPaste, kCommandCut, kCommandEraseLayerSketch,
                    kCommandSaveLayer, kCommandOverwriteLayer, kCommandLayerRamp, kCommandMergeDown,
                    kCommandExportBitmap, kCommandCutProperties, kCommandInsertLayer, kCommandExportFilm,
                    kCommandOverwriteCut, kCommandPasteFromClipboard, kCommandEraseCell, kCommandBrightnessRamp,
                    kCommandAddFrames, kCommandDimOthers, kCommandMuraRemoval, kCommandFrameRamp, kCommandLineEmphasis,
                    kCommandBlankAll, kCommandNextKeyFrame, kCommandPreviousKeyFrame, kCommandAllKeyFrames,
                    kCommandFlipHorizontal, kCommandFlipVertical, kCommandFrameSize, kCommandPreview,
                    kCommandDeleteCuts, kCommandRenameCut, kCommandCopyToClipboard, kCommandRandomDots,
                    kCommandDrawGrid, kCommandDeleteFrames));

TEST(Routing, ExplanationAndVersionAreBoxesWithoutAQuestion) {
  ScriptSession session;
  session.Command(kCommandExplainTool).Command(kCommandAbout);
  const int state = session.State();
  session.Run();
  EXPECT_TRUE(session.StateAt(state).is_object());
}

TEST(CheckMarks, WithoutACutOnlyToolAndBarsAreChecked) {
  ScriptSession session;
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Checked(session, state), (std::vector<int>{kToolFreePen, kCommandStatusBar, kCommandToolBar}));
}

TEST(CheckMarks, OfANewCutHaveTheCornerRemovalToo) {
  ScriptSession session;
  session.OpenCut("a.cut", OneRecord());
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Checked(session, state),
            (std::vector<int>{kToolFreePen, kCommandStatusBar, kCommandToolBar, kCommandMuraRemoval}));
}

class SwitchOfTheCut : public testing::TestWithParam<int> {};

TEST_P(SwitchOfTheCut, FlipsItsCheckMark) {
  ScriptSession session;
  session.OpenCut("a.cut", OneRecord());
  const int before = session.State();
  session.Command(GetParam());
  const int once = session.State();
  session.Command(GetParam());
  const int twice = session.State();
  session.Run();
  EXPECT_EQ(IsChecked(session, before, GetParam()), GetParam() == kCommandMuraRemoval);
  EXPECT_EQ(IsChecked(session, once, GetParam()), GetParam() != kCommandMuraRemoval);
  EXPECT_EQ(IsChecked(session, twice, GetParam()), GetParam() == kCommandMuraRemoval);
}

INSTANTIATE_TEST_SUITE_P(Routing, SwitchOfTheCut,
                         testing::Values(kCommandShowPrevious, kCommandShowNext, kCommandCurrentCellOnly,
                                         kCommandBlankCell, kCommandDimOthers, kCommandMuraRemoval,
                                         kCommandLineEmphasis, kCommandSquarePen));

TEST(CheckMarks, BarsFollowTheirBits) {
  ScriptSession session;
  session.Command(kCommandStatusBar).Command(kCommandToolBar);
  const int state = session.State();
  session.Run();
  EXPECT_FALSE(IsChecked(session, state, kCommandStatusBar));
  EXPECT_FALSE(IsChecked(session, state, kCommandToolBar));
}

TEST(CheckMarks, SquarePenIsMarkedWithoutACut) {
  ScriptSession session;
  session.Command(kCommandSquarePen);
  const int state = session.State();
  session.Run();
  EXPECT_TRUE(IsChecked(session, state, kCommandSquarePen));
}

TEST(CheckMarks, BlankMarkFollowsTheCurrentRecord) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1, 2}, {0, -2}));
  const int blank = session.State();
  session.Command(kCommandPreviousFrame);
  const int shown = session.State();
  session.Run();
  EXPECT_TRUE(IsChecked(session, blank, kCommandBlankCell));
  EXPECT_FALSE(IsChecked(session, shown, kCommandBlankCell));
}

TEST(CheckMarks, FrameWithoutRecordsCountsAsNotBlank) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1, 2}, {-1}));
  const int blank = session.State();
  session.OpenCut("b.cut", CutFile::WithoutLayers(1));
  const int none = session.State();
  session.Run();
  EXPECT_TRUE(IsChecked(session, blank, kCommandBlankCell));
  EXPECT_FALSE(IsChecked(session, none, kCommandBlankCell));
}

TEST(CheckMarks, StayAsLastWrittenWhenTheLastCutHasClosed) {
  ScriptSession session;
  session.OpenCut("a.cut", OneRecord()).Command(kCommandDimOthers).Command(kCommandShowPrevious);
  const int open = session.State();
  session.Close();
  const int closed = session.State();
  session.Run();
  EXPECT_TRUE(IsChecked(session, open, kCommandDimOthers));
  EXPECT_EQ(Checked(session, closed), Checked(session, open));
}

TEST(CheckMarks, AreThoseOfTheActiveCut) {
  ScriptSession session;
  session.OpenCut("a.cut", OneRecord()).Command(kCommandDimOthers).OpenCut("b.cut", OneRecord());
  const int second = session.State();
  session.Activate(0);
  const int first = session.State();
  session.Run();
  EXPECT_FALSE(IsChecked(session, second, kCommandDimOthers));
  EXPECT_TRUE(IsChecked(session, first, kCommandDimOthers));
}

TEST(CheckMarks, LineEmphasisIsOfOneWindow) {
  ScriptSession session;
  session.OpenCut("a.cut", OneRecord()).Command(kCommandLineEmphasis).OpenCut("b.cut", OneRecord());
  const int state = session.State();
  session.Run();
  EXPECT_FALSE(IsChecked(session, state, kCommandLineEmphasis));
  EXPECT_EQ(session.StateAt(state)["cuts"][0]["lineEmphasis"], true);
  EXPECT_EQ(session.StateAt(state)["cuts"][1]["lineEmphasis"], false);
}

TEST(CheckMarks, CornerRemovalIsOfTheWholeProgram) {
  ScriptSession session;
  session.OpenCut("a.cut", OneRecord()).Command(kCommandMuraRemoval).OpenCut("b.cut", OneRecord());
  const int state = session.State();
  session.Run();
  EXPECT_FALSE(IsChecked(session, state, kCommandMuraRemoval));
  EXPECT_EQ(session.StateAt(state)["pen"]["muraRemoval"], 0);
}

struct Help {
  const char* place;
  const char* text;
};

class PanelHelp : public testing::TestWithParam<Help> {};

TEST_P(PanelHelp, ShowsWithTheFocusAndGoesWithIt) {
  ScriptSession session;
  session.OpenCut("a.cut", OneRecord()).Focus(GetParam().place);
  const int focused = session.State();
  session.Focus("cut");
  const int left = session.State();
  session.Run();
  EXPECT_EQ(Status(session, focused), GetParam().text);
  EXPECT_EQ(Status(session, left), "");
}

INSTANTIATE_TEST_SUITE_P(
    Routing, PanelHelp,
    testing::Values(
        Help{"10002", "現在のフレームの時間をFPS単位で指定します。マイナス値で前のフレームと段階的につなぎます。"},
        Help{"10003",
             "現在のフィルムにあるカットの一覧です。Shift/"
             "Ctrlキーで複数選択できます。また、ダブルクリックでカットを開きます。"},
        Help{"10004", "現在のフレームにあるレイヤの一覧です。選択されたレイヤが編集対象となります。"},
        Help{"10005", "ループさせたい先頭のフレームにループ回数を指定し、以降のフレームを0にします。"},
        Help{"10006", "現在のフレームについてのコメントを入力します。"},
        Help{"10007",
             "出力時のフレームの明るさを指定します。50が標準で、0で画面が全て黒くなり、100で全て白くなります。"},
        Help{"10009",
             "チェックすると現在のフレームをキーフレームに指定します。左側の数はフレーム番号、"
             "右のカッコ内の数は実際のタイミングを示します。"}));

TEST(PanelNotifications, LeavingTheFrameTimeCommitsIt) {
  ScriptSession session;
  session.OpenCut("a.cut", OneRecord()).Panel(kFrameTimeEdit, "7").Focus("cut");
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Frame(state)["time"], 7);
}

TEST(PanelNotifications, LeavingAChangedFrameTimeRefreshes) {
  ScriptSession session;
  session.OpenCut("a.cut", OneRecord()).Panel(kLoopEdit, "12345").Panel(kFrameTimeEdit, "7").Focus("cut");
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Frame(state)["loop"], 1234);
  EXPECT_EQ(session.StateAt(state)["panels"]["10005"], "1234");
}

TEST(PanelNotifications, LeavingAnUnchangedFrameTimeCommitsWithoutRefreshing) {
  ScriptSession session;
  session.OpenCut("a.cut", OneRecord()).Panel(kLoopEdit, "12345").Panel(kFrameTimeEdit, "1").Focus("cut");
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Frame(state)["loop"], 1234);
  EXPECT_EQ(session.StateAt(state)["panels"]["10005"], "12345");
}

class EditThatKeepsItsText : public testing::TestWithParam<int> {};

TEST_P(EditThatKeepsItsText, UntilTheNextCommit) {
  ScriptSession session;
  session.OpenCut("a.cut", OneRecord()).Panel(GetParam(), "7").Focus("cut");
  const int state = session.State();
  session.Run();
  json frame = session.Frame(state);
  EXPECT_EQ(frame["loop"], 1);
  EXPECT_EQ(frame["comment"], "");
  EXPECT_EQ(frame["brightness"], 50);
  EXPECT_EQ(session.StateAt(state)["panels"][std::to_string(GetParam())], "7");
}

INSTANTIATE_TEST_SUITE_P(Routing, EditThatKeepsItsText, testing::Values(kLoopEdit, kCommentEdit, kBrightnessEdit));

TEST(PanelNotifications, SelectingALayerLineMakesItCurrent) {
  ScriptSession session;
  CutFile file;
  file.layers = {{.name = "A", .cells = {1}}, {.name = "B", .cells = {2}}};
  file.frames.push_back({.records = {{.layer = 0}, {.layer = 1}}});
  session.OpenCut("a.cut", file).Select(kLayerList, {0});
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Frame(state)["currentRecord"], 0);
}

TEST(PanelNotifications, DoubleClickOnALayerLineOpensItsProperties) {
  ScriptSession session;
  session.OpenCut("a.cut", OneRecord()).Dialog(kLayerDialog, {{kLayerNameEdit, "Renamed"}}).DoubleClick(kLayerList, 0);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["layers"][0]["name"], "Renamed");
}

TEST(ActiveCut, IsTheOneActivatedLast) {
  ScriptSession session;
  session.OpenCut("a.cut", OneRecord()).OpenCut("b.cut", OneRecord()).Activate(0).Command(kCommandBlankCell);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["cuts"][0]["frames"][0]["records"][0]["cell"], -1);
  EXPECT_EQ(session.StateAt(state)["cuts"][1]["frames"][0]["records"][0]["cell"], 0);
}

struct Shortcut {
  const char* key;
  int command;
};

// Commands without a dialog: the key does on an open cut what the command does.
class Accelerator : public testing::TestWithParam<Shortcut> {};

TEST_P(Accelerator, DoesWhatItsCommandDoes) {
  json results[2];
  for (int i = 0; i < 2; ++i) {
    ScriptSession session;
    const CutFile file = CutFile::Showing({1, 2}, {0, 1, 0});
    session.OpenCut("a.cut", file).Command(kCommandPreviousFrame).Command(kCommandPlay).Panel(kCommentEdit, "typed");
    if (i == 0) session.Key(GetParam().key);
    if (i == 1) session.Command(GetParam().command);
    const int state = session.State();
    session.Run();
    results[i] = session.StateAt(state);
    ASSERT_TRUE(results[i].is_object());
    results[i]["cuts"][0].erase("path");
  }
  EXPECT_EQ(results[0], results[1]);
}

INSTANTIATE_TEST_SUITE_P(Routing, Accelerator,
                         testing::Values(Shortcut{"F2", kCommandPreviousFrame}, Shortcut{"F6", kCommandPreviousFrame},
                                         Shortcut{"F3", kCommandNextFrame}, Shortcut{"F7", kCommandNextFrame},
                                         Shortcut{"F4", kCommandPlay}, Shortcut{"F5", kCommandPlay},
                                         Shortcut{"F9", kCommandStop}, Shortcut{"Esc", kCommandStop},
                                         Shortcut{"F1", kCommandExplainTool}, Shortcut{"F8", kCommandExplainTool},
                                         Shortcut{"Enter", kCommandFocusForward}, Shortcut{"Tab", kCommandFocusForward},
                                         Shortcut{"Shift+Enter", kCommandFocusBackward},
                                         Shortcut{"Shift+Tab", kCommandFocusBackward}));

TEST(Accelerators, FramesStepBackAndForward) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::WithoutLayers(4)).Key("F2").Key("F6");
  const int back = session.State();
  session.Key("F3");
  const int third = session.State();
  session.Key("F7");
  const int last = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(back)["currentFrame"], 1);
  EXPECT_EQ(session.Cut(third)["currentFrame"], 2);
  EXPECT_EQ(session.Cut(last)["currentFrame"], 3);
}

TEST(Accelerators, PlayAndStop) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1, 2}, {0, 1})).Key("F4");
  const int play = session.State();
  session.Key("Esc");
  const int stop = session.State();
  session.Key("F5");
  const int again = session.State();
  session.Key("F9");
  const int end = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(play)["player"]["visible"], true);
  EXPECT_EQ(session.StateAt(stop)["player"]["visible"], false);
  EXPECT_EQ(session.StateAt(again)["player"]["visible"], true);
  EXPECT_EQ(session.StateAt(end)["player"]["visible"], false);
}

TEST(Accelerators, CtrlNMakesANewCut) {
  ScriptSession session;
  session.Dialog(kCutDialog, {}).Dialog(kLayerDialog, {}, "cancel").Key("Ctrl+N");
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["cuts"].size(), 1U);
}

TEST(Accelerators, CtrlOOpensACut) {
  ScriptSession session;
  session.Write("a.cut", OneRecord().Bytes());
  session.File(session.Path("a.cut")).Key("Ctrl+O");
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["path"], session.Path("a.cut"));
}

TEST(Accelerators, CtrlSSavesUnderAName) {
  ScriptSession session;
  session.OpenCut("a.cut", OneRecord()).File(session.Path("b.cut")).Key("Ctrl+S");
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["path"], session.Path("b.cut"));
}

class NumberedCutKey : public testing::TestWithParam<const char*> {};

TEST_P(NumberedCutKey, MakesANumberedCutInTheFilm) {
  ScriptSession session;
  session.OpenCut("cut001.cut", OneRecord()).Command(kCommandAddCutToFilm);
  session.Dialog(kCutDialog, {{kCutWidthEdit, "8"}, {kCutHeightEdit, "3"}})
      .Dialog(kLayerDialog, {}, "cancel")
      .Key(GetParam());
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["path"], session.Path("cut002.cut"));
  const std::string key = GetParam();
  const size_t place = key == "F10" || key == "Shift+F3" ? 1 : 0;
  ASSERT_EQ(session.StateAt(state)["film"]["cuts"].size(), 2U);
  EXPECT_EQ(session.StateAt(state)["film"]["cuts"][place]["name"], session.Path("cut002.cut"));
}

INSTANTIATE_TEST_SUITE_P(Routing, NumberedCutKey, testing::Values("F10", "Shift+F3", "F11", "Shift+F2"));

}  // namespace
