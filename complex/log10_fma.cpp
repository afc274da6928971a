// log10 z, level 5, for processors with fused multiply-adds: in lanes
// (complex/certified/log10_strip.h), with the bits of complex/certified/log10_elements.cpp.
#include "complex/certified/log10_strip.h"

namespace qorvane {

nuvStatus complexLog10AvxFma(const Complex64* src, Complex64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, log10Loop<Pack<Lanes4, 2>, Lanes4>, X87::fix>(len, src, dst);
}

}  // namespace qorvane
