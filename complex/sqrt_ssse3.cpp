// The square root of x + iy, levels 2 to 4: complex/sqrt_blocks.h, which has the method, the
// error and the special values, with this level's registers.
#include "complex/sqrt_blocks.h"

namespace qorvane {

nuvStatus complexSqrtSsse3(const Complex64* src, Complex64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, loop, X87::fixDouble>(len, src, dst);
}

}  // namespace qorvane
