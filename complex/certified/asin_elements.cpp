// asin z in extended precision, element by element: complexAsinh, turned.
#include "complex/certified/elements.h"
#include "complex/inverse.h"
#include "complex/scalar.h"

namespace qorvane {
namespace {

// asin z = -i asinh(iz). A NaN keeps its sign through both turns.
INLINE Complex64 complexAsin(Complex64 z) {
  const Complex64 result = complexAsinh({negatedUnlessNaN(z.im), z.re});
  return {result.im, negatedUnlessNaN(result.re)};
}

}  // namespace

template <>
Complex64 element<Function::asin>(Complex64 z) {
  return complexAsin(z);
}
template <>
nuvStatus elements<Function::asin>(const Complex64* src, Complex64* dst, int64_t len) {
  return complexLoop<complexAsin>(src, dst, len);
}

}  // namespace qorvane
