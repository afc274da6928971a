// sqrt(x), levels 1 to 3.
//
// Method: a seed y of 20 fraction bits for 1/sqrt(x) from the processor's approximation, then
// sqrt(x) = x y (1 + p(e)) with the residual e = x y^2 - 1. x stands in halves, so that the largest
// term of the sum and the large product of the residual are exact.
//
// Error: at most 0.5004 ulp, 0.75 ulp for subnormal x. The kernel runs in round-to-nearest with
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

template <class V>
INLINE V upperPart(V x) {
  return andBits(x, broadcast<V>(fromBits(0xffffffff00000000)));
}
constexpr auto begin = []<class V>(V x, V y) INLINED {
  const V y2 = y * y, high = upperPart(x);
  return firstStep((high * y2 - 1.0) + (x - high) * y2);
};
constexpr auto root = []<class V>(V s, V x, V y) INLINED {
  const V high = upperPart(x);
  return y * high + (y * (x - high) + x * (s * y));
};

Float64 rootOf(Float64 x, Float64 y) { return root(series(begin(x, y)), x, y); }

[[gnu::noinline, gnu::cold]] Element sqrtFixLane(Float64 x) {
  const uint64_t b = toBits(x), magnitude = b & 0x7fffffffffffffff;
  if (magnitude > 0x7ff0000000000000) return {x * opaque(1.0)};
  if (magnitude == 0 || b == 0x7ff0000000000000) return {x};
  if (b != magnitude) return {fromBits(0xfff8000000000000), nuvStatusOutOfDomain};
  if (b >= 0x0010000000000000) return {rootOf(x, rootSeed(x))};

  // Seed and polynomial of the scaled number serve x itself, but for the root of the scale. The
  // halves of x have fewer bits than those of a normal number, and the three terms are rounded to
  // multiples of the same small unit: hence the larger error.
  const Float64 scaled = x * subnormalScale;
  const Float64 y = rootSeed(scaled);
  return {root(series(begin(scaled, y)), x, y) * subnormalRootScale};
}

[[gnu::noinline]] nuvStatus inStages(const Float64* src, Float64* dst, int64_t len) {
  return seededLoop<twentyBits, Raises::no>(src, dst, len, begin, series, root, sqrtFixLane);
}

// The seed is short enough for its products with the parts of x to be exact: y times such a product
// is what y^2, exact too, times the part would be, if that isn't subnormal.
bool stretch(const Float64* src, Float64* dst, int64_t count) {
  using V = Part;
  Scratch c;
  V y, high, low, highY, lowY, s, all = broadcast<V>(0.0);
  Partial<V> p0, p1, p2;
  pipeline<vector>(
      count, [&](int64_t i) INLINED { storeEstimates<twentyBits>(c.estimates + i, load<V>(src + i)); }, pause, pause,
      pause,
      [&](int64_t i) INLINED {
        const V x = load<V>(src + i), upper = upperPart(x);
        y = seedsFrom(c.estimates + i);
        high = y * upper, low = y * (x - upper);
        store(c.seeds + i, y), store(c.high + i, high), store(c.low + i, low);
      },
      [&](int64_t) INLINED { highY = y * high, lowY = y * low; },
      [&](int64_t) INLINED {
        p0 = firstStep((highY - 1.0) + lowY);
        all = all + p0.e;
      },
      [&](int64_t) INLINED { p1 = secondStep(p0); }, [&](int64_t) INLINED { p2 = thirdStep(p1); },
      [&](int64_t) INLINED { s = lastStep(p2); },
      [&](int64_t i) INLINED {
        const V xs = load<V>(src + i) * (s * load<V>(c.seeds + i));
        store(dst + i, load<V>(c.high + i) + (load<V>(c.low + i) + xs));
      });
  return allInRange(all);
}

}  // namespace

nuvStatus sqrtSse3(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, rootLoop<stretch, inStages>>(len, src, dst);
}

}  // namespace qorvane
