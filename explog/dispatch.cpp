// The dispatch tables of the exponential, logarithms and powers.
#include "frame/dispatch.h"

namespace qorvane {

RealUnaryKernel expLevels1To4, expLevel5;
extern constexpr DispatchTable<RealUnaryKernel> expKernels = twoVariants(expLevels1To4, expLevel5);

RealUnaryKernel lnLevels1To4, lnLevel5;
extern constexpr DispatchTable<RealUnaryKernel> lnKernels = twoVariants(lnLevels1To4, lnLevel5);

RealUnaryKernel log10Levels1To4, log10Level5;
extern constexpr DispatchTable<RealUnaryKernel> log10Kernels = twoVariants(log10Levels1To4, log10Level5);

RealBinaryKernel powLevels1To4, powLevel5;
extern constexpr DispatchTable<RealBinaryKernel> powKernels = twoVariants(powLevels1To4, powLevel5);

RealScalarKernel powxLevels1To4, powxLevel5;
extern constexpr DispatchTable<RealScalarKernel> powxKernels = twoVariants(powxLevels1To4, powxLevel5);

}  // namespace qorvane
