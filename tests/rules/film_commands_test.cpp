#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "resources/ids.h"
#include "rules/film_session.h"

namespace rules {
namespace {

using nlohmann::json;

// A film file with these cuts beside it, which exist, is opened.
ScriptSession& OpenFilm(ScriptSession& session, const Names& cuts) {
  for (const std::string& cut : cuts) session.Write(cut, PlainCut().Bytes());
  return OpenFilmFile(session, FilmText(cuts));
}

TEST(NewFilm, TakesItsValuesFromTheDialog) {
  ScriptSession session;
  OpenFilm(session, {"a.cut"})
      .Dialog(kFilmDialog,
              {{kFilmWidthEdit, "64"}, {kFilmHeightEdit, "48"}, {kFilmTitleEdit, "New"}, {kFilmAuthorEdit, "Me"}})
      .Command(kCommandNewFilm);
  const int state = session.State();
  session.Run();
  json film = Film(session, state);
  EXPECT_EQ(film["width"], 64);
  EXPECT_EQ(film["height"], 48);
  EXPECT_EQ(film["title"], "New");
  EXPECT_EQ(film["author"], "Me");
  EXPECT_EQ(film["path"], "");
  EXPECT_EQ(film["modified"], false);
  EXPECT_EQ(film["cuts"].size(), 0U);
  EXPECT_EQ(Lines(session, state), Names{});
  EXPECT_EQ(FrameTitle(session, state), "Sorvel Developer");
}

TEST(NewFilm, DialogStartsWithTheDefaults) {
  ScriptSession session;
  session.Dialog(kFilmDialog, {}).Command(kCommandNewFilm);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Film(session, state)["width"], 320);
  EXPECT_EQ(Film(session, state)["height"], 240);
  EXPECT_EQ(Film(session, state)["title"], "");
}

TEST(NewFilm, DialogStartsWithTheSettings) {
  ScriptSession session;
  session.SetSettings("[OnNewFilm]\r\nwidth=11\r\nheight=12\r\ntitle=Old\r\nauthor=Who\r\n");
  session.Dialog(kFilmDialog, {}).Command(kCommandNewFilm);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Film(session, state)["width"], 11);
  EXPECT_EQ(Film(session, state)["height"], 12);
  EXPECT_EQ(Film(session, state)["title"], "Old");
  EXPECT_EQ(Film(session, state)["author"], "Who");
}

TEST(NewFilm, OkWritesTheFourKeys) {
  ScriptSession session;
  session
      .Dialog(kFilmDialog,
              {{kFilmWidthEdit, "64"}, {kFilmHeightEdit, "48"}, {kFilmTitleEdit, "New"}, {kFilmAuthorEdit, "Me"}})
      .Command(kCommandNewFilm)
      .Run();
  EXPECT_EQ(session.Setting("OnNewFilm", "width"), "64");
  EXPECT_EQ(session.Setting("OnNewFilm", "height"), "48");
  EXPECT_EQ(session.Setting("OnNewFilm", "title"), "New");
  EXPECT_EQ(session.Setting("OnNewFilm", "author"), "Me");
}

TEST(NewFilm, CancelKeepsTheFilm) {
  ScriptSession session;
  OpenFilm(session, {"a.cut"}).Dialog(kFilmDialog, {{kFilmTitleEdit, "New"}}, "cancel").Command(kCommandNewFilm);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Film(session, state)["title"], "title");
  EXPECT_EQ(Entries(session, state), Names{"a.cut"});
  EXPECT_EQ(session.Setting("OnNewFilm", "width"), "(none)");
}

TEST(NewFilm, AsksAboutAModifiedFilmAndGoesOnAfterNo) {
  ScriptSession session;
  session.Dialog(kFilmDialog, {{kFilmTitleEdit, "Old"}})
      .Command(kCommandFilmProperties)
      .Answer("no")
      .Dialog(kFilmDialog, {{kFilmTitleEdit, "New"}})
      .Command(kCommandNewFilm);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Film(session, state)["title"], "New");
}

TEST(NewFilm, YesSavesTheOldFilmToItsPath) {
  ScriptSession session;
  OpenFilm(session, {}).Dialog(kFilmDialog, {{kFilmTitleEdit, "Changed"}}).Command(kCommandFilmProperties);
  session.Answer("yes").Dialog(kFilmDialog, {{kFilmTitleEdit, "New"}}).Command(kCommandNewFilm).Run();
  EXPECT_EQ(session.Bytes("film.flm"), "Changed\nauthor\n100, 50\n");
}

TEST(NewFilm, YesOnAFilmWithoutPathComesToTheSaveDialog) {
  ScriptSession session;
  session.Dialog(kFilmDialog, {{kFilmTitleEdit, "Old"}})
      .Command(kCommandFilmProperties)
      .Answer("yes")
      .File(session.Path("old"))
      .Dialog(kFilmDialog, {});
  session.Command(kCommandNewFilm).Run();
  EXPECT_EQ(session.Bytes("old.flm"), "Old\n\n320, 240\n");
}

TEST(NewFilm, LeavesOpenCutsOpenOutsideTheFilm) {
  ScriptSession session;
  session.OpenCut("a.cut", PlainCut())
      .Command(kCommandAddCutToFilm)
      .Answer("no")
      .Dialog(kFilmDialog, {})
      .Command(kCommandNewFilm);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["cuts"].size(), 1U);
  EXPECT_EQ(Entries(session, state), Names{});
}

TEST(OpenFilm, CommandFillsTheListAndSelectsTheFirstLine) {
  ScriptSession session;
  session.Write("film.flm", "T\nA\n10, 20\nsub/one.cut\ntwo.cut\n../three.cut\n");
  session.File(session.Path("film")).Command(kCommandOpenFilm);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Lines(session, state), (Names{"one", "two", "three"}));
  EXPECT_EQ(List(session, state)["selected"], json::array({0}));
  EXPECT_EQ(List(session, state)["caret"], 0);
  EXPECT_EQ(FrameTitle(session, state), "Sorvel Developer - film");
}

TEST(OpenFilm, ReadsTheHeadAndFullPaths) {
  ScriptSession session;
  OpenFilmFile(session, "T\nA\n10, 20\nsub/one.cut\n\ntwo.cut");
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Film(session, state)["title"], "T");
  EXPECT_EQ(Film(session, state)["author"], "A");
  EXPECT_EQ(Film(session, state)["width"], 10);
  EXPECT_EQ(Film(session, state)["height"], 20);
  EXPECT_EQ(Film(session, state)["path"], session.Path("film.flm"));
  EXPECT_EQ(Film(session, state)["modified"], false);
  EXPECT_EQ(Entries(session, state), (Names{"sub/one.cut", "two.cut"}));
}

TEST(OpenFilm, OpensNoCut) {
  ScriptSession session;
  OpenFilm(session, {"a.cut", "b.cut"});
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["cuts"].size(), 0U);
  EXPECT_EQ(Film(session, state)["cuts"][0]["open"], false);
}

TEST(OpenFilm, CommandAsksAboutAModifiedFilm) {
  ScriptSession session;
  session.Write("film.flm", "T\nA\n10, 20\n");
  session.Dialog(kFilmDialog, {}).Command(kCommandFilmProperties).Command(kCommandOpenFilm).Run(3);
}

TEST(OpenFilm, CancelAfterTheQuestionKeepsTheFilm) {
  ScriptSession session;
  session.Dialog(kFilmDialog, {{kFilmTitleEdit, "Old"}})
      .Command(kCommandFilmProperties)
      .Answer("no")
      .File("cancel")
      .Command(kCommandOpenFilm);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Film(session, state)["title"], "Old");
}

TEST(OpenFilm, FileThatDoesNotOpenEmptiesTheFilmButLeavesTheListAsItWas) {
  ScriptSession session;
  OpenFilm(session, {"a.cut"}).Open(session.Path("gone.flm"));
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Entries(session, state), Names{});
  EXPECT_EQ(Film(session, state)["path"], "");
  EXPECT_EQ(Lines(session, state), Names{"a"});
  EXPECT_EQ(FrameTitle(session, state), "Sorvel Developer - film");
}

TEST(OpenFilm, EmptyFilmHasAnEmptyList) {
  ScriptSession session;
  OpenFilm(session, {"a.cut"});
  session.Write("empty.flm", "T\nA\n10, 20\n");
  session.Open(session.Path("empty.flm"));
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Lines(session, state), Names{});
  EXPECT_EQ(List(session, state)["selected"], json::array());
}

TEST(SaveFilm, WritesCutsRelativeToTheFile) {
  ScriptSession session;
  OpenFilmFile(session, "T\nA\n10, 20\nsub/one.cut\ntwo.cut\n../x/three.cut\n")
      .File(session.Path("copy"))
      .Command(kCommandSaveFilmAs)
      .Run();
  EXPECT_EQ(session.Bytes("copy.flm"), "T\nA\n10, 20\nsub/one.cut\ntwo.cut\n../x/three.cut\n");
}

TEST(SaveFilm, TakesPathAndTitleAndIsUnmodified) {
  ScriptSession session;
  session.Dialog(kFilmDialog, {{kFilmTitleEdit, "T"}})
      .Command(kCommandFilmProperties)
      .File(session.Path("new.flm"))
      .Command(kCommandSaveFilmAs);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Film(session, state)["path"], session.Path("new.flm"));
  EXPECT_EQ(Film(session, state)["modified"], false);
  EXPECT_EQ(FrameTitle(session, state), "Sorvel Developer - new");
}

TEST(SaveFilm, WithoutCutsHasThreeLines) {
  ScriptSession session;
  session.File(session.Path("new.flm")).Command(kCommandSaveFilmAs).Run();
  EXPECT_EQ(session.Bytes("new.flm"), "\n\n320, 240\n");
}

TEST(SaveFilm, FailureChangesTheTitleAllTheSame) {
  ScriptSession session;
  session.Dialog(kFilmDialog, {{kFilmTitleEdit, "T"}})
      .Command(kCommandFilmProperties)
      .File(session.Path("nofolder/new.flm"))
      .Command(kCommandSaveFilmAs);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(FrameTitle(session, state), "Sorvel Developer - new");
  EXPECT_EQ(Film(session, state)["path"], "");
  EXPECT_EQ(Film(session, state)["modified"], true);
}

TEST(SaveFilm, CancelSavesNothing) {
  ScriptSession session;
  session.File("cancel").Command(kCommandSaveFilmAs);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(FrameTitle(session, state), "Sorvel Developer");
  EXPECT_EQ(session.Files(), Names{});
}

TEST(OverwriteFilm, GoesToThePathWithoutADialog) {
  ScriptSession session;
  OpenFilm(session, {"a.cut"})
      .Dialog(kFilmDialog, {{kFilmTitleEdit, "Changed"}})
      .Command(kCommandFilmProperties)
      .Command(kCommandOverwriteFilm);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Bytes("film.flm"), "Changed\nauthor\n100, 50\na.cut\n");
  EXPECT_EQ(Film(session, state)["modified"], false);
}

TEST(OverwriteFilm, WithoutAPathAsksForOne) {
  ScriptSession session;
  session.File(session.Path("new")).Command(kCommandOverwriteFilm);
  const int state = session.State();
  session.Run();
  EXPECT_TRUE(session.Exists("new.flm"));
  EXPECT_EQ(FrameTitle(session, state), "Sorvel Developer - new");
}

TEST(FilmProperties, AreStoredAndModifyTheFilmEvenUnchanged) {
  ScriptSession session;
  OpenFilm(session, {"a.cut"}).Dialog(kFilmDialog, {}).Command(kCommandFilmProperties);
  const int state = session.State();
  session.Run();
  json film = Film(session, state);
  EXPECT_EQ(film["width"], 100);
  EXPECT_EQ(film["height"], 50);
  EXPECT_EQ(film["title"], "title");
  EXPECT_EQ(film["author"], "author");
  EXPECT_EQ(film["modified"], true);
  EXPECT_EQ(Entries(session, state), Names{"a.cut"});
}

TEST(FilmProperties, DoNotWriteTheNewFilmSettings) {
  ScriptSession session;
  session.Dialog(kFilmDialog, {{kFilmWidthEdit, "64"}}).Command(kCommandFilmProperties).Run();
  EXPECT_EQ(session.Setting("OnNewFilm", "width"), "(none)");
}

TEST(FilmProperties, CancelModifiesNothing) {
  ScriptSession session;
  session.Dialog(kFilmDialog, {{kFilmWidthEdit, "64"}}, "cancel").Command(kCommandFilmProperties);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Film(session, state)["width"], 320);
  EXPECT_EQ(Film(session, state)["modified"], false);
}

TEST(AddCut, ToAnEmptyFilm) {
  ScriptSession session;
  session.OpenCut("one.cut", PlainCut()).Command(kCommandAddCutToFilm);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Entries(session, state), Names{"one.cut"});
  EXPECT_EQ(Lines(session, state), Names{"one"});
  EXPECT_EQ(List(session, state)["selected"], json::array({0}));
  EXPECT_EQ(Film(session, state)["modified"], true);
  EXPECT_EQ(Film(session, state)["cuts"][0]["open"], true);
}

TEST(AddCut, StandsBehindTheCaretAndIsSelected) {
  ScriptSession session;
  OpenFilm(session, {"a.cut", "b.cut", "c.cut"})
      .OpenCut("new.cut", PlainCut())
      .Select(kCutList, {1})
      .Command(kCommandAddCutToFilm);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Entries(session, state), (Names{"a.cut", "b.cut", "new.cut", "c.cut"}));
  EXPECT_EQ(Lines(session, state), (Names{"a", "b", "new", "c"}));
  EXPECT_EQ(List(session, state)["selected"], json::array({2}));
  EXPECT_EQ(List(session, state)["caret"], 2);
}

TEST(AddCut, UnsavedCutIsSavedFirst) {
  ScriptSession session;
  session.NewCut().File(session.Path("saved")).Command(kCommandAddCutToFilm);
  const int state = session.State();
  session.Run();
  EXPECT_TRUE(session.Exists("saved.cut"));
  EXPECT_EQ(Entries(session, state), Names{"saved.cut"});
}

TEST(AddCut, CancelledSaveAddsNothing) {
  ScriptSession session;
  session.NewCut().File("cancel").Command(kCommandAddCutToFilm);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Entries(session, state), Names{});
  EXPECT_EQ(Lines(session, state), Names{});
  EXPECT_EQ(Film(session, state)["modified"], false);
}

TEST(AddCut, MayStandInTheFilmTwice) {
  ScriptSession session;
  session.OpenCut("one.cut", PlainCut()).Command(kCommandAddCutToFilm).Command(kCommandAddCutToFilm);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Entries(session, state), (Names{"one.cut", "one.cut"}));
  EXPECT_EQ(Lines(session, state), (Names{"one", "one"}));
  EXPECT_EQ(Film(session, state)["cuts"][1]["open"], true);
}

TEST(InsertCut, StandsAtTheCaretAndIsNotSelected) {
  ScriptSession session;
  OpenFilm(session, {"a.cut", "b.cut", "c.cut"})
      .OpenCut("new.cut", PlainCut())
      .Select(kCutList, {1})
      .Command(kCommandInsertCutIntoFilm);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Entries(session, state), (Names{"a.cut", "new.cut", "b.cut", "c.cut"}));
  EXPECT_EQ(Lines(session, state), (Names{"a", "new", "b", "c"}));
  EXPECT_EQ(List(session, state)["caret"], 1);
  EXPECT_EQ(List(session, state)["selected"], json::array({2}));
}

TEST(InsertCut, IntoAnEmptyFilm) {
  ScriptSession session;
  session.OpenCut("one.cut", PlainCut()).Command(kCommandInsertCutIntoFilm);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Entries(session, state), Names{"one.cut"});
  EXPECT_EQ(Lines(session, state), Names{"one"});
}

TEST(RemoveCut, LeavesFileAndWindow) {
  ScriptSession session;
  session.OpenCut("one.cut", PlainCut()).Command(kCommandAddCutToFilm).Command(kCommandRemoveCutFromFilm);
  const int removed = session.State();
  session.Command(kCommandAddCutToFilm);
  const int again = session.State();
  session.Run();
  EXPECT_EQ(Entries(session, removed), Names{});
  EXPECT_EQ(Lines(session, removed), Names{});
  EXPECT_EQ(session.StateAt(removed)["cuts"].size(), 1U);
  EXPECT_TRUE(session.Exists("one.cut"));
  EXPECT_EQ(Entries(session, again), Names{"one.cut"});
}

TEST(RemoveCut, TakesTheFirstEntryOfTheActiveCutAlone) {
  ScriptSession session;
  OpenFilm(session, {"a.cut", "b.cut"});
  session.Write("film.flm", "title\nauthor\n100, 50\na.cut\nb.cut\nc.cut\nb.cut\n");
  session.Open(session.Path("b.cut")).Command(kCommandRemoveCutFromFilm);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Entries(session, state), (Names{"a.cut", "c.cut", "b.cut"}));
  EXPECT_EQ(Lines(session, state), (Names{"a", "c", "b"}));
}

TEST(RemoveCut, OutsideTheFilmDoesNothing) {
  ScriptSession session;
  OpenFilm(session, {"a.cut"}).OpenCut("b.cut", PlainCut()).Command(kCommandRemoveCutFromFilm);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Entries(session, state), Names{"a.cut"});
  EXPECT_EQ(Film(session, state)["modified"], false);
}

TEST(CutListDoubleClick, OpensTheCut) {
  ScriptSession session;
  OpenFilm(session, {"a.cut", "b.cut"}).DoubleClick(kCutList, 1);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["path"], session.Path("b.cut"));
  EXPECT_EQ(session.Cut(state)["title"], "b.cut");
  EXPECT_EQ(Film(session, state)["cuts"][1]["open"], true);
  EXPECT_EQ(Film(session, state)["cuts"][0]["open"], false);
}

TEST(CutListDoubleClick, ActivatesACutThatIsOpen) {
  ScriptSession session;
  OpenFilm(session, {"a.cut", "b.cut"}).Open(session.Path("a.cut")).Open(session.Path("b.cut"));
  session.DoubleClick(kCutList, 0);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["cuts"].size(), 2U);
  EXPECT_EQ(session.Cut(state)["path"], session.Path("a.cut"));
}

TEST(CutListDoubleClick, FileThatIsNotThereDoesNothing) {
  ScriptSession session;
  OpenFilmFile(session, "t\na\n1, 1\ngone.cut\n").DoubleClick(kCutList, 0);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["cuts"].size(), 0U);
}

TEST(CutListDoubleClick, OpenedCutShowsItsPicture) {
  ScriptSession session;
  OpenFilm(session, {"a.cut"});
  session.Write("a.cut", CutFile::Showing({3}, {0}).Bytes());
  session.DoubleClick(kCutList, 0);
  const int view = session.View();
  session.Run();
  EXPECT_EQ(session.ViewAt(view).Count(3), 24);
}

TEST(NumberedCut, AddedBehindTheCaretWithTheDialogsStartDefaults) {
  ScriptSession session;
  NumberedCut(OpenFilm(session, {"cut1.cut", "last.cut"}));
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Entries(session, state), (Names{"cut1.cut", "cut002.cut", "last.cut"}));
  EXPECT_EQ(Lines(session, state), (Names{"cut1", "cut002", "last"}));
  EXPECT_EQ(List(session, state)["selected"], json::array({1}));
  EXPECT_EQ(session.Cut(state)["path"], session.Path("cut002.cut"));
  EXPECT_EQ(session.Cut(state)["title"], "cut002.cut");
  EXPECT_EQ(PropertiesOf(session, state), "960 x 720, 24 fps, antialias 2, credit []");
}

TEST(NumberedCut, InsertedAtTheCaret) {
  ScriptSession session;
  OpenFilm(session, {"cut1.cut", "last.cut"}).Select(kCutList, {1}).Select(kCutList, {0});
  NumberedCut(session, {{kCutWidthEdit, "8"}, {kCutHeightEdit, "3"}}, kCommandInsertNumberedCut);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Entries(session, state), (Names{"cut002.cut", "cut1.cut", "last.cut"}));
  EXPECT_EQ(List(session, state)["caret"], 0);
}

TEST(NumberedCut, DialogRemembersTheLastCutDialog) {
  ScriptSession session;
  OpenFilm(session, {"cut1.cut"});
  session.NewCutWithoutLayer({.width = 20, .height = 10, .fps = 12, .antialias = 1, .credit = "Me"});
  NumberedCut(session);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(PropertiesOf(session, state), "20 x 10, 12 fps, antialias 1, credit [Me]");
}

TEST(NumberedCut, DialogRemembersTheCutPropertiesToo) {
  ScriptSession session;
  OpenFilm(session, {"cut1.cut"}).Open(session.Path("cut1.cut"));
  session.Dialog(kCutDialog, {{kCutWidthEdit, "30"}, {kCutHeightEdit, "20"}, {kCutFpsEdit, "15"}})
      .Command(kCommandCutProperties);
  NumberedCut(session);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["width"], 30);
  EXPECT_EQ(session.Cut(state)["height"], 20);
  EXPECT_EQ(session.Cut(state)["fps"], 15);
}

TEST(NumberedCut, CancelledDialogIsNotRemembered) {
  ScriptSession session;
  OpenFilm(session, {"cut1.cut"}).Dialog(kCutDialog, {{kCutWidthEdit, "30"}}, "cancel").Command(kCommandAddNumberedCut);
  NumberedCut(session);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["width"], 960);
}

TEST(NumberedCut, IsSavedBeforeItHasALayer) {
  ScriptSession session;
  OpenFilm(session, {"cut1.cut"});
  session.Dialog(kCutDialog, {{kCutWidthEdit, "8"}, {kCutHeightEdit, "3"}, {kCutWholeRadio, "on"}})
      .Dialog(kLayerDialog, {}, "ok")
      .Command(kCommandAddNumberedCut);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Bytes("cut002.cut"), PlainCut().Bytes());
  EXPECT_EQ(session.Cut(state)["modified"], true);
  EXPECT_EQ(session.Cut(state)["layers"].size(), 1U);
}

TEST(NumberedCut, WithoutLayerIsUnmodified) {
  ScriptSession session;
  NumberedCut(OpenFilm(session, {"cut1.cut"}));
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["modified"], false);
  EXPECT_EQ(session.Cut(state)["imagesStale"], true);
  EXPECT_EQ(session.Cut(state)["frames"].size(), 1U);
}

TEST(NumberedCut, CancelMakesNoFile) {
  ScriptSession session;
  OpenFilm(session, {"cut1.cut"}).Dialog(kCutDialog, {}, "cancel").Command(kCommandAddNumberedCut);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Files(), (Names{"cut1.cut", "film.flm"}));
  EXPECT_EQ(Entries(session, state), Names{"cut1.cut"});
}

TEST(NumberedCut, PassesOverNumbersThatExist) {
  ScriptSession session;
  session.Write("cut002.cut", "taken");
  session.Write("cut003.cut", "taken");
  NumberedCut(OpenFilm(session, {"cut1.cut"}));
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["path"], session.Path("cut004.cut"));
}

TEST(NumberedCut, AtTheLimitGoesOverTheFileOfTheEntry) {
  ScriptSession session;
  OpenFilm(session, {"cut999.cut"});
  session.Write("cut999.cut", CutFile::WithoutLayers(5).Bytes());
  NumberedCut(session, {{kCutWidthEdit, "8"}, {kCutHeightEdit, "3"}, {kCutWholeRadio, "on"}});
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["path"], session.Path("cut999.cut"));
  EXPECT_EQ(session.Bytes("cut999.cut"), PlainCut().Bytes());
  EXPECT_EQ(Entries(session, state), (Names{"cut999.cut", "cut999.cut"}));
}

TEST(NumberedCut, CountsOnFromTheEntryAtTheCaret) {
  ScriptSession session;
  OpenFilm(session, {"a1.cut", "b5.cut", "c7.cut"}).Select(kCutList, {1});
  NumberedCut(session);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Entries(session, state), (Names{"a1.cut", "b5.cut", "b006.cut", "c7.cut"}));
}

class NumberedCutInAnEmptyFilm : public testing::TestWithParam<int> {};

TEST_P(NumberedCutInAnEmptyFilm, IsANewCutThatIsSavedAndAdded) {
  ScriptSession session;
  session.Dialog(kCutDialog, {}).Dialog(kLayerDialog, {}, "cancel").File(session.Path("first")).Command(GetParam());
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["width"], 240);
  EXPECT_EQ(session.Cut(state)["height"], 180);
  EXPECT_EQ(Entries(session, state), Names{"first.cut"});
  EXPECT_EQ(List(session, state)["selected"], json::array({0}));
  EXPECT_EQ(session.Setting("OnNewCut", "width"), "240");
}

TEST_P(NumberedCutInAnEmptyFilm, CancelledLeavesTheActiveCutToBeAdded) {
  ScriptSession session;
  session.OpenCut("open.cut", PlainCut()).Dialog(kCutDialog, {}, "cancel").Command(GetParam());
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Entries(session, state), Names{"open.cut"});
}

INSTANTIATE_TEST_SUITE_P(Film, NumberedCutInAnEmptyFilm,
                         testing::Values(kCommandAddNumberedCut, kCommandInsertNumberedCut));

TEST(DeleteCuts, YesDeletesTheFilesAndTheirStreams) {
  ScriptSession session;
  OpenFilm(session, {"a.cut", "b.cut", "c.cut"});
  session.Write("a.ca", "x");
  session.Write("b.ca", "x");
  session.Select(kCutList, {1}).Answer("yes").Command(kCommandDeleteCuts);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Files(), (Names{"a.ca", "a.cut", "c.cut", "film.flm"}));
  EXPECT_EQ(Entries(session, state), (Names{"a.cut", "c.cut"}));
  EXPECT_EQ(Lines(session, state), (Names{"a", "c"}));
  EXPECT_EQ(Film(session, state)["modified"], true);
}

TEST(DeleteCuts, NoRemovesTheLinesAndKeepsTheFiles) {
  ScriptSession session;
  OpenFilm(session, {"a.cut", "b.cut"});
  session.Write("a.ca", "x");
  session.Select(kCutList, {0}).Answer("no").Command(kCommandDeleteCuts);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Files(), (Names{"a.ca", "a.cut", "b.cut", "film.flm"}));
  EXPECT_EQ(Entries(session, state), Names{"b.cut"});
  EXPECT_EQ(Lines(session, state), Names{"b"});
}

TEST(DeleteCuts, YesClosesAnOpenCutWithoutAsking) {
  ScriptSession session;
  OpenFilm(session, {"a.cut", "b.cut"})
      .Open(session.Path("a.cut"))
      .Panel(kCommentEdit, "typed")
      .Command(kCommandPreviousFrame);
  session.Answer("yes").Command(kCommandDeleteCuts);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["cuts"].size(), 0U);
  EXPECT_FALSE(session.Exists("a.cut"));
}

TEST(DeleteCuts, NoLeavesAnOpenWindow) {
  ScriptSession session;
  OpenFilm(session, {"a.cut", "b.cut"}).Open(session.Path("a.cut")).Answer("no").Command(kCommandDeleteCuts);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["cuts"].size(), 1U);
  EXPECT_EQ(Entries(session, state), Names{"b.cut"});
}

TEST(DeleteCuts, SelectsTheLinesThatFollowedAndPutsTheCaretAtTheLowest) {
  ScriptSession session;
  OpenFilm(session, {"a.cut", "b.cut", "c.cut", "d.cut", "e.cut"})
      .Select(kCutList, {3, 1})
      .Answer("no")
      .Command(kCommandDeleteCuts);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Lines(session, state), (Names{"a", "c", "e"}));
  EXPECT_EQ(List(session, state)["selected"], json::array({1, 2}));
  EXPECT_EQ(List(session, state)["caret"], 1);
}

TEST(DeleteCuts, OfTheLastLineSelectsNothing) {
  ScriptSession session;
  OpenFilm(session, {"a.cut", "b.cut"}).Select(kCutList, {1}).Answer("no").Command(kCommandDeleteCuts);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Lines(session, state), Names{"a"});
  EXPECT_EQ(List(session, state)["selected"], json::array());
}

TEST(DeleteCuts, AsksEvenWhenNoLineIsSelected) {
  ScriptSession session;
  OpenFilm(session, {"a.cut", "b.cut"})
      .Select(kCutList, {1})
      .Answer("no")
      .Command(kCommandDeleteCuts)
      .Command(kCommandDeleteCuts)
      .Run(3);
}

TEST(RenameCut, RenamesEntryLineFileAndWindow) {
  ScriptSession session;
  OpenFilm(session, {"a.cut", "b.cut"}).Open(session.Path("b.cut")).Select(kCutList, {1});
  session.Dialog(kRenameDialog, {{kRenameEdit, "new"}}).Command(kCommandRenameCut);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Entries(session, state), (Names{"a.cut", "new.cut"}));
  EXPECT_EQ(Lines(session, state), (Names{"a", "new"}));
  EXPECT_EQ(List(session, state)["caret"], 1);
  EXPECT_EQ(session.Files(), (Names{"a.cut", "film.flm", "new.cut"}));
  EXPECT_EQ(session.Cut(state)["path"], session.Path("new.cut"));
  EXPECT_EQ(session.Cut(state)["title"], "new.cut");
  EXPECT_EQ(Film(session, state)["modified"], true);
}

TEST(RenameCut, GoesToEveryEntryOfTheSameFile) {
  ScriptSession session;
  session.Write("film.flm", "t\na\n1, 1\na.cut\nb.cut\na.cut\n");
  session.Write("a.cut", PlainCut().Bytes());
  session.Open(session.Path("film.flm")).Dialog(kRenameDialog, {{kRenameEdit, "new"}}).Command(kCommandRenameCut);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Entries(session, state), (Names{"new.cut", "b.cut", "new.cut"}));
  EXPECT_EQ(Lines(session, state), (Names{"new", "b", "new"}));
  EXPECT_TRUE(session.Exists("new.cut"));
}

TEST(RenameCut, SameNameChangesNothing) {
  ScriptSession session;
  OpenFilm(session, {"a.cut"}).Dialog(kRenameDialog, {}).Command(kCommandRenameCut);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Film(session, state)["modified"], false);
  EXPECT_EQ(Entries(session, state), Names{"a.cut"});
}

TEST(RenameCut, CancelChangesNothing) {
  ScriptSession session;
  OpenFilm(session, {"a.cut"}).Dialog(kRenameDialog, {{kRenameEdit, "new"}}, "cancel").Command(kCommandRenameCut);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Entries(session, state), Names{"a.cut"});
  EXPECT_TRUE(session.Exists("a.cut"));
}

TEST(RenameCut, KeepsFolderAndExtension) {
  ScriptSession session;
  OpenFilmFile(session, "t\na\n1, 1\nsub/a.b.CUT\n")
      .Dialog(kRenameDialog, {{kRenameEdit, "new"}})
      .Command(kCommandRenameCut);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Entries(session, state), Names{"sub/new.CUT"});
}

TEST(RenameCut, FileThatIsNotThereIsRenamedInTheFilmAllTheSame) {
  ScriptSession session;
  OpenFilmFile(session, "t\na\n1, 1\ngone.cut\n")
      .Dialog(kRenameDialog, {{kRenameEdit, "new"}})
      .Command(kCommandRenameCut);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Entries(session, state), Names{"new.cut"});
}

TEST(Extract, FilmThatDoesNotOpenCopiesNothing) {
  ScriptSession session;
  ScriptSession target;
  OpenFilm(session, {"a.cut"}).File(target.Path("nofolder/x.flm")).Command(kCommandExtractCuts).Run();
  EXPECT_EQ(target.Files(), Names{});
}

TEST(Extract, CopiesIntoTheFolderOfTheNewFilm) {
  ScriptSession session;
  ScriptSession target;
  OpenFilm(session, {"a.cut", "b.cut", "c.cut"});
  session.Write("c.cut", CutFile::WithoutLayers(3).Bytes());
  session.Select(kCutList, {2, 0}).File(target.Path("x")).Command(kCommandExtractCuts);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(target.Files(), (Names{"a.cut", "c.cut", "x.flm"}));
  EXPECT_EQ(target.Bytes("x.flm"), "title\nauthor\n100, 50\na.cut\nc.cut\n");
  EXPECT_EQ(target.Bytes("c.cut"), CutFile::WithoutLayers(3).Bytes());
  EXPECT_EQ(Film(session, state)["path"], session.Path("film.flm"));
  EXPECT_EQ(Film(session, state)["modified"], false);
  EXPECT_EQ(FrameTitle(session, state), "Sorvel Developer - film");
}

TEST(Extract, LineHasTheBareNameWhateverTheSource) {
  ScriptSession session;
  ScriptSession target;
  session.Write("film.flm", "t\na\n1, 1\nother.dat\nsub/gone.cut\n");
  session.Write("other.dat", "content");
  session.Open(session.Path("film.flm"))
      .Select(kCutList, {0, 1})
      .File(target.Path("x.flm"))
      .Command(kCommandExtractCuts)
      .Run();
  EXPECT_EQ(target.Bytes("x.flm"), "t\na\n1, 1\nother.cut\ngone.cut\n");
  EXPECT_EQ(target.Bytes("other.cut"), "content");
  EXPECT_EQ(target.Bytes("gone.cut"), "");
}

TEST(Extract, OpenCutsUnsavedChangesStay) {
  ScriptSession session;
  ScriptSession target;
  OpenFilm(session, {"a.cut"}).Open(session.Path("a.cut")).Panel(kCommentEdit, "typed").Command(kCommandPreviousFrame);
  session.File(target.Path("x.flm")).Command(kCommandExtractCuts).Run();
  EXPECT_EQ(target.Bytes("a.cut"), PlainCut().Bytes());
}

TEST(Extract, IntoItsOwnFolderDestroysTheFile) {
  ScriptSession session;
  OpenFilm(session, {"a.cut"}).File(session.Path("x.flm")).Command(kCommandExtractCuts).Run();
  EXPECT_EQ(session.Bytes("x.flm"), "title\nauthor\n100, 50\na.cut\n");
  EXPECT_EQ(session.Bytes("a.cut"), "");
}

TEST(Extract, CancelWritesNothing) {
  ScriptSession session;
  OpenFilm(session, {"a.cut"}).File("cancel").Command(kCommandExtractCuts).Run();
  EXPECT_EQ(session.Files(), (Names{"a.cut", "film.flm"}));
}

TEST(Stop, HidesThePlayer) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1, 2}, {0, 1})).Command(kCommandPlay);
  const int on = session.State();
  session.Command(kCommandStop);
  const int off = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(on)["player"]["visible"], true);
  EXPECT_EQ(session.StateAt(on)["player"]["timer"], true);
  EXPECT_EQ(session.StateAt(off)["player"]["visible"], false);
  EXPECT_EQ(session.StateAt(off)["player"]["timer"], false);
}

TEST(PlayFilm, WithoutASelectionDoesNothingAndStopsNothing) {
  ScriptSession session;
  OpenFilm(session, {"a.cut", "b.cut"}).Select(kCutList, {1}).Answer("no").Command(kCommandDeleteCuts);
  session.OpenCut("c.cut", CutFile::Showing({1, 2}, {0, 1})).Command(kCommandPlay);
  const int before = session.State();
  session.Command(kCommandPlaySelection);
  const int after = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(before)["player"]["timer"], true);
  EXPECT_EQ(session.StateAt(after)["player"], session.StateAt(before)["player"]);
}

TEST(PlayFilm, WithACutThatIsMissingStopsThePlay) {
  ScriptSession session;
  OpenFilmFile(session, "t\na\n8, 3\ngone.cut\n")
      .OpenCut("c.cut", CutFile::Showing({1, 2}, {0, 1}))
      .Command(kCommandPlay);
  session.Command(kCommandPlaySelection);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["player"]["visible"], false);
}

}  // namespace
}  // namespace rules
