// acosh z in extended precision, element by element.
#include "complex/certified/elements.h"
#include "complex/inverse.h"
#include "complex/scalar.h"

namespace qorvane {

template <>
Complex64 element<Function::acosh>(Complex64 z) {
  return complexAcosh(z);
}
template <>
nuvStatus elements<Function::acosh>(const Complex64* src, Complex64* dst, int64_t len) {
  return complexLoop<complexAcosh>(src, dst, len);
}

}  // namespace qorvane
