// sinh z: the elements that complex/sinh.h leaves out, by the kernels of all ranges; the error and
// the special values stand there.
#include "complex/sinh.h"

namespace qorvane {
namespace {

INLINE Complex64 make(Extended80 re, Extended80 im) { return {static_cast<Float64>(re), static_cast<Float64>(im)}; }

// A part that is zero, infinite or NaN, or |x| from 2048 up.
INLINE Complex64 ofRare(Float64 x, Float64 y) {
  const bool tinyY = exponentFieldOf(y) == 0;
  if (isZero(y)) return {static_cast<Float64>(extSinh(x)), y};
  if (!isFinite(y)) {
    const Extended80 s = extSin(y);
    return isZero(x) || !isFinite(x) ? make(extSinh(x), s) : make(s * x, s);
  }
  if (isNaN(x)) return {x * x, x * x};
  if (isInfinite(x)) {
    if (exponentFieldOf(y) < 0x3ff) return {x, (x * x) * y};
    return make(extCos(y) * x, extSin(y) * (x * x));
  }
  if (isZero(x)) {
    const Complex64 result = make(extCos(y) * x, tinyY ? Extended80{y} : extSin(y));
    raiseInexact();
    return result;
  }
  const Float64 infinity = overflowedDouble();
  return make((extCos(y) * infinity) * x, tinyY ? Extended80{infinity * y} : extSin(y) * infinity);
}

}  // namespace

Complex64 complexSinhAny(Complex64 z) {
  Complex64 result;
  if (exponentFieldOf(z.re) < 0x40a && !isZero(z.re) && isFinite(z.im) && !isZero(z.im)) {
    const SinCos t = extSinCos(z.im);
    const SinhCosh h = extSinhCosh(z.re);
    result = make(h.sinh * t.cos, h.cosh * t.sin);
  } else {
    result = ofRare(z.re, z.im);
  }
  raiseUnderflowOf(result.re);
  raiseUnderflowOf(result.im);
  return result;
}

}  // namespace qorvane
