#include "tools/tool.h"

namespace sorvel {

namespace {

class ParallelLinesTool final : public Tool {
 protected:
  void Press(const ToolInput& input) override {
    if (state == State::kIdle) BeginFirstLine(input, true);
  }

  void Move(const ToolInput& input) override {
    switch (state) {
      case State::kIdle:
        input.window->ShowPenMark(&input.point);
        break;
      case State::kFirstLine:
        input.StretchBand(start);
        break;
      case State::kCopying:
        input.HideOverlay();
        input.window->ShowPenMark(&input.point);
        ShowCopyBand(input);
        break;
    }
  }

  void Release(const ToolInput& input) override {
    switch (state) {
      case State::kIdle:
        BeginFirstLine(input, false);
        break;
      case State::kFirstLine:
        EndFirstLine(input);
        break;
      case State::kCopying:
        input.window->SaveUndo();
        input.HideOverlay();
        input.DrawGuideLine(input.point, input.ToLayer(CopyEnd(input.ToWindow(input.point))));
        break;
    }
  }

  void RightRelease(const ToolInput& input) override {
    if (state == State::kIdle) {
      input.OpenPenPicker(input.mouse);
      return;
    }
    input.HideOverlay();
    if (state == State::kCopying && input.isControlDown) {
      vector = {-vector.y, vector.x};
      ShowCopyBand(input);
    } else {
      state = State::kIdle;
    }
  }

  void Pulse(const ToolInput& input) override {
    input.HideOverlay();
    state = State::kIdle;
    input.window->ShowPenMark(nullptr);
  }

 private:
  enum class State { kIdle, kFirstLine, kCopying };

  void BeginFirstLine(const ToolInput& input, bool isButtonDown) {
    state = State::kFirstLine;
    isPressed = isButtonDown;
    start = input.ToWindow(input.point);
  }

  void EndFirstLine(const ToolInput& input) {
    const Point place = input.ToWindow(input.point);
    // A click doesn't end what it began, so that the first line can be drawn by two clicks as well as by a drag.
    const bool isClick = isPressed && place == start;
    isPressed = false;
    if (isClick) return;
    input.window->SaveUndo();
    input.HideOverlay();
    vector = {place.x - start.x, place.y - start.y};
    input.DrawGuideLine(input.ToLayer(start), input.point);
    state = State::kCopying;
  }

  Point CopyEnd(Point place) const { return {place.x + vector.x, place.y + vector.y}; }

  void ShowCopyBand(const ToolInput& input) const {
    const Point place = input.ToWindow(input.point);
    input.ShowBand(place, CopyEnd(place));
  }

  State state = State::kIdle;
  bool isPressed = false;  // the button that began the first line is down
  Point start;             // of the first line, in window coordinates
  Point vector;            // of the line, in pixels of the window: a copy's length depends on the zoom
};

}  // namespace

std::unique_ptr<Tool> MakeParallelLinesTool() {
  return std::make_unique<ParallelLinesTool>();
}

}  // namespace sorvel
