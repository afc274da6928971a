#include "frame/kernel_frame.h"
#include "hyperbolic/acosh.h"

namespace qorvane {
namespace {
nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  return guardedUnaryLoop<Pack<Lanes2, 4>, Raises::yes>(
      src, dst, len, [](auto x) INLINED { return acoshCore(x); }, [](auto x) INLINED { return acoshFlagged(x); }, acoshSpecialLane);
}
}  // namespace
nuvStatus acoshSsse3(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop>(len, src, dst);
}
}  // namespace qorvane
