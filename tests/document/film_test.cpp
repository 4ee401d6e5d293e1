#include "document/film.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "support/test_document.h"

namespace sorvel {
namespace {

// A cut that was saved under a path.
struct SavedCut {
  explicit SavedCut(const char* path) { AssignString(&cut.path, path); }
  Cut cut{4, 4, 24, "", 0};
};

std::string Names(Film& film) {
  std::string names;
  for (int32_t i = 0; i < film.cuts.Count(); ++i) names += film.CutName(i) + std::string(" ");
  return names;
}

using Cuts = std::vector<const Cut*>;

Cuts OpenCuts(Film& film) {
  Cuts cuts;
  for (int32_t i = 0; i < film.cuts.Count(); ++i) cuts.push_back(film.cuts.At(i).cut);
  return cuts;
}

TEST(Film, NewFilmHasItsDefaults) {
  Film film;
  EXPECT_EQ(film.cuts.Count(), 0);
  EXPECT_EQ(film.width, 320);
  EXPECT_EQ(film.height, 240);
  EXPECT_EQ(film.title, EmptyString);
  EXPECT_EQ(film.author, EmptyString);
  EXPECT_EQ(film.path, EmptyString);
  EXPECT_EQ(film.modified, 0u);
}

TEST(Film, NewEntriesStandBehindOrAheadOfAPosition) {
  struct Step {
    bool (Film::*put)(Cut*, int32_t);
    int32_t position;
  };
  const struct {
    const char* name;
    Step steps[3];
    const char* names;
    int32_t cursor;
  } rows[] = {
      {"AddCutPutsItBehindThePosition", {{&Film::AddCut, 0}, {&Film::AddCut, 0}, {&Film::AddCut, 0}}, "a c b ", 1},
      {"AddCutAtABadPositionGoesToTheTail",
       {{&Film::AddCut, -1}, {&Film::AddCut, -1}, {&Film::AddCut, 9}},
       "a b c ",
       2},
      {"InsertCutPutsItAheadOfThePosition",
       {{&Film::InsertCut, 0}, {&Film::AddCut, 0}, {&Film::InsertCut, 1}},
       "a c b ",
       1},
      {"InsertCutAtABadPositionGoesToTheHead",
       {{&Film::InsertCut, -1}, {&Film::InsertCut, 5}, {&Film::InsertCut, -1}},
       "c b a ",
       0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    SavedCut cuts[] = {SavedCut("a"), SavedCut("b"), SavedCut("c")};
    Film film;
    for (size_t i = 0; i < 3; ++i) {
      // The position counts, wherever the last reading left the list's cursor.
      film.CutName(static_cast<int32_t>(i) / 2);
      film.modified = 0;
      EXPECT_TRUE((film.*row.steps[i].put)(&cuts[i].cut, row.steps[i].position));
      EXPECT_NE(film.modified, 0u);
    }
    EXPECT_EQ(film.cuts.CursorIndex(), row.cursor);
    EXPECT_EQ(Names(film), row.names);
  }
}

TEST(Film, NewEntryHoldsTheOpenCutAndItsOwnCopyOfThePath) {
  SavedCut a("a");
  Film film;
  film.AddCut(&a.cut, 0);
  EXPECT_EQ(film.cuts.At(0).cut, &a.cut);
  EXPECT_NE(film.cuts.At(0).name, a.cut.path);
  AssignString(&a.cut.path, "z");
  EXPECT_STREQ(film.CutName(0), "a");
}

TEST(Film, CutThatWasNeverSavedIsRefused) {
  SavedCut a("a");
  Cut unsaved(4, 4, 24, "", 0);
  Film film;
  EXPECT_FALSE(film.AddCut(&unsaved, 0));
  EXPECT_FALSE(film.InsertCut(&unsaved, 0));
  EXPECT_EQ(film.cuts.Count(), 0);
  EXPECT_EQ(film.modified, 0u);
  film.AddCut(&a.cut, 0);
  film.modified = 0;
  EXPECT_FALSE(film.AddCut(&unsaved, 0));
  EXPECT_FALSE(film.InsertCut(&unsaved, 0));
  EXPECT_EQ(Names(film), "a ");
  EXPECT_EQ(film.modified, 0u);
}

TEST(Film, RemoveCutTakesOneEntryAndLeavesTheCutOpen) {
  SavedCut a("a");
  SavedCut b("b");
  Film film;
  film.AddCut(&a.cut, -1);
  film.AddCut(&b.cut, -1);
  film.AddCut(&a.cut, -1);
  film.modified = 0;
  EXPECT_TRUE(film.RemoveCut(0));
  EXPECT_EQ(Names(film), "b a ");
  EXPECT_NE(film.modified, 0u);
  EXPECT_STREQ(a.cut.path, "a");
  EXPECT_EQ(film.FindCut(&a.cut), 1);
}

TEST(Film, RemoveCutOfABadIndexIsFalse) {
  SavedCut a("a");
  Film film;
  EXPECT_FALSE(film.RemoveCut(0));
  film.AddCut(&a.cut, 0);
  film.modified = 0;
  EXPECT_FALSE(film.RemoveCut(-1));
  EXPECT_FALSE(film.RemoveCut(1));
  EXPECT_EQ(Names(film), "a ");
  EXPECT_EQ(film.modified, 0u);
}

TEST(Film, NameAtABadIndexIsTheEmptyText) {
  SavedCut a("a");
  Film film;
  EXPECT_EQ(film.CutName(0), EmptyString);
  film.AddCut(&a.cut, 0);
  EXPECT_EQ(film.CutName(-1), EmptyString);
  EXPECT_EQ(film.CutName(1), EmptyString);
}

TEST(Film, FindCutGivesTheFirstEntryOfTheCut) {
  SavedCut a("a");
  SavedCut b("b");
  SavedCut c("c");
  Film film;
  film.AddCut(&b.cut, -1);
  film.AddCut(&a.cut, -1);
  film.AddCut(&a.cut, -1);
  film.CutName(2);
  EXPECT_EQ(film.FindCut(&a.cut), 1);
  EXPECT_EQ(film.FindCut(&b.cut), 0);
  EXPECT_EQ(film.FindCut(&c.cut), -1);
}

TEST(Film, NullCutIsNotFoundAmongClosedEntries) {
  SavedCut a("a");
  Film film;
  EXPECT_EQ(film.FindCut(nullptr), -1);
  film.AddCut(&a.cut, 0);
  film.CutClosed(&a.cut);
  ASSERT_EQ(film.cuts.At(0).cut, nullptr);
  EXPECT_EQ(film.FindCut(nullptr), -1);
  EXPECT_EQ(film.FindCut(&a.cut), -1);
}

TEST(Film, OpenedCutEntersAllEntriesOfItsPath) {
  SavedCut a("a");
  SavedCut b("b");
  Film film;
  for (Cut* cut : {&a.cut, &b.cut, &a.cut}) film.AddCut(cut, -1);
  film.CutClosed(&a.cut);
  EXPECT_EQ(OpenCuts(film), Cuts({nullptr, &b.cut, nullptr}));
  film.modified = 0;
  SavedCut again("a");
  film.CutOpened(&again.cut);
  EXPECT_EQ(OpenCuts(film), Cuts({&again.cut, &b.cut, &again.cut}));
  film.CutClosed(&again.cut);
  EXPECT_EQ(OpenCuts(film), Cuts({nullptr, &b.cut, nullptr}));
  EXPECT_EQ(film.modified, 0u);
}

TEST(Film, PathsCompareByteForByte) {
  SavedCut a("C:\\a.cut");
  Film film;
  film.AddCut(&a.cut, 0);
  for (const char* path : {"C:\\A.cut", "C:/a.cut", "C:\\a.cu", "C:\\a.cut "}) {
    SavedCut other(path);
    film.CutOpened(&other.cut);
    EXPECT_EQ(film.cuts.At(0).cut, &a.cut);
  }
}

TEST(Film, ClosingGoesByTheCutAndNotByItsPath) {
  SavedCut a("a");
  SavedCut twin("a");
  Film film;
  film.AddCut(&a.cut, 0);
  film.CutClosed(&twin.cut);
  EXPECT_EQ(film.cuts.At(0).cut, &a.cut);
}

TEST(Film, RenamingOneEntryRenamesAllOfItsName) {
  SavedCut a("a");
  SavedCut b("b");
  Film film;
  for (Cut* cut : {&a.cut, &b.cut, &a.cut, &a.cut}) film.AddCut(cut, -1);
  for (int32_t index : {2, 0, 3}) {
    const std::string name = "new" + std::to_string(index);
    film.modified = 0;
    film.RenameCut(index, name.c_str());
    EXPECT_EQ(Names(film), name + " b " + name + " " + name + " ");
    EXPECT_NE(film.modified, 0u);
  }
  EXPECT_EQ(film.cuts.At(0).cut, &a.cut);
}

TEST(Film, RenamingWithNullOrABadIndexChangesNothing) {
  SavedCut a("a");
  Film film;
  film.AddCut(&a.cut, 0);
  film.modified = 0;
  film.RenameCut(0, nullptr);
  EXPECT_EQ(film.modified, 0u);
  film.RenameCut(1, "b");
  film.RenameCut(-1, "b");
  EXPECT_EQ(Names(film), "a ");
}

TEST(Film, RenamingToANameOfTheFilmItself) {
  SavedCut a("a");
  SavedCut b("longer");
  Film film;
  for (Cut* cut : {&a.cut, &b.cut, &a.cut}) film.AddCut(cut, -1);
  film.RenameCut(0, film.CutName(1));
  EXPECT_EQ(Names(film), "longer longer longer ");
  film.RenameCut(2, film.CutName(2));
  EXPECT_EQ(Names(film), "longer longer longer ");
}

TEST(Film, ResetEmptiesTheFilmAndKeepsItsSize) {
  SavedCut a("a");
  Film film;
  for (int32_t i = 0; i < 3; ++i) film.AddCut(&a.cut, 0);
  film.width = 99;
  film.height = 88;
  AssignString(&film.title, "title");
  AssignString(&film.author, "author");
  AssignString(&film.path, "path");
  EXPECT_TRUE(film.Reset());
  EXPECT_EQ(film.cuts.Count(), 0);
  EXPECT_EQ(film.width, 99);
  EXPECT_EQ(film.height, 88);
  EXPECT_EQ(film.title, EmptyString);
  EXPECT_EQ(film.author, EmptyString);
  EXPECT_EQ(film.path, EmptyString);
  EXPECT_EQ(film.modified, 0u);
  EXPECT_TRUE(film.Reset());
  EXPECT_TRUE(film.AddCut(&a.cut, 0));
  EXPECT_EQ(Names(film), "a ");
}

}  // namespace
}  // namespace sorvel
