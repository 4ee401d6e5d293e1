#include "platform/web/web.h"

#include <algorithm>

#include "platform/bitmaps.h"
#include "platform/messages.h"
#include "platform/timer.h"

namespace sorvel::platform {

namespace {

constexpr uint32_t kBlack = 0xFF000000U;
constexpr uint32_t kTimer = 1;

// The one screen, for the timer.
Window* gScreen = nullptr;

uint32_t PixelOf(const ColorEntry& color) {
  return kBlack | static_cast<uint32_t>(color.blue) << 16 | static_cast<uint32_t>(color.green) << 8 | color.red;
}

Window* ScreenOf(DeviceContext* context) {
  return reinterpret_cast<Window*>(context);
}

DeviceContext* ContextOf(Window* window) {
  return reinterpret_cast<DeviceContext*>(window);
}

}  // namespace

struct Bitmap {
  int32_t width = 0;
  int32_t height = 0;
  int32_t pitch = 0;
  Buffer<uint8_t> bits;
};

void MakeScreen(Window* screen, WindowObject* object) {
  screen->object = object;
  object->window = screen;
  gScreen = screen;
}

BitmapHandle CreateBitmap(int32_t width, int32_t height, const ColorEntry* /*colors*/, int32_t /*colorCount*/,
                          int32_t /*colorsUsed*/, uint8_t** bits) {
  const int64_t pitch = (int64_t{width} + 3) & ~int64_t{3};
  if (width <= 0 || height <= 0 || !FitsMemory(pitch, height)) return nullptr;
  auto* bitmap = new Bitmap;
  bitmap->width = width;
  bitmap->height = height;
  bitmap->pitch = static_cast<int32_t>(pitch);
  if (!bitmap->bits.AllocateZeroed(static_cast<size_t>(pitch * height) + kSpareBytes)) {
    delete bitmap;
    return nullptr;
  }
  *bits = bitmap->bits.Data();
  return bitmap;
}

void DeleteBitmap(BitmapHandle bitmap) {
  delete bitmap;
}

void SetClientSize(WindowHandle window, int32_t width, int32_t height) {
  if (width == window->width && height == window->height) return;
  const int64_t count = int64_t{width} * height;
  const bool isMade =
      width > 0 && height > 0 && count <= INT32_MAX / 4 && window->pixels.Allocate(static_cast<size_t>(count));
  window->width = isMade ? width : 0;
  window->height = isMade ? height : 0;
  if (isMade) std::fill_n(window->pixels.Data(), static_cast<size_t>(count), kBlack);
}

void InvalidateClient(WindowHandle /*window*/, bool /*erase*/) {}
void UpdateClient(WindowHandle /*window*/) {}

void ShowInactive(WindowHandle window) {
  window->isShown = true;
}

bool IsShown(WindowHandle window) {
  return window->isShown;
}

intptr_t Send(WindowHandle /*window*/, uint32_t /*message*/, uintptr_t /*first*/, intptr_t /*second*/) {
  return 0;
}

intptr_t DefaultHandling(WindowHandle /*window*/, uint32_t /*message*/, uintptr_t /*first*/, intptr_t /*second*/) {
  return 0;
}

bool GetTimerRange(int32_t* shortest, int32_t* longest) {
  *shortest = 1;
  *longest = 1000000;
  return true;
}

void RequestTimerResolution(int32_t /*milliseconds*/) {}

uint32_t StartTimer(int32_t /*period*/, int32_t /*resolution*/, TimerFunction /*function*/, void* /*user*/) {
  gScreen->hasTimer = true;
  return kTimer;
}

void KillTimer(uint32_t /*timer*/) {
  gScreen->hasTimer = false;
}

DeviceContext* BeginDrawing(WindowHandle window) {
  return ContextOf(window);
}

void EndDrawing(WindowHandle /*window*/, DeviceContext* /*context*/) {}

DeviceContext* BeginPainting(WindowHandle window, Bounds* /*update*/) {
  return ContextOf(window);
}

void EndPainting(WindowHandle /*window*/, DeviceContext* /*context*/) {}

DeviceContext* ContextOf(uintptr_t /*first*/) {
  return ContextOf(gScreen);
}

bool HasPalette(DeviceContext* /*context*/) {
  return false;
}

void SelectDrawingPalette(DeviceContext* /*context*/, PaletteHandle /*palette*/, bool /*foreground*/) {}

void FillBlack(DeviceContext* context, int32_t left, int32_t top, int32_t right, int32_t bottom) {
  Window* screen = ScreenOf(context);
  left = std::max(left, 0);
  right = std::min(right, screen->width);
  if (!screen->isDrawn || left >= right) return;
  for (int32_t y = std::max(top, 0); y < std::min(bottom, screen->height); ++y) {
    uint32_t* row = screen->pixels.Data() + int64_t{y} * screen->width;
    std::fill(row + left, row + right, kBlack);
  }
}

void DrawBitmap(DeviceContext* context, int32_t x, int32_t y, int32_t width, int32_t height, BitmapHandle bitmap,
                int32_t sourceX, int32_t sourceY, const ColorEntry (&colors)[256]) {
  Window* screen = ScreenOf(context);
  if (!screen->isDrawn || bitmap == nullptr) return;
  uint32_t pixels[256];
  std::transform(colors, colors + 256, pixels, PixelOf);
  const int64_t first = std::max<int64_t>({0, -int64_t{x}, -int64_t{sourceX}});
  const int64_t last = std::min<int64_t>({width, int64_t{screen->width} - x, int64_t{bitmap->width} - sourceX});
  const int64_t top = std::max<int64_t>({0, -int64_t{y}, -int64_t{sourceY}});
  const int64_t bottom = std::min<int64_t>({height, int64_t{screen->height} - y, int64_t{bitmap->height} - sourceY});
  for (int64_t row = top; row < bottom; ++row) {
    const uint8_t* from = bitmap->bits.Data() + (sourceY + row) * bitmap->pitch + sourceX;
    uint32_t* to = screen->pixels.Data() + (y + row) * screen->width + x;
    for (int64_t i = first; i < last; ++i) to[i] = pixels[from[i]];
  }
}

}  // namespace sorvel::platform
