// atanh in x87 extended precision, which defines its bits, and the table of its evaluation in lanes.
#pragma once
#include "frame/element.h"

namespace qorvane {

// hyperbolic/half_log_tables.inc
extern const Float64 halfLogTable[128][2];

// Any x, alone.
Element atanhLane(Float64 x);

// The elements whose bit is set, of up to 64 arguments src that begin with the first of a pair. Two
// ordinary arguments of a pair share a division. Returns the status of the last failing element.
// The x87 unit has 64-bit significands and rounds to nearest.
nuvStatus atanhElements(const Float64* src, Float64* dst, int count, uint64_t set);

}  // namespace qorvane
