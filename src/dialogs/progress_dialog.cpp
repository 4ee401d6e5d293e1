#include "dialogs/progress_dialog.h"

#include <cstdio>
#include <utility>

#include "platform/controls.h"
#include "platform/menus.h"
#include "resources/ids.h"

namespace sorvel {

namespace {

constexpr uintptr_t kTimer = 1;
constexpr uint32_t kPeriod = 100;
constexpr size_t kTextSize = 256;
constexpr int32_t kSecondsAMinute = 60;

// Text that stands already isn't written again: it would flicker.
void ShowText(platform::WindowHandle control, const std::string& text) {
  char shown[kTextSize];
  platform::ReadText(control, shown, sizeof(shown));
  if (text != shown) platform::SetText(control, text.c_str());
}

std::string NumberText(int32_t id, int32_t number) {
  char form[kTextSize];
  char text[kTextSize];
  platform::ReadResourceText(id, form, sizeof(form));
  std::snprintf(text, sizeof(text), form, number);
  return text;
}

}  // namespace

ProgressDialog::ProgressDialog(platform::WindowHandle helpBar, ShownWork* shownWork, std::string shownTitle)
    : Dialog(helpBar, kProgressDialog), work(shownWork), title(std::move(shownTitle)) {}

void ProgressDialog::WriteValues(platform::WindowHandle dialog) {
  platform::SetText(platform::DialogControl(dialog, kProgressTitle), title.c_str());
  platform::SetWindowTimer(dialog, kTimer, kPeriod);
}

void ProgressDialog::OnTimer(platform::WindowHandle dialog) {
  if (!hasBegun) {
    hasBegun = true;
    if (!isStopping) work->Begin();
  }
  if (work->HasEnded()) {
    platform::KillWindowTimer(dialog, kTimer);
    End(dialog, true);
    return;
  }
  const ShownWork::State state = work->Look();
  platform::SetProgress(platform::DialogControl(dialog, kProgressGauge), state.permille);
  if (isStopping) return;
  ShowText(platform::DialogControl(dialog, kProgressText), state.text);
  ShowText(platform::DialogControl(dialog, kProgressTime), TimeLeft(state));
}

// Empty while there is too little to go by.
std::string ProgressDialog::TimeLeft(const ShownWork::State& state) {
  constexpr int32_t whole = 1000;
  constexpr int32_t little = 20;
  const Clock::time_point now = Clock::now();
  if (state.stage != stage) {
    stage = state.stage;
    stageBegin = now;
  }
  const double spent = std::chrono::duration<double>(now - stageBegin).count();
  if (state.permille < little || spent < 1) return "";
  const auto left = static_cast<int32_t>(spent * (whole - state.permille) / state.permille) + 1;
  if (left < 2 * kSecondsAMinute) return NumberText(kTextExportSeconds, left);
  return NumberText(kTextExportMinutes, (left + kSecondsAMinute / 2) / kSecondsAMinute);
}

// The dialog stays until the work has ended.
bool ProgressDialog::MayEnd(platform::WindowHandle dialog) {
  if (!isStopping) {
    isStopping = true;
    work->Stop();
    char text[kTextSize];
    platform::ReadResourceText(kTextExportStopping, text, sizeof(text));
    platform::SetText(platform::DialogControl(dialog, kProgressText), text);
    platform::SetText(platform::DialogControl(dialog, kProgressTime), "");
  }
  return false;
}

}  // namespace sorvel
