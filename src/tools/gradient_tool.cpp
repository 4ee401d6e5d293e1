#include "cutwindow/wait_cursor.h"
#include "tools/tool.h"

namespace sorvel {

namespace {

// Two clicks, with a change of the pen between them.
class GradientTool final : public Tool {
 public:
  GradientTool() : Tool(PointForm::kOffGrid) {}

  void Cancel() override { isArmed = false; }

 protected:
  void Release(const ToolInput& input) override {
    if (!isArmed) {
      isArmed = true;
      first = input.point;
      firstPen = currentPen;
      return;
    }
    const WaitCursor waiting;
    input.window->SaveUndo();
    Rect area;
    input.cell->GradientFill(first.x, first.y, firstPen, input.point.x, input.point.y, currentPen, maskFlags, &area);
    input.ReportStep(area);
    isArmed = false;
  }

  void RightRelease(const ToolInput& input) override { input.PickPen(); }

 private:
  bool isArmed = false;
  Point first;  // where the fill starts, and the start of the ramp, in layer coordinates
  PenSpec firstPen;
};

}  // namespace

std::unique_ptr<Tool> MakeGradientTool() {
  return std::make_unique<GradientTool>();
}

}  // namespace sorvel
