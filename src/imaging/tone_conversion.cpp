#include "imaging/tone_conversion.h"

#include <array>

#include "foundation/vectors.h"
#include "imaging/pen.h"

namespace sorvel {

namespace {

// A grey of 0 to 255 has the level grey * 49 / 256.
constexpr uint32_t kLevels = 49;

// By row and level % 16, a bit for each column of the dither's tile: whether the index there is one above
// level / 16 + 1.
using DitherBits = std::array<std::array<uint8_t, 16>, 4>;

DitherBits MakeDitherBits() {
  DitherBits bits = {};
  for (int32_t y = 0; y < 4; ++y) {
    for (int32_t level = 0; level < 16; ++level) {
      uint8_t& row = bits[static_cast<size_t>(y)][static_cast<size_t>(level)];
      for (int32_t x = 0; x < 4; ++x) row = static_cast<uint8_t>(row | (ToneAt(level, x, y) - 1) << x);
    }
  }
  return bits;
}

// 32 greys at a time; gives how many it has converted.
SORVEL_WIDE int32_t ConvertGreysWide(const uint8_t* greys, int32_t count, int32_t x,
                                     const std::array<uint8_t, 16>& bits, uint8_t* indices) {
  constexpr int32_t step = sizeof(Bytes32);
  uint8_t twice[step];
  uint8_t columns[step];
  for (int32_t i = 0; i < step; ++i) {
    twice[i] = bits[static_cast<size_t>(i % 16)];
    columns[i] = static_cast<uint8_t>(1 << ((x + i) & 3));
  }
  const auto table = LoadWide<Bytes32>(twice);
  const auto column = LoadWide<Bytes32>(columns);
  int32_t i = 0;
  for (; i + step <= count; i += step) {
    const auto pairs = LoadWide<Words16x16>(greys + i);
    const Words16x16 levels = (pairs & 0xFF) * kLevels >> 8 | ((pairs >> 8) * kLevels & 0xFF00);
    const auto level = reinterpret_cast<Bytes32>(levels);
    const auto isAbove = reinterpret_cast<Bytes32>((PermuteBytes(table, level & 15) & column) != 0);
    StoreAs(indices + i, (level >> 4) + 1 - isAbove);
  }
  return i;
}

}  // namespace

int32_t LevelOfColor(int32_t red, int32_t green, int32_t blue) {
  return GreyOfColor(red, green, blue) * static_cast<int32_t>(kLevels) / 256;
}

int32_t ToneAt(int32_t level, int32_t x, int32_t y) {
  return PenColorAt(LevelToPen(level), x, y);
}

void ConvertGreys(const uint8_t* greys, int32_t count, int32_t x, int32_t y, uint8_t* indices) {
  static const DitherBits bits = MakeDitherBits();
  const std::array<uint8_t, 16>& row = bits[static_cast<size_t>(y & 3)];
  int32_t i = HasWideVectors() ? ConvertGreysWide(greys, count, x, row, indices) : 0;
  for (; i < count; ++i) {
    const uint32_t level = greys[i] * kLevels / 256;
    indices[i] = static_cast<uint8_t>(level / 16 + 1 + (row[level % 16] >> ((x + i) & 3) & 1));
  }
}

}  // namespace sorvel
