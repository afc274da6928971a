// The heart of the inverse sine, cosine and their hyperbolic companions: for a point A + iB of the
// first quadrant, r and s its distances from -1 and 1, alpha = (r + s)/2 and beta = A/alpha,
//
//   asin(A + iB) = asin beta + i acosh alpha,  acos(A + iB) = acos beta - i acosh alpha.
//
// Method: after Hull, Fairgrieve and Tang: where beta is near 1 or alpha near 1, the angle comes from
// an arctangent, the logarithm from ln(1 + x), with alpha - A and alpha - 1 formed without
// cancellation. Extended precision has room for the squares of all numbers: nothing is scaled.
#pragma once
#include "complex/extended/ext_asin.h"
#include "complex/extended/ext_atan2.h"
#include "complex/extended/ext_log1p.h"
#include "complex/scalar.h"

namespace qorvane {
namespace {

// The kernels for numbers whose squares' quotients are all within the range of double precision, and
// for any.
struct OrdinaryKernels {
  INLINE static Extended80 root(Extended80 x) { return rootOfOrdinary(x); }
  INLINE static Extended80 log(Extended80 x) { return logOfOrdinary(roundedArgument(x)); }
  INLINE static Extended80 log1p(Extended80 x) { return log1pOfOrdinary(roundedArgument(x)); }
  INLINE static Argument argument(Extended80 x) { return roundedArgument(x); }
};
struct AnyKernels {
  INLINE static Extended80 root(Extended80 x) { return extSqrt(x); }
  INLINE static Extended80 log(Extended80 x) { return extLog(x); }
  INLINE static Extended80 log1p(Extended80 x) { return extLog1p(x); }
  INLINE static Argument argument(Extended80 x) { return Argument(x); }
};

// Both parts are from 2^-240 to 2^240 in magnitude.
INLINE bool isOrdinaryPoint(Complex64 z) {
  constexpr uint32_t from = 0x3ff - 240, count = 480;
  const bool re = exponentFieldOf(z.re) - from < count, im = exponentFieldOf(z.im) - from < count;
  return re & im;
}

// The angle of the point x + iy of the first quadrant.
INLINE Extended80 angleInQuadrant(Extended80 y, Extended80 x) {
  const bool exchanged = x <= y;
  return angleOf(exchanged ? x : y, exchanged ? y : x, exchanged, false);
}

// What the parts are made of. Sums with A and B are made anew where they are wanted: the unit has eight
// registers, and moving a number of 80 bits out of them and back takes twenty times as long as an
// operation.
struct Hull {
  Float64 a, b;
  Extended80 r, s, alpha;

  INLINE Extended80 am() const { return Extended80{a} - 1.0; }
  INLINE Extended80 ap() const { return 1.0 + Extended80{a}; }
  INLINE Extended80 b2() const { return Extended80{b} * b; }
  INLINE Extended80 d() const {
    const Extended80 left = am();
    return s == left ? Extended80{b} : s - left;
  }
};
template <class Kernels>
INLINE Hull hullOf(Float64 a, Float64 b) {
  Hull h{a, b, 0, 0, 0};
  h.r = Kernels::root(h.ap() * h.ap() + h.b2());
  h.s = Kernels::root(h.am() * h.am() + h.b2());
  h.alpha = 0.5 * (h.r + h.s);
  h.a = opaque(a);
  h.b = opaque(b);
  return h;
}

// sqrt(alpha^2 - A^2), where A > T alpha.
template <class Kernels>
INLINE Extended80 oppositeSide(const Hull& h) {
  const Extended80 sum = h.a + h.alpha;
  if (h.a <= 1) return Kernels::root(0.5 * sum * (h.b2() / (h.r + h.ap()) + h.d()));
  return Kernels::root(0.5 * (sum / (h.am() + h.s) + sum / (h.ap() + h.r))) * h.b;
}

template <class Kernels>
INLINE Extended80 asinPart(const Hull& h) {
  static constexpr Constant crossover = extended(0x3ffe, 0xe666666666666666);  // 0.9
  const Extended80 alpha = h.alpha;
  if (h.a <= alpha * crossover) return extAsin(Kernels::argument(h.a / alpha));
  return angleInQuadrant(h.a, oppositeSide<Kernels>(h));
}
template <class Kernels>
INLINE Extended80 acosPart(const Hull& h) {
  static constexpr Constant crossover = extended(0x3ffe, 0xa4467381d7dbf488);  // 0.6417
  const Extended80 alpha = h.alpha;
  if (h.a <= alpha * crossover) return extAcos(Kernels::argument(h.a / alpha));
  return angleInQuadrant(oppositeSide<Kernels>(h), h.a);
}
template <class Kernels>
INLINE Extended80 acoshPart(const Hull& h) {
  const Extended80 alpha = h.alpha;
  if (alpha <= 1.5) {
    const Extended80 p = h.b2() / (h.r + h.ap()), excess = 0.5 * ((h.a < 1 ? h.b2() / h.d() : h.s + h.am()) + p);
    return Kernels::log1p(Kernels::root((1.0 + alpha) * excess) + excess);
  }
  return Kernels::log(alpha + Kernels::root(alpha * alpha - 1.0));
}

constexpr Constant extendedPi = extended(0x4000, 0xc90fdaa22168c235);  // 3.14159265358979323851

constexpr Float64 quarterPi = fromBits(0x3fe921fb54442d18);        // 0.78539816339744828
constexpr Float64 halfPi = fromBits(0x3ff921fb54442d18);           // 1.5707963267948966
constexpr Float64 threeQuartersPi = fromBits(0x4002d97c7f3321d2);  // 2.3561944901923448
constexpr Float64 doublePi = fromBits(0x400921fb54442d18);         // 3.1415926535897931

INLINE Float64 inexactly(Float64 constant) {
  discard(opaque(constant) + smallestNormal);
  return constant;
}

}  // namespace
}  // namespace qorvane
