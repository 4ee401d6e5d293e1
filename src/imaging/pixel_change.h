#pragma once

#include <cstdint>

#include "foundation/buffer.h"

namespace sorvel {

// The difference between two states of some memory. It takes what changed, not what there is, and turns either state
// into the other one.
class PixelChange {
 public:
  // Compares the bytes from `start` to `end`, which are multiples of 4. False, and the difference is empty, if there is
  // no memory for it.
  bool Compare(const uint8_t* before, const uint8_t* after, int64_t start, int64_t end);

  bool IsEmpty() const { return code.Count() == 0; }
  // `bytes` is the memory in one of its two states.
  void Apply(uint8_t* bytes) const;
  int64_t ByteCount() const { return static_cast<int64_t>(code.Count() * sizeof(uint32_t)); }

 private:
  // Runs of words: how many equal words are skipped, the length, and the exclusive or of the two states, which is
  // stored once if kRepeated is set in the length.
  static constexpr uint32_t kRepeated = 1u << 31;

  int64_t from = 0;  // bytes
  Buffer<uint32_t> code;
};

}  // namespace sorvel
