#include <algorithm>

#include "cutwindow/cut_window.h"
#include "foundation/arithmetic.h"

namespace sorvel {

namespace {

// A message gives the position of a thumb in 16 bits; the thumb of a longer range is ignored.
constexpr int64_t kLargestThumb = 65535;

}  // namespace

// The position may become negative if the page is larger than the picture. That does no harm: such a picture is centred
// whatever the position is, and the next update sets it to 0.
void CutWindow::UpdateScrollBar(platform::ScrollBar bar, int32_t clientSize, int32_t canvasSize, int32_t* position) {
  const int32_t page = clientSize - clientSize % zoomNumerator;
  const int32_t maximum = WrappingScale(canvasSize, zoomNumerator, zoomDenominator);
  if (*position < 0) {
    *position = 0;
  } else if (int64_t{*position} + page > maximum) {
    *position = WrappingSubtract(maximum, page);
  }
  platform::SetScrollBar(window, bar, {maximum, page, *position});
}

void CutWindow::UpdateScrollBars(int32_t clientWidth, int32_t clientHeight) {
  UpdateScrollBar(platform::ScrollBar::kHorizontal, clientWidth, width, &scrollX);
  UpdateScrollBar(platform::ScrollBar::kVertical, clientHeight, height, &scrollY);
  lineStepX = Wrapped(int64_t{zoomNumerator} * 4);
  lineStepY = lineStepX;
  platform::InvalidateClient(window, true);
}

void CutWindow::Scroll(platform::ScrollBar bar, int32_t code, int32_t thumb) {
  const bool isHorizontal = bar == platform::ScrollBar::kHorizontal;
  int32_t& position = isHorizontal ? scrollX : scrollY;
  const int32_t step = isHorizontal ? lineStepX : lineStepY;
  // The width isn't divided by the zoom's denominator: below 1/1 a page to the right may go beyond the picture.
  const int64_t total =
      isHorizontal ? int64_t{width} * zoomNumerator : int64_t{height} * zoomNumerator / zoomDenominator;
  const Bounds client = platform::ClientBounds(window);
  const int32_t clientSize = isHorizontal ? client.right : client.bottom;
  const int32_t page = clientSize - clientSize % zoomNumerator;
  const bool isThumb = code == platform::kScrollThumbPosition || code == platform::kScrollThumbTrack;
  if (isThumb && total > kLargestThumb) return;
  const int32_t target = thumb - thumb % zoomNumerator;
  const auto shift = [this, isHorizontal](int32_t distance) {
    platform::ScrollClient(window, isHorizontal ? distance : 0, isHorizontal ? 0 : distance);
  };

  switch (code) {
    case platform::kScrollLineUp:
    case platform::kScrollLineDown: {
      // The arrows don't check the limits; the next update of the bars brings the position back into them.
      const int32_t distance = code == platform::kScrollLineUp ? -step : step;
      Pulse();
      position = WrappingAdd(position, distance);
      platform::SetScrollPosition(window, bar, position);
      shift(-distance);
      Pulse();
      break;
    }
    case platform::kScrollPageUp:
      position = Wrapped(std::max<int64_t>(int64_t{position} - page, 0));
      platform::SetScrollPosition(window, bar, position);
      platform::InvalidateClient(window, false);
      break;
    case platform::kScrollPageDown:
      position = Wrapped(std::min<int64_t>(int64_t{position} + page, total - page));
      platform::SetScrollPosition(window, bar, position);
      platform::InvalidateClient(window, false);
      break;
    case platform::kScrollThumbPosition:
      Pulse();
      pulseSuppressed = false;
      position = target;
      platform::SetScrollPosition(window, bar, position);
      break;
    case platform::kScrollThumbTrack:
      if (position == target) break;
      if (!pulseSuppressed) {
        pulseSuppressed = true;
        Pulse();
      }
      shift(Wrapped(int64_t{position} - target));
      position = target;
      platform::UpdateClient(window);
      break;
    default:
      break;
  }
}

}  // namespace sorvel
