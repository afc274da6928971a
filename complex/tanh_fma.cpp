// tanh z, level 5, for processors with fused multiply-adds: in lanes (complex/certified/strip.h),
// with the bits of complex/tanh.h.
#include "complex/certified/strip.h"

namespace qorvane {

nuvStatus complexTanhAvxFma(const Complex64* src, Complex64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, certifiedLoop<Function::tanh, Lanes4>, X87::fix>(len, src, dst);
}

}  // namespace qorvane
