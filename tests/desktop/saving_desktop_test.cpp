// What becomes of a document when the program is killed while it saves, or its disk is full.
#include <chrono>
#include <cstdlib>

#include "app.h"
#include "colors.h"
#include "resources/ids.h"
#include "text.h"

namespace sorvel::desktop {
namespace {

class SavingTest : public DesktopTest {
 protected:
  // The place of "上書き保存" in the menu of the cut.
  static constexpr int kOverwriteItem = 3;

  // A saved cut with one line, which the program leaves open.
  void MakeCut(const std::string& path) {
    ASSERT_TRUE(app.Start());
    ASSERT_TRUE(app.NewCut());
    ASSERT_TRUE(app.Stroke({20, 20}, {120, 20}));
    ASSERT_TRUE(app.SaveCutAs(path));
  }
  testing::AssertionResult HasLines(Color second) { return app.HasPixels({{60, 20, kBlack}, {60, 90, second}}); }
};

int Number(const char* variable, int standard) {
  const char* text = std::getenv(variable);
  return text != nullptr ? std::atoi(text) : standard;
}

// Writes a file until its disk holds no more.
void FillDisk(const std::string& path) {
  FILE* file = _wfopen(Wide(path).c_str(), L"wb");
  ASSERT_NE(file, nullptr);
  std::setvbuf(file, nullptr, _IONBF, 0);
  for (int size = 4096; size > 0; size /= 2) {
    const std::string block(static_cast<size_t>(size), 'x');
    while (std::fwrite(block.data(), block.size(), 1, file) == 1) {
    }
  }
  std::fclose(file);
}

TEST_F(SavingTest, AKillDuringASaveLeavesTheOldOrTheNewCut) {
  const std::string path = app.PathOf("a.cut");
  ASSERT_NO_FATAL_FAILURE(MakeCut(path));
  const std::string before = ReadFile(path);
  ASSERT_TRUE(app.Stroke({20, 90}, {120, 90}));
  const auto start = std::chrono::steady_clock::now();
  ASSERT_TRUE(app.ChooseAt('c', kOverwriteItem));
  ASSERT_TRUE(Await([&] { return ReadFile(path) != before; }));
  const auto time = std::chrono::steady_clock::now() - start;
  const std::string after = ReadFile(path);
  ASSERT_TRUE(app.Leave());

  const int kills = Number("SORVEL_KILLS", 3);
  int unchanged = 0;
  for (int kill = 0; kill < kills; ++kill) {
    ASSERT_TRUE(WriteFile(path, before));
    ASSERT_TRUE(app.Start(path));
    ASSERT_TRUE(app.Stroke({20, 90}, {120, 90}));
    ASSERT_NE(app.OpenMenu('c'), nullptr);
    for (int item = 0; item < kOverwriteItem; ++item) Press(VK_DOWN);
    // The kills spread over the time that a save takes and some more.
    const auto end = std::chrono::steady_clock::now() + time * kill / kills;
    Press(VK_RETURN);
    while (std::chrono::steady_clock::now() < end) {
    }
    app.Kill();
    const std::string left = ReadFile(path);
    EXPECT_TRUE(left == before || left == after) << "kill " << kill << ": " << left.size() << " bytes";
    unchanged += left == before ? 1 : 0;
  }
  RecordProperty("unchanged", unchanged);
  std::printf("%d kills, %d before and %d after the replacement\n", kills, unchanged, kills - unchanged);
}

TEST_F(SavingTest, AFullDiskLeavesTheFileAndTheDrawing) {
  const char* disk = std::getenv("SORVEL_SMALL_DISK");
  if (disk == nullptr) GTEST_SKIP() << "there is no small disk";
  const std::string path = disk + std::string("\\a.cut");
  ASSERT_NO_FATAL_FAILURE(MakeCut(path));
  const std::string before = ReadFile(path);
  ASSERT_NO_FATAL_FAILURE(FillDisk(disk + std::string("\\filler")));
  ASSERT_TRUE(app.Stroke({20, 90}, {120, 90}));
  ASSERT_TRUE(app.ChooseAt('c', kOverwriteItem));
  ASSERT_TRUE(app.HasDialog("Sorvelin"));
  EXPECT_EQ(app.BoxText(), path + " を保存できませんでした。\nディスクの空き容量が足りません。");
  ASSERT_TRUE(app.KeepScreen("full-disk"));
  Press(VK_RETURN);
  // The dialog that follows asks for another place. Without one the cut stays as it is.
  ASSERT_TRUE(Await([this] { return app.Dialog() != nullptr && app.BoxText().empty(); }));
  Press(VK_ESCAPE);
  ASSERT_TRUE(app.DialogGoes());
  EXPECT_EQ(ReadFile(path), before);
  EXPECT_TRUE(HasLines(kBlack));

  // Neither does a close lose the drawing.
  Press(VK_F4, {VK_CONTROL});
  ASSERT_TRUE(app.AnswerQuestion("", IDYES));
  ASSERT_TRUE(app.HasDialog("Sorvelin"));
  Press(VK_RETURN);
  ASSERT_TRUE(Await([this] { return app.Dialog() != nullptr && app.BoxText().empty(); }));
  Press(VK_ESCAPE);
  ASSERT_TRUE(app.DialogGoes());
  ASSERT_NE(app.Cut(), nullptr);
  EXPECT_TRUE(HasLines(kBlack));

  ASSERT_TRUE(DeleteFileW(Wide(disk + std::string("\\filler")).c_str()));
  ASSERT_TRUE(app.ChooseAt('c', kOverwriteItem));
  ASSERT_TRUE(Await([&] { return ReadFile(path) != before; }));
  ASSERT_TRUE(app.Leave());
  ASSERT_TRUE(app.Start(path));
  EXPECT_TRUE(HasLines(kBlack));
}

TEST_F(SavingTest, AFileThatAnotherProgramHoldsIsLeftAlone) {
  const std::string path = app.PathOf("a.cut");
  ASSERT_NO_FATAL_FAILURE(MakeCut(path));
  const std::string before = ReadFile(path);
  const HANDLE holder =
      CreateFileW(Wide(path).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(holder, INVALID_HANDLE_VALUE);
  ASSERT_TRUE(app.Stroke({20, 90}, {120, 90}));
  ASSERT_TRUE(app.ChooseAt('c', kOverwriteItem));
  ASSERT_TRUE(app.HasDialog("Sorvelin"));
  EXPECT_EQ(app.BoxText(), path + " を保存できませんでした。\nほかのプログラムがこのファイルを使っています。");
  Press(VK_RETURN);
  ASSERT_TRUE(app.AnswerFileDialog(app.PathOf("b.cut")));
  ASSERT_TRUE(Await([this] { return FileExists(app.PathOf("b.cut")); }));
  CloseHandle(holder);
  EXPECT_EQ(ReadFile(path), before);
  EXPECT_NE(ReadFile(app.PathOf("b.cut")), before);
  ASSERT_TRUE(app.Leave());
}

}  // namespace
}  // namespace sorvel::desktop
