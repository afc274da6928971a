// log10 z, levels 1 to 4: in lanes (complex/certified/log10_strip.h), with the bits of
// complex/certified/log10_elements.cpp.
#include "complex/certified/log10_strip.h"

namespace qorvane {

nuvStatus complexLog10Sse3(const Complex64* src, Complex64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, log10Loop<Pack<Lanes2, 2>, Lanes2>, X87::fix>(len, src, dst);
}

}  // namespace qorvane
