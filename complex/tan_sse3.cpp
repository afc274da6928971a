// tan z, all levels: complex/tanh.h for each element, turned; it has the method, the error and the
// special values, which hold for the turned parts.
#include "complex/tanh.h"

namespace qorvane {
namespace {

// tan z = -i tanh(iz). A NaN keeps its sign through both turns.
INLINE Complex64 complexTan(Complex64 z) {
  const Complex64 result = complexTanh({negatedUnlessNaN(z.im), z.re});
  return {result.im, negatedUnlessNaN(result.re)};
}

nuvStatus loop(const Complex64* src, Complex64* dst, int64_t len) { return complexLoop<complexTan>(src, dst, len); }

}  // namespace

nuvStatus complexTanSse3(const Complex64* src, Complex64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, loop, X87::fix>(len, src, dst);
}

}  // namespace qorvane
