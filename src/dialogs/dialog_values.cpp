#include "dialogs/dialog_values.h"

#include <algorithm>
#include <cstdio>
#include <vector>

#include "foundation/shared_string.h"
#include "platform/controls.h"
#include "platform/dialogs.h"

namespace sorvel {

void CopyText(DialogText& to, const char* from) {
  std::snprintf(to, sizeof(to), "%s", from);
}

void ShowText(platform::WindowHandle dialog, int32_t id, const char* text) {
  platform::SetText(platform::DialogControl(dialog, id), text);
}

void TakeText(platform::WindowHandle dialog, int32_t id, DialogText& text) {
  platform::ReadText(platform::DialogControl(dialog, id), text, sizeof(text));
}

void TakeWholeText(platform::WindowHandle dialog, int32_t id, char** field) {
  const platform::WindowHandle edit = platform::DialogControl(dialog, id);
  std::vector<char> typed(platform::TextLength(edit) + 1);
  platform::ReadText(edit, typed.data(), typed.size());
  AssignString(field, typed.data());
}

void ShowNumber(platform::WindowHandle dialog, int32_t upDown, int32_t low, int32_t high, int32_t value) {
  const platform::WindowHandle control = platform::DialogControl(dialog, upDown);
  platform::SetUpDownRange(control, low, high);
  platform::SetUpDownPosition(control, value);
}

int32_t TakeNumber(platform::WindowHandle dialog, int32_t upDown) {
  return platform::UpDownPosition(platform::DialogControl(dialog, upDown));
}

int32_t TakeShortNumber(platform::WindowHandle dialog, int32_t upDown) {
  return static_cast<int16_t>(TakeNumber(dialog, upDown));
}

void ShowSize(platform::WindowHandle dialog, int32_t upDown, int32_t value) {
  ShowNumber(dialog, upDown, 1, kLargestEntry, value);
}

int32_t TakeSize(platform::WindowHandle dialog, int32_t upDown) {
  return std::max(TakeNumber(dialog, upDown), 1);
}

void ShowCheck(platform::WindowHandle dialog, int32_t id, bool checked) {
  platform::SetChecked(platform::DialogControl(dialog, id), checked);
}

bool TakeCheck(platform::WindowHandle dialog, int32_t id) {
  return platform::IsChecked(platform::DialogControl(dialog, id));
}

}  // namespace sorvel
