#pragma once

#include <cstdint>

// The periodic timer of the player. Its function is called on the main thread, at most one call waiting at a time.
namespace sorvel::platform {

using TimerFunction = void (*)(void* user);

// The shortest and the longest period in milliseconds. False if there is no timer.
bool GetTimerRange(int32_t* shortest, int32_t* longest);

// Asks the system to keep time to so many milliseconds.
void RequestTimerResolution(int32_t milliseconds);

// Calls the function every `period` milliseconds. Gives the timer, or 0 if it can't be had.
uint32_t StartTimer(int32_t period, int32_t resolution, TimerFunction function, void* user);
void KillTimer(uint32_t timer);

}  // namespace sorvel::platform
