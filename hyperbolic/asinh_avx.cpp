#include "frame/kernel_frame.h"
#include "hyperbolic/asinh.h"

namespace qorvane {
namespace {
nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  return asinhLoop<Pack<Lanes4, 2>, Pack<Lanes4, 4>>(src, dst, len);
}
}  // namespace
nuvStatus asinhAvx(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop>(len, src, dst);
}
}  // namespace qorvane
