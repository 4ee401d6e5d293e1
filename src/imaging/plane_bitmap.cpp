#include "imaging/plane_bitmap.h"

#include <algorithm>

namespace sorvel {

namespace {

struct Channels {
  int32_t red = 0;
  int32_t green = 0;
  int32_t blue = 0;
};

int32_t Brighten(int32_t color, int32_t distance, int32_t max) {
  if (distance == 0) return color;
  if (distance < 0) return (50 + distance) * color / 50;
  const int32_t lift = max * distance / 50;
  return (max - lift) * color / max + lift;
}

}  // namespace

void PlaneBitmap::SetLevels(int32_t count) {
  count = std::clamp(count, 2, 16);
  const int32_t steps = count - 1;
  const auto step = [steps](int32_t max, int32_t i) { return max / steps + (i < max % steps ? 1 : 0); };
  Channels color;
  for (int32_t i = 0; i < count; ++i) {
    SetBaseColor(i, color.red, color.green, color.blue);
    color.red += step(redMax, i);
    color.green += step(greenMax, i);
    color.blue += step(blueMax, i);
  }
}

void PlaneBitmap::SetBrightness(int32_t value) {
  brightness = value;
  const int32_t distance = value - 50;
  for (int32_t i = 15; i >= 0; --i) {
    Channels color;
    GetBaseColor(i, &color.red, &color.green, &color.blue);
    SetFrontColor(i, Brighten(color.red, distance, redMax), Brighten(color.green, distance, greenMax),
                  Brighten(color.blue, distance, blueMax));
  }
}

void PlaneBitmap::MixPlanes(int32_t a, int32_t b) {
  Channels backs[16];
  for (int32_t j = 0; j < 16; ++j) GetBackColor(j, &backs[j].red, &backs[j].green, &backs[j].blue);
  for (int32_t i = 0; i < 16; ++i) {
    Channels front;
    GetFrontColor(i, &front.red, &front.green, &front.blue);
    for (int32_t j = 0; j < 16; ++j) {
      const Channels& back = backs[j];
      SetMixColor(i, j, (front.red * (b - a) + back.red * a) / b, (front.green * (b - a) + back.green * a) / b,
                  (front.blue * (b - a) + back.blue * a) / b);
    }
  }
}

}  // namespace sorvel
