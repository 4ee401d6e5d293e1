#pragma once

#include <cstdint>
#include <string>

namespace sorvel {

// Tells paths apart in names of files that are made for them. It stays the same from one start to the next.
inline uint64_t PathHash(const std::string& path) {
  uint64_t hash = 14695981039346656037u;
  for (const char byte : path) hash = (hash ^ static_cast<uint8_t>(byte)) * 1099511628211u;
  return hash;
}

}  // namespace sorvel
