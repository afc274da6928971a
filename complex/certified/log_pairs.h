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

// base + ln(1 + z) for z = head + rest, |z| <= 2^-8, with a head of 26 bits, where the base is 0 or at
// least |z|, a multiple of 2^-42 below 2^10, and a rest that is small.
template <class V>
INLINE Sum<V> lnOfRow(V base, V baseRest, ShortPair<V> z) {
  constexpr Float64 c9 = fromBits(0x3fbc71c71c71c71c);  // 1/9
  constexpr Float64 c8 = -0.125;
  constexpr Float64 c7 = fromBits(0x3fc2492492492492);  // 1/7
  constexpr Float64 c6 = fromBits(0xbfc5555555555555);  // -1/6
  constexpr Float64 c5 = fromBits(0x3fc999999999999a);  // 1/5
  constexpr Float64 c4 = -0.25;
  constexpr Float64 c3 = fromBits(0x3fd5555555555555);  // 1/3
  const V whole = z.head + z.rest, z2 = whole * whole;
  const V odd = ((c9 * z2 + c7) * z2 + c5) * z2 + c3, even = (c8 * z2 + c6) * z2 + c4;
  const V cubic = (odd + even * whole) * (z2 * whole);
  const auto sum = fastSum(base, z.head), all = fastSum(sum.high, z.head * z.head * -0.5);
  const V low = ((all.low + sum.low) + baseRest) + ((z.rest - z.rest * (z.head + 0.5 * z.rest)) + cubic);
  return fastSum(all.high, low);
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
  const auto square = [](V x) INLINED {
    const V head = headOf(x);
    return Sum<V>{head * head, (head + x) * (x - head)};
  };
  const auto a = square(z.larger), b = square(z.smaller), sum = fastSum(a.high, b.high);
  return {sum.high, sum.low + (a.low + b.low)};
}
// ln x. With 21 bits of x z's leading part has 26, and the sum is good to 2^-72 absolutely; `isExact` splits
// z anew, so that it is as good next to 1 as x - 1 is.
template <bool isExact, class V>
INLINE Sum<V> lnPair(Sum<V> x) {
  constexpr Float64 upper21 = fromBits(0xffffffff00000000);  // a mask
  constexpr Float64 smallest = 0x1p-120;                     // so that no power of z is subnormal
  const auto word = highWords(x.high) + 0x1000;
  const V factor = fromHighWords<V>(0x7fe00000 - (word & 0x7ff00000)), n = numbersOf<V>((word >> 20) - 1023);
  const auto row = columns<4, V>(log1pRows, (word >> 8) & 0xfe0);
  const V k = factor * row.of[0], base = n * ln2Hi + row.of[1], baseRest = n * ln2Lo + row.of[2];
  const V head = isExact ? headOf(x.high) : andBits(x.high, broadcast<V>(upper21));
  const V z = head * k - 1.0, rest = ((x.high - head) + x.low) * k;
  if constexpr (!isExact) return lnOfRow(base, baseRest, ShortPair<V>{z, rest + smallest});
  const Sum<V> sum = fastSum(z, rest);
  return lnOfRow(base, baseRest, pairOf(sum));
}
// The same for |N - 1| < 2^-8, from N - 1.
template <class V>
INLINE Sum<V> lnNextToCircle(BySize<V> z) {
  const Sum<V> less = lessOne(z.larger, z.smaller);
  const V zero = broadcast<V>(0.0);
  return lnOfRow(zero, zero, pairOf(less));
}

// The angle in [0, pi], and the magnitude of q.
template <class V>
struct AngleSum {
  Sum<V> angle;
  V quotient;
};
template <class V>
INLINE AngleSum<V> angleSum(V x, V y, BySize<V> parts) {
  constexpr Float64 halfPiHi = fromBits(0x3ff921fb54443000);  // 1.5707963267950618, a multiple of 2^-41
  constexpr Float64 halfPiLo = fromBits(0xbd473dcb3b399d74);  // -1.6513995372426591e-13
  constexpr Float64 shifter = fromBits(0x4338000000000000);   // 1.5 * 2^52
  constexpr Float64 a7 = fromBits(0xbfc2492492492492);        // -1/7
  constexpr Float64 a5 = fromBits(0x3fc999999999999a);        // 1/5
  constexpr Float64 a3 = fromBits(0xbfd5555555555555);        // -1/3
  const V larger = parts.larger, smaller = parts.smaller;
  const V shifted = (smaller / larger) * 128.0 + shifter, c = (shifted - shifter) * 0x1p-7;
  const auto row = twoColumns<V>(tangentRows, lowWords(shifted) << 4);
  const V largeHead = headOf(larger), smallHead = headOf(smaller);
  const auto d = fastSum(larger, c * smallHead);
  const auto denominator = shortPair(d.high, d.low + c * (smaller - smallHead));
  const Sum<V> numerator = {smaller - c * largeHead, c * (largeHead - larger)};
  const auto q = quotient(numerator, denominator, 1.0 / (denominator.head + denominator.rest));
  const V whole = q.head + q.rest, q2 = whole * whole;
  const V tail = ((a7 * q2 + a5) * q2 + a3) * (q2 * whole);

  const V isSteep = equalLanes(larger, magnitude(y)), isNegative = lessLanes(x, broadcast<V>(0.0));
  const V number = select(isSteep, broadcast<V>(1.0), andBits(isNegative, broadcast<V>(2.0)));
  const V sign = signOf(xorBits(x, isSteep));
  const auto sum = fastSum(number * halfPiHi + xorBits(row.first, sign), xorBits(q.head, sign));
  const V low = (sum.low + (number * halfPiLo + xorBits(row.second, sign))) + xorBits(q.rest + tail, sign);
  return {fastSum(sum.high, low), magnitude(whole)};
}

}  // namespace
}  // namespace qorvane
