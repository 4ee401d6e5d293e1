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

const struct {
  const SettingKey* key;
  const char* section;
  const char* name;
} kAllKeys[] = {{&settings::kFont, "setup", "font"},
                {&settings::kBrush, "setup", "brush"},
                {&settings::kFilm, "setup", "film"},
                {&settings::kNewCutWidth, "OnNewCut", "width"},
                {&settings::kNewCutHeight, "OnNewCut", "height"},
                {&settings::kNewCutFps, "OnNewCut", "fps"},
                {&settings::kNewCutAntialias, "OnNewCut", "anti"},
                {&settings::kNewCutCredit, "OnNewCut", "credit"},
                {&settings::kNewFilmWidth, "OnNewFilm", "width"},
                {&settings::kNewFilmHeight, "OnNewFilm", "height"},
                {&settings::kNewFilmTitle, "OnNewFilm", "title"},
                {&settings::kNewFilmAuthor, "OnNewFilm", "author"},
                {&settings::kPasteTransparent, "OnClipTrans", "Flag"},
                {&settings::kPasteTransparentColor, "OnClipTrans", "RGB"}};

TEST(Settings, SectionsAndKeysHaveTheirNames) {
  for (const auto& row : kAllKeys) {
    EXPECT_STREQ(row.key->section, row.section);
    EXPECT_STREQ(row.key->key, row.name);
  }
}

void ExpectDefaults() {
  EXPECT_EQ(Text(settings::kFont), "\x82\x6c\x82\x72 \x82\x6f\x83\x53\x83\x56\x83\x62\x83\x4e, 24, 12, 400");
  EXPECT_EQ(Text(settings::kBrush), "7, 0, 1, 0, 1, 0");
  EXPECT_EQ(Text(settings::kFilm), "");
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutWidth), 240);
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutHeight), 180);
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutFps), 24);
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutAntialias), 0);
  EXPECT_EQ(Text(settings::kNewCutCredit), "");
  EXPECT_EQ(ReadSettingNumber(settings::kNewFilmWidth), 320);
  EXPECT_EQ(ReadSettingNumber(settings::kNewFilmHeight), 240);
  EXPECT_EQ(Text(settings::kNewFilmTitle), "");
  EXPECT_EQ(Text(settings::kNewFilmAuthor), "");
  EXPECT_EQ(ReadSettingNumber(settings::kPasteTransparent), 0);
  EXPECT_EQ(Text(settings::kPasteTransparentColor), "#00ff00");
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

TEST(Settings, MissingKeyGivesItsDefault) {
  SettingsFile file("[OnNewCut]\r\nwidth=99\r\n[setup]\r\n");
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutWidth), 99);
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutHeight), 180);
  EXPECT_EQ(Text(settings::kBrush), "7, 0, 1, 0, 1, 0");
}

TEST(Settings, ValuesAreReadFromTheirOwnSection) {
  SettingsFile file("[OnNewFilm]\r\nwidth=1\r\n[OnNewCut]\r\nwidth=2\r\n[Other]\r\nwidth=3\r\nfps=4\r\n");
  EXPECT_EQ(ReadSettingNumber(settings::kNewFilmWidth), 1);
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutWidth), 2);
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutFps), 24);
}

TEST(Settings, KeyAheadOfAnySectionIsNotFound) {
  SettingsFile file("width=7\r\n[OnNewCut]\r\nheight=8\r\n");
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutWidth), 240);
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutHeight), 8);
}

TEST(Settings, KeyIsNotFoundByAPartOfItsName) {
  SettingsFile file(
      "[OnNewCut]\r\nwidths=1\r\nwidt=2\r\n xwidth=3\r\n[OnNewCuts]\r\nheight=4\r\n[OnNewCu]\r\nfps=5\r\n");
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutWidth), 240);
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutHeight), 180);
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutFps), 24);
}

TEST(Settings, BlanksAroundKeysAndValuesDoNotCount) {
  SettingsFile file("  [OnNewCut]  \r\n\t width  =\t 55 \t\r\n  credit =  some one  \r\n");
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutWidth), 55);
  EXPECT_EQ(Text(settings::kNewCutCredit), "some one");
}

TEST(Settings, SectionsAndKeysCompareWithoutCase) {
  SettingsFile file("[ONNEWCUT]\r\nWIDTH=55\r\n[onnewfilm]\r\nTiTlE=abc\r\n");
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutWidth), 55);
  EXPECT_EQ(Text(settings::kNewFilmTitle), "abc");
}

TEST(Settings, ValueKeepsItsCase) {
  SettingsFile file("[setup]\r\nfilm=C:\\Films\\One.FLM\r\n");
  EXPECT_EQ(Text(settings::kFilm), "C:\\Films\\One.FLM");
}

TEST(Settings, FileMayHaveBareLineFeeds) {
  SettingsFile file("[OnNewCut]\nwidth=1\nheight=2\n\n[OnNewFilm]\nwidth=3");
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutWidth), 1);
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutHeight), 2);
  EXPECT_EQ(ReadSettingNumber(settings::kNewFilmWidth), 3);
}

TEST(Settings, OnePairOfQuotesIsTakenOff) {
  SettingsFile file(
      "[OnNewFilm]\r\ntitle=\"  spaced  \"\r\nauthor='single'\r\n[OnNewCut]\r\ncredit=\"\"twice\"\"\r\n"
      "[setup]\r\nfilm=\"\"\r\n");
  EXPECT_EQ(Text(settings::kNewFilmTitle), "  spaced  ");
  EXPECT_EQ(Text(settings::kNewFilmAuthor), "single");
  EXPECT_EQ(Text(settings::kNewCutCredit), "\"twice\"");
  EXPECT_EQ(Text(settings::kFilm), "");
}

TEST(Settings, QuotesThatAreNoPairStay) {
  SettingsFile file(
      "[OnNewFilm]\r\ntitle=\"half\r\nauthor=half\"\r\n[OnNewCut]\r\ncredit=\"\r\n[setup]\r\nfilm=\"a'\r\n");
  EXPECT_EQ(Text(settings::kNewFilmTitle), "\"half");
  EXPECT_EQ(Text(settings::kNewFilmAuthor), "half\"");
  EXPECT_EQ(Text(settings::kNewCutCredit), "\"");
  EXPECT_EQ(Text(settings::kFilm), "\"a'");
}

TEST(Settings, OnlyTheFirstEqualsSignSeparates) {
  SettingsFile file("[setup]\r\nfilm=a=b;c=d\r\n");
  EXPECT_EQ(Text(settings::kFilm), "a=b;c=d");
}

TEST(Settings, EmptyValueIsNotAMissingKey) {
  SettingsFile file("[setup]\r\nbrush=\r\n[OnClipTrans]\r\nRGB=   \r\n");
  EXPECT_EQ(Text(settings::kBrush), "");
  EXPECT_EQ(Text(settings::kPasteTransparentColor), "");
}

TEST(Settings, CommentedLinesDoNotCount) {
  SettingsFile file("[OnNewCut]\r\n;width=1\r\n  ; width=2\r\nheight=3\r\n;[OnNewFilm]\r\nfps=4\r\n");
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutWidth), 240);
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutHeight), 3);
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutFps), 4);
}

TEST(Settings, NumbersMayBeNegative) {
  SettingsFile file("[OnNewCut]\r\nwidth=-12\r\n");
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutWidth), -12);
}

TEST(Settings, NumberEndsWhereOtherTextBegins) {
  SettingsFile file("[OnNewCut]\r\nwidth=12abc\r\nheight=34, 56\r\nfps=7.9\r\nanti=2 x\r\n");
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutWidth), 12);
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutHeight), 34);
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutFps), 7);
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutAntialias), 2);
}

TEST(Settings, TextThatBeginsWithNoNumberIsZero) {
  SettingsFile file("[OnNewCut]\r\nwidth=abc\r\nheight=-\r\nfps=x5\r\n");
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutWidth), 0);
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutHeight), 0);
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutFps), 0);
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

TEST(Settings, FirstWriteMakesTheFile) {
  SettingsFile file;
  WriteSettingNumber(settings::kNewCutWidth, 320);
  EXPECT_EQ(file.Lines(), Lines({"[OnNewCut]", "width=320"}));
}

TEST(Settings, NumbersAreWrittenAsDecimals) {
  SettingsFile file("[OnNewCut]\r\nwidth=1\r\nheight=2\r\nfps=3\r\n");
  WriteSettingNumber(settings::kNewCutWidth, -7);
  WriteSettingNumber(settings::kNewCutHeight, 2147483647);
  WriteSettingNumber(settings::kNewCutFps, 0);
  EXPECT_EQ(file.Lines(), Lines({"[OnNewCut]", "width=-7", "height=2147483647", "fps=0"}));
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutWidth), -7);
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutHeight), 2147483647);
  EXPECT_EQ(ReadSettingNumber(settings::kNewCutFps), 0);
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

TEST(Settings, WriteReplacesTheValueInPlace) {
  SettingsFile file("[OnNewCut]\r\nwidth=1\r\nheight=2\r\n[OnNewFilm]\r\nwidth=3\r\n");
  WriteSettingNumber(settings::kNewCutWidth, 100);
  EXPECT_EQ(file.Lines(), Lines({"[OnNewCut]", "width=100", "height=2", "[OnNewFilm]", "width=3"}));
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

TEST(Settings, NewKeyOfTheLastSectionIsAppendedToTheFile) {
  SettingsFile file("[OnNewFilm]\r\nwidth=3\r\n[OnNewCut]\r\nwidth=1");
  WriteSettingNumber(settings::kNewCutFps, 30);
  EXPECT_EQ(file.Lines(), Lines({"[OnNewFilm]", "width=3", "[OnNewCut]", "width=1", "fps=30"}));
}

TEST(Settings, NewKeyOfAnEmptySectionComesBehindItsHead) {
  SettingsFile file("[OnNewCut]\r\n[OnNewFilm]\r\nwidth=3\r\n");
  WriteSettingNumber(settings::kNewCutFps, 30);
  EXPECT_EQ(file.Lines(), Lines({"[OnNewCut]", "fps=30", "[OnNewFilm]", "width=3"}));
}

TEST(Settings, NewSectionIsAppendedToTheFile) {
  SettingsFile file("[OnNewCut]\r\nwidth=1");
  WriteSettingNumber(settings::kPasteTransparent, 1);
  Lines lines = file.Lines();
  std::erase(lines, "");
  EXPECT_EQ(lines, Lines({"[OnNewCut]", "width=1", "[OnClipTrans]", "Flag=1"}));
}

TEST(Settings, CommentedKeyIsNotOverwritten) {
  SettingsFile file("[OnNewCut]\r\n;width=1\r\n");
  WriteSettingNumber(settings::kNewCutWidth, 2);
  EXPECT_EQ(file.Lines(), Lines({"[OnNewCut]", ";width=1", "width=2"}));
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
  EXPECT_TRUE(platform::WriteProfileText(folder.Path("a.ini").c_str(), "s", "k", "v"));
  EXPECT_FALSE(platform::WriteProfileText(folder.Path("missing/a.ini").c_str(), "s", "k", "v"));
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
