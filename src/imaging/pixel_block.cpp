#include "imaging/pixel_block.h"

#include <algorithm>

#include "platform/bitmaps.h"
#include "platform/memory.h"

namespace sorvel {

namespace {

// Of more memory, a virtual machine may have to get most from its host first, which takes longer than to use small
// pages again.
constexpr size_t kSmallestBlock = size_t{1} << 22;
constexpr size_t kLargestBlock = size_t{1} << 24;
constexpr size_t kCacheLine = 64;

}  // namespace

PixelBlock* PixelBlock::Make(int32_t images, int32_t bytesOfImage) {
  const size_t pixels = static_cast<size_t>(std::max(bytesOfImage, 0)) + platform::kSpareBytes;
  const size_t partBytes = (pixels + kCacheLine - 1) / kCacheLine * kCacheLine;
  const auto count = static_cast<size_t>(std::max(images, 0));
  if (count > kLargestBlock / partBytes || count * partBytes < kSmallestBlock) return nullptr;
  void* const memory = platform::AllocateBlock(count * partBytes);
  return memory != nullptr ? new PixelBlock(static_cast<uint8_t*>(memory), images, partBytes) : nullptr;
}

uint8_t* PixelBlock::Take(int32_t bytesOfImage) {
  if (static_cast<size_t>(bytesOfImage) + platform::kSpareBytes > partBytes) return nullptr;
  int32_t part = taken;
  do {
    if (part == partCount) return nullptr;
  } while (!taken.compare_exchange_weak(part, part + 1));
  ++users;
  return bytes + static_cast<size_t>(part) * partBytes;
}

void PixelBlock::Release() {
  if (--users > 0) return;
  platform::FreeBlock(bytes, static_cast<size_t>(partCount) * partBytes);
  delete this;
}

}  // namespace sorvel
