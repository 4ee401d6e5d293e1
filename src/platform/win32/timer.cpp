#include "platform/timer.h"

#include <atomic>

#include "platform/win32/win32.h"
// Needs the types of the header above.
#include <mmsystem.h>

namespace sorvel::platform {

namespace {

constexpr char kTimerClass[] = "SorvelTimer";
constexpr UINT kTick = WM_USER;

// The timer calls on a thread of its own, where all that happens is that a message is posted to this window: ticks run
// on the main thread, and no more than one waits at a time.
struct {
  HWND window = nullptr;
  TimerFunction function = nullptr;
  void* user = nullptr;
  uint32_t id = 0;
  std::atomic<bool> waiting = false;
} timer;

LRESULT CALLBACK TimerProc(HWND window, UINT message, WPARAM first, LPARAM second) {
  if (message != kTick) return DefWindowProcA(window, message, first, second);
  timer.waiting = false;
  if (timer.id != 0 && first == timer.id) timer.function(timer.user);
  return 0;
}

void CALLBACK OnTimer(UINT id, UINT, DWORD_PTR, DWORD_PTR, DWORD_PTR) {
  if (!timer.waiting.exchange(true)) PostMessageA(timer.window, kTick, id, 0);
}

bool MakeTimerWindow() {
  if (timer.window != nullptr) return true;
  WNDCLASSA windowClass = {};
  windowClass.lpfnWndProc = TimerProc;
  windowClass.hInstance = GetModuleHandleA(nullptr);
  windowClass.lpszClassName = kTimerClass;
  RegisterClassA(&windowClass);
  timer.window =
      CreateWindowExA(0, kTimerClass, "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, windowClass.hInstance, nullptr);
  return timer.window != nullptr;
}

}  // namespace

bool GetTimerRange(int32_t* shortest, int32_t* longest) {
  TIMECAPS caps = {};
  if (timeGetDevCaps(&caps, sizeof(caps)) != TIMERR_NOERROR) return false;
  *shortest = static_cast<int32_t>(caps.wPeriodMin);
  *longest = static_cast<int32_t>(caps.wPeriodMax);
  return true;
}

void RequestTimerResolution(int32_t milliseconds) {
  timeBeginPeriod(static_cast<UINT>(milliseconds));
}

uint32_t StartTimer(int32_t period, int32_t resolution, TimerFunction function, void* user) {
  if (!MakeTimerWindow()) return 0;
  timer.function = function;
  timer.user = user;
  timer.waiting = false;
  timer.id = timeSetEvent(static_cast<UINT>(period), static_cast<UINT>(resolution), OnTimer, 0, TIME_PERIODIC);
  return timer.id;
}

void KillTimer(uint32_t id) {
  timeKillEvent(id);
  if (timer.id == id) timer.id = 0;
}

}  // namespace sorvel::platform
