#pragma once

#include <cstdint>

// What the program asks of its own process: a thread for a closed job, and a last word before a crash ends it.
namespace sorvel::platform {

struct Thread;
using ThreadHandle = Thread*;

// Runs the function once on a thread of its own. Until JoinThread() gives true, nobody else touches what it works on.
// Null if there can be no thread.
ThreadHandle StartThread(void (*run)(void* user), void* user);
// Waits for the function's end, at most so many milliseconds, or for as long as it takes with a negative number. True
// if it has ended; the handle is then gone.
bool JoinThread(ThreadHandle thread, int32_t milliseconds);

// Has the function called once when an error is about to end the program, on the thread that the error happened on.
// Nothing calls it on a platform that can't tell.
void CallAtCrash(void (*save)());

}  // namespace sorvel::platform
