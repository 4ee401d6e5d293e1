#include "tools/position_tool.h"

#include "foundation/arithmetic.h"

namespace sorvel {

void PositionTool::End() {
  isDragging = false;
  isUp = false;
}

bool PositionTool::Prepare(intptr_t place, ToolInput* input) {
  if (input->message == platform::kMessageUser) return true;
  if (!CanMove(input->window)) return false;
  input->mouse = UnpackPlace(place, false);
  input->point = input->mouse;
  input->window->WindowToCut(&input->point, 1);
  return true;
}

void PositionTool::Press(const ToolInput& input) {
  ShowBoxIfHidden(input);
  start = input.point;
  isDragging = true;
}

void PositionTool::Move(const ToolInput& input) {
  ShowBoxIfHidden(input);
  if (isDragging) {
    ShowMovedBox(input, SaturatingSubtract(input.point.x, start.x), SaturatingSubtract(input.point.y, start.y));
  }
}

void PositionTool::Release(const ToolInput& input) {
  // The pulses of a repaint must find the box on the screen.
  if (!IsUpOn(input.window)) ShowBox(input);
  Place(input);
}

void PositionTool::RightRelease(const ToolInput& input) {
  if (!IsUpOn(input.window)) ShowBox(input);
  if (!isDragging) {
    Align(input);
    return;
  }
  // isUp stays set: the next move or pair of pulses shows the box again.
  input.HideOverlay();
  isDragging = false;
}

void PositionTool::Pulse(const ToolInput& input) {
  if (IsUpOn(input.window)) {
    input.HideOverlay();
    isUp = false;
  } else {
    ShowBox(input);
  }
}

void PositionTool::ShowBox(const ToolInput& input) {
  isUp = true;
  owner = input.window;
  if (ReadBox(input.window, &box)) ShowMovedBox(input, 0, 0);
}

void PositionTool::ShowBoxIfHidden(const ToolInput& input) {
  if (!input.overlay->IsShown(input.window)) ShowBox(input);
}

void PositionTool::ShowMovedBox(const ToolInput& input, int32_t dx, int32_t dy) const {
  Point corners[2] = {{SaturatingAdd(box.left, dx), SaturatingAdd(box.top, dy)},
                      {SaturatingAdd(box.right, dx), SaturatingAdd(box.bottom, dy)}};
  input.window->CutToWindow(corners, 2);
  input.ShowFrame({corners[0].x, corners[0].y, corners[1].x, corners[1].y});
}

Bounds BoxAt(int32_t x, int32_t y, int32_t width, int32_t height) {
  return {x, y, SaturatingAdd(x, width), SaturatingAdd(y, height)};
}

int32_t MiddleOf(int32_t a, int32_t b) {
  return static_cast<int32_t>((int64_t{a} + b) / 2);
}

Frame* FrameInRing(CutWindow* window, int32_t step) {
  const int32_t count = window->frames.Count();
  return window->frames.At((window->currentFrame + step + count) % count);
}

}  // namespace sorvel
