// Comparisons at level 5 that NaNs may come to, of numbers and of their high words.
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

// The high words of eight numbers, in the order 0, 1, 4, 5, 2, 3, 6, 7. As single-precision numbers
// those of positive numbers have the same order as the numbers, but some are NaNs.
INLINE __m256 eightHighWords(Lanes4 a, Lanes4 b) {
  return _mm256_shuffle_ps(_mm256_castpd_ps(a), _mm256_castpd_ps(b), upperHalves);
}
INLINE __m256 eightHighWords(const Float64* x, int64_t i, int64_t k) {
  return eightHighWords(load<Lanes4>(x + i), load<Lanes4>(x + k));
}
INLINE __m256 singlesOf(int bits) { return _mm256_castsi256_ps(_mm256_set1_epi32(bits)); }
INLINE __m256 selectSingles(__m256 mask, __m256 a, __m256 b) {  // by the sign bits; see `select`
  asm("vblendvps %3, %2, %1, %0" : "=x"(b) : "x"(b), "x"(a), "x"(mask));
  return b;
}

// Whether the high words of all magnitudes taken are at least `from` and below `to`, multiples of 2^24 on
// either side of 0x40000000, without a flag for any (but that of a subnormal operand): with bit 23
// cleared none is a NaN, and a word's place between such multiples is the same.
struct HighWordRange {
  __m256 least, greatest;
};
INLINE HighWordRange emptyRange() { return {singlesOf(0x40000000), singlesOf(0x40000000)}; }
INLINE void take(HighWordRange& range, __m256 words) {
  const __m256 finite = _mm256_and_ps(words, singlesOf(0x7f7fffff));
  range.least = _mm256_min_ps(range.least, finite), range.greatest = _mm256_max_ps(range.greatest, finite);
}
INLINE bool isWithin(HighWordRange range, int from, int to) {
  const __m256 below = _mm256_cmp_ps(range.least, singlesOf(from), _CMP_LT_OQ);
  return _mm256_movemask_ps(_mm256_or_ps(below, _mm256_cmp_ps(range.greatest, singlesOf(to), _CMP_GE_OQ))) == 0;
}

// f(int64_t i, int64_t k) for every eight of `count` numbers, a multiple of 4: four at i and four at k, which
// are the same last ones where there are no others.
template <class F>
INLINE void eachEight(int64_t count, F f) {
  int64_t i = 0;
  for (; i + 8 <= count; i += 8) f(i, i + 4);
  if (i < count) f(i, i);
}

}  // namespace
}  // namespace qorvane
