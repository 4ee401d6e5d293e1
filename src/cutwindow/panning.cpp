#include <algorithm>

#include "cutwindow/cut_window.h"

namespace sorvel {

namespace {

// A drag of the canvas with Shift and Ctrl down. There is one at a time.
struct Pan {
  bool panning = false;
  Point last;  // the mouse position that the scroll position corresponds to
};
Pan gPan;

// The scroll position nearest to `wanted`, a multiple of `step` within the limits of the bar; `current` if the picture
// doesn't scroll.
int32_t LimitScroll(int64_t wanted, int32_t current, const platform::ScrollState& bar, int32_t step) {
  if (bar.maximum <= bar.page) return current;
  const int64_t limit = int64_t{bar.maximum} - bar.page - 1;
  const int64_t position = std::clamp<int64_t>(wanted, 0, limit);
  return static_cast<int32_t>(position - position % step);
}

}  // namespace

void ResetPan() {
  gPan = Pan{};
  pulseSuppressed = false;
}

// Handles a move with both keys down, which the tool doesn't get. Any other message ends the drag.
bool CutWindow::HandlePan(uint32_t message, uintptr_t first, intptr_t second) {
  constexpr uintptr_t keys = platform::kKeyShift | platform::kKeyControl;
  if (message == platform::kMessageMouseMove && (first & keys) == keys) {
    // Only the newest of the waiting moves is drawn, so that a slow repaint doesn't fall behind the mouse.
    Point place = platform::PointOf(second);
    platform::TakeMouseMoves(window, &place);
    PanTo(place);
    return true;
  }
  if (gPan.panning) {
    pulseSuppressed = false;
    Pulse();
    gPan.panning = false;
  }
  return false;
}

void CutWindow::PanTo(Point place) {
  if (!gPan.panning) {
    Pulse();
    pulseSuppressed = true;
    gPan = {true, place};
    return;
  }
  const int32_t newX = LimitScroll(int64_t{scrollX} - place.x + gPan.last.x, scrollX,
                                   platform::ReadScrollBar(window, platform::ScrollBar::kHorizontal), zoomNumerator);
  const int32_t newY = LimitScroll(int64_t{scrollY} - place.y + gPan.last.y, scrollY,
                                   platform::ReadScrollBar(window, platform::ScrollBar::kVertical), zoomNumerator);
  const int32_t dx = scrollX - newX;
  const int32_t dy = scrollY - newY;
  if (dx == 0 && dy == 0) return;
  platform::ScrollClientOnly(window, dx, dy);
  platform::ValidateClient(window);
  scrollX = newX;
  scrollY = newY;
  const Bounds client = platform::ClientBounds(window);
  ShowStrip(dx < 1 ? Bounds{client.right + dx, 0, client.right + zoomNumerator, client.bottom}
                   : Bounds{0, 0, dx, client.bottom});
  ShowStrip(dy < 1 ? Bounds{0, client.bottom + dy, client.right, client.bottom + zoomNumerator}
                   : Bounds{0, 0, client.right, dy});
  platform::SetScrollPosition(window, platform::ScrollBar::kHorizontal, scrollX);
  platform::SetScrollPosition(window, platform::ScrollBar::kVertical, scrollY);
  gPan.last.x += dx;
  gPan.last.y += dy;
}

// Copies a strip that a scroll uncovered, in window coordinates, from the view. Its edges snap to the grid.
void CutWindow::ShowStrip(const Bounds& strip) {
  Point corners[2] = {{strip.left, strip.top}, {strip.right, strip.bottom}};
  WindowToCut(corners, 2);
  RepaintAreaDirect(corners[0].x, corners[0].y, corners[1].x - corners[0].x, corners[1].y - corners[0].y);
}

}  // namespace sorvel
