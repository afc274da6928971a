// a^b for one b, level 5, for processors without fused multiply-adds: in lanes
// (complex/certified/pow_strip.h), with the bits of complex/pow.cpp.
#include "complex/certified/pow_strip.h"

namespace qorvane {

nuvStatus complexPowxAvxPlain(const Complex64* a, Complex64 b, Complex64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, powxLoop<Lanes4>, X87::fix>(len, a, b, dst);
}

}  // namespace qorvane
