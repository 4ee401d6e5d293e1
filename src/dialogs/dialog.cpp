#include "dialogs/dialog.h"

#include "dialogs/help_tips.h"
#include "platform/hints.h"
#include "platform/menus.h"

namespace sorvel {

namespace {

enum DialogButton : int32_t { kOk = 1, kCancel = 2 };

constexpr size_t kHelpSize = 256;

intptr_t OnInit(platform::WindowHandle window, Dialog* dialog) {
  gCurrentDialog = dialog;
  ExplainFields(window, dialog->templateId);
  dialog->WriteValues(window);
  // A dialog larger than its parent may lie partly off the screen.
  const Bounds own = platform::ScreenBounds(window);
  const Bounds parent = platform::ScreenBounds(platform::ParentOf(window));
  platform::MoveWindow(window, parent.Width() / 2 - own.Width() / 2 + parent.left,
                       parent.Height() / 2 - own.Height() / 2 + parent.top, own.Width(), own.Height(), false);
  return 1;
}

intptr_t OnCommand(platform::WindowHandle window, uintptr_t first, intptr_t second) {
  const int32_t id = static_cast<int32_t>(platform::LowHalf(first));
  if (id != kOk && id != kCancel) {
    return gCurrentDialog->OnControl(window, static_cast<int32_t>(platform::HighHalf(first)), id,
                                     platform::PointerIn<platform::Window>(second));
  }
  if (!gCurrentDialog->MayEnd(window)) return 1;
  if (id == kOk) gCurrentDialog->ReadValues(window);
  Dialog::End(window, id == kOk);
  return 1;
}

intptr_t DialogProc(platform::WindowHandle window, uint32_t message, uintptr_t first, intptr_t second) {
  if (message == platform::kMessageInitDialog) return OnInit(window, platform::PointerIn<Dialog>(second));
  if (gCurrentDialog == nullptr) return 0;
  if (message == platform::kMessageTimer) gCurrentDialog->OnTimer(window);
  return message == platform::kMessageCommand ? OnCommand(window, first, second) : 0;
}

}  // namespace

Dialog* gCurrentDialog = nullptr;

bool Dialog::Run(platform::WindowHandle owner) {
  return platform::RunDialog(templateId, owner, DialogProc, this) != 0;
}

void Dialog::End(platform::WindowHandle dialog, bool isOk) {
  platform::HideBalloon(nullptr);
  platform::EndDialog(dialog, isOk ? 1 : 0);
  gCurrentDialog = nullptr;
}

// Edits, list boxes and buttons have different notifications for the focus, whose numbers don't overlap.
intptr_t Dialog::OnControl(platform::WindowHandle dialog, int32_t code, int32_t id, platform::WindowHandle) {
  switch (code) {
    case platform::kEditChanged:
      CheckField(dialog, templateId, id);
      return 0;
    case platform::kEditSetFocus:
    case platform::kListSetFocus:
    case platform::kButtonSetFocus: {
      char help[kHelpSize];
      if (platform::ReadResourceText(id, help, sizeof(help)) != 0) platform::SetText(statusBar, help);
      return 1;
    }
    case platform::kEditKillFocus:
    case platform::kListKillFocus:
    case platform::kButtonKillFocus:
      platform::SetText(statusBar, "");
      return 1;
    default:
      return 0;
  }
}

}  // namespace sorvel
