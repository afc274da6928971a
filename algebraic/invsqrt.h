// 1/sqrt(x), every level: the program that invsqrt_sse3.cpp and invsqrt_avx.cpp compile for their
// registers.
//
// Method: a seed y of 20 fraction bits from the processor's approximation, then y + y p(e) with the
// residual e = x y^2 - 1 from x in halves, whose large product is exact.
//
// Error: at most 0.5005 ulp. The kernels run in round-to-nearest with subnormals honoured, whatever
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

struct Steps : Series {
  static constexpr uint64_t highBits = withoutLowWord;
  static constexpr bool endsWithHalves = false;
  template <class V>
  INLINE static Halves<V> open(V, V y) {
    return {y * y, y};
  }
  template <class V>
  INLINE static Halves<V> terms(V x, V, Halves<V> opened) {
    const Halves<V> part = partsOf<Steps>(x);
    return {part.high * opened.high, part.low * opened.high};
  }
  template <class V>
  INLINE static Product<V> product(V series, V, V y) {
    return {series * y, y};
  }
  template <class V>
  INLINE static V result(Product<V> p, Halves<V>) {
    return p.value + p.y;
  }
};
Float64 ofPositiveNormal(Float64 x) { return rootOf<Steps>(x, rootSeed(x)); }

[[gnu::noinline, gnu::cold]] Element invSqrtFixLane(Float64 x) {
  const uint64_t b = toBits(x), magnitude = b & 0x7fffffffffffffff;
  if (magnitude > 0x7ff0000000000000) return {x * opaque(1.0)};
  if (magnitude == 0) return {fromBits(b | 0x7ff0000000000000), nuvStatusPole};
  if (b != magnitude) return {fromBits(0xfff8000000000000), nuvStatusOutOfDomain};
  if (b == 0x7ff0000000000000) return {0.0};
  if (b < 0x0010000000000000) return {ofPositiveNormal(x * subnormalScale) * subnormalRootScale};
  return {ofPositiveNormal(x)};
}

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  return rootLoop<Steps, twentyBits, Raises::no>(src, dst, len, invSqrtFixLane);
}

}  // namespace
}  // namespace qorvane
