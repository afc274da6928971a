// acos(x), level 5.
//
// Method: asin_acos_avx.h.
//
// Error: largest found 0.852 ulp, just above 0.6 (docs/accuracy.md has the arguments), in
// round-to-nearest; rounding mode, FTZ and DAZ are the caller's.
//
// Special values: 1 gives +0, -1 pi, a NaN a quiet NaN; magnitudes above 1 the default NaN and out
// of domain, with its flag.
#include "frame/kernel_frame.h"
#include "invtrig/asin_acos_avx.h"

namespace qorvane {
namespace {

// acos(x) = pi/2 - asin(x) for |x| below 1/2; from there up it is 2 asin(sqrt z) for positive x, pi
// less that for negative x.
constexpr auto finish = [](auto x, auto a, auto t) INLINED {
  using V = decltype(x);
  const V sign = signOf(x), zero = broadcast<V>(0.0);
  const V negative = quietlyLess(x, zero);
  const V constantHi = select(t.notBig, broadcast<V>(halfPi), andBits(negative, broadcast<V>(pi)));
  const V constantLo = select(t.notBig, broadcast<V>(halfPiLo), andBits(negative, broadcast<V>(piLo)));
  const V corr = withoutBits(t.corr, t.notBig);
  const V leading = select(t.notBig, orBits(a, broadcast<V>(-0.0)), t.hi);
  const V v = t.series * (leading - corr) + (xorBits(constantLo, sign) - corr);
  return xorBits(v + leading, sign) + constantHi;
};

// For |x| of 1 or more.
Element acosSpecialLane(Float64 x) {
  if (x == 1.0) return {0.0};
  if (x == -1.0) return {opaque(pi) + piLo};
  const Float64 numerator = opaque(magnitude(x) == __builtin_inf() ? x : 0.0);
  return {numerator / numerator, nuvStatusOutOfDomain};
}

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  return arcLoop<finish, acosSpecialLane>(src, dst, len);
}

}  // namespace

nuvStatus acosAvx(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, loop>(len, src, dst);
}

}  // namespace qorvane
