#include "platform/timer.h"

#include "platform/headless/internal.h"

namespace sorvel::platform {

namespace {

constexpr int32_t kShortestPeriod = 1;
constexpr int32_t kLongestPeriod = 1000000;

struct RunningTimer {
  uint32_t id = 0;
  int32_t period = 0;
  TimerFunction function = nullptr;
  void* user = nullptr;
};

RunningTimer gRunning;
uint32_t gLastId = 0;

}  // namespace

bool GetTimerRange(int32_t* shortest, int32_t* longest) {
  *shortest = kShortestPeriod;
  *longest = kLongestPeriod;
  return true;
}

void RequestTimerResolution(int32_t milliseconds) {
  static_cast<void>(milliseconds);
}

uint32_t StartTimer(int32_t period, int32_t resolution, TimerFunction function, void* user) {
  static_cast<void>(resolution);
  if (period < kShortestPeriod || period > kLongestPeriod) return 0;
  gRunning = {++gLastId, period, function, user};
  return gRunning.id;
}

void KillTimer(uint32_t timer) {
  if (timer == gRunning.id) gRunning = RunningTimer{};
}

namespace headless {

int32_t RunningTimerPeriod() {
  return gRunning.period;
}

bool RunTimer() {
  if (gRunning.function == nullptr) return false;
  gRunning.function(gRunning.user);
  return true;
}

void ResetTimer() {
  gRunning = RunningTimer{};
}

}  // namespace headless
}  // namespace sorvel::platform
