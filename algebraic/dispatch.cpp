// The dispatch tables of division and roots.
#include "frame/dispatch.h"

namespace qorvane {

RealUnaryKernel invLevels1To4, invLevel5;
extern constexpr DispatchTable<RealUnaryKernel> invKernels = twoVariants(invLevels1To4, invLevel5);

RealBinaryKernel divLevels1To4, divLevel5;
extern constexpr DispatchTable<RealBinaryKernel> divKernels = twoVariants(divLevels1To4, divLevel5);

}  // namespace qorvane
