#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace sorvel::console {

// A picture from outside: red, green and blue of each pixel, rows from top to bottom.
struct Picture {
  int32_t width = 0;
  int32_t height = 0;
  std::vector<uint8_t> rgb;
};

// No side of a picture is longer than a canvas can be.
constexpr int32_t kLargestPictureSide = 32767;

// Reads a picture of the kind that its first bytes tell: BMP of 1, 4, 8, 24 or 32 bits, PNG, and PGM or PPM, plain or
// binary. What is transparent in a PNG shows white paper. False, with the reason, for another kind or a damaged file;
// no more memory is taken than the file can account for.
bool ReadPicture(FILE* file, Picture* picture, std::string* problem);

}  // namespace sorvel::console
