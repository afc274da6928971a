#include "frame/kernel_frame.h"
#include "hyperbolic/acosh.h"

namespace qorvane {
namespace {
nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  return acoshLoop<Pack<Lanes2, 4>, Pack<Lanes2, 8>>(src, dst, len);
}
}  // namespace
nuvStatus acoshSsse3(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop>(len, src, dst);
}
}  // namespace qorvane
