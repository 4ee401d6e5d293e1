#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "resources/ids.h"
#include "rules/film_session.h"
#include "rules/rule_table.h"

namespace rules {
namespace {

using nlohmann::json;

// Paths under a folder and the bytes of the files there.
using Tree = std::map<std::string, std::string>;

// The characters that these tests use, as they stand in files. The second byte of many of them is the backslash.
const std::map<std::string, std::string>& ShiftJisTable() {
  static const std::map<std::string, std::string> table = {
      {"表", "\x95\x5C"}, {"ソ", "\x83\x5C"}, {"予", "\x97\x5C"}, {"能", "\x94\x5C"}, {"十", "\x8F\x5C"},
      {"噂", "\x89\x5C"}, {"構", "\x8D\x5C"}, {"貼", "\x93\x5C"}, {"空", "\x8B\xF3"}, {"夜", "\x96\xE9"},
      {"映", "\x89\x66"}, {"画", "\x89\xE6"}, {"本", "\x96\x7B"}, {"編", "\x95\xD2"}, {"素", "\x91\x66"},
      {"材", "\x8D\xDE"}, {"題", "\x91\xE8"}, {"作", "\x8D\xEC"}, {"者", "\x8E\xD2"}, {"渡", "\x93\x6E"},
      {"の", "\x82\xCC"}, {"旧", "\x8B\x8C"}, {"雨", "\x89\x4A"}, {"月", "\x8C\x8E"}};
  return table;
}

// Text as the program stores it.
std::string Stored(std::string_view shown) {
  std::string bytes;
  for (size_t i = 0; i < shown.size();) {
    if (static_cast<unsigned char>(shown[i]) < 0x80) {
      bytes.append(1, shown[i]);
      ++i;
      continue;
    }
    const std::string character(shown.substr(i, 3));
    const auto found = ShiftJisTable().find(character);
    if (found == ShiftJisTable().end()) {
      ADD_FAILURE() << "no bytes known for " << character;
      return {};
    }
    bytes.append(found->second);
    i += 3;
  }
  return bytes;
}

void MakeFolder(const ScriptSession& session, std::string_view name) {
  std::error_code failure;
  std::filesystem::create_directories(session.Path(name), failure);
  ASSERT_FALSE(failure) << failure.message();
}

Tree TreeOf(const ScriptSession& session, std::string_view folder) {
  Tree tree;
  const std::string root = session.Path(folder);
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
    // What is kept of replaced files has tests of its own.
    if (!entry.is_regular_file() || entry.path().string().find("/.sorvel/") != std::string::npos) continue;
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    tree[entry.path().string().substr(root.size() + 1)] = bytes;
  }
  return tree;
}

Names NamesOf(const Tree& tree) {
  Names names;
  for (const auto& [name, bytes] : tree) names.push_back(name);
  return names;
}

// The names first, so that a difference is told in few words.
void ExpectTree(const Tree& actual, const Tree& expected) {
  ASSERT_EQ(NamesOf(actual), NamesOf(expected));
  for (const auto& [name, bytes] : expected) EXPECT_EQ(actual.at(name), bytes) << name;
}

CutFile Credited(const std::string& credit) {
  CutFile file = PlainCut();
  file.credit = credit;
  return file;
}

// A film of these cuts in the session's folder, each with a cut file that differs from the others by its credit.
template <typename Session>
ScriptSession& OpenFilm(Session&& session, const Names& cuts) {
  Names lines;
  for (const std::string& cut : cuts) {
    lines.push_back(Stored(cut));
    session.Write(cut, Credited(Stored(cut)).Bytes());
  }
  return OpenFilmFile(session, FilmText(lines));
}

// ---------------------------------------------------------------------------------------------------------------------
// A film of thirty lines, with its cuts in its own folder, below, above and beside it; some stand in it several times,
// and some aren't there.

enum Folder { kOwn, kBelow, kDeep, kAbove, kTop, kBeside, kAlike, kNowhere, kFolders };

using FolderNames = std::array<const char*, kFolders>;

constexpr FolderNames kRealFolders = {
    "work/映画/本編/", "work/映画/本編/表/", "work/映画/本編/表/ソ/", "work/映画/",
    "work/",           "work/映画/素材/",    "work/映画/本編2/",      "work/映画/本編/none/"};

constexpr FolderNames kFromOwn = {"", "表/", "表/ソ/", "../", "../../", "../素材/", "../本編2/", "none/"};

struct Row {
  Folder folder;
  const char* name;
  bool exists = true;
};

const std::vector<Row>& Rows() {
  static const std::vector<Row> rows = {{kOwn, "空001"},       {kOwn, "空002"},    {kBelow, "ソ1"},
                                        {kDeep, "能"},         {kAbove, "表"},     {kTop, "十"},
                                        {kBeside, "予"},       {kAlike, "空001"},  {kOwn, "空001"},
                                        {kBelow, "旧", false}, {kOwn, "空003"},    {kDeep, "ソ"},
                                        {kAbove, "ソ"},        {kBeside, "表"},    {kBeside, "予"},
                                        {kAlike, "構"},        {kTop, "噂"},       {kOwn, "空010"},
                                        {kOwn, "空011"},       {kBelow, "貼"},     {kNowhere, "月", false},
                                        {kOwn, "空012"},       {kDeep, "ソ月"},    {kAbove, "雨", false},
                                        {kBeside, "空020"},    {kBeside, "空021"}, {kOwn, "空001"},
                                        {kAlike, "表"},        {kTop, "能"},       {kOwn, "空099"}};
  return rows;
}

std::string FileOf(const Row& row) {
  return std::string(kRealFolders[row.folder]).append(row.name).append(".cut");
}

std::string TextOfRows(const FolderNames& prefixes) {
  std::string text = Stored("題ソ\n作者\n640, 480\n");
  for (const Row& row : Rows()) text.append(Stored(std::string(prefixes[row.folder]) + row.name)).append(".cut\n");
  return text;
}

class FilmOfThirtyCuts : public testing::Test {
 protected:
  void SetUp() override {
    for (size_t i = 0; i < kFolders; ++i) {
      if (i != kNowhere) MakeFolder(session, kRealFolders[i]);
    }
    MakeFolder(session, "work/渡");
    session.Write(kFilm, TextOfRows(kFromOwn));
    std::set<std::string> written;
    for (size_t i = 0; i < Rows().size(); ++i) {
      const Row& row = Rows()[i];
      if (!row.exists || !written.insert(FileOf(row)).second) continue;
      CutFile file = CutFile::Showing({static_cast<int>(i % 4) + 1, 0}, {0, 1, 0});
      file.credit = Stored(row.name) + std::to_string(i);
      session.Write(FileOf(row), file.Bytes());
    }
    before = TreeOf(session, "work");
  }

  ScriptSession& OpenIt() { return session.Open(session.Path(kFilm)); }

  static Names AllEntries() {
    Names names;
    for (const Row& row : Rows()) names.push_back(FileOf(row));
    return names;
  }

  static Names AllLines() {
    Names names;
    for (const Row& row : Rows()) names.emplace_back(row.name);
    return names;
  }

  // The bytes that the file of this row had at the start.
  std::string BytesOf(size_t row) const { return before.at(FileOf(Rows()[row]).substr(5)); }

  const std::string kFilm = "work/映画/本編/予.flm";
  const std::string kFilmInWork = "映画/本編/予.flm";
  ScriptSession session;
  Tree before;
};

TEST_F(FilmOfThirtyCuts, OpensInTheOrderOfItsFile) {
  ASSERT_EQ(Rows().size(), 30U);
  OpenIt();
  EXPECT_TRUE(Holds(session, "film/cuts/*/name", AllEntries(), "panels/cuts/lines", AllLines(), "film/cuts/*/open",
                    std::vector<bool>(30, false), "panels/cuts/selected", json::array({0}), "panels/cuts/caret", 0,
                    "frame/title", "Sorvel Developer - 予"));
  const json film = Film(session);
  EXPECT_TRUE(Holds(session, "film/title", "題ソ", "film/author", "作者", "film/width", 640, "film/height", 480));
  EXPECT_EQ(film["path"], session.Path(kFilm));
  EXPECT_TRUE(Holds(session, "film/modified", false, "cuts/#", 0));
  ExpectTree(TreeOf(session, "work"), before);
}

struct Place {
  const char* name;
  const char* film;
  FolderNames prefixes;
};

class FilmSavedElsewhere : public FilmOfThirtyCuts, public testing::WithParamInterface<Place> {};

TEST_P(FilmSavedElsewhere, HasItsLinesRelativeToTheNewFolderAndOpensAgain) {
  const Place& place = GetParam();
  OpenIt().File(session.Path(std::string("work/") + place.film)).Command(kCommandSaveFilmAs);
  const int saved = session.State();
  session.Open("gone.flm").File(session.Path(std::string("work/") + place.film));
  session.Command(kCommandOpenFilm);
  const int opened = session.State();
  session.File("work/映画/本編/back.flm").Command(kCommandSaveFilmAs).Run();

  for (const int state : {saved, opened}) {
    const json film = Film(session, state);
    EXPECT_EQ(film["path"], session.Path(std::string("work/") + place.film));
    EXPECT_EQ(film["modified"], false);
    EXPECT_EQ(film["title"], "題ソ");
    EXPECT_EQ(film["author"], "作者");
    EXPECT_EQ(Entries(session, state), AllEntries());
    EXPECT_EQ(Lines(session, state), AllLines());
    EXPECT_EQ(OpenFlags(session, state), std::vector<bool>(30, false));
  }
  const std::string name = std::filesystem::path(place.film).stem().string();
  EXPECT_EQ(FrameTitle(session, saved), "Sorvel Developer - " + name);
  EXPECT_EQ(FrameTitle(session, opened), "Sorvel Developer - " + name);
  Tree after = before;
  after[place.film] = TextOfRows(place.prefixes);
  after["映画/本編/back.flm"] = before.at(kFilmInWork);
  ExpectTree(TreeOf(session, "work"), after);
}

INSTANTIATE_TEST_SUITE_P(
    Film, FilmSavedElsewhere,
    testing::Values(
        Place{"OverItself", "映画/本編/予.flm", kFromOwn}, Place{"UnderAnotherName", "映画/本編/ソ.flm", kFromOwn},
        Place{"Below",
              "映画/本編/表/能.flm",
              {"../", "", "ソ/", "../../", "../../../", "../../素材/", "../../本編2/", "../none/"}},
        Place{"TwoBelow",
              "映画/本編/表/ソ/十.flm",
              {"../../", "../", "", "../../../", "../../../../", "../../../素材/", "../../../本編2/", "../../none/"}},
        Place{"TwoAbove",
              "表.flm",
              {"映画/本編/", "映画/本編/表/", "映画/本編/表/ソ/", "映画/", "", "映画/素材/", "映画/本編2/",
               "映画/本編/none/"}},
        Place{"Beside",
              "映画/素材/構.flm",
              {"../本編/", "../本編/表/", "../本編/表/ソ/", "../", "../../", "", "../本編2/", "../本編/none/"}},
        // The bytes of the two folders' names are the same up to the 2: what is common ends at the last
        // separator all the same.
        Place{"InAFolderWhoseNameBeginsLikeTheFilms",
              "映画/本編2/film.flm",
              {"../本編/", "../本編/表/", "../本編/表/ソ/", "../", "../../", "../素材/", "", "../本編/none/"}}),
    [](const testing::TestParamInfo<Place>& place) { return std::string(place.param.name); });

TEST_F(FilmOfThirtyCuts, EveryLineOpensOnceByDoubleClickAndSavesAsItWas) {
  OpenIt();
  for (int i = 0; i < 30; ++i) session.DoubleClick(kCutList, i);
  const int opened = session.State();
  // Line 26 is the film's first cut once more: its window, the first, comes to the front.
  session.DoubleClick(kCutList, 26);
  const int again = session.State();
  const int windows = 24;
  for (int i = 0; i < windows; ++i)
    session.Activate(i).Command(kCommandBlankCell).Command(kCommandBlankCell).Command(kCommandOverwriteCut);
  const int written = session.State();
  session.Answer("yes").Command(kCommandCloseAll);
  const int closed = session.State();
  session.Run();

  Names paths;
  std::vector<bool> flags;
  std::set<std::string> seen;
  for (const Row& row : Rows()) {
    flags.push_back(row.exists);
    if (row.exists && seen.insert(FileOf(row)).second) paths.push_back(FileOf(row));
  }
  ASSERT_EQ(paths.size(), static_cast<size_t>(windows));
  for (const int state : {opened, again, written}) {
    EXPECT_EQ(WindowPaths(session, state), paths);
    EXPECT_EQ(OpenFlags(session, state), flags);
    EXPECT_EQ(Entries(session, state), AllEntries());
  }
  const json cuts = Windows(session, opened);
  for (size_t i = 0; i < cuts.size(); ++i) {
    EXPECT_EQ(cuts[i]["title"], std::filesystem::path(paths[i]).filename().string());
    EXPECT_EQ(cuts[i]["modified"], false);
    EXPECT_EQ(cuts[i]["active"], i == 23);
    EXPECT_EQ(cuts[i]["frames"].size(), 3U);
  }
  EXPECT_EQ(session.Cut(again)["path"], session.Path(FileOf(Rows()[0])));
  EXPECT_EQ(List(session, again)["selected"], json::array({0}));
  EXPECT_EQ(Windows(session, closed).size(), 0U);
  EXPECT_EQ(OpenFlags(session, closed), std::vector<bool>(30, false));
  EXPECT_EQ(Film(session, closed)["modified"], false);
  ExpectTree(TreeOf(session, "work"), before);
}

TEST_F(FilmOfThirtyCuts, RenamesOfAClosedAnOpenAndAMissingCut) {
  OpenIt();
  // Three lines show this cut; the one of the same name in another folder isn't it.
  session.Select(kCutList, {26}).Dialog(kRenameDialog, {{kRenameEdit, "表夜"}}).Command(kCommandRenameCut);
  const int first = session.State();
  session.DoubleClick(kCutList, 22).Panel(kCommentEdit, "雨").Select(kCutList, {22});
  session.Dialog(kRenameDialog, {{kRenameEdit, "ソ雨"}}).Command(kCommandRenameCut);
  const int second = session.State();
  session.Command(kCommandLastFrame).Command(kCommandOverwriteCut).Select(kCutList, {23});
  session.Dialog(kRenameDialog, {{kRenameEdit, "十"}}).Command(kCommandRenameCut).Command(kCommandOverwriteFilm);
  const int third = session.State();
  session.Run();

  Names entries = AllEntries();
  Names lines = AllLines();
  for (const size_t i : {0U, 8U, 26U}) {
    entries[i] = "work/映画/本編/表夜.cut";
    lines[i] = "表夜";
  }
  EXPECT_EQ(Entries(session, first), entries);
  EXPECT_EQ(Lines(session, first), lines);
  EXPECT_EQ(List(session, first)["caret"], 26);
  EXPECT_EQ(Film(session, first)["modified"], true);
  entries[22] = "work/映画/本編/表/ソ/ソ雨.cut";
  lines[22] = "ソ雨";
  EXPECT_EQ(Entries(session, second), entries);
  EXPECT_EQ(Lines(session, second), lines);
  EXPECT_EQ(session.Cut(second)["path"], session.Path(entries[22]));
  EXPECT_EQ(session.Cut(second)["title"], "ソ雨.cut");
  std::vector<bool> flags(30, false);
  flags[22] = true;
  EXPECT_EQ(OpenFlags(session, second), flags);
  entries[23] = "work/映画/十.cut";
  lines[23] = "十";
  EXPECT_EQ(Entries(session, third), entries);
  EXPECT_EQ(Lines(session, third), lines);
  EXPECT_EQ(Film(session, third)["modified"], false);

  Tree after = before;
  after.erase("映画/本編/空001.cut");
  after["映画/本編/表夜.cut"] = BytesOf(0);
  after.erase("映画/本編/表/ソ/ソ月.cut");
  CutFile file = CutFile::Showing({22 % 4 + 1, 0}, {0, 1, 0});
  file.credit = Stored("ソ月22");
  ASSERT_EQ(BytesOf(22), file.Bytes());
  file.frames[2].comment = Stored("雨");
  after["映画/本編/表/ソ/ソ雨.cut"] = file.Bytes();
  std::string text = Stored("題ソ\n作者\n640, 480\n");
  for (size_t i = 0; i < 30; ++i) {
    text.append(Stored(kFromOwn[Rows()[i].folder] + lines[i])).append(".cut\n");
  }
  after[kFilmInWork] = text;
  ExpectTree(TreeOf(session, "work"), after);
}

TEST_F(FilmOfThirtyCuts, ExtractBringsCutsOfAllFoldersTogether) {
  OpenIt().Select(kCutList, {22, 0, 29, 7, 14, 6}).File("work/渡/十").Command(kCommandExtractCuts);
  const int state = session.State();
  session.File("work/渡/十").Command(kCommandOpenFilm);
  const int opened = session.State();
  session.Command(kCommandOverwriteFilm).Run();
  EXPECT_EQ(Film(session, state)["path"], session.Path(kFilm));
  EXPECT_EQ(Film(session, state)["modified"], false);
  EXPECT_EQ(FrameTitle(session, state), "Sorvel Developer - 予");
  EXPECT_EQ(Entries(session, state), AllEntries());
  EXPECT_EQ(Lines(session, opened), (Names{"空001", "予", "空001", "予", "ソ月", "空099"}));

  Tree after = before;
  after["渡/十.flm"] = Stored("題ソ\n作者\n640, 480\n空001.cut\n予.cut\n空001.cut\n予.cut\nソ月.cut\n空099.cut\n");
  // Two cuts of one name go to one file, and the later one stays.
  after["渡/空001.cut"] = BytesOf(7);
  after["渡/予.cut"] = BytesOf(6);
  after["渡/ソ月.cut"] = BytesOf(22);
  after["渡/空099.cut"] = BytesOf(29);
  ExpectTree(TreeOf(session, "work"), after);
}

TEST_F(FilmOfThirtyCuts, DeletesWithAndWithoutTheFiles) {
  // Streams beside cuts that go, and one beside a cut that stays.
  session.Write("work/映画/本編/空001.ca", "stream");
  session.Write("work/映画/本編/表/ソ1.ca", "stream");
  session.Write("work/映画/本編/空003.ca", "stream");
  OpenIt().DoubleClick(kCutList, 2).Command(kCommandBlankCell);
  session.Select(kCutList, {0, 2, 9, 13}).Answer("yes").Command(kCommandDeleteCuts);
  const int deleted = session.State();
  session.Select(kCutList, {0}).Answer("no").Command(kCommandDeleteCuts);
  const int removed = session.State();
  // The cut's other lines still name the file that is gone.
  session.DoubleClick(kCutList, 4);
  const int clicked = session.State();
  session.Command(kCommandOverwriteFilm).Run();

  Names entries;
  Names lines;
  std::string text = Stored("題ソ\n作者\n640, 480\n");
  for (size_t i = 0; i < 30; ++i) {
    if (i == 0 || i == 2 || i == 9 || i == 13) continue;
    entries.push_back(AllEntries()[i]);
    lines.push_back(AllLines()[i]);
    if (i != 1) text.append(Stored(std::string(kFromOwn[Rows()[i].folder]) + Rows()[i].name)).append(".cut\n");
  }
  EXPECT_EQ(Entries(session, deleted), entries);
  EXPECT_EQ(Lines(session, deleted), lines);
  EXPECT_EQ(Windows(session, deleted).size(), 0U);
  // The lines that followed the four.
  EXPECT_EQ(List(session, deleted)["selected"], json::array({0, 1, 7, 10}));
  EXPECT_EQ(List(session, deleted)["caret"], 0);
  entries.erase(entries.begin());
  lines.erase(lines.begin());
  EXPECT_EQ(Entries(session, removed), entries);
  EXPECT_EQ(Lines(session, removed), lines);
  ASSERT_EQ(lines[4], "空001");
  EXPECT_EQ(Windows(session, clicked).size(), 1U);
  EXPECT_EQ(WindowPaths(session, clicked), Names{"work/映画/本編2/空001.cut"});

  Tree after = before;
  after["映画/本編/空003.ca"] = "stream";
  for (const size_t i : {0U, 2U, 13U}) after.erase(FileOf(Rows()[i]).substr(5));
  after[kFilmInWork] = text;
  ExpectTree(TreeOf(session, "work"), after);
}

TEST_F(FilmOfThirtyCuts, DeletingAllLeavesWhatTheFilmDoesNotName) {
  session.Write("work/映画/本編/空004.cut", PlainCut().Bytes());
  session.Write("work/映画/本編/空001.lyr", "layer");
  session.Write("work/映画/素材/予.ca", "stream");
  std::vector<int> all;
  for (int i = 0; i < 30; ++i) all.push_back(i);
  OpenIt().Select(kCutList, all).Answer("yes").Command(kCommandDeleteCuts);
  const int state = session.State();
  session.Command(kCommandDeleteCuts).Command(kCommandRenameCut).Command(kCommandRemoveCutFromFilm);
  session.Command(kCommandOverwriteFilm).File(session.Path(kFilm)).Command(kCommandOpenFilm);
  const int opened = session.State();
  session.Run();
  for (const int number : {state, opened}) {
    EXPECT_EQ(Entries(session, number), Names{});
    EXPECT_EQ(Lines(session, number), Names{});
    EXPECT_EQ(List(session, number)["selected"], json::array());
  }
  EXPECT_EQ(Film(session, state)["modified"], true);
  ExpectTree(TreeOf(session, "work"), Tree{{kFilmInWork, Stored("題ソ\n作者\n640, 480\n")},
                                           {"映画/本編/空004.cut", PlainCut().Bytes()},
                                           {"映画/本編/空001.lyr", "layer"}});
}

// ---------------------------------------------------------------------------------------------------------------------
// Three days of work on one film, each one start of the program.

class ThreeDays : public testing::Test {
 protected:
  void SetUp() override {
    MakeFolder(session, "work/映画/本編");
    MakeFolder(session, "work/素材");
    MakeFolder(session, "work/渡");
    session.Write("work/素材/能.cut", Stock().Bytes());
  }

  static CutFile Stock() { return CutFile::Showing({3}, {0, 0}); }
  static CutFile StockWithComment() {
    CutFile file = Stock();
    file.frames[1].comment = Stored("予");
    return file;
  }
  static CutFile First() {
    CutFile file = CutFile::Showing({0}, {0});
    file.frames[0].comment = Stored("ソ");
    return file;
  }
  static CutFile Second() {
    CutFile file = CutFile::Showing({0}, {0, 0});
    file.layers[0].name = "B";
    file.frames[0].comment = Stored("表");
    file.frames[0].time = 3;
    file.frames[1].time = 3;
    return file;
  }

  void FirstDay() {
    session
        .Dialog(kFilmDialog,
                {{kFilmWidthEdit, "8"}, {kFilmHeightEdit, "3"}, {kFilmTitleEdit, "表の空"}, {kFilmAuthorEdit, "作者"}})
        .Command(kCommandNewFilm);
    session.NewCut({.width = 8, .height = 3}).Panel(kCommentEdit, "ソ");
    session.File("work/映画/本編/構001").Command(kCommandAddCutToFilm);
    session.File("work/映画/本編/表").Command(kCommandOverwriteFilm);
    // A second cut behind the first, drawn in two frames and overwritten.
    session.Dialog(kCutDialog, {}).Dialog(kLayerDialog, {{kLayerNameEdit, "B"}}).Command(kCommandAddNumberedCut);
    session.Panel(kFrameTimeEdit, "3")
        .Panel(kCommentEdit, "表")
        .Command(kCommandAddFrame)
        .Command(kCommandOverwriteCut);
    // A third one ahead of the first, without a layer.
    AddNumberedCut(session.Select(kCutList, {0}), {}, kCommandInsertNumberedCut);
    // A cut from stock behind the second; it gets a comment, which is asked about at the end.
    session.Open("work/素材/能.cut").Select(kCutList, {2}).Command(kCommandAddCutToFilm).Panel(kCommentEdit, "予");
  }

  const std::string kTitle = Stored("表の空");

  ScriptSession session;
};

TEST_F(ThreeDays, FirstDayMakesTheFilm) {
  FirstDay();
  const int state = session.State();
  session.Answer("yes").Answer("yes").Exit().Run();
  EXPECT_EQ(Entries(session, state), (Names{"work/映画/本編/構003.cut", "work/映画/本編/構001.cut",
                                            "work/映画/本編/構002.cut", "work/素材/能.cut"}));
  EXPECT_EQ(Lines(session, state), (Names{"構003", "構001", "構002", "能"}));
  EXPECT_EQ(OpenFlags(session, state), std::vector<bool>(4, true));
  EXPECT_EQ(WindowPaths(session, state), (Names{"work/映画/本編/構001.cut", "work/映画/本編/構002.cut",
                                                "work/映画/本編/構003.cut", "work/素材/能.cut"}));
  EXPECT_EQ(List(session, state)["selected"], json::array({3}));
  EXPECT_EQ(List(session, state)["caret"], 3);
  EXPECT_EQ(FrameTitle(session, state), "Sorvel Developer - 表");
  EXPECT_EQ(Film(session, state)["modified"], true);

  EXPECT_EQ(session.Setting("OnNewFilm", "width"), "8");
  EXPECT_EQ(session.Setting("OnNewFilm", "height"), "3");
  EXPECT_EQ(session.Setting("OnNewFilm", "title"), kTitle);
  EXPECT_EQ(session.Setting("OnNewFilm", "author"), Stored("作者"));
  EXPECT_EQ(session.Setting("setup", "film"), session.Path("") + Stored("work/映画/本編/表.flm"));
  ExpectTree(
      TreeOf(session, "work"),
      Tree{{"映画/本編/表.flm", kTitle + Stored("\n作者\n8, 3\n構003.cut\n構001.cut\n構002.cut\n../../素材/能.cut\n")},
           {"映画/本編/構001.cut", First().Bytes()},
           {"映画/本編/構002.cut", Second().Bytes()},
           {"映画/本編/構003.cut", PlainCut().Bytes()},
           {"素材/能.cut", StockWithComment().Bytes()}});
}

TEST_F(ThreeDays, AnswersOfNoAtTheExitLoseWhatWasNotSaved) {
  FirstDay();
  session.Answer("no").Answer("no").Exit().Run();
  EXPECT_EQ(session.Setting("setup", "film"), session.Path("") + Stored("work/映画/本編/表.flm"));
  // The film as it was when it was overwritten, and all the files that were made.
  ExpectTree(TreeOf(session, "work"), Tree{{"映画/本編/表.flm", kTitle + Stored("\n作者\n8, 3\n構001.cut\n")},
                                           {"映画/本編/構001.cut", First().Bytes()},
                                           {"映画/本編/構002.cut", Second().Bytes()},
                                           {"映画/本編/構003.cut", PlainCut().Bytes()},
                                           {"素材/能.cut", Stock().Bytes()}});
}

TEST_F(ThreeDays, TheWholeWork) {
  FirstDay();
  session.Answer("yes").Answer("yes").Exit().Run();
  const Tree firstDay = TreeOf(session, "work");

  session.Restart();
  const int morning = session.State();
  session.DoubleClick(kCutList, 2).Panel(kCommentEdit, "空").Select(kCutList, {2});
  session.Dialog(kRenameDialog, {{kRenameEdit, "ソ夜"}}).Command(kCommandRenameCut);
  const int renamed = session.State();
  session.Command(kCommandFirstFrame).Command(kCommandOverwriteCut).Select(kCutList, {0}).Answer("yes");
  session.Command(kCommandDeleteCuts);
  const int deleted = session.State();
  session.File("work/素材/十").Command(kCommandSaveFilmAs).Select(kCutList, {1, 2});
  session.File("work/渡/表").Command(kCommandExtractCuts);
  const int evening = session.State();
  session.Exit().Run();

  EXPECT_EQ(Lines(session, morning), (Names{"構003", "構001", "構002", "能"}));
  EXPECT_EQ(List(session, morning)["selected"], json::array({0}));
  EXPECT_EQ(OpenFlags(session, morning), std::vector<bool>(4, false));
  EXPECT_EQ(Film(session, morning)["title"], "表の空");
  EXPECT_EQ(FrameTitle(session, morning), "Sorvel Developer - 表");
  EXPECT_EQ(session.Cut(renamed)["path"], session.Path("work/映画/本編/ソ夜.cut"));
  EXPECT_EQ(session.Cut(renamed)["title"], "ソ夜.cut");
  EXPECT_EQ(session.Cut(renamed)["currentFrame"], 1);
  EXPECT_EQ(Lines(session, deleted), (Names{"構001", "ソ夜", "能"}));
  EXPECT_EQ(OpenFlags(session, deleted), (std::vector<bool>{false, true, false}));
  EXPECT_EQ(WindowPaths(session, deleted), Names{"work/映画/本編/ソ夜.cut"});
  EXPECT_EQ(Film(session, evening)["path"], session.Path("work/素材/十.flm"));
  EXPECT_EQ(Film(session, evening)["modified"], false);
  EXPECT_EQ(FrameTitle(session, evening), "Sorvel Developer - 十");
  CutFile second = Second();
  second.frames[1].comment = Stored("空");
  Tree secondDay = firstDay;
  secondDay.erase("映画/本編/構002.cut");
  secondDay.erase("映画/本編/構003.cut");
  secondDay["映画/本編/ソ夜.cut"] = second.Bytes();
  secondDay["素材/十.flm"] = kTitle + Stored("\n作者\n8, 3\n../映画/本編/構001.cut\n../映画/本編/ソ夜.cut\n能.cut\n");
  secondDay["渡/表.flm"] = kTitle + Stored("\n作者\n8, 3\nソ夜.cut\n能.cut\n");
  secondDay["渡/ソ夜.cut"] = second.Bytes();
  secondDay["渡/能.cut"] = StockWithComment().Bytes();
  EXPECT_EQ(session.Setting("setup", "film"), session.Path("") + Stored("work/素材/十.flm"));
  ExpectTree(TreeOf(session, "work"), secondDay);

  // The film that was handed over, its cut changed there: the original isn't touched.
  session.Restart();
  const int start = session.State();
  session.File("work/渡/表.flm").Command(kCommandOpenFilm).DoubleClick(kCutList, 0);
  session.Command(kCommandBlankCell).Answer("yes").Close();
  session.Dialog(kFilmDialog, {{kFilmWidthEdit, "16"}, {kFilmAuthorEdit, "ソ"}}).Command(kCommandFilmProperties);
  session.Command(kCommandOverwriteFilm).Dialog(kFilmDialog, {}).Command(kCommandNewFilm);
  const int fresh = session.State();
  session.Exit().Run();
  EXPECT_EQ(Lines(session, start), (Names{"構001", "ソ夜", "能"}));
  EXPECT_EQ(Film(session, fresh)["title"], "表の空");
  EXPECT_EQ(Film(session, fresh)["author"], "作者");
  EXPECT_EQ(Film(session, fresh)["width"], 8);
  EXPECT_EQ(Film(session, fresh)["path"], "");
  second.frames[1].records[0].cell = -1;
  Tree thirdDay = secondDay;
  thirdDay["渡/表.flm"] = kTitle + Stored("\nソ\n16, 3\nソ夜.cut\n能.cut\n");
  thirdDay["渡/ソ夜.cut"] = second.Bytes();
  EXPECT_EQ(session.Setting("setup", "film"), "");
  ExpectTree(TreeOf(session, "work"), thirdDay);
}

// ---------------------------------------------------------------------------------------------------------------------
// Adding, inserting and removing.

class UnsavedCutForTheFilm : public SessionTest, public testing::WithParamInterface<int> {};

TEST_P(UnsavedCutForTheFilm, WhoseFileDoesNotOpenStaysOut) {
  OpenFilm(session, {"a.cut"}).NewCut().File("none/b.cut").Command(GetParam());
  EXPECT_TRUE(Holds(session, "film/cuts/*/name", Names{"a.cut"}, "panels/cuts/lines", Names{"a"}, "film/modified",
                    false, "cut/path", ""));
}

INSTANTIATE_TEST_SUITE_P(Film, UnsavedCutForTheFilm, testing::Values(kCommandAddCutToFilm, kCommandInsertCutIntoFilm));

class CutForTheFilm : public SessionTest, public testing::WithParamInterface<int> {};

TEST_P(CutForTheFilm, WithAPathIsNotSavedThoughItIsModified) {
  OpenFilm(session, {"a.cut"}).OpenCut("b.cut", CutFile::Showing({1}, {0})).Command(kCommandBlankCell);
  session.Command(GetParam());
  EXPECT_TRUE(Holds(session, "film/cuts/#", 2, "cut/modified", true));
  EXPECT_EQ(session.Bytes("b.cut"), CutFile::Showing({1}, {0}).Bytes());
}

TEST_P(CutForTheFilm, NeedsAnOpenCut) {
  OpenFilm(session, {"a.cut"}).Command(GetParam());
  EXPECT_TRUE(Holds(session, "film/cuts/*/name", Names{"a.cut"}, "film/modified", false));
}

INSTANTIATE_TEST_SUITE_P(Film, CutForTheFilm, testing::Values(kCommandAddCutToFilm, kCommandInsertCutIntoFilm));

const Rules<SessionTest, "FilmEntries"> kFilmEntriesRules = {
    {"InsertedUnsavedCutIsSavedFirst",
     OpenFilm(Do(), {"a.cut"}).NewCut({.width = 8, .height = 3}).Panel(kCommentEdit, "予").File("ソ"),
     Do().Command(kCommandInsertCutIntoFilm),
     Has("entries", "ソ.cut a.cut", "lines", "ソ a", "lines/caret", 0, "cut/title", "ソ.cut", "cut/modified", false,
         "bytes/ソ.cut",
         CutFile{.layers = {{.name = "A", .cells = {0}}},
                 .frames = {{.comment = Stored("予"), .records = {{.cell = 0}}}}}
             .Bytes())},
    // The cut's first line is selected already, so the selection stays; the caret goes to the new line.
    {"CutAddedTwiceLeavesASelectionThatHoldsItsFirstLine",
     OpenFilm(Do(), {"a.cut", "b.cut"}).Open("a.cut").Select(kCutList, {0, 1}).Command(kCommandAddCutToFilm),
     Has("lines", "a b a", "lines/selected", "0 1", "lines/caret", 2)},
    {"CutAddedTwiceHasItsFirstLineSelected",
     OpenFilm(Do(), {"a.cut", "b.cut"}).Open("a.cut").Select(kCutList, {1}).Command(kCommandAddCutToFilm),
     Has("entries", "a.cut b.cut a.cut", "entries/open", "true false true", "lines/selected", "0")},
    {"AddedLineIsTheOnlySelectedOne",
     OpenFilm(Do(), {"a.cut", "b.cut", "c.cut"}).OpenCut("表.cut", PlainCut()).Select(kCutList, {2, 0}),
     Do().Command(kCommandAddCutToFilm),
     Has("entries", "a.cut 表.cut b.cut c.cut", "lines/selected", "1", "lines/caret", 1)},
    {"InsertWithACancelledSaveInsertsNothing",
     OpenFilm(Do(), {"a.cut"}).NewCut().File("cancel").Command(kCommandInsertCutIntoFilm),
     Has("entries", "a.cut", "lines", "a", "film/modified", false, "files", "a.cut film.flm")},
    {"RemovedOneByOneAndAddedAgain",
     OpenFilmFile(Do(), kFilmHead + "a.cut\nb.cut\na.cut\n").OpenCut("a.cut", PlainCut()),
     Do().Command(kCommandRemoveCutFromFilm), Has("entries", "b.cut a.cut", "lines", "b a"),
     Do().Command(kCommandRemoveCutFromFilm), Has("entries", "b.cut", "lines", "b"),
     Do().Command(kCommandRemoveCutFromFilm).Select(kCutList, {0}),
     Do().Commands({kCommandInsertCutIntoFilm, kCommandOverwriteFilm}),
     Has("bytes/film.flm", kFilmHead + "a.cut\nb.cut\n", "bytes/a.cut", PlainCut().Bytes())},
    {"LeavesANewFilmWithoutLinesAndItsWindowsOpen",
     OpenFilm(Do(), {"a.cut", "b.cut"}).Open("b.cut").Dialog(kFilmDialog, {}).Command(kCommandNewFilm),
     // None of these has an entry to work on, and none asks.
     Do().Commands({kCommandRemoveCutFromFilm, kCommandDeleteCuts, kCommandRenameCut}),
     Has("entries", "", "windows", "b.cut"),
     Do().Command(kCommandAddCutToFilm).File("new").Command(kCommandOverwriteFilm),
     Has("bytes/new.flm", "\n\n320, 240\nb.cut\n", "bytes/film.flm", kFilmHead + "a.cut\nb.cut\n")},
};

// ---------------------------------------------------------------------------------------------------------------------
// The link between an entry and an open cut.

const Rules<SessionTest, "FilmLink"> kFilmLinkRules = {
    {"CutSavedUnderAnotherNameStaysBehindItsOldEntry",
     OpenFilm(Do(), {"a.cut", "b.cut"}).Open("a.cut").SaveCutAs("表.cut"),
     Has("entries", "a.cut b.cut", "entries/open", "true false", "film/modified", false),
     Do().Open("b.cut").DoubleClick(kCutList, 0), Has("windows", "表.cut b.cut", "cut/path", "表.cut"), Do().Close(),
     Has("entries/open", "false true"), Do().DoubleClick(kCutList, 0),
     Has("windows", "b.cut a.cut", "bytes/表.cut", Credited("a.cut").Bytes(), "bytes/a.cut",
         Credited("a.cut").Bytes())},
    {"FilmOpenedAgainKnowsNoneOfTheOpenCuts", OpenFilm(Do(), {"a.cut", "b.cut"}).Open("a.cut").Open("film.flm"),
     Has("entries/open", "false false"), Do().Command(kCommandRemoveCutFromFilm), Has("entries", "a.cut b.cut"),
     Do().Select(kCutList, {0}).RenameCut("表"),
     Has("entries", "表.cut b.cut", "windows", "a.cut", "cut/title", "a.cut"),
     Do().Command(kCommandOverwriteCut).DoubleClick(kCutList, 0),
     Has("windows", "a.cut 表.cut", "entries/open", "true false"),
     // The window still writes to its own path.
     Has("files", "a.cut b.cut film.flm 表.cut", "bytes/a.cut", Credited("a.cut").Bytes(), "bytes/表.cut",
         Credited("a.cut").Bytes())},
    {"RenameTakesACutThatWasSavedUnderAnotherNameAlong",
     OpenFilm(Do(), {"a.cut", "b.cut"}).Open("a.cut").SaveCutAs("表.cut").Select(kCutList, {0}).RenameCut("ソ"),
     Has("entries", "ソ.cut b.cut", "cut/path", "ソ.cut", "cut/title", "ソ.cut", "files",
         "b.cut film.flm ソ.cut 表.cut")},
    {"DeleteInAFilmOpenedAgainLeavesTheWindow",
     OpenFilm(Do(), {"a.cut", "b.cut"}).Open("a.cut").Open("film.flm").Select(kCutList, {0}).Answer("yes"),
     Do().Command(kCommandDeleteCuts), Has("entries", "b.cut", "windows", "a.cut", "files", "b.cut film.flm")},
    {"IsByTheBytesOfThePath",
     Do().Write("film.flm", FilmText({"./a.cut", "A.cut", "a.cut"})).Write("A.cut", Credited("upper").Bytes()),
     Do().Open("film.flm").OpenCut("a.cut", PlainCut()), Has("entries/open", "false false true"),
     Do().DoubleClick(kCutList, 0),
     Has("entries/open", "true false true", "windows", "a.cut ./a.cut", "lines", "a A a")},
    {"DoubleClickOnAnOpenCutCommitsTheOneThatIsLeft",
     OpenFilm(Do(), {"表.cut", "b.cut"}).DoubleClick(kCutList, 0).DoubleClick(kCutList, 1).Panel(kCommentEdit, "ソ"),
     Do().DoubleClick(kCutList, 0),
     Has("cut/path", "表.cut", "cuts/1/modified", true, "cuts/1/frames/0/comment", "ソ", "panels/comment", "",
         "lines/selected", "0")},
    {"CutThatIsNoCutFileOpensNothing",
     OpenFilm(Do(), {"a.cut"}).Write("a.cut", "Sorvelin Layer").DoubleClick(kCutList, 0),
     Has("cuts/#", 0, "entries/open", "false", "bytes/a.cut", "Sorvelin Layer")},
    {"CutClosedAndSavedOpensAgainFromItsLine",
     OpenFilm(Do(), {"能.cut"}).Write("能.cut", CutFile::Showing({1}, {0}).Bytes()).DoubleClick(kCutList, 0),
     Do().Command(kCommandBlankCell).Answer("yes").Close(), Has("entries/open", "false"), Do().DoubleClick(kCutList, 0),
     Has("entries/open", "true", "cut/frame/records/0/cell", -1, "bytes/能.cut", CutFile::Showing({1}, {-1}).Bytes())},
};

// ---------------------------------------------------------------------------------------------------------------------
// Renaming.

using FilmRename = SessionTest;

TEST_F(FilmRename, IntoAFolderMovesTheFile) {
  MakeFolder(session, "表");
  OpenFilm(session, {"a.cut"}).DoubleClick(kCutList, 0).RenameCut("表/ソ").Command(kCommandOverwriteFilm);
  EXPECT_TRUE(Holds(session, "entries", "表/ソ.cut", "lines", "表/ソ", "cut/title", "ソ.cut"));
  session.File("film.flm").Command(kCommandOpenFilm);
  EXPECT_TRUE(Holds(session, "lines", "ソ", "exists/a.cut", false, "bytes/表/ソ.cut", Credited("a.cut").Bytes(),
                    "bytes/film.flm", kFilmHead + Stored("表/ソ.cut\n")));
}

const Rules<SessionTest, "FilmRename"> kFilmRenameRules = {
    {"ToAnEmptyNameLeavesTheExtension", OpenFilm(Do(), {"a.cut"}).RenameCut("").Command(kCommandOverwriteFilm),
     Has("entries", ".cut", "lines", Names{""}), Do().File("film.flm").Command(kCommandOpenFilm),
     Has("entries", ".cut", "lines", Names{""}, "files", ".cut film.flm", "bytes/film.flm", kFilmHead + ".cut\n")},
    {"ModifiedCutKeepsItsOldBytesUntilItIsSaved", OpenFilm(Do(), {"a.cut"}),
     Do().Write("a.cut", CutFile{.layers = {{.name = "A", .cells = {1, 2}}},
                                 .frames = {{.records = {{.cell = 0}}}, {.records = {{.cell = 1}}}}}
                             .Bytes()),
     Do().Write("a.ca", "stream").DoubleClick(kCutList, 0).Command(kCommandBlankCell).RenameCut("表"),
     Has("bytes/表.cut",
         CutFile{.layers = {{.name = "A", .cells = {1, 2}}},
                 .frames = {{.records = {{.cell = 0}}}, {.records = {{.cell = 1}}}}}
             .Bytes(),
         "cut/modified", true),
     // Only the cut's own file is renamed.
     Has("files", "a.ca film.flm 表.cut")},
    // From then on the two entries are of one name.
    {"EntriesOfOneNameAreRenamedTogether",
     OpenFilm(Do(), {"b.cut"}).Write("film.flm", kFilmHead + "b.cut\nb.cut\n").Select(kCutList, {1}).RenameCut("ソ"),
     Has("entries", "ソ.cut ソ.cut", "lines", "ソ ソ", "files", "film.flm ソ.cut", "bytes/ソ.cut",
         Credited("b.cut").Bytes())},
    {"OverwriteAfterItGoesToTheNewName",
     OpenFilm(Do(), {"a.cut"}).Write("a.cut", CutFile::Showing({1, 2}, {0, 1}).Bytes()).DoubleClick(kCutList, 0),
     Do().Command(kCommandBlankCell).RenameCut("表").Command(kCommandOverwriteCut),
     Has("files", "film.flm 表.cut", "bytes/表.cut", CutFile::Showing({1, 2}, {0, -2}).Bytes())},
    {"OntoTheNameOfAnotherCutChangesNothing", OpenFilm(Do(), {"a.cut", "b.cut"}).RenameCut("b"),
     Has("entries", "a.cut b.cut", "lines", "a b", "bytes/b.cut", Credited("b.cut").Bytes(), "bytes/a.cut",
         Credited("a.cut").Bytes())},
    {"NameMayHoldADot", OpenFilm(Do(), {"a.cut"}).RenameCut("表.2").Command(kCommandOverwriteFilm).File("film.flm"),
     Do().Command(kCommandOpenFilm),
     Has("lines", "表.2", "files", "film.flm 表.2.cut", "bytes/film.flm", kFilmHead + Stored("表.2.cut\n"))},
    {"ToTheSameNameOfACutThatIsListedTwiceAsksOnceAndChangesNothing",
     OpenFilm(Do(), {"表.cut"}).Write("film.flm", kFilmHead + Stored("表.cut\n表.cut\n")).Select(kCutList, {0}),
     Do().RenameCut("表"), Has("entries", "表.cut 表.cut", "film/modified", false, "files", "film.flm 表.cut")},
    {"ChangesTheFilmFileOnlyWhenTheFilmIsSaved",
     OpenFilm(Do(), {"a.cut"}).RenameCut("b").Answer("no").File("film.flm").Command(kCommandOpenFilm),
     Has("entries", "a.cut"), Do().DoubleClick(kCutList, 0),
     Has("bytes/film.flm", kFilmHead + "a.cut\n", "cuts/#", 0, "files", "b.cut film.flm")},
};

// ---------------------------------------------------------------------------------------------------------------------
// Deleting.

class DeleteBesideOpenCuts : public SessionTest, public testing::WithParamInterface<int> {};

// Another window comes to the front when the one of the deleted cut goes.
TEST_P(DeleteBesideOpenCuts, TakesTheSelectedCutAlone) {
  const Names cuts = {"a.cut", "表.cut", "c.cut", "d.cut"};
  OpenFilm(session, cuts);
  for (const std::string& cut : cuts) session.Open(session.Path(cut));
  session.Activate(GetParam()).Select(kCutList, {GetParam()}).Answer("yes").Command(kCommandDeleteCuts);
  const int state = session.State();
  session.Run();
  Names left = cuts;
  left.erase(left.begin() + GetParam());
  Names lines;
  for (const std::string& cut : left) lines.push_back(cut.substr(0, cut.size() - 4));
  EXPECT_EQ(Entries(session, state), left);
  EXPECT_EQ(Lines(session, state), lines);
  EXPECT_EQ(WindowPaths(session, state), left);
  EXPECT_EQ(OpenFlags(session, state), std::vector<bool>(3, true));
  for (size_t i = 0; i < cuts.size(); ++i) {
    EXPECT_EQ(session.Exists(cuts[i]), static_cast<int>(i) != GetParam()) << cuts[i];
  }
}

INSTANTIATE_TEST_SUITE_P(Film, DeleteBesideOpenCuts, testing::Range(0, 4));

const Rules<SessionTest, "FilmDelete"> kFilmDeleteRules = {
    {"OfTheFilmsAllOpenCutsClosesEveryWindowOfThem",
     OpenFilm(Do(), {"a.cut", "表.cut", "c.cut"}).OpenCut("other.cut", PlainCut()),
     Do().Open("a.cut").Open("表.cut").Open("c.cut").Select(kCutList, {0, 1, 2}).Answer("yes"),
     Do().Command(kCommandDeleteCuts),
     Has("entries", "", "lines", "", "windows", "other.cut", "files", "film.flm other.cut")},
    {"OfOneOfTwoEntriesOfAnOpenCutLeavesTheOtherClosed",
     OpenFilmFile(Do(), kFilmHead + Stored("表.cut\nb.cut\n表.cut\n")).OpenCut("表.cut", CutFile::Showing({1}, {0})),
     Do().Command(kCommandBlankCell).Select(kCutList, {2}).Answer("yes").Command(kCommandDeleteCuts),
     Has("entries", "表.cut b.cut", "lines", "表 b", "entries/open", "false false", "cuts/#", 0),
     Do().DoubleClick(kCutList, 0), Has("cuts/#", 0, "files", "film.flm")},
    {"OfBothEntriesOfAnOpenCut",
     OpenFilmFile(Do(), kFilmHead + Stored("表.cut\nb.cut\n表.cut\n")).OpenCut("表.cut", CutFile::Showing({1}, {0})),
     Do().Command(kCommandBlankCell).Select(kCutList, {0, 2}).Answer("yes").Command(kCommandDeleteCuts),
     Has("entries", "b.cut", "lines", "b", "cuts/#", 0), Do().Command(kCommandOverwriteFilm),
     Has("files", "film.flm", "bytes/film.flm", kFilmHead + "b.cut\n")},
    {"WithoutTheFileTheOpenCutCanBeAddedAgain",
     OpenFilm(Do(), {"a.cut", "表.cut"}).OpenCut("a.cut", CutFile::Showing({1}, {0})).Command(kCommandBlankCell),
     Do().Select(kCutList, {0}).Answer("no").Command(kCommandDeleteCuts).Select(kCutList, {0}),
     Do().Command(kCommandAddCutToFilm),
     Has("entries", "表.cut a.cut", "entries/open", "false true", "cut/modified", true, "bytes/a.cut",
         CutFile::Showing({1}, {0}).Bytes())},
    {"OfACutWithAnotherExtensionTakesTheStreamOfItsName",
     Do().Write("film.flm", kFilmHead + Stored("表.dat\n")).Write("表.dat", PlainCut().Bytes()),
     Do().Write("表.cut", PlainCut().Bytes()).Write("表.ca", "stream").Open("film.flm").Answer("yes"),
     Do().Command(kCommandDeleteCuts), Has("files", "film.flm 表.cut")},
};

// ---------------------------------------------------------------------------------------------------------------------
// Extracting.

using FilmExtract = SessionTest;

TEST_F(FilmExtract, WithNothingSelectedHasTheHeadAlone) {
  ScriptSession target;
  OpenFilm(session, {"a.cut"}).Answer("no").Command(kCommandDeleteCuts).File(target.Path("表"));
  session.Command(kCommandExtractCuts).Run();
  EXPECT_EQ(target.Files(), Names{"表.flm"});
  EXPECT_EQ(target.Bytes("表.flm"), kFilmHead);
}

TEST_F(FilmExtract, OverAnOldFilmAndOldCutsReplacesThem) {
  ScriptSession target;
  target.Write("x.flm", std::string(1000, 'x'));
  target.Write("表.cut", std::string(1000, 'x'));
  target.Write("b.cut", "stays");
  OpenFilm(session, {"表.cut", "b.cut"}).Select(kCutList, {0}).File(target.Path("x.flm")).Command(kCommandExtractCuts);
  session.Run();
  EXPECT_EQ(target.Files(), (Names{"b.cut", "x.flm", "表.cut"}));
  EXPECT_EQ(target.Bytes("x.flm"), kFilmHead + Stored("表.cut\n"));
  EXPECT_EQ(target.Bytes("表.cut"), Credited(Stored("表.cut")).Bytes());
  EXPECT_EQ(target.Bytes("b.cut"), "stays");
}

TEST_F(FilmExtract, DoesNotTakeStreamsOrTypedTextAlong) {
  ScriptSession target;
  OpenFilm(session, {"表.cut"});
  session.Write("表.ca", "stream");
  session.DoubleClick(kCutList, 0).Panel(kCommentEdit, "ソ").File(target.Path("x.flm")).Command(kCommandExtractCuts);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(target.Files(), (Names{"x.flm", "表.cut"}));
  EXPECT_EQ(target.Bytes("表.cut"), Credited(Stored("表.cut")).Bytes());
  EXPECT_EQ(session.StateAt(state)["panels"]["10006"], "ソ");
}

TEST_F(FilmExtract, TakesTheTitlesOfTheFilmAsItIsNow) {
  ScriptSession target;
  OpenFilm(session, {"a.cut"})
      .Dialog(kFilmDialog, {{kFilmTitleEdit, "表"}, {kFilmAuthorEdit, "ソ"}, {kFilmWidthEdit, "7"}});
  session.Command(kCommandFilmProperties).File(target.Path("x.flm")).Command(kCommandExtractCuts);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(target.Bytes("x.flm"), Stored("表\nソ\n7, 50\na.cut\n"));
  EXPECT_EQ(Film(session, state)["modified"], true);
  EXPECT_EQ(session.Bytes("film.flm"), kFilmHead + "a.cut\n");
}

// ---------------------------------------------------------------------------------------------------------------------
// The film file.

using FilmFile = SessionTest;

TEST_F(FilmFile, WayUpInTheMiddleOfALineStays) {
  MakeFolder(session, "表");
  session.Write("a.cut", PlainCut().Bytes());
  OpenFilmFile(session, kFilmHead + Stored("表/../a.cut\n")).DoubleClick(kCutList, 0).Command(kCommandOverwriteFilm);
  EXPECT_EQ(Entries(session), Names{"表/../a.cut"});
  EXPECT_EQ(session.Cut()["path"], session.Path("表/../a.cut"));
  EXPECT_EQ(session.Bytes("film.flm"), kFilmHead + Stored("表/../a.cut\n"));
}

// A line that leads up to the root has nothing left that could be cut.
TEST_F(FilmFile, LineThatLeadsUpToTheRootIsAnEmptyName) {
  std::string way;
  const std::string path = session.Path("film.flm");
  for (const char character : path.substr(1)) {
    if (character == '/') way.append("../");
  }
  session.Write("film.flm", kFilmHead + way + "a.cut\nb.cut\n");
  session.Write("b.cut", PlainCut().Bytes());
  session.Open(path).DoubleClick(kCutList, 0);
  const int state = session.State();
  session.DoubleClick(kCutList, 1);
  const int other = session.State();
  EXPECT_EQ(Entries(session, state), (Names{"", "b.cut"}));
  EXPECT_EQ(Lines(session, state), (Names{"", "b"}));
  EXPECT_EQ(Windows(session, state).size(), 0U);
  EXPECT_EQ(WindowPaths(session, other), Names{"b.cut"});
}

const Rules<SessionTest, "FilmFile"> kFilmFileRules = {
    {"YesToTheQuestionBeforeAnotherFilmSavesToTheFilmsOwnPath",
     OpenFilm(Do(), {"表.cut"}).Write("other.flm", "T\nA\n1, 2\n").Dialog(kFilmDialog, {{kFilmTitleEdit, "ソ"}}),
     Do().Command(kCommandFilmProperties).Answer("yes").File("other.flm").Command(kCommandOpenFilm),
     Has("bytes/film.flm", Stored("ソ\nauthor\n100, 50\n表.cut\n"), "bytes/other.flm", "T\nA\n1, 2\n", "frame/title",
         "Sorvel Developer - other")},
    {"SaveUnderAnotherNameLeavesTheOldFileAndGoesOnWithTheNew",
     OpenFilm(Do(), {"a.cut"}).Dialog(kFilmDialog, {{kFilmTitleEdit, "表"}}).Command(kCommandFilmProperties).File("能"),
     Do().Command(kCommandSaveFilmAs).Dialog(kFilmDialog, {{kFilmTitleEdit, "ソ"}}),
     Do().Commands({kCommandFilmProperties, kCommandOverwriteFilm}),
     Has("bytes/film.flm", kFilmHead + "a.cut\n", "bytes/能.flm", Stored("ソ\nauthor\n100, 50\na.cut\n"), "frame/title",
         "Sorvel Developer - 能")},
};

}  // namespace
}  // namespace rules
