#pragma once

#include <algorithm>
#include <array>
#include <cstdlib>
#include <utility>

// The rules of ink by the plainest code, independent of the program: shapes of the pen, its dither, the points of a
// line, and what a copy of one image into another writes. All tests that predict pixels use them.
namespace inkrules {

// Rows of the 15 pen shapes, top row first, bit 0x80 leftmost.
inline constexpr std::array<std::array<int, 8>, 15> kShapes = {{
    {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF},
    {0x00, 0x7F, 0x7F, 0x7F, 0x7F, 0x7F, 0x7F, 0x7F},
    {0x00, 0x7E, 0x7E, 0x7E, 0x7E, 0x7E, 0x7E, 0x00},
    {0x00, 0x00, 0x3E, 0x3E, 0x3E, 0x3E, 0x3E, 0x00},
    {0x00, 0x00, 0x3C, 0x3C, 0x3C, 0x3C, 0x00, 0x00},
    {0x00, 0x00, 0x00, 0x1C, 0x1C, 0x1C, 0x00, 0x00},
    {0x00, 0x00, 0x00, 0x18, 0x18, 0x00, 0x00, 0x00},
    {0x00, 0x00, 0x00, 0x00, 0x08, 0x00, 0x00, 0x00},
    {0x00, 0x00, 0x00, 0x18, 0x18, 0x00, 0x00, 0x00},
    {0x00, 0x00, 0x00, 0x08, 0x1C, 0x08, 0x00, 0x00},
    {0x00, 0x00, 0x18, 0x3C, 0x3C, 0x18, 0x00, 0x00},
    {0x00, 0x00, 0x1C, 0x3E, 0x3E, 0x3E, 0x1C, 0x00},
    {0x00, 0x18, 0x3C, 0x7E, 0x7E, 0x3C, 0x18, 0x00},
    {0x00, 0x1C, 0x3E, 0x7F, 0x7F, 0x7F, 0x3E, 0x1C},
    {0x3C, 0x7E, 0xFF, 0xFF, 0xFF, 0xFF, 0x7E, 0x3C},
}};

// Whether a stamp of the shape covers the pixel at this offset from its point.
inline bool Covers(int shape, int dx, int dy) {
  if (dx < -4 || dx > 3 || dy < -4 || dy > 3) return false;
  return (kShapes[static_cast<size_t>(shape)][static_cast<size_t>(dy + 4)] & 0x80 >> (dx + 4)) != 0;
}

// The ink of a pen at a pixel.
inline int InkAt(int tone, int colorA, int colorB, int x, int y) {
  // Rows 0 and 1 of the tile of 4 by 4 in the first byte, rows 2 and 3 in the second.
  constexpr int patterns[9][2] = {{0x00, 0x00}, {0x08, 0x00}, {0x08, 0x02}, {0x08, 0x0A}, {0x0A, 0x0A},
                                  {0x4A, 0x0A}, {0x4A, 0x1A}, {0x5A, 0x1A}, {0x5A, 0x5A}};
  if (tone >= 9) {
    std::swap(colorA, colorB);
    tone = 16 - tone;
  }
  const int bit = x % 4 + y % 2 * 4;
  return (patterns[tone][y % 4 / 2] >> bit & 1) != 0 ? colorA : colorB;
}

// Calls visit(x, y) for each point that a line stamps, in its order.
template <typename Visit>
void ForLine(int x, int y, int endX, int endY, const Visit& visit) {
  const int ax = std::abs(endX - x);
  const int ay = std::abs(endY - y);
  const int sx = (endX > x) - (endX < x);
  const int sy = (endY > y) - (endY < y);
  const bool isFlat = ay < ax;
  const int steps = isFlat ? ax : ay;
  int error = -steps;
  visit(x, y);
  for (int i = 0; i < steps; ++i) {
    (isFlat ? x : y) += isFlat ? sx : sy;
    error += 2 * (isFlat ? ay : ax);
    if (error >= 0) {
      (isFlat ? y : x) += isFlat ? sy : sx;
      error -= 2 * steps;
    }
    visit(x, y);
  }
}

// Cuts a block that is copied from sx, sy of a source to dx, dy of a target to what lies in both. False if nothing
// does.
inline bool ClipBlock(int* dx, int* dy, int* sx, int* sy, int* width, int* height, int targetWidth, int targetHeight,
                      int sourceWidth, int sourceHeight) {
  const auto clip = [](int* to, int* from, int* size, int targetSize, int sourceSize) {
    *size = std::min(*size, sourceSize - *from);
    const int skipped = std::max({0, -*from, -*to});
    *from += skipped;
    *to += skipped;
    *size = std::min(*size - skipped, targetSize - *to);
    return *size >= 1;
  };
  const bool isWide = clip(dx, sx, width, targetWidth, sourceWidth);
  const bool isHigh = clip(dy, sy, height, targetHeight, sourceHeight);
  return isWide && isHigh;
}

// 0 to 2 for a pixel of a line or of a dark fill, which pale layers and ghosts show; -1 for any other.
inline int DarkTone(int value) {
  if (value >= 1 && value <= 3) return value - 1;
  if (value >= 8 && value <= 10) return value - 8;
  return -1;
}

// The plain tone that a tone mark makes of the pixel below it, or 0 if that has no tone.
inline int AdjustTone(int value, int delta) {
  const int tone = value == 4 ? 3 : value >= 16 && value <= 18 ? value - 16 : DarkTone(value);
  return tone < 0 ? 0 : std::clamp(tone + delta, 0, 3) + 1;
}

// The value that a keyed copy of pixel `ink` writes over the pixel `below`, or -1 for none.
inline int KeyedValue(int ink, int below, bool pale) {
  if (ink == 0) return -1;
  if (pale) return DarkTone(ink) < 0 ? -1 : 16 + DarkTone(ink);
  if (ink < 11 || ink > 14) return ink;
  constexpr int deltas[] = {2, 1, -1, -2};
  const int tone = AdjustTone(below, deltas[ink - 11]);
  // A mark with no tone below it stays visible as itself.
  return tone == 0 ? ink : tone;
}

// The value that an overlay writes for a pixel, or -1 for none. Variant 0 is the previous cell, 1 the next one.
inline int GhostValue(int ink, int variant) {
  return DarkTone(ink) < 0 ? -1 : (variant == 0 ? 19 : 22) + DarkTone(ink);
}

}  // namespace inkrules
