// tanh(x): what the levels share, which is all but the width of the vectors.
//
// Method: a = |x| chooses a row of a table, one for each eighth of a binade from 0.125 to 20, and
//   tanh a = B + C + t (A + Q),  Q = k2 t + ... + k10 t^9,  t = a - middle
// where B + C is the value at the row's middle. A + Q and its product with t are carried as high + low parts, and so is
// the sum with B, so that one rounding remains. Below 0.125 the middle is 0, B = C = 0 and A = 1; from 20 up B = 1 and
// all else is 0.
//
// Special values: infinities give 1 with their sign, a NaN comes back as it is. No element fails.
#pragma once
#include "hyperbolic/strips.h"

namespace qorvane {
namespace {

#include "hyperbolic/tanh_tables.inc"

// Where columns of tanhPolyTable begin.
constexpr int columnsCB = 0, columnsAk2 = 2, columnsK3 = 4, columnsK5 = 6, columnsK7 = 8, columnsK9 = 10;
constexpr int lastRow = 59, firstRowOfHighWords = 0x3fbe0000 >> 17;

INLINE Words4 wordsInOne(Words4 words) { return words; }
INLINE Words4 wordsInOne(Pack<Words4, 1> words) { return words.part[0]; }

INLINE Words4 tanhRowOffsets(Words4 highWords) {
  const __m128i eighths = _mm_srli_epi32(_mm_slli_epi32(reinterpret_cast<__m128i>(highWords), 1), 18);
  const __m128i row = _mm_subs_epu16(eighths, _mm_set1_epi32(firstRowOfHighWords));  // 0 for all that is smaller
  return reinterpret_cast<Words4>(_mm_slli_epi32(_mm_min_epi16(row, _mm_set1_epi32(lastRow)), 7));
}

// All ones where a high word shows that a is at least 0.125. A comparison of numbers would raise a flag for a NaN.
INLINE Lanes2 isAboveFirstRow(Lanes2 a) {
  const __m128i high = _mm_shuffle_epi32(_mm_castpd_si128(a), 0xf5);
  return _mm_castsi128_pd(_mm_cmpgt_epi32(high, _mm_set1_epi32(0x3fbfffff)));
}
#ifdef __AVX__
INLINE Lanes4 isAboveFirstRow(Lanes4 a) { return _mm256_cmp_pd(a, _mm256_set1_pd(0.125), _CMP_GE_OQ); }
#endif

// a - middle. The middle is the number with the row's leading bits and a 1 behind them.
template <class V>
INLINE V distanceFromMiddle(V a) {
  if constexpr (isPack<V>)
    return makePack<packSize<V>>([&](int i) INLINED { return distanceFromMiddle(a.part[i]); });
  else {
    const V start = andBits(a, broadcast<V>(fromBits(0x7ffe000000000000)));
    const V middle = orBits(start, broadcast<V>(fromBits(0x0001000000000000)));
    return a - andBits<V>(middle, isAboveFirstRow(a));
  }
}

// What the first pass finds of a strip of elements.
template <int64_t length>
struct TanhStrip {
  alignas(32) Float64 t[length];
  alignas(16) uint32_t offsets[length];  // of the elements' rows, in bytes
};

// The second pass, in steps of some twenty cycles. Each takes what the one before it has left here, and may be made
// for another element in between.
template <class V>
struct TanhSteps {
  V upper, lower;           // Horner's scheme down to k7, and to k3
  V A, Q, slope, slopeDif;  // slope = A + Q, slopeDif = Q - slope
  V product, productLow;    // t (A + Q)
};

template <class V>
INLINE void upperTerms(TanhSteps<V>& s, const Float64* t, const uint32_t* offsets) {
  const auto rows = rowsAt<V>(tanhPolyTable, offsets);
  const V u = load<V>(t);
  const auto [k9, k10] = columns(rows, columnsK9);
  const auto [k7, k8] = columns(rows, columnsK7);
  s.upper = k7 + u * (k8 + u * (k9 + u * k10));
}
template <class V>
INLINE void lowerTerms(TanhSteps<V>& s, const Float64* t, const uint32_t* offsets) {
  const auto rows = rowsAt<V>(tanhPolyTable, offsets);
  const V u = load<V>(t);
  const auto [k5, k6] = columns(rows, columnsK5);
  const auto [k3, k4] = columns(rows, columnsK3);
  s.lower = k3 + u * (k4 + u * (k5 + u * (k6 + u * s.upper)));
}
template <class V>
INLINE void slope(TanhSteps<V>& s, const Float64* t, const uint32_t* offsets) {
  const auto rows = rowsAt<V>(tanhPolyTable, offsets);
  const V u = load<V>(t);
  const auto [A, k2] = columns(rows, columnsAk2);
  s.A = A;
  s.Q = u * (k2 + u * s.lower);
  s.slope = A + s.Q;
  s.slopeDif = s.Q - s.slope;
}
template <class V>
INLINE void product(TanhSteps<V>& s, const Float64* t) {
  const V leading = broadcast<V>(fromBits(0xfffffffff8000000));  // 26 bits, so that a product of two is exact
  const V u = load<V>(t), uHigh = andBits(u, leading), uLow = u - uHigh, slopeHigh = andBits(s.slope, leading);
  const V error = (s.slopeDif + s.A) + (s.Q - (s.slope + s.slopeDif)), slopeLow = error + (s.slope - slopeHigh);
  s.product = slopeHigh * uHigh;
  s.productLow = (slopeLow * uLow + uLow * slopeHigh) + uHigh * slopeLow;
}
template <class V>
INLINE V value(const TanhSteps<V>& s, const uint32_t* offsets) {
  const auto rows = rowsAt<V>(tanhPolyTable, offsets);
  const auto [C, B] = columns(rows, columnsCB);
  const V sum = B + s.product, dif = s.product - sum, error = (dif + B) + (s.product - (sum + dif));
  return ((error + s.productLow) + C) + sum;
}

// The first pass over four elements.
template <class V>
INLINE void tanhReduce(const Float64* src, Float64* t, uint32_t* offsets) {
  using Four = std::conditional_t<laneCount<V> == 4, V, Pack<V, 4 / laneCount<V>>>;
  const Four x = load<Four>(src);
  store(t, distanceFromMiddle(magnitude(x)));
  const auto rows = tanhRowOffsets(wordsInOne(highWords(x)));
  __builtin_memcpy(offsets, &rows, sizeof rows);
}

// Finite elements, a multiple of four of them.
template <class V>
INLINE void tanhPipeline(const Float64* src, Float64* dst, int64_t count) {
  constexpr int64_t vector = laneCount<V>, ahead = 4 * vector;
  alignas(32) Float64 t[longestStrip + ahead];
  alignas(16) uint32_t offsets[longestStrip + ahead];
  for (int64_t i = 0; i < count; i += 4) tanhReduce<V>(src + i, t + i, offsets + i);
  for (int64_t i = count; i < count + ahead; ++i) t[i] = 0, offsets[i] = 0;  // the steps beyond the end

  TanhSteps<V> s;
  const auto step1 = [&](int64_t i) INLINED { upperTerms(s, t + i, offsets + i); };
  const auto step2 = [&](int64_t i) INLINED { lowerTerms(s, t + i, offsets + i); };
  const auto step3 = [&](int64_t i) INLINED { slope(s, t + i, offsets + i); };
  const auto step4 = [&](int64_t i) INLINED { product(s, t + i); };
  step1(0), step2(0), step3(0), step4(0);
  step1(vector), step2(vector), step3(vector);
  step1(2 * vector), step2(2 * vector);
  step1(3 * vector);
  for (int64_t i = 0; i < count; i += vector) {
    const V y = value(s, offsets + i);
    step4(i + vector), step3(i + 2 * vector), step2(i + 3 * vector), step1(i + 4 * vector);
    store(dst + i, orBits(y, signOf(load<V>(src + i))));
  }
}

// One vector of finite elements.
template <class V>
INLINE V tanhVector(V x) {
  alignas(32) Float64 t[laneCount<V>];
  alignas(16) uint32_t offsets[4];
  store(t, distanceFromMiddle(magnitude(x)));
  const auto rows = tanhRowOffsets(highWords(x));
  __builtin_memcpy(offsets, &rows, sizeof rows);
  TanhSteps<V> s;
  upperTerms(s, t, offsets), lowerTerms(s, t, offsets), slope(s, t, offsets), product(s, t);
  return orBits(value(s, offsets), signOf(x));
}

inline Element tanhSpecialLane(Float64 x) {
  const bool isNaN = toBits(magnitude(x)) > 0x7ff0000000000000;
  return {isNaN ? x : orBits(1.0, signOf(x)), nuvStatusOk};
}

template <class V>
INLINE nuvStatus tanhLoop(const Float64* src, Float64* dst, int64_t len) {
  constexpr int infiniteHighWord = 0x7ff00000;
  const auto core = [](V x) INLINED { return tanhVector(x); };
  return stripLoop<V>(src, dst, len, infiniteHighWord, true, tanhPipeline<V>, core, tanhSpecialLane);
}

}  // namespace
}  // namespace qorvane
