// tanh z: the elements that complex/tanh.h leaves out.
#include "complex/tanh.h"

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

}  // namespace

Complex64 complexTanhRare(Float64 x, Float64 y) {
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

}  // namespace qorvane
