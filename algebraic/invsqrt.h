// 1/sqrt(x), every level: the program that invsqrt_sse3.cpp and invsqrt_avx.cpp compile for their
// registers.
//
// Method: a seed y of 20 fraction bits from the processor's approximation, then y + y p(e) with the
// residual e = x y^2 - 1 from x in halves, whose large product is exact.
//
// Error: at most 0.5002 ulp. The kernels run in round-to-nearest with subnormals honoured, whatever
// the caller's mode.
//
// Special values: NaN gives the NaN, quiet, +Inf +0; +0 and -0 give +Inf and -Inf, and a pole;
// negative numbers and -Inf the default NaN, and out of domain. None of them leaves a flag but a
// signalling NaN, which raises invalid.
#pragma once
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
constexpr auto root = []<class V>(V s, V, V y) INLINED { return s * y + y; };
Float64 ofPositiveNormal(Float64 x) {
  const Float64 y = rootSeed(x);
  return root(series(begin(x, y)), x, y);
}

[[gnu::noinline, gnu::cold]] Element invSqrtFixLane(Float64 x) {
  const uint64_t b = toBits(x), magnitude = b & 0x7fffffffffffffff;
  if (magnitude > 0x7ff0000000000000) return {x * opaque(1.0)};
  if (magnitude == 0) return {fromBits(b | 0x7ff0000000000000), nuvStatusPole};
  if (b != magnitude) return {fromBits(0xfff8000000000000), nuvStatusOutOfDomain};
  if (b == 0x7ff0000000000000) return {0.0};
  if (b < 0x0010000000000000) return {ofPositiveNormal(x * subnormalScale) * subnormalRootScale};
  return {ofPositiveNormal(x)};
}

[[gnu::noinline]] nuvStatus inStages(const Float64* src, Float64* dst, int64_t len) {
  return seededLoop<twentyBits, Raises::no>(src, dst, len, begin, series, root, invSqrtFixLane);
}

bool stretch(const Float64* src, Float64* dst, int64_t count) {
  using V = Part;
  Scratch c;
  V y2, high, low, s, all = broadcast<V>(0.0);
  Partial<V> p0, p1, p2;
  pipeline<vector>(
      count, [&](int64_t i) INLINED { storeEstimates<twentyBits>(c.estimates + i, load<V>(src + i)); }, pause, pause,
      pause,
      [&](int64_t i) INLINED {
        const V y = seedsFrom(c.estimates + i);
        store(c.seeds + i, y);
        y2 = y * y;
      },
      [&](int64_t i) INLINED {
        const V x = load<V>(src + i), upper = upperPart(x);
        high = upper * y2, low = (x - upper) * y2;
      },
      [&](int64_t) INLINED {
        p0 = firstStep((high - 1.0) + low);
        all = all + p0.e;
      },
      [&](int64_t) INLINED { p1 = secondStep(p0); }, [&](int64_t) INLINED { p2 = thirdStep(p1); },
      [&](int64_t) INLINED { s = lastStep(p2); },
      [&](int64_t i) INLINED {
        const V y = load<V>(c.seeds + i);
        store(dst + i, s * y + y);
      });
  return allInRange(all);
}

}  // namespace
}  // namespace qorvane
