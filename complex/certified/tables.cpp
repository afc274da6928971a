// The tables of the lanes, shared by all levels.
#include "complex/certified/tables.h"

namespace qorvane {

#include "complex/certified/certified_tables.inc"

}  // namespace qorvane
