#pragma once

#include <cstdint>

// What the program asks of its own process: threads for closed jobs, and a last word before a crash ends it.
namespace sorvel::platform {

struct Thread;
using ThreadHandle = Thread*;

// A background thread gives way to all others where the system knows priorities. A helper has its starter's priority,
// since that thread waits for it. Signals that end the program are for the main thread.
enum class ThreadKind { kBackground, kHelper };

// Runs the function once on a thread of its own. Until JoinThread() gives true, nobody else touches what it works on.
// Null if there can be no thread.
ThreadHandle StartThread(void (*run)(void* user), void* user, ThreadKind kind = ThreadKind::kBackground);
// Waits for the function's end, at most so many milliseconds, or for as long as it takes with a negative number. True
// if it has ended; the handle is then gone.
bool JoinThread(ThreadHandle thread, int32_t milliseconds);

// How many threads can run at the same time, at least 1.
int32_t CoreCount();

// A number, 0 at first, that threads wait for. Null if the system has no more of them.
struct Semaphore;
using SemaphoreHandle = Semaphore*;
SemaphoreHandle MakeSemaphore();
void DeleteSemaphore(SemaphoreHandle semaphore);  // nobody waits for it; null is allowed
void RaiseSemaphore(SemaphoreHandle semaphore);
// Waits until the number isn't 0, and takes 1 off.
void LowerSemaphore(SemaphoreHandle semaphore);

// Has the function called once when an error is about to end the program, on the thread that the error happened on.
// Nothing calls it on a platform that can't tell.
void CallAtCrash(void (*save)());

}  // namespace sorvel::platform
