#pragma once

#include <cstdint>

#include "foundation/little_endian.h"

// The heads of Windows bitmaps without compression. A bitmap in memory (DIB) is an info head, the colour table with
// 4 bytes a colour, and the rows; a bitmap file has a file head before that.
namespace sorvel {

constexpr int32_t kBitmapFileHeadBytes = 14;
constexpr int32_t kBitmapInfoHeadBytes = 40;
constexpr int32_t kBitmapHeadBytes = kBitmapFileHeadBytes + kBitmapInfoHeadBytes;

// The fields of an info head that vary.
struct BitmapInfo {
  int32_t width = 0;
  int32_t height = 0;  // negative when the top row comes first
  int32_t bitsPerPixel = 0;
  uint32_t compression = 0;  // 0 is none
  uint32_t colorsUsed = 0;   // entries of the colour table; 0 is as many as the pixels can name
};

// Rows are padded to 4 bytes.
constexpr int64_t BitmapRowBytes(int64_t width, int32_t bitsPerPixel) {
  return (width * bitsPerPixel + 31) / 32 * 4;
}

inline void PutBitmapInfo(uint8_t (&head)[kBitmapInfoHeadBytes], const BitmapInfo& info) {
  for (uint8_t& byte : head) byte = 0;
  PutLittleEndian(head, 4, kBitmapInfoHeadBytes);
  PutLittleEndian(head + 4, 4, static_cast<uint32_t>(info.width));
  PutLittleEndian(head + 8, 4, static_cast<uint32_t>(info.height));
  PutLittleEndian(head + 12, 2, 1);  // planes
  PutLittleEndian(head + 14, 2, static_cast<uint32_t>(info.bitsPerPixel));
  PutLittleEndian(head + 16, 4, info.compression);
  PutLittleEndian(head + 32, 4, info.colorsUsed);
}

// Reads the fields behind the first one, which tells the size of the head.
inline BitmapInfo GetBitmapInfo(const uint8_t* head) {
  return {static_cast<int32_t>(LittleEndian(head + 4, 4)), static_cast<int32_t>(LittleEndian(head + 8, 4)),
          static_cast<int32_t>(LittleEndian(head + 14, 2)), LittleEndian(head + 16, 4), LittleEndian(head + 32, 4)};
}

inline bool IsBitmapFile(const uint8_t* start) {
  return start[0] == 'B' && start[1] == 'M';
}

// Writes both heads of a file whose pixels, `pixelBytes` of them, lie right behind the colour table.
template <typename Stream>
void WriteBitmapHeads(Stream& stream, const BitmapInfo& info, int32_t pixelBytes) {
  const uint32_t pixelOffset = kBitmapHeadBytes + info.colorsUsed * 4;
  uint8_t file[kBitmapFileHeadBytes] = {'B', 'M'};
  PutLittleEndian(file + 2, 4, pixelOffset + static_cast<uint32_t>(pixelBytes));
  PutLittleEndian(file + 10, 4, pixelOffset);
  uint8_t head[kBitmapInfoHeadBytes];
  PutBitmapInfo(head, info);
  stream.Write(file, kBitmapFileHeadBytes);
  stream.Write(head, kBitmapInfoHeadBytes);
}

}  // namespace sorvel
