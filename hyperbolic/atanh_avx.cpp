#include "frame/kernel_frame.h"
#include "hyperbolic/atanh.h"

namespace qorvane {

nuvStatus atanhAvx(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, atanhLoop, X87::fix>(len, src, dst);
}

}  // namespace qorvane
