// cosh z in extended precision, element by element.
#include "complex/certified/elements.h"
#include "complex/cosh.h"

namespace qorvane {

template <>
Complex64 element<Function::cosh>(Complex64 z) {
  return complexCosh(z);
}
template <>
nuvStatus elements<Function::cosh>(const Complex64* src, Complex64* dst, int64_t len) {
  return complexLoop<complexCosh>(src, dst, len);
}

}  // namespace qorvane
