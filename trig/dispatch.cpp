// The dispatch tables of the trigonometric functions.
#include "frame/dispatch.h"

namespace qorvane {

RealUnaryKernel sinLevels1To4, sinLevel5, cosLevels1To4, cosLevel5, tanLevels1To4, tanLevel5;
RealSplitKernel sinCosLevels1To4, sinCosLevel5;
extern constexpr DispatchTable<RealUnaryKernel> sinKernels = twoVariants(sinLevels1To4, sinLevel5);
extern constexpr DispatchTable<RealUnaryKernel> cosKernels = twoVariants(cosLevels1To4, cosLevel5);
extern constexpr DispatchTable<RealSplitKernel> sinCosKernels = twoVariants(sinCosLevels1To4, sinCosLevel5);
extern constexpr DispatchTable<RealUnaryKernel> tanKernels = twoVariants(tanLevels1To4, tanLevel5);

}  // namespace qorvane
