// The dispatch tables of the exponential, logarithms and powers.
#include "frame/dispatch.h"

namespace qorvane {

RealUnaryKernel expLevels1To4, expLevel5;
extern constexpr DispatchTable<RealUnaryKernel> expKernels = twoVariants(expLevels1To4, expLevel5);

}  // namespace qorvane
