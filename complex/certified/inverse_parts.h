// The inverse functions' parts in lanes, each with the error within which it is certain
// (docs/certainty_inverse.md).
#pragma once
#include "complex/certified/inverse_pairs.h"
#include "complex/certified/strips.h"
#include "complex/inverse.h"

namespace qorvane {
namespace {

// Of the results (docs/certainty_inverse.md): logarithm, angles.
constexpr Float64 boundOfLog = 9.5 * 0x1p-64, boundOfAsin = 8.875 * 0x1p-64, boundOfAcos = 11.25 * 0x1p-64;

constexpr bool isAcos(Function function) { return function == Function::acos || function == Function::acosh; }
// Whether the real part is the angle, and which part is A.
constexpr bool angleIsReal(Function function) { return function != Function::asinh && function != Function::acosh; }
constexpr bool imaginaryIsA(Function function) { return function == Function::asinh || function == Function::atan; }

// The two parts' magnitudes, with the given part of their bounds: all of it, but in tests and tools.
template <class V>
INLINE Certain<V> certainLog(Sum<V> log, Float64 part = 1) {
  const Sum<V> result = {log.high * 0.5, log.low * 0.5};
  return certainSum(result, result.high * (boundOfLog * part));
}
// Half of the angle of (cos, sin); of (-cos, sin) for acos |x|, and pi less that is pi/2 and half of the
// angle of (cos, sin). `a` has its sign.
template <Function function, class V>
INLINE HalfAngleTerms<V> angleTermsOf(ShortPair<V> cos, ShortPair<V> sin, [[maybe_unused]] V a, V s,
                                      Columns<V, 4> row) {
  const V zero = broadcast<V>(0.0);
  if constexpr (!isAcos(function)) return halfAngleTerms(cos, sin, zero, s, row);
  const V flip = signOf(xorBits(a, broadcast<V>(-0.0)));
  const ShortPair<V> flipped = {xorBits(cos.head, flip), xorBits(cos.rest, flip)};
  return halfAngleTerms(flipped, sin, andBits(lessLanes(a, zero), broadcast<V>(2.0)), s, row);
}
template <Function function, class V>
INLINE Certain<V> certainAngle(Sum<V> angle, Float64 part = 1) {
  return certainSum(angle, angle.high * ((isAcos(function) ? boundOfAcos : boundOfAsin) * part));
}

// The parts with their signs, from the angle of acos or the angle's magnitude, and the logarithm.
template <Function function, class V>
INLINE Parts<V> signedParts(V angle, V log, V a, V b) {
  if constexpr (function == Function::acos) return {angle, xorBits(log, signOf(xorBits(b, broadcast<V>(-0.0))))};
  if constexpr (function == Function::acosh) return {log, orBits(angle, signOf(b))};
  if constexpr (function == Function::asinh) return {orBits(log, signOf(b)), orBits(angle, signOf(a))};
  if constexpr (function == Function::asin) return {orBits(angle, signOf(a)), orBits(log, signOf(b))};
  return {orBits(angle, signOf(b)), orBits(log, signOf(a))};
}

// The same from the extended routines: one part costs them about half of both.
template <Function function>
INLINE Float64 extendedLog(Float64 a, Float64 b) {
  return function == Function::atan ? magnitude(atanhReal(-a, b)) : inverseLog(a, b);
}
template <Function function>
INLINE Float64 extendedAngle(Float64 a, Float64 b) {
  if constexpr (function == Function::atan) return atanhImaginary(-a, b);
  return isAcos(function) ? acosAngle(a, b) : asinAngle(a, b);
}

}  // namespace
}  // namespace qorvane
