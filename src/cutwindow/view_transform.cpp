#include <cstdio>

#include "cutwindow/cut_window.h"
#include "cutwindow/drawing_settings.h"
#include "foundation/arithmetic.h"
#include "platform/hints.h"

namespace sorvel {

namespace {

constexpr size_t kHintSize = 64;
constexpr uint32_t kZoomHintTime = 1200;  // milliseconds

// The nearest multiple of `step`; exactly half a step goes down.
int32_t Snapped(int32_t value, int32_t step) {
  if (step <= 1) return value;
  const int32_t rest = value % step;
  return Wrapped(int64_t{value} - rest + (step / 2 < rest ? step : 0));
}

}  // namespace

// The left top corner of the canvas in window coordinates. A canvas that is smaller than the client area is centred,
// whatever the scroll bars say.
Point CutWindow::ViewOrigin() {
  const Bounds client = platform::ClientBounds(window);
  Point origin = {WrappingSubtract(client.right, WrappingScale(width, zoomNumerator, zoomDenominator)) / 2,
                  WrappingSubtract(client.bottom, WrappingScale(height, zoomNumerator, zoomDenominator)) / 2};
  if (origin.x < 0) origin.x = WrappingSubtract(0, scrollX);
  if (origin.y < 0) origin.y = WrappingSubtract(0, scrollY);
  return origin;
}

void CutWindow::CutToWindow(Point* points, int32_t count) {
  const Point origin = ViewOrigin();
  for (int32_t i = 0; i < count; ++i) {
    points[i].x = WrappingAdd(WrappingScale(points[i].x, zoomNumerator, zoomDenominator), origin.x);
    points[i].y = WrappingAdd(WrappingScale(points[i].y, zoomNumerator, zoomDenominator), origin.y);
  }
}

void CutWindow::WindowToCutRaw(Point* points, int32_t count) {
  const Point origin = ViewOrigin();
  for (int32_t i = 0; i < count; ++i) {
    points[i].x = WrappingScale(int64_t{points[i].x} - origin.x, zoomDenominator, zoomNumerator);
    points[i].y = WrappingScale(int64_t{points[i].y} - origin.y, zoomDenominator, zoomNumerator);
  }
}

void CutWindow::WindowToCut(Point* points, int32_t count) {
  WindowToCutRaw(points, count);
  for (int32_t i = 0; i < count; ++i) {
    points[i].x = Snapped(points[i].x, gridWidth);
    points[i].y = Snapped(points[i].y, gridHeight);
  }
}

void CutWindow::CutToLayer(Point* points, int32_t count) {
  int32_t x = 0;
  int32_t y = 0;
  Frame* frame = CurrentFrame();
  if (frame == nullptr || !frame->GetRecordPosition(frame->currentRecord, &x, &y)) return;
  for (int32_t i = 0; i < count; ++i) points[i] = {WrappingSubtract(points[i].x, x), WrappingSubtract(points[i].y, y)};
}

void CutWindow::LayerToCut(Point* points, int32_t count) {
  int32_t x = 0;
  int32_t y = 0;
  Frame* frame = CurrentFrame();
  if (frame == nullptr || !frame->GetRecordPosition(frame->currentRecord, &x, &y)) return;
  for (int32_t i = 0; i < count; ++i) points[i] = {WrappingAdd(points[i].x, x), WrappingAdd(points[i].y, y)};
}

Rect CutWindow::SelectionInCut() {
  Point corners[2] = {{selection.left, selection.top}, {selection.right, selection.bottom}};
  WindowToCutRaw(corners, 2);
  return {corners[0].x, corners[0].y, WrappingSubtract(corners[1].x, corners[0].x),
          WrappingSubtract(corners[1].y, corners[0].y)};
}

Rect CutWindow::SelectionInLayer() {
  Point corners[2] = {{selection.left, selection.top}, {selection.right, selection.bottom}};
  WindowToCut(corners, 2);
  CutToLayer(corners, 2);
  return {corners[0].x, corners[0].y, WrappingSubtract(corners[1].x, corners[0].x),
          WrappingSubtract(corners[1].y, corners[0].y)};
}

bool CutWindow::ToolArea(Rect* area) {
  const CellImage* cell = CurrentCell();
  if (cell == nullptr) return false;
  *area = HasSelection() ? SelectionInLayer() : Rect{0, 0, cell->width, cell->height};
  return true;
}

// Zoom. From 1/1 the levels go 1/2, 1/3 down and 2/1, 3/1 up.

void CutWindow::StepZoom(bool zoomsIn) {
  int32_t& falling = zoomsIn ? zoomDenominator : zoomNumerator;
  int32_t& rising = zoomsIn ? zoomNumerator : zoomDenominator;
  if (falling >= 2) {
    --falling;
  } else {
    ++rising;
  }
}

void CutWindow::ZoomIn(Point place) {
  WindowToCut(&place, 1);
  StepZoom(true);
  CenterOn(place);
  ShowZoom();
}

void CutWindow::ZoomOut(Point place) {
  WindowToCut(&place, 1);
  StepZoom(false);
  CenterOn(place);
  ShowZoom();
}

void CutWindow::ZoomAt(Point place, bool zoomsIn) {
  Point under = place;
  WindowToCutRaw(&under, 1);
  StepZoom(zoomsIn);
  scrollX = WrappingSubtract(WrappingScale(under.x, zoomNumerator, zoomDenominator), place.x);
  scrollY = WrappingSubtract(WrappingScale(under.y, zoomNumerator, zoomDenominator), place.y);
  const Bounds client = platform::ClientBounds(window);
  UpdateScrollBars(client.right, client.bottom);
  ShowZoom();
}

// Says for a moment how large the canvas is shown.
void CutWindow::ShowZoom() {
  char format[kHintSize];
  char text[kHintSize + 16];
  platform::ReadResourceText(kTextZoom, format, sizeof(format));
  constexpr int64_t whole = 100;
  std::snprintf(text, sizeof(text), format, static_cast<int>(whole * zoomNumerator / zoomDenominator));
  platform::ShowHint(window, text, kZoomHintTime);
}

void CutWindow::CenterOn(Point cutPoint) {
  const Bounds client = platform::ClientBounds(window);
  Point corners[2] = {{client.left, client.top}, {client.right, client.bottom}};
  WindowToCut(corners, 2);
  const int32_t halfX = WrappingScale(int64_t{corners[0].x} - corners[1].x, zoomNumerator, zoomDenominator) / 2;
  const int32_t halfY = WrappingScale(int64_t{corners[0].y} - corners[1].y, zoomNumerator, zoomDenominator) / 2;
  scrollX = WrappingAdd(halfX, WrappingScale(cutPoint.x, zoomNumerator, zoomDenominator));
  scrollY = WrappingAdd(halfY, WrappingScale(cutPoint.y, zoomNumerator, zoomDenominator));
  UpdateScrollBars(client.right, client.bottom);
}

}  // namespace sorvel
