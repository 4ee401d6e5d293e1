#include "platform/timer.h"

#include <atomic>

#include "platform/win32/win32.h"
// Needs the types of the header above.
#include <mmsystem.h>

namespace sorvel::platform {

namespace {

constexpr char kTimerClass[] = "SorvelTimer";
constexpr UINT kTick = WM_USER;

// The timer calls back on a thread of its own, which only posts a message to this window: ticks run on the main thread,
// and at most one is queued. The number of the timer in the message tells ticks of an earlier timer apart.
struct {
  HWND window = nullptr;
  TimerFunction function = nullptr;
  void* user = nullptr;
  UINT id = 0;
  std::atomic<uint32_t> number = 0;
  std::atomic<bool> waiting = false;
} gTimer;

LRESULT CALLBACK TimerProc(HWND window, UINT message, WPARAM first, LPARAM second) {
  if (message != kTick) return DefWindowProcA(window, message, first, second);
  if (gTimer.id != 0 && first == gTimer.number) gTimer.function(gTimer.user);
  // The next one may be posted only now, so that slow ticks can't keep other messages out.
  gTimer.waiting = false;
  return 0;
}

void CALLBACK OnTimer(UINT, UINT, DWORD_PTR number, DWORD_PTR, DWORD_PTR) {
  if (gTimer.waiting.exchange(true)) return;
  if (PostMessageA(gTimer.window, kTick, number, 0) == FALSE) gTimer.waiting = false;
}

bool MakeTimerWindow() {
  if (gTimer.window != nullptr) return true;
  WNDCLASSA windowClass = {};
  windowClass.lpfnWndProc = TimerProc;
  windowClass.hInstance = GetModuleHandleA(nullptr);
  windowClass.lpszClassName = kTimerClass;
  RegisterClassA(&windowClass);
  gTimer.window =
      CreateWindowExA(0, kTimerClass, "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, windowClass.hInstance, nullptr);
  return gTimer.window != nullptr;
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
  gTimer.function = function;
  gTimer.user = user;
  const uint32_t number = ++gTimer.number;
  gTimer.id = timeSetEvent(static_cast<UINT>(period), static_cast<UINT>(resolution), OnTimer, number,
                           TIME_PERIODIC | TIME_KILL_SYNCHRONOUS);
  return gTimer.id;
}

void KillTimer(uint32_t id) {
  timeKillEvent(id);
  if (gTimer.id == id) gTimer.id = 0;
}

}  // namespace sorvel::platform
