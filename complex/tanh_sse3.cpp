// tanh z, levels 1 to 4: in lanes (complex/certified/strip.h), with the bits of complex/tanh.h.
#include "complex/certified/strip.h"

namespace qorvane {

nuvStatus complexTanhSse3(const Complex64* src, Complex64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, certifiedLoop<Function::tanh, Lanes2>, X87::fix>(len, src, dst);
}

}  // namespace qorvane
