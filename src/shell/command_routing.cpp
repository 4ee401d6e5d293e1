#include <cstring>
#include <iterator>

#include "cutwindow/drawing_settings.h"
#include "resources/ids.h"
#include "shell/main_frame.h"

namespace sorvel {

namespace {

constexpr size_t kExplanationSize = 512;
constexpr char kToolTitle[] = "Sorvelin Tool";
constexpr char kAboutTitle[] = "About Sorvelin";

}  // namespace

void MainFrame::SendCommand(int32_t id) {
  platform::Send(frameWindow, platform::kMessageCommand, static_cast<uintptr_t>(id), 0);
}

// Notifications of the panels. All of them belong to the frame.
int32_t MainFrame::OnPanelNotification(int32_t code, int32_t id) {
  switch (id) {
    case kFrameTimeEdit:
    case kLoopEdit:
    case kCommentEdit:
    case kBrightnessEdit:
      OnEditNotification(code, id);
      break;
    case kLayerList:
      if (code == platform::kListSelectionChanged) SelectLayerLine();
      if (code == platform::kListDoubleClicked) EditLayerProperties();
      if (code == platform::kListSetFocus) ShowHelp(id);
      if (code == platform::kListKillFocus) SetStatusText(nullptr);
      break;
    case kCutList:
      if (code == platform::kListDoubleClicked) OpenListedCut();
      if (code == platform::kListSetFocus) ShowHelp(id);
      if (code == platform::kListKillFocus) SetStatusText(nullptr);
      break;
    case kKeyFrameCheck:
      if (code == platform::kButtonClicked) {
        if (CutWindow* cut = ActiveCut()) {
          CommitPanels(cut);
          RefreshPanels(cut);
        }
      }
      if (code == platform::kButtonSetFocus) ShowHelp(id);
      if (code == platform::kButtonKillFocus) SetStatusText(nullptr);
      break;
    default:
      break;
  }
  return 0;
}

void MainFrame::OnEditNotification(int32_t code, int32_t id) {
  if (code != platform::kEditSetFocus && code != platform::kEditKillFocus) return;
  if (id == kCommentEdit) SwapInputMethod();
  if (code == platform::kEditSetFocus) {
    if (id == kFrameTimeEdit) platform::SelectAllText(frameTimeEdit);
    if (id == kLoopEdit) platform::SelectAllText(loopEdit);
    if (id == kBrightnessEdit) platform::SelectAllText(brightnessEdit);
    ShowHelp(id);
    return;
  }
  CutWindow* cut = id == kFrameTimeEdit ? ActiveCut() : nullptr;
  if (Frame* frame = cut != nullptr ? cut->CurrentFrame() : nullptr) {
    const int32_t time = frame->time;
    CommitPanels(cut);
    if (frame->time != time) RefreshPanels(cut);
  }
  SetStatusText(nullptr);
}

// The comment has an input method state of its own, which is exchanged with the rest of the program's whenever the
// focus comes or goes.
void MainFrame::SwapInputMethod() {
  const bool isOpen = platform::IsInputMethodOpen(frameWindow);
  platform::OpenInputMethod(frameWindow, savedImeOpen);
  savedImeOpen = isOpen;
}

// The focus ring begins at the cut window, which is left out when there is none.
void MainFrame::MoveFocus(bool forward) {
  CutWindow* cut = ActiveCut();
  const platform::WindowHandle ring[] = {cut != nullptr ? cut->window : nullptr,
                                         frameTimeEdit,
                                         keyFrameCheck,
                                         loopEdit,
                                         brightnessEdit,
                                         layerList,
                                         cutList,
                                         commentEdit};
  const size_t count = std::size(ring);
  const platform::WindowHandle focused = platform::FocusedWindow();
  if (focused == nullptr) return;
  for (size_t i = 0; i < count; ++i) {
    if (ring[i] != focused) continue;
    const size_t step = forward ? 1 : count - 1;
    size_t next = (i + step) % count;
    if (ring[next] == nullptr) next = (next + step) % count;
    platform::SetFocusTo(ring[next]);
    return;
  }
}

// Tools. The pulse goes round the change: the old tool takes its overlay off, and the new one begins without any.
void MainFrame::SelectTool(int32_t id) {
  if (id == currentTool) {
    // A click on the tool's own button has lifted it.
    MarkTool(id, true);
    return;
  }
  if (CutWindow* cut = ActiveCut()) cut->Pulse();
  MarkTool(currentTool, false);
  previousTool = currentTool;
  currentTool = id;
  MarkTool(id, true);
  if (CutWindow* cut = ActiveCut()) cut->Pulse();
}

void MainFrame::MarkTool(int32_t id, bool on) {
  platform::CheckToolButton(toolBar, id, on);
  platform::CheckMenuEntry(platform::FrameMenu(frameWindow), id, on);
  platform::CheckMenuEntry(toolPopupMenu, id, on);
}

void MainFrame::ExplainTool() {
  char text[kExplanationSize];
  platform::ReadResourceText(currentTool, text, sizeof(text));
  char* feed = std::strchr(text, '\n');
  if (feed != nullptr) *feed = '\0';
  platform::ShowMessage(frameWindow, feed != nullptr ? feed + 1 : text, feed != nullptr ? text : kToolTitle,
                        platform::BoxIcon::kInformation);
}

void MainFrame::ShowAbout() {
  char text[kTextBufferSize];
  platform::ReadResourceText(kTextAbout, text, sizeof(text));
  platform::ShowMessage(frameWindow, text, kAboutTitle, platform::BoxIcon::kNone);
}

}  // namespace sorvel
