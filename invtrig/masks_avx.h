// Masks at level 5 as the inverse functions want them.
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

// a where the mask's sign bit is set, b elsewhere. The instruction stands here because g++ makes
// a 64-bit comparison of its intrinsic, and of that four tests and branches.
INLINE Float64 choose(Float64 mask, Float64 a, Float64 b) { return toBits(mask) >> 63 != 0 ? a : b; }
INLINE Lanes4 choose(Lanes4 mask, Lanes4 a, Lanes4 b) {
  Lanes4 chosen;
  asm("vblendvpd %3, %2, %1, %0" : "=x"(chosen) : "x"(b), "xm"(a), "x"(mask));
  return chosen;
}
template <int K>
INLINE Pack<Lanes4, K> choose(Pack<Lanes4, K> mask, Pack<Lanes4, K> a, Pack<Lanes4, K> b) {
  return makePack<K>([&](int i) INLINED { return choose(mask.part[i], a.part[i], b.part[i]); });
}

}  // namespace
}  // namespace qorvane
