#include "platform/process.h"

#include <process.h>

#include <algorithm>
#include <csignal>

#include "platform/win32/win32.h"

namespace sorvel::platform {

struct Thread {
  HANDLE handle = nullptr;
  void (*run)(void* user) = nullptr;
  void* user = nullptr;
};

namespace {

// What a thread needs of its stack for the last call after it has used up the rest.
constexpr ULONG kLastStack = 1 << 16;

void (*gSave)() = nullptr;
LONG gHasCrashed = 0;

unsigned __stdcall RunThread(void* parameter) {
  const Thread* thread = static_cast<const Thread*>(parameter);
  const ComUse use;
  thread->run(thread->user);
  return 0;
}

// An error during the call itself ends the program.
void SaveOnce() {
  if (InterlockedExchange(&gHasCrashed, 1) == 0) gSave();
}

LONG WINAPI OnException(EXCEPTION_POINTERS*) {
  SaveOnce();
  return EXCEPTION_CONTINUE_SEARCH;
}

void OnAbort(int) {
  SaveOnce();
}

}  // namespace

ThreadHandle StartThread(void (*run)(void* user), void* user, ThreadKind kind) {
  Thread* thread = new Thread{nullptr, run, user};
  thread->handle = reinterpret_cast<HANDLE>(_beginthreadex(nullptr, 0, RunThread, thread, CREATE_SUSPENDED, nullptr));
  if (thread->handle == nullptr) {
    delete thread;
    return nullptr;
  }
  const int own = GetThreadPriority(GetCurrentThread());
  SetThreadPriority(thread->handle, kind == ThreadKind::kHelper ? own : THREAD_PRIORITY_BELOW_NORMAL);
  ResumeThread(thread->handle);
  return thread;
}

bool JoinThread(ThreadHandle thread, int32_t milliseconds) {
  const DWORD limit = milliseconds < 0 ? INFINITE : static_cast<DWORD>(milliseconds);
  if (WaitForSingleObject(thread->handle, limit) != WAIT_OBJECT_0) return false;
  CloseHandle(thread->handle);
  delete thread;
  return true;
}

int32_t CoreCount() {
  return std::max(static_cast<int32_t>(GetActiveProcessorCount(ALL_PROCESSOR_GROUPS)), 1);
}

// The handle of the system is the semaphore.
SemaphoreHandle MakeSemaphore() {
  return reinterpret_cast<SemaphoreHandle>(CreateSemaphoreW(nullptr, 0, LONG_MAX, nullptr));
}

void DeleteSemaphore(SemaphoreHandle semaphore) {
  if (semaphore != nullptr) CloseHandle(semaphore);
}

void RaiseSemaphore(SemaphoreHandle semaphore) {
  ReleaseSemaphore(semaphore, 1, nullptr);
}

void LowerSemaphore(SemaphoreHandle semaphore) {
  WaitForSingleObject(semaphore, INFINITE);
}

void CallAtCrash(void (*save)()) {
  gSave = save;
  SetUnhandledExceptionFilter(OnException);
  std::signal(SIGABRT, OnAbort);
  ULONG stack = kLastStack;
  SetThreadStackGuarantee(&stack);
}

}  // namespace sorvel::platform
