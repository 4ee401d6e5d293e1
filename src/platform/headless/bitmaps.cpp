#include "platform/bitmaps.h"

#include <algorithm>

#include "platform/headless/headless.h"

namespace sorvel::platform {

BitmapHandle CreateBitmap(int32_t width, int32_t height, const ColorEntry* colors, int32_t colorCount,
                          int32_t colorsUsed, uint8_t** bits) {
  static_cast<void>(colorsUsed);
  const int32_t pitch = (width + 3) & ~3;
  Bitmap* bitmap = new Bitmap{width, height, pitch, {}, {}};
  if (!bitmap->bits.AllocateZeroed(static_cast<size_t>(pitch) * static_cast<size_t>(height) + kSpareBytes)) {
    delete bitmap;
    return nullptr;
  }
  for (int32_t i = 0; i < colorCount; ++i) bitmap->colors[i] = colors[i];
  *bits = bitmap->bits.Data();
  return bitmap;
}

void SetBitmapColors(BitmapHandle bitmap, int32_t first, int32_t count, const ColorEntry* colors) {
  if (bitmap == nullptr) return;
  for (int32_t i = 0; i < count; ++i) bitmap->colors[first + i] = colors[i];
}

void ReadBitmapColors(BitmapHandle bitmap, ColorEntry (&colors)[256]) {
  if (bitmap != nullptr) std::copy_n(bitmap->colors, 256, colors);
}

void DeleteBitmap(BitmapHandle bitmap) {
  delete bitmap;
}

}  // namespace sorvel::platform
