#include <utility>

#include "tools/tool.h"

namespace sorvel {

namespace {

// A segment is drawn one click late, since its shape depends on the point after it.
class CurveTool final : public Tool {
 protected:
  void Move(const ToolInput& input) override {
    if (isActive) input.StretchBand(bandStart);
  }

  void Release(const ToolInput& input) override {
    if (isActive) {
      Continue(input);
    } else {
      Begin(input);
    }
    bandStart = input.ToWindow(points[index]);
  }

  // The last segment is drawn whatever Ctrl said, and its last point is its own successor.
  void RightRelease(const ToolInput& input) override {
    if (!isActive) {
      input.OpenPenPicker(input.mouse);
      return;
    }
    input.HideOverlay();
    input.window->ShowPenMark(nullptr);
    if (index > 1) {
      points[3] = points[2];
      DrawSegment(input);
    }
    Stop();
  }

  void Pulse(const ToolInput& input) override {
    if (!isActive) return;
    input.HideOverlay();
    input.window->ShowPenMark(nullptr);
    Stop();
  }

 private:
  void Begin(const ToolInput& input) {
    input.window->SaveUndo();
    input.window->AddUndoRect(nullptr);
    isActive = true;
    // The first point is its own predecessor too.
    index = 1;
    points[0] = input.point;
    points[1] = input.point;
    area.width = 0;
  }

  void Continue(const ToolInput& input) {
    input.HideOverlay();
    if (index < 3) index++;
    points[index] = input.point;
    if (index == 3) {
      if (skips) {
        // Quirk 19. A segment that is left out still adds to the undo area: an area without width where the last one
        // was.
        input.window->AddUndoRect(&area);
      } else {
        DrawSegment(input);
      }
      points[0] = points[1];
      points[1] = points[2];
      points[2] = points[3];
    }
    skips = input.isControlDown;
    shape = currentPen.shape;
    area.width = 0;
  }

  // Draws from the second of the points to the third with the pen's size at the click before.
  void DrawSegment(const ToolInput& input) {
    std::swap(currentPen.shape, shape);
    input.cell->DrawCurve(points, &currentPen, maskFlags, &area);
    std::swap(currentPen.shape, shape);
    input.ReportChange(area);
  }

  void Stop() {
    isActive = false;
    index = 0;
  }

  bool isActive = false;
  int32_t index = 0;               // the last one of `points` that is used, 0 while off
  Point points[4];                 // clicked points, in layer coordinates
  bool skips = false;              // Ctrl was down at the click before
  int32_t shape = kSmallestShape;  // of the pen at the click before
  Rect area;                       // of the segment; its width is 0 between two of them
  Point bandStart;                 // in window coordinates
};

}  // namespace

std::unique_ptr<Tool> MakeCurveTool() {
  return std::make_unique<CurveTool>();
}

}  // namespace sorvel
