// complexLn, all levels: one element.
//
// Method: ln |z| = ln(x^2 + y^2)/2 and the angle, in extended precision, with one rounding to double
// precision for each part; extended precision has room for the squares of all numbers. Next to the
// unit circle x^2 + y^2 - 1 is exact to its last bits.
//
// Error: at most 0.53 ulp the real part, 0.51 ulp the imaginary part, subnormal parts included.
//
// Special values: as C99's Annex G has them for clog; subnormal parts underflow.
#include "complex/ln.h"

#include "complex/ln_steps.h"

namespace qorvane {
namespace {

[[gnu::noinline, gnu::cold]] Complex64 complexLnRare(Float64 x, Float64 y) {
  if (isNaN(y)) return {isInfinite(x) ? x * x : y * y, y * y};
  if (isNaN(x)) return {isInfinite(y) ? y * y : x * y, x * x};
  const Float64 angle = static_cast<Float64>(extAtan2(y, x));
  if (isInfinite(x) || isInfinite(y)) return {__builtin_inf(), angle};
  return {static_cast<Float64>(logOfAnyModulus({x, y})), angle};
}

}  // namespace

Complex64 complexLn(Complex64 z) {
  Complex64 result;
  if (hasOrdinaryModulus(z)) [[likely]] {
    result.re = static_cast<Float64>(logOfOrdinaryModulus(z));
    result.im = withSignOf(static_cast<Float64>(angleOfFinite(z.im, z.re)), z.im);
  } else {
    result = complexLnRare(z.re, z.im);
  }
  raiseUnderflowOf(result.re);
  raiseUnderflowOf(result.im);
  return result;
}

}  // namespace qorvane
