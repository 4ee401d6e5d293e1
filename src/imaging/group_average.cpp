#include "imaging/group_average.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace sorvel {

namespace {

// A colour as three lanes of one word, which are added together, with a fourth one that counts line ink.
constexpr int kGreenLane = 16;
constexpr int kRedLane = 32;
constexpr int kLineLane = 48;
constexpr uint64_t kLaneMask = (uint64_t{1} << kGreenLane) - 1;
// So many pixels fit the lanes.
constexpr int32_t kMostPixels = 256;

// Divides by the number of pixels in groups of one size, and rounds to the nearest.
class Divider {
 public:
  explicit Divider(uint64_t pixelCount) : count(pixelCount), factor((uint64_t{1} << kFactorShift) / pixelCount + 1) {}

  // Of sums that fit the lanes.
  ColorEntry Average(uint64_t lanes) const {
    const auto part = [this](uint64_t sum) { return (sum + count / 2) * factor >> kFactorShift; };
    return Entry(part(lanes & kLaneMask), part(lanes >> kGreenLane & kLaneMask), part(lanes >> kRedLane & kLaneMask));
  }
  ColorEntry Average(uint64_t blue, uint64_t green, uint64_t red) const {
    const uint64_t half = count / 2;
    return Entry((blue + half) / count, (green + half) / count, (red + half) / count);
  }

 private:
  static ColorEntry Entry(uint64_t blue, uint64_t green, uint64_t red) {
    return {static_cast<uint8_t>(blue), static_cast<uint8_t>(green), static_cast<uint8_t>(red), 0};
  }

  // Exact for all sums that fit a lane.
  static constexpr int kFactorShift = 40;

  uint64_t count;
  uint64_t factor;
};

class Averager {
 public:
  Averager(const CellImage& picture, const ColorEntry (&table)[256]) : image(picture), colors(table) {
    for (int32_t i = 0; i < 256; ++i) {
      lanes[i] =
          uint64_t{colors[i].blue} | uint64_t{colors[i].green} << kGreenLane | uint64_t{colors[i].red} << kRedLane;
    }
    for (int32_t i = kLineBlack; i <= kLineLast; ++i) {
      lanes[i] |= uint64_t{1} << kLineLane;
    }
  }

  // How many groups of `side` columns from here on have one colour, at most `limit`.
  int32_t PlainGroups(const uint8_t* corner, int32_t side, int32_t height, int32_t limit) const {
    const uint64_t eight = *corner * (~uint64_t{0} / 255);
    ptrdiff_t plain = ptrdiff_t{limit} * side;
    for (int32_t y = 0; y < height; ++y) {
      const uint8_t* row = corner + static_cast<ptrdiff_t>(y) * image.pitch;
      ptrdiff_t x = 0;
      for (; x + 8 <= plain; x += 8) {
        uint64_t pixels = 0;
        std::memcpy(&pixels, row + x, sizeof(pixels));
        if (pixels != eight) break;
      }
      while (x < plain && row[x] == *corner) ++x;
      plain = x;
      if (plain < side) return 0;
    }
    return static_cast<int32_t>(plain / side);
  }

  // A width that the compiler knows makes small groups faster.
  template <int32_t knownWidth>
  ColorEntry Small(const uint8_t* corner, int32_t groupWidth, int32_t height, const Divider& divider) const {
    const int32_t width = knownWidth != 0 ? knownWidth : groupWidth;
    uint64_t sum = 0;
    for (int32_t y = 0; y < height; ++y) sum += SumOf(corner + static_cast<ptrdiff_t>(y) * image.pitch, width);
    const ColorEntry color = divider.Average(sum);
    return sum >> kLineLane == 0 ? color : WithLine(color, corner, width, height);
  }

  ColorEntry Large(const uint8_t* corner, int32_t width, int32_t height, const Divider& divider) const {
    uint64_t blue = 0;
    uint64_t green = 0;
    uint64_t red = 0;
    uint64_t lines = 0;
    for (int32_t y = 0; y < height; ++y) {
      const uint8_t* row = corner + static_cast<ptrdiff_t>(y) * image.pitch;
      for (int32_t x = 0; x < width; x += kMostPixels) {
        const uint64_t sum = SumOf(row + x, std::min(width - x, kMostPixels));
        blue += sum & kLaneMask;
        green += sum >> kGreenLane & kLaneMask;
        red += sum >> kRedLane & kLaneMask;
        lines += sum >> kLineLane;
      }
    }
    const ColorEntry color = divider.Average(blue, green, red);
    return lines == 0 ? color : WithLine(color, corner, width, height);
  }

 private:
  uint64_t SumOf(const uint8_t* row, int32_t width) const {
    uint64_t sum = 0;
    for (int32_t x = 0; x < width; ++x) sum += lanes[row[x]];
    return sum;
  }

  ColorEntry WithLine(ColorEntry color, const uint8_t* corner, int32_t width, int32_t height) const {
    int32_t first = kLineLast;
    for (int32_t y = 0; y < height && first > kLineBlack; ++y) {
      const uint8_t* row = corner + static_cast<ptrdiff_t>(y) * image.pitch;
      for (int32_t x = 0; x < width && first > kLineBlack; ++x) {
        if (row[x] >= kLineBlack && row[x] < first) first = row[x];
      }
    }
    const ColorEntry& line = colors[first];
    const auto limit = [](uint8_t* part, uint8_t linePart) {
      *part = std::min(*part, static_cast<uint8_t>((linePart + 255) / 2));
    };
    limit(&color.blue, line.blue);
    limit(&color.green, line.green);
    limit(&color.red, line.red);
    return color;
  }

  const CellImage& image;
  const ColorEntry (&colors)[256];
  uint64_t lanes[256];
};

uint64_t PixelsOf(int32_t width, int32_t height) {
  return static_cast<uint64_t>(width) * static_cast<uint64_t>(height);
}

}  // namespace

void AverageGroups(const CellImage& image, const ColorEntry (&colors)[256], int32_t side, const Rect& groups,
                   ColorEntry* result) {
  const Averager averager(image, colors);
  const int32_t end = groups.x + groups.width;
  for (int32_t row = groups.y; row < groups.y + groups.height; ++row) {
    const int32_t top = row * side;
    const int32_t height = std::min(side, image.height - top);
    const Divider whole(PixelsOf(side, height));
    for (int32_t column = groups.x; column < end;) {
      const int32_t left = column * side;
      const int32_t width = std::min(side, image.width - left);
      const uint8_t* const corner = image.bits + static_cast<ptrdiff_t>(top) * image.pitch + left;
      // Most of a drawing is ground or one tone.
      const int32_t plain =
          averager.PlainGroups(corner, side, height, std::min(end - column, (image.width - left) / side));
      if (plain > 0) {
        const ColorEntry& color = colors[*corner];
        result = std::fill_n(result, plain, ColorEntry{color.blue, color.green, color.red, 0});
        column += plain;
        continue;
      }
      const Divider divider = width == side ? whole : Divider(PixelsOf(width, height));
      if (PixelsOf(width, height) > uint64_t{kMostPixels}) {
        *result++ = averager.Large(corner, width, height, divider);
      } else if (width == 2) {
        *result++ = averager.Small<2>(corner, width, height, divider);
      } else if (width == 3) {
        *result++ = averager.Small<3>(corner, width, height, divider);
      } else if (width == 4) {
        *result++ = averager.Small<4>(corner, width, height, divider);
      } else {
        *result++ = averager.Small<0>(corner, width, height, divider);
      }
      ++column;
    }
  }
}

}  // namespace sorvel
