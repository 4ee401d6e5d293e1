#pragma once

#include <cstdint>
#include <cstring>

// Vectors of 16 bytes by the extensions that g++ and clang++ share: arithmetic works on each item, comparisons give all
// ones or zeros. The compiler maps them to the vector registers of the processor. Where there are none, operations on
// two 64-bit words are the ones that stay cheap.
namespace sorvel {

// How a function takes a vector doesn't matter: those here are always inlined.
#pragma GCC diagnostic ignored "-Wpsabi"

using Words64x2 = uint64_t __attribute__((vector_size(16)));
using Numbers16x8 = int16_t __attribute__((vector_size(16)));
using Bytes8 = uint8_t __attribute__((vector_size(8)));
using Bytes16 = uint8_t __attribute__((vector_size(16)));

// Memory of any alignment as a vector or a number.
template <typename Vector>
[[gnu::always_inline]] inline Vector LoadAs(const void* from) {
  Vector vector;
  std::memcpy(&vector, from, sizeof(vector));
  return vector;
}

template <typename Vector>
[[gnu::always_inline]] inline void StoreAs(void* to, const Vector& vector) {
  std::memcpy(to, &vector, sizeof(vector));
}

// Tests set it to false.
inline bool gMayUseWideVectors = true;

// A wider vector, for functions with the attribute SORVEL_WIDE. They are for processors that HasWideVectors() has
// found. Elsewhere there are none, and the types are those above; so for 64-bit Windows, where g++ keeps wide vectors
// on a stack that isn't aligned for them.
#if (defined(__x86_64__) || defined(__i386__)) && !defined(_WIN64)
#define SORVEL_WIDE [[gnu::target("avx2")]]
using Numbers16x16 = int16_t __attribute__((vector_size(32)));
using Bytes32 = uint8_t __attribute__((vector_size(32)));
using Bytes32Half = Bytes16;
inline bool HasWideVectors() {
  static const bool hasThem = __builtin_cpu_supports("avx2");
  return hasThem && gMayUseWideVectors;
}
#else
#define SORVEL_WIDE
using Numbers16x16 = Numbers16x8;
using Bytes32 = Bytes16;
using Bytes32Half = Bytes8;
inline bool HasWideVectors() {
  return false;
}
#endif

// Whether any bit of a vector is set.
template <typename Vector>
[[gnu::always_inline]] inline bool HasBits(const Vector& vector) {
  uint64_t words[sizeof(Vector) / 8];
  std::memcpy(words, &vector, sizeof(vector));
  uint64_t all = 0;
  for (const uint64_t word : words) all |= word;
  return all != 0;
}

}  // namespace sorvel
