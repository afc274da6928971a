#include "frame/kernel_frame.h"
#include "hyperbolic/acosh.h"

namespace qorvane {
namespace {
nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  return acoshLoop<Pack<Lanes4, 2>, Pack<Lanes4, 4>>(src, dst, len);
}
}  // namespace
nuvStatus acoshAvx(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop>(len, src, dst);
}
}  // namespace qorvane
