// extLog1p: ln(1 + x) in extended precision.
//
// Method: up to 2^-14 polynomials; up to 2^-4 one whose leading terms are exact on the leading 11 bits
// of x; from there on the table of extLog with 1 + x as a sum of two numbers.
//
// Error in units of the last of 64 bits: at most 0.53 for |x| < 2^-4, 1.6 for x from there up;
// 10 from -1/2 to -2^-4, where the terms of the sum are larger than the sum.
//
// Special values: a zero gives the zero, -1 -Inf and division by zero, +Inf +Inf, a NaN the NaN; less
// than -1 NaN and invalid. A subnormal x underflows.
#pragma once
#include "complex/extended/ext_log.h"

namespace qorvane {
namespace {

#include "complex/extended/log1p_tail_table.inc"

// |x| < 2^-4. x must not be NaN.
INLINE Extended80 log1pOfSmall(const Argument& a) {
  const Extended80 x = a.x, t = x * x;
  if (a.key >= keyFrom(0x3ff1)) [[likely]] {
    const auto& c = log1pTail;
    const LogLead lead = logLead(x);
    const Extended80 w = lead.w;
    const Extended80 even = (((((c[12] * w + c[10]) * w + c[8]) * w + c[6]) * w + c[4]) * w + c[2]) * w + c[0];
    const Extended80 odd = (((((c[13] * w + c[11]) * w + c[9]) * w + c[7]) * w + c[5]) * w + c[3]) * w + c[1];
    return logOfLead(lead, w * even + (w * x) * odd);
  }
  if (a.key >= keyFrom(0x3fe6)) {
    static constexpr Constant p2 = extended(0xbffd, 0xffffffffffffffe5);  // -0.5
    static constexpr Constant p3 = extended(0x3ffd, 0xaaaaaaaaaaaaaa6f);  // 0.333333333333
    static constexpr Constant p4 = extended(0xbffd, 0x80000006aaaaaaa0);  // -0.250000000776
    static constexpr Constant p5 = extended(0x3ffc, 0xccccccdccd38edd5);  // 0.200000000931
    return x + ((p5 * t + p3) * t + (p4 * t + p2) * x) * x;
  }
  if (a.key >= keyFrom(0x3fd9)) {
    static constexpr Constant p3 = extended(0x3ffd, 0xaaaaaaaaaaaad111);  // 0.333333333333
    return x + ((p3 * x + -0.5) * x) * x;
  }
  if (a.key >= keyFrom(0x3fb4)) {
    static constexpr Constant p2 = extended(0xbffe, 0x8000000000001000);  // -0.5
    return (p2 * x) * x + x;
  }
  if (x == 0) return x;
  if (a.magnitude() < constantPowerOfTwo(-16382)) [[unlikely]]
    discard(underflowed());
  return (x * (Extended80{twoTo75} - a.sign())) * twoToMinus75;
}

// 1 + x for |x| >= 2^-4, exactly.
INLINE Sum onePlus(Extended80 x) {
  const Extended80 hi = 1.0 + x, rest = hi - x;
  return {hi, (x - (hi - rest)) + (1.0 - rest)};
}

// For x >= 0 below 2^1000, from an ordinary argument.
INLINE Extended80 log1pOfOrdinary(const Argument& a) {
  if (a.key < keyFrom(0x3ffb)) return log1pOfSmall(a);
  return logByTable(logArgumentOf(onePlus(a.x)));
}

[[gnu::noinline, gnu::cold, maybe_unused]] Extended80 extLog1p(Extended80 x) {
  constexpr Float64 infinity = __builtin_inf();
  const Argument a(x);
  if (x != x || x == infinity) return x * 1.0L;
  if (x <= -1) return x == -1 ? -1.0L / Extended80{opaque(0.0)} : opaque(infinity) * 0.0L;
  if (a.key < keyFrom(0x3ffb)) return log1pOfSmall(a);
  const Sum v = onePlus(x);
  if (a.key < keyFrom(exponentField(1000))) return logByTable(logArgumentOf(v));
  return logByTable(logArgumentOfAny(v.hi));
}

}  // namespace
}  // namespace qorvane
