#include "foundation/history.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>

#include "foundation/settings.h"
#include "support/document_folder.h"

namespace sorvel {
namespace {

namespace fs = std::filesystem;

class History : public DocumentFolderTest {
 protected:
  History() { UseSettingsFile(Path("settings.ini").c_str()); }
  ~History() override {
    UseSettingsFile(nullptr);
    ForgetWrittenFiles();
  }

  bool Save(KnownFile* known, const std::string& name, const std::string& text) const {
    ReplacementFile file;
    if (!file.OpenUtf8(Path(name))) return false;
    file.stream.Write(text.data(), static_cast<int32_t>(text.size()));
    return known->Commit(&file);
  }

  // What is kept of a document, newest first: "kind:contents" and blanks between.
  std::string Kept(const std::string& name) const {
    std::string text;
    for (const Generation& generation : ListGenerations(name.empty() ? "" : Path(name))) {
      const std::string contents = Contents(generation.path);
      EXPECT_EQ(generation.bytes, static_cast<int64_t>(contents.size()));
      text += std::string(text.empty() ? "" : " ") + NameOfKind(generation.kind) + ":" + contents;
    }
    return text;
  }
};

TEST_F(History, KeepsTheLastFiveStatesThatSavesReplace) {
  KnownFile known;
  for (const char* text : {"1", "2", "3", "4", "5", "6", "7"}) EXPECT_TRUE(Save(&known, "a.cut", text));
  EXPECT_EQ(Contents("a.cut"), "7");
  EXPECT_EQ(Kept("a.cut"), "saved:6 saved:5 saved:4 saved:3 saved:2");
  EXPECT_EQ(known.LastNews(), KnownFile::News::kNone);
}

TEST_F(History, OfOneNameLeavesThatOfAnother) {
  KnownFile known;
  for (const char* name : {"a.cut", "a.lyr", "a.cut", "a.lyr"}) EXPECT_TRUE(Save(&known, name, name));
  EXPECT_EQ(Kept("a.cut"), "saved:a.cut");
  EXPECT_EQ(Kept("a.lyr"), "saved:a.lyr");
}

TEST_F(History, KeepsAsManyStatesAsTheSettingsSay) {
  Put("settings.ini", "[setup]\nbackups=2\n");
  KnownFile known;
  for (const char* text : {"1", "2", "3", "4"}) EXPECT_TRUE(Save(&known, "a.cut", text));
  EXPECT_EQ(Kept("a.cut"), "saved:3 saved:2");
}

TEST_F(History, IsSwitchedOffByZero) {
  Put("settings.ini", "[setup]\nbackups=0\n");
  KnownFile known;
  for (const char* text : {"1", "2"}) EXPECT_TRUE(Save(&known, "a.cut", text));
  EXPECT_TRUE(DeleteDocument(Path("a.cut")));
  EXPECT_EQ(Kept("a.cut"), "");
  EXPECT_FALSE(fs::exists(Path(".sorvel")));
}

TEST_F(History, SharesTheBytesOfWhatItKeeps) {
  Put("a.cut", "1");
  fs::create_hard_link(Path("a.cut"), Path("same"));
  KnownFile known;
  EXPECT_TRUE(Save(&known, "a.cut", "2"));
  EXPECT_TRUE(fs::equivalent(ListGenerations(Path("a.cut"))[0].path, Path("same")));
  EXPECT_EQ(ListGenerations(Path("a.cut"))[0].path, Path(".sorvel/a.cut/000001-saved.cut"));
}

TEST_F(History, OfASaveThatFailsIsAsBefore) {
  Put("a.cut", "1");
  ReplacementFile file;
  ASSERT_TRUE(file.OpenUtf8(Path("a.cut")));
  file.stream.failure = EIO;
  KnownFile known;
  EXPECT_FALSE(known.Commit(&file));
  EXPECT_EQ(Kept("a.cut"), "");
  EXPECT_FALSE(fs::exists(Path(".sorvel")));
  EXPECT_EQ(Contents("a.cut"), "1");
}

TEST_F(History, FollowsALinkToTheDocument) {
  fs::create_directory(folder / "real");
  Put("real/a.cut", "1");
  fs::create_symlink("real/a.cut", folder / "link.cut");
  KnownFile known;
  EXPECT_TRUE(Save(&known, "link.cut", "2"));
  EXPECT_EQ(Kept("link.cut"), "saved:1");
  EXPECT_EQ(Kept("real/a.cut"), "saved:1");
  EXPECT_TRUE(DeleteDocument(Path("link.cut")));
  EXPECT_EQ(Contents("real/a.cut"), "2");
}

TEST_F(History, OfAFolderThatTakesNoNewFileIsInTheDataFolder) {
  if (getuid() == 0) GTEST_SKIP() << "nothing is refused to root";
  fs::create_directory(folder / "closed");
  Put("closed/a.cut", "1");
  fs::permissions(folder / "closed", fs::perms::owner_read | fs::perms::owner_exec);
  KnownFile known;
  EXPECT_TRUE(Save(&known, "closed/a.cut", "2"));
  EXPECT_EQ(Kept("closed/a.cut"), "saved:1");
  fs::permissions(folder / "closed", fs::perms::owner_all);
}

TEST_F(History, GoesToTheDataFolderWhereItsOwnCantBeMade) {
  Put(".sorvel", "in the way");
  KnownFile known;
  for (const char* text : {"1", "2", "3"}) EXPECT_TRUE(Save(&known, "a.cut", text));
  EXPECT_EQ(Kept("a.cut"), "saved:2 saved:1");
  EXPECT_TRUE(fs::exists(folder / "data/sorvel/history"));
}

TEST_F(History, KeepsADeletedDocument) {
  Put("a.cut", "1");
  EXPECT_TRUE(DeleteDocument(Path("a.cut")));
  EXPECT_FALSE(fs::exists(Path("a.cut")));
  EXPECT_EQ(Kept("a.cut"), "deleted:1");
  EXPECT_FALSE(DeleteDocument(Path("a.cut")));
}

TEST_F(History, OfARenamedDocumentStaysAndComesAlong) {
  KnownFile known;
  for (const char* text : {"1", "2"}) EXPECT_TRUE(Save(&known, "a.cut", text));
  EXPECT_TRUE(RenameDocument(Path("a.cut"), Path("b.cut")));
  EXPECT_EQ(Kept("a.cut"), "renamed:2 saved:1");
  EXPECT_EQ(Kept("b.cut"), "saved:1");
}

TEST_F(History, RenamingNeverReplaces) {
  Put("a.cut", "1");
  Put("b.cut", "2");
  EXPECT_FALSE(RenameDocument(Path("a.cut"), Path("b.cut")));
  EXPECT_FALSE(RenameDocument(Path("none.cut"), Path("c.cut")));
  EXPECT_EQ(Contents("a.cut") + Contents("b.cut"), "12");
  EXPECT_EQ(Kept("a.cut") + Kept("b.cut") + Kept("none.cut"), "");
}

TEST_F(History, RestoresAStateAndKeepsThePresentOne) {
  KnownFile known;
  for (const char* text : {"1", "2", "3", "4", "5", "6"}) EXPECT_TRUE(Save(&known, "a.cut", text));
  // The oldest of five makes room for the present state while it is being brought back.
  EXPECT_EQ(RestoreGeneration(ListGenerations(Path("a.cut"))[4], Path("a.cut")), 0);
  EXPECT_EQ(Contents("a.cut"), "1");
  EXPECT_EQ(Kept("a.cut"), "saved:6 saved:5 saved:4 saved:3 saved:2");
  EXPECT_EQ(RestoreGeneration(ListGenerations(Path("a.cut"))[0], Path("b.cut")), 0);
  EXPECT_EQ(Contents("b.cut"), "6");
  EXPECT_EQ(RestoreGeneration(ListGenerations(Path("a.cut"))[0], Path("none/b.cut")), ENOENT);
}

TEST_F(History, KeepsADamagedFileWhateverTheSettingsSayAndForGood) {
  Put("settings.ini", "[setup]\nbackups=0\n");
  Put("a.cut", "half");
  KnownFile known;
  known.Remember(Path("a.cut"));
  known.MarkDamaged();
  EXPECT_TRUE(Save(&known, "a.cut", "1"));
  EXPECT_EQ(known.LastNews(), KnownFile::News::kWasDamaged);
  EXPECT_TRUE(Save(&known, "a.cut", "2"));
  EXPECT_EQ(known.LastNews(), KnownFile::News::kNone);
  EXPECT_EQ(Kept("a.cut"), "damaged:half");
  Put("settings.ini", "[setup]\nbackups=1\n");
  for (const char* text : {"3", "4"}) EXPECT_TRUE(Save(&known, "a.cut", text));
  EXPECT_EQ(Kept("a.cut"), "saved:3 damaged:half");
}

TEST_F(History, DamagedFileThatStaysWhereItIsIsNotKept) {
  Put("a.cut", "half");
  KnownFile known;
  known.Remember(Path("a.cut"));
  known.MarkDamaged();
  EXPECT_TRUE(Save(&known, "b.cut", "1"));
  EXPECT_TRUE(Save(&known, "b.cut", "2"));
  EXPECT_EQ(known.LastNews(), KnownFile::News::kNone);
  EXPECT_TRUE(known.IsDamaged());
  EXPECT_EQ(Kept("a.cut"), "");
  EXPECT_EQ(Kept("b.cut"), "saved:1");
}

TEST_F(History, TellsWhenAnotherProgramHadChangedTheFile) {
  Put("a.cut", "1");
  KnownFile known;
  known.Remember(Path("a.cut"));
  Put("a.cut", "theirs");
  EXPECT_TRUE(Save(&known, "a.cut", "2"));
  EXPECT_EQ(known.LastNews(), KnownFile::News::kWasForeign);
  EXPECT_EQ(Kept("a.cut"), "foreign:theirs");
  EXPECT_TRUE(Save(&known, "a.cut", "3"));
  EXPECT_EQ(known.LastNews(), KnownFile::News::kNone);
}

TEST_F(History, OwnSaveFromAnotherWindowIsNoneOfAnotherProgram) {
  Put("a.cut", "1");
  KnownFile first;
  KnownFile second;
  first.Remember(Path("a.cut"));
  second.Remember(Path("a.cut"));
  EXPECT_TRUE(Save(&first, "a.cut", "2"));
  EXPECT_TRUE(Save(&second, "a.cut", "3"));
  EXPECT_EQ(second.LastNews(), KnownFile::News::kNone);
  EXPECT_EQ(Kept("a.cut"), "saved:2 saved:1");
}

TEST_F(History, KeepsDrawingsThatWereNeverSaved) {
  ChunkStream contents;
  contents.Write("drawn", 5);
  EXPECT_TRUE(KeepUnsaved(Path("a.cut"), "cut", &contents));
  EXPECT_EQ(Kept("a.cut"), "unsaved:drawn");
  for (int i = 0; i < 7; ++i) EXPECT_TRUE(KeepUnsaved("", "cut", &contents));
  EXPECT_EQ(ListGenerations("").size(), 7u);
  EXPECT_TRUE(ListGenerations("")[0].path.ends_with("untitled/000007-unsaved.cut"));
}

TEST_F(History, OfANameAtTheLimitOfTheFileSystem) {
  const std::string name = std::string(251, 'n') + ".cut";
  KnownFile known;
  EXPECT_TRUE(Save(&known, name, "1"));
  EXPECT_TRUE(Save(&known, name, "2"));
  EXPECT_EQ(Kept(name), "saved:1");
}

}  // namespace
}  // namespace sorvel
