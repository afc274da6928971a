// sin z, level 5, for processors with fused multiply-adds: in lanes (complex/certified/strip.h),
// with the bits of complex/sinh.h.
#include "complex/certified/strip.h"

namespace qorvane {

nuvStatus complexSinAvxFma(const Complex64* src, Complex64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, certifiedLoop<Function::sin, Lanes4>, X87::fix>(len, src, dst);
}

}  // namespace qorvane
