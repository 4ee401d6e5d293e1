#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace rules {

// Appends the low bytes of a number, lowest first.
inline void PutLittle(std::string& bytes, int64_t value, size_t count) {
  for (size_t i = 0; i < count; ++i) bytes.push_back(static_cast<char>((value >> (8 * i)) & 0xFF));
}

// The low bytes of a number, lowest first.
inline std::string LittleBytes(int64_t value, size_t count) {
  std::string bytes;
  PutLittle(bytes, value, count);
  return bytes;
}

// The number of up to four bytes at this place, lowest byte first. A place that isn't in the bytes fails the running
// test and gives 0.
inline uint32_t LittleAt(const std::string& bytes, size_t offset, size_t count) {
  if (offset > bytes.size() || count > bytes.size() - offset) {
    ADD_FAILURE() << count << " bytes at " << offset << " are outside " << bytes.size() << " bytes";
    return 0;
  }
  uint32_t value = 0;
  for (size_t i = 0; i < count; ++i) {
    value |= static_cast<uint32_t>(static_cast<unsigned char>(bytes[offset + i])) << (8 * i);
  }
  return value;
}

}  // namespace rules
