// sqrt(x), levels 1 to 3.
//
// Method: a seed y of 20 fraction bits for 1/sqrt(x) from the processor's approximation, then
// sqrt(x) = x y (1 + p(e)) with the residual e = x y^2 - 1. x stands in halves, so that the largest
// term of the sum and the large product of the residual are exact.
//
// Error: at most 0.5006 ulp, 0.75 ulp for subnormal x. The kernel runs in round-to-nearest with
// subnormals honoured, whatever the caller's mode.
//
// Special values: NaN gives the NaN, quiet, +Inf, +0 and -0 give themselves; negative numbers and
// -Inf give the default NaN, and out of domain. None of them leaves a flag but a signalling NaN,
// which raises invalid.
#include "algebraic/root_loop.h"
#include "algebraic/root_series.h"
#include "frame/kernel_frame.h"

namespace qorvane {
namespace {

struct Steps : RootSteps<withoutLowWord>, Series {};

[[gnu::noinline, gnu::cold]] Element sqrtFixLane(Float64 x) {
  const uint64_t b = toBits(x), magnitude = b & 0x7fffffffffffffff;
  if (magnitude > 0x7ff0000000000000) return {x * opaque(1.0)};
  if (magnitude == 0 || b == 0x7ff0000000000000) return {x};
  if (b != magnitude) return {fromBits(0xfff8000000000000), nuvStatusOutOfDomain};
  if (b >= 0x0010000000000000) return {rootOf<Steps>(x, rootSeed(x))};

  // Seed and polynomial of the scaled number serve x itself, but for the root of the scale. The
  // halves of x have fewer bits than those of a normal number, and the three terms are rounded to
  // multiples of the same small unit: hence the larger error.
  const Float64 scaled = x * subnormalScale;
  const Float64 y = rootSeed(scaled);
  return {rootFrom<Steps>(seriesOf<Steps>(scaled, y), x, y) * subnormalRootScale};
}

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  return rootLoop<Steps, twentyBits, Raises::no>(src, dst, len, sqrtFixLane);
}

}  // namespace

nuvStatus sqrtSse3(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop>(len, src, dst);
}

}  // namespace qorvane
