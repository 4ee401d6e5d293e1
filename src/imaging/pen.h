#pragma once

#include <cstdint>

namespace sorvel {

// Ink. With tone 0 it is plain colorB.
struct PenSpec {
  int32_t shape = 7;   // 0 to 14, row of the table of pen shapes; only a stamp looks at it
  int32_t tone = 0;    // 0 to 15: how many pixels of each tile of 4 by 4 are colorA
  int32_t colorA = 0;  // colour indices of the dither
  int32_t colorB = 1;

  bool operator==(const PenSpec&) const = default;
};

// The shapes of the pen, 8 by 8 bits each, top row first; bit 0x80 is the leftmost column. Round pens are shape
// 7 + n and square pens 7 - n for a size step n of 0 to 7.
extern const uint8_t PenShapes[15][8];

// The index of the ink at a pixel of the image. The dither is fixed to the image's coordinates, so that two strokes
// of one pen line up. x and y are not negative.
int32_t PenColorAt(const PenSpec& pen, int32_t x, int32_t y);

// Levels 0 to 48 run from black to white over the tone family, with 16 steps of dither between two neighbours.
PenSpec LevelToPen(int32_t level);
// 0 for a pen with colorA 0, whatever its colorB.
int32_t PenToLevel(const PenSpec& pen);

}  // namespace sorvel
