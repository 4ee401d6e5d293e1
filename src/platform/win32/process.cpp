#include "platform/process.h"

#include <process.h>

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

ThreadHandle StartThread(void (*run)(void* user), void* user) {
  Thread* thread = new Thread{nullptr, run, user};
  thread->handle = reinterpret_cast<HANDLE>(_beginthreadex(nullptr, 0, RunThread, thread, CREATE_SUSPENDED, nullptr));
  if (thread->handle == nullptr) {
    delete thread;
    return nullptr;
  }
  SetThreadPriority(thread->handle, THREAD_PRIORITY_BELOW_NORMAL);
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

void CallAtCrash(void (*save)()) {
  gSave = save;
  SetUnhandledExceptionFilter(OnException);
  std::signal(SIGABRT, OnAbort);
  ULONG stack = kLastStack;
  SetThreadStackGuarantee(&stack);
}

}  // namespace sorvel::platform
