#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "dialogs/dialogs.h"
#include "platform/controls.h"
#include "platform/dialogs.h"
#include "platform/headless/headless.h"
#include "platform/text.h"
#include "resources/ids.h"
#include "shell/entry.h"

namespace sorvel::testdialogs {

inline std::string ShiftJis(const std::string& utf8) {
  std::string text;
  EXPECT_TRUE(platform::Utf8ToShiftJis(utf8, &text));
  return text;
}

struct QuietObject final : platform::WindowObject {
  intptr_t WindowProc(uint32_t message, uintptr_t first, intptr_t second) override {
    return platform::DefaultHandling(window, message, first, second);
  }
};

// A window that dialogs are shown over, and the bar for their help.
class DialogTest : public testing::Test {
 protected:
  using Values = std::vector<std::pair<int32_t, std::string>>;

  void SetUp() override {
    platform::headless::Reset();
    ResetProgram();
    platform::RegisterWindowClass("TestOwner", 0, platform::CursorShape::kArrow, nullptr);
    owner = platform::MakeCaptionWindow("TestOwner", "", nullptr, &object);
    ASSERT_NE(owner, nullptr);
    bar = platform::MakeStatusBar(owner, kStatusBarId);
  }
  void TearDown() override {
    EXPECT_EQ(platform::headless::Failure(), "");
    EXPECT_EQ(gCurrentDialog, nullptr);
    platform::DestroyWindow(owner);
    platform::headless::Reset();
  }

  // Runs the dialog with these entries and OK.
  bool Run(Dialog* dialog, const Values& values = {}) {
    platform::headless::QueueDialog({dialog->templateId, values, true});
    return dialog->Run(owner);
  }

  // Runs the dialog without an entry and hands its window to `look` when the values are in the controls; then OK.
  void Look(Dialog* dialog, const std::function<void(platform::WindowHandle)>& look) {
    probed_ = dialog;
    look_ = look;
    platform::headless::QueueDialog({dialog->templateId, {}, true});
    EXPECT_EQ(platform::RunDialog(dialog->templateId, owner, ProbeProc, this), 1);
  }

  static std::string TextOf(platform::WindowHandle dialog, int32_t id) {
    char text[512];
    platform::ReadText(platform::DialogControl(dialog, id), text, sizeof(text));
    return text;
  }
  static platform::WindowHandle Control(platform::WindowHandle dialog, int32_t id) {
    return platform::DialogControl(dialog, id);
  }
  // "low to high: position" of an up-down control, with the text of the edit it belongs to.
  static std::string Entry(platform::WindowHandle dialog, int32_t edit, int32_t upDown) {
    const platform::WindowHandle control = platform::DialogControl(dialog, upDown);
    return std::to_string(control->low) + " to " + std::to_string(control->high) + ": " + TextOf(dialog, edit);
  }

  // What the bar shows after the notification of a control.
  std::string HelpOf(Dialog* dialog, int32_t id, int32_t code) {
    platform::SetText(bar, "before");
    EXPECT_EQ(dialog->OnControl(owner, code, id, nullptr), 1);
    char text[512];
    platform::ReadText(bar, text, sizeof(text));
    return text;
  }

  QuietObject object;
  platform::WindowHandle owner = nullptr;
  platform::WindowHandle bar = nullptr;

 private:
  static intptr_t ProbeProc(platform::WindowHandle dialog, uint32_t message, uintptr_t first, intptr_t second) {
    static DialogTest* test = nullptr;
    if (message == platform::kMessageInitDialog) {
      test = reinterpret_cast<DialogTest*>(second);
      test->probed_->WriteValues(dialog);
      test->look_(dialog);
      return 1;
    }
    if (message == platform::kMessageCommand && platform::LowHalf(first) == 1) {
      test->probed_->ReadValues(dialog);
      platform::EndDialog(dialog, 1);
      return 1;
    }
    return 0;
  }

  Dialog* probed_ = nullptr;
  std::function<void(platform::WindowHandle)> look_;
};

}  // namespace sorvel::testdialogs
