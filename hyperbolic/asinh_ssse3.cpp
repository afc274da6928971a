// asinh(x), levels 2 to 4. hyperbolic/asinh.h has the program that its bits come from,
// hyperbolic/log_of_sum.h the lanes that find most of them.
//
// Method: asinh|x| = ln(a + sqrt(a^2 + 1)), a = |x|, with every number a pair; above 2^28 ln(2a),
// up to 0.125 a polynomial in a^2.
//
// Error: at most 0.515 ulp, near 0.147 (docs/accuracy.md has the arguments). The kernel runs in
// round-to-nearest with subnormals honoured, whatever the caller's mode.
//
// Special values: +0, -0, +Inf, -Inf give themselves, NaN the NaN, quiet. No element fails.
#include "frame/kernel_frame.h"
#include "hyperbolic/asinh.h"

namespace qorvane {
namespace {

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) { return asinhLoop<Pack<Lanes2, 4>>(src, dst, len); }

}  // namespace

nuvStatus asinhSsse3(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop>(len, src, dst);
}

}  // namespace qorvane
