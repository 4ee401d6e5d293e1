#include "imaging/group_average.h"

#include <algorithm>
#include <cstddef>

namespace sorvel {

namespace {

// A colour as three lanes of one word, which are added together, and a bit for each line colour, which are collected by
// OR. The sums of these bits leave the word at the top.
constexpr int kGreenLane = 20;
constexpr int kRedLane = 40;
constexpr int kFirstLineBit = 61;
constexpr uint64_t kLaneMask = (uint64_t{1} << kGreenLane) - 1;
// So many pixels fit the lanes.
constexpr int64_t kMostPixels = 4096;

struct Sums {
  uint64_t blue = 0;
  uint64_t green = 0;
  uint64_t red = 0;
  uint64_t lines = 0;

  void Add(uint64_t lanes, uint64_t marks) {
    blue += lanes & kLaneMask;
    green += lanes >> kGreenLane & kLaneMask;
    red += lanes >> kRedLane & kLaneMask;
    lines |= marks >> kFirstLineBit;
  }
};

// Divides the sums of groups of one size.
class Divider {
 public:
  explicit Divider(uint64_t pixelCount) : count(pixelCount), factor((uint64_t{1} << kShift) / pixelCount + 1) {}

  uint8_t Average(uint64_t sum) const {
    const uint64_t rounded = sum + count / 2;
    // Exact for sums that fit a lane.
    return static_cast<uint8_t>(count <= kMostPixels ? rounded * factor >> kShift : rounded / count);
  }

 private:
  static constexpr int kShift = 40;

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
      lanes[i] |= uint64_t{1} << (kFirstLineBit + i - kLineBlack);
    }
  }

  // A width that the compiler knows makes small groups faster.
  template <int32_t knownWidth = 0>
  Sums Add(int32_t left, int32_t top, int32_t groupWidth, int32_t groupHeight) const {
    const int32_t width = knownWidth != 0 ? knownWidth : groupWidth;
    Sums sums;
    uint64_t sum = 0;
    uint64_t marks = 0;
    int64_t count = 0;
    for (int32_t y = 0; y < groupHeight; ++y) {
      const uint8_t* row = image.bits + static_cast<ptrdiff_t>(top + y) * image.pitch + left;
      for (int32_t x = 0; x < width; ++x) {
        sum += lanes[row[x]];
        marks |= lanes[row[x]];
        if (knownWidth == 0 && ++count == kMostPixels) {
          sums.Add(sum, marks);
          sum = marks = 0;
          count = 0;
        }
      }
    }
    sums.Add(sum, marks);
    return sums;
  }

  ColorEntry ColorOf(const Sums& sums, const Divider& divider) const {
    ColorEntry color = {divider.Average(sums.blue), divider.Average(sums.green), divider.Average(sums.red), 0};
    if (sums.lines == 0) return color;
    const int32_t line = (sums.lines & 1) != 0 ? kLineBlack : (sums.lines & 2) != 0 ? kLineBlack + 1 : kLineLast;
    const auto limit = [](uint8_t* part, uint8_t linePart) {
      *part = std::min(*part, static_cast<uint8_t>((linePart + 255) / 2));
    };
    limit(&color.blue, colors[line].blue);
    limit(&color.green, colors[line].green);
    limit(&color.red, colors[line].red);
    return color;
  }

 private:
  const CellImage& image;
  const ColorEntry (&colors)[256];
  uint64_t lanes[256];
};

}  // namespace

void AverageGroups(const CellImage& image, const ColorEntry (&colors)[256], int32_t side, const Rect& groups,
                   ColorEntry* result) {
  const Averager averager(image, colors);
  const auto sumOf = [&](int32_t left, int32_t top, int32_t width, int32_t height) {
    switch (width) {
      case 2:
        return averager.Add<2>(left, top, width, height);
      case 3:
        return averager.Add<3>(left, top, width, height);
      case 4:
        return averager.Add<4>(left, top, width, height);
      default:
        return averager.Add(left, top, width, height);
    }
  };
  for (int32_t row = groups.y; row < groups.y + groups.height; ++row) {
    const int32_t top = row * side;
    const int32_t height = std::min(side, image.height - top);
    const Divider whole(static_cast<uint64_t>(side) * static_cast<uint64_t>(height));
    for (int32_t column = groups.x; column < groups.x + groups.width; ++column) {
      const int32_t left = column * side;
      const int32_t width = std::min(side, image.width - left);
      const Sums sums = sumOf(left, top, width, height);
      *result++ = averager.ColorOf(
          sums, width == side ? whole : Divider(static_cast<uint64_t>(width) * static_cast<uint64_t>(height)));
    }
  }
}

}  // namespace sorvel
