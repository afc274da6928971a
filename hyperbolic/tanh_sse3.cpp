// tanh(x), levels 1 to 4: hyperbolic/tanh.h.
#include "hyperbolic/tanh.h"

#include "frame/kernel_frame.h"

namespace qorvane {
namespace {

[[gnu::noinline]] nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  return tanhLoop<Lanes2>(src, dst, len);
}

}  // namespace

nuvStatus tanhSse3(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop>(len, src, dst);
}

}  // namespace qorvane
