// The tables of the arithmetic in pairs of numbers, shared by the sources of all levels.
#include "hyperbolic/pair_tables.h"

namespace qorvane {

#include "algebraic/sqrt_tables.inc"
#include "hyperbolic/ln_64_tables.inc"

}  // namespace qorvane
