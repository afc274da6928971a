// complexLn: the principal logarithm of one number, in extended precision: what the vectors of the logarithm leave out.
#pragma once
#include "frame/include/qorvane.h"

namespace qorvane {

Complex64 complexLn(Complex64 z);

}  // namespace qorvane
