#pragma once

#include <cstdint>

namespace sorvel {

// How a colour from outside becomes ink: a grey of 49 levels, dithered between two neighbours of the tone family at
// the place of the pixel in its picture.

// 0 black to 48 white.
int32_t LevelOfColor(int32_t red, int32_t green, int32_t blue);

// The colour index of a level at (x, y).
int32_t ToneAt(int32_t level, int32_t x, int32_t y);

}  // namespace sorvel
