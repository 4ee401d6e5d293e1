#include "platform/memory.h"

#include <sys/mman.h>
#ifdef __GLIBC__
#include <malloc.h>
#endif

#include <cstdint>

namespace sorvel::platform {

namespace {

constexpr size_t kLargePage = size_t{1} << 21;

}  // namespace

void* AllocateBlock(size_t bytes) {
  // Large pages begin at multiples of their size.
  const size_t taken = bytes + kLargePage;
  if (taken < bytes) return nullptr;
  void* const memory = mmap(nullptr, taken, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) return nullptr;
  uint8_t* const start = static_cast<uint8_t*>(memory);
  const size_t before = -reinterpret_cast<uintptr_t>(start) % kLargePage;
  uint8_t* const block = start + before;
  const size_t pageBytes = 4096;
  const size_t used = (bytes + pageBytes - 1) / pageBytes * pageBytes;
  if (before > 0) munmap(start, before);
  if (taken > before + used) munmap(block + used, taken - before - used);
#ifdef MADV_HUGEPAGE
  // Only whole ones, so that what is left over takes no more than it needs.
  if (const size_t large = bytes / kLargePage * kLargePage; large > 0) madvise(block, large, MADV_HUGEPAGE);
#endif
  return block;
}

void FreeBlock(void* block, size_t bytes) {
  if (block != nullptr) munmap(block, bytes);
}

void KeepFreedMemory() {
#ifdef __GLIBC__
  mallopt(M_ARENA_MAX, 1);
  // To set one of these ends the adjustment of both at run time. A 32-bit system refuses the first.
  if (mallopt(M_MMAP_THRESHOLD, 1 << 25) != 0) mallopt(M_TRIM_THRESHOLD, 1 << 26);
#endif
}

}  // namespace sorvel::platform
