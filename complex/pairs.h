// Numbers as two doubles, and the parts of complex numbers in lanes: what the block paths of Exp, Ln and Sqrt share.
#pragma once
#include "frame/include/qorvane.h"
#include "frame/words.h"

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
// The upper part rounded to 26 bits: then the rest has no more, and products with it are exact, too.
template <class V>
INLINE Halves<V> nearestHalves(V v) {
  const V scaled = v * 0x1.0000002p27, upper = scaled - (scaled - v);
  return {upper, v - upper};
}

// A sum and what its rounding lost; in fastSum the first is the larger one in magnitude, or the sum is exact.
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

// Real and imaginary parts, a vector from two loads, in the order that these give.
template <class V>
struct Parts {
  V re, im;
};
INLINE Lanes2 evens(Lanes2 a, Lanes2 b) { return _mm_unpacklo_pd(a, b); }
INLINE Lanes2 odds(Lanes2 a, Lanes2 b) { return _mm_unpackhi_pd(a, b); }
#ifdef __AVX__
INLINE Lanes4 evens(Lanes4 a, Lanes4 b) { return _mm256_unpacklo_pd(a, b); }
INLINE Lanes4 odds(Lanes4 a, Lanes4 b) { return _mm256_unpackhi_pd(a, b); }
#endif
template <class V>
INLINE Parts<V> loadParts(const Complex64* z) {
  if constexpr (isPack<V>) {
    Parts<V> parts;
    for (int i = 0; i < packSize<V>; ++i) {
      const Parts<PartOf<V>> one = loadParts<PartOf<V>>(z + i * laneCount<PartOf<V>>);
      parts.re.part[i] = one.re, parts.im.part[i] = one.im;
    }
    return parts;
  } else {
    const V a = load<V>(&z[0].re), b = load<V>(&z[laneCount<V> / 2].re);
    return {evens(a, b), odds(a, b)};
  }
}
template <class V>
INLINE void storeParts(Complex64* z, V re, V im) {
  if constexpr (isPack<V>) {
    for (int i = 0; i < packSize<V>; ++i) storeParts(z + i * laneCount<PartOf<V>>, re.part[i], im.part[i]);
  } else {
    store(&z[0].re, evens(re, im));
    store(&z[laneCount<V> / 2].re, odds(re, im));
  }
}

// Eight elements in lockstep.
using Block = Pack<PartOf<Four>, 8 / laneCount<PartOf<Four>>>;

}  // namespace
}  // namespace qorvane
