// tanh(x), levels 1 to 4: hyperbolic/tanh.h has the method, the error and the special values, and
// all but the width of the vectors.
#include "hyperbolic/tanh.h"

#include "frame/kernel_frame.h"

namespace qorvane {
nuvStatus tanhSse3(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, tanhLoop<Lanes2>>(len, src, dst);
}

}  // namespace qorvane
