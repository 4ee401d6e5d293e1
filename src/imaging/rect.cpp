#include "imaging/rect.h"

#include <algorithm>

namespace sorvel {

Rect BoundingRect(const Rect& a, const Rect& b) {
  if (b.width == 0 || b.height == 0) return a;
  if (a.width == 0 || a.height == 0) return b;
  const int32_t x = std::min(a.x, b.x);
  const int32_t y = std::min(a.y, b.y);
  return {x, y, std::max(a.x + a.width, b.x + b.width) - x, std::max(a.y + a.height, b.y + b.height) - y};
}

void UnionRect(Rect* rect, const Rect& other) {
  *rect = BoundingRect(*rect, other);
}

}  // namespace sorvel
