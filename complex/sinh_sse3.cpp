// sinh z, levels 1 to 4: in lanes (complex/certified/strip.h), with the bits of complex/sinh.h.
#include "complex/certified/strip.h"

namespace qorvane {

nuvStatus complexSinhSse3(const Complex64* src, Complex64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, certifiedLoop<Function::sinh, Lanes2>, X87::fix>(len, src, dst);
}

}  // namespace qorvane
