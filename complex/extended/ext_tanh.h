// extTanh: the hyperbolic tangent in extended precision.
//
// Method: up to 2^-7 polynomials; up to 0.5 a polynomial whose leading coefficients are so short
// that their products with powers of the argument's leading 11 bits are exact; from there on
// 1 - 2 / (e^(2|x|) + 1); from 32 up 1.
//
// Error, for double-precision x, in units of the last of 64 bits: at most 0.546.
//
// Special values: a zero gives the zero, an infinity +-1, a NaN the NaN. A subnormal x underflows.
#pragma once
#include "complex/extended/ext_exp_steps.h"

namespace qorvane {
namespace {

#include "complex/extended/tanh_tail_table.inc"

// Below 2^-7.
INLINE Extended80 tanhOfSmall(const Argument& a) {
  const Extended80 x = a.x, t = x * x;
  if (a.key >= keyFrom(0x3ff3)) {
    static constexpr Constant g3 = extended(0xbffd, 0xaaaaaaaaaaaaaaa8);  // -0.3333333333333333
    static constexpr Constant g5 = extended(0x3ffc, 0x888888888883bdf3);  // 0.13333333333332908
    static constexpr Constant g7 = extended(0xbffa, 0xdd0dd0d497125d40);  // -0.053968253845088826
    static constexpr Constant g9 = extended(0x3ff9, 0xb32418b434548180);  // 0.021867798089838575
    const Extended80 u = t * t;
    return x + (((g9 * u + g5) * u) + (g7 * u + g3) * t) * x;
  }
  if (a.key >= keyFrom(0x3fed)) {
    static constexpr Constant g3 = extended(0xbffd, 0xaaaaaaaaaaaa8d33);  // -0.33333333333333315
    static constexpr Constant g5 = extended(0x3ffc, 0x88888820ea0ed956);  // 0.13333332730191114
    return x + (t * (g5 * t + g3)) * x;
  }
  if (a.key >= keyFrom(0x3fb4)) {
    static constexpr Constant g3 = extended(0xbffd, 0xaaaaaaaaa5555555);  // -0.33333333333090803
    return x + ((g3 * x) * x) * x;
  }
  return tinyOdd(x);
}

// 2^-7 <= a < 0.5. With a = ah + al: d = a^2 - ah^2, v = ah^2, w = a^2, y = a^4.
INLINE Extended80 splitTanh(Extended80 a) {
  static constexpr Constant h3 = extended(0xbffd, 0xaaa0000000000000);  // -0.333251953125
  static constexpr Constant h5 = extended(0x3ffc, 0x8880000000000000);  // 0.13330078125
  const Extended80 ah = leadingPart(a, leading11), al = a - ah, d = (ah + a) * al, v = ah * ah, w = d + v;
  const Extended80 v2 = v * v, d2 = (w + v) * d, y = v2 + d2;
  const auto& h = tanhTail;
  const Extended80 ofW = (((((h[12] * y + h[10]) * y + h[8]) * y + h[6]) * y + h[4]) * y + h[2]) * y + h[0];
  const Extended80 ofY = (((((h[13] * y + h[11]) * y + h[9]) * y + h[7]) * y + h[5]) * y + h[3]) * y + h[1];
  const Extended80 t = v2 * h5 + v * h3, u = d * h3 + (d2 * h5 + (y * ofY + ofW * w));
  const Sum lead = fastTwoSum(ah, ah * t);
  return lead.hi + (lead.lo + (ah * u + (al + al * (t + u))));
}

// 0.5 <= a < 32.
INLINE Extended80 tanhByExp(Extended80 a, uint32_t key) {
  const ExpRemainder p = reduceExp(2.0 * a);
  const ExpTail tail = expTail(p);
  const Sum e = risingExp(p, tail.even + tail.odd);
  const Float64 scale = powerOfTwo(p.m);
  const Sum normalised = fastTwoSum(e.hi, e.lo);
  Sum s = fastTwoSum(normalised.hi * scale, 1.0L);
  s.lo += normalised.lo * scale;
  const Extended80 q = 1.0L / s.hi;
  if (key >= 0x40009666) return 1.0L - 2.0 * q;  // from 2.35 up
  const Extended80 qShort = leadingPart(q, leading31), sShort = leadingPart(s.hi, leading31);
  const Extended80 rest = ((1.0L - qShort * sShort) - qShort * (s.hi - sShort)) - qShort * s.lo;
  return (1.0L - 2.0 * qShort) - 2.0 * (rest * q);
}

INLINE Extended80 extTanh(Argument a) {
  if (a.key < keyFrom(0x3ff8)) return tanhOfSmall(a);
  if (a.key < keyFrom(0x3ffe)) return splitTanh(a.magnitude()) * a.sign();
  if (a.key < keyFrom(0x4004)) return tanhByExp(a.magnitude(), a.key) * a.sign();
  if (a.x != a.x) return quieted(a.x);
  return a.key >= keyOfInfinity ? a.sign() : (1.0L - opaque(tinyFactor)) * a.sign();
}

}  // namespace
}  // namespace qorvane
