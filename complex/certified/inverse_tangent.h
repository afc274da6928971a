// The inverse tangent in lanes: the parts of atan z, each with the error within which it is certain
// (docs/certainty_inverse.md).
//
// Method: with A the part along the cuts, B the other one, and d = 1 - A, exactly,
//   Q = d^2 + B^2,  q = A^2 + B^2 - 1 = Q - 2 d,
//   L = ln(1 + 4 A / Q) / 4,   2T is the angle of (-q, 2 B).
// Q is at most rho = |1 - z^2|, to which q's error matters: nothing is lost where q cancels. No
// part of the logarithm but its quotient has to be better than 2^-69 absolutely, beside a bound of
// several 2^-64.
#pragma once
#include "complex/certified/inverse_pairs.h"
#include "complex/certified/strips.h"
#include "complex/extended/angle_table.h"

namespace qorvane {
namespace {

// Of 4 L: by the series that the extended routine takes for a small one, and else by a logarithm of
// a quotient above 1, a < 0, or below.
constexpr Float64 boundOfSeries = 5.375 * 0x1p-64, endOfSeries = 0.02952, boundOfSquare = 6144 * 0x1p-64;
constexpr Float64 boundByLog = 3.75 * 0x1p-64, absoluteByLog = 5.8125 * 0x1p-64, lessAboveOne = 0.71875 * 0x1p-64;
constexpr Float64 boundOfCommon = 2 * 0x1p-64;
// Of 2 T, of its quotient, and of the angle's sine over rho times N, N = 1 + A^2 + B^2. Where |q| <
// 0.0299 the routine adds up two angles for certain, and beyond 0.0301 it doesn't.
constexpr Float64 boundOfAngle = 1.03125 * 0x1p-64, boundOfQuotient = 5.25 * 0x1p-64, boundOfSine = 3.03125 * 0x1p-64;
constexpr Float64 boundOfTwoAngles = 7.25 * 0x1p-64, endOfTwoAngles = 0.01495, endOfBoth = 0.01505;

// The direction next to a point is (right, up), integers, one of them 128 or -128; the row of its
// angle.
template <class V>
struct Direction {
  V right, up;
  WordsOf<V> row;
};
template <class V>
INLINE Direction<V> directionOf(V right, V up) {
  constexpr Float64 shifter = fromBits(0x4338000000000000);  // 1.5 * 2^52
  const V x = (right + shifter) - shifter, y = (up + shifter) - shifter;
  return {x, y, lowWords(((shifter + 256.0) - x) + xorBits(y - 128.0, signOf(right))) << 4};
}

// Q, and x = -q / 2.
template <class V>
struct TangentPoint {
  ShortPair<V> distance, x;
};
template <class V>
INLINE TangentPoint<V> inverseTangentPoint(V a, V b) {
  const auto d = exactSum(broadcast<V>(1.0), xorBits(a, broadcast<V>(-0.0)));
  const auto d2 = square(pairOf(d));
  const V bHead = headOf(b);
  const auto sum = exactSum(d2.high, bHead * bHead);
  const V low = sum.low + (d2.low + (bHead + b) * (b - bHead));
  const auto half = exactSum(sum.high * -0.5, d.high);
  return {shortPair(sum.high, low), shortPair(half.high, half.low + (d.low - low * 0.5))};
}

// e = 4 A / Q, and B^2 / Q in double precision; what picks the rows: 1 + e as the words that
// log1pPair takes, and the direction of (x, B), the point times 128 over its larger part.
template <class V>
struct TangentRows {
  ShortPair<V> e;
  V common;
  WordsOf<V> near;
  V up;
  Direction<V> direction;
};
template <class V>
INLINE TangentRows<V> tangentRows(V a, V b, ShortPair<V> distance, V x) {
  const V bHead = headOf(b), reciprocal = 1.0 / (distance.head + distance.rest);
  const V scale = 128.0 / largerLanes(magnitude(x), bHead), up = bHead * scale;
  const V a4 = a * 4.0, e = a4 * reciprocal, eHead = headOf(e);
  return {{eHead, ((a4 - eHead * distance.head) - eHead * distance.rest) * reciprocal},
          (bHead * bHead) * reciprocal,
          wordsOfLog(e + 1.0),
          up,
          directionOf(x * scale, up)};
}

// The bound of the error of 4 L, from which `common` is taken where the logarithm isn't small;
// `square` is what the lanes add where it is. `a` has its sign.
template <class V>
INLINE V errorOfTangentLog(V log, V a, V common, V square, Float64 part) {
  const V isAbove = lessLanes(a, broadcast<V>(0.0));
  const V bySeries = log * (boundOfSeries * part) + square;
  const V absolute = (absoluteByLog * part - common) - andBits(isAbove, broadcast<V>(lessAboveOne * part));
  return select(lessLanes(log, broadcast<V>(endOfSeries)), bySeries, log * (boundByLog * part) + absolute);
}
// 4 L = base + ln(1 + z), |z| <= 2^-8, with what is left of either; B^2 / Q is that over m here.
template <class V>
struct LogTerms {
  ShortPair<V> z;
  V base, baseRest, common;
};
template <class V>
INLINE LogTerms<V> logTerms(ShortPair<V> e, V common, WordsOf<V> near, Columns<V, 4> row) {
  const auto r = log1pRemainder(e, near, row);
  return {{r.z, r.rest}, r.base, r.baseRest, common * r.k};
}
// L. All but z's leading term is made in double precision; z^8 / 8 is part of the terms before it.
template <class V>
INLINE Certain<V> certainTangentLog(const LogTerms<V>& t, V a, Float64 part = 1) {
  constexpr Float64 c7 = fromBits(0x3fc2492492492492);  // 1/7
  constexpr Float64 c6 = fromBits(0xbfc5556555555555);  // -1/6 - 2^-19
  constexpr Float64 c5 = fromBits(0x3fc999999999999a);  // 1/5
  constexpr Float64 c4 = -0.25 + 0x1p-38;
  constexpr Float64 c3 = fromBits(0x3fd5555555555555);  // 1/3
  const V whole = t.z.head + t.z.rest, z2 = whole * whole;
  const V odd = (c7 * z2 + c5) * z2 + c3, even = c6 * z2 + c4;
  const V tail = (odd + even * whole) * (z2 * whole) - 0.5 * z2;
  const auto sum = fastSum(t.base, t.z.head);
  const auto log = fastSum(sum.high, (sum.low + t.baseRest) + (t.z.rest + tail));
  const V error = errorOfTangentLog(sum.high, a, t.common * (boundOfCommon * part), z2 * (boundOfSquare * part), part);
  const auto certain = certainSum(log, error);
  return {certain.value * 0.25, certain.isCertain};
}

// 2 T is the direction's angle and the arc tangent of head + rest; what the error depends on, N /
// rho times the sine.
template <class V>
struct AngleTerms {
  ShortPair<V> quotient;
  V sine;
};
template <class V>
INLINE AngleTerms<V> angleTerms(ShortPair<V> x, V b, const Direction<V>& to, V up) {
  constexpr Float64 upper20 = fromBits(0xfffffffe00000000);  // a mask
  const auto y = splitOf(b);
  const V inX = x.head * to.right, inY = y.head * to.up, rest = x.rest * to.right + y.rest * to.up;
  const V reciprocal = 1.0 / ((inX + inY) + rest);
  const V high = y.head * to.right - x.head * to.up, low = y.rest * to.right - x.rest * to.up;
  const V head = andBits((high + low) * reciprocal, broadcast<V>(upper20));
  const V left = (high - head * largerLanes(inX, inY)) - head * smallerLanes(inX, inY);
  return {{head, (left + (low - head * rest)) * reciprocal}, up * (1.0 - x.head) * reciprocal};
}
// T
template <class V>
INLINE Certain<V> certainTangentAngle(const AngleTerms<V>& t, V x, TwoColumns<V> row, Float64 part = 1) {
  constexpr Float64 a7 = fromBits(0xbfc2492492492492);  // -1/7
  constexpr Float64 a5 = fromBits(0x3fc999999999999a);  // 1/5
  constexpr Float64 a3 = fromBits(0xbfd5555555555555);  // -1/3
  const V q = t.quotient.head + t.quotient.rest, q2 = q * q, tail = ((a7 * q2 + a5) * q2 + a3) * (q2 * q);
  const auto sum = fastSum(row.first, t.quotient.head);
  const auto angle = fastSum(sum.high, (sum.low + row.second) + (t.quotient.rest + tail));

  const V size = magnitude(x),
          ofOneAngle = magnitude(t.quotient.head) * (boundOfQuotient * part) + t.sine * (boundOfSine * part);
  const V twoAngles = andBits(lessLanes(size, broadcast<V>(endOfBoth)), broadcast<V>(boundOfTwoAngles * part));
  const V ofAngle = sum.high * largerLanes(twoAngles, broadcast<V>(boundOfAngle * part));
  const auto certain =
      certainSum(angle, ofAngle + withoutBits(ofOneAngle, lessLanes(size, broadcast<V>(endOfTwoAngles))));
  return {certain.value * 0.5, certain.isCertain};
}

}  // namespace
}  // namespace qorvane
