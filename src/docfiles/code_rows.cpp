#include "docfiles/code_rows.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

namespace sorvel {

bool CodeRowWriter::Allocate(int32_t width, int32_t height) {
  const size_t rows = static_cast<size_t>(std::max(height, 0));
  const size_t mapSpace = static_cast<size_t>(CodeMapRowBytes(width)) * rows;
  const size_t rowSpace = static_cast<size_t>(CodeRowBytes(width));
  if (!map.Allocate(mapSpace + rowSpace * (rows + 2))) return false;
  codes = map.Data() + mapSpace;
  previousRow = codes + rowSpace * rows;
  currentRow = previousRow + rowSpace;
  return true;
}

void CodeRowWriter::Begin(int32_t width, int32_t height) {
  rowBytes = CodeRowBytes(width);
  mapRowBytes = CodeMapRowBytes(width);
  mapSize = mapRowBytes * height;
  codeSize = 0;
  mapRow = map.Data();
  std::memset(mapRow, 0, static_cast<size_t>(mapSize));
  std::memset(previousRow, kFirstRowCodes, static_cast<size_t>(rowBytes));
}

void CodeRowWriter::EndRow() {
  for (int32_t i = 0; i < rowBytes; ++i) {
    if (currentRow[i] == previousRow[i]) continue;
    codes[codeSize++] = currentRow[i];
    mapRow[i / 8] = static_cast<uint8_t>(mapRow[i / 8] | 1u << (i % 8));
  }
  mapRow += mapRowBytes;
  std::swap(currentRow, previousRow);
}

int32_t CountCodes(const uint8_t* mapRow, int32_t width) {
  const int32_t mapRowBytes = CodeMapRowBytes(width);
  const int32_t spareBits = mapRowBytes * 8 - CodeRowBytes(width);
  int32_t count = 0;
  for (int32_t i = 0; i < mapRowBytes - 1; ++i) count += std::popcount(mapRow[i]);
  return count + std::popcount(static_cast<uint8_t>(mapRow[mapRowBytes - 1] << spareBits));
}

void LoadCodeRow(const uint8_t* mapRow, int32_t width, const uint8_t** next, const uint8_t* end, int32_t behindEnd,
                 uint8_t* row) {
  const int32_t rowBytes = CodeRowBytes(width);
  const int32_t mapRowBytes = CodeMapRowBytes(width);
  for (int32_t m = 0; m < mapRowBytes; ++m) {
    for (uint32_t set = mapRow[m]; set != 0; set &= set - 1) {
      const int32_t i = m * 8 + std::countr_zero(set);
      if (i >= rowBytes) return;
      if (*next < end) {
        row[i] = *(*next)++;
      } else if (behindEnd != kCodeOfRowAbove) {
        row[i] = static_cast<uint8_t>(behindEnd);
      }
    }
  }
}

}  // namespace sorvel
