#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "foundation/byte_stream.h"
#include "imaging/indexed_image.h"
#include "imaging/packed_image.h"
#include "imaging/rect.h"
#include "support/test_bytes.h"

namespace sorvel {

static inline void PrintTo(const Rect& rect, std::ostream* out) {
  *out << "{" << rect.x << ", " << rect.y << ", " << rect.width << ", " << rect.height << "}";
}

namespace testimages {

using namespace testbytes;

// The same sequence on every platform.
class Random {
 public:
  explicit Random(uint32_t seed) : engine_(seed) {}

  int32_t Between(int32_t low, int32_t high) {
    return low + static_cast<int32_t>(engine_() % static_cast<uint32_t>(high - low + 1));
  }
  bool OneIn(int32_t count) { return Between(1, count) == 1; }
  uint32_t Word() { return static_cast<uint32_t>(engine_()); }
  uint8_t Byte() { return static_cast<uint8_t>(engine_() & 255); }

 private:
  std::mt19937 engine_;
};

struct ImageDestroyer {
  void operator()(CellImage* image) const { DestroyImage(image); }
};
using OwnedImage = std::unique_ptr<CellImage, ImageDestroyer>;

inline OwnedImage MakeImage(bool packed, int32_t width, int32_t height) {
  OwnedImage image(packed ? static_cast<CellImage*>(new PackedImage) : static_cast<CellImage*>(new IndexedImage));
  image->Resize(width, height, 0);
  return image;
}

// A picture is text, one character a pixel and one line a row: '.' for 0, digits, and letters from 'a' for 10.
inline char PixelLetter(int32_t value) {
  if (value == 0) return '.';
  return static_cast<char>(value < 10 ? '0' + value : 'a' + value - 10);
}

inline int32_t PixelOfLetter(char letter) {
  if (letter == '.') return 0;
  return letter <= '9' ? letter - '0' : letter - 'a' + 10;
}

inline std::string Picture(CellImage& image) {
  std::string text;
  for (int32_t y = 0; y < image.height; ++y) {
    for (int32_t x = 0; x < image.width; ++x) text += PixelLetter(image.GetPixel(x, y));
    text += '\n';
  }
  return text;
}

inline void Draw(CellImage* image, const std::string& picture) {
  int32_t x = 0;
  int32_t y = 0;
  for (char letter : picture) {
    if (letter == '\n') {
      x = 0;
      ++y;
    } else {
      image->SetPixel(x++, y, PixelOfLetter(letter));
    }
  }
}

inline OwnedImage ImageOf(bool packed, const std::string& picture) {
  int32_t width = static_cast<int32_t>(picture.find('\n'));
  int32_t height = static_cast<int32_t>(std::count(picture.begin(), picture.end(), '\n'));
  OwnedImage image = MakeImage(packed, width, height);
  Draw(image.get(), picture);
  return image;
}

// About one pixel in `sparsity` gets a value of 0 to `top`.
inline void Scatter(CellImage* image, Random& random, int32_t top, int32_t sparsity) {
  for (int32_t y = 0; y < image->height; ++y) {
    for (int32_t x = 0; x < image->width; ++x) {
      if (random.OneIn(sparsity)) image->SetPixel(x, y, random.Between(0, top));
    }
  }
}

// Plain versions of the raster rules, pixel by pixel.
inline bool PlainClip(int32_t* dx, int32_t* dy, int32_t* sx, int32_t* sy, int32_t* width, int32_t* height,
                      const CellImage& destination, const CellImage& source) {
  if (*sx + *width > source.width) *width = source.width - *sx;
  if (*sy + *height > source.height) *height = source.height - *sy;
  if (*sx < 0) {
    *dx += -*sx;
    *width -= -*sx;
    *sx = 0;
  }
  if (*sy < 0) {
    *dy += -*sy;
    *height -= -*sy;
    *sy = 0;
  }
  if (*dx < 0) {
    *sx += -*dx;
    *width -= -*dx;
    *dx = 0;
  }
  if (*dy < 0) {
    *sy += -*dy;
    *height -= -*dy;
    *dy = 0;
  }
  if (*dx + *width > destination.width) *width = destination.width - *dx;
  if (*dy + *height > destination.height) *height = destination.height - *dy;
  return *width >= 1 && *height >= 1;
}

inline int32_t PlainAdjustTone(int32_t value, int32_t delta) {
  int32_t tone;
  if (value >= 1 && value <= 4) {
    tone = value - 1;
  } else if (value >= 8 && value <= 10) {
    tone = value - 8;
  } else if (value >= 16 && value <= 18) {
    tone = value - 16;
  } else {
    return 0;
  }
  tone += delta;
  if (tone < 0) tone = 0;
  if (tone > 3) tone = 3;
  return tone + 1;
}

inline bool IsMasked(uint32_t mask, int32_t value) {
  return (mask >> (static_cast<uint32_t>(value) & 31u) & 1u) != 0;
}

inline bool PlainComposite(CellImage* destination, int32_t dx, int32_t dy, CellImage* source, int32_t sx, int32_t sy,
                           int32_t width, int32_t height, int32_t flags, uint32_t destMask, uint32_t sourceMask,
                           Rect* outRect) {
  if (!PlainClip(&dx, &dy, &sx, &sy, &width, &height, *destination, *source)) return false;
  bool keyed = (flags & 1) != 0;
  bool pale = (flags & 2) != 0;
  int32_t left = INT32_MAX;
  int32_t top = INT32_MAX;
  int32_t right = -1;
  int32_t bottom = -1;
  for (int32_t j = 0; j < height; ++j) {
    for (int32_t i = 0; i < width; ++i) {
      int32_t s = source->GetPixel(sx + i, sy + j);
      int32_t old = destination->GetPixel(dx + i, dy + j);
      if (keyed && s != 0) {
        left = std::min(left, sx + i);
        right = std::max(right, sx + i + 1);
        top = std::min(top, sy + j);
        bottom = std::max(bottom, sy + j + 1);
      }
      if (IsMasked(destMask, old) || IsMasked(sourceMask, s) || (keyed && s == 0)) continue;
      int32_t value = s;
      if (keyed && pale) {
        if (s >= 1 && s <= 3) {
          value = s + 15;
        } else if (s >= 8 && s <= 10) {
          value = s + 8;
        } else {
          continue;
        }
      } else if (keyed && s >= 11 && s <= 14) {
        const int32_t deltas[] = {2, 1, -1, -2};
        int32_t toned = PlainAdjustTone(old, deltas[s - 11]);
        if (toned != 0) value = toned;
      }
      destination->SetPixel(dx + i, dy + j, value);
    }
  }
  if (outRect != nullptr) *outRect = right < 0 ? Rect{} : Rect{left, top, right - left, bottom - top};
  return true;
}

inline bool PlainOverlay(CellImage* destination, int32_t dx, int32_t dy, CellImage* source, int32_t sx, int32_t sy,
                         int32_t width, int32_t height, int32_t variant) {
  if (destination->colors <= 16) return false;
  if (!PlainClip(&dx, &dy, &sx, &sy, &width, &height, *destination, *source)) return false;
  for (int32_t i = 0; i < width; ++i) {
    for (int32_t j = 0; j < height; ++j) {
      int32_t s = source->GetPixel(sx + i, sy + j);
      int32_t tone = s >= 1 && s <= 3 ? s - 1 : s >= 8 && s <= 10 ? s - 8 : -1;
      if (tone >= 0) destination->SetPixel(dx + i, dy + j, (variant == 0 ? 19 : 22) + tone);
    }
  }
  return true;
}

// The grey level of one output pixel.
inline int32_t PlainGrey(CellImage& composition, int32_t dx, int32_t dy, int32_t scale) {
  int32_t sum = 0;
  for (int32_t y = dy * scale; y < (dy + 1) * scale; ++y) {
    for (int32_t x = dx * scale; x < (dx + 1) * scale; ++x) {
      int32_t index = composition.GetPixel(x, y);
      sum += index >= 1 && index <= 3 ? index - 1 : index >= 8 && index <= 10 ? index - 8 : 3;
    }
  }
  if (scale != 4) return sum;
  const int32_t dither[4][4] = {{0, 0, 0, 0}, {1, 0, 0, 0}, {1, 0, 0, 1}, {1, 1, 0, 1}};
  return sum / 4 + dither[sum % 4][(dy & 1) * 2 + (dx & 1)];
}

class OutputBytes {
 public:
  explicit OutputBytes(int32_t capacity = 1 << 18) : bytes_(static_cast<size_t>(capacity), 0xA5) {
    stream.buffer = bytes_.data();
    stream.capacity = capacity;
  }

  Bytes Written() const { return Bytes(bytes_.begin(), bytes_.begin() + stream.size); }

  BufferStream stream;

 private:
  Bytes bytes_;
};

}  // namespace testimages
}  // namespace sorvel
