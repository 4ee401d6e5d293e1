#include "platform/controls.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "platform/win32/win32.h"
// Needs the types of the header above.
#include <commctrl.h>

namespace sorvel::platform {

namespace {

constexpr int kPictureSize = 16;

intptr_t Ask(WindowHandle control, UINT message, WPARAM first = 0, LPARAM second = 0) {
  return SendMessageA(HandleOf(control), message, first, second);
}

WindowHandle WithPanelFont(HWND control) {
  SendMessageA(control, WM_SETFONT, reinterpret_cast<WPARAM>(PanelFont()), FALSE);
  return WindowOf(control);
}

WindowHandle MakeControl(WindowHandle parent, const char* controlClass, int32_t id, DWORD edge, DWORD style) {
  return WithPanelFont(CreateWindowExA(edge, controlClass, "", WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0,
                                       HandleOf(parent), reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), Instance(),
                                       nullptr));
}

WPARAM LineOf(int32_t index) {
  return static_cast<WPARAM>(static_cast<INT_PTR>(index));
}

LPARAM TextOf(const char* text) {
  return reinterpret_cast<LPARAM>(text);
}

}  // namespace

HFONT PanelFont() {
  static const HFONT font =
      CreateFontA(-12, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, SHIFTJIS_CHARSET, OUT_DEFAULT_PRECIS,
                  CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, VARIABLE_PITCH | FF_SWISS, "MS UI Gothic");
  return font;
}

WindowHandle MakeEdit(WindowHandle parent, int32_t id, bool scrolls) {
  return MakeControl(parent, "EDIT", id, WS_EX_CLIENTEDGE, scrolls ? ES_AUTOHSCROLL : 0);
}

WindowHandle MakeListBox(WindowHandle parent, int32_t id, bool extendedSelection) {
  return MakeControl(parent, "LISTBOX", id, WS_EX_CLIENTEDGE,
                     WS_VSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | (extendedSelection ? LBS_EXTENDEDSEL : 0));
}

WindowHandle MakeCheckBox(WindowHandle parent, int32_t id) {
  return MakeControl(parent, "BUTTON", id, 0, BS_AUTOCHECKBOX | BS_NOTIFY);
}

WindowHandle MakeStatusBar(WindowHandle parent, int32_t id) {
  return WithPanelFont(CreateStatusWindowA(WS_CHILD | WS_VISIBLE, "", HandleOf(parent), static_cast<UINT>(id)));
}

WindowHandle MakeToolBar(WindowHandle parent, int32_t id, int32_t bitmap, int32_t imageCount, const ToolButton* buttons,
                         int32_t buttonCount) {
  std::vector<TBBUTTON> entries(static_cast<size_t>(buttonCount));
  for (int32_t i = 0; i < buttonCount; i++) {
    TBBUTTON& entry = entries[static_cast<size_t>(i)];
    if (buttons[i].command == 0) {
      entry.fsStyle = TBSTYLE_SEP;
      continue;
    }
    entry.iBitmap = buttons[i].image;
    entry.idCommand = buttons[i].command;
    entry.fsState = TBSTATE_ENABLED;
    entry.fsStyle = buttons[i].check ? TBSTYLE_CHECK : TBSTYLE_BUTTON;
  }
  return WindowOf(CreateToolbarEx(HandleOf(parent), WS_CHILD | WS_VISIBLE | TBSTYLE_TOOLTIPS, static_cast<UINT>(id),
                                  imageCount, Instance(), static_cast<UINT_PTR>(bitmap), entries.data(), buttonCount,
                                  kPictureSize, kPictureSize, kPictureSize, kPictureSize, sizeof(TBBUTTON)));
}

void CheckToolButton(WindowHandle toolBar, int32_t command, bool checked) {
  Ask(toolBar, TB_CHECKBUTTON, static_cast<WPARAM>(command), MAKELPARAM(checked, 0));
}

void SetEditReadOnly(WindowHandle edit, bool readOnly) {
  Ask(edit, EM_SETREADONLY, readOnly);
}

void SelectAllText(WindowHandle edit) {
  Ask(edit, EM_SETSEL, 0, -1);
}

bool IsChecked(WindowHandle button) {
  return Ask(button, BM_GETCHECK) == BST_CHECKED;
}

void SetChecked(WindowHandle button, bool checked) {
  Ask(button, BM_SETCHECK, checked ? BST_CHECKED : BST_UNCHECKED);
}

void SetListRedraw(WindowHandle list, bool redraw) {
  Ask(list, WM_SETREDRAW, redraw);
}

int32_t ListCount(WindowHandle list) {
  return static_cast<int32_t>(Ask(list, LB_GETCOUNT));
}

void ClearList(WindowHandle list) {
  Ask(list, LB_RESETCONTENT);
}

int32_t AddListLine(WindowHandle list, const char* text) {
  return static_cast<int32_t>(Ask(list, LB_ADDSTRING, 0, TextOf(text)));
}

void InsertListLine(WindowHandle list, int32_t index, const char* text) {
  Ask(list, LB_INSERTSTRING, LineOf(index), TextOf(text));
}

void DeleteListLine(WindowHandle list, int32_t index) {
  Ask(list, LB_DELETESTRING, LineOf(index));
}

size_t ReadListLine(WindowHandle list, int32_t index, char* text, size_t capacity) {
  std::string whole(ListLineLength(list, index) + 1, '\0');
  Ask(list, LB_GETTEXT, LineOf(index), TextOf(whole.data()));
  const size_t length = std::min(std::strlen(whole.c_str()), capacity - 1);
  std::memcpy(text, whole.data(), length);
  text[length] = '\0';
  return length;
}

size_t ListLineLength(WindowHandle list, int32_t index) {
  const intptr_t length = Ask(list, LB_GETTEXTLEN, LineOf(index));
  return length == LB_ERR ? 0 : static_cast<size_t>(length);
}

int32_t FindListLine(WindowHandle list, int32_t after, const char* text) {
  return static_cast<int32_t>(Ask(list, LB_FINDSTRING, LineOf(after), TextOf(text)));
}

int32_t SelectedListLine(WindowHandle list) {
  return static_cast<int32_t>(Ask(list, LB_GETCURSEL));
}

void SelectListLine(WindowHandle list, int32_t index) {
  Ask(list, LB_SETCURSEL, LineOf(index));
}

bool IsListLineSelected(WindowHandle list, int32_t index) {
  return Ask(list, LB_GETSEL, LineOf(index)) > 0;
}

void SetListLineSelected(WindowHandle list, int32_t index, bool selected) {
  Ask(list, LB_SETSEL, selected, index);
}

int32_t ListCaret(WindowHandle list) {
  return static_cast<int32_t>(Ask(list, LB_GETCARETINDEX));
}

void SetListCaret(WindowHandle list, int32_t index) {
  Ask(list, LB_SETCARETINDEX, LineOf(index), FALSE);
}

void SetProgress(WindowHandle bar, int32_t permille) {
  Ask(bar, PBM_SETRANGE32, 0, 1000);
  Ask(bar, PBM_SETPOS, static_cast<WPARAM>(permille));
}

void SetUpDownRange(WindowHandle upDown, int32_t low, int32_t high) {
  Ask(upDown, UDM_SETRANGE, 0, MAKELPARAM(high, low));
}

void ReadUpDownRange(WindowHandle upDown, int32_t* low, int32_t* high) {
  const auto range = static_cast<uintptr_t>(Ask(upDown, UDM_GETRANGE));
  *low = static_cast<int16_t>(HighHalf(range));
  *high = static_cast<int16_t>(LowHalf(range));
}

void SetUpDownPosition(WindowHandle upDown, int32_t position) {
  Ask(upDown, UDM_SETPOS, 0, MAKELPARAM(position, 0));
}

int32_t UpDownPosition(WindowHandle upDown) {
  return static_cast<int32_t>(Ask(upDown, UDM_GETPOS));
}

}  // namespace sorvel::platform
