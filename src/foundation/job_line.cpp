#include "foundation/job_line.h"

#include <algorithm>
#include <utility>

namespace sorvel {

namespace {

// What all jobs under way may take.
constexpr int64_t kMostBytes = 1 << 28;

int32_t gThreadCount = 0;
int64_t gSmallestShared = kSmallestShared;

int32_t ThreadCount() {
  return gThreadCount != 0 ? gThreadCount : std::min(platform::CoreCount(), kMostThreads);
}

}  // namespace

void SetThreadCount(int32_t count, int64_t smallestShared) {
  gThreadCount = count;
  gSmallestShared = smallestShared;
}

int32_t RequestedThreads() {
  return gThreadCount;
}

int32_t JobsAtOnce(int64_t jobs, int64_t bytesOfEach) {
  const int32_t threads = ThreadCount();
  if (threads == 1 || jobs * bytesOfEach < gSmallestShared) return 1;
  // Two for each thread, so that none waits for the one that takes the jobs back.
  const int64_t most = std::min(jobs, kMostBytes / std::max<int64_t>(bytesOfEach, 1));
  return static_cast<int32_t>(std::clamp<int64_t>(2 * threads, 1, std::max<int64_t>(most, 1)));
}

JobLine::JobLine(int32_t placeCount, std::function<void(int32_t place)> runJob)
    : places(placeCount), run(std::move(runJob)), isDone(new std::atomic<bool>[static_cast<size_t>(placeCount)]) {}

void JobLine::Give() {
  isDone[static_cast<size_t>(NextPlace())] = false;
  ++given;
  if (!hasTriedThreads && given - begun > 1) {
    StartThreads();
  } else if (!threads.empty()) {
    platform::RaiseSemaphore(jobsWaiting);
  }
}

int32_t JobLine::Take() {
  const int32_t place = taken % places;
  const std::atomic<bool>& isOldestDone = isDone[static_cast<size_t>(place)];
  while (!isOldestDone) {
    int32_t other = 0;
    if (BeginsOne(&other)) {
      run(other);
      isDone[static_cast<size_t>(other)] = true;
      continue;
    }
    isWaiting = true;
    // A job that ended in between either saw that somebody waits, or is seen here.
    if (!isOldestDone || !isWaiting.exchange(false)) platform::LowerSemaphore(jobEnded);
  }
  ++taken;
  return place;
}

void JobLine::Stop() {
  isStopping = true;
  for (size_t i = 0; i < threads.size(); ++i) platform::RaiseSemaphore(jobsWaiting);
  for (platform::ThreadHandle thread : threads) platform::JoinThread(thread, -1);
  threads.clear();
  platform::DeleteSemaphore(std::exchange(jobsWaiting, nullptr));
  platform::DeleteSemaphore(std::exchange(jobEnded, nullptr));
}

// Makes the oldest job that nobody has begun the caller's.
bool JobLine::BeginsOne(int32_t* place) {
  int32_t number = begun;
  while (number < given) {
    if (!begun.compare_exchange_weak(number, number + 1)) continue;
    *place = number % places;
    return true;
  }
  return false;
}

void JobLine::StartThreads() {
  hasTriedThreads = true;
  jobsWaiting = platform::MakeSemaphore();
  jobEnded = platform::MakeSemaphore();
  if (jobsWaiting == nullptr || jobEnded == nullptr) return;
  const auto work = [](void* line) { static_cast<JobLine*>(line)->Work(); };
  for (int32_t i = std::min(places, ThreadCount()); i > 1; --i) {
    platform::ThreadHandle thread = platform::StartThread(work, this, platform::ThreadKind::kHelper);
    if (thread == nullptr) break;
    threads.push_back(thread);
  }
}

// What each of the threads does: all jobs that are there, then one for each that is given.
void JobLine::Work() {
  while (!isStopping) {
    int32_t place = 0;
    if (!BeginsOne(&place)) {
      platform::LowerSemaphore(jobsWaiting);
      continue;
    }
    run(place);
    isDone[static_cast<size_t>(place)] = true;
    if (isWaiting.exchange(false)) platform::RaiseSemaphore(jobEnded);
  }
}

}  // namespace sorvel
