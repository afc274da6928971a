// The dispatch tables of the rounding functions.
#include "frame/dispatch.h"

namespace qorvane {

RealUnaryKernel floorLevels1To3, floorLevel4, floorLevel5;
extern constexpr DispatchTable<RealUnaryKernel> floorKernels = threeVariants(floorLevels1To3, floorLevel4, floorLevel5);

RealUnaryKernel ceilLevels1To3, ceilLevel4, ceilLevel5;
extern constexpr DispatchTable<RealUnaryKernel> ceilKernels = threeVariants(ceilLevels1To3, ceilLevel4, ceilLevel5);

RealUnaryKernel truncLevels1To3, truncLevel4, truncLevel5;
extern constexpr DispatchTable<RealUnaryKernel> truncKernels = threeVariants(truncLevels1To3, truncLevel4, truncLevel5);

RealUnaryKernel roundLevels1To3, roundLevel4, roundLevel5;
extern constexpr DispatchTable<RealUnaryKernel> roundKernels = threeVariants(roundLevels1To3, roundLevel4, roundLevel5);

// Without the rounding instruction NearbyInt can't help raising inexact: it is Rint.
RealUnaryKernel rintLevels1To3, rintLevel4, rintLevel5, nearbyIntLevel4, nearbyIntLevel5;
extern constexpr DispatchTable<RealUnaryKernel> rintKernels = threeVariants(rintLevels1To3, rintLevel4, rintLevel5);
extern constexpr DispatchTable<RealUnaryKernel> nearbyIntKernels = threeVariants(rintLevels1To3, nearbyIntLevel4, nearbyIntLevel5);

RealSplitKernel modfLevels1To4, modfLevel5;
extern constexpr DispatchTable<RealSplitKernel> modfKernels = twoVariants(modfLevels1To4, modfLevel5);

}  // namespace qorvane
