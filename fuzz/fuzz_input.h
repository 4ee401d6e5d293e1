#pragma once

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <system_error>
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

// The path of a file that holds the input, for readers that open their files themselves, and for writers that put
// another file in its place. It lies in a folder of this process's own, which goes with it. What was kept of the files
// that writers replaced is gone with the next input: damaged ones would add up.
inline const char* InputFile(const uint8_t* data, size_t size) {
  static struct Place {
    Place() { std::filesystem::create_directory(folder, ignored); }
    ~Place() { std::filesystem::remove_all(folder, ignored); }
    std::error_code ignored;
    std::filesystem::path folder = std::filesystem::temp_directory_path() / ("sorvel-fuzz-" + std::to_string(getpid()));
    std::string path = folder / "input";
  } place;
  std::filesystem::remove_all(place.folder / ".sorvel", place.ignored);
  FILE* file = std::fopen(place.path.c_str(), "wb");
  if (file != nullptr) {
    if (size > 0) std::fwrite(data, size, 1, file);
    std::fclose(file);
  }
  return place.path.c_str();
}

// Stops the run: a rule that has to hold didn't.
inline void Require(bool holds) {
  if (!holds) __builtin_trap();
}

}  // namespace sorvel::fuzz
