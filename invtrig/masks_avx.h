// Comparisons at level 5 that NaNs may come to.
#pragma once
#include "frame/lanes.h"

namespace qorvane {
namespace {

// Whether a < b, without a flag where either is a quiet NaN.
INLINE Float64 quietlyLess(Float64 a, Float64 b) { return fromBits(-static_cast<uint64_t>(__builtin_isless(a, b))); }
INLINE Lanes4 quietlyLess(Lanes4 a, Lanes4 b) { return _mm256_cmp_pd(a, b, _CMP_LT_OQ); }
template <int K>
INLINE Pack<Lanes4, K> quietlyLess(Pack<Lanes4, K> a, Pack<Lanes4, K> b) {
  return makePack<K>([&](int i) INLINED { return quietlyLess(a.part[i], b.part[i]); });
}

// Mask of the numbers a with from <= a < to.
INLINE Lanes4 isWithin(Lanes4 a, Float64 from, Float64 to) {
  return withoutBits(quietlyLess(a, broadcast<Lanes4>(to)), quietlyLess(a, broadcast<Lanes4>(from)));
}

}  // namespace
}  // namespace qorvane
