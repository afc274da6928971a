// x^y with one exponent for all elements, levels 1 to 4.
//
// Method: explog/pow_core.h, with the long program at every level; a group of four elements that
// has one outside the fast range goes to powFixLane whole. The exponent is split once, and y = 2 is
// a plain square of anything. See explog/pow_sse3.cpp for the error and the special values.
#include "explog/pow_stages.h"
#include "frame/kernel_frame.h"

namespace qorvane {
namespace {

nuvStatus loop(const Float64* src, Float64 value, Float64* dst, int64_t len, uint32_t mxcsr) {
  return power::fixedExponentLoop<Lanes2>(src, value, dst, len, mxcsr);
}

}  // namespace

nuvStatus powxSse3(const Float64* src, Float64 value, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop>(len, src, value, dst);
}

}  // namespace qorvane
