// complexTanh: tanh(x + iy) = (sinh x cosh x + i sin y cos y) / (sinh^2 x + cos^2 y).
//
// Method: the four real functions in extended precision; the denominator is a sum of squares,
// without cancellation, and overflows nowhere below |x| = 512, from where on the result is +-1 and
// a zero.
//
// Error: at most 0.502 ulp a part, subnormal parts included (docs/accuracy.md has the arguments).
//
// Special values: as C99's Annex G has them for ctanh; subnormal parts underflow, and so does a
// zero that isn't exact.
#pragma once
#include "complex/ordinary.h"

namespace qorvane {

// Any z.
Complex64 complexTanhAny(Complex64 z);

namespace {

INLINE Complex64 complexTanh(Complex64 z) {
  if (!isOrdinary(z)) [[unlikely]]
    return complexTanhAny(z);
  const OrdinaryParts p = ordinaryParts(z);
  const Extended80 cos = p.cos, d = p.sinh * p.sinh + cos * cos;
  return {static_cast<Float64>((p.sinh * p.cosh) / d), static_cast<Float64>((cos * p.sin) / d)};
}

}  // namespace
}  // namespace qorvane
