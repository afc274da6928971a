// cbrt(x) and 1/cbrt(x), level 5.
#include "algebraic/cbrt.h"

namespace qorvane {

nuvStatus cbrtAvx(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop<Cbrt>>(len, src, dst);
}
nuvStatus invCbrtAvx(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop<InvCbrt>>(len, src, dst);
}

}  // namespace qorvane
