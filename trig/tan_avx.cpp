// tan(x), level 5: the kernel for processors without fused multiply-adds. trig/tan.h tells the
// method, trig/tan_quotients.cpp and trig/tan_special_lane.cpp the errors.
//
// The kernel runs in round-to-nearest without FTZ, and with 64-bit significands in the x87 unit,
// whatever the caller's mode; DAZ and the exception masks are the caller's.
//
// Special values: a zero gives the same zero, a NaN the NaN, quiet, an infinity the default NaN,
// out of domain and the invalid flag.
#include "frame/kernel_frame.h"
#include "trig/tan.h"

namespace qorvane {
namespace {

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) { return tanLoop<Pack<Lanes4, 2>>(src, dst, len); }

}  // namespace

nuvStatus tanAvxX87(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::clearRounding, loop, X87::fix>(len, src, dst);
}

}  // namespace qorvane
