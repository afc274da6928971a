// cbrt(x) and 1/cbrt(x), levels 1 to 4.
#include "algebraic/cbrt.h"

namespace qorvane {

nuvStatus cbrtLevels1To4(const Float64* src, Float64* dst, int32_t len) { return runKernel<Check::pointersFirst, Mode::clearMode, loop<Cbrt>>(len, src, dst); }
nuvStatus invCbrtLevels1To4(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop<InvCbrt>>(len, src, dst);
}

}  // namespace qorvane
