// x^y, level 5.
//
// Method: explog/pow_core.h, with the short program; elements outside the fast range, and only
// they, go to powSpecialLane.
//
// Error: at most 0.512 ulp in the ordinary range, 1.23 ulp where |x - 1| is near 2^-11 and |y log2
// x| near 1000, in round-to-nearest; rounding mode, FTZ and DAZ are the caller's.
//
// Special values: explog/pow_cases.h. An exponent that is infinite or a NaN makes P infinite or a
// NaN, so that P alone tells; where x = 1 and y is huge, P = 0 and the fast path gives the 1.0 that
// is due.
#include "explog/pow_stages.h"
#include "frame/kernel_frame.h"

namespace qorvane {
namespace {

nuvStatus loop(const Float64* srcA, const Float64* srcB, Float64* dst, int64_t len) {
  using namespace power;
  uint32_t mxcsr = len > few ? readMxcsr() : 0;
  return powerLoop<Lanes4, Program::shorter, Repair::elements, Exponents::each>(srcA, srcB, dst, len, powSpecialLane,
                                                                                mxcsr);
}

}  // namespace

nuvStatus powAvx(const Float64* srcA, const Float64* srcB, Float64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, loop>(len, srcA, srcB, dst);
}

}  // namespace qorvane
