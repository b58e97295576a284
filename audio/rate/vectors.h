#pragma once

// Vector types for kernels.inl.h: 16-bit numbers, pairs of which make 32-bit sums. Vector128 has 8 of them in
// an SSE register, Vector256 has 16 in an AVX2 one; both have the same operations.

#include <immintrin.h>

#include <cstdint>

#include "audio/rate/kernels.h"

namespace speech::audio::rate {

/// The level is part of the type so that each file that is compiled for its own instruction set gets
/// functions of its own.
template <Level kLevel>
struct Vector128 {
  static constexpr std::int32_t kLanes = 8;
  using Type = __m128i;

  static Type zero() { return _mm_setzero_si128(); }
  static Type splat(std::int16_t value) { return _mm_set1_epi16(value); }
  static Type splat32(std::int32_t value) { return _mm_set1_epi32(value); }
  static Type load(const std::int16_t* from) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
  }

  static Type add16(Type a, Type b) { return _mm_add_epi16(a, b); }
  static Type sub16(Type a, Type b) { return _mm_sub_epi16(a, b); }
  static Type add32(Type a, Type b) { return _mm_add_epi32(a, b); }
  static Type mulHigh(Type a, Type b) { return _mm_mulhi_epi16(a, b); }
  static Type mulLow(Type a, Type b) { return _mm_mullo_epi16(a, b); }

  /// All bits of the negative numbers.
  static Type signMask(Type v) { return _mm_srai_epi16(v, 15); }
  static Type withoutSign(Type v) { return _mm_and_si128(v, _mm_set1_epi16(0x7FFF)); }
  static Type select(Type mask, Type where, Type otherwise) {
    return _mm_or_si128(_mm_and_si128(mask, where), _mm_andnot_si128(mask, otherwise));
  }

  /// Four 32-bit clocks, one output sample apart.
  static Type fourSteps(std::uint32_t clock, std::uint32_t step) {
    return _mm_set_epi32(static_cast<int>(clock + 3 * step), static_cast<int>(clock + 2 * step),
                         static_cast<int>(clock + step), static_cast<int>(clock));
  }
  /// (clock & 127) << 8 of each, twice.
  static Type fractionPairs(Type clocks) {
    const Type fractions = _mm_and_si128(_mm_slli_epi32(clocks, 8), _mm_set1_epi32(0x7F00));
    return _mm_or_si128(fractions, _mm_slli_epi32(fractions, 16));
  }
  template <int kIndex>
  static Type splatPair(Type pairs) {
    return _mm_shuffle_epi32(pairs, kIndex * 0x55);
  }

  /// ((v >> 13, unsigned) + 1) >> 1.
  static Type roundedTop3(Type v) { return _mm_avg_epu16(_mm_srli_epi16(v, 13), zero()); }

  /// (coef * sample + 8192) >> 14 for |coef| < 16384.
  static Type roundedProducts(Type coef, Type sample) {
    if constexpr (kLevel == Level::kAvx2) {
      return _mm_mulhrs_epi16(_mm_add_epi16(coef, coef), sample);
    } else {
      return add16(_mm_slli_epi16(mulHigh(coef, sample), 2), roundedTop3(mulLow(coef, sample)));
    }
  }

  /// Neighbouring 16-bit numbers added up to 32 bits.
  static Type pairSums(Type v) { return _mm_madd_epi16(v, _mm_set1_epi16(1)); }
  static Type pairSumsTimes4(Type v) { return _mm_madd_epi16(v, _mm_set1_epi16(4)); }

  /// Four sums of 32-bit numbers across each vector.
  static void storeSums(std::int32_t* to, Type a, Type b, Type c, Type d) {
    const Type ab = add32(_mm_unpacklo_epi32(a, b), _mm_unpackhi_epi32(a, b));
    const Type cd = add32(_mm_unpacklo_epi32(c, d), _mm_unpackhi_epi32(c, d));
    const Type abcd = add32(_mm_unpacklo_epi64(ab, cd), _mm_unpackhi_epi64(ab, cd));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), abcd);
  }

  /// Stores 16-bit numbers as 32-bit ones.
  static void widenTo(std::int32_t* to, Type v) {
    const Type sign = signMask(v);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_unpacklo_epi16(v, sign));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to) + 1, _mm_unpackhi_epi16(v, sign));
  }

  /// Adds 16-bit numbers to 32-bit ones.
  static void addTo(std::int32_t* sums, Type v) {
    auto* to = reinterpret_cast<__m128i*>(sums);
    const Type sign = signMask(v);
    _mm_storeu_si128(to, add32(_mm_loadu_si128(to), _mm_unpacklo_epi16(v, sign)));
    _mm_storeu_si128(to + 1, add32(_mm_loadu_si128(to + 1), _mm_unpackhi_epi16(v, sign)));
  }
};

#ifdef __AVX2__

struct Vector256 {
  static constexpr std::int32_t kLanes = 16;
  using Type = __m256i;

  static Type zero() { return _mm256_setzero_si256(); }
  static Type splat(std::int16_t value) { return _mm256_set1_epi16(value); }
  static Type splat32(std::int32_t value) { return _mm256_set1_epi32(value); }
  static Type load(const std::int16_t* from) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
  }

  static Type add16(Type a, Type b) { return _mm256_add_epi16(a, b); }
  static Type sub16(Type a, Type b) { return _mm256_sub_epi16(a, b); }
  static Type add32(Type a, Type b) { return _mm256_add_epi32(a, b); }
  static Type mulHigh(Type a, Type b) { return _mm256_mulhi_epi16(a, b); }
  static Type mulLow(Type a, Type b) { return _mm256_mullo_epi16(a, b); }

  static Type signMask(Type v) { return _mm256_srai_epi16(v, 15); }
  static Type withoutSign(Type v) { return _mm256_and_si256(v, _mm256_set1_epi16(0x7FFF)); }
  static Type select(Type mask, Type where, Type otherwise) {
    return _mm256_blendv_epi8(otherwise, where, mask);
  }

  /// The four clocks in each half.
  static Type fourSteps(std::uint32_t clock, std::uint32_t step) {
    return _mm256_broadcastsi128_si256(
        _mm_set_epi32(static_cast<int>(clock + 3 * step), static_cast<int>(clock + 2 * step),
                      static_cast<int>(clock + step), static_cast<int>(clock)));
  }
  static Type fractionPairs(Type clocks) {
    const Type fractions = _mm256_and_si256(_mm256_slli_epi32(clocks, 8), _mm256_set1_epi32(0x7F00));
    return _mm256_or_si256(fractions, _mm256_slli_epi32(fractions, 16));
  }
  template <int kIndex>
  static Type splatPair(Type pairs) {
    return _mm256_shuffle_epi32(pairs, kIndex * 0x55);
  }

  static Type roundedTop3(Type v) { return _mm256_avg_epu16(_mm256_srli_epi16(v, 13), zero()); }
  static Type roundedProducts(Type coef, Type sample) {
    return _mm256_mulhrs_epi16(_mm256_add_epi16(coef, coef), sample);
  }

  static Type pairSums(Type v) { return _mm256_madd_epi16(v, _mm256_set1_epi16(1)); }
  static Type pairSumsTimes4(Type v) { return _mm256_madd_epi16(v, _mm256_set1_epi16(4)); }

  static void storeSums(std::int32_t* to, Type a, Type b, Type c, Type d) {
    const Type ab = add32(_mm256_unpacklo_epi32(a, b), _mm256_unpackhi_epi32(a, b));
    const Type cd = add32(_mm256_unpacklo_epi32(c, d), _mm256_unpackhi_epi32(c, d));
    const Type abcd = add32(_mm256_unpacklo_epi64(ab, cd), _mm256_unpackhi_epi64(ab, cd));
    const __m128i sums = _mm_add_epi32(_mm256_castsi256_si128(abcd), _mm256_extracti128_si256(abcd, 1));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), sums);
  }

  static void widenTo(std::int32_t* to, Type v) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(to), _mm256_cvtepi16_epi32(_mm256_castsi256_si128(v)));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(to) + 1,
                        _mm256_cvtepi16_epi32(_mm256_extracti128_si256(v, 1)));
  }

  static void addTo(std::int32_t* sums, Type v) {
    auto* to = reinterpret_cast<__m256i*>(sums);
    const Type low = _mm256_cvtepi16_epi32(_mm256_castsi256_si128(v));
    const Type high = _mm256_cvtepi16_epi32(_mm256_extracti128_si256(v, 1));
    _mm256_storeu_si256(to, add32(_mm256_loadu_si256(to), low));
    _mm256_storeu_si256(to + 1, add32(_mm256_loadu_si256(to + 1), high));
  }
};

#endif

}  // namespace speech::audio::rate
