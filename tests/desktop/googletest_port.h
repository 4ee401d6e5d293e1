#pragma once

// Not every MinGW brings std::mutex and std::condition_variable, from which GoogleTest makes this class. It is included
// ahead of GoogleTest's own headers.
#include <windows.h>

namespace testing::internal {

class Notification {
 public:
  Notification() : event(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {}
  ~Notification() { CloseHandle(event); }
  Notification(const Notification&) = delete;
  Notification& operator=(const Notification&) = delete;

  void Notify() { SetEvent(event); }
  void WaitForNotification() { WaitForSingleObject(event, INFINITE); }

 private:
  HANDLE event;
};

}  // namespace testing::internal
