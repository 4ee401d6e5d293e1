#include "tools/tool.h"

namespace sorvel {

namespace {

class FocusLinesTool final : public Tool {
 protected:
  void Move(const ToolInput& input) override {
    if (isActive) {
      input.StretchBand(center);
    } else {
      input.window->ShowPenMark(&input.point);
    }
  }

  void Release(const ToolInput& input) override {
    if (!isActive) {
      isActive = true;
      center = input.ToWindow(input.point);
      return;
    }
    input.window->SaveUndo();
    input.HideOverlay();
    input.DrawGuideLine(input.ToLayer(center), input.point);
  }

  void RightRelease(const ToolInput& input) override {
    if (!isActive) {
      input.OpenPenPicker(input.mouse);
      return;
    }
    input.HideOverlay();
    isActive = false;
  }

  void Pulse(const ToolInput& input) override {
    input.HideOverlay();
    isActive = false;
    input.window->ShowPenMark(nullptr);
  }

 private:
  bool isActive = false;
  Point center;  // in window coordinates
};

}  // namespace

std::unique_ptr<Tool> MakeFocusLinesTool() {
  return std::make_unique<FocusLinesTool>();
}

}  // namespace sorvel
