#pragma once

#include "tools/tool.h"

namespace sorvel {

// What the tools that draw by a rectangle have in common: a press starts a drag, the frame on the screen follows it,
// and the release, which is the tool's own, draws. The right button opens the pen picker, but not during a drag.
class FrameDragTool : public Tool {
 public:
  void End() final { isActive = false; }

 protected:
  void Press(const ToolInput& input) final {
    input.HideOverlay();
    isActive = true;
    start = input.point;
  }

  void Move(const ToolInput& input) final {
    if (isActive) input.StretchFrame(start);
  }

  void RightRelease(const ToolInput& input) final {
    if (!isActive) input.OpenPenPicker(input.mouse);
  }

  // The drag goes on. Only the frame leaves the screen: after a repaint below it the next inversion would draw it
  // instead of removing it.
  void Pulse(const ToolInput& input) final { input.HideOverlay(); }

  bool isActive = false;  // a drag goes on
  Point start;            // of the drag, in layer coordinates
};

}  // namespace sorvel
