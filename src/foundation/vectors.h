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
using Words64x4 = uint64_t __attribute__((vector_size(32)));
using Words16x8 = uint16_t __attribute__((vector_size(16)));
using Words16x16 = uint16_t __attribute__((vector_size(32)));
using Words32x8 = uint32_t __attribute__((vector_size(32)));
using Bytes32 = uint8_t __attribute__((vector_size(32)));
using Numbers8x8 = int8_t __attribute__((vector_size(8)));
using Numbers16x8 = int16_t __attribute__((vector_size(16)));
using Numbers16x16 = int16_t __attribute__((vector_size(32)));
using Numbers32x8 = int32_t __attribute__((vector_size(32)));
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
// on a stack that isn't aligned for them, unless the build says that all moves are unaligned ones.
#if (defined(__x86_64__) || defined(__i386__)) && (!defined(_WIN64) || defined(SORVEL_UNALIGNED_MOVES))
#define SORVEL_HAS_WIDE
#define SORVEL_WIDE [[gnu::target("avx2")]]
inline bool HasWideVectors() {
  static const bool hasThem = __builtin_cpu_supports("avx2");
  return hasThem && gMayUseWideVectors;
}
#else
#define SORVEL_WIDE
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

// What the extensions don't have, or not alike, for functions with the attribute SORVEL_WIDE. Elsewhere the operations
// go item by item.
#define SORVEL_WIDE_INLINE [[gnu::always_inline]] SORVEL_WIDE inline

// As LoadAs(). clang++ lets no other function give a wide vector to one of these.
template <typename Vector>
SORVEL_WIDE_INLINE Vector LoadWide(const void* from) {
  Vector vector;
  std::memcpy(&vector, from, sizeof(vector));
  return vector;
}

// Item i of the result is item indices[i] % 8 of the vector.
SORVEL_WIDE_INLINE Words32x8 Permute(const Words32x8& items, const Words32x8& indices) {
#if defined(SORVEL_HAS_WIDE)
  return reinterpret_cast<Words32x8>(
      __builtin_ia32_permvarsi256(reinterpret_cast<Numbers32x8>(items), reinterpret_cast<Numbers32x8>(indices)));
#else
  Words32x8 result;
  for (int32_t i = 0; i < 8; ++i) result[i] = items[indices[i] % 8];
  return result;
#endif
}

// Byte i of the result is byte indices[i] % 16 of the vector, or 0 if the index is 128 or more.
SORVEL_WIDE_INLINE Bytes16 PermuteBytes(const Bytes16& bytes, const Bytes16& indices) {
#if defined(SORVEL_HAS_WIDE)
  using Chars16 = char __attribute__((vector_size(16)));
  return reinterpret_cast<Bytes16>(
      __builtin_ia32_pshufb128(reinterpret_cast<Chars16>(bytes), reinterpret_cast<Chars16>(indices)));
#else
  Bytes16 result;
  for (int32_t i = 0; i < 16; ++i) result[i] = indices[i] < 128 ? bytes[indices[i] % 16] : uint8_t{0};
  return result;
#endif
}

// The same for each half of a vector.
SORVEL_WIDE_INLINE Bytes32 PermuteBytes(const Bytes32& bytes, const Bytes32& indices) {
#if defined(SORVEL_HAS_WIDE)
  using Chars32 = char __attribute__((vector_size(32)));
  return reinterpret_cast<Bytes32>(
      __builtin_ia32_pshufb256(reinterpret_cast<Chars32>(bytes), reinterpret_cast<Chars32>(indices)));
#else
  Bytes32 result;
  for (int32_t i = 0; i < 32; ++i) result[i] = indices[i] < 128 ? bytes[i / 16 * 16 + indices[i] % 16] : uint8_t{0};
  return result;
#endif
}

SORVEL_WIDE_INLINE Words16x8 Permute(const Words16x8& items, const Words16x8& indices) {
  const Words16x8 bytes = (indices & 7) * 0x0202 + 0x0100;
  return reinterpret_cast<Words16x8>(PermuteBytes(reinterpret_cast<Bytes16>(items), reinterpret_cast<Bytes16>(bytes)));
}

// Each of eight bytes in all bytes of its item.
template <typename Vector>
Vector Spread(uint64_t bytes);
template <>
SORVEL_WIDE_INLINE Words32x8 Spread<Words32x8>(uint64_t bytes) {
  constexpr Bytes32 places = {0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2, 2, 3, 3, 3, 3,
                              4, 4, 4, 4, 5, 5, 5, 5, 6, 6, 6, 6, 7, 7, 7, 7};
  return reinterpret_cast<Words32x8>(PermuteBytes(reinterpret_cast<Bytes32>(Words64x4{} + bytes), places));
}
template <>
SORVEL_WIDE_INLINE Words16x8 Spread<Words16x8>(uint64_t bytes) {
  constexpr Bytes16 places = {0, 0, 1, 1, 2, 2, 3, 3, 4, 4, 5, 5, 6, 6, 7, 7};
  return reinterpret_cast<Words16x8>(PermuteBytes(reinterpret_cast<Bytes16>(Words64x2{bytes, 0}), places));
}

// The highest bits of the items as a number, the first item's lowest.
SORVEL_WIDE_INLINE uint32_t HighestBits(const Words32x8& items) {
#if defined(SORVEL_HAS_WIDE)
  using Floats = float __attribute__((vector_size(32)));
  return static_cast<uint32_t>(__builtin_ia32_movmskps256(reinterpret_cast<Floats>(items)));
#else
  uint32_t bits = 0;
  for (int32_t i = 0; i < 8; ++i) bits |= items[i] >> 31 << i;
  return bits;
#endif
}
SORVEL_WIDE_INLINE uint32_t HighestBits(const Words16x8& low, const Words16x8& high) {
#if defined(SORVEL_HAS_WIDE)
  return static_cast<uint32_t>(__builtin_ia32_pmovmskb128(
      __builtin_ia32_packsswb128(reinterpret_cast<Numbers16x8>(low), reinterpret_cast<Numbers16x8>(high))));
#else
  uint32_t bits = 0;
  for (int32_t i = 0; i < 8; ++i) bits |= uint32_t{low[i]} >> 15 << i | uint32_t{high[i]} >> 15 << (8 + i);
  return bits;
#endif
}
SORVEL_WIDE_INLINE uint32_t HighestBits(const Words16x8& items) {
  return HighestBits(items, Words16x8{});
}
SORVEL_WIDE_INLINE uint32_t HighestBits(const Words16x16& items) {
  return HighestBits(__builtin_shufflevector(items, items, 0, 1, 2, 3, 4, 5, 6, 7),
                     __builtin_shufflevector(items, items, 8, 9, 10, 11, 12, 13, 14, 15));
}

// Whether any bit is set.
SORVEL_WIDE_INLINE bool HasBitsWide(const Bytes32& bytes) {
#if defined(SORVEL_HAS_WIDE)
  using Numbers64x4 = long long __attribute__((vector_size(32)));
  const auto words = reinterpret_cast<Numbers64x4>(bytes);
  return __builtin_ia32_ptestz256(words, words) == 0;
#else
  return HasBits(bytes);
#endif
}

// Items of `yes` where the highest bit of the choice is set, else of `no`.
SORVEL_WIDE_INLINE Words32x8 Choose(const Words32x8& choice, const Words32x8& yes, const Words32x8& no) {
#if defined(SORVEL_HAS_WIDE)
  using Floats = float __attribute__((vector_size(32)));
  return reinterpret_cast<Words32x8>(__builtin_ia32_blendvps256(
      reinterpret_cast<Floats>(no), reinterpret_cast<Floats>(yes), reinterpret_cast<Floats>(choice)));
#else
  return reinterpret_cast<Numbers32x8>(choice) < 0 ? yes : no;
#endif
}
SORVEL_WIDE_INLINE Words16x8 Choose(const Words16x8& choice, const Words16x8& yes, const Words16x8& no) {
  return reinterpret_cast<Numbers16x8>(choice) < 0 ? yes : no;
}
// Bit i is 1 if byte i of the two isn't the same.
SORVEL_WIDE_INLINE uint32_t FindDifferentBytes(uint64_t a, uint64_t b) {
#if defined(SORVEL_HAS_WIDE)
  using Chars16 = char __attribute__((vector_size(16)));
  const auto equal = reinterpret_cast<Bytes16>(Words64x2{a, 0}) == reinterpret_cast<Bytes16>(Words64x2{b, 0});
  return static_cast<uint32_t>(__builtin_ia32_pmovmskb128(reinterpret_cast<Chars16>(equal))) ^ 0xFFFF;
#else
  uint32_t different = 0;
  for (uint32_t i = 0; i < 8; ++i) different |= (((a ^ b) >> 8 * i & 0xFF) != 0 ? 1u : 0u) << i;
  return different;
#endif
}

// 16 numbers below 16 as half bytes of a number, the first lowest.
SORVEL_WIDE_INLINE uint64_t JoinHalfBytes(const Words16x16& numbers) {
  constexpr uint8_t no = 128;
  constexpr Bytes32 places = {0,  4,  8,  12, no, no, no, no, no, no, no, no, no, no, no, no,
                              no, no, no, no, 0,  4,  8,  12, no, no, no, no, no, no, no, no};
  const auto pairs = reinterpret_cast<Words32x8>(numbers);
  const auto bytes = PermuteBytes(reinterpret_cast<Bytes32>(pairs | pairs >> 12), places);
  const auto words = reinterpret_cast<Words64x4>(bytes);
  return words[0] | words[2];
}

}  // namespace sorvel
