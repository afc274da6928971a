// x^y, levels 1 to 4.
//
#include "explog/pow_stages.h"
#include "frame/kernel_frame.h"

namespace qorvane {
namespace {

[[gnu::noinline]] nuvStatus loop(const Float64* srcA, const Float64* srcB, Float64* dst, int64_t len) {
  using namespace power;
  return powerLoop<Lanes2, Program::longer, Repair::groupsOf4, Exponents::each>(srcA, srcB, dst, len, powFixLane);
}

}  // namespace

nuvStatus powLevels1To4(const Float64* srcA, const Float64* srcB, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop>(len, srcA, srcB, dst);
}

}  // namespace qorvane
