#include "platform/process.h"

#include <pthread.h>
#include <semaphore.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <thread>

namespace sorvel::platform {

struct Thread {
  void (*run)(void* user) = nullptr;
  void* user = nullptr;
  std::atomic<bool> hasEnded = false;
  pthread_t thread = {};
};

struct Semaphore {
  sem_t semaphore;
};

namespace {

void* RunThread(void* parameter) {
  Thread* thread = static_cast<Thread*>(parameter);
  thread->run(thread->user);
  thread->hasEnded = true;
  return nullptr;
}

}  // namespace

// std::thread has no way to say that there can be none.
ThreadHandle StartThread(void (*run)(void* user), void* user, ThreadKind /*kind*/) {
  Thread* started = new Thread;
  started->run = run;
  started->user = user;
  sigset_t ending;
  sigset_t before;
  sigemptyset(&ending);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&ending, signal);
  pthread_sigmask(SIG_BLOCK, &ending, &before);
  const bool isStarted = pthread_create(&started->thread, nullptr, RunThread, started) == 0;
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  if (isStarted) return started;
  delete started;
  return nullptr;
}

bool JoinThread(ThreadHandle thread, int32_t milliseconds) {
  for (int32_t waited = 0; milliseconds >= 0 && !thread->hasEnded; ++waited) {
    if (waited == milliseconds) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  pthread_join(thread->thread, nullptr);
  delete thread;
  return true;
}

int32_t CoreCount() {
  return std::max(static_cast<int32_t>(std::thread::hardware_concurrency()), 1);
}

SemaphoreHandle MakeSemaphore() {
  Semaphore* made = new Semaphore;
  if (sem_init(&made->semaphore, 0, 0) == 0) return made;
  delete made;
  return nullptr;
}

void DeleteSemaphore(SemaphoreHandle semaphore) {
  if (semaphore == nullptr) return;
  sem_destroy(&semaphore->semaphore);
  delete semaphore;
}

void RaiseSemaphore(SemaphoreHandle semaphore) {
  sem_post(&semaphore->semaphore);
}

void LowerSemaphore(SemaphoreHandle semaphore) {
  // A signal ends the wait early.
  while (sem_wait(&semaphore->semaphore) != 0 && errno == EINTR) {
  }
}

// A script's work is kept after each of its actions: a crash takes nothing that a call could still save.
void CallAtCrash(void (*)()) {}

}  // namespace sorvel::platform
