#include "platform/memory.h"

#include "platform/win32/win32.h"

namespace sorvel::platform {

// Larger pages are for those whom an administrator allows them.
void* AllocateBlock(size_t bytes) {
  return VirtualAlloc(nullptr, bytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
}

void FreeBlock(void* block, size_t bytes) {
  static_cast<void>(bytes);
  if (block != nullptr) VirtualFree(block, 0, MEM_RELEASE);
}

// All threads share one heap here in any case.
void KeepFreedMemory() {}

}  // namespace sorvel::platform
