// cos z in extended precision, element by element: complex/cosh.h, turned.
#include "complex/certified/elements.h"
#include "complex/cosh.h"

namespace qorvane {
namespace {

// cos z = cosh(iz). A NaN keeps its sign.
INLINE Complex64 complexCos(Complex64 z) { return complexCosh({negatedUnlessNaN(z.im), z.re}); }

}  // namespace

template <>
Complex64 element<Function::cos>(Complex64 z) {
  return complexCos(z);
}
template <>
nuvStatus elements<Function::cos>(const Complex64* src, Complex64* dst, int64_t len) {
  return complexLoop<complexCos>(src, dst, len);
}

}  // namespace qorvane
