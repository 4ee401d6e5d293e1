#include "platform/hints.h"

#include <algorithm>
#include <string>

#include "platform/win32/win32.h"
// Needs the types of the header above.
#include <commctrl.h>

namespace sorvel::platform {

namespace {

// Marks the tool tip controls of this file, and holds the one with the tips of a top-level window.
constexpr char kOwnMark[] = "SorvelHint";
constexpr char kTipsProperty[] = "SorvelTips";
constexpr char kEditProperty[] = "SorvelEdit";

constexpr int kWidestTip = 480;
constexpr int kCursorHeight = 20;
constexpr int kNoteFoot = 14;

std::wstring Wide(const char* text) {
  std::wstring wide(static_cast<size_t>(MultiByteToWideChar(CP_ACP, 0, text, -1, nullptr, 0)), L'\0');
  MultiByteToWideChar(CP_ACP, 0, text, -1, wide.data(), static_cast<int>(wide.size()));
  return wide;
}

HWND TopLevelOf(HWND window) {
  return GetAncestor(window, GA_ROOT);
}

HWND MakeTipControl(HWND owner, DWORD style) {
  const HWND tips =
      CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP | style,
                      CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, owner, nullptr, Instance(), nullptr);
  if (tips == nullptr) return nullptr;
  SetPropA(tips, kOwnMark, tips);
  SendMessageW(tips, WM_SETFONT, reinterpret_cast<WPARAM>(PanelFont()), FALSE);
  // Without a width a line feed ends no line.
  SendMessageW(tips, TTM_SETMAXTIPWIDTH, 0, kWidestTip);
  return tips;
}

// A tip that is shown by the program itself.
class TrackedTip {
 public:
  explicit TrackedTip(DWORD tipStyle) : style(tipStyle) {}

  void Show(HWND window, const char* text, POINT place) {
    const HWND root = TopLevelOf(window);
    // A tip goes with its owner.
    if (IsWindow(tips) && root != owner) ::DestroyWindow(tips);
    if (!IsWindow(tips)) {
      owner = root;
      tips = MakeTipControl(root, style);
      TTTOOLINFOW tool = Tool();
      SendMessageW(tips, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
    }
    std::wstring wide = Wide(text);
    TTTOOLINFOW tool = Tool();
    tool.lpszText = wide.data();
    SendMessageW(tips, TTM_UPDATETIPTEXTW, 0, reinterpret_cast<LPARAM>(&tool));
    SendMessageW(tips, TTM_TRACKPOSITION, 0, MAKELPARAM(place.x, place.y));
    SendMessageW(tips, TTM_TRACKACTIVATE, TRUE, reinterpret_cast<LPARAM>(&tool));
  }

  void Hide() {
    if (!IsWindow(tips)) return;
    TTTOOLINFOW tool = Tool();
    SendMessageW(tips, TTM_TRACKACTIVATE, FALSE, reinterpret_cast<LPARAM>(&tool));
  }

 private:
  TTTOOLINFOW Tool() const {
    static wchar_t empty[] = L"";
    TTTOOLINFOW tool = {};
    tool.cbSize = TTTOOLINFOW_V2_SIZE;
    tool.uFlags = TTF_TRACK | TTF_TRANSPARENT | ((style & TTS_BALLOON) != 0 ? 0u : static_cast<UINT>(TTF_ABSOLUTE));
    tool.hwnd = owner;
    tool.uId = 1;
    tool.lpszText = empty;
    return tool;
  }

  const DWORD style;
  HWND tips = nullptr;
  HWND owner = nullptr;
};

TrackedTip gHint(0);
TrackedTip gBalloon(TTS_BALLOON);
UINT_PTR gHintTimer = 0;
HWND gBalloonControl = nullptr;

void CALLBACK EndHint(HWND, UINT, UINT_PTR, DWORD) {
  HideHint();
}

// The plain character of a full-width digit or minus sign, any other one as it is.
wchar_t PlainCharacter(wchar_t character) {
  constexpr wchar_t fullZero = 0xFF10;
  constexpr wchar_t fullNine = 0xFF19;
  constexpr wchar_t fullMinus = 0xFF0D;
  constexpr wchar_t minusSign = 0x2212;
  if (character >= fullZero && character <= fullNine) return static_cast<wchar_t>(character - fullZero + L'0');
  return character == fullMinus || character == minusSign ? L'-' : character;
}

// What an input method or the clipboard put into the edit without a character message.
void MakeTextPlain(HWND edit) {
  std::wstring text(static_cast<size_t>(GetWindowTextLengthW(edit)) + 1, L'\0');
  text.resize(static_cast<size_t>(GetWindowTextW(edit, text.data(), static_cast<int>(text.size()))));
  std::wstring plain = text;
  std::transform(plain.begin(), plain.end(), plain.begin(), PlainCharacter);
  if (plain == text) return;
  DWORD start = 0;
  DWORD end = 0;
  SendMessageW(edit, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
  SetWindowTextW(edit, plain.c_str());
  SendMessageW(edit, EM_SETSEL, start, static_cast<LPARAM>(end));
}

LRESULT CALLBACK NumberEditProc(HWND edit, UINT message, WPARAM first, LPARAM second) {
  const WNDPROC old = reinterpret_cast<WNDPROC>(GetPropA(edit, kEditProperty));
  if (message == WM_NCDESTROY) RemovePropA(edit, kEditProperty);
  if (message == WM_CHAR) first = PlainCharacter(static_cast<wchar_t>(first));
  const LRESULT answer = CallWindowProcW(old, edit, message, first, second);
  if (message == WM_PASTE || message == WM_IME_COMPOSITION) MakeTextPlain(edit);
  return answer;
}

}  // namespace

bool IsHint(HWND tips) {
  return GetPropA(tips, kOwnMark) != nullptr;
}

void SetTip(WindowHandle control, const char* text) {
  const HWND handle = HandleOf(control);
  const HWND root = TopLevelOf(handle);
  HWND tips = static_cast<HWND>(GetPropA(root, kTipsProperty));
  if (tips == nullptr) {
    tips = MakeTipControl(root, 0);
    SetPropA(root, kTipsProperty, tips);
  }
  std::wstring wide = Wide(text);
  TTTOOLINFOW tool = {};
  tool.cbSize = TTTOOLINFOW_V2_SIZE;
  tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS | TTF_TRANSPARENT;
  tool.hwnd = root;
  tool.uId = reinterpret_cast<UINT_PTR>(handle);
  tool.lpszText = wide.data();
  SendMessageW(tips, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

void ShowHint(WindowHandle window, const char* text, uint32_t milliseconds) {
  POINT place = {};
  GetCursorPos(&place);
  gHint.Show(HandleOf(window), text, {place.x, place.y + kCursorHeight});
  if (gHintTimer != 0) ::KillTimer(nullptr, gHintTimer);
  gHintTimer = SetTimer(nullptr, 0, milliseconds, EndHint);
}

void HideHint() {
  if (gHintTimer == 0) return;
  ::KillTimer(nullptr, gHintTimer);
  gHintTimer = 0;
  gHint.Hide();
}

void ShowBalloon(WindowHandle control, const char* text) {
  RECT rect = {};
  GetWindowRect(HandleOf(control), &rect);
  gBalloonControl = HandleOf(control);
  gBalloon.Show(gBalloonControl, text, {(rect.left + rect.right) / 2, rect.bottom});
}

void HideBalloon(WindowHandle control) {
  if (gBalloonControl == nullptr || (control != nullptr && HandleOf(control) != gBalloonControl)) return;
  gBalloonControl = nullptr;
  gBalloon.Hide();
}

WindowHandle MakeNote(WindowHandle parent) {
  const HWND handle = HandleOf(parent);
  // A cut is drawn at any time, and mustn't be drawn over the note.
  if ((GetWindowLongPtrA(handle, GWL_EXSTYLE) & WS_EX_MDICHILD) != 0) {
    SetWindowLongPtrA(handle, GWL_STYLE, GetWindowLongPtrA(handle, GWL_STYLE) | WS_CLIPCHILDREN);
  }
  const HWND note = CreateWindowExA(0, "STATIC", "", WS_CHILD | WS_BORDER | WS_CLIPSIBLINGS | SS_LEFT | SS_NOPREFIX, 0,
                                    0, 0, 0, handle, nullptr, Instance(), nullptr);
  SendMessageA(note, WM_SETFONT, reinterpret_cast<WPARAM>(PanelFont()), FALSE);
  return WindowOf(note);
}

void ShowNote(WindowHandle note, const Bounds& area, const char* text) {
  const HWND handle = HandleOf(note);
  if (text == nullptr) {
    ShowWindow(handle, SW_HIDE);
    return;
  }
  // The control leaves no room around its text.
  std::wstring padded = L"\n";
  std::wstring wide = Wide(text);
  wide.pop_back();
  for (size_t start = 0; start <= wide.size();) {
    const size_t end = std::min(wide.find(L'\n', start), wide.size());
    padded.append(L"\u3000").append(wide, start, end - start).append(L"\u3000\n");
    start = end + 1;
  }
  SetWindowTextW(handle, padded.c_str());
  const HDC context = GetDC(handle);
  const HGDIOBJ old = SelectObject(context, PanelFont());
  RECT size = {};
  DrawTextW(context, padded.c_str(), -1, &size, DT_CALCRECT | DT_NOPREFIX);
  SelectObject(context, old);
  ReleaseDC(handle, context);
  const int width = size.right + 2;
  const int height = size.bottom + kNoteFoot;
  SetWindowPos(handle, HWND_TOP, (area.left + area.right - width) / 2, (area.top + area.bottom - height) / 2, width,
               height, SWP_NOACTIVATE | SWP_SHOWWINDOW);
}

void TakePlainDigits(WindowHandle edit) {
  const HWND handle = HandleOf(edit);
  // As a Unicode window it gets whole characters.
  const LONG_PTR old = SetWindowLongPtrW(handle, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(NumberEditProc));
  SetPropA(handle, kEditProperty, reinterpret_cast<HANDLE>(old));
}

}  // namespace sorvel::platform
