// Numbers as two doubles: what the block paths of Ln and Sqrt share.
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

// Eight elements in lockstep.
using Block = Pack<PartOf<Four>, 8 / laneCount<PartOf<Four>>>;

}  // namespace
}  // namespace qorvane
