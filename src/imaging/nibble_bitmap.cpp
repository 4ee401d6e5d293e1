#include "imaging/nibble_bitmap.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "foundation/vectors.h"
#include "imaging/front_plane.h"
#include "imaging/pixel_words.h"

namespace sorvel {

namespace {

constexpr int32_t kGreyColors = 13;
constexpr int32_t kLargestScale = 4;

void Store(platform::ColorEntry* entry, int32_t red, int32_t green, int32_t blue) {
  *entry = {static_cast<uint8_t>(blue), static_cast<uint8_t>(green), static_cast<uint8_t>(red), 0};
}

void Load(const platform::ColorEntry& entry, int32_t* red, int32_t* green, int32_t* blue) {
  *red = entry.red;
  *green = entry.green;
  *blue = entry.blue;
}

// 0 black to 3 white. Pixels of neither the tone nor the line family are white: their differences wrap to large
// numbers.
constexpr uint8_t ToneOf(uint8_t pixel) {
  const auto fill = static_cast<uint8_t>(pixel - kToneBlack);
  const auto line = static_cast<uint8_t>(pixel - kLineBlack);
  const uint8_t tone = fill < line ? fill : line;
  return tone < 3 ? tone : uint8_t{3};
}

[[gnu::always_inline]] inline void AddNeighbours(const uint8_t* pixels, int32_t count, int32_t scale, uint8_t* sums) {
  if (scale == 2) {
    for (int32_t i = 0; i < count; ++i) {
      sums[i] = static_cast<uint8_t>(sums[i] + ToneOf(pixels[2 * i]) + ToneOf(pixels[2 * i + 1]));
    }
  } else {
    for (int32_t i = 0; i < count; ++i) {
      const uint8_t* four = pixels + 4 * i;
      sums[i] = static_cast<uint8_t>(sums[i] + ToneOf(four[0]) + ToneOf(four[1]) + ToneOf(four[2]) + ToneOf(four[3]));
    }
  }
}

// Divides sums of 0 to 48 by 4 with an ordered dither: the threshold of a place is the smallest remainder that rounds
// up there.
[[gnu::always_inline]] inline void DitherSums(uint8_t* sums, int32_t count, int32_t dx, int32_t dy) {
  static constexpr uint8_t kThresholds[2][2] = {{1, 3}, {4, 2}};
  for (int32_t i = 0; i < count; ++i) {
    const uint8_t threshold = kThresholds[dy & 1][(dx + i) & 1];
    sums[i] = static_cast<uint8_t>((sums[i] >> 2) + ((sums[i] & 3) >= threshold ? 1 : 0));
  }
}

// Puts the levels of pixels from (x, y) on, of a picture that is put out at 1/scale, into the front plane. Gives
// whether any of them differs from the back plane.
[[gnu::always_inline]] inline bool ReduceRun(const CellImage& composition, int32_t x, int32_t y, int32_t count,
                                             int32_t scale, const FrontPlane& plane, uint8_t* to) {
  uint8_t run[kRunPixels * kLargestScale];
  if (scale == 1) return plane.PutLevels(to, RunPixels(composition, x, y, count, run), count, ToneOf);
  uint8_t levels[kRunPixels] = {};
  for (int32_t line = 0; line < scale; ++line) {
    AddNeighbours(RunPixels(composition, x * scale, y * scale + line, count * scale, run), count, scale, levels);
  }
  if (scale == 4) DitherSums(levels, count, x, y);
  return plane.PutLevels(to, levels, count, [](uint8_t level) { return level; });
}

SORVEL_WIDE bool ReduceRunWide(const CellImage& composition, int32_t x, int32_t y, int32_t count, int32_t scale,
                               const FrontPlane& plane, uint8_t* to) {
  return ReduceRun(composition, x, y, count, scale, plane, to);
}

}  // namespace

NibbleBitmap::~NibbleBitmap() {
  Destroy();
}

void NibbleBitmap::Destroy() {
  platform::DeleteBitmap(bitmapHandle);
  std::free(savedBits);
  bitmapHandle = nullptr;
  bits = nullptr;
  savedBits = nullptr;
  width = height = pitch = imageSize = 0;
}

int32_t NibbleBitmap::SetBaseColor(int32_t index, int32_t red, int32_t green, int32_t blue) {
  Store(&baseColors[index], red, green, blue);
  return 1;
}

int32_t NibbleBitmap::GetBaseColor(int32_t index, int32_t* red, int32_t* green, int32_t* blue) {
  Load(baseColors[index], red, green, blue);
  return 1;
}

int32_t NibbleBitmap::GetFrontColor(int32_t index, int32_t* red, int32_t* green, int32_t* blue) {
  Load(planeColors[frontIsHigh != 0 ? 1 : 0][index], red, green, blue);
  return 1;
}

int32_t NibbleBitmap::SetFrontColor(int32_t index, int32_t red, int32_t green, int32_t blue) {
  Store(&planeColors[frontIsHigh != 0 ? 1 : 0][index], red, green, blue);
  return 1;
}

int32_t NibbleBitmap::GetBackColor(int32_t index, int32_t* red, int32_t* green, int32_t* blue) {
  Load(planeColors[frontIsHigh != 0 ? 0 : 1][index], red, green, blue);
  return 1;
}

int32_t NibbleBitmap::SetBackColor(int32_t index, int32_t red, int32_t green, int32_t blue) {
  Store(&planeColors[frontIsHigh != 0 ? 0 : 1][index], red, green, blue);
  return 1;
}

int32_t NibbleBitmap::GetMixColor(int32_t a, int32_t b, int32_t* red, int32_t* green, int32_t* blue) {
  Load(mixColors[frontIsHigh != 0 ? a + b * 16 : a * 16 + b], red, green, blue);
  return 1;
}

int32_t NibbleBitmap::SetMixColor(int32_t front, int32_t back, int32_t red, int32_t green, int32_t blue) {
  Store(&mixColors[frontIsHigh != 0 ? front * 16 + back : front + back * 16], red, green, blue);
  return 1;
}

void NibbleBitmap::SaveBits() {
  if (savedBits != nullptr) std::memcpy(savedBits, bits, static_cast<size_t>(imageSize));
}

void NibbleBitmap::RestoreBits() {
  if (savedBits != nullptr) std::memcpy(bits, savedBits, static_cast<size_t>(imageSize));
}

void NibbleBitmap::FillBits(int32_t value) {
  if (bits != nullptr) std::memset(bits, value & 0xFF, static_cast<size_t>(imageSize));
}

int32_t NibbleBitmap::GetFront(int32_t x, int32_t y) {
  const uint8_t pair = bits[y * pitch + x];
  return frontIsHigh != 0 ? pair >> 4 : pair & 0x0F;
}

int32_t NibbleBitmap::GetBack(int32_t x, int32_t y) {
  const uint8_t pair = bits[y * pitch + x];
  return frontIsHigh != 0 ? pair & 0x0F : pair >> 4;
}

void NibbleBitmap::SetFront(int32_t x, int32_t y, int32_t value) {
  uint8_t& pair = bits[y * pitch + x];
  pair = static_cast<uint8_t>(frontIsHigh != 0 ? (pair & 0x0F) | value << 4 : (pair & 0xF0) | value);
}

int32_t NibbleBitmap::Create(int32_t newWidth, int32_t newHeight) {
  if (bitmapHandle != nullptr && newWidth == width && newHeight == height) return 1;
  Destroy();
  if (newWidth <= 0 || newHeight <= 0 || !platform::FitsMemory(int64_t{newWidth} + 3, newHeight)) return 0;
  platform::ColorEntry greys[kGreyColors];
  for (int32_t i = 0; i < kGreyColors; ++i) {
    const int32_t grey = (255 * i + kGreyColors - 2) / (kGreyColors - 1);
    Store(&greys[i], grey, grey, grey);
  }
  bitmapHandle = platform::CreateBitmap(newWidth, newHeight, greys, kGreyColors, kGreyColors, &bits);
  if (bitmapHandle == nullptr) return 0;
  width = newWidth;
  height = newHeight;
  pitch = (newWidth + 3) & ~3;
  imageSize = pitch * newHeight;
  std::copy(std::begin(greys), std::end(greys), std::begin(baseColors));
  savedBits = static_cast<uint8_t*>(std::calloc(static_cast<size_t>(imageSize), 1));
  if (savedBits == nullptr) {
    Destroy();
    return 0;
  }
  return 1;
}

uint8_t* NibbleBitmap::GetFront4(uint8_t (*out)[4], int32_t x, int32_t y) {
  for (int32_t i = 0; i < 4; ++i) (*out)[i] = static_cast<uint8_t>(GetFront(x + i, y));
  return *out;
}

uint8_t* NibbleBitmap::GetBack4(uint8_t (*out)[4], int32_t x, int32_t y) {
  for (int32_t i = 0; i < 4; ++i) (*out)[i] = static_cast<uint8_t>(GetBack(x + i, y));
  return *out;
}

void NibbleBitmap::SetFront4(int32_t x, int32_t y, const uint8_t (&bytes)[4]) {
  for (int32_t i = 0; i < 4; ++i) SetFront(x + i, y, bytes[i]);
}

void NibbleBitmap::CopyPlanes(const NibbleBitmap& from) {
  std::memcpy(bits, from.bits, static_cast<size_t>(imageSize) + platform::kSpareBytes);
  frontIsHigh = from.frontIsHigh;
}

void NibbleBitmap::CopyBackToFront(int32_t x, int32_t y, int32_t w, int32_t h) {
  const int32_t right = static_cast<int32_t>(std::min<int64_t>(static_cast<int64_t>(x) + w, width));
  const int32_t bottom = static_cast<int32_t>(std::min<int64_t>(static_cast<int64_t>(y) + h, height));
  x = std::max(x, 0);
  if (x >= right) return;
  const FrontPlane plane(frontIsHigh != 0);
  for (y = std::max(y, 0); y < bottom; ++y) {
    uint8_t* row = bits + y * pitch;
    const int32_t end = x + ((right - x) & ~3);
    plane.CopyBack(row + x, row + end);
    for (int32_t i = end; i < right; ++i) SetFront(i, y, GetBack(i, y));
  }
}

void NibbleBitmap::CopyBackToFrontAround(const Rect& inner, const Rect& outer) {
  const int32_t left = std::min(inner.x, outer.x);
  const int32_t top = std::min(inner.y, outer.y);
  const int32_t innerRight = inner.x + inner.width;
  const int32_t innerBottom = inner.y + inner.height;
  const int32_t right = std::max(innerRight, outer.x + std::max(outer.width, 0));
  const int32_t bottom = std::max(innerBottom, outer.y + std::max(outer.height, 0));
  CopyBackToFront(left, top, right - left, inner.y - top);
  CopyBackToFront(left, inner.y, inner.x - left, inner.height);
  CopyBackToFront(innerRight, inner.y, right - innerRight, inner.height);
  CopyBackToFront(left, innerBottom, right - left, bottom - innerBottom);
}

void NibbleBitmap::ReduceFrom(const CellImage& composition, Rect* outBox, int32_t scale, const Rect* area) {
  const int32_t maxRight = std::min(width, composition.width / scale);
  const int32_t maxBottom = std::min(height, composition.height / scale);
  const int32_t left = area != nullptr ? std::max(area->x, 0) : 0;
  const int32_t top = area != nullptr ? std::max(area->y, 0) : 0;
  const int32_t right = area != nullptr ? std::min(area->x + area->width, maxRight) : maxRight;
  const int32_t bottom = area != nullptr ? std::min(area->y + area->height, maxBottom) : maxBottom;
  const FrontPlane plane(frontIsHigh != 0);
  int32_t minX = INT32_MAX;
  int32_t minY = INT32_MAX;
  int32_t maxX = 0;
  int32_t maxY = 0;
  for (int32_t y = top; y < bottom; ++y) {
    for (int32_t x = left; x < right; x += kRunPixels) {
      const int32_t count = std::min(kRunPixels, right - x);
      uint8_t* const row = bits + y * pitch + x;
      const bool differs = HasWideVectors() ? ReduceRunWide(composition, x, y, count, scale, plane, row)
                                            : ReduceRun(composition, x, y, count, scale, plane, row);
      if (!differs) continue;
      // Only what lies outside the box so far can make it wider.
      const int32_t first = FrontPlane::SkipEqual(row, std::min(count, minX - x));
      const int32_t last = FrontPlane::SkipEqualBack(row, std::max(0, maxX + 1 - x), count) - 1;
      minX = std::min(minX, x + first);
      maxX = std::max(maxX, x + last);
      minY = std::min(minY, y);
      maxY = std::max(maxY, y);
    }
  }
  if (outBox == nullptr) return;
  // Quirk 9. Changes in column 0 only, or in row 0 only, count as none: a cut compiles to the same stream as ever.
  if (maxX == 0 || maxY == 0) {
    *outBox = Rect{};
    return;
  }
  minX -= minX % 2;
  *outBox = {minX, minY, maxX - minX + 1, maxY - minY + 1};
}

}  // namespace sorvel
