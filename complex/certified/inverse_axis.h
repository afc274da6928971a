// The inverse functions in lanes for strips that lie on one axis: of the two parts one is a constant, the
// other one a real function of the magnitude x, which takes a root, or a division.
//
// Method, A being the part along the cuts: with s = sqrt(x^2 + 1) on the axis A = 0,
//   L = asinh x = ln(1 + 2 x (x + s)) / 2,
// and with s = sqrt|x^2 - 1| on the axis B = 0
//   L = acosh x = ln(1 + 2 s (x + s)) / 2 for x > 1,  T = asin x, the angle of (s, x), for x < 1.
// The inverse tangent has T = atan x, half of the angle of (1 - x^2, 2x) / (1 + x^2), where A = 0, and
// elsewhere L = ln(1 + 2 min(x, 1) / |x - 1|) / 2.
//
// Error: docs/certainty_inverse.md has the proof.
#pragma once
#include "complex/certified/inverse_parts.h"
#include "complex/certified/inverse_tangent.h"

namespace qorvane {
namespace {

// Of the results.
constexpr Float64 boundOfAxisLog = 3.75 * 0x1p-64, boundOfAxisAngle = 2.25 * 0x1p-64, boundOfAxisAtan = 5.375 * 0x1p-64;

// sqrt(x^2 + 1) or sqrt|x^2 - 1|, and the same in double precision: what depends on that alone needn't
// wait for the rest.
template <class V>
struct AxisRoot {
  ShortPair<V> pair;
  V whole;
};
template <bool aIsZero, class V>
INLINE AxisRoot<V> axisRoot(V x) {
  const V one = broadcast<V>(1.0);
  if constexpr (aIsZero) {
    const V whole = hardwareRoot(x * x + one);
    const auto x2 = square(splitOf(x));
    const auto sum = exactSum(x2.high, one);
    return {rootPair(Sum<V>{sum.high, sum.low + x2.low}, whole).root, whole};
  } else {
    const auto below = exactSum(x, broadcast<V>(-1.0)), above = exactSum(x, one);
    const V whole = hardwareRoot(magnitude(below.high) * above.high);
    const auto p = product(magnitudeOf(pairOf(below)), pairOf(above));
    return {rootPair(p, whole).root, whole};
  }
}

// L for x from 0 where A = 0, from 1 elsewhere.
template <bool aIsZero, class V>
INLINE Certain<V> axisLog(V x, const AxisRoot<V>& root, Float64 part = 1) {
  const auto s = root.pair;
  const auto sum = aIsZero ? fastSum(s.head, x) : fastSum(x, s.head);
  const auto exponential = pairOf(Sum<V>{sum.high, sum.low + s.rest});
  const V near = (aIsZero ? x : root.whole) * (x + root.whole);
  const auto e = product(aIsZero ? splitOf(x) : s, exponential);
  const auto log = log1pPair(pairOf(Sum<V>{e.high + e.high, e.low + e.low}), (near + near) + 1.0);
  const Sum<V> result = {log.high * 0.5, log.low * 0.5};
  return certainSum(result, result.high * (boundOfAxisLog * part));
}
// T for |a| < 1, from 0 to pi for acos a.
template <Function function, class V>
INLINE Certain<V> axisAngle(V a, ShortPair<V> root, Float64 part = 1) {
  const auto x = splitOf(isAcos(function) ? a : magnitude(a));
  const auto half = isAcos(function) ? halfAngle(x, root, broadcast<V>(0.0)) : halfAngle(root, x, broadcast<V>(0.0));
  const Sum<V> result = {half.high + half.high, half.low + half.low};
  return certainSum(result, result.high * (boundOfAxisAngle * part));
}

// Of the inverse tangent: the real part for a != 1, b = 0, and the angle for a = 0.
template <class V>
INLINE Certain<V> axisTangentLog(V a, Float64 part = 1) {
  const V x = magnitude(a), one = broadcast<V>(1.0), zero = broadcast<V>(0.0);
  const auto less = exactSum(x, broadcast<V>(-1.0));
  const V smaller = select(lessLanes(x, one), x, one), twice = smaller + smaller,
          reciprocal = 1.0 / magnitude(less.high);
  const auto e = quotient(Sum<V>{twice, zero}, magnitudeOf(pairOf(less)), reciprocal);
  const auto log = log1pPair(e, twice * reciprocal + 1.0);
  const Sum<V> result = {log.high + log.high, log.low + log.low};
  const auto certain = certainSum(result, errorOfTangentLog(result.high, a, zero, zero, part));
  return {certain.value * 0.25, certain.isCertain};
}
template <class V>
INLINE Certain<V> axisTangentAngle(V x, Float64 part = 1) {
  const V one = broadcast<V>(1.0), reciprocal = 1.0 / (x * x + one);
  const auto x2 = square(splitOf(x));
  const auto sum = exactSum(x2.high, one);
  const auto d = pairOf(Sum<V>{sum.high, sum.low + x2.low});
  const auto less = product(pairOf(exactSum(one, xorBits(x, broadcast<V>(-0.0)))), pairOf(exactSum(one, x)));
  const auto cos = quotient(less, d, reciprocal), sin = quotient(Sum<V>{x + x, broadcast<V>(0.0)}, d, reciprocal);
  const auto angle = halfAngle(cos, sin, broadcast<V>(0.0));
  return certainSum(angle, angle.high * (boundOfAxisAtan * part));
}

// Both parts' magnitudes, of acos the angle; masks where they are certain.
template <class V>
struct AxisParts {
  V angle, log, isCertain;
};
template <Function function, bool aIsZero, class V>
INLINE AxisParts<V> axisParts(V a, V b, Float64 part = 1) {
  const V zero = broadcast<V>(0.0), halfPi = broadcast<V>(fromBits(0x3ff921fb54442d18));
  const V x = magnitude(aIsZero ? b : a);
  if constexpr (function == Function::atan && aIsZero) {
    const auto angle = axisTangentAngle(x, part);
    return {angle.value, zero, angle.isCertain};
  } else if constexpr (function == Function::atan) {
    const auto log = axisTangentLog(a, part);
    return {withoutBits(halfPi, lessLanes(x, broadcast<V>(1.0))), log.value, log.isCertain};
  } else if constexpr (aIsZero) {
    const auto log = axisLog<true>(x, axisRoot<true>(x), part);
    return {isAcos(function) ? halfPi : zero, log.value, log.isCertain};
  } else {
    const auto root = axisRoot<false>(x);
    const V isInside = lessLanes(x, broadcast<V>(1.0));
    constexpr uint64_t all = ~uint64_t{0} >> (64 - laneCount<V>);
    const uint64_t inside = signMask(isInside);
    AxisParts<V> p = {halfPi, zero, equalLanes(zero, zero)};
    if constexpr (isAcos(function))
      p.angle = andBits(broadcast<V>(fromBits(0x400921fb54442d18)), lessLanes(a, zero));  // pi
    if (inside != all) {
      const auto log = axisLog<false>(x, root, part);
      p.log = withoutBits(log.value, isInside), p.isCertain = orBits(log.isCertain, isInside);
    }
    if (inside != 0) {
      // Elsewhere there is no point of the unit circle, and no row for it: those lanes take 0.
      const auto angle = axisAngle<function>(andBits(a, isInside), root.pair, part);
      p.angle = select(isInside, angle.value, p.angle);
      p.isCertain = select(isInside, angle.isCertain, p.isCertain);
    }
    return p;
  }
}

}  // namespace
}  // namespace qorvane
