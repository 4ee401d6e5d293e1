#include "foundation/paths.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <utility>

#include "support/test_document.h"

namespace sorvel {
namespace {

using testdoc::TemporaryFolder;
using testdoc::WriteFile;

std::string Relative(const std::string& target, const std::string& base, char separator = '\\') {
  char path[kPathCapacity] = "untouched";
  MakeRelativePath(path, target.c_str(), base.c_str(), separator);
  return path;
}

std::string Absolute(const std::string& relative, const std::string& base, char separator = '\\') {
  char path[kPathCapacity] = "untouched";
  MakeAbsolutePath(path, relative.c_str(), base.c_str(), separator);
  return path;
}

std::string Numbered(const std::string& path) {
  char numbered[kPathCapacity];
  std::snprintf(numbered, sizeof(numbered), "%s", path.c_str());
  return NextNumberedName(numbered) ? numbered : "(none)";
}

// Drive, directory, name and extension with bars between.
std::string Split(const std::string& path) {
  static PathParts parts;
  if (!SplitPath(path.c_str(), &parts)) return "(too long)";
  return std::string(parts.drive) + '|' + parts.directory + '|' + parts.name + '|' + parts.extension;
}

TEST(Paths, SplitTakesAPathApart) {
  const struct {
    const char* path;
    const char* parts;
  } cases[] = {
      {"C:\\a\\b\\c.cut", "C:|\\a\\b\\|c|.cut"},
      {"/a/b/c.cut", "|/a/b/|c|.cut"},
      {"C:\\a/b\\c.cut", "C:|\\a/b\\|c|.cut"},
      {"c.cut", "||c|.cut"},
      {"C:c.cut", "C:||c|.cut"},
      {"", "|||"},
      // The extension begins at the last dot of the name.
      {"\\a.b\\c", "|\\a.b\\|c|"},
      {"\\a.b\\c.d.e", "|\\a.b\\|c.d|.e"},
      {"\\a\\c.", "|\\a\\|c|."},
      {"\\a\\.cut", "|\\a\\||.cut"},
      {"\\a\\", "|\\a\\||"},
      // A lead byte at the very end ends the path.
      {"a.b\x83", "||a|.b\x83"},
      {"C:\\\x83\x5c.cut", "C:|\\|\x83\x5c|.cut"},
  };
  for (const auto& one : cases) {
    EXPECT_EQ(Split(one.path), one.parts);
    PathParts parts;
    ASSERT_TRUE(SplitPath(one.path, &parts));
    char joined[kPathCapacity];
    EXPECT_TRUE(JoinPath(joined, parts));
    EXPECT_STREQ(joined, one.path);
  }
}

TEST(Paths, SecondByteOfACharacterIsNoSeparatorAndNoDot) {
  for (const std::string lead : {"\x81", "\x83", "\x95", "\x9f", "\xe0", "\xfc"}) {
    EXPECT_EQ(Split("C:\\a" + lead + "\\b\\c.cut"), "C:|\\a" + lead + "\\b\\|c|.cut");
    EXPECT_EQ(Split("a" + lead + "\\b.c"), "||a" + lead + "\\b|.c");
    EXPECT_EQ(Split("a" + lead + ".b"), "||a" + lead + ".b|");
  }
}

TEST(Paths, SingleBytesOutsideTheLeadRangesDoNotHideASeparator) {
  for (const char* byte : {"\x80", "\xa0", "\xb1", "\xdf", "\xfd"}) {
    EXPECT_EQ(Split(std::string("a") + byte + "\\b.c"), std::string("|a") + byte + "\\|b|.c");
  }
}

TEST(Paths, SplitRefusesAPathWithoutRoomForItsTerminator) {
  EXPECT_EQ(Split(std::string(kPathCapacity, 'a')), "(too long)");
  EXPECT_EQ(Split(std::string(kPathCapacity - 1, 'a')), "||" + std::string(kPathCapacity - 1, 'a') + "|");
}

TEST(Paths, JoinRefusesPartsThatAreTooLongTogether) {
  static PathParts parts = {};
  std::memset(parts.directory, 'd', 600);
  std::memset(parts.name, 'n', 600);
  char joined[kPathCapacity];
  EXPECT_FALSE(JoinPath(joined, parts));
}

TEST(Paths, ChangeExtensionReplacesTheExtension) {
  char path[kPathCapacity];
  EXPECT_TRUE(ChangeExtension(path, "C:\\a\\cut1.cut", "ca"));
  EXPECT_STREQ(path, "C:\\a\\cut1.ca");
  EXPECT_TRUE(ChangeExtension(path, "C:\\a\\b.c.exe", "ini"));
  EXPECT_STREQ(path, "C:\\a\\b.c.ini");
  // A name without one gets it.
  EXPECT_TRUE(ChangeExtension(path, "C:\\a.b\\c", "ini"));
  EXPECT_STREQ(path, "C:\\a.b\\c.ini");
}

TEST(Paths, ChangeExtensionIsFalseForANullPointer) {
  char path[kPathCapacity] = "kept";
  EXPECT_FALSE(ChangeExtension(nullptr, "a.b", "c"));
  EXPECT_FALSE(ChangeExtension(path, nullptr, "c"));
  EXPECT_FALSE(ChangeExtension(path, "a.b", nullptr));
  EXPECT_STREQ(path, "kept");
}

TEST(Paths, ChangeExtensionFailsWhenTheResultIsTooLong) {
  char path[kPathCapacity];
  const std::string longest(kPathCapacity - 5, 'a');
  EXPECT_TRUE(ChangeExtension(path, longest.c_str(), "cut"));
  EXPECT_EQ(path, longest + ".cut");
  EXPECT_FALSE(ChangeExtension(path, (longest + 'a').c_str(), "cut"));
}

TEST(Paths, ReplaceNameKeepsTheExtensionUnlessOneIsGiven) {
  char path[kPathCapacity] = "C:\\a\\old.cut";
  ReplaceName(path, "new", nullptr);
  EXPECT_STREQ(path, "C:\\a\\new.cut");
  ReplaceName(path, "newer", "lyr");
  EXPECT_STREQ(path, "C:\\a\\newer.lyr");
  // A path that would grow too long stays.
  EXPECT_FALSE(ReplaceName(path, std::string(kPathCapacity - 5, 'n').c_str(), nullptr));
  EXPECT_STREQ(path, "C:\\a\\newer.lyr");
}

TEST(Paths, FileNameIsTheBaseNameWithOrWithoutExtension) {
  const struct {
    const char* path;
    size_t size;
    bool withExtension;
    bool result;
    const char* name;
  } cases[] = {
      {"C:\\a\\cut1.cut", 16, false, true, "cut1"},
      {"C:\\a\\cut1.cut", 16, true, true, "cut1.cut"},
      {"C:\\a\\\x83\x5c.cut", 16, true, true, "\x83\x5c.cut"},
      // There has to be room for the terminator.
      {"C:\\a\\cut1.cut", 4, false, false, nullptr},
      {"C:\\a\\cut1.cut", 5, false, true, "cut1"},
      {"C:\\a\\cut1.cut", 9, true, true, "cut1.cut"},
      {"C:\\a\\cut1.cut", 0, false, false, "........"},
      // A name that is too long with its extension leaves the base name.
      {"C:\\a\\cut1.cut", 8, true, false, "cut1"},
  };
  for (const auto& one : cases) {
    char name[16] = "........";
    EXPECT_EQ(FileNameOf(name, one.size, one.path, one.withExtension), one.result) << one.size;
    if (one.name != nullptr) {
      EXPECT_STREQ(name, one.name) << one.size;
    }
  }
}

TEST(Paths, UpperExtensionHasItsDot) {
  char extension[kPathCapacity];
  for (const auto& [path, upper] :
       {std::pair{"C:\\a\\cut1.cut", ".CUT"}, {"film.Flm", ".FLM"}, {"a.b.l-1yr", ".L-1YR"}, {"C:\\a.cut\\film", ""}}) {
    EXPECT_TRUE(UpperExtensionOf(extension, path));
    EXPECT_STREQ(extension, upper);
  }
}

TEST(Paths, UpperExtensionIsFalseForANullPointer) {
  char extension[kPathCapacity];
  EXPECT_FALSE(UpperExtensionOf(nullptr, "a.cut"));
  EXPECT_FALSE(UpperExtensionOf(extension, nullptr));
}

TEST(Paths, RelativePaths) {
  const struct {
    const char* target;
    const char* base;
    const char* relative;
    char separator = '\\';
  } cases[] = {
      // Down from the directory of the base.
      {"C:\\a\\b\\c.cut", "C:\\a\\f.flm", "b/c.cut"},
      {"C:\\a\\b\\c\\d.cut", "C:\\a\\f.flm", "b/c/d.cut"},
      {"C:\\a\\c.cut", "C:\\a\\f.flm", "c.cut"},
      // Up for every directory that isn't shared.
      {"C:\\x\\c.cut", "C:\\a\\f.flm", "../x/c.cut"},
      {"C:\\c.cut", "C:\\a\\b\\f.flm", "../../c.cut"},
      // The shared part is cut at a separator.
      {"C:\\ab\\c.cut", "C:\\ax\\f.flm", "../ab/c.cut"},
      {"C:\\a\\film2.cut", "C:\\a\\film.flm", "film2.cut"},
      {"C:\\ab\\c.cut", "C:\\a\\f.flm", "../ab/c.cut"},
      // The base itself, and nothing shared.
      {"C:\\a\\f", "C:\\a\\f", "f"},
      {"D:\\x.cut", "C:\\a\\f.flm", "../../D:/x.cut"},
      // The separator that is given.
      {"/a/b/c.cut", "/a/f.flm", "b/c.cut", '/'},
      {"/x/c.cut", "/a/f.flm", "../x/c.cut", '/'},
      {"/a/b\\c.cut", "/a/f.flm", "b\\c.cut", '/'},
      // Second bytes of characters are taken for separators.
      {"C:\\a\\\x83\\x.cut", "C:\\a\\f.flm", "\x83/x.cut"},
      {"C:\\\x83\\x.cut", "C:\\\x83\\f.flm", "x.cut"},
      {"C:\\x.cut", "C:\\\x83\\f.flm", "../x.cut"},
  };
  for (const auto& one : cases) EXPECT_EQ(Relative(one.target, one.base, one.separator), one.relative) << one.target;
}

TEST(Paths, RelativePathThatDoesNotFitFails) {
  std::string base = "C:\\";
  for (int32_t i = 0; i < 400; ++i) base += "b\\";
  char path[kPathCapacity];
  EXPECT_FALSE(MakeRelativePath(path, "C:\\x.cut", (base + "f").c_str(), '\\'));
}

TEST(Paths, AbsolutePaths) {
  const struct {
    const char* relative;
    const char* base;
    const char* absolute;
    char separator = '\\';
  } cases[] = {
      // From the directory of the base, up for every leading pair of dots; pairs further in stay.
      {"c.cut", "C:\\a\\f.flm", "C:\\a\\c.cut"},
      {"b/c.cut", "C:\\a\\f.flm", "C:\\a\\b\\c.cut"},
      {"../x/c.cut", "C:\\a\\f.flm", "C:\\x\\c.cut"},
      {"../../c.cut", "C:\\a\\b\\f.flm", "C:\\c.cut"},
      {"b/../c.cut", "C:\\a\\f.flm", "C:\\a\\b\\..\\c.cut"},
      // Slashes are turned in the relative part alone.
      {"b/c.cut", "C:/q\\a\\f.flm", "C:/q\\a\\b\\c.cut"},
      // Empty where its separator would be the first byte, and above the root.
      {"c.cut", "/f.flm", "", '/'},
      {"../c.cut", "/a/f.flm", "", '/'},
      {"../../c.cut", "C:\\a\\f.flm", ""},
      {"../../../../c.cut", "/a/f.flm", "", '/'},
      {"c.cut", "f.flm", ""},
      // The separator that is given.
      {"b/c.cut", "/a/f.flm", "/a/b/c.cut", '/'},
      {"../x/c.cut", "/q/a/f.flm", "/q/x/c.cut", '/'},
      // Second bytes of characters are taken for separators.
      {"c.cut", "C:\\a\\\x83\\f.flm", "C:\\a\\\x83\\c.cut"},
  };
  for (const auto& one : cases)
    EXPECT_EQ(Absolute(one.relative, one.base, one.separator), one.absolute) << one.relative;
}

TEST(Paths, AbsolutePathThatDoesNotFitFails) {
  const std::string base = "C:\\" + std::string(900, 'b') + "\\f";
  char path[kPathCapacity];
  EXPECT_FALSE(MakeAbsolutePath(path, std::string(200, 'r').c_str(), base.c_str(), '\\'));
}

TEST(Paths, RelativeAndAbsoluteAreInverse) {
  const std::string base = "C:\\work\\films\\f.flm";
  for (const char* target : {"C:\\work\\films\\c.cut", "C:\\work\\films\\a\\b\\c.cut", "C:\\work\\c.cut", "C:\\c.cut",
                             "C:\\films\\work\\c.cut", "C:\\work\\filmsx\\c.cut"}) {
    EXPECT_EQ(Absolute(Relative(target, base), base), target);
  }
}

TEST(NextNumberedName, TakesTheNumberBehindThatOfTheName) {
  const TemporaryFolder folder;
  const struct {
    const char* rule;
    std::string name;
    const char* next;
  } cases[] = {
      {"TakesTheNumberBehindThatOfTheName", "cut1", "cut002"},
      {"TakesTheNumberBehindThatOfTheName", "cut41", "cut042"},
      {"TakesTheNumberBehindThatOfTheName", "cut099", "cut100"},
      {"NameWithoutDigitsGetsTheFirstNumber", "abc", "abc001"},
      {"OnlyDigitsAtTheEndCount", "a12b3", "a12b004"},
      {"OnlyDigitsAtTheEndCount", "a12b", "a12b001"},
      {"NoNumberFromThousandOn", "cut998", "cut999"},
      {"NoNumberFromThousandOn", "cut999", nullptr},
      {"NoNumberFromThousandOn", "cut123456", nullptr},
      {"EndlessDigitsAreRefused", "cut" + std::string(60, '9'), nullptr},
      {"EndlessDigitsAreRefused", "cut4294967296", nullptr},
      {"LeadingZerosDoNotCount", "cut0000007", "cut008"},
      {"NameOfDigitsOnlyLosesTheFirstDigit", "007", "08"},
      {"NameOfDigitsOnlyLosesTheFirstDigit", "123", "24"},
      {"EmptyNameLosesTheFirstDigitToo", "", "01"},
  };
  for (const auto& one : cases) {
    const std::string next = one.next == nullptr ? "(none)" : folder.Path(std::string(one.next) + ".cut");
    EXPECT_EQ(Numbered(folder.Path(one.name + ".cut")), next) << one.rule;
  }
}

TEST(NextNumberedName, PassesFilesThatExist) {
  TemporaryFolder folder;
  WriteFile(folder.Path("cut002.cut"), "");
  EXPECT_EQ(Numbered(folder.Path("cut1.cut")), folder.Path("cut003.cut"));
  WriteFile(folder.Path("cut003.cut"), "");
  WriteFile(folder.Path("cut004.lyr"), "");
  EXPECT_EQ(Numbered(folder.Path("cut1.cut")), folder.Path("cut004.cut"));
  WriteFile(folder.Path("cut999.cut"), "");
  EXPECT_EQ(Numbered(folder.Path("cut998.cut")), "(none)");
  WriteFile(folder.Path("08.cut"), "");
  EXPECT_EQ(Numbered(folder.Path("007.cut")), folder.Path("09.cut"));
}

TEST(NextNumberedName, DigitBehindALeadByteBelongsToTheCharacter) {
  EXPECT_EQ(Numbered("/nowhere/a\x83"
                     "5.cut"),
            "/nowhere/a\x83"
            "5001.cut");
  EXPECT_EQ(Numbered("/nowhere/a\x83"
                     "57.cut"),
            "/nowhere/a\x83"
            "5008.cut");
}

TEST(NextNumberedName, CharacterEndingInABackslashByteIsNoDirectory) {
  EXPECT_EQ(Numbered("/nowhere/\x83\x5c"
                     "7.cut"),
            "/nowhere/\x83\x5c"
            "008.cut");
}

}  // namespace
}  // namespace sorvel
