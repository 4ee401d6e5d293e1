#include "tools/tool_functions.h"
#include "tools/tool_state.h"

namespace sorvel {

namespace {

struct BoxTool {
  bool isActive = false;
  Point start;  // in layer coordinates
};
BoxTool gBox;

void DrawBoxTo(const ToolInput& input) {
  CutWindow* const window = input.window;
  window->SaveUndo();
  HideOverlay(window);
  const int32_t width = input.point.x - gBox.start.x;
  const int32_t height = input.point.y - gBox.start.y;
  // The outline grows this rectangle. After a fill undoRect holds the right and bottom edges as its width and height:
  // it is seen from outside, so it stays as it has always been, and what is repainted too much does no harm.
  Rect area = {gBox.start.x, gBox.start.y, width, height};
  if (input.isControlDown) {
    Bounds filled;
    if (input.cell->FillBox(gBox.start.x, gBox.start.y, width, height, currentPen, maskFlags, &filled)) {
      area = {filled.left, filled.top, filled.right, filled.bottom};
    }
  } else {
    input.cell->DrawBox(gBox.start.x, gBox.start.y, width, height, &currentPen, maskFlags, &area);
  }
  window->undoRect = area;
  RepaintLayerArea(window, area);
  gBox.isActive = false;
}

}  // namespace

void RunBox(uint32_t message, const ToolInput& input) {
  switch (message) {
    case platform::kMessageLeftDown:
      HideOverlay(input.window);
      gBox.start = input.point;
      gBox.isActive = true;
      break;
    case platform::kMessageMouseMove:
      if (gBox.isActive) StretchFrame(input, gBox.start);
      break;
    case platform::kMessageLeftUp:
      if (gBox.isActive) DrawBoxTo(input);
      break;
    case platform::kMessageRightUp:
      if (!gBox.isActive) OpenPenPicker(input.window, input.mouse);
      break;
    case platform::kMessageUser:
      // The drag goes on. Only the frame leaves the screen, for what repaints it would make the next inversion of it
      // show it again.
      HideOverlay(input.window);
      break;
    default:
      break;
  }
}

void EndBoxTool() {
  gBox.isActive = false;
}

void ResetBoxTool() {
  gBox = BoxTool{};
}

}  // namespace sorvel
