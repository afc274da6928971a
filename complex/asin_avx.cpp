// asin z, level 5: in lanes (complex/certified/inverse_strip.h), with the bits of complex/asinh.cpp.
#include "complex/certified/inverse_strip.h"

namespace qorvane {

nuvStatus complexAsinAvx(const Complex64* src, Complex64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, inverseLoop<Function::asin, Lanes4, Lanes4>, X87::fix>(len, src,
                                                                                                          dst);
}

}  // namespace qorvane
