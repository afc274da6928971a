// The tables of the inverse functions in lanes, shared by all levels.
#include "complex/certified/inverse_tables.h"

namespace qorvane {

#include "complex/certified/certified_inverse_tables.inc"

}  // namespace qorvane
