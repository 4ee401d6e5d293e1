#include "animation/cut_times.h"

#include <algorithm>
#include <cstdlib>

namespace sorvel {

void CutTimes::Add(const StreamFrameTiming& frame) {
  if (ends) return;
  // The negative time of a dissolve counts as well.
  lastTicks = std::abs(frame.time);
  if (runs.empty() || frame.loop != 0) runs.push_back({0, std::max(frame.loop, 1)});
  runs.back().ticks += lastTicks;
  if (frame.time != 0) return;
  // The play ends in the first run of the loop.
  ends = true;
  isWhole = true;
  ++runs.back().ticks;
  runs.back().times = 1;
}

int32_t CutTimes::Ticks() const {
  if (runs.empty()) return 0;
  int64_t total = 0;
  for (const Run& run : runs) total += run.ticks * run.times;
  // The end of the last loop isn't known yet.
  if (!isWhole) total -= runs.back().ticks * (runs.back().times - 1) + lastTicks;
  return static_cast<int32_t>(std::min<int64_t>(total, INT32_MAX));
}

}  // namespace sorvel
