#include <gtest/gtest.h>

#include <string>

#include "resources/ids.h"
#include "rules/rule_table.h"
#include "rules/script_session.h"
#include "rules/session_state.h"

namespace rules {
namespace {

using nlohmann::json;

// A new cut whose layer is saved and opened as a cut of its own.
template <typename Session>
ScriptSession& OpenLayerOf(Session&& session, const NewCutValues& values = {}) {
  return session.NewCut(values).File("a.lyr").Command(kCommandSaveLayer).Open("a.lyr");
}

const Rules<SessionTest, "NewCut"> kNewCutRules = {
    {"DialogStartsWithTheDefaults",
     Do().Dialog(kCutDialog, {}).Dialog(kLayerDialog, {}, "cancel").Command(kCommandNewCut),
     Has("cut/properties", "240 x 180, 24 fps, antialias 0, credit []")},
    {"DialogStartsWithTheSettings",
     Do().SetSettings("[OnNewCut]\r\nwidth=50\r\nheight=40\r\nfps=12\r\nanti=2\r\ncredit=Someone\r\n"),
     Do().Dialog(kCutDialog, {}).Dialog(kLayerDialog, {}, "cancel").Command(kCommandNewCut),
     Has("cut/properties", "50 x 40, 12 fps, antialias 2, credit [Someone]")},
    {"OkWritesTheFiveKeys",
     Do().NewCutWithoutLayer({.width = 50, .height = 40, .fps = 12, .antialias = 1, .credit = "Someone"}),
     Has("settings/OnNewCut/width", "50", "settings/OnNewCut/height", "40", "settings/OnNewCut/fps", "12",
         "settings/OnNewCut/anti", "1", "settings/OnNewCut/credit", "Someone")},
    {"CancelMakesNothingAndWritesNothing",
     Do().Dialog(kCutDialog, {{kCutWidthEdit, "50"}}, "cancel").Command(kCommandNewCut),
     Has("cuts/#", 0, "settings/OnNewCut/width", "(none)")},
    {"WithoutLayerIsUnmodifiedAndNeedsCompiling", Do().NewCutWithoutLayer(), Has("cut/marks", "imagesStale")},
    {"LayerDialogCancelledLeavesOneFrameWithoutRecords", Do().NewCutWithoutLayer(),
     Has("cut/frames/#", 1, "cut/layers/#", 0, "cut/frame/records/#", 0, "cut/frame/currentRecord", -1)},
    {"WithLayerIsModified", Do().NewCut(), Has("cut/marks", "modified imagesStale timingStale")},
    {"WindowIsTitledCutUntilItHasAFile", Do().NewCutWithoutLayer(), Has("cut/title", "Cut"),
     Do().SaveCutAs("named.cut"), Has("cut/title", "named.cut")},
    {"FrameSizeIsTheCutSize", Do().NewCutWithoutLayer({.width = 50, .height = 40}),
     Has("cut/frameWidth,frameHeight", "50 40")},
};

using OpenCut = SessionTest;

TEST_F(OpenCut, StandsOnTheLastFrameWithTheTopmostRecord) {
  CutFile file = CutFile::Showing({1, 2}, {0, 1, 0});
  file.layers.push_back({.name = "B", .cells = {3}});
  for (auto& frame : file.frames) frame.records.push_back({.layer = 1, .cell = 0});
  session.OpenCut("a.cut", file);
  const int state = session.State();
  EXPECT_EQ(session.Cut(state)["currentFrame"], 2);
  EXPECT_EQ(session.Frame(state)["currentRecord"], 1);
  EXPECT_EQ(session.FrameAt(0, state)["currentRecord"], 1);
}

TEST_F(OpenCut, WrongMagicOpensNothing) {
  std::string bytes = CutFile::WithoutLayers(1).Bytes();
  bytes[0] = 's';
  session.Write("a.cut", bytes);
  session.Open("a.cut");
  EXPECT_EQ(session.NowState()["cuts"].size(), 0U);
}

const Rules<SessionTest, "OpenCut"> kOpenCutRules = {
    {"IsUnmodifiedButNeedsCompiling", Do().OpenCut("a.cut", CutFile::Showing({1}, {0})),
     Has("cut/marks", "imagesStale")},
    {"WindowHasPathAndTitleOfTheFile", Do().OpenCut("a.cut", CutFile::WithoutLayers(1)),
     Has("cut/path", "a.cut", "cut/title", "a.cut")},
    {"CommandAsksForTheFile", Do().Write("a.cut", CutFile::WithoutLayers(3).Bytes()).File("a").Command(kCommandOpenCut),
     Has("cut/path", "a.cut", "cut/frames/#", 3)},
    {"CancelledCommandOpensNothing", Do().File("cancel").Command(kCommandOpenCut), Has("cuts/#", 0)},
    {"ViewShowsTheLastFrameAtOnce", Do().OpenCut("a.cut", CutFile::Showing({1, 3}, {0, 1})), Has("pixels/3", 24)},
};

TEST_F(OpenCut, MarksTheFilmsEntryOpen) {
  session.Write("f.flm", "t\na\n10, 10\na.cut\nb.cut\na.cut\n");
  session.Open("f.flm").OpenCut("a.cut", CutFile::WithoutLayers(1));
  json cuts = session.NowState()["film"]["cuts"];
  ASSERT_EQ(cuts.size(), 3U);
  EXPECT_TRUE(Holds(session, "film/cuts/0/open", true, "film/cuts/1/open", false, "film/cuts/2/open", true));
}

const Rules<SessionTest, "OpenLayer"> kOpenLayerRules = {
    {"CutTakesItsSizesFromTheLayer",
     OpenLayerOf(Do(), {.width = 50, .height = 40, .layerWidth = 21, .layerHeight = 17}),
     Has("cut/properties", "21 x 17, 20 fps, antialias 0, credit []", "cut/frameWidth,frameHeight", "21 17", "cut/path",
         "")},
    {"CountsAsSavedAndCompiled", OpenLayerOf(Do()), Has("cut/marks", "")},
    {"ClosingAtOnceAsksNothing", OpenLayerOf(Do()).Close(), Has("cuts/#", 1)},
    {"HasOneFrameShowingTheLayerAtTheOrigin", OpenLayerOf(Do(), {.layerName = "L"}),
     Has("cut/frames/#", 1, "cut/layers/0/name", "L", "cut/frame/records/0/x,y", "0 0")},
    {"CommandAsksForTheFile",
     Do().NewCut().File("a.lyr").Command(kCommandSaveLayer).File("a").Command(kCommandOpenLayer), Has("cuts/#", 2)},
    {"WrongMagicOpensNothing", Do().Write("a.lyr", std::string("Sorvelin layer\0A\0", 17)).Open("a.lyr"),
     Has("cuts/#", 0)},
};

using SaveCutAs = SessionTest;

TEST_F(SaveCutAs, CommitsThePanelsFirst) {
  session.NewCut().Panel(kCommentEdit, "typed").SaveCutAs("a.cut").Run();
  EXPECT_NE(session.Bytes("a.cut").find("typed"), std::string::npos);
}

const Rules<SessionTest, "SaveCutAs"> kSaveCutAsRules = {
    {"CancelCommitsAndSavesNothing",
     Do().NewCut().Panel(kCommentEdit, "typed").File("cancel").Command(kCommandSaveCutAs),
     Has("cut/frame/comment", "typed", "cut/path", "", "cut/modified", true)},
    {"ClearsModifiedAloneAndKeepsTheStaleBits", Do().NewCut().SaveCutAs("a.cut"),
     Has("cut/marks", "imagesStale timingStale")},
    {"NameWithoutExtensionGetsCut", Do().NewCut().File("plain").Command(kCommandSaveCutAs),
     Has("exists/plain.cut", true, "cut/path", "plain.cut")},
    {"FileThatDoesNotOpenLeavesPathAndTitle",
     Do().NewCut().SaveCutAs("a.cut").File("nofolder/b.cut").Command(kCommandSaveCutAs),
     Has("cut/path", "a.cut", "cut/title", "a.cut")},
};

TEST_F(SaveCutAs, SavedFileOpensAgainWithTheSameContent) {
  CutFile file = CutFile::Showing({1, 2, 3}, {0, -2, 2});
  file.frames[1].brightness = -51;
  file.frames[1].time = -3;
  file.frames[1].comment = "note";
  session.OpenCut("a.cut", file).SaveCutAs("b.cut").Run();
  EXPECT_EQ(session.Bytes("b.cut"), session.Bytes("a.cut"));
}

// A cut whose only record shows the layer in the middle of A, B and C.
CutFile OnlyTheLastOfThreeLayersInUse() {
  CutFile file;
  for (const char* name : {"A", "B", "C"}) file.layers.push_back({.name = name, .cells = {1}});
  file.frames.push_back({.records = {{.layer = 2, .cell = 0}}});
  return file;
}

TEST_F(SaveCutAs, DropsUnusedLayersButPassesOverTheNextOne) {
  session.OpenCut("a.cut", OnlyTheLastOfThreeLayersInUse()).SaveCutAs("b.cut");
  const int first = session.State();
  session.SaveCutAs("c.cut");
  const int second = session.State();
  json layers = session.Cut(first)["layers"];
  ASSERT_EQ(layers.size(), 2U);
  EXPECT_EQ(layers[0]["name"], "B");
  EXPECT_EQ(layers[1]["name"], "C");
  layers = session.Cut(second)["layers"];
  ASSERT_EQ(layers.size(), 1U);
  EXPECT_EQ(layers[0]["name"], "C");
}

using OverwriteCut = SessionTest;

TEST_F(OverwriteCut, WithoutPathNeedsAnAnswerForItsDialog) {
  session.NewCut().Command(kCommandOverwriteCut).Run(3);
}

TEST_F(OverwriteCut, DoesNotCommitThePanels) {
  session.OpenCut("a.cut", CutFile::Showing({1}, {0})).Panel(kCommentEdit, "typed").Command(kCommandOverwriteCut);
  EXPECT_EQ(session.Frame()["comment"], "");
  EXPECT_EQ(session.Bytes("a.cut").find("typed"), std::string::npos);
}

const Rules<SessionTest, "OverwriteCut"> kOverwriteCutRules = {
    {"DropsUnusedLayers", Do().OpenCut("a.cut", OnlyTheLastOfThreeLayersInUse()).Command(kCommandOverwriteCut),
     Has("cut/layers/#", 2)},
    {"WithoutPathOpensTheSaveDialog", Do().NewCut().File("a.cut").Command(kCommandOverwriteCut),
     Has("exists/a.cut", true, "cut/path", "a.cut", "cut/modified", false)},
    {"WritesToThePathWithoutADialog",
     Do().OpenCut("a.cut", CutFile::Showing({1}, {0})).Commands({kCommandBlankCell, kCommandOverwriteCut}),
     Has("cut/modified", false, "bytes/a.cut", CutFile::Showing({1}, {-1}).Bytes())},
    {"WithNoCutOpenDoesNothing", Do().Command(kCommandOverwriteCut), Has("cuts/#", 0)},
};

using CloseCut = SessionTest;

TEST_F(CloseCut, ModifiedAsks) {
  session.NewCut().Close().Run(3);
}

TEST_F(CloseCut, CommitsThePanelsBeforeItAsks) {
  session.OpenCut("a.cut", CutFile::WithoutLayers(1)).Panel(kCommentEdit, "typed").Answer("yes").Close().Run();
  EXPECT_NE(session.Bytes("a.cut").find("typed"), std::string::npos);
}

TEST_F(CloseCut, YesOnAnUntitledCutAndACancelledDialogClosesAndLosesIt) {
  session.NewCut().Answer("yes").File("cancel").Close();
  EXPECT_EQ(session.NowState()["cuts"].size(), 0U);
  EXPECT_TRUE(session.Files().empty());
}

TEST_F(CloseCut, LeavesTheFilmsEntryByNameOnly) {
  session.OpenCut("a.cut", CutFile::WithoutLayers(1)).Command(kCommandAddCutToFilm).Close();
  json cuts = session.NowState()["film"]["cuts"];
  ASSERT_EQ(cuts.size(), 1U);
  EXPECT_TRUE(Holds(session, "film/cuts/0/open", false, "film/cuts/0/name", "a.cut"));
}

const Rules<SessionTest, "CloseCut"> kCloseCutRules = {
    {"UnmodifiedAsksNothing", Do().OpenCut("a.cut", CutFile::WithoutLayers(1)).Close(), Has("cuts/#", 0)},
    {"AnswerNoLosesTheChange",
     Do().OpenCut("a.cut", CutFile::WithoutLayers(1)).Panel(kCommentEdit, "typed").Answer("no").Close(),
     Has("bytes/a.cut", CutFile::WithoutLayers(1).Bytes(), "cuts/#", 0)},
    {"YesOnAnUntitledCutSavesUnderTheChosenName", Do().NewCut().Answer("yes").File("late").Close(),
     Has("exists/late.cut", true)},
    {"SavingOnCloseDropsUnusedLayers",
     Do().OpenCut("a.cut", OnlyTheLastOfThreeLayersInUse()).Command(kCommandBlankCell).Answer("yes").Close(),
     Do().Open("a.cut"), Has("cut/layers/#", 2)},
    {"WindowThatWasActiveBeforeBecomesActive",
     Do().OpenCut("a.cut", CutFile::WithoutLayers(1)).OpenCut("b.cut", CutFile::WithoutLayers(1)),
     Do().OpenCut("c.cut", CutFile::WithoutLayers(1)).Activate(0).Activate(2).Close(), Has("cut/path", "a.cut")},
};

using CloseAll = SessionTest;

TEST_F(CloseAll, NoClosesTheWindowsAllTheSameButEachOneAsks) {
  session.OpenCut("a.cut", CutFile::WithoutLayers(1)).Panel(kCommentEdit, "first");
  session.OpenCut("b.cut", CutFile::WithoutLayers(1)).Panel(kCommentEdit, "second").Answer("no").Answer("no");
  session.Answer("yes").Command(kCommandCloseAll);
  EXPECT_EQ(session.NowState()["cuts"].size(), 0U);
  EXPECT_EQ(session.Bytes("b.cut").find("second"), std::string::npos);
  EXPECT_NE(session.Bytes("a.cut").find("first"), std::string::npos);
}

TEST_F(CloseAll, YesSavesEveryModifiedCutWithoutAsking) {
  session.OpenCut("a.cut", CutFile::WithoutLayers(1)).Panel(kCommentEdit, "first");
  session.OpenCut("b.cut", CutFile::WithoutLayers(1)).Panel(kCommentEdit, "second").Answer("yes");
  session.Command(kCommandCloseAll);
  EXPECT_EQ(session.NowState()["cuts"].size(), 0U);
  EXPECT_NE(session.Bytes("a.cut").find("first"), std::string::npos);
  EXPECT_NE(session.Bytes("b.cut").find("second"), std::string::npos);
}

const Rules<SessionTest, "CloseAll"> kCloseAllRules = {
    {"UntitledCutStillComesToTheSaveDialog", Do().NewCut().Answer("yes").File("kept.cut").Command(kCommandCloseAll),
     Has("exists/kept.cut", true)},
    {"DoesNotAskAboutTheFilm",
     Do().Dialog(kFilmDialog, {{kFilmTitleEdit, "mine"}}).Command(kCommandFilmProperties).Answer("yes"),
     Do().Command(kCommandCloseAll), Has("film/modified", true)},
};

TEST_F(CloseAll, AfterwardsACloseAsksAgain) {
  session.OpenCut("a.cut", CutFile::WithoutLayers(1)).Answer("yes").Command(kCommandCloseAll);
  session.OpenCut("b.cut", CutFile::WithoutLayers(1)).Panel(kCommentEdit, "typed").Close().Run(3);
}

}  // namespace
}  // namespace rules
