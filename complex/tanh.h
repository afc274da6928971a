// complexTanh: tanh(x + iy) = (sinh x cosh x + i sin y cos y) / (sinh^2 x + cos^2 y).
//
// Method: the four real functions in extended precision; the denominator is a sum of squares, without
// cancellation, and overflows nowhere below |x| = 512, from where on the result is +-1 and a zero.
//
// Error: at most 0.503 ulp a part, subnormal parts included.
//
// Special values: as C99's Annex G has them for ctanh; subnormal parts underflow, and so does a zero
// that isn't exact.
#pragma once
#include "complex/extended/ext_sin_cos.h"
#include "complex/extended/ext_sinh_cosh.h"
#include "complex/extended/ext_tan.h"
#include "complex/extended/ext_tanh.h"
#include "complex/scalar.h"

namespace qorvane {

// A part that is zero, infinite or NaN, or |x| from 512 up.
Complex64 complexTanhRare(Float64 x, Float64 y);

namespace {

INLINE Complex64 complexTanh(Complex64 z) {
  Complex64 result;
  if (exponentFieldOf(z.re) < 0x408 && !isZero(z.re) && isFinite(z.im) && !isZero(z.im)) [[likely]] {
    const SinhCosh h = extSinhCosh(z.re);
    const SinCos t = extSinCos(z.im);
    const Extended80 d = h.sinh * h.sinh + t.cos * t.cos;
    result = {static_cast<Float64>((h.sinh * h.cosh) / d), static_cast<Float64>((t.cos * t.sin) / d)};
  } else {
    result = complexTanhRare(z.re, z.im);
  }
  raiseUnderflowOf(result.re);
  raiseUnderflowOf(result.im);
  return result;
}

}  // namespace
}  // namespace qorvane
