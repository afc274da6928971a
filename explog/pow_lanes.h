// The scalar routines of x^y: they take every argument. Each has its own arithmetic, so that
// results may differ in the last bit.
#pragma once
#include "frame/element.h"

namespace qorvane {

using PowScalarRoutine = Element(Float64 x, Float64 y);
PowScalarRoutine powFixLane;      // for the long program; raises no flag but those of its arithmetic
PowScalarRoutine powSpecialLane;  // for the short one; a status is raised by its arithmetic too

}  // namespace qorvane
