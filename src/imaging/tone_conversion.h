#pragma once

#include <cstdint>

namespace sorvel {

// Converts colours of imported pictures to ink: a grey of 49 levels, which is a dither of two neighbours of the tone
// family.

// The grey of a colour, 0 to 255, and its level, 0 black to 48 white.
constexpr int32_t GreyOfColor(int32_t red, int32_t green, int32_t blue) {
  return (blue + (red + 2 * green) * 2) / 7;
}
int32_t LevelOfColor(int32_t red, int32_t green, int32_t blue);

// The colour index that the dither of a level has at (x, y).
int32_t ToneAt(int32_t level, int32_t x, int32_t y);

// The same for the greys of `count` pixels from (x, y) on.
void ConvertGreys(const uint8_t* greys, int32_t count, int32_t x, int32_t y, uint8_t* indices);

}  // namespace sorvel
