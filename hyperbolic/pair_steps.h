// What asinh and acosh share at levels 2 to 5, where every number is a pair, hi + lo with lo small
// beside hi: the square root of a pair and its logarithm, without divisions and square roots of the
// processor's.
//
// sqrt(r): the seed y approximates 1 / sqrt(r.hi) in 11 bits, so that its square and products with
// a head of 31 bits are exact; sqrt(r) = r y (1 + e)^(-1/2) with e = r y^2 - 1, |e| < 2^-7. ln(u):
// with u = 2^k m, m in [1, 2), and c, 1/m in 11 bits, it is k ln 2 - ln(c) + ln(1 + w) with w = m c
// - 1, |w| < 2^-6; -ln(c) comes from a table.
#pragma once
#include "frame/words.h"
#include "hyperbolic/inverse_tables.h"

namespace qorvane {
namespace {

template <class V>
struct Pair {
  V hi, lo;
};

template <class V>
INLINE V masked(V x, uint64_t kept) {
  return andBits(x, broadcast<V>(fromBits(kept)));
}
template <class V>
INLINE V withExponent(V x, uint64_t exponent) {
  return orBits(masked(x, 0x000fffffffffffff), broadcast<V>(fromBits(exponent)));
}
template <class V>
INLINE V exponentOf(V x) {  // of a positive normal number
  return numbersOf<V>((highWords(x) >> 20) - 1023);
}

// Keys are numbers whose low words are places in a table, counted from firstSeedKey or firstLogKey.
// round(256 (v - 1)) where hi = 2^u v with v in [1, 2), and 256 more where u is odd: v/2 is added
// to a number with the last bit 2^-9, 256 units of which are 0.5.
constexpr int firstSeedKey = 512;
template <class V>
INLINE V seedKey(V hi) {
  const V half = xorBits(masked(hi, 0x0010000000000000), broadcast<V>(1.0));            // 0.5, or 1.0 for odd u
  return withExponent(hi, 0x3fe0000000000000) + (half + fromBits(0x42a0000000000000));  // 2^43
}
template <class V, class Offsets>
INLINE V seed(V hi, Offsets offsets) {
  const V y = column<V>(sqrtSeedTable, offsets);
  const auto floorOfHalf = ((highWords(hi) + 0x00100000) >> 1) & 0x7ff00000;  // of u, with an offset
  return y * fromHighWords<V>(0x5ff00000 - floorOfHalf);
}

// The root is first + (series(residual) y head + rest); `first` is exact.
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
// (1 + e)^(-1/2) - 1, its Taylor series
template <class V>
INLINE V rootSeries(V e) {
  constexpr Float64 r7 = fromBits(0xbfcad00000000000);  // -0.20947265625
  constexpr Float64 r6 = fromBits(0x3fcce00000000000);  // 0.2255859375
  constexpr Float64 r5 = fromBits(0xbfcf800000000000);  // -0.24609375
  constexpr Float64 r4 = fromBits(0x3fd1800000000000);  // 0.2734375
  constexpr Float64 r3 = fromBits(0xbfd4000000000000);  // -0.3125
  constexpr Float64 r2 = fromBits(0x3fd8000000000000);  // 0.375
  constexpr Float64 r1 = fromBits(0xbfe0000000000000);  // -0.5
  return ((((((r7 * e + r6) * e + r5) * e + r4) * e + r3) * e + r2) * e + r1) * e;
}
template <class V>
INLINE Pair<V> normalized(Pair<V> sum) {
  const V hi = sum.hi + sum.lo;
  return {hi, (sum.hi - hi) + sum.lo};
}

// round(64 (m - 1)), from 2m in [2, 4) added to a number with the last bit 2^-5
constexpr int firstLogKey = 64;
template <class V>
INLINE V logKey(V hi) {
  return withExponent(hi, 0x4000000000000000) + fromBits(0x42e0000000000000);  // 2^47
}
// The logarithm is (series(w) + lo) + hi.
template <class V>
struct LogTerms {
  V w, lo, hi;
};
// `exponent` is k, or what stands for it. The table has c/2, which goes with 2m.
template <class V, class Offsets>
INLINE LogTerms<V> logTerms(Pair<V> u, V exponent, Offsets offsets) {
  constexpr Float64 ln2Hi = fromBits(0x3fe62e42fefa3800);    // 0.6931471805598903: k * ln2Hi is exact
  constexpr Float64 ln2Lo = fromBits(0x3d2ef35793c76730);    // 5.497923018708371e-14: ln 2 - ln2Hi
  constexpr Float64 shifter = fromBits(0x4150000000000000);  // 2^22: leaves 2m to a multiple of 2^-30
  const auto [c, high] = twoColumns<V>(lnTable64, offsets);
  const V low = column<V>(&lnTable64[0][2], offsets);
  const V m = withExponent(u.hi, 0x4000000000000000), mHead = (m + shifter) - shifter;
  const V scale = withoutBits(broadcast<V>(fromBits(0x7ff0000000000000)), u.hi);  // 2m = scale u.hi
  const V g = ((m - mHead) + u.lo * scale) * c, f = mHead * c - 1.0;
  return {g + f, (exponent * ln2Lo + low) + g, f + (exponent * ln2Hi + high)};
}
// ln(1 + w) - w, fitted
template <class V>
INLINE V logSeries(V w) {
  constexpr Float64 c8 = fromBits(0xbfc000b405a2836d);  // -0.1250214602960357
  constexpr Float64 c7 = fromBits(0x3fc249c02481059d);  // 0.1428756883852146
  constexpr Float64 c6 = fromBits(0xbfc555555228b38f);  // -0.1666666651884978
  constexpr Float64 c5 = fromBits(0x3fc9999997b36c81);  // 0.19999999911565072
  constexpr Float64 c4 = fromBits(0xbfd0000000000262);  // -0.25000000000003386
  constexpr Float64 c3 = fromBits(0x3fd5555555555613);  // 0.33333333333334386
  constexpr Float64 c2 = fromBits(0xbfe0000000000000);  // -0.5
  return ((((((c8 * w + c7) * w + c6) * w + c5) * w + c4) * w + c3) * w + c2) * w * w;
}

// Byte offsets of the rows. For a single number they are found in integers, rounding to nearest and
// ties to even: the way to the vector registers and back would take longer.
INLINE uint64_t rounded(uint64_t fraction, int shift) {
  return (fraction + (uint64_t{1} << (shift - 1)) - 1 + (fraction >> shift & 1)) >> shift;
}
template <class V>
INLINE auto seedOffset(V hi) {
  if constexpr (laneCount<V> == 1)
    return rounded((toBits(hi) ^ uint64_t{1} << 52) & 0x001fffffffffffff, 44) << 3;
  else
    return (lowWords(seedKey(hi)) - firstSeedKey) << 3;
}
template <class V>
INLINE auto logOffset(V hi) {
  if constexpr (laneCount<V> == 1)
    return rounded(toBits(hi) & 0x000fffffffffffff, 46) << 5;
  else
    return (lowWords(logKey(hi)) - firstLogKey) << 5;
}

// The root is the sum of its two numbers.
template <class V>
INLINE Pair<V> pairRoot(Pair<V> r) {
  const V y = seed(r.hi, seedOffset(r.hi));
  const RootTerms<V> terms = rootTerms(r, y);
  return {terms.first, (rootSeries(terms.residual) * y) * terms.head + terms.rest};
}
template <class V>
INLINE V pairLog(Pair<V> u, V exponent) {
  const LogTerms<V> terms = logTerms(u, exponent, logOffset(u.hi));
  return (logSeries(terms.w) + terms.lo) + terms.hi;
}

}  // namespace
}  // namespace qorvane
