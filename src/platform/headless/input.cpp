#include <algorithm>

#include "platform/headless/internal.h"

// The focus, the active window, the mouse, window timers and the input method.
namespace sorvel::platform {

namespace {

Window* gFocus = nullptr;
Window* gActive = nullptr;
Window* gCapture = nullptr;
Point gCursorPlace;
CursorShape gCursorShape = CursorShape::kArrow;
bool gInputMethodOpen = false;
uint32_t gHeldKeys = 0;

struct FocusCodes {
  int32_t gain;
  int32_t loss;
};

// False for controls that send no focus notifications.
bool FindFocusCodes(const Window* control, FocusCodes* codes) {
  switch (control->kind) {
    case WindowKind::kEdit:
      *codes = {kEditSetFocus, kEditKillFocus};
      return true;
    case WindowKind::kListBox:
      *codes = {kListSetFocus, kListKillFocus};
      return true;
    case WindowKind::kCheckBox:
    case WindowKind::kRadioButton:
    case WindowKind::kPushButton:
      *codes = {kButtonSetFocus, kButtonKillFocus};
      return true;
    default:
      return false;
  }
}

void TellFocus(Window* window, bool gains, Window* other) {
  if (!headless::IsControl(window)) {
    Send(window, gains ? kMessageSetFocus : kMessageKillFocus, reinterpret_cast<uintptr_t>(other), 0);
    return;
  }
  FocusCodes codes;
  if (FindFocusCodes(window, &codes)) headless::NotifyParent(window, gains ? codes.gain : codes.loss);
}

}  // namespace

namespace headless {

bool HasFocusIn(const Window* window) {
  for (const Window* each = gFocus; each != nullptr; each = each->parent) {
    if (each == window) return true;
  }
  return false;
}

void ForgetInput(const Window* window) {
  if (gFocus == window) gFocus = nullptr;
  if (gActive == window) gActive = nullptr;
  if (gCapture == window) gCapture = nullptr;
}

void KeepFocus() {
  Window* frame = FindWindowOfKind(WindowKind::kFrame);
  if (gFocus == nullptr && frame != nullptr && !frame->ending) SetFocusTo(frame);
}

void SetCursorPlace(Point place) {
  gCursorPlace = place;
}

CursorShape CurrentCursor() {
  return gCursorShape;
}

void HoldKeys(uint32_t keys) {
  gHeldKeys = keys;
}

bool IsInputMethodOn() {
  return gInputMethodOpen;
}

void ResetInput() {
  gFocus = nullptr;
  gActive = nullptr;
  gCapture = nullptr;
  gCursorPlace = {};
  gCursorShape = CursorShape::kArrow;
  gInputMethodOpen = false;
  gHeldKeys = 0;
}

}  // namespace headless

void SetFocusTo(WindowHandle window) {
  if (window == gFocus || (window != nullptr && !headless::IsWindow(window))) return;
  Window* old = gFocus;
  // The new window already has the focus when the old one gets its message, as in the window system.
  gFocus = window;
  if (old != nullptr) TellFocus(old, false, window);
  if (gFocus == window && window != nullptr) TellFocus(window, true, headless::IsWindow(old) ? old : nullptr);
}

WindowHandle FocusedWindow() {
  return gFocus;
}

void ActivateWindow(WindowHandle window) {
  if (!headless::IsWindow(window) || window == gActive) return;
  constexpr uintptr_t loses = 0;
  constexpr uintptr_t gains = 1;
  Window* old = gActive;
  gActive = window;
  if (old != nullptr) Send(old, kMessageActivate, loses, reinterpret_cast<intptr_t>(window));
  if (gActive == window) Send(window, kMessageActivate, gains, reinterpret_cast<intptr_t>(old));
}

void CaptureMouse(WindowHandle window) {
  gCapture = headless::IsWindow(window) ? window : nullptr;
}

void ReleaseMouse() {
  gCapture = nullptr;
}

WindowHandle CapturingWindow() {
  return gCapture;
}

Point CursorPlace() {
  return gCursorPlace;
}

CursorShape SetCursorShape(CursorShape shape) {
  const CursorShape old = gCursorShape;
  gCursorShape = shape;
  return old;
}

uint32_t HeldKeys() {
  return gHeldKeys;
}

void SetWindowTimer(WindowHandle window, uintptr_t id, uint32_t milliseconds) {
  if (!headless::IsWindow(window)) return;
  KillWindowTimer(window, id);
  window->timers.push_back({id, milliseconds});
}

void KillWindowTimer(WindowHandle window, uintptr_t id) {
  if (!headless::IsWindow(window)) return;
  std::vector<WindowTimer>& timers = window->timers;
  timers.erase(std::remove_if(timers.begin(), timers.end(), [id](const WindowTimer& timer) { return timer.id == id; }),
               timers.end());
}

bool IsInputMethodOpen(WindowHandle window) {
  static_cast<void>(window);
  return gInputMethodOpen;
}

void OpenInputMethod(WindowHandle window, bool open) {
  static_cast<void>(window);
  gInputMethodOpen = open;
}

}  // namespace sorvel::platform
