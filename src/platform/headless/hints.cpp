#include "platform/hints.h"

#include "foundation/shift_jis.h"
#include "platform/headless/internal.h"

namespace sorvel::platform {

namespace {

headless::HintRecord gHint;

// Digits and the minus sign of full width are two bytes each.
constexpr char kFullLead = '\x82';
constexpr char kFullZero = '\x4F';
constexpr char kFullNine = '\x58';
constexpr char kMinusLead = '\x81';
constexpr char kMinusTrail = '\x7C';

}  // namespace

namespace headless {

const HintRecord& LastHint() {
  return gHint;
}

void ResetHints() {
  gHint = {};
}

std::string EnteredText(const Window* edit, const std::string& text) {
  if (!edit->plainDigits) return text;
  std::string plain;
  for (size_t i = 0; i < text.size(); ++i) {
    const char next = i + 1 < text.size() ? text[i + 1] : '\0';
    if (text[i] == kFullLead && next >= kFullZero && next <= kFullNine) {
      plain += static_cast<char>(next - kFullZero + '0');
      ++i;
    } else if (text[i] == kMinusLead && next == kMinusTrail) {
      plain += '-';
      ++i;
    } else {
      plain += text[i];
      if (IsLeadByte(text[i]) && next != '\0') plain += text[++i];
    }
  }
  return plain;
}

}  // namespace headless

void SetTip(WindowHandle control, const char* text) {
  if (headless::IsWindow(control)) control->tip = text;
}

void ShowHint(WindowHandle window, const char* text, uint32_t milliseconds) {
  if (!headless::IsWindow(window)) return;
  gHint = {text, CursorPlace(), milliseconds, gHint.count + 1, true};
}

void HideHint() {
  gHint.shown = false;
}

void ShowBalloon(WindowHandle control, const char* text) {
  HideBalloon(nullptr);
  if (headless::IsWindow(control)) control->balloon = text;
}

void HideBalloon(WindowHandle control) {
  for (Window* window : headless::AllWindows()) {
    if (control == nullptr || window == control) window->balloon.clear();
  }
}

WindowHandle MakeNote(WindowHandle parent) {
  return headless::IsWindow(parent) ? headless::NewWindow(WindowKind::kLabel, parent, nullptr, {}) : nullptr;
}

void ShowNote(WindowHandle note, const Bounds& area, const char* text) {
  if (!headless::IsWindow(note)) return;
  note->place = area;
  note->text = text != nullptr ? text : "";
  note->shown = text != nullptr;
}

void TakePlainDigits(WindowHandle edit) {
  if (headless::IsWindow(edit)) edit->plainDigits = true;
}

}  // namespace sorvel::platform
