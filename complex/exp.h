// complexExp: e^x (cos y + i sin y), the exponential of one number: what the vectors of the
// exponential and the powers in lanes leave out. complexExpExtended gives the same by the extended
// kernels alone, in any rounding mode.
#pragma once
#include "frame/include/qorvane.h"

namespace qorvane {

Complex64 complexExp(Complex64 z);
Complex64 complexExpExtended(Complex64 z);

}  // namespace qorvane
