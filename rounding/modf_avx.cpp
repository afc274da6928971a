// Modf, level 5. Method, error and special values: rounding/modf.h.
#include "rounding/modf.h"

namespace qorvane {

nuvStatus modfAvx(const Float64* src, Float64* dstA, Float64* dstB, int32_t len) {
  return modfKernel<Pack<Lanes4, 2>>(src, dstA, dstB, len);
}

}  // namespace qorvane
