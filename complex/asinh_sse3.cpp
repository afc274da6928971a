// asinh z, all levels: complexAsinh for each element.
#include "complex/inverse.h"
#include "complex/scalar.h"

namespace qorvane {
namespace {

nuvStatus loop(const Complex64* src, Complex64* dst, int64_t len) { return complexLoop<complexAsinh>(src, dst, len); }

}  // namespace

nuvStatus complexAsinhSse3(const Complex64* src, Complex64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, loop, X87::fix>(len, src, dst);
}

}  // namespace qorvane
