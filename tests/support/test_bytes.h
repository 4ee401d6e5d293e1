#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <initializer_list>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "foundation/byte_stream.h"

namespace sorvel::testbytes {

using Bytes = std::vector<uint8_t>;

// Pairs of hexadecimal digits; blanks and line ends between them don't count.
inline Bytes Hex(std::string_view text) {
  Bytes bytes;
  int digits = 0;
  int value = 0;
  for (char c : text) {
    if (c == ' ' || c == '\n') continue;
    value = value * 16 + (c <= '9' ? c - '0' : c <= 'F' ? c - 'A' + 10 : c - 'a' + 10);
    if (++digits == 2) {
      bytes.push_back(static_cast<uint8_t>(value));
      digits = 0;
      value = 0;
    }
  }
  return bytes;
}

inline Bytes& operator+=(Bytes& bytes, const Bytes& more) {
  bytes.insert(bytes.end(), more.begin(), more.end());
  return bytes;
}

inline Bytes operator+(Bytes bytes, const Bytes& more) {
  return bytes += more;
}

inline Bytes Join(std::initializer_list<Bytes> parts) {
  Bytes whole;
  for (const Bytes& part : parts) whole += part;
  return whole;
}

inline Bytes Le16(int32_t value) {
  return {static_cast<uint8_t>(value & 255), static_cast<uint8_t>(value >> 8 & 255)};
}

inline Bytes Le32(uint32_t value) {
  return Le16(static_cast<int32_t>(value & 0xFFFF)) + Le16(static_cast<int32_t>(value >> 16));
}

// With its zero byte.
inline Bytes Text(std::string_view text) {
  Bytes bytes(text.begin(), text.end());
  bytes.push_back(0);
  return bytes;
}

inline uint32_t U32At(const Bytes& bytes, size_t offset) {
  return static_cast<uint32_t>(bytes.at(offset) | bytes.at(offset + 1) << 8 | bytes.at(offset + 2) << 16) |
         static_cast<uint32_t>(bytes.at(offset + 3)) << 24;
}

inline int32_t I16At(const Bytes& bytes, size_t offset) {
  return static_cast<int16_t>(bytes.at(offset) | bytes.at(offset + 1) << 8);
}

inline Bytes Part(const Bytes& bytes, size_t from, size_t count) {
  return Bytes(bytes.begin() + static_cast<ptrdiff_t>(from), bytes.begin() + static_cast<ptrdiff_t>(from + count));
}

inline Bytes Head(const Bytes& bytes, size_t count) {
  return Part(bytes, 0, count);
}

inline Bytes From(const Bytes& bytes, size_t from) {
  return Part(bytes, from, bytes.size() - from);
}

// Calls `use` with a copy for each bit, in which it is turned over, and with the place of its byte.
template <typename Use>
void ForEachFlippedBit(const Bytes& bytes, const Use& use) {
  for (size_t at = 0; at < bytes.size(); ++at) {
    for (uint32_t bit = 0; bit < 8; ++bit) {
      Bytes damaged = bytes;
      damaged[at] = static_cast<uint8_t>(damaged[at] ^ 1u << bit);
      use(damaged, at);
    }
  }
}

// The same for each run of 1, 2 and 4 bytes from a place on, which become FF.
template <typename Use>
void ForEachLargestNumber(const Bytes& bytes, size_t from, const Use& use) {
  for (size_t count : {1u, 2u, 4u}) {
    for (size_t at = from; at + count <= bytes.size(); ++at) {
      Bytes damaged = bytes;
      for (size_t i = 0; i < count; ++i) damaged[at + i] = 0xFF;
      use(damaged, at);
    }
  }
}

// Bytes to be read through a stream; they fill their memory to the last one, so that a read behind them is caught.
class InputBytes {
 public:
  explicit InputBytes(const Bytes& content) : bytes(new uint8_t[content.size()]) {
    std::copy(content.begin(), content.end(), bytes.get());
    stream.buffer = bytes.get();
    stream.size = static_cast<int32_t>(content.size());
  }

  BufferStream stream;

 private:
  std::unique_ptr<uint8_t[]> bytes;
};

// A folder of the test's own, gone with all its files at the end.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::random_device random;
    std::error_code error;
    const std::filesystem::path base = std::filesystem::temp_directory_path(error);
    do {
      path = (base / ("sorvel_test_" + std::to_string(random()))).generic_string();
    } while (!std::filesystem::create_directory(path, error) && !error);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code error;
    std::filesystem::remove_all(path, error);
  }

  std::string Path(std::string_view name) const { return path + "/" + std::string(name); }

  std::string path;
};

inline void WriteFile(const std::string& path, std::string_view bytes) {
  FILE* file = std::fopen(path.c_str(), "wb");
  ASSERT_NE(file, nullptr);
  if (!bytes.empty()) {
    EXPECT_EQ(std::fwrite(bytes.data(), 1, bytes.size(), file), bytes.size());
  }
  std::fclose(file);
}

inline void WriteFile(const std::string& path, const Bytes& bytes) {
  WriteFile(path, std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
}

// The rest of an open file.
inline std::string ReadRest(FILE* file) {
  std::string bytes;
  for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) bytes += static_cast<char>(c);
  return bytes;
}

// The whole file; `missing` if it can't be opened.
inline std::string ReadFile(const std::string& path, const char* missing = "(no file)") {
  FILE* file = std::fopen(path.c_str(), "rb");
  if (file == nullptr) return missing;
  const std::string bytes = ReadRest(file);
  std::fclose(file);
  return bytes;
}

inline Bytes ReadBytes(const std::string& path) {
  const std::string bytes = ReadFile(path, "");
  return Bytes(bytes.begin(), bytes.end());
}

}  // namespace sorvel::testbytes
