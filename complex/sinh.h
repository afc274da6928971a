// complexSinh: sinh(x + iy) = sinh x cos y + i cosh x sin y.
//
// Method: the four real functions in extended precision, with one rounding to double precision for
// each part; extended precision has room for all products.
//
// Error: at most 0.503 ulp a part, subnormal parts included.
//
// Special values: as C99's Annex G has them for csinh; subnormal parts underflow.
#pragma once
#include "complex/extended/ext_sin_cos.h"
#include "complex/extended/ext_sinh_cosh.h"
#include "complex/scalar.h"

namespace qorvane {

// A part that is zero, infinite or NaN, or |x| from 2048 up.
Complex64 complexSinhRare(Float64 x, Float64 y);

namespace {

INLINE Complex64 complexSinh(Complex64 z) {
  Complex64 result;
  if (exponentFieldOf(z.re) < 0x40a && !isZero(z.re) && isFinite(z.im) && !isZero(z.im)) [[likely]] {
    const SinhCosh h = extSinhCosh(z.re);
    const SinCos t = extSinCos(z.im);
    result = {static_cast<Float64>(h.sinh * t.cos), static_cast<Float64>(h.cosh * t.sin)};
  } else {
    result = complexSinhRare(z.re, z.im);
  }
  raiseUnderflowOf(result.re);
  raiseUnderflowOf(result.im);
  return result;
}

}  // namespace
}  // namespace qorvane
