#pragma once

#include <cstdint>
#include <cstring>

#include "docfiles/code_rows.h"

namespace sorvel {

// What encoder and decoder of compiled streams share.

constexpr char kStreamMagic[] = "CA";
constexpr char kContainerMagic[] = "SV";

// The part of a compiled stream from here on, the cut record, goes into a film container as it stands.
constexpr int32_t kCutRecordOffset = 6;

// Texts are cut to this many bytes with their terminator on reading.
constexpr int32_t kStreamTextLimit = 256;

// The code of a block of four pixels that is the same as in the frame before. The other codes are those of cells.
constexpr int32_t kPreviousFrameBlock = 15;

// Four pixels of the bitmap's planes as they lie in memory, and the bits of the low plane in them.
constexpr uint32_t kPlaneBits = 0x0F0F0F0F;

inline uint32_t LoadBlock(const uint8_t* bytes) {
  uint32_t block = 0;
  std::memcpy(&block, bytes, sizeof(block));
  return block;
}

// Bytes of a frame from its time to the sizes of its sections.
constexpr int32_t kFrameHeadBytes = 25;

}  // namespace sorvel
