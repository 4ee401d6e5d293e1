#pragma once

#include <cstddef>

// Memory by the block, from the system.
namespace sorvel::platform {

// All 0. The system provides it as it is first touched, in larger pages where it has them: to give out a small page
// takes several times as long as to fill it. Null if there is no memory.
void* AllocateBlock(size_t bytes);
// A block with the size that it was allocated with.
void FreeBlock(void* block, size_t bytes);

// From now on all threads share one heap, and up to 64 MB of freed memory stay in it: to get new pages from the system
// may take longer than the work that is done on them. To be called once, before any thread is started.
void KeepFreedMemory();

}  // namespace sorvel::platform
