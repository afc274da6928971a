// asinh z in extended precision, element by element.
#include "complex/certified/elements.h"
#include "complex/inverse.h"
#include "complex/scalar.h"

namespace qorvane {

template <>
Complex64 element<Function::asinh>(Complex64 z) {
  return complexAsinh(z);
}
template <>
nuvStatus elements<Function::asinh>(const Complex64* src, Complex64* dst, int64_t len) {
  return complexLoop<complexAsinh>(src, dst, len);
}

}  // namespace qorvane
