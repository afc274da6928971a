// erfc(x), levels 1 to 4.
//
// Method: a polynomial on each of 28 rows, times exp(-x^2) (erfc.h).
//
// Error: for x >= 0 at most 0.63 ulp, near 19.96, from 26.46 up, where results come near to the
// subnormal numbers, 0.78 ulp; for x < 0 at most 0.55 ulp. The kernel runs in round-to-nearest with
// subnormals honoured, whatever the caller's mode.
//
// Special values: above 27.226017111108362 +0 and underflow; smaller results that are subnormal
// have no status; +Inf gives +0, -Inf 2, a NaN itself, quiet, but one whose upper significand bits
// are clear counts as an infinity. Statuses raise no flag but those of the arithmetic; arguments
// next to zero may raise underflow.
#include "errorfn/erfc.h"
#include "frame/kernel_frame.h"

namespace qorvane {
namespace {

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  return oneOrSeveral<Four, Raises::no>(
      src, dst, len, [](auto x) INLINED { return erfcCore(x); }, erfcIsFlagged, erfcSpecialLane);
}

}  // namespace

nuvStatus erfcSse3(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop>(len, src, dst);
}

}  // namespace qorvane
