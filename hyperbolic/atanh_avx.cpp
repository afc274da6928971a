#include "frame/kernel_frame.h"
#include "hyperbolic/atanh.h"

namespace qorvane {
namespace {
nuvStatus loop(const Float64* src, Float64* dst, int64_t len) { return atanhLoop(src, dst, len); }
}  // namespace
nuvStatus atanhAvx(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop, X87::fix>(len, src, dst);
}
}  // namespace qorvane
