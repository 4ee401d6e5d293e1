#include <gtest/gtest.h>

#include <string>

#include "resources/ids.h"
#include "rules/script_session.h"
#include "rules/session_state.h"

namespace {

using nlohmann::json;
using rules::CutFile;
using rules::MarksOf;
using rules::NewCutValues;
using rules::PropertiesOf;
using rules::ScriptSession;

// A new cut whose layer is saved and opened as a cut of its own.
ScriptSession& OpenLayerOf(ScriptSession& session, const NewCutValues& values = {}) {
  return session.NewCut(values).File(session.Path("a.lyr")).Command(kCommandSaveLayer).Open(session.Path("a.lyr"));
}

TEST(NewCut, DialogStartsWithTheDefaults) {
  ScriptSession session;
  session.Dialog(kCutDialog, {}).Dialog(kLayerDialog, {}, "cancel").Command(kCommandNewCut);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(PropertiesOf(session, state), "240 x 180, 24 fps, antialias 0, credit []");
}

TEST(NewCut, DialogStartsWithTheSettings) {
  ScriptSession session;
  session.SetSettings("[OnNewCut]\r\nwidth=50\r\nheight=40\r\nfps=12\r\nanti=2\r\ncredit=Someone\r\n");
  session.Dialog(kCutDialog, {}).Dialog(kLayerDialog, {}, "cancel").Command(kCommandNewCut);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(PropertiesOf(session, state), "50 x 40, 12 fps, antialias 2, credit [Someone]");
}

TEST(NewCut, OkWritesTheFiveKeys) {
  ScriptSession session;
  session.NewCutWithoutLayer({.width = 50, .height = 40, .fps = 12, .antialias = 1, .credit = "Someone"}).Run();
  EXPECT_EQ(session.Setting("OnNewCut", "width"), "50");
  EXPECT_EQ(session.Setting("OnNewCut", "height"), "40");
  EXPECT_EQ(session.Setting("OnNewCut", "fps"), "12");
  EXPECT_EQ(session.Setting("OnNewCut", "anti"), "1");
  EXPECT_EQ(session.Setting("OnNewCut", "credit"), "Someone");
}

TEST(NewCut, CancelMakesNothingAndWritesNothing) {
  ScriptSession session;
  session.Dialog(kCutDialog, {{kCutWidthEdit, "50"}}, "cancel").Command(kCommandNewCut);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["cuts"].size(), 0U);
  EXPECT_EQ(session.Setting("OnNewCut", "width"), "(none)");
}

TEST(NewCut, WithoutLayerIsUnmodifiedAndNeedsCompiling) {
  ScriptSession session;
  session.NewCutWithoutLayer();
  const int state = session.State();
  session.Run();
  EXPECT_EQ(MarksOf(session, state), "imagesStale");
}

TEST(NewCut, LayerDialogCancelledLeavesOneFrameWithoutRecords) {
  ScriptSession session;
  session.NewCutWithoutLayer();
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["frames"].size(), 1U);
  EXPECT_EQ(session.Cut(state)["layers"].size(), 0U);
  EXPECT_EQ(session.Frame(state)["records"].size(), 0U);
  EXPECT_EQ(session.Frame(state)["currentRecord"], -1);
}

TEST(NewCut, WithLayerIsModified) {
  ScriptSession session;
  session.NewCut();
  const int state = session.State();
  session.Run();
  EXPECT_EQ(MarksOf(session, state), "modified imagesStale timingStale");
}

TEST(NewCut, WindowIsTitledCutUntilItHasAFile) {
  ScriptSession session;
  session.NewCutWithoutLayer();
  const int before = session.State();
  session.SaveCutAs("named.cut");
  const int after = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(before)["title"], "Cut");
  EXPECT_EQ(session.Cut(after)["title"], "named.cut");
}

TEST(NewCut, FrameSizeIsTheCutSize) {
  ScriptSession session;
  session.NewCutWithoutLayer({.width = 50, .height = 40});
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["frameWidth"], 50);
  EXPECT_EQ(session.Cut(state)["frameHeight"], 40);
}

TEST(OpenCut, StandsOnTheLastFrameWithTheTopmostRecord) {
  ScriptSession session;
  CutFile file = CutFile::Showing({1, 2}, {0, 1, 0});
  file.layers.push_back({.name = "B", .cells = {3}});
  for (auto& frame : file.frames) frame.records.push_back({.layer = 1, .cell = 0});
  session.OpenCut("a.cut", file);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["currentFrame"], 2);
  EXPECT_EQ(session.Frame(state)["currentRecord"], 1);
  EXPECT_EQ(session.Frame(state, 0)["currentRecord"], 1);
}

TEST(OpenCut, IsUnmodifiedButNeedsCompiling) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1}, {0}));
  const int state = session.State();
  session.Run();
  EXPECT_EQ(MarksOf(session, state), "imagesStale");
}

TEST(OpenCut, WindowHasPathAndTitleOfTheFile) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::WithoutLayers(1));
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["path"], session.Path("a.cut"));
  EXPECT_EQ(session.Cut(state)["title"], "a.cut");
}

TEST(OpenCut, CommandAsksForTheFile) {
  ScriptSession session;
  session.Write("a.cut", CutFile::WithoutLayers(3).Bytes());
  session.File(session.Path("a")).Command(kCommandOpenCut);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["path"], session.Path("a.cut"));
  EXPECT_EQ(session.Cut(state)["frames"].size(), 3U);
}

TEST(OpenCut, CancelledCommandOpensNothing) {
  ScriptSession session;
  session.File("cancel").Command(kCommandOpenCut);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["cuts"].size(), 0U);
}

TEST(OpenCut, WrongMagicOpensNothing) {
  ScriptSession session;
  std::string bytes = CutFile::WithoutLayers(1).Bytes();
  bytes[0] = 's';
  session.Write("a.cut", bytes);
  session.Open(session.Path("a.cut"));
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["cuts"].size(), 0U);
}

TEST(OpenCut, ViewShowsTheLastFrameAtOnce) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1, 3}, {0, 1}));
  const int view = session.View();
  session.Run();
  EXPECT_EQ(session.ViewAt(view).Count(3), 24);
}

TEST(OpenCut, MarksTheFilmsEntryOpen) {
  ScriptSession session;
  session.Write("f.flm", "t\na\n10, 10\na.cut\nb.cut\na.cut\n");
  session.Open(session.Path("f.flm")).OpenCut("a.cut", CutFile::WithoutLayers(1));
  const int state = session.State();
  session.Run();
  json cuts = session.StateAt(state)["film"]["cuts"];
  ASSERT_EQ(cuts.size(), 3U);
  EXPECT_EQ(cuts[0]["open"], true);
  EXPECT_EQ(cuts[1]["open"], false);
  EXPECT_EQ(cuts[2]["open"], true);
}

TEST(OpenLayer, CutTakesItsSizesFromTheLayer) {
  ScriptSession session;
  OpenLayerOf(session, {.width = 50, .height = 40, .layerWidth = 21, .layerHeight = 17});
  const int state = session.State();
  session.Run();
  EXPECT_EQ(PropertiesOf(session, state), "21 x 17, 20 fps, antialias 0, credit []");
  EXPECT_EQ(session.Cut(state)["frameWidth"], 21);
  EXPECT_EQ(session.Cut(state)["frameHeight"], 17);
  EXPECT_EQ(session.Cut(state)["path"], "");
}

TEST(OpenLayer, CountsAsSavedAndCompiled) {
  ScriptSession session;
  OpenLayerOf(session);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(MarksOf(session, state), "");
}

TEST(OpenLayer, ClosingAtOnceAsksNothing) {
  ScriptSession session;
  OpenLayerOf(session).Close();
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["cuts"].size(), 1U);
}

TEST(OpenLayer, HasOneFrameShowingTheLayerAtTheOrigin) {
  ScriptSession session;
  OpenLayerOf(session, {.layerName = "L"});
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["frames"].size(), 1U);
  EXPECT_EQ(session.Cut(state)["layers"][0]["name"], "L");
  EXPECT_EQ(session.Record(state, 0)["x"], 0);
  EXPECT_EQ(session.Record(state, 0)["y"], 0);
}

TEST(OpenLayer, CommandAsksForTheFile) {
  ScriptSession session;
  session.NewCut()
      .File(session.Path("a.lyr"))
      .Command(kCommandSaveLayer)
      .File(session.Path("a"))
      .Command(kCommandOpenLayer);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["cuts"].size(), 2U);
}

TEST(OpenLayer, WrongMagicOpensNothing) {
  ScriptSession session;
  session.Write("a.lyr", std::string("Sorvelin layer\0A\0", 17));
  session.Open(session.Path("a.lyr"));
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["cuts"].size(), 0U);
}

TEST(SaveCutAs, CommitsThePanelsFirst) {
  ScriptSession session;
  session.NewCut().Panel(kCommentEdit, "typed").SaveCutAs("a.cut").Run();
  EXPECT_NE(session.Bytes("a.cut").find("typed"), std::string::npos);
}

TEST(SaveCutAs, CancelCommitsAndSavesNothing) {
  ScriptSession session;
  session.NewCut().Panel(kCommentEdit, "typed").File("cancel").Command(kCommandSaveCutAs);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Frame(state)["comment"], "typed");
  EXPECT_EQ(session.Cut(state)["path"], "");
  EXPECT_EQ(session.Cut(state)["modified"], true);
}

TEST(SaveCutAs, ClearsModifiedAloneAndKeepsTheStaleBits) {
  ScriptSession session;
  session.NewCut().SaveCutAs("a.cut");
  const int state = session.State();
  session.Run();
  EXPECT_EQ(MarksOf(session, state), "imagesStale timingStale");
}

TEST(SaveCutAs, NameWithoutExtensionGetsCut) {
  ScriptSession session;
  session.NewCut().File(session.Path("plain")).Command(kCommandSaveCutAs);
  const int state = session.State();
  session.Run();
  EXPECT_TRUE(session.Exists("plain.cut"));
  EXPECT_EQ(session.Cut(state)["path"], session.Path("plain.cut"));
}

TEST(SaveCutAs, FileThatDoesNotOpenLeavesPathAndTitle) {
  ScriptSession session;
  session.NewCut().SaveCutAs("a.cut").File(session.Path("nofolder/b.cut")).Command(kCommandSaveCutAs);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["path"], session.Path("a.cut"));
  EXPECT_EQ(session.Cut(state)["title"], "a.cut");
}

TEST(SaveCutAs, SavedFileOpensAgainWithTheSameContent) {
  ScriptSession session;
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

TEST(SaveCutAs, DropsUnusedLayersButPassesOverTheNextOne) {
  ScriptSession session;
  session.OpenCut("a.cut", OnlyTheLastOfThreeLayersInUse()).SaveCutAs("b.cut");
  const int first = session.State();
  session.SaveCutAs("c.cut");
  const int second = session.State();
  session.Run();
  json layers = session.Cut(first)["layers"];
  ASSERT_EQ(layers.size(), 2U);
  EXPECT_EQ(layers[0]["name"], "B");
  EXPECT_EQ(layers[1]["name"], "C");
  layers = session.Cut(second)["layers"];
  ASSERT_EQ(layers.size(), 1U);
  EXPECT_EQ(layers[0]["name"], "C");
}

TEST(OverwriteCut, DropsUnusedLayers) {
  ScriptSession session;
  session.OpenCut("a.cut", OnlyTheLastOfThreeLayersInUse()).Command(kCommandOverwriteCut);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["layers"].size(), 2U);
}

TEST(OverwriteCut, WithoutPathOpensTheSaveDialog) {
  ScriptSession session;
  session.NewCut().File(session.Path("a.cut")).Command(kCommandOverwriteCut);
  const int state = session.State();
  session.Run();
  EXPECT_TRUE(session.Exists("a.cut"));
  EXPECT_EQ(session.Cut(state)["path"], session.Path("a.cut"));
  EXPECT_EQ(session.Cut(state)["modified"], false);
}

TEST(OverwriteCut, WithoutPathNeedsAnAnswerForItsDialog) {
  ScriptSession session;
  session.NewCut().Command(kCommandOverwriteCut).Run(3);
}

TEST(OverwriteCut, WritesToThePathWithoutADialog) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1}, {0})).Command(kCommandBlankCell).Command(kCommandOverwriteCut);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["modified"], false);
  EXPECT_EQ(session.Bytes("a.cut"), CutFile::Showing({1}, {-1}).Bytes());
}

TEST(OverwriteCut, DoesNotCommitThePanels) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1}, {0})).Panel(kCommentEdit, "typed").Command(kCommandOverwriteCut);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Frame(state)["comment"], "");
  EXPECT_EQ(session.Bytes("a.cut").find("typed"), std::string::npos);
}

// A cut that is renamed into a folder that doesn't exist keeps that path, and can't be written there.
TEST(OverwriteCut, PathThatCanNotBeWrittenOpensTheSaveDialog) {
  ScriptSession session;
  session.OpenCut("b.cut", CutFile::Showing({1}, {0})).Command(kCommandAddCutToFilm);
  session.Dialog(kRenameDialog, {{kRenameEdit, "nofolder/x"}}).Command(kCommandRenameCut);
  session.File(session.Path("c.cut")).Command(kCommandOverwriteCut);
  const int state = session.State();
  session.Run();
  EXPECT_TRUE(session.Exists("c.cut"));
  EXPECT_EQ(session.Cut(state)["path"], session.Path("c.cut"));
}

TEST(OverwriteCut, WithNoCutOpenDoesNothing) {
  ScriptSession session;
  session.Command(kCommandOverwriteCut);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["cuts"].size(), 0U);
}

TEST(CloseCut, UnmodifiedAsksNothing) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::WithoutLayers(1)).Close();
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["cuts"].size(), 0U);
}

TEST(CloseCut, ModifiedAsks) {
  ScriptSession session;
  session.NewCut().Close().Run(3);
}

TEST(CloseCut, CommitsThePanelsBeforeItAsks) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::WithoutLayers(1)).Panel(kCommentEdit, "typed").Answer("yes").Close().Run();
  EXPECT_NE(session.Bytes("a.cut").find("typed"), std::string::npos);
}

TEST(CloseCut, AnswerNoLosesTheChange) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::WithoutLayers(1)).Panel(kCommentEdit, "typed").Answer("no").Close();
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Bytes("a.cut"), CutFile::WithoutLayers(1).Bytes());
  EXPECT_EQ(session.StateAt(state)["cuts"].size(), 0U);
}

TEST(CloseCut, YesOnAnUntitledCutAndACancelledDialogClosesAndLosesIt) {
  ScriptSession session;
  session.NewCut().Answer("yes").File("cancel").Close();
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["cuts"].size(), 0U);
  EXPECT_TRUE(session.Files().empty());
}

TEST(CloseCut, YesOnAnUntitledCutSavesUnderTheChosenName) {
  ScriptSession session;
  session.NewCut().Answer("yes").File(session.Path("late")).Close().Run();
  EXPECT_TRUE(session.Exists("late.cut"));
}

TEST(CloseCut, SavingOnCloseDropsUnusedLayers) {
  ScriptSession session;
  session.OpenCut("a.cut", OnlyTheLastOfThreeLayersInUse()).Command(kCommandBlankCell).Answer("yes").Close();
  session.Open(session.Path("a.cut"));
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["layers"].size(), 2U);
}

TEST(CloseCut, LeavesTheFilmsEntryByNameOnly) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::WithoutLayers(1)).Command(kCommandAddCutToFilm).Close();
  const int state = session.State();
  session.Run();
  json cuts = session.StateAt(state)["film"]["cuts"];
  ASSERT_EQ(cuts.size(), 1U);
  EXPECT_EQ(cuts[0]["open"], false);
  EXPECT_EQ(cuts[0]["name"], session.Path("a.cut"));
}

TEST(CloseCut, WindowThatWasActiveBeforeBecomesActive) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::WithoutLayers(1)).OpenCut("b.cut", CutFile::WithoutLayers(1));
  session.OpenCut("c.cut", CutFile::WithoutLayers(1)).Activate(0).Activate(2).Close();
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["path"], session.Path("a.cut"));
}

TEST(CloseAll, NoClosesTheWindowsAllTheSameButEachOneAsks) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::WithoutLayers(1)).Panel(kCommentEdit, "first");
  session.OpenCut("b.cut", CutFile::WithoutLayers(1)).Panel(kCommentEdit, "second");
  session.Answer("no").Answer("no").Answer("yes").Command(kCommandCloseAll);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["cuts"].size(), 0U);
  EXPECT_EQ(session.Bytes("b.cut").find("second"), std::string::npos);
  EXPECT_NE(session.Bytes("a.cut").find("first"), std::string::npos);
}

TEST(CloseAll, YesSavesEveryModifiedCutWithoutAsking) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::WithoutLayers(1)).Panel(kCommentEdit, "first");
  session.OpenCut("b.cut", CutFile::WithoutLayers(1)).Panel(kCommentEdit, "second");
  session.Answer("yes").Command(kCommandCloseAll);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["cuts"].size(), 0U);
  EXPECT_NE(session.Bytes("a.cut").find("first"), std::string::npos);
  EXPECT_NE(session.Bytes("b.cut").find("second"), std::string::npos);
}

TEST(CloseAll, UntitledCutStillComesToTheSaveDialog) {
  ScriptSession session;
  session.NewCut().Answer("yes").File(session.Path("kept.cut")).Command(kCommandCloseAll).Run();
  EXPECT_TRUE(session.Exists("kept.cut"));
}

TEST(CloseAll, DoesNotAskAboutTheFilm) {
  ScriptSession session;
  session.Dialog(kFilmDialog, {{kFilmTitleEdit, "mine"}})
      .Command(kCommandFilmProperties)
      .Answer("yes")
      .Command(kCommandCloseAll);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["film"]["modified"], true);
}

TEST(CloseAll, AfterwardsACloseAsksAgain) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::WithoutLayers(1)).Answer("yes").Command(kCommandCloseAll);
  session.OpenCut("b.cut", CutFile::WithoutLayers(1)).Panel(kCommentEdit, "typed").Close().Run(3);
}

}  // namespace
