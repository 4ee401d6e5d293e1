#include "tools/tool_functions.h"
#include "tools/tool_state.h"

namespace sorvel {

namespace {

constexpr int32_t kSparseTone = 15;

struct FillTool {
  bool isArmed = false;  // a press was seen; it stays
};
FillTool gFill;

struct GradientTool {
  bool isArmed = false;
  Point first;  // where the fill starts, and the start of the ramp, in layer coordinates
  PenSpec firstPen;
};
GradientTool gGradient;

struct EdgingTool {
  bool isActive = false;
  Point start;  // in layer coordinates
};
EdgingTool gEdging;

bool IsBoundaryColor(int32_t value) {
  return value > kLineBlack && value <= kLineLast;
}

void FillAt(const ToolInput& input) {
  const Point point = input.point;
  input.window->SaveUndo();
  input.window->undoRect = Rect{};
  PenSpec pen = currentPen;
  uint32_t mask = maskFlags;
  // A plain pen of a shadow boundary scatters its colour over transparent ground.
  if (pen.tone == 0 && IsBoundaryColor(pen.colorB)) {
    pen.colorA = kTransparent;
    pen.tone = kSparseTone;
    mask |= 1u << pen.colorB;
  }
  // A click straight on a boundary takes that pixel out and fills from transparent ground.
  const int32_t value = input.cell->PixelOrOutside(point.x, point.y);
  if (IsBoundaryColor(value) && !IsMasked(maskFlags, value)) input.cell->SetPixel(point.x, point.y, kTransparent);
  Rect area;
  input.cell->FloodFill(point.x, point.y, pen, mask, &area);
  input.window->undoRect = area;
  RepaintLayerArea(input.window, area);
}

// The picker opens at the pixel whose pen was read, and not at the mouse: they differ when a pixel of the window shows
// several of the cell.
void PickPenAt(const ToolInput& input) {
  input.cell->PickPen(input.point.x, input.point.y, &currentPen);
  OpenPenPicker(input.window, ToWindow(input.window, input.point));
}

void ClickGradient(const ToolInput& input) {
  if (!gGradient.isArmed) {
    gGradient = {true, input.point, currentPen};
    return;
  }
  const WaitCursor waiting;
  input.window->SaveUndo();
  Rect area;
  input.cell->GradientFill(gGradient.first.x, gGradient.first.y, gGradient.firstPen, input.point.x, input.point.y,
                           currentPen, maskFlags, &area);
  input.window->undoRect = area;
  RepaintLayerArea(input.window, area);
  gGradient.isArmed = false;
}

void EdgeTo(const ToolInput& input) {
  CutWindow* const window = input.window;
  // Quirk 15. A drag that ends on the wrong side isn't a cancel: a later release may still finish it.
  if (!IsRightAndBelow(input.point, gEdging.start)) return;
  window->SaveUndo();
  HideOverlay(window);
  const Rect area = {gEdging.start.x, gEdging.start.y, input.point.x - gEdging.start.x,
                     input.point.y - gEdging.start.y};
  window->undoRect = area;
  {
    const WaitCursor waiting;
    input.cell->EdgeFill(area.x, area.y, area.width, area.height, currentPen, maskFlags);
  }
  RepaintLayerArea(window, area);
  gEdging.isActive = false;
}

}  // namespace

void RunFill(uint32_t message, const ToolInput& input) {
  switch (message) {
    case platform::kMessageLeftDown:
      gFill.isArmed = true;
      break;
    case platform::kMessageLeftUp:
      if (gFill.isArmed) FillAt(input);
      break;
    case platform::kMessageRightUp:
      PickPenAt(input);
      break;
    default:
      break;
  }
}

void RunGradient(uint32_t message, const ToolInput& input) {
  if (message == platform::kMessageLeftUp) ClickGradient(input);
  if (message == platform::kMessageRightUp) PickPenAt(input);
}

void RunEdging(uint32_t message, const ToolInput& input) {
  switch (message) {
    case platform::kMessageLeftDown:
      HideOverlay(input.window);
      gEdging = {true, input.point};
      break;
    case platform::kMessageMouseMove:
      if (gEdging.isActive) StretchFrame(input, gEdging.start);
      break;
    case platform::kMessageLeftUp:
      if (gEdging.isActive) EdgeTo(input);
      break;
    case platform::kMessageRightUp:
      if (!gEdging.isActive) OpenPenPicker(input.window, input.mouse);
      break;
    case platform::kMessageUser:
      HideOverlay(input.window);
      break;
    default:
      break;
  }
}

void EndFillTools() {
  gEdging.isActive = false;
}

void ResetFillTools() {
  gFill = FillTool{};
  gGradient = GradientTool{};
  gEdging = EdgingTool{};
}

}  // namespace sorvel
