// cbrt(x) and 1/cbrt(x), levels 1 to 4.
#include "algebraic/cbrt.h"

namespace qorvane {

nuvStatus cbrtSse3(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop<Cbrt>>(len, src, dst);
}
nuvStatus invCbrtSse3(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop<InvCbrt>>(len, src, dst);
}

}  // namespace qorvane
