#include <gtest/gtest.h>
#include <unistd.h>

#include <climits>

#include "platform/controls.h"
#include "platform/headless/internal.h"
#include "platform_fixture.h"
#include "resources/ids.h"

namespace sorvel::platform {
namespace {

// A dialog function that writes down its commands, and ends the dialog by OK and Cancel.
struct DialogLog {
  std::vector<std::string> commands;
  std::string values;  // read on OK: controls of the numbers below, separated by bars
  std::vector<int32_t> texts;
  std::vector<int32_t> checks;
  WindowHandle owner = nullptr;
  Bounds place;
  bool ends = true;
};
DialogLog* gLog = nullptr;

void FillValues(WindowHandle dialog) {
  gLog->owner = ParentOf(dialog);
  gLog->place = ScreenBounds(dialog);
  const WindowHandle list = DialogControl(dialog, kFontNameList);
  for (const char* name : {"Gothic", "Mincho", "Arial"}) {
    if (list != nullptr) AddListLine(list, name);
  }
  const WindowHandle upDown = DialogControl(dialog, kCutWidthUpDown);
  if (upDown != nullptr) {
    SetUpDownRange(upDown, 1, 32767);
    SetUpDownPosition(upDown, 960);
  }
  const WindowHandle radio = DialogControl(dialog, kCutQuarterRadio);
  if (radio != nullptr) SetChecked(radio, true);
}

void ReadValues(WindowHandle dialog) {
  for (const int32_t id : gLog->texts) gLog->values += DialogControl(dialog, id)->text + "|";
  for (const int32_t id : gLog->checks) gLog->values += IsChecked(DialogControl(dialog, id)) ? "1" : "0";
  const WindowHandle list = DialogControl(dialog, kFontNameList);
  if (list != nullptr) gLog->values += std::to_string(SelectedListLine(list));
  const WindowHandle upDown = DialogControl(dialog, kCutWidthUpDown);
  if (upDown != nullptr) gLog->values += std::to_string(UpDownPosition(upDown));
}

intptr_t TestDialog(WindowHandle dialog, uint32_t message, uintptr_t first, intptr_t second) {
  if (message == kMessageInitDialog) {
    gLog = reinterpret_cast<DialogLog*>(second);
    FillValues(dialog);
    return 1;
  }
  if (message != kMessageCommand) return 0;
  const int32_t id = static_cast<int32_t>(LowHalf(first));
  gLog->commands.push_back(std::to_string(id) + " " + std::to_string(HighHalf(first)));
  EXPECT_EQ(reinterpret_cast<WindowHandle>(second), DialogControl(dialog, id));
  if (id == 1) ReadValues(dialog);
  if ((id == 1 || id == 2) && gLog->ends) EndDialog(dialog, id == 1 ? 7 : 0);
  return 1;
}

class HeadlessDialog : public HeadlessTest {
 protected:
  intptr_t Run(int32_t resource) { return RunDialog(resource, frame.window, TestDialog, &log); }
  intptr_t Answered(int32_t resource, const std::vector<std::pair<int32_t, std::string>>& values, bool ok = true) {
    headless::QueueDialog({resource, values, ok});
    return Run(resource);
  }
  std::string FailureOf(int32_t resource, int32_t id, const char* value) {
    headless::ClearFailure();
    EXPECT_EQ(Answered(resource, {{id, value}}), 0);
    return headless::Failure();
  }

  Frame frame;
  DialogLog log;
};

TEST_F(HeadlessDialog, OkAndCancelEndItWithTheirCommand) {
  EXPECT_EQ(Answered(kCutDialog, {}), 7);
  // The edit tells of the width that was put into it.
  EXPECT_EQ(log.commands, Log({"1002 768", "1 0"}));
  log.commands.clear();
  EXPECT_EQ(Answered(kCutDialog, {}, false), 0);
  EXPECT_EQ(log.commands, Log({"1002 768", "2 0"}));
  EXPECT_EQ(headless::Failure(), "");
  EXPECT_EQ(headless::FindWindowOfKind(WindowKind::kDialog), nullptr);
}

TEST_F(HeadlessDialog, ItHasAnOwnerAndTheSizeOfItsTemplate) {
  Answered(kCutDialog, {});
  EXPECT_EQ(log.owner, frame.window);
  EXPECT_EQ(log.place, (Bounds{0, 0, 191 * 6 / 4, 93 * 12 / 8}));
}

TEST_F(HeadlessDialog, ValuesAreSetInOrderAfterTheDialogsOwn) {
  log.texts = {kCutWidthEdit, kCutCreditEdit};
  log.checks = {kCutWholeRadio, kCutHalfRadio, kCutQuarterRadio};
  EXPECT_EQ(Answered(kCutDialog, {{kCutWidthEdit, "12"}, {kCutWidthEdit, "1024"}, {kCutCreditEdit, "me"}}), 7);
  EXPECT_EQ(log.values, "1024|me|0011024");
}

TEST_F(HeadlessDialog, ARadioButtonThatGoesOnSwitchesItsGroupOff) {
  log.checks = {kCutWholeRadio, kCutHalfRadio, kCutQuarterRadio};
  EXPECT_EQ(Answered(kCutDialog, {{kCutHalfRadio, "on"}}), 7);
  EXPECT_EQ(Answered(kCutDialog, {{kCutQuarterRadio, "off"}}), 7);
  EXPECT_EQ(log.values, "010960000960");
}

TEST_F(HeadlessDialog, CheckBoxesAreSwitchedOneByOne) {
  log.checks = {kMaskTransparentCheck, kMaskBlackCheck, kMaskDarkCheck};
  EXPECT_EQ(
      Answered(kMaskDialog, {{kMaskBlackCheck, "on"}, {kMaskTransparentCheck, "on"}, {kMaskTransparentCheck, "off"}}),
      7);
  EXPECT_EQ(log.values, "010");
  EXPECT_EQ(log.commands, Log({"1 0"}));
}

TEST_F(HeadlessDialog, AClickedButtonSendsItsCommand) {
  EXPECT_EQ(Answered(kMaskDialog, {{kMaskClearButton, "click"}, {kMaskInvertButton, "click"}}), 7);
  EXPECT_EQ(log.commands, Log({"1049 0", "1050 0", "1 0"}));
}

TEST_F(HeadlessDialog, ASortedListSelectsTheLineOfATextExactly) {
  EXPECT_EQ(Answered(kFontDialog, {{kFontNameList, "Mincho"}}), 7);
  EXPECT_EQ(log.values, "2");
  EXPECT_EQ(FailureOf(kFontDialog, kFontNameList, "Minch"), "control 1028 of dialog 113 has no line \"Minch\"");
}

TEST_F(HeadlessDialog, AnEditOfSeveralLinesGetsTheLineEndsOfItsKey) {
  log.texts = {kTextDialogEdit};
  EXPECT_EQ(Answered(kTextDialog, {{kTextDialogEdit, "a\nb\r\nc"}}), 7);
  EXPECT_EQ(log.values, "a\r\nb\r\nc|");
}

TEST_F(HeadlessDialog, ItDoesntMoveTheFocus) {
  const WindowHandle edit = MakeEdit(frame.window, 5, false);
  SetFocusTo(edit);
  frame.log.clear();
  Answered(kCutDialog, {{kCutWidthEdit, "3"}});
  EXPECT_EQ(FocusedWindow(), edit);
  EXPECT_TRUE(frame.log.empty());
}

TEST_F(HeadlessDialog, WithoutAnAnswerItFails) {
  EXPECT_EQ(Run(106), 0);
  EXPECT_EQ(headless::Failure(), "dialog 106 has no answer");
  EXPECT_TRUE(log.commands.empty());
}

TEST_F(HeadlessDialog, AnAnswerForAnotherTemplateFails) {
  headless::QueueDialog({kCutDialog, {}, true});
  EXPECT_EQ(Run(106), 0);
  EXPECT_EQ(headless::Failure(), "dialog 106 came up, but the answer is for dialog 107");
}

TEST_F(HeadlessDialog, AnUnknownTemplateFails) {
  EXPECT_EQ(Answered(999, {}), 0);
  EXPECT_EQ(headless::Failure(), "there is no dialog 999");
}

TEST_F(HeadlessDialog, AValueThatDoesntFitFailsAndTheDialogIsCancelled) {
  const struct {
    int32_t dialog;
    int32_t control;
    const char* value;
    const char* failure;
  } values[] = {{kMaskDialog, 1999, "on", "dialog 109 has no control 1999"},
                {kMaskDialog, kMaskTransparentCheck, "yes", "control 1013 of dialog 109 takes on or off, not \"yes\""},
                {kMaskDialog, kMaskClearButton, "on", "control 1049 of dialog 109 takes click, not \"on\""},
                {kCutDialog, kCutWidthUpDown, "5", "control 1005 of dialog 107 takes no value"}};
  for (const auto& [dialog, control, value, failure] : values) EXPECT_EQ(FailureOf(dialog, control, value), failure);
  EXPECT_EQ(log.commands, Log({"2 0", "2 0", "2 0", "1002 768", "2 0"}));
}

TEST_F(HeadlessDialog, TheFirstFailureIsKept) {
  Run(106);
  Run(107);
  EXPECT_EQ(headless::Failure(), "dialog 106 has no answer");
  headless::ClearFailure();
  EXPECT_EQ(headless::Failure(), "");
}

TEST_F(HeadlessDialog, AFailureMakesItACancelEvenIfTheFunctionSaysElse) {
  log.ends = false;
  EXPECT_EQ(Answered(kCutDialog, {}), 0);
  EXPECT_EQ(headless::Failure(), "dialog 107 wasn't ended by its button");
}

// The dialogs of the window system.

using HeadlessBoxes = HeadlessTest;

constexpr FileForm kForm = {"Cuts\0*.cut\0", "cut"};

TEST_F(HeadlessBoxes, AFileGetsTheDefaultExtensionIfItHasNone) {
  char path[260] = "";
  headless::QueueFile("/a.b/name");
  headless::QueueFile("/a/name.txt");
  EXPECT_TRUE(AskFileToSave(nullptr, kForm, path, sizeof(path)));
  EXPECT_STREQ(path, "/a.b/name.cut");
  EXPECT_TRUE(AskFileToOpen(nullptr, kForm, path, sizeof(path)));
  EXPECT_STREQ(path, "/a/name.txt");
  headless::QueueFile("/a/name");
  EXPECT_TRUE(AskFileToOpen(nullptr, {"All\0*\0", nullptr}, path, sizeof(path)));
  EXPECT_STREQ(path, "/a/name");
}

TEST_F(HeadlessBoxes, ARelativePathBecomesAFullOne) {
  char folder[PATH_MAX];
  ASSERT_NE(getcwd(folder, sizeof(folder)), nullptr);
  char path[PATH_MAX] = "";
  headless::QueueFile("c.cut");
  EXPECT_TRUE(AskFileToOpen(nullptr, kForm, path, sizeof(path)));
  EXPECT_EQ(path, std::string(folder) + "/c.cut");
}

TEST_F(HeadlessBoxes, ACancelAndAPathThatIsTooLongLeaveTheBuffer) {
  char path[8] = "old";
  headless::QueueFileCancel();
  headless::QueueFile("/abcdefgh.cut");
  EXPECT_FALSE(AskFileToOpen(nullptr, kForm, path, sizeof(path)));
  EXPECT_FALSE(AskFileToOpen(nullptr, kForm, path, sizeof(path)));
  EXPECT_STREQ(path, "old");
  EXPECT_EQ(headless::Failure(), "");
  EXPECT_FALSE(AskFileToOpen(nullptr, kForm, path, sizeof(path)));
  EXPECT_EQ(headless::Failure(), "a file dialog has no answer");
}

TEST_F(HeadlessBoxes, QuestionsAreAnsweredInOrderAndRemembered) {
  headless::QueueYesNo(true);
  headless::QueueYesNo(false);
  EXPECT_TRUE(AskYesNo(nullptr, "one?", "title", BoxIcon::kQuestion));
  EXPECT_FALSE(AskYesNo(nullptr, "two?", "other", BoxIcon::kNone));
  EXPECT_EQ(headless::LastQuestion().text, "two?");
  EXPECT_EQ(headless::LastQuestion().title, "other");
  EXPECT_EQ(headless::LastQuestion().count, 2);
  EXPECT_FALSE(AskYesNo(nullptr, "three?", "title", BoxIcon::kQuestion));
  EXPECT_EQ(headless::Failure(), "the question \"three?\" has no answer");
}

TEST_F(HeadlessBoxes, AMessageNeedsNoAnswer) {
  ShowMessage(nullptr, "text", "title", BoxIcon::kInformation);
  EXPECT_EQ(headless::LastMessage().text, "text");
  EXPECT_EQ(headless::LastMessage().title, "title");
  EXPECT_EQ(headless::LastMessage().icon, BoxIcon::kInformation);
  EXPECT_EQ(headless::Failure(), "");
  PlayAlert();
  PlayAlert();
  EXPECT_EQ(headless::AlertCount(), 2);
}

TEST_F(HeadlessBoxes, AColourHasRedInTheLowByte) {
  uint32_t custom[16] = {};
  uint32_t color = 5;
  headless::QueueColor(0x11, 0x22, 0x33);
  headless::QueueColorCancel();
  EXPECT_TRUE(AskColor(nullptr, custom, &color));
  EXPECT_EQ(color, 0x332211u);
  EXPECT_FALSE(AskColor(nullptr, custom, &color));
  EXPECT_EQ(headless::Failure(), "");
  EXPECT_FALSE(AskColor(nullptr, custom, &color));
  EXPECT_EQ(headless::Failure(), "a colour dialog has no answer");
  EXPECT_EQ(color, 0x332211u);
}

TEST_F(HeadlessBoxes, AnswersOfAllKindsAreCountedAndCleared) {
  headless::QueueDialog({});
  headless::QueueFileCancel();
  headless::QueueYesNo(true);
  headless::QueueColorCancel();
  EXPECT_EQ(headless::QueuedAnswers(), 4u);
  headless::ClearAnswers();
  EXPECT_EQ(headless::QueuedAnswers(), 0u);
  EXPECT_FALSE(AskYesNo(nullptr, "?", "title", BoxIcon::kNone));
}

TEST_F(HeadlessBoxes, AFailureIsOneLine) {
  AskYesNo(nullptr, "a\nb", "title", BoxIcon::kNone);
  EXPECT_EQ(headless::Failure(), "the question \"a b\" has no answer");
}

}  // namespace
}  // namespace sorvel::platform
