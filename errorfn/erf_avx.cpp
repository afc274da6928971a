// erf(x), level 5.
//
// Method: a polynomial on each of 46 rows (erf.h); below 2^-512 the product with 2 / sqrt(pi),
// which is made as high + low far from the subnormal numbers and brought down.
//
// Error: at most 0.80 ulp, between 4 and 4.5 where erf is all but 1; below 0.125 at most 0.64 ulp,
// elsewhere 0.60; in round-to-nearest. Rounding mode, FTZ and DAZ are the caller's.
//
// Special values: zeros give themselves, infinities and |x| from 6 up the 1 of their sign, NaNs
// themselves, quiet. No element fails.
#include "errorfn/erf.h"
#include "frame/kernel_frame.h"
#include "frame/pipeline.h"

namespace qorvane {
namespace {

constexpr int fastFrom = 0x1ff00000, fastTo = 0x7ff00000;  // the high words of 2^-512 and infinity

// NaNs and |x| below 2^-512.
[[gnu::noinline, gnu::cold]] Element erfSpecialLane(Float64 x) {
  constexpr Float64 normalFrom = fromBits(0x000e2dfc48da77b5);  // 1.971920364530142e-308: the results are normal
  constexpr Float64 splitter = 134217729.0;                     // 2^27 + 1
  return erfOutside(x, normalFrom, [](Float64 s) {
    const Float64 c = s * splitter;
    return c - (c - s);
  });
}

// Infinities count as inside: what is beyond 6 gives 1.
INLINE Lanes4 isInside(Lanes4 a) { return _mm256_cmp_pd(a, _mm256_set1_pd(0x1p-512), _CMP_GE_OQ); }

// Stretches: the reduced arguments of a stretch go to memory, the polynomials are a pipeline over
// what stands there.
constexpr int64_t longestStretch = 256, shortestStretch = 16, vector = laneCount<Lanes4>;
struct Stretch {
  alignas(32) Float64 u[longestStretch];
  alignas(32) int offsets[longestStretch];
};

// False if there are flagged elements.
INLINE bool reduceStretch(const Float64* x, int64_t count, Stretch& c) {
  Lanes4 inside = equalLanes(Lanes4{}, Lanes4{});
  for (int64_t i = 0; i < count; i += vector) {
    const Lanes4 a = magnitude(load<Lanes4>(x + i)), mask = isInside(a);
    inside = andBits(inside, mask);
    const auto reduced = erfReduce(andBits(a, mask));
    store(c.u + i, reduced.u), storeWords(c.offsets + i, reduced.offset);
  }
  return signMask(inside) == 15;
}

INLINE void evaluateStretch(const Float64* src, Float64* dst, int64_t count, const Stretch& c) {
  Lanes4 high, middle;
  const auto u = [&](int64_t i) INLINED { return load<Lanes4>(c.u + i); };
  const auto rows = [&](int64_t i) INLINED { return Rows{erfRows, c.offsets + i}; };
  pipeline<vector>(
      count, [&](int64_t i) INLINED { high = erfHighTerms(u(i), rows(i)); },
      [&](int64_t i) INLINED { middle = erfMiddleTerms(high, u(i), rows(i)); },
      [&](int64_t i) INLINED { store(dst + i, orBits(erfSum(middle, u(i), rows(i)), signOf(load<Lanes4>(src + i)))); });
}

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  if (len == 1 && !anyHighWordOutside(*src, fastFrom, fastTo))
    return *dst = erfCore(*src, fromBits(~uint64_t{0})), nuvStatusOk;
  return shortOrLongLoop<longestStretch, shortestStretch, vector>(
      len, inStages<Stretch, reduceStretch, evaluateStretch>,
      [](int64_t count, const Float64* x, Float64* y) INLINED {
        return unaryLoop<Lanes4, Raises::no>(
            x, y, count, [](Lanes4 v) INLINED { return erfCore(v, isInside(magnitude(v))); },
            [](auto v) INLINED { return anyHighWordOutside(v, fastFrom, fastTo); }, erfSpecialLane);
      },
      src, dst);
}

}  // namespace

nuvStatus erfAvx(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, loop>(len, src, dst);
}

}  // namespace qorvane
