// cos z, all levels: complex/cosh.h for each element, turned; it has the method, the error and the
// special values, which hold for the turned parts.
#include "complex/cosh.h"

namespace qorvane {
namespace {

// cos z = cosh(iz). A NaN keeps its sign.
INLINE Complex64 complexCos(Complex64 z) { return complexCosh({negatedUnlessNaN(z.im), z.re}); }

nuvStatus loop(const Complex64* src, Complex64* dst, int64_t len) { return complexLoop<complexCos>(src, dst, len); }

}  // namespace

nuvStatus complexCosSse3(const Complex64* src, Complex64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, loop, X87::fix>(len, src, dst);
}

}  // namespace qorvane
