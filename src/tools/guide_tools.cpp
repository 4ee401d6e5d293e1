#include "tools/tool_functions.h"
#include "tools/tool_state.h"

namespace sorvel {

namespace {

struct FocusLines {
  bool isActive = false;
  Point center;  // in window coordinates
};
FocusLines gFocus;

struct ParallelLines {
  enum class State { kIdle, kFirstLine, kCopying };

  State state = State::kIdle;
  bool isPressed = false;  // the button that began the first line is down
  Point start;             // of the first line, in window coordinates
  Point vector;            // of the line, in pixels of the window: a copy's length depends on the zoom
};
ParallelLines gParallel;

void DrawFocusLine(const ToolInput& input) {
  input.window->SaveUndo();
  HideOverlay(input.window);
  DrawGuideLine(input, ToLayer(input.window, gFocus.center), input.point);
}

void BeginFirstLine(const ToolInput& input, bool isPressed) {
  gParallel.state = ParallelLines::State::kFirstLine;
  gParallel.isPressed = isPressed;
  gParallel.start = ToWindow(input.window, input.point);
}

void EndFirstLine(const ToolInput& input) {
  CutWindow* const window = input.window;
  const Point place = ToWindow(window, input.point);
  // A click doesn't end what it began, so that the first line can be drawn by two clicks as well as by a drag.
  const bool isClick = gParallel.isPressed && place == gParallel.start;
  gParallel.isPressed = false;
  if (isClick) return;
  window->SaveUndo();
  HideOverlay(window);
  gParallel.vector = {place.x - gParallel.start.x, place.y - gParallel.start.y};
  DrawGuideLine(input, ToLayer(window, gParallel.start), input.point);
  gParallel.state = ParallelLines::State::kCopying;
}

Point CopyEnd(Point place) {
  return {place.x + gParallel.vector.x, place.y + gParallel.vector.y};
}

void DrawCopy(const ToolInput& input) {
  CutWindow* const window = input.window;
  window->SaveUndo();
  HideOverlay(window);
  DrawGuideLine(input, input.point, ToLayer(window, CopyEnd(ToWindow(window, input.point))));
}

void ShowCopyBand(const ToolInput& input) {
  const Point place = ToWindow(input.window, input.point);
  ShowBand(input.window, place, CopyEnd(place));
}

void MoveParallel(const ToolInput& input) {
  switch (gParallel.state) {
    case ParallelLines::State::kIdle:
      input.window->ShowPenMark(&input.point);
      break;
    case ParallelLines::State::kFirstLine:
      StretchBand(input, gParallel.start);
      break;
    case ParallelLines::State::kCopying:
      HideOverlay(input.window);
      input.window->ShowPenMark(&input.point);
      ShowCopyBand(input);
      break;
  }
}

void RightClickParallel(const ToolInput& input) {
  if (gParallel.state == ParallelLines::State::kIdle) {
    OpenPenPicker(input.window, input.mouse);
    return;
  }
  HideOverlay(input.window);
  if (gParallel.state == ParallelLines::State::kCopying && input.isControlDown) {
    gParallel.vector = {-gParallel.vector.y, gParallel.vector.x};
    ShowCopyBand(input);
  } else {
    gParallel.state = ParallelLines::State::kIdle;
  }
}

}  // namespace

void RunFocusLines(uint32_t message, const ToolInput& input) {
  CutWindow* const window = input.window;
  switch (message) {
    case platform::kMessageMouseMove:
      if (gFocus.isActive) {
        StretchBand(input, gFocus.center);
      } else {
        window->ShowPenMark(&input.point);
      }
      break;
    case platform::kMessageLeftUp:
      if (gFocus.isActive) {
        DrawFocusLine(input);
      } else {
        gFocus = {true, ToWindow(window, input.point)};
      }
      break;
    case platform::kMessageRightUp:
      if (gFocus.isActive) {
        HideOverlay(window);
        gFocus.isActive = false;
      } else {
        OpenPenPicker(window, input.mouse);
      }
      break;
    case platform::kMessageUser:
      HideOverlay(window);
      gFocus.isActive = false;
      window->ShowPenMark(nullptr);
      break;
    default:
      break;
  }
}

void RunParallelLines(uint32_t message, const ToolInput& input) {
  CutWindow* const window = input.window;
  switch (message) {
    case platform::kMessageLeftDown:
      if (gParallel.state == ParallelLines::State::kIdle) BeginFirstLine(input, true);
      break;
    case platform::kMessageMouseMove:
      MoveParallel(input);
      break;
    case platform::kMessageLeftUp:
      if (gParallel.state == ParallelLines::State::kIdle) {
        BeginFirstLine(input, false);
      } else if (gParallel.state == ParallelLines::State::kFirstLine) {
        EndFirstLine(input);
      } else {
        DrawCopy(input);
      }
      break;
    case platform::kMessageRightUp:
      RightClickParallel(input);
      break;
    case platform::kMessageUser:
      HideOverlay(window);
      gParallel.state = ParallelLines::State::kIdle;
      window->ShowPenMark(nullptr);
      break;
    default:
      break;
  }
}

void EndGuideTools() {
  gFocus.isActive = false;
  gParallel.state = ParallelLines::State::kIdle;
}

void ResetGuideTools() {
  gFocus = FocusLines{};
  gParallel = ParallelLines{};
}

}  // namespace sorvel
