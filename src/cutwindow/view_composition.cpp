#include <algorithm>

#include "cutwindow/cut_window.h"
#include "cutwindow/drawing_settings.h"
#include "foundation/arithmetic.h"

namespace sorvel {

namespace {

// The colours of lines, dark shadow boundaries and light shadow boundaries: as they are, and with line emphasis.
constexpr int32_t kLineColors = 3;
constexpr ColorEntry kPlainLines[kLineColors] = {{0, 0, 0, 0}, {85, 85, 85, 0}, {170, 170, 170, 0}};
constexpr ColorEntry kVividLines[kLineColors] = {{255, 0, 0, 0}, {0, 0, 255, 0}, {0, 255, 0, 0}};

// The largest multiple of `step` that isn't above `value`.
int64_t LoweredTo(int64_t value, int32_t step) {
  const int64_t rest = value % step;
  return value - (rest < 0 ? rest + step : rest);
}

// Widens a range to whole groups of `step` canvas pixels. At a zoom of 1 / step each group is one pixel of the window.
void AlignToGroups(int64_t* start, int64_t* length, int32_t step) {
  const int64_t end = *start + *length;
  *start = LoweredTo(*start, step);
  *length = LoweredTo(end - *start + step - 1, step);
}

// One axis of a copy from the view to the window: a range of canvas pixels and the range of window pixels that shows
// it.
struct Stretch {
  int32_t from;
  int32_t fromEnd;
  int32_t to;
  int32_t toEnd;

  bool IsEmpty() const { return from >= fromEnd; }
};

// The part of an axis that lies on the canvas. It is copied in two steps: the whole groups of `denominator` pixels, and
// the rest of a group at the edge, which is shown as one pixel. One copy of both would scale the groups to other pixels
// than a copy of the area beside it does.
struct AxisCopy {
  AxisCopy(int64_t start, int64_t length, int32_t target, int32_t canvas, int32_t numerator, int32_t denominator) {
    const int64_t from = std::max<int64_t>(start, 0);
    const int64_t shown = std::max<int64_t>(std::min<int64_t>(start + length, canvas) - from, 0);
    const int64_t rest = shown % denominator;
    const int64_t split = from + shown - rest;
    const int64_t to = target + (from - start) * numerator / denominator;
    const int64_t toSplit = to + (shown - rest) * numerator / denominator;
    groups = {Wrapped(from), Wrapped(split), Wrapped(to), Wrapped(toSplit)};
    edge = {Wrapped(split), Wrapped(split + rest), Wrapped(toSplit), Wrapped(toSplit + 1)};
  }

  Stretch groups;
  Stretch edge;
};

bool DifferInParity(int64_t a, int64_t b) {
  return (a % 2 == 0) != (b % 2 == 0);
}

}  // namespace

bool CutWindow::FitView() {
  if (!view.Resize(width, height, 0)) return false;
  if ((viewOptions & kLineEmphasis) != 0) {
    platform::SetBitmapColors(view.bitmapHandle, kLineBlack, kLineColors, kVividLines);
  }
  return true;
}

void CutWindow::RepaintAll() {
  Pulse();
  RepaintArea(0, 0, width, height, true);
  Pulse();
}

bool CutWindow::RepaintArea(int32_t x, int32_t y, int32_t areaWidth, int32_t areaHeight, bool show) {
  view.FillRect(x, y, areaWidth, areaHeight, kTransparent);
  Frame* frame = CurrentFrame();
  if (frame == nullptr) return false;
  frame->ComposeFrame(&view, x, y, areaWidth, areaHeight, &viewFlags, nullptr);
  return !show || RepaintAreaDirect(x, y, areaWidth, areaHeight);
}

bool CutWindow::RepaintAreaDirect(int32_t areaX, int32_t areaY, int32_t areaWidth, int32_t areaHeight) {
  int64_t x = areaX;
  int64_t y = areaY;
  int64_t w = areaWidth;
  int64_t h = areaHeight;
  if (zoomNumerator > 1) {
    const int64_t right = std::min<int64_t>(x + w, width);
    const int64_t bottom = std::min<int64_t>(y + h, height);
    if (x >= width || y >= height || right < 1 || bottom < 1) return false;
    x = std::max<int64_t>(x, 0);
    y = std::max<int64_t>(y, 0);
    w = right - x;
    h = bottom - y;
    if (w <= 0 || h <= 0) return false;
  }
  // A copy starts at a column that is odd or even as the scroll position is.
  if (DifferInParity(x, scrollX)) {
    --x;
    ++w;
  }
  if (window == nullptr) return true;
  platform::DeviceContext* context = platform::BeginDrawing(window);
  if (platform::HasPalette(context)) platform::SelectDrawingPalette(context, gPalette, true);
  if (HasSelection()) {
    platform::InvertFrame(context, selection);
    selection = Bounds{};
  }
  if (zoomDenominator > 1) {
    AlignToGroups(&x, &w, zoomDenominator);
    AlignToGroups(&y, &h, zoomDenominator);
  }
  Point corner = {Wrapped(x), Wrapped(y)};
  CutToWindow(&corner, 1);
  const AxisCopy across(x, w, corner.x, width, zoomNumerator, zoomDenominator);
  const AxisCopy down(y, h, corner.y, height, zoomNumerator, zoomDenominator);
  for (const Stretch& rows : {down.groups, down.edge}) {
    for (const Stretch& columns : {across.groups, across.edge}) {
      if (rows.IsEmpty() || columns.IsEmpty()) continue;
      platform::StretchBitmap(context, {columns.to, rows.to, columns.toEnd, rows.toEnd}, view.bitmapHandle,
                              {columns.from, rows.from, columns.fromEnd, rows.fromEnd});
    }
  }
  platform::EndDrawing(window, context);
  return true;
}

// The plain colours are fixed: after the emphasis was switched off they replace those of a colour file.
void CutWindow::ToggleLineEmphasis() {
  viewOptions ^= kLineEmphasis;
  const bool isVivid = (viewOptions & kLineEmphasis) != 0;
  platform::SetBitmapColors(view.bitmapHandle, kLineBlack, kLineColors, isVivid ? kVividLines : kPlainLines);
  RepaintAll();
}

void CutWindow::Paint() {
  if (!pulseSuppressed) Pulse();
  Bounds update;
  platform::DeviceContext* context = platform::BeginPainting(window, &update);
  if (platform::HasPalette(context)) platform::SelectDrawingPalette(context, gPalette, false);
  PaintClient(context, update);
  platform::EndPainting(window, context);
  if (!pulseSuppressed) Pulse();
}

// Copies the part of the view that lies in `update`, in window coordinates. All of the margin around the canvas is
// painted, even outside `update`.
void CutWindow::PaintClient(platform::DeviceContext* context, const Bounds& update) {
  const Bounds client = platform::ClientBounds(window);
  Point corners[2] = {{0, 0}, {width, height}};
  CutToWindow(corners, 2);
  const auto fill = [context, &client](int32_t left, int32_t top, int32_t right, int32_t bottom) {
    const Bounds band = {std::max(left, client.left), std::max(top, client.top), std::min(right, client.right),
                         std::min(bottom, client.bottom)};
    if (!band.IsEmpty()) platform::FillArea(context, band, gMarginBrush);
  };
  fill(0, 0, client.right, corners[0].y);
  fill(0, corners[0].y, corners[0].x, corners[1].y);
  fill(corners[1].x, corners[0].y, client.right, corners[1].y);
  fill(0, corners[1].y, client.right, client.bottom);

  Point source[2] = {{update.left, update.top}, {update.right, update.bottom}};
  WindowToCutRaw(source, 2);
  int64_t w = int64_t{source[1].x} - source[0].x + 2;
  int64_t h = int64_t{source[1].y} - source[0].y + 2;
  Point from = {std::max(source[0].x, 0), std::max(source[0].y, 0)};
  if (DifferInParity(from.x, scrollX)) {
    --from.x;
    ++w;
  }
  Point to = from;
  CutToWindow(&to, 1);
  w = std::min<int64_t>(w, int64_t{width} - from.x);
  h = std::min<int64_t>(h, int64_t{height} - from.y);
  if (from.x >= width || from.y >= height) return;
  const Bounds target = {to.x, to.y, Wrapped(to.x + w * zoomNumerator / zoomDenominator),
                         Wrapped(to.y + h * zoomNumerator / zoomDenominator)};
  platform::StretchBitmap(context, target, view.bitmapHandle,
                          {from.x, from.y, Wrapped(from.x + w), Wrapped(from.y + h)});
}

// Tools.

void CutWindow::ShowChange(const Rect& area) {
  undoRect = area;
  Point corner = {area.x, area.y};
  LayerToCut(&corner, 1);
  Pulse();
  RepaintArea(corner.x, corner.y, area.width, area.height, true);
  Pulse();
}

void CutWindow::AddUndoRect(const Rect* rect) {
  if (rect == nullptr) {
    undoRect = Rect{};
  } else if (undoRect.width == 0 || undoRect.height == 0) {
    undoRect = *rect;
  } else {
    undoRect = BoundingRect(undoRect, *rect);
  }
}

void CutWindow::ShowPenMark(const Point* point) {
  const Rect old = {brushMarkX, brushMarkY, kPenSize, kPenSize};
  RepaintArea(old.x, old.y, kPenSize, kPenSize, point == nullptr);
  if (point == nullptr) return;
  Point place = *point;
  LayerToCut(&place, 1);
  view.Stamp(place.x, place.y, currentPen, maskFlags, nullptr);
  brushMarkX = WrappingSubtract(place.x, kPenReach);
  brushMarkY = WrappingSubtract(place.y, kPenReach);
  const Rect both = BoundingRect(old, {brushMarkX, brushMarkY, kPenSize, kPenSize});
  RepaintAreaDirect(both.x, both.y, both.width, both.height);
}

}  // namespace sorvel
