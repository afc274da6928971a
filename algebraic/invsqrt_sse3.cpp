// 1/sqrt(x), levels 1 to 4.
#include "algebraic/invsqrt.h"

namespace qorvane {

nuvStatus invSqrtSse3(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, rootLoop<stretch, inStages>>(len, src, dst);
}

}  // namespace qorvane
