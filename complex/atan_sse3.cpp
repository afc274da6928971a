// atan z, all levels: complexAtanh for each element, turned.
#include "complex/inverse.h"
#include "complex/scalar.h"

namespace qorvane {
namespace {

// atan z = -i atanh(iz). A NaN keeps its sign through both turns.
INLINE Complex64 complexAtan(Complex64 z) {
  const Complex64 result = complexAtanh({negatedUnlessNaN(z.im), z.re});
  return {result.im, negatedUnlessNaN(result.re)};
}

nuvStatus loop(const Complex64* src, Complex64* dst, int64_t len) { return complexLoop<complexAtan>(src, dst, len); }

}  // namespace

nuvStatus complexAtanSse3(const Complex64* src, Complex64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, loop, X87::fix>(len, src, dst);
}

}  // namespace qorvane
