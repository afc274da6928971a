// Comparisons at level 5 that NaNs may come to.
#pragma once
#include "frame/words.h"

namespace qorvane {
namespace {

// Whether a < b, without a flag where either is a quiet NaN.
INLINE Float64 quietlyLess(Float64 a, Float64 b) { return fromBits(-static_cast<uint64_t>(__builtin_isless(a, b))); }
INLINE Lanes4 quietlyLess(Lanes4 a, Lanes4 b) { return _mm256_cmp_pd(a, b, _CMP_LT_OQ); }
template <int K>
INLINE Pack<Lanes4, K> quietlyLess(Pack<Lanes4, K> a, Pack<Lanes4, K> b) {
  return makePack<K>([&](int i) INLINED { return quietlyLess(a.part[i], b.part[i]); });
}

// Whether a >= b or there is no order, likewise.
INLINE Float64 quietlyNotLess(Float64 a, Float64 b) { return fromBits(__builtin_isless(a, b) - uint64_t{1}); }
INLINE Lanes4 quietlyNotLess(Lanes4 a, Lanes4 b) { return _mm256_cmp_pd(a, b, _CMP_NLT_UQ); }
template <int K>
INLINE Pack<Lanes4, K> quietlyNotLess(Pack<Lanes4, K> a, Pack<Lanes4, K> b) {
  return makePack<K>([&](int i) INLINED { return quietlyNotLess(a.part[i], b.part[i]); });
}

// Whether the high words of all magnitudes are at least `from` and below `to`, and no flag for any.
// `count` is a multiple of 4.
INLINE bool allHighWordsWithin(const Float64* x, int64_t count, int from, int to) {
  const __m256 noSign = _mm256_castsi256_ps(_mm256_set1_epi32(0x7fffffff));
  const __m128i first = _mm_set1_epi32(from), last = _mm_set1_epi32(to - from - 1);
  __m128i greatest = last;  // unsigned: what is below `from` comes out above all others
  for (int64_t i = 0; i < count; i += 8) {
    const Lanes4 a = load<Lanes4>(x + i), b = load<Lanes4>(x + (i + 4 < count ? i + 4 : i));
    const __m256 all = _mm256_shuffle_ps(_mm256_castpd_ps(a), _mm256_castpd_ps(b), upperHalves);  // not in order
    const __m256 words = _mm256_and_ps(all, noSign);
    greatest = _mm_max_epu32(greatest, _mm_sub_epi32(_mm_castps_si128(_mm256_castps256_ps128(words)), first));
    greatest = _mm_max_epu32(greatest, _mm_sub_epi32(_mm_castps_si128(_mm256_extractf128_ps(words, 1)), first));
  }
  return _mm_movemask_epi8(_mm_cmpeq_epi32(greatest, last)) == 0xffff;
}

}  // namespace
}  // namespace qorvane
