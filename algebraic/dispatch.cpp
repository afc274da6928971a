// The dispatch tables of division and roots.
#include "frame/dispatch.h"

namespace qorvane {

RealUnaryKernel invLevels1To4, invLevel5;
extern constexpr DispatchTable<RealUnaryKernel> invKernels = twoVariants(invLevels1To4, invLevel5);

RealBinaryKernel divLevels1To4, divLevel5;
extern constexpr DispatchTable<RealBinaryKernel> divKernels = twoVariants(divLevels1To4, divLevel5);

RealUnaryKernel sqrtLevels1To3, sqrtLevel4, sqrtLevel5;
extern constexpr DispatchTable<RealUnaryKernel> sqrtKernels = threeVariants(sqrtLevels1To3, sqrtLevel4, sqrtLevel5);

RealUnaryKernel invSqrtLevels1To4, invSqrtLevel5;
extern constexpr DispatchTable<RealUnaryKernel> invSqrtKernels = twoVariants(invSqrtLevels1To4, invSqrtLevel5);

RealUnaryKernel cbrtLevels1To4, cbrtLevel5;
extern constexpr DispatchTable<RealUnaryKernel> cbrtKernels = twoVariants(cbrtLevels1To4, cbrtLevel5);

RealUnaryKernel invCbrtLevels1To4, invCbrtLevel5;
extern constexpr DispatchTable<RealUnaryKernel> invCbrtKernels = twoVariants(invCbrtLevels1To4, invCbrtLevel5);

}  // namespace qorvane
