#pragma once

#include <cstdint>

// 8-bit bitmaps whose pixels the program reads and writes as plain memory.
namespace sorvel::platform {

// An entry of a colour table, in the byte order of bitmap files.
struct ColorEntry {
  uint8_t blue = 0;
  uint8_t green = 0;
  uint8_t red = 0;
  uint8_t reserved = 0;
};

struct Bitmap;
using BitmapHandle = Bitmap*;

// Bytes after the last row that may be read and written, for code that handles four pixels at a time.
constexpr int32_t kSpareBytes = 16;

// Whether the size of `height` rows of `pitch` bytes, with the spare bytes, fits in an int32_t.
constexpr bool FitsMemory(int64_t pitch, int64_t height) {
  return pitch * height <= INT32_MAX - kSpareBytes;
}

// Makes a bitmap. Rows run from top to bottom; each is `width` bytes, rounded up to a multiple of 4. The pixels, which
// `bits` receives, and the spare bytes start as 0. `colors` has `colorCount` entries; `colorsUsed` is the count that
// the bitmap's head declares. The size must be above 0 and pass FitsMemory(). Null if there is no memory. The caller
// deletes the bitmap.
BitmapHandle CreateBitmap(int32_t width, int32_t height, const ColorEntry* colors, int32_t colorCount,
                          int32_t colorsUsed, uint8_t** bits);

// Replaces `count` entries of the colour table from entry `first` on.
void SetBitmapColors(BitmapHandle bitmap, int32_t first, int32_t count, const ColorEntry* colors);

// The colour table of the bitmap. Entries that it doesn't have stay as they are.
void ReadBitmapColors(BitmapHandle bitmap, ColorEntry (&colors)[256]);

// Null is allowed.
void DeleteBitmap(BitmapHandle bitmap);

}  // namespace sorvel::platform
