#include "foundation/buffer.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace sorvel {
namespace {

TEST(Buffer, ZeroedMemoryIsZero) {
  Buffer<uint32_t> buffer;
  ASSERT_TRUE(buffer.AllocateZeroed(1000));
  EXPECT_EQ(buffer.Count(), 1000u);
  EXPECT_EQ(std::count(buffer.Data(), buffer.Data() + 1000, 0u), 1000);
}

TEST(Buffer, AnEmptyOneIsAllocatedToo) {
  Buffer<uint8_t> buffer;
  EXPECT_FALSE(buffer.IsAllocated());
  EXPECT_TRUE(buffer.Allocate(0));
  EXPECT_TRUE(buffer.IsAllocated());
  EXPECT_EQ(buffer.Count(), 0u);
}

TEST(Buffer, AFailedAllocationLeavesItEmpty) {
  Buffer<uint64_t> buffer;
  ASSERT_TRUE(buffer.Allocate(10));
  EXPECT_FALSE(buffer.Allocate(UINT64_MAX / 4));
  EXPECT_FALSE(buffer.IsAllocated());
  EXPECT_EQ(buffer.Count(), 0u);
  EXPECT_FALSE(buffer.AllocateZeroed(UINT64_MAX / 4));
}

TEST(Buffer, AMoveHandsTheMemoryOver) {
  Buffer<uint8_t> buffer;
  ASSERT_TRUE(buffer.Allocate(1));
  const uint8_t* memory = buffer.Data();
  Buffer<uint8_t> second(std::move(buffer));
  EXPECT_FALSE(buffer.IsAllocated());
  EXPECT_EQ(buffer.Count(), 0u);
  Buffer<uint8_t> third;
  ASSERT_TRUE(third.Allocate(2));
  third = std::move(second);
  EXPECT_FALSE(second.IsAllocated());
  EXPECT_EQ(third.Data(), memory);
  EXPECT_EQ(third.Count(), 1u);
}

}  // namespace
}  // namespace sorvel
