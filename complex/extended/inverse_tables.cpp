// The tables of the logarithms, the square root and the angles in extended precision.
#include "complex/extended/ext_atan2.h"
#include "complex/extended/ext_log.h"
#include "complex/extended/ext_sqrt.h"

namespace qorvane {

#include "complex/extended/atan_table.inc"
#include "complex/extended/inv_sqrt_table.inc"
#include "complex/extended/log_256_table.inc"

}  // namespace qorvane
