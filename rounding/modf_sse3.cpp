// Modf, levels 1 to 4. Method, error and special values: rounding/modf.h.
#include "rounding/modf.h"

namespace qorvane {

nuvStatus modfSse3(const Float64* src, Float64* dstA, Float64* dstB, int32_t len) {
  return modfKernel<Pack<Lanes2, 2>>(src, dstA, dstB, len);
}

}  // namespace qorvane
