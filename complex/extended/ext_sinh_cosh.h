// extSinh, extCosh, extSinhCosh: the hyperbolic sine and cosine in extended precision.
//
// Method: up to 2^-5 polynomials; up to 0.5 Taylor series whose leading terms are formed exactly on
// the leading 15 bits of x; from there on (e^a -+ e^-a) / 2 with both exponentials from one
// reduction, as sums of two numbers; from 26.17 up e^a / 2.
//
// Error, for double-precision x, in units of the last of 64 bits: sinh at most 0.533; cosh at most
// 1.0 below 0.5, 0.503 from there on.
//
// Special values: NaN gives the NaN; a zero gives the zero and 1; an infinity +-Inf and +Inf; from
// 11357.2 up +-Inf and overflow. A subnormal x underflows in sinh.
#pragma once
#include "complex/extended/ext_exp_steps.h"

namespace qorvane {
namespace {

struct SinhCosh {
  Extended80 sinh, cosh;
};

constexpr Constant sinh3 = extended(0x3ffc, 0xaaaaaaaaad555555);   // 0.166666666667273, of the shortest polynomial
constexpr Constant sinh3b = extended(0x3ffc, 0xaaaaaaaaaaaa7333);  // 0.16666666666666646, of two terms
constexpr Constant sinh5b = extended(0x3ff8, 0x888888ea0ea1072e);  // 0.008333333688122892
constexpr Constant sinh3c = extended(0x3ffc, 0xaaaaaaaaaaaaaaab);  // 0.16666666666666666, of four terms
constexpr Constant sinh5c = extended(0x3ff8, 0x888888888888dc98);  // 0.008333333333333352
constexpr Constant sinh7c = extended(0x3ff2, 0xd00d00cf21a11946);  // 0.0001984126983604349
constexpr Constant sinh9c = extended(0x3fec, 0xb8f02a2a23c7c93b);  // 2.7557930854092014e-06
constexpr Constant cosh2 = extended(0x3ffe, 0x8000000000d55555);   // 0.500000000000758, of the shortest polynomial
constexpr Constant cosh2b = extended(0x3ffd, 0xfffffffffffff3de);  // 0.4999999999999999, of two terms
constexpr Constant cosh4b = extended(0x3ffa, 0xaaaaaad55555596e);  // 0.041666667287548385
constexpr Constant cosh2c = extended(0x3ffd, 0xfffffffffffffffb);  // 0.5, of four terms
constexpr Constant cosh4c = extended(0x3ffa, 0xaaaaaaaaaaad1b8e);  // 0.041666666666667206
constexpr Constant cosh6c = extended(0x3ff5, 0xb60b60b3e37461b8);  // 0.0013888888879084764
constexpr Constant cosh8c = extended(0x3fef, 0xd00ecf278bd8e035);  // 2.4802428296384548e-05

// 2^-5 <= a < 0.5. x = xh + xl with 14 bits in xh, d = x^2 - xh^2.
struct SplitArgument {
  Extended80 x, t, xh, xl, xh2, d;
};
INLINE SplitArgument splitArgument(Extended80 x) {
  const Extended80 xh = toMultiple(x, shifterTo15), xl = x - xh;
  return {x, x * x, xh, xl, xh * xh, xl * (x + xh)};
}
INLINE Extended80 splitSinh(const SplitArgument& a) {
  static constexpr Constant w3h = extended(0x3ffc, 0xaaaa000000000000);  // 0.16666412353515625
  static constexpr Constant w3r = extended(0x3fec, 0xaaaaaaaaaaaaaa64);  // 2.5431315104166665e-06: 1/6 - w3h
  static constexpr Constant w5 = extended(0x3ff8, 0x8888888888888889);   // 0.008333333333333333
  static constexpr Constant w7 = extended(0x3ff2, 0xd00d00d00d00cc9e);   // 0.0001984126984126984
  static constexpr Constant w9 = extended(0x3fec, 0xb8ef1d2ab642ae79);   // 2.755731922398712e-06
  static constexpr Constant w11 = extended(0x3fe5, 0xd7322b3f8c663d3e);  // 2.5052108384635252e-08
  static constexpr Constant w13 = extended(0x3fde, 0xb09230db5a5128ac);  // 1.6059044173409418e-10
  static constexpr Constant w15 = extended(0x3fd6, 0xd73efe3ca397915d);  // 7.647076459945971e-13
  static constexpr Constant w17 = extended(0x3fce, 0xcb834b6da4a406b9);  // 2.8243084217785455e-15
  const Extended80 t = a.t;
  const Extended80 s = t * (((((((w17 * t + w15) * t + w13) * t + w11) * t + w9) * t + w7) * t + w5) * t + w3r);
  const Extended80 m = w3h * a.xh2, cubic = m * a.xh, h = a.xh + cubic;
  const Extended80 w = ((w3h * a.d + s) * a.x + m * a.xl) + a.xl;
  return h + (((w + cubic) + a.xh) - h);
}
INLINE Extended80 splitCosh(const SplitArgument& a) {
  static constexpr Constant f4h = extended(0x3ffa, 0xaaaa000000000000);  // 0.04166603088378906
  static constexpr Constant f4r = extended(0x3fea, 0xaaaaaaaaaaab3fae);  // 6.357828776041686e-07: 1/24 - f4h
  static constexpr Constant f6 = extended(0x3ff5, 0xb60b60b60b60b42d);   // 0.001388888888888889
  static constexpr Constant f8 = extended(0x3fef, 0xd00d00d00d07750d);   // 2.4801587301588023e-05
  static constexpr Constant f10 = extended(0x3fe9, 0x93f27dbbb69fd6a6);  // 2.7557319223363314e-07
  static constexpr Constant f12 = extended(0x3fe2, 0x8f76c7a664af780d);  // 2.0876757322815992e-09
  static constexpr Constant f14 = extended(0x3fda, 0xc9cb26c901c2c2ba);  // 1.1470635886606029e-11
  static constexpr Constant f16 = extended(0x3fd2, 0xd8269151b0870ad8);  // 4.799508677011206e-14
  const Extended80 t = a.t;
  const Extended80 c = (((((f16 * t + f14) * t + f12) * t + f10) * t + f8) * t + f6) * t + f4r;
  const Extended80 p = f4h * a.xh2, r4 = a.xh2 * p, r2 = 0.5 * a.xh2, r = toMultiple(r4 + r2, shifterTo15);
  return (p + 0.5) * a.d + ((t * (c * t + a.d * f4h) + ((r2 - r) + r4)) + (r + 1.0L));
}

// 0.5 <= a, a below 26.17: both exponentials, with the halves of 2^m and 2^-m.
struct TwoExponentials {
  Sum rising, falling;
};
INLINE TwoExponentials twoExponentials(Extended80 a) {
  const ExpRemainder p = reduceExp(a);
  const ExpTail tail = expTail(p);
  const Sum rising = risingExp(p, tail.even + tail.odd), falling = fallingExp(p, tail.even - tail.odd);
  const Float64 up = powerOfTwo(p.m - 1), down = powerOfTwo(-p.m - 1);
  return {{up * rising.hi, up * rising.lo}, {down * falling.hi, down * falling.lo}};
}
INLINE Extended80 difference(const TwoExponentials& e) {
  const Extended80 d = e.rising.hi - e.falling.hi;
  return d + (((e.rising.hi - d) - e.falling.hi) + (e.rising.lo - e.falling.lo));
}
INLINE Extended80 sum(const TwoExponentials& e) {
  const Extended80 d = e.falling.hi + e.rising.hi;
  return d + (((e.rising.hi - d) + e.falling.hi) + (e.falling.lo + e.rising.lo));
}

// From 26.17 up: e^a / 2, +Inf and NaN included.
constexpr uint32_t keyOfOneExponential = 0x4003d154;
INLINE Extended80 halfExp(const Argument& a) {
  constexpr Extended80 limit =
      extendedNumber(0x400c, 0xb174ddc031aec0e9);  // 11357.216553474704: the largest a with a finite result
  if (a.key >= 0x4008b100) [[unlikely]] {          // from 708 up
    if (a.key >= keyOfInfinity) return a.x != a.x ? quieted(a.x) : a.magnitude();
    if (a.magnitude() > limit) return overflowed();
  }
  const ExpRemainder p = reduceExp(a.magnitude());
  const ExpTail tail = expTail(p);
  const Sum e = risingExp(p, tail.even + tail.odd);
  const Extended80 whole = e.hi + e.lo;
  return p.m <= 1000 ? whole * powerOfTwo(p.m - 1) : scaled(whole, p.m - 1);
}

INLINE Extended80 extSinh(Argument a) {
  const Extended80 x = a.x, t = x * x;
  if (a.key >= keyOfOneExponential) return a.sign() * halfExp(a);
  if (a.key >= keyFrom(0x3ffe)) return difference(twoExponentials(a.magnitude())) * a.sign();
  if (a.key >= keyFrom(0x3ffa)) return splitSinh(splitArgument(x));
  if (a.key >= keyFrom(0x3ff5)) {
    const Extended80 u = t * t;
    return x + (((sinh9c * u + sinh5c) * u) + (sinh7c * u + sinh3c) * t) * x;
  }
  if (a.key >= keyFrom(0x3fee)) return x + (t * (sinh5b * t + sinh3b)) * x;
  if (a.key >= keyFrom(0x3fb4)) return x + ((sinh3 * x) * x) * x;
  return tinyOdd(x);
}

INLINE Extended80 extCosh(Argument a) {
  const Extended80 x = a.x, t = x * x;
  if (a.key >= keyOfOneExponential) return halfExp(a);
  if (a.key >= keyFrom(0x3ffe)) return sum(twoExponentials(a.magnitude()));
  if (a.key >= keyFrom(0x3ffa)) return splitCosh(splitArgument(x));
  if (a.key >= keyFrom(0x3ff4)) {
    const Extended80 u = t * t;
    return (1.0L + (cosh8c * u + cosh4c) * u) + (cosh6c * u + cosh2c) * t;
  }
  if (a.key >= keyFrom(0x3fed)) return t * (cosh4b * t + cosh2b) + 1.0L;
  if (a.key >= keyFrom(0x3fb4)) return x * (cosh2 * x) + 1.0L;
  return a.magnitude() + 1.0L;
}

// The ranges are those of the cosine for both.
INLINE SinhCosh extSinhCosh(Argument a) {
  const Extended80 x = a.x, t = x * x;
  if (a.key >= keyOfOneExponential) {
    const Extended80 half = halfExp(a);
    return {a.sign() * half, half};
  }
  if (a.key >= keyFrom(0x3ffe)) {
    const TwoExponentials e = twoExponentials(a.magnitude());
    return {difference(e) * a.sign(), sum(e)};
  }
  if (a.key >= keyFrom(0x3ffa)) {
    const SplitArgument s = splitArgument(x);
    return {splitSinh(s), splitCosh(s)};
  }
  if (a.key >= keyFrom(0x3ff4))
    return {x + ((((sinh9c * t + sinh7c) * t + sinh5c) * t + sinh3c) * t) * x,
            (((cosh8c * t + cosh6c) * t + cosh4c) * t + cosh2c) * t + 1.0L};
  if (a.key >= keyFrom(0x3fed)) return {x + (t * (sinh5b * t + sinh3b)) * x, t * (cosh4b * t + cosh2b) + 1.0L};
  if (a.key >= keyFrom(0x3fb4)) return {x + (sinh3 * t) * x, x * (cosh2 * x) + 1.0L};
  return {tinyOdd(x), a.magnitude() + 1.0L};
}

}  // namespace
}  // namespace qorvane
