#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "document/cut.h"
#include "document/film.h"
#include "document/load_report.h"
#include "foundation/shared_string.h"
#include "support/test_images.h"

namespace sorvel {
namespace {

using namespace testimages;

using Names = std::vector<std::string>;

class FilmFile : public ::testing::Test {
 protected:
  FilmFile() : path_(folder_.Path("film.flm")) {}

  void Add(Film* film, const std::string& cutPath) {
    Cut cut(1, 1, 1, "", 0);
    AssignString(&cut.path, cutPath.c_str());
    EXPECT_TRUE(film->AddCut(&cut, -1));
    film->CutClosed(&cut);
  }

  std::string FileText() const { return ReadFile(path_); }

  // The text of a film's file after a save that gives true.
  std::string Saved(Film* film) {
    EXPECT_TRUE(film->SaveTo(path_.c_str(), '/'));
    return FileText();
  }

  bool Load(Film* film, const std::string& text, LoadReport* report = nullptr) {
    WriteFile(path_, text);
    return film->Load(path_.c_str(), '/', report);
  }

  static Names NamesOf(Film& film) {
    Names names;
    for (int32_t i = 0; i < film.cuts.Count(); ++i) names.push_back(film.CutName(i));
    return names;
  }

  TemporaryFolder folder_;
  std::string path_;
};

// Saving.

TEST_F(FilmFile, FilmWithoutCutsHasExactlyThreeLines) {
  Film film;
  EXPECT_EQ(Saved(&film), "\n\n320, 240\n");
}

TEST_F(FilmFile, HoldsTitleAuthorSizeAndOneCutALine) {
  Film film;
  AssignString(&film.title, "A title");
  AssignString(&film.author, "\x8D\xEC\x8E\xD2");
  film.width = 640;
  film.height = -1;
  Add(&film, folder_.Path("cuts/c1.cut"));
  Add(&film, folder_.Path("c2.cut"));
  EXPECT_EQ(Saved(&film), "A title\n\x8D\xEC\x8E\xD2\n640, -1\ncuts/c1.cut\nc2.cut\n");
}

TEST_F(FilmFile, CutInAnotherFolderGetsAPathThroughTheParent) {
  TemporaryFolder other;
  Film film;
  std::string cutPath = other.Path("c2.cut");
  Add(&film, cutPath);
  std::string folderName = cutPath.substr(0, cutPath.find_last_of('/'));
  folderName = folderName.substr(folderName.find_last_of('/') + 1);
  EXPECT_EQ(Saved(&film), "\n\n320, 240\n../" + folderName + "/c2.cut\n");
}

TEST_F(FilmFile, CutBesideTheFilmGetsItsBareName) {
  Film film;
  Add(&film, folder_.Path("c1.cut"));
  EXPECT_EQ(Saved(&film), "\n\n320, 240\nc1.cut\n");
}

TEST_F(FilmFile, SavingMakesThePathTheFilmsOwnAndClearsTheMark) {
  Film film;
  film.modified = 1;
  EXPECT_TRUE(film.SaveTo(path_.c_str(), '/'));
  EXPECT_EQ(film.path, path_);
  EXPECT_EQ(film.modified, 0u);
}

TEST_F(FilmFile, SaveNeedsAPath) {
  Film film;
  film.modified = 1;
  EXPECT_FALSE(film.Save('/'));
  EXPECT_EQ(film.modified, 1u);
  AssignString(&film.path, path_.c_str());
  EXPECT_TRUE(film.Save('/'));
  EXPECT_EQ(film.modified, 0u);
  EXPECT_EQ(FileText(), "\n\n320, 240\n");
}

TEST_F(FilmFile, FailedSaveTouchesNeitherPathNorMark) {
  Film film;
  film.modified = 1;
  AssignString(&film.path, "/old.flm");
  EXPECT_FALSE(film.SaveTo(folder_.Path("missing/film.flm").c_str(), '/'));
  EXPECT_STREQ(film.path, "/old.flm");
  EXPECT_EQ(film.modified, 1u);
}

#ifdef __linux__
TEST_F(FilmFile, SaveThatFailsAtTheCloseTouchesNeitherPathNorMark) {
  Film film;
  film.modified = 1;
  AssignString(&film.path, "/old.flm");
  EXPECT_FALSE(film.SaveTo("/dev/full", '/'));
  EXPECT_STREQ(film.path, "/old.flm");
  EXPECT_EQ(film.modified, 1u);
}
#endif

TEST_F(FilmFile, SavingReplacesTheWholeFile) {
  WriteFile(path_, Bytes(10000, 'x'));
  Film film;
  EXPECT_EQ(Saved(&film), "\n\n320, 240\n");
}

// Loading.

TEST_F(FilmFile, LoadTakesEveryLine) {
  Film film;
  LoadReport report;
  EXPECT_TRUE(Load(&film, "A title\nSomeone\n640, 480\ncuts/c1.cut\nc2.cut\n", &report));
  EXPECT_FALSE(report.IsDamaged()) << report.problem;
  EXPECT_STREQ(film.title, "A title");
  EXPECT_STREQ(film.author, "Someone");
  EXPECT_EQ(film.width, 640);
  EXPECT_EQ(film.height, 480);
  EXPECT_EQ(NamesOf(film), (Names{folder_.Path("cuts/c1.cut"), folder_.Path("c2.cut")}));
  EXPECT_EQ(film.path, path_);
  EXPECT_EQ(film.modified, 0u);
}

TEST_F(FilmFile, LoadedEntriesHaveNoOpenCut) {
  Film film;
  EXPECT_TRUE(Load(&film, "t\na\n1, 2\nx.cut\ny.cut\n"));
  for (int32_t i = 0; i < 2; ++i) EXPECT_EQ(film.cuts.At(i).cut, nullptr);
}

TEST_F(FilmFile, ReloadedFilmHasTheSameOrder) {
  Film film;
  Names names;
  for (int32_t i = 0; i < 12; ++i) {
    names.push_back(folder_.Path("c" + std::to_string(i * 7 % 12) + ".cut"));
    Add(&film, names.back());
  }
  names.push_back(names.front());
  Add(&film, names.back());
  EXPECT_TRUE(film.SaveTo(path_.c_str(), '/'));
  Film loaded;
  EXPECT_TRUE(loaded.Load(path_.c_str(), '/'));
  EXPECT_EQ(NamesOf(loaded), names);
  for (int32_t i = 0; i < loaded.cuts.Count(); ++i) EXPECT_EQ(loaded.cuts.At(i).cut, nullptr);
}

TEST_F(FilmFile, LoadReplacesTheFormerEntries) {
  Film film;
  Add(&film, "/x/old.cut");
  EXPECT_TRUE(Load(&film, "t\na\n1, 2\nnew.cut\n"));
  EXPECT_EQ(NamesOf(film), (Names{folder_.Path("new.cut")}));
}

TEST_F(FilmFile, FailedOpenLeavesAnEmptyFilmOfTheOldSize) {
  Film film;
  Add(&film, "/x/old.cut");
  AssignString(&film.title, "t");
  AssignString(&film.author, "a");
  AssignString(&film.path, "/x/old.flm");
  film.width = 11;
  film.height = 12;
  film.modified = 1;
  EXPECT_FALSE(film.Load(folder_.Path("missing.flm").c_str(), '/'));
  EXPECT_EQ(film.cuts.Count(), 0);
  EXPECT_STREQ(film.title, "");
  EXPECT_STREQ(film.author, "");
  EXPECT_STREQ(film.path, "");
  EXPECT_EQ(film.modified, 0u);
  EXPECT_EQ(film.width, 11);
  EXPECT_EQ(film.height, 12);
}

TEST_F(FilmFile, BlankLinesBetweenCutsVanish) {
  Film film;
  EXPECT_TRUE(Load(&film, "t\na\n1, 2\n\nx.cut\n\n\ny.cut\n\n"));
  EXPECT_EQ(NamesOf(film), (Names{folder_.Path("x.cut"), folder_.Path("y.cut")}));
}

TEST_F(FilmFile, LastLineWithoutANewlineIsTaken) {
  Film film;
  EXPECT_TRUE(Load(&film, "t\na\n1, 2\nx.cut\ny.cut"));
  EXPECT_EQ(NamesOf(film), (Names{folder_.Path("x.cut"), folder_.Path("y.cut")}));
}

TEST_F(FilmFile, PathThroughTheParentComesBackAbsolute) {
  TemporaryFolder other;
  std::string cutPath = other.Path("c2.cut");
  Film film;
  Add(&film, cutPath);
  EXPECT_TRUE(film.SaveTo(path_.c_str(), '/'));
  Film loaded;
  EXPECT_TRUE(loaded.Load(path_.c_str(), '/'));
  EXPECT_EQ(NamesOf(loaded), (Names{cutPath}));
}

TEST_F(FilmFile, SizeThatDoesNotParseStaysAsItWas) {
  for (const char* line : {"", "wide", ", 5", "x, 7"}) {
    Film film;
    film.width = 11;
    film.height = 12;
    LoadReport report;
    EXPECT_TRUE(Load(&film, std::string("t\na\n") + line + "\nx.cut\n", &report));
    EXPECT_EQ(film.width, 11) << line;
    EXPECT_EQ(film.height, 12) << line;
    EXPECT_EQ(film.cuts.Count(), 1) << line;
    EXPECT_TRUE(report.IsDamaged()) << line;
  }
}

TEST_F(FilmFile, SizeIsParsedFromItsLineAlone) {
  Film film;
  film.width = 11;
  film.height = 12;
  EXPECT_TRUE(Load(&film, "t\na\n\n640, 480\n"));
  EXPECT_EQ(film.width, 11);
  EXPECT_EQ(film.height, 12);
  EXPECT_EQ(NamesOf(film), (Names{folder_.Path("640, 480")}));
}

TEST_F(FilmFile, SizeMayHaveOtherBlanksAndSigns) {
  Film film;
  EXPECT_TRUE(Load(&film, "t\na\n  64,\t -48 and more\n"));
  EXPECT_EQ(film.width, 64);
  EXPECT_EQ(film.height, -48);
}

TEST_F(FilmFile, LongTitleSplitsOverTwoLinesAndLosesOneByte) {
  Film film;
  film.width = 11;
  film.height = 12;
  std::string title(255, 't');
  EXPECT_TRUE(Load(&film, title + "#rest\nauthor\n640, 480\nx.cut\n"));
  EXPECT_EQ(film.title, title);
  EXPECT_STREQ(film.author, "rest");
  EXPECT_EQ(film.width, 11);
  EXPECT_EQ(film.height, 12);
  EXPECT_EQ(NamesOf(film), (Names{folder_.Path("640, 480"), folder_.Path("x.cut")}));
}

TEST_F(FilmFile, TitleOf255BytesIsReadWhole) {
  Film film;
  std::string title(255, 't');
  EXPECT_TRUE(Load(&film, title + "\nauthor\n640, 480\n"));
  EXPECT_EQ(film.title, title);
  EXPECT_STREQ(film.author, "author");
  EXPECT_EQ(film.width, 640);
}

TEST_F(FilmFile, TitleOf256BytesLeavesAnEmptyLineBehind) {
  Film film;
  film.width = 11;
  film.height = 12;
  EXPECT_TRUE(Load(&film, std::string(256, 't') + "\nauthor\n640, 480\n"));
  EXPECT_EQ(film.title, std::string(255, 't'));
  EXPECT_STREQ(film.author, "");
  EXPECT_EQ(film.width, 11);
  EXPECT_EQ(NamesOf(film), (Names{folder_.Path("640, 480")}));
}

TEST_F(FilmFile, EmptyFileGivesAnEmptyFilm) {
  Film film;
  LoadReport report;
  EXPECT_TRUE(Load(&film, "", &report));
  EXPECT_STREQ(film.title, "");
  EXPECT_EQ(film.cuts.Count(), 0);
  EXPECT_EQ(film.width, 320);
  EXPECT_EQ(film.path, path_);
  EXPECT_TRUE(report.IsDamaged());
}

TEST_F(FilmFile, EveryTruncationIsSurvived) {
  const std::string text = "title\nauthor\n640, 480\ncuts/c1.cut\n../c2.cut\n";
  for (size_t length = 0; length <= text.size(); ++length) {
    Film film;
    LoadReport report;
    EXPECT_TRUE(Load(&film, text.substr(0, length), &report)) << length;
    EXPECT_EQ(film.title, text.substr(0, std::min<size_t>(length, 5)));
    EXPECT_LE(film.cuts.Count(), 2);
    if (length < 14) {
      EXPECT_TRUE(report.IsDamaged()) << length;
    }
    if (length >= 21) {
      EXPECT_FALSE(report.IsDamaged()) << length << ": " << report.problem;
    }
  }
}

TEST_F(FilmFile, EveryFlippedBitIsSurvived) {
  const std::string text = "title\nauthor\n640, 480\ncuts/c1.cut\n../c2.cut\n";
  for (size_t at = 0; at < text.size(); ++at) {
    for (uint32_t bit = 0; bit < 8; ++bit) {
      std::string damaged = text;
      damaged[at] = static_cast<char>(damaged[at] ^ (1 << bit));
      Film film;
      LoadReport report;
      EXPECT_TRUE(Load(&film, damaged, &report)) << at;
      EXPECT_LE(film.cuts.Count(), 4);
      EXPECT_EQ(film.modified, 0u);
    }
  }
}

TEST_F(FilmFile, HostileLinesAreSurvived) {
  for (const std::string& line : {std::string(100000, 'x'), std::string(5000, '/'),
                                  std::string("../../../../../../../../../../../../../../x.cut"), std::string(600, '.'),
                                  std::string("\0\0\0\n\0x", 6), std::string("\xFF\xFE\x81")}) {
    Film film;
    EXPECT_TRUE(Load(&film, "t\na\n99999999999999999999, 99999999999999999999\n" + line + "\nx.cut\n"));
    ASSERT_GE(film.cuts.Count(), 1);
    EXPECT_EQ(film.CutName(film.cuts.Count() - 1), folder_.Path("x.cut"));
    EXPECT_TRUE(Load(&film, line));
  }
}

}  // namespace
}  // namespace sorvel
