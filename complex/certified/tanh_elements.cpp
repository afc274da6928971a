// tanh z in extended precision, element by element.
#include "complex/certified/elements.h"
#include "complex/tanh.h"

namespace qorvane {

template <>
Complex64 element<Function::tanh>(Complex64 z) {
  return complexTanh(z);
}
template <>
nuvStatus elements<Function::tanh>(const Complex64* src, Complex64* dst, int64_t len) {
  return complexLoop<complexTanh>(src, dst, len);
}

}  // namespace qorvane
