#include "foundation/job_line.h"

#include <gtest/gtest.h>

#include <atomic>
#include <vector>

#include "support/test_threads.h"

namespace sorvel {
namespace {

using testing_support::kThreadCounts;
using testing_support::Threads;

TEST(JobLine, GivesTheJobsBackInTheirOrderWithAnyNumberOfThreadsAndPlaces) {
  for (const int32_t count : kThreadCounts) {
    for (const int32_t places : {1, 2, 3, 8}) {
      const Threads threads(count);
      std::vector<int32_t> numbers(static_cast<size_t>(places));
      JobLine line(places, [&numbers](int32_t place) { numbers[static_cast<size_t>(place)] *= 2; });
      std::vector<int32_t> results;
      const auto take = [&] { results.push_back(numbers[static_cast<size_t>(line.Take())]); };
      for (int32_t i = 0; i < 200; ++i) {
        if (line.IsFull()) take();
        numbers[static_cast<size_t>(line.NextPlace())] = i;
        line.Give();
      }
      while (!line.IsEmpty()) take();
      ASSERT_EQ(results.size(), 200u);
      for (int32_t i = 0; i < 200; ++i) EXPECT_EQ(results[static_cast<size_t>(i)], 2 * i);
    }
  }
}

TEST(JobLine, WithOnePlaceAJobRunsWhenItIsTaken) {
  const Threads threads(5);
  int32_t done = 0;
  JobLine line(1, [&done](int32_t) { ++done; });
  line.Give();
  EXPECT_TRUE(line.IsFull());
  EXPECT_EQ(done, 0);
  EXPECT_EQ(line.Take(), 0);
  EXPECT_EQ(done, 1);
  EXPECT_TRUE(line.IsEmpty());
}

TEST(JobLine, JobsOfTwoThreadsRunAtTheSameTime) {
  const Threads threads(2);
  std::atomic<int32_t> begun = 0;
  // Neither of the two ends before the other has begun.
  JobLine line(2, [&begun](int32_t) {
    ++begun;
    while (begun < 2) {
    }
  });
  line.Give();
  line.Give();
  EXPECT_EQ(line.Take(), 0);
  EXPECT_EQ(line.Take(), 1);
}

TEST(JobLine, StopWaitsForJobsThatHaveBegun) {
  for (int32_t round = 0; round < 50; ++round) {
    const Threads threads(3);
    std::atomic<int32_t> begun = 0;
    std::atomic<int32_t> ended = 0;
    {
      JobLine line(6, [&](int32_t) {
        ++begun;
        ++ended;
      });
      for (int32_t i = 0; i < 6; ++i) line.Give();
      if (round % 2 == 0) line.Take();
    }
    EXPECT_EQ(begun, ended);
    EXPECT_LE(ended, 6);
  }
}

TEST(JobLine, SmallWorkAndLargePiecesStayOnOneThread) {
  SetThreadCount(4);
  EXPECT_EQ(JobsAtOnce(10, kSmallestShared / 10 - 1), 1);
  EXPECT_EQ(JobsAtOnce(10, kSmallestShared / 10 + 1), 8);
  EXPECT_EQ(JobsAtOnce(3, kSmallestShared), 3);
  EXPECT_EQ(JobsAtOnce(1, kSmallestShared), 1);
  EXPECT_EQ(JobsAtOnce(0, kSmallestShared), 1);
  EXPECT_EQ(JobsAtOnce(10, int64_t{1} << 40), 1);
  SetThreadCount(1);
  EXPECT_EQ(JobsAtOnce(10, kSmallestShared), 1);
  SetThreadCount(0);
}

}  // namespace
}  // namespace sorvel
