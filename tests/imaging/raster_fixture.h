#pragma once

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "support/test_images.h"

namespace sorvel {

constexpr int32_t kLowest = std::numeric_limits<int32_t>::min();
constexpr int32_t kHighest = std::numeric_limits<int32_t>::max();

using Rows = std::vector<std::string>;

// Every pixel, row by row, as a digit of base 36; a dot is 0.
inline Rows Picture(CellImage* image) {
  Rows rows;
  for (int32_t y = 0; y < image->height; ++y) {
    std::string row;
    for (int32_t x = 0; x < image->width; ++x) row += testimages::PixelLetter(image->GetPixel(x, y));
    rows.push_back(row);
  }
  return rows;
}

inline int32_t CountOf(CellImage* image, int32_t value) {
  int32_t count = 0;
  for (int32_t y = 0; y < image->height; ++y) {
    for (int32_t x = 0; x < image->width; ++x) count += image->GetPixel(x, y) == value ? 1 : 0;
  }
  return count;
}

// Tests that run on both classes of images.
template <typename Image>
class OnBothImages : public testing::Test {
 protected:
  // Images that live as long as the test.
  Image& New(int32_t width, int32_t height, int32_t fill = 0) {
    images.push_back(std::make_unique<Image>());
    Make(images.back().get(), width, height, fill);
    return *images.back();
  }

  Image& Drawn(const Rows& rows) {
    images.push_back(std::make_unique<Image>());
    Draw(images.back().get(), rows);
    return *images.back();
  }

  // An operation that gives true and turns one picture into another.
  template <typename Operation>
  void ExpectChange(const Rows& before, const Rows& after, const Operation& operation) {
    Image& image = Drawn(before);
    EXPECT_TRUE(operation(image));
    EXPECT_EQ(Picture(&image), after);
  }

  static void Make(Image* image, int32_t width, int32_t height, int32_t fill = 0) {
    ASSERT_TRUE(image->Resize(width, height, fill));
  }

  static void Draw(Image* image, const Rows& rows) {
    Make(image, static_cast<int32_t>(rows[0].size()), static_cast<int32_t>(rows.size()));
    for (int32_t y = 0; y < image->height; ++y) {
      for (int32_t x = 0; x < image->width; ++x) {
        image->SetPixel(x, y, testimages::PixelOfLetter(rows[static_cast<size_t>(y)][static_cast<size_t>(x)]));
      }
    }
  }

 private:
  std::vector<std::unique_ptr<Image>> images;
};

using Images = testing::Types<PackedImage, IndexedImage>;

}  // namespace sorvel
