#include <algorithm>
#include <cstdlib>

#include "platform/headless/internal.h"

// Invalid areas, painting and scrolling.
namespace sorvel::platform {

namespace {

bool gLivePainting = false;

Bounds Joined(const Bounds& left, const Bounds& right) {
  if (left.IsEmpty()) return right;
  if (right.IsEmpty()) return left;
  return {std::min(left.left, right.left), std::min(left.top, right.top), std::max(left.right, right.right),
          std::max(left.bottom, right.bottom)};
}

int32_t Shifted(int32_t value, int32_t by, int32_t limit) {
  return static_cast<int32_t>(std::clamp<int64_t>(int64_t{value} + by, 0, limit));
}

bool IsMovedOut(const Window* window, int32_t dx, int32_t dy) {
  return std::abs(int64_t{dx}) >= window->width || std::abs(int64_t{dy}) >= window->height;
}

// Goes through the rows in the order that reads each one before it is overwritten.
void MovePixels(Window* window, int32_t dx, int32_t dy) {
  if (IsMovedOut(window, dx, dy)) return;
  const int32_t count = window->width - std::abs(dx);
  const int32_t rows = window->height - std::abs(dy);
  ColorEntry* pixels = window->pixels.data();
  for (int32_t i = 0; i < rows; ++i) {
    const int32_t from = dy > 0 ? rows - 1 - i : i - dy;
    const int32_t to = from + dy;
    const ColorEntry* source = pixels + int64_t{from} * window->width + std::max(-dx, 0);
    ColorEntry* target = pixels + int64_t{to} * window->width + std::max(dx, 0);
    std::vector<ColorEntry> row(source, source + count);
    std::copy(row.begin(), row.end(), target);
  }
}

// The invalid area moves with the pixels.
void MoveInvalid(Window* window, int32_t dx, int32_t dy) {
  const Bounds& old = window->invalid;
  if (old.IsEmpty()) return;
  window->invalid = {Shifted(old.left, dx, window->width), Shifted(old.top, dy, window->height),
                     Shifted(old.right, dx, window->width), Shifted(old.bottom, dy, window->height)};
  if (window->invalid.IsEmpty()) window->invalid = {};
}

void Validate(Window* window) {
  window->invalid = {};
  window->eraseInvalid = false;
}

void EraseInvalid(Window* window, DeviceContext* context) {
  if (!window->eraseInvalid || !window->hasBackground) return;
  Brush brush = {window->background};
  FillArea(context, window->invalid, &brush);
}

}  // namespace

namespace headless {

void InvalidateArea(Window* window, const Bounds& area, bool erase) {
  if (window->pixels.empty()) return;
  window->invalid = Joined(window->invalid, area);
  window->eraseInvalid = window->eraseInvalid || erase;
}

bool PaintInvalid(WindowHandle window) {
  if (!IsWindow(window) || window->invalid.IsEmpty()) return false;
  DeviceContext* context = static_cast<DeviceContext*>(window);
  EraseInvalid(window, context);
  Validate(window);
  Send(window, kMessagePrintClient, reinterpret_cast<uintptr_t>(context), 0);
  return true;
}

bool DeliverPaint(WindowHandle window) {
  if (!IsWindow(window) || window->invalid.IsEmpty()) return false;
  Send(window, kMessagePaint, 0, 0);
  return true;
}

void SetLivePainting(bool live) {
  gLivePainting = live;
}

void ResetPainting() {
  gLivePainting = false;
}

}  // namespace headless

DeviceContext* BeginDrawing(WindowHandle window) {
  if (!headless::IsWindow(window)) return nullptr;
  ++window->paints;
  return static_cast<DeviceContext*>(window);
}

void EndDrawing(WindowHandle window, DeviceContext* context) {
  static_cast<void>(window);
  static_cast<void>(context);
}

DeviceContext* BeginPainting(WindowHandle window, Bounds* update) {
  DeviceContext* context = BeginDrawing(window);
  if (update != nullptr) *update = {};
  if (context == nullptr) return nullptr;
  window->clip = window->invalid;
  if (update != nullptr) *update = window->invalid;
  EraseInvalid(window, context);
  Validate(window);
  return context;
}

void EndPainting(WindowHandle window, DeviceContext* context) {
  static_cast<void>(context);
  if (headless::IsWindow(window)) window->clip = headless::WholeClient(window);
}

DeviceContext* ContextOf(uintptr_t first) {
  // As PaintInvalid sends it. NOLINTNEXTLINE(performance-no-int-to-ptr)
  return reinterpret_cast<DeviceContext*>(first);
}

void InvalidateClient(WindowHandle window, bool erase) {
  if (headless::IsWindow(window)) headless::InvalidateArea(window, headless::WholeClient(window), erase);
}

void ValidateClient(WindowHandle window) {
  if (headless::IsWindow(window)) Validate(window);
}

void UpdateClient(WindowHandle window) {
  if (!headless::IsWindow(window) || !window->shown) return;
  if (gLivePainting) {
    headless::DeliverPaint(window);
  } else {
    headless::PaintInvalid(window);
  }
}

void ScrollClient(WindowHandle window, int32_t dx, int32_t dy) {
  if (!headless::IsWindow(window) || window->pixels.empty()) return;
  const Bounds whole = headless::WholeClient(window);
  if (IsMovedOut(window, dx, dy)) {
    headless::InvalidateArea(window, whole, true);
    return;
  }
  MovePixels(window, dx, dy);
  MoveInvalid(window, dx, dy);
  Bounds free;
  if (dx > 0) free = Joined(free, {0, 0, dx, whole.bottom});
  if (dx < 0) free = Joined(free, {whole.right + dx, 0, whole.right, whole.bottom});
  if (dy > 0) free = Joined(free, {0, 0, whole.right, dy});
  if (dy < 0) free = Joined(free, {0, whole.bottom + dy, whole.right, whole.bottom});
  if (!free.IsEmpty()) headless::InvalidateArea(window, free, true);
}

void ScrollClientOnly(WindowHandle window, int32_t dx, int32_t dy) {
  if (headless::IsWindow(window) && !window->pixels.empty()) MovePixels(window, dx, dy);
}

}  // namespace sorvel::platform
