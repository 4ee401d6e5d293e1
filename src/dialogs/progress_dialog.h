#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "dialogs/dialog.h"

namespace sorvel {

// Work that goes on while a dialog shows how far it is.
class ShownWork {
 public:
  // Begins the work on a thread of its own.
  virtual void Begin() = 0;
  // Whether the work has ended. Waits for that a moment.
  virtual bool HasEnded() = 0;
  // Asks the work to end soon.
  virtual void Stop() = 0;

  struct State {
    std::string text;
    int32_t stage = 0;     // a new stage counts from 0 again
    int32_t permille = 0;  // of the stage
  };
  virtual State Look() = 0;

 protected:
  ~ShownWork() = default;
};

// Shows how far work is, and the time that is left, until the work ends. Its button stops the work.
class ProgressDialog final : public Dialog {
 public:
  ProgressDialog(platform::WindowHandle helpBar, ShownWork* shownWork, std::string shownTitle);
  void ReadValues(platform::WindowHandle) override {}
  void WriteValues(platform::WindowHandle dialog) override;
  void OnTimer(platform::WindowHandle dialog) override;
  bool MayEnd(platform::WindowHandle dialog) override;

 private:
  using Clock = std::chrono::steady_clock;

  std::string TimeLeft(const ShownWork::State& state);

  ShownWork* work;  // not owned
  std::string title;
  bool hasBegun = false;
  bool isStopping = false;
  int32_t stage = -1;
  Clock::time_point stageBegin;
};

}  // namespace sorvel
