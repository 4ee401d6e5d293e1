#include "shell/main_frame.h"

#include <cstdio>
#include <cstring>
#include <utility>

#include "cutwindow/edit_scope.h"
#include "dialogs/dialogs.h"
#include "platform/hints.h"
#include "shell/tool_bar.h"
#include "tools/tool_table.h"

namespace sorvel {

namespace {

constexpr int32_t kWindowMenu = 7;  // index of the popup that lists the cut windows
constexpr int32_t kFirstChildId = 58000;

}  // namespace

MainFrame* gMainFrame = nullptr;

MainFrame::MainFrame() : CutWindowHost(AllTools()) {
  film = new Film;
}

MainFrame::~MainFrame() {
  animationWindow.StopTimer();
  delete film;
}

intptr_t MainFrame::WindowProc(uint32_t message, uintptr_t first, intptr_t second) {
  const uintptr_t halves = static_cast<uintptr_t>(second);
  const bool isCommand = message == platform::kMessageCommand;
  const EditScope edit(this, isCommand || message == platform::kMessageClose ? ActiveCut() : nullptr);
  switch (message) {
    case platform::kMessageCreate:
      OnCreate();
      return 0;
    case platform::kMessageDestroy:
      platform::DeleteMenu(toolPopupMenu);
      toolPopupMenu = nullptr;
      platform::QuitLoop(0);
      break;
    case platform::kMessageSize:
      platform::Send(statusBar, message, first, second);
      platform::Send(toolBar, message, first, second);
      // Wine leaves the old end of the bar in a wider one.
      platform::InvalidateClient(statusBar, true);
      LayoutPanels(static_cast<int32_t>(platform::LowHalf(halves)), static_cast<int32_t>(platform::HighHalf(halves)));
      return 0;
    case platform::kMessageActivate:
      OnActivate(first);
      return 0;
    case platform::kMessagePaint:
      PaintSplitter();
      return 0;
    case platform::kMessageClose:
      if (!CloseAllCuts()) return 0;
      break;
    case platform::kMessageToolTip:
      OnToolTip(static_cast<platform::ToolTipMoment>(first), platform::PointerIn<platform::ToolTip>(second));
      return 0;
    case platform::kMessageCommand:
      if (OnCommand(static_cast<int32_t>(platform::HighHalf(first)), static_cast<int32_t>(platform::LowHalf(first)),
                    platform::PointerIn<platform::Window>(second)) == 0) {
        isButtonHeld = false;
        NoteInput();
        sheetWindow.RefreshPictures();
        return 0;
      }
      break;
    case platform::kMessageTimer:
      recovery.OnTimer();
      return 0;
    case platform::kMessageInitMenu:
      OnInitMenu();
      break;
    case platform::kMessageInitMenuPopup:
      OnInitMenuPopup(platform::MenuOf(first));
      break;
    case platform::kMessageMenuSelect:
      ShowMenuHelp(static_cast<int32_t>(platform::LowHalf(first)));
      break;
    case platform::kMessageMouseMove:
    case platform::kMessageLeftDown:
    case platform::kMessageLeftUp:
      OnSplitter(message, second);
      break;
    case platform::kMessageWheel:
    case platform::kMessageSidewaysWheel:
      // From a panel that has the focus and doesn't scroll.
      if (CutWindow* cut = ActiveCut()) return platform::Send(cut->window, message, first, second);
      break;
    case platform::kMessageDropFiles:
      OnDropFiles(first);
      return 0;
    default:
      break;
  }
  return platform::DefaultHandling(window, message, first, second);
}

void MainFrame::OnCreate() {
  frameWindow = window;
  mdiClient = platform::MakeMdiClient(window, kMdiClientId, kWindowMenu, kFirstChildId);
  frameTimeEdit = platform::MakeEdit(window, kFrameTimeEdit, false);
  loopEdit = platform::MakeEdit(window, kLoopEdit, false);
  commentEdit = platform::MakeEdit(window, kCommentEdit, true);
  brightnessEdit = platform::MakeEdit(window, kBrightnessEdit, false);
  layerList = platform::MakeListBox(window, kLayerList, false);
  cutList = platform::MakeListBox(window, kCutList, true);
  statusBar = platform::MakeStatusBar(window, kStatusBarId);
  toolBar = platform::MakeToolBar(window, kToolBarId, kToolBarPicture, kToolBarImages, kToolButtons, kToolButtonCount);
  keyFrameCheck = platform::MakeCheckBox(window, kKeyFrameCheck);
  emptyNote = platform::MakeNote(window);
  ExplainPanels();
  toolPopupMenu = platform::MakeMenu(kToolMenu);
  MarkTool(currentTool, true);
  platform::MakePopupWindow(kHelperClass, window, PenPicker::kWindowWidth, PenPicker::kWindowHeight, &penPicker);
  platform::MakeCaptionWindow(kAnimationClass, "", window, &animationWindow);
  shellFlags = kStatusBarVisible | kToolBarVisible | kPanelsWanted | kPanelsShown;
}

CutWindow* MainFrame::ActiveCut() {
  const platform::WindowHandle child = platform::ActiveMdiChild(mdiClient);
  return child != nullptr ? static_cast<CutWindow*>(platform::ObjectOf(child)) : nullptr;
}

// On a display with 256 colours the palette takes effect when the program comes to the front. One pulse is enough: the
// activation of the cut window sends the other one.
void MainFrame::OnActivate(uintptr_t first) {
  if (platform::LowHalf(first) == 0) platform::HideBalloon(nullptr);
  platform::DeviceContext* context = platform::BeginDrawing(window);
  const bool isActivated = platform::LowHalf(first) != 0 && platform::HighHalf(first) == 0;
  if (isActivated) sheetWindow.StayInFront();
  if (isActivated && platform::HasPalette(context)) {
    platform::SelectDrawingPalette(context, gPalette, true);
    platform::RealizeDrawingPalette(context);
  }
  platform::EndDrawing(window, context);
  if (CutWindow* cut = ActiveCut()) cut->Pulse();
}

void MainFrame::OnDropFiles(uintptr_t drop) {
  char path[kDropPathSize];
  const bool isTaken = platform::TakeDroppedFile(drop, path, sizeof(path));
  if (isTaken) OpenByExtension(path);
  platform::ActivateWindow(window);
  if (isTaken) ReportOpening(path);
}

// Bars and menus.

void MainFrame::SetStatusText(const char* text) {
  platform::SetText(statusBar, text != nullptr ? text : "");
}

void MainFrame::ShowHelp(int32_t id) {
  char text[kTextBufferSize];
  if (platform::ReadResourceText(id, text, sizeof(text)) > 0) SetStatusText(text);
}

void MainFrame::ShowMenuHelp(int32_t id) {
  char text[kTextBufferSize];
  platform::ReadResourceText(id, text, sizeof(text));
  char* help = text;
  if (char* feed = std::strchr(text, '\n')) {
    help = feed + 1;
    if (char* end = std::strchr(help, '\n')) *end = '\0';
  }
  SetStatusText(help);
}

// While the status bar is hidden, the tool bar shows no tips either.
void MainFrame::OnToolTip(platform::ToolTipMoment moment, platform::ToolTip* tip) {
  switch (moment) {
    case platform::ToolTipMoment::kNeedText: {
      if ((shellFlags & kStatusBarVisible) == 0) break;
      char text[kTextBufferSize];
      platform::ReadResourceText(tip->id, text, sizeof(text));
      if (char* feed = std::strchr(text, '\n')) *feed = '\0';
      const size_t length = std::strlen(text);
      if (length < sizeof(tip->text)) std::memcpy(tip->text, text, length + 1);
      break;
    }
    case platform::ToolTipMoment::kShow:
      ShowMenuHelp(tip->id);
      break;
    case platform::ToolTipMoment::kPop:
      SetStatusText(nullptr);
      break;
  }
}

// Closing.

void MainFrame::CutGone(CutWindow* cut) {
  film->CutClosed(cut);
  if (panelsCut == cut) panelsCut = nullptr;
  std::erase(openCuts, cut);
  recovery.ForgetCut(cut);
  ShowEmptyNote();
  sheetWindow.Forget(cut);
}

// The player.

int32_t MainFrame::PlayBuffer(Buffer<uint8_t> buffer, int32_t size) {
  streamMemory = std::move(buffer);
  streamBuffer.buffer = streamMemory.Data();
  streamBuffer.position = 0;
  streamBuffer.size = size;
  streamBuffer.capacity = size;
  char title[32];
  std::snprintf(title, sizeof(title), "%d byte", size);
  platform::SetText(animationWindow.window, title);
  if (!isPlayerPlaced) {
    const Point corner = platform::ClientToScreen(mdiClient, {0, 0});
    const Bounds place = platform::ScreenBounds(animationWindow.window);
    platform::MoveWindow(animationWindow.window, corner.x, corner.y, place.Width(), place.Height(), false);
    isPlayerPlaced = true;
  }
  animationWindow.Play(&streamBuffer);
  return 1;
}

bool MainFrame::EditText(char** text) {
  TextDialog dialog(statusBar);
  AssignString(&dialog.text, *text);
  if (!dialog.Run(frameWindow)) return false;
  AssignString(text, dialog.text);
  return true;
}

}  // namespace sorvel
