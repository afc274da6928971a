// complexAtanh, all levels: one element; complexAtan is the same turned by a quarter.
//
// Method: with X = x^2, Y = y^2 and W = 1 - X - Y, the imaginary part is half the angle of W + 2iy,
// next to the unit circle half the sum of the angles at which z sees -1 and 1. The real part is a
// quarter of the logarithm of ((1 + x)^2 + Y) / ((1 - x)^2 + Y), next to the imaginary axis and far
// away half the inverse hyperbolic tangent of 2x / (1 + X + Y). So the real parts for x and -x may
// differ in the last bit.
//
// Error: at most 0.55 ulp a part, subnormal parts included.
//
// Special values: as C99's Annex G has them for catanh; on the axes the functions of one real number.
// Subnormal parts underflow.
#include "complex/extended/ext_atanh.h"
#include "complex/inverse.h"
#include "complex/inverse_core.h"

namespace qorvane {
namespace {

constexpr Float64 band = extended(0x3ff9, 0xf5c28f5c28f5c000).hi;  // 0.03

// The angle of x + iy for y > 0, from 0 to pi.
INLINE Extended80 angleAbove(Extended80 y, Extended80 x) {
  const Extended80 ax = __builtin_fabsl(x);
  const bool exchanged = ax <= y;
  return angleOf(exchanged ? ax : y, exchanged ? y : ax, exchanged, x < 0);
}

template <class Kernels>
INLINE Float64 realPart(Extended80 x, Extended80 y2) {
  const Extended80 p = (1.0 + x) * (1.0 + x) + y2, q = (1.0 - x) * (1.0 - x) + y2;
  if (__builtin_fabsl(p - q) > band * q) return static_cast<Float64>(0.25 * Kernels::log(p / q));
  return static_cast<Float64>(0.5 * extAtanh(Kernels::argument((2.0 * x) / ((1.0 + x * x) + y2))));
}

// y > 0
INLINE Float64 imaginaryPart(Extended80 x, Extended80 y, Extended80 y2) {
  const Extended80 w = (1.0 - x * x) - y2;
  if (__builtin_fabsl(w) < band) return static_cast<Float64>(0.5 * (angleAbove(y, 1.0 + x) + angleAbove(y, 1.0 - x)));
  return static_cast<Float64>(0.5 * angleAbove(2.0 * y, w));
}

[[gnu::noinline, gnu::cold]] Complex64 complexAtanhRare(Float64 x, Float64 y) {
  if (isZero(x)) return {x, static_cast<Float64>(extAtan(y))};
  if (isNaN(x) || isNaN(y)) {
    const Float64 nan = x + y;
    if (isInfinite(x)) return {zeroWithSign(isNegative(x)), nan};
    if (isInfinite(y)) return {zeroWithSign(isNegative(x)), withSignOf(inexactly(halfPi), y)};
    return {nan, nan};
  }
  if (isInfinite(x) || isInfinite(y)) return {zeroWithSign(isNegative(x)), withSignOf(inexactly(halfPi), y)};
  if (isZero(y)) {
    if (__builtin_fabs(x) <= 1) return {static_cast<Float64>(extAtanh(x)), y};
    return {realPart<AnyKernels>(x, 0.0L), withSignOf(inexactly(halfPi), y)};
  }
  const Extended80 magnitude = __builtin_fabs(y), y2 = magnitude * magnitude;
  return {realPart<AnyKernels>(x, y2), withSignOf(imaginaryPart(x, magnitude, y2), y)};
}

}  // namespace

Float64 atanhReal(Float64 x, Float64 y) {
  const Extended80 y2 = Extended80{y} * y;
  return realPart<OrdinaryKernels>(x, y2);
}
Float64 atanhImaginary(Float64 x, Float64 y) {
  const Extended80 magnitude = __builtin_fabs(y), y2 = magnitude * magnitude;
  return imaginaryPart(x, magnitude, y2);
}

Complex64 complexAtanh(Complex64 z) {
  Complex64 result;
  if (isOrdinaryPoint(z)) [[likely]] {
    const Extended80 y = __builtin_fabs(z.im), y2 = y * y;
    const Float64 im = imaginaryPart(z.re, y, y2);
    result = {realPart<OrdinaryKernels>(z.re, y2), withSignOf(im, z.im)};
  } else {
    result = complexAtanhRare(z.re, z.im);
  }
  raiseUnderflowOf(result.re);
  raiseUnderflowOf(result.im);
  return result;
}

}  // namespace qorvane
