// The approximation of 1/sqrt(x) that square roots and their reciprocals begin with, for positive normal x, and what both have in common after it.
//
// x is u times an even power of 2 with u in [1, 4), cut to single precision. The processor's reciprocal square root of u, good to 1.5 * 2^-12, is cut to 20
// fraction bits, which leaves the low word of the seed zero: its products with halves of x are exact.
#pragma once
#include "frame/lanes.h"

namespace qorvane {
namespace {

// The lanes that aren't positive normal numbers, from the high words.
[[gnu::always_inline]] inline Words4 notPositiveNormal(Words4 highWords) {
  constexpr int smallest = 0x00100000, offset = static_cast<int>(0x80000000) + smallest;  // in wrapping 32-bit arithmetic
  return (highWords - offset) > static_cast<int>(0xffdfffff);
}

// u of four elements: the lowest exponent bit and 23 fraction bits; an odd biased exponent belongs to [1, 2), an even one to [2, 4).
[[gnu::always_inline]] inline __m128 reducedSingles(Lanes2 a, Lanes2 b) {
  const Words4 fractions = packHighWords(reinterpret_cast<Lanes2>(bitsOf(a) << 11), reinterpret_cast<Lanes2>(bitsOf(b) << 11));
  return reinterpret_cast<__m128>((fractions >> 8) + 0x40000000);
}

// The doubles with these high words, their low words zero.
struct TwoPairs {
  Lanes2 a, b;
};
[[gnu::always_inline]] inline TwoPairs fromHighWords(Words4 words) {
  const __m128i zero = _mm_setzero_si128();
  return {reinterpret_cast<Lanes2>(_mm_unpacklo_epi32(zero, reinterpret_cast<__m128i>(words))),
          reinterpret_cast<Lanes2>(_mm_unpackhi_epi32(zero, reinterpret_cast<__m128i>(words)))};
}

// The seeds of four elements, with 20 fraction bits.
[[gnu::always_inline]] inline TwoPairs rootSeeds(Lanes2 a, Lanes2 b) {
  const Words4 root = reinterpret_cast<Words4>(_mm_rsqrt_ps(reducedSingles(a, b)));
  // The exponent of x, halved and negated; the constant also takes the bias of single precision off, and the cut fraction of x under it doesn't borrow.
  const Words4 exponents = (static_cast<int>(0xb00fffff) - packHighWords(a, b)) >> 1 & 0x7ff00000;
  return fromHighWords((root >> 3) + exponents);
}

// The first stage: seeds of the four elements at x to y, and the lanes that aren't ordinary.
[[gnu::always_inline]] inline Words4 storeRootSeeds(const Float64* x, Float64* y) {
  const Lanes2 a = load<Lanes2>(x), b = load<Lanes2>(x + 2);
  const TwoPairs seeds = rootSeeds(a, b);
  store(y, seeds.a);
  store(y + 2, seeds.b);
  return notPositiveNormal(packHighWords(a, b));
}

// 1/sqrt(x) = y (1 + p): p is the series of (1 + e)^(-1/2) - 1 in e = x y^2 - 1, |e| < 2^-10. The steps to p are cut in three for the loops.
template <class V>
[[gnu::always_inline]] inline V withoutLowWord(V x) {
  return andBits(x, broadcast<V>(fromBits(0xffffffff00000000)));
}
template <class V>
struct Residual {
  V y, e;
};
template <class V>
[[gnu::always_inline]] inline Residual<V> residual(V x, V y) {
  const V xh = withoutLowWord(x), xl = x - xh;
  const V y2 = y * y;
  return {y, (xh * y2 - 1.0) + xl * y2};
}
template <class V>
struct HalfSeries {
  V y, e, sum;
};
template <class V>
[[gnu::always_inline]] inline HalfSeries<V> halfSeries(Residual<V> r) {
  constexpr Float64 c5 = fromBits(0xbfcf800000000000);  // -0.24609375 = -63/256
  constexpr Float64 c4 = fromBits(0x3fd1800000000000);  // 0.2734375 = 35/128
  constexpr Float64 c3 = fromBits(0xbfd4000000000000);  // -0.3125
  return {r.y, r.e, (c5 * r.e + c4) * r.e + c3};
}
template <class V>
[[gnu::always_inline]] inline V series(HalfSeries<V> h) {
  constexpr Float64 c2 = fromBits(0x3fd8000000000000);  // 0.375
  constexpr Float64 c1 = fromBits(0xbfe0000000000000);  // -0.5
  return ((h.sum * h.e + c2) * h.e + c1) * h.e;
}
[[gnu::always_inline]] inline Float64 rootSeed(Float64 x) { return rootSeeds(_mm_set_sd(x), _mm_set_sd(1.0)).a[0]; }

constexpr Float64 subnormalScale = fromBits(0x4350000000000000);      // 2^54
constexpr Float64 subnormalRootScale = fromBits(0x41a0000000000000);  // 2^27

}  // namespace
}  // namespace qorvane
