// tan z in extended precision, element by element: complex/tanh.h, turned.
#include "complex/certified/elements.h"
#include "complex/tanh.h"

namespace qorvane {
namespace {

// tan z = -i tanh(iz). A NaN keeps its sign through both turns.
INLINE Complex64 complexTan(Complex64 z) {
  const Complex64 result = complexTanh({negatedUnlessNaN(z.im), z.re});
  return {result.im, negatedUnlessNaN(result.re)};
}

}  // namespace

template <>
Complex64 element<Function::tan>(Complex64 z) {
  return complexTan(z);
}
template <>
nuvStatus elements<Function::tan>(const Complex64* src, Complex64* dst, int64_t len) {
  return complexLoop<complexTan>(src, dst, len);
}

}  // namespace qorvane
