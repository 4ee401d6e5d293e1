#pragma once

#include <cstdint>

#include "foundation/job_line.h"

namespace sorvel::testing_support {

constexpr int32_t kThreadCounts[] = {1, 2, 5};

// While one of these lives even the smallest work is shared by so many threads.
class Threads {
 public:
  explicit Threads(int32_t count) { SetThreadCount(count, 0); }
  Threads(const Threads&) = delete;
  Threads& operator=(const Threads&) = delete;
  ~Threads() { SetThreadCount(0); }
};

}  // namespace sorvel::testing_support
