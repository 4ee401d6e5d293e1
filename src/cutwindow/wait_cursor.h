#pragma once

#include "platform/window.h"

namespace sorvel {

// Shows the wait cursor, and puts back the old one at the end of the scope.
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

  // Keeps the wait cursor at the end of the scope; it stays until the mouse moves.
  void Leave() { isLeft = true; }

 private:
  platform::CursorShape old;
  bool isLeft = false;
};

}  // namespace sorvel
