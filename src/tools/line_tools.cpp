#include <utility>

#include "tools/tool_functions.h"
#include "tools/tool_state.h"

namespace sorvel {

namespace {

struct LineTool {
  enum class State { kIdle, kDrag, kChain };

  State state = State::kIdle;
  Point start;  // of the rubber band, in window coordinates
};
LineTool gLine;

void BeginLine(const ToolInput& input, LineTool::State state) {
  input.window->SaveUndo();
  gLine.start = ToWindow(input.window, input.point);
  input.window->AddUndoRect(nullptr);
  gLine.state = state;
}

// Ctrl leaves the line out; a chain goes on from the new point.
void EndLine(const ToolInput& input) {
  HideOverlay(input.window);
  if (!input.isControlDown) DrawInkLine(input, ToLayer(input.window, gLine.start), input.point);
  gLine.start = ToWindow(input.window, input.point);
  if (gLine.state == LineTool::State::kDrag) gLine.state = LineTool::State::kIdle;
}

}  // namespace

void RunLine(uint32_t message, const ToolInput& input) {
  CutWindow* const window = input.window;
  const bool isIdle = gLine.state == LineTool::State::kIdle;
  switch (message) {
    case platform::kMessageLeftDown:
      if (isIdle && !input.isControlDown) BeginLine(input, LineTool::State::kDrag);
      break;
    case platform::kMessageMouseMove:
      if (isIdle) {
        window->ShowPenMark(&input.point);
      } else {
        StretchBand(input, gLine.start);
      }
      break;
    case platform::kMessageLeftUp:
      // All lines of a chain are one step of undo, which is saved here once.
      if (isIdle) {
        BeginLine(input, LineTool::State::kChain);
      } else {
        EndLine(input);
      }
      break;
    case platform::kMessageRightUp:
      if (isIdle) {
        OpenPenPicker(window, input.mouse);
      } else {
        HideOverlay(window);
        gLine.state = LineTool::State::kIdle;
      }
      break;
    case platform::kMessageUser:
      HideOverlay(window);
      gLine.state = LineTool::State::kIdle;
      window->ShowPenMark(nullptr);
      break;
    default:
      break;
  }
}

namespace {

// A segment is drawn one click late, when the point after it is known.
struct CurveTool {
  bool isActive = false;
  int32_t index = 0;               // the last one of `points` that is used, 0 while off
  Point points[4];                 // clicked points, in layer coordinates
  bool skips = false;              // Ctrl was down at the click before
  int32_t shape = kSmallestShape;  // of the pen at the click before
  Rect area;                       // of the segment; its width is 0 between two of them
  Point bandStart;                 // in window coordinates
};
CurveTool gCurve;

// Draws from the second of the points to the third with the pen's size at the click before.
void DrawSegment(const ToolInput& input) {
  std::swap(currentPen.shape, gCurve.shape);
  input.cell->DrawCurve(gCurve.points, &currentPen, maskFlags, &gCurve.area);
  std::swap(currentPen.shape, gCurve.shape);
  ReportChange(input.window, gCurve.area);
}

void BeginCurve(const ToolInput& input) {
  input.window->SaveUndo();
  input.window->AddUndoRect(nullptr);
  gCurve.isActive = true;
  // The first point is its own predecessor too.
  gCurve.index = 1;
  gCurve.points[0] = input.point;
  gCurve.points[1] = input.point;
  gCurve.area.width = 0;
}

void ContinueCurve(const ToolInput& input) {
  HideOverlay(input.window);
  if (gCurve.index < 3) gCurve.index++;
  gCurve.points[gCurve.index] = input.point;
  if (gCurve.index == 3) {
    if (gCurve.skips) {
      // Quirk 19. A segment that is left out still adds to the undo area: an area without width where the last one was.
      input.window->AddUndoRect(&gCurve.area);
    } else {
      DrawSegment(input);
    }
    gCurve.points[0] = gCurve.points[1];
    gCurve.points[1] = gCurve.points[2];
    gCurve.points[2] = gCurve.points[3];
  }
  gCurve.skips = input.isControlDown;
  gCurve.shape = currentPen.shape;
  gCurve.area.width = 0;
}

void StopCurve() {
  gCurve.isActive = false;
  gCurve.index = 0;
}

// The last segment is drawn whatever Ctrl said, and its last point is its own successor.
void FinishCurve(const ToolInput& input) {
  HideOverlay(input.window);
  input.window->ShowPenMark(nullptr);
  if (gCurve.index > 1) {
    gCurve.points[3] = gCurve.points[2];
    DrawSegment(input);
  }
  StopCurve();
}

}  // namespace

void RunCurve(uint32_t message, const ToolInput& input) {
  CutWindow* const window = input.window;
  switch (message) {
    case platform::kMessageLeftUp:
      if (gCurve.isActive) {
        ContinueCurve(input);
      } else {
        BeginCurve(input);
      }
      gCurve.bandStart = ToWindow(window, gCurve.points[gCurve.index]);
      break;
    case platform::kMessageMouseMove:
      if (gCurve.isActive) StretchBand(input, gCurve.bandStart);
      break;
    case platform::kMessageRightUp:
      if (gCurve.isActive) {
        FinishCurve(input);
      } else {
        OpenPenPicker(window, input.mouse);
      }
      break;
    case platform::kMessageUser:
      if (!gCurve.isActive) break;
      HideOverlay(window);
      window->ShowPenMark(nullptr);
      StopCurve();
      break;
    default:
      break;
  }
}

void EndLineTools() {
  gLine.state = LineTool::State::kIdle;
  StopCurve();
}

void ResetLineTools() {
  gLine = LineTool{};
  gCurve = CurveTool{};
}

}  // namespace sorvel
