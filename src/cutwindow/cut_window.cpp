#include "cutwindow/cut_window.h"

#include <cstdlib>
#include <vector>

#include "cutwindow/edit_scope.h"
#include "foundation/paths.h"
#include "platform/hints.h"

namespace sorvel {

namespace {

constexpr char kUntitled[] = "Cut";
constexpr size_t kTitleSize = 80;
constexpr size_t kNoteSize = 256;

// A right button that is held for this many milliseconds opens the popup menu of the tools.
constexpr uintptr_t kPopupTimer = 1;
constexpr uint32_t kPopupDelay = 500;

constexpr uint32_t kClientHit = 1;

// Whether a message may change the drawing. A move of the mouse only goes on with what the release ends.
bool MayEdit(uint32_t message) {
  switch (message) {
    case platform::kMessageCreate:
    case platform::kMessageClose:
    case platform::kMessageChar:
    case platform::kMessageCommand:
    case platform::kMessageMdiActivate:
    case platform::kMessageLeftDown:
    case platform::kMessageLeftUp:
    case platform::kMessageLeftDouble:
    case platform::kMessageRightDown:
    case platform::kMessageRightUp:
    case platform::kMessageRightDouble:
      return true;
    default:
      return false;
  }
}

bool IsMouse(uint32_t message) {
  return message >= platform::kMessageMouseMove && message <= platform::kMessageRightDouble;
}

bool IsPress(uint32_t message) {
  return message == platform::kMessageLeftDown || message == platform::kMessageRightDown;
}

}  // namespace

platform::BrushHandle gMarginBrush = nullptr;
platform::PaletteHandle gPalette = nullptr;
bool pulseSuppressed = false;

CutWindow::CutWindow(CutWindowHost* mainFrame, int32_t canvasWidth, int32_t canvasHeight, int32_t framesPerSecond,
                     const char* creditText, int32_t antialias)
    : Cut(canvasWidth, canvasHeight, framesPerSecond, creditText, antialias), host(mainFrame) {
  stateFlags |= kHasWindow;
  if (canvasWidth != 0 && canvasHeight != 0) FitView();
}

CutWindow::~CutWindow() {
  // A stroke in this window can't be finished any more. A drag of the canvas goes on in the next window.
  host->toolbox->Forget(this);
  std::erase(host->editedCuts, this);
}

bool CutWindow::Create(platform::WindowHandle mdiClient) {
  return platform::MakeMdiChild(mdiClient, kCutWindowClass, kUntitled, this) != nullptr;
}

void CutWindow::UpdateTitle() {
  if (path[0] == '\0') return;
  char title[kTitleSize] = "";
  FileNameOf(title, sizeof(title), path, true);
  platform::SetText(window, title);
}

intptr_t CutWindow::WindowProc(uint32_t message, uintptr_t first, intptr_t second) {
  const EditScope edit(host, MayEdit(message) ? this : nullptr,
                       IsMouse(message) ? UndoHistory::Origin::kGesture : UndoHistory::Origin::kCommand);
  return HandleMessage(message, first, second);
}

intptr_t CutWindow::HandleMessage(uint32_t message, uintptr_t first, intptr_t second) {
  const platform::WindowHandle self = window;
  switch (message) {
    case platform::kMessageCreate:
      UpdateTitle();
      return 0;
    case platform::kMessageDestroy:
      host->CutGone(this);
      platform::ForgetObject(self);
      delete this;
      return platform::DefaultHandling(self, message, first, second);
    case platform::kMessageSize:
      OnSize(first == platform::kSizeMinimised,
             {static_cast<int32_t>(platform::LowHalf(static_cast<uintptr_t>(second))),
              static_cast<int32_t>(platform::HighHalf(static_cast<uintptr_t>(second)))});
      break;
    case platform::kMessagePaint:
      Paint();
      return 0;
    case platform::kMessagePrintClient:
      PaintClient(platform::ContextOf(first), platform::ClientBounds(self));
      return 0;
    case platform::kMessageClose:
      host->CommitPanels(this);
      if (!host->AskSaveCut(this)) return 0;
      break;
    case platform::kMessageSetCursor:
      if ((platform::LowHalf(static_cast<uintptr_t>(second)) & kClientHit) != 0) ChooseCursor();
      break;
    case platform::kMessageChar:
      host->NoteInput();
      OnChar(first);
      return 0;
    case platform::kMessageCommand:
      return OnCommand(static_cast<int32_t>(platform::HighHalf(first)), static_cast<int32_t>(platform::LowHalf(first)),
                       platform::PointerIn<platform::Window>(second));
    case platform::kMessageTimer:
      platform::KillWindowTimer(self, kPopupTimer);
      platform::OpenPopupMenu(platform::Submenu(host->toolPopupMenu, 0), platform::CursorPlace(), host->frameWindow);
      break;
    case platform::kMessageHorizontalScroll:
    case platform::kMessageVerticalScroll:
      Scroll(message == platform::kMessageHorizontalScroll ? platform::ScrollBar::kHorizontal
                                                           : platform::ScrollBar::kVertical,
             static_cast<int32_t>(platform::LowHalf(first)), static_cast<int32_t>(platform::HighHalf(first)));
      return 0;
    case platform::kMessageMdiActivate:
      OnActivation(platform::PointerIn<platform::Window>(static_cast<intptr_t>(first)) == self,
                   platform::PointerIn<platform::Window>(second) == self);
      break;
    case platform::kMessageLeftDown:
      // A hint that ends under the mouse makes a move, which would close what the press opens.
      platform::HideHint();
      TakeFocus();
      return HandleMouse(message, first, second);
    case platform::kMessageRightDown:
      platform::HideHint();
      platform::SetWindowTimer(self, kPopupTimer, kPopupDelay);
      TakeFocus();
      return HandleMouse(message, first, second);
    case platform::kMessageMiddleDown:
      platform::SetFocusTo(self);
      return HandleMouse(message, first, second);
    case platform::kMessageWheel:
    case platform::kMessageSidewaysWheel:
      OnWheel(message, first, second);
      return 0;
    case platform::kMessageMiddleUp:
    case platform::kMessageMouseMove:
    case platform::kMessageLeftUp:
    case platform::kMessageLeftDouble:
    case platform::kMessageRightUp:
    case platform::kMessageRightDouble:
      return HandleMouse(message, first, second);
    case platform::kMessageUser:
      return RunTool(message, first, second);
    default:
      break;
  }
  return platform::DefaultHandling(self, message, first, second);
}

// Under Wine the bars would show in what is left of a minimised window.
void CutWindow::OnSize(bool minimises, Point size) {
  if (minimises != isMinimised) {
    isMinimised = minimises;
    platform::ShowScrollBars(window, !minimises);
    const Bounds client = platform::ClientBounds(window);
    size = {client.right, client.bottom};
  }
  if (minimises) return;
  UpdateScrollBars(size.x, size.y);
  ShowLayerNote();
}

// An edit that loses the focus may store what was typed into it: that is a step, and what the press begins is another.
void CutWindow::TakeFocus() {
  platform::SetFocusTo(window);
  RecordStep();
}

void CutWindow::OnActivation(bool loses, bool gains) {
  if (loses) {
    host->CommitPanels(this);
    Pulse();
  } else if (gains) {
    host->RefreshPanels(this);
    host->SelectCutLine(this);
    Pulse();
  }
}

void CutWindow::Pulse() {
  if (window != nullptr) platform::Send(window, platform::kMessageUser, 0, 0);
}

intptr_t CutWindow::HandleMouse(uint32_t message, uintptr_t first, intptr_t second) {
  host->NoteMouse(message, first);
  if (waitsForRelease && !IsPress(message)) {
    waitsForRelease = host->isButtonHeld;
    return platform::DefaultHandling(window, message, first, second);
  }
  waitsForRelease = false;
  if (HandlePan(message, first, second)) return platform::DefaultHandling(window, message, first, second);
  return RunTool(message, first, second);
}

intptr_t CutWindow::RunTool(uint32_t message, uintptr_t first, intptr_t second) {
  host->penPicker.Hide();
  if (message == platform::kMessageRightUp) platform::KillWindowTimer(window, kPopupTimer);
  if (host->ActiveCut() != this) return platform::DefaultHandling(window, message, first, second);
  host->toolbox->Run(host->currentTool, message, static_cast<uint32_t>(first), second, this);
  return 0;
}

void CutWindow::ShowLayerNote() {
  const bool isMissing = layers.Count() == 0;
  if (window == nullptr || (layerNote == nullptr && !isMissing)) return;
  if (layerNote == nullptr) layerNote = platform::MakeNote(window);
  char text[kNoteSize];
  platform::ReadResourceText(kTextNoLayer, text, sizeof(text));
  platform::ShowNote(layerNote, platform::ClientBounds(window), isMissing ? text : nullptr);
}

void CutWindow::ChooseCursor() {
  Point place = platform::ScreenToClient(window, platform::CursorPlace());
  WindowToCut(&place, 1);
  const bool isInside = place.x >= 0 && place.y >= 0 && place.x < width && place.y < height;
  platform::SetCursorShape(isInside ? platform::CursorShape::kCross : platform::CursorShape::kArrow);
}

}  // namespace sorvel
