#include "platform/window.h"

#include <cstring>
#include <initializer_list>

#include "platform/win32/win32.h"
// These need the types of the header above.
#include <commctrl.h>
#include <imm.h>
#include <shellapi.h>

namespace sorvel::platform {

namespace {

// WS_MAXIMIZE, WS_VSCROLL, WS_HSCROLL and MDIS_ALLCHILDSTYLES.
constexpr DWORD kMdiChildStyle = 0x01300001;

// The frame window and its MDI client, which the default handling of the frame needs.
struct {
  HWND frame = nullptr;
  HWND client = nullptr;
} gMdi;

bool IsMdiChild(HWND window) {
  return (GetWindowLongPtrA(window, GWL_EXSTYLE) & WS_EX_MDICHILD) != 0;
}

// Tool tips ask for ANSI or wide text; the object answers in Shift JIS.
LRESULT OnNotify(WindowObject* object, const NMHDR* head) {
  if (IsHint(head->hwndFrom)) return 0;
  ToolTip tip = {static_cast<int32_t>(head->idFrom), ""};
  const auto tell = [&](ToolTipMoment moment) {
    object->WindowProc(kMessageToolTip, static_cast<uintptr_t>(moment), reinterpret_cast<intptr_t>(&tip));
  };
  switch (head->code) {
    case TTN_GETDISPINFOA: {
      tell(ToolTipMoment::kNeedText);
      NMTTDISPINFOA* info = reinterpret_cast<NMTTDISPINFOA*>(const_cast<NMHDR*>(head));
      std::memcpy(info->szText, tip.text, sizeof(info->szText));
      return 0;
    }
    case TTN_GETDISPINFOW: {
      tell(ToolTipMoment::kNeedText);
      NMTTDISPINFOW* info = reinterpret_cast<NMTTDISPINFOW*>(const_cast<NMHDR*>(head));
      MultiByteToWideChar(CP_ACP, 0, tip.text, -1, info->szText, ARRAYSIZE(info->szText));
      return 0;
    }
    case TTN_SHOW:
      tell(ToolTipMoment::kShow);
      return 0;
    case TTN_POP:
      tell(ToolTipMoment::kPop);
      return 0;
    default:
      return DefaultHandling(object->window, WM_NOTIFY, head->idFrom, reinterpret_cast<LPARAM>(head));
  }
}

// Passes each message to the window's object, which its user data holds.
LRESULT CALLBACK ObjectProc(HWND window, UINT message, WPARAM first, LPARAM second) {
  WindowObject* object = reinterpret_cast<WindowObject*>(GetWindowLongPtrA(window, 0));
  if (object == nullptr && message == WM_NCCREATE) {
    const void* parameter = reinterpret_cast<const CREATESTRUCTA*>(second)->lpCreateParams;
    object =
        reinterpret_cast<WindowObject*>(IsMdiChild(window) ? static_cast<const MDICREATESTRUCTA*>(parameter)->lParam
                                                           : reinterpret_cast<LPARAM>(parameter));
    if (object == nullptr) return FALSE;
    SetWindowLongPtrA(window, 0, reinterpret_cast<LONG_PTR>(object));
    object->window = WindowOf(window);
  }
  if (object == nullptr) return DefaultHandling(WindowOf(window), message, first, second);
  if (message == WM_NOTIFY) return OnNotify(object, reinterpret_cast<const NMHDR*>(second));
  return object->WindowProc(message, first, second);
}

HCURSOR CursorOf(CursorShape shape) {
  switch (shape) {
    case CursorShape::kCross:
      return LoadCursorA(nullptr, IDC_CROSS);
    case CursorShape::kWait:
      return LoadCursorA(nullptr, IDC_WAIT);
    case CursorShape::kSizeWestEast:
      return LoadCursorA(nullptr, IDC_SIZEWE);
    case CursorShape::kSizeNorthSouth:
      return LoadCursorA(nullptr, IDC_SIZENS);
    case CursorShape::kNone:
    case CursorShape::kArrow:
      break;
  }
  return LoadCursorA(nullptr, IDC_ARROW);
}

int BarOf(ScrollBar bar) {
  return bar == ScrollBar::kHorizontal ? SB_HORZ : SB_VERT;
}

}  // namespace

BrushHandle MakeBrush(uint8_t red, uint8_t green, uint8_t blue) {
  return reinterpret_cast<BrushHandle>(CreateSolidBrush(RGB(red, green, blue)));
}

void DeleteBrush(BrushHandle brush) {
  DeleteObject(HandleOf(brush));
}

PaletteHandle MakePalette(const ColorEntry* entries, int32_t count) {
  struct {
    WORD version;
    WORD count;
    PALETTEENTRY entries[256];
  } palette = {0x300, static_cast<WORD>(count), {}};
  for (int32_t i = 0; i < count; i++) {
    palette.entries[i] = {entries[i].red, entries[i].green, entries[i].blue, 0};
  }
  return reinterpret_cast<PaletteHandle>(CreatePalette(reinterpret_cast<const LOGPALETTE*>(&palette)));
}

void DeletePalette(PaletteHandle palette) {
  DeleteObject(HandleOf(palette));
}

bool RegisterWindowClass(const char* name, int32_t icon, CursorShape cursor, BrushHandle background) {
  WNDCLASSEXA windowClass = {};
  windowClass.cbSize = sizeof(windowClass);
  windowClass.lpfnWndProc = ObjectProc;
  windowClass.cbWndExtra = sizeof(void*);
  windowClass.hInstance = Instance();
  if (icon != 0) windowClass.hIcon = LoadIconA(Instance(), ResourceName(icon));
  if (cursor != CursorShape::kNone) windowClass.hCursor = CursorOf(cursor);
  windowClass.hbrBackground = HandleOf(background);
  windowClass.lpszClassName = name;
  return RegisterClassExA(&windowClass) != 0;
}

WindowHandle MakeFrameWindow(const char* windowClass, const char* title, int32_t menu, WindowObject* object) {
  return WindowOf(CreateWindowExA(WS_EX_ACCEPTFILES, windowClass, title, WS_OVERLAPPEDWINDOW, CW_USEDEFAULT,
                                  CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, nullptr,
                                  LoadMenuA(Instance(), ResourceName(menu)), Instance(), object));
}

WindowHandle MakeMdiClient(WindowHandle frame, int32_t id, int32_t windowMenu, int32_t firstChild) {
  CLIENTCREATESTRUCT create = {GetSubMenu(GetMenu(HandleOf(frame)), windowMenu), static_cast<UINT>(firstChild)};
  const HWND client =
      CreateWindowExA(WS_EX_CLIENTEDGE, "MDICLIENT", "", WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_CLIPSIBLINGS, 0,
                      0, 0, 0, HandleOf(frame), reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), Instance(), &create);
  gMdi = {HandleOf(frame), client};
  return WindowOf(client);
}

WindowHandle MakeMdiChild(WindowHandle mdiClient, const char* windowClass, const char* title, WindowObject* object) {
  MDICREATESTRUCTA create = {};
  create.szClass = windowClass;
  create.szTitle = title;
  create.hOwner = Instance();
  create.x = create.y = create.cx = create.cy = CW_USEDEFAULT;
  create.style = kMdiChildStyle;
  create.lParam = reinterpret_cast<LPARAM>(object);
  return WindowOf(
      reinterpret_cast<HWND>(SendMessageA(HandleOf(mdiClient), WM_MDICREATE, 0, reinterpret_cast<LPARAM>(&create))));
}

WindowHandle MakePopupWindow(const char* windowClass, WindowHandle owner, int32_t width, int32_t height,
                             WindowObject* object) {
  return WindowOf(
      CreateWindowExA(0, windowClass, "", WS_POPUP, 0, 0, width, height, HandleOf(owner), nullptr, Instance(), object));
}

WindowHandle MakeCaptionWindow(const char* windowClass, const char* title, WindowHandle owner, WindowObject* object) {
  return WindowOf(CreateWindowExA(0, windowClass, title, WS_CAPTION, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT,
                                  CW_USEDEFAULT, HandleOf(owner), nullptr, Instance(), object));
}

WindowHandle MakeToolWindow(const char* windowClass, const char* title, WindowHandle owner, WindowObject* object) {
  return WindowOf(CreateWindowExA(WS_EX_TOOLWINDOW, windowClass, title,
                                  WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_VSCROLL | WS_HSCROLL, 0, 0, 0,
                                  0, HandleOf(owner), nullptr, Instance(), object));
}

void DestroyWindow(WindowHandle window) {
  ::DestroyWindow(HandleOf(window));
}

void ForgetObject(WindowHandle window) {
  SetWindowLongPtrA(HandleOf(window), 0, 0);
}

WindowObject* ObjectOf(WindowHandle window) {
  const HWND handle = HandleOf(window);
  if (GetClassLongPtrA(handle, GCLP_WNDPROC) != reinterpret_cast<ULONG_PTR>(ObjectProc)) return nullptr;
  return reinterpret_cast<WindowObject*>(GetWindowLongPtrA(handle, 0));
}

intptr_t DefaultHandling(WindowHandle window, uint32_t message, uintptr_t first, intptr_t second) {
  const HWND handle = HandleOf(window);
  if (IsMdiChild(handle)) return DefMDIChildProcA(handle, message, first, second);
  if (handle == gMdi.frame) return DefFrameProcA(handle, gMdi.client, message, first, second);
  return DefWindowProcA(handle, message, first, second);
}

WindowHandle ActiveMdiChild(WindowHandle mdiClient) {
  return WindowOf(reinterpret_cast<HWND>(SendMessageA(HandleOf(mdiClient), WM_MDIGETACTIVE, 0, 0)));
}

void ActivateMdiChild(WindowHandle mdiClient, WindowHandle child) {
  SendMessageA(HandleOf(mdiClient), WM_MDIACTIVATE, reinterpret_cast<WPARAM>(child), 0);
}

void DestroyMdiChild(WindowHandle mdiClient, WindowHandle child) {
  SendMessageA(HandleOf(mdiClient), WM_MDIDESTROY, reinterpret_cast<WPARAM>(child), 0);
}

void SetText(WindowHandle window, const char* text) {
  SendMessageA(HandleOf(window), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
}

size_t ReadText(WindowHandle window, char* text, size_t capacity) {
  text[0] = '\0';
  return static_cast<size_t>(SendMessageA(HandleOf(window), WM_GETTEXT, capacity, reinterpret_cast<LPARAM>(text)));
}

size_t TextLength(WindowHandle window) {
  return static_cast<size_t>(SendMessageA(HandleOf(window), WM_GETTEXTLENGTH, 0, 0));
}

Bounds ClientBounds(WindowHandle window) {
  RECT rect = {};
  GetClientRect(HandleOf(window), &rect);
  return BoundsOf(rect);
}

Bounds ScreenBounds(WindowHandle window) {
  RECT rect = {};
  GetWindowRect(HandleOf(window), &rect);
  return BoundsOf(rect);
}

Point ScreenSize() {
  return {GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
}

Point ClientToScreen(WindowHandle window, Point point) {
  POINT place = {point.x, point.y};
  ::ClientToScreen(HandleOf(window), &place);
  return {place.x, place.y};
}

Point ScreenToClient(WindowHandle window, Point point) {
  POINT place = {point.x, point.y};
  ::ScreenToClient(HandleOf(window), &place);
  return {place.x, place.y};
}

void MoveWindow(WindowHandle window, int32_t x, int32_t y, int32_t width, int32_t height, bool repaint) {
  // No copied pixels: panels are moved one by one, and a copy could take pixels of a neighbour along.
  SetWindowPos(HandleOf(window), nullptr, x, y, width, height,
               SWP_NOZORDER | SWP_NOACTIVATE | static_cast<UINT>(repaint ? SWP_NOCOPYBITS : SWP_NOREDRAW));
}

void SetClientSize(WindowHandle window, int32_t width, int32_t height) {
  RECT client = {};
  RECT frame = {};
  GetClientRect(HandleOf(window), &client);
  GetWindowRect(HandleOf(window), &frame);
  SetWindowPos(HandleOf(window), nullptr, 0, 0, frame.right - frame.left + width - client.right,
               frame.bottom - frame.top + height - client.bottom, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

int32_t LineHeight(WindowHandle window) {
  const HDC context = GetDC(HandleOf(window));
  TEXTMETRICA metrics = {};
  GetTextMetricsA(context, &metrics);
  ReleaseDC(HandleOf(window), context);
  return metrics.tmHeight + metrics.tmExternalLeading;
}

void InvalidateClient(WindowHandle window, bool erase) {
  InvalidateRect(HandleOf(window), nullptr, erase);
}

void ValidateClient(WindowHandle window) {
  ValidateRect(HandleOf(window), nullptr);
}

void UpdateClient(WindowHandle window) {
  UpdateWindow(HandleOf(window));
}

void ShowAs(WindowHandle window, int32_t command) {
  ShowWindow(HandleOf(window), command);
}

void Show(WindowHandle window) {
  ShowWindow(HandleOf(window), SW_SHOW);
}

void ShowInactive(WindowHandle window) {
  ShowWindow(HandleOf(window), SW_SHOWNA);
}

void Hide(WindowHandle window) {
  ShowWindow(HandleOf(window), SW_HIDE);
}

bool IsShown(WindowHandle window) {
  return IsWindowVisible(HandleOf(window)) != FALSE;
}

void ActivateWindow(WindowHandle window) {
  SetActiveWindow(HandleOf(window));
}

void RaiseWindow(WindowHandle window) {
  SetWindowPos(HandleOf(window), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void SetFocusTo(WindowHandle window) {
  SetFocus(HandleOf(window));
}

WindowHandle FocusedWindow() {
  return WindowOf(GetFocus());
}

void CaptureMouse(WindowHandle window) {
  SetCapture(HandleOf(window));
}

void ReleaseMouse() {
  ReleaseCapture();
}

WindowHandle CapturingWindow() {
  return WindowOf(GetCapture());
}

Point CursorPlace() {
  POINT place = {};
  GetCursorPos(&place);
  return {place.x, place.y};
}

CursorShape SetCursorShape(CursorShape shape) {
  const HCURSOR old = SetCursor(CursorOf(shape));
  for (const CursorShape known : {CursorShape::kArrow, CursorShape::kCross, CursorShape::kWait,
                                  CursorShape::kSizeWestEast, CursorShape::kSizeNorthSouth}) {
    if (old == CursorOf(known)) return known;
  }
  return CursorShape::kNone;
}

uint32_t HeldKeys() {
  return (GetKeyState(VK_SHIFT) < 0 ? kKeyShift : 0u) | (GetKeyState(VK_CONTROL) < 0 ? kKeyControl : 0u);
}

void SetWindowTimer(WindowHandle window, uintptr_t id, uint32_t milliseconds) {
  SetTimer(HandleOf(window), id, milliseconds, nullptr);
}

void KillWindowTimer(WindowHandle window, uintptr_t id) {
  ::KillTimer(HandleOf(window), id);
}

void SetScrollBar(WindowHandle window, ScrollBar bar, const ScrollState& state) {
  SCROLLINFO info = {};
  info.cbSize = sizeof(info);
  info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS | SIF_DISABLENOSCROLL;
  info.nMax = state.maximum;
  info.nPage = static_cast<UINT>(state.page);
  info.nPos = state.position;
  SetScrollInfo(HandleOf(window), BarOf(bar), &info, TRUE);
}

void SetScrollPosition(WindowHandle window, ScrollBar bar, int32_t position) {
  SetScrollPos(HandleOf(window), BarOf(bar), position, TRUE);
}

ScrollState ReadScrollBar(WindowHandle window, ScrollBar bar) {
  SCROLLINFO info = {};
  info.cbSize = sizeof(info);
  info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
  GetScrollInfo(HandleOf(window), BarOf(bar), &info);
  return {info.nMax, static_cast<int32_t>(info.nPage), info.nPos};
}

void ShowScrollBars(WindowHandle window, bool show) {
  ShowScrollBar(HandleOf(window), SB_BOTH, show);
}

void ScrollClient(WindowHandle window, int32_t dx, int32_t dy) {
  ScrollWindow(HandleOf(window), dx, dy, nullptr, nullptr);
}

void ScrollClientOnly(WindowHandle window, int32_t dx, int32_t dy) {
  ScrollWindowEx(HandleOf(window), dx, dy, nullptr, nullptr, nullptr, nullptr, 0);
}

bool TakeDroppedFile(uintptr_t drop, char* path, size_t capacity) {
  const HDROP handle = reinterpret_cast<HDROP>(drop);
  const bool fits = DragQueryFileA(handle, 0, nullptr, 0) < capacity;
  if (fits) DragQueryFileA(handle, 0, path, static_cast<UINT>(capacity));
  DragFinish(handle);
  return fits;
}

bool IsInputMethodOpen(WindowHandle window) {
  const HIMC context = ImmGetContext(HandleOf(window));
  const bool open = ImmGetOpenStatus(context) != FALSE;
  ImmReleaseContext(HandleOf(window), context);
  return open;
}

void OpenInputMethod(WindowHandle window, bool open) {
  const HIMC context = ImmGetContext(HandleOf(window));
  ImmSetOpenStatus(context, open);
  ImmReleaseContext(HandleOf(window), context);
}

}  // namespace sorvel::platform
