#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

// Results that may leave 32 bits. Coordinates come from files and from zoomed views, so any value is possible: a
// wrapping operation keeps the low 32 bits, a saturating one stops at the smallest or largest number.
namespace sorvel {

constexpr int32_t Wrapped(int64_t value) {
  return static_cast<int32_t>(value);
}

constexpr int32_t Saturated(int64_t value) {
  return static_cast<int32_t>(
      std::clamp<int64_t>(value, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()));
}

constexpr int32_t WrappingAdd(int32_t a, int32_t b) {
  return Wrapped(int64_t{a} + b);
}

constexpr int32_t WrappingSubtract(int32_t a, int32_t b) {
  return Wrapped(int64_t{a} - b);
}

// value * numerator / denominator, rounded towards zero. The product must fit in 64 bits.
constexpr int32_t WrappingScale(int64_t value, int32_t numerator, int32_t denominator) {
  return Wrapped(value * numerator / denominator);
}

constexpr int32_t SaturatingAdd(int32_t a, int32_t b) {
  return Saturated(int64_t{a} + b);
}

constexpr int32_t SaturatingSubtract(int32_t a, int32_t b) {
  return Saturated(int64_t{a} - b);
}

}  // namespace sorvel
