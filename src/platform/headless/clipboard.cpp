#include "platform/clipboard.h"

#include <algorithm>
#include <cstring>

#include "foundation/bitmap_head.h"
#include "platform/headless/internal.h"

namespace sorvel::platform {

struct ClipboardPicture {
  int32_t width = 0;
  int32_t height = 0;
  std::vector<uint8_t> pixels;  // rows from top to bottom, blue, green, red
};

namespace {

constexpr size_t kHeadSize = kBitmapInfoHeadBytes;
constexpr size_t kBytesPerPixel = 3;
// A picture beyond this is none that the program can take.
constexpr int64_t kMostPixels = 1 << 26;

bool gOpen = false;
std::vector<uint8_t> gDib;
ClipboardPicture gPicture;

// The fields of a bitmap's head, of which the size is checked against the bytes.
struct Dib {
  int32_t width = 0;
  int32_t height = 0;
  bool bottomUp = true;
  int32_t depth = 0;
  size_t colorCount = 0;
  const uint8_t* colors = nullptr;  // blue, green, red and a spare byte each
  const uint8_t* rows = nullptr;
  size_t pitch = 0;
};

bool ReadHead(const uint8_t* data, size_t size, Dib* dib) {
  if (size < kHeadSize || LittleEndian(data, 4) != kHeadSize) return false;
  const BitmapInfo info = GetBitmapInfo(data);
  const int64_t width = info.width;
  const int64_t height = info.height;
  const int32_t depth = info.bitsPerPixel;
  const int64_t colorsUsed = info.colorsUsed;
  if (width <= 0 || height == 0 || width * std::abs(height) > kMostPixels || info.compression != 0) return false;
  if (depth != 4 && depth != 8 && depth != 24 && depth != 32) return false;
  const int64_t most = depth <= 8 ? int64_t{1} << depth : 256;
  if (colorsUsed > most) return false;
  dib->width = static_cast<int32_t>(width);
  dib->height = static_cast<int32_t>(std::abs(height));
  dib->bottomUp = height > 0;
  dib->depth = depth;
  dib->colorCount = static_cast<size_t>(colorsUsed == 0 && depth <= 8 ? most : colorsUsed);
  dib->colors = data + kHeadSize;
  dib->pitch = static_cast<size_t>(BitmapRowBytes(width, depth));
  const size_t needed = kHeadSize + dib->colorCount * 4 + dib->pitch * static_cast<size_t>(dib->height);
  dib->rows = data + kHeadSize + dib->colorCount * 4;
  return needed <= size;
}

// Indices outside the colour table are black.
void PutColor(const Dib& dib, size_t index, uint8_t* pixel) {
  constexpr uint8_t black[kBytesPerPixel] = {};
  std::memcpy(pixel, index < dib.colorCount ? dib.colors + index * 4 : black, kBytesPerPixel);
}

void DecodeRow(const Dib& dib, const uint8_t* row, uint8_t* pixels) {
  for (size_t x = 0; x < static_cast<size_t>(dib.width); ++x) {
    uint8_t* pixel = pixels + x * kBytesPerPixel;
    switch (dib.depth) {
      case 4:
        PutColor(dib, x % 2 == 0 ? row[x / 2] >> 4 : row[x / 2] & 0x0F, pixel);
        break;
      case 8:
        PutColor(dib, row[x], pixel);
        break;
      default:
        std::memcpy(pixel, row + x * static_cast<size_t>(dib.depth / 8), kBytesPerPixel);
        break;
    }
  }
}

bool Decode(const uint8_t* data, size_t size, ClipboardPicture* picture) {
  Dib dib;
  if (!ReadHead(data, size, &dib)) return false;
  const size_t rowSize = static_cast<size_t>(dib.width) * kBytesPerPixel;
  const size_t height = static_cast<size_t>(dib.height);
  picture->width = dib.width;
  picture->height = dib.height;
  picture->pixels.resize(rowSize * height);
  for (size_t y = 0; y < height; ++y) {
    const size_t from = dib.bottomUp ? height - 1 - y : y;
    DecodeRow(dib, dib.rows + from * dib.pitch, picture->pixels.data() + y * rowSize);
  }
  return true;
}

}  // namespace

namespace headless {

bool SetClipboardPicture(int32_t width, int32_t height, const std::vector<uint8_t>& pixels) {
  gDib.clear();
  gPicture = {};
  if (width <= 0 || height <= 0 || int64_t{width} * height > kMostPixels) return false;
  if (pixels.size() != static_cast<size_t>(width) * static_cast<size_t>(height) * kBytesPerPixel) return false;
  gPicture.width = width;
  gPicture.height = height;
  gPicture.pixels = pixels;
  return true;
}

const std::vector<uint8_t>& ClipboardDib() {
  return gDib;
}

void ResetClipboard() {
  gOpen = false;
  gDib.clear();
  gPicture = {};
}

}  // namespace headless

bool OpenClipboard(WindowHandle owner) {
  static_cast<void>(owner);
  if (gOpen) return false;
  gOpen = true;
  return true;
}

void CloseClipboard() {
  gOpen = false;
}

bool PutClipboardDib(const uint8_t* data, size_t size) {
  if (!gOpen) return false;
  gDib.assign(data, data + size);
  gPicture = {};
  Decode(data, size, &gPicture);
  return true;
}

bool HasClipboardPicture() {
  return gPicture.width != 0;
}

ClipboardPicture* TakeClipboardPicture(int32_t* width, int32_t* height) {
  if (!gOpen || !HasClipboardPicture()) return nullptr;
  *width = gPicture.width;
  *height = gPicture.height;
  return new ClipboardPicture(gPicture);
}

bool ReadClipboardPicture(ClipboardPicture* picture, int32_t x, int32_t y, int32_t width, int32_t height,
                          uint8_t* pixels) {
  if (x < 0 || y < 0 || width < 0 || height < 0 || width > picture->width - x || height > picture->height - y) {
    return false;
  }
  const size_t rowSize = static_cast<size_t>(width) * kBytesPerPixel;
  for (int32_t row = 0; row < height && rowSize > 0; ++row) {
    const size_t first = static_cast<size_t>(y + row) * static_cast<size_t>(picture->width) + static_cast<size_t>(x);
    std::memcpy(pixels + static_cast<size_t>(row) * rowSize, picture->pixels.data() + first * kBytesPerPixel, rowSize);
  }
  return true;
}

void ReleaseClipboardPicture(ClipboardPicture* picture) {
  delete picture;
}

}  // namespace sorvel::platform
