// complexCosh: cosh(x + iy) = cosh x cos y + i sinh x sin y.
//
// Method: the four real functions in extended precision, with one rounding to double precision for
// each part; extended precision has room for all products.
//
// Error: at most 0.501 ulp a part, subnormal parts included (docs/accuracy.md has the arguments).
//
// Special values: as C99's Annex G has them for ccosh; a subnormal imaginary part underflows.
#pragma once
#include "complex/ordinary.h"

namespace qorvane {

// Any z.
Complex64 complexCoshAny(Complex64 z);

namespace {

INLINE Complex64 complexCosh(Complex64 z) {
  if (!isOrdinary(z)) [[unlikely]]
    return complexCoshAny(z);
  const OrdinaryParts p = ordinaryParts(z);
  return {static_cast<Float64>(p.cosh * p.cos), static_cast<Float64>(p.sinh * p.sin)};
}

}  // namespace
}  // namespace qorvane
