#include "platform/window.h"

#include "platform/messages.h"
#include "platform/win32/win32.h"

namespace sorvel::platform {

namespace {

constexpr char kWindowClass[] = "SorvelWnd";

// Hands each message to the window's object, which is found in the window's own storage.
LRESULT CALLBACK ObjectProc(HWND window, UINT message, WPARAM first, LPARAM second) {
  WindowObject* object = reinterpret_cast<WindowObject*>(GetWindowLongPtrA(window, 0));
  if (object == nullptr && message == WM_NCCREATE) {
    object = static_cast<WindowObject*>(reinterpret_cast<CREATESTRUCTA*>(second)->lpCreateParams);
    SetWindowLongPtrA(window, 0, reinterpret_cast<LONG_PTR>(object));
  }
  if (object == nullptr) return DefWindowProcA(window, message, first, second);
  return object->WindowProc(reinterpret_cast<WindowHandle>(window), message, first, second);
}

}  // namespace

WindowHandle MakeWindow(const char* title, WindowObject* object) {
  WNDCLASSA windowClass = {};
  windowClass.lpfnWndProc = ObjectProc;
  windowClass.cbWndExtra = sizeof(void*);
  windowClass.hInstance = GetModuleHandleA(nullptr);
  windowClass.hCursor = LoadCursorA(nullptr, IDC_ARROW);
  windowClass.lpszClassName = kWindowClass;
  RegisterClassA(&windowClass);
  return reinterpret_cast<WindowHandle>(
      CreateWindowExA(0, kWindowClass, title, WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX, CW_USEDEFAULT,
                      CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, nullptr, nullptr, windowClass.hInstance, object));
}

void DestroyWindow(WindowHandle window) {
  ::DestroyWindow(HandleOf(window));
}

intptr_t DefaultHandling(WindowHandle window, uint32_t message, uintptr_t first, intptr_t second) {
  return DefWindowProcA(HandleOf(window), message, first, second);
}

void SetClientSize(WindowHandle window, int32_t width, int32_t height) {
  RECT client = {};
  RECT frame = {};
  GetClientRect(HandleOf(window), &client);
  GetWindowRect(HandleOf(window), &frame);
  MoveWindow(HandleOf(window), frame.left, frame.top, frame.right - frame.left + width - client.right,
             frame.bottom - frame.top + height - client.bottom, TRUE);
}

void InvalidateClient(WindowHandle window) {
  InvalidateRect(HandleOf(window), nullptr, TRUE);
}

void UpdateClient(WindowHandle window) {
  UpdateWindow(HandleOf(window));
}

void ShowInactive(WindowHandle window) {
  ShowWindow(HandleOf(window), SW_SHOWNA);
}

bool IsShown(WindowHandle window) {
  return IsWindowVisible(HandleOf(window)) != FALSE;
}

int RunLoop() {
  MSG message = {};
  while (GetMessageA(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageA(&message);
  }
  return static_cast<int>(message.wParam);
}

void QuitLoop(int code) {
  PostQuitMessage(code);
}

}  // namespace sorvel::platform
