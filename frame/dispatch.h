// The dispatch of calls to the kernels of the processor's level.
#pragma once
#include <cstdint>

#include "frame/bits.h"
#include "frame/include/qorvane.h"

namespace qorvane {

// The signatures of kernels, a name for each shape.
namespace shapes {
template <class Element>
using Unary = nuvStatus(const Element* src, Element* dst, int32_t len);
template <class Element>
using Binary = nuvStatus(const Element* srcA, const Element* srcB, Element* dst, int32_t len);
template <class Element>
using Scalar = nuvStatus(const Element* src, Element value, Element* dst, int32_t len);
using realUnary = Unary<Float64>;
using realBinary = Binary<Float64>;
using realSplit = nuvStatus(const Float64* src, Float64* dstA, Float64* dstB, int32_t len);
using realScalar = Scalar<Float64>;
using complexUnary = Unary<Complex64>;
using complexBinary = Binary<Complex64>;
using complexScalar = Scalar<Complex64>;
}  // namespace shapes

// A function's kernels for DispatchLevel 0 to 5. Level 0 has the kernel of level 1.
template <class Kernel>
struct DispatchTable {
  Kernel* level[6];
};

// A program is a run of neighbouring levels that one kernel serves. A function's programs are named
// by the endings of their sources, and so are these lists, which tell the levels that they begin
// at: with sse3_avx, <stem>Sse3 serves levels 1 to 4 and <stem>Avx level 5.
template <int count>
struct Programs {
  int firstLevel[count];
};
namespace programs {
constexpr Programs<1> sse3 = {{1}};
constexpr Programs<2> sse3_ssse3 = {{1, 2}}, sse3_avx = {{1, 5}};
constexpr Programs<3> sse3_ssse3_avx = {{1, 2, 5}}, sse3_sse41_avx = {{1, 4, 5}};
}  // namespace programs

template <class Kernel, int count>
constexpr DispatchTable<Kernel> tableOf(Programs<count> programs, Kernel* const (&kernels)[count]) {
  DispatchTable<Kernel> table{};
  for (int level = 0, program = 0; level < 6; ++level) {
    if (program + 1 < count && level == programs.firstLevel[program + 1]) ++program;
    table.level[level] = kernels[program];
  }
  return table;
}

}  // namespace qorvane

// Set by the load hook before the first call; tests set it to run every level that the processor
// has.
extern "C" [[gnu::visibility("hidden")]] int32_t DispatchLevel;
