#include "dialogs/progress_dialog.h"

#include "dialog_fixture.h"

namespace sorvel::testdialogs {
namespace {

// Work of so many looks.
struct CountedWork final : ShownWork {
  void Begin() override { hasBegun = true; }
  bool HasEnded() override { return !hasBegun || left-- == 0; }
  void Stop() override {
    ++stops;
    left = hasBegun ? 1 : 0;
  }
  State Look() override {
    if (look) look();
    return {"part", 0, 400};
  }

  std::function<void()> look;
  int32_t left = 3;
  int32_t stops = 0;
  bool hasBegun = false;
};

class Progress : public DialogTest {
 protected:
  static std::string TextOf(int32_t control) {
    char text[256];
    platform::ReadText(platform::DialogControl(Window(), control), text, sizeof(text));
    return text;
  }
  static platform::WindowHandle Window() { return platform::headless::FindWindowOfKind(platform::WindowKind::kDialog); }

  CountedWork work;
};

TEST_F(Progress, StaysUntilTheWorkEndsAndNeedsNoAnswer) {
  ProgressDialog dialog(bar, &work, "title");
  EXPECT_TRUE(dialog.Run(owner));
  EXPECT_TRUE(work.hasBegun);
  EXPECT_EQ(work.left, -1);
  EXPECT_EQ(work.stops, 0);
}

TEST_F(Progress, ShowsHowFarTheWorkIs) {
  int32_t looks = 0;
  std::string text;
  work.look = [&] {
    EXPECT_EQ(TextOf(kProgressTitle), "title");
    if (++looks < 2) return;
    text = TextOf(kProgressText);
    EXPECT_EQ(platform::DialogControl(Window(), kProgressGauge)->position, 400);
  };
  ProgressDialog(bar, &work, "title").Run(owner);
  EXPECT_EQ(looks, 3);
  EXPECT_EQ(text, "part");
}

TEST_F(Progress, TheButtonStopsTheWorkAndTheDialogWaitsForItsEnd) {
  work.look = [&] {
    if (work.stops != 0) {
      EXPECT_EQ(TextOf(kProgressText), ShiftJis("中止しています..."));
      return;
    }
    for (int32_t i = 0; i < 2; ++i) {
      platform::Send(Window(), platform::kMessageCommand, platform::JoinHalves(2, platform::kButtonClicked), 0);
      EXPECT_EQ(work.stops, 1);
      EXPECT_FALSE(Window()->ended);
    }
  };
  ProgressDialog(bar, &work, "title").Run(owner);
  EXPECT_EQ(work.left, -1);
}

TEST_F(Progress, StoppedAtOnceTheWorkNeverBegins) {
  platform::headless::QueueDialog({kProgressDialog, {}, false});
  ProgressDialog(bar, &work, "title").Run(owner);
  EXPECT_FALSE(work.hasBegun);
  EXPECT_EQ(work.stops, 1);
}

TEST_F(Progress, AnAnswerForALaterDialogStays) {
  platform::headless::QueueDialog({kGridDialog, {}, false});
  ProgressDialog(bar, &work, "title").Run(owner);
  EXPECT_EQ(platform::headless::QueuedAnswers(), 1u);
  platform::headless::ClearAnswers();
}

}  // namespace
}  // namespace sorvel::testdialogs
