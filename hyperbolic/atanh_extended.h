// atanh in x87 extended precision, from which its bits come.
#pragma once
#include "frame/element.h"

namespace qorvane {

// Any element, alone. Returns its status.
nuvStatus atanhElement(const Float64* src, Float64* dst);

// The elements whose bit is set, of up to 64 arguments that begin with the first of a pair. Returns
// the status of the last failing element. The x87 unit has 64-bit significands and rounds to
// nearest.
nuvStatus atanhElements(const Float64* src, Float64* dst, int count, uint64_t set);

}  // namespace qorvane
