// x^y, level 5.
//
#include "explog/pow_stages.h"
#include "frame/kernel_frame.h"

namespace qorvane {
namespace {

[[gnu::noinline]] nuvStatus loop(const Float64* srcA, const Float64* srcB, Float64* dst, int64_t len) {
  using namespace power;
  return powerLoop<Lanes4, Program::shorter, Repair::elements, Exponents::each>(srcA, srcB, dst, len, powSpecialLane);
}

}  // namespace

nuvStatus powLevel5(const Float64* srcA, const Float64* srcB, Float64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, loop>(len, srcA, srcB, dst);
}

}  // namespace qorvane
