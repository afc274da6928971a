// 1/sqrt(x), level 5.
#include "algebraic/invsqrt.h"

namespace qorvane {

nuvStatus invSqrtAvx(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, rootLoop<stretch, inStages>>(len, src, dst);
}

}  // namespace qorvane
