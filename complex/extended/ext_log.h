// extLog: the natural logarithm in extended precision, and what it shares with extLog1p and the
// inverse hyperbolic functions.
//
// Method: next to 1 polynomials of x - 1, whose leading terms are exact on the leading 11 bits;
// elsewhere x = 2^n m with 1 <= m < 2, C from a table with 1/m to 8 bits, and
// ln x = n ln 2 - ln C + ln(1 + z) with z = m C - 1, a polynomial of degree 7. The product with m's
// leading 32 bits is exact.
//
// Error in units of the last of 64 bits: at most 0.52 from 0.97 to 1.06, where the polynomials
// are; 1.6 from there up and below 0.5; 17 from 0.5 to 0.97, where the terms of the sum are larger
// than the sum.
//
// Special values: a zero gives -Inf and division by zero, +Inf +Inf, a NaN the NaN; less than 0 NaN
// and invalid.
#pragma once
#include "complex/extended/extended.h"

namespace qorvane {

// C and -ln C of the middle of 1 + j/256 to 1 + (j + 1)/256 in row j.
struct LogRow {
  Float64 reciprocal, hi, lo;
};
extern const LogRow logTable256[256];

namespace {

// x with the key of x rounded to double precision; x must be in its normal range.
INLINE Argument roundedArgument(Extended80 x) {
  Argument a(static_cast<Float64>(x));
  a.x = x;
  return a;
}

// A number as 2^n (m + lo) with 1 <= m < 2 and its row of the table.
struct LogArgument {
  Extended80 m, lo;
  int32_t n;
  uint32_t row;
};

// For a sum whose high part is within the normal range of double precision.
INLINE LogArgument logArgumentOf(Sum x, uint32_t key) {
  const int32_t n = static_cast<int32_t>(key >> 16) - 0x3fff;
  const Float64 factor = powerOfTwo(-n);
  return {x.hi * factor, x.lo * factor, n, key >> 7 & 0xff};
}
INLINE LogArgument logArgumentOf(Sum x) { return logArgumentOf(x, Argument(static_cast<Float64>(x.hi)).key); }

// For all positive numbers.
INLINE LogArgument logArgumentOfAny(Extended80 x) {
  int32_t n = -0x3fff;
  if (patternOf(x).field == 0) x *= 0x1p75, n -= 75;
  const Pattern p = patternOf(x);
  return {static_cast<Extended80>(p.significand) * 0x1p-63, 0.0L, n + p.field,
          static_cast<uint32_t>(p.significand >> 55) & 0xff};
}

INLINE Extended80 logByTable(const LogArgument& a) {
  static constexpr Constant g2 = extended(0xbffe, 0x8000000000000041);  // -0.500000000000000004
  // Of these the leading 53 bits do: what they leave is below 2^-77 of the result.
  static constexpr Constant g3 = leading53(extended(0x3ffd, 0xaaaaaaaaaaaaabea));  // 0.33333333333333335
  static constexpr Constant g4 = leading53(extended(0xbffc, 0xffffffffefe6e52e));  // -0.249999999996340
  static constexpr Constant g5 = leading53(extended(0x3ffc, 0xccccccccb4796149));  // 0.199999999994470
  static constexpr Constant g6 = leading53(extended(0xbffc, 0xaaaafbde6bc3dedd));  // -0.166667876673
  static constexpr Constant g7 = leading53(extended(0x3ffc, 0x92497ecbbf12a224));  // 0.142858487306
  static constexpr Constant ln2 = extended(0x3ffe, 0xb17217f7d1cf79ac);            // 0.693147180559945309
  const LogRow& row = logTable256[a.row];
  const Extended80 mh = toMultiple(a.m, shifterTo31), ml = (a.m - mh) + a.lo;
  const Extended80 t = mh * row.reciprocal - 1.0, u = ml * row.reciprocal, z = t + u, z2 = z * z;
  const Extended80 polynomial = ((g7 * z2 + g5) * z2 + g3) * z + ((g6 * z2 + g4) * z2 + g2);
  return (((t + row.hi) + (u + row.lo)) + z2 * polynomial) + ln2 * Extended80{static_cast<Float64>(a.n)};
}

// z = zh + zl with 11 bits in zh, w = z^2; -z^2/2 and third z^3 in exact parts.
constexpr Float64 thirdShort = extended(0x3ffd, 0xaaa0000000000000).hi;  // 0.333251953125
struct LogLead {
  Extended80 z, zh, zl, zh2, w;
};
INLINE LogLead logLead(Extended80 z) {
  const Extended80 zh = leadingPart(z, leading11), zl = z - zh, zh2 = zh * zh;
  return {z, zh, zl, zh2, zh2 + (z + zh) * zl};
}
// ln(1 + z), `tail` being what z - z^2/2 + thirdShort z^3 leaves.
INLINE Extended80 logOfLead(const LogLead& a, Extended80 tail) {
  const Extended80 sum = a.z + a.zh, cubic = thirdShort * (a.zl * (a.w + a.zh * sum));
  const Extended80 rest = (tail + cubic) + (a.zl - (0.5 * sum) * a.zl);
  return (rest + (thirdShort * a.zh2) * a.zh) - 0.5 * a.zh2 + a.zh;
}

// 0.96875 <= x < 1.0625 + 2^-15
INLINE Extended80 logNearOne(Extended80 x) {
  static constexpr Constant e2 = extended(0xbfb4, 0x9f28ea2d2df7e646);   // -3.29134800223e-23
  static constexpr Constant e4 = extended(0xbffc, 0xffffffffffffffea);   // -0.25
  static constexpr Constant e6 = extended(0xbffc, 0xaaaaaaaaaaab8f55);   // -0.166666666666667
  static constexpr Constant e8 = extended(0xbffb, 0xffffffffff0a3715);   // -0.125
  static constexpr Constant e10 = extended(0xbffb, 0xcccccc8103d7e06e);  // -0.0999999977944
  static constexpr Constant e12 = extended(0xbffb, 0xaaac2bce12338b18);  // -0.0833362028373
  static constexpr Constant e14 = extended(0xbffb, 0x9033450a5189d630);  // -0.0704102891706
  static constexpr Constant o3 = extended(0x3ff1, 0xaaaaaaaaaaaaadc6);   // 8.13802083333e-05: 1/3 - thirdShort
  static constexpr Constant o5 = extended(0x3ffc, 0xccccccccccccc236);   // 0.2
  static constexpr Constant o7 = extended(0x3ffc, 0x9249249249a4a0c4);   // 0.142857142857
  static constexpr Constant o9 = extended(0x3ffb, 0xe38e38ddbc1754f0);   // 0.111111110942
  static constexpr Constant o11 = extended(0x3ffb, 0xba2e9a1ce811d305);  // 0.0909091987678
  static constexpr Constant o13 = extended(0x3ffb, 0x9d86222d7a648ac4);  // 0.0769159956101
  static constexpr Constant o15 = extended(0x3ffa, 0xda3eb73f2509bdb7);  // 0.0532824667046
  const Extended80 z = x - 1.0;
  if (z > -0x1p-16 && z < 0x1p-15) {
    static constexpr Constant n3 = extended(0x3ffd, 0xaaaaaaaaaaac1552);  // 0.333333333333
    static constexpr Constant n4 = extended(0xbffc, 0xffffffffc004ae8a);  // -0.249999999985
    static constexpr Constant n5 = extended(0x3ffc, 0xcccaccd25f7ef9aa);  // 0.199992370930
    const Extended80 z2 = z * z;
    return z2 * ((n3 + n5 * z2) * z + (-0.5 + n4 * z2)) + z;
  }
  const LogLead a = logLead(z);
  const Extended80 w = a.w;
  const Extended80 even = (((((e14 * w + e12) * w + e10) * w + e8) * w + e6) * w + e4) * w + e2;
  const Extended80 odd = (((((o15 * w + o13) * w + o11) * w + o9) * w + o7) * w + o5) * w + o3;
  return logOfLead(a, w * even + (w * z) * odd);
}

constexpr uint32_t keyBelowOne = 0x3ffef800, keyAboveOne = 0x3fff8800;

// For a key within the normal range of double precision, from an ordinary argument.
INLINE Extended80 logOfOrdinary(Argument a) {
  if (a.key - keyBelowOne <= keyAboveOne - keyBelowOne) return logNearOne(a.x);
  return logByTable(logArgumentOf({a.x, 0.0L}, a.key));
}

[[gnu::noinline, gnu::cold, maybe_unused]] Extended80 extLog(Extended80 x) {
  constexpr Float64 infinity = __builtin_inf();
  const Argument a(x);
  if (x == 0) return -1.0L / Extended80{opaque(0.0)};
  if (x != x || (a.key >= keyOfInfinity && !a.negative)) return x * 1.0L;
  if (a.negative) return opaque(infinity) * 0.0L;
  if (a.key - keyBelowOne <= keyAboveOne - keyBelowOne) return logNearOne(x);
  return logByTable(logArgumentOfAny(x));
}

}  // namespace
}  // namespace qorvane
