#include <algorithm>

#include "foundation/arithmetic.h"
#include "tools/tool.h"

namespace sorvel {

namespace {

constexpr int32_t kSmallestEraser = 4;
constexpr int32_t kLargestEraser = 32;

class EraserTool final : public Tool {
 public:
  EraserTool() : Tool(PointForm::kSigned) {}

  void End() override { isActive = false; }

 protected:
  void Press(const ToolInput& input) override {
    input.HideOverlay();
    input.window->SaveUndo();
    input.window->AddUndoRect(nullptr);
    isActive = true;
    Erase(input);
    ShowEraser(input);
  }

  void Move(const ToolInput& input) override {
    if (isActive) {
      input.HideOverlay();
      Erase(input);
    }
    ShowEraser(input);
  }

  void Release(const ToolInput& input) override {
    if (!isActive) return;
    ShowEraser(input);
    isActive = false;
  }

  void RightRelease(const ToolInput& input) override {
    if (isActive) return;
    size = size >= kLargestEraser ? kSmallestEraser : size * 2;
    input.ResizeShownFrame(Saturated(int64_t{size} * input.window->zoomNumerator));
  }

  void Pulse(const ToolInput& input) override { input.HideOverlay(); }

 private:
  // In pixels of the layer. Zoomed out, the eraser takes in as much of the window as before.
  int32_t Side(const ToolInput& input) const {
    constexpr int64_t farthest = 1 << 22;
    return static_cast<int32_t>(std::min(int64_t{input.window->zoomDenominator} * size, farthest));
  }

  Point Corner(const ToolInput& input) const {
    const int32_t half = Side(input) / 2;
    return {input.point.x - half, input.point.y - half};
  }

  void ShowEraser(const ToolInput& input) const {
    const Point corner = Corner(input);
    const int32_t side = Side(input);
    input.ShowFrame(input.ToWindow(corner, {corner.x + side, corner.y + side}));
  }

  // Ink becomes underdrawing, and white becomes transparent. The erased block is one pixel wider and higher than the
  // frame.
  void Erase(const ToolInput& input) const {
    const Point corner = Corner(input);
    const int32_t side = Side(input) + 1;
    input.cell->ToSketch(corner.x, corner.y, side, side, kTransparent, maskFlags);
    input.ReportChange({corner.x, corner.y, side, side});
  }

  bool isActive = false;
  int32_t size = kSmallestEraser;  // pixels of the window at a zoom of 1/1 and below
};

}  // namespace

std::unique_ptr<Tool> MakeEraserTool() {
  return std::make_unique<EraserTool>();
}

}  // namespace sorvel
