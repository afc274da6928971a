// complexExp in extended precision, all levels: one element.
//
// Method: e^x, cos y and sin y in extended precision, with one rounding to double precision for
// each part; extended precision has room for all products.
//
// Error: at most 0.501 ulp a part, subnormal parts included.
//
// Special values: as C99's Annex G has them for cexp; subnormal parts underflow.
#include "complex/exp.h"

#include "complex/extended/ext_exp.h"
#include "complex/extended/ext_sin_cos.h"
#include "complex/scalar.h"

namespace qorvane {
namespace {

INLINE Complex64 make(Extended80 re, Extended80 im) { return {static_cast<Float64>(re), static_cast<Float64>(im)}; }

// A part that is zero, infinite or NaN, or |x| from 2048 up.
[[gnu::noinline, gnu::cold]] Complex64 complexExpRare(Float64 x, Float64 y) {
  constexpr Extended80 largestPower = extendedNumber(0x7ffe, 0x8000000000000000);   // 2^16383
  constexpr Extended80 smallestPower = extendedNumber(0x0001, 0x8000000000000000);  // 2^-16382
  const bool tinyY = exponentFieldOf(y) == 0;
  if (isZero(y)) return {static_cast<Float64>(extExp(x)), y};
  if (!isFinite(y)) {
    if (isFinite(x)) {
      const Extended80 nan = extSin(y);
      return make(nan, nan);
    }
    if (isNaN(x)) return {x * x, (x * x) * y};
    if (!isNegative(x)) return make(x, extSin(y));
    return {0.0, isInfinite(y) ? zeroWithSign(isNegative(y)) : 0.0};
  }
  if (isNaN(x)) return {x * x, x * x};
  if (isZero(x) || !isFinite(x)) {
    const Extended80 e = extExp(x);
    return make(e * extCos(y), tinyY && !isZero(x) ? e * y : e * extSin(y));
  }
  const Extended80 half = isNegative(x) ? smallestPower : largestPower, e = opaque(half) * half;
  const SinCos t = extSinCos(y);
  return make(t.cos * e, tinyY ? e * y : t.sin * e);
}

}  // namespace

Complex64 complexExpExtended(Complex64 z) {
  Complex64 result;
  if (exponentFieldOf(z.re) < 0x40a && !isZero(z.re) && isFinite(z.im) && !isZero(z.im)) [[likely]] {
    const Extended80 e = extExp(z.re);
    const SinCos t = extSinCos(z.im);
    result = make(e * t.cos, e * t.sin);
  } else {
    result = complexExpRare(z.re, z.im);
  }
  raiseUnderflowOf(result.re);
  raiseUnderflowOf(result.im);
  return result;
}

}  // namespace qorvane
