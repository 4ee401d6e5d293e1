#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "resources/ids.h"
#include "rules/film_session.h"
#include "rules/rule_table.h"

namespace rules {
namespace {

using nlohmann::json;

CutFile Drawn(const std::string& credit) {
  CutFile file = CutFile::Showing({1, 2}, {0, 1});
  file.credit = credit;
  return file;
}

// A film with these lines, as bytes; no cut file is made.
template <typename Session>
ScriptSession& OpenFilm(Session&& session, const Names& lines) {
  return OpenFilmFile(session, FilmText(lines));
}

// The command with its two dialogs, of a cut of 8 by 3 without a layer.
template <typename Session>
ScriptSession& Numbered(Session&& session, int command = kCommandAddNumberedCut) {
  return AddNumberedCut(session, {{kCutWidthEdit, "8"}, {kCutHeightEdit, "3"}, {kCutWholeRadio, "on"}}, command);
}

using CutNumbers = SessionTest;

TEST_F(CutNumbers, ThirtyCutsOneBehindTheOther) {
  OpenFilm(session, {"c1.cut", "end.cut"});
  for (int i = 0; i < 30; ++i) Numbered(session);
  const int state = session.State();
  session.Command(kCommandOverwriteFilm).Run();
  Names entries = {"c1.cut"};
  Names files;
  std::string text = kFilmHead + "c1.cut\n";
  for (int i = 2; i <= 31; ++i) {
    std::string name = i < 10 ? "c00" : "c0";
    name.append(std::to_string(i)).append(".cut");
    entries.push_back(name);
    files.push_back(name);
    text.append(name).append("\n");
    EXPECT_EQ(session.Bytes(name), PlainCut().Bytes()) << name;
  }
  EXPECT_EQ(WindowPaths(session, state), files);
  entries.emplace_back("end.cut");
  files.emplace_back("film.flm");
  EXPECT_EQ(Entries(session, state), entries);
  EXPECT_EQ(session.Files(), files);
  EXPECT_EQ(session.Bytes("film.flm"), text + "end.cut\n");
  EXPECT_EQ(List(session, state)["selected"], json::array({30}));
  EXPECT_EQ(List(session, state)["caret"], 30);
}

TEST_F(CutNumbers, HolesAreFilledInTheirOrder) {
  for (const char* name : {"c002.cut", "c004.cut", "c007.cut"}) session.Write(name, "taken");
  // None of these is the name of a numbered cut.
  for (const char* name : {"c003.ca", "c03.cut", "c3.cut", "c003.cut.old", "d003.cut"}) session.Write(name, "other");
  OpenFilm(session, {"c001.cut"});
  for (int i = 0; i < 4; ++i) Numbered(session);
  const int state = session.State();
  EXPECT_EQ(Entries(session, state), (Names{"c001.cut", "c003.cut", "c005.cut", "c006.cut", "c008.cut"}));
  for (const char* name : {"c002.cut", "c004.cut", "c007.cut"}) EXPECT_EQ(session.Bytes(name), "taken") << name;
  for (const char* name : {"c003.ca", "c03.cut", "c3.cut", "c003.cut.old", "d003.cut"}) {
    EXPECT_EQ(session.Bytes(name), "other") << name;
  }
}

const Rules<SessionTest, "CutNumbers"> kCutNumbersRules = {
    // Each one stands ahead of the caret's line, which is the one inserted before.
    {"InsertedCutsStandInFallingOrder", OpenFilm(Do(), {"first.cut", "c007.cut"}).Select(kCutList, {1}),
     Numbered(Do(), kCommandInsertNumberedCut), Numbered(Do(), kCommandInsertNumberedCut),
     Numbered(Do(), kCommandInsertNumberedCut),
     Has("entries", "first.cut c010.cut c009.cut c008.cut c007.cut", "lines", "first c010 c009 c008 c007",
         "entries/open", "false true true true false", "lines/caret", 1)},
    {"NumberFreedByADeletionIsGivenAgain", OpenFilm(Do(), {"c001.cut"}), Numbered(Do()),
     Numbered(Do()).Select(kCutList, {1}).Answer("yes").Command(kCommandDeleteCuts).Select(kCutList, {0}),
     Numbered(Do()), Has("entries", "c001.cut c002.cut c003.cut", "files", "c002.cut c003.cut film.flm")},
    // The name is counted from files, not from the film's lines.
    {"LineWhoseFileIsMissingDoesNotTakeItsNumber", OpenFilm(Do(), {"c001.cut", "c002.cut"}), Numbered(Do()),
     Has("entries", "c001.cut c002.cut c002.cut"),
     // Adding links the new entry alone.
     Has("entries/open", "false true false")},
    {"CutRenamedAwayFreesItsNumber", OpenFilm(Do(), {"c001.cut"}),
     Numbered(Do()).RenameCut("other").Select(kCutList, {0}), Numbered(Do()),
     Has("entries", "c001.cut c002.cut other.cut", "windows", "other.cut c002.cut", "files",
         "c002.cut film.flm other.cut")},
};

// ---------------------------------------------------------------------------------------------------------------------
// One name and the next.

struct Step {
  const char* line;
  // As the state shows it.
  const char* next;
};

class NextNumber : public SessionTest, public testing::WithParamInterface<Step> {};

TEST_P(NextNumber, IsTheNameOfTheNewFile) {
  Numbered(OpenFilm(session, {GetParam().line}));
  const Names entries = Entries(session);
  ASSERT_EQ(entries.size(), 2U);
  EXPECT_EQ(entries[1], GetParam().next);
  EXPECT_EQ(session.Cut()["path"], session.Path(GetParam().next));
  EXPECT_EQ(session.Cut()["title"], GetParam().next);
  EXPECT_EQ(session.Bytes(GetParam().next), PlainCut().Bytes());
  EXPECT_EQ(session.Files().size(), 2U);
}

INSTANTIATE_TEST_SUITE_P(Plain, NextNumber,
                         testing::Values(Step{"c0.cut", "c001.cut"}, Step{"c000.cut", "c001.cut"},
                                         Step{"c009.cut", "c010.cut"}, Step{"c99.cut", "c100.cut"},
                                         Step{"c099.cut", "c100.cut"}, Step{"c0000007.cut", "c008.cut"},
                                         Step{"c998.cut", "c999.cut"}, Step{"abc.cut", "abc001.cut"},
                                         Step{"5a.cut", "5a001.cut"}, Step{"c5a7.cut", "c5a008.cut"},
                                         Step{"c 7.cut", "c 008.cut"}, Step{"c-7.cut", "c-008.cut"},
                                         Step{"c.7.cut", "c.008.cut"}, Step{"c7.CUT", "c008.CUT"},
                                         Step{"c7.dat", "c008.dat"}, Step{"c7", "c008"}));

// The whole name is digits, or empty: the new text loses its first character.
INSTANTIATE_TEST_SUITE_P(Digits, NextNumber,
                         testing::Values(Step{"8.cut", "09.cut"}, Step{"007.cut", "08.cut"}, Step{"09.cut", "10.cut"},
                                         Step{"98.cut", "99.cut"}, Step{"99.cut", "00.cut"}, Step{"199.cut", "00.cut"},
                                         Step{"00.cut", "01.cut"}, Step{"998.cut", "99.cut"}, Step{".cut", "01.cut"}));

// A second byte is no digit, and a backslash ahead of the digits is no end of the folder.
INSTANTIATE_TEST_SUITE_P(ShiftJis, NextNumber,
                         testing::Values(Step{"\x83\x5C.cut", "ソ001.cut"},
                                         Step{"\x83\x5C"
                                              "7.cut",
                                              "ソ008.cut"},
                                         Step{"\x95\x5C"
                                              "12.cut",
                                              "表013.cut"},
                                         Step{"7\x94\x5C.cut", "7能001.cut"}, Step{"\x82\x50.cut", "１001.cut"}));

const Rules<SessionTest, "NextNumberOfDigits"> kNextNumberOfDigitsRules = {
    {"PassesOverTheShortNamesThatExist", Do().Write("00.cut", "taken"), Numbered(OpenFilm(Do(), {"99.cut"})),
     // 101 without its first character.
     Has("entries", "99.cut 01.cut", "bytes/00.cut", "taken")},
    {"StartsAgainBehindNinetyNine", OpenFilm(Do(), {"97.cut"}), Numbered(Do()), Numbered(Do()), Numbered(Do()),
     Numbered(Do()), Has("entries", "97.cut 98.cut 99.cut 00.cut 01.cut")},
};

// ---------------------------------------------------------------------------------------------------------------------
// Folders.

using NumberedCutFolder = SessionTest;

TEST_F(NumberedCutFolder, IsThatOfTheEntryAtTheCaret) {
  std::error_code failure;
  for (const char* name : {"work/film/表", "work/beside"}) {
    std::filesystem::create_directories(session.Path(name), failure);
    ASSERT_FALSE(failure) << failure.message();
  }
  // A number is taken in its own folder alone.
  session.Write("work/film/c002.cut", "taken");
  session.Write("work/beside/c003.cut", "taken");
  session.Write("work/film/film.flm", kFilmHead + "c1.cut\n\x95\x5C/c1.cut\n../c1.cut\n../beside/c002.cut\n");
  session.Open("work/film/film.flm");
  for (const int line : {3, 2, 1, 0}) {
    session.Select(kCutList, {line});
    Numbered(session);
  }
  const int state = session.State();
  session.Command(kCommandOverwriteFilm).Run();
  EXPECT_EQ(Entries(session, state),
            (Names{"work/film/c1.cut", "work/film/c003.cut", "work/film/表/c1.cut", "work/film/表/c002.cut",
                   "work/c1.cut", "work/c002.cut", "work/beside/c002.cut", "work/beside/c004.cut"}));
  EXPECT_EQ(session.Bytes("work/film/film.flm"),
            kFilmHead +
                "c1.cut\nc003.cut\n\x95\x5C/c1.cut\n\x95\x5C/c002.cut\n../c1.cut\n../c002.cut\n../beside/c002.cut\n"
                "../beside/c004.cut\n");
  for (const char* name : {"work/film/c003.cut", "work/film/表/c002.cut", "work/c002.cut", "work/beside/c004.cut"}) {
    EXPECT_EQ(session.Bytes(name), PlainCut().Bytes()) << name;
  }
  EXPECT_EQ(session.Bytes("work/film/c002.cut"), "taken");
  EXPECT_EQ(session.Bytes("work/beside/c003.cut"), "taken");
}

const Rules<SessionTest, "NumberedCutFolder"> kNumberedCutFolderRules = {
    {"ThatDoesNotExistHasNoFileButTheCutIsThere", Numbered(OpenFilm(Do(), {"none/c1.cut"})),
     Has("entries", "none/c1.cut none/c002.cut", "cut/path", "none/c002.cut", "cut/title", "c002.cut"),
     Do().File("c.cut").Command(kCommandOverwriteCut),
     Has("cut/path", "c.cut", "entries", "none/c1.cut none/c002.cut", "entries/open", "false true", "files",
         "c.cut film.flm", "bytes/c.cut", PlainCut().Bytes())},
};

// ---------------------------------------------------------------------------------------------------------------------
// The limit.

struct Full {
  const char* name;
  // Files that exist already.
  Names taken;
};

class NumberPastTheLimit : public SessionTest, public testing::WithParamInterface<std::pair<Full, int>> {};

TEST_P(NumberPastTheLimit, LeavesThePathAndGoesOverTheFileOfTheEntry) {
  const auto& [full, command] = GetParam();
  OpenFilm(session, {"a.cut", full.name, "b.cut"});
  session.Write(full.name, Drawn("old").Bytes());
  for (const std::string& name : full.taken) session.Write(name, "taken");
  session.Select(kCutList, {1});
  Numbered(session, command);
  const int made = session.State();
  // The new window closes unasked, and both entries open the file as it is now.
  session.Close().DoubleClick(kCutList, 1).DoubleClick(kCutList, 2);
  const int opened = session.State();
  session.Run();
  for (const int state : {made, opened}) {
    EXPECT_EQ(Entries(session, state), (Names{"a.cut", full.name, full.name, "b.cut"}));
    EXPECT_EQ(WindowPaths(session, state), Names{full.name});
    EXPECT_EQ(session.Cut(state)["layers"].size(), 0U);
  }
  const bool added = command == kCommandAddNumberedCut;
  EXPECT_EQ(OpenFlags(session, made), (std::vector<bool>{false, !added, added, false}));
  EXPECT_EQ(OpenFlags(session, opened), (std::vector<bool>{false, true, true, false}));
  EXPECT_EQ(session.Bytes(full.name), PlainCut().Bytes());
  for (const std::string& name : full.taken) EXPECT_EQ(session.Bytes(name), "taken") << name;
  EXPECT_EQ(session.Files().size(), 2U + full.taken.size());
}

const Full kLast = {"c999.cut", {}};
const Full kFourDigits = {"c1000.cut", {}};
const Full kManyDigits = {"c99999999999999999999999.cut", {}};
const Full kAllDigits = {"999.cut", {}};
const Full kNoneFree = {"c996.cut", {"c997.cut", "c998.cut", "c999.cut"}};
const Full kNoneFreeOfDigits = {"997.cut", {"98.cut", "99.cut"}};

INSTANTIATE_TEST_SUITE_P(
    Film, NumberPastTheLimit,
    testing::Values(std::pair{kLast, kCommandAddNumberedCut}, std::pair{kLast, kCommandInsertNumberedCut},
                    std::pair{kFourDigits, kCommandAddNumberedCut}, std::pair{kManyDigits, kCommandAddNumberedCut},
                    std::pair{kAllDigits, kCommandAddNumberedCut}, std::pair{kAllDigits, kCommandInsertNumberedCut},
                    std::pair{kNoneFree, kCommandAddNumberedCut}, std::pair{kNoneFree, kCommandInsertNumberedCut},
                    std::pair{kNoneFreeOfDigits, kCommandAddNumberedCut}));

const Rules<SessionTest, "NumberLimit"> kNumberLimitRules = {
    // From 997 on: two more numbers, and then every new cut goes to the file of the entry at the caret.
    {"WorkUpToItAndPastIt",
     OpenFilm(Do(), {"\x95\x5C"
                     "997.cut"})
         .Write("表997.cut", Drawn("997").Bytes()),
     Numbered(Do()), Numbered(Do()),
     // The cut with the last number is drawn and saved.
     Do().Dialog(kLayerDialog, {{kLayerNameEdit, "A"}}).Command(kCommandAddLayer).Panel(kCommentEdit, "last"),
     Do().Commands({kCommandFirstFrame, kCommandOverwriteCut}),
     Has("cut/path", "表999.cut", "entries", "表997.cut 表998.cut 表999.cut"), Numbered(Do()),
     Has("entries", "表997.cut 表998.cut 表999.cut 表999.cut", "lines", "表997 表998 表999 表999", "entries/open",
         "false true true true", "windows", "表998.cut 表999.cut 表999.cut", "cut/layers/#", 0),
     // The window of the first one still has the drawing and writes it back.
     Do().Activate(1).Command(kCommandOverwriteCut).Select(kCutList, {3}).DoubleClick(kCutList, 3),
     Has("cut/layers/#", 0), Do().Command(kCommandOverwriteFilm),
     Has("bytes/表999.cut",
         CutFile{.layers = {{.name = "A", .cells = {0}}}, .frames = {{.comment = "last", .records = {{.cell = 0}}}}}
             .Bytes(),
         "bytes/表998.cut", PlainCut().Bytes(), "bytes/表997.cut", Drawn("997").Bytes(), "files",
         "film.flm 表997.cut 表998.cut 表999.cut", "bytes/film.flm",
         kFilmHead + "\x95\x5C"
                     "997.cut\n\x95\x5C"
                     "998.cut\n\x95\x5C"
                     "999.cut\n\x95\x5C"
                     "999.cut\n")},
    {"CancelledDialogLeavesTheFileOfTheEntry",
     OpenFilm(Do(), {"c999.cut"}).Write("c999.cut", Drawn("old").Bytes()).Dialog(kCutDialog, {}, "cancel"),
     Do().Command(kCommandAddNumberedCut),
     Has("entries", "c999.cut", "film/modified", false, "bytes/c999.cut", Drawn("old").Bytes())},
    {"RenameOfTheDoubledCutGoesToBothEntriesAndOneWindow",
     OpenFilm(Do(), {"c999.cut"}).Write("c999.cut", Drawn("old").Bytes()).DoubleClick(kCutList, 0),
     Numbered(Do()).Select(kCutList, {1}).RenameCut("new"),
     Has("entries", "new.cut new.cut", "lines", "new new", "windows", "c999.cut new.cut"),
     // The first window still has the old name, and what it holds.
     Do().Activate(0).Command(kCommandOverwriteCut),
     Has("files", "c999.cut film.flm new.cut", "bytes/c999.cut", Drawn("old").Bytes(), "bytes/new.cut",
         PlainCut().Bytes())},
};

// ---------------------------------------------------------------------------------------------------------------------
// The dialogs of the numbered cut.

using NumberedCutDialog = SessionTest;

TEST_F(NumberedCutDialog, RemembersFromCutToCutAndWritesNoSettings) {
  OpenFilm(session, {"c001.cut"});
  AddNumberedCut(session, {{kCutWidthEdit, "20"},
                           {kCutHeightEdit, "10"},
                           {kCutFpsEdit, "12"},
                           {kCutHalfRadio, "on"},
                           {kCutCreditEdit, "Me"}});
  AddNumberedCut(session, {{kCutWidthEdit, "30"}}, kCommandInsertNumberedCut);
  const int state = session.State();
  session.Run();
  CutFile first = PlainCut();
  first.width = first.frameWidth = 20;
  first.height = first.frameHeight = 10;
  first.fps = 12;
  first.antialias = 1;
  first.credit = "Me";
  CutFile second = first;
  second.width = second.frameWidth = 30;
  EXPECT_EQ(session.Bytes("c002.cut"), first.Bytes());
  EXPECT_EQ(session.Bytes("c003.cut"), second.Bytes());
  EXPECT_EQ(Entries(session, state), (Names{"c001.cut", "c003.cut", "c002.cut"}));
  EXPECT_EQ(session.Setting("OnNewCut", "width"), "(none)");
}

TEST_F(NumberedCutDialog, IsNotThatOfTheNewCutSettings) {
  session.SetSettings("[OnNewCut]\r\nwidth=50\r\nheight=40\r\nfps=12\r\nanti=1\r\ncredit=Someone\r\n");
  AddNumberedCut(OpenFilm(session, {"c001.cut"})).Run();
  CutFile file = PlainCut();
  file.width = file.frameWidth = 960;
  file.height = file.frameHeight = 720;
  file.antialias = 2;
  EXPECT_EQ(session.Bytes("c002.cut"), file.Bytes());
}

TEST_F(NumberedCutDialog, LayerIsInTheFileOnceTheCutIsSaved) {
  OpenFilm(session, {"c001.cut"})
      .Dialog(kCutDialog, {{kCutWidthEdit, "8"}, {kCutHeightEdit, "3"}, {kCutWholeRadio, "on"}});
  session.Dialog(kLayerDialog, {{kLayerNameEdit, "L"}}).Command(kCommandAddNumberedCut);
  const int made = session.State();
  session.Command(kCommandOverwriteCut).Run();
  CutFile file = CutFile::Showing({0}, {0});
  file.layers[0].name = "L";
  EXPECT_EQ(session.Bytes("c002.cut"), file.Bytes());
  EXPECT_EQ(session.Cut(made)["modified"], true);
  EXPECT_EQ(session.Cut(made)["layers"][0]["name"], "L");
}

const Rules<SessionTest, "NumberedCutDialog"> kNumberedCutDialogRules = {
    {"LosesItsLayerWhenTheCutIsClosedUnsaved", OpenFilm(Do(), {"c001.cut"}),
     Do().Dialog(kCutDialog, {{kCutWidthEdit, "8"}, {kCutHeightEdit, "3"}, {kCutWholeRadio, "on"}}),
     Do().Dialog(kLayerDialog, {{kLayerNameEdit, "L"}}).Command(kCommandAddNumberedCut).Answer("no").Close(),
     Do().DoubleClick(kCutList, 1),
     Has("cut/path", "c002.cut", "cut/layers/#", 0, "bytes/c002.cut", PlainCut().Bytes())},
};

class NumberedCutWithoutFilm : public SessionTest, public testing::WithParamInterface<int> {};

// With no line to count from, the first cut is a new one that is saved under a name, and the next is numbered by it.
TEST_P(NumberedCutWithoutFilm, StartsTheCountWithTheNameThatIsGiven) {
  session.Dialog(kCutDialog, {{kCutWidthEdit, "8"}, {kCutHeightEdit, "3"}});
  session.Dialog(kLayerDialog, {{kLayerNameEdit, "A"}}).File("c7").Command(GetParam());
  AddNumberedCut(session);
  EXPECT_TRUE(Holds(session, "film/cuts/*/name", Names{"c7.cut", "c008.cut"}, "film/cuts/*/open",
                    std::vector<bool>{true, true}));
  EXPECT_EQ(session.Bytes("c7.cut"), CutFile::Showing({0}, {0}).Bytes());
  EXPECT_EQ(session.Bytes("c008.cut"), PlainCut().Bytes());
  EXPECT_EQ(session.Setting("OnNewCut", "width"), "8");
}

INSTANTIATE_TEST_SUITE_P(Film, NumberedCutWithoutFilm,
                         testing::Values(kCommandAddNumberedCut, kCommandInsertNumberedCut));

const Rules<SessionTest, "NumberedCutInNoFilm"> kNumberedCutInNoFilmRules = {
    {"CancelledWithNoCutOpenDoesNothing", Do().Dialog(kCutDialog, {}, "cancel").Command(kCommandAddNumberedCut),
     Has("entries", "", "windows", "", "film/modified", false)},
};

}  // namespace
}  // namespace rules
