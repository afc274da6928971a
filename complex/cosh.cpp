// cosh z: the elements that complex/cosh.h leaves out.
#include "complex/cosh.h"

namespace qorvane {

Complex64 complexCoshRare(Float64 x, Float64 y) {
  const auto make = [](Extended80 re, Extended80 im) {
    return Complex64{static_cast<Float64>(re), static_cast<Float64>(im)};
  };
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

}  // namespace qorvane
