#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "resources/ids.h"
#include "rules/film_session.h"
#include "rules/rule_table.h"

namespace rules {
namespace {

using nlohmann::json;

// A film file with these cuts beside it, which exist, is opened.
ScriptSession& OpenFilmOf(ScriptSession& session, const Names& cuts) {
  for (const std::string& cut : cuts) session.Write(cut, PlainCut().Bytes());
  return OpenFilmFile(session, FilmText(cuts));
}

ScriptSession& OpenFilmOf(ScriptSession&& session, const Names& cuts) {
  return OpenFilmOf(session, cuts);
}

using NewFilm = SessionTest;

TEST_F(NewFilm, TakesItsValuesFromTheDialog) {
  OpenFilmOf(session, {"a.cut"})
      .Dialog(kFilmDialog,
              {{kFilmWidthEdit, "64"}, {kFilmHeightEdit, "48"}, {kFilmTitleEdit, "New"}, {kFilmAuthorEdit, "Me"}});
  session.Command(kCommandNewFilm);
  EXPECT_TRUE(Holds(session, "film/width", 64, "film/height", 48, "film/title", "New", "film/author", "Me", "film/path",
                    "", "film/modified", false, "film/cuts/#", 0, "panels/cuts/lines", Names{}, "frame/title",
                    "Sorvel Developer"));
}

TEST_F(NewFilm, OkWritesTheFourKeys) {
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

const Rules<SessionTest, "NewFilm"> kNewFilmRules = {
    {"DialogStartsWithTheDefaults", Do().Dialog(kFilmDialog, {}).Command(kCommandNewFilm),
     Has("film/width", 320, "film/height", 240, "film/title", "")},
    {"DialogStartsWithTheSettings",
     Do().SetSettings("[OnNewFilm]\r\nwidth=11\r\nheight=12\r\ntitle=Old\r\nauthor=Who\r\n"),
     Do().Dialog(kFilmDialog, {}).Command(kCommandNewFilm),
     Has("film/width", 11, "film/height", 12, "film/title", "Old", "film/author", "Who")},
    {"CancelKeepsTheFilm", OpenFilmOf(Do(), {"a.cut"}).Dialog(kFilmDialog, {{kFilmTitleEdit, "New"}}, "cancel"),
     Do().Command(kCommandNewFilm),
     Has("film/title", "title", "film/cuts/*/name", Names{"a.cut"}, "settings/OnNewFilm/width", "(none)")},
    {"AsksAboutAModifiedFilmAndGoesOnAfterNo",
     Do().Dialog(kFilmDialog, {{kFilmTitleEdit, "Old"}}).Command(kCommandFilmProperties).Answer("no"),
     Do().Dialog(kFilmDialog, {{kFilmTitleEdit, "New"}}).Command(kCommandNewFilm), Has("film/title", "New")},
    {"YesSavesTheOldFilmToItsPath",
     OpenFilmOf(Do(), {}).Dialog(kFilmDialog, {{kFilmTitleEdit, "Changed"}}).Command(kCommandFilmProperties),
     Do().Answer("yes").Dialog(kFilmDialog, {{kFilmTitleEdit, "New"}}).Command(kCommandNewFilm),
     Has("bytes/film.flm", "Changed\nauthor\n100, 50\n")},
    {"YesOnAFilmWithoutPathComesToTheSaveDialog",
     Do().Dialog(kFilmDialog, {{kFilmTitleEdit, "Old"}}).Command(kCommandFilmProperties).Answer("yes"),
     Do().File("old").Dialog(kFilmDialog, {}).Command(kCommandNewFilm), Has("bytes/old.flm", "Old\n\n320, 240\n")},
    {"LeavesOpenCutsOpenOutsideTheFilm",
     Do().OpenCut("a.cut", PlainCut()).Command(kCommandAddCutToFilm).Answer("no").Dialog(kFilmDialog, {}),
     Do().Command(kCommandNewFilm), Has("cuts/#", 1, "film/cuts/*/name", Names{})},
};

using OpenFilm = SessionTest;

TEST_F(OpenFilm, CommandAsksAboutAModifiedFilm) {
  session.Write("film.flm", "T\nA\n10, 20\n");
  session.Dialog(kFilmDialog, {}).Command(kCommandFilmProperties).Command(kCommandOpenFilm).Run(3);
}

const Rules<SessionTest, "OpenFilm"> kOpenFilmRules = {
    {"CommandFillsTheListAndSelectsTheFirstLine",
     Do().Write("film.flm", "T\nA\n10, 20\nsub/one.cut\ntwo.cut\n../three.cut\n").File("film"),
     Do().Command(kCommandOpenFilm),
     Has("panels/cuts/lines", Names{"one", "two", "three"}, "panels/cuts/selected", json::array({0}),
         "panels/cuts/caret", 0, "frame/title", "Sorvel Developer - film")},
    {"ReadsTheHeadAndFullPaths", OpenFilmFile(Do(), "T\nA\n10, 20\nsub/one.cut\n\ntwo.cut"),
     Has("film/title", "T", "film/author", "A", "film/width", 10, "film/height", 20, "film/path", "film.flm",
         "film/modified", false, "film/cuts/*/name", Names{"sub/one.cut", "two.cut"})},
    {"OpensNoCut", OpenFilmOf(Do(), {"a.cut", "b.cut"}), Has("cuts/#", 0, "film/cuts/0/open", false)},
    {"CancelAfterTheQuestionKeepsTheFilm",
     Do().Dialog(kFilmDialog, {{kFilmTitleEdit, "Old"}}).Command(kCommandFilmProperties).Answer("no"),
     Do().File("cancel").Command(kCommandOpenFilm), Has("film/title", "Old")},
    {"FileThatDoesNotOpenEmptiesTheFilmButLeavesTheListAsItWas", OpenFilmOf(Do(), {"a.cut"}).Open("gone.flm"),
     Has("film/cuts/*/name", Names{}, "film/path", "", "panels/cuts/lines", Names{"a"}, "frame/title",
         "Sorvel Developer - film")},
    {"EmptyFilmHasAnEmptyList", OpenFilmOf(Do(), {"a.cut"}).Write("empty.flm", "T\nA\n10, 20\n").Open("empty.flm"),
     Has("panels/cuts/lines", Names{}, "panels/cuts/selected", json::array())},
};

const Rules<SessionTest, "SaveFilm"> kSaveFilmRules = {
    {"WritesCutsRelativeToTheFile",
     OpenFilmFile(Do(), "T\nA\n10, 20\nsub/one.cut\ntwo.cut\n../x/three.cut\n").File("copy"),
     Do().Command(kCommandSaveFilmAs), Has("bytes/copy.flm", "T\nA\n10, 20\nsub/one.cut\ntwo.cut\n../x/three.cut\n")},
    {"TakesPathAndTitleAndIsUnmodified",
     Do().Dialog(kFilmDialog, {{kFilmTitleEdit, "T"}}).Command(kCommandFilmProperties).File("new.flm"),
     Do().Command(kCommandSaveFilmAs),
     Has("film/path", "new.flm", "film/modified", false, "frame/title", "Sorvel Developer - new")},
    {"WithoutCutsHasThreeLines", Do().File("new.flm").Command(kCommandSaveFilmAs),
     Has("bytes/new.flm", "\n\n320, 240\n")},
    {"FailureChangesTheTitleAllTheSame",
     Do().Dialog(kFilmDialog, {{kFilmTitleEdit, "T"}}).Command(kCommandFilmProperties).File("nofolder/new.flm"),
     Do().Command(kCommandSaveFilmAs),
     Has("frame/title", "Sorvel Developer - new", "film/path", "", "film/modified", true)},
    {"CancelSavesNothing", Do().File("cancel").Command(kCommandSaveFilmAs),
     Has("frame/title", "Sorvel Developer", "files", Names{})},
};

const Rules<SessionTest, "OverwriteFilm"> kOverwriteFilmRules = {
    {"GoesToThePathWithoutADialog", OpenFilmOf(Do(), {"a.cut"}).Dialog(kFilmDialog, {{kFilmTitleEdit, "Changed"}}),
     Do().Command(kCommandFilmProperties).Command(kCommandOverwriteFilm),
     Has("bytes/film.flm", "Changed\nauthor\n100, 50\na.cut\n", "film/modified", false)},
    {"WithoutAPathAsksForOne", Do().File("new").Command(kCommandOverwriteFilm),
     Has("exists/new.flm", true, "frame/title", "Sorvel Developer - new")},
};

const Rules<SessionTest, "FilmProperties"> kFilmPropertiesRules = {
    {"AreStoredAndModifyTheFilmEvenUnchanged",
     OpenFilmOf(Do(), {"a.cut"}).Dialog(kFilmDialog, {}).Command(kCommandFilmProperties),
     Has("film/width", 100, "film/height", 50, "film/title", "title", "film/author", "author", "film/modified", true,
         "film/cuts/*/name", Names{"a.cut"})},
    {"DoNotWriteTheNewFilmSettings", Do().Dialog(kFilmDialog, {{kFilmWidthEdit, "64"}}).Command(kCommandFilmProperties),
     Has("settings/OnNewFilm/width", "(none)")},
    {"CancelModifiesNothing",
     Do().Dialog(kFilmDialog, {{kFilmWidthEdit, "64"}}, "cancel").Command(kCommandFilmProperties),
     Has("film/width", 320, "film/modified", false)},
};

const Rules<SessionTest, "AddCut"> kAddCutRules = {
    {"ToAnEmptyFilm", Do().OpenCut("one.cut", PlainCut()).Command(kCommandAddCutToFilm),
     Has("film/cuts/*/name", Names{"one.cut"}, "panels/cuts/lines", Names{"one"}, "panels/cuts/selected",
         json::array({0}), "film/modified", true, "film/cuts/0/open", true)},
    {"StandsBehindTheCaretAndIsSelected",
     OpenFilmOf(Do(), {"a.cut", "b.cut", "c.cut"}).OpenCut("new.cut", PlainCut()).Select(kCutList, {1}),
     Do().Command(kCommandAddCutToFilm),
     Has("film/cuts/*/name", Names{"a.cut", "b.cut", "new.cut", "c.cut"}, "panels/cuts/lines",
         Names{"a", "b", "new", "c"}, "panels/cuts/selected", json::array({2}), "panels/cuts/caret", 2)},
    {"UnsavedCutIsSavedFirst", Do().NewCut().File("saved").Command(kCommandAddCutToFilm),
     Has("exists/saved.cut", true, "film/cuts/*/name", Names{"saved.cut"})},
    {"CancelledSaveAddsNothing", Do().NewCut().File("cancel").Command(kCommandAddCutToFilm),
     Has("film/cuts/*/name", Names{}, "panels/cuts/lines", Names{}, "film/modified", false)},
    {"MayStandInTheFilmTwice",
     Do().OpenCut("one.cut", PlainCut()).Command(kCommandAddCutToFilm).Command(kCommandAddCutToFilm),
     Has("film/cuts/*/name", Names{"one.cut", "one.cut"}, "panels/cuts/lines", Names{"one", "one"}, "film/cuts/1/open",
         true)},
};

const Rules<SessionTest, "InsertCut"> kInsertCutRules = {
    {"StandsAtTheCaretAndIsNotSelected",
     OpenFilmOf(Do(), {"a.cut", "b.cut", "c.cut"}).OpenCut("new.cut", PlainCut()).Select(kCutList, {1}),
     Do().Command(kCommandInsertCutIntoFilm),
     Has("film/cuts/*/name", Names{"a.cut", "new.cut", "b.cut", "c.cut"}, "panels/cuts/lines",
         Names{"a", "new", "b", "c"}, "panels/cuts/caret", 1, "panels/cuts/selected", json::array({2}))},
    {"IntoAnEmptyFilm", Do().OpenCut("one.cut", PlainCut()).Command(kCommandInsertCutIntoFilm),
     Has("film/cuts/*/name", Names{"one.cut"}, "panels/cuts/lines", Names{"one"})},
};

const Rules<SessionTest, "RemoveCut"> kRemoveCutRules = {
    {"LeavesFileAndWindow",
     Do().OpenCut("one.cut", PlainCut()).Command(kCommandAddCutToFilm).Command(kCommandRemoveCutFromFilm),
     Has("film/cuts/*/name", Names{}, "panels/cuts/lines", Names{}, "cuts/#", 1), Do().Command(kCommandAddCutToFilm),
     Has("exists/one.cut", true, "film/cuts/*/name", Names{"one.cut"})},
    {"TakesTheFirstEntryOfTheActiveCutAlone",
     OpenFilmOf(Do(), {"a.cut", "b.cut"}).Write("film.flm", "title\nauthor\n100, 50\na.cut\nb.cut\nc.cut\nb.cut\n"),
     Do().Open("b.cut").Command(kCommandRemoveCutFromFilm),
     Has("film/cuts/*/name", Names{"a.cut", "c.cut", "b.cut"}, "panels/cuts/lines", Names{"a", "c", "b"})},
    {"OutsideTheFilmDoesNothing",
     OpenFilmOf(Do(), {"a.cut"}).OpenCut("b.cut", PlainCut()).Command(kCommandRemoveCutFromFilm),
     Has("film/cuts/*/name", Names{"a.cut"}, "film/modified", false)},
};

const Rules<SessionTest, "CutListDoubleClick"> kCutListDoubleClickRules = {
    {"OpensTheCut", OpenFilmOf(Do(), {"a.cut", "b.cut"}).DoubleClick(kCutList, 1),
     Has("cut/path", "b.cut", "cut/title", "b.cut", "film/cuts/1/open", true, "film/cuts/0/open", false)},
    {"ActivatesACutThatIsOpen",
     OpenFilmOf(Do(), {"a.cut", "b.cut"}).Open("a.cut").Open("b.cut").DoubleClick(kCutList, 0),
     Has("cuts/#", 2, "cut/path", "a.cut")},
    {"FileThatIsNotThereDoesNothing", OpenFilmFile(Do(), "t\na\n1, 1\ngone.cut\n").DoubleClick(kCutList, 0),
     Has("cuts/#", 0)},
    {"OpenedCutShowsItsPicture",
     OpenFilmOf(Do(), {"a.cut"}).Write("a.cut", CutFile::Showing({3}, {0}).Bytes()).DoubleClick(kCutList, 0),
     Has("pixels/3", 24)},
};

using NumberedCut = SessionTest;

TEST_F(NumberedCut, AddedBehindTheCaretWithTheDialogsStartDefaults) {
  AddNumberedCut(OpenFilmOf(session, {"cut1.cut", "last.cut"}));
  EXPECT_TRUE(Holds(session, "film/cuts/*/name", Names{"cut1.cut", "cut002.cut", "last.cut"}, "panels/cuts/lines",
                    Names{"cut1", "cut002", "last"}, "panels/cuts/selected", json::array({1}), "cut/path", "cut002.cut",
                    "cut/title", "cut002.cut", "cut/properties", "960 x 720, 24 fps, antialias 2, credit []"));
}

TEST_F(NumberedCut, InsertedAtTheCaret) {
  OpenFilmOf(session, {"cut1.cut", "last.cut"}).Select(kCutList, {1}).Select(kCutList, {0});
  AddNumberedCut(session, {{kCutWidthEdit, "8"}, {kCutHeightEdit, "3"}}, kCommandInsertNumberedCut);
  EXPECT_TRUE(Holds(session, "film/cuts/*/name", Names{"cut002.cut", "cut1.cut", "last.cut"}, "panels/cuts/caret", 0));
}

TEST_F(NumberedCut, DialogRemembersTheLastCutDialog) {
  OpenFilmOf(session, {"cut1.cut"})
      .NewCutWithoutLayer({.width = 20, .height = 10, .fps = 12, .antialias = 1, .credit = "Me"});
  AddNumberedCut(session);
  EXPECT_EQ(PropertiesOf(session), "20 x 10, 12 fps, antialias 1, credit [Me]");
}

TEST_F(NumberedCut, DialogRemembersTheCutPropertiesToo) {
  OpenFilmOf(session, {"cut1.cut"}).Open("cut1.cut");
  session.Dialog(kCutDialog, {{kCutWidthEdit, "30"}, {kCutHeightEdit, "20"}, {kCutFpsEdit, "15"}});
  session.Command(kCommandCutProperties);
  AddNumberedCut(session);
  EXPECT_TRUE(Holds(session, "cut/width", 30, "cut/height", 20, "cut/fps", 15));
}

TEST_F(NumberedCut, CancelledDialogIsNotRemembered) {
  OpenFilmOf(session, {"cut1.cut"}).Dialog(kCutDialog, {{kCutWidthEdit, "30"}}, "cancel");
  session.Command(kCommandAddNumberedCut);
  AddNumberedCut(session);
  EXPECT_EQ(session.Cut()["width"], 960);
}

TEST_F(NumberedCut, IsSavedBeforeItHasALayer) {
  OpenFilmOf(session, {"cut1.cut"})
      .Dialog(kCutDialog, {{kCutWidthEdit, "8"}, {kCutHeightEdit, "3"}, {kCutWholeRadio, "on"}});
  session.Dialog(kLayerDialog, {}, "ok").Command(kCommandAddNumberedCut);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Bytes("cut002.cut"), PlainCut().Bytes());
  EXPECT_EQ(session.Cut(state)["modified"], true);
  EXPECT_EQ(session.Cut(state)["layers"].size(), 1U);
}

TEST_F(NumberedCut, WithoutLayerIsUnmodified) {
  AddNumberedCut(OpenFilmOf(session, {"cut1.cut"}));
  EXPECT_TRUE(Holds(session, "cut/modified", false, "cut/imagesStale", true, "cut/frames/#", 1));
}

const Rules<SessionTest, "NumberedCut"> kNumberedCutRules = {
    {"CancelMakesNoFile",
     OpenFilmOf(Do(), {"cut1.cut"}).Dialog(kCutDialog, {}, "cancel").Command(kCommandAddNumberedCut),
     Has("files", Names{"cut1.cut", "film.flm"}, "film/cuts/*/name", Names{"cut1.cut"})},
};

TEST_F(NumberedCut, PassesOverNumbersThatExist) {
  session.Write("cut002.cut", "taken");
  session.Write("cut003.cut", "taken");
  AddNumberedCut(OpenFilmOf(session, {"cut1.cut"}));
  EXPECT_EQ(session.Cut()["path"], session.Path("cut004.cut"));
}

TEST_F(NumberedCut, AtTheLimitGoesOverTheFileOfTheEntry) {
  OpenFilmOf(session, {"cut999.cut"});
  session.Write("cut999.cut", CutFile::WithoutLayers(5).Bytes());
  AddNumberedCut(session, {{kCutWidthEdit, "8"}, {kCutHeightEdit, "3"}, {kCutWholeRadio, "on"}});
  EXPECT_EQ(session.Cut()["path"], session.Path("cut999.cut"));
  EXPECT_EQ(session.Bytes("cut999.cut"), PlainCut().Bytes());
  EXPECT_EQ(Entries(session), (Names{"cut999.cut", "cut999.cut"}));
}

TEST_F(NumberedCut, CountsOnFromTheEntryAtTheCaret) {
  OpenFilmOf(session, {"a1.cut", "b5.cut", "c7.cut"}).Select(kCutList, {1});
  AddNumberedCut(session);
  EXPECT_EQ(Entries(session), (Names{"a1.cut", "b5.cut", "b006.cut", "c7.cut"}));
}

class NumberedCutInAnEmptyFilm : public SessionTest, public testing::WithParamInterface<int> {};

TEST_P(NumberedCutInAnEmptyFilm, IsANewCutThatIsSavedAndAdded) {
  session.Dialog(kCutDialog, {}).Dialog(kLayerDialog, {}, "cancel").File("first").Command(GetParam());
  EXPECT_TRUE(Holds(session, "cut/width", 240, "cut/height", 180, "film/cuts/*/name", Names{"first.cut"},
                    "panels/cuts/selected", json::array({0})));
  EXPECT_EQ(session.Setting("OnNewCut", "width"), "240");
}

TEST_P(NumberedCutInAnEmptyFilm, CancelledLeavesTheActiveCutToBeAdded) {
  session.OpenCut("open.cut", PlainCut()).Dialog(kCutDialog, {}, "cancel").Command(GetParam());
  EXPECT_EQ(Entries(session), Names{"open.cut"});
}

INSTANTIATE_TEST_SUITE_P(Film, NumberedCutInAnEmptyFilm,
                         testing::Values(kCommandAddNumberedCut, kCommandInsertNumberedCut));

using DeleteCuts = SessionTest;

const Rules<SessionTest, "DeleteCuts"> kDeleteCutsRules = {
    {"YesDeletesTheFilesAndTheirStreams",
     OpenFilmOf(Do(), {"a.cut", "b.cut", "c.cut"}).Write("a.ca", "x").Write("b.ca", "x").Select(kCutList, {1}),
     Do().Answer("yes").Command(kCommandDeleteCuts),
     Has("files", Names{"a.ca", "a.cut", "c.cut", "film.flm"}, "film/cuts/*/name", Names{"a.cut", "c.cut"},
         "panels/cuts/lines", Names{"a", "c"}, "film/modified", true)},
    {"NoRemovesTheLinesAndKeepsTheFiles",
     OpenFilmOf(Do(), {"a.cut", "b.cut"}).Write("a.ca", "x").Select(kCutList, {0}).Answer("no"),
     Do().Command(kCommandDeleteCuts),
     Has("files", Names{"a.ca", "a.cut", "b.cut", "film.flm"}, "film/cuts/*/name", Names{"b.cut"}, "panels/cuts/lines",
         Names{"b"})},
    {"YesClosesAnOpenCutWithoutAsking", OpenFilmOf(Do(), {"a.cut", "b.cut"}).Open("a.cut").Panel(kCommentEdit, "typed"),
     Do().Command(kCommandPreviousFrame).Answer("yes").Command(kCommandDeleteCuts),
     Has("cuts/#", 0, "exists/a.cut", false)},
    {"NoLeavesAnOpenWindow",
     OpenFilmOf(Do(), {"a.cut", "b.cut"}).Open("a.cut").Answer("no").Command(kCommandDeleteCuts),
     Has("cuts/#", 1, "film/cuts/*/name", Names{"b.cut"})},
    {"SelectsTheLinesThatFollowedAndPutsTheCaretAtTheLowest",
     OpenFilmOf(Do(), {"a.cut", "b.cut", "c.cut", "d.cut", "e.cut"}).Select(kCutList, {3, 1}).Answer("no"),
     Do().Command(kCommandDeleteCuts),
     Has("panels/cuts/lines", Names{"a", "c", "e"}, "panels/cuts/selected", json::array({1, 2}), "panels/cuts/caret",
         1)},
    {"OfTheLastLineSelectsNothing",
     OpenFilmOf(Do(), {"a.cut", "b.cut"}).Select(kCutList, {1}).Answer("no").Command(kCommandDeleteCuts),
     Has("panels/cuts/lines", Names{"a"}, "panels/cuts/selected", json::array())},
};

TEST_F(DeleteCuts, AsksEvenWhenNoLineIsSelected) {
  OpenFilmOf(session, {"a.cut", "b.cut"}).Select(kCutList, {1}).Answer("no").Command(kCommandDeleteCuts);
  session.Command(kCommandDeleteCuts).Run(3);
}

const Rules<SessionTest, "RenameCut"> kRenameCutRules = {
    {"RenamesEntryLineFileAndWindow", OpenFilmOf(Do(), {"a.cut", "b.cut"}).Open("b.cut").Select(kCutList, {1}),
     Do().Dialog(kRenameDialog, {{kRenameEdit, "new"}}).Command(kCommandRenameCut),
     Has("film/cuts/*/name", Names{"a.cut", "new.cut"}, "panels/cuts/lines", Names{"a", "new"}, "panels/cuts/caret", 1,
         "files", Names{"a.cut", "film.flm", "new.cut"}, "cut/path", "new.cut", "cut/title", "new.cut", "film/modified",
         true)},
    {"GoesToEveryEntryOfTheSameFile",
     Do().Write("film.flm", "t\na\n1, 1\na.cut\nb.cut\na.cut\n").Write("a.cut", PlainCut().Bytes()),
     Do().Open("film.flm").Dialog(kRenameDialog, {{kRenameEdit, "new"}}).Command(kCommandRenameCut),
     Has("film/cuts/*/name", Names{"new.cut", "b.cut", "new.cut"}, "panels/cuts/lines", Names{"new", "b", "new"},
         "exists/new.cut", true)},
    {"SameNameChangesNothing", OpenFilmOf(Do(), {"a.cut"}).Dialog(kRenameDialog, {}).Command(kCommandRenameCut),
     Has("film/modified", false, "film/cuts/*/name", Names{"a.cut"})},
    {"CancelChangesNothing", OpenFilmOf(Do(), {"a.cut"}).Dialog(kRenameDialog, {{kRenameEdit, "new"}}, "cancel"),
     Do().Command(kCommandRenameCut), Has("film/cuts/*/name", Names{"a.cut"}, "exists/a.cut", true)},
    {"KeepsFolderAndExtension",
     OpenFilmFile(Do(), "t\na\n1, 1\nsub/a.b.CUT\n").Dialog(kRenameDialog, {{kRenameEdit, "new"}}),
     Do().Command(kCommandRenameCut), Has("film/cuts/*/name", Names{"sub/new.CUT"})},
    {"FileThatIsNotThereIsRenamedInTheFilmAllTheSame",
     OpenFilmFile(Do(), "t\na\n1, 1\ngone.cut\n").Dialog(kRenameDialog, {{kRenameEdit, "new"}}),
     Do().Command(kCommandRenameCut), Has("film/cuts/*/name", Names{"new.cut"})},
};

using Extract = SessionTest;

TEST_F(Extract, FilmThatDoesNotOpenCopiesNothing) {
  ScriptSession target;
  OpenFilmOf(session, {"a.cut"}).File(target.Path("nofolder/x.flm")).Command(kCommandExtractCuts).Run();
  EXPECT_EQ(target.Files(), Names{});
}

TEST_F(Extract, CopiesIntoTheFolderOfTheNewFilm) {
  ScriptSession target;
  OpenFilmOf(session, {"a.cut", "b.cut", "c.cut"});
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

TEST_F(Extract, LineHasTheBareNameWhateverTheSource) {
  ScriptSession target;
  session.Write("film.flm", "t\na\n1, 1\nother.dat\nsub/gone.cut\n");
  session.Write("other.dat", "content");
  session.Open("film.flm").Select(kCutList, {0, 1}).File(target.Path("x.flm"));
  session.Command(kCommandExtractCuts).Run();
  EXPECT_EQ(target.Bytes("x.flm"), "t\na\n1, 1\nother.cut\ngone.cut\n");
  EXPECT_EQ(target.Bytes("other.cut"), "content");
  EXPECT_EQ(target.Bytes("gone.cut"), "");
}

TEST_F(Extract, OpenCutsUnsavedChangesStay) {
  ScriptSession target;
  OpenFilmOf(session, {"a.cut"}).Open("a.cut").Panel(kCommentEdit, "typed");
  session.Command(kCommandPreviousFrame).File(target.Path("x.flm")).Command(kCommandExtractCuts).Run();
  EXPECT_EQ(target.Bytes("a.cut"), PlainCut().Bytes());
}

const Rules<SessionTest, "Extract"> kExtractRules = {
    {"IntoItsOwnFolderLeavesTheFile", OpenFilmOf(Do(), {"a.cut"}).File("x.flm").Command(kCommandExtractCuts),
     Has("bytes/x.flm", "title\nauthor\n100, 50\na.cut\n", "bytes/a.cut", PlainCut().Bytes())},
    {"CancelWritesNothing", OpenFilmOf(Do(), {"a.cut"}).File("cancel").Command(kCommandExtractCuts),
     Has("files", Names{"a.cut", "film.flm"})},
};

const Rules<SessionTest, "Stop"> kStopRules = {
    {"HidesThePlayer", Do().OpenCut("a.cut", CutFile::Showing({1, 2}, {0, 1})).Command(kCommandPlay),
     Has("player/visible", true, "player/timer", true), Do().Command(kCommandStop),
     Has("player/visible", false, "player/timer", false)},
};

using PlayFilm = SessionTest;

TEST_F(PlayFilm, WithoutASelectionDoesNothingAndStopsNothing) {
  OpenFilmOf(session, {"a.cut", "b.cut"}).Select(kCutList, {1}).Answer("no").Command(kCommandDeleteCuts);
  session.OpenCut("c.cut", CutFile::Showing({1, 2}, {0, 1})).Command(kCommandPlay);
  const int before = session.State();
  session.Command(kCommandPlaySelection);
  const int after = session.State();
  EXPECT_EQ(session.StateAt(before)["player"]["timer"], true);
  EXPECT_EQ(session.StateAt(after)["player"], session.StateAt(before)["player"]);
}

TEST_F(PlayFilm, WithACutThatIsMissingStopsThePlay) {
  OpenFilmFile(session, "t\na\n8, 3\ngone.cut\n").OpenCut("c.cut", CutFile::Showing({1, 2}, {0, 1}));
  session.Command(kCommandPlay).Command(kCommandPlaySelection);
  EXPECT_EQ(session.NowState()["player"]["visible"], false);
}

}  // namespace
}  // namespace rules
