// extTan: the tangent in extended precision.
//
// Method: up to 2^-10 Taylor polynomials; from there on the reduction modulo pi/2, tan |x| = tan r
// or -1 / tan r. |r| = i pi/32 + t with i = 0 to 8 and |t| <= pi/64; for i = 0 tan t is a
// polynomial and 1 / tan t = 1/t - t K(t^2); otherwise tan |r| = (T + s) / (1 - T s), T from a
// table and s = tan t, numerator and denominator as sums of two numbers.
//
// Error, for double-precision x, in units of the last of 64 bits: at most 0.62.
//
// Special values: a zero gives the zero, an infinity NaN and invalid, a NaN the NaN. A subnormal x
// underflows.
#pragma once
#include "complex/extended/ext_trig_reduction.h"

namespace qorvane {

// tan(i pi/32) = hi + lo, with 32 bits in hi; i from 0 to 8.
struct TanRow {
  Float64 hi, lo;
};
extern const TanRow tanTable[9];

namespace {

// n / d, rounded but once. The products of `short` parts are exact.
INLINE Extended80 compensatedQuotient(Sum n, Sum d) {
  const Extended80 q = n.hi / d.hi, qShort = leadingPart(q, leading31), dShort = leadingPart(d.hi, leading31);
  const Extended80 rest = (((n.hi - qShort * dShort) - qShort * (d.hi - dShort)) + n.lo) - qShort * d.lo;
  return qShort + rest / d.hi;
}

INLINE Extended80 tanOfSmall(const Argument& a) {
  static constexpr Constant third = extended(0x3ffd, 0xaaaaaaaaaaaaaaab);            // 1/3
  static constexpr Constant twoFifteenths = extended(0x3ffc, 0x8888888888888889);    // 2/15
  static constexpr Constant seventeen315ths = extended(0x3ffa, 0xdd0dd0dd0dd0dd0e);  // 17/315
  const Extended80 x = a.x, t = x * x;
  if (a.key >= keyFrom(0x3ff3)) return x + (t * ((seventeen315ths * t + twoFifteenths) * t + third)) * x;
  if (a.key >= keyFrom(0x3fec)) return x + (t * (twoFifteenths * t + third)) * x;
  if (a.key >= keyFrom(0x3fb4)) return x + (t * third) * x;
  return tinyOdd(x);
}

// tan r or -1 / tan r for 0 <= r <= pi/4.
INLINE Extended80 tanOfRemainder(Sum r, bool reciprocal) {
  static constexpr Constant sixtyFourOverPi = extended(0x4003, 0xa2f9836e4e44152a);  // 20.371832715762604
  constexpr Float64 stepHi = fromBits(0x3fa921fb54400000);  // 0.049087385210441425: pi/64, 31 bits
  constexpr Float64 stepLo = fromBits(0x3d80b4611a626331);  // 1.899093908283185e-12
  const uint32_t n = (floorOf(r.hi * sixtyFourOverPi) + 1) & ~1u;
  const Extended80 steps = static_cast<int32_t>(n);
  const Sum t = fastTwoSum(r.hi - steps * stepHi, r.lo - steps * stepLo);
  const Extended80 z = t.hi * t.hi;

  if (n == 0 && reciprocal) {
    static constexpr Constant k1 = extended(0x3ffd, 0xaaaaaaaaaaaaaaab);   // 0.3333333333333333
    static constexpr Constant k3 = extended(0x3ff9, 0xb60b60b60b60b60c);   // 0.022222222222222223
    static constexpr Constant k5 = extended(0x3ff6, 0x8ab355e008aafd63);   // 0.0021164021164021135
    static constexpr Constant k7 = extended(0x3ff2, 0xddebbc99bfaa9234);   // 0.00021164021164558428
    static constexpr Constant k9 = extended(0x3fef, 0xb35477029ef47093);   // 2.1377794856085453e-05
    static constexpr Constant k11 = extended(0x3fec, 0x915b6ceadec1e375);  // 2.1659900352145785e-06
    const Extended80 k = ((((k11 * z + k9) * z + k7) * z + k5) * z + k3) * z + k1;
    const Extended80 q = 1.0L / t.hi, qShort = leadingPart(q, leading31), tShort = leadingPart(t.hi, leading31);
    const Extended80 rest = ((1.0L - qShort * tShort) - qShort * (t.hi - tShort)) - qShort * t.lo;
    return (t.hi * k - rest * q) - qShort;
  }

  static constexpr Constant t3 = extended(0x3ffd, 0xaaaaaaaaaaaaaaab);   // 0.3333333333333333
  static constexpr Constant t5 = extended(0x3ffc, 0x88888888888889bc);   // 0.13333333333333333
  static constexpr Constant t7 = extended(0x3ffa, 0xdd0dd0dd0d75e827);   // 0.05396825396823377
  static constexpr Constant t9 = extended(0x3ff9, 0xb327a4464a5bed85);   // 0.021869488571904842
  static constexpr Constant t11 = extended(0x3ff8, 0x9136fbf9450380c3);  // 0.008863206928325179
  static constexpr Constant t13 = extended(0x3ff6, 0xec1acdfa377c81f7);  // 0.0036026718973669117
  const Extended80 p = ((((t13 * z + t11) * z + t9) * z + t7) * z + t5) * z + t3;
  const Sum s = fastTwoSum(t.hi, (z * p) * t.hi + t.lo);
  if (n == 0) return s.hi + s.lo;

  const TanRow& row = tanTable[n >> 1];
  const Extended80 hi = row.hi, lo = row.lo, sShort = leadingPart(s.hi, leading31);
  Sum numerator = fastTwoSum(hi, s.hi), denominator = fastTwoSum(1.0L, -(hi * sShort));
  numerator = fastTwoSum(numerator.hi, numerator.lo + (lo + s.lo));
  denominator.lo -= (hi * (s.hi - sShort) + lo * s.hi) + hi * s.lo;
  return reciprocal ? -compensatedQuotient(denominator, numerator) : compensatedQuotient(numerator, denominator);
}

INLINE Extended80 extTan(Argument a) {
  if (a.key < keyFrom(0x3ff5)) return tanOfSmall(a);
  if (a.key >= keyOfInfinity) return a.x * 0.0L;
  const TrigRemainder r = reduceTrig(a, leading11);
  const Sum remainder = fastTwoSum(r.rh, r.rl);
  const bool falling = remainder.hi < 0;
  const Sum magnitude = falling ? Sum{-remainder.hi, -remainder.lo} : remainder;
  const Extended80 y = tanOfRemainder(magnitude, (r.halfTurns & 1) != 0);
  return falling != a.negative ? -y : y;
}

}  // namespace
}  // namespace qorvane
