// sin z in extended precision, element by element: complex/sinh.h, turned.
#include "complex/certified/elements.h"
#include "complex/sinh.h"

namespace qorvane {
namespace {

// sin z = -i sinh(iz). A NaN keeps its sign through both turns.
INLINE Complex64 complexSin(Complex64 z) {
  const Complex64 result = complexSinh({negatedUnlessNaN(z.im), z.re});
  return {result.im, negatedUnlessNaN(result.re)};
}

}  // namespace

template <>
Complex64 element<Function::sin>(Complex64 z) {
  return complexSin(z);
}
template <>
nuvStatus elements<Function::sin>(const Complex64* src, Complex64* dst, int64_t len) {
  return complexLoop<complexSin>(src, dst, len);
}

}  // namespace qorvane
