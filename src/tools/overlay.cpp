#include "tools/overlay.h"

#include "platform/drawing.h"

namespace sorvel {

void Overlay::ShowBand(const CutWindow* window, Point newFrom, Point newTo) {
  Hide(window);
  if (newFrom == newTo) return;
  kind = Kind::kBand;
  owner = window;
  from = newFrom;
  to = newTo;
  Invert();
}

void Overlay::ShowFrame(const CutWindow* window, const Bounds& newFrame) {
  Hide(window);
  if (newFrame.IsEmpty()) return;
  kind = Kind::kFrame;
  owner = window;
  frame = newFrame;
  Invert();
}

void Overlay::Hide(const CutWindow* window) {
  if (IsShown(window)) Invert();
  *this = Overlay{};
}

bool Overlay::IsShown(const CutWindow* window) const {
  return kind != Kind::kNone && owner == window;
}

Bounds Overlay::ShownFrame(const CutWindow* window) const {
  return IsShown(window) ? frame : Bounds{};
}

void Overlay::Forget(const CutWindow* window) {
  if (owner == window) *this = Overlay{};
}

// Puts it on the screen, or takes it off.
void Overlay::Invert() const {
  if (owner->window == nullptr) return;
  platform::DeviceContext* context = platform::BeginDrawing(owner->window);
  if (kind == Kind::kBand) {
    platform::InvertLine(context, from, to);
  } else {
    platform::InvertFrame(context, frame);
  }
  platform::EndDrawing(owner->window, context);
}

}  // namespace sorvel
