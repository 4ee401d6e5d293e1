#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "platform/process.h"

// Work that falls into independent jobs, on several threads.
namespace sorvel {

// Work that reads and writes fewer bytes stays on its caller's thread: to start others would take longer.
constexpr int64_t kSmallestShared = 1 << 20;

constexpr int32_t kMostThreads = 64;

// How many threads share work, the caller's among them: 1 to kMostThreads, or 0 for one for each core, which is the
// default. To be set while nothing works.
void SetThreadCount(int32_t count, int64_t smallestShared = kSmallestShared);
// The count that was set.
int32_t RequestedThreads();

// How many of these jobs to have under way, for each of which there has to be memory; `bytesOfEach` is what a job
// reads, writes and takes. 1 if they belong on one thread.
int32_t JobsAtOnce(int64_t jobs, int64_t bytesOfEach);

// Hands jobs to other threads and takes them back in the order in which they were given. A job is what lies in one of a
// few numbered places that the caller has memory for. Nothing here may be called from two threads at a time.
//
//     while (there are jobs) {
//       if (line.IsFull()) Use(line.Take());
//       Fill(line.NextPlace());
//       line.Give();
//     }
//     while (!line.IsEmpty()) Use(line.Take());
class JobLine {
 public:
  // `runJob` does the job in a place, on any thread. With one place it runs on the thread that takes the job.
  JobLine(int32_t placeCount, std::function<void(int32_t place)> runJob);
  JobLine(const JobLine&) = delete;
  JobLine& operator=(const JobLine&) = delete;
  ~JobLine() { Stop(); }

  bool IsEmpty() const { return taken == given; }
  bool IsFull() const { return given - taken == places; }

  // Where the next job goes while the line isn't full.
  int32_t NextPlace() const { return given % places; }
  // The job there may begin: until Take() gives the place, nobody else touches it.
  void Give();
  // Waits until the oldest job is done, and does others in the meantime. Gives its place, which is free again. The line
  // isn't empty.
  int32_t Take();
  // Waits for the jobs that have begun and drops the others. The line is of no use afterwards.
  void Stop();

 private:
  bool BeginsOne(int32_t* place);
  void StartThreads();
  void Work();

  const int32_t places;
  std::function<void(int32_t place)> run;
  // Numbers of jobs, from 0. A job is taken after it was begun, and begun after it was given.
  std::atomic<int32_t> given = 0;
  std::atomic<int32_t> begun = 0;
  int32_t taken = 0;
  std::unique_ptr<std::atomic<bool>[]> isDone;  // by place

  bool hasTriedThreads = false;
  std::atomic<bool> isStopping = false;
  std::atomic<bool> isWaiting = false;  // Take() is, for the end of a job
  std::vector<platform::ThreadHandle> threads;
  platform::SemaphoreHandle jobsWaiting = nullptr;
  platform::SemaphoreHandle jobEnded = nullptr;
};

}  // namespace sorvel
