// The tables of x^y, shared by the sources of all levels.
#include "explog/pow_tables.h"

namespace qorvane {

#include "explog/pow_tables.inc"

}  // namespace qorvane
