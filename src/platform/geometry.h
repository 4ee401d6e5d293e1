#pragma once

#include <cstdint>

namespace sorvel {

struct Point {
  int32_t x = 0;
  int32_t y = 0;

  bool operator==(const Point&) const = default;
};

// A rectangle by its edges; the right and bottom edge don't belong to it.
struct Bounds {
  int32_t left = 0;
  int32_t top = 0;
  int32_t right = 0;
  int32_t bottom = 0;

  bool IsEmpty() const { return left >= right || top >= bottom; }
  int32_t Width() const { return right - left; }
  int32_t Height() const { return bottom - top; }
  bool operator==(const Bounds&) const = default;
};

}  // namespace sorvel
