#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "imaging/cell_image.h"
#include "imaging/pen.h"

// Rows of pixels as 64-bit numbers, for operations on areas. There are two kinds:
// - a word is a set of 64 pixels: bit x % 64 of word x / 64 stands for column x;
// - a group is 8 bytes of pixels as the image stores them, 16 of a PackedImage or 8 of an IndexedImage. Group g of a
// row
//   starts at byte 8 * g.
namespace sorvel {

constexpr int32_t kWordPixels = 64;

inline int32_t WordCount(int32_t pixels) {
  return pixels / kWordPixels + (pixels % kWordPixels != 0 ? 1 : 0);
}

// The bits of a word for the pixels from `first` to `end` - 1 of a row.
inline uint64_t SpanBits(int32_t word, int32_t first, int32_t end) {
  const int64_t start = int64_t{word} * kWordPixels;
  const int64_t low = std::max<int64_t>(first - start, 0);
  const int64_t high = std::min<int64_t>(end - start, kWordPixels);
  if (low >= high) return 0;
  return ~uint64_t{0} >> (kWordPixels - (high - low)) << low;
}

inline bool IsPacked(const CellImage& image) {
  return image.colors <= 16;
}

inline uint8_t* RowOf(const CellImage& image, int32_t y) {
  return image.bits + y * image.pitch;
}

// Rows are processed in runs of at most so many pixels, which fit in the L1 cache.
constexpr int32_t kRunPixels = 1024;

// A run of a row with one byte a pixel: a pointer into an IndexedImage, or `run` with an unpacked copy.
inline const uint8_t* RunPixels(const CellImage& image, int32_t x, int32_t y, int32_t count, uint8_t* run) {
  if (!IsPacked(image)) return RowOf(image, y) + x;
  image.ReadRow(x, y, count, run);
  return run;
}

// Calls `take(number, word)` for each 64 of `count` pixels: bit i of the word is the result, 0 or 1, of `test` for
// pixel i.
template <typename Test, typename Take>
void TestPixels(const uint8_t* pixels, int32_t count, const Test& test, const Take& take) {
  for (int32_t word = 0; count > 0; ++word, count -= kWordPixels, pixels += kWordPixels) {
    // Bytes first, so that the compiler can vectorize. The multiplication then gathers the lowest bits of eight bytes
    // in the highest byte.
    uint8_t flags[kWordPixels];
    if (count >= kWordPixels) {
      for (int32_t i = 0; i < kWordPixels; ++i) flags[i] = test(pixels[i]);
    } else {
      std::memset(flags, 0, sizeof(flags));
      for (int32_t i = 0; i < count; ++i) flags[i] = test(pixels[i]);
    }
    uint64_t bits = 0;
    for (int32_t i = 0; i < 8; ++i) {
      uint64_t eight = 0;
      std::memcpy(&eight, flags + 8 * i, sizeof(eight));
      bits |= eight * 0x0102040810204080U >> 56 << 8 * i;
    }
    take(word, bits);
  }
}

// Sets pixel `index` of a group that has 0 there.
inline void PutPixel(uint64_t* group, int32_t index, int32_t color, bool isPacked) {
  if (isPacked) {
    *group |= static_cast<uint64_t>(color & 0x0F) << (index / 2 * 8 + (index % 2 == 0 ? 4 : 0));
  } else {
    *group |= static_cast<uint64_t>(color & 0xFF) << index * 8;
  }
}

constexpr int32_t GroupPixels(bool isPacked) {
  return isPacked ? 16 : 8;
}

// The ink of a pen in row y: the same for every group, since the dither repeats every four pixels.
uint64_t PenGroup(const PenSpec& pen, int32_t y, bool isPacked);

// The groups of ink of one row: one for the whole row (step 0), or one for each group (step 1).
struct InkRow {
  const uint64_t* groups;
  int32_t step;  // 0 or 1

  uint64_t At(int32_t group) const { return groups[group * step]; }
};

// The ink of a pen over an image.
class PenInk {
 public:
  PenInk(const CellImage& image, const PenSpec& pen) {
    for (int32_t y = 0; y < 4; ++y) groups[y] = PenGroup(pen, y, IsPacked(image));
  }

  InkRow Row(int32_t y) const { return {&groups[y & 3], 0}; }

 private:
  uint64_t groups[4];
};

// Draws the pixels of a word whose bits are set. They must lie inside the image.
void PaintWord(CellImage* image, int32_t y, int32_t word, uint64_t bits, const InkRow& ink);

// The same for those of the pixels that aren't masked.
void PaintUnmaskedWord(CellImage* image, int32_t y, int32_t word, uint64_t bits, const InkRow& ink, uint32_t mask);

// Draws the pixels from x to end - 1 of a row, which must lie inside the image.
void PaintRun(CellImage* image, int32_t y, int32_t x, int32_t end, uint64_t group);

// Draws those of the eight pixels from x on whose bits are set (bit 0 for x) and that aren't masked. They, and x, must
// lie inside the image.
void PaintEight(CellImage* image, int32_t y, int32_t x, uint32_t bits, uint64_t group, uint32_t mask);

}  // namespace sorvel
