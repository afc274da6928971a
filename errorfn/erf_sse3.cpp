// erf(x), levels 1 to 4.
//
// Method: a polynomial on each of 46 rows (erf.h); below 2^-1015 the product with 2 / sqrt(pi),
// which is made as high + low far from the subnormal numbers and brought down.
//
// Error: at most 0.80 ulp, between 4 and 4.5 where erf is all but 1; below 0.125 at most 0.64 ulp,
// elsewhere 0.60. The kernel runs in round-to-nearest with subnormals honoured, whatever the
// caller's mode.
//
// Special values: zeros give themselves, infinities and |x| from 6 up the 1 of their sign, NaNs
// themselves, quiet. No element fails.
#include "errorfn/erf.h"
#include "frame/kernel_frame.h"

namespace qorvane {
namespace {

constexpr int fastFrom = 0x00800000, fastTo = 0x7ff00000;  // the high words of 2^-1015 and infinity

// Infinities, NaNs and |x| below 2^-1015.
[[gnu::noinline, gnu::cold]] Element erfSpecialLane(Float64 x) {
  constexpr Float64 normalFrom = fromBits(0x0010000000000000);
  return erfOutside(x, normalFrom, [](Float64 s) { return fromBits(toBits(s) & 0xfffffffff8000000); });
}

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  return oneOrSeveral<Four, Raises::no>(
      src, dst, len, [](auto x) INLINED { return erfCore(x, highWordWithin(magnitude(x), fastFrom, fastTo)); },
      [](auto x) INLINED { return anyHighWordOutside(x, fastFrom, fastTo); }, erfSpecialLane);
}

}  // namespace

nuvStatus erfSse3(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop>(len, src, dst);
}

}  // namespace qorvane
