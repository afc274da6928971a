// Floor, Ceil, Trunc, Round, Rint and NearbyInt, level 5. MXCSR is the caller's.
//
// Method: the rounding instruction, with the direction as its operand; Rint and NearbyInt leave it
// to MXCSR. Round has no direction of the instruction: it adds and takes off a shifter
// (rounding/shifter.h), and adds 1 to the ties that round-to-nearest took down to an even number.
//
// Error: none; Round's holds in round-to-nearest, in other modes its sum rounds as they say. Zero
// results have the sign of x, but for Round when the caller rounds down: there a zero is -0. All
// but NearbyInt raise inexact.
//
// Special values: infinity gives itself, NaN the NaN, quiet (a signalling one raises invalid). In
// Round an infinity raises invalid, and numbers above 2^52, which come back as they are, may raise
// inexact. There is no status.
#include "frame/kernel_frame.h"
#include "frame/loops.h"
#include "rounding/shifter.h"

namespace qorvane {
namespace {

// `direction` is one of _MM_FROUND_...
template <int direction>
INLINE Lanes4 roundLanes(Lanes4 x) {
  return _mm256_round_pd(x, direction);
}
template <int direction, int K>
INLINE Pack<Lanes4, K> roundLanes(Pack<Lanes4, K> x) {
  return makePack<K>([&](int i) INLINED { return roundLanes<direction>(x.part[i]); });
}

template <int direction>
nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  return plainLoop<Pack<Lanes4, 4>>(src, dst, len, [](auto x) INLINED { return roundLanes<direction>(x); });
}

// y, but x where |x| = a is above 2^52. A NaN isn't.
INLINE Lanes4 orItself(Lanes4 a, Lanes4 y, Lanes4 x) {
  // Not _mm256_blendv_pd: g++ 12 makes an integer comparison of its mask, and takes that apart into
  // branches when there is no AVX2.
  const Lanes4 above = _mm256_cmp_pd(a, broadcast<Lanes4>(shifter), _CMP_GT_OQ);
  return orBits<Lanes4>(_mm256_andnot_pd(above, y), andBits(above, x));
}
template <int K>
INLINE Pack<Lanes4, K> orItself(Pack<Lanes4, K> a, Pack<Lanes4, K> y, Pack<Lanes4, K> x) {
  return makePack<K>([&](int i) INLINED { return orItself(a.part[i], y.part[i], x.part[i]); });
}

nuvStatus tiesAwayLoop(const Float64* src, Float64* dst, int64_t len) {
  return plainLoop<Pack<Lanes4, 2>>(src, dst, len, [](auto x) INLINED {
    const auto a = magnitude(x);
    return orItself(a, orBits(tieAwayFromZero(a, integral(a)), signOf(x)), x);
  });
}

}  // namespace

// clang-format off
nuvStatus floorAvx(const Float64* src, Float64* dst, int32_t len) { return runKernel<Check::lengthFirst, Mode::none, loop<_MM_FROUND_FLOOR>>(len, src, dst); }
nuvStatus ceilAvx(const Float64* src, Float64* dst, int32_t len) { return runKernel<Check::lengthFirst, Mode::none, loop<_MM_FROUND_CEIL>>(len, src, dst); }
nuvStatus truncAvx(const Float64* src, Float64* dst, int32_t len) { return runKernel<Check::lengthFirst, Mode::none, loop<_MM_FROUND_TRUNC>>(len, src, dst); }
nuvStatus roundAvx(const Float64* src, Float64* dst, int32_t len) { return runKernel<Check::lengthFirst, Mode::none, tiesAwayLoop>(len, src, dst); }
nuvStatus rintAvx(const Float64* src, Float64* dst, int32_t len) { return runKernel<Check::pointersFirst, Mode::none, loop<_MM_FROUND_RINT>>(len, src, dst); }
nuvStatus nearbyIntAvx(const Float64* src, Float64* dst, int32_t len) { return runKernel<Check::pointersFirst, Mode::none, loop<_MM_FROUND_NEARBYINT>>(len, src, dst); }
// clang-format on

}  // namespace qorvane
