#include "docfiles/code_rows.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

#include "docfiles/unit_copy.h"
#include "foundation/vectors.h"

namespace sorvel {

namespace {

// How many units to its left the source of a unit with this code lies.
constexpr int32_t UnitsToTheLeft(int32_t code) {
  return -kUnitOffsets[code].dx / 4;
}

constexpr std::array<int16_t, kGroupUnits> kLaneNumbers = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};

// Up to 8 bytes as a number, the first byte lowest.
uint64_t LoadBytes(const uint8_t* bytes, int32_t count) {
  if (count >= 8) return LoadAs<uint64_t>(bytes);
  if (count >= 4) return LoadAs<uint32_t>(bytes) | uint64_t{LoadAs<uint32_t>(bytes + count - 4)} << 8 * (count - 4);
  uint64_t number = 0;
  for (int32_t i = 0; i < count; ++i) number |= uint64_t{bytes[i]} << 8 * i;
  return number;
}

// Calls take(first, word) for the bits of 64 code bytes from `first` on. Bits behind the row's last code byte are 0.
template <typename Take>
void ForMapWords(const uint8_t* mapRow, int32_t width, const Take& take) {
  const int32_t rowBytes = CodeRowBytes(width);
  for (int32_t first = 0; first < rowBytes; first += 64) {
    const int32_t count = std::min(rowBytes - first, 64);
    take(first, LoadBytes(mapRow + first / 8, CodeMapRowBytes(width) - first / 8) & ~uint64_t{0} >> (64 - count));
  }
}

}  // namespace

bool CodeRowWriter::Allocate(int32_t width, int32_t height) {
  const size_t rows = static_cast<size_t>(std::max(height, 0));
  const size_t mapSpace = static_cast<size_t>(CodeMapRowBytes(width)) * rows;
  const size_t rowSpace = static_cast<size_t>(CodeRowBytes(width));
  const size_t literalSpace = static_cast<size_t>(UnitsOf(width)) * 2 * rows;
  const size_t groups = static_cast<size_t>(CodeMapRowBytes(width));
  if (!map.Allocate(mapSpace + literalSpace + rowSpace * rows + groups * kGroupCodeBytes) ||
      !unitCodes.Allocate(groups * kGroupUnits)) {
    return false;
  }
  literals = map.Data() + mapSpace;
  codes = literals + literalSpace;
  rowCodes = codes + rowSpace * rows;
  return true;
}

void CodeRowWriter::Begin(int32_t width, int32_t height, int32_t bytesOfLiteral) {
  mapRowBytes = CodeMapRowBytes(width);
  mapSize = mapRowBytes * height;
  codeSize = 0;
  literalSize = 0;
  literalBytes = bytesOfLiteral;
  mapRow = map.Data();
  // Behind the end of a row, where no code is stored, a group is filled up with 0.
  const int32_t codeBytes = CodeRowBytes(width);
  std::memset(rowCodes, 0, static_cast<size_t>(mapRowBytes) * kGroupCodeBytes);
  std::memset(rowCodes, kFirstRowCodes, static_cast<size_t>(codeBytes));
  for (int32_t k = 0; k < mapRowBytes * kGroupUnits; ++k) unitCodes[static_cast<size_t>(k)] = k < codeBytes * 2 ? 1 : 0;
}

// Whether the units of a group all have one code in the row above, and keep it.
template <typename Vector>
[[gnu::always_inline]] inline bool CodeRowWriter::KeepsRun(const UnitRow& row, int32_t first, int32_t count) const {
  const auto above = LoadAs<uint64_t>(rowCodes + first / 2);
  const auto code = static_cast<int32_t>(above & 0x0F);
  if (code == kLiteralUnit || above != (static_cast<uint64_t>(code) * kLowestCodeBits & CodeBitsOf(count)))
    return false;
  const ptrdiff_t offset = row.offsets[static_cast<size_t>(code)];
  if (offset == 0 || first < UnitsToTheLeft(code) - row.unitsToTheLeft) return false;
  const uint8_t* const units = row.units + 2 * first;
  const int32_t next = row.withNext ? 2 : 0;
  if (count < kGroupUnits) return std::equal(units, units + 2 * count + next, units + offset);
  constexpr int32_t groupBytes = kGroupUnits * 2;
  Vector different = {};
  for (int32_t at = 0; at < groupBytes; at += sizeof(Vector)) {
    different |= LoadAs<Vector>(units + at) ^ LoadAs<Vector>(units + offset + at);
  }
  const uint8_t* const behind = units + groupBytes - 2 + next;
  return !HasBits(different) && LoadAs<uint16_t>(behind) == LoadAs<uint16_t>(behind + offset);
}

// Unit by unit, wherever the group lies.
void CodeRowWriter::ChooseUnits(const UnitRow& row, int32_t first, int32_t count, Group& chosen) const {
  for (int32_t k = 0; k < count; ++k) {
    const uint8_t* const unit = row.units + 2 * (first + k);
    uint32_t found = kLiteralFound;
    for (int32_t rank = 0; rank < kUnitCodes - 1; ++rank) {
      const int32_t code = search.CodeOf(rank);
      const ptrdiff_t offset = row.offsets[static_cast<size_t>(code)];
      if (offset == 0 || first + k < UnitsToTheLeft(code) - row.unitsToTheLeft) continue;
      if (std::memcmp(unit, unit + offset, row.withNext ? 4 : 2) == 0) found |= 1u << rank;
    }
    chosen[k] = static_cast<int16_t>(search.Choose(found, unitCodes.Data()[first + k]));
  }
  std::fill(chosen + count, chosen + kGroupUnits, int16_t{0});
}

// The same for a whole group.
template <typename Vector, bool kIsFirst, bool kMayHaveNext>
[[gnu::always_inline]] inline void CodeRowWriter::ChooseGroup(const UnitRow& row, int32_t first, Group& chosen) const {
  constexpr int32_t lanes = sizeof(Vector) / 2;
  const ptrdiff_t next = row.withNext ? 2 : 0;
  for (int32_t at = 0; at < kGroupUnits; at += lanes) {
    const uint8_t* const units = row.units + 2 * (first + at);
    const auto unit = LoadAs<Vector>(units);
    const auto unitBehind = LoadAs<Vector>(units + next);
    const auto above = LoadAs<Vector>(unitCodes.Data() + first + at);
    Vector choice = {};
    Vector keeps = {};
    for (int32_t i = 0; i < candidateCount; ++i) {
      const Candidate& candidate = candidates[i];
      Vector equal = unit == LoadAs<Vector>(units + candidate.offset);
      if (kMayHaveNext) equal &= unitBehind == LoadAs<Vector>(units + candidate.offset + next);
      if (kIsFirst) {
        const auto start = static_cast<int16_t>(candidate.unitsToTheLeft - row.unitsToTheLeft);
        equal &= LoadAs<Vector>(kLaneNumbers.data() + at) >= Vector{} + start;
      }
      const Vector code = Vector{} + candidate.code;
      choice = equal ? code : choice;
      keeps |= equal & (above == code);
    }
    StoreAs(chosen + at, keeps ? above : choice);
  }
}

void CodeRowWriter::PutGroup(const UnitRow& row, int32_t first, int32_t count, const Group& chosen) {
  uint64_t codesNow = 0;
  for (int32_t i = 0; i < kGroupUnits / 4; ++i) {
    const auto four = LoadAs<uint64_t>(chosen + 4 * i);
    codesNow |= ((four | four >> 12 | four >> 24 | four >> 36) & 0xFFFF) << 16 * i;
  }
  codesNow &= CodeBitsOf(count);
  uint8_t* const above = rowCodes + first / 2;
  uint64_t different = LoadAs<uint64_t>(above) ^ codesNow;
  if (different != 0) {
    StoreAs(above, codesNow);
    std::memcpy(unitCodes.Data() + first, chosen, sizeof(chosen));
    for (int32_t k = count; k < kGroupUnits; ++k) unitCodes.Data()[first + k] = 0;
  }
  uint8_t changes = 0;
  while (different != 0) {
    const int32_t byte = std::countr_zero(different) / 8;
    changes = static_cast<uint8_t>(changes | 1u << byte);
    codes[codeSize++] = static_cast<uint8_t>(codesNow >> 8 * byte);
    different &= ~(uint64_t{0xFF} << 8 * byte);
  }
  mapRow[first / kGroupUnits] = changes;
  for (uint64_t left = FindLiterals(codesNow) & CodeBitsOf(count); left != 0; left &= left - 1) {
    PutLiteral(row.units + 2 * (first + std::countr_zero(left) / 4));
  }
}

// The left pixel goes into the lowest bits.
void CodeRowWriter::PutLiteral(const uint8_t* unit) {
  uint8_t* const to = literals + literalSize;
  if (literalBytes == 1) {
    to[0] = static_cast<uint8_t>((unit[0] & 0x0F) | unit[0] >> 4 << 2 | unit[1] << 4 | unit[1] >> 4 << 6);
  } else {
    std::memcpy(to, unit, 2);
  }
  literalSize += literalBytes;
}

template <typename Vector>
[[gnu::always_inline]] inline void CodeRowWriter::PutGroups(const UnitRow& row) {
  constexpr ptrdiff_t groupBytes = kGroupUnits * 2;
  const ptrdiff_t farthest = *std::min_element(row.offsets.begin(), row.offsets.end());
  const ptrdiff_t nearest = *std::max_element(row.offsets.begin(), row.offsets.end());
  const ptrdiff_t reach = groupBytes + (row.withNext ? 2 : 0) + nearest;
  for (int32_t k = 0; k < row.count; k += kGroupUnits) {
    const int32_t count = std::min(row.count - k, kGroupUnits);
    const uint8_t* const units = row.units + 2 * k;
    const bool isInside = units - row.memory + farthest >= 0 && row.memoryEnd - units >= reach;
    if (isInside && KeepsRun<Vector>(row, k, count)) {
      mapRow[k / kGroupUnits] = 0;
      continue;
    }
    Group chosen;
    if (!isInside) {
      ChooseUnits(row, k, count, chosen);
    } else if (k == 0) {
      ChooseGroup<Vector, true, true>(row, k, chosen);
    } else if (row.withNext) {
      ChooseGroup<Vector, false, true>(row, k, chosen);
    } else {
      ChooseGroup<Vector, false, false>(row, k, chosen);
    }
    PutGroup(row, k, count, chosen);
  }
}

SORVEL_WIDE void CodeRowWriter::PutGroupsWide(const UnitRow& row) {
  PutGroups<Numbers16x16>(row);
}

void CodeRowWriter::PutRow(const UnitRow& row) {
  // The codes that the row may have, the first choice last.
  candidateCount = 0;
  for (int32_t rank = kUnitCodes - 2; rank >= 0; --rank) {
    const int32_t code = search.CodeOf(rank);
    const ptrdiff_t offset = row.offsets[static_cast<size_t>(code)];
    if (offset != 0) candidates[candidateCount++] = {static_cast<int16_t>(code), UnitsToTheLeft(code), offset};
  }
  if (HasWideVectors()) {
    PutGroupsWide(row);
  } else {
    PutGroups<Numbers16x8>(row);
  }
  mapRow += mapRowBytes;
}

int32_t CountCodes(const uint8_t* mapRow, int32_t width) {
  int32_t count = 0;
  ForMapWords(mapRow, width, [&count](int32_t, uint64_t word) { count += std::popcount(word); });
  return count;
}

void LoadCodeRow(const uint8_t* mapRow, int32_t width, const uint8_t** next, const uint8_t* end, int32_t behindEnd,
                 uint8_t* row) {
  ForMapWords(mapRow, width, [=](int32_t first, uint64_t word) {
    for (; word != 0; word &= word - 1) {
      uint8_t* const code = row + first + std::countr_zero(word);
      if (*next < end) {
        *code = *(*next)++;
      } else if (behindEnd != kCodeOfRowAbove) {
        *code = static_cast<uint8_t>(behindEnd);
      }
    }
  });
}

}  // namespace sorvel
