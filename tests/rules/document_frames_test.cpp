#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "resources/ids.h"
#include "rules/rule_table.h"
#include "rules/script_session.h"
#include "rules/session_state.h"

namespace rules {
namespace {

using nlohmann::json;

CutFile Frames(const std::vector<FileFrame>& frames) {
  CutFile file;
  file.frames = frames;
  return file;
}

std::string Panel(ScriptSession& session, const std::string& id, int state = kNow) {
  return TextOf(PanelOf(session, id, state));
}

const Rules<SessionTest, "AddFrame"> kAddFrameRules = {
    {"StandsBehindTheCurrentFrameAndBecomesCurrent",
     Do().OpenCut("a.cut", Frames({{.time = 1}, {.time = 2}, {.time = 3}})),
     Do().Commands({kCommandPreviousFrame, kCommandAddFrame}), Has("times", "1 2 2 3", "cut/currentFrame", 2)},
    {"BehindAKeyFrameTakesHalfItsTimeAndTheKeyFrameKeepsIt",
     Do().OpenCut("a.cut", Frames({{.time = 5, .brightness = -51}})).Command(kCommandAddFrame), Has("times", "5 2")},
    {"BehindAKeyFrameOfTimeOneOrLessIsNotHalved",
     Do().OpenCut("a.cut", Frames({{.time = 1, .brightness = -51}})).Command(kCommandAddFrame), Has("times", "1 1"),
     Do().OpenCut("b.cut", Frames({{.time = -8, .brightness = -51}})).Command(kCommandAddFrame), Has("times", "-8 -8")},
    {"CommitsBeforeItCopies", Do().OpenCut("a.cut", Frames({{}})).Panel(kFrameTimeEdit, "9").Command(kCommandAddFrame),
     Has("times", "9 9")},
    {"RefreshesThePanels", Do().OpenCut("a.cut", Frames({{.time = 3, .comment = "old"}})).Command(kCommandAddFrame),
     Has("panels/comment", "", "panels/keyFrame/text", "2(4f)")},
    {"MarksImages", Do().OpenCut("a.cut", Frames({{}})).Commands({kCommandPlay, kCommandAddFrame}),
     Has("cut/marks", "modified imagesStale timingStale")},
};

const Rules<SessionTest, "InsertFrame"> kInsertFrameRules = {
    {"StandsAtTheCurrentPlaceAndCopiesTheFrameBehindIt",
     Do().OpenCut("a.cut", Frames({{.time = 1}, {.time = 2}, {.time = 3}})),
     Do().Commands({kCommandPreviousFrame, kCommandInsertFrame}), Has("times", "1 2 2 3", "cut/currentFrame", 1)},
    {"DoesNotHalveTheTimeOfAKeyFrame",
     Do().OpenCut("a.cut", Frames({{.time = 6, .brightness = -51}})).Command(kCommandInsertFrame),
     Has("times", "6 6", "cut/frames/*/brightness", "50 -51")},
    {"MarksNothing", Do().OpenCut("a.cut", Frames({{}})).Commands({kCommandPlay, kCommandInsertFrame}),
     Has("cut/frames/#", 2, "cut/marks", "")},
    {"CommitsToTheFrameThatMovesBack",
     Do().OpenCut("a.cut", Frames({{}})).Panel(kCommentEdit, "typed").Command(kCommandInsertFrame),
     Has("cut/frames/0/comment", "", "cut/frames/1/comment", "typed", "panels/comment", "")},
};

const Rules<SessionTest, "DeleteFrame"> kDeleteFrameRules = {
    {"KeepsTheLayerUnderEdit",
     Do().OpenCut("a.cut", CutFile{.layers = {{.name = "A"}, {.name = "B"}},
                                   .frames = {{.records = {{.layer = 0}, {.layer = 1}}},
                                              {.records = {{.layer = 0}, {.layer = 1}}}}}),
     Do().Select(kLayerList, {0}).Command(kCommandDeleteFrame), Has("cut/frame/currentRecord", 0)},
    {"InTheMiddleShowsItsSuccessor", Do().OpenCut("a.cut", Frames({{.time = 1}, {.time = 2}, {.time = 3}})),
     Do().Commands({kCommandPreviousFrame, kCommandDeleteFrame}),
     Has("times", "1 3", "cut/currentFrame", 1, "panels/time", "3")},
    {"LastOfSeveralLeavesTheNewLastFrameCurrent",
     Do().OpenCut("a.cut", Frames({{.time = 1}, {.time = 2}})).Command(kCommandDeleteFrame),
     Has("cut/currentFrame", 0, "panels/time", "1")},
    {"DoesNotCommitSoThatTypedTextGoesWithTheFrame",
     Do().OpenCut("a.cut", Frames({{}, {}})).Panel(kCommentEdit, "typed").Command(kCommandDeleteFrame),
     Has("cut/frame/comment", "", "panels/comment", "")},
    {"IsRefusedForTheOnlyFrameWithoutARefresh",
     Do().OpenCut("a.cut", Frames({{}})).Command(kCommandPlay).Panel(kCommentEdit, "typed"),
     Do().Command(kCommandDeleteFrame),
     Has("cut/frames/#", 1, "cut/modified", false, "panels/comment", "typed", "cut/frame/comment", "")},
    {"RepaintsTheView", Do().OpenCut("a.cut", CutFile::Showing({1, 3}, {0, 1})).Command(kCommandDeleteFrame),
     Has("pixels/1", 24)},
};

class StepPastTheEnd : public SessionTest, public testing::WithParamInterface<int> {};

TEST_P(StepPastTheEnd, StillCommitsAndRefreshes) {
  session.OpenCut("a.cut", Frames({{}})).Panel(kBrightnessEdit, "250").Command(GetParam());
  EXPECT_TRUE(Holds(session, "cut/frame/brightness", 100, "panels/brightness", "100"));
}

INSTANTIATE_TEST_SUITE_P(Document, StepPastTheEnd, testing::Values(kCommandPreviousFrame, kCommandNextFrame));

const Rules<SessionTest, "StepFrame"> kStepFrameRules = {
    {"RepaintsTheView", Do().OpenCut("a.cut", CutFile::Showing({1, 3}, {0, 1})).Command(kCommandPreviousFrame),
     Has("pixels/1", 24)},
    {"MarksNothing",
     Do().OpenCut("a.cut", Frames({{}, {}})).Commands({kCommandPlay, kCommandPreviousFrame, kCommandNextFrame}),
     Has("cut/modified", false, "cut/imagesStale", false)},
};

const Rules<SessionTest, "FirstAndLastFrame"> kFirstAndLastFrameRules = {
    {"MoveThere", Do().OpenCut("a.cut", Frames({{}, {}, {}})).Command(kCommandFirstFrame), Has("cut/currentFrame", 0),
     Do().Command(kCommandLastFrame), Has("cut/currentFrame", 2)},
};

class EndOfFrames : public SessionTest, public testing::WithParamInterface<int> {};

TEST_P(EndOfFrames, InACutOfOneFrameCommitsWithoutARefresh) {
  session.OpenCut("a.cut", Frames({{}})).Panel(kBrightnessEdit, "250").Command(GetParam());
  EXPECT_TRUE(Holds(session, "cut/frame/brightness", 100, "panels/brightness", "250"));
}

TEST_P(EndOfFrames, RefreshesAlsoWhenItDoesNotMove) {
  session.OpenCut("a.cut", Frames({{}, {}})).Command(GetParam()).Panel(kBrightnessEdit, "250").Command(GetParam());
  EXPECT_EQ(Panel(session, "10007"), "100");
}

INSTANTIATE_TEST_SUITE_P(Document, EndOfFrames, testing::Values(kCommandFirstFrame, kCommandLastFrame));

class NoKeyFrame : public SessionTest, public testing::WithParamInterface<int> {};

TEST_P(NoKeyFrame, CommitsButNeitherMovesNorRefreshes) {
  session.OpenCut("a.cut", Frames({{}, {}, {}})).Command(kCommandPreviousFrame).Panel(kBrightnessEdit, "250");
  session.Command(GetParam());
  EXPECT_TRUE(Holds(session, "cut/currentFrame", 1, "cut/frame/brightness", 100, "panels/brightness", "250"));
}

INSTANTIATE_TEST_SUITE_P(Document, NoKeyFrame, testing::Values(kCommandNextKeyFrame, kCommandPreviousKeyFrame));

const Rules<SessionTest, "KeyFrames"> kKeyFramesRules = {
    {"NextAndPreviousGoToTheNearest",
     Do().OpenCut("a.cut", Frames({{.brightness = -51}, {}, {.brightness = -51}, {}, {.brightness = -51}, {}})),
     Do().Command(kCommandPreviousKeyFrame), Has("cut/currentFrame", 4), Do().Command(kCommandPreviousKeyFrame),
     Has("cut/currentFrame", 2), Do().Command(kCommandNextKeyFrame), Has("cut/currentFrame", 4)},
    {"MoveRefreshesThePanels",
     Do().OpenCut("a.cut", Frames({{.brightness = -31, .comment = "key"}, {}})).Command(kCommandPreviousKeyFrame),
     Has("panels/comment", "key", "panels/brightness", "30")},
};

const Rules<SessionTest, "AddFrames"> kAddFramesRules = {
    {"RunsTheAdditionAsOftenAsAsked",
     Do().OpenCut("a.cut", Frames({{.time = 8, .brightness = -51}}))
         .Dialog(kFrameCountDialog, {{kFrameCountEdit, "3"}}),
     Do().Command(kCommandAddFrames), Has("times", "8 4 4 4", "cut/currentFrame", 3, "panels/keyFrame/text", "4(10f)")},
    {"DialogStartsWithOne",
     Do().OpenCut("a.cut", Frames({{}})).Dialog(kFrameCountDialog, {}).Command(kCommandAddFrames),
     Has("cut/frames/#", 2)},
    {"CancelStillCommits", Do().OpenCut("a.cut", Frames({{}})).Panel(kCommentEdit, "typed"),
     Do().Dialog(kFrameCountDialog, {{kFrameCountEdit, "3"}}, "cancel").Command(kCommandAddFrames),
     Has("cut/frames/#", 1, "cut/frame/comment", "typed")},
};

const Rules<SessionTest, "DeleteFrames"> kDeleteFramesRules = {
    {"DeletesFromTheCurrentFrameOn",
     Do().OpenCut("a.cut", Frames({{.time = 1}, {.time = 2}, {.time = 3}, {.time = 4}, {.time = 5}})),
     Do().Commands({kCommandFirstFrame, kCommandNextFrame}).Dialog(kFrameCountDialog, {{kFrameCountEdit, "2"}}),
     Do().Command(kCommandDeleteFrames), Has("times", "1 4 5", "cut/currentFrame", 1, "panels/time", "4")},
    {"MoreThanExistLeavesOneFrame",
     Do().OpenCut("a.cut", Frames({{.time = 1}, {.time = 2}, {.time = 3}})).Command(kCommandPreviousFrame),
     Do().Dialog(kFrameCountDialog, {{kFrameCountEdit, "10"}}).Command(kCommandDeleteFrames), Has("times", "1")},
    {"DoesNotRepaint", Do().OpenCut("a.cut", CutFile::Showing({1, 3}, {0, 1})).Dialog(kFrameCountDialog, {}),
     Do().Command(kCommandDeleteFrames), Has("cut/frames/#", 1, "pixels/3", 24)},
};

CutFile BrightnessFrames(int first, int last) {
  return Frames({{.brightness = first}, {}, {}, {}, {.brightness = last}});
}

const Rules<SessionTest, "BrightnessRamp"> kBrightnessRampRules = {
    {"FromALaterFrameRunsFromTheEndFrame",
     Do().OpenCut("a.cut", BrightnessFrames(0, 100)).Dialog(kBrightnessRampDialog, {{kRampEndEdit, "1"}}),
     Do().Command(kCommandBrightnessRamp), Has("cut/frames/*/brightness", "0 25 50 75 100", "cut/currentFrame", 4)},
    {"CommitsFirst",
     Do().OpenCut("a.cut", BrightnessFrames(50, 100)).Command(kCommandFirstFrame).Panel(kBrightnessEdit, "0"),
     Do().Dialog(kBrightnessRampDialog, {}).Command(kCommandBrightnessRamp),
     Has("cut/frames/*/brightness", "0 25 50 75 100")},
    {"DoesNotRefresh",
     Do().OpenCut("a.cut", BrightnessFrames(50, 48)).Dialog(kBrightnessRampDialog, {{kRampEndEdit, "1"}}),
     Do().Command(kCommandBrightnessRamp), Has("cut/frame/brightness", 52, "panels/brightness", "48")},
    {"MarksTiming", Do().OpenCut("a.cut", BrightnessFrames(0, 100)).Commands({kCommandPlay, kCommandFirstFrame}),
     Do().Dialog(kBrightnessRampDialog, {}).Command(kCommandBrightnessRamp), Has("cut/marks", "modified timingStale")},
    {"OntoItselfChangesNothing",
     Do().OpenCut("a.cut", BrightnessFrames(0, 100)).Command(kCommandPlay).Dialog(kBrightnessRampDialog, {}),
     Do().Command(kCommandBrightnessRamp), Has("cut/frames/*/brightness", "0 50 50 50 100", "cut/modified", false)},
    {"NegativeTimeShortensTheSpanSoThatTheRampEndsBeforeTheEndFrame",
     // 2 - 1 + 2 = 3 units, of which the first two frames already use three.
     Do().OpenCut("a.cut", Frames({{.time = 2, .brightness = 0}, {.time = -1}, {.time = 2}, {.brightness = 30}})),
     Do().Command(kCommandFirstFrame).Dialog(kBrightnessRampDialog, {}).Command(kCommandBrightnessRamp),
     Has("cut/frames/*/brightness", "0 20 30 30")},
};

const Rules<SessionTest, "FramePositionRamp"> kFramePositionRampRules = {
    {"InterpolatesStraightAndTruncates",
     Do().OpenCut("a.cut", Frames({{.x = 0, .y = 10}, {}, {}, {.x = 10, .y = -10}})).Command(kCommandFirstFrame),
     Do().Dialog(kFrameRampDialog, {{kRampEndEdit, "4"}}).Command(kCommandFrameRamp),
     Has("cut/frames/*/x", "0 3 6 10", "cut/frames/*/y", "10 3 -3 -10")},
    {"CountsTheMagnitudeOfTimes",
     Do().OpenCut("a.cut", Frames({{.time = -3, .x = 0}, {.time = 1}, {.x = 40}})).Command(kCommandFirstFrame),
     Do().Dialog(kFrameRampDialog, {}).Command(kCommandFrameRamp), Has("cut/frames/*/x", "0 30 40")},
    {"CommitsAfterOk", Do().OpenCut("a.cut", Frames({{.x = 0}, {.time = 1}, {.x = 40}})).Command(kCommandFirstFrame),
     Do().Panel(kFrameTimeEdit, "3").Dialog(kFrameRampDialog, {}).Command(kCommandFrameRamp),
     Has("cut/frames/*/x", "0 30 40")},
    {"CancelDoesNotCommit",
     Do().OpenCut("a.cut", Frames({{}, {}})).Panel(kCommentEdit, "typed").Dialog(kFrameRampDialog, {}, "cancel"),
     Do().Command(kCommandFrameRamp), Has("cut/frame/comment", "")},
    {"MarksTiming", Do().OpenCut("a.cut", Frames({{}, {.x = 8}})).Command(kCommandPlay),
     Do().Dialog(kFrameRampDialog, {{kRampEndEdit, "1"}}).Command(kCommandFrameRamp),
     Has("cut/marks", "modified timingStale")},
};

CutFile MovingRecord(const std::vector<int>& places) {
  CutFile file = CutFile::Showing({1}, std::vector<int>(places.size(), 0));
  for (size_t i = 0; i < places.size(); ++i) file.frames[i].records[0].x = places[i];
  return file;
}

const Rules<SessionTest, "LayerPositionRamp"> kLayerPositionRampRules = {
    {"DoesNotCommit",
     Do().OpenCut("a.cut", MovingRecord({0, 0, 8})).Command(kCommandFirstFrame).Panel(kCommentEdit, "typed"),
     Do().Dialog(kLayerRampDialog, {}).Command(kCommandLayerRamp),
     Has("cut/frames/*/records/0/x", "0 4 8", "cut/frame/comment", "")},
    {"MarksImages", Do().OpenCut("a.cut", MovingRecord({0, 0, 8})).Command(kCommandPlay),
     Do().Dialog(kLayerRampDialog, {{kRampEndEdit, "1"}}).Command(kCommandLayerRamp),
     Has("cut/modified", true, "cut/imagesStale", true)},
};

const Rules<SessionTest, "MakeAllKeyFrames"> kMakeAllKeyFramesRules = {
    {"KeepsTheBrightnessOfEachFrame",
     Do().OpenCut("a.cut", Frames({{.brightness = 0}, {.brightness = 50}, {.brightness = -101}})),
     Do().Command(kCommandAllKeyFrames), Has("cut/frames/*/brightness", "-1 -51 -101")},
    {"RefreshesWithoutACommit",
     Do().OpenCut("a.cut", Frames({{}})).Panel(kCommentEdit, "typed").Command(kCommandAllKeyFrames),
     Has("cut/frame/comment", "", "panels/comment", "", "panels/keyFrame/checked", true)},
    {"MarksTiming", Do().OpenCut("a.cut", Frames({{}})).Commands({kCommandPlay, kCommandAllKeyFrames}),
     Has("cut/marks", "modified timingStale")},
};

using FrameBitmap = SessionTest;

TEST_F(FrameBitmap, IsWrittenToTheChosenFile) {
  session.OpenCut("a.cut", CutFile::Showing({1}, {0})).File("out").Command(kCommandExportBitmap).Run();
  const PixelMatrix picture = PixelMatrix::FromBitmap(session.Path("out.bmp"));
  EXPECT_EQ(picture.Width(), 8);
  EXPECT_EQ(picture.Height(), 3);
  EXPECT_EQ(picture.Count(0), 24);
}

const Rules<SessionTest, "FrameBitmap"> kFrameBitmapRules = {
    {"CancelWritesNothing",
     Do().OpenCut("a.cut", CutFile::Showing({1}, {0})).File("cancel").Command(kCommandExportBitmap),
     Has("files", "a.cut")},
};

const Rules<SessionTest, "FrameSize"> kFrameSizeRules = {
    {"DialogStartsWithTheFrameSize",
     Do().OpenCut("a.cut", CutFile{.frameWidth = 6, .frameHeight = 2, .frames = {{}}}).Dialog(kFrameSizeDialog, {}),
     Do().Command(kCommandFrameSize), Has("cut/frameWidth,frameHeight", "6 2")},
    {"IsTakenFromTheDialogAndMarksTiming", Do().OpenCut("a.cut", CutFile::Showing({1}, {0})).Command(kCommandPlay),
     Do().Dialog(kFrameSizeDialog, {{kFrameWidthEdit, "5"}, {kFrameHeightEdit, "2"}}).Command(kCommandFrameSize),
     Has("cut/frameWidth,frameHeight", "5 2", "cut/width", 8, "cut/marks", "modified timingStale")},
    {"CancelChangesNothing",
     Do().OpenCut("a.cut", CutFile::WithoutLayers(1)).Dialog(kFrameSizeDialog, {{kFrameWidthEdit, "5"}}, "cancel"),
     Do().Command(kCommandFrameSize), Has("cut/frameWidth", 8, "cut/modified", false)},
};

using CutProperties = SessionTest;

TEST_F(CutProperties, ResizeTheViewAndPaintIt) {
  session.OpenCut("a.cut", CutFile::Showing({3}, {0}));
  session.Dialog(kCutDialog, {{kCutWidthEdit, "20"}, {kCutHeightEdit, "10"}}).Command(kCommandCutProperties);
  EXPECT_EQ(session.NowView().Width(), 20);
  EXPECT_EQ(session.NowView().Height(), 10);
  EXPECT_EQ(session.NowView().Count(3), 24);
  EXPECT_EQ(session.NowView().Count(0), 176);
}

const Rules<SessionTest, "CutProperties"> kCutPropertiesRules = {
    {"StartWithTheCutsAndMarkImagesEvenWhenUnchanged",
     Do().OpenCut("a.cut", CutFile{.fps = 11,
                                   .antialias = 1,
                                   .credit = "Who",
                                   .layers = {{.name = "A", .cells = {1}}},
                                   .frames = {{.records = {{.cell = 0}}}}}),
     Do().Command(kCommandPlay).Dialog(kCutDialog, {}).Command(kCommandCutProperties),
     Has("cut/properties", "8 x 3, 11 fps, antialias 1, credit [Who]", "cut/modified", true, "cut/imagesStale", true)},
    {"AreTakenFromTheDialog", Do().OpenCut("a.cut", CutFile::Showing({1}, {0})).Command(kCommandPlay),
     Do().Dialog(kCutDialog, {{kCutWidthEdit, "20"},
                              {kCutHeightEdit, "10"},
                              {kCutFpsEdit, "30"},
                              {kCutQuarterRadio, "on"},
                              {kCutCreditEdit, "Me"}}),
     Do().Command(kCommandCutProperties), Has("cut/properties", "20 x 10, 30 fps, antialias 2, credit [Me]")},
    {"LeaveTheFrameSize", Do().OpenCut("a.cut", CutFile::Showing({1}, {0})),
     Do().Dialog(kCutDialog, {{kCutWidthEdit, "20"}, {kCutHeightEdit, "10"}}).Command(kCommandCutProperties),
     Has("cut/frameWidth,frameHeight", "8 3")},
    {"DoNotWriteTheNewCutSettings",
     Do().OpenCut("a.cut", CutFile::Showing({1}, {0})).Dialog(kCutDialog, {{kCutWidthEdit, "20"}}),
     Do().Command(kCommandCutProperties), Has("settings/OnNewCut/width", "(none)")},
    {"CancelChangesNothing",
     Do().OpenCut("a.cut", CutFile::Showing({1}, {0})).Dialog(kCutDialog, {{kCutWidthEdit, "20"}}, "cancel"),
     Do().Command(kCommandCutProperties), Has("cut/width", 8, "cut/modified", false)},
};

}  // namespace
}  // namespace rules
