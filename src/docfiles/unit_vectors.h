#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "docfiles/code_rows.h"
#include "docfiles/unit_copy.h"
#include "foundation/vectors.h"

namespace sorvel {

// Decoding by wide vectors, for processors for which HasWideVectors() is true: eight units at a time, half a group.

// A number for each of eight lanes, by a set of lanes as bits.
using LaneTable = std::array<std::array<int8_t, 8>, 256>;

// Of a lane in the set, how many lanes of the set are below it; -1 for other lanes.
constexpr LaneTable kRanksInSet = [] {
  LaneTable table{};
  for (size_t set = 0; set < 256; ++set) {
    int8_t rank = 0;
    for (size_t lane = 0; lane < 8; ++lane) table[set][lane] = (set >> lane & 1) != 0 ? rank++ : int8_t{-1};
  }
  return table;
}();

// The last lane, from the lane downwards, that isn't in the set; -1 if there is none.
constexpr LaneTable kLastOutside = [] {
  LaneTable table{};
  for (size_t set = 0; set < 256; ++set) {
    int8_t last = -1;
    for (size_t lane = 0; lane < 8; ++lane) {
      if ((set >> lane & 1) == 0) last = static_cast<int8_t>(lane);
      table[set][lane] = last;
    }
  }
  return table;
}();

// The lanes of the set in order, and then any.
constexpr LaneTable kLanesInSet = [] {
  LaneTable table{};
  for (size_t set = 0; set < 256; ++set) {
    size_t count = 0;
    for (int8_t lane = 0; lane < 8; ++lane) {
      if ((set >> lane & 1) != 0) table[set][count++] = lane;
    }
  }
  return table;
}();

// Of eight bytes those that a lane of the table names; 0 for -1.
SORVEL_WIDE_INLINE uint64_t TakeBytes(uint64_t bytes, const std::array<int8_t, 8>& lanes) {
  const auto taken = PermuteBytes(reinterpret_cast<Bytes16>(Words64x2{bytes, 0}),
                                  reinterpret_cast<Bytes16>(Words64x2{LoadAs<uint64_t>(lanes.data()), 0}));
  return reinterpret_cast<Words64x2>(taken)[0];
}

// The codes of a group from those of the row above: the bytes that the group's byte of the change map names are
// replaced by those at `next`, where eight bytes may be read.
SORVEL_WIDE_INLINE uint64_t ReplaceCodes(uint64_t above, uint32_t changes, const uint8_t* next) {
  const auto ranks = LoadAs<uint64_t>(kRanksInSet[changes].data());
  const uint64_t kept = (ranks >> 7 & 0x0101010101010101U) * 0xFF;
  return (above & kept) | TakeBytes(LoadAs<uint64_t>(next), kRanksInSet[changes]);
}

// How many bytes behind codes and literals may be read.
constexpr int32_t kSpareUnitBytes = 16;

// Where the source of a unit begins, in bytes from the unit.
constexpr ptrdiff_t SourceOffset(int32_t code, ptrdiff_t pitch, ptrdiff_t unitBytes) {
  return kUnitOffsets[code].dy * pitch + kUnitOffsets[code].dx / 4 * unitBytes;
}

// Eight units of four or two bytes, and what goes with them.
template <typename Unit>
struct EightUnits;

template <>
struct EightUnits<uint32_t> {
  using Vector = Words32x8;
  static constexpr Vector kLanes = {0, 1, 2, 3, 4, 5, 6, 7};
  // The codes of half a group, each in the highest bits of its lane. Below it there is anything.
  SORVEL_WIDE_INLINE static Vector HighCodes(uint32_t codes) {
    return (Vector{} + codes) << Vector{28, 24, 20, 16, 12, 8, 4, 0};
  }
};

template <>
struct EightUnits<uint16_t> {
  using Vector = Words16x8;
  static constexpr Vector kLanes = {0, 1, 2, 3, 4, 5, 6, 7};
  SORVEL_WIDE_INLINE static Vector HighCodes(uint32_t codes) {
    constexpr Bytes16 places = {0, 128, 0, 128, 1, 128, 1, 128, 2, 128, 2, 128, 3, 128, 3, 128};
    const auto pairs = PermuteBytes(reinterpret_cast<Bytes16>(Words64x2{codes, 0}), places);
    return reinterpret_cast<Vector>(pairs) * Vector{1 << 12, 1 << 8, 1 << 12, 1 << 8, 1 << 12, 1 << 8, 1 << 12, 1 << 8};
  }
};

template <int32_t kCode, typename Unit>
SORVEL_WIDE_INLINE typename EightUnits<Unit>::Vector LoadSource(const uint8_t* to, ptrdiff_t pitch) {
  return LoadWide<typename EightUnits<Unit>::Vector>(to + SourceOffset(kCode, pitch, sizeof(Unit)));
}

// Whether a group has codes that few groups have: literals, units farther to the left than one, and sources farther up
// than two rows or to the left of those.
constexpr bool HasRareCodes(uint64_t codes, uint64_t usedBits) {
  const uint64_t two = codes >> 1;
  const uint64_t four = codes >> 2;
  const uint64_t eight = codes >> 3;
  const uint64_t literals = ~(codes | two | four | eight) & usedBits;
  const uint64_t left = two & ~(four | eight);
  const uint64_t far = eight & ~(four & two & codes);
  return ((literals | left | far) & kLowestCodeBits) != 0;
}

// Copies half a group: `codes` has the codes of its units, `used` a bit for each that is to be written. `before` has
// the eight units to the left, and receives these. The literals are there.
template <bool kHasRare, typename Format>
SORVEL_WIDE_INLINE void CopyHalfGroup(const Format& format, uint32_t codes, uint32_t used, uint8_t* to, ptrdiff_t pitch,
                                      const uint8_t** literal,
                                      typename EightUnits<typename Format::Unit>::Vector& before) {
  using Unit = typename Format::Unit;
  using Eight = EightUnits<Unit>;
  using Vector = typename Eight::Vector;
  // Each bit of the codes as the highest bit of its lane.
  const Vector eight = Eight::HighCodes(codes);
  const Vector four = eight << 1;
  const Vector two = eight << 2;
  const Vector one = eight << 3;
  const auto there = LoadWide<Vector>(to);
  const Vector from4 = Choose(one, LoadSource<5, Unit>(to, pitch), LoadSource<4, Unit>(to, pitch));
  const Vector from6 = Choose(one, LoadSource<7, Unit>(to, pitch), LoadSource<6, Unit>(to, pitch));
  Vector units = Choose(four, Choose(two, from6, from4), there);
  if (kHasRare) {
    const Vector from8 = Choose(one, LoadSource<9, Unit>(to, pitch), LoadSource<8, Unit>(to, pitch));
    const Vector from10 = Choose(one, LoadSource<11, Unit>(to, pitch), LoadSource<10, Unit>(to, pitch));
    const Vector from12 = Choose(one, LoadSource<13, Unit>(to, pitch), LoadSource<12, Unit>(to, pitch));
    const Vector from14 = Choose(one, format.LastSource(to, pitch, there), LoadSource<14, Unit>(to, pitch));
    units = Choose(eight, Choose(four, Choose(two, from14, from12), Choose(two, from10, from8)), units);
    const uint32_t literals = ~HighestBits(one | two | four | eight) & used;
    const auto ranks = Spread<Vector>(LoadAs<uint64_t>(kRanksInSet[literals].data()));
    units = Choose(ranks, units, Permute(format.EightLiterals(*literal), ranks));
    *literal += std::popcount(literals) * Format::kLiteralBytes;
  } else {
    units = Choose(eight, format.LastSource(to, pitch, there), units);
  }
  if (kHasRare && ((codes >> 1 & ~(codes >> 2 | codes >> 3)) & 0x11111111) != 0) {
    // Codes 2 and 3: the units 2 and 4 to the left. The lanes are followed to where they end.
    const Vector code = eight >> (8 * sizeof(Unit) - 4);
    const Vector left = (code == 1 ? Vector{} + 1 : Vector{}) | (code == 2 ? Vector{} + 2 : Vector{}) |
                        (code == 3 ? Vector{} + 4 : Vector{});
    Vector lanes = Eight::kLanes - left;
    units = Choose(lanes, Permute(before, lanes), units);
    lanes = Choose(lanes, Eight::kLanes, lanes);
    for (int32_t i = 0; i < 3; ++i) lanes = Permute(lanes, lanes);
    units = Permute(units, lanes);
  } else {
    const uint32_t lefts = HighestBits(one & ~(two | four | eight));
    const auto lanes = Spread<Vector>(LoadAs<uint64_t>(kLastOutside[lefts].data()));
    // Lane -1 is the last of the eight to the left.
    units = Choose(lanes, Permute(before, lanes), Permute(units, lanes));
  }
  before = units;
  StoreAs(to, format.Merge(there, units));
}

// Rows of units that are copied, and where the codes and literals of their picture go on.
struct UnitRows {
  const uint8_t* map;       // the change map from here on
  uint8_t* rowCodes;        // of the row above, and then of the last
  const uint8_t* nextCode;  // as many as the map names
  const uint8_t* literal;
  const uint8_t* literalsEnd;
};

// Copies rows of so many units from `to` on. The sources of all of their groups, and what lies behind the last, can be
// read, and so can kSpareUnitBytes behind the codes and the literals. copyUnits(group, to, count) copies the units of a
// group that may lack literals, and goes on with `from`.
template <typename Format, typename CopyUnits>
SORVEL_WIDE void CopyUnitRows(const Format format, UnitRows& from, int32_t units, int32_t rows, uint8_t* to,
                              ptrdiff_t pitch, CopyUnits copyUnits) {
  using Unit = typename Format::Unit;
  using Vector = typename EightUnits<Unit>::Vector;
  const int32_t groups = (units + kGroupUnits - 1) / kGroupUnits;
  const int32_t lastUnits = units - (groups - 1) * kGroupUnits;
  const uint8_t* map = from.map;
  const uint8_t* nextCode = from.nextCode;
  const uint8_t* literal = from.literal;
  uint8_t* const rowCodes = from.rowCodes;
  for (; rows > 0; --rows, to += pitch) {
    for (int32_t group = 0; group < groups; ++group) {
      uint32_t changes = *map++;
      if (group == groups - 1) changes &= (1u << (lastUnits + 1) / 2) - 1;
      uint8_t* const codes = rowCodes + group * kGroupCodeBytes;
      StoreAs(codes, ReplaceCodes(LoadAs<uint64_t>(codes), changes, nextCode));
      nextCode += std::popcount(changes);
    }
    auto before = LoadWide<Vector>(to - sizeof(Vector));
    uint8_t* half = to;
    for (int32_t group = 0; group < groups; ++group, half += 2 * sizeof(Vector)) {
      const int32_t count = group < groups - 1 ? kGroupUnits : lastUnits;
      const uint64_t usedBits = CodeBitsOf(count);
      const uint64_t codes = LoadAs<uint64_t>(rowCodes + group * kGroupCodeBytes) & usedBits;
      if (codes == kLeftUnit * kLowestCodeBits) {
        before = Permute(before, Vector{} + 7);
        StoreAs(half, format.Merge(LoadWide<Vector>(half), before));
        StoreAs(half + sizeof(Vector), format.Merge(LoadWide<Vector>(half + sizeof(Vector)), before));
      } else if (!HasRareCodes(codes, usedBits)) {
        CopyHalfGroup<false>(format, static_cast<uint32_t>(codes), 0, half, pitch, &literal, before);
        CopyHalfGroup<false>(format, static_cast<uint32_t>(codes >> 32), 0, half + sizeof(Vector), pitch, &literal,
                             before);
      } else if (!HasLiterals(codes, count, (from.literalsEnd - literal) / Format::kLiteralBytes)) {
        from.literal = literal;
        copyUnits(codes, half, count);
        literal = from.literal;
        before = LoadWide<Vector>(half + sizeof(Vector));
      } else {
        const uint32_t used = (1u << count) - 1;
        CopyHalfGroup<true>(format, static_cast<uint32_t>(codes), used & 0xFF, half, pitch, &literal, before);
        CopyHalfGroup<true>(format, static_cast<uint32_t>(codes >> 32), used >> 8, half + sizeof(Vector), pitch,
                            &literal, before);
      }
    }
  }
  from.map = map;
  from.nextCode = nextCode;
  from.literal = literal;
}

}  // namespace sorvel
