// The dispatch of calls to the kernels of the processor's level.
#pragma once
#include <cstdint>

#include "frame/bits.h"
#include "frame/qorvane.h"

namespace qorvane {

using RealUnaryKernel = nuvStatus(const Float64* src, Float64* dst, int32_t len);
using RealBinaryKernel = nuvStatus(const Float64* srcA, const Float64* srcB, Float64* dst, int32_t len);
using RealSplitKernel = nuvStatus(const Float64* src, Float64* dstA, Float64* dstB, int32_t len);
using RealScalarKernel = nuvStatus(const Float64* src, Float64 value, Float64* dst, int32_t len);

// The kernels of a function for DispatchLevel 0 to 5. Level 0 has the kernel of level 1.
template <class Kernel>
struct DispatchTable {
  Kernel* level[6];
};

// The table of a function whose levels 1 to 4 are one program.
template <class Kernel>
constexpr DispatchTable<Kernel> twoVariants(Kernel* levels1To4, Kernel* level5) {
  return {{levels1To4, levels1To4, levels1To4, levels1To4, levels1To4, level5}};
}

// The table of a function that has a program of its own at level 4.
template <class Kernel>
constexpr DispatchTable<Kernel> threeVariants(Kernel* levels1To3, Kernel* level4, Kernel* level5) {
  return {{levels1To3, levels1To3, levels1To3, levels1To3, level4, level5}};
}

}  // namespace qorvane

// Set by the load hook before the first call; tests set it to run every level that the processor has.
extern "C" [[gnu::visibility("hidden")]] int32_t DispatchLevel;
