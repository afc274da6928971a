// tanh z, all levels: complex/tanh.h for each element; it has the method, the error and the
// special values.
#include "complex/tanh.h"

namespace qorvane {
namespace {

nuvStatus loop(const Complex64* src, Complex64* dst, int64_t len) { return complexLoop<complexTanh>(src, dst, len); }

}  // namespace

nuvStatus complexTanhSse3(const Complex64* src, Complex64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, loop, X87::fix>(len, src, dst);
}

}  // namespace qorvane
