#include <gtest/gtest.h>

#include <string>

#include "resources/ids.h"
#include "rules/rule_table.h"
#include "rules/script_session.h"

namespace rules {
namespace {

using nlohmann::json;

json Panels(ScriptSession& session, int state = kNow) {
  json whole = session.StateAt(state);
  return whole["panels"];
}

json List(ScriptSession& session, const char* id, int state = kNow) {
  json panels = Panels(session, state);
  return panels[id];
}

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

TEST_F(CommitPanels, KeyFrameKeepsItsOwnTime) {
  CutFile file = CutFile::WithoutLayers(2);
  file.frames[0].time = 5;
  file.frames[0].brightness = -51;
  file.frames[1].time = 2;
  session.OpenCut("a.cut", file).Command(kCommandPreviousFrame).Panel(kCommentEdit, "x").Command(kCommandNextFrame);
  EXPECT_TRUE(Holds(session, "cut/frames/0/time", 5, "cut/frames/0/comment", "x"));
}

TEST_F(CommitPanels, BrightnessOfAKeyFrameKeepsItsMark) {
  CutFile file = OneFrame();
  file.frames[0].brightness = -51;
  session.OpenCut("a.cut", file).Panel(kBrightnessEdit, "30").Command(kCommandPreviousFrame);
  EXPECT_EQ(session.Frame()["brightness"], -31);
}

TEST_F(CommitPanels, LosingWindowIsCommittedAndGainingWindowShown) {
  session.OpenCut("a.cut", OneFrame()).OpenCut("b.cut", OneFrame()).Panel(kCommentEdit, "of b").Activate(0);
  json cuts = session.NowState()["cuts"];
  ASSERT_EQ(cuts.size(), 2U);
  EXPECT_TRUE(Holds(session, "cuts/1/frames/0/comment", "of b", "cuts/0/frames/0/comment", "", "panels/comment", ""));
}

const Rules<SessionTest, "CommitPanels"> kCommitPanelsRules = {
    {"RefreshShowsWhatWasStoredAndNotWhatWasTyped",
     Do().OpenCut("a.cut", OneFrame()).Panel(kFrameTimeEdit, "12345").Panel(kLoopEdit, "67890"),
     Do().Panel(kBrightnessEdit, "250").Command(kCommandPreviousFrame),
     Has("panels/time", "1234", "panels/loop", "6789", "panels/brightness", "100")},
    {"UnchangedValuesMarkNothing",
     Do().OpenCut("a.cut", OneFrame()).Command(kCommandPlay).Command(kCommandPreviousFrame),
     Has("cut/modified", false, "cut/timingStale", false)},
    {"ChangeMarksTimingAndNotImages", Do().OpenCut("a.cut", OneFrame()).Command(kCommandPlay).Panel(kCommentEdit, "x"),
     Do().Command(kCommandPreviousFrame), Has("cut/modified", true, "cut/timingStale", true, "cut/imagesStale", false)},
    {"TypedTextReachesTheFrameThatIsLeft",
     Do().OpenCut("a.cut", CutFile::WithoutLayers(2)).Panel(kCommentEdit, "last").Command(kCommandPreviousFrame),
     Has("cut/frames/1/comment", "last", "cut/frames/0/comment", "")},
    {"OpeningASecondCutCommitsTheFirst",
     Do().OpenCut("a.cut", OneFrame()).Panel(kCommentEdit, "of a").OpenCut("b.cut", OneFrame()),
     Has("cuts/0/frames/0/comment", "of a", "panels/comment", "")},
};

using RefreshPanels = SessionTest;

TEST_F(RefreshPanels, ShowsEveryFieldOfTheCurrentFrame) {
  CutFile file = OneFrame();
  file.frames[0] = {.time = -7, .loop = 3, .brightness = 20, .comment = "hello"};
  session.OpenCut("a.cut", file);
  EXPECT_TRUE(Holds(session, "panels/time", "-7", "panels/loop", "3", "panels/brightness", "20", "panels/comment",
                    "hello", "panels/keyFrame/checked", false));
}

TEST_F(RefreshPanels, KeyFrameIsCheckedAndItsBrightnessDecoded) {
  CutFile file = OneFrame();
  file.frames[0].brightness = -31;
  session.OpenCut("a.cut", file);
  EXPECT_TRUE(Holds(session, "panels/keyFrame/checked", true, "panels/brightness", "30"));
}

TEST_F(RefreshPanels, FrameTimeShowsTheEffectiveTimeOfAKeyFrame) {
  CutFile file = CutFile::WithoutLayers(4);
  file.frames[0] = {.time = 10, .brightness = -51};
  file.frames[1].time = 2;
  file.frames[2].time = 3;
  file.frames[3].brightness = -51;
  session.OpenCut("a.cut", file).Command(kCommandFirstFrame);
  EXPECT_EQ(Panels(session)["10002"], "5");
}

TEST_F(RefreshPanels, NegativeKeyFrameTimeKeepsItsSign) {
  CutFile file = CutFile::WithoutLayers(2);
  file.frames[0] = {.time = -10, .brightness = -51};
  file.frames[1].time = -2;
  session.OpenCut("a.cut", file).Command(kCommandFirstFrame);
  EXPECT_EQ(Panels(session)["10002"], "-8");
}

TEST_F(RefreshPanels, KeyFrameTimeIsAtLeastOne) {
  CutFile file = CutFile::WithoutLayers(3);
  file.frames[0] = {.time = 4, .brightness = -51};
  file.frames[1].time = 3;
  file.frames[2].time = 3;
  session.OpenCut("a.cut", file).Command(kCommandFirstFrame);
  EXPECT_EQ(Panels(session)["10002"], "1");
}

TEST_F(RefreshPanels, CheckBoxTextCountsFrameAndTiming) {
  CutFile file = CutFile::WithoutLayers(3);
  file.frames[0].time = 4;
  file.frames[1].time = -3;
  file.frames[2].time = 9;
  session.OpenCut("a.cut", file);
  const int last = session.State();
  session.Command(kCommandFirstFrame);
  const int first = session.State();
  EXPECT_EQ(Panels(session, last)["10009"]["text"], "3(8f)");
  EXPECT_EQ(Panels(session, first)["10009"]["text"], "1(1f)");
}

TEST_F(RefreshPanels, TimingPositionSumsEffectiveTimes) {
  CutFile file = CutFile::WithoutLayers(3);
  file.frames[0] = {.time = 10, .brightness = -51};
  file.frames[1].time = 4;
  session.OpenCut("a.cut", file);
  EXPECT_EQ(Panels(session)["10009"]["text"], "3(10f)");
}

TEST_F(RefreshPanels, LayerLinesStandInRecordOrderBottomFirst) {
  CutFile file;
  file.layers = {{.name = "A", .cells = {1, 2}}, {.name = "B", .cells = {1}}, {.name = "C", .cells = {1, 2, 3}}};
  file.frames.push_back({.records = {{.layer = 2, .cell = 2}, {.layer = 0, .cell = 0}, {.layer = 1, .cell = 0}}});
  session.OpenCut("a.cut", file);
  EXPECT_TRUE(Holds(session, "panels/layers/lines", json::array({"C (3/3)", "A (1/2)", "B (1/1)"}),
                    "panels/layers/selected", json::array({2})));
}

const Rules<SessionTest, "RefreshPanels"> kRefreshPanelsRules = {
    {"BlankRecordCountsAsCellZero", Do().OpenCut("a.cut", CutFile::Showing({1, 2, 3}, {-3})),
     Has("panels/layers/lines", json::array({"A (0/3)"}))},
    {"FrameWithoutRecordsShowsAnEmptyList",
     Do().OpenCut("a.cut", CutFile::Showing({1}, {0})).OpenCut("b.cut", OneFrame()),
     Has("panels/layers/lines", json::array(), "panels/layers/selected", json::array())},
};

TEST_F(RefreshPanels, CurrentRecordIsTheSelectedLine) {
  CutFile file;
  file.layers = {{.name = "A", .cells = {1}}, {.name = "B", .cells = {1}}};
  file.frames.push_back({.records = {{.layer = 0}, {.layer = 1}}});
  session.OpenCut("a.cut", file).Select(kLayerList, {0}).Command(kCommandPreviousFrame);
  EXPECT_EQ(List(session, "10004")["selected"], json::array({0}));
}

using FrameTimeEdit = SessionTest;

TEST_F(FrameTimeEdit, OfAKeyFrameCanNotBeTypedIn) {
  CutFile file = OneFrame();
  file.frames[0] = {.time = 6, .brightness = -51};
  session.OpenCut("a.cut", file).Panel(kFrameTimeEdit, "9");
  EXPECT_EQ(Panels(session)["10002"], "6");
}

TEST_F(FrameTimeEdit, CanBeTypedInAgainOnAPlainFrame) {
  CutFile file = CutFile::WithoutLayers(2);
  file.frames[1].brightness = -51;
  session.OpenCut("a.cut", file).Command(kCommandPreviousFrame).Panel(kFrameTimeEdit, "9").Command(kCommandNextFrame);
  EXPECT_EQ(session.FrameAt(0)["time"], 9);
}

using RefreshLayerLine = SessionTest;

TEST_F(RefreshLayerLine, FollowsACellCommand) {
  CutFile file;
  file.layers = {{.name = "A", .cells = {1, 2}}, {.name = "B", .cells = {1, 2}}};
  file.frames.push_back({.records = {{.layer = 0}, {.layer = 1}}});
  session.OpenCut("a.cut", file).Select(kLayerList, {0}).Command(kCommandAddCell);
  EXPECT_TRUE(Holds(session, "panels/layers/lines", json::array({"A (2/3)", "B (1/2)"}), "panels/layers/selected",
                    json::array({0})));
}

TEST_F(RefreshLayerLine, RewritesOneLineAlone) {
  CutFile file;
  file.layers = {{.name = "A", .cells = {1, 2}}};
  file.frames.push_back({.records = {{.layer = 0}, {.layer = 0}}});
  session.OpenCut("a.cut", file).Command(kCommandAddCell);
  EXPECT_TRUE(Holds(session, "panels/layers/lines/0", "A (1/2)", "panels/layers/lines/1", "A (2/3)"));
}

TEST(ClosingTheLastCut, LeavesThePanelsAsTheyAre) {
  ScriptSession session;
  CutFile file = CutFile::Showing({1, 2}, {1});
  file.frames[0].comment = "old";
  file.frames[0].time = 7;
  session.OpenCut("a.cut", file).Close();
  EXPECT_TRUE(
      Holds(session, "panels/comment", "old", "panels/time", "7", "panels/layers/lines", json::array({"A (2/2)"})));
}

TEST(ClosingACut, ShowsTheCutThatBecomesActive) {
  ScriptSession session;
  CutFile first = OneFrame();
  first.frames[0].comment = "first";
  session.OpenCut("a.cut", first).OpenCut("b.cut", OneFrame()).Close();
  EXPECT_EQ(Panels(session)["10006"], "first");
}

const Rules<SessionTest, "TogglePanels"> kTogglePanelsRules = {
    {"SpaceFlipsThePanelState", Do().OpenCut("a.cut", OneFrame()).Char(' '), Has("frame/panelsShown", false),
     Do().Char(' '), Has("frame/panelsShown", true)},
    {"KeepsWhatTheUserWantsOfTheBars", Do().OpenCut("a.cut", OneFrame()).Char(' '),
     Has("frame/statusBarVisible", true, "frame/toolBarVisible", true)},
};

const Rules<SessionTest, "Bars"> kBarsRules = {
    {"TheirCommandsFlipTheirOwnBit", Do().Command(kCommandStatusBar),
     Has("frame/statusBarVisible", false, "frame/toolBarVisible", true), Do().Command(kCommandToolBar),
     Has("frame/toolBarVisible", false), Do().Command(kCommandStatusBar).Command(kCommandToolBar),
     Has("frame/statusBarVisible", true, "frame/toolBarVisible", true)},
    {"FlipTheirBitWhileThePanelsAreHidden", Do().OpenCut("a.cut", OneFrame()).Char(' ').Command(kCommandStatusBar),
     Has("frame/statusBarVisible", false), Do().Command(kCommandStatusBar),
     Has("frame/statusBarVisible", true, "frame/panelsShown", false)},
};

const Rules<SessionTest, "SelectCutLine"> kSelectCutLineRules = {
    {"ActivationSelectsTheCutInTheCutList",
     Do().OpenCut("a.cut", OneFrame()).Command(kCommandAddCutToFilm).OpenCut("b.cut", OneFrame()),
     Do().Command(kCommandAddCutToFilm).Activate(0), Has("panels/cuts/selected", json::array({0}))},
    {"LineThatIsSelectedAlreadyKeepsTheOthers",
     Do().OpenCut("a.cut", OneFrame()).Command(kCommandAddCutToFilm).OpenCut("b.cut", OneFrame()),
     Do().Command(kCommandAddCutToFilm).Select(kCutList, {0, 1}).Activate(0),
     Has("panels/cuts/selected", json::array({0, 1}))},
    {"CutOutsideTheFilmLeavesTheSelection",
     Do().OpenCut("a.cut", OneFrame()).Command(kCommandAddCutToFilm).OpenCut("b.cut", OneFrame()),
     Has("panels/cuts/selected", json::array({0}))},
};

using KeyFrameCheckBox = SessionTest;

const Rules<SessionTest, "KeyFrameCheckBox"> kKeyFrameCheckBoxRules = {
    {"ClickMakesTheFrameAKeyFrameAndBack", Do().OpenCut("a.cut", OneFrame()).Line("click 10009"),
     Has("cut/frame/brightness", -51, "panels/keyFrame/checked", true), Do().Line("click 10009"),
     Has("cut/frame/brightness", 50, "panels/keyFrame/checked", false)},
    {"ClickCommitsAndRefreshesAllFields",
     Do().OpenCut("a.cut", OneFrame()).Panel(kLoopEdit, "12345").Line("click 10009"),
     Has("cut/frame/loop", 1234, "panels/loop", "1234")},
};

TEST_F(KeyFrameCheckBox, ClickShowsTheEffectiveTime) {
  CutFile file = CutFile::WithoutLayers(2);
  file.frames[0].time = 10;
  file.frames[1].time = 3;
  session.OpenCut("a.cut", file).Command(kCommandFirstFrame).Line("click 10009");
  EXPECT_TRUE(Holds(session, "cut/frame/time", 10, "panels/time", "7"));
}

TEST_F(KeyFrameCheckBox, UncheckingAKeyFrameKeepsItsOwnTime) {
  CutFile file = CutFile::WithoutLayers(2);
  file.frames[0] = {.time = 10, .brightness = -51};
  file.frames[1].time = 3;
  session.OpenCut("a.cut", file).Command(kCommandFirstFrame).Line("click 10009");
  EXPECT_TRUE(Holds(session, "cut/frame/brightness", 50, "cut/frame/time", 10));
}

const Rules<SessionTest, "Drop"> kDropRules = {
    {"OpensTheDroppedFile", Do().Write("a.cut", OneFrame().Bytes()).Line("drop " + Quoted("a.cut")),
     Has("cut/path", "a.cut")},
};

}  // namespace
}  // namespace rules
