// The tables of asinh, acosh and atanh, shared by the sources of all levels.
#include "hyperbolic/inverse_tables.h"

namespace qorvane {

#include "algebraic/sqrt_tables.inc"
#include "hyperbolic/half_log_tables.inc"
#include "hyperbolic/ln_256_tables.inc"
#include "hyperbolic/ln_64_tables.inc"
#include "hyperbolic/log_of_sum_tables.inc"

}  // namespace qorvane
