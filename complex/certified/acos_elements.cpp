// acos z in extended precision, element by element.
#include "complex/certified/elements.h"
#include "complex/inverse.h"
#include "complex/scalar.h"

namespace qorvane {

template <>
Complex64 element<Function::acos>(Complex64 z) {
  return complexAcos(z);
}
template <>
nuvStatus elements<Function::acos>(const Complex64* src, Complex64* dst, int64_t len) {
  return complexLoop<complexAcos>(src, dst, len);
}

}  // namespace qorvane
