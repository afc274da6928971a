// The tables of asinh, acosh and atanh: one copy for the sources of all levels. The .inc files say
// what the rows are.
#pragma once
#include "frame/bits.h"

namespace qorvane {

extern const Float64 sqrtSeedTable[513];     // algebraic/sqrt_tables.inc
extern const Float64 lnTable64[65][4];       // hyperbolic/ln_64_tables.inc
extern const Float64 lnTable256[256][4];     // hyperbolic/ln_256_tables.inc
extern const Float64 halfLogTable[128][2];   // hyperbolic/half_log_tables.inc
extern const Float64 logOfSumTable[256][2];  // hyperbolic/log_of_sum_tables.inc

}  // namespace qorvane
