#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

#include "foundation/buffer.h"

namespace sorvel::console {

// An imported picture: red, green and blue of each pixel, or one byte of grey. Rows run from top to bottom.
struct Picture {
  // False if there is no memory for it, or if it is larger than a canvas or a scan can be.
  bool Allocate(int64_t newWidth, int64_t newHeight, int32_t newChannels = 3);
  const uint8_t* Row(int32_t y) const { return samples.Data() + RowOffset(y); }
  uint8_t* Row(int32_t y) { return samples.Data() + RowOffset(y); }

  int32_t width = 0;
  int32_t height = 0;
  int32_t channels = 3;  // 3, or 1 for grey

 private:
  size_t RowOffset(int32_t y) const {
    return static_cast<size_t>(y) * static_cast<size_t>(width) * static_cast<size_t>(channels);
  }

  Buffer<uint8_t> samples;
};

constexpr int32_t kLargestPictureSide = 32767;
constexpr int64_t kMostPicturePixels = int64_t{1} << 27;

// Reads a picture of the kind that its first bytes tell: BMP of 1, 4, 8, 24 or 32 bits, PNG, and PGM or PPM, plain or
// binary. What is transparent in a PNG shows white paper. False, with the reason, for another kind or a damaged file;
// no more memory is taken than the file can account for.
bool ReadPicture(FILE* file, Picture* picture, std::string* problem);

}  // namespace sorvel::console
