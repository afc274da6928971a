// atanh(x), level 5, for processors without fused multiply-adds. hyperbolic/atanh.h tells the
// method, hyperbolic/atanh_extended.cpp where its bits come from.
//
// Error: at most 0.697 ulp, near 2^-7, falling to 0.51 at 0.2. The kernel runs in round-to-nearest
// with subnormals honoured and 64-bit significands, whatever the caller's mode.
//
// Special values: +0 and -0 give themselves; 1 and -1 give +Inf and -Inf, a pole; beyond,
// infinities included, the NaN of all ones with the sign of x, out of domain, and a NaN the same.
// Statuses raise no flag.
#include "frame/kernel_frame.h"
#include "hyperbolic/atanh.h"

namespace qorvane {

nuvStatus atanhAvxPlain(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, atanhLoop, X87::fix>(len, src, dst);
}

}  // namespace qorvane
