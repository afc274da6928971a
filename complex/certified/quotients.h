// tanh z's two parts as quotients of short pairs,
//   (sinh x cosh x + i sin y cos y) / (sinh^2 x + cos^2 y).
//
// Method: d as a short pair: no cancellation; then the quotients of pairs.
//
// Error beside that of the four functions: at most 0.005 * 2^-64 (docs/certainty.md has the proof).
#pragma once
#include "complex/certified/pairs.h"
#include "complex/certified/strips.h"
#include "frame/raise_fp_status.h"

namespace qorvane {
namespace {

template <class V>
struct Quotients {
  ShortPair<V> ofSinhCosh, ofSinCos;
  V shareOfSinh, shareOfCos;  // sinh^2 / d and cos^2 / d

  // The errors of the quotients in the lanes and in the extended routine together.
  INLINE V boundOfSinhCosh() const { return shareOfCos * (3.75 * 0x1p-64) + 8 * 0x1p-64; }
  INLINE V boundOfSinCos() const { return shareOfSinh * (3.375 * 0x1p-64) + 7.75 * 0x1p-64; }
};
// The denominator's cosine is given by itself.
template <class V>
INLINE Quotients<V> quotients(ShortPair<V> sinh, ShortPair<V> cosh, ShortPair<V> sin, ShortPair<V> cos,
                              ShortPair<V> cosBesideSinh) {
  const Sum<V> sinh2 = square(sinh), cos2 = square(cosBesideSinh);
  const ShortPair<V> d = sumOf(sinh2, cos2);
  const V reciprocal = 1.0 / (d.head + d.rest);
  return {quotient(product(sinh, cosh), d, reciprocal), quotient(product(sin, cos), d, reciprocal),
          sinh2.high * reciprocal, cos2.high * reciprocal};
}

// From 256 up, where sinh x and cosh x come 2^-512 times, the cosine beside them is left out: it is below
// 2^-738 of them. sin y cos y / d is then 2^1024 times too large: below 4 it is that of a subnormal number,
// and rounded where this one ends.
template <class V>
INLINE ShortPair<V> besideSinh(V isLarge, ShortPair<V> cos) {
  return {withoutBits(cos.head, isLarge), withoutBits(cos.rest, isLarge)};
}
template <class V>
INLINE Certain<V> certainScaled(V isLarge, ShortPair<V> a, V sign, V bound) {
  const V flip = signOf(a.head);
  const Sum<V> x = fastSum(xorBits(a.head, flip), xorBits(a.rest, flip));
  const V four = broadcast<V>(4.0), base = andBits(andBits(isLarge, lessLanes(x.high, four)), four);
  const Sum<V> shifted = fastSum(base, x.high);
  const Certain<V> sum = certainSum(Sum<V>{shifted.high, shifted.low + x.low}, x.high * bound);
  return {orBits(sum.value - base, sign), sum.isCertain};
}

// For |x| from 256 up: the quotient as it is; whether this could be done here. At 4, where normal numbers
// begin, it can't. A y of 0 has an exact 0.
INLINE bool scaleBack(Float64& part, bool isExact) {
  const uint64_t sign = toBits(part) & uint64_t{1} << 63;
  const Float64 magnitude = fromBits(toBits(part) ^ sign);
  if (magnitude > 4) {
    part = fromBits(toBits(part) - (uint64_t{1024} << 52));
    return true;
  }
  if (magnitude == 4) return false;
  if (!isExact) discard(opaque(0x1p-1022) * 0x1p-1022);  // underflow
  part = fromBits(sign | static_cast<uint64_t>(magnitude * 0x1p50));
  return true;
}

}  // namespace
}  // namespace qorvane
