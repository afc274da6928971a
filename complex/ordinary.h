// Sine and cosine of y, hyperbolic sine and cosine of x for ordinary arguments, without a branch:
// the heart of the hyperbolic and trigonometric functions. What else there is goes through the
// kernels with all their ranges, which give the same for ordinary arguments.
#pragma once
#include "complex/extended/ext_sin_cos.h"
#include "complex/extended/ext_sinh_cosh.h"
#include "complex/scalar.h"

namespace qorvane {
namespace {

// 0.5 <= |x| < 26.17, 2^-5 <= |y| < 2^17.
INLINE bool isOrdinary(Complex64 z) {
  constexpr uint32_t fromX = 0x3fe00000, toX = 0x403a2a80, fromY = 0x3fa00000, toY = 0x41000000;
  return ((highWord(z.re) & 0x7fffffff) - fromX < toX - fromX) && ((highWord(z.im) & 0x7fffffff) - fromY < toY - fromY);
}

// The unit has eight registers: sine and cosine wait in memory.
struct OrdinaryParts {
  Stored sin, cos;
  Extended80 sinh, cosh;
};
INLINE OrdinaryParts ordinaryParts(Complex64 z) {
  const Extended80 y = __builtin_fabsl(z.im);
  const HalfTurns h = halfTurnsOf(y);
  const SinCos t =
      sinCosOfRemainder(splitRemainder(remainderInThreeParts(y, h.number), h.integer, leading11), isNegative(z.im));
  const Stored sin(t.sin), cos(t.cos);
  const TwoExponentials e = twoExponentials(__builtin_fabsl(z.re));
  return {sin, cos, withSignOf(1.0, z.re) * difference(e), sum(e)};
}

}  // namespace
}  // namespace qorvane
