// e^x (cos y + i sin y) in lanes: both parts, taken where every number within both errors rounds to one.
#pragma once
#include "complex/certified/strips.h"

namespace qorvane {
namespace {

// Of a part, relative to it (docs/certainty_log.md): for all x; from |x| = 2^-11 up, where the routine's e^x has
// half the error; and of e^x by itself.
constexpr Float64 boundOfExponential = 5.25 * 0x1p-64, boundFromEleventh = 4.25 * 0x1p-64;
constexpr Float64 boundOfReal = 2.375 * 0x1p-64;

template <class V>
struct CertainParts {
  Parts<V> parts;
  V isCertain;
};
// From e^x and the sine and cosine of |y|.
template <class V>
INLINE CertainParts<V> certainExponential(ShortPair<V> e, ShortPair<V> sin, ShortPair<V> cos, V y,
                                          Float64 bound = boundOfExponential) {
  const auto re = certainProduct(e, cos, signOf(cos.head), bound);
  const auto im = certainProduct(e, sin, signOf(xorBits(sin.head, y)), bound);
  return {{re.value, im.value}, andBits(re.isCertain, im.isCertain)};
}

// For |x| < 512 and |y| from 256 to 100000.
template <class V>
INLINE CertainParts<V> certainExponentialOfLarge(Parts<V> z) {
  const auto t = trigonometricPairs<true>(magnitude(z.im));
  const auto e = certainExponential(exponentialPair(z.re), t.sin, t.cos, z.im);
  return {e.parts, withoutBits(e.isCertain, t.isUnsure)};
}

}  // namespace
}  // namespace qorvane
