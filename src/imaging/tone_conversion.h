#pragma once

#include <cstdint>

namespace sorvel {

// Converts colours of imported pictures to ink: a grey of 49 levels, which is a dither of two neighbours of the tone
// family.

// 0 black to 48 white.
int32_t LevelOfColor(int32_t red, int32_t green, int32_t blue);

// The colour index that the dither of a level has at (x, y).
int32_t ToneAt(int32_t level, int32_t x, int32_t y);

}  // namespace sorvel
