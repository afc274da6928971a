// cosh z: the elements that complex/cosh.h leaves out, by the kernels of all ranges; the error and
// the special values stand there.
#include "complex/cosh.h"

namespace qorvane {
namespace {

INLINE Complex64 make(Extended80 re, Extended80 im) { return {static_cast<Float64>(re), static_cast<Float64>(im)}; }

// A part that is zero, infinite or NaN, or |x| from 2048 up.
INLINE Complex64 ofRare(Float64 x, Float64 y) {
  const bool tinyY = exponentFieldOf(y) == 0;
  if (isZero(y)) return {static_cast<Float64>(extCosh(x)), isNegative(x) && !isNaN(x) ? negated(y) : y};
  if (!isFinite(y)) {
    const Extended80 re = isFinite(x) ? extCos(y) : extCosh(x);
    if (!isZero(x)) return make(re, extSin(y));
    return {static_cast<Float64>(re), isNaN(y) ? negated(x) : zeroWithSign(isNegative(x) != isNegative(y))};
  }
  if (isNaN(x)) return {x * x, x * x};
  if (isInfinite(x)) {
    if (exponentFieldOf(y) < 0x3ff) return {x * x, x * y};
    return make(extCos(y) * (x * x), extSin(y) * x);
  }
  if (isZero(x)) {
    const Complex64 result = make(extCos(y), tinyY ? Extended80{x * y} : extSin(y) * x);
    raiseInexact();
    return result;
  }
  const Float64 infinity = overflowedDouble(), signedInfinity = infinity * x;
  return make(extCos(y) * infinity, tinyY ? Extended80{signedInfinity * y} : signedInfinity * extSin(y));
}

}  // namespace

Complex64 complexCoshAny(Complex64 z) {
  Complex64 result;
  if (exponentFieldOf(z.re) < 0x40a && !isZero(z.re) && isFinite(z.im) && !isZero(z.im)) {
    const SinCos t = extSinCos(z.im);
    const SinhCosh h = extSinhCosh(z.re);
    result = make(h.cosh * t.cos, h.sinh * t.sin);
  } else {
    result = ofRare(z.re, z.im);
  }
  raiseUnderflowOf(result.im);
  return result;
}

}  // namespace qorvane
