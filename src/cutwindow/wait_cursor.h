#pragma once

#include "platform/window.h"

namespace sorvel {

// The wait cursor for the length of a scope.
class WaitCursor {
 public:
  WaitCursor() : old(platform::SetCursorShape(platform::CursorShape::kWait)) {}
  WaitCursor(const WaitCursor&) = delete;
  WaitCursor& operator=(const WaitCursor&) = delete;
  ~WaitCursor() {
    if (isLeft) return;
    const bool isOurs = old != platform::CursorShape::kNone;
    platform::SetCursorShape(isOurs ? old : platform::CursorShape::kArrow);
  }

  // It stays on the screen until the mouse moves.
  void Leave() { isLeft = true; }

 private:
  platform::CursorShape old;
  bool isLeft = false;
};

}  // namespace sorvel
