// atanh(x), level 5, for processors with fused multiply-adds. The method is that of
// hyperbolic/atanh.h; error, modes and special values are those of hyperbolic/atanh_avx.cpp, and so
// are the bits.
#include "frame/kernel_frame.h"
#include "hyperbolic/atanh.h"

namespace qorvane {

nuvStatus atanhAvxFma(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, atanhLoop, X87::fix>(len, src, dst);
}

}  // namespace qorvane
