#include <gtest/gtest.h>

#include <string>

#include "resources/ids.h"
#include "rules/film_session.h"
#include "rules/rule_table.h"

namespace rules {
namespace {

using nlohmann::json;

// A film file with these cuts beside it, which exist, is opened.
template <typename Session>
ScriptSession& OpenFilmOf(Session&& session, const Names& cuts) {
  for (const std::string& cut : cuts) session.Write(cut, PlainCut().Bytes());
  return OpenFilmFile(session, FilmText(cuts));
}

const Rules<SessionTest, "NewFilm"> kNewFilmRules = {
    {"TakesItsValuesFromTheDialog", OpenFilmOf(Do(), {"a.cut"}),
     Do().Dialog(kFilmDialog,
                 {{kFilmWidthEdit, "64"}, {kFilmHeightEdit, "48"}, {kFilmTitleEdit, "New"}, {kFilmAuthorEdit, "Me"}}),
     Do().Command(kCommandNewFilm),
     Has("film/width,height", "64 48", "film/title", "New", "film/author", "Me", "film/path", "", "film/modified",
         false, "film/cuts/#", 0, "lines", "", "frame/title", "Sorvel Developer")},
    {"OkWritesTheFourKeys",
     Do().Dialog(kFilmDialog,
                 {{kFilmWidthEdit, "64"}, {kFilmHeightEdit, "48"}, {kFilmTitleEdit, "New"}, {kFilmAuthorEdit, "Me"}}),
     Do().Command(kCommandNewFilm),
     Has("settings/OnNewFilm/width", "64", "settings/OnNewFilm/height", "48", "settings/OnNewFilm/title", "New",
         "settings/OnNewFilm/author", "Me")},
    {"DialogStartsWithTheDefaults", Do().Dialog(kFilmDialog, {}).Command(kCommandNewFilm),
     Has("film/width,height", "320 240", "film/title", "")},
    {"DialogStartsWithTheSettings",
     Do().SetSettings("[OnNewFilm]\r\nwidth=11\r\nheight=12\r\ntitle=Old\r\nauthor=Who\r\n").Dialog(kFilmDialog, {}),
     Do().Command(kCommandNewFilm), Has("film/width,height", "11 12", "film/title", "Old", "film/author", "Who")},
    {"CancelKeepsTheFilm",
     OpenFilmOf(Do(), {"a.cut"}).Dialog(kFilmDialog, {{kFilmTitleEdit, "New"}}, "cancel").Command(kCommandNewFilm),
     Has("film/title", "title", "entries", "a.cut", "settings/OnNewFilm/width", "(none)")},
    {"AsksAboutAModifiedFilmAndGoesOnAfterNo",
     Do().Dialog(kFilmDialog, {{kFilmTitleEdit, "Old"}}).Command(kCommandFilmProperties).Answer("no"),
     Do().Dialog(kFilmDialog, {{kFilmTitleEdit, "New"}}).Command(kCommandNewFilm), Has("film/title", "New")},
    {"YesSavesTheOldFilmToItsPath",
     OpenFilmOf(Do(), {}).Dialog(kFilmDialog, {{kFilmTitleEdit, "Changed"}}).Command(kCommandFilmProperties),
     Do().Answer("yes").Dialog(kFilmDialog, {{kFilmTitleEdit, "New"}}).Command(kCommandNewFilm),
     Has("bytes/film.flm", "Changed\nauthor\n100, 50\n")},
    {"YesOnAFilmWithoutPathComesToTheSaveDialog",
     Do().Dialog(kFilmDialog, {{kFilmTitleEdit, "Old"}}).Command(kCommandFilmProperties).Answer("yes").File("old"),
     Do().Dialog(kFilmDialog, {}).Command(kCommandNewFilm), Has("bytes/old.flm", "Old\n\n320, 240\n")},
    {"LeavesOpenCutsOpenOutsideTheFilm",
     Do().OpenCut("a.cut", PlainCut()).Command(kCommandAddCutToFilm).Answer("no").Dialog(kFilmDialog, {}),
     Do().Command(kCommandNewFilm), Has("cuts/#", 1, "entries", "")},
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
     Has("lines", "one two three", "lines/selected", "0", "lines/caret", 0, "frame/title", "Sorvel Developer - film")},
    {"ReadsTheHeadAndFullPaths", OpenFilmFile(Do(), "T\nA\n10, 20\nsub/one.cut\n\ntwo.cut"),
     Has("film/title", "T", "film/author", "A", "film/width,height", "10 20", "film/path", "film.flm", "film/modified",
         false, "entries", "sub/one.cut two.cut")},
    {"OpensNoCut", OpenFilmOf(Do(), {"a.cut", "b.cut"}), Has("cuts/#", 0, "film/cuts/0/open", false)},
    {"CancelAfterTheQuestionKeepsTheFilm",
     Do().Dialog(kFilmDialog, {{kFilmTitleEdit, "Old"}}).Command(kCommandFilmProperties).Answer("no").File("cancel"),
     Do().Command(kCommandOpenFilm), Has("film/title", "Old")},
    {"FileThatDoesNotOpenEmptiesTheFilmButLeavesTheListAsItWas", OpenFilmOf(Do(), {"a.cut"}).Open("gone.flm"),
     Has("entries", "", "film/path", "", "lines", "a", "frame/title", "Sorvel Developer - film")},
    {"EmptyFilmHasAnEmptyList", OpenFilmOf(Do(), {"a.cut"}).Write("empty.flm", "T\nA\n10, 20\n").Open("empty.flm"),
     Has("lines", "", "lines/selected", "")},
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
     Has("frame/title", "Sorvel Developer", "files", "")},
};

const Rules<SessionTest, "OverwriteFilm"> kOverwriteFilmRules = {
    {"GoesToThePathWithoutADialog", OpenFilmOf(Do(), {"a.cut"}).Dialog(kFilmDialog, {{kFilmTitleEdit, "Changed"}}),
     Do().Commands({kCommandFilmProperties, kCommandOverwriteFilm}),
     Has("bytes/film.flm", "Changed\nauthor\n100, 50\na.cut\n", "film/modified", false)},
    {"WithoutAPathAsksForOne", Do().File("new").Command(kCommandOverwriteFilm),
     Has("exists/new.flm", true, "frame/title", "Sorvel Developer - new")},
};

const Rules<SessionTest, "FilmProperties"> kFilmPropertiesRules = {
    {"AreStoredAndModifyTheFilmEvenUnchanged",
     OpenFilmOf(Do(), {"a.cut"}).Dialog(kFilmDialog, {}).Command(kCommandFilmProperties),
     Has("film/width,height", "100 50", "film/title", "title", "film/author", "author", "film/modified", true,
         "entries", "a.cut")},
    {"DoNotWriteTheNewFilmSettings", Do().Dialog(kFilmDialog, {{kFilmWidthEdit, "64"}}).Command(kCommandFilmProperties),
     Has("settings/OnNewFilm/width", "(none)")},
    {"CancelModifiesNothing",
     Do().Dialog(kFilmDialog, {{kFilmWidthEdit, "64"}}, "cancel").Command(kCommandFilmProperties),
     Has("film/width", 320, "film/modified", false)},
};

const Rules<SessionTest, "AddCut"> kAddCutRules = {
    {"ToAnEmptyFilm", Do().OpenCut("one.cut", PlainCut()).Command(kCommandAddCutToFilm),
     Has("entries", "one.cut", "lines", "one", "lines/selected", "0", "film/modified", true, "film/cuts/0/open", true)},
    {"StandsBehindTheCaretAndIsSelected",
     OpenFilmOf(Do(), {"a.cut", "b.cut", "c.cut"}).OpenCut("new.cut", PlainCut()).Select(kCutList, {1}),
     Do().Command(kCommandAddCutToFilm),
     Has("entries", "a.cut b.cut new.cut c.cut", "lines", "a b new c", "lines/selected", "2", "lines/caret", 2)},
    {"UnsavedCutIsSavedFirst", Do().NewCut().File("saved").Command(kCommandAddCutToFilm),
     Has("exists/saved.cut", true, "entries", "saved.cut")},
    {"CancelledSaveAddsNothing", Do().NewCut().File("cancel").Command(kCommandAddCutToFilm),
     Has("entries", "", "lines", "", "film/modified", false)},
    {"MayStandInTheFilmTwice",
     Do().OpenCut("one.cut", PlainCut()).Commands({kCommandAddCutToFilm, kCommandAddCutToFilm}),
     Has("entries", "one.cut one.cut", "lines", "one one", "film/cuts/1/open", true)},
};

const Rules<SessionTest, "InsertCut"> kInsertCutRules = {
    {"StandsAtTheCaretAndIsNotSelected",
     OpenFilmOf(Do(), {"a.cut", "b.cut", "c.cut"}).OpenCut("new.cut", PlainCut()).Select(kCutList, {1}),
     Do().Command(kCommandInsertCutIntoFilm),
     Has("entries", "a.cut new.cut b.cut c.cut", "lines", "a new b c", "lines/caret", 1, "lines/selected", "2")},
    {"IntoAnEmptyFilm", Do().OpenCut("one.cut", PlainCut()).Command(kCommandInsertCutIntoFilm),
     Has("entries", "one.cut", "lines", "one")},
};

const Rules<SessionTest, "RemoveCut"> kRemoveCutRules = {
    {"LeavesFileAndWindow",
     Do().OpenCut("one.cut", PlainCut()).Commands({kCommandAddCutToFilm, kCommandRemoveCutFromFilm}),
     Has("entries", "", "lines", "", "cuts/#", 1), Do().Command(kCommandAddCutToFilm),
     Has("exists/one.cut", true, "entries", "one.cut")},
    {"TakesTheFirstEntryOfTheActiveCutAlone",
     OpenFilmOf(Do(), {"a.cut", "b.cut"}).Write("film.flm", "title\nauthor\n100, 50\na.cut\nb.cut\nc.cut\nb.cut\n"),
     Do().Open("b.cut").Command(kCommandRemoveCutFromFilm), Has("entries", "a.cut c.cut b.cut", "lines", "a c b")},
    {"OutsideTheFilmDoesNothing",
     OpenFilmOf(Do(), {"a.cut"}).OpenCut("b.cut", PlainCut()).Command(kCommandRemoveCutFromFilm),
     Has("entries", "a.cut", "film/modified", false)},
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

const Rules<SessionTest, "NumberedCut"> kNumberedCutRules = {
    {"AddedBehindTheCaretWithTheDialogsStartDefaults", AddNumberedCut(OpenFilmOf(Do(), {"cut1.cut", "last.cut"})),
     Has("entries", "cut1.cut cut002.cut last.cut", "lines", "cut1 cut002 last", "lines/selected", "1", "cut/path",
         "cut002.cut", "cut/title", "cut002.cut", "cut/properties", "960 x 720, 24 fps, antialias 2, credit []")},
    {"InsertedAtTheCaret", OpenFilmOf(Do(), {"cut1.cut", "last.cut"}).Select(kCutList, {1}).Select(kCutList, {0}),
     AddNumberedCut(Do(), {{kCutWidthEdit, "8"}, {kCutHeightEdit, "3"}}, kCommandInsertNumberedCut),
     Has("entries", "cut002.cut cut1.cut last.cut", "lines/caret", 0)},
    {"DialogRemembersTheLastCutDialog", OpenFilmOf(Do(), {"cut1.cut"}),
     Do().NewCutWithoutLayer({.width = 20, .height = 10, .fps = 12, .antialias = 1, .credit = "Me"}),
     AddNumberedCut(Do()), Has("cut/properties", "20 x 10, 12 fps, antialias 1, credit [Me]")},
    {"DialogRemembersTheCutPropertiesToo", OpenFilmOf(Do(), {"cut1.cut"}).Open("cut1.cut"),
     Do().Dialog(kCutDialog, {{kCutWidthEdit, "30"}, {kCutHeightEdit, "20"}, {kCutFpsEdit, "15"}}),
     Do().Command(kCommandCutProperties), AddNumberedCut(Do()), Has("cut/width,height", "30 20", "cut/fps", 15)},
    {"CancelledDialogIsNotRemembered",
     OpenFilmOf(Do(), {"cut1.cut"}).Dialog(kCutDialog, {{kCutWidthEdit, "30"}}, "cancel"),
     Do().Command(kCommandAddNumberedCut), AddNumberedCut(Do()), Has("cut/width", 960)},
    {"IsSavedBeforeItHasALayer", OpenFilmOf(Do(), {"cut1.cut"}),
     Do().Dialog(kCutDialog, {{kCutWidthEdit, "8"}, {kCutHeightEdit, "3"}, {kCutWholeRadio, "on"}}),
     Do().Dialog(kLayerDialog, {}, "ok").Command(kCommandAddNumberedCut),
     Has("bytes/cut002.cut", PlainCut().Bytes(), "cut/modified", true, "cut/layers/#", 1)},
    {"WithoutLayerIsUnmodified", AddNumberedCut(OpenFilmOf(Do(), {"cut1.cut"})),
     Has("cut/modified", false, "cut/imagesStale", true, "cut/frames/#", 1)},
    {"CancelMakesNoFile",
     OpenFilmOf(Do(), {"cut1.cut"}).Dialog(kCutDialog, {}, "cancel").Command(kCommandAddNumberedCut),
     Has("files", "cut1.cut film.flm", "entries", "cut1.cut")},
    {"PassesOverNumbersThatExist", Do().Write("cut002.cut", "taken").Write("cut003.cut", "taken"),
     AddNumberedCut(OpenFilmOf(Do(), {"cut1.cut"})), Has("cut/path", "cut004.cut")},
    {"AtTheLimitGoesOverTheFileOfTheEntry",
     OpenFilmOf(Do(), {"cut999.cut"}).Write("cut999.cut", CutFile::WithoutLayers(5).Bytes()),
     AddNumberedCut(Do(), {{kCutWidthEdit, "8"}, {kCutHeightEdit, "3"}, {kCutWholeRadio, "on"}}),
     Has("cut/path", "cut999.cut", "bytes/cut999.cut", PlainCut().Bytes(), "entries", "cut999.cut cut999.cut")},
    {"CountsOnFromTheEntryAtTheCaret", OpenFilmOf(Do(), {"a1.cut", "b5.cut", "c7.cut"}).Select(kCutList, {1}),
     AddNumberedCut(Do()), Has("entries", "a1.cut b5.cut b006.cut c7.cut")},
};

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
     Has("files", "a.ca a.cut c.cut film.flm", "entries", "a.cut c.cut", "lines", "a c", "film/modified", true)},
    {"NoRemovesTheLinesAndKeepsTheFiles",
     OpenFilmOf(Do(), {"a.cut", "b.cut"}).Write("a.ca", "x").Select(kCutList, {0}).Answer("no"),
     Do().Command(kCommandDeleteCuts), Has("files", "a.ca a.cut b.cut film.flm", "entries", "b.cut", "lines", "b")},
    {"YesClosesAnOpenCutWithoutAsking",
     OpenFilmOf(Do(), {"a.cut", "b.cut"}).Open("a.cut").Panel(kCommentEdit, "typed").Command(kCommandPreviousFrame),
     Do().Answer("yes").Command(kCommandDeleteCuts), Has("cuts/#", 0, "exists/a.cut", false)},
    {"NoLeavesAnOpenWindow",
     OpenFilmOf(Do(), {"a.cut", "b.cut"}).Open("a.cut").Answer("no").Command(kCommandDeleteCuts),
     Has("cuts/#", 1, "entries", "b.cut")},
    {"SelectsTheLinesThatFollowedAndPutsTheCaretAtTheLowest",
     OpenFilmOf(Do(), {"a.cut", "b.cut", "c.cut", "d.cut", "e.cut"}).Select(kCutList, {3, 1}).Answer("no"),
     Do().Command(kCommandDeleteCuts), Has("lines", "a c e", "lines/selected", "1 2", "lines/caret", 1)},
    {"OfTheLastLineSelectsNothing",
     OpenFilmOf(Do(), {"a.cut", "b.cut"}).Select(kCutList, {1}).Answer("no").Command(kCommandDeleteCuts),
     Has("lines", "a", "lines/selected", "")},
};

TEST_F(DeleteCuts, AsksEvenWhenNoLineIsSelected) {
  OpenFilmOf(session, {"a.cut", "b.cut"}).Select(kCutList, {1}).Answer("no").Command(kCommandDeleteCuts);
  session.Command(kCommandDeleteCuts).Run(3);
}

const Rules<SessionTest, "RenameCut"> kRenameCutRules = {
    {"RenamesEntryLineFileAndWindow",
     OpenFilmOf(Do(), {"a.cut", "b.cut"}).Open("b.cut").Select(kCutList, {1}).RenameCut("new"),
     Has("entries", "a.cut new.cut", "lines", "a new", "lines/caret", 1, "files", "a.cut film.flm new.cut", "cut/path",
         "new.cut", "cut/title", "new.cut", "film/modified", true)},
    {"GoesToEveryEntryOfTheSameFile",
     Do().Write("film.flm", "t\na\n1, 1\na.cut\nb.cut\na.cut\n").Write("a.cut", PlainCut().Bytes()).Open("film.flm"),
     Do().RenameCut("new"), Has("entries", "new.cut b.cut new.cut", "lines", "new b new", "exists/new.cut", true)},
    {"SameNameChangesNothing", OpenFilmOf(Do(), {"a.cut"}).Dialog(kRenameDialog, {}).Command(kCommandRenameCut),
     Has("film/modified", false, "entries", "a.cut")},
    {"CancelChangesNothing",
     OpenFilmOf(Do(), {"a.cut"}).Dialog(kRenameDialog, {{kRenameEdit, "new"}}, "cancel").Command(kCommandRenameCut),
     Has("entries", "a.cut", "exists/a.cut", true)},
    {"KeepsFolderAndExtension", OpenFilmFile(Do(), "t\na\n1, 1\nsub/a.b.CUT\n").RenameCut("new"),
     Has("entries", "sub/new.CUT")},
    {"FileThatIsNotThereIsRenamedInTheFilmAllTheSame", OpenFilmFile(Do(), "t\na\n1, 1\ngone.cut\n").RenameCut("new"),
     Has("entries", "new.cut")},
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
  EXPECT_EQ(target.Files(), (Names{"other.cut", "x.flm"}));
}

const Rules<SessionTest, "Extract"> kExtractRules = {
    {"IntoItsOwnFolderLeavesTheFile", OpenFilmOf(Do(), {"a.cut"}).File("x.flm").Command(kCommandExtractCuts),
     Has("bytes/x.flm", "title\nauthor\n100, 50\na.cut\n", "bytes/a.cut", PlainCut().Bytes())},
    {"CancelWritesNothing", OpenFilmOf(Do(), {"a.cut"}).File("cancel").Command(kCommandExtractCuts),
     Has("files", "a.cut film.flm")},
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

const Rules<SessionTest, "PlayFilm"> kPlayFilmRules = {
    {"WithACutThatIsMissingStopsThePlay",
     OpenFilmFile(Do(), "t\na\n8, 3\ngone.cut\n").OpenCut("c.cut", CutFile::Showing({1, 2}, {0, 1})),
     Do().Commands({kCommandPlay, kCommandPlaySelection}), Has("player/visible", false)},
};

}  // namespace
}  // namespace rules
