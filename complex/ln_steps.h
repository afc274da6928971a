// What the complex logarithms share: ln |z| for finite z.
#pragma once
#include "complex/extended/ext_atan2.h"
#include "complex/extended/ext_log1p.h"
#include "complex/scalar.h"

namespace qorvane {
namespace {

// The larger part is from 2^-480 to 2^480, so that |z|^2 is within the range of double precision; the
// other one is finite.
INLINE bool hasOrdinaryModulus(Complex64 z) {
  const uint32_t re = exponentFieldOf(z.re), im = exponentFieldOf(z.im);
  return (re > im ? re : im) - (0x3ffu - 480) < 960;
}

// v^2 less v^2 rounded, exactly: the products of the halves of v have 64 bits at most.
INLINE Extended80 squareError(Extended80 v, Extended80 square) {
  constexpr Float64 splitter = 8589934593.0;  // 2^33 + 1
  const Extended80 c = v * splitter, h = c - (c - v), l = v - h;
  return ((h * h - square) + (2.0 * l) * h) + l * l;
}

// `log` and `log1p` are extLog and extLog1p for the range of |z|^2. Next to 1 |z|^2 - 1 is added up
// from its exact parts.
template <class Log, class Log1p>
INLINE Extended80 logOfModulus(Complex64 z, Log log, Log1p log1p) {
  constexpr Float64 band = extended(0x3ff9, 0xf5c28f5c28f5c000).hi;  // 0.03
  const Float64 a = __builtin_fabs(z.re), b = __builtin_fabs(z.im);
  const Extended80 larger = a > b ? a : b, smaller = a > b ? b : a;
  const Extended80 larger2 = larger * larger, smaller2 = smaller * smaller, s = larger2 + smaller2;
  if (__builtin_fabsl(s - 1.0) > band) return 0.5 * log(s);
  const Extended80 d = s - larger2, e = (larger2 - (s - d)) + (smaller2 - d);
  const Extended80 t = (squareError(larger, larger2) + squareError(smaller, smaller2)) + e;
  return 0.5 * log1p((s - 1.0) + t);
}

INLINE Extended80 logOfOrdinaryModulus(Complex64 z) {
  return logOfModulus(
      z, [](Extended80 s) INLINED { return logOfOrdinary(roundedArgument(s)); },
      [](Extended80 u) INLINED { return log1pOfSmall(roundedArgument(u)); });
}
INLINE Extended80 logOfAnyModulus(Complex64 z) { return logOfModulus(z, extLog, extLog1p); }

}  // namespace
}  // namespace qorvane
