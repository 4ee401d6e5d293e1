#include <algorithm>

#include "tools/tool.h"

namespace sorvel {

namespace {

class FreePenTool final : public Tool {
 public:
  FreePenTool() : Tool(PointForm::kSigned) {}

  void End() override { isDrawing = false; }

 protected:
  void Press(const ToolInput& input) override {
    const Point point = input.point;
    input.window->SaveUndo();
    input.cell->Stamp(point.x, point.y, currentPen, maskFlags, nullptr);
    last = point;
    isDrawing = true;
    std::fill_n(trail, 3, TrailPoint(input));
    input.ReportStep(StampRect(point));
    platform::CaptureMouse(input.window->window);
  }

  void Move(const ToolInput& input) override {
    if (!isDrawing || input.point == last) {
      input.window->ShowPenMark(&input.point);
      return;
    }
    if (muraRemoval != 0) {
      DrawPastCorner(input);
    } else {
      input.DrawInkLine(last, input.point);
    }
    last = input.point;
  }

  void Release(const ToolInput& input) override {
    platform::ReleaseMouse();
    if (!isDrawing) return;
    isDrawing = false;
    if (muraRemoval != 0) DrawTrail(input, trail[1], trail[2]);
  }

  void RightRelease(const ToolInput& input) override {
    if (!isDrawing) input.OpenPenPicker(input.mouse);
  }

  void Pulse(const ToolInput& input) override {
    // The stroke goes on with the next move: what repaints in the middle of it must not cut it off.
    if (isDrawing) platform::ReleaseMouse();
    input.window->ShowPenMark(nullptr);
  }

 private:
  // Below a zoom of 1/1 a window pixel shows several pixels of the cell. Corners are then looked for in window pixels.
  static bool IsTrailInWindow(const ToolInput& input) { return input.window->zoomDenominator > 1; }

  static Point TrailPoint(const ToolInput& input) {
    return IsTrailInWindow(input) ? input.ToWindow(input.point) : input.point;
  }

  static void DrawTrail(const ToolInput& input, Point from, Point to) {
    if (IsTrailInWindow(input)) {
      from = input.ToLayer(from);
      to = input.ToLayer(to);
    }
    input.DrawInkLine(from, to);
  }

  // Adds a point to the trail and draws the segment before it. Where two moves meet at a right angle, the point between
  // them moves by one pixel, so that the path cuts the corner.
  void DrawPastCorner(const ToolInput& input) {
    const Point middle = trail[1];
    const Point newest = trail[2];
    const Point next = TrailPoint(input);
    trail[0] = middle;
    trail[1] = newest;
    trail[2] = next;
    if (newest.x == middle.x && newest.y != middle.y && next.y == newest.y) {
      trail[1].y = newest.y < middle.y ? newest.y + 1 : newest.y - 1;
    } else if (newest.y == middle.y && newest.x != middle.x && next.x == newest.x) {
      trail[1].x = newest.x <= middle.x ? newest.x + 1 : newest.x - 1;
    }
    DrawTrail(input, middle, trail[1]);
  }

  bool isDrawing = false;
  Point last;      // the last stroked point, in layer coordinates
  Point trail[3];  // the last three points of the path, the oldest first
};

}  // namespace

std::unique_ptr<Tool> MakeFreePenTool() {
  return std::make_unique<FreePenTool>();
}

}  // namespace sorvel
