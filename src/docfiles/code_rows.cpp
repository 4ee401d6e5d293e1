#include "docfiles/code_rows.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

#include "docfiles/unit_copy.h"
#include "docfiles/unit_vectors.h"
#include "foundation/vectors.h"

namespace sorvel {

namespace {

// How many units to its left the source of a unit with this code lies.
constexpr int32_t UnitsToTheLeft(int32_t code) {
  return -kUnitOffsets[code].dx / 4;
}

// One bit of 16, multiplied by this number, has a number of its own in the highest four bits.
constexpr uint16_t kBitNumbers = 0x09AF;

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

CodeRowWriter::CodeRowWriter(const CodeSearch& order) : search(order) {
  for (int32_t rank = 0; rank < kUnitCodes; ++rank) {
    const auto code = static_cast<size_t>(search.CodeOf(rank));
    const uint32_t bit = rank < kUnitCodes - 1 ? 1u << rank : 0;
    const size_t number = static_cast<uint16_t>(kBitNumbers << rank) >> 12;
    for (const size_t half : {size_t{0}, size_t{16}}) {
      bitsOfCodes[0][half + code] = static_cast<uint8_t>(bit);
      bitsOfCodes[1][half + code] = static_cast<uint8_t>(bit >> 8);
      codesOfBits[half + number] = static_cast<uint8_t>(code);
    }
  }
}

bool CodeRowWriter::Allocate(int32_t width, int32_t height) {
  const size_t rows = static_cast<size_t>(std::max(height, 0));
  const size_t mapSpace = static_cast<size_t>(CodeMapRowBytes(width)) * rows;
  const size_t rowSpace = static_cast<size_t>(CodeRowBytes(width));
  const size_t literalSpace = static_cast<size_t>(UnitsOf(width)) * 2 * rows;
  const size_t groups = static_cast<size_t>(CodeMapRowBytes(width));
  if (!map.Allocate(mapSpace + literalSpace + rowSpace * rows + groups * kGroupCodeBytes + 2 * kSpareUnitBytes) ||
      !unitCodes.Allocate(groups * kGroupUnits)) {
    return false;
  }
  literals = map.Data() + mapSpace;
  codes = literals + literalSpace + kSpareUnitBytes;
  rowCodes = codes + rowSpace * rows + kSpareUnitBytes;
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
bool CodeRowWriter::KeepsRun(const UnitRow& row, int32_t first, int32_t count) const {
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
  Bytes16 different = {};
  for (int32_t at = 0; at < groupBytes; at += sizeof(different)) {
    different |= LoadAs<Bytes16>(units + at) ^ LoadAs<Bytes16>(units + offset + at);
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
template <bool kIsFirst, bool kMayHaveNext>
void CodeRowWriter::ChooseGroup(const UnitRow& row, int32_t first, Group& chosen) const {
  constexpr int32_t lanes = sizeof(Numbers16x8) / 2;
  const ptrdiff_t next = row.withNext ? 2 : 0;
  for (int32_t at = 0; at < kGroupUnits; at += lanes) {
    const uint8_t* const units = row.units + 2 * (first + at);
    const auto unit = LoadAs<Numbers16x8>(units);
    const auto unitBehind = LoadAs<Numbers16x8>(units + next);
    const auto above = LoadAs<Numbers16x8>(unitCodes.Data() + first + at);
    Numbers16x8 choice = {};
    Numbers16x8 keeps = {};
    for (int32_t i = 0; i < candidateCount; ++i) {
      const Candidate& candidate = candidates[i];
      Numbers16x8 equal = unit == LoadAs<Numbers16x8>(units + candidate.offset);
      if (kMayHaveNext) equal &= unitBehind == LoadAs<Numbers16x8>(units + candidate.offset + next);
      if (kIsFirst) {
        const auto start = static_cast<int16_t>(candidate.unitsToTheLeft - row.unitsToTheLeft);
        equal &= LoadAs<Numbers16x8>(kLaneNumbers.data() + at) >= Numbers16x8{} + start;
      }
      const Numbers16x8 code = Numbers16x8{} + candidate.code;
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

void CodeRowWriter::PutGroups(const UnitRow& row) {
  // The codes that the row may have, the first choice last.
  candidateCount = 0;
  for (int32_t rank = kUnitCodes - 2; rank >= 0; --rank) {
    const int32_t code = search.CodeOf(rank);
    const ptrdiff_t offset = row.offsets[static_cast<size_t>(code)];
    if (offset != 0) candidates[candidateCount++] = {static_cast<int16_t>(code), UnitsToTheLeft(code), offset};
  }
  constexpr ptrdiff_t groupBytes = kGroupUnits * 2;
  const ptrdiff_t farthest = *std::min_element(row.offsets.begin(), row.offsets.end());
  const ptrdiff_t nearest = *std::max_element(row.offsets.begin(), row.offsets.end());
  const ptrdiff_t reach = groupBytes + (row.withNext ? 2 : 0) + nearest;
  for (int32_t k = 0; k < row.count; k += kGroupUnits) {
    const int32_t count = std::min(row.count - k, kGroupUnits);
    const uint8_t* const units = row.units + 2 * k;
    const bool isInside = units - row.memory + farthest >= 0 && row.memoryEnd - units >= reach;
    if (isInside && KeepsRun(row, k, count)) {
      mapRow[k / kGroupUnits] = 0;
      continue;
    }
    Group chosen;
    if (!isInside) {
      ChooseUnits(row, k, count, chosen);
    } else if (k == 0) {
      ChooseGroup<true, true>(row, k, chosen);
    } else if (row.withNext) {
      ChooseGroup<false, true>(row, k, chosen);
    } else {
      ChooseGroup<false, false>(row, k, chosen);
    }
    PutGroup(row, k, count, chosen);
  }
}

// By wide vectors, for rows whose sources all lie in memory. The sources that equal a unit are a set of ranks, as the
// bits of its lane.

namespace {

// What a row is compared with, by the rank of the code.
struct RankedSources {
  ptrdiff_t offsets[kUnitCodes - 1];
  int16_t starts[kUnitCodes - 1];  // the first unit that has such a source
};

// The sets of the units of a group, the literal's bit included.
template <bool kIsFirst>
SORVEL_WIDE_INLINE Words16x16 FindSources(const uint8_t* units, const RankedSources& sources) {
  const auto lanes = LoadWide<Numbers16x16>(kLaneNumbers.data());
  const auto unit = LoadWide<Words16x16>(units);
  Words16x16 found = Words16x16{} + 1;
  for (int32_t rank = kUnitCodes - 2; rank >= 0; --rank) {
    const ptrdiff_t offset = sources.offsets[rank];
    found += found;
    if (offset == 0) continue;
    auto equal = unit == LoadWide<Words16x16>(units + offset);
    if (kIsFirst) equal &= lanes >= sources.starts[rank];
    found -= reinterpret_cast<Words16x16>(equal);
  }
  return found;
}

}  // namespace

// Whether the units of a group all have one code in the row above, and keep it.
SORVEL_WIDE_INLINE bool CodeRowWriter::KeepsRunWide(const UnitRow& row, int32_t first, int32_t count) const {
  const auto above = LoadAs<uint64_t>(rowCodes + first / 2);
  const auto code = static_cast<int32_t>(above & 0x0F);
  if (code == kLiteralUnit || above != (static_cast<uint64_t>(code) * kLowestCodeBits & CodeBitsOf(count))) {
    return false;
  }
  const ptrdiff_t offset = row.offsets[static_cast<size_t>(code)];
  if (offset == 0 || first < UnitsToTheLeft(code) - row.unitsToTheLeft) return false;
  const uint8_t* const units = row.units + 2 * first;
  const auto different = LoadWide<Words16x16>(units) ^ LoadWide<Words16x16>(units + offset);
  const int32_t compared = count + (row.withNext ? 1 : 0);
  const auto unused = LoadWide<Numbers16x16>(kLaneNumbers.data()) >= static_cast<int16_t>(compared);
  if (HighestBits(reinterpret_cast<Words16x16>((different == 0) | unused)) != 0xFFFF) return false;
  const uint8_t* const behind = units + 2 * (compared - 1);
  return LoadAs<uint16_t>(behind) == LoadAs<uint16_t>(behind + offset);
}

SORVEL_WIDE_INLINE void CodeRowWriter::PutGroupWide(const uint8_t* units, int32_t first, int32_t count,
                                                    const Words16x16& found) {
  // The bit of the code above, if it isn't the literal's, is the first choice, then the lowest.
  const auto codesAbove = LoadWide<Words16x16>(unitCodes.Data() + first);
  const auto lowBits =
      PermuteBytes(LoadWide<Bytes32>(bitsOfCodes[0].data()), reinterpret_cast<Bytes32>(codesAbove | 0x8000));
  const auto highBits =
      PermuteBytes(LoadWide<Bytes32>(bitsOfCodes[1].data()), reinterpret_cast<Bytes32>(codesAbove << 8 | 0x80));
  const Words16x16 kept = found & reinterpret_cast<Words16x16>(lowBits | highBits);
  const auto used = LoadWide<Numbers16x16>(kLaneNumbers.data()) < static_cast<int16_t>(count);
  const Words16x16 choice = (kept != 0 ? kept : found & -found) & reinterpret_cast<Words16x16>(used);
  const auto chosen =
      reinterpret_cast<Words16x16>(PermuteBytes(LoadWide<Bytes32>(codesOfBits.data()),
                                                reinterpret_cast<Bytes32>(choice * kBitNumbers >> 12 | 0x8000))) &
      reinterpret_cast<Words16x16>(used);
  StoreAs(unitCodes.Data() + first, chosen);
  const uint64_t now = JoinHalfBytes(chosen);
  uint8_t* const above = rowCodes + first / 2;
  const uint32_t changes = FindDifferentBytes(LoadAs<uint64_t>(above), now);
  StoreAs(above, now);
  mapRow[first / kGroupUnits] = static_cast<uint8_t>(changes);
  StoreAs(codes + codeSize, TakeBytes(now, kLanesInSet[changes]));
  codeSize += std::popcount(changes);
  const uint32_t literalUnits = HighestBits(choice);
  if (literalUnits == 0) return;
  for (int32_t lane = 0; lane < kGroupUnits; lane += 8) {
    const uint32_t set = literalUnits >> lane & 0xFF;
    const auto taken =
        Permute(LoadAs<Words16x8>(units + 2 * lane), Spread<Words16x8>(LoadAs<uint64_t>(kLanesInSet[set].data())));
    if (literalBytes == 1) {
      const Words16x8 halves = (taken & 0x0F0F) | (taken >> 4 & 0x0F0F) << 2;
      constexpr Bytes16 low = {0, 2, 4, 6, 8, 10, 12, 14, 128, 128, 128, 128, 128, 128, 128, 128};
      StoreAs(literals + literalSize, PermuteBytes(reinterpret_cast<Bytes16>(halves | (halves >> 4 & 0xF0)), low));
    } else {
      StoreAs(literals + literalSize, taken);
    }
    literalSize += std::popcount(set) * literalBytes;
  }
}

template <bool kMayHaveNext>
SORVEL_WIDE void CodeRowWriter::PutRowWide(const UnitRow& row) {
  RankedSources sources;
  for (int32_t rank = 0; rank < kUnitCodes - 1; ++rank) {
    const int32_t code = search.CodeOf(rank);
    sources.offsets[rank] = row.offsets[static_cast<size_t>(code)];
    sources.starts[rank] = static_cast<int16_t>(UnitsToTheLeft(code) - row.unitsToTheLeft);
  }
  bool keeps = KeepsRunWide(row, 0, std::min(row.count, kGroupUnits));
  Words16x16 found = {};
  if (!keeps) found = FindSources<true>(row.units, sources);
  for (int32_t first = 0; first < row.count; first += kGroupUnits) {
    const int32_t next = first + kGroupUnits;
    const uint8_t* const units = row.units + 2 * first;
    const int32_t count = std::min(row.count - first, kGroupUnits);
    bool keepsNext = true;
    Words16x16 foundNext = {};
    if (next < row.count) keepsNext = KeepsRunWide(row, next, std::min(row.count - next, kGroupUnits));
    // The first unit of the next group is behind the last of this one.
    if (!keepsNext || (kMayHaveNext && !keeps && next <= row.count)) {
      foundNext = FindSources<false>(units + 2 * kGroupUnits, sources);
    }
    if (keeps) {
      mapRow[first / kGroupUnits] = 0;
    } else if (kMayHaveNext) {
      const auto foundBehind =
          __builtin_shufflevector(found, foundNext, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16);
      PutGroupWide(units, first, count, found & (foundBehind | 0x8000));
    } else {
      PutGroupWide(units, first, count, found);
    }
    found = foundNext;
    keeps = keepsNext;
  }
}

// Whether all units that a row is compared with lie in memory.
bool CodeRowWriter::IsInside(const UnitRow& row) const {
  const ptrdiff_t farthest = *std::min_element(row.offsets.begin(), row.offsets.end());
  const ptrdiff_t nearest = *std::max_element(row.offsets.begin(), row.offsets.end());
  const int32_t groups = row.withNext ? row.count / kGroupUnits + 1 : mapRowBytes;
  return row.units - row.memory + farthest >= 0 && row.memoryEnd - row.units >= groups * kGroupUnits * 2 + nearest;
}

void CodeRowWriter::PutRow(const UnitRow& row) {
  if (!HasWideVectors() || !IsInside(row)) {
    PutGroups(row);
  } else if (row.withNext) {
    PutRowWide<true>(row);
  } else {
    PutRowWide<false>(row);
  }
  mapRow += mapRowBytes;
}

namespace {

[[gnu::always_inline]] inline int32_t CountBits(const uint8_t* map, int32_t width, int32_t rows) {
  const int32_t rowBytes = CodeMapRowBytes(width);
  const int32_t behind = rowBytes * kGroupCodeBytes - CodeRowBytes(width);
  int32_t count = 0;
  for (; rows > 0; --rows, map += rowBytes) {
    int32_t i = 0;
    for (; i + 8 < rowBytes; i += 8) count += std::popcount(LoadAs<uint64_t>(map + i));
    if (i < rowBytes) count += std::popcount(LoadBytes(map + i, rowBytes - i) << (8 * (8 - rowBytes + i) + behind));
  }
  return count;
}

// These processors have an instruction for it.
SORVEL_WIDE int32_t CountBitsWide(const uint8_t* map, int32_t width, int32_t rows) {
  return CountBits(map, width, rows);
}

}  // namespace

int32_t CountCodes(const uint8_t* map, int32_t width, int32_t rows) {
  return HasWideVectors() ? CountBitsWide(map, width, rows) : CountBits(map, width, rows);
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
