#include "foundation/recovery_folder.h"

#include <gtest/gtest.h>

#include "support/test_program.h"

namespace sorvel {
namespace {

using teststreams::Folder;

class RecoveryFolderTest : public testing::Test {
 protected:
  static bool Keep(const RecoveryFolder& run, int32_t number, const std::string& path, const std::string& contents) {
    return run.Keep(number, "cut", path, [&contents](ByteStream* stream) {
      return stream->Write(contents.data(), static_cast<int32_t>(contents.size()));
    });
  }
  std::string Contents(const LeftDocument& document) const { return testbytes::ReadFile(document.file); }
  std::vector<RecoveryFolder> TakeLeft() const { return RecoveryFolder::TakeLeft(store); }

  Folder folder;
  std::string store = folder.Path("store");
};

TEST_F(RecoveryFolderTest, OfAnEndedProgramIsTakenOverWithAllItsDocuments) {
  {
    RecoveryFolder run;
    ASSERT_TRUE(run.Create(store));
    EXPECT_TRUE(Keep(run, 10, "/a/b.cut", "ten"));
    EXPECT_TRUE(Keep(run, 9, "", "nine"));
    EXPECT_TRUE(Keep(run, 10, "/a/c.cut", "other"));
    EXPECT_TRUE(Keep(run, 11, "/a/d.cut", "gone"));
    run.Remove(11, "cut");
  }
  const std::vector<RecoveryFolder> left = TakeLeft();
  ASSERT_EQ(left.size(), 1u);
  const std::vector<LeftDocument> documents = left[0].Documents();
  ASSERT_EQ(documents.size(), 2u);
  EXPECT_EQ(documents[0].path, "");
  EXPECT_EQ(Contents(documents[0]), "nine");
  EXPECT_EQ(documents[1].path, "/a/c.cut");
  EXPECT_EQ(Contents(documents[1]), "other");
}

TEST_F(RecoveryFolderTest, OfARunningProgramIsLeftAlone) {
  RecoveryFolder run;
  ASSERT_TRUE(run.Create(store));
  Keep(run, 1, "", "one");
  EXPECT_TRUE(TakeLeft().empty());
  EXPECT_EQ(run.Documents().size(), 1u);
}

TEST_F(RecoveryFolderTest, IsTakenOverByOneProgramOnly) {
  RecoveryFolder run;
  ASSERT_TRUE(run.Create(store));
  Keep(run, 1, "", "one");
  run.Release();
  const std::vector<RecoveryFolder> left = TakeLeft();
  EXPECT_EQ(left.size(), 1u);
  EXPECT_TRUE(TakeLeft().empty());
}

TEST_F(RecoveryFolderTest, GoesWithoutATrace) {
  {
    RecoveryFolder run;
    ASSERT_TRUE(run.Create(store));
    Keep(run, 1, "", "one");
    run.Destroy();
  }
  EXPECT_EQ(folder.List(), "store");
  RecoveryFolder empty;
  ASSERT_TRUE(empty.Create(store));
  empty.Release();
  EXPECT_TRUE(TakeLeft().empty());
  EXPECT_EQ(folder.List(), "store");
}

TEST_F(RecoveryFolderTest, AWriteThatFailsLeavesWhatWasKept) {
  RecoveryFolder run;
  ASSERT_TRUE(run.Create(store));
  Keep(run, 1, "", "one");
  EXPECT_FALSE(run.Keep(1, "cut", "", [](ByteStream* stream) {
    stream->Write("half", 4);
    return false;
  }));
  ASSERT_EQ(run.Documents().size(), 1u);
  EXPECT_EQ(Contents(run.Documents()[0]), "one");
}

TEST_F(RecoveryFolderTest, TouchesNothingOfOthers) {
  folder.MakeFolder("store");
  folder.MakeFolder("store/pictures");
  folder.Write("store/pictures/1.cut", {'x'});
  folder.MakeFolder("store/session-other");
  folder.Write("store/session-other/notes.txt", {'x'});
  EXPECT_TRUE(TakeLeft().empty());
  EXPECT_TRUE(folder.Has("store/pictures/1.cut"));
  EXPECT_TRUE(folder.Has("store/session-other/notes.txt"));
}

TEST_F(RecoveryFolderTest, CantBeMadeWhereThereIsAFile) {
  folder.Write("store", {'x'});
  RecoveryFolder run;
  EXPECT_FALSE(run.Create(store));
  EXPECT_FALSE(run.IsOpen());
}

}  // namespace
}  // namespace sorvel
