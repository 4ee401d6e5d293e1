#include "platform/dialogs.h"

#include <type_traits>

#include "platform/win32/win32.h"
// Needs the types of the header above.
#include <commdlg.h>

namespace sorvel::platform {

namespace {

constexpr DWORD kFileFlags = OFN_EXPLORER | OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST | OFN_HIDEREADONLY;
static_assert(kFileFlags == 0x81804);
static_assert(std::is_same_v<COLORREF, DWORD> && sizeof(COLORREF) == sizeof(uint32_t));

struct DialogStart {
  DialogFunction function;
  void* parameter;
};

// The dialog's user data holds the function from the message on that carries the parameter.
INT_PTR CALLBACK DialogProc(HWND dialog, UINT message, WPARAM first, LPARAM second) {
  if (message == WM_INITDIALOG) {
    const DialogStart* start = reinterpret_cast<const DialogStart*>(second);
    SetWindowLongPtrA(dialog, DWLP_USER, reinterpret_cast<LONG_PTR>(start->function));
    second = reinterpret_cast<LPARAM>(start->parameter);
  }
  const DialogFunction function = reinterpret_cast<DialogFunction>(GetWindowLongPtrA(dialog, DWLP_USER));
  return function != nullptr ? function(WindowOf(dialog), message, first, second) : 0;
}

UINT IconOf(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::kQuestion:
      return MB_ICONQUESTION;
    case BoxIcon::kInformation:
      return MB_ICONINFORMATION;
    case BoxIcon::kWarning:
      return MB_ICONWARNING;
    case BoxIcon::kNone:
      break;
  }
  return 0;
}

OPENFILENAMEA FileRequest(WindowHandle owner, const FileForm& form, char* path, size_t capacity) {
  OPENFILENAMEA request = {};
  request.lStructSize = sizeof(request);
  request.hwndOwner = HandleOf(owner);
  request.lpstrFilter = form.filter;
  request.nFilterIndex = form.type != nullptr ? static_cast<DWORD>(*form.type) : 1;
  request.lpstrFile = path;
  request.nMaxFile = static_cast<DWORD>(capacity);
  request.Flags = kFileFlags;
  request.lpstrDefExt = form.defaultExtension;
  return request;
}

}  // namespace

intptr_t RunDialog(int32_t resource, WindowHandle owner, DialogFunction function, void* parameter) {
  const DialogStart start = {function, parameter};
  const INT_PTR result = DialogBoxParamA(Instance(), ResourceName(resource), HandleOf(owner), DialogProc,
                                         reinterpret_cast<LPARAM>(&start));
  return result == -1 ? 0 : result;
}

void EndDialog(WindowHandle dialog, intptr_t result) {
  ::EndDialog(HandleOf(dialog), result);
}

WindowHandle DialogControl(WindowHandle dialog, int32_t id) {
  return WindowOf(GetDlgItem(HandleOf(dialog), id));
}

WindowHandle ParentOf(WindowHandle window) {
  return WindowOf(GetParent(HandleOf(window)));
}

bool AskYesNo(WindowHandle owner, const char* text, const char* title, BoxIcon icon, DefaultButton button) {
  const UINT second = button == DefaultButton::kNo ? MB_DEFBUTTON2 : 0;
  return MessageBoxA(HandleOf(owner), text, title, MB_YESNO | second | IconOf(icon)) == IDYES;
}

void ShowMessage(WindowHandle owner, const char* text, const char* title, BoxIcon icon) {
  MessageBoxA(HandleOf(owner), text, title, MB_OK | IconOf(icon));
}

void PlayAlert() {
  MessageBeep(MB_ICONASTERISK);
}

bool AskFileToOpen(WindowHandle owner, const FileForm& form, char* path, size_t capacity) {
  OPENFILENAMEA request = FileRequest(owner, form, path, capacity);
  return GetOpenFileNameA(&request) != FALSE;
}

bool AskFileToSave(WindowHandle owner, const FileForm& form, char* path, size_t capacity) {
  OPENFILENAMEA request = FileRequest(owner, form, path, capacity);
  if (GetSaveFileNameA(&request) == FALSE) return false;
  if (form.type != nullptr) *form.type = static_cast<int32_t>(request.nFilterIndex);
  return true;
}

bool AskColor(WindowHandle owner, uint32_t (&custom)[16], uint32_t* color) {
  CHOOSECOLORA request = {};
  request.lStructSize = sizeof(request);
  request.hwndOwner = HandleOf(owner);
  request.rgbResult = *color;
  request.lpCustColors = reinterpret_cast<COLORREF*>(custom);
  request.Flags = CC_RGBINIT;
  if (ChooseColorA(&request) == FALSE) return false;
  *color = request.rgbResult;
  return true;
}

}  // namespace sorvel::platform
