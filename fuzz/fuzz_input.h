#pragma once

#include <sys/mman.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <vector>

#include "foundation/byte_stream.h"

namespace sorvel::fuzz {

// The input as a stream of the program. The bytes are copied to a block of just their size, so that a read behind
// their end is seen.
class InputStream {
 public:
  InputStream(const uint8_t* data, size_t size) : bytes(data, data + size) {
    stream.buffer = bytes.data();
    stream.size = stream.capacity = static_cast<int32_t>(size);
  }

  ByteStream* Get() { return &stream; }

 private:
  std::vector<uint8_t> bytes;
  BufferStream stream;
};

// The path of a file that holds the input, for readers that open their files themselves. It is in memory and this
// process's own.
inline const char* InputFile(const uint8_t* data, size_t size) {
  static char path[64];
  static const int descriptor = memfd_create("input", 0);
  std::snprintf(path, sizeof(path), "/proc/self/fd/%d", descriptor);
  FILE* file = std::fopen(path, "wb");
  if (file != nullptr) {
    if (size > 0) std::fwrite(data, size, 1, file);
    std::fclose(file);
  }
  return path;
}

// Stops the run: a rule that has to hold didn't.
inline void Require(bool holds) {
  if (!holds) __builtin_trap();
}

}  // namespace sorvel::fuzz
