// The tables of the arithmetic in pairs of numbers: one copy for the sources of all levels.
#pragma once
#include "frame/bits.h"

namespace qorvane {

extern const Float64 sqrtSeedTable[513];  // algebraic/sqrt_tables.inc
extern const Float64 lnTable64[65][4];    // hyperbolic/ln_64_tables.inc

}  // namespace qorvane
