#pragma once

#include <cstddef>
#include <cstdint>

#include "foundation/vectors.h"

namespace sorvel {

// The front plane of the pixels of a NibbleBitmap, several at a time: four as a number or 16 as a vector. Writing
// leaves the back plane.
class FrontPlane {
 public:
  using Unit = uint32_t;

  explicit FrontPlane(bool frontIsHigh)
      : isHigh(frontIsHigh), unitBits(frontIsHigh ? 0xF0F0F0F0 : 0x0F0F0F0F), vectorBits(BitsOf(unitBits)) {}

  // Takes the numbers from the front plane of what is given.
  void Put(uint8_t* to, Unit unit) const { Merge(to, unit, unitBits); }
  void Put(uint8_t* to, const Words64x2& units) const { Merge(to, units, vectorBits); }

  // The front plane of four pixels whose levels are the bytes of a number.
  Unit FromLevels(Unit levels) const { return isHigh ? levels << 4 : levels; }

  // Copies the back numbers to the front plane from `to` to `end` - 1, whole units.
  void CopyBack(uint8_t* to, const uint8_t* end) const {
    for (; end - to >= 16; to += 16) CopyItem<Words64x2>(to);
    for (; to < end; to += sizeof(Unit)) CopyItem<Unit>(to);
  }

  // Writes levels, levelOf(from[i]), to `count` pixels. Gives whether any of them differs from the back plane.
  template <typename LevelOf>
  [[gnu::always_inline]] bool PutLevels(uint8_t* to, const uint8_t* from, int32_t count, const LevelOf& levelOf) const {
    return isHigh ? PutLevelsAt<4>(to, from, count, levelOf) : PutLevelsAt<0>(to, from, count, levelOf);
  }

  // The first pixel, below `end`, whose numbers differ; `end` if there is none.
  static int32_t SkipEqual(const uint8_t* pixels, int32_t end) {
    int32_t i = 0;
    while (i + 8 <= end && Differences<uint64_t>(pixels + i) == 0) i += 8;
    while (i < end && Differences<uint8_t>(pixels + i) == 0) ++i;
    return i;
  }

  // The same backwards: what follows the last such pixel from `start` on and below `end`; `start` if there is none.
  static int32_t SkipEqualBack(const uint8_t* pixels, int32_t start, int32_t end) {
    while (end - 8 >= start && Differences<uint64_t>(pixels + end - 8) == 0) end -= 8;
    while (end > start && Differences<uint8_t>(pixels + end - 1) == 0) --end;
    return end;
  }

 private:
  template <typename Item>
  static Item Differences(const uint8_t* pixels) {
    const uint64_t pairs = LoadAs<Item>(pixels);
    return static_cast<Item>((pairs ^ pairs >> 4) & 0x0F0F0F0F0F0F0F0F);
  }

  template <int32_t kShift, typename LevelOf>
  [[gnu::always_inline]] static bool PutLevelsAt(uint8_t* to, const uint8_t* from, int32_t count,
                                                 const LevelOf& levelOf) {
    constexpr int32_t backShift = 4 - kShift;
    // Free of branches, so that the compiler can vectorize.
    uint8_t different = 0;
    for (int32_t i = 0; i < count; ++i) {
      const uint8_t level = levelOf(from[i]);
      const uint8_t back = to[i] & (0x0F << backShift);
      different = static_cast<uint8_t>(different | (back ^ level << backShift));
      to[i] = static_cast<uint8_t>(back | level << kShift);
    }
    return different != 0;
  }

  static Words64x2 BitsOf(Unit bits) {
    const uint64_t twice = uint64_t{bits} << 32 | bits;
    return Words64x2{twice, twice};
  }

  template <typename Item>
  [[gnu::always_inline]] static void Merge(uint8_t* to, const Item& from, const Item& bits) {
    StoreAs(to, (LoadAs<Item>(to) & ~bits) | (from & bits));
  }

  template <typename Item>
  [[gnu::always_inline]] void CopyItem(uint8_t* to) const {
    const auto pairs = LoadAs<Item>(to);
    Put(to, isHigh ? pairs << 4 : pairs >> 4);
  }

  bool isHigh;
  Unit unitBits;
  Words64x2 vectorBits;
};

}  // namespace sorvel
