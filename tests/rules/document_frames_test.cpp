#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "resources/ids.h"
#include "rules/script_session.h"
#include "rules/session_state.h"

namespace {

using nlohmann::json;
using rules::CutFile;
using rules::FileFrame;
using rules::MarksOf;
using rules::PropertiesOf;
using rules::ScriptSession;

CutFile Frames(const std::vector<FileFrame>& frames) {
  CutFile file;
  file.frames = frames;
  return file;
}

// This field of every frame.
std::vector<int> Each(const ScriptSession& session, int state, const std::string& field) {
  return rules::OfEachFrame(session, state, "/" + field);
}

std::string Panel(const ScriptSession& session, int state, const std::string& id) {
  return rules::TextOf(rules::PanelOf(session, state, id));
}

TEST(AddFrame, StandsBehindTheCurrentFrameAndBecomesCurrent) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{.time = 1}, {.time = 2}, {.time = 3}}))
      .Command(kCommandPreviousFrame)
      .Command(kCommandAddFrame);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Each(session, state, "time"), (std::vector<int>{1, 2, 2, 3}));
  EXPECT_EQ(session.Cut(state)["currentFrame"], 2);
}

TEST(AddFrame, CopiesRecordsPositionAndTimeOfTheFrameBefore) {
  ScriptSession session;
  CutFile file = CutFile::Showing({1, 2}, {1});
  file.frames[0].x = 5;
  file.frames[0].y = -6;
  file.frames[0].time = 4;
  file.frames[0].records[0].x = 3;
  session.OpenCut("a.cut", file).Command(kCommandAddFrame);
  const int state = session.State();
  session.Run();
  json frame = session.Frame(state, 1);
  EXPECT_EQ(frame["records"], session.Frame(state, 0)["records"]);
  EXPECT_EQ(frame["records"].size(), 1U);
  EXPECT_EQ(frame["currentRecord"], 0);
  EXPECT_EQ(frame["x"], 5);
  EXPECT_EQ(frame["y"], -6);
  EXPECT_EQ(frame["time"], 4);
}

TEST(AddFrame, DoesNotCopyBrightnessKeyOrComment) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{.brightness = -21, .comment = "c"}})).Command(kCommandAddFrame);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Frame(state, 1)["brightness"], 50);
  EXPECT_EQ(session.Frame(state, 1)["comment"], "");
}

TEST(AddFrame, LoopOfOneIsCopiedAndAnyOtherBecomesZero) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{.loop = 3}})).Command(kCommandAddFrame).OpenCut("b.cut", Frames({{.loop = 1}}));
  session.Command(kCommandAddFrame).OpenCut("c.cut", Frames({{.loop = 0}})).Command(kCommandAddFrame);
  const int state = session.State();
  session.Run();
  json cuts = session.StateAt(state)["cuts"];
  ASSERT_EQ(cuts.size(), 3U);
  EXPECT_EQ(cuts[0]["frames"][1]["loop"], 0);
  EXPECT_EQ(cuts[1]["frames"][1]["loop"], 1);
  EXPECT_EQ(cuts[2]["frames"][1]["loop"], 0);
}

TEST(AddFrame, BehindAKeyFrameTakesHalfItsTimeAndTheKeyFrameKeepsIt) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{.time = 5, .brightness = -51}})).Command(kCommandAddFrame);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Each(session, state, "time"), (std::vector<int>{5, 2}));
}

TEST(AddFrame, BehindAKeyFrameOfTimeOneOrLessIsNotHalved) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{.time = 1, .brightness = -51}})).Command(kCommandAddFrame);
  const int one = session.State();
  session.OpenCut("b.cut", Frames({{.time = -8, .brightness = -51}})).Command(kCommandAddFrame);
  const int negative = session.State();
  session.Run();
  EXPECT_EQ(Each(session, one, "time"), (std::vector<int>{1, 1}));
  EXPECT_EQ(Each(session, negative, "time"), (std::vector<int>{-8, -8}));
}

TEST(AddFrame, CommitsBeforeItCopies) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{}})).Panel(kFrameTimeEdit, "9").Command(kCommandAddFrame);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Each(session, state, "time"), (std::vector<int>{9, 9}));
}

TEST(AddFrame, RefreshesThePanels) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{.time = 3, .comment = "old"}})).Command(kCommandAddFrame);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Panel(session, state, "10006"), "");
  EXPECT_EQ(session.StateAt(state)["panels"]["10009"]["text"], "2(4f)");
}

TEST(AddFrame, MarksImages) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{}})).Command(kCommandPlay).Command(kCommandAddFrame);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(MarksOf(session, state), "modified imagesStale timingStale");
}

TEST(InsertFrame, StandsAtTheCurrentPlaceAndCopiesTheFrameBehindIt) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{.time = 1}, {.time = 2}, {.time = 3}}))
      .Command(kCommandPreviousFrame)
      .Command(kCommandInsertFrame);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Each(session, state, "time"), (std::vector<int>{1, 2, 2, 3}));
  EXPECT_EQ(session.Cut(state)["currentFrame"], 1);
}

TEST(InsertFrame, DoesNotHalveTheTimeOfAKeyFrame) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{.time = 6, .brightness = -51}})).Command(kCommandInsertFrame);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Each(session, state, "time"), (std::vector<int>{6, 6}));
  EXPECT_EQ(Each(session, state, "brightness"), (std::vector<int>{50, -51}));
}

TEST(InsertFrame, MarksNothing) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{}})).Command(kCommandPlay).Command(kCommandInsertFrame);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["frames"].size(), 2U);
  EXPECT_EQ(MarksOf(session, state), "");
}

TEST(InsertFrame, CommitsToTheFrameThatMovesBack) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{}})).Panel(kCommentEdit, "typed").Command(kCommandInsertFrame);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Frame(state, 0)["comment"], "");
  EXPECT_EQ(session.Frame(state, 1)["comment"], "typed");
  EXPECT_EQ(Panel(session, state, "10006"), "");
}

TEST(DeleteFrame, InTheMiddleShowsItsSuccessor) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{.time = 1}, {.time = 2}, {.time = 3}}))
      .Command(kCommandPreviousFrame)
      .Command(kCommandDeleteFrame);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Each(session, state, "time"), (std::vector<int>{1, 3}));
  EXPECT_EQ(session.Cut(state)["currentFrame"], 1);
  EXPECT_EQ(Panel(session, state, "10002"), "3");
}

TEST(DeleteFrame, LastOfSeveralLeavesTheNewLastFrameCurrent) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{.time = 1}, {.time = 2}})).Command(kCommandDeleteFrame);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["currentFrame"], 0);
  EXPECT_EQ(Panel(session, state, "10002"), "1");
}

TEST(DeleteFrame, DoesNotCommitSoThatTypedTextGoesWithTheFrame) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{}, {}})).Panel(kCommentEdit, "typed").Command(kCommandDeleteFrame);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Frame(state)["comment"], "");
  EXPECT_EQ(Panel(session, state, "10006"), "");
}

TEST(DeleteFrame, IsRefusedForTheOnlyFrameWithoutARefresh) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{}}))
      .Command(kCommandPlay)
      .Panel(kCommentEdit, "typed")
      .Command(kCommandDeleteFrame);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["frames"].size(), 1U);
  EXPECT_EQ(session.Cut(state)["modified"], false);
  EXPECT_EQ(Panel(session, state, "10006"), "typed");
  EXPECT_EQ(session.Frame(state)["comment"], "");
}

TEST(DeleteFrame, KeepsTheLayerUnderEdit) {
  ScriptSession session;
  CutFile file;
  file.layers = {{.name = "A"}, {.name = "B"}};
  file.frames = {{.records = {{.layer = 0}, {.layer = 1}}}, {.records = {{.layer = 0}, {.layer = 1}}}};
  session.OpenCut("a.cut", file).Select(kLayerList, {0}).Command(kCommandDeleteFrame);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Frame(state)["currentRecord"], 0);
}

TEST(DeleteFrame, RepaintsTheView) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1, 3}, {0, 1})).Command(kCommandDeleteFrame);
  const int view = session.View();
  session.Run();
  EXPECT_EQ(session.ViewAt(view).Count(1), 24);
}

class StepPastTheEnd : public testing::TestWithParam<int> {};

TEST_P(StepPastTheEnd, StillCommitsAndRefreshes) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{}})).Panel(kBrightnessEdit, "250").Command(GetParam());
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Frame(state)["brightness"], 100);
  EXPECT_EQ(Panel(session, state, "10007"), "100");
}

INSTANTIATE_TEST_SUITE_P(Document, StepPastTheEnd, testing::Values(kCommandPreviousFrame, kCommandNextFrame));

TEST(StepFrame, KeepsTheLayerUnderEditWhereTheFrameHasIt) {
  ScriptSession session;
  CutFile file;
  file.layers = {{.name = "A"}, {.name = "B"}};
  file.frames = {{.records = {{.layer = 0}}},
                 {.records = {{.layer = 0}, {.layer = 1}}},
                 {.records = {{.layer = 1}, {.layer = 0}}}};
  session.OpenCut("a.cut", file).Command(kCommandPreviousFrame);
  const int second = session.State();
  session.Command(kCommandPreviousFrame);
  const int first = session.State();
  session.Command(kCommandNextFrame);
  const int again = session.State();
  session.Run();
  EXPECT_EQ(session.Frame(second)["currentRecord"], 1);
  EXPECT_EQ(session.Frame(first)["currentRecord"], 0);
  EXPECT_EQ(session.Frame(again)["currentRecord"], 0);
}

TEST(StepFrame, RepaintsTheView) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1, 3}, {0, 1})).Command(kCommandPreviousFrame);
  const int view = session.View();
  session.Run();
  EXPECT_EQ(session.ViewAt(view).Count(1), 24);
}

TEST(StepFrame, MarksNothing) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{}, {}}))
      .Command(kCommandPlay)
      .Command(kCommandPreviousFrame)
      .Command(kCommandNextFrame);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["modified"], false);
  EXPECT_EQ(session.Cut(state)["imagesStale"], false);
}

TEST(FirstAndLastFrame, MoveThere) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{}, {}, {}})).Command(kCommandFirstFrame);
  const int first = session.State();
  session.Command(kCommandLastFrame);
  const int last = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(first)["currentFrame"], 0);
  EXPECT_EQ(session.Cut(last)["currentFrame"], 2);
}

class EndOfFrames : public testing::TestWithParam<int> {};

TEST_P(EndOfFrames, InACutOfOneFrameCommitsWithoutARefresh) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{}})).Panel(kBrightnessEdit, "250").Command(GetParam());
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Frame(state)["brightness"], 100);
  EXPECT_EQ(Panel(session, state, "10007"), "250");
}

TEST_P(EndOfFrames, RefreshesAlsoWhenItDoesNotMove) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{}, {}})).Command(GetParam()).Panel(kBrightnessEdit, "250").Command(GetParam());
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Panel(session, state, "10007"), "100");
}

INSTANTIATE_TEST_SUITE_P(Document, EndOfFrames, testing::Values(kCommandFirstFrame, kCommandLastFrame));

TEST(KeyFrames, NextAndPreviousGoToTheNearest) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{.brightness = -51}, {}, {.brightness = -51}, {}, {.brightness = -51}, {}}));
  session.Command(kCommandPreviousKeyFrame);
  const int four = session.State();
  session.Command(kCommandPreviousKeyFrame);
  const int two = session.State();
  session.Command(kCommandNextKeyFrame);
  const int again = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(four)["currentFrame"], 4);
  EXPECT_EQ(session.Cut(two)["currentFrame"], 2);
  EXPECT_EQ(session.Cut(again)["currentFrame"], 4);
}

class NoKeyFrame : public testing::TestWithParam<int> {};

TEST_P(NoKeyFrame, CommitsButNeitherMovesNorRefreshes) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{}, {}, {}}))
      .Command(kCommandPreviousFrame)
      .Panel(kBrightnessEdit, "250")
      .Command(GetParam());
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["currentFrame"], 1);
  EXPECT_EQ(session.Frame(state)["brightness"], 100);
  EXPECT_EQ(Panel(session, state, "10007"), "250");
}

INSTANTIATE_TEST_SUITE_P(Document, NoKeyFrame, testing::Values(kCommandNextKeyFrame, kCommandPreviousKeyFrame));

TEST(KeyFrames, MoveRefreshesThePanels) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{.brightness = -31, .comment = "key"}, {}})).Command(kCommandPreviousKeyFrame);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Panel(session, state, "10006"), "key");
  EXPECT_EQ(Panel(session, state, "10007"), "30");
}

TEST(AddFrames, RunsTheAdditionAsOftenAsAsked) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{.time = 8, .brightness = -51}}))
      .Dialog(kFrameCountDialog, {{kFrameCountEdit, "3"}})
      .Command(kCommandAddFrames);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Each(session, state, "time"), (std::vector<int>{8, 4, 4, 4}));
  EXPECT_EQ(session.Cut(state)["currentFrame"], 3);
  EXPECT_EQ(session.StateAt(state)["panels"]["10009"]["text"], "4(10f)");
}

TEST(AddFrames, DialogStartsWithOne) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{}})).Dialog(kFrameCountDialog, {}).Command(kCommandAddFrames);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["frames"].size(), 2U);
}

TEST(AddFrames, CancelStillCommits) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{}}))
      .Panel(kCommentEdit, "typed")
      .Dialog(kFrameCountDialog, {{kFrameCountEdit, "3"}}, "cancel")
      .Command(kCommandAddFrames);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["frames"].size(), 1U);
  EXPECT_EQ(session.Frame(state)["comment"], "typed");
}

TEST(DeleteFrames, DeletesFromTheCurrentFrameOn) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{.time = 1}, {.time = 2}, {.time = 3}, {.time = 4}, {.time = 5}}));
  session.Command(kCommandFirstFrame)
      .Command(kCommandNextFrame)
      .Dialog(kFrameCountDialog, {{kFrameCountEdit, "2"}})
      .Command(kCommandDeleteFrames);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Each(session, state, "time"), (std::vector<int>{1, 4, 5}));
  EXPECT_EQ(session.Cut(state)["currentFrame"], 1);
  EXPECT_EQ(Panel(session, state, "10002"), "4");
}

TEST(DeleteFrames, MoreThanExistLeavesOneFrame) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{.time = 1}, {.time = 2}, {.time = 3}})).Command(kCommandPreviousFrame);
  session.Dialog(kFrameCountDialog, {{kFrameCountEdit, "10"}}).Command(kCommandDeleteFrames);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Each(session, state, "time"), (std::vector<int>{1}));
}

TEST(DeleteFrames, DoesNotRepaint) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1, 3}, {0, 1}))
      .Dialog(kFrameCountDialog, {})
      .Command(kCommandDeleteFrames);
  const int view = session.View();
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["frames"].size(), 1U);
  EXPECT_EQ(session.ViewAt(view).Count(3), 24);
}

CutFile BrightnessFrames(int first, int last) {
  return Frames({{.brightness = first}, {}, {}, {}, {.brightness = last}});
}

// Five frames, of which the first and the last have these values of brightness; the first one is current.
struct BrightnessCase {
  const char* name;
  int first;
  int last;
  rules::DialogValues dialog;
  std::vector<int> ramp;
};

class BrightnessRampFromTheFirstFrame : public testing::TestWithParam<BrightnessCase> {};

TEST_P(BrightnessRampFromTheFirstFrame, IsSetInEveryFrame) {
  const BrightnessCase& test = GetParam();
  ScriptSession session;
  session.OpenCut("a.cut", BrightnessFrames(test.first, test.last))
      .Command(kCommandFirstFrame)
      .Dialog(kBrightnessRampDialog, test.dialog);
  session.Command(kCommandBrightnessRamp);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Each(session, state, "brightness"), test.ramp);
}

INSTANTIATE_TEST_SUITE_P(
    Document, BrightnessRampFromTheFirstFrame,
    testing::Values(BrightnessCase{"SpreadsEvenly", 0, 100, {{kRampEndEdit, "5"}}, {0, 25, 50, 75, 100}},
                    BrightnessCase{"FallsEvenly", 100, 0, {{kRampEndEdit, "5"}}, {100, 75, 50, 25, 0}},
                    BrightnessCase{"SmallFallRisesInstead", 50, 48, {{kRampEndEdit, "5"}}, {50, 51, 52, 52, 52}},
                    BrightnessCase{"DialogStartsWithTheLastFrame", 0, 100, {}, {0, 25, 50, 75, 100}}),
    [](const testing::TestParamInfo<BrightnessCase>& test) { return std::string(test.param.name); });

TEST(BrightnessRamp, FromALaterFrameRunsFromTheEndFrame) {
  ScriptSession session;
  session.OpenCut("a.cut", BrightnessFrames(0, 100))
      .Dialog(kBrightnessRampDialog, {{kRampEndEdit, "1"}})
      .Command(kCommandBrightnessRamp);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Each(session, state, "brightness"), (std::vector<int>{0, 25, 50, 75, 100}));
  EXPECT_EQ(session.Cut(state)["currentFrame"], 4);
}

TEST(BrightnessRamp, CommitsFirst) {
  ScriptSession session;
  session.OpenCut("a.cut", BrightnessFrames(50, 100))
      .Command(kCommandFirstFrame)
      .Panel(kBrightnessEdit, "0")
      .Dialog(kBrightnessRampDialog, {})
      .Command(kCommandBrightnessRamp);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Each(session, state, "brightness"), (std::vector<int>{0, 25, 50, 75, 100}));
}

TEST(BrightnessRamp, DoesNotRefresh) {
  ScriptSession session;
  session.OpenCut("a.cut", BrightnessFrames(50, 48))
      .Dialog(kBrightnessRampDialog, {{kRampEndEdit, "1"}})
      .Command(kCommandBrightnessRamp);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Frame(state)["brightness"], 52);
  EXPECT_EQ(Panel(session, state, "10007"), "48");
}

TEST(BrightnessRamp, KeepsKeyMarks) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{.brightness = -1}, {}, {.brightness = -51}, {}, {.brightness = -101}}));
  session.Command(kCommandFirstFrame).Dialog(kBrightnessRampDialog, {}).Command(kCommandBrightnessRamp);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Each(session, state, "brightness"), (std::vector<int>{-1, 25, -51, 75, -101}));
}

TEST(BrightnessRamp, MarksTiming) {
  ScriptSession session;
  session.OpenCut("a.cut", BrightnessFrames(0, 100))
      .Command(kCommandPlay)
      .Command(kCommandFirstFrame)
      .Dialog(kBrightnessRampDialog, {})
      .Command(kCommandBrightnessRamp);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(MarksOf(session, state), "modified timingStale");
}

TEST(BrightnessRamp, OntoItselfChangesNothing) {
  ScriptSession session;
  session.OpenCut("a.cut", BrightnessFrames(0, 100))
      .Command(kCommandPlay)
      .Dialog(kBrightnessRampDialog, {})
      .Command(kCommandBrightnessRamp);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Each(session, state, "brightness"), (std::vector<int>{0, 50, 50, 50, 100}));
  EXPECT_EQ(session.Cut(state)["modified"], false);
}

TEST(BrightnessRamp, NegativeTimeShortensTheSpanSoThatTheRampEndsBeforeTheEndFrame) {
  ScriptSession session;
  // 2 - 1 + 2 = 3 units, of which the first two frames already use three.
  session.OpenCut("a.cut", Frames({{.time = 2, .brightness = 0}, {.time = -1}, {.time = 2}, {.brightness = 30}}));
  session.Command(kCommandFirstFrame).Dialog(kBrightnessRampDialog, {}).Command(kCommandBrightnessRamp);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Each(session, state, "brightness"), (std::vector<int>{0, 20, 30, 30}));
}

TEST(FramePositionRamp, InterpolatesStraightAndTruncates) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{.x = 0, .y = 10}, {}, {}, {.x = 10, .y = -10}}));
  session.Command(kCommandFirstFrame).Dialog(kFrameRampDialog, {{kRampEndEdit, "4"}}).Command(kCommandFrameRamp);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Each(session, state, "x"), (std::vector<int>{0, 3, 6, 10}));
  EXPECT_EQ(Each(session, state, "y"), (std::vector<int>{10, 3, -3, -10}));
}

TEST(FramePositionRamp, CountsTheMagnitudeOfTimes) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{.time = -3, .x = 0}, {.time = 1}, {.x = 40}}));
  session.Command(kCommandFirstFrame).Dialog(kFrameRampDialog, {}).Command(kCommandFrameRamp);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Each(session, state, "x"), (std::vector<int>{0, 30, 40}));
}

TEST(FramePositionRamp, CommitsAfterOk) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{.x = 0}, {.time = 1}, {.x = 40}}));
  session.Command(kCommandFirstFrame)
      .Panel(kFrameTimeEdit, "3")
      .Dialog(kFrameRampDialog, {})
      .Command(kCommandFrameRamp);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Each(session, state, "x"), (std::vector<int>{0, 30, 40}));
}

TEST(FramePositionRamp, CancelDoesNotCommit) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{}, {}}))
      .Panel(kCommentEdit, "typed")
      .Dialog(kFrameRampDialog, {}, "cancel")
      .Command(kCommandFrameRamp);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Frame(state)["comment"], "");
}

TEST(FramePositionRamp, MarksTiming) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{}, {.x = 8}}))
      .Command(kCommandPlay)
      .Dialog(kFrameRampDialog, {{kRampEndEdit, "1"}})
      .Command(kCommandFrameRamp);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(MarksOf(session, state), "modified timingStale");
}

CutFile MovingRecord(const std::vector<int>& places) {
  CutFile file = CutFile::Showing({1}, std::vector<int>(places.size(), 0));
  for (size_t i = 0; i < places.size(); ++i) file.frames[i].records[0].x = places[i];
  return file;
}

// Where the first record of every frame lies.
std::vector<int> RecordPlaces(const ScriptSession& session, int state) {
  return rules::OfEachFrame(session, state, "/records/0/x");
}

// Where the record lies in five frames, the first of which is current.
struct PositionCase {
  const char* name;
  std::vector<int> places;
  rules::DialogValues dialog;
  std::vector<int> ramp;
};

class LayerPositionRampOfFive : public testing::TestWithParam<PositionCase> {};

TEST_P(LayerPositionRampOfFive, IsSetInEveryFrame) {
  const PositionCase& test = GetParam();
  ScriptSession session;
  session.OpenCut("a.cut", MovingRecord(test.places))
      .Command(kCommandFirstFrame)
      .Dialog(kLayerRampDialog, test.dialog)
      .Command(kCommandLayerRamp);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(RecordPlaces(session, state), test.ramp);
}

INSTANTIATE_TEST_SUITE_P(
    Document, LayerPositionRampOfFive,
    testing::Values(
        PositionCase{"SpreadsTheRemainderOverTheFirstUnits", {0, 0, 0, 0, 10}, {{kRampEndEdit, "5"}}, {0, 3, 6, 8, 10}},
        PositionCase{"SmallStepBackMovesForward", {0, 0, 0, 0, -2}, {}, {0, 1, 2, 2, 2}},
        PositionCase{"LargerStepBackSpreadsItsRemainderBackward", {0, 0, 0, 0, -10}, {}, {0, -3, -6, -8, -10}}),
    [](const testing::TestParamInfo<PositionCase>& test) { return std::string(test.param.name); });

TEST(LayerPositionRamp, DoesNotCommit) {
  ScriptSession session;
  session.OpenCut("a.cut", MovingRecord({0, 0, 8})).Command(kCommandFirstFrame).Panel(kCommentEdit, "typed");
  session.Dialog(kLayerRampDialog, {}).Command(kCommandLayerRamp);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(RecordPlaces(session, state), (std::vector<int>{0, 4, 8}));
  EXPECT_EQ(session.Frame(state)["comment"], "");
}

TEST(LayerPositionRamp, MarksImages) {
  ScriptSession session;
  session.OpenCut("a.cut", MovingRecord({0, 0, 8}))
      .Command(kCommandPlay)
      .Dialog(kLayerRampDialog, {{kRampEndEdit, "1"}})
      .Command(kCommandLayerRamp);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["modified"], true);
  EXPECT_EQ(session.Cut(state)["imagesStale"], true);
}

TEST(MakeAllKeyFrames, KeepsTheBrightnessOfEachFrame) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{.brightness = 0}, {.brightness = 50}, {.brightness = -101}}))
      .Command(kCommandAllKeyFrames);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Each(session, state, "brightness"), (std::vector<int>{-1, -51, -101}));
}

TEST(MakeAllKeyFrames, RefreshesWithoutACommit) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{}})).Panel(kCommentEdit, "typed").Command(kCommandAllKeyFrames);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Frame(state)["comment"], "");
  EXPECT_EQ(Panel(session, state, "10006"), "");
  EXPECT_EQ(session.StateAt(state)["panels"]["10009"]["checked"], true);
}

TEST(MakeAllKeyFrames, MarksTiming) {
  ScriptSession session;
  session.OpenCut("a.cut", Frames({{}})).Command(kCommandPlay).Command(kCommandAllKeyFrames);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(MarksOf(session, state), "modified timingStale");
}

TEST(FrameBitmap, IsWrittenToTheChosenFile) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1}, {0})).File(session.Path("out")).Command(kCommandExportBitmap).Run();
  const rules::PixelMatrix picture = rules::PixelMatrix::FromBitmap(session.Path("out.bmp"));
  EXPECT_EQ(picture.Width(), 8);
  EXPECT_EQ(picture.Height(), 3);
  EXPECT_EQ(picture.Count(0), 24);
}

TEST(FrameBitmap, CancelWritesNothing) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1}, {0})).File("cancel").Command(kCommandExportBitmap).Run();
  EXPECT_EQ(session.Files(), std::vector<std::string>{"a.cut"});
}

TEST(FrameSize, IsTakenFromTheDialogAndMarksTiming) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1}, {0})).Command(kCommandPlay);
  session.Dialog(kFrameSizeDialog, {{kFrameWidthEdit, "5"}, {kFrameHeightEdit, "2"}}).Command(kCommandFrameSize);
  const int state = session.State();
  session.Run();
  json cut = session.Cut(state);
  EXPECT_EQ(cut["frameWidth"], 5);
  EXPECT_EQ(cut["frameHeight"], 2);
  EXPECT_EQ(cut["width"], 8);
  EXPECT_EQ(MarksOf(session, state), "modified timingStale");
}

TEST(FrameSize, DialogStartsWithTheFrameSize) {
  ScriptSession session;
  CutFile file = CutFile::WithoutLayers(1);
  file.frameWidth = 6;
  file.frameHeight = 2;
  session.OpenCut("a.cut", file).Dialog(kFrameSizeDialog, {}).Command(kCommandFrameSize);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["frameWidth"], 6);
  EXPECT_EQ(session.Cut(state)["frameHeight"], 2);
}

TEST(FrameSize, CancelChangesNothing) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::WithoutLayers(1))
      .Dialog(kFrameSizeDialog, {{kFrameWidthEdit, "5"}}, "cancel")
      .Command(kCommandFrameSize);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["frameWidth"], 8);
  EXPECT_EQ(session.Cut(state)["modified"], false);
}

TEST(CutProperties, AreTakenFromTheDialog) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1}, {0})).Command(kCommandPlay);
  session
      .Dialog(kCutDialog, {{kCutWidthEdit, "20"},
                           {kCutHeightEdit, "10"},
                           {kCutFpsEdit, "30"},
                           {kCutQuarterRadio, "on"},
                           {kCutCreditEdit, "Me"}})
      .Command(kCommandCutProperties);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(PropertiesOf(session, state), "20 x 10, 30 fps, antialias 2, credit [Me]");
}

TEST(CutProperties, LeaveTheFrameSize) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1}, {0}))
      .Dialog(kCutDialog, {{kCutWidthEdit, "20"}, {kCutHeightEdit, "10"}})
      .Command(kCommandCutProperties);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["frameWidth"], 8);
  EXPECT_EQ(session.Cut(state)["frameHeight"], 3);
}

TEST(CutProperties, ResizeTheViewAndPaintIt) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({3}, {0}))
      .Dialog(kCutDialog, {{kCutWidthEdit, "20"}, {kCutHeightEdit, "10"}})
      .Command(kCommandCutProperties);
  const int view = session.View();
  session.Run();
  EXPECT_EQ(session.ViewAt(view).Width(), 20);
  EXPECT_EQ(session.ViewAt(view).Height(), 10);
  EXPECT_EQ(session.ViewAt(view).Count(3), 24);
  EXPECT_EQ(session.ViewAt(view).Count(0), 176);
}

TEST(CutProperties, StartWithTheCutsAndMarkImagesEvenWhenUnchanged) {
  ScriptSession session;
  CutFile file = CutFile::Showing({1}, {0});
  file.fps = 11;
  file.credit = "Who";
  file.antialias = 1;
  session.OpenCut("a.cut", file).Command(kCommandPlay).Dialog(kCutDialog, {}).Command(kCommandCutProperties);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(PropertiesOf(session, state), "8 x 3, 11 fps, antialias 1, credit [Who]");
  EXPECT_EQ(session.Cut(state)["modified"], true);
  EXPECT_EQ(session.Cut(state)["imagesStale"], true);
}

TEST(CutProperties, DoNotWriteTheNewCutSettings) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1}, {0}))
      .Dialog(kCutDialog, {{kCutWidthEdit, "20"}})
      .Command(kCommandCutProperties)
      .Run();
  EXPECT_EQ(session.Setting("OnNewCut", "width"), "(none)");
}

TEST(CutProperties, CancelChangesNothing) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1}, {0}))
      .Dialog(kCutDialog, {{kCutWidthEdit, "20"}}, "cancel")
      .Command(kCommandCutProperties);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["width"], 8);
  EXPECT_EQ(session.Cut(state)["modified"], false);
}

}  // namespace
