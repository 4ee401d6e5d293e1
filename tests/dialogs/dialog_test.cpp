#include "dialogs/dialog.h"

#include "dialogs/dialog_fixture.h"
#include "resources/ids.h"

namespace sorvel::testdialogs {
namespace {

constexpr int32_t kEdit = kCutHeightEdit;

// Notes what the framework does with it.
class NotingDialog final : public Dialog {
 public:
  NotingDialog(platform::WindowHandle bar, std::string* log) : Dialog(bar, kFrameCountDialog), log_(log) {}

  void ReadValues(platform::WindowHandle dialog) override {
    *log_ += "read ";
    EXPECT_EQ(gCurrentDialog, this);
    place = platform::ScreenBounds(dialog);
    if (atRead) atRead(dialog);
  }
  void WriteValues(platform::WindowHandle dialog) override {
    *log_ += "write ";
    EXPECT_EQ(gCurrentDialog, this);
    if (atWrite) atWrite(dialog);
  }

  Bounds place;
  std::function<void(platform::WindowHandle)> atWrite;
  std::function<void(platform::WindowHandle)> atRead;

 private:
  std::string* log_;
};

class DialogFramework : public DialogTest {
 protected:
  std::string log;
};

TEST_F(DialogFramework, OkWritesThenReadsAndGivesTrue) {
  NotingDialog dialog(bar, &log);
  EXPECT_TRUE(Run(&dialog));
  EXPECT_EQ(log, "write read ");
}

TEST_F(DialogFramework, CancelReadsNothingAndGivesFalse) {
  NotingDialog dialog(bar, &log);
  platform::headless::QueueDialog({kFrameCountDialog, {{kEdit, "7"}}, false});
  EXPECT_FALSE(dialog.Run(owner));
  EXPECT_EQ(log, "write ");
}

TEST_F(DialogFramework, ADialogThatCannotBeShownCountsAsCancelled) {
  NotingDialog dialog(bar, &log);
  dialog.templateId = 1;  // there is no such resource
  EXPECT_FALSE(dialog.Run(owner));
  EXPECT_EQ(log, "");
  platform::headless::ClearFailure();
}

TEST_F(DialogFramework, NoDialogIsCurrentBetweenDialogs) {
  EXPECT_EQ(gCurrentDialog, nullptr);
  NotingDialog dialog(bar, &log);
  Run(&dialog);
  EXPECT_EQ(gCurrentDialog, nullptr);
}

TEST_F(DialogFramework, TheDialogIsCentredOverItsParent) {
  platform::MoveWindow(owner, 100, 50, 801, 601, false);
  NotingDialog dialog(bar, &log);
  Run(&dialog);
  EXPECT_EQ(dialog.place.left, 100 + 801 / 2 - dialog.place.Width() / 2);
  EXPECT_EQ(dialog.place.top, 50 + 601 / 2 - dialog.place.Height() / 2);
}

TEST_F(DialogFramework, ADialogLargerThanItsParentReachesOverIt) {
  platform::MoveWindow(owner, 0, 0, 20, 10, false);
  NotingDialog dialog(bar, &log);
  Run(&dialog);
  ASSERT_GT(dialog.place.Width(), 20);
  EXPECT_EQ(dialog.place.left, 10 - dialog.place.Width() / 2);
  EXPECT_LT(dialog.place.left, 0);
  EXPECT_EQ(dialog.place.top, 5 - dialog.place.Height() / 2);
  EXPECT_LT(dialog.place.top, 0);
}

TEST_F(DialogFramework, CentringKeepsTheSize) {
  Bounds before;
  NotingDialog dialog(bar, &log);
  dialog.atWrite = [&before](platform::WindowHandle window) { before = platform::ScreenBounds(window); };
  Run(&dialog);
  EXPECT_EQ(dialog.place.Width(), before.Width());
  EXPECT_EQ(dialog.place.Height(), before.Height());
}

// The help of the credit's edit, of a list and of a check box: each kind tells of the focus by numbers of its own.
TEST_F(DialogFramework, AControlThatGetsTheFocusShowsItsHelp) {
  NotingDialog dialog(bar, &log);
  EXPECT_EQ(HelpOf(&dialog, kCutCreditEdit, platform::kEditSetFocus),
            ShiftJis("このカットを担当したスタッフの名前を記入します。"));
  EXPECT_EQ(HelpOf(&dialog, kFontNameList, platform::kListSetFocus),
            ShiftJis("@で始まるフォント名は縦書きになります。"));
  EXPECT_EQ(HelpOf(&dialog, kLayerFollowCheck, platform::kButtonSetFocus),
            ShiftJis("レイヤの位置をフレームに対する相対位置にします。"));
}

TEST_F(DialogFramework, AControlThatLosesTheFocusClearsTheBar) {
  NotingDialog dialog(bar, &log);
  EXPECT_EQ(HelpOf(&dialog, kCutCreditEdit, platform::kEditKillFocus), "");
  EXPECT_EQ(HelpOf(&dialog, kFontNameList, platform::kListKillFocus), "");
  EXPECT_EQ(HelpOf(&dialog, kLayerFollowCheck, platform::kButtonKillFocus), "");
}

TEST_F(DialogFramework, AControlWithoutHelpKeepsTheBarsText) {
  NotingDialog dialog(bar, &log);
  EXPECT_EQ(HelpOf(&dialog, kCutWidthEdit, platform::kEditSetFocus), "before");
}

TEST_F(DialogFramework, OtherNotificationsAreNotHandled) {
  NotingDialog dialog(bar, &log);
  platform::SetText(bar, "before");
  EXPECT_EQ(dialog.OnControl(owner, platform::kButtonClicked, kLayerFollowCheck, nullptr), 0);
  EXPECT_EQ(dialog.OnControl(owner, 0x300, kCutCreditEdit, nullptr), 0);
  EXPECT_EQ(dialog.OnControl(owner, platform::kListSelectionChanged, kFontNameList, nullptr), 0);
  char text[16];
  platform::ReadText(bar, text, sizeof(text));
  EXPECT_STREQ(text, "before");
}

TEST_F(DialogFramework, TabbingThroughADialogShowsAndClearsHelp) {
  std::string shown;
  std::string left;
  const auto barText = [this] {
    char text[512];
    platform::ReadText(bar, text, sizeof(text));
    return std::string(text);
  };
  // Through the procedure of all dialogs: the notification goes from the control to the dialog that is shown.
  class Tabbing final : public Dialog {
   public:
    Tabbing(platform::WindowHandle helpBar, std::function<void(platform::WindowHandle)> tab)
        : Dialog(helpBar, 107), tab_(std::move(tab)) {}
    void ReadValues(platform::WindowHandle window) override { tab_(window); }
    void WriteValues(platform::WindowHandle) override {}

   private:
    std::function<void(platform::WindowHandle)> tab_;
  };
  Tabbing tabbing(bar, [&](platform::WindowHandle window) {
    platform::SetFocusTo(Control(window, kCutCreditEdit));
    shown = barText();
    platform::SetFocusTo(Control(window, kCutWidthEdit));
    left = barText();
  });
  Run(&tabbing);
  EXPECT_EQ(shown, ShiftJis("このカットを担当したスタッフの名前を記入します。"));
  EXPECT_EQ(left, "");
}

// Each dialog by its number, with the controls that a user fills in.
TEST_F(DialogFramework, EveryFieldHasATip) {
  for (const int32_t number : {kLayerDialog, kCutDialog, kGridDialog, kMaskDialog, kFilmDialog, kLayerRampDialog,
                               kFontDialog, kTextDialog, kBrightnessRampDialog, kFrameCountDialog, kFrameRampDialog,
                               kFrameSizeDialog, kRenameDialog, kRandomDotsDialog, kVersionDialog}) {
    NotingDialog dialog(bar, &log);
    dialog.templateId = number;
    int32_t fields = 0;
    dialog.atWrite = [&](platform::WindowHandle window) {
      for (const platform::WindowHandle control : window->children) {
        const bool isField = control->kind != platform::WindowKind::kLabel &&
                             control->kind != platform::WindowKind::kGroupBox && control->id > 2;
        EXPECT_EQ(!control->tip.empty(), isField) << number << ": " << control->id;
        fields += isField ? 1 : 0;
      }
    };
    EXPECT_TRUE(Run(&dialog));
    EXPECT_GT(fields, 0) << number;
  }
}

TEST_F(DialogFramework, ATipIsTheHelpASentenceALine) {
  NotingDialog dialog(bar, &log);
  dialog.templateId = kFontDialog;
  dialog.atWrite = [](platform::WindowHandle window) {
    EXPECT_EQ(Control(window, kFontNameList)->tip, ShiftJis("@で始まるフォント名は縦書きになります。"));
    EXPECT_EQ(Control(window, kFontWeightEdit)->tip,
              ShiftJis("値の範囲は0から1000で、大きくなるほど太くなります。\n400で標準、700でボールドです。\n"
                       "また0でデフォルトになります。"));
    EXPECT_EQ(Control(window, kFontWeightUpDown)->tip, Control(window, kFontWeightEdit)->tip);
  };
  EXPECT_TRUE(Run(&dialog));
}

TEST_F(DialogFramework, NumbersTakeDigitsOfFullWidth) {
  CutDialog dialog(bar, 1, 2, 3, "", 0);
  EXPECT_TRUE(Run(
      &dialog,
      {{kCutWidthEdit, ShiftJis("６４０")}, {kCutHeightEdit, ShiftJis("4８")}, {kCutCreditEdit, ShiftJis("１－２")}}));
  EXPECT_EQ(dialog.width, 640);
  EXPECT_EQ(dialog.height, 48);
  EXPECT_EQ(dialog.credit, ShiftJis("１－２"));
}

TEST_F(DialogFramework, ABalloonSaysTheRangeWhileANumberIsOutsideIt) {
  const std::string range = ShiftJis("1 から 32767 までの数を入力してください。");
  NotingDialog dialog(bar, &log);
  dialog.atWrite = [&](platform::WindowHandle window) {
    const platform::WindowHandle edit = Control(window, kFrameCountEdit);
    platform::SetUpDownRange(Control(window, kFrameCountUpDown), 1, 32767);
    for (const auto& [text, isWrong] : std::vector<std::pair<std::string, bool>>{{"12", false},
                                                                                 {"0", true},
                                                                                 {"7", false},
                                                                                 {"-", true},
                                                                                 {"", false},
                                                                                 {"4x", true},
                                                                                 {"32,767", false},
                                                                                 {"32768", true},
                                                                                 {"99999999999999999999", true}}) {
      platform::headless::TypeText(edit, text);
      EXPECT_EQ(edit->balloon, isWrong ? range : "") << text;
    }
  };
  dialog.atRead = [&](platform::WindowHandle window) { EXPECT_EQ(Control(window, kFrameCountEdit)->balloon, range); };
  EXPECT_TRUE(Run(&dialog));
}

}  // namespace
}  // namespace sorvel::testdialogs
