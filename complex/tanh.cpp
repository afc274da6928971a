// tanh z: the elements that complex/tanh.h leaves out, by the kernels of all ranges; the error and
// the special values stand there.
#include "complex/tanh.h"

#include "complex/extended/ext_tan.h"
#include "complex/extended/ext_tanh.h"

namespace qorvane {
namespace {

// The zero with the sign of sin y cos y.
INLINE Float64 zeroOfDoubleAngle(Float64 y) {
  const SinCos t = extSinCos(y);
  return zeroWithSign((t.sin < 0) != (t.cos < 0));
}
// The same for |y| < 1, where a subnormal y is touched.
INLINE Float64 zeroOfSmallAngle(Float64 y) {
  if (exponentFieldOf(y) == 0) discard(opaque(y) + y);
  return zeroWithSign(isNegative(y));
}

// A part that is zero, infinite or NaN, or |x| from 512 up.
INLINE Complex64 ofRare(Float64 x, Float64 y) {
  if (isNaN(x)) {
    const Float64 nan = x * x;
    return {nan, isZero(y) ? y : isNaN(y) ? y * y : nan};
  }
  if (isInfinite(x)) {
    const Float64 re = withSignOf(1.0, x);
    if (isNaN(y)) return discard(opaque(y) * y), Complex64{re, 0.0};
    if (isZero(y)) return {re, y};
    return {re, isInfinite(y)                ? zeroWithSign(isNegative(y))
                : exponentFieldOf(y) < 0x3ff ? zeroOfSmallAngle(y)
                                             : zeroOfDoubleAngle(y)};
  }
  if (isNaN(y)) return {y * y, y * y};
  if (isInfinite(y)) {
    const Float64 nan = static_cast<Float64>(extTan(y));
    return {nan, nan};
  }
  if (isZero(x)) return {x, isZero(y) ? y : static_cast<Float64>(extTan(y))};
  if (isZero(y)) return {static_cast<Float64>(extTanh(x)), y};
  const Float64 im = exponentFieldOf(y) == 0 ? zeroOfSmallAngle(y) : zeroOfDoubleAngle(y);
  raiseUnderflow();
  return {withSignOf(opaque(1.0) - smallestNormal, x), im};
}

}  // namespace

Complex64 complexTanhAny(Complex64 z) {
  Complex64 result;
  if (exponentFieldOf(z.re) < 0x408 && !isZero(z.re) && isFinite(z.im) && !isZero(z.im)) {
    const SinCos t = extSinCos(z.im);
    const SinhCosh h = extSinhCosh(z.re);
    const Extended80 d = h.sinh * h.sinh + t.cos * t.cos;
    result = {static_cast<Float64>((h.sinh * h.cosh) / d), static_cast<Float64>((t.cos * t.sin) / d)};
  } else {
    result = ofRare(z.re, z.im);
  }
  raiseUnderflowOf(result.re);
  raiseUnderflowOf(result.im);
  return result;
}

}  // namespace qorvane
