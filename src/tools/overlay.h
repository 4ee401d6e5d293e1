#pragma once

#include "cutwindow/cut_window.h"
#include "platform/geometry.h"

namespace sorvel {

// What a tool shows over the picture while it works: a line or a dotted frame, drawn by inversion straight on the
// screen, in window coordinates. All tools share one, as only one of them runs at a time. Showing something takes the
// old one away first. A line or frame without extent isn't shown.
class Overlay {
 public:
  void ShowBand(const CutWindow* window, Point from, Point to);
  void ShowFrame(const CutWindow* window, const Bounds& frame);
  // Takes the overlay off this window. An overlay of another window is only forgotten: that window was repainted or is
  // gone.
  void Hide(const CutWindow* window);
  bool IsShown(const CutWindow* window) const;
  // The frame that is shown; an empty one if none is.
  Bounds ShownFrame(const CutWindow* window) const;
  // To be called when a window is gone: forgets what was shown on it. Draws nothing.
  void Forget(const CutWindow* window);

 private:
  enum class Kind { kNone, kBand, kFrame };

  void Invert() const;

  Kind kind = Kind::kNone;
  const CutWindow* owner = nullptr;  // may be gone; only compared until it turns out to be the window at hand
  Point from;
  Point to;
  Bounds frame;
};

}  // namespace sorvel
