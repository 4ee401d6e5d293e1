#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

namespace sorvel {

// The memory of the pixels of many images, which comes faster than that of each. It is freed with the last of its
// users: the one that made it, and each image that took a part of it.
class PixelBlock {
 public:
  // Null if the pixels of so many images are too few or too many for a block, or if there is no memory for it.
  static PixelBlock* Make(int32_t images, int32_t bytesOfImage);
  PixelBlock(const PixelBlock&) = delete;
  PixelBlock& operator=(const PixelBlock&) = delete;

  // The pixels of one more image, all 0, with the spare bytes behind them; null if they are larger than was said, or if
  // there are no more. On any thread.
  uint8_t* Take(int32_t bytes);
  // One user less.
  void Release();

 private:
  PixelBlock(uint8_t* memory, int32_t parts, size_t bytesOfPart)
      : bytes(memory), partCount(parts), partBytes(bytesOfPart) {}
  ~PixelBlock() = default;

  uint8_t* const bytes;
  const int32_t partCount;
  const size_t partBytes;
  std::atomic<int32_t> taken = 0;
  std::atomic<int32_t> users = 1;
};

}  // namespace sorvel
