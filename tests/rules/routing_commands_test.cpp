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

json FrameOf(ScriptSession& session, int state = kNow) {
  json whole = session.StateAt(state);
  return whole["frame"];
}

std::vector<int> Checked(ScriptSession& session, int state = kNow) {
  std::vector<int> ids;
  json frame = FrameOf(session, state);
  for (const json& id : frame["checked"]) ids.push_back(id.is_number_integer() ? id.get<int>() : -1);
  return ids;
}

bool IsChecked(ScriptSession& session, int id, int state = kNow) {
  const std::vector<int> ids = Checked(session, state);
  return std::find(ids.begin(), ids.end(), id) != ids.end();
}

std::string Status(ScriptSession& session, int state = kNow) {
  json frame = FrameOf(session, state);
  return frame["status"].is_string() ? frame["status"].get<std::string>() : "(none)";
}

CutFile OneRecord() {
  return CutFile::Showing({1, 2}, {0});
}

class Tool : public SessionTest, public testing::WithParamInterface<int> {};

TEST_P(Tool, IsSelectedByItsCommandWithoutACut) {
  session.Command(kToolEraser).Command(GetParam() == kToolEraser ? kToolFreePen : GetParam());
  EXPECT_EQ(FrameOf(session)["currentTool"], GetParam() == kToolEraser ? kToolFreePen : GetParam());
  EXPECT_EQ(FrameOf(session)["previousTool"], kToolEraser);
}

TEST_P(Tool, AloneOfTheToolsIsChecked) {
  session.Command(GetParam());
  for (const int id : {kToolFramePosition, kToolLayerPosition, kToolZoom, kToolFreePen, kToolFill, kToolLine,
                       kToolCurve, kToolRectangle, kToolAreaSelect, kToolEraser, kToolGradient, kToolText, kToolEdging,
                       kToolMosaic, kToolFocusLines, kToolParallelLines}) {
    EXPECT_EQ(IsChecked(session, id), id == GetParam()) << id;
  }
}

INSTANTIATE_TEST_SUITE_P(Routing, Tool,
                         testing::Values(kToolFramePosition, kToolLayerPosition, kToolZoom, kToolFreePen, kToolFill,
                                         kToolLine, kToolCurve, kToolRectangle, kToolAreaSelect, kToolEraser,
                                         kToolGradient, kToolText, kToolEdging, kToolMosaic, kToolFocusLines,
                                         kToolParallelLines));

using SelectTool = SessionTest;

const Rules<SessionTest, "SelectTool"> kSelectToolRules = {
    {"CurrentToolAgainKeepsThePreviousOne", Do().Command(kToolEraser).Command(kToolLine).Command(kToolLine),
     Has("frame/currentTool", kToolLine, "frame/previousTool", kToolEraser)},
};

TEST_F(SelectTool, CurrentToolAgainSendsNoPulseSoThatASelectionStays) {
  session.NewCut().Command(kToolAreaSelect).LeftDrag(306, 230, 316, 240);
  const int before = session.State();
  session.Command(kToolAreaSelect);
  const int after = session.State();
  EXPECT_NE(session.Cut(before)["selection"], json::array({0, 0, 0, 0}));
  EXPECT_EQ(session.Cut(after)["selection"], session.Cut(before)["selection"]);
}

TEST_F(SelectTool, AnotherToolSendsThePulseToTheOldOneSoThatItsSelectionEnds) {
  session.NewCut().Command(kToolAreaSelect).LeftDrag(306, 230, 316, 240).Command(kToolEraser);
  EXPECT_EQ(session.Cut()["selection"][0], session.Cut()["selection"][2]);
}

class NumberWithoutHandler : public SessionTest, public testing::WithParamInterface<int> {};

TEST_P(NumberWithoutHandler, IsIgnored) {
  session.OpenCut("a.cut", OneRecord());
  const int before = session.State();
  session.Command(GetParam());
  const int after = session.State();
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
class CommandWithoutItsObject : public SessionTest, public testing::WithParamInterface<int> {};

TEST_P(CommandWithoutItsObject, DoesNothingAndSaysNothing) {
  const int before = session.State();
  session.Command(GetParam());
  const int after = session.State();
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

using CheckMarks = SessionTest;

class SwitchOfTheCut : public SessionTest, public testing::WithParamInterface<int> {};

TEST_P(SwitchOfTheCut, FlipsItsCheckMark) {
  session.OpenCut("a.cut", OneRecord());
  const int before = session.State();
  session.Command(GetParam());
  const int once = session.State();
  session.Command(GetParam());
  const int twice = session.State();
  EXPECT_EQ(IsChecked(session, GetParam(), before), GetParam() == kCommandMuraRemoval);
  EXPECT_EQ(IsChecked(session, GetParam(), once), GetParam() != kCommandMuraRemoval);
  EXPECT_EQ(IsChecked(session, GetParam(), twice), GetParam() == kCommandMuraRemoval);
}

INSTANTIATE_TEST_SUITE_P(Routing, SwitchOfTheCut,
                         testing::Values(kCommandShowPrevious, kCommandShowNext, kCommandCurrentCellOnly,
                                         kCommandBlankCell, kCommandDimOthers, kCommandMuraRemoval,
                                         kCommandLineEmphasis, kCommandSquarePen));

TEST_F(CheckMarks, StayAsLastWrittenWhenTheLastCutHasClosed) {
  session.OpenCut("a.cut", OneRecord()).Command(kCommandDimOthers).Command(kCommandShowPrevious);
  const int open = session.State();
  session.Close();
  const int closed = session.State();
  EXPECT_TRUE(IsChecked(session, kCommandDimOthers, open));
  EXPECT_EQ(Checked(session, closed), Checked(session, open));
}

const Rules<SessionTest, "CheckMarks"> kCheckMarksRules = {
    {"WithoutACutOnlyToolAndBarsAreChecked",
     Has("frame/checked", std::vector<int>{kToolFreePen, kCommandStatusBar, kCommandToolBar})},
    {"OfANewCutHaveTheCornerRemovalToo", Do().OpenCut("a.cut", OneRecord()),
     Has("frame/checked", std::vector<int>{kToolFreePen, kCommandStatusBar, kCommandToolBar, kCommandMuraRemoval})},
    {"BarsFollowTheirBits", Do().Commands({kCommandStatusBar, kCommandToolBar}),
     Has(MarkOf(kCommandStatusBar), false, MarkOf(kCommandToolBar), false)},
    {"SquarePenIsMarkedWithoutACut", Do().Command(kCommandSquarePen), Has(MarkOf(kCommandSquarePen), true)},
    {"BlankMarkFollowsTheCurrentRecord", Do().OpenCut("a.cut", CutFile::Showing({1, 2}, {0, -2})),
     Has(MarkOf(kCommandBlankCell), true), Do().Command(kCommandPreviousFrame), Has(MarkOf(kCommandBlankCell), false)},
    {"FrameWithoutRecordsCountsAsNotBlank", Do().OpenCut("a.cut", CutFile::Showing({1, 2}, {-1})),
     Has(MarkOf(kCommandBlankCell), true), Do().OpenCut("b.cut", CutFile::WithoutLayers(1)),
     Has(MarkOf(kCommandBlankCell), false)},
    {"AreThoseOfTheActiveCut",
     Do().OpenCut("a.cut", OneRecord()).Command(kCommandDimOthers).OpenCut("b.cut", OneRecord()),
     Has(MarkOf(kCommandDimOthers), false), Do().Activate(0), Has(MarkOf(kCommandDimOthers), true)},
    {"LineEmphasisIsOfOneWindow",
     Do().OpenCut("a.cut", OneRecord()).Command(kCommandLineEmphasis).OpenCut("b.cut", OneRecord()),
     Has(MarkOf(kCommandLineEmphasis), false, "cuts/0/lineEmphasis", true, "cuts/1/lineEmphasis", false)},
    {"CornerRemovalIsOfTheWholeProgram",
     Do().OpenCut("a.cut", OneRecord()).Command(kCommandMuraRemoval).OpenCut("b.cut", OneRecord()),
     Has(MarkOf(kCommandMuraRemoval), false, "pen/muraRemoval", 0)},
};

struct Help {
  const char* place;
  const char* text;
};

class PanelHelp : public SessionTest, public testing::WithParamInterface<Help> {};

TEST_P(PanelHelp, ShowsWithTheFocusAndGoesWithIt) {
  session.OpenCut("a.cut", OneRecord()).Focus(GetParam().place);
  const int focused = session.State();
  session.Focus("cut");
  const int left = session.State();
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

class EditThatKeepsItsText : public SessionTest, public testing::WithParamInterface<int> {};

TEST_P(EditThatKeepsItsText, UntilTheNextCommit) {
  session.OpenCut("a.cut", OneRecord()).Panel(GetParam(), "7").Focus("cut");
  EXPECT_TRUE(Holds(session, "cut/frame/loop", 1, "cut/frame/comment", "", "cut/frame/brightness", 50));
  EXPECT_EQ(session.NowState()["panels"][std::to_string(GetParam())], "7");
}

INSTANTIATE_TEST_SUITE_P(Routing, EditThatKeepsItsText, testing::Values(kLoopEdit, kCommentEdit, kBrightnessEdit));

const Rules<SessionTest, "PanelNotifications"> kPanelNotificationsRules = {
    {"LeavingTheFrameTimeCommitsIt", Do().OpenCut("a.cut", OneRecord()).Panel(kFrameTimeEdit, "7").Focus("cut"),
     Has("cut/frame/time", 7)},
    {"LeavingAChangedFrameTimeRefreshes",
     Do().OpenCut("a.cut", OneRecord()).Panel(kLoopEdit, "12345").Panel(kFrameTimeEdit, "7").Focus("cut"),
     Has("cut/frame/loop", 1234, "panels/loop", "1234")},
    {"LeavingAnUnchangedFrameTimeCommitsWithoutRefreshing",
     Do().OpenCut("a.cut", OneRecord()).Panel(kLoopEdit, "12345").Panel(kFrameTimeEdit, "1").Focus("cut"),
     Has("cut/frame/loop", 1234, "panels/loop", "12345")},
    {"DoubleClickOnALayerLineOpensItsProperties",
     Do().OpenCut("a.cut", OneRecord()).Dialog(kLayerDialog, {{kLayerNameEdit, "Renamed"}}).DoubleClick(kLayerList, 0),
     Has("cut/layers/0/name", "Renamed")},
};

const Rules<SessionTest, "ActiveCut"> kActiveCutRules = {
    {"IsTheOneActivatedLast",
     Do().OpenCut("a.cut", OneRecord()).OpenCut("b.cut", OneRecord()).Activate(0).Command(kCommandBlankCell),
     Has("cuts/0/frames/0/records/0/cell", -1, "cuts/1/frames/0/records/0/cell", 0)},
};

const Rules<SessionTest, "Accelerators"> kAcceleratorsRules = {
    {"CtrlNMakesANewCut", Do().Dialog(kCutDialog, {}).Dialog(kLayerDialog, {}, "cancel").Key("Ctrl+N"),
     Has("cuts/#", 1)},
    {"CtrlOOpensACut", Do().Write("a.cut", OneRecord().Bytes()).File("a.cut").Key("Ctrl+O"), Has("cut/path", "a.cut")},
    {"CtrlSSavesUnderAName", Do().OpenCut("a.cut", OneRecord()).File("b.cut").Key("Ctrl+S"), Has("cut/path", "b.cut")},
};

class NumberedCutKey : public SessionTest, public testing::WithParamInterface<const char*> {};

TEST_P(NumberedCutKey, MakesANumberedCutInTheFilm) {
  session.OpenCut("cut001.cut", OneRecord()).Command(kCommandAddCutToFilm);
  session.Dialog(kCutDialog, {{kCutWidthEdit, "8"}, {kCutHeightEdit, "3"}}).Dialog(kLayerDialog, {}, "cancel");
  session.Key(GetParam());
  EXPECT_EQ(session.Cut()["path"], session.Path("cut002.cut"));
  const std::string key = GetParam();
  const size_t place = key == "F10" || key == "Shift+F3" ? 1 : 0;
  ASSERT_EQ(session.NowState()["film"]["cuts"].size(), 2U);
  EXPECT_EQ(session.NowState()["film"]["cuts"][place]["name"], session.Path("cut002.cut"));
}

INSTANTIATE_TEST_SUITE_P(Routing, NumberedCutKey, testing::Values("F10", "Shift+F3", "F11", "Shift+F2"));

}  // namespace
}  // namespace rules
