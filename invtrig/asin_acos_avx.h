// What asin and acos share at level 5: the argument of the polynomial, and the loop.
//
// Below 1/2 asin(a) = A + A P(z) with A = a and z = a^2. From there up, with z = (1 - a) / 2, it is
// pi/2 - 2 asin(sqrt z), and 2 asin(sqrt z) = r (1 + P(z)): the same polynomial, with the root
// r = sqrt(2 (1 - a)) in two parts. They are made from the processor's approximation of a
// reciprocal root and a series, without a division or a square root.
#pragma once
#include "frame/pipeline.h"
#include "invtrig/inverse_constants.h"
#include "invtrig/masks_avx.h"

namespace qorvane {
namespace {

// P(z) = asin(A) / A - 1. Its upper eight coefficients are paired, twice (Estrin's scheme).
constexpr Float64 k0 = fromBits(0x3fa07520c70eb909);   // 0.03214361600781685
constexpr Float64 k1 = fromBits(0xbf90fb17f7dbb0ed);   // -0.016582846167623556
constexpr Float64 k2 = fromBits(0x3f943f44bfbc3bae);   // 0.01977260036715805
constexpr Float64 k3 = fromBits(0x3f7a583395d45ed5);   // 0.0064317717599562021
constexpr Float64 k4 = fromBits(0x3f88f8dc2afccad6);   // 0.012193412839768863
constexpr Float64 k5 = fromBits(0x3f8c6dbbcb88bd57);   // 0.013881175183171264
constexpr Float64 k6 = fromBits(0x3f91c6dcf538ad2e);   // 0.01736016508782006
constexpr Float64 k7 = fromBits(0x3f96e89cebdefadd);   // 0.022371723076271322
constexpr Float64 k8 = fromBits(0x3f9f1c72e13ad8be);   // 0.030381960865917483
constexpr Float64 k9 = fromBits(0x3fa6db6db3b445f8);   // 0.044642856775805429
constexpr Float64 k10 = fromBits(0x3fb333333337e0de);  // 0.075000000004254974
constexpr Float64 k11 = fromBits(0x3fc555555555529c);  // 0.1666666666666473

// The root is hi - corr with corr = c(e) (hi + lo) e - lo, where (hi + lo) y is 2 + e.
constexpr Float64 c3 = fromBits(0xbf918000993b24c3);  // -0.017089852669219818
constexpr Float64 c2 = fromBits(0x3fa400006f70d42d);  // 0.039062512973409326
constexpr Float64 c1 = fromBits(0xbfb7fffffffffe97);  // -0.093749999999994994
constexpr Float64 c0 = fromBits(0x3fcfffffffffff9d);  // 0.24999999999999725

INLINE __m128 singles(Lanes4 v) { return _mm256_cvtpd_ps(v); }
INLINE __m128 singles(Float64 v) { return _mm_cvtpd_ps(_mm_set1_pd(v)); }

// About 1/sqrt(t), to 12 bits.
template <class V>
INLINE V rootSeed(V t) {
  if constexpr (isPack<V>)
    return makePack<packSize<V>>([&](int i) INLINED { return rootSeed(t.part[i]); });
  else if constexpr (laneCount<V> == 1)
    return _mm_cvtps_pd(_mm_rsqrt_ps(singles(t)))[0];
  else
    return _mm256_cvtps_pd(_mm_rsqrt_ps(singles(t)));
}

// With s = 1 - a and the seed y.
template <class V>
struct Product {
  V hi, lo;  // of s and y
};
template <class V>
INLINE Product<V> productOf(V s, V y) {
  const V sh = andBits(s, broadcast<V>(fromBits(0xfffffffffc000000)));
  return {sh * y, (s - sh) * y};
}

// One element's terms, and the steps that they are made in.
template <class V>
struct ArcTerms {
  V notBig;    // mask: a is below 1/2
  V hi, corr;  // the root is hi - corr; of no use below 1/2
  V series;    // P(z)
};

template <class V>
INLINE V below(V a) {
  return quietlyLess(a, broadcast<V>(0.5));
}

template <class V>
INLINE V argumentOf(V a, V t) {  // z
  return select(below(a), a * a, t);
}
template <class V>
INLINE ArcTerms<V> arcTerms(V a) {
  const V s = 1.0 - a, t = s * 0.5, z = argumentOf(a, t), z2 = z * z;
  const V y = rootSeed(t);
  const auto [hi, lo] = productOf(s, y);
  const V e = (hi * y - 2.0) + lo * y;
  const V corr = (((c3 * e + c2) * e + c1) * e + c0) * ((hi + lo) * e) - lo;
  const V upper = ((k0 * z + k1) * z2 + (k2 * z + k3)) * (z2 * z2) + ((k4 * z + k5) * z2 + (k6 * z + k7));
  return {below(a), hi, corr, (((upper * z2 + (k8 * z + k9)) * z + k10) * z + k11) * z};
}

// Mask of |x| from 1 up.
template <class V>
INLINE V isOutlier(V x) {
  return quietlyLess(broadcast<V>(fromBits(0x3fefffffffffffff)), magnitude(x));
}

// Stretches without outliers and NaNs. A vector's chain of operations takes some ninety cycles; it is cut
// into stages. The operations are those of arcTerms, and so are the bits.
constexpr int64_t longestStretch = 320, shortestStretch = 24;
template <auto finish>
INLINE bool stretch(int64_t count, const Float64* src, Float64* dst) {
  using V = Lanes4;
  constexpr int64_t vector = laneCount<V>;
  alignas(32) Float64 ss[longestStretch], zs[longestStretch], corrs[longestStretch], ps[longestStretch];
  Float64* const his = ss;  // hi takes the place of s
  alignas(32) float seeds[longestStretch];
  V allWithin = broadcast<V>(-0.0);  // the sign bits count
  const auto prepare = [&](int64_t i) INLINED {
    const V x = load<V>(src + i), within = quietlyLess(magnitude(x), broadcast<V>(1.0));
    allWithin = andBits(allWithin, within);
    const V a = andBits(magnitude(x), within);  // zero, lest the arithmetic raise a flag
    const V s = 1.0 - a, t = s * 0.5;
    store(ss + i, s);
    store(zs + i, smallerLanes(a * a, t));  // they cross at 1/2
    return singles(t);
  };
  for (int64_t i = 0; i < count; i += 2 * vector) {
    const __m128 low = prepare(i), high = prepare(i + vector);
    _mm256_store_ps(seeds + i, _mm256_rsqrt_ps(_mm256_set_m128(high, low)));
  }
  if (signMask(allWithin) != 15) return false;

  using Block = Pack<V, 2>;
  for (int64_t i = 0; i < count; i += 2 * vector) {
    const Block z = load<Block>(zs + i), z2 = z * z;
    const Block upper = ((k0 * z + k1) * z2 + (k2 * z + k3)) * (z2 * z2) + ((k4 * z + k5) * z2 + (k6 * z + k7));
    store(ps + i, upper * z2 + (k8 * z + k9));
  }
  for (int64_t i = 0; i < count; i += 2 * vector) {
    const Block y = {{_mm256_cvtps_pd(_mm_load_ps(seeds + i)), _mm256_cvtps_pd(_mm_load_ps(seeds + i + vector))}};
    const auto [hi, lo] = productOf(load<Block>(ss + i), y);
    const Block e = (hi * y - 2.0) + lo * y;
    store(his + i, hi);
    store(corrs + i, (((c3 * e + c2) * e + c1) * e + c0) * ((hi + lo) * e) - lo);
  }
  for (int64_t i = 0; i < count; i += vector) {
    const V z = load<V>(zs + i), series = ((load<V>(ps + i) * z + k10) * z + k11) * z;
    const V x = load<V>(src + i), a = magnitude(x);
    store(dst + i, finish(x, a, ArcTerms<V>{below(a), load<V>(his + i), load<V>(corrs + i), series}));
  }
  return true;
}

// finish(V x, V a, ArcTerms<V>) -> V; outlier(Float64 x) -> Element for |x| from 1 up.
template <auto finish, auto outlier>
INLINE nuvStatus arcLoop(const Float64* src, Float64* dst, int64_t len) {
  static constexpr auto core = [](auto x) INLINED {
    const auto a = magnitude(x);
    return finish(x, a, arcTerms(a));
  };
  static constexpr auto anyOutlier = [](auto x) INLINED { return signMask(isOutlier(x)) != 0; };
  static constexpr auto lane = [](Float64 x) -> Element { return anyOutlier(x) ? outlier(x) : Element{core(x)}; };
  static constexpr auto blocks = [](int64_t count, const Float64* x, Float64* y) INLINED {
    return guardedUnaryLoop<Pack<Lanes4, 2>, Raises::yes>(x, y, count, core, anyOutlier, lane);
  };
  if (len == 1) {
    nuvStatus status = nuvStatusOk;
    takeElement<Raises::yes>(status, dst, lane(*src));
    return status;
  }
  return shortOrLongLoop<longestStretch, shortestStretch, 8>(
      len, [](int64_t count, const Float64* x, Float64* y) INLINED { return stretch<finish>(count, x, y); }, blocks,
      src, dst);
}

}  // namespace
}  // namespace qorvane
