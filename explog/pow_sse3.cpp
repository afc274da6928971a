// x^y, levels 1 to 4.
//
// Method: explog/pow_core.h, with the long program; a group of four elements that has one outside
// the fast range goes to powFixLane whole.
//
// Error: at most 0.512 ulp in the ordinary range, 1.213 ulp where |x - 1| is near 2^-11 and |y log2
// x| near 1000. The kernel runs in round-to-nearest with subnormals honoured, whatever the caller's
// mode.
//
// Special values: explog/pow_cases.h.
#include "explog/pow_stages.h"
#include "frame/kernel_frame.h"

namespace qorvane {
namespace {

nuvStatus loop(const Float64* srcA, const Float64* srcB, Float64* dst, int64_t len, uint32_t mxcsr) {
  using namespace power;
  return powerLoop<Lanes2, Program::longer, Repair::groupsOf4, Exponents::each>(srcA, srcB, dst, len, powFixLane,
                                                                                mxcsr);
}

}  // namespace

nuvStatus powSse3(const Float64* srcA, const Float64* srcB, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop>(len, srcA, srcB, dst);
}

}  // namespace qorvane
