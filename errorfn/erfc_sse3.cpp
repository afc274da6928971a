// erfc(x), levels 1 to 4.
#include "errorfn/erfc.h"
#include "frame/kernel_frame.h"

namespace qorvane {
namespace {

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  return unaryLoop<Four, Raises::no>(
      src, dst, len, [](auto x) INLINED { return erfcCore(x); }, erfcIsFlagged, erfcSpecialLane);
}

}  // namespace

nuvStatus erfcSse3(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop>(len, src, dst);
}

}  // namespace qorvane
