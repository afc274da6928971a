// extAsin, extAcos: the inverse sine and cosine in extended precision.
//
// Method: below 1/2 the series of the inverse sine, and pi/2 less that; from there up the half angle,
// acos x = 2 asin(w) with w = sqrt((1 - x)/2), the root with its residual.
//
// Error in units of the last of 64 bits: at most 0.64 in extAsin, where the series
// for [0, 1/4] ends, 0.56 elsewhere.
//
// Special values: |x| > 1 gives NaN and invalid, a NaN the NaN. A zero gives the zero in extAsin, 1
// in extAcos. A subnormal x underflows in extAsin.
#pragma once
#include "complex/extended/ext_odd_series.h"
#include "complex/extended/ext_sqrt.h"

namespace qorvane {
namespace {

#include "complex/extended/asin_tail_table.inc"

constexpr Float64 asin3 = extended(0x3ffc, 0xaaa0000000000000).hi;  // 0.1666259765625
constexpr Float64 asin5 = extended(0x3ffb, 0x99a0000000000000).hi;  // 0.07501220703125

// What is left of the series on [0, 1/4].
constexpr Constant asinTail[] = {
    extended(0x3ff0, 0xaaaaaaaaaaaaa6c3),  // 4.06901041667e-05, of x^3: 1/6 - asin3
    extended(0xbfee, 0xccccccccccb010dd),  // -1.22070312500e-05, of x^5: 3/40 - asin5
    extended(0x3ffa, 0xb6db6db6db6c665e),  // 0.0446428571429
    extended(0x3ff9, 0xf8e38e38e4928d22),  // 0.0303819444445
    extended(0x3ff9, 0xb745d1741fb15458),  // 0.0223721590892
    extended(0x3ff9, 0x8e27627fc31e0c15),  // 0.0173527644930
    extended(0x3ff8, 0xe4cccab15f6c53fb),  // 0.0139648417876
    extended(0x3ff8, 0xbd43eec0a130d62c),  // 0.0115518409316
    extended(0x3ff8, 0x9fec9b2505d12803),  // 0.00976100111810
    extended(0x3ff8, 0x8994f84cb3d7c8e9),  // 0.00839733360300
    extended(0x3ff7, 0xed9a644b9976ebf2),  // 0.00725107094986
    extended(0x3ff7, 0xe0cbaf278fe185ab),  // 0.00686021854847
    extended(0x3ff6, 0xeda04d0965eb32d5),  // 0.00362588768748
    extended(0x3ff8, 0xd9b7d893a2485751),  // 0.0132884612090, of x^29
};

INLINE Sum asinByLongSeries(Extended80 x) {
  return longOddSeries(x, asin3, [](Extended80 t) INLINED { return inTwoChains(asinWideTail, asin5, t); });
}

// asin x for |x| < 1/2.
INLINE Sum asinBelowHalf(const Argument& a) {
  if (a.key >= keyFrom(0x3ffd)) return asinByLongSeries(a.x);
  if (a.key >= keyFrom(0x3ff8))
    return longOddSeries(a.x, asin3, [](Extended80 t) INLINED { return inTwoChains(asinTail, asin5, t); });
  static constexpr Constant c3 = extended(0x3ffc, 0xaaaaaaaaaaaaaaab);  // 1/6
  static constexpr Constant c5 = extended(0x3ffb, 0x999999999999999a);  // 3/40
  static constexpr Constant c7 = extended(0x3ffa, 0xb6db6db6db6db6db);  // 15/336
  static constexpr Constant c9 = extended(0x3ff9, 0xf8e38e38e38e38e4);  // 105/3456
  return shortOddSeries(a, c3, c5, c7, c9);
}

// acos(x)/2 for 1/2 <= x <= 1.
INLINE Sum halfAcos(Extended80 x) {
  const Extended80 v = 0.5 * (1.0 - x);
  if (v == 0) return {0.0L, 0.0L};
  const Sum w = rootAndRest(v);
  const Sum angle = asinByLongSeries(w.hi);
  // The derivative of the inverse sine at w is 1 + w^2/2 + 3/8 w^4 + ...
  return {angle.hi, angle.lo + w.lo * (1.0 + v * (0.5 + v * 0.375))};
}

// pi = 2 * (halfPiHi + halfPiLo), 31 bits in the high part.
constexpr Float64 halfPiHi = fromBits(0x3ff921fb54400000);  // 1.5707963267341256
constexpr Float64 halfPiLo = fromBits(0x3dd0b4611a626331);  // 6.0771005065061922e-11

INLINE Extended80 outsideOfOne(const Argument& a) {
  constexpr Float64 infinity = __builtin_inf();
  return a.x != a.x ? a.x * 1.0L : opaque(infinity) * 0.0L;
}

INLINE Extended80 extAsin(Argument a) {
  if (a.key < keyFrom(0x3fb4)) return tinyOdd(a.x);
  if (a.key < keyFrom(0x3ffe)) {
    const Sum angle = asinBelowHalf(a);
    return angle.hi + angle.lo;
  }
  const Extended80 magnitude = a.magnitude();
  if (!(magnitude <= 1.0)) return outsideOfOne(a);
  const Sum half = halfAcos(magnitude);
  return a.sign() * ((halfPiHi - 2.0 * half.hi) + (halfPiLo - 2.0 * half.lo));
}

INLINE Extended80 extAcos(Argument a) {
  if (a.key < keyFrom(0x3ffe)) {
    const Sum angle = asinBelowHalf(a);
    const Sum rest = fastTwoSum(halfPiHi, -angle.hi);
    return rest.hi + (rest.lo + (halfPiLo - angle.lo));
  }
  const Extended80 magnitude = a.magnitude();
  if (!(magnitude <= 1.0)) return outsideOfOne(a);
  const Sum half = halfAcos(magnitude);
  if (a.negative) return (2.0 * halfPiHi - 2.0 * half.hi) + (2.0 * halfPiLo - 2.0 * half.lo);
  return 2.0 * (half.hi + half.lo);
}

}  // namespace
}  // namespace qorvane
