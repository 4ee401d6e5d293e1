#include "foundation/arithmetic.h"
#include "tools/position_tool.h"

namespace sorvel {

namespace {

// Moves the frame over the cut.
class FramePositionTool final : public PositionTool {
 protected:
  bool ReadBox(CutWindow* window, Bounds* result) const override {
    const Frame* frame = window->CurrentFrame();
    if (frame == nullptr) return false;
    *result = BoxAt(frame->x, frame->y, window->frameWidth, window->frameHeight);
    return true;
  }

  bool CanMove(CutWindow* window) const override { return window->CurrentCell() != nullptr; }

  void Place(const ToolInput& input) override {
    CutWindow* const window = input.window;
    Frame* const frame = window->CurrentFrame();
    if (input.isControlDown) {
      frame->x = (window->width - window->frameWidth) / 2;
      frame->y = (window->height - window->frameHeight) / 2;
    } else if (isDragging) {
      frame->x = Saturated(int64_t{frame->x} + input.point.x - start.x);
      frame->y = Saturated(int64_t{frame->y} + input.point.y - start.y);
    } else {
      return;
    }
    window->MarkTiming();
    isDragging = false;
    ShowBox(input);
  }

  void Align(const ToolInput& input) override {
    CutWindow* const window = input.window;
    Frame* const frame = window->CurrentFrame();
    const Frame* const previous = FrameInRing(window, -1);
    if (input.isControlDown) {
      const Frame* const next = FrameInRing(window, 1);
      frame->x = MiddleOf(previous->x, next->x);
      frame->y = MiddleOf(previous->y, next->y);
    } else {
      frame->x = previous->x;
      frame->y = previous->y;
    }
    window->MarkTiming();
    window->RepaintAll();
    ShowBox(input);
  }
};

}  // namespace

std::unique_ptr<Tool> MakeFramePositionTool() {
  return std::make_unique<FramePositionTool>();
}

}  // namespace sorvel
