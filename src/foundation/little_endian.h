#pragma once

#include <cstdint>

namespace sorvel {

// The number that lies in `count` bytes, up to 4, the lowest first.
inline uint32_t LittleEndian(const uint8_t* bytes, int32_t count) {
  uint32_t value = 0;
  for (int32_t i = count; i-- > 0;) value = value << 8 | bytes[i];
  return value;
}

// The reverse.
inline void PutLittleEndian(uint8_t* bytes, int32_t count, uint32_t value) {
  for (int32_t i = 0; i < count; ++i) bytes[i] = static_cast<uint8_t>(value >> 8 * i);
}

}  // namespace sorvel
