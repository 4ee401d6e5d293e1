#pragma once

#include <cstdint>

namespace sorvel {

// Whether a byte of Shift JIS text is the first of a character of two bytes. The second byte may be any ASCII letter, a
// dot or a backslash, so a search in such text has to skip it.
constexpr bool IsLeadByte(char byte) {
  const auto value = static_cast<uint8_t>(byte);
  return (value >= 0x81 && value <= 0x9F) || (value >= 0xE0 && value <= 0xFC);
}

}  // namespace sorvel
