#include "platform/messages.h"

#include "platform/win32/win32.h"

namespace sorvel::platform {

namespace {

bool IsForEdit(const MSG& message) {
  char name[8] = "";
  return message.message == WM_KEYDOWN && KeepsKey(static_cast<int32_t>(message.wParam), GetKeyState(VK_CONTROL) < 0) &&
         GetClassNameA(message.hwnd, name, sizeof(name)) > 0 && lstrcmpiA(name, "Edit") == 0;
}

}  // namespace

int RunLoop(WindowHandle frame, WindowHandle mdiClient, int32_t accelerators) {
  const HACCEL table = LoadAcceleratorsA(Instance(), ResourceName(accelerators));
  MSG message = {};
  while (GetMessageA(&message, nullptr, 0, 0) != FALSE) {
    if (TranslateMDISysAccel(HandleOf(mdiClient), &message)) continue;
    if (!IsForEdit(message) && TranslateAcceleratorA(HandleOf(frame), table, &message)) continue;
    TranslateMessage(&message);
    DispatchMessageA(&message);
  }
  return static_cast<int>(message.wParam);
}

void QuitLoop(int code) {
  PostQuitMessage(code);
}

intptr_t Send(WindowHandle window, uint32_t message, uintptr_t first, intptr_t second) {
  return SendMessageA(HandleOf(window), message, first, second);
}

bool TakeMouseMoves(WindowHandle window, Point* place) {
  bool any = false;
  MSG message = {};
  while (PeekMessageA(&message, HandleOf(window), WM_MOUSEMOVE, WM_MOUSEMOVE, PM_REMOVE)) {
    *place = PointOf(message.lParam);
    any = true;
  }
  return any;
}

}  // namespace sorvel::platform
