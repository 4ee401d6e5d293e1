#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "foundation/buffer.h"
#include "foundation/vectors.h"

namespace sorvel {

// The compression that cells and compiled streams share. A picture is cut into units of four pixels. Each unit has a
// code of four bits, which says where it is copied from; code 0 means that its pixels are stored (a literal). Two codes
// make a byte. Of a row's code bytes only those that differ from the row above are stored; a bit map, the change map,
// says which they are.

constexpr int32_t kUnitCodes = 16;
constexpr int32_t kLiteralUnit = 0;

// The source of a unit by its code, in pixels relative to the unit. Code 0 is stored pixels, and code 15 of a compiled
// stream is the same place in the frame before.
struct UnitOffset {
  int8_t dx;
  int8_t dy;
};

constexpr UnitOffset kUnitOffsets[kUnitCodes] = {
    {0, 0},   {-4, 0}, {-8, 0},  {-16, 0}, {0, -1}, {-4, -1}, {0, -2},  {-4, -2},
    {-8, -2}, {0, -4}, {-4, -4}, {-8, -4}, {0, -8}, {-4, -8}, {-8, -8}, {0, -16},
};

// At the start of a picture all codes of the row above count as 1.
constexpr uint8_t kFirstRowCodes = 0x11;

// Units in a row of so many pixels, bytes of their codes, and bytes of the map of those.
constexpr int32_t UnitsOf(int32_t width) {
  return (width + 3) / 4;
}
constexpr int32_t CodeRowBytes(int32_t width) {
  return (width + 7) / 8;
}
constexpr int32_t CodeMapRowBytes(int32_t width) {
  return (CodeRowBytes(width) + 7) / 8;
}

// The code of unit k in a row of code bytes: the even k is in the low nibble.
inline int32_t CodeAt(const uint8_t* row, int32_t k) {
  return row[k / 2] >> (k % 2 * 4) & 0x0F;
}

// The order in which a writer prefers codes: 15 sources, then the literal, which always fits. A set of codes is a bit
// mask of ranks in this order; the lowest bit is the first choice.
class CodeSearch {
 public:
  constexpr explicit CodeSearch(const uint8_t (&codesInOrder)[kUnitCodes]) {
    for (uint8_t rank = 0; rank < kUnitCodes; ++rank) {
      order[rank] = codesInOrder[rank];
      ranks[codesInOrder[rank]] = rank;
    }
  }

  constexpr int32_t CodeOf(int32_t rank) const { return order[static_cast<size_t>(rank)]; }
  constexpr int32_t RankOf(int32_t code) const { return ranks[static_cast<size_t>(code)]; }

  // Prefers the code of the row above, which needs no byte; then the order decides.
  int32_t Choose(uint32_t found, int32_t above) const {
    const bool keeps = above != kLiteralUnit && (found >> ranks[static_cast<size_t>(above)] & 1) != 0;
    return keeps ? above : order[static_cast<size_t>(std::countr_zero(found))];
  }

 private:
  std::array<uint8_t, kUnitCodes> order{};
  std::array<uint8_t, kUnitCodes> ranks{};
};

// The literal's place in such a set.
constexpr uint32_t kLiteralFound = 1u << (kUnitCodes - 1);

// Where a row of units of two bytes lies in memory, and what may be its sources.
struct UnitRow {
  const uint8_t* units;
  int32_t count;
  // By the code, how many bytes away the source of a unit lies; 0 if no unit of the row has one.
  std::array<ptrdiff_t, kUnitCodes> offsets;
  // How many units to the left of the first are part of the picture.
  int32_t unitsToTheLeft;
  // A source only counts if the unit behind it, too, equals the one behind the unit, as they lie in memory.
  bool withNext;
  // Memory that may be read.
  const uint8_t* memory;
  const uint8_t* memoryEnd;
};

// Gathers the code rows of one picture after another.
class CodeRowWriter {
 public:
  explicit CodeRowWriter(const CodeSearch& order);

  // Makes room for pictures up to this size; false if there is no memory for it.
  bool Allocate(int32_t width, int32_t height);
  // Begins a picture. Its literals take a byte, two bits a pixel, or two bytes.
  void Begin(int32_t width, int32_t height, int32_t literalBytes);
  // The rows come in order, from top to bottom.
  void PutRow(const UnitRow& row);

  // What has been gathered of the picture.
  const uint8_t* Map() const { return map.Data(); }
  int32_t MapSize() const { return mapSize; }
  const uint8_t* Codes() const { return codes; }
  int32_t CodeSize() const { return codeSize; }
  const uint8_t* Literals() const { return literals; }
  int32_t LiteralSize() const { return literalSize; }

 private:
  using Group = int16_t[16];
  struct Candidate {
    int16_t code;
    int32_t unitsToTheLeft;  // to its source
    ptrdiff_t offset;
  };

  void PutGroups(const UnitRow& row);
  bool KeepsRun(const UnitRow& row, int32_t first, int32_t count) const;
  void ChooseUnits(const UnitRow& row, int32_t first, int32_t count, Group& chosen) const;
  template <bool kIsFirst, bool kMayHaveNext>
  void ChooseGroup(const UnitRow& row, int32_t first, Group& chosen) const;
  void PutGroup(const UnitRow& row, int32_t first, int32_t count, const Group& chosen);
  bool IsInside(const UnitRow& row) const;
  template <bool kMayHaveNext>
  void PutRowWide(const UnitRow& row);
  bool KeepsRunWide(const UnitRow& row, int32_t first, int32_t count) const;
  void PutGroupWide(const uint8_t* units, int32_t first, int32_t count, const Words16x16& found);
  void PutLiteral(const uint8_t* unit);

  CodeSearch search;
  // By code the low and the high byte of its rank's bit, and by the number of such a bit its code; each twice.
  std::array<uint8_t, 32> bitsOfCodes[2] = {};
  std::array<uint8_t, 32> codesOfBits = {};
  Candidate candidates[kUnitCodes];  // of the row in hand
  int32_t candidateCount = 0;
  Buffer<uint8_t> map;  // and the memory of the next three behind it
  uint8_t* literals = nullptr;
  uint8_t* codes = nullptr;
  uint8_t* rowCodes = nullptr;  // of the row above
  Buffer<int16_t> unitCodes;    // the same, a number for each unit
  uint8_t* mapRow = nullptr;
  int32_t mapRowBytes = 0;
  int32_t mapSize = 0;
  int32_t codeSize = 0;
  int32_t literalSize = 0;
  int32_t literalBytes = 2;
};

// How many code bytes rows of the map ask for. Bits behind a row's last code byte ask for none.
int32_t CountCodes(const uint8_t* map, int32_t width, int32_t rows);

// For LoadCodeRow: behind the end the codes of the row above stay.
constexpr int32_t kCodeOfRowAbove = -1;
// Turns the code bytes of the row above into those of this row: replaces the bytes that its row of the change map names
// by the bytes from *next on, which it advances. Behind `end` it takes the byte `behindEnd`.
void LoadCodeRow(const uint8_t* mapRow, int32_t width, const uint8_t** next, const uint8_t* end, int32_t behindEnd,
                 uint8_t* row);

}  // namespace sorvel
