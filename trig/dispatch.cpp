// The dispatch tables of the trigonometric functions.
#include "frame/dispatch.h"

namespace qorvane {

RealUnaryKernel tanLevels1To4, tanLevel5;
extern constexpr DispatchTable<RealUnaryKernel> tanKernels = twoVariants(tanLevels1To4, tanLevel5);

}  // namespace qorvane
