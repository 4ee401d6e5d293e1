#include <gtest/gtest.h>

#include <string>

#include "resources/ids.h"
#include "rules/script_session.h"

namespace {

using nlohmann::json;
using rules::CutFile;
using rules::ScriptSession;

json Panels(const ScriptSession& session, int state) {
  json whole = session.StateAt(state);
  return whole["panels"];
}

json List(const ScriptSession& session, int state, const char* id) {
  json panels = Panels(session, state);
  return panels[id];
}

json Lines(const ScriptSession& session, int state) {
  json list = List(session, state, "10004");
  return list["lines"];
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

TEST(CommitPanels, RefreshShowsWhatWasStoredAndNotWhatWasTyped) {
  ScriptSession session;
  session.OpenCut("a.cut", OneFrame())
      .Panel(kFrameTimeEdit, "12345")
      .Panel(kLoopEdit, "67890")
      .Panel(kBrightnessEdit, "250")
      .Command(kCommandPreviousFrame);
  const int state = session.State();
  session.Run();
  json panels = Panels(session, state);
  EXPECT_EQ(panels["10002"], "1234");
  EXPECT_EQ(panels["10005"], "6789");
  EXPECT_EQ(panels["10007"], "100");
}

TEST(CommitPanels, CommentIsStoredAsTyped) {
  EXPECT_EQ(CommittedFrame(kCommentEdit, "two words, \"quoted\"")["comment"], "two words, \"quoted\"");
}

TEST(CommitPanels, JapaneseCommentComesThroughShiftJis) {
  EXPECT_EQ(CommittedFrame(kCommentEdit, "表示ソ")["comment"], "表示ソ");
}

TEST(CommitPanels, UnchangedValuesMarkNothing) {
  ScriptSession session;
  session.OpenCut("a.cut", OneFrame()).Command(kCommandPlay).Command(kCommandPreviousFrame);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["modified"], false);
  EXPECT_EQ(session.Cut(state)["timingStale"], false);
}

TEST(CommitPanels, ChangeMarksTimingAndNotImages) {
  ScriptSession session;
  session.OpenCut("a.cut", OneFrame()).Command(kCommandPlay).Panel(kCommentEdit, "x").Command(kCommandPreviousFrame);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["modified"], true);
  EXPECT_EQ(session.Cut(state)["timingStale"], true);
  EXPECT_EQ(session.Cut(state)["imagesStale"], false);
}

TEST(CommitPanels, TypedTextReachesTheFrameThatIsLeft) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::WithoutLayers(2)).Panel(kCommentEdit, "last").Command(kCommandPreviousFrame);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Frame(state, 1)["comment"], "last");
  EXPECT_EQ(session.Frame(state, 0)["comment"], "");
}

TEST(CommitPanels, KeyFrameKeepsItsOwnTime) {
  ScriptSession session;
  CutFile file = CutFile::WithoutLayers(2);
  file.frames[0].time = 5;
  file.frames[0].brightness = -51;
  file.frames[1].time = 2;
  session.OpenCut("a.cut", file).Command(kCommandPreviousFrame).Panel(kCommentEdit, "x").Command(kCommandNextFrame);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Frame(state, 0)["time"], 5);
  EXPECT_EQ(session.Frame(state, 0)["comment"], "x");
}

TEST(CommitPanels, BrightnessOfAKeyFrameKeepsItsMark) {
  ScriptSession session;
  CutFile file = OneFrame();
  file.frames[0].brightness = -51;
  session.OpenCut("a.cut", file).Panel(kBrightnessEdit, "30").Command(kCommandPreviousFrame);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Frame(state)["brightness"], -31);
}

TEST(CommitPanels, LosingWindowIsCommittedAndGainingWindowShown) {
  ScriptSession session;
  session.OpenCut("a.cut", OneFrame()).OpenCut("b.cut", OneFrame()).Panel(kCommentEdit, "of b").Activate(0);
  const int state = session.State();
  session.Run();
  json cuts = session.StateAt(state)["cuts"];
  ASSERT_EQ(cuts.size(), 2U);
  EXPECT_EQ(cuts[1]["frames"][0]["comment"], "of b");
  EXPECT_EQ(cuts[0]["frames"][0]["comment"], "");
  EXPECT_EQ(Panels(session, state)["10006"], "");
}

TEST(CommitPanels, OpeningASecondCutCommitsTheFirst) {
  ScriptSession session;
  session.OpenCut("a.cut", OneFrame()).Panel(kCommentEdit, "of a").OpenCut("b.cut", OneFrame());
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["cuts"][0]["frames"][0]["comment"], "of a");
  EXPECT_EQ(Panels(session, state)["10006"], "");
}

TEST(RefreshPanels, ShowsEveryFieldOfTheCurrentFrame) {
  ScriptSession session;
  CutFile file = OneFrame();
  file.frames[0] = {.time = -7, .loop = 3, .brightness = 20, .comment = "hello"};
  session.OpenCut("a.cut", file);
  const int state = session.State();
  session.Run();
  json panels = Panels(session, state);
  EXPECT_EQ(panels["10002"], "-7");
  EXPECT_EQ(panels["10005"], "3");
  EXPECT_EQ(panels["10007"], "20");
  EXPECT_EQ(panels["10006"], "hello");
  EXPECT_EQ(panels["10009"]["checked"], false);
}

TEST(RefreshPanels, KeyFrameIsCheckedAndItsBrightnessDecoded) {
  ScriptSession session;
  CutFile file = OneFrame();
  file.frames[0].brightness = -31;
  session.OpenCut("a.cut", file);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Panels(session, state)["10009"]["checked"], true);
  EXPECT_EQ(Panels(session, state)["10007"], "30");
}

TEST(RefreshPanels, FrameTimeShowsTheEffectiveTimeOfAKeyFrame) {
  ScriptSession session;
  CutFile file = CutFile::WithoutLayers(4);
  file.frames[0] = {.time = 10, .brightness = -51};
  file.frames[1].time = 2;
  file.frames[2].time = 3;
  file.frames[3].brightness = -51;
  session.OpenCut("a.cut", file).Command(kCommandFirstFrame);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Panels(session, state)["10002"], "5");
}

TEST(RefreshPanels, NegativeKeyFrameTimeKeepsItsSign) {
  ScriptSession session;
  CutFile file = CutFile::WithoutLayers(2);
  file.frames[0] = {.time = -10, .brightness = -51};
  file.frames[1].time = -2;
  session.OpenCut("a.cut", file).Command(kCommandFirstFrame);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Panels(session, state)["10002"], "-8");
}

TEST(RefreshPanels, KeyFrameTimeIsAtLeastOne) {
  ScriptSession session;
  CutFile file = CutFile::WithoutLayers(3);
  file.frames[0] = {.time = 4, .brightness = -51};
  file.frames[1].time = 3;
  file.frames[2].time = 3;
  session.OpenCut("a.cut", file).Command(kCommandFirstFrame);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Panels(session, state)["10002"], "1");
}

TEST(RefreshPanels, CheckBoxTextCountsFrameAndTiming) {
  ScriptSession session;
  CutFile file = CutFile::WithoutLayers(3);
  file.frames[0].time = 4;
  file.frames[1].time = -3;
  file.frames[2].time = 9;
  session.OpenCut("a.cut", file);
  const int last = session.State();
  session.Command(kCommandFirstFrame);
  const int first = session.State();
  session.Run();
  EXPECT_EQ(Panels(session, last)["10009"]["text"], "3(8f)");
  EXPECT_EQ(Panels(session, first)["10009"]["text"], "1(1f)");
}

TEST(RefreshPanels, TimingPositionSumsEffectiveTimes) {
  ScriptSession session;
  CutFile file = CutFile::WithoutLayers(3);
  file.frames[0] = {.time = 10, .brightness = -51};
  file.frames[1].time = 4;
  session.OpenCut("a.cut", file);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Panels(session, state)["10009"]["text"], "3(10f)");
}

TEST(RefreshPanels, LayerLinesStandInRecordOrderBottomFirst) {
  ScriptSession session;
  CutFile file;
  file.layers = {{.name = "A", .cells = {1, 2}}, {.name = "B", .cells = {1}}, {.name = "C", .cells = {1, 2, 3}}};
  file.frames.push_back({.records = {{.layer = 2, .cell = 2}, {.layer = 0, .cell = 0}, {.layer = 1, .cell = 0}}});
  session.OpenCut("a.cut", file);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Lines(session, state), json::array({"C (3/3)", "A (1/2)", "B (1/1)"}));
  EXPECT_EQ(List(session, state, "10004")["selected"], json::array({2}));
}

TEST(RefreshPanels, BlankRecordCountsAsCellZero) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1, 2, 3}, {-3}));
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Lines(session, state), json::array({"A (0/3)"}));
}

TEST(RefreshPanels, FrameWithoutRecordsShowsAnEmptyList) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1}, {0})).OpenCut("b.cut", OneFrame());
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Lines(session, state), json::array());
  EXPECT_EQ(List(session, state, "10004")["selected"], json::array());
}

TEST(RefreshPanels, CurrentRecordIsTheSelectedLine) {
  ScriptSession session;
  CutFile file;
  file.layers = {{.name = "A", .cells = {1}}, {.name = "B", .cells = {1}}};
  file.frames.push_back({.records = {{.layer = 0}, {.layer = 1}}});
  session.OpenCut("a.cut", file).Select(kLayerList, {0}).Command(kCommandPreviousFrame);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(List(session, state, "10004")["selected"], json::array({0}));
}

TEST(FrameTimeEdit, OfAKeyFrameCanNotBeTypedIn) {
  ScriptSession session;
  CutFile file = OneFrame();
  file.frames[0] = {.time = 6, .brightness = -51};
  session.OpenCut("a.cut", file).Panel(kFrameTimeEdit, "9");
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Panels(session, state)["10002"], "6");
}

TEST(FrameTimeEdit, CanBeTypedInAgainOnAPlainFrame) {
  ScriptSession session;
  CutFile file = CutFile::WithoutLayers(2);
  file.frames[1].brightness = -51;
  session.OpenCut("a.cut", file).Command(kCommandPreviousFrame).Panel(kFrameTimeEdit, "9").Command(kCommandNextFrame);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Frame(state, 0)["time"], 9);
}

TEST(RefreshLayerLine, FollowsACellCommand) {
  ScriptSession session;
  CutFile file;
  file.layers = {{.name = "A", .cells = {1, 2}}, {.name = "B", .cells = {1, 2}}};
  file.frames.push_back({.records = {{.layer = 0}, {.layer = 1}}});
  session.OpenCut("a.cut", file).Select(kLayerList, {0}).Command(kCommandAddCell);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Lines(session, state), json::array({"A (2/3)", "B (1/2)"}));
  EXPECT_EQ(List(session, state, "10004")["selected"], json::array({0}));
}

TEST(RefreshLayerLine, RewritesOneLineAlone) {
  ScriptSession session;
  CutFile file;
  file.layers = {{.name = "A", .cells = {1, 2}}};
  file.frames.push_back({.records = {{.layer = 0}, {.layer = 0}}});
  session.OpenCut("a.cut", file).Command(kCommandAddCell);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Lines(session, state)[0], "A (1/2)");
  EXPECT_EQ(Lines(session, state)[1], "A (2/3)");
}

TEST(ClosingTheLastCut, LeavesThePanelsAsTheyAre) {
  ScriptSession session;
  CutFile file = CutFile::Showing({1, 2}, {1});
  file.frames[0].comment = "old";
  file.frames[0].time = 7;
  session.OpenCut("a.cut", file).Close();
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Panels(session, state)["10006"], "old");
  EXPECT_EQ(Panels(session, state)["10002"], "7");
  EXPECT_EQ(Lines(session, state), json::array({"A (2/2)"}));
}

TEST(ClosingACut, ShowsTheCutThatBecomesActive) {
  ScriptSession session;
  CutFile first = OneFrame();
  first.frames[0].comment = "first";
  session.OpenCut("a.cut", first).OpenCut("b.cut", OneFrame()).Close();
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Panels(session, state)["10006"], "first");
}

json FrameOf(const ScriptSession& session, int state) {
  json whole = session.StateAt(state);
  return whole["frame"];
}

TEST(TogglePanels, SpaceFlipsThePanelState) {
  ScriptSession session;
  session.OpenCut("a.cut", OneFrame()).Char(' ');
  const int off = session.State();
  session.Char(' ');
  const int on = session.State();
  session.Run();
  EXPECT_EQ(FrameOf(session, off)["panelsShown"], false);
  EXPECT_EQ(FrameOf(session, on)["panelsShown"], true);
}

TEST(TogglePanels, KeepsWhatTheUserWantsOfTheBars) {
  ScriptSession session;
  session.OpenCut("a.cut", OneFrame()).Char(' ');
  const int state = session.State();
  session.Run();
  EXPECT_EQ(FrameOf(session, state)["statusBarVisible"], true);
  EXPECT_EQ(FrameOf(session, state)["toolBarVisible"], true);
}

TEST(Bars, TheirCommandsFlipTheirOwnBit) {
  ScriptSession session;
  session.Command(kCommandStatusBar);
  const int status = session.State();
  session.Command(kCommandToolBar);
  const int both = session.State();
  session.Command(kCommandStatusBar).Command(kCommandToolBar);
  const int none = session.State();
  session.Run();
  EXPECT_EQ(FrameOf(session, status)["statusBarVisible"], false);
  EXPECT_EQ(FrameOf(session, status)["toolBarVisible"], true);
  EXPECT_EQ(FrameOf(session, both)["toolBarVisible"], false);
  EXPECT_EQ(FrameOf(session, none)["statusBarVisible"], true);
  EXPECT_EQ(FrameOf(session, none)["toolBarVisible"], true);
}

TEST(Bars, FlipTheirBitWhileThePanelsAreHidden) {
  ScriptSession session;
  session.OpenCut("a.cut", OneFrame()).Char(' ').Command(kCommandStatusBar);
  const int off = session.State();
  session.Command(kCommandStatusBar);
  const int on = session.State();
  session.Run();
  EXPECT_EQ(FrameOf(session, off)["statusBarVisible"], false);
  EXPECT_EQ(FrameOf(session, on)["statusBarVisible"], true);
  EXPECT_EQ(FrameOf(session, on)["panelsShown"], false);
}

TEST(SelectCutLine, ActivationSelectsTheCutInTheCutList) {
  ScriptSession session;
  session.OpenCut("a.cut", OneFrame())
      .Command(kCommandAddCutToFilm)
      .OpenCut("b.cut", OneFrame())
      .Command(kCommandAddCutToFilm)
      .Activate(0);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(List(session, state, "10003")["selected"], json::array({0}));
}

TEST(SelectCutLine, LineThatIsSelectedAlreadyKeepsTheOthers) {
  ScriptSession session;
  session.OpenCut("a.cut", OneFrame())
      .Command(kCommandAddCutToFilm)
      .OpenCut("b.cut", OneFrame())
      .Command(kCommandAddCutToFilm);
  session.Select(kCutList, {0, 1}).Activate(0);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(List(session, state, "10003")["selected"], json::array({0, 1}));
}

TEST(SelectCutLine, CutOutsideTheFilmLeavesTheSelection) {
  ScriptSession session;
  session.OpenCut("a.cut", OneFrame()).Command(kCommandAddCutToFilm).OpenCut("b.cut", OneFrame());
  const int state = session.State();
  session.Run();
  EXPECT_EQ(List(session, state, "10003")["selected"], json::array({0}));
}

TEST(KeyFrameCheckBox, ClickMakesTheFrameAKeyFrameAndBack) {
  ScriptSession session;
  session.OpenCut("a.cut", OneFrame()).Line("click 10009");
  const int on = session.State();
  session.Line("click 10009");
  const int off = session.State();
  session.Run();
  EXPECT_EQ(session.Frame(on)["brightness"], -51);
  EXPECT_EQ(Panels(session, on)["10009"]["checked"], true);
  EXPECT_EQ(session.Frame(off)["brightness"], 50);
  EXPECT_EQ(Panels(session, off)["10009"]["checked"], false);
}

TEST(KeyFrameCheckBox, ClickCommitsAndRefreshesAllFields) {
  ScriptSession session;
  session.OpenCut("a.cut", OneFrame()).Panel(kLoopEdit, "12345").Line("click 10009");
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Frame(state)["loop"], 1234);
  EXPECT_EQ(Panels(session, state)["10005"], "1234");
}

TEST(KeyFrameCheckBox, ClickShowsTheEffectiveTime) {
  ScriptSession session;
  CutFile file = CutFile::WithoutLayers(2);
  file.frames[0].time = 10;
  file.frames[1].time = 3;
  session.OpenCut("a.cut", file).Command(kCommandFirstFrame).Line("click 10009");
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Frame(state)["time"], 10);
  EXPECT_EQ(Panels(session, state)["10002"], "7");
}

TEST(KeyFrameCheckBox, UncheckingAKeyFrameKeepsItsOwnTime) {
  ScriptSession session;
  CutFile file = CutFile::WithoutLayers(2);
  file.frames[0] = {.time = 10, .brightness = -51};
  file.frames[1].time = 3;
  session.OpenCut("a.cut", file).Command(kCommandFirstFrame).Line("click 10009");
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Frame(state)["brightness"], 50);
  EXPECT_EQ(session.Frame(state)["time"], 10);
}

TEST(Drop, OpensTheDroppedFile) {
  ScriptSession session;
  session.Write("a.cut", OneFrame().Bytes());
  session.Line("drop " + rules::Quoted(session.Path("a.cut")));
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["path"], session.Path("a.cut"));
}

}  // namespace
