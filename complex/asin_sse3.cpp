// asin z, all levels: complexAsinh for each element, turned.
#include "complex/inverse.h"
#include "complex/scalar.h"

namespace qorvane {
namespace {

// asin z = -i asinh(iz). A NaN keeps its sign through both turns.
INLINE Complex64 complexAsin(Complex64 z) {
  const Complex64 result = complexAsinh({negatedUnlessNaN(z.im), z.re});
  return {result.im, negatedUnlessNaN(result.re)};
}

nuvStatus loop(const Complex64* src, Complex64* dst, int64_t len) { return complexLoop<complexAsin>(src, dst, len); }

}  // namespace

nuvStatus complexAsinSse3(const Complex64* src, Complex64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, loop, X87::fix>(len, src, dst);
}

}  // namespace qorvane
