// a^b for one b, all levels: complex/pow.h for each element.
#include "complex/pow.h"

namespace qorvane {
namespace {

nuvStatus loop(const Complex64* a, Complex64 b, Complex64* dst, int64_t len) {
  for (int64_t i = 0; i < len; ++i) dst[i] = complexPow(a[i], b);
  return nuvStatusOk;
}

}  // namespace

nuvStatus complexPowxSse3(const Complex64* a, Complex64 b, Complex64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, loop, X87::fix>(len, a, b, dst);
}

}  // namespace qorvane
