#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "support/test_program.h"

namespace sorvel::teststreams {

// The checksum of zip and PNG, as a number and as eight hexadecimal digits.
inline uint32_t Crc32(const Bytes& bytes) {
  uint32_t crc = 0xFFFFFFFF;
  for (uint8_t byte : bytes) {
    crc ^= byte;
    for (int i = 0; i < 8; ++i) crc = (crc & 1) != 0 ? crc >> 1 ^ 0xEDB88320 : crc >> 1;
  }
  return ~crc;
}

inline std::string ZipChecksum(const Bytes& bytes) {
  char text[9];
  std::snprintf(text, sizeof text, "%08x", Crc32(bytes));
  return text;
}

// The number that a character stands for in a picture: '.' is 0, digits are themselves, and 'a' is 10.
inline uint8_t PictureValue(char c) {
  return static_cast<uint8_t>(c == '.' ? 0 : c <= '9' ? c - '0' : c - 'a' + 10);
}

// The checksums of a picture's byte image, of a cell with two pixels a byte and of a view with one. Rows take a
// multiple of 4 bytes.
inline std::string CellChecksum(const std::vector<std::string>& rows) {
  Bytes bytes;
  for (const std::string& row : rows) {
    Bytes packed(((row.size() + 1) / 2 + 3) / 4 * 4, 0);
    for (size_t x = 0; x < row.size(); ++x) {
      const int shift = x % 2 == 0 ? 4 : 0;
      packed[x / 2] = static_cast<uint8_t>(packed[x / 2] | PictureValue(row[x]) << shift);
    }
    bytes.insert(bytes.end(), packed.begin(), packed.end());
  }
  return ZipChecksum(bytes);
}

inline std::string ViewChecksum(const std::vector<std::string>& rows) {
  Bytes bytes;
  for (const std::string& row : rows) {
    Bytes line((row.size() + 3) / 4 * 4, 0);
    for (size_t x = 0; x < row.size(); ++x) line[x] = PictureValue(row[x]);
    bytes.insert(bytes.end(), line.begin(), line.end());
  }
  return ZipChecksum(bytes);
}

// A bitmap file without compression. A negative height is one from top to bottom; rows are padded to 4 bytes.
inline Bytes Bmp(int32_t width, int32_t height, int32_t bits, const Bytes& palette, const Bytes& rows,
                 uint32_t colorsUsed = 0) {
  const uint32_t offset = static_cast<uint32_t>(54 + palette.size());
  return Join({{'B', 'M'},
               Le32(offset + static_cast<uint32_t>(rows.size())),
               Le32(0),
               Le32(offset),
               Le32(40),
               Le32(static_cast<uint32_t>(width)),
               Le32(static_cast<uint32_t>(height)),
               Le16(1),
               Le16(bits),
               Le32(0),
               Le32(0),
               Le32(0),
               Le32(0),
               Le32(colorsUsed),
               Le32(0),
               palette,
               rows});
}

// Runs a script of these lines, named test.sorvel, with the settings settings.ini.
inline Answer RunScript(const Folder& folder, const std::string& lines) {
  folder.Write("test.sorvel", Bytes(lines.begin(), lines.end()));
  return folder.Sorvel({"run", "test.sorvel", "--settings", "settings.ini"});
}

}  // namespace sorvel::teststreams
