#include <algorithm>

#include "foundation/arithmetic.h"
#include "tools/tool_functions.h"
#include "tools/tool_state.h"

namespace sorvel {

namespace {

struct FreePen {
  bool isDrawing = false;
  Point last;  // the last stroked point, in layer coordinates
  // The last three points of the path, the oldest first. A window that is zoomed out shows several pixels of the cell
  // in one of its own, so that corners are judged in its pixels; otherwise these are layer coordinates.
  Point trail[3];
};
FreePen gFreePen;

bool IsTrailInWindow(const CutWindow& window) {
  return window.zoomDenominator > 1;
}

void DrawTrail(const ToolInput& input, Point from, Point to) {
  if (IsTrailInWindow(*input.window)) {
    from = ToLayer(input.window, from);
    to = ToLayer(input.window, to);
  }
  DrawInkLine(input, from, to);
}

void BeginStroke(const ToolInput& input) {
  CutWindow* const window = input.window;
  const Point point = input.point;
  window->SaveUndo();
  input.cell->Stamp(point.x, point.y, currentPen, maskFlags, nullptr);
  gFreePen.last = point;
  gFreePen.isDrawing = true;
  std::fill_n(gFreePen.trail, 3, IsTrailInWindow(*window) ? ToWindow(window, point) : point);
  window->undoRect = StampRect(point);
  RepaintLayerArea(window, window->undoRect);
  platform::CaptureMouse(window->window);
}

// Moves the trail on by a point and takes the corner out of two moves at a right angle, so that the path, which is
// drawn one point late, cuts it.
void DrawPastCorner(const ToolInput& input) {
  Point(&trail)[3] = gFreePen.trail;
  const Point middle = trail[1];
  const Point newest = trail[2];
  const Point next = IsTrailInWindow(*input.window) ? ToWindow(input.window, input.point) : input.point;
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

}  // namespace

void RunFreePen(uint32_t message, const ToolInput& input) {
  CutWindow* const window = input.window;
  switch (message) {
    case platform::kMessageLeftDown:
      BeginStroke(input);
      break;
    case platform::kMessageMouseMove:
      if (!gFreePen.isDrawing || input.point == gFreePen.last) {
        window->ShowPenMark(&input.point);
        break;
      }
      if (muraRemoval != 0) {
        DrawPastCorner(input);
      } else {
        DrawInkLine(input, gFreePen.last, input.point);
      }
      gFreePen.last = input.point;
      break;
    case platform::kMessageLeftUp:
      platform::ReleaseMouse();
      if (!gFreePen.isDrawing) break;
      gFreePen.isDrawing = false;
      if (muraRemoval != 0) DrawTrail(input, gFreePen.trail[1], gFreePen.trail[2]);
      break;
    case platform::kMessageRightUp:
      if (!gFreePen.isDrawing) OpenPenPicker(window, input.mouse);
      break;
    case platform::kMessageUser:
      // The stroke goes on with the next move: what repaints in the middle of it must not cut it off.
      if (gFreePen.isDrawing) platform::ReleaseMouse();
      window->ShowPenMark(nullptr);
      break;
    default:
      break;
  }
}

namespace {

constexpr int32_t kSmallestEraser = 4;
constexpr int32_t kLargestEraser = 32;

struct Eraser {
  bool isActive = false;
  int32_t size = kSmallestEraser;  // pixels of the window at a zoom of 1/1 and below
};
Eraser gEraser;

// Zoomed out, the eraser takes in as much of the window as before.
int32_t EraserSide(const CutWindow& window) {
  constexpr int64_t farthest = 1 << 22;
  return static_cast<int32_t>(std::min(int64_t{window.zoomDenominator} * gEraser.size, farthest));
}

Point EraserCorner(const ToolInput& input) {
  const int32_t half = EraserSide(*input.window) / 2;
  return {input.point.x - half, input.point.y - half};
}

void ShowEraser(const ToolInput& input) {
  const Point corner = EraserCorner(input);
  const int32_t side = EraserSide(*input.window);
  ShowFrame(input.window, ToWindowBounds(input.window, corner, {corner.x + side, corner.y + side}));
}

// The block is one pixel larger than the frame each way.
Rect EraserBlock(const ToolInput& input) {
  const Point corner = EraserCorner(input);
  const int32_t side = EraserSide(*input.window) + 1;
  return {corner.x, corner.y, side, side};
}

// Nothing is removed: ink fades into the underdrawing, and white becomes transparent.
void Erase(const ToolInput& input) {
  const Rect block = EraserBlock(input);
  input.cell->ToSketch(block.x, block.y, block.width, block.height, kTransparent, maskFlags);
  ReportChange(input.window, block);
}

}  // namespace

void RunEraser(uint32_t message, const ToolInput& input) {
  CutWindow* const window = input.window;
  switch (message) {
    case platform::kMessageLeftDown:
      HideOverlay(window);
      window->SaveUndo();
      window->AddUndoRect(nullptr);
      gEraser.isActive = true;
      Erase(input);
      ShowEraser(input);
      break;
    case platform::kMessageMouseMove:
      if (gEraser.isActive) {
        HideOverlay(window);
        Erase(input);
      }
      ShowEraser(input);
      break;
    case platform::kMessageLeftUp:
      if (!gEraser.isActive) break;
      ShowEraser(input);
      gEraser.isActive = false;
      break;
    case platform::kMessageRightUp:
      if (gEraser.isActive) break;
      gEraser.size = gEraser.size >= kLargestEraser ? kSmallestEraser : gEraser.size * 2;
      ResizeShownFrame(window, Saturated(int64_t{gEraser.size} * window->zoomNumerator));
      break;
    case platform::kMessageUser:
      HideOverlay(window);
      break;
    default:
      break;
  }
}

void EndPenTools() {
  gFreePen.isDrawing = false;
  gEraser.isActive = false;
}

void ResetPenTools() {
  gFreePen = FreePen{};
  gEraser = Eraser{};
}

}  // namespace sorvel
