#include "foundation/settings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "foundation/paths.h"
#include "platform/files.h"
#include "platform/profile.h"
#include "support/test_document.h"

namespace sorvel {
namespace {

using testdoc::ReadFile;
using testdoc::TemporaryFolder;
using testdoc::WriteFile;

// A settings file of its own for one test.
class SettingsFile {
 public:
  SettingsFile() : path(folder_.Path("test.ini")) { UseSettingsFile(path.c_str()); }
  explicit SettingsFile(std::string_view bytes) : SettingsFile() { WriteFile(path, bytes); }
  SettingsFile(const SettingsFile&) = delete;
  SettingsFile& operator=(const SettingsFile&) = delete;
  ~SettingsFile() { UseSettingsFile(nullptr); }

  // The lines of the file without their line ends.
  std::vector<std::string> Lines() const {
    std::vector<std::string> lines(1);
    for (char c : ReadFile(path)) {
      if (c == '\n') {
        lines.emplace_back();
      } else if (c != '\r') {
        lines.back() += c;
      }
    }
    if (lines.back().empty()) lines.pop_back();
    return lines;
  }

 private:
  TemporaryFolder folder_;

 public:
  const std::string path;
};

std::string Text(const SettingKey& key) {
  char text[512];
  ReadSettingText(key, text, sizeof(text));
  return text;
}

using Lines = std::vector<std::string>;

// Every setting with its section, its name and its default; those with no text are numbers.
const struct {
  const SettingKey* key;
  const char* section;
  const char* name;
  const char* text;
  int32_t number = 0;
} kAllKeys[] = {
    {&settings::kFont, "setup", "font", "\x82\x6c\x82\x72 \x82\x6f\x83\x53\x83\x56\x83\x62\x83\x4e, 24, 12, 400"},
    {&settings::kBrush, "setup", "brush", "7, 0, 1, 0, 1, 0"},
    {&settings::kFilm, "setup", "film", ""},
    {&settings::kNewCutWidth, "OnNewCut", "width", nullptr, 240},
    {&settings::kNewCutHeight, "OnNewCut", "height", nullptr, 180},
    {&settings::kNewCutFps, "OnNewCut", "fps", nullptr, 24},
    {&settings::kNewCutAntialias, "OnNewCut", "anti", nullptr, 0},
    {&settings::kNewCutCredit, "OnNewCut", "credit", ""},
    {&settings::kNewFilmWidth, "OnNewFilm", "width", nullptr, 320},
    {&settings::kNewFilmHeight, "OnNewFilm", "height", nullptr, 240},
    {&settings::kNewFilmTitle, "OnNewFilm", "title", ""},
    {&settings::kNewFilmAuthor, "OnNewFilm", "author", ""},
    {&settings::kPasteTransparent, "OnClipTrans", "Flag", nullptr, 0},
    {&settings::kPasteTransparentColor, "OnClipTrans", "RGB", "#00ff00"},
};

TEST(Settings, SectionsAndKeysHaveTheirNames) {
  for (const auto& row : kAllKeys) {
    EXPECT_STREQ(row.key->section, row.section);
    EXPECT_STREQ(row.key->key, row.name);
  }
}

// What is not at its default, as "section.name=value".
Lines Changed() {
  Lines lines;
  for (const auto& row : kAllKeys) {
    const bool isNumber = row.text == nullptr;
    const std::string value = isNumber ? std::to_string(ReadSettingNumber(*row.key)) : Text(*row.key);
    if (value == (isNumber ? std::to_string(row.number) : row.text)) continue;
    lines.push_back(std::string(row.section) + "." + row.name + "=" + value);
  }
  return lines;
}

// A file of these lines changes exactly these settings.
void ExpectFile(const char* rule, const Lines& lines, const Lines& changed, const char* lineEnd = "\r\n") {
  std::string bytes;
  for (const std::string& line : lines) bytes += line + lineEnd;
  const SettingsFile file(bytes);
  EXPECT_EQ(Changed(), changed) << rule;
}

void ExpectDefaults() {
  EXPECT_EQ(Changed(), Lines());
}

TEST(Settings, MissingFileGivesTheDefaults) {
  SettingsFile file;
  ExpectDefaults();
  EXPECT_FALSE(platform::PathExists(file.path.c_str()));
}

TEST(Settings, MissingFolderGivesTheDefaults) {
  UseSettingsFile("/nowhere/at/all/test.ini");
  ExpectDefaults();
  WriteSettingNumber(settings::kNewCutWidth, 5);
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutWidth), 240);
  UseSettingsFile(nullptr);
}

TEST(Settings, EmptyFileGivesTheDefaults) {
  SettingsFile file("");
  ExpectDefaults();
}

TEST(Settings, FilesAreRead) {
  ExpectFile("MissingKeyGivesItsDefault", {"[OnNewCut]", "width=99", "[setup]"}, {"OnNewCut.width=99"});
  ExpectFile("ValuesAreReadFromTheirOwnSection",
             {"[OnNewFilm]", "width=1", "[OnNewCut]", "width=2", "[Other]", "width=3", "fps=4"},
             {"OnNewCut.width=2", "OnNewFilm.width=1"});
  ExpectFile("KeyAheadOfAnySectionIsNotFound", {"width=7", "[OnNewCut]", "height=8"}, {"OnNewCut.height=8"});
  ExpectFile("KeyIsNotFoundByAPartOfItsName",
             {"[OnNewCut]", "widths=1", "widt=2", " xwidth=3", "[OnNewCuts]", "height=4", "[OnNewCu]", "fps=5"}, {});
  ExpectFile("BlanksAroundKeysAndValuesDoNotCount", {"  [OnNewCut]  ", "\t width  =\t 55 \t", "  credit =  some one  "},
             {"OnNewCut.width=55", "OnNewCut.credit=some one"});
  ExpectFile("SectionsAndKeysCompareWithoutCase", {"[ONNEWCUT]", "WIDTH=55", "[onnewfilm]", "TiTlE=abc"},
             {"OnNewCut.width=55", "OnNewFilm.title=abc"});
  ExpectFile("ValueKeepsItsCase", {"[setup]", "film=C:\\Films\\One.FLM"}, {"setup.film=C:\\Films\\One.FLM"});
  ExpectFile("FileMayHaveBareLineFeeds", {"[OnNewCut]", "width=1", "height=2", "", "[OnNewFilm]", "width=3"},
             {"OnNewCut.width=1", "OnNewCut.height=2", "OnNewFilm.width=3"}, "\n");
  ExpectFile("OnePairOfQuotesIsTakenOff",
             {"[OnNewFilm]", "title=\"  spaced  \"", "author='single'", "[OnNewCut]", "credit=\"\"twice\"\"", "[setup]",
              "brush=\"\""},
             {"setup.brush=", "OnNewCut.credit=\"twice\"", "OnNewFilm.title=  spaced  ", "OnNewFilm.author=single"});
  ExpectFile("QuotesThatAreNoPairStay",
             {"[OnNewFilm]", "title=\"half", "author=half\"", "[OnNewCut]", "credit=\"", "[setup]", "film=\"a'"},
             {"setup.film=\"a'", "OnNewCut.credit=\"", "OnNewFilm.title=\"half", "OnNewFilm.author=half\""});
  ExpectFile("OnlyTheFirstEqualsSignSeparates", {"[setup]", "film=a=b;c=d"}, {"setup.film=a=b;c=d"});
  ExpectFile("EmptyValueIsNotAMissingKey", {"[setup]", "brush=", "[OnClipTrans]", "RGB=   "},
             {"setup.brush=", "OnClipTrans.RGB="});
  ExpectFile("CommentedLinesDoNotCount", {"[OnNewCut]", ";width=1", "  ; width=2", "height=3", ";[OnNewFilm]", "fps=4"},
             {"OnNewCut.height=3", "OnNewCut.fps=4"});
  ExpectFile("NumbersMayBeNegative", {"[OnNewCut]", "width=-12"}, {"OnNewCut.width=-12"});
  ExpectFile("NumberEndsWhereOtherTextBegins", {"[OnNewCut]", "width=12abc", "height=34, 56", "fps=7.9", "anti=2 x"},
             {"OnNewCut.width=12", "OnNewCut.height=34", "OnNewCut.fps=7", "OnNewCut.anti=2"});
  ExpectFile("TextThatBeginsWithNoNumberIsZero", {"[OnNewCut]", "width=abc", "height=-", "fps=x5"},
             {"OnNewCut.width=0", "OnNewCut.height=0", "OnNewCut.fps=0"});
}

TEST(Settings, FileMayEndWithoutALineEnd) {
  const SettingsFile file("[OnNewCut]\nwidth=1\n\n[OnNewFilm]\nwidth=3");
  EXPECT_EQ(Changed(), Lines({"OnNewCut.width=1", "OnNewFilm.width=3"}));
}

TEST(Settings, TextIsCutToTheBuffer) {
  SettingsFile file("[OnNewCut]\r\ncredit=" + std::string(300, 'c') + "\r\n");
  char text[81];
  text[80] = 'x';
  ReadSettingText(settings::kNewCutCredit, text, 80);
  EXPECT_EQ(text, std::string(79, 'c'));
  EXPECT_EQ(text[80], 'x');
  ReadSettingText(settings::kNewCutCredit, text, 1);
  EXPECT_STREQ(text, "");
}

TEST(Settings, DefaultIsCutToTheBufferToo) {
  SettingsFile file;
  char text[8];
  ReadSettingText(settings::kPasteTransparentColor, text, 8);
  EXPECT_STREQ(text, "#00ff00");
  ReadSettingText(settings::kPasteTransparentColor, text, 4);
  EXPECT_STREQ(text, "#00");
}

TEST(Settings, LongLinesAreRead) {
  const std::string longText(20000, 'p');
  SettingsFile file("[setup]\r\nnoise=" + longText + "\r\nfilm=" + longText + "\r\nbrush=1, 2\r\n");
  std::vector<char> text(30000, 'x');
  ReadSettingText(settings::kFilm, text.data(), text.size());
  EXPECT_EQ(text.data(), longText);
  EXPECT_EQ(Text(settings::kBrush), "1, 2");
}

// A number that is written into a file of these bytes leaves these lines, and can be read again.
void ExpectWrite(const char* rule, const char* bytes, const SettingKey& key, int32_t value, const Lines& lines) {
  const SettingsFile file;
  if (bytes != nullptr) WriteFile(file.path, bytes);
  WriteSettingNumber(key, value);
  EXPECT_EQ(file.Lines(), lines) << rule;
  EXPECT_EQ(ReadSettingNumber(key), value) << rule;
}

TEST(Settings, WritesLeaveTheirLines) {
  using namespace settings;
  ExpectWrite("FirstWriteMakesTheFile", nullptr, kNewCutWidth, 320, {"[OnNewCut]", "width=320"});
  ExpectWrite("WriteReplacesTheValueInPlace", "[OnNewCut]\r\nwidth=1\r\nheight=2\r\n[OnNewFilm]\r\nwidth=3\r\n",
              kNewCutWidth, 100, {"[OnNewCut]", "width=100", "height=2", "[OnNewFilm]", "width=3"});
  ExpectWrite("NewKeyOfTheLastSectionIsAppendedToTheFile", "[OnNewFilm]\r\nwidth=3\r\n[OnNewCut]\r\nwidth=1",
              kNewCutFps, 30, {"[OnNewFilm]", "width=3", "[OnNewCut]", "width=1", "fps=30"});
  ExpectWrite("NewKeyOfAnEmptySectionComesBehindItsHead", "[OnNewCut]\r\n[OnNewFilm]\r\nwidth=3\r\n", kNewCutFps, 30,
              {"[OnNewCut]", "fps=30", "[OnNewFilm]", "width=3"});
  ExpectWrite("CommentedKeyIsNotOverwritten", "[OnNewCut]\r\n;width=1\r\n", kNewCutWidth, 2,
              {"[OnNewCut]", ";width=1", "width=2"});
  for (const int32_t number : {-7, 2147483647, 0}) {
    ExpectWrite("NumbersAreWrittenAsDecimals", "[OnNewCut]\r\nwidth=1\r\n", kNewCutWidth, number,
                {"[OnNewCut]", "width=" + std::to_string(number)});
  }
}

TEST(Settings, EveryKeyReadsBackWhatWasWritten) {
  SettingsFile file;
  for (const auto& row : kAllKeys) WriteSettingText(*row.key, (std::string("value of ") + row.name).c_str());
  for (const auto& row : kAllKeys) EXPECT_EQ(Text(*row.key), std::string("value of ") + row.name);
}

TEST(Settings, ShiftJisTextReadsBackByteForByte) {
  SettingsFile file;
  const char text[] = "\x83\x5c\x95\x5c\x81\x5b \xb1\xb2\xfc\x4b x\x83\x7c";
  WriteSettingText(settings::kNewFilmTitle, text);
  EXPECT_EQ(Text(settings::kNewFilmTitle), text);
}

TEST(Settings, WriteFindsItsKeyWithoutCase) {
  SettingsFile file("[ONNEWCUT]\r\nWIDTH = 1\r\n");
  WriteSettingNumber(settings::kNewCutWidth, 100);
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutWidth), 100);
  EXPECT_EQ(file.Lines().size(), 2u);
}

TEST(Settings, WriteLeavesCommentsBlankLinesAndForeignKeysIntact) {
  const Lines before = {"; first", "",           "[Other]", "a = \"b\"", "  ; second",
                        "",        "[OnNewCut]", "; third", "height =2", "nonsense",
                        "width=1", "",           "",        "[Last]",    "z=1"};
  std::string bytes;
  for (const std::string& line : before) bytes += line + "\r\n";
  SettingsFile file(bytes);
  WriteSettingNumber(settings::kNewCutWidth, 9);
  Lines after = before;
  after[10] = "width=9";
  EXPECT_EQ(file.Lines(), after);
}

TEST(Settings, NewKeyIsAppendedToItsSection) {
  SettingsFile file("[OnNewCut]\r\nwidth=1\r\n\r\n[OnNewFilm]\r\nwidth=3\r\n");
  WriteSettingNumber(settings::kNewCutFps, 30);
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutFps), 30);
  Lines lines = file.Lines();
  std::erase(lines, "");
  EXPECT_EQ(lines, Lines({"[OnNewCut]", "width=1", "fps=30", "[OnNewFilm]", "width=3"}));
  EXPECT_EQ(file.Lines().size(), 6u);
}

TEST(Settings, NewSectionIsAppendedToTheFile) {
  SettingsFile file("[OnNewCut]\r\nwidth=1");
  WriteSettingNumber(settings::kPasteTransparent, 1);
  Lines lines = file.Lines();
  std::erase(lines, "");
  EXPECT_EQ(lines, Lines({"[OnNewCut]", "width=1", "[OnClipTrans]", "Flag=1"}));
}

TEST(Settings, NothingIsCached) {
  SettingsFile file("[OnNewCut]\r\nwidth=1\r\n");
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutWidth), 1);
  WriteFile(file.path, "[OnNewCut]\r\nwidth=2\r\n");
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutWidth), 2);
  std::remove(file.path.c_str());
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutWidth), 240);
}

TEST(Settings, PathOfTheFileIsCopied) {
  SettingsFile file("[OnNewCut]\r\nwidth=1\r\n");
  std::string path = file.path;
  UseSettingsFile(path.c_str());
  path.assign(path.size(), 'x');
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutWidth), 1);
}

TEST(Settings, LiveBesideTheProgramUnderItsNameWithIni) {
  char program[kPathCapacity];
  char path[kPathCapacity];
  ASSERT_TRUE(platform::ProgramPath(program, sizeof(program)));
  ASSERT_TRUE(ChangeExtension(path, program, "ini"));
  ASSERT_FALSE(platform::PathExists(path));
  UseSettingsFile(nullptr);
  WriteSettingNumber(settings::kNewCutWidth, 77);
  EXPECT_TRUE(platform::PathExists(path));
  EXPECT_EQ(platform::ReadProfileNumber(path, "OnNewCut", "width", 0), 77);
  std::remove(path);
}

TEST(Settings, RandomBytesNeverDisturb) {
  SettingsFile file;
  std::mt19937 random(1);
  const char* const pieces[] = {"[", "]",  "=",          "\r",    "\n",    "\"",   "'", ";",
                                " ", "\t", "[OnNewCut]", "width", "setup", "\r\n", "-", "99999999999999999999"};
  for (int32_t round = 0; round < 400; ++round) {
    std::string bytes;
    const auto length = random() % 120;
    for (auto i = length; i > 0; --i) {
      if (random() % 2 == 0) {
        bytes += static_cast<char>(random());
      } else {
        bytes += pieces[random() % std::size(pieces)];
      }
    }
    WriteFile(file.path, bytes);
    for (const auto& row : kAllKeys) {
      ReadSettingNumber(*row.key);
      char text[80];
      std::fill_n(text, sizeof(text), 'x');
      ReadSettingText(*row.key, text, sizeof(text));
      EXPECT_NE(std::find(text, text + sizeof(text), '\0'), text + sizeof(text));
    }
    WriteSettingNumber(settings::kNewCutWidth, round);
    ASSERT_EQ(ReadSettingNumber(settings::kNewCutWidth), round) << testing::PrintToString(bytes);
    WriteSettingText(settings::kNewFilmTitle, "title");
    ASSERT_EQ(Text(settings::kNewFilmTitle), "title") << testing::PrintToString(bytes);
    ASSERT_EQ(ReadSettingNumber(settings::kNewCutWidth), round) << testing::PrintToString(bytes);
  }
}

TEST(Settings, HugeNumbersDoNotDisturb) {
  SettingsFile file("[OnNewCut]\r\nwidth=99999999999999999999\r\nheight=-99999999999999999999\r\nfps=25\r\n");
  ReadSettingNumber(settings::kNewCutWidth);
  ReadSettingNumber(settings::kNewCutHeight);
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutFps), 25);
}

TEST(Settings, FolderInPlaceOfTheFileGivesTheDefaults) {
  TemporaryFolder folder;
  UseSettingsFile(folder.Path("").c_str());
  ExpectDefaults();
  WriteSettingNumber(settings::kNewCutWidth, 1);
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutWidth), 240);
  UseSettingsFile(nullptr);
}

TEST(Profile, WriteTellsWhetherItCouldBeDone) {
  TemporaryFolder folder;
  EXPECT_TRUE(WriteProfileText(folder.Path("a.ini").c_str(), "s", "k", "v"));
  EXPECT_FALSE(WriteProfileText(folder.Path("missing/a.ini").c_str(), "s", "k", "v"));
}

TEST(Profile, FallbackStandsForAMissingKey) {
  TemporaryFolder folder;
  const std::string path = folder.Path("a.ini");
  EXPECT_EQ(platform::ReadProfileNumber(path.c_str(), "s", "k", -3), -3);
  char text[8];
  platform::ReadProfileText(path.c_str(), "s", "k", "fall", text, sizeof(text));
  EXPECT_STREQ(text, "fall");
  WriteFile(path, "[s]\r\nother=1\r\n");
  EXPECT_EQ(platform::ReadProfileNumber(path.c_str(), "s", "k", -3), -3);
}

TEST(ParseColorText, RedIsTheLowByte) {
  uint32_t color = 1;
  EXPECT_TRUE(ParseColorText("#00ff00", &color));
  EXPECT_EQ(color, 0x00ff00u);
  EXPECT_TRUE(ParseColorText("#123456", &color));
  EXPECT_EQ(color, 0x563412u);
  EXPECT_TRUE(ParseColorText("#FFfe0A", &color));
  EXPECT_EQ(color, 0x0afeffu);
}

TEST(ParseColorText, OtherTextsAreRefused) {
  for (const char* text : {"", "#", "00ff00", "#00ff", "#xyzxyz", "#00fg00", "red"}) {
    uint32_t color = 0xabcdef;
    EXPECT_FALSE(ParseColorText(text, &color)) << text;
    EXPECT_EQ(color, 0xabcdefu) << text;
  }
}

}  // namespace
}  // namespace sorvel
