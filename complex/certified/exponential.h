// e^x (cos y + i sin y) in lanes: both parts, taken where every number within both errors rounds to one
// (docs/certainty_log.md).
#pragma once
#include "complex/certified/exponential_pairs.h"
#include "complex/certified/strips.h"

namespace qorvane {
namespace {

// Of a part, relative to it: for all x; from |x| = 2^-11 up, where the routine's e^x has
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

// Whether the lanes have a form for z: 2^-80 <= |y| < 10^8; x of 0, from 2^-200 up, from -708 to 709, and beyond
// where both parts over- or underflow for certain, from 768 up and -746 down.
INLINE bool servesExponential(Float64 re, Float64 im) {
  constexpr uint32_t fromY = 0x3af00000, toY = 0x4197d784, fromX = 0x33700000, infinity = 0x7ff00000;
  constexpr uint32_t x512 = 0x40800000, x708 = 0x40862000, x709 = 0x40862800, x746 = 0x40875000, x768 = 0x40880000;
  const uint32_t word = highWord(re), x = word & 0x7fffffff, y = highWord(im) & 0x7fffffff;
  if (y - fromY >= toY - fromY) return false;
  if (x - fromX < x512 - fromX) [[likely]]
    return true;
  if (x < x512) return toBits(re) << 1 == 0;
  return x == word ? x < x709 || x - x768 < infinity - x768 : x < x708 || x - x746 < infinity - x746;
}
// Beyond -708 and 709 the lanes take other numbers' exponentials.
INLINE Complex64 withinLanes(Complex64 z) { return {z.re > 709 ? 709 : z.re < -708 ? -512 : z.re, z.im}; }
// Both parts of such, below -512 2^512 times.
template <class V>
INLINE CertainParts<V> certainExponentialOf(Parts<V> z) {
  const V isLow = lessLanes(z.re, broadcast<V>(-512.0));
  const auto t = trigonometricPairs<true>(magnitude(z.im));
  const auto x = exponentialPair(z.re, select(isLow, broadcast<V>(0x1p512), broadcast<V>(1.0)));
  const auto e = certainExponential(x, t.sin, t.cos, z.im);
  return {e.parts, withoutBits(e.isCertain, t.isUnsure)};
}
// From what is certain the parts as they are: beyond they over- and underflow, with their flags. Whether this could be
// done: not below normal numbers.
INLINE bool leaveLanes(Complex64& result, Float64 x) {
  if (-512 <= x && x <= 709) [[likely]]
    return true;
  const bool isLow = -708 < x && x < 0;
  if (isLow && !(magnitude(result.re) > 0x1p-510 && magnitude(result.im) > 0x1p-510)) return false;
  const Float64 scale = isLow ? 0x1p-512 : x < 0 ? 0x1p-1000 : 0x1p1000;
  result = {result.re * scale, result.im * scale};
  return true;
}

}  // namespace
}  // namespace qorvane
