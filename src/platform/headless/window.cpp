#include <algorithm>

#include "platform/headless/headless.h"

namespace sorvel::platform {

// A device context of this platform is the window itself.
struct DeviceContext : Window {};

WindowHandle MakeWindow(const char* title, WindowObject* object) {
  static_cast<void>(title);
  DeviceContext* window = new DeviceContext;
  window->object = object;
  return window;
}

void DestroyWindow(WindowHandle window) {
  delete static_cast<DeviceContext*>(window);
}

intptr_t DefaultHandling(WindowHandle window, uint32_t message, uintptr_t first, intptr_t second) {
  static_cast<void>(window);
  static_cast<void>(message);
  static_cast<void>(first);
  static_cast<void>(second);
  return 0;
}

void SetClientSize(WindowHandle window, int32_t width, int32_t height) {
  // Like any window system this one makes no window that is out of all proportion.
  constexpr int32_t mostPixels = 1 << 24;
  width = std::max(width, 0);
  height = std::clamp(height, 0, width == 0 ? 0 : mostPixels / width);
  if (width == window->width && height == window->height) return;
  window->width = width;
  window->height = height;
  window->pixels.assign(static_cast<size_t>(window->width) * static_cast<size_t>(window->height), ColorEntry{});
}

// Nothing paints by itself here.
void InvalidateClient(WindowHandle window) {
  static_cast<void>(window);
}

void UpdateClient(WindowHandle window) {
  static_cast<void>(window);
}

void ShowInactive(WindowHandle window) {
  window->shown = true;
}

bool IsShown(WindowHandle window) {
  return window->shown;
}

DeviceContext* BeginDrawing(WindowHandle window) {
  ++window->paints;
  return static_cast<DeviceContext*>(window);
}

void EndDrawing(WindowHandle window, DeviceContext* context) {
  static_cast<void>(window);
  static_cast<void>(context);
}

DeviceContext* BeginPainting(WindowHandle window) {
  return BeginDrawing(window);
}

void EndPainting(WindowHandle window, DeviceContext* context) {
  EndDrawing(window, context);
}

void FillBlack(DeviceContext* context, int32_t left, int32_t top, int32_t right, int32_t bottom) {
  left = std::max(left, 0);
  right = std::min(right, context->width);
  bottom = std::min(bottom, context->height);
  if (left >= right) return;
  for (int32_t y = std::max(top, 0); y < bottom; ++y) {
    ColorEntry* row = context->pixels.data() + y * context->width;
    std::fill(row + left, row + right, ColorEntry{});
  }
}

void DrawBitmap(DeviceContext* context, int32_t x, int32_t y, int32_t width, int32_t height, BitmapHandle bitmap,
                int32_t sourceX, int32_t sourceY, const ColorEntry (&colors)[256]) {
  if (bitmap == nullptr) return;
  const int64_t first = std::max<int64_t>({0, -static_cast<int64_t>(x), -static_cast<int64_t>(sourceX)});
  const int64_t last = std::min<int64_t>(
      {width, static_cast<int64_t>(context->width) - x, static_cast<int64_t>(bitmap->width) - sourceX});
  const int64_t top = std::max<int64_t>({0, -static_cast<int64_t>(y), -static_cast<int64_t>(sourceY)});
  const int64_t bottom = std::min<int64_t>(
      {height, static_cast<int64_t>(context->height) - y, static_cast<int64_t>(bitmap->height) - sourceY});
  if (first >= last) return;
  for (int64_t row = top; row < bottom; ++row) {
    const uint8_t* from = bitmap->bits + (sourceY + row) * bitmap->pitch + sourceX;
    ColorEntry* to = context->pixels.data() + (y + row) * context->width + x;
    for (int64_t i = first; i < last; ++i) to[i] = colors[from[i]];
  }
}

}  // namespace sorvel::platform
