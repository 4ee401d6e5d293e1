#include "platform/process.h"

#include <atomic>
#include <chrono>
#include <thread>

namespace sorvel::platform {

struct Thread {
  std::atomic<bool> hasEnded = false;
  std::thread thread;
};

ThreadHandle StartThread(void (*run)(void* user), void* user) {
  Thread* started = new Thread;
  started->thread = std::thread([started, run, user] {
    run(user);
    started->hasEnded = true;
  });
  return started;
}

bool JoinThread(ThreadHandle thread, int32_t milliseconds) {
  for (int32_t waited = 0; milliseconds >= 0 && !thread->hasEnded; ++waited) {
    if (waited == milliseconds) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  thread->thread.join();
  delete thread;
  return true;
}

// A script's work is kept after each of its actions: a crash takes nothing that a call could still save.
void CallAtCrash(void (*)()) {}

}  // namespace sorvel::platform
