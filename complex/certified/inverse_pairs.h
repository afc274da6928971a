// The inverse functions in lanes, as sums of two numbers: logarithm and angle of a point.
//
// Method: for z = A + iB with A, B > 0 let q = A^2 + B^2 - 1 and rho = |1 - z^2| = sqrt(q^2 + 4 B^2). Then
//   t = sinh^2 L = (rho + q)/2,  v = cos^2 T = (rho - q)/2,  A = sin T cosh L,  B = cos T sinh L,
// where asin z = T + iL. t v = B^2, so the smaller of t and v is a quotient: nothing cancels. With
// g = sinh L cosh L = sqrt(t + t^2)
//   L = ln(1 + 2 (t + g)) / 2,   2T is the angle of the point (2v - 1, 2 A B / g) of the unit circle,
// which takes two roots. The inverse tangent's are in complex/certified/inverse_tangent.h.
//
// Error: docs/certainty_inverse.md has the proof.
#pragma once
#include "complex/certified/log_pairs.h"

namespace qorvane {
namespace {

// |p| and a mask for p < 0.
template <class V>
INLINE ShortPair<V> magnitudeOf(ShortPair<V> p) {
  const V sign = signOf(p.head);
  return {xorBits(p.head, sign), xorBits(p.rest, sign)};
}
template <class V>
INLINE ShortPair<V> selectPair(V mask, ShortPair<V> a, ShortPair<V> b) {
  return {select(mask, a.head, b.head), select(mask, a.rest, b.rest)};
}

// A root and, in double precision, its reciprocal.
template <class V>
struct RootPair {
  ShortPair<V> root;
  V reciprocal;
};
// sqrt(x) = s + l with a short s: l = (x - s^2) / (2s + l), x - s^2 being exact. `whole` is the root in
// double precision.
template <class V>
INLINE RootPair<V> rootPair(Sum<V> x, V whole) {
  const V head = headOf(whole), half = 1.0 / (head + whole);
  const V rest = ((x.high - head * head) + x.low) * half;
  return {{head, rest}, (half + half) * (1.0 - rest * half)};
}
template <class V>
INLINE RootPair<V> rootPair(Sum<V> x) {
  return rootPair(x, hardwareRoot(x.high + x.low));
}
// q/2 and the parts it is made of.
template <class V>
struct Excess {
  ShortPair<V> halfOfQ;
  Sum<V> b2;
};
template <class V>
INLINE Excess<V> excessOf(V a, V b) {
  const auto below = exactSum(a, broadcast<V>(-1.0)), above = exactSum(a, broadcast<V>(1.0));
  const auto aMinusOne = shortPair(below.high, below.low), aPlusOne = shortPair(above.high, above.low);
  const auto b2 = square(splitOf(b));
  const auto q = sumOf(product(aMinusOne, aPlusOne), b2);
  return {{q.head * 0.5, q.rest * 0.5}, b2};
}
// rho/2
template <class V>
INLINE ShortPair<V> halfOfRho(const Excess<V>& e) {
  const auto q2 = square(e.halfOfQ);
  const auto sum = exactSum(q2.high, e.b2.high);
  return rootPair(Sum<V>{sum.high, sum.low + (q2.low + e.b2.low)}).root;
}

template <class V>
struct SinhAndCos {
  ShortPair<V> t, v;
};
template <class V>
INLINE SinhAndCos<V> sinhAndCosSquared(const Excess<V>& e, ShortPair<V> rho) {
  const auto q = magnitudeOf(e.halfOfQ);
  const auto sum = fastSum(rho.head, q.head);
  const auto larger = shortPair(sum.high, sum.low + (rho.rest + q.rest));
  const auto smaller = quotient(e.b2, larger, 1.0 / (larger.head + larger.rest));
  const V isNegative = lessLanes(e.halfOfQ.head, broadcast<V>(0.0));
  return {selectPair(isNegative, smaller, larger), selectPair(isNegative, larger, smaller)};
}

// g and, in double precision, its reciprocal.
template <class V>
INLINE RootPair<V> sinhTimesCosh(ShortPair<V> t) {
  const auto t2 = square(t);
  const auto sum = exactSum(t2.high, t.head);
  return rootPair(Sum<V>{sum.high, sum.low + (t2.low + t.rest)});
}
// What the last stages take: e in ln(1 + e), and the point of the unit circle.
template <class V>
struct Point {
  ShortPair<V> e, cos, sin;
};
template <class V>
INLINE Point<V> inverseSinePoint(V a, V b, const SinhAndCos<V>& p, const RootPair<V>& g) {
  const auto e = fastSum(g.root.head, p.t.head);
  const auto ePair = shortPair(e.high, e.low + (g.root.rest + p.t.rest));
  const auto ab = product(splitOf(a + a), splitOf(b));
  const auto cos = fastSum(broadcast<V>(-1.0), p.v.head + p.v.head);
  return {{ePair.head + ePair.head, ePair.rest + ePair.rest},
          shortPair(cos.high, cos.low + (p.v.rest + p.v.rest)),
          quotient(ab, g.root, g.reciprocal)};
}
// ln(1 + e) for e > 0: 1 + e = 2^n m with m from 1 - 2^-9 to 2, C = 1/m to 8 bits, z = m C - 1, of which
// head(e) 2^-n C + (2^-n C - 1) is exact; near 1, C = 1 and z = e. n and C are taken for a number within
// 2^-40 of 1 + e, from which the words are.
template <class V>
struct Log1pRemainder {
  V base, baseRest, z, rest, k;  // k = 2^-n C
};
template <class V>
INLINE Log1pRemainder<V> log1pRemainder(ShortPair<V> e, WordsOf<V> word, Columns<V, 4> row) {
  const V factor = fromHighWords<V>(0x7fe00000 - (word & 0x7ff00000)), n = numbersOf<V>((word >> 20) - 1023);
  const V k = factor * row.of[0];
  const auto less = fastSum(broadcast<V>(-1.0), k);
  return {n * ln2Hi + row.of[1], n * ln2Lo + row.of[2], e.head * k + less.high, e.rest * k + less.low, k};
}
template <class V>
INLINE LogRemainder<V> splitRemainder(const Log1pRemainder<V>& r) {
  const V head = headOf(r.z);
  return {r.base, r.baseRest, {head, (r.z - head) + r.rest}};
}
template <class V>
INLINE Sum<V> log1pPair(ShortPair<V> e, V near) {
  const auto word = wordsOfLog(near);
  return splitRemainder(log1pRemainder(e, word, columns<4, V>(log1pRows, rowOfLog(word)))).all();
}

// Half of the angle of the point (cos, sin) of the unit circle, sin >= 0, plus `quarters` pi/4: with the
// smaller one next to s = j/128 and a = asin s, the rest is asin(smaller sqrt(1 - s^2) - larger s).
template <class V>
struct HalfAngleRow {
  V s;
  WordsOf<V> row;
};
template <class V>
INLINE HalfAngleRow<V> rowOfHalfAngle(V cos, V sin) {
  constexpr Float64 shifter = fromBits(0x4338000000000000);  // 1.5 * 2^52
  const V shifted = smallerLanes(magnitude(cos), sin) * 128.0 + shifter;
  return {(shifted - shifter) * 0x1p-8, lowWords(shifted) << 5};
}
// The angle is base + baseRest + arc, the arc being that whose sine is d.
template <class V>
struct HalfAngleTerms {
  V base, baseRest;
  ShortPair<V> d;

  INLINE Sum<V> all() const {
    constexpr Float64 d7 = fromBits(0x4006db6db6db6db7);  // 20/7
    constexpr Float64 d5 = fromBits(0x3ff3333333333333);  // 6/5
    constexpr Float64 d3 = fromBits(0x3fe5555555555555);  // 2/3
    const V whole = d.head + d.rest, d2 = whole * whole;
    const V cubic = ((d7 * d2 + d5) * d2 + d3) * (d2 * whole);
    const auto sum = fastSum(base, d.head);
    return fastSum(sum.high, (sum.low + baseRest) + (d.rest + cubic));
  }
};
template <class V>
INLINE HalfAngleTerms<V> halfAngleTerms(ShortPair<V> cos, ShortPair<V> sin, V quarters, V s, Columns<V, 4> row) {
  constexpr Float64 quarterPiHi = fromBits(0x3fe921fb54443000);  // 0.7853981633975309, a multiple of 2^-42
  constexpr Float64 quarterPiLo = fromBits(0xbd373dcb3b399d74);  // -8.256997686213296e-14
  const auto c = magnitudeOf(cos);
  const V isSteep = lessLanes(c.head, sin.head), cosSign = signOf(cos.head);
  const auto small = selectPair(isSteep, c, sin), large = selectPair(isSteep, sin, c);
  const V negative = lessLanes(cos.head, broadcast<V>(0.0));
  const V number = quarters + select(isSteep, broadcast<V>(1.0), andBits(negative, broadcast<V>(2.0)));
  const V sign = xorBits(cosSign, andBits(isSteep, broadcast<V>(-0.0)));
  const V d = small.head * row.of[0] - large.head * s;
  const V rest = (small.rest * (row.of[0] + row.of[1]) + small.head * row.of[1]) - large.rest * s;
  return {number * quarterPiHi + xorBits(row.of[2], sign),
          number * quarterPiLo + xorBits(row.of[3], sign),
          {xorBits(d, sign), xorBits(rest, sign)}};
}
template <class V>
INLINE Sum<V> halfAngle(ShortPair<V> cos, ShortPair<V> sin, V quarters) {
  const auto r = rowOfHalfAngle(cos.head, sin.head);
  return halfAngleTerms(cos, sin, quarters, r.s, columns<4, V>(angleRows, r.row)).all();
}

}  // namespace
}  // namespace qorvane
