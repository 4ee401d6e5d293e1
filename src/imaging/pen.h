#pragma once

#include <cstdint>

#include "foundation/arithmetic.h"
#include "imaging/rect.h"

namespace sorvel {

// A pen of size step n, 0 to 7, has shape kSmallestShape + n if it is round and kSmallestShape - n if it is square. The
// two of step 0 are the same pixel.
constexpr int32_t kSmallestShape = 7;
constexpr int32_t kLargestSize = 7;

constexpr int32_t SizeOfShape(int32_t shape) {
  return shape < kSmallestShape ? kSmallestShape - shape : shape - kSmallestShape;
}

// A pen: its shape and its ink, a dither of two colours. With tone 0 the ink is solid colorB.
struct PenSpec {
  int32_t shape = kSmallestShape;  // 0 to 14, index in PenShapes; only stamps and EdgeFill() use it
  int32_t tone = 0;                // 0 to 15: how many pixels of each tile of 4 by 4 are colorA
  int32_t colorA = 0;              // colour index
  int32_t colorB = 1;

  bool operator==(const PenSpec&) const = default;
};

// A stamp covers kPenReach columns and rows before its point, and the point with kPenReach - 1 behind it.
constexpr int32_t kPenReach = 4;
constexpr int32_t kPenSize = 2 * kPenReach;

// What a stamp at the point may cover. Saturates.
inline Rect StampRect(Point point) {
  return {SaturatingSubtract(point.x, kPenReach), SaturatingSubtract(point.y, kPenReach), kPenSize, kPenSize};
}

// The shapes of the pen, 8 by 8 bits each, top row first; bit 0x80 is the leftmost column.
extern const uint8_t PenShapes[15][8];

// The colour index of the ink at a pixel. The dither is fixed to the coordinates of the image, so that the dither of
// strokes that meet lines up. x and y aren't negative.
int32_t PenColorAt(const PenSpec& pen, int32_t x, int32_t y);

// Levels 0 to 48 run from black to white over the tone family, with 16 steps of dither between two neighbours.
PenSpec LevelToPen(int32_t level);
// 0 for a pen with colorA 0, whatever its colorB.
int32_t PenToLevel(const PenSpec& pen);

}  // namespace sorvel
