// extExp: e^x in extended precision.
//
// Method: up to 2^-5 polynomials of x, the longer ones added to x + 1; from there on the reduction
// of ext_exp_steps.h, with the remainder cut to a multiple of 2^-31 so that its product with the
// high part of the table's number is exact.
//
// Error, for double-precision x, in units of the last of 64 bits: at most 0.501, but 1.0 for |x|
// from 2^-18 to 2^-11, where x + 1 is rounded before the rest of the polynomial is added.
//
// Special values: NaN gives the NaN, +Inf +Inf, -Inf +0; from 11356.5 up +Inf and overflow, from
// -11400.2 down +0 and underflow, results below the normal range underflow.
#pragma once
#include "complex/extended/ext_exp_steps.h"

namespace qorvane {
namespace {

// Below 2^-5.
INLINE Extended80 extExpOfSmall(Argument a) {
  const Extended80 x = a.x, t = x * x;
  if (a.key < keyFrom(0x3fbc)) return x + 1.0L;
  if (a.key < keyFrom(0x3fe5)) {
    static constexpr Constant p2 = extended(0x3ffe, 0x8000000000000001);  // 0.5
    return (x + (p2 * x) * x) + 1.0L;
  }
  if (a.key < keyFrom(0x3fed)) {
    static constexpr Constant p3 = extended(0x3ffc, 0xaaaaaaaaab333333);  // 0.16666666666678792
    static constexpr Constant p2 = extended(0x3ffe, 0x8000000000555555);  // 0.5000000000003032
    return (x + ((p3 * x + p2) * x) * x) + 1.0L;
  }
  if (a.key < keyFrom(0x3ff4)) {
    static constexpr Constant p5 = extended(0x3ff8, 0x8888889c09c09c28);  // 0.008333333404291245
    static constexpr Constant p4 = extended(0x3ffa, 0xaaaaaac16c16c2ee);  // 0.04166666699780358
    static constexpr Constant p3 = extended(0x3ffc, 0xaaaaaaaaaaaaa90b);  // 0.16666666666666666
    static constexpr Constant p2 = extended(0x3ffd, 0xfffffffffffffe94);  // 0.5
    return (x + 1.0L) + ((p5 * t + p3) * t + (p4 * t + p2) * x) * x;
  }
  static constexpr Constant c9 = extended(0x3fec, 0xb8f02a2a5cbbd47a);  // 2.755793085606798e-06
  static constexpr Constant c8 = extended(0x3fef, 0xd00e28b5d143466b);  // 2.4802125536051512e-05
  static constexpr Constant c7 = extended(0x3ff2, 0xd00d00cf285a5521);  // 0.00019841269836192785
  static constexpr Constant c6 = extended(0x3ff5, 0xb60b60b55270f231);  // 0.0013888888885603755
  static constexpr Constant c5 = extended(0x3ff8, 0x888888888888d282);  // 0.008333333333333349
  static constexpr Constant c4 = extended(0x3ffa, 0xaaaaaaaaaaaaf4a4);  // 0.041666666666666734
  static constexpr Constant c3 = extended(0x3ffc, 0xaaaaaaaaaaaaaaab);  // 0.16666666666666666
  constexpr Float64 c2 = 0.5;
  const Extended80 even = ((c8 * t + c6) * t + c4) * t + c2, odd = ((c9 * t + c7) * t + c5) * t + c3;
  return (x + 1.0L) + t * (even + odd * x);
}

// e^x / 2^m for the integer m.
struct ScaledExp {
  Sum sum;
  int32_t k;  // 256 m + j

  INLINE int32_t m() const { return (k - signedLowByte(k)) >> 8; }
};
INLINE ScaledExp extExpScaled(Extended80 x) {
  const Extended80 k = wholePart(x * invLn2By256);
  const int32_t n = toInt32(k);
  const Extended80 t = x - k * ln2By256Hi, kLo = k * ln2By256Lo;
  const Extended80 r = t - kLo;
  const Extended80 rh = toMultiple(r, shifterTo31), rl = (r - rh) + ((t - r) - kLo);
  const Extended80 r2 = r * r;
  const Extended80 rest = rl + r2 * ((s5 * r2 + s3) * r + ((s6 * r2 + s4) * r2 + s2));
  const ExpRow& row = expTable256[signedLowByte(n) + 128];
  const Extended80 product = row.hi * rh, sum = row.hi + product;
  return {{sum, ((product + (row.hi - sum)) + row.lo) + (row.lo * (rh + rest) + row.hi * rest)}, n};
}

// From 708 up.
INLINE Extended80 extExpOfLarge(Argument a) {
  if (a.key >= keyOfInfinity) {
    if (a.x != a.x) return quieted(a.x);
    return a.negative ? 0.0L : a.x;
  }
  constexpr Extended80 limitUp = extendedNumber(0x400c, 0xb17217f7d1cf79ac);    // 11356.523406294144
  constexpr Extended80 limitDown = extendedNumber(0x400c, 0xb220c44769c201e8);  // 11400.19167866942
  if (a.magnitude() >= (a.negative ? limitDown : limitUp)) return a.negative ? underflowed() : overflowed();

  const ScaledExp e = extExpScaled(a.x);
  const Extended80 whole = e.sum.lo + e.sum.hi;
  if (!a.negative) return scaled(whole, e.m());
  // Where the result is subnormal, with 51 bits or more, it is added up from its parts so that it
  // rounds but once: `upper` keeps all its bits.
  constexpr Extended80 gradualFrom = extendedNumber(0xc00c, 0xb16c8c671210eb2f);  // -11355.137111933023
  Extended80 result;
  if (e.k >= -4196735 && e.k <= -4193665 && a.x < gradualFrom) {
    constexpr Float64 leading51 = 6144.0;
    const Extended80 upper = leadingPart(whole, leading51), lower = e.sum.lo + (e.sum.hi - upper);
    result = scaled(lower, e.m()) + scaled(upper, e.m());
  } else {
    result = scaled(whole, e.m());
  }
  if (result < constantPowerOfTwo(-16382)) discard(underflowed());
  return result;
}

INLINE Extended80 extExp(Argument a) {
  if (a.key < keyFrom(0x3ffa)) [[unlikely]]
    return extExpOfSmall(a);
  if (a.key >= 0x4008b100) [[unlikely]]
    return extExpOfLarge(a);  // from 708 up
  const ScaledExp e = extExpScaled(a.x);
  return (e.sum.lo + e.sum.hi) * powerOfTwo(e.m());
}

}  // namespace
}  // namespace qorvane
