#include "tools/tool.h"

namespace sorvel {

namespace {

class ZoomTool final : public Tool {
 protected:
  bool Prepare(intptr_t place, ToolInput* input) override {
    input->mouse = UnpackPlace(place, false);
    return true;
  }
  void Press(const ToolInput& input) override { input.window->ZoomIn(input.mouse); }
  void RightPress(const ToolInput& input) override { input.window->ZoomOut(input.mouse); }
};

}  // namespace

std::unique_ptr<Tool> MakeZoomTool() {
  return std::make_unique<ZoomTool>();
}

}  // namespace sorvel
