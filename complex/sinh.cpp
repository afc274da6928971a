// sinh z: the elements that complex/sinh.h leaves out.
#include "complex/sinh.h"

namespace qorvane {

Complex64 complexSinhRare(Float64 x, Float64 y) {
  const auto make = [](Extended80 re, Extended80 im) {
    return Complex64{static_cast<Float64>(re), static_cast<Float64>(im)};
  };
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

}  // namespace qorvane
