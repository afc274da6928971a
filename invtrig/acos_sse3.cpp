// acos(x), levels 1 to 4.
//
// Method: asin_acos_sse3.h.
//
// Error: largest found 0.780 ulp, just below 1/2 (docs/accuracy.md has the arguments). The kernel
// runs in round-to-nearest with subnormals honoured, whatever the caller's mode.
//
// Special values: 1 gives +0, -1 pi, a NaN itself, quiet and with the other sign; magnitudes above
// 1 the default NaN and out of domain, without a flag.
#include "frame/kernel_frame.h"
#include "invtrig/asin_acos_sse3.h"

namespace qorvane {
namespace {

// acos(x) = pi/2 - asin(x) for |x| up to 1/2; above it is 2 asin(sqrt z) for positive x, pi less
// that for negative x.
constexpr auto finish = [](auto x, auto t) INLINED {
  using V = decltype(x);
  // Half of pi with the other sign, added to itself, gives pi or 0, exactly.
  const V otherSign = withoutBits(broadcast<V>(-0.0), x);
  const V lo = orBits(otherSign, broadcast<V>(halfPiLo)) + andBits(t.big, broadcast<V>(halfPiLo));
  const V hi = broadcast<V>(halfPi) + andBits(t.big, orBits(otherSign, broadcast<V>(halfPi)));
  const V d = ((lo + t.lo) + t.tail) + t.hi;
  return xorBits(d, otherSign) + hi;
};

constexpr auto atOne = [](Float64 x) { return x > 0 ? 0.0 : pi; };
constexpr auto ofNan = [](Float64 x) { return xorBits(x + x, -0.0); };

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) { return arcLoop<finish, atOne, ofNan>(src, dst, len); }

}  // namespace

nuvStatus acosSse3(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop>(len, src, dst);
}

}  // namespace qorvane
