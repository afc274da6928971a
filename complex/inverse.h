// The inverse functions of one number, on which those of arrays are built.
#pragma once
#include "frame/include/qorvane.h"

namespace qorvane {

Complex64 complexAsinh(Complex64 z);
Complex64 complexAcos(Complex64 z);
Complex64 complexAcosh(Complex64 z);
Complex64 complexAtanh(Complex64 z);

}  // namespace qorvane
