// asinh z, levels 1 to 4: in lanes (complex/certified/inverse_strip.h), with the bits of complex/asinh.cpp.
#include "complex/certified/inverse_strip.h"

namespace qorvane {

nuvStatus complexAsinhSse3(const Complex64* src, Complex64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, inverseLoop<Function::asinh, Pack<Lanes2, 2>, Lanes2>, X87::fix>(
      len, src, dst);
}

}  // namespace qorvane
