// The tables of the logarithms and the inverse functions in lanes.
#pragma once
#include "frame/bits.h"

namespace qorvane {

// C next to 1/(1 + j/128), 14 bits, and -ln C.
struct alignas(32) Log1pRow {
  Float64 reciprocal, logHi, logLo, none;
};
// Half of the cosine of asin(j/128), as a short pair, and half of that angle.
struct alignas(32) AngleRow {
  Float64 cosHead, cosRest, angleHi, angleLo;
};
// atan(j/128) as a multiple of 2^-42 and the rest.
struct alignas(16) TangentRow {
  Float64 angleHi, angleLo;
};
extern const Log1pRow log1pRows[128];
extern const AngleRow angleRows[92];
extern const TangentRow tangentRows[129];

}  // namespace qorvane
