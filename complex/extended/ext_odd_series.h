// Odd power series in extended precision, which the inverse sine and the inverse hyperbolic
// functions share: short ones for small arguments, and long ones whose leading terms are exact.
#pragma once
#include "complex/extended/extended.h"

namespace qorvane {
namespace {

// x + c3 x^3 + c5 x^5 + c7 x^7 + c9 x^9, as x and the rest, for |x| < 2^-7: as many terms as matter.
INLINE Sum shortOddSeries(const Argument& a, const Constant& c3, const Constant& c5, const Constant& c7,
                          const Constant& c9) {
  const Extended80 x = a.x, t = x * x;
  if (a.key >= keyFrom(0x3ff3)) return {x, (((c9 * t + c7) * (t * t) + (c5 * t + c3)) * t) * x};
  if (a.key >= keyFrom(0x3fed)) return {x, (t * (c5 * t + c3)) * x};
  return {x, ((c3 * x) * x) * x};
}

// x + c3 x^3 + tail x^3, as the leading 11 bits of x and the rest; c3 has 12 bits: the product with
// their third power is exact. tail(t), t = x^2.
template <class Tail>
INLINE Sum longOddSeries(Extended80 x, Float64 c3, Tail tail) {
  const Extended80 xh = leadingPart(x, leading11), xl = x - xh, sum = x + xh, xh2 = xh * xh, t = xh2 + sum * xl;
  const Extended80 correction = c3 * ((t + xh * sum) * xl);
  return {xh, (((tail(t) * t) * x + correction) + xl) + (c3 * xh2) * xh};
}

// The polynomial of t <= 1/4 with these coefficients, in two chains; `second` is added to the
// coefficient of t. From the fifth on 53 bits do: what they leave is below 2^-68 of the whole.
template <int n>
INLINE Extended80 inTwoChains(const Constant (&c)[n], Float64 second, Extended80 t) {
  const Extended80 t2 = t * t;
  constexpr int topEven = (n - 1) & ~1, topOdd = ((n - 2) & ~1) + 1;
  Extended80 even = timesLeading53(t2, c[topEven]), odd = timesLeading53(t2, c[topOdd]);
#pragma GCC unroll 16
  for (int i = topEven - 2; i >= 4; i -= 2) even = plusLeading53(even, c[i]) * t2;
#pragma GCC unroll 16
  for (int i = topOdd - 2; i >= 4; i -= 2) odd = plusLeading53(odd, c[i]) * t2;
  even = (even + c[2]) * t2 + c[0];
  odd = (odd + c[3]) * t2 + c[1];
  return (odd + second) * t + even;
}

}  // namespace
}  // namespace qorvane
