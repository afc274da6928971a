// complexExp: e^x (cos y + i sin y), the exponential of one number: what the vectors of the
// exponential leave out, and the last step of the power.
#pragma once
#include "frame/include/qorvane.h"

namespace qorvane {

Complex64 complexExp(Complex64 z);

}  // namespace qorvane
