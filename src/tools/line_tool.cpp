#include "tools/tool.h"

namespace sorvel {

namespace {

class LineTool final : public Tool {
 protected:
  void Press(const ToolInput& input) override {
    if (state == State::kIdle && !input.isControlDown) Begin(input, State::kDrag);
  }

  void Move(const ToolInput& input) override {
    if (state == State::kIdle) {
      input.window->ShowPenMark(&input.point);
    } else {
      input.StretchBand(start);
    }
  }

  void Release(const ToolInput& input) override {
    if (state == State::kIdle) {
      Begin(input, State::kChain);
      return;
    }
    input.HideOverlay();
    // Ctrl leaves the line out; a chain goes on from the new point.
    if (!input.isControlDown) input.DrawInkLine(input.ToLayer(start), input.point);
    start = input.ToWindow(input.point);
    if (state == State::kDrag) state = State::kIdle;
  }

  void RightRelease(const ToolInput& input) override {
    if (state == State::kIdle) {
      input.OpenPenPicker(input.mouse);
      return;
    }
    input.HideOverlay();
    state = State::kIdle;
  }

  void Pulse(const ToolInput& input) override {
    input.HideOverlay();
    state = State::kIdle;
    input.window->ShowPenMark(nullptr);
  }

 private:
  enum class State { kIdle, kDrag, kChain };

  // All lines of a chain are one step of undo, which is saved here once.
  void Begin(const ToolInput& input, State newState) {
    input.window->SaveUndo();
    start = input.ToWindow(input.point);
    input.window->AddUndoRect(nullptr);
    state = newState;
  }

  State state = State::kIdle;
  Point start;  // of the rubber band, in window coordinates
};

}  // namespace

std::unique_ptr<Tool> MakeLineTool() {
  return std::make_unique<LineTool>();
}

}  // namespace sorvel
