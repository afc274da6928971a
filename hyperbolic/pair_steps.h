// What asinh and acosh share where they work in pairs of numbers, hi + lo with lo small beside hi: the
// square root and the logarithm of a pair.
#pragma once
#include "frame/words.h"
#include "hyperbolic/pair_tables.h"

namespace qorvane {
namespace {

template <class V>
struct Pair {
  V hi, lo;
};

// For numbers, not NaNs.
template <class V>
INLINE V smaller(V a, V b) {
  if constexpr (isPack<V>)
    return makePack<packSize<V>>([&](int i) INLINED { return smaller(a.part[i], b.part[i]); });
  else if constexpr (laneCount<V> == 1)
    return _mm_cvtsd_f64(_mm_min_sd(_mm_set_sd(a), _mm_set_sd(b)));
#ifdef __AVX__
  else if constexpr (laneCount<V> == 4)
    return _mm256_min_pd(a, b);
#endif
  else
    return _mm_min_pd(a, b);
}
template <class V>
INLINE V larger(V a, V b) {
  if constexpr (isPack<V>)
    return makePack<packSize<V>>([&](int i) INLINED { return larger(a.part[i], b.part[i]); });
  else if constexpr (laneCount<V> == 1)
    return _mm_cvtsd_f64(_mm_max_sd(_mm_set_sd(a), _mm_set_sd(b)));
#ifdef __AVX__
  else if constexpr (laneCount<V> == 4)
    return _mm256_max_pd(a, b);
#endif
  else
    return _mm_max_pd(a, b);
}
// x with the bits under `kept`, and with the bits of `set`.
template <class V>
INLINE V masked(V x, uint64_t kept) {
  return andBits(x, broadcast<V>(fromBits(kept)));
}
template <class V>
INLINE V withExponent(V x, uint64_t set) {
  return orBits(masked(x, 0x000fffffffffffff), broadcast<V>(fromBits(set)));
}

// Keys are numbers whose low words are indices, with a constant beside them. Their low halves suffice,
// and taken from memory they spare the vector units work.
INLINE uint64_t keyAt(const Float64* key) {
  uint16_t low;
  __builtin_memcpy(&low, key, sizeof low);
  return low;
}

// The square root of r = hi + lo with hi from 2^-52 to 2^57, a sum of two numbers: first + rest,
// where first is exact and good to 2^-10. The seed y approximates 1 / sqrt(hi) in 11 bits, so that
// the products y^2 * head and y * head are exact. Then sqrt(r) = r y (1 + e)^(-1/2) with the
// residual e = r y^2 - 1.

// The key of hi's place in the table of seeds: 512 + round(256 (v - 1)) where hi = v * 2^u with v
// in [1, 2), and 256 more where u is odd.
template <class V>
INLINE V seedKey(V hi) {
  const V half = xorBits(masked(hi, 0x0010000000000000), broadcast<V>(1.0));  // 0.5, or 1.0 for odd u
  return withExponent(hi, 0x3fe0000000000000) + (half + fromBits(0x42a0000000000000));  // 2^43
}
constexpr int firstSeedKey = 512;
template <class V, class Offsets>
INLINE V seed(V hi, Offsets offsets) {
  const V y = column<V>(sqrtSeedTable, offsets);
  const auto floorOfHalf = ((highWords(hi) + 0x00100000) >> 1) & 0x7ff00000;
  return y * fromHighWords<V>(0x5ff00000 - floorOfHalf);
}

template <class V>
struct RootTerms {
  V residual, first, head, rest;
};
template <class V>
INLINE RootTerms<V> rootTerms(Pair<V> r, V y) {
  const V head = masked(r.hi, 0xffffffffffc00000), rest = (r.hi - head) + r.lo;
  const V y2 = y * y, e = y2 * rest + (head * y2 - 1.0);
  return {e, head * y, head + rest, rest * y};
}
template <class V>
INLINE V rootSeries(V e) {  // (1 + e)^(-1/2) - 1
  constexpr Float64 r7 = fromBits(0xbfcad00000000000), r6 = fromBits(0x3fcce00000000000),
                    r5 = fromBits(0xbfcf800000000000), r4 = fromBits(0x3fd1800000000000),
                    r3 = fromBits(0xbfd4000000000000), r2 = fromBits(0x3fd8000000000000),
                    r1 = fromBits(0xbfe0000000000000);
  return ((((((r7 * e + r6) * e + r5) * e + r4) * e + r3) * e + r2) * e + r1) * e;
}
template <class V>
INLINE Pair<V> normalized(Pair<V> sum) {
  const V hi = sum.hi + sum.lo;
  return {hi, (sum.hi - hi) + sum.lo};
}

// ln(u) + extra ln 2 for u = hi + lo from 1 up: with u = 2^k m and c, a short reciprocal near 1/m,
// it is (k + extra) ln 2 - ln(c) + ln(1 + w) and w = m c - 1.
template <class V>
INLINE V logKey(V hi) {  // 64 + 64 round(m - 1)
  return withExponent(hi, 0x4000000000000000) + fromBits(0x42e0000000000000);  // 2^47
}
constexpr int firstLogKey = 64;
template <class V>
struct LogTerms {
  V w, lo, hi;  // the logarithm is (series(w) + lo) + hi
};
template <class V>
INLINE V exponentOf(V x) {
  return numbersOf<V>((highWords(x) >> 20) - 1023);
}
template <class V, class Offsets>
INLINE LogTerms<V> logTerms(Pair<V> u, V exponent, Offsets offsets) {
  constexpr Float64 ln2Hi = fromBits(0x3fe62e42fefa3800), ln2Lo = fromBits(0x3d2ef35793c76730);
  const TwoColumns<V> row = twoColumns<V>(lnTable64, offsets);  // c/2, high part of -ln(c)
  const V rowLow = column<V>(&lnTable64[0][2], offsets);
  const V m = withExponent(u.hi, 0x4000000000000000), scale = withoutBits(broadcast<V>(fromBits(0x7ff0000000000000)), u.hi);
  const V mHead = (m + 4194304.0) - 4194304.0;
  const V g = ((m - mHead) + u.lo * scale) * row.first, f = mHead * row.first - 1.0;
  return {g + f, (exponent * ln2Lo + rowLow) + g, f + (exponent * ln2Hi + row.second)};
}
template <class V>
INLINE V logSeries(V w) {  // ln(1 + w) - w
  constexpr Float64 c8 = fromBits(0xbfc000b405a2836d), c7 = fromBits(0x3fc249c02481059d),
                    c6 = fromBits(0xbfc555555228b38f), c5 = fromBits(0x3fc9999997b36c81),
                    c4 = fromBits(0xbfd0000000000262), c3 = fromBits(0x3fd5555555555613),
                    c2 = fromBits(0xbfe0000000000000);
  return ((((((c8 * w + c7) * w + c6) * w + c5) * w + c4) * w + c3) * w + c2) * w * w;
}

// Both as one expression.
template <class V>
INLINE Pair<V> pairRoot(Pair<V> r) {
  const V y = seed(r.hi, (lowWords(seedKey(r.hi)) - firstSeedKey) << 3);
  const RootTerms<V> terms = rootTerms(r, y);
  return {terms.first, (rootSeries(terms.residual) * y) * terms.head + terms.rest};
}
template <class V>
INLINE V pairLog(Pair<V> u, V exponent) {
  const LogTerms<V> terms = logTerms(u, exponent, (lowWords(logKey(u.hi)) - firstLogKey) << 5);
  return (logSeries(terms.w) + terms.lo) + terms.hi;
}

}  // namespace
}  // namespace qorvane
