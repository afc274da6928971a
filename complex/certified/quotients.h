// tanh z's two parts as quotients of short pairs,
//   (sinh x cosh x + i sin y cos y) / (sinh^2 x + cos^2 y).
//
// Method: d as a short pair: no cancellation; 1/d in double precision gives the leading 26 bits of a
// quotient, and the exact remainder the rest.
//
// Error beside that of the four functions: at most 0.005 * 2^-64 (docs/certainty.md has the proof).
#pragma once
#include "complex/certified/pairs.h"

namespace qorvane {
namespace {

// value + rest, where value has 52 bits.
template <class V>
struct Product {
  V value, rest;
};
template <class V>
INLINE Product<V> product(ShortPair<V> a, ShortPair<V> b) {
  return {a.head * b.head, a.head * b.rest + a.rest * (b.head + b.rest)};
}
template <class V>
INLINE Product<V> square(ShortPair<V> a) {
  return {a.head * a.head, a.rest * ((a.head + a.rest) + a.head)};
}
template <class V>
INLINE ShortPair<V> sumOf(Product<V> a, Product<V> b) {
  const V s = a.value + b.value, t = s - a.value;
  return shortPair(s, ((a.value - (s - t)) + (b.value - t)) + (a.rest + b.rest));
}

// n / d, where `reciprocal` is 1/d.
template <class V>
INLINE ShortPair<V> quotient(Product<V> n, ShortPair<V> d, V reciprocal) {
  const V head = headOf((n.value + n.rest) * reciprocal);
  return {head, (((n.value - head * d.head) - head * d.rest) + n.rest) * reciprocal};
}

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
  const Product<V> sinh2 = square(sinh), cos2 = square(cosBesideSinh);
  const ShortPair<V> d = sumOf(sinh2, cos2);
  const V reciprocal = 1.0 / (d.head + d.rest);
  return {quotient(product(sinh, cosh), d, reciprocal), quotient(product(sin, cos), d, reciprocal),
          sinh2.value * reciprocal, cos2.value * reciprocal};
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
  if (magnitude != 0) asm volatile("" : : "x"(opaque(0x1p-1022) * 0x1p-1022));  // underflow
  part = fromBits(sign);
  return true;
}

}  // namespace
}  // namespace qorvane
