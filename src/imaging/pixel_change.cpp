#include "imaging/pixel_change.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <utility>

namespace sorvel {

namespace {

constexpr int64_t kWord = sizeof(uint32_t);
// Equal memory is skipped in steps of so many words.
constexpr int64_t kStep = 64;
// So many equal words end a run: a new one costs two.
constexpr int64_t kLeastRepeated = 4;

uint32_t WordAt(const uint8_t* bytes, int64_t word) {
  uint32_t value = 0;
  std::memcpy(&value, bytes + word * kWord, sizeof(value));
  return value;
}

// Calls run(first, count, isRepeated) for the words that differ, in order.
template <typename Run>
void ForEachRun(const uint8_t* before, const uint8_t* after, int64_t count, const Run& run) {
  const auto difference = [before, after](int64_t word) { return WordAt(before, word) ^ WordAt(after, word); };
  int64_t word = 0;
  while (word < count) {
    const int64_t step = std::min(kStep, count - word);
    if (std::memcmp(before + word * kWord, after + word * kWord, static_cast<size_t>(step * kWord)) == 0) {
      word += step;
      continue;
    }
    while (difference(word) == 0) ++word;
    const int64_t first = word;
    uint32_t last = difference(word);
    int64_t same = 1;  // of the words so far, from the last one back
    for (++word; word < count; ++word) {
      const uint32_t value = difference(word);
      same = value == last ? same + 1 : 1;
      last = value;
      if (same == kLeastRepeated) break;
    }
    if (same < kLeastRepeated) {
      run(first, count - first, false);
      return;
    }
    const int64_t repeated = word - kLeastRepeated + 1;
    if (repeated > first) run(first, repeated - first, false);
    if (last == 0) continue;
    while (word < count && difference(word) == last) ++word;
    run(repeated, word - repeated, true);
  }
}

}  // namespace

bool PixelChange::Compare(const uint8_t* before, const uint8_t* after, int64_t start, int64_t end) {
  from = start;
  before += start;
  after += start;
  const int64_t count = (end - start) / kWord;
  uint64_t size = 0;
  ForEachRun(before, after, count, [&size](int64_t, int64_t length, bool isRepeated) {
    size += 2 + (isRepeated ? 1 : static_cast<uint64_t>(length));
  });
  Buffer<uint32_t> newCode;
  if (size > 0 && !newCode.Allocate(size)) {
    code = Buffer<uint32_t>();
    return false;
  }
  uint32_t* to = newCode.Data();
  int64_t done = 0;
  ForEachRun(before, after, count, [&](int64_t first, int64_t length, bool isRepeated) {
    *to++ = static_cast<uint32_t>(first - done);
    *to++ = static_cast<uint32_t>(length) | (isRepeated ? kRepeated : 0);
    done = first + length;
    for (int64_t word = first; word < (isRepeated ? first + 1 : done); ++word) {
      *to++ = WordAt(before, word) ^ WordAt(after, word);
    }
  });
  code = std::move(newCode);
  return true;
}

void PixelChange::Apply(uint8_t* bytes) const {
  uint8_t* at = bytes + from;
  const uint32_t* next = code.Data();
  const uint32_t* const codeEnd = next + code.Count();
  while (next < codeEnd) {
    at += int64_t{*next++} * kWord;
    const uint32_t length = *next & ~kRepeated;
    const bool isRepeated = (*next++ & kRepeated) != 0;
    for (uint32_t i = 0; i < length; ++i, at += kWord) {
      const uint32_t value = WordAt(at, 0) ^ *next;
      std::memcpy(at, &value, sizeof(value));
      if (!isRepeated) ++next;
    }
    if (isRepeated) ++next;
  }
}

}  // namespace sorvel
