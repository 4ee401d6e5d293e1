#include <algorithm>
#include <vector>

#include "cutwindow/cut_window.h"
#include "cutwindow/drawing_settings.h"
#include "foundation/arithmetic.h"
#include "imaging/group_average.h"

namespace sorvel {

namespace {

// The colours of lines, dark shadow boundaries and light shadow boundaries: as they are, and with line emphasis.
constexpr int32_t kLineColors = 3;
constexpr ColorEntry kPlainLines[kLineColors] = {{0, 0, 0, 0}, {85, 85, 85, 0}, {170, 170, 170, 0}};
constexpr ColorEntry kVividLines[kLineColors] = {{255, 0, 0, 0}, {0, 0, 255, 0}, {0, 255, 0, 0}};

// The pixels that are averaged at a time.
constexpr int32_t kBandPixels = 1 << 15;

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
  ShowLayerNote();
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
    const Point origin = ViewOrigin();
    ShowReduced(context, {Wrapped(origin.x + GroupsBefore(x)), Wrapped(origin.y + GroupsBefore(y)),
                          Wrapped(origin.x + GroupsBefore(x + w + zoomDenominator - 1)),
                          Wrapped(origin.y + GroupsBefore(y + h + zoomDenominator - 1))});
  } else {
    const Bounds shown = {Wrapped(std::max<int64_t>(x, 0)), Wrapped(std::max<int64_t>(y, 0)),
                          Wrapped(std::min<int64_t>(x + w, width)), Wrapped(std::min<int64_t>(y + h, height))};
    Point corners[2] = {{shown.left, shown.top}, {shown.right, shown.bottom}};
    CutToWindow(corners, 2);
    const Bounds target = {corners[0].x, corners[0].y, corners[1].x, corners[1].y};
    if (!shown.IsEmpty()) platform::StretchBitmap(context, target, view.bitmapHandle, shown);
  }
  platform::EndDrawing(window, context);
  return true;
}

// The group of a zoom below 1/1 that a column or row of the canvas belongs to.
int64_t CutWindow::GroupsBefore(int64_t place) const {
  const int64_t rest = place % zoomDenominator;
  return (place - rest) / zoomDenominator - (rest < 0 ? 1 : 0);
}

// Shows a part of the window at a zoom below 1/1. A pixel of the window is the average of a group of pixels of the
// view; what is left of a group at the right and bottom edge counts as one.
void CutWindow::ShowReduced(platform::DeviceContext* context, const Bounds& area) {
  if (view.bitmapHandle == nullptr) return;
  const Bounds client = platform::ClientBounds(window);
  const Point origin = ViewOrigin();
  const auto groupCount = [this](int32_t size) { return Wrapped(GroupsBefore(int64_t{size} + zoomDenominator - 1)); };
  const Bounds shown = {std::max({area.left, client.left, origin.x}), std::max({area.top, client.top, origin.y}),
                        std::min({area.right, client.right, WrappingAdd(origin.x, groupCount(view.width))}),
                        std::min({area.bottom, client.bottom, WrappingAdd(origin.y, groupCount(view.height))})};
  if (shown.IsEmpty()) return;
  ColorEntry colors[256] = {};
  platform::ReadBitmapColors(view.bitmapHandle, colors);
  // In bands that stay in the cache.
  const int32_t bandHeight = std::max(kBandPixels / shown.Width(), 1);
  std::vector<ColorEntry> pixels(static_cast<size_t>(shown.Width()) *
                                 static_cast<size_t>(std::min(bandHeight, shown.Height())));
  for (int32_t top = shown.top; top < shown.bottom; top += bandHeight) {
    const Bounds band = {shown.left, top, shown.right, std::min(top + bandHeight, shown.bottom)};
    AverageGroups(view, colors, zoomDenominator,
                  {band.left - origin.x, band.top - origin.y, band.Width(), band.Height()}, pixels.data());
    platform::DrawPixels(context, band, pixels.data());
  }
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

  if (zoomDenominator > 1) {
    ShowReduced(context, update);
    return;
  }
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
  const Bounds target = {to.x, to.y, Wrapped(to.x + w * zoomNumerator), Wrapped(to.y + h * zoomNumerator)};
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
