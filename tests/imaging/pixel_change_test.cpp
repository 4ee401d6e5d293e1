#include "imaging/pixel_change.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <vector>

namespace sorvel {
namespace {

using Bytes = std::vector<uint8_t>;

void ExpectBothWays(const PixelChange& change, const Bytes& before, const Bytes& after) {
  Bytes bytes = before;
  change.Apply(bytes.data());
  EXPECT_EQ(bytes, after);
  change.Apply(bytes.data());
  EXPECT_EQ(bytes, before);
}

TEST(PixelChange, OfEqualMemoryIsEmpty) {
  const Bytes bytes(400, 7);
  PixelChange change;
  ASSERT_TRUE(change.Compare(bytes.data(), bytes.data(), 0, 400));
  EXPECT_TRUE(change.IsEmpty());
  ExpectBothWays(change, bytes, bytes);
  ASSERT_TRUE(change.Compare(nullptr, nullptr, 0, 0));
  EXPECT_TRUE(change.IsEmpty());
}

TEST(PixelChange, LeadsFromEitherStateToTheOther) {
  std::mt19937 random(1);
  for (int round = 0; round < 2000; ++round) {
    const size_t words = random() % 300;
    Bytes before(4 * words);
    for (uint8_t& byte : before) byte = static_cast<uint8_t>(random() % 3);
    Bytes after = before;
    for (int runs = static_cast<int>(random() % 6); runs > 0 && words > 0; --runs) {
      const size_t start = random() % words;
      const size_t end = std::min(words, start + random() % (random() % 2 == 0 ? 9 : 200));
      const bool isFilled = random() % 2 == 0;
      const uint8_t fill = static_cast<uint8_t>(random());
      for (size_t i = 4 * start; i < 4 * end; ++i) after[i] = isFilled ? fill : static_cast<uint8_t>(random() % 4);
    }
    PixelChange change;
    ASSERT_TRUE(change.Compare(before.data(), after.data(), 0, static_cast<int64_t>(before.size())));
    EXPECT_EQ(change.IsEmpty(), before == after);
    ExpectBothWays(change, before, after);
    if (HasFailure()) return;
  }
}

TEST(PixelChange, LooksNowhereButBetweenStartAndEnd) {
  const Bytes before(64, 0);
  Bytes after(64, 1);
  PixelChange change;
  ASSERT_TRUE(change.Compare(before.data(), after.data(), 8, 24));
  Bytes bytes = before;
  change.Apply(bytes.data());
  for (size_t i = 0; i < bytes.size(); ++i) EXPECT_EQ(bytes[i], i >= 8 && i < 24 ? 1 : 0) << i;
}

TEST(PixelChange, TakesWhatChangedAndNotWhatThereIs) {
  const Bytes before(1 << 20, 0x55);
  Bytes after = before;
  after[1000] = 1;
  after[900'000] = 2;
  PixelChange change;
  ASSERT_TRUE(change.Compare(before.data(), after.data(), 0, 1 << 20));
  EXPECT_LE(change.ByteCount(), 24);
  // An area of one colour takes no more.
  after = before;
  std::fill(after.begin() + 4000, after.begin() + 800'000, uint8_t{0x77});
  ASSERT_TRUE(change.Compare(before.data(), after.data(), 0, 1 << 20));
  EXPECT_LE(change.ByteCount(), 24);
  ExpectBothWays(change, before, after);
}

}  // namespace
}  // namespace sorvel
