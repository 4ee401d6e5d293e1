#include "shell/recovery.h"

#include <chrono>
#include <ctime>
#include <thread>

#include "foundation/history.h"
#include "platform/profile.h"
#include "platform/replacement.h"
#include "shell/shell_fixture.h"

namespace sorvel::testshell {
namespace {

class RecoveryTest : public ShellTest {
 protected:
  void SetUp() override {
    ShellTest::SetUp();
    WriteProfileText(folder.Path("sorvel.ini").c_str(), "setup", "autosave", "1");
  }
  void TearDown() override {
    CloseCuts();
    ShellTest::TearDown();
  }

  bool Begin() { return frame->recovery.Begin(store, Recovery::Writing::kOnThread); }
  // A modified cut of so many frames, and what an ended program leaves of it.
  void LeaveACut(const std::string& name, int32_t frames) {
    MakeSavedCut(name);
    MakeFrames(frames);
    ASSERT_TRUE(Begin());
    frame->recovery.KeepAtCrash();
    frame->recovery.Leave();
    CloseCuts();
  }
  // The documents that are kept now.
  std::vector<LeftDocument> Kept() const {
    std::vector<LeftDocument> all;
    for (const std::string& name : platform::NamesInFolder(store)) {
      for (const std::string& file : platform::NamesInFolder(store + "/" + name)) {
        if (file.ends_with(".cut"))
          all.push_back({0, "cut", "", std::string(store).append("/").append(name + "/" + file)});
      }
    }
    return all;
  }
  // Lets the timer tick until something is kept, for at most so many seconds.
  bool TicksUntilKept(std::chrono::milliseconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    while (Kept().empty() && std::chrono::steady_clock::now() < end) {
      platform::Send(frame->frameWindow, platform::kMessageTimer, 1, 0);
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return !Kept().empty();
  }

  std::string store = folder.Path("store");
};

TEST_F(RecoveryTest, KeepsAModifiedCutSomeTimeAfterTheLastInput) {
  MakeCut();
  ASSERT_TRUE(Begin());
  MakeFrames(2);
  EXPECT_FALSE(TicksUntilKept(std::chrono::milliseconds(400)));
  EXPECT_TRUE(TicksUntilKept(std::chrono::seconds(10)));
}

TEST_F(RecoveryTest, KeepsNothingDuringAStroke) {
  MakeCut();
  ASSERT_TRUE(Begin());
  const auto mouse = [this](uint32_t message, uint32_t keys) {
    platform::Send(Cut()->window, message, keys, platform::PackPoint({320, 240}));
  };
  mouse(platform::kMessageLeftDown, platform::kKeyLeftButton);
  EXPECT_FALSE(TicksUntilKept(std::chrono::milliseconds(1500)));
  mouse(platform::kMessageLeftUp, 0);
  EXPECT_TRUE(TicksUntilKept(std::chrono::seconds(10)));
}

TEST_F(RecoveryTest, OfASavedCutGoesAtOnce) {
  MakeCut();
  ASSERT_TRUE(Begin());
  MakeFrames(2);
  ASSERT_TRUE(TicksUntilKept(std::chrono::seconds(10)));
  FileCommand(kCommandSaveCutAs, folder.Path("a.cut"));
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (!Kept().empty() && std::chrono::steady_clock::now() < end) frame->recovery.OnTimer();
  EXPECT_TRUE(Kept().empty());
}

TEST_F(RecoveryTest, KeepsAllModifiedCutsAtACrash) {
  MakeCut();
  MakeFrames(2);
  MakeCut();
  MakeFrames(3);
  MakeSavedCut("a.cut");
  ASSERT_TRUE(Begin());
  frame->recovery.KeepAtCrash();
  EXPECT_EQ(Kept().size(), 2u);
}

TEST_F(RecoveryTest, AsksBeforeItOpensWhatWasLeft) {
  LeaveACut("a.cut", 3);
  ASSERT_TRUE(Begin());
  platform::headless::QueueYesNo(true);
  frame->recovery.OpenLeft(true, true);
  ASSERT_NE(Cut(), nullptr);
  EXPECT_EQ(Cut()->path, folder.Path("a.cut"));
  EXPECT_EQ(Cut()->frames.Count(), 3);
  EXPECT_EQ(Marks().substr(0, 2), "mi");
  EXPECT_EQ(Kept().size(), 1u);
}

TEST_F(RecoveryTest, SendsWhatIsNotWantedToTheHistory) {
  LeaveACut("a.cut", 3);
  ASSERT_TRUE(Begin());
  platform::headless::QueueYesNo(false);
  frame->recovery.OpenLeft(true, true);
  EXPECT_EQ(Cut(), nullptr);
  EXPECT_TRUE(Kept().empty());
  const std::vector<Generation> generations = ListGenerations(folder.Path("a.cut"));
  ASSERT_EQ(generations.size(), 1u);
  EXPECT_EQ(generations[0].kind, GenerationKind::kUnsaved);
  frame->recovery.OpenLeft(true, true);
}

TEST_F(RecoveryTest, TakesThePlaceOfTheSameFileThatTheStartOpened) {
  LeaveACut("a.cut", 3);
  frame->OpenByExtension(folder.Path("a.cut").c_str());
  ASSERT_TRUE(Begin());
  platform::headless::QueueYesNo(true);
  frame->recovery.OpenLeft(true, true);
  ASSERT_EQ(frame->openCuts.size(), 1u);
  EXPECT_EQ(Cut()->frames.Count(), 3);
}

TEST_F(RecoveryTest, OfACutWithoutAPathKeepsTheLayersThatASaveTakesAway) {
  setenv("XDG_DATA_HOME", folder.Path("data").c_str(), 1);
  MakeCut()->AddLayer("B", 4, 4, nullptr);
  ASSERT_TRUE(Begin());
  platform::headless::QueueYesNo(true);
  platform::headless::QueueFileCancel();
  CloseActiveCut();
  const std::vector<Generation> generations = ListGenerations("");
  ASSERT_EQ(generations.size(), 1u);
  FileStream file(std::fopen(generations[0].path.c_str(), "rb"));
  class Cut kept(0, 0, 24, "", 0);
  EXPECT_TRUE(kept.Load(&file, nullptr));
  file.Close();
  EXPECT_EQ(kept.layers.Count(), 2);
  unsetenv("XDG_DATA_HOME");
}

class OpenVersionTest : public ShellTest {
 protected:
  void TearDown() override {
    CloseCuts();
    ShellTest::TearDown();
  }
};

TEST_F(OpenVersionTest, OpensAKeptStateAsAChangedCutOfTheSamePath) {
  CutWindow* cut = MakeSavedCut("a.cut");
  for (int32_t i = 2; i <= 3; ++i) {
    MakeFrames(i);
    Command(kCommandOverwriteCut);
  }
  const std::string file = Contents("a.cut");
  Command(kCommandOpenVersion, kVersionDialog, {});
  ASSERT_NE(Cut(), cut);
  EXPECT_EQ(Cut()->frames.Count(), 2);
  EXPECT_EQ(Cut()->path, folder.Path("a.cut"));
  EXPECT_EQ(Marks().substr(0, 2), "mi");
  EXPECT_EQ(Contents("a.cut"), file);
}

TEST_F(OpenVersionTest, ListsTheNewestFirst) {
  MakeSavedCut("a.cut");
  MakeFrames(2);
  Command(kCommandOverwriteCut);
  MakeFrames(3);
  platform::headless::QueueYesNo(false);
  CloseActiveCut();
  frame->OpenByExtension(folder.Path("a.cut").c_str());
  const auto lineOf = [this](size_t index) {
    const Generation version = ListGenerations(folder.Path("a.cut")).at(index);
    char time[32];
    const std::time_t seconds = static_cast<std::time_t>(version.time);
    std::strftime(time, sizeof(time), "%Y/%m/%d %H:%M:%S", std::localtime(&seconds));
    const std::string kind = ShiftJis(version.kind == GenerationKind::kUnsaved ? "未保存" : "保存");
    return "00" + std::to_string(index + 1) + "  " + time + "  " + kind + "  " + std::to_string(version.bytes) +
           ShiftJis(" バイト");
  };
  Command(kCommandOpenVersion, kVersionDialog, {{kVersionList, lineOf(0)}});
  EXPECT_EQ(Cut()->frames.Count(), 3);
  Command(kCommandOpenVersion, kVersionDialog, {{kVersionList, lineOf(1)}});
  EXPECT_EQ(Cut()->frames.Count(), 1);
}

TEST_F(OpenVersionTest, SaysIfThereIsNone) {
  MakeSavedCut("a.cut");
  const int32_t messages = platform::headless::LastMessage().count;
  Command(kCommandOpenVersion);
  EXPECT_EQ(platform::headless::LastMessage().count, messages + 1);
  EXPECT_EQ(platform::headless::LastMessage().text, ShiftJis("このカットの以前の版はありません。"));
}

TEST_F(OpenVersionTest, OpensNothingAfterACancel) {
  MakeSavedCut("a.cut");
  Command(kCommandOverwriteCut);
  CancelledCommand(kCommandOpenVersion, kVersionDialog);
  EXPECT_EQ(frame->openCuts.size(), 1u);
}

}  // namespace
}  // namespace sorvel::testshell
