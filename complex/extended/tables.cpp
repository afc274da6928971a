// The tables of the kernels in extended precision that more than one source uses.
#include "complex/extended/ext_exp_steps.h"
#include "complex/extended/ext_tan.h"

namespace qorvane {

#include "complex/extended/exp_256_table.inc"
#include "complex/extended/tan_table.inc"

}  // namespace qorvane
