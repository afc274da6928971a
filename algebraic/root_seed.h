// The approximation of 1/sqrt(x) that square roots and their reciprocals begin with, for positive normal x, and what both have in common after it.
//
// x is u times an even power of 2 with u in [1, 4), cut to single precision. The processor's reciprocal square root of u, good to 1.5 * 2^-12, is cut to 20
// fraction bits, which leaves the low word of the seed zero: its products with halves of x are exact.
#pragma once
#include "frame/lanes.h"

namespace qorvane {
namespace {

// Whether any lane isn't a positive normal number.
template <class V>
[[gnu::always_inline]] inline bool anyNotPositiveNormal(V x) {
  constexpr int smallest = 0x00100000, offset = static_cast<int>(0x80000000) + smallest;  // in wrapping 32-bit arithmetic
  if constexpr (laneCount<V> == 1)
    return highWord(x) - smallest >= 0x7fe00000u;
  else
    return any((highWords(x) - offset) > static_cast<int>(0xffdfffff));
}

// The seeds of the four lanes of a and b.
struct TwoPairs {
  Lanes2 a, b;
};
[[gnu::always_inline]] inline TwoPairs rootSeeds(Lanes2 a, Lanes2 b) {
  // The lowest exponent bit and 31 fraction bits, then u: an odd biased exponent belongs to [1, 2), an even one to [2, 4).
  const Words4 fractions = packHighWords(reinterpret_cast<Lanes2>(bitsOf(a) << 11), reinterpret_cast<Lanes2>(bitsOf(b) << 11));
  const Words4 u = (fractions >> 8) + 0x40000000;
  const Words4 root = reinterpret_cast<Words4>(_mm_rsqrt_ps(reinterpret_cast<__m128>(u)));
  // The exponent of x, halved and negated; the constant also takes the bias of single precision off, and the cut fraction of x under it doesn't borrow.
  const Words4 exponents = (static_cast<int>(0xb00fffff) - packHighWords(a, b)) >> 1 & 0x7ff00000;
  const Words4 y = (root >> 3) + exponents, zero{};
  return {reinterpret_cast<Lanes2>(_mm_unpacklo_epi32(reinterpret_cast<__m128i>(zero), reinterpret_cast<__m128i>(y))),
          reinterpret_cast<Lanes2>(_mm_unpackhi_epi32(reinterpret_cast<__m128i>(zero), reinterpret_cast<__m128i>(y)))};
}
[[gnu::always_inline]] inline Float64 rootSeed(Float64 x) { return rootSeeds(_mm_set_sd(x), _mm_setzero_pd()).a[0]; }
[[gnu::always_inline]] inline Lanes2 rootSeed(Lanes2 x) { return rootSeeds(x, x).a; }
#ifdef __AVX__
[[gnu::always_inline]] inline Lanes4 rootSeed(Lanes4 x) {
  const TwoPairs y = rootSeeds(_mm256_castpd256_pd128(x), _mm256_extractf128_pd(x, 1));
  return _mm256_insertf128_pd(_mm256_castpd128_pd256(y.a), y.b, 1);
}
#endif
template <class V, int K>
[[gnu::always_inline]] inline Pack<V, K> rootSeed(Pack<V, K> x) {
  if constexpr (laneCount<V> == 2) {
    const auto pairs = makePack<K / 2>([&](int i) __attribute__((always_inline)) { return rootSeeds(x.part[2 * i], x.part[2 * i + 1]); });
    return makePack<K>([&](int i) __attribute__((always_inline)) { return i % 2 == 0 ? pairs.part[i / 2].a : pairs.part[i / 2].b; });
  } else {
    return makePack<K>([&](int i) __attribute__((always_inline)) { return rootSeed(x.part[i]); });
  }
}

// 1/sqrt(x) = y (1 + p): the series of (1 + e)^(-1/2) - 1 in e = x y^2 - 1, |e| < 2^-10.
template <class V>
struct RefinedSeed {
  V y, p, xh, xl;  // x = xh + xl, xh with a low word of zero
};
template <class V>
[[gnu::always_inline]] inline RefinedSeed<V> refinedSeed(V x) {
  constexpr Float64 c5 = fromBits(0xbfcf800000000000);  // -0.24609375 = -63/256
  constexpr Float64 c4 = fromBits(0x3fd1800000000000);  // 0.2734375 = 35/128
  constexpr Float64 c3 = fromBits(0xbfd4000000000000);  // -0.3125
  constexpr Float64 c2 = fromBits(0x3fd8000000000000);  // 0.375
  constexpr Float64 c1 = fromBits(0xbfe0000000000000);  // -0.5
  const V y = rootSeed(x);
  const V xh = andBits(x, broadcast<V>(fromBits(0xffffffff00000000))), xl = x - xh;
  const V y2 = y * y;
  const V e = (xh * y2 - 1.0) + xl * y2;
  return {y, ((((c5 * e + c4) * e + c3) * e + c2) * e + c1) * e, xh, xl};
}

constexpr Float64 subnormalScale = fromBits(0x4350000000000000);      // 2^54
constexpr Float64 subnormalRootScale = fromBits(0x41a0000000000000);  // 2^27

}  // namespace
}  // namespace qorvane
