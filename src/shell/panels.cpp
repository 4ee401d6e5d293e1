#include <algorithm>
#include <cstdio>

#include "dialogs/help_tips.h"
#include "platform/hints.h"
#include "shell/command_support.h"
#include "shell/main_frame.h"

namespace sorvel {

namespace {

constexpr int32_t kSplitterWidth = 2;
// Height of a one-line edit beyond that of its text.
constexpr int32_t kLineMargin = 4;

// Room for the texts of the edits, with the terminator. Longer texts are cut.
constexpr size_t kTimeSize = 5;
constexpr size_t kBrightnessSize = 4;
constexpr size_t kCommentSize = 256;
constexpr size_t kLineSize = 512;

constexpr int32_t kBrightest = 100;
constexpr size_t kNoteSize = 1024;

void SetNumber(platform::WindowHandle edit, int32_t value) {
  char text[16];
  std::snprintf(text, sizeof(text), "%d", value);
  platform::SetText(edit, text);
}

// The number at the start of the text; 0 if there is none.
int32_t ReadNumber(platform::WindowHandle edit, size_t size) {
  char text[kTimeSize];
  int32_t value = 0;
  platform::ReadText(edit, text, std::min(size, sizeof(text)));
  return std::sscanf(text, "%d", &value) == 1 ? value : 0;
}

void SelectIfFocused(platform::WindowHandle edit) {
  if (platform::FocusedWindow() == edit) platform::SelectAllText(edit);
}

}  // namespace

void MainFrame::LayoutPanels(int32_t clientWidth, int32_t clientHeight) {
  if ((shellFlags & kPanelsShown) == 0) {
    platform::MoveWindow(mdiClient, 0, 0, clientWidth, clientHeight, true);
    ShowEmptyNote();
    return;
  }
  const auto heightOf = [](platform::WindowHandle bar) { return platform::ScreenBounds(bar).Height(); };
  int32_t h = clientHeight;
  if ((shellFlags & kStatusBarVisible) != 0) h -= heightOf(statusBar);
  int32_t top = 0;
  if ((shellFlags & kToolBarVisible) != 0) {
    top = heightOf(toolBar);
    h -= top;
  }
  const int32_t line = platform::LineHeight(window) + kLineMargin;
  const int32_t half = panelWidth / 2;
  const int32_t left = panelWidth + kSplitterWidth;
  const int32_t rest = clientWidth - panelWidth - kSplitterWidth;
  const int32_t lists = h - 2 * line;
  const int32_t listTop = top + 2 * line;
  platform::MoveWindow(mdiClient, left, top, rest, h - line, true);
  platform::MoveWindow(commentEdit, left, top + h - line, rest, line, true);
  platform::MoveWindow(keyFrameCheck, 0, top, half, line, true);
  platform::MoveWindow(frameTimeEdit, half, top, panelWidth - half, line, true);
  platform::MoveWindow(brightnessEdit, 0, top + line, half, line, true);
  platform::MoveWindow(loopEdit, half, top + line, panelWidth - half, line, true);
  platform::MoveWindow(layerList, 0, listTop, panelWidth, lists / 2, true);
  platform::MoveWindow(cutList, 0, listTop + lists / 2, panelWidth, lists - lists / 2, true);
  ShowEmptyNote();
}

// Says what to do while no cut is open.
void MainFrame::ShowEmptyNote() {
  char text[kNoteSize];
  const bool isEmpty = openCuts.empty() && platform::ReadResourceText(kTextEmptyArea, text, sizeof(text)) != 0;
  const Bounds area = platform::ScreenBounds(mdiClient);
  const Point corner = platform::ScreenToClient(window, {area.left, area.top});
  platform::ShowNote(emptyNote, {corner.x, corner.y, corner.x + area.Width(), corner.y + area.Height()},
                     isEmpty ? text : nullptr);
}

void MainFrame::ExplainPanels() {
  for (const platform::WindowHandle edit : {frameTimeEdit, loopEdit, brightnessEdit}) platform::TakePlainDigits(edit);
  SetHelpTip(frameTimeEdit, kFrameTimeEdit);
  SetHelpTip(loopEdit, kLoopEdit);
  SetHelpTip(brightnessEdit, kBrightnessEdit);
  SetHelpTip(commentEdit, kCommentEdit);
  SetHelpTip(keyFrameCheck, kKeyFrameCheck);
  SetHelpTip(layerList, kLayerList);
  SetHelpTip(cutList, kCutList);
}

// What the program itself shows, such as the long time of a key frame, isn't the user's mistake.
void MainFrame::CheckPanelNumber(int32_t id) {
  constexpr int32_t shortestTime = -999;
  constexpr int32_t longest = 9999;
  const auto check = [](platform::WindowHandle edit, int32_t low, int32_t high) {
    platform::FocusedWindow() == edit ? CheckNumber(edit, low, high) : platform::HideBalloon(edit);
  };
  if (id == kFrameTimeEdit) check(frameTimeEdit, shortestTime, longest);
  if (id == kLoopEdit) check(loopEdit, 0, longest);
  if (id == kBrightnessEdit) check(brightnessEdit, 0, kBrightest);
}

void MainFrame::Relayout() {
  const Bounds client = platform::ClientBounds(window);
  LayoutPanels(client.right, client.bottom);
}

void MainFrame::TogglePanels() {
  shellFlags ^= kPanelsShown;
  const auto show = [this](platform::WindowHandle control, uint32_t wanted) {
    const bool isShown = (shellFlags & wanted) != 0 && (shellFlags & kPanelsShown) != 0;
    isShown ? platform::Show(control) : platform::Hide(control);
  };
  show(statusBar, kStatusBarVisible);
  show(toolBar, kToolBarVisible);
  for (const platform::WindowHandle control :
       {commentEdit, keyFrameCheck, frameTimeEdit, brightnessEdit, loopEdit, layerList, cutList}) {
    show(control, kPanelsWanted);
  }
  Relayout();
}

// The splitter: a strip of the frame's client area between the panels and the cut windows.

Bounds MainFrame::SplitterStrip() {
  const Bounds client = platform::ClientBounds(window);
  Bounds strip = {panelWidth, 0, panelWidth + kSplitterWidth, client.bottom};
  if ((shellFlags & kToolBarVisible) != 0) strip.top = platform::ScreenBounds(toolBar).Height();
  if ((shellFlags & kStatusBarVisible) != 0) strip.bottom -= platform::ScreenBounds(statusBar).Height();
  return strip;
}

void MainFrame::PaintSplitter() {
  platform::DeviceContext* context = platform::BeginPainting(window, nullptr);
  platform::FillFace(context, SplitterStrip());
  platform::EndPainting(window, context);
}

void MainFrame::InvertSplitter() {
  platform::DeviceContext* context = platform::BeginDrawing(window);
  platform::InvertFrame(context, SplitterStrip());
  platform::EndDrawing(window, context);
}

// The column can have any width: the user can drag it to nothing or past the window's edge.
void MainFrame::OnSplitter(uint32_t message, intptr_t second) {
  const Point place = platform::PointOf(second);
  if (message == platform::kMessageLeftDown) {
    platform::CaptureMouse(window);
    dragLast = place;
    InvertSplitter();
    return;
  }
  if (platform::CapturingWindow() != window) return;
  if (message == platform::kMessageLeftUp) platform::ReleaseMouse();
  InvertSplitter();
  panelWidth += place.x - dragLast.x;
  if (message == platform::kMessageLeftUp) {
    Relayout();
    return;
  }
  InvertSplitter();
  dragLast = place;
}

// The panels show the current frame.

void MainFrame::FormatLayerLine(char* text, size_t capacity, Frame* frame, int32_t record) {
  Layer* layer = nullptr;
  int32_t x = 0;
  int32_t y = 0;
  int32_t cell = 0;
  frame->GetRecord(record, &layer, &x, &y, &cell);
  const int32_t shown = IsBlankCell(cell) ? 0 : cell + 1;
  std::snprintf(text, capacity, "%s (%d/%d)", layer->ShownName(), shown, layer->cells.Count());
}

void MainFrame::ReplaceLayerLine(int32_t line, int32_t target, Frame* frame, int32_t record) {
  char text[kLineSize];
  FormatLayerLine(text, sizeof(text), frame, record);
  ReplaceListLine(layerList, line, target, text);
}

void MainFrame::FillLayerList(CutWindow* cut) {
  const QuietList quiet(layerList);
  platform::ClearList(layerList);
  Frame* frame = cut->CurrentFrame();
  for (int32_t i = 0; i < frame->records.Count(); ++i) {
    char text[kLineSize];
    FormatLayerLine(text, sizeof(text), frame, i);
    platform::AddListLine(layerList, text);
  }
  platform::SelectListLine(layerList, frame->currentRecord);
}

void MainFrame::RefreshPanels(CutWindow* cut) {
  Frame* frame = cut->CurrentFrame();
  if (frame == nullptr) return;
  panelsCut = cut;
  FillLayerList(cut);
  SetNumber(frameTimeEdit, cut->EffectiveTime(cut->currentFrame));
  platform::SetEditReadOnly(frameTimeEdit, frame->IsKey());
  SelectIfFocused(frameTimeEdit);
  SetNumber(loopEdit, frame->loop);
  SelectIfFocused(loopEdit);
  SetNumber(brightnessEdit, frame->DecodedBrightness());
  // The loop again: a refresh doesn't select the text of the brightness.
  SelectIfFocused(loopEdit);
  const int32_t timing = 1 + cut->undoHistory.TimeBefore(cut->currentFrame);
  char counter[32];
  std::snprintf(counter, sizeof(counter), "%d(%df)", cut->currentFrame + 1, timing);
  platform::SetText(keyFrameCheck, counter);
  platform::SetChecked(keyFrameCheck, frame->IsKey());
  platform::SetText(commentEdit, frame->comment);
  sheetWindow.Refresh();
  shownPanels = PanelTexts();
}

void MainFrame::RefreshLayerLine(CutWindow* cut) {
  if (cut != ActiveCut()) return;
  Frame* frame = cut->CurrentFrame();
  const int32_t line = platform::SelectedListLine(layerList);
  if (line < 0 || frame == nullptr || frame->LayerAt(frame->currentRecord) == nullptr) return;
  const QuietList quiet(layerList);
  ReplaceLayerLine(line, line, frame, frame->currentRecord);
  platform::SelectListLine(layerList, line);
  sheetWindow.Refresh();
}

void MainFrame::CommitPanels(CutWindow* cut) {
  Frame* frame = cut != nullptr ? cut->CurrentFrame() : nullptr;
  // When the user changes to another cut, an edit can lose the focus while the other cut is active but not yet shown.
  if (frame == nullptr || cut != panelsCut) return;
  char comment[kCommentSize];
  platform::ReadText(commentEdit, comment, sizeof(comment));
  // For a key frame the edit shows the effective time, which isn't the frame's own.
  const int32_t time = frame->IsKey() ? frame->time : ReadNumber(frameTimeEdit, kTimeSize);
  const int32_t loop = ReadNumber(loopEdit, kTimeSize);
  const bool isKey = platform::IsChecked(keyFrameCheck);
  const int32_t brightness = std::clamp(ReadNumber(brightnessEdit, kBrightnessSize), 0, kBrightest);
  cut->SetFrameProperties(comment, time, loop, isKey, brightness);
  if (cut->newMarks != 0) cut->RecordStep();
}

std::string MainFrame::PanelTexts() {
  std::string texts(platform::IsChecked(keyFrameCheck) ? "1" : "0");
  for (const platform::WindowHandle edit : {frameTimeEdit, loopEdit, brightnessEdit, commentEdit}) {
    char text[kCommentSize];
    platform::ReadText(edit, text, sizeof(text));
    texts.append(1, '\n').append(text);
  }
  return texts;
}

// Values that don't fit in the panels would be cut to what the panels show.
void MainFrame::CommitTyping(CutWindow* cut) {
  if (PanelTexts() != shownPanels) CommitPanels(cut);
}

void MainFrame::SelectCutLine(CutWindow* cut) {
  const int32_t line = film->FindCut(cut);
  if (line < 0 || platform::IsListLineSelected(cutList, line)) return;
  platform::SetListLineSelected(cutList, -1, false);
  platform::SetListLineSelected(cutList, line, true);
}

// Notifications of the panels' controls.

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
  if (code == platform::kEditChanged) CheckPanelNumber(id);
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

// The comment has an input method state of its own. Whenever the comment gets or loses the focus, it is exchanged with
// that of the rest of the program.
void MainFrame::SwapInputMethod() {
  const bool isOpen = platform::IsInputMethodOpen(frameWindow);
  platform::OpenInputMethod(frameWindow, savedImeOpen);
  savedImeOpen = isOpen;
}

}  // namespace sorvel
