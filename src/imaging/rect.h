#pragma once

#include <cstdint>

#include "platform/geometry.h"

namespace sorvel {

// A rectangle by its left top corner and its size. One without width or height is empty.
struct Rect {
  int32_t x = 0;
  int32_t y = 0;
  int32_t width = 0;
  int32_t height = 0;

  bool IsEmpty() const { return width <= 0 || height <= 0; }
  bool operator==(const Rect&) const = default;
};

// The smallest rectangle around both. If one has a width or height of 0 the result is the other; if both have, it is
// `a`.
Rect BoundingRect(const Rect& a, const Rect& b);
void UnionRect(Rect* rect, const Rect& other);

}  // namespace sorvel
