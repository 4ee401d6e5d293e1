#include "imaging/tone_conversion.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>

#include "foundation/vectors.h"

namespace sorvel {
namespace {

// How often each index comes in a tile of the dither.
std::map<int32_t, int32_t> TileOf(int32_t level) {
  std::map<int32_t, int32_t> counts;
  for (int32_t y = 0; y < 4; ++y) {
    for (int32_t x = 0; x < 4; ++x) ++counts[ToneAt(level, x, y)];
  }
  return counts;
}

using Counts = std::map<int32_t, int32_t>;

TEST(ToneConversion, BlackIsLevel0AndWhiteLevel48) {
  EXPECT_EQ(LevelOfColor(0, 0, 0), 0);
  EXPECT_EQ(LevelOfColor(255, 255, 255), 48);
}

TEST(ToneConversion, MiddleGreyIsLevel24) {
  EXPECT_EQ(LevelOfColor(128, 128, 128), 24);
}

TEST(ToneConversion, GreenCountsTwiceRedAndFourTimesBlue) {
  // 255 / 7 = 36, 510 / 7 = 72 and 1020 / 7 = 145, each times 49 / 256.
  EXPECT_EQ(LevelOfColor(0, 0, 255), 6);
  EXPECT_EQ(LevelOfColor(255, 0, 0), 13);
  EXPECT_EQ(LevelOfColor(0, 255, 0), 27);
}

TEST(ToneConversion, LevelsChangeWhereTheDivisionSays) {
  EXPECT_EQ(LevelOfColor(5, 5, 5), 0);
  EXPECT_EQ(LevelOfColor(6, 6, 6), 1);
  EXPECT_EQ(LevelOfColor(250, 250, 250), 47);
  EXPECT_EQ(LevelOfColor(251, 251, 251), 48);
}

TEST(ToneConversion, WholeStepsArePlain) {
  EXPECT_EQ(TileOf(0), (Counts{{1, 16}}));
  EXPECT_EQ(TileOf(16), (Counts{{2, 16}}));
  EXPECT_EQ(TileOf(32), (Counts{{3, 16}}));
  EXPECT_EQ(TileOf(48), (Counts{{4, 16}}));
}

TEST(ToneConversion, LevelsBetweenMixTheTwoNeighbours) {
  EXPECT_EQ(TileOf(1), (Counts{{1, 15}, {2, 1}}));
  EXPECT_EQ(TileOf(24), (Counts{{2, 8}, {3, 8}}));
  EXPECT_EQ(TileOf(47), (Counts{{3, 1}, {4, 15}}));
}

TEST(ToneConversion, DitherRepeatsEveryFourPixels) {
  for (int32_t level = 0; level <= 48; ++level) {
    for (int32_t place = 0; place < 64; ++place) {
      const int32_t x = place % 8;
      const int32_t y = place / 8;
      ASSERT_EQ(ToneAt(level, x, y), ToneAt(level, x % 4, y % 4));
    }
  }
}

TEST(ToneConversion, LevelOneHasItsDarkGreyWhereThePatternOfOneHasItsBit) {
  // Tone 15 is pattern 1 with the colours swapped, whose one bit is column 3 of row 0.
  EXPECT_EQ(ToneAt(1, 3, 0), 2);
  EXPECT_EQ(ToneAt(1, 0, 0), 1);
}

TEST(ToneConversion, RowsOfGreysGetTheIndicesOfTheirLevels) {
  for (int32_t start = 0; start < 4; ++start) {
    for (int32_t count : {0, 1, 31, 32, 33, 256, 301}) {
      for (int32_t y = 0; y < 5; ++y) {
        const auto size = static_cast<size_t>(count);
        const std::unique_ptr<uint8_t[]> greys(new uint8_t[size]);
        for (size_t i = 0; i < size; ++i) greys[i] = static_cast<uint8_t>(i * 7 + 3);
        for (const bool wide : {true, false}) {
          gMayUseWideVectors = wide;
          const std::unique_ptr<uint8_t[]> indices(new uint8_t[size]);
          ConvertGreys(greys.get(), count, start, y, indices.get());
          for (int32_t i = 0; i < count; ++i) {
            const auto at = static_cast<size_t>(i);
            const int32_t level = LevelOfColor(greys[at], greys[at], greys[at]);
            ASSERT_EQ(indices[at], ToneAt(level, start + i, y)) << start + i << ", " << y;
          }
        }
      }
    }
  }
  gMayUseWideVectors = true;
}

}  // namespace
}  // namespace sorvel
