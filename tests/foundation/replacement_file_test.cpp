#include "foundation/replacement_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <string>

#include "support/document_folder.h"

namespace sorvel {
namespace {

namespace fs = std::filesystem;

class ReplacementFiles : public DocumentFolderTest {
 protected:
  bool Replace(const std::string& name, const std::string& text) {
    ReplacementFile file;
    if (!file.Open(Path(name).c_str())) {
      problem = file.problem();
      return false;
    }
    file.stream.Write(text.data(), static_cast<int32_t>(text.size()));
    const bool committed = file.Commit();
    problem = file.problem();
    return committed;
  }

  size_t FilesIn(const std::string& name) const {
    size_t count = 0;
    for ([[maybe_unused]] const auto& entry : fs::directory_iterator(folder / name)) ++count;
    return count;
  }

  WriteProblem problem = WriteProblem::kNone;
};

TEST_F(ReplacementFiles, NewFileHasTheContentsAndNothingElseIsLeft) {
  fs::create_directory(folder / "a");
  EXPECT_TRUE(Replace("a/new.cut", "new"));
  EXPECT_EQ(Contents("a/new.cut"), "new");
  EXPECT_EQ(FilesIn("a"), 1u);
}

TEST_F(ReplacementFiles, OldContentsStandUntilTheCommit) {
  Put("x.cut", "old");
  ReplacementFile file;
  ASSERT_TRUE(file.Open(Path("x.cut").c_str()));
  file.stream.Write("new", 3);
  EXPECT_EQ(Contents("x.cut"), "old");
  EXPECT_TRUE(file.Commit());
  EXPECT_EQ(Contents("x.cut"), "new");
}

TEST_F(ReplacementFiles, DiscardLeavesTheTargetAndRemovesThePartialFile) {
  fs::create_directory(folder / "a");
  Put("a/x.cut", "old");
  {
    ReplacementFile file;
    ASSERT_TRUE(file.Open(Path("a/x.cut").c_str()));
    file.stream.Write("new", 3);
    EXPECT_EQ(FilesIn("a"), 2u);
  }
  EXPECT_EQ(Contents("a/x.cut"), "old");
  EXPECT_EQ(FilesIn("a"), 1u);
}

TEST_F(ReplacementFiles, ModeOfTheFileIsKept) {
  Put("x.cut", "old");
  fs::permissions(folder / "x.cut", static_cast<fs::perms>(0640));
  EXPECT_TRUE(Replace("x.cut", "new"));
  EXPECT_EQ(fs::status(folder / "x.cut").permissions(), static_cast<fs::perms>(0640));
}

TEST_F(ReplacementFiles, LinkStaysAndItsFileIsReplaced) {
  fs::create_directory(folder / "a");
  Put("a/x.cut", "old");
  fs::create_symlink("a/x.cut", folder / "link.cut");
  EXPECT_TRUE(Replace("link.cut", "new"));
  EXPECT_TRUE(fs::is_symlink(folder / "link.cut"));
  EXPECT_EQ(Contents("a/x.cut"), "new");
}

TEST_F(ReplacementFiles, LinkToAFileThatIsMissingGetsThatFile) {
  fs::create_directory(folder / "a");
  fs::create_symlink("a/x.cut", folder / "link.cut");
  EXPECT_TRUE(Replace("link.cut", "new"));
  EXPECT_TRUE(fs::is_symlink(folder / "link.cut"));
  EXPECT_EQ(Contents("a/x.cut"), "new");
}

TEST_F(ReplacementFiles, MissingFolderIsSaidToBeMissing) {
  EXPECT_FALSE(Replace("nowhere/x.cut", "new"));
  EXPECT_EQ(problem, WriteProblem::kNoFolder);
}

TEST_F(ReplacementFiles, FolderIsNotReplaced) {
  fs::create_directory(folder / "x.cut");
  EXPECT_FALSE(Replace("x.cut", "new"));
  EXPECT_TRUE(fs::is_directory(folder / "x.cut"));
}

TEST_F(ReplacementFiles, WriteThatFailsInTheMiddleFailsTheCommit) {
  Put("x.cut", "old");
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit old{};
  getrlimit(RLIMIT_FSIZE, &old);
  const rlimit small = {100000, old.rlim_max};
  setrlimit(RLIMIT_FSIZE, &small);
  const bool replaced = Replace("x.cut", std::string(500000, 'n'));
  setrlimit(RLIMIT_FSIZE, &old);
  EXPECT_FALSE(replaced);
  EXPECT_EQ(problem, WriteProblem::kTooLarge);
  EXPECT_EQ(Contents("x.cut"), "old");
}

TEST_F(ReplacementFiles, WriteThatFailsIsRememberedThoughLaterOnesSucceed) {
  Put("x.cut", "old");
  ReplacementFile file;
  ASSERT_TRUE(file.Open(Path("x.cut").c_str()));
  file.stream.failure = ENOSPC;
  file.stream.Write("new", 3);
  EXPECT_FALSE(file.Commit());
  EXPECT_EQ(file.problem(), WriteProblem::kDiskFull);
  EXPECT_EQ(Contents("x.cut"), "old");
}

TEST_F(ReplacementFiles, FullDeviceFailsTheCommit) {
  ReplacementFile file;
  ASSERT_TRUE(file.OpenUtf8("/dev/full"));
  file.stream.Write("new", 3);
  EXPECT_FALSE(file.Commit());
  EXPECT_EQ(file.problem(), WriteProblem::kDiskFull);
}

TEST_F(ReplacementFiles, PipeGetsTheWholeAtTheEnd) {
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  const int reader = open(Path("pipe").c_str(), O_RDONLY | O_NONBLOCK);
  EXPECT_TRUE(Replace("pipe", "new"));
  char bytes[8] = "";
  EXPECT_EQ(read(reader, bytes, sizeof(bytes)), 3);
  EXPECT_STREQ(bytes, "new");
  close(reader);
}

TEST_F(ReplacementFiles, LeftoverOfAKilledProgramIsSweptByTheNextSave) {
  fs::create_directory(folder / "a");
  Put("a/.sorvel-01234567.tmp", "half");
  EXPECT_TRUE(Replace("a/x.cut", "new"));
  EXPECT_EQ(FilesIn("a"), 1u);
}

TEST_F(ReplacementFiles, PartialFileOfAProgramAtWorkIsNotSwept) {
  fs::create_directory(folder / "a");
  ReplacementFile other;
  ASSERT_TRUE(other.Open(Path("a/y.cut").c_str()));
  other.stream.Write("other", 5);
  EXPECT_TRUE(Replace("a/x.cut", "new"));
  EXPECT_TRUE(other.Commit());
  EXPECT_EQ(Contents("a/y.cut"), "other");
}

TEST_F(ReplacementFiles, NameOfTheGreatestLengthIsReplaced) {
  const std::string name(255, 'n');
  EXPECT_TRUE(Replace(name, "new"));
  EXPECT_EQ(Contents(name), "new");
}

TEST_F(ReplacementFiles, InterruptedWriteInPlaceIsFinishedAtTheNextStart) {
  Put("x.cut", "ne");
  fs::create_directories(folder / "data" / "sorvel");
  Put("data/sorvel/in-place-0123456789abcdef.copy", "new");
  Put("data/sorvel/in-place-0123456789abcdef.target", Path("x.cut"));
  FinishInterruptedWrites();
  EXPECT_EQ(Contents("x.cut"), "new");
  EXPECT_EQ(FilesIn("data/sorvel"), 0u);
}

// What rights refuse can only be tried without the rights of root.
class ReplacementFilesOfAUser : public ReplacementFiles {
 protected:
  void SetUp() override {
    if (geteuid() != 0) return;
    ASSERT_EQ(chmod(folder.c_str(), 0755), 0);
    fs::create_directories(folder / "data");
    ASSERT_EQ(chown((folder / "data").c_str(), 65534, 65534), 0);
    fs::create_directory(folder / "closed");
  }
  void BecomeNobody() {
    if (geteuid() == 0) {
      ASSERT_EQ(chown((folder / "closed").c_str(), 65534, 65534), 0);
      wasRoot = true;
      ASSERT_EQ(seteuid(65534), 0);
    }
  }
  void TearDown() override {
    if (wasRoot) {
      ASSERT_EQ(seteuid(0), 0);
    }
    fs::permissions(folder / "closed", fs::perms::owner_all);
  }

  bool wasRoot = false;
};

TEST_F(ReplacementFilesOfAUser, ReadOnlyFileIsNotReplacedThoughItsFolderWouldAllowIt) {
  fs::create_directories(folder / "closed");
  Put("closed/x.cut", "old");
  fs::permissions(folder / "closed" / "x.cut", static_cast<fs::perms>(0444));
  BecomeNobody();
  EXPECT_FALSE(Replace("closed/x.cut", "new"));
  EXPECT_EQ(problem, WriteProblem::kReadOnly);
  EXPECT_EQ(Contents("closed/x.cut"), "old");
}

TEST_F(ReplacementFilesOfAUser, FailedWriteInPlaceIsNotFinishedOverALaterSave) {
  fs::create_directories(folder / "closed");
  Put("closed/x.cut", "old");
  fs::permissions(folder / "closed" / "x.cut", static_cast<fs::perms>(0666));
  BecomeNobody();
  fs::permissions(folder / "closed", static_cast<fs::perms>(0555));
  ReplacementFile file;
  ASSERT_TRUE(file.Open(Path("closed/x.cut").c_str()));
  file.stream.Write("first", 5);
  fs::permissions(folder / "closed", fs::perms::none);
  EXPECT_FALSE(file.Commit());
  fs::permissions(folder / "closed", fs::perms::owner_all);
  EXPECT_TRUE(Replace("closed/x.cut", "second"));
  FinishInterruptedWrites();
  EXPECT_EQ(Contents("closed/x.cut"), "second");
}

TEST_F(ReplacementFilesOfAUser, FileInAFolderThatTakesNoNewOnesIsWrittenInPlace) {
  fs::create_directories(folder / "closed");
  Put("closed/x.cut", "old and longer");
  fs::permissions(folder / "closed" / "x.cut", static_cast<fs::perms>(0666));
  BecomeNobody();
  fs::permissions(folder / "closed", static_cast<fs::perms>(0555));
  EXPECT_TRUE(Replace("closed/x.cut", "new"));
  EXPECT_EQ(Contents("closed/x.cut"), "new");
  EXPECT_EQ(FilesIn("data/sorvel"), 0u);
}

}  // namespace
}  // namespace sorvel
