#include "imaging/cell_image.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <utility>

#include "foundation/vectors.h"
#include "imaging/indexed_image.h"
#include "imaging/packed_image.h"
#include "imaging/pixel_words.h"

namespace sorvel {

namespace {

constexpr bool IsToneMark(uint8_t value) {
  return static_cast<uint8_t>(value - kMarkFirst) <= kMarkLast - kMarkFirst;
}

constexpr int32_t ShiftedTone(int32_t value, int32_t delta) {
  int32_t tone = 0;
  if (value >= 1 && value <= 4) {
    tone = value - 1;
  } else if (value >= 8 && value <= 10) {
    tone = value - 8;
  } else if (value >= 16 && value <= 18) {
    tone = value - 16;
  } else {
    return 0;
  }
  return std::clamp(tone + delta, 0, 3) + 1;
}

// What a source pixel, not 0, leaves on a destination pixel in a keyed copy.
constexpr uint8_t KeyedValue(uint8_t destination, uint8_t source) {
  if (!IsToneMark(source)) return source;
  constexpr int32_t markDeltas[] = {2, 1, -1, -2};
  const int32_t adjusted = ShiftedTone(destination, markDeltas[source - kMarkFirst]);
  return adjusted != 0 ? static_cast<uint8_t>(adjusted) : source;
}

// The same as a table by destination and source, for all values that occur in composed images.
constexpr uint8_t kComposedValues = 32;
constexpr uint8_t kCellValues = 16;
using KeyedTable = std::array<std::array<uint8_t, kCellValues>, kComposedValues>;
constexpr KeyedTable kKeyedTable = [] {
  KeyedTable table{};
  for (uint8_t destination = 0; destination < kComposedValues; ++destination) {
    for (uint8_t source = 0; source < kCellValues; ++source) {
      table[destination][source] = source == 0 ? destination : KeyedValue(destination, source);
    }
  }
  return table;
}();

// Maps black, dark and light of the tone or line family to `first` and the two indices after it; any other source
// leaves `there`. Free of branches, so that the compiler can vectorize.
uint8_t LineFamilyFrom(uint8_t source, uint8_t first, uint8_t there) {
  const auto tone = static_cast<uint8_t>(source - kToneBlack);
  const auto line = static_cast<uint8_t>(source - kLineBlack);
  const uint8_t index = line < 3 ? line : tone;
  return index < 3 ? static_cast<uint8_t>(first + index) : there;
}

void BlendLines(uint8_t* destination, const uint8_t* source, int32_t count, uint8_t first) {
  for (int32_t i = 0; i < count; ++i) destination[i] = LineFamilyFrom(source[i], first, destination[i]);
}

void BlendKeyed(uint8_t* destination, const uint8_t* source, int32_t count) {
  // Bytes only, so that the compiler can vectorize.
  uint8_t marks = 0;
  for (int32_t i = 0; i < count; ++i) marks = static_cast<uint8_t>(marks | (IsToneMark(source[i]) ? 1 : 0));
  if (marks == 0) {
    for (int32_t i = 0; i < count; ++i) destination[i] = source[i] != 0 ? source[i] : destination[i];
    return;
  }
  for (int32_t i = 0; i < count; ++i) {
    if (destination[i] < kComposedValues && source[i] < kCellValues) {
      destination[i] = kKeyedTable[destination[i]][source[i]];
    } else if (source[i] != 0) {
      destination[i] = KeyedValue(destination[i], source[i]);
    }
  }
}

// A keyed copy of `count` pairs of pixels of a cell, as they lie in memory. The blank ones, which are most of many
// cells, are passed over; where there are tone marks, single pixels are blended.
void BlendPixels(uint8_t* destination, const uint8_t* pairs, int32_t count) {
  uint8_t pixels[64];
  for (int32_t i = 0; i < count; ++i) {
    pixels[2 * i] = static_cast<uint8_t>(pairs[i] >> 4);
    pixels[2 * i + 1] = pairs[i] & 0x0F;
  }
  BlendKeyed(destination, pixels, 2 * count);
}

void BlendPairsNarrow(uint8_t* destination, const uint8_t* pairs, int32_t count) {
  constexpr uint8_t firstMark = kMarkFirst;
  constexpr uint8_t range = kMarkLast - kMarkFirst;
  constexpr int32_t step = sizeof(Bytes8);
  for (; count >= step; count -= step, pairs += step, destination += 2 * step) {
    const auto both = LoadAs<Bytes8>(pairs);
    if (!HasBits(both)) continue;
    if (HasBits(((both >> 4) - firstMark <= range) | ((both & 0x0F) - firstMark <= range))) {
      BlendPixels(destination, pairs, step);
      continue;
    }
    const auto wide = __builtin_convertvector(both, Numbers16x8);
    const auto pixels = reinterpret_cast<Bytes16>(wide >> 4 | (wide & 0x0F) << 8);
    StoreAs(destination, pixels == 0 ? LoadAs<Bytes16>(destination) : pixels);
  }
  BlendPixels(destination, pairs, count);
}

// 32 pairs, which have been loaded.
SORVEL_WIDE_INLINE void Blend32Pairs(uint8_t* destination, const Bytes32& both) {
  static_assert(kMarkFirst == 11 && kMarkLast == 14);
  constexpr Bytes32 marks = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 0,
                             0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 0};
  if (!HasBitsWide(both)) return;
  const Bytes32 left = both >> 4;
  const Bytes32 right = both & 0x0F;
  if (HasBitsWide(PermuteBytes(marks, left) | PermuteBytes(marks, right))) {
    uint8_t pairs[sizeof(both)];
    StoreAs(pairs, both);
    BlendPixels(destination, pairs, sizeof(both));
    return;
  }
  const Bytes32 first = __builtin_shufflevector(left, right, 0, 32, 1, 33, 2, 34, 3, 35, 4, 36, 5, 37, 6, 38, 7, 39, 8,
                                                40, 9, 41, 10, 42, 11, 43, 12, 44, 13, 45, 14, 46, 15, 47);
  const Bytes32 second =
      __builtin_shufflevector(left, right, 16, 48, 17, 49, 18, 50, 19, 51, 20, 52, 21, 53, 22, 54, 23, 55, 24, 56, 25,
                              57, 26, 58, 27, 59, 28, 60, 29, 61, 30, 62, 31, 63);
  uint8_t* const behind = destination + sizeof(first);
  StoreAs(destination, first == 0 ? LoadWide<Bytes32>(destination) : first);
  StoreAs(behind, second == 0 ? LoadWide<Bytes32>(behind) : second);
}

SORVEL_WIDE void BlendPairsWide(uint8_t* destination, const uint8_t* pairs, int32_t count) {
  constexpr int32_t step = sizeof(Bytes32);
  if (count < step) {
    BlendPairsNarrow(destination, pairs, count);
    return;
  }
  int32_t done = 0;
  for (; done + step <= count; done += step) Blend32Pairs(destination + 2 * done, LoadWide<Bytes32>(pairs + done));
  if (done == count) return;
  // The last 32 again: those that are drawn already count as blank.
  constexpr Bytes32 lanes = {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13, 14, 15,
                             16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31};
  const int32_t again = step - (count - done);
  const auto isNew = reinterpret_cast<Bytes32>(lanes >= static_cast<uint8_t>(again));
  Blend32Pairs(destination + 2 * (count - step), LoadWide<Bytes32>(pairs + count - step) & isNew);
}

void BlendPairs(uint8_t* destination, const uint8_t* pairs, int32_t count) {
  if (HasWideVectors()) {
    BlendPairsWide(destination, pairs, count);
  } else {
    BlendPairsNarrow(destination, pairs, count);
  }
}

struct CompositeRule {
  bool keyed;
  bool pale;
  uint32_t destMask;
  uint32_t sourceMask;

  void Apply(uint8_t* destination, const uint8_t* source, int32_t count) const {
    if (destMask == 0 && sourceMask == 0) {
      if (pale) {
        BlendLines(destination, source, count, kPaleFirst);
      } else if (keyed) {
        BlendKeyed(destination, source, count);
      } else {
        std::memcpy(destination, source, static_cast<size_t>(count));
      }
      return;
    }
    for (int32_t i = 0; i < count; ++i) {
      const uint8_t s = source[i];
      if ((keyed && s == 0) || IsMasked(destMask, destination[i]) || IsMasked(sourceMask, s)) continue;
      destination[i] = !keyed ? s
                       : pale ? LineFamilyFrom(s, kPaleFirst, destination[i])
                              : KeyedValue(destination[i], s);
    }
  }
};

// Calls `apply` for a run of a row of both images, piece by piece. An image that is copied into itself goes pixel by
// pixel, since a step may read what the one before wrote.
template <typename Apply>
void ForRun(CellImage* destination, int32_t dx, int32_t dy, const CellImage* source, int32_t sx, int32_t sy,
            int32_t count, const Apply& apply) {
  const int32_t pieceSize = destination == source ? 1 : kRunPixels;
  uint8_t sourceRun[kRunPixels];
  uint8_t destinationRun[kRunPixels];
  for (int32_t done = 0; done < count; done += pieceSize) {
    const int32_t piece = std::min(pieceSize, count - done);
    source->ReadRow(sx + done, sy, piece, sourceRun);
    if (destination->colors > 16) {
      destination->UseRows(dy, 1);
      apply(destination->bits + dy * destination->pitch + dx + done, sourceRun, piece);
    } else {
      destination->ReadRow(dx + done, dy, piece, destinationRun);
      apply(destinationRun, sourceRun, piece);
      destination->WriteRow(dx + done, dy, piece, destinationRun);
    }
  }
}

}  // namespace

uint64_t CellImage::lastContentNumber = 0;

int32_t AdjustTone(int32_t value, int32_t delta) {
  return ShiftedTone(value, delta);
}

bool ClipBlock(int32_t* dx, int32_t* dy, int32_t* sx, int32_t* sy, int32_t* width, int32_t* height,
               const CellImage& destination, const CellImage& source) {
  const auto clipAxis = [](int32_t* to, int32_t* from, int32_t* size, int64_t sourceSize, int64_t destinationSize) {
    int64_t d = *to;
    int64_t s = *from;
    int64_t n = *size;
    if (s + n > sourceSize) n = sourceSize - s;
    if (s < 0) {
      d -= s;
      n += s;
      s = 0;
    }
    if (d < 0) {
      s -= d;
      n += d;
      d = 0;
    }
    if (d + n > destinationSize) n = destinationSize - d;
    if (n < 1) return false;
    *to = static_cast<int32_t>(d);
    *from = static_cast<int32_t>(s);
    *size = static_cast<int32_t>(n);
    return true;
  };
  return clipAxis(dx, sx, width, source.width, destination.width) &&
         clipAxis(dy, sy, height, source.height, destination.height);
}

bool CellImage::Composite(int32_t dx, int32_t dy, CellImage* source, int32_t sx, int32_t sy, int32_t blockWidth,
                          int32_t blockHeight, int32_t flags, uint32_t destMask, uint32_t sourceMask, Rect* outRect) {
  if (!ClipBlock(&dx, &dy, &sx, &sy, &blockWidth, &blockHeight, *this, *source)) return false;
  const bool keyed = (flags & kKeyed) != 0;
  const CompositeRule rule = {keyed, keyed && (flags & kPale) != 0, destMask, sourceMask};
  const bool isPlain = keyed && !rule.pale && destMask == 0 && sourceMask == 0 && IsPacked(*source) && !IsPacked(*this);
  const auto apply = [&rule](uint8_t* to, const uint8_t* from, int32_t count) { rule.Apply(to, from, count); };
  int32_t left = sx + blockWidth;
  int32_t right = sx;
  int32_t top = -1;
  int32_t bottom = -1;
  for (int32_t row = 0; row < blockHeight; ++row) {
    int32_t start = sx;
    int32_t end = sx + blockWidth;
    if (!source->IsUsedRow(sy + row) && (keyed || !IsUsedRow(dy + row))) continue;
    if (keyed && (outRect != nullptr || !isPlain)) {
      start = source->FindInk(sx, sy + row, end, 1);
      if (start == end) continue;
      end = source->FindInk(end - 1, sy + row, sx - 1, 0) + 1;
      left = std::min(left, start);
      right = std::max(right, end);
      if (top < 0) top = sy + row;
      bottom = sy + row + 1;
    }
    const int32_t toLeft = dx - sx;
    if (isPlain) {
      // Pairs beside the ink are drawn too: they change nothing, and vectors are full.
      const int32_t first = std::max(start / 32 * 16, (sx + 1) / 2);
      const int32_t last = std::min((end + 31) / 32 * 16, (sx + blockWidth) / 2);
      UseRows(dy + row, 1);
      uint8_t* const to = RowOf(*this, dy + row) + toLeft;
      BlendPairs(to + 2 * first, RowOf(*source, sy + row) + first, std::max(last - first, 0));
      // Single pixels at the sides of the block.
      if (start < 2 * first) ForRun(this, toLeft + start, dy + row, source, start, sy + row, 1, apply);
      const bool hasLast = end > 2 * std::max(first, last);
      if (hasLast) ForRun(this, toLeft + end - 1, dy + row, source, end - 1, sy + row, 1, apply);
      continue;
    }
    ForRun(this, toLeft + start, dy + row, source, start, sy + row, end - start, apply);
  }
  if (outRect != nullptr) *outRect = top < 0 ? Rect{} : Rect{left, top, right - left, bottom - top};
  return true;
}

bool CellImage::Overlay(int32_t dx, int32_t dy, CellImage* source, int32_t sx, int32_t sy, int32_t blockWidth,
                        int32_t blockHeight, int32_t variant) {
  if (colors <= 16) return false;
  if (!ClipBlock(&dx, &dy, &sx, &sy, &blockWidth, &blockHeight, *this, *source)) return false;
  const uint8_t first = variant == 0 ? kGreenFirst : kRedFirst;
  const auto apply = [first](uint8_t* to, const uint8_t* from, int32_t count) { BlendLines(to, from, count, first); };
  for (int32_t row = 0; row < blockHeight; ++row) {
    if (source->IsUsedRow(sy + row)) ForRun(this, dx, dy + row, source, sx, sy + row, blockWidth, apply);
  }
  return true;
}

void CellImage::CopyBits(const CellImage& from) {
  if (bits == nullptr) return;
  FillRows(0);
  if (from.usedTop >= from.usedBottom) return;
  const int32_t rows = from.usedBottom - from.usedTop;
  UseRows(from.usedTop, rows);
  const ptrdiff_t start = ptrdiff_t{from.usedTop} * pitch;
  std::memcpy(bits + start, from.bits + start, static_cast<size_t>(rows) * static_cast<size_t>(pitch));
}

void CellImage::SwapBits(uint8_t* buffer) {
  if (buffer == nullptr || bits == nullptr) return;
  UseRows(0, height);
  std::swap_ranges(bits, bits + ByteCount(), buffer);
}

void CellImage::FillRows(int32_t byte) {
  EndContent();
  if (byte != 0) UseRows(0, height);
  if (usedTop < usedBottom) {
    std::memset(bits + ptrdiff_t{usedTop} * pitch, byte,
                static_cast<size_t>(usedBottom - usedTop) * static_cast<size_t>(pitch));
  }
  if (byte == 0) ForgetUsedRows();
}

void CellImage::ReadRow(int32_t x, int32_t y, int32_t count, uint8_t* pixels) const {
  const uint8_t* row = bits + y * pitch;
  if (colors > 16) {
    std::memcpy(pixels, row + x, static_cast<size_t>(count));
    return;
  }
  const uint8_t* pair = row + (x >> 1);
  if ((x & 1) != 0 && count > 0) {
    *pixels++ = *pair++ & 0x0F;
    --count;
  }
  const int32_t pairs = count / 2;
  for (int32_t i = 0; i < pairs; ++i) {
    pixels[2 * i] = static_cast<uint8_t>(pair[i] >> 4);
    pixels[2 * i + 1] = pair[i] & 0x0F;
  }
  if ((count & 1) != 0) pixels[count - 1] = static_cast<uint8_t>(pair[pairs] >> 4);
}

void CellImage::WriteRow(int32_t x, int32_t y, int32_t count, const uint8_t* pixels) {
  UseRows(y, 1);
  uint8_t* row = bits + y * pitch;
  if (colors > 16) {
    std::memcpy(row + x, pixels, static_cast<size_t>(count));
    return;
  }
  uint8_t* pair = row + (x >> 1);
  if ((x & 1) != 0 && count > 0) {
    *pair = static_cast<uint8_t>((*pair & 0xF0) | *pixels++);
    ++pair;
    --count;
  }
  const int32_t pairs = count / 2;
  for (int32_t i = 0; i < pairs; ++i) pair[i] = static_cast<uint8_t>(pixels[2 * i] << 4 | pixels[2 * i + 1]);
  if ((count & 1) != 0) pair[pairs] = static_cast<uint8_t>((pair[pairs] & 0x0F) | pixels[count - 1] << 4);
}

void DestroyImage(CellImage* image) {
  if (image == nullptr || (image->watch != nullptr && image->watch->TakeOver(image))) return;
  if (image->colors > 16) {
    delete static_cast<IndexedImage*>(image);
  } else {
    delete static_cast<PackedImage*>(image);
  }
}

}  // namespace sorvel
