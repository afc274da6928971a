// The angles next to which others are: of the kernels in extended precision and of those in lanes.
#pragma once
#include "frame/bits.h"

namespace qorvane {

// Angles from 0 to pi as sums: atan(j/128) in row j, pi/2 -+ atan(j/128) in row 256 -+ j,
// pi - atan(j/128) in row 512 - j.
struct alignas(16) AtanRow {
  Float64 hi, lo;
};
extern const AtanRow atanTable[513];

}  // namespace qorvane
