// Floor, Ceil, Trunc, Round, Rint and NearbyInt, level 4.
//
// Method: the rounding instruction, with the direction as its operand; Rint and NearbyInt leave it
// to MXCSR. Round takes the even neighbour r of a tie and adds 1 with the sign of x where x - r is
// a half with the sign of x.
//
// Error: none. Zero results have the sign of x, but a zero of Round is +0: its last step is a sum
// with +0. All but NearbyInt raise inexact; Floor, Ceil, Trunc and Round lose it where they had to
// change MXCSR.
//
// Special values: infinity gives itself, NaN the NaN, quiet (a signalling one raises invalid). In
// Round an infinity raises invalid. There is no status.
#include "frame/kernel_frame.h"
#include "frame/loops.h"
#include "rounding/shifter.h"

namespace qorvane {
namespace {

using Block = Pack<Lanes2, 2>;

// `direction` is one of _MM_FROUND_...
template <int direction>
INLINE Lanes2 roundLanes(Lanes2 x) {
  return _mm_round_pd(x, direction);
}
template <int direction, int K>
INLINE Pack<Lanes2, K> roundLanes(Pack<Lanes2, K> x) {
  return makePack<K>([&](int i) INLINED { return roundLanes<direction>(x.part[i]); });
}

template <int direction>
nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  return plainLoop<Block>(src, dst, len, [](auto x) INLINED { return roundLanes<direction>(x); });
}

nuvStatus tiesAwayLoop(const Float64* src, Float64* dst, int64_t len) {
  return plainLoop<Block>(src, dst, len, [](auto x) INLINED {
    using V = decltype(x);
    const V sign = signOf(x), r = roundLanes<_MM_FROUND_TO_NEAREST_INT>(x);
    return r + andBits(equalLanes(x - r, orBits(sign, broadcast<V>(0.5))), orBits(sign, broadcast<V>(1.0)));
  });
}

}  // namespace

// clang-format off
nuvStatus floorSse41(const Float64* src, Float64* dst, int32_t len) { return runKernel<Check::pointersFirst, Mode::forceDown, loop<_MM_FROUND_FLOOR>>(len, src, dst); }
nuvStatus ceilSse41(const Float64* src, Float64* dst, int32_t len) { return runKernel<Check::pointersFirst, Mode::forceUp, loop<_MM_FROUND_CEIL>>(len, src, dst); }
nuvStatus truncSse41(const Float64* src, Float64* dst, int32_t len) { return runKernel<Check::pointersFirst, Mode::forceToZero, loop<_MM_FROUND_TRUNC>>(len, src, dst); }
nuvStatus roundSse41(const Float64* src, Float64* dst, int32_t len) { return runKernel<Check::pointersFirst, Mode::clearMode, tiesAwayLoop>(len, src, dst); }
nuvStatus rintSse41(const Float64* src, Float64* dst, int32_t len) { return runKernel<Check::pointersFirst, Mode::none, loop<_MM_FROUND_RINT>>(len, src, dst); }
nuvStatus nearbyIntSse41(const Float64* src, Float64* dst, int32_t len) { return runKernel<Check::pointersFirst, Mode::none, loop<_MM_FROUND_NEARBYINT>>(len, src, dst); }
// clang-format on

}  // namespace qorvane
