#include "tools/frame_drag_tool.h"

namespace sorvel {

namespace {

class RectangleTool final : public FrameDragTool {
 protected:
  void Release(const ToolInput& input) override {
    if (!isActive) return;
    input.window->SaveUndo();
    input.HideOverlay();
    const int32_t width = input.point.x - start.x;
    const int32_t height = input.point.y - start.y;
    // The outline grows this rectangle. After a fill its width and height are the right and bottom edges: scripts see
    // it as undoRect, so it stays, and repainting too much does no harm.
    Rect area = {start.x, start.y, width, height};
    if (input.isControlDown) {
      Bounds filled;
      if (input.cell->FillBox(start.x, start.y, width, height, currentPen, maskFlags, &filled)) {
        area = {filled.left, filled.top, filled.right, filled.bottom};
      }
    } else {
      input.cell->DrawBox(start.x, start.y, width, height, &currentPen, maskFlags, &area);
    }
    input.ReportStep(area);
    isActive = false;
  }
};

}  // namespace

std::unique_ptr<Tool> MakeRectangleTool() {
  return std::make_unique<RectangleTool>();
}

}  // namespace sorvel
