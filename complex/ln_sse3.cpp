// ln(x + iy), levels 1 to 4: complex/ln_blocks.h with this level's registers.
#include "complex/ln_blocks.h"

namespace qorvane {

nuvStatus complexLnSse3(const Complex64* src, Complex64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::clearRounding, loop, X87::fix>(len, src, dst);
}

}  // namespace qorvane
