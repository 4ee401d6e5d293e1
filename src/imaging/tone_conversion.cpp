#include "imaging/tone_conversion.h"

#include "imaging/pen.h"

namespace sorvel {

int32_t LevelOfColor(int32_t red, int32_t green, int32_t blue) {
  const int32_t grey = (blue + (red + 2 * green) * 2) / 7;
  return grey * 49 / 256;
}

int32_t ToneAt(int32_t level, int32_t x, int32_t y) {
  return PenColorAt(LevelToPen(level), x, y);
}

}  // namespace sorvel
