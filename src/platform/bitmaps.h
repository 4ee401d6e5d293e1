#pragma once

#include <cstdint>

// Bitmaps of 8 bits a pixel whose pixels are plain memory.
namespace sorvel::platform {

// A colour as bitmaps store it.
struct ColorEntry {
  uint8_t blue = 0;
  uint8_t green = 0;
  uint8_t red = 0;
  uint8_t reserved = 0;
};

struct Bitmap;
using BitmapHandle = Bitmap*;

// Bytes behind the last row that may be read and written: blocks of four pixels reach over the end.
constexpr int32_t kSpareBytes = 16;

// Whether rows of so many bytes, and the spare bytes behind them, can be counted in 32 bits.
constexpr bool FitsMemory(int64_t pitch, int64_t height) {
  return pitch * height <= INT32_MAX - kSpareBytes;
}

// Makes a bitmap with rows from top to bottom, each `width` bytes rounded up to a multiple of 4. The pixels and the
// spare bytes start as 0. `colors` holds `colorCount` entries of its colour table, `colorsUsed` of them declared.
// Gives the pixels in `bits`. Null if there is no memory for it. The size is above 0 and
// fits. The caller deletes it.
BitmapHandle CreateBitmap(int32_t width, int32_t height, const ColorEntry* colors, int32_t colorCount,
                          int32_t colorsUsed, uint8_t** bits);

// Replaces entries of the colour table.
void SetBitmapColors(BitmapHandle bitmap, int32_t first, int32_t count, const ColorEntry* colors);

// Null is allowed.
void DeleteBitmap(BitmapHandle bitmap);

}  // namespace sorvel::platform
