// extSin, extCos, extSinCos: sine and cosine in extended precision.
//
// Method: up to 2^-5 polynomials; from there on the reduction modulo pi/2 and, for the remainder
// rh + rl with an rh of 11 bits, polynomials whose leading coefficients are so short that their
// products with powers of rh are exact.
//
// Error, for double-precision x, in units of the last of 64 bits: at most 0.523.
//
// Special values: a zero gives the zero and 1, an infinity NaN and invalid, a NaN the NaN. A
// subnormal x underflows in the sine.
#pragma once
#include "complex/extended/ext_trig_reduction.h"

namespace qorvane {
namespace {

struct SinCos {
  Extended80 sin, cos;
};

// The powers of the remainder r = rh + rl. Those of rh are exact in double precision.
struct TrigPowers {
  Float64 rh, v, v2;           // v = rh^2, v2 = rh^4
  Extended80 rl, d, d2, w, y;  // w = r^2, y = r^4, d = w - v, d2 = y - v2
};
INLINE TrigPowers trigPowers(const TrigRemainder& r) {
  const Float64 v = r.rh * r.rh, v2 = v * v;
  const Extended80 s = r.rh + r.rl, d = (r.rh + s) * r.rl, w = d + v, d2 = (w + v) * d;
  return {r.rh, v, v2, r.rl, d, d2, w, v2 + d2};
}

INLINE Extended80 sinPolynomial(const TrigPowers& p) {
  constexpr Float64 s3h = fromBits(0xbfc5540000000000);                  // -0.1666259765625
  constexpr Float64 s5h = fromBits(0x3f81000000000000);                  // 0.00830078125
  static constexpr Constant s3r = extended(0xbff0, 0xaaaaaaaaaaaaaaab);  // -4.0690104166666664e-05: -1/6 - s3h
  static constexpr Constant s5r = extended(0x3ff0, 0x8888888888888884);  // 3.255208333333333e-05: 1/120 - s5h
  static constexpr Constant s7 = extended(0xbff2, 0xd00d00d00d00cffb);   // -0.0001984126984126984
  static constexpr Constant s9 = extended(0x3fec, 0xb8ef1d2ab6397771);   // 2.755731922398587e-06
  static constexpr Constant s11 = extended(0xbfe5, 0xd7322b3fa9c82df0);  // -2.5052108385431668e-08
  static constexpr Constant s13 = extended(0x3fde, 0xb092309ca8e0b798);  // 1.6059043833549323e-10
  static constexpr Constant s15 = extended(0xbfd6, 0xd73f9df8b7a1cef7);  // -7.647163052289936e-13
  static constexpr Constant s17 = extended(0x3fce, 0xca949fed3a4f8a69);  // 2.8113700990447835e-15
  static constexpr Constant s19 = extended(0xbfc6, 0x967bc63b3fe9053c);  // -8.157726529976581e-18
  const Float64 t = p.v * s3h, lead = p.rh * t;                          // both exact
  const Extended80 tail = p.y * (((s17 * p.y + s13) * p.y + s9) * p.y + s5r) +
                          ((((s19 * p.y + s15) * p.y + s11) * p.y + s7) * p.y + s3r) * p.w;
  const Extended80 u = p.v2 * s5h + (p.d * s3h + (p.d2 * s5h + tail));
  const Extended80 sum = Extended80{p.rh} + lead;
  return sum + (((p.rh - sum) + lead) + (p.rh * u + (p.rl + p.rl * (t + u))));
}
INLINE Extended80 cosPolynomial(const TrigPowers& p) {
  constexpr Float64 c2h = -0.5;
  constexpr Float64 c4h = fromBits(0x3fa5000000000000);                  // 0.041015625
  static constexpr Constant c2r = extended(0x3fb2, 0xabec40714050c9af);  // 8.888203453190554e-24
  static constexpr Constant c4r = extended(0x3ff4, 0xaaaaaaaaaaaaaaa5);  // 0.0006510416666666666: 1/24 - c4h
  static constexpr Constant c6 = extended(0xbff5, 0xb60b60b60b60b5dd);   // -0.001388888888888889
  static constexpr Constant c8 = extended(0x3fef, 0xd00d00d00d006edc);   // 2.480158730158726e-05
  static constexpr Constant c10 = extended(0xbfe9, 0x93f27dbbc47e5d08);  // -2.7557319223964797e-07
  static constexpr Constant c12 = extended(0x3fe2, 0x8f76c77efc0fc2ca);  // 2.087675698100012e-09
  static constexpr Constant c14 = extended(0xbfda, 0xc9cba3a10e36fe20);  // -1.1470744171462834e-11
  static constexpr Constant c16 = extended(0x3fd2, 0xd73d83472c35360a);  // 4.7792943912126055e-14
  static constexpr Constant c18 = extended(0xbfca, 0xb28dfb9ba5869f05);  // -1.5487144594826714e-16
  const Extended80 t = Extended80{p.v2 * c4h} + p.v * c2h;               // both products are exact
  const Extended80 tail = p.y * (((c16 * p.y + c12) * p.y + c8) * p.y + c4r) +
                          ((((c18 * p.y + c14) * p.y + c10) * p.y + c6) * p.y + c2r) * p.w;
  const Extended80 u = p.d * c2h + (p.d2 * c4h + tail);
  const Sum lead = fastTwoSum(1.0L, t);
  return lead.hi + (lead.lo + u);
}

// +-1 by the bit's value.
INLINE Float64 signFrom(uint32_t bit) { return fromBits(0x3ff0000000000000 | static_cast<uint64_t>(bit) << 63); }

// Below 2^-5.
INLINE Extended80 sinOfSmall(const Argument& a) {
  const Extended80 x = a.x, t = x * x;
  if (a.key >= keyFrom(0x3ff4)) {
    static constexpr Constant f3 = extended(0xbffc, 0xaaaaaaaaaaaaaaaa);  // -0.16666666666666666
    static constexpr Constant f5 = extended(0x3ff8, 0x88888888888830e6);  // 0.008333333333333314
    static constexpr Constant f7 = extended(0xbff2, 0xd00d00cf1ce4a850);  // -0.00019841269835938329
    static constexpr Constant f9 = extended(0x3fec, 0xb8ee0e12bdeada13);  // 2.75567028284295e-06
    const Extended80 u = t * t;
    return x + (((f9 * u + f5) * u) + (f7 * u + f3) * t) * x;
  }
  if (a.key >= keyFrom(0x3fec)) {
    static constexpr Constant d3 = extended(0xbffc, 0xaaaaaaaaaaaaa8ca);  // -0.16666666666666666
    static constexpr Constant d5 = extended(0x3ff8, 0x88888874e04e0633);  // 0.008333333261821065
    return x + (t * (d5 * t + d3)) * x;
  }
  if (a.key >= keyFrom(0x3fb4)) {
    static constexpr Constant b = extended(0xbffc, 0xaaaaaaaaaa884444);  // -0.16666666666663613
    return x + ((b * x) * x) * x;
  }
  return tinyOdd(x);
}
INLINE Extended80 cosOfSmall(const Argument& a) {
  const Extended80 x = a.x, t = x * x;
  if (a.key >= keyFrom(0x3ff4)) {
    static constexpr Constant e2 = extended(0xbffd, 0xffffffffffffffff);  // -0.5
    static constexpr Constant e4 = extended(0x3ffa, 0xaaaaaaaaaaa9b9ad);  // 0.041666666666666456
    static constexpr Constant e6 = extended(0xbff5, 0xb60b60b4c13a3733);  // -0.001388888888302424
    static constexpr Constant e8 = extended(0x3fef, 0xd00b8c0f465d9116);  // 2.4800909267773826e-05
    const Extended80 u = t * t;
    return 1.0L + ((e6 * u + e2) * t + (e8 * u + e4) * u);
  }
  if (a.key >= keyFrom(0x3fec)) {
    static constexpr Constant c2 = extended(0xbffd, 0xfffffffffffff96f);  // -0.49999999999999994
    static constexpr Constant c4 = extended(0x3ffa, 0xaaaaaa884444473e);  // 0.041666666166080786
    return (c4 * t + c2) * t + 1.0L;
  }
  if (a.key >= keyFrom(0x3fb4)) {
    static constexpr Constant c = extended(0xbffd, 0xffffffffffaa0000);  // -0.49999999999984723
    return (c * x) * x + 1.0L;
  }
  return x == 0 ? 1.0L : 1.0L - opaque(tinyFactor);
}

// Infinities and NaNs.
INLINE Extended80 trigOfNonFinite(Extended80 x) { return x * 0.0L; }

INLINE Extended80 extSin(Argument a) {
  if (a.key < keyFrom(0x3ffa)) return sinOfSmall(a);
  if (a.key >= keyOfInfinity) return trigOfNonFinite(a.x);
  const TrigRemainder r = reduceTrig(a, leading11);
  const TrigPowers p = trigPowers(r);
  return ((r.halfTurns & 1) != 0 ? cosPolynomial(p) : sinPolynomial(p)) * signFrom((r.halfTurns >> 1 ^ a.negative) & 1);
}
INLINE Extended80 extCos(Argument a) {
  if (a.key < keyFrom(0x3ffa)) return cosOfSmall(a);
  if (a.key >= keyOfInfinity) return trigOfNonFinite(a.x);
  const TrigRemainder r = reduceTrig(a, leading11);
  const TrigPowers p = trigPowers(r);
  return ((r.halfTurns & 1) != 0 ? sinPolynomial(p) : cosPolynomial(p)) * signFrom((r.halfTurns + 1) >> 1 & 1);
}

// Which polynomial is the sine is as good as random, so that a branch would be mispredicted every
// other time: both are made, and each result is the sum of both times +-1 and 0.
INLINE SinCos sinCosOfRemainder(const TrigRemainder& r, bool negative) {
  static constexpr Float64 choice[5][2] = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}, {1, 0}};
  const TrigPowers p = trigPowers(r);
  const Extended80 s = sinPolynomial(p), c = cosPolynomial(p);
  const Float64* const ofSin = choice[(r.halfTurns + 2 * negative) & 3];
  const Float64* const ofCos = choice[(r.halfTurns & 3) + 1];
  return {s * ofSin[0] + c * ofSin[1], s * ofCos[0] + c * ofCos[1]};
}

INLINE SinCos extSinCos(Argument a) {
  if (a.key < keyFrom(0x3ffa)) return {sinOfSmall(a), cosOfSmall(a)};
  if (a.key >= keyOfInfinity) return {trigOfNonFinite(a.x), trigOfNonFinite(a.x)};
  return sinCosOfRemainder(reduceTrig(a, leading10), a.negative);
}

}  // namespace
}  // namespace qorvane
