// asin(x), level 5.
//
// Method: asin_acos_avx.h.
//
// Error: largest found 0.900 ulp, near 0.53 (docs/accuracy.md has the arguments), in
// round-to-nearest; rounding mode, FTZ and DAZ are the caller's.
//
// Special values: 1 and -1 give +-pi/2, a NaN a quiet NaN; magnitudes above 1 the default NaN and
// out of domain, with its flag.
#include "frame/kernel_frame.h"
#include "invtrig/asin_acos_avx.h"

namespace qorvane {
namespace {

// pi/2 - hi is rounded, and what that left over goes with the small terms.
constexpr auto finish = [](auto x, auto a, auto t) INLINED {
  using V = decltype(x);
  const V difference = halfPi - t.hi;
  const V low = (halfPiLo + t.corr) - (t.hi - (halfPi - difference));
  const V leading = select(t.notBig, a, difference);
  const V v = t.series * select(t.notBig, a, t.corr - t.hi) + withoutBits(low, t.notBig);
  return xorBits(leading + v, signOf(x));
};

// For |x| of 1 or more.
Element asinSpecialLane(Float64 x) {
  if (magnitude(x) == 1.0) return {orBits(halfPi, signOf(x))};
  const Float64 numerator = opaque(magnitude(x) == __builtin_inf() ? x : 0.0);
  return {numerator / numerator, nuvStatusOutOfDomain};
}

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  return arcLoop<finish, asinSpecialLane>(src, dst, len);
}

}  // namespace

nuvStatus asinAvx(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, loop>(len, src, dst);
}

}  // namespace qorvane
