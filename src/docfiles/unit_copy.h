#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

#include "foundation/vectors.h"

namespace sorvel {

// Decoding works on 16 units at a time. Their codes are 8 bytes, which share a byte of the change map; as a number, the
// code of the first unit is in the lowest bits.
constexpr int32_t kGroupUnits = 16;
constexpr int32_t kGroupCodeBytes = kGroupUnits / 2;

constexpr uint64_t kLeftUnit = 1;  // the code of a unit that is the same as the one to its left

constexpr uint64_t kLowestCodeBits = 0x1111111111111111U;

// The bits of the codes of the first `units` units of a group.
constexpr uint64_t CodeBitsOf(int32_t units) {
  return units >= kGroupUnits ? ~uint64_t{0} : (uint64_t{1} << 4 * units) - 1;
}

// The lowest bits of those codes of a group that are 0.
constexpr uint64_t FindLiterals(uint64_t codes) {
  return ~(codes | codes >> 1 | codes >> 2 | codes >> 3) & kLowestCodeBits;
}

// Whether `stored` literals are enough for the first `units` units of a group.
constexpr bool HasLiterals(uint64_t codes, int32_t units, ptrdiff_t stored) {
  return stored >= kGroupUnits || std::popcount(FindLiterals(codes) & CodeBitsOf(units)) <= stored;
}

// Where the source of a unit begins by its code, in bytes from the unit: ahead of it, or 0 for a unit that stays as it
// is. A unit that is the same as the one to its left has 0 too.
using SourceOffsets = ptrdiff_t[16];

// Copies the units of a group, from the first on. format.Put(to, from) writes one unit or a vector of them.
template <typename Format>
[[gnu::always_inline]] inline void CopyGroup(const Format& format, uint64_t codes, const SourceOffsets& offsets,
                                             uint8_t* to) {
  using Unit = typename Format::Unit;
  // The one to the left comes from a register: reading back what was just written would take longer than all else.
  // Which it is nobody can predict, so there is no branch.
  auto left = LoadAs<Unit>(to - sizeof(Unit));
  for (int32_t k = 0; k < kGroupUnits; ++k, to += sizeof(Unit)) {
    const uint64_t code = codes >> 4 * k & 0x0F;
    const auto source = LoadAs<Unit>(to + offsets[code]);
    const bool isLeft = code == kLeftUnit;
    left = __builtin_expect_with_probability(isLeft, 1, 0.5) ? left : source;
    format.Put(to, left);
  }
}

// Whether all codes of a group are the same.
constexpr bool IsRun(uint64_t codes) {
  return codes == (codes & 0x0F) * kLowestCodeBits;
}

// Copies the units of a group whose code is the same.
template <typename Format>
[[gnu::always_inline]] inline void CopyRun(const Format& format, uint64_t code, const SourceOffsets& offsets,
                                           uint8_t* to) {
  using Unit = typename Format::Unit;
  constexpr ptrdiff_t step = sizeof(Words64x2);
  const ptrdiff_t offset = code == kLeftUnit ? -ptrdiff_t{sizeof(Unit)} : offsets[code];
  const uint8_t* const end = to + kGroupUnits * sizeof(Unit);
  if (offset <= -step) {
    for (; to < end; to += step) format.Put(to, LoadAs<Words64x2>(to + offset));
    return;
  }
  // The units repeat 2, 4 or 8 bytes ahead of the group.
  auto pattern = LoadAs<uint64_t>(to + offset);
  if (offset == -2) pattern = (pattern & 0xFFFF) * 0x0001000100010001U;
  if (offset == -4) pattern = (pattern & 0xFFFFFFFF) * 0x0000000100000001U;
  for (; to < end; to += step) format.Put(to, Words64x2{pattern, pattern});
}

}  // namespace sorvel
