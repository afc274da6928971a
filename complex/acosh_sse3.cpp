// acosh z, levels 1 to 4: in lanes (complex/certified/inverse_strip.h), with the bits of complex/acos.cpp.
#include "complex/certified/inverse_strip.h"

namespace qorvane {

nuvStatus complexAcoshSse3(const Complex64* src, Complex64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, inverseLoop<Function::acosh, Pack<Lanes2, 2>, Lanes2>, X87::fix>(
      len, src, dst);
}

}  // namespace qorvane
