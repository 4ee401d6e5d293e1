#pragma once

#include <cstdint>

// The periodic timer of the player. It calls its function on the main thread; calls that are late don't pile up.
namespace sorvel::platform {

using TimerFunction = void (*)(void* user);

// The shortest and longest period of a timer in milliseconds. False if the system has no timer.
bool GetTimerRange(int32_t* shortest, int32_t* longest);

// Asks the system for this accuracy of its timers.
void RequestTimerResolution(int32_t milliseconds);

// Calls the function every `period` milliseconds, give or take `resolution`. Returns the timer, or 0 if it fails.
uint32_t StartTimer(int32_t period, int32_t resolution, TimerFunction function, void* user);
void KillTimer(uint32_t timer);

}  // namespace sorvel::platform
