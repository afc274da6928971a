// complexAcos and complexAcosh, all levels: one element.
//
// Method: complex/inverse_core.h on |x| + i|y|, each part rounded once to double precision; for x < 0
// the angle is pi less that.
//
// Error: at most 0.51 ulp a part, subnormal parts included.
//
// Special values: as C99's Annex G has them for cacos and cacosh; on the axes the functions of one
// real number. Subnormal parts underflow.
#include "complex/extended/ext_asinh.h"
#include "complex/inverse.h"
#include "complex/inverse_core.h"

namespace qorvane {
namespace {

constexpr Float64 infinity = __builtin_inf();

// The angle, from 0 to pi, and the logarithm, from 0 up: what acos and acosh are made of.
struct AngleAndLog {
  Float64 angle, log;
};

template <class Kernels>
INLINE Float64 angleOfHull(const Hull& h, bool isNegative) {
  const Extended80 angle = acosPart<Kernels>(h);
  return static_cast<Float64>(isNegative ? -angle + extendedPi : angle);
}
template <class Kernels>
INLINE AngleAndLog ofFinite(Complex64 z) {
  const Hull h = hullOf<Kernels>(__builtin_fabs(z.re), __builtin_fabs(z.im));
  const Float64 angle = angleOfHull<Kernels>(h, isNegative(z.re));
  return {angle, static_cast<Float64>(acoshPart<Kernels>(h))};
}

// On the axes, at infinity and next to it; z has no NaN.
INLINE AngleAndLog ofRare(Float64 x, Float64 y) {
  const bool negativeX = isNegative(x);
  if (isInfinite(x)) {
    if (isInfinite(y)) return {inexactly(negativeX ? threeQuartersPi : quarterPi), infinity};
    return {negativeX ? inexactly(doublePi) : 0.0, infinity};
  }
  if (isInfinite(y)) return {inexactly(halfPi), infinity};
  if (isZero(x)) return {inexactly(halfPi), __builtin_fabs(static_cast<Float64>(extAsinh(y)))};
  if (isZero(y)) {
    const Float64 magnitude = __builtin_fabs(x);
    if (magnitude < 1) return {static_cast<Float64>(extAcos(x)), 0.0};
    return {negativeX ? inexactly(doublePi) : 0.0, static_cast<Float64>(extAcosh(magnitude))};
  }
  return ofFinite<AnyKernels>({x, y});
}

INLINE Complex64 withUnderflow(Complex64 result) {
  raiseUnderflowOf(result.re);
  raiseUnderflowOf(result.im);
  return result;
}

[[gnu::noinline, gnu::cold]] Complex64 complexAcosRare(Float64 x, Float64 y) {
  if (isNaN(x) || isNaN(y)) {
    const Float64 nan = x + y;
    if (isZero(x)) return {inexactly(halfPi), nan};
    if (isInfinite(x) || isInfinite(y)) return {nan, withSignOf(-infinity, y)};
    return {nan, nan};
  }
  const AngleAndLog p = ofRare(x, y);
  return withUnderflow({p.angle, withSignOf(-p.log, y)});
}

[[gnu::noinline, gnu::cold]] Complex64 complexAcoshRare(Float64 x, Float64 y) {
  if (isNaN(x) || isNaN(y)) {
    const Float64 nan = x + y;
    return {isInfinite(x) || isInfinite(y) ? infinity : nan, nan};
  }
  const AngleAndLog p = ofRare(x, y);
  return withUnderflow({p.log, withSignOf(p.angle, y)});
}

}  // namespace

Float64 acosAngle(Float64 a, Float64 b) {
  return angleOfHull<OrdinaryKernels>(hullOf<OrdinaryKernels>(__builtin_fabs(a), __builtin_fabs(b)), isNegative(a));
}

Complex64 complexAcos(Complex64 z) {
  if (!isOrdinaryPoint(z)) [[unlikely]]
    return complexAcosRare(z.re, z.im);
  const AngleAndLog p = ofFinite<OrdinaryKernels>(z);
  return {p.angle, withSignOf(-p.log, z.im)};
}

Complex64 complexAcosh(Complex64 z) {
  if (!isOrdinaryPoint(z)) [[unlikely]]
    return complexAcoshRare(z.re, z.im);
  const AngleAndLog p = ofFinite<OrdinaryKernels>(z);
  return {p.log, withSignOf(p.angle, z.im)};
}

}  // namespace qorvane
