#include <algorithm>
#include <cstdlib>

#include "cutwindow/cut_window.h"

namespace sorvel {

namespace {

// A wheel scrolls so many line steps for each notch.
constexpr int32_t kStepsPerNotch = 3;

// A drag of the canvas with the middle button, or with Shift and Ctrl down. There is one at a time.
struct Pan {
  bool panning = false;
  bool byButton = false;
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

// Handles the middle button, and moves with it or with both keys down, which the tool doesn't get. Any other message
// ends the drag.
bool CutWindow::HandlePan(uint32_t message, uintptr_t first, intptr_t second) {
  constexpr uintptr_t keys = platform::kKeyShift | platform::kKeyControl;
  if (message == platform::kMessageMiddleDown) {
    platform::CaptureMouse(window);
    PanTo(platform::PointOf(second));
    gPan.byButton = true;
    return true;
  }
  const bool isDragged = gPan.byButton && (first & platform::kKeyMiddleButton) != 0;
  if (message == platform::kMessageMouseMove && (isDragged || (first & keys) == keys)) {
    // Only the newest of the waiting moves is drawn, so that a slow repaint doesn't fall behind the mouse.
    Point place = platform::PointOf(second);
    platform::TakeMouseMoves(window, &place);
    PanTo(place);
    return true;
  }
  if (gPan.byButton) platform::ReleaseMouse();
  if (gPan.panning) {
    pulseSuppressed = false;
    Pulse();
  }
  gPan.panning = gPan.byButton = false;
  return message == platform::kMessageMiddleUp;
}

void CutWindow::PanTo(Point place) {
  if (!gPan.panning) {
    Pulse();
    pulseSuppressed = true;
    gPan = {true, false, place};
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

// The wheel scrolls, with Shift sideways, and with Ctrl zooms at the mouse. A fine wheel's turns add up to steps.
void CutWindow::OnWheel(uint32_t message, uintptr_t first, intptr_t second) {
  if (host->ActiveCut() != this) return;
  const bool isSideways = message == platform::kMessageSidewaysWheel;
  const WheelUse use = isSideways || (first & platform::kKeyShift) != 0 ? WheelUse::kHorizontal : WheelUse::kVertical;
  const bool zooms = !isSideways && (first & platform::kKeyControl) != 0;
  const WheelUse newUse = zooms ? WheelUse::kZoom : use;
  const int32_t turn = platform::TurnOf(first);
  if (newUse != wheelUse || (turn < 0) != (wheelRest < 0)) wheelRest = 0;
  wheelUse = newUse;
  wheelRest += turn;
  const int32_t step = zooms ? platform::kWheelNotch : platform::kWheelNotch / kStepsPerNotch;
  const int32_t steps = wheelRest / step;
  wheelRest -= steps * step;
  if (zooms) {
    const Point place = platform::ScreenToClient(window, platform::PointOf(second));
    for (int32_t i = 0; i < std::abs(steps); ++i) ZoomAt(place, steps > 0);
  } else if (use == WheelUse::kVertical) {
    ScrollBy(platform::ScrollBar::kVertical, -int64_t{steps} * lineStepY);
  } else {
    // Away from the hand is to the left, as it is upwards without the key.
    ScrollBy(platform::ScrollBar::kHorizontal, (isSideways ? int64_t{steps} : -int64_t{steps}) * lineStepX);
  }
}

// Scrolls within the limits of a drag.
void CutWindow::ScrollBy(platform::ScrollBar bar, int64_t distance) {
  const bool isHorizontal = bar == platform::ScrollBar::kHorizontal;
  int32_t& position = isHorizontal ? scrollX : scrollY;
  const int32_t target =
      LimitScroll(position + distance, position, platform::ReadScrollBar(window, bar), zoomNumerator);
  const int32_t shift = position - target;
  if (shift == 0) return;
  Pulse();
  position = target;
  platform::SetScrollPosition(window, bar, position);
  platform::ScrollClient(window, isHorizontal ? shift : 0, isHorizontal ? 0 : shift);
  Pulse();
}

// Copies a strip that a scroll uncovered, in window coordinates, from the view. Its edges snap to the grid.
void CutWindow::ShowStrip(const Bounds& strip) {
  Point corners[2] = {{strip.left, strip.top}, {strip.right, strip.bottom}};
  WindowToCut(corners, 2);
  RepaintAreaDirect(corners[0].x, corners[0].y, corners[1].x - corners[0].x, corners[1].y - corners[0].y);
}

}  // namespace sorvel
