// Logarithm and angle of complex numbers in lanes, as sums of two numbers.
//
// Method: N = x^2 + y^2 = 2^n m with m from 1 - 2^-9 to 2, C = 1/m to 8 bits from a table, and
// ln N = n ln 2 - ln C + ln(1 + z) with z = m C - 1, of which head(m) C - 1 is exact. Next to the unit
// circle z = N - 1, added up from its exact terms. The angle: with the smaller part over the larger one
// next to c = j/128 it is that of a table and atan q, q = (small - c large) / (large + c small), from
// 0, pi/2 or pi.
//
// Error: docs/certainty_log.md has the proof.
#pragma once
#include "complex/certified/inverse_tables.h"
#include "complex/certified/pairs.h"

namespace qorvane {
namespace {

// What ln(1 + z) has beside z.head - z.head^2 / 2, for |z| <= 2^-8.
template <class V>
INLINE V restOfLog1p(ShortPair<V> z) {
  constexpr Float64 c9 = fromBits(0x3fbc71c71c71c71c);  // 1/9
  constexpr Float64 c8 = -0.125;
  constexpr Float64 c7 = fromBits(0x3fc2492492492492);  // 1/7
  constexpr Float64 c6 = fromBits(0xbfc5555555555555);  // -1/6
  constexpr Float64 c5 = fromBits(0x3fc999999999999a);  // 1/5
  constexpr Float64 c4 = -0.25;
  constexpr Float64 c3 = fromBits(0x3fd5555555555555);  // 1/3
  const V whole = z.head + z.rest, z2 = whole * whole;
  const V odd = timesPlus(timesPlus(timesPlus(c9, z2, c7), z2, c5), z2, c3);
  const V even = timesPlus(timesPlus(c8, z2, c6), z2, c4);
  const V linear = minusTimes(z.rest, z.rest, timesPlus(0.5, z.rest, z.head));
  if constexpr (isFused) {
    const V lost = fusedLess(z.head, z.head, z.head * z.head);
    return fused(fused(even, whole, odd), z2 * whole, fused(broadcast<V>(-0.5), lost, linear));
  }
  const V cubic = (odd + even * whole) * (z2 * whole);
  return linear + cubic;
}
// base + baseRest + ln(1 + z), where z's head has 26 bits, the base is 0 or at least |z|, a multiple of 2^-42
// below 2^10, and the rests are small.
template <class V>
INLINE Sum<V> sumOfLog(V base, V baseRest, V zHead, V restOfLog) {
  const auto sum = fastSum(base, zHead), all = fastSum(sum.high, zHead * zHead * -0.5);
  return fastSum(all.high, ((all.low + sum.low) + baseRest) + restOfLog);
}
template <class V>
INLINE Sum<V> lnOfRow(V base, V baseRest, ShortPair<V> z) {
  return sumOfLog(base, baseRest, z.head, restOfLog1p(z));
}
constexpr Float64 ln2Hi = fromBits(0x3fe62e42fefa3800);  // 0.6931471805598903, a multiple of 2^-42
constexpr Float64 ln2Lo = fromBits(0x3d2ef35793c76730);  // 5.497923018708371e-14

// The magnitudes of a number's parts by size.
template <class V>
struct BySize {
  V larger, smaller;
};
template <class V>
INLINE BySize<V> bySize(V x, V y) {
  const V a = magnitude(x), b = magnitude(y);
  return {largerLanes(a, b), smallerLanes(a, b)};
}

// N = |z|^2 where the larger part is from 2^-100 to 2^100 and the other one, too, or 0.
template <class V>
INLINE Sum<V> squaredModulus(BySize<V> z) {
  if constexpr (isFused) {
    const V square = z.larger * z.larger, lost = fusedLess(z.larger, z.larger, square);
    const V sum = fused(z.smaller, z.smaller, square);
    return {sum, fused(z.smaller, z.smaller, square - sum) + lost};
  }
  const auto square = [](V x) INLINED {
    const V head = headOf(x);
    return Sum<V>{head * head, (head + x) * (x - head)};
  };
  const auto a = square(z.larger), b = square(z.smaller), sum = fastSum(a.high, b.high);
  return {sum.high, sum.low + (a.low + b.low)};
}
// ln x = base + baseRest + ln(1 + z).
template <class V>
struct LogRemainder {
  V base, baseRest;
  ShortPair<V> z;

  INLINE Sum<V> all() const { return lnOfRow(base, baseRest, z); }
};
// For x from 2^-200 to 2^201: the word that holds the exponent n of m, and the place of m's row in bytes.
template <class V>
INLINE WordsOf<V> wordsOfLog(V x) {
  return highWords(x) + 0x1000;
}
template <class Words>
INLINE Words rowOfLog(Words word) {
  return (word >> 8) & 0xfe0;
}
// With 21 bits of x z's leading part has 26, and the sum is good to 2^-72 absolutely; `isExact` splits z
// anew, so that it is as good next to 1 as x - 1 is.
template <bool isExact, class V, class Offsets>
INLINE LogRemainder<V> logRemainder(Sum<V> x, WordsOf<V> word, Offsets offsets) {
  constexpr Float64 upper21 = fromBits(0xffffffff00000000);  // a mask
  constexpr Float64 smallest = 0x1p-120;                     // so that no power of z is subnormal
  const V factor = fromHighWords<V>(0x7fe00000 - (word & 0x7ff00000)), n = numbersOf<V>((word >> 20) - 1023);
  const auto row = columns<4, V>(log1pRows, offsets);
  const V k = factor * row.of[0];
  const V base = timesPlus(ln2Hi, n, row.of[1]), baseRest = timesPlus(ln2Lo, n, row.of[2]);
  V z, rest;
  if constexpr (isFused) {
    const V product = x.high * k;
    z = product - 1.0, rest = fused(x.low, k, fusedLess(x.high, k, product));
  } else {
    const V head = isExact ? headOf(x.high) : andBits(x.high, broadcast<V>(upper21));
    z = head * k - 1.0, rest = ((x.high - head) + x.low) * k;
  }
  if constexpr (!isExact) return {base, baseRest, {z, rest + smallest}};
  return {base, baseRest, pairOf(fastSum(z, rest))};
}
template <bool isExact, class V>
INLINE LogRemainder<V> logRemainder(Sum<V> x) {
  const auto word = wordsOfLog(x.high);
  return logRemainder<isExact>(x, word, rowOfLog(word));
}
// The same for |N - 1| < 2^-8, from N - 1.
template <class V>
INLINE Sum<V> lnNextToCircle(BySize<V> z) {
  const Sum<V> less = lessOne(z.larger, z.smaller);
  const V zero = broadcast<V>(0.0);
  return lnOfRow(zero, zero, pairOf(less));
}

// smaller/larger next to c = j/128: shifted = j + 1.5 * 2^52, and q = (smaller - c larger) / (larger + c smaller).
template <class V>
INLINE V shiftedRatio(BySize<V> parts) {
  constexpr Float64 shifter = fromBits(0x4338000000000000);  // 1.5 * 2^52
  return (parts.smaller / parts.larger) * 128.0 + shifter;
}
INLINE uint64_t rowOfRatio(uint64_t shifted) { return (shifted & 0xffffffff) << 4; }
template <class V>
struct Fraction {
  Sum<V> numerator;
  ShortPair<V> denominator;
  V reciprocal;
};
template <class V>
INLINE Fraction<V> fractionOf(BySize<V> parts, V shifted) {
  constexpr Float64 shifter = fromBits(0x4338000000000000);  // 1.5 * 2^52
  const V larger = parts.larger, smaller = parts.smaller, c = (shifted - shifter) * 0x1p-7;
  if constexpr (isFused) {
    const V product = c * larger, d = fused(c, smaller, larger);
    return {{smaller - product, fusedFrom(product, c, larger)}, {d, fused(c, smaller, larger - d)}, 1.0 / d};
  }
  const V largeHead = headOf(larger), smallHead = headOf(smaller);
  const auto d = fastSum(larger, c * smallHead);
  const auto denominator = shortPair(d.high, d.low + c * (smaller - smallHead));
  return {
      {smaller - c * largeHead, c * (largeHead - larger)}, denominator, 1.0 / (denominator.head + denominator.rest)};
}
// The angle in [0, pi] as base + baseRest + atan q.
template <class V>
struct AngleRemainder {
  V base, baseRest;
  ShortPair<V> q;
};
template <class V, class Offsets>
INLINE AngleRemainder<V> angleRemainder(V x, V y, V larger, const Fraction<V>& f, Offsets offsets) {
  constexpr Float64 halfPiHi = fromBits(0x3ff921fb54443000);  // 1.5707963267950618, a multiple of 2^-41
  constexpr Float64 halfPiLo = fromBits(0xbd473dcb3b399d74);  // -1.6513995372426591e-13
  const auto q = quotient(f.numerator, f.denominator, f.reciprocal);
  const auto row = twoColumns<V>(tangentRows, offsets);
  const V isSteep = equalLanes(larger, magnitude(y)), isNegative = lessLanes(x, broadcast<V>(0.0));
  const V number = select(isSteep, broadcast<V>(1.0), andBits(isNegative, broadcast<V>(2.0)));
  const V sign = signOf(xorBits(x, isSteep));
  return {timesPlus(halfPiHi, number, xorBits(row.first, sign)),
          timesPlus(halfPiLo, number, xorBits(row.second, sign)),
          {xorBits(q.head, sign), xorBits(q.rest, sign)}};
}
template <class V>
INLINE AngleRemainder<V> angleRemainder(V x, V y) {
  const auto parts = bySize(x, y);
  const V shifted = shiftedRatio(parts);
  return angleRemainder(x, y, parts.larger, fractionOf(parts, shifted), lowWords(shifted) << 4);
}
// The angle, and the magnitude of q.
template <class V>
struct AngleSum {
  Sum<V> angle;
  V quotient;
};
template <class V>
INLINE AngleSum<V> angleSum(const AngleRemainder<V>& a) {
  constexpr Float64 a7 = fromBits(0xbfc2492492492492);  // -1/7
  constexpr Float64 a5 = fromBits(0x3fc999999999999a);  // 1/5
  constexpr Float64 a3 = fromBits(0xbfd5555555555555);  // -1/3
  const V whole = a.q.head + a.q.rest, q2 = whole * whole;
  const V cubic = timesPlus(timesPlus(a7, q2, a5), q2, a3);
  const V tail = isFused ? timesPlus(cubic, q2 * whole, a.q.rest) : a.q.rest + cubic * (q2 * whole);
  const auto sum = fastSum(a.base, a.q.head);
  return {fastSum(sum.high, (sum.low + a.baseRest) + tail), magnitude(whole)};
}

}  // namespace
}  // namespace qorvane
