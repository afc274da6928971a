// log10 z in extended precision, element by element: the steps of complexLn times log10 e.
//
// Error: at most 0.53 ulp the real part, 0.51 ulp the imaginary part, subnormal parts included.
//
// Special values: as C99's Annex G has them for clog, times log10 e; subnormal parts underflow.
#include "complex/certified/elements.h"
#include "complex/ln_steps.h"

namespace qorvane {
namespace {

constexpr Constant log10OfE = extended(0x3ffd, 0xde5bd8a937287195);     // 0.434294481903251828 = log10 e
constexpr Constant quarterTurn = extended(0x3ffe, 0xaea3e26597dd0587);  // 0.682188176920920674 = pi/2 log10 e

[[gnu::noinline, gnu::cold]] Complex64 complexLog10Rare(Float64 x, Float64 y) {
  constexpr Float64 infinity = __builtin_inf();
  const auto turned = [&](Float64 quarters) {
    return static_cast<Float64>(Extended80{withSignOf(quarters, y)} * quarterTurn);
  };
  if (isNaN(x) || isNaN(y)) {
    const Float64 nan = x + y;
    return {isInfinite(x) || isInfinite(y) ? infinity : nan, nan};
  }
  if (isInfinite(y)) return {infinity, turned(!isInfinite(x) ? 1.0 : isNegative(x) ? 1.5 : 0.5)};
  if (isInfinite(x)) return {infinity, isNegative(x) ? turned(2.0) : zeroWithSign(isNegative(y))};
  if (isZero(x) && isZero(y)) return {-1.0 / opaque(0.0), isNegative(x) ? turned(2.0) : y};
  return {static_cast<Float64>(logOfAnyModulus({x, y}) * log10OfE), static_cast<Float64>(extAtan2(y, x) * log10OfE)};
}

INLINE Complex64 complexLog10(Complex64 z) {
  Complex64 result;
  if (hasOrdinaryModulus(z)) [[likely]] {
    result.re = static_cast<Float64>(logOfOrdinaryModulus(z) * log10OfE);
    result.im = withSignOf(static_cast<Float64>(angleOfFinite(z.im, z.re) * log10OfE), z.im);
  } else {
    result = complexLog10Rare(z.re, z.im);
  }
  raiseUnderflowOf(result.re);
  raiseUnderflowOf(result.im);
  return result;
}

}  // namespace

template <>
Complex64 element<Function::log10>(Complex64 z) {
  return complexLog10(z);
}
template <>
nuvStatus elements<Function::log10>(const Complex64* src, Complex64* dst, int64_t len) {
  return complexLoop<complexLog10>(src, dst, len);
}

}  // namespace qorvane
