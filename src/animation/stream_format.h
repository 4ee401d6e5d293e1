#pragma once

#include <cstdint>

namespace sorvel {

// What encoder and decoder of compiled streams share.

constexpr char kStreamMagic[] = "CA";
constexpr char kContainerMagic[] = "SV";

// The part of a compiled stream from here on, the cut record, goes into a film container as it stands.
constexpr int32_t kCutRecordOffset = 6;

// Texts are cut to this many bytes with their terminator on reading.
constexpr int32_t kStreamTextLimit = 256;

// The source of a block of four pixels by its code, relative to the block, in the plane of the frame at work. Code 0
// is a literal and code 15 the same place in the frame before.
struct BlockOffset {
  int8_t dx;
  int8_t dy;
};

constexpr int32_t kLiteralBlock = 0;
constexpr int32_t kPreviousFrameBlock = 15;
constexpr int32_t kBlockCodes = 16;

constexpr BlockOffset kBlockOffsets[kBlockCodes] = {
    {0, 0},   {-4, 0}, {-8, 0},  {-16, 0}, {0, -1}, {-4, -1}, {0, -2},  {-4, -2},
    {-8, -2}, {0, -4}, {-4, -4}, {-8, -4}, {0, -8}, {-4, -8}, {-8, -8}, {0, 0},
};

// At the start of a box all codes of the row above count as 1.
constexpr uint8_t kFirstRowCodes = 0x11;

// Sizes of the sections of a frame by the size of its box.
constexpr int32_t RowBytes(int32_t boxWidth) {
  return (boxWidth + 7) / 8;
}
constexpr int32_t MapRowBytes(int32_t boxWidth) {
  return (RowBytes(boxWidth) + 7) / 8;
}

// Bytes of a frame from its time to the sizes of its sections.
constexpr int32_t kFrameHeadBytes = 25;

}  // namespace sorvel
