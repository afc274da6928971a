// tanh(x): what the levels share, which is all but the width of the vectors.
//
// Method: a = |x| chooses a row of a table, one for each eighth of a binade from 0.125 to 20, and
//   tanh a = B + C + t (A + Q),  Q = k2 t + ... + k10 t^9,  t = a - middle
// where B + C is the value at the row's middle. A + Q and its product with t are carried as high
// and low parts, and so is the sum with B. Below 0.125 the middle is 0, B = C = 0 and A = 1; from
// 20 up B = 1 and all else is 0.
//
// Error: at most 0.755 ulp below 0.125, near 0.0624, where no low part takes up the error of the
// last product; 0.536 ulp above, near 4.4 (docs/accuracy.md has the arguments). The kernels run in
// round-to-nearest with subnormals honoured, whatever the caller's mode.
//
// Special values: infinities give 1 with their sign, a NaN comes back as it is. No element fails.
#pragma once
#include "hyperbolic/strips.h"

namespace qorvane {
namespace {

#include "hyperbolic/tanh_tables.inc"

constexpr int nonFiniteHighWord = 0x7ff00000;

// Where columns of tanhPolyTable begin.
constexpr int columnsCB = 0, columnsAk2 = 2, columnsK3 = 4, columnsK5 = 6, columnsK7 = 8, columnsK9 = 10;

// The index of the eighth of a binade in which a number stands, from its high word, and the byte
// offset of its row.
INLINE __m128i eighthsOf(Words4 highWords) {
  return _mm_srli_epi32(_mm_slli_epi32(reinterpret_cast<__m128i>(highWords), 1), 18);
}
INLINE Words4 rowOffsets(__m128i eighths) {
  constexpr int lastRow = 59, eighthOfRow0 = 0x3fbe0000 >> 17;
  const __m128i row = _mm_subs_epu16(eighths, _mm_set1_epi32(eighthOfRow0));  // 0 for all that is smaller
  return reinterpret_cast<Words4>(_mm_slli_epi32(_mm_min_epi16(row, _mm_set1_epi32(lastRow)), 7));
}

// All ones where a is at least 0.125 and below 20.
INLINE Lanes2 hasMiddle(Lanes2 a) {
  const __m128i high = _mm_shuffle_epi32(_mm_castpd_si128(a), 0xf5);
  const __m128i from = _mm_cmpgt_epi32(high, _mm_set1_epi32(0x3fbfffff));
  return _mm_castsi128_pd(_mm_and_si128(from, _mm_cmplt_epi32(high, _mm_set1_epi32(0x40340000))));
}
#ifdef __AVX__
INLINE Lanes4 hasMiddle(Lanes4 a) {
  const Lanes4 from = _mm256_cmp_pd(a, _mm256_set1_pd(0.125), _CMP_GE_OQ);
  return andBits<Lanes4>(from, _mm256_cmp_pd(a, _mm256_set1_pd(20), _CMP_LT_OQ));
}
#endif

// a - middle. The middle has the leading bits of its row and a 1 behind them.
template <class V>
INLINE V distanceFromMiddle(V a) {
  const V start = andBits(a, broadcast<V>(fromBits(0x7ffe000000000000)));
  const V middle = orBits(start, broadcast<V>(fromBits(0x0001000000000000)));
  return a - andBits(middle, hasMiddle(a));
}

INLINE Words4 wordsInOne(Words4 words) { return words; }
INLINE Words4 wordsInOne(Pack<Words4, 1> words) { return words.part[0]; }

// What the steps of the second pass leave to the next.
template <class V>
struct TanhSteps {
  V upper;                // k7 + ... + k10 t^3
  V lower;                // k3 + ... + k10 t^7
  V A, Q, slope, dif;     // slope = A + Q, dif = Q - slope
  V product, productLow;  // t (A + Q)
};

template <class V>
INLINE void upperTerms(TanhSteps<V>& s, const Float64* t, const uint32_t* offsets) {
  const auto rows = rowsAt<V>(offsets);
  const V u = load<V>(t);
  const auto [k9, k10] = twoColumns<V>(tanhPolyTable[0] + columnsK9, rows);
  const auto [k7, k8] = twoColumns<V>(tanhPolyTable[0] + columnsK7, rows);
  s.upper = k7 + u * (k8 + u * (k9 + u * k10));
}
template <class V>
INLINE void lowerTerms(TanhSteps<V>& s, const Float64* t, const uint32_t* offsets) {
  const auto rows = rowsAt<V>(offsets);
  const V u = load<V>(t);
  const auto [k5, k6] = twoColumns<V>(tanhPolyTable[0] + columnsK5, rows);
  const auto [k3, k4] = twoColumns<V>(tanhPolyTable[0] + columnsK3, rows);
  s.lower = k3 + u * (k4 + u * (k5 + u * (k6 + u * s.upper)));
}
template <class V>
INLINE void slope(TanhSteps<V>& s, const Float64* t, const uint32_t* offsets) {
  const V u = load<V>(t);
  const auto [A, k2] = twoColumns<V>(tanhPolyTable[0] + columnsAk2, rowsAt<V>(offsets));
  s.A = A;
  s.Q = u * (k2 + u * s.lower);
  s.slope = A + s.Q;
  s.dif = s.Q - s.slope;
}
template <class V>
INLINE void product(TanhSteps<V>& s, const Float64* t) {
  const V leading = broadcast<V>(fromBits(0xfffffffff8000000));  // 26 bits, so that a product of two is exact
  const V u = load<V>(t), uHigh = andBits(u, leading), uLow = u - uHigh, slopeHigh = andBits(s.slope, leading);
  const V error = (s.dif + s.A) + (s.Q - (s.slope + s.dif)), slopeLow = error + (s.slope - slopeHigh);
  s.product = slopeHigh * uHigh;
  s.productLow = (slopeLow * uLow + uLow * slopeHigh) + uHigh * slopeLow;
}
template <class V>
INLINE V sum(const TanhSteps<V>& s, const uint32_t* offsets) {
  const auto [C, B] = twoColumns<V>(tanhPolyTable[0] + columnsCB, rowsAt<V>(offsets));
  const V high = B + s.product, dif = s.product - high, error = (dif + B) + (s.product - (high + dif));
  return ((error + s.productLow) + C) + high;
}

// A strip of finite elements, their number a multiple of four; gives false where one isn't finite.
template <class V>
INLINE bool tanhStrip(const Float64* src, Float64* dst, int64_t count) {
  constexpr int64_t vector = laneCount<V>;
  alignas(32) Float64 t[longestStrip];
  alignas(16) uint32_t offsets[longestStrip];
  __m128i last = _mm_setzero_si128();
  for (int64_t i = 0; i < count; i += 4) {
    const V x = load<V>(src + i);
    store(t + i, distanceFromMiddle(magnitude(x)));
    if constexpr (vector == 2) store(t + i + 2, distanceFromMiddle(magnitude(load<V>(src + i + 2))));
    const __m128i eighths = eighthsOf(wordsInOne(highWords(load<Four>(src + i))));
    last = _mm_max_epi16(last, eighths);
    storeWords(offsets + i, rowOffsets(eighths));
  }
  if (any(reinterpret_cast<Words4>(last) > (nonFiniteHighWord >> 17) - 1)) return false;

  TanhSteps<V> s;
  pipeline<vector>(
      count, [&](int64_t i) INLINED { upperTerms(s, t + i, offsets + i); },
      [&](int64_t i) INLINED { lowerTerms(s, t + i, offsets + i); },
      [&](int64_t i) INLINED { slope(s, t + i, offsets + i); }, [&](int64_t i) INLINED { product(s, t + i); },
      [&](int64_t i) INLINED { store(dst + i, orBits(sum(s, offsets + i), signOf(load<V>(src + i)))); });
  return true;
}

// One vector of finite elements.
template <class V>
INLINE V tanhCore(V x) {
  alignas(32) Float64 t[laneCount<V>];
  alignas(16) uint32_t offsets[4];
  store(t, distanceFromMiddle(magnitude(x)));
  storeWords(offsets, rowOffsets(eighthsOf(highWords(x))));
  TanhSteps<V> s;
  upperTerms(s, t, offsets), lowerTerms(s, t, offsets), slope(s, t, offsets), product(s, t);
  return orBits(sum(s, offsets), signOf(x));
}

template <class V>
Element tanhFixLane(Float64 x) {
  if (toBits(magnitude(x)) > 0x7ff0000000000000) return {x};
  if (toBits(magnitude(x)) == 0x7ff0000000000000) return {orBits(1.0, signOf(x))};
  return {tanhCore(broadcast<V>(x))[0]};
}

template <class V>
nuvStatus tanhLoop(const Float64* src, Float64* dst, int64_t len) {
  return shortOrLongLoop<longestStrip, shortestStrip, 4>(
      len, [](int64_t count, const Float64* x, Float64* y) INLINED { return tanhStrip<V>(x, y, count); },
      [](int64_t count, const Float64* x, Float64* y) INLINED {
        return guardedUnaryLoop<V, Raises::no>(
            x, y, count, [](V v) INLINED { return tanhCore(v); },
            [](auto v) INLINED { return anyMagnitudeFrom(v, nonFiniteHighWord); }, tanhFixLane<V>);
      },
      src, dst);
}

}  // namespace
}  // namespace qorvane
