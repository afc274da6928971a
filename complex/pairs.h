// Numbers as two doubles: what the block paths of Ln and Sqrt and the certified lanes share.
#pragma once
#include "complex/parts.h"

namespace qorvane {
namespace {

// A number's upper 26 bits and the rest; products of two upper parts are exact.
template <class V>
struct Halves {
  V upper, rest;
};
template <class V>
INLINE Halves<V> halvesOf(V v) {
  const V upper = andBits(v, broadcast<V>(fromBits(0xfffffffff8000000)));
  return {upper, v - upper};
}
// The upper part rounded to 26 bits: then the rest has no more, and products with it are exact,
// too.
template <class V>
INLINE Halves<V> nearestHalves(V v) {
  const V scaled = v * 0x1.0000002p27, upper = scaled - (scaled - v);
  return {upper, v - upper};
}

// A sum and what its rounding lost; in fastSum the first is the larger one in magnitude, or the sum
// is exact.
template <class V>
struct Sum {
  V high, low;
};
template <class V>
INLINE Sum<V> fastSum(V larger, V smaller) {
  const V s = larger + smaller;
  return {s, (larger - s) + smaller};
}
template <class V>
INLINE Sum<V> exactSum(V a, V b) {
  const V s = a + b, t = s - a;
  return {s, (a - (s - t)) + (b - t)};
}

// M^2 + m^2 - 1 for M and m near the unit circle. All seven terms are exact.
template <class V>
INLINE Sum<V> lessOne(V M, V m) {
  const auto [Mh, Ml] = nearestHalves(M);
  const auto [mh, ml] = nearestHalves(m);
  const V terms[] = {ml * ml, Ml * Ml, 2.0 * mh * ml, 2.0 * Mh * Ml, mh * mh, broadcast<V>(-1.0), Mh * Mh};
  V sum = terms[0], lost[6];
#pragma GCC unroll 6
  for (int i = 0; i < 6; ++i) {
    const Sum<V> s = exactSum(sum, terms[i + 1]);
    sum = s.high, lost[i] = s.low;
  }
  V rest = lost[0], lostAgain = broadcast<V>(0.0);
#pragma GCC unroll 5
  for (int i = 1; i < 6; ++i) {
    const Sum<V> s = exactSum(rest, lost[i]);
    rest = s.high, lostAgain = lostAgain + s.low;
  }
  const Sum<V> s = exactSum(sum, rest);
  return {s.high, s.low + lostAgain};
}

// Eight elements in lockstep.
using Block = Pack<PartOf<Four>, 8 / laneCount<PartOf<Four>>>;

}  // namespace
}  // namespace qorvane
