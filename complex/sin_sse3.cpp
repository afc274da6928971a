// sin z, all levels: complex/sinh.h for each element, turned; it has the method, the error and the
// special values, which hold for the turned parts.
#include "complex/sinh.h"

namespace qorvane {
namespace {

// sin z = -i sinh(iz). A NaN keeps its sign through both turns.
INLINE Complex64 complexSin(Complex64 z) {
  const Complex64 result = complexSinh({negatedUnlessNaN(z.im), z.re});
  return {result.im, negatedUnlessNaN(result.re)};
}

nuvStatus loop(const Complex64* src, Complex64* dst, int64_t len) { return complexLoop<complexSin>(src, dst, len); }

}  // namespace

nuvStatus complexSinSse3(const Complex64* src, Complex64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, loop, X87::fix>(len, src, dst);
}

}  // namespace qorvane
