#include "foundation/paths.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

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
  EXPECT_EQ(Split("C:\\a\\b\\c.cut"), "C:|\\a\\b\\|c|.cut");
  EXPECT_EQ(Split("/a/b/c.cut"), "|/a/b/|c|.cut");
  EXPECT_EQ(Split("C:\\a/b\\c.cut"), "C:|\\a/b\\|c|.cut");
  EXPECT_EQ(Split("c.cut"), "||c|.cut");
  EXPECT_EQ(Split("C:c.cut"), "C:||c|.cut");
  EXPECT_EQ(Split(""), "|||");
}

TEST(Paths, ExtensionBeginsAtTheLastDotOfTheName) {
  EXPECT_EQ(Split("\\a.b\\c"), "|\\a.b\\|c|");
  EXPECT_EQ(Split("\\a.b\\c.d.e"), "|\\a.b\\|c.d|.e");
  EXPECT_EQ(Split("\\a\\c."), "|\\a\\|c|.");
  EXPECT_EQ(Split("\\a\\.cut"), "|\\a\\||.cut");
  EXPECT_EQ(Split("\\a\\"), "|\\a\\||");
}

TEST(Paths, SecondByteOfACharacterIsNoSeparatorAndNoDot) {
  EXPECT_EQ(Split("C:\\\x83\x5c.cut"), "C:|\\|\x83\x5c|.cut");
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

TEST(Paths, LeadByteAtTheVeryEndEndsThePath) {
  EXPECT_EQ(Split("a.b\x83"), "||a|.b\x83");
}

TEST(Paths, JoinGivesThePathAgain) {
  for (const char* path :
       {"C:\\a\\b\\c.cut", "/a/b/c.cut", "c", "C:c.x", "\\a.b\\c", "\\a\\.cut", "x\\", "\x83\x5c.a"}) {
    PathParts parts;
    ASSERT_TRUE(SplitPath(path, &parts));
    char joined[kPathCapacity];
    EXPECT_TRUE(JoinPath(joined, parts));
    EXPECT_STREQ(joined, path);
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
}

TEST(Paths, ChangeExtensionGivesOneToANameWithout) {
  char path[kPathCapacity];
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
}

TEST(Paths, ReplaceNameKeepsAPathThatWouldGrowTooLong) {
  char path[kPathCapacity] = "C:\\a\\old.cut";
  EXPECT_FALSE(ReplaceName(path, std::string(kPathCapacity - 5, 'n').c_str(), nullptr));
  EXPECT_STREQ(path, "C:\\a\\old.cut");
}

TEST(Paths, FileNameIsTheBaseNameWithOrWithoutExtension) {
  char name[64];
  EXPECT_TRUE(FileNameOf(name, sizeof(name), "C:\\a\\cut1.cut", false));
  EXPECT_STREQ(name, "cut1");
  EXPECT_TRUE(FileNameOf(name, sizeof(name), "C:\\a\\cut1.cut", true));
  EXPECT_STREQ(name, "cut1.cut");
  EXPECT_TRUE(FileNameOf(name, sizeof(name), "C:\\a\\\x83\x5c.cut", true));
  EXPECT_STREQ(name, "\x83\x5c.cut");
}

TEST(Paths, FileNameNeedsRoomForItsTerminator) {
  char name[9] = "........";
  EXPECT_FALSE(FileNameOf(name, 4, "C:\\a\\cut1.cut", false));
  EXPECT_TRUE(FileNameOf(name, 5, "C:\\a\\cut1.cut", false));
  EXPECT_STREQ(name, "cut1");
  EXPECT_TRUE(FileNameOf(name, 9, "C:\\a\\cut1.cut", true));
  EXPECT_STREQ(name, "cut1.cut");
  EXPECT_FALSE(FileNameOf(name, 0, "C:\\a\\cut1.cut", false));
  EXPECT_STREQ(name, "cut1.cut");
}

TEST(Paths, FileNameTooLongWithItsExtensionLeavesTheBaseName) {
  char name[9] = "........";
  EXPECT_FALSE(FileNameOf(name, 8, "C:\\a\\cut1.cut", true));
  EXPECT_STREQ(name, "cut1");
}

TEST(Paths, UpperExtensionHasItsDot) {
  char extension[kPathCapacity];
  EXPECT_TRUE(UpperExtensionOf(extension, "C:\\a\\cut1.cut"));
  EXPECT_STREQ(extension, ".CUT");
  EXPECT_TRUE(UpperExtensionOf(extension, "film.Flm"));
  EXPECT_STREQ(extension, ".FLM");
  EXPECT_TRUE(UpperExtensionOf(extension, "a.b.l-1yr"));
  EXPECT_STREQ(extension, ".L-1YR");
}

TEST(Paths, UpperExtensionOfANameWithoutOneIsEmpty) {
  char extension[kPathCapacity] = "old";
  EXPECT_TRUE(UpperExtensionOf(extension, "C:\\a.cut\\film"));
  EXPECT_STREQ(extension, "");
}

TEST(Paths, UpperExtensionIsFalseForANullPointer) {
  char extension[kPathCapacity];
  EXPECT_FALSE(UpperExtensionOf(nullptr, "a.cut"));
  EXPECT_FALSE(UpperExtensionOf(extension, nullptr));
}

TEST(Paths, RelativePathGoesDownFromTheDirectoryOfTheBase) {
  EXPECT_EQ(Relative("C:\\a\\b\\c.cut", "C:\\a\\f.flm"), "b/c.cut");
  EXPECT_EQ(Relative("C:\\a\\b\\c\\d.cut", "C:\\a\\f.flm"), "b/c/d.cut");
  EXPECT_EQ(Relative("C:\\a\\c.cut", "C:\\a\\f.flm"), "c.cut");
}

TEST(Paths, RelativePathGoesUpForEveryDirectoryNotShared) {
  EXPECT_EQ(Relative("C:\\x\\c.cut", "C:\\a\\f.flm"), "../x/c.cut");
  EXPECT_EQ(Relative("C:\\c.cut", "C:\\a\\b\\f.flm"), "../../c.cut");
}

TEST(Paths, RelativePathCutsTheSharedPartAtASeparator) {
  EXPECT_EQ(Relative("C:\\ab\\c.cut", "C:\\ax\\f.flm"), "../ab/c.cut");
  EXPECT_EQ(Relative("C:\\a\\film2.cut", "C:\\a\\film.flm"), "film2.cut");
  EXPECT_EQ(Relative("C:\\ab\\c.cut", "C:\\a\\f.flm"), "../ab/c.cut");
}

TEST(Paths, RelativePathOfTheBaseItselfIsItsName) {
  EXPECT_EQ(Relative("C:\\a\\f", "C:\\a\\f"), "f");
}

TEST(Paths, RelativePathWithNothingSharedCountsFromTheStart) {
  EXPECT_EQ(Relative("D:\\x.cut", "C:\\a\\f.flm"), "../../D:/x.cut");
}

TEST(Paths, RelativePathWorksOnTheSeparatorGiven) {
  EXPECT_EQ(Relative("/a/b/c.cut", "/a/f.flm", '/'), "b/c.cut");
  EXPECT_EQ(Relative("/x/c.cut", "/a/f.flm", '/'), "../x/c.cut");
  EXPECT_EQ(Relative("/a/b\\c.cut", "/a/f.flm", '/'), "b\\c.cut");
}

TEST(Paths, RelativePathTakesSecondBytesForSeparators) {
  EXPECT_EQ(Relative("C:\\a\\\x83\x5cx.cut", "C:\\a\\f.flm"), "\x83/x.cut");
  EXPECT_EQ(Relative("C:\\\x83\x5cx.cut",
                     "C:\\\x83\x5c"
                     "f.flm"),
            "x.cut");
  EXPECT_EQ(Relative("C:\\x.cut",
                     "C:\\\x83\x5c"
                     "f.flm"),
            "../x.cut");
}

TEST(Paths, RelativePathThatDoesNotFitFails) {
  std::string base = "C:\\";
  for (int32_t i = 0; i < 400; ++i) base += "b\\";
  char path[kPathCapacity];
  EXPECT_FALSE(MakeRelativePath(path, "C:\\x.cut", (base + "f").c_str(), '\\'));
}

TEST(Paths, AbsolutePathStartsInTheDirectoryOfTheBase) {
  EXPECT_EQ(Absolute("c.cut", "C:\\a\\f.flm"), "C:\\a\\c.cut");
  EXPECT_EQ(Absolute("b/c.cut", "C:\\a\\f.flm"), "C:\\a\\b\\c.cut");
}

TEST(Paths, AbsolutePathGoesUpForEveryLeadingPair) {
  EXPECT_EQ(Absolute("../x/c.cut", "C:\\a\\f.flm"), "C:\\x\\c.cut");
  EXPECT_EQ(Absolute("../../c.cut", "C:\\a\\b\\f.flm"), "C:\\c.cut");
}

TEST(Paths, AbsolutePathKeepsPairsFurtherIn) {
  EXPECT_EQ(Absolute("b/../c.cut", "C:\\a\\f.flm"), "C:\\a\\b\\..\\c.cut");
}

TEST(Paths, AbsolutePathTurnsSlashesOnlyInTheRelativePart) {
  EXPECT_EQ(Absolute("b/c.cut", "C:/q\\a\\f.flm"), "C:/q\\a\\b\\c.cut");
}

TEST(Paths, AbsolutePathIsEmptyWhenItsSeparatorIsTheFirstByte) {
  EXPECT_EQ(Absolute("c.cut", "/f.flm", '/'), "");
  EXPECT_EQ(Absolute("../c.cut", "/a/f.flm", '/'), "");
}

TEST(Paths, AbsolutePathIsEmptyWhenItLeadsAboveTheRoot) {
  EXPECT_EQ(Absolute("../../c.cut", "C:\\a\\f.flm"), "");
  EXPECT_EQ(Absolute("../../../../c.cut", "/a/f.flm", '/'), "");
  EXPECT_EQ(Absolute("c.cut", "f.flm"), "");
}

TEST(Paths, AbsolutePathWorksOnTheSeparatorGiven) {
  EXPECT_EQ(Absolute("b/c.cut", "/a/f.flm", '/'), "/a/b/c.cut");
  EXPECT_EQ(Absolute("../x/c.cut", "/q/a/f.flm", '/'), "/q/x/c.cut");
}

TEST(Paths, AbsolutePathTakesSecondBytesForSeparators) {
  EXPECT_EQ(Absolute("c.cut",
                     "C:\\a\\\x83\x5c"
                     "f.flm"),
            "C:\\a\\\x83\x5c"
            "c.cut");
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
  TemporaryFolder folder;
  EXPECT_EQ(Numbered(folder.Path("cut1.cut")), folder.Path("cut002.cut"));
  EXPECT_EQ(Numbered(folder.Path("cut41.cut")), folder.Path("cut042.cut"));
  EXPECT_EQ(Numbered(folder.Path("cut099.cut")), folder.Path("cut100.cut"));
}

TEST(NextNumberedName, PassesFilesThatExist) {
  TemporaryFolder folder;
  WriteFile(folder.Path("cut002.cut"), "");
  EXPECT_EQ(Numbered(folder.Path("cut1.cut")), folder.Path("cut003.cut"));
  WriteFile(folder.Path("cut003.cut"), "");
  WriteFile(folder.Path("cut004.lyr"), "");
  EXPECT_EQ(Numbered(folder.Path("cut1.cut")), folder.Path("cut004.cut"));
}

TEST(NextNumberedName, NameWithoutDigitsGetsTheFirstNumber) {
  TemporaryFolder folder;
  EXPECT_EQ(Numbered(folder.Path("abc.cut")), folder.Path("abc001.cut"));
}

TEST(NextNumberedName, OnlyDigitsAtTheEndCount) {
  TemporaryFolder folder;
  EXPECT_EQ(Numbered(folder.Path("a12b3.cut")), folder.Path("a12b004.cut"));
  EXPECT_EQ(Numbered(folder.Path("a12b.cut")), folder.Path("a12b001.cut"));
}

TEST(NextNumberedName, NoNumberFromThousandOn) {
  TemporaryFolder folder;
  EXPECT_EQ(Numbered(folder.Path("cut998.cut")), folder.Path("cut999.cut"));
  EXPECT_EQ(Numbered(folder.Path("cut999.cut")), "(none)");
  EXPECT_EQ(Numbered(folder.Path("cut123456.cut")), "(none)");
  WriteFile(folder.Path("cut999.cut"), "");
  EXPECT_EQ(Numbered(folder.Path("cut998.cut")), "(none)");
}

TEST(NextNumberedName, EndlessDigitsAreRefused) {
  TemporaryFolder folder;
  EXPECT_EQ(Numbered(folder.Path("cut" + std::string(60, '9') + ".cut")), "(none)");
  EXPECT_EQ(Numbered(folder.Path("cut4294967296.cut")), "(none)");
}

TEST(NextNumberedName, LeadingZerosDoNotCount) {
  TemporaryFolder folder;
  EXPECT_EQ(Numbered(folder.Path("cut0000007.cut")), folder.Path("cut008.cut"));
}

TEST(NextNumberedName, NameOfDigitsOnlyLosesTheFirstDigit) {
  TemporaryFolder folder;
  EXPECT_EQ(Numbered(folder.Path("007.cut")), folder.Path("08.cut"));
  EXPECT_EQ(Numbered(folder.Path("123.cut")), folder.Path("24.cut"));
  WriteFile(folder.Path("08.cut"), "");
  EXPECT_EQ(Numbered(folder.Path("007.cut")), folder.Path("09.cut"));
}

TEST(NextNumberedName, EmptyNameLosesTheFirstDigitToo) {
  TemporaryFolder folder;
  EXPECT_EQ(Numbered(folder.Path(".cut")), folder.Path("01.cut"));
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
