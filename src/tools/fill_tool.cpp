#include "tools/tool.h"

namespace sorvel {

namespace {

constexpr int32_t kSparseTone = 15;

bool IsBoundaryColor(int32_t value) {
  return value > kLineBlack && value <= kLineLast;
}

class FillTool final : public Tool {
 public:
  FillTool() : Tool(PointForm::kOffGrid) {}

 protected:
  void Press(const ToolInput&) override { isArmed = true; }

  void Release(const ToolInput& input) override {
    if (!isArmed) return;
    const Point point = input.point;
    input.window->SaveUndo();
    PenSpec pen = currentPen;
    uint32_t mask = maskFlags;
    // A plain pen of a shadow boundary scatters its colour over transparent ground.
    if (pen.tone == 0 && IsBoundaryColor(pen.colorB)) {
      pen.colorA = kTransparent;
      pen.tone = kSparseTone;
      mask |= 1u << pen.colorB;
    }
    // A click straight on a boundary takes that pixel out and fills from transparent ground.
    const int32_t value = input.cell->PixelOrOutside(point.x, point.y);
    if (IsBoundaryColor(value) && !IsMasked(maskFlags, value)) input.cell->SetPixel(point.x, point.y, kTransparent);
    Rect area;
    input.cell->FloodFill(point.x, point.y, pen, mask, &area);
    input.ReportStep(area);
  }

  void RightRelease(const ToolInput& input) override { input.PickPen(); }

 private:
  bool isArmed = false;  // a press was seen; it stays
};

}  // namespace

std::unique_ptr<Tool> MakeFillTool() {
  return std::make_unique<FillTool>();
}

}  // namespace sorvel
