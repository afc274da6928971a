// atan z in extended precision, element by element: complexAtanh, turned.
#include "complex/certified/elements.h"
#include "complex/inverse.h"
#include "complex/scalar.h"

namespace qorvane {
namespace {

// atan z = -i atanh(iz). A NaN keeps its sign through both turns.
INLINE Complex64 complexAtan(Complex64 z) {
  const Complex64 result = complexAtanh({negatedUnlessNaN(z.im), z.re});
  return {result.im, negatedUnlessNaN(result.re)};
}

}  // namespace

template <>
Complex64 element<Function::atan>(Complex64 z) {
  return complexAtan(z);
}
template <>
nuvStatus elements<Function::atan>(const Complex64* src, Complex64* dst, int64_t len) {
  return complexLoop<complexAtan>(src, dst, len);
}

}  // namespace qorvane
