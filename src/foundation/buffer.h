#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <type_traits>
#include <utility>

namespace sorvel {

// Owned memory for items without constructors. The memory is freed with the buffer.
//
// An allocation that fails gives false and leaves the buffer empty: the operation that needs the memory then fails.
// No allocation throws or ends the program. A count of 0 succeeds.
template <typename Item>
class Buffer {
  static_assert(std::is_trivially_copyable_v<Item>);

 public:
  Buffer() = default;
  Buffer(const Buffer&) = delete;
  Buffer& operator=(const Buffer&) = delete;
  // A moved buffer hands its memory over and is empty.
  Buffer(Buffer&& other) noexcept : items(std::exchange(other.items, nullptr)), count(std::exchange(other.count, 0)) {}
  Buffer& operator=(Buffer&& other) noexcept {
    std::swap(items, other.items);
    std::swap(count, other.count);
    other.Free();
    return *this;
  }
  ~Buffer() { std::free(items); }

  // Both free first what the buffer held. The items of Allocate() have no defined value.
  [[nodiscard]] bool Allocate(uint64_t newCount) {
    Free();
    if (Fits(newCount)) items = static_cast<Item*>(std::malloc(Bytes(newCount)));
    if (items != nullptr) count = static_cast<size_t>(newCount);
    return items != nullptr;
  }
  // The system provides zeroed memory page by page as it is first written to.
  [[nodiscard]] bool AllocateZeroed(uint64_t newCount) {
    Free();
    if (Fits(newCount)) items = static_cast<Item*>(std::calloc(Bytes(newCount), 1));
    if (items != nullptr) count = static_cast<size_t>(newCount);
    return items != nullptr;
  }

  bool IsAllocated() const { return items != nullptr; }
  size_t Count() const { return count; }
  Item* Data() { return items; }
  const Item* Data() const { return items; }
  Item& operator[](size_t index) { return items[index]; }
  const Item& operator[](size_t index) const { return items[index]; }

 private:
  static bool Fits(uint64_t newCount) { return newCount <= std::numeric_limits<size_t>::max() / sizeof(Item); }
  // At least one byte: malloc(0) may give null.
  static size_t Bytes(uint64_t newCount) { return std::max<size_t>(static_cast<size_t>(newCount) * sizeof(Item), 1); }

  void Free() {
    std::free(items);
    items = nullptr;
    count = 0;
  }

  Item* items = nullptr;
  size_t count = 0;
};

}  // namespace sorvel
