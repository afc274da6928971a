// extAtanh: the inverse hyperbolic tangent in extended precision.
//
// Method: below 1/4 the series; from there up half the logarithm of (1 + |x|) / (1 - |x|), the
// quotient as a sum of two numbers.
//
// Error in units of the last of 64 bits: at most 0.54 below 1/4, 1.6 above.
//
// Special values: a zero gives the zero, +-1 +-Inf and division by zero, a NaN the NaN; |x| > 1 gives
// NaN and invalid. A subnormal x underflows.
#pragma once
#include "complex/extended/ext_log.h"
#include "complex/extended/ext_odd_series.h"

namespace qorvane {
namespace {

#include "complex/extended/atanh_tail_table.inc"

// (1 + x) / (1 - x) for 1/4 <= x < 1.
INLINE Sum ratioAround(Extended80 x) {
  const Sum n = fastTwoSum(1.0L, x), d = fastTwoSum(1.0L, -x);
  const Extended80 r = 1.0 / d.hi, q = leadingPart(n.hi * r, leading31), dShort = leadingPart(d.hi, leading31);
  const Extended80 residual = (((n.hi - q * dShort) - q * (d.hi - dShort)) + n.lo) - q * d.lo;
  return fastTwoSum(q, residual * r);
}

INLINE Extended80 extAtanh(Argument a) {
  if (a.key < keyFrom(0x3fb4)) return tinyOdd(a.x);
  if (a.key < keyFrom(0x3ff8)) {
    static constexpr Constant c3 = extended(0x3ffd, 0xaaaaaaaaaaaaaaab);  // 1/3
    static constexpr Constant c5 = extended(0x3ffc, 0xcccccccccccccccd);  // 1/5
    static constexpr Constant c7 = extended(0x3ffc, 0x9249249249249249);  // 1/7
    static constexpr Constant c9 = extended(0x3ffb, 0xe38e38e38e38e38e);  // 1/9
    const Sum s = shortOddSeries(a, c3, c5, c7, c9);
    return s.hi + s.lo;
  }
  if (a.key < keyFrom(0x3ffd)) {
    const Sum s = longOddSeries(a.x, thirdShort, [](Extended80 t) INLINED { return inTwoChains(atanhTail, 0.0, t); });
    return s.hi + s.lo;
  }
  const Extended80 x = a.x, magnitude = a.magnitude();
  constexpr Float64 infinity = __builtin_inf();
  if (magnitude == 1) return a.sign() / Extended80{opaque(0.0)};
  if (!(magnitude < 1)) return x != x ? x * 1.0L : opaque(infinity) * 0.0L;
  return a.sign() * (0.5 * logByTable(logArgumentOf(ratioAround(magnitude))));
}

}  // namespace
}  // namespace qorvane
