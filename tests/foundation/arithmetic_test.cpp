#include "foundation/arithmetic.h"

#include <gtest/gtest.h>

#include <climits>

namespace sorvel {
namespace {

TEST(Arithmetic, WrappingKeepsTheLow32Bits) {
  EXPECT_EQ(Wrapped(int64_t{1} << 32 | 5), 5);
  EXPECT_EQ(WrappingAdd(INT32_MAX, 1), INT32_MIN);
  EXPECT_EQ(WrappingSubtract(INT32_MIN, 1), INT32_MAX);
  EXPECT_EQ(WrappingScale(INT32_MAX, 2, 1), -2);
}

TEST(Arithmetic, SaturatingStopsAtTheEnds) {
  EXPECT_EQ(Saturated(INT64_MAX), INT32_MAX);
  EXPECT_EQ(Saturated(INT64_MIN), INT32_MIN);
  EXPECT_EQ(SaturatingAdd(INT32_MAX, 1), INT32_MAX);
  EXPECT_EQ(SaturatingAdd(INT32_MAX, -1), INT32_MAX - 1);
  EXPECT_EQ(SaturatingSubtract(INT32_MIN, 1), INT32_MIN);
  EXPECT_EQ(SaturatingSubtract(3, 5), -2);
}

TEST(Arithmetic, ScalingRoundsTowardsZero) {
  EXPECT_EQ(WrappingScale(7, 1, 2), 3);
  EXPECT_EQ(WrappingScale(-7, 1, 2), -3);
}

}  // namespace
}  // namespace sorvel
