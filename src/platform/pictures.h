#pragma once

#include <cstdint>
#include <vector>

// Pictures as files that other programs read.
namespace sorvel::platform {

// Writes a picture as a PNG file in memory: 8 bits of grey a pixel, not interlaced. The rows begin `pitch` bytes apart,
// the upper one first. False, with an empty file, for a picture without pixels or without memory.
bool EncodePng(const uint8_t* pixels, int32_t width, int32_t height, int32_t pitch, std::vector<uint8_t>* file);

// The same as a GIF file of one picture, whose colours are the 256 levels of grey. Not every platform can.
bool CanEncodeGif();
bool EncodeGif(const uint8_t* pixels, int32_t width, int32_t height, int32_t pitch, std::vector<uint8_t>* file);

}  // namespace sorvel::platform
