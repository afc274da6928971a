// sinh z in extended precision, element by element.
#include "complex/certified/elements.h"
#include "complex/sinh.h"

namespace qorvane {

template <>
Complex64 element<Function::sinh>(Complex64 z) {
  return complexSinh(z);
}
template <>
nuvStatus elements<Function::sinh>(const Complex64* src, Complex64* dst, int64_t len) {
  return complexLoop<complexSinh>(src, dst, len);
}

}  // namespace qorvane
