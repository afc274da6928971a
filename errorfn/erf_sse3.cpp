// erf(x), levels 1 to 4.
//
// Method: a polynomial on each of 46 rows (erf.h); below 2^-1015 the product with 2 / sqrt(pi),
// which is made as high + low far from the subnormal numbers and brought down.
//
// Error: at most 0.80 ulp, between 4 and 4.5 where erf is all but 1; below 0.125 at most 0.64 ulp,
// elsewhere 0.60. The kernel runs in round-to-nearest with subnormals honoured, whatever the
// caller's mode.
//
// Special values: zeros give themselves, infinities and |x| from 6 up the 1 of their sign, NaNs
// themselves, quiet. No element fails.
#include "errorfn/erf.h"
#include "frame/kernel_frame.h"
#include "frame/pipeline.h"

namespace qorvane {
namespace {

constexpr int fastFrom = 0x00800000, fastTo = 0x7ff00000;  // the high words of 2^-1015 and infinity

// Infinities, NaNs and |x| below 2^-1015.
[[gnu::noinline, gnu::cold]] Element erfSpecialLane(Float64 x) {
  constexpr Float64 normalFrom = fromBits(0x0010000000000000);
  return erfOutside(x, normalFrom, [](Float64 s) { return fromBits(toBits(s) & 0xfffffffff8000000); });
}

// Stretches: the chain of operations is too long for the processor to overlap it with the next
// vector's. So its stages are loops of their own, with numbers in memory in between.
constexpr int64_t longestStretch = 256, shortestStretch = 8, vector = laneCount<Four>;

INLINE bool stretch(const Float64* src, Float64* dst, int64_t count) {
  alignas(16) Float64 us[longestStretch], qs[longestStretch];
  alignas(16) int offsets[longestStretch];
  Four inside = equalLanes(Four{}, Four{});
  for (int64_t i = 0; i < count; i += vector) {
    const Four a = magnitude(load<Four>(src + i)), mask = highWordWithin(a, fastFrom, fastTo);
    inside = andBits(inside, mask);
    const auto reduced = erfReduce(andBits(a, mask));
    store(us + i, reduced.u), storeWords(offsets + i, reduced.offset);
  }
  if (signMask(inside) != 15) return false;
  const auto u = [&](int64_t i) INLINED { return load<Four>(us + i); };
  const auto q = [&](int64_t i) INLINED { return load<Four>(qs + i); };
  const auto rows = [&](int64_t i) INLINED { return Rows{erfRows, offsets + i}; };
  for (int64_t i = 0; i < count; i += vector) store(qs + i, erfHighTerms(u(i), rows(i)));
  for (int64_t i = 0; i < count; i += vector) store(qs + i, erfMiddleTerms(q(i), u(i), rows(i)));
  for (int64_t i = 0; i < count; i += vector)
    store(dst + i, orBits(erfSum(q(i), u(i), rows(i)), signOf(load<Four>(src + i))));
  return true;
}

constexpr auto isOutside = [](auto x) INLINED { return anyHighWordOutside(x, fastFrom, fastTo); };
constexpr auto core = [](auto x) INLINED { return erfCore(x, highWordWithin(magnitude(x), fastFrom, fastTo)); };

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  if (len == 1 && !isOutside(*src)) return *dst = core(*src), nuvStatusOk;
  return shortOrLongLoop<longestStretch, shortestStretch, vector>(
      len, [](int64_t count, const Float64* x, Float64* y) INLINED { return stretch(x, y, count); },
      [](int64_t count, const Float64* x, Float64* y)
          INLINED { return unaryLoop<Four, Raises::no>(x, y, count, core, isOutside, erfSpecialLane); },
      src, dst);
}

}  // namespace

nuvStatus erfSse3(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop>(len, src, dst);
}

}  // namespace qorvane
