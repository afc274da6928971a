// a^b, level 5, for processors with fused multiply-adds: in lanes (complex/certified/pow_strip.h),
// with the bits of complex/pow.cpp.
#include "complex/certified/pow_strip.h"

namespace qorvane {

nuvStatus complexPowAvxFma(const Complex64* a, const Complex64* b, Complex64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, powLoop<Lanes4>, X87::fix>(len, a, b, dst);
}

}  // namespace qorvane
