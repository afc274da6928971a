// asin(x), levels 1 to 4.
//
// Method: asin_acos_sse3.h. Above 1/2 the terms of pi/2 - 2 asin(sqrt z) are added so that the two
// large ones meet last.
//
// Error: largest found 0.860 ulp, just above 1/2 (docs/accuracy.md has the arguments). The kernel
// runs in round-to-nearest with subnormals honoured, whatever the caller's mode.
//
// Special values: 1 and -1 give +-pi/2, a NaN itself, quiet; magnitudes above 1 the default NaN and
// out of domain, without a flag.
#include "frame/kernel_frame.h"
#include "invtrig/asin_acos_sse3.h"

namespace qorvane {
namespace {

// pi/2 is added in two halves: either sum is then rounded to the result's own precision.
constexpr auto finish = [](auto x, auto t) INLINED {
  using V = decltype(x);
  const V half = andBits(t.big, broadcast<V>(quarterPi));
  const V low = (andBits(t.big, broadcast<V>(halfPiLo)) + t.lo) + t.tail;
  return orBits((low + (t.hi + half)) + half, signOf(x));
};

constexpr auto atOne = [](Float64 x) { return orBits(halfPi, signOf(x)); };
constexpr auto ofNan = [](Float64 x) { return x + x; };

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) { return arcLoop<finish, atOne, ofNan>(src, dst, len); }

}  // namespace

nuvStatus asinSse3(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop>(len, src, dst);
}

}  // namespace qorvane
