// A short run of the monkey. Longer ones are made with the program sorvel_monkey.

#include "monkey/monkey.h"

#include <gtest/gtest.h>

#include "support/test_document.h"

namespace sorvel::monkey {
namespace {

// A session that `sorvel run` would repeat and a rough one by turns.
class MonkeySessions : public testing::TestWithParam<uint64_t> {};

TEST_P(MonkeySessions, BreakNothing) {
  constexpr int64_t steps = 1000;
  const testdoc::TemporaryFolder folder;
  FILE* script = std::fopen(folder.Path("session.sorvel").c_str(), "w");
  ASSERT_NE(script, nullptr);
  MonkeyOptions options;
  options.isRough = GetParam() % 2 == 0;
  options.damagesFiles = false;
  std::string failure;
  {
    Monkey monkey(GetParam(), folder.Path(""), script, options);
    while (monkey.Steps() < steps && monkey.Step()) {
    }
    failure = monkey.Failure();
    EXPECT_TRUE(failure.empty() || monkey.Steps() > 0);
  }
  std::fclose(script);
  EXPECT_EQ(failure, "") << "after this script, in an empty folder with the subfolders files and files/sub:\n"
                         << testdoc::ReadFile(folder.Path("session.sorvel"));
}

INSTANTIATE_TEST_SUITE_P(Seeds, MonkeySessions, testing::Range<uint64_t>(1, 33));

// Every state of a cut that steps lead back or forward to is the one that there was. `sorvel_monkey --undo` makes more
// such sessions.
TEST(UndoSessions, ComeBackToEveryState) {
  constexpr uint64_t sessions = 200;
  constexpr int64_t steps = 60;
  const testdoc::TemporaryFolder folder;
  MonkeyOptions options;
  options.isRough = false;
  options.isUndoing = true;
  for (uint64_t seed = 1; seed <= sessions; ++seed) {
    FILE* script = std::fopen(folder.Path("session.sorvel").c_str(), "w");
    ASSERT_NE(script, nullptr);
    std::string failure;
    {
      Monkey monkey(seed, folder.Path(""), script, options);
      while (monkey.Steps() < steps && monkey.Step()) {
      }
      monkey.WalkUndo();
      failure = monkey.Failure();
    }
    std::fclose(script);
    ASSERT_EQ(failure, "") << "in session " << seed << ":\n" << testdoc::ReadFile(folder.Path("session.sorvel"));
  }
}

// The checks see what they are there for.
class MonkeyChecks : public testing::Test {
 protected:
  MonkeyChecks() : session(folder.Path(""), nullptr) {}

  void SetUp() override {
    for (const char* line :
         {"client 80 60", "dialog 107 1002=40 1001=30 ok", "dialog 106 1000=A ok", "command 40050", "command 40011"}) {
      ASSERT_TRUE(session.Run(line)) << session.Failure();
    }
    cut = session.ActiveCut();
    ASSERT_NE(cut, nullptr);
  }
  CellImage* Cell(int32_t index) { return cut->layers.At(0)->CellAt(index); }

  testdoc::TemporaryFolder folder;
  Session session;
  CutWindow* cut = nullptr;
};

TEST_F(MonkeyChecks, PassForASoundProgram) {
  for (const char* line : {"# saved", "# remember", "command 40030", "command 40030", "# same", "command 40032",
                           "command 40032", "# clean", "answer no", "exit"}) {
    EXPECT_TRUE(session.Run(line)) << line << ": " << session.Failure();
  }
  EXPECT_TRUE(session.HasEnded());
}

TEST_F(MonkeyChecks, SeeACellNumberOutOfRange) {
  cut->frames.At(0)->records.At(0)->cell = 2;
  EXPECT_FALSE(session.Run("timer"));
  EXPECT_EQ(session.Failure(), "a record shows the cell 2 of frame 0");
}

TEST_F(MonkeyChecks, LetABlankRecordRememberACellThatIsGone) {
  cut->frames.At(0)->records.At(0)->cell = -1 - 2;
  cut->RecordStep();
  EXPECT_TRUE(session.Run("timer"));
  // Only then may it come back.
  EXPECT_TRUE(session.Run("command 40060")) << session.Failure();
  EXPECT_EQ(cut->frames.At(0)->records.At(0)->cell, 2);
}

TEST_F(MonkeyChecks, SeeARecordThatDoesNotExist) {
  cut->frames.At(0)->currentRecord = 1;
  EXPECT_FALSE(session.Run("timer"));
  EXPECT_EQ(session.Failure(), "the current record is 1 of frame 0");
}

TEST_F(MonkeyChecks, SeeAWorkMarker) {
  Cell(1)->SetPixel(39, 29, kWorkMarker);
  EXPECT_FALSE(session.Run("timer"));
  EXPECT_EQ(session.Failure(), "a work marker is left in a cell");
}

TEST_F(MonkeyChecks, SeeADrawingThatTwoUndosChange) {
  EXPECT_TRUE(session.Run("# remember"));
  Cell(0)->SetPixel(3, 4, kLineBlack);
  EXPECT_FALSE(session.Run("# same"));
}

TEST_F(MonkeyChecks, SeeAnOldView) {
  EXPECT_TRUE(session.Run("# clean"));
  Cell(1)->SetPixel(3, 4, kLineBlack);
  EXPECT_FALSE(session.Run("# clean"));
  EXPECT_EQ(session.Failure(), "the view isn't the picture of the current frame");
}

TEST_F(MonkeyChecks, SeeAnOverlay) {
  EXPECT_TRUE(session.Run("command 40045"));
  EXPECT_TRUE(session.Run("mouse ldown 30 25"));
  EXPECT_TRUE(session.Run("mouse move 45 40"));
  EXPECT_FALSE(session.Run("# clean"));
  EXPECT_EQ(session.Failure(), "something is left on the screen after a repaint");
}

TEST_F(MonkeyChecks, SeeASelection) {
  EXPECT_TRUE(session.Run("command 40059"));
  EXPECT_TRUE(session.Run("mouse rup 30 25"));
  EXPECT_FALSE(session.Run("# clean"));
  EXPECT_EQ(session.Failure(), "a selection is left after a repaint");
}

TEST_F(MonkeyChecks, SeeAChangeThatMakesNoStep) {
  EXPECT_TRUE(session.Run("timer"));
  cut->frames.At(0)->time = 7;
  EXPECT_FALSE(session.Run("timer"));
  EXPECT_EQ(session.Failure(), "a change made no step");
}

TEST_F(MonkeyChecks, SeeAStepThatLeadsElsewhere) {
  EXPECT_TRUE(session.Run("command 40011"));
  EXPECT_TRUE(session.Run("command 40202"));
  EXPECT_TRUE(session.Run("command 40203"));
  // Pixels that are written past the cell's operations are no change that a step knows of.
  Cell(0)->bits[0] ^= 1;
  EXPECT_FALSE(session.Run("command 40202"));
}

TEST_F(MonkeyChecks, SeeADialogWithoutAnswer) {
  EXPECT_FALSE(session.Run("command 40112"));
  EXPECT_EQ(session.Failure(), "the action is refused: dialog 123 has no answer");
}

}  // namespace
}  // namespace sorvel::monkey
