#include <gtest/gtest.h>

#include "resources/ids.h"
#include "rules/rule_table.h"
#include "rules/script_session.h"

namespace rules {
namespace {

using nlohmann::json;

CutFile OneFrame() {
  return CutFile::WithoutLayers(1);
}

// A cut of one frame is opened, one edit typed into, and "previous frame" run, which commits and refreshes.
json CommittedFrame(int id, const char* typed) {
  ScriptSession session;
  session.OpenCut("a.cut", OneFrame()).Panel(id, typed).Command(kCommandPreviousFrame);
  const int state = session.State();
  session.Run();
  return session.Frame(state);
}

struct Typed {
  const char* text;
  int stored;
};

class FrameTimeTyped : public testing::TestWithParam<Typed> {};

TEST_P(FrameTimeTyped, IsStoredFromFourCharacters) {
  EXPECT_EQ(CommittedFrame(kFrameTimeEdit, GetParam().text)["time"], GetParam().stored);
}

INSTANTIATE_TEST_SUITE_P(Panels, FrameTimeTyped,
                         testing::Values(Typed{"12345", 1234}, Typed{"-12345", -123}, Typed{"-3", -3}, Typed{"", 0},
                                         Typed{"9999", 9999}, Typed{"abc", 0}, Typed{"7x", 7}, Typed{"   89", 8}));

class LoopTyped : public testing::TestWithParam<Typed> {};

TEST_P(LoopTyped, IsStoredFromFourCharacters) {
  EXPECT_EQ(CommittedFrame(kLoopEdit, GetParam().text)["loop"], GetParam().stored);
}

INSTANTIATE_TEST_SUITE_P(Panels, LoopTyped,
                         testing::Values(Typed{"12345", 1234}, Typed{"", 0}, Typed{"-56789", -567}, Typed{"0", 0}));

class BrightnessTyped : public testing::TestWithParam<Typed> {};

TEST_P(BrightnessTyped, IsStoredFromThreeCharactersWithinZeroToHundred) {
  EXPECT_EQ(CommittedFrame(kBrightnessEdit, GetParam().text)["brightness"], GetParam().stored);
}

INSTANTIATE_TEST_SUITE_P(Panels, BrightnessTyped,
                         testing::Values(Typed{"250", 100}, Typed{"", 0}, Typed{"-5", 0}, Typed{"0459", 45},
                                         Typed{"1000", 100}, Typed{"100", 100}, Typed{"0", 0}));

using CommitPanels = SessionTest;

TEST_F(CommitPanels, CommentIsStoredAsTyped) {
  EXPECT_EQ(CommittedFrame(kCommentEdit, "two words, \"quoted\"")["comment"], "two words, \"quoted\"");
}

TEST_F(CommitPanels, JapaneseCommentComesThroughShiftJis) {
  EXPECT_EQ(CommittedFrame(kCommentEdit, "表示ソ")["comment"], "表示ソ");
}

TEST_F(CommitPanels, LosingWindowIsCommittedAndGainingWindowShown) {
  session.OpenCut("a.cut", OneFrame()).OpenCut("b.cut", OneFrame()).Panel(kCommentEdit, "of b").Activate(0);
  json cuts = session.NowState()["cuts"];
  ASSERT_EQ(cuts.size(), 2U);
  EXPECT_TRUE(Holds(session, "cuts/1/frames/0/comment", "of b", "cuts/0/frames/0/comment", "", "panels/comment", ""));
}

const Rules<SessionTest, "CommitPanels"> kCommitPanelsRules = {
    {"KeyFrameKeepsItsOwnTime", Do().OpenCut("a.cut", CutFile{.frames = {{.time = 5, .brightness = -51}, {.time = 2}}}),
     Do().Command(kCommandPreviousFrame).Panel(kCommentEdit, "x").Command(kCommandNextFrame),
     Has("cut/frames/0/time", 5, "cut/frames/0/comment", "x")},
    {"BrightnessOfAKeyFrameKeepsItsMark",
     Do().OpenCut("a.cut", CutFile{.frames = {{.brightness = -51}}}).Panel(kBrightnessEdit, "30"),
     Do().Command(kCommandPreviousFrame), Has("cut/frame/brightness", -31)},
    {"RefreshShowsWhatWasStoredAndNotWhatWasTyped",
     Do().OpenCut("a.cut", OneFrame()).Panel(kFrameTimeEdit, "12345").Panel(kLoopEdit, "67890"),
     Do().Panel(kBrightnessEdit, "250").Command(kCommandPreviousFrame),
     Has("panels/time", "1234", "panels/loop", "6789", "panels/brightness", "100")},
    {"UnchangedValuesMarkNothing", Do().OpenCut("a.cut", OneFrame()).Commands({kCommandPlay, kCommandPreviousFrame}),
     Has("cut/modified", false, "cut/timingStale", false)},
    {"ChangeMarksTimingAndNotImages",
     Do().OpenCut("a.cut", OneFrame()).Command(kCommandPlay).Panel(kCommentEdit, "x").Command(kCommandPreviousFrame),
     Has("cut/modified", true, "cut/timingStale", true, "cut/imagesStale", false)},
    {"TypedTextReachesTheFrameThatIsLeft",
     Do().OpenCut("a.cut", CutFile::WithoutLayers(2)).Panel(kCommentEdit, "last").Command(kCommandPreviousFrame),
     Has("cut/frames/1/comment", "last", "cut/frames/0/comment", "")},
    {"OpeningASecondCutCommitsTheFirst",
     Do().OpenCut("a.cut", OneFrame()).Panel(kCommentEdit, "of a").OpenCut("b.cut", OneFrame()),
     Has("cuts/0/frames/0/comment", "of a", "panels/comment", "")},
};

const Rules<SessionTest, "RefreshPanels"> kRefreshPanelsRules = {
    {"ShowsEveryFieldOfTheCurrentFrame",
     Do().OpenCut("a.cut", CutFile{.frames = {{.time = -7, .loop = 3, .brightness = 20, .comment = "hello"}}}),
     Has("panels/time", "-7", "panels/loop", "3", "panels/brightness", "20", "panels/comment", "hello",
         "panels/keyFrame/checked", false)},
    {"KeyFrameIsCheckedAndItsBrightnessDecoded", Do().OpenCut("a.cut", CutFile{.frames = {{.brightness = -31}}}),
     Has("panels/keyFrame/checked", true, "panels/brightness", "30")},
    {"FrameTimeShowsTheEffectiveTimeOfAKeyFrame",
     Do().OpenCut("a.cut",
                  CutFile{.frames = {{.time = 10, .brightness = -51}, {.time = 2}, {.time = 3}, {.brightness = -51}}}),
     Do().Command(kCommandFirstFrame), Has("panels/time", "5")},
    {"NegativeKeyFrameTimeKeepsItsSign",
     Do().OpenCut("a.cut", CutFile{.frames = {{.time = -10, .brightness = -51}, {.time = -2}}}),
     Do().Command(kCommandFirstFrame), Has("panels/time", "-8")},
    {"KeyFrameTimeIsAtLeastOne",
     Do().OpenCut("a.cut", CutFile{.frames = {{.time = 4, .brightness = -51}, {.time = 3}, {.time = 3}}}),
     Do().Command(kCommandFirstFrame), Has("panels/time", "1")},
    {"CheckBoxTextCountsFrameAndTiming",
     Do().OpenCut("a.cut", CutFile{.frames = {{.time = 4}, {.time = -3}, {.time = 9}}}),
     Has("panels/keyFrame/text", "3(8f)"), Do().Command(kCommandFirstFrame), Has("panels/keyFrame/text", "1(1f)")},
    {"TimingPositionSumsEffectiveTimes",
     Do().OpenCut("a.cut", CutFile{.frames = {{.time = 10, .brightness = -51}, {.time = 4}, {}}}),
     Has("panels/keyFrame/text", "3(10f)")},
    {"LayerLinesStandInRecordOrderBottomFirst",
     Do().OpenCut(
         "a.cut",
         CutFile{
             .layers = {{.name = "A", .cells = {1, 2}}, {.name = "B", .cells = {1}}, {.name = "C", .cells = {1, 2, 3}}},
             .frames = {{.records = {{.layer = 2, .cell = 2}, {.layer = 0, .cell = 0}, {.layer = 1, .cell = 0}}}}}),
     Has("panels/layers/lines", json::array({"C (3/3)", "A (1/2)", "B (1/1)"}), "panels/layers/selected", "2")},
    {"BlankRecordCountsAsCellZero", Do().OpenCut("a.cut", CutFile::Showing({1, 2, 3}, {-3})),
     Has("panels/layers/lines", json::array({"A (0/3)"}))},
    {"FrameWithoutRecordsShowsAnEmptyList",
     Do().OpenCut("a.cut", CutFile::Showing({1}, {0})).OpenCut("b.cut", OneFrame()),
     Has("panels/layers/lines", "", "panels/layers/selected", "")},
    {"CurrentRecordIsTheSelectedLine",
     Do().OpenCut("a.cut", CutFile{.layers = {{.name = "A", .cells = {1}}, {.name = "B", .cells = {1}}},
                                   .frames = {{.records = {{.layer = 0}, {.layer = 1}}}}}),
     Do().Select(kLayerList, {0}).Command(kCommandPreviousFrame), Has("panels/layers/selected", "0")},
};

const Rules<SessionTest, "FrameTimeEdit"> kFrameTimeEditRules = {
    {"OfAKeyFrameCanNotBeTypedIn",
     Do().OpenCut("a.cut", CutFile{.frames = {{.time = 6, .brightness = -51}}}).Panel(kFrameTimeEdit, "9"),
     Has("panels/time", "6")},
    {"CanBeTypedInAgainOnAPlainFrame",
     Do().OpenCut("a.cut", CutFile{.frames = {{}, {.brightness = -51}}}).Command(kCommandPreviousFrame),
     Do().Panel(kFrameTimeEdit, "9").Command(kCommandNextFrame), Has("cut/frames/0/time", 9)},
};

const Rules<SessionTest, "RefreshLayerLine"> kRefreshLayerLineRules = {
    {"FollowsACellCommand",
     Do().OpenCut("a.cut", CutFile{.layers = {{.name = "A", .cells = {1, 2}}, {.name = "B", .cells = {1, 2}}},
                                   .frames = {{.records = {{.layer = 0}, {.layer = 1}}}}}),
     Do().Select(kLayerList, {0}).Command(kCommandAddCell),
     Has("panels/layers/lines", json::array({"A (2/3)", "B (1/2)"}), "panels/layers/selected", "0")},
    {"RewritesOneLineAlone",
     Do().OpenCut("a.cut", CutFile{.layers = {{.name = "A", .cells = {1, 2}}},
                                   .frames = {{.records = {{.layer = 0}, {.layer = 0}}}}}),
     Do().Command(kCommandAddCell), Has("panels/layers/lines/0", "A (1/2)", "panels/layers/lines/1", "A (2/3)")},
};

const Rules<SessionTest, "ClosingTheLastCut"> kClosingTheLastCutRules = {
    {"LeavesThePanelsAsTheyAre",
     Do().OpenCut("a.cut", CutFile{.layers = {{.name = "A", .cells = {1, 2}}},
                                   .frames = {{.time = 7, .comment = "old", .records = {{.cell = 1}}}}}),
     Do().Close(), Has("panels/comment", "old", "panels/time", "7", "panels/layers/lines", json::array({"A (2/2)"}))},
};

const Rules<SessionTest, "ClosingACut"> kClosingACutRules = {
    {"ShowsTheCutThatBecomesActive",
     Do().OpenCut("a.cut", CutFile{.frames = {{.comment = "first"}}}).OpenCut("b.cut", OneFrame()).Close(),
     Has("panels/comment", "first")},
};

const Rules<SessionTest, "TogglePanels"> kTogglePanelsRules = {
    {"SpaceFlipsThePanelState", Do().OpenCut("a.cut", OneFrame()).Char(' '), Has("frame/panelsShown", false),
     Do().Char(' '), Has("frame/panelsShown", true)},
    {"KeepsWhatTheUserWantsOfTheBars", Do().OpenCut("a.cut", OneFrame()).Char(' '),
     Has("frame/statusBarVisible", true, "frame/toolBarVisible", true)},
};

const Rules<SessionTest, "Bars"> kBarsRules = {
    {"TheirCommandsFlipTheirOwnBit", Do().Command(kCommandStatusBar),
     Has("frame/statusBarVisible", false, "frame/toolBarVisible", true), Do().Command(kCommandToolBar),
     Has("frame/toolBarVisible", false), Do().Commands({kCommandStatusBar, kCommandToolBar}),
     Has("frame/statusBarVisible", true, "frame/toolBarVisible", true)},
    {"FlipTheirBitWhileThePanelsAreHidden", Do().OpenCut("a.cut", OneFrame()).Char(' ').Command(kCommandStatusBar),
     Has("frame/statusBarVisible", false), Do().Command(kCommandStatusBar),
     Has("frame/statusBarVisible", true, "frame/panelsShown", false)},
};

const Rules<SessionTest, "SelectCutLine"> kSelectCutLineRules = {
    {"ActivationSelectsTheCutInTheCutList",
     Do().OpenCut("a.cut", OneFrame()).Command(kCommandAddCutToFilm).OpenCut("b.cut", OneFrame()),
     Do().Command(kCommandAddCutToFilm).Activate(0), Has("lines/selected", "0")},
    {"LineThatIsSelectedAlreadyKeepsTheOthers",
     Do().OpenCut("a.cut", OneFrame()).Command(kCommandAddCutToFilm).OpenCut("b.cut", OneFrame()),
     Do().Command(kCommandAddCutToFilm).Select(kCutList, {0, 1}).Activate(0), Has("lines/selected", "0 1")},
    {"CutOutsideTheFilmLeavesTheSelection",
     Do().OpenCut("a.cut", OneFrame()).Command(kCommandAddCutToFilm).OpenCut("b.cut", OneFrame()),
     Has("lines/selected", "0")},
};

const Rules<SessionTest, "KeyFrameCheckBox"> kKeyFrameCheckBoxRules = {
    {"ClickMakesTheFrameAKeyFrameAndBack", Do().OpenCut("a.cut", OneFrame()).Line("click 10009"),
     Has("cut/frame/brightness", -51, "panels/keyFrame/checked", true), Do().Line("click 10009"),
     Has("cut/frame/brightness", 50, "panels/keyFrame/checked", false)},
    {"ClickCommitsAndRefreshesAllFields",
     Do().OpenCut("a.cut", OneFrame()).Panel(kLoopEdit, "12345").Line("click 10009"),
     Has("cut/frame/loop", 1234, "panels/loop", "1234")},
    {"ClickShowsTheEffectiveTime",
     Do().OpenCut("a.cut", CutFile{.frames = {{.time = 10}, {.time = 3}}}).Command(kCommandFirstFrame),
     Do().Line("click 10009"), Has("cut/frame/time", 10, "panels/time", "7")},
    {"UncheckingAKeyFrameKeepsItsOwnTime",
     Do().OpenCut("a.cut", CutFile{.frames = {{.time = 10, .brightness = -51}, {.time = 3}}}),
     Do().Command(kCommandFirstFrame).Line("click 10009"), Has("cut/frame/brightness", 50, "cut/frame/time", 10)},
};

const Rules<SessionTest, "Drop"> kDropRules = {
    {"OpensTheDroppedFile", Do().Write("a.cut", OneFrame().Bytes()).Line("drop " + Quoted("a.cut")),
     Has("cut/path", "a.cut")},
};

}  // namespace
}  // namespace rules
