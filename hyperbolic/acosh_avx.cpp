// acosh(x), level 5. hyperbolic/acosh.h has the program that its bits come from,
// hyperbolic/log_of_sum.h the lanes that find most of them.
//
// Method: acosh(x) = ln(x + sqrt(x^2 - 1)) with every number a pair; above 2^28 ln(2x), up to
// 1.0625 sqrt(2d) times a polynomial in d = x - 1.
//
// Error: at most 0.512 ulp, just below 1.0625; 0.510 ulp elsewhere (docs/accuracy.md has the
// arguments). The kernel runs in round-to-nearest with subnormals honoured, whatever
// the caller's mode.
//
// Special values: 1 gives +0, +Inf itself, NaN the NaN, quiet; below 1, -Inf included, the default
// NaN, out of domain, and its flag.
#include "frame/kernel_frame.h"
#include "hyperbolic/acosh.h"

namespace qorvane {
namespace {

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) { return acoshLoop<Pack<Lanes4, 2>>(src, dst, len); }

}  // namespace

nuvStatus acoshAvx(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop>(len, src, dst);
}

}  // namespace qorvane
