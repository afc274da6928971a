// extAsinh, extAcosh: the inverse hyperbolic sine and cosine in extended precision.
//
// Method, a = |x|: near the zero a series, of x up to 1/2 for the sine, of 2 (x - 1) up to 1.5 for the
// cosine; up to 32 ln(a + sqrt(a^2 +- 1)), with square, root and sum as sums of two numbers; from there
// on ln(2a +- 1/(2a) - 1/(8a^3) +- ...) with fewer and fewer terms.
//
// Error in units of the last of 64 bits: at most 0.55 in the series, 1.6 elsewhere.
//
// Special values: an infinity gives the infinity, a NaN the NaN. extAsinh: a zero gives the zero, a
// subnormal x underflows. extAcosh: 1 gives +0, less than 1 NaN and invalid.
#pragma once
#include "complex/extended/ext_log1p.h"
#include "complex/extended/ext_odd_series.h"
#include "complex/extended/ext_sqrt.h"

namespace qorvane {
namespace {

#include "complex/extended/acosh_tail_table.inc"
#include "complex/extended/asinh_tail_table.inc"

// a + sqrt(a^2 + sign) for a below 2^30.
INLINE Sum sumWithRoot(Extended80 a, Float64 sign) {
  const Extended80 ah = leadingPart(a, leading31);
  const Sum square = fastTwoSum(ah * ah, (a + ah) * (a - ah));
  Sum v = onePlus(sign * square.hi);  // 1 + a^2, or 1 - a^2
  Sum root = rootAndRest(sign * v.hi);
  root.lo += (sign * v.lo + square.lo) * (0.5 / root.hi);
  v = fastTwoSum(root.hi, a);
  if (sign < 0) v = fastTwoSum(a, root.hi);
  return {v.hi, v.lo + root.lo};
}

// ln(a + sqrt(a^2 + sign)) for a from 32 up, finite; its terms after ln 2a are those of 1/(4 a^2).
INLINE Extended80 logOfDouble(const Argument& a, Float64 sign) {
  const Extended80 x = a.magnitude(), twice = 2.0 * x;
  if (a.key >= keyFrom(0x4025)) return logByTable(logArgumentOfAny(twice));
  const Extended80 r = 1.0 / x, t = r * r;
  if (a.key >= keyFrom(0x4011)) return logByTable(logArgumentOf({twice, 0.0L}, a.key + keyFrom(1))) + (sign * 0.25) * t;
  const Extended80 series = a.key >= keyFrom(0x400a)
                                ? sign * 0.5 - 0.125 * t
                                : ((((sign * 7.0 / 256) * t - 5.0 / 128) * t + sign / 16) * t - 0.125) * t + sign * 0.5;
  return logByTable(logArgumentOf(fastTwoSum(twice, series * r)));
}

INLINE Extended80 extAsinh(Argument a) {
  if (a.key < keyFrom(0x3fb4)) return tinyOdd(a.x);
  if (a.key < keyFrom(0x3ff8)) {
    static constexpr Constant c3 = extended(0xbffc, 0xaaaaaaaaaaaaaaab);  // -1/6
    static constexpr Constant c5 = extended(0x3ffb, 0x999999999999999a);  // 3/40
    static constexpr Constant c7 = extended(0xbffa, 0xb6db6db6db6db6db);  // -15/336
    static constexpr Constant c9 = extended(0x3ff9, 0xf8e38e38e38e38e4);  // 105/3456
    const Sum s = shortOddSeries(a, c3, c5, c7, c9);
    return s.hi + s.lo;
  }
  if (a.key < keyFrom(0x3ffe)) {
    constexpr Float64 c3 = extended(0xbffc, 0xaaa0000000000000).hi;  // -0.1666259765625
    constexpr Float64 c5 = extended(0x3ffb, 0x99a0000000000000).hi;  // 0.07501220703125
    const Sum s = longOddSeries(a.x, c3, [](Extended80 t) INLINED { return inTwoChains(asinhTail, c5, t); });
    return s.hi + s.lo;
  }
  if (a.key >= keyOfInfinity) return a.x * 1.0L;
  if (a.key >= keyFrom(0x4004)) return a.sign() * logOfDouble(a, 1.0);
  return a.sign() * logByTable(logArgumentOf(sumWithRoot(a.magnitude(), 1.0)));
}

INLINE Extended80 extAcosh(Argument a) {
  const Extended80 x = a.x;
  if (!(x >= 1.0)) {
    constexpr Float64 infinity = __builtin_inf();
    return x != x ? x * 1.0L : opaque(infinity) * 0.0L;
  }
  if (a.key < 0x3fffc000) {  // 1.5
    const Extended80 w = 2.0 * (x - 1.0);
    if (w == 0) return 0.0L;
    const Sum s = rootAndRest(w);
    Extended80 tail = acoshTail[14].hi;
#pragma GCC unroll 16
    for (int i = 13; i >= 0; --i) tail = tail * w + acoshTail[i];
    return s.hi + ((tail * w) * s.hi + s.lo);
  }
  if (a.key >= keyOfInfinity) return x;
  if (a.key >= keyFrom(0x4004)) return logOfDouble(a, -1.0);
  return logByTable(logArgumentOf(sumWithRoot(x, -1.0)));
}

}  // namespace
}  // namespace qorvane
