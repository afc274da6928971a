// complexAsinh, all levels: one element; complexAsin is the same turned by a quarter.
//
// Method: complex/inverse_core.h on |y| + i|x|, each part rounded once to double precision.
//
// Error: at most 0.51 ulp a part, subnormal parts included.
//
// Special values: as C99's Annex G has them for casinh; on the axes the functions of one real number.
// Subnormal parts underflow.
#include "complex/extended/ext_asinh.h"
#include "complex/inverse.h"
#include "complex/inverse_core.h"

namespace qorvane {
namespace {

// For both parts positive.
template <class Kernels>
INLINE Complex64 asinhOfMagnitudes(Complex64 z) {
  const Hull h = hullOf<Kernels>(z.im, z.re);
  const Float64 im = static_cast<Float64>(asinPart<Kernels>(h));
  return {static_cast<Float64>(acoshPart<Kernels>(h)), im};
}

[[gnu::noinline, gnu::cold]] Complex64 complexAsinhRare(Float64 x, Float64 y) {
  constexpr Float64 infinity = __builtin_inf();
  if (isZero(y)) return {static_cast<Float64>(extAsinh(x)), y};
  if (isNaN(x) || isNaN(y)) {
    const Float64 ofX = x * x, ofY = y * y;
    if (isInfinite(x)) return {withSignOf(ofX, x), ofY};
    return {isNaN(y) || isInfinite(y) ? ofY : ofX, isNaN(x) ? ofX : ofY};
  }
  if (isInfinite(x)) return {x, withSignOf(isInfinite(y) ? inexactly(quarterPi) : 0.0, y)};
  if (isInfinite(y)) return {withSignOf(infinity, x), withSignOf(inexactly(halfPi), y)};
  if (isZero(x)) {
    const Float64 magnitude = __builtin_fabs(y);
    if (magnitude < 1) return {x, static_cast<Float64>(extAsin(y))};
    return {withSignOf(static_cast<Float64>(extAcosh(magnitude)), x), withSignOf(inexactly(halfPi), y)};
  }
  const Complex64 result = asinhOfMagnitudes<AnyKernels>({__builtin_fabs(x), __builtin_fabs(y)});
  return {withSignOf(result.re, x), withSignOf(result.im, y)};
}

}  // namespace

Float64 inverseLog(Float64 a, Float64 b) {
  return static_cast<Float64>(
      acoshPart<OrdinaryKernels>(hullOf<OrdinaryKernels>(__builtin_fabs(a), __builtin_fabs(b))));
}
Float64 asinAngle(Float64 a, Float64 b) {
  return static_cast<Float64>(asinPart<OrdinaryKernels>(hullOf<OrdinaryKernels>(__builtin_fabs(a), __builtin_fabs(b))));
}

Complex64 complexAsinh(Complex64 z) {
  Complex64 result;
  if (isOrdinaryPoint(z)) [[likely]] {
    result = asinhOfMagnitudes<OrdinaryKernels>({__builtin_fabs(z.re), __builtin_fabs(z.im)});
    result = {withSignOf(result.re, z.re), withSignOf(result.im, z.im)};
  } else {
    result = complexAsinhRare(z.re, z.im);
  }
  raiseUnderflowOf(result.re);
  raiseUnderflowOf(result.im);
  return result;
}

}  // namespace qorvane
