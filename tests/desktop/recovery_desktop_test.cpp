// What becomes of a drawing when the program ends without asking.
#include <filesystem>

#include "app.h"
#include "colors.h"
#include "resources/ids.h"
#include "text.h"

namespace sorvel::desktop {
namespace {

constexpr char kQuestion[] = "前回終了したときに保存されていなかった変更が残っています。開きますか？";

// More than the second after which the settings of these tests let a snapshot follow a stroke.
constexpr int kSnapshotTime = 8000;

class RecoveryTest : public DesktopTest {
 protected:
  void UseInterval(int seconds) const {
    WriteFile(app.PathOf("sorvel.ini"), "[setup]\r\nautosave=" + std::to_string(seconds) + "\r\n");
  }
  testing::AssertionResult DrawAStroke() {
    if (const testing::AssertionResult made = app.NewCut(); !made) return made;
    return app.Stroke({20, 20}, {120, 90});
  }
  bool HasInk() const { return app.Pixel(70, 55) != app.Pixel(200, 20); }
};

// The snapshots of all programs that run or ended.
size_t SnapshotCount() {
  size_t count = 0;
  std::error_code error;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(Wide(RecoveryStore()), error)) {
    if (entry.path().extension() == L".cut") ++count;
  }
  return count;
}

bool HasSnapshot() {
  return Await([] { return SnapshotCount() > 0; }, kSnapshotTime);
}

TEST_F(RecoveryTest, TheNextStartOpensWhatAKilledProgramLeft) {
  UseInterval(1);
  ASSERT_TRUE(app.Start());
  ASSERT_TRUE(DrawAStroke());
  ASSERT_TRUE(HasSnapshot());
  app.Kill();
  ASSERT_TRUE(app.Start("", App::Opening::kWithQuestion));
  ASSERT_TRUE(app.AnswerQuestion(kQuestion, IDYES, "recovery-question"));
  ASSERT_TRUE(app.DialogGoes());
  ASSERT_NE(app.Cut(), nullptr);
  EXPECT_TRUE(Await([this] { return HasInk(); }));
  EXPECT_TRUE(HasSnapshot());
  EXPECT_TRUE(app.Leave());
  EXPECT_EQ(SnapshotCount(), 0u);
}

TEST_F(RecoveryTest, NoOpensNothingAndTheQuestionComesOnce) {
  UseInterval(1);
  ASSERT_TRUE(app.Start());
  ASSERT_TRUE(DrawAStroke());
  ASSERT_TRUE(HasSnapshot());
  app.Kill();
  ASSERT_TRUE(app.Start("", App::Opening::kWithQuestion));
  ASSERT_TRUE(app.AnswerQuestion(kQuestion, IDNO));
  ASSERT_TRUE(app.DialogGoes());
  EXPECT_EQ(app.Cut(), nullptr);
  app.Kill();
  ASSERT_TRUE(app.Start());
  EXPECT_EQ(app.Dialog(), nullptr);
}

TEST_F(RecoveryTest, ACrashLeavesTheDrawing) {
  UseInterval(0);
  ASSERT_TRUE(app.Start());
  ASSERT_TRUE(DrawAStroke());
  EXPECT_EQ(SnapshotCount(), 0u);
  app.Crash();
  ASSERT_TRUE(HasSnapshot());
  app.Kill();
  ASSERT_TRUE(app.Start("", App::Opening::kWithQuestion));
  ASSERT_TRUE(app.AnswerQuestion(kQuestion, IDYES));
  ASSERT_TRUE(app.DialogGoes());
  EXPECT_TRUE(Await([this] { return HasInk(); }));
}

TEST_F(RecoveryTest, TheMenuOpensAnEarlierState) {
  ASSERT_TRUE(app.Start());
  ASSERT_TRUE(DrawAStroke());
  ASSERT_TRUE(app.SaveCutAs(app.PathOf("a.cut")));
  ASSERT_TRUE(app.Stroke({20, 100}, {120, 160}));
  ASSERT_TRUE(app.ChooseAt('c', 3));
  ASSERT_TRUE(Await([this] { return FileExists(app.PathOf(".sorvel\\a.cut\\000001-saved.cut")); }));
  const HWND cut = app.Cut();
  ASSERT_TRUE(app.ChooseAt('c', 12));
  ASSERT_TRUE(app.Answer("以前の版を開く", {}, "versions", VK_RETURN));
  ASSERT_TRUE(Await([this, cut] { return app.Cut() != cut; }));
  EXPECT_TRUE(Await([this] { return HasInk(); }));
  EXPECT_EQ(app.Pixel(70, 130), app.Pixel(200, 20));
}

}  // namespace
}  // namespace sorvel::desktop
