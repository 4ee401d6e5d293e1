#include <cstring>
#include <iterator>

#include "cutwindow/clipboard.h"
#include "resources/ids.h"
#include "shell/main_frame.h"
#include "tools/tool_handlers.h"
#include "tools/tool_state.h"

namespace sorvel {

namespace {

constexpr size_t kExplanationSize = 512;
constexpr char kToolTitle[] = "Sorvelin Tool";
constexpr char kAboutTitle[] = "About Sorvelin";

}  // namespace

int32_t MainFrame::OnCommand(int32_t code, int32_t id, platform::WindowHandle control) {
  CutWindow* cut = ActiveCut();
  if (id == kCommandExit) {
    CloseAllCuts();
    platform::DestroyWindow(frameWindow);
    return 0;
  }
  if (id >= kFrameTimeEdit && id <= kKeyFrameCheck) return OnPanelNotification(code, id);
  if (RunShellCommand(id) || RunDocumentCommand(id) || RunFilmCommand(id) || RunCutFileCommand(id)) return 0;
  return cut != nullptr ? cut->OnCommand(code, id, control) : 1;
}

void MainFrame::SendCommand(int32_t id) {
  platform::Send(frameWindow, platform::kMessageCommand, static_cast<uintptr_t>(id), 0);
}

bool MainFrame::RunShellCommand(int32_t id) {
  if (HandlerOfTool(id) != nullptr) {
    SelectTool(id);
    return true;
  }
  switch (id) {
    case kCommandStop:
      StopAnimation();
      break;
    case kCommandStatusBar:
      ToggleBar(kStatusBarVisible, statusBar);
      break;
    case kCommandToolBar:
      ToggleBar(kToolBarVisible, toolBar);
      break;
    case kCommandFocusForward:
      MoveFocus(true);
      break;
    case kCommandFocusBackward:
      MoveFocus(false);
      break;
    case kCommandCloseAll:
      CloseAllWithoutFilm();
      break;
    case kCommandExplainTool:
      ExplainTool();
      break;
    case kCommandAbout: {
      char text[kTextBufferSize];
      platform::ReadResourceText(kTextAbout, text, sizeof(text));
      platform::ShowMessage(frameWindow, text, kAboutTitle, platform::BoxIcon::kNone);
      break;
    }
    default:
      return false;
  }
  return true;
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

// Check marks are never kept in the menu: they are written each time that it opens.

void MainFrame::OnInitMenu() {
  const platform::MenuHandle menu = platform::FrameMenu(frameWindow);
  if (CutWindow* cut = ActiveCut()) {
    Layer* layer = nullptr;
    int32_t x = 0;
    int32_t y = 0;
    int32_t cell = 0;
    Frame* frame = cut->CurrentFrame();
    const bool isBlank = frame != nullptr && frame->GetRecord(frame->currentRecord, &layer, &x, &y, &cell) && cell < 0;
    platform::CheckMenuEntry(menu, kCommandShowPrevious, (cut->viewFlags & kOnionPrevious) != 0);
    platform::CheckMenuEntry(menu, kCommandShowNext, (cut->viewFlags & kOnionNext) != 0);
    platform::CheckMenuEntry(menu, kCommandCurrentCellOnly, (cut->viewFlags & kCurrentCellOnly) != 0);
    platform::CheckMenuEntry(menu, kCommandBlankCell, isBlank);
    platform::CheckMenuEntry(menu, kCommandDimOthers, (cut->viewFlags & kDimOthers) != 0);
    platform::CheckMenuEntry(menu, kCommandMuraRemoval, muraRemoval != 0);
    platform::CheckMenuEntry(menu, kCommandLineEmphasis, (cut->viewOptions & kLineEmphasis) != 0);
  }
  platform::CheckMenuEntry(menu, kCommandTransparentColor, clipTransparent);
  platform::CheckMenuEntry(menu, kCommandSquarePen, penSign < 0);
  platform::CheckMenuEntry(menu, kCommandStatusBar, (shellFlags & kStatusBarVisible) != 0);
  platform::CheckMenuEntry(menu, kCommandToolBar, (shellFlags & kToolBarVisible) != 0);
}

void MainFrame::OnInitMenuPopup(platform::MenuHandle popup) {
  if (popup != platform::Submenu(toolPopupMenu, 0)) return;
  if (CutWindow* cut = ActiveCut()) {
    platform::CheckMenuEntry(toolPopupMenu, kCommandMuraRemoval, muraRemoval != 0);
    platform::CheckMenuEntry(toolPopupMenu, kCommandLineEmphasis, (cut->viewOptions & kLineEmphasis) != 0);
  }
  platform::CheckMenuEntry(toolPopupMenu, kCommandSquarePen, penSign < 0);
}

}  // namespace sorvel
