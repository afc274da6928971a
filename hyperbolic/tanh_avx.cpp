// tanh(x), level 5: hyperbolic/tanh.h has the method, the error and the special values, and
// all but the width of the vectors.
#include "hyperbolic/tanh.h"

#include "frame/kernel_frame.h"

namespace qorvane {
nuvStatus tanhAvx(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, tanhLoop<Lanes4>>(len, src, dst);
}

}  // namespace qorvane
