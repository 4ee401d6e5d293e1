#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <random>
#include <string>

#include "foundation/byte_stream.h"
#include "imaging/indexed_image.h"
#include "imaging/packed_image.h"
#include "imaging/rect.h"
#include "support/ink_rules.h"
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

struct Color {
  int32_t red;
  int32_t green;
  int32_t blue;

  bool operator==(const Color&) const = default;
};

inline void PrintTo(const Color& color, std::ostream* out) {
  *out << "(" << color.red << ", " << color.green << ", " << color.blue << ")";
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
  return inkrules::ClipBlock(dx, dy, sx, sy, width, height, destination.width, destination.height, source.width,
                             source.height);
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
      if (IsMasked(destMask, old) || IsMasked(sourceMask, s)) continue;
      const int32_t value = keyed ? inkrules::KeyedValue(s, old, pale) : s;
      if (value >= 0) destination->SetPixel(dx + i, dy + j, value);
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
      const int32_t ghost = inkrules::GhostValue(source->GetPixel(sx + i, sy + j), variant);
      if (ghost >= 0) destination->SetPixel(dx + i, dy + j, ghost);
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
      sum += inkrules::DarkTone(index) < 0 ? 3 : inkrules::DarkTone(index);
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
