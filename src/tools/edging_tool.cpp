#include "cutwindow/wait_cursor.h"
#include "tools/frame_drag_tool.h"

namespace sorvel {

namespace {

class EdgingTool final : public FrameDragTool {
 protected:
  void Release(const ToolInput& input) override {
    // Quirk 15. A drag that ends on the wrong side isn't a cancel: a later release may still finish it.
    if (!isActive || !IsRightAndBelow(input.point, start)) return;
    input.window->SaveUndo();
    input.HideOverlay();
    const Rect area = {start.x, start.y, input.point.x - start.x, input.point.y - start.y};
    {
      const WaitCursor waiting;
      input.cell->EdgeFill(area.x, area.y, area.width, area.height, currentPen, maskFlags);
    }
    input.ReportStep(area);
    isActive = false;
  }
};

}  // namespace

std::unique_ptr<Tool> MakeEdgingTool() {
  return std::make_unique<EdgingTool>();
}

}  // namespace sorvel
