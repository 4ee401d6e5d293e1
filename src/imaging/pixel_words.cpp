#include "imaging/pixel_words.h"

#include <array>
#include <bit>

#include "platform/bitmaps.h"

namespace sorvel {

static_assert(std::endian::native == std::endian::little, "groups of pixels are read as they lie in memory");

namespace {

// A group is read and written whole, though the row, or the image, may end within it.
static_assert(platform::kSpareBytes >= 8);

// The bytes of eight pixels whose bits are set.
constexpr std::array<uint64_t, 256> kByteMasks = [] {
  std::array<uint64_t, 256> masks{};
  for (uint32_t bits = 0; bits < 256; ++bits) {
    for (uint32_t i = 0; i < 8; ++i) {
      if ((bits >> i & 1) != 0) masks[bits] |= uint64_t{0xFF} << 8 * i;
    }
  }
  return masks;
}();

// The same for the half bytes of a packed image, where the even pixel is the high half.
constexpr std::array<uint32_t, 256> kNibbleMasks = [] {
  std::array<uint32_t, 256> masks{};
  for (uint32_t bits = 0; bits < 256; ++bits) {
    for (uint32_t i = 0; i < 8; ++i) {
      if ((bits >> i & 1) != 0) masks[bits] |= uint32_t{0x0F} << (8 * (i / 2) + (i % 2 == 0 ? 4 : 0));
    }
  }
  return masks;
}();

uint64_t NibbleMask(uint64_t sixteen) {
  return kNibbleMasks[sixteen & 0xFF] | uint64_t{kNibbleMasks[sixteen >> 8 & 0xFF]} << 32;
}

void Blend(uint8_t* at, uint64_t mask, uint64_t ink) {
  uint64_t pixels = 0;
  std::memcpy(&pixels, at, sizeof(pixels));
  pixels = (pixels & ~mask) | (ink & mask);
  std::memcpy(at, &pixels, sizeof(pixels));
}

// The group as seen from one of its bytes on.
uint64_t FromByte(uint64_t group, int32_t byte) {
  return std::rotr(group, (byte & 7) * 8);
}

void FillBytes(uint8_t* at, int32_t count, uint64_t group) {
  for (; count >= 8; count -= 8, at += 8) std::memcpy(at, &group, 8);
  if ((count & 4) != 0) {
    std::memcpy(at, &group, 4);
    group >>= 32;
    at += 4;
  }
  if ((count & 2) != 0) {
    std::memcpy(at, &group, 2);
    group >>= 16;
    at += 2;
  }
  if ((count & 1) != 0) *at = static_cast<uint8_t>(group);
}

}  // namespace

uint64_t PenGroup(const PenSpec& pen, int32_t y, bool isPacked) {
  if (pen.tone == 0) {
    return isPacked ? static_cast<uint64_t>(pen.colorB & 0x0F) * 0x1111111111111111U
                    : static_cast<uint64_t>(pen.colorB & 0xFF) * 0x0101010101010101U;
  }
  uint64_t four = 0;
  for (int32_t x = 0; x < 4; ++x) PutPixel(&four, x, PenColorAt(pen, x, y), isPacked);
  return isPacked ? four * 0x0001000100010001U : four * 0x0000000100000001U;
}

void PaintWord(CellImage* image, int32_t y, int32_t word, uint64_t bits, const InkRow& ink) {
  const int32_t groups = kWordPixels / GroupPixels(IsPacked(*image));
  int32_t group = word * groups;
  image->UseRows(y, 1);
  uint8_t* at = RowOf(*image, y) + group * 8;
  if (bits == ~uint64_t{0}) {
    for (const int32_t end = group + groups; group < end; ++group, at += 8) {
      const uint64_t pixels = ink.At(group);
      std::memcpy(at, &pixels, sizeof(pixels));
    }
  } else if (IsPacked(*image)) {
    for (; bits != 0; ++group, at += 8, bits >>= 16) {
      if ((bits & 0xFFFF) != 0) Blend(at, NibbleMask(bits), ink.At(group));
    }
  } else {
    for (; bits != 0; ++group, at += 8, bits >>= 8) {
      if ((bits & 0xFF) != 0) Blend(at, kByteMasks[bits & 0xFF], ink.At(group));
    }
  }
}

void PaintUnmaskedWord(CellImage* image, int32_t y, int32_t word, uint64_t bits, const InkRow& ink, uint32_t mask) {
  const auto isFree = [mask](uint8_t pixel) { return static_cast<uint8_t>(IsMasked(mask, pixel) ? 0 : 1); };
  const int32_t start = word * kWordPixels;
  const int32_t count = std::min(kWordPixels, image->width - start);
  uint8_t run[kWordPixels];
  TestPixels(RunPixels(*image, start, y, count, run), count, isFree,
             [&](int32_t, uint64_t free) { PaintWord(image, y, word, bits & free, ink); });
}

void PaintRun(CellImage* image, int32_t y, int32_t x, int32_t end, uint64_t group) {
  image->UseRows(y, 1);
  uint8_t* const row = RowOf(*image, y);
  if (!IsPacked(*image)) {
    FillBytes(row + x, end - x, FromByte(group, x));
    return;
  }
  const auto paintHalf = [row, group](int32_t pixel, uint8_t half) {
    uint8_t& pair = row[pixel / 2];
    pair = static_cast<uint8_t>((pair & ~half) | (FromByte(group, pixel / 2) & half));
  };
  if (x % 2 != 0) paintHalf(x++, 0x0F);
  if (x >= end) return;
  if (end % 2 != 0) paintHalf(--end, 0xF0);
  FillBytes(row + x / 2, (end - x) / 2, FromByte(group, x / 2));
}

void PaintEight(CellImage* image, int32_t y, int32_t x, uint32_t bits, uint64_t group, uint32_t mask) {
  image->UseRows(y, 1);
  uint8_t* const row = RowOf(*image, y);
  if (mask != 0) {
    for (uint32_t left = bits; left != 0; left &= left - 1) {
      const int32_t pixel = x + std::countr_zero(left);
      const int32_t value = !IsPacked(*image)  ? row[pixel]
                            : (pixel & 1) != 0 ? row[pixel / 2] & 0x0F
                                               : row[pixel / 2] >> 4;
      if (IsMasked(mask, value)) bits &= ~(left & -left);
    }
  }
  if (IsPacked(*image)) {
    Blend(row + x / 2, NibbleMask(uint64_t{bits} << (x & 1)), FromByte(group, x / 2));
  } else {
    Blend(row + x, kByteMasks[bits], FromByte(group, x));
  }
}

}  // namespace sorvel
