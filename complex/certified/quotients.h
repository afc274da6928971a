// tanh z's two parts as quotients of short pairs,
//   (sinh x cosh x + i sin y cos y) / (sinh^2 x + cos^2 y).
//
// Method: d as a short pair: no cancellation; then the quotients of pairs.
//
// Error beside that of the four functions: at most 0.005 * 2^-64 (docs/certainty.md has the proof).
#pragma once
#include "complex/certified/pairs.h"
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

// From 256 up sinh x and cosh x come 2^-512 times, so that their squares don't overflow, and the cosine
// beside them is left out: it is below 2^-738 of them. sin y cos y / d is then 2^1024 times too large.
template <class V>
struct Scaled {
  ShortPair<V> sinh, cosh, cos;
};
template <class V>
INLINE Scaled<V> scaledDown(V x, ShortPair<V> sinh, ShortPair<V> cosh, ShortPair<V> cos) {
  const V isSmall = lessLanes(magnitude(x), broadcast<V>(256.0));
  const V factor = select(isSmall, broadcast<V>(1.0), broadcast<V>(0x1p-512));
  return {{sinh.head * factor, sinh.rest * factor},
          {cosh.head * factor, cosh.rest * factor},
          {andBits(cos.head, isSmall), andBits(cos.rest, isSmall)}};
}

// For |x| from 256 up: the quotient as it is; whether this could be done here. Subnormal results can't.
INLINE bool scaleBack(Float64& part) {
  const uint64_t sign = toBits(part) & uint64_t{1} << 63, magnitude = toBits(part) ^ sign;
  if (magnitude > toBits(4.0)) {
    part = fromBits(toBits(part) - (uint64_t{1024} << 52));
    return true;
  }
  if (magnitude >= toBits(0x1p-52)) return false;
  if (magnitude != 0) discard(opaque(0x1p-1022) * 0x1p-1022);  // underflow
  part = fromBits(sign);
  return true;
}

}  // namespace
}  // namespace qorvane
