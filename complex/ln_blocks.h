// ln(x + iy) by blocks, every level: the program that ln_sse3.cpp and ln_avx.cpp compile for their
// registers.
//
// Method: with M = max(|x|, |y|), m = min(|x|, |y|) the real part is ln(N)/2 for N = M^2 + m^2 =
// 2^n * (1 + j/64 + ...), where the squares are exact as pairs of doubles; a table row has a short
// reciprocal C of 1 + j/64 and -ln C, and ln(1 + r) for r = N * 2^-n * C - 1, |r| < 2^-6.9, is a
// polynomial. Where N is within 1/16 of 1, N - 1 comes from the seven exact terms of M^2 + m^2 - 1,
// added twice over, so that it keeps its relative accuracy on the unit circle. The imaginary part is
// the angle of a table of five and the arc tangent of the ratio to it.
//
// Elements with a part outside 2^-500 to 2^500, zeros, infinities and NaNs among them, have the bits of
// complexLn; those on the axes come from lanes where they are certain (docs/certainty_log.md).
//
// Error: at most 0.854 ulp, in the imaginary part; real parts are off by little more than half a
// unit, on the unit circle, too.
//
// Modes: rounds to nearest, without FTZ; DAZ is the caller's.
#pragma once
#include "complex/certified/log_strip.h"
#include "complex/ln.h"

namespace qorvane {
namespace {

#include "complex/complex_ln_tables.inc"

// ln(1 + r) - r over r^2: degrees 2 to 9 of the logarithm, and 2 to 8 where N - 1 is known by itself.
constexpr Float64 general[] = {
    fromBits(0xbfe0000000000008),  // -0.50000000000000089
    fromBits(0x3fd5555555555584),  // 0.33333333333333592
    fromBits(0xbfcffffffffd7e87),  // -0.24999999999544206
    fromBits(0x3fc9999999955b1d),  // 0.19999999999228005
    fromBits(0xbfc555556314a98e),  // -0.16666667306828881
    fromBits(0x3fc24924a446d630),  // 0.1428571512348511
    fromBits(0xbfbfffc27495ce53),  // -0.12499633165662631
    fromBits(0x3fbc71826ba0ddf7),  // 0.1111070168270699
};
constexpr Float64 near1[] = {
    fromBits(0xbfe0000000000000),  // -0.5
    fromBits(0x3fd5555555555613),  // 0.33333333333334386
    fromBits(0xbfd0000000000262),  // -0.25000000000003386
    fromBits(0x3fc9999997b36c81),  // 0.19999999911565072
    fromBits(0xbfc555555228b38f),  // -0.16666666518849779
    fromBits(0x3fc249c02481059d),  // 0.14287568838521461
    fromBits(0xbfc000b405a2836d),  // -0.1250214602960357
};
// atan(q) - q over q^3, in q^2.
constexpr Float64 angle[] = {
    fromBits(0xbfd5555555555552),  // -0.33333333333333315
    fromBits(0x3fc9999999998f43),  // 0.19999999999992654
    fromBits(0xbfc2492492441a21),  // -0.14285714284797371
    fromBits(0x3fbc71c719f99f96),  // 0.11111111053617004
    fromBits(0xbfb745d119677a4f),  // -0.09090906973094913
    fromBits(0x3fb3b132b731e73a),  // 0.07692257854969578
    fromBits(0xbfb1108d326c68ed),  // -0.066658806620043712
    fromBits(0x3fae12f1edf7c393),  // 0.058738289164359213
    fromBits(0xbfaa9e755ca13d23),  // -0.051990191991189393
    fromBits(0x3fa6ad5558fe19c9),  // 0.044291178811409156
    fromBits(0xbfa04cd71f92185e),  // -0.031836245158999729
    fromBits(0x3f8be4fbe6733718),  // 0.013620346040990536
};
constexpr Float64 piHigh = fromBits(0x400921fb54442d18), piLow = fromBits(0x3ca1a64000000000);  // 3.1415926535897931

// c[first] + c[first + step] z + ..., the highest first.
template <int first, int step, int count, class V>
INLINE V chain(const Float64 (&c)[count], V z) {
  constexpr int last = first + (count - 1 - first) / step * step;
  V sum = broadcast<V>(c[last]);
#pragma GCC unroll 16
  for (int i = last - step; i >= first; i -= step) sum = sum * z + c[i];
  return sum;
}

// ln(M^2 + m^2)/2
template <class V>
INLINE V halfLog(V M, V m) {
  // By an even power of 2 to M in [1/2, 2). What doesn't count any more is dropped.
  const auto evenExponents = highWords(M) & 0x7fe00000;
  const V scale = fromHighWords<V>(0x7fd00000 - evenExponents);
  const V relevant = withoutBits(m, lessLanes(m, M * 0x1p-100));
  const auto [Mh, Ml] = halvesOf(M * scale);
  const auto [mh, ml] = halvesOf(relevant * scale);
  const Sum<V> p = fastSum(Mh * Mh, mh * mh);
  const Sum<V> n = fastSum(p.high, (Ml * Ml + 2.0 * Mh * Ml) + (ml * ml + 2.0 * mh * ml));
  const V nLow = n.low + p.low;

  const auto words = highWords(n.high), exponents = words & 0x7ff00000;
  const auto row = columns<4, V>(complexLnTable, (((words & 0xfffff) + 0x2000) >> 14) << 5);
  const V c = row.of[0], down = fromHighWords<V>(0x7fe00000 - exponents);
  const Halves<V> significand = halvesOf(n.high * down);
  V t = significand.upper * c - 1.0, u = (significand.rest + nLow * down) * c;

  const V squared = M * M - 1.0;
  const V isNear = andBits(andBits(lessLanes(broadcast<V>(fromBits(0x3fe5e8add236a58f)), M),   // 0.6846...
                                   lessLanes(M, broadcast<V>(fromBits(0x3ff07e0f66afed08)))),  // up to 1.0308...
                           lessLanes(magnitude(squared + m * m), broadcast<V>(fromBits(0x3fb0000000000001))));
  V r = t + u, r2 = r * r, tail = chain<1, 2>(general, r2) * r + chain<0, 2>(general, r2);
  if (signMask(isNear) != 0) [[unlikely]] {
    const Sum<V> d = lessOne(M, m);
    const Halves<V> dh = halvesOf(d.high);
    const V scaled = c * down;
    t = select(isNear, (scaled - 1.0) + scaled * dh.upper, t);
    u = select(isNear, scaled * (dh.rest + d.low), u);
    r = t + u, r2 = r * r;
    tail = select(isNear, chain<1, 2>(near1, r2) * r + chain<0, 2>(near1, r2), tail);
  }
  const V exponent = numbersOf<V>(((exponents - 0x3ff00000) >> 20) + ((evenExponents - 0x3fe00000) >> 19));
  const V base = exponent * complexLnTable[64][1] + row.of[1];  // exact
  const Sum<V> s = fastSum(base, t);
  return 0.5 * (s.high + (s.low + (u + (r2 * tail + (exponent * complexLnTable[64][2] + row.of[2])))));
}

// The angle of x + iy, from -pi to pi, for a = |x|, b = |y|.
template <class V>
INLINE V angleOf(V x, V y, V a, V b) {
  const auto beyond = [&](Float64 t) INLINED { return lessLanes(a * t, b); };
  const V over1 = beyond(0.4375), over2 = beyond(0.6875), over3 = beyond(1.1875), over4 = beyond(2.4375);
  const auto pick = [&](Float64 v0, Float64 v1, Float64 v2, Float64 v3, Float64 v4) INLINED {
    const V low = select(over2, select(over3, broadcast<V>(v3), broadcast<V>(v2)), broadcast<V>(v1));
    return select(over4, broadcast<V>(v4), select(over1, low, broadcast<V>(v0)));
  };
  const auto& angles = complexLnAngles;
  const V toOne = pick(0, 0.5, 1, 1, 1), half = andBits(withoutBits(over3, over4), broadcast<V>(0.5)), v = toOne + half;
  const V high = pick(0, angles[1][0], angles[2][0], angles[3][0], angles[4][0]);
  const V low = pick(0, angles[1][1], angles[2][1], angles[3][1], angles[4][1]);
  // 3/2 in two steps, of which the first is exact.
  const V numerator = (withoutBits(b, over4) - toOne * a) - half * a, denominator = withoutBits(a, over4) + v * b;
  const V q = numerator / denominator;
  // What the rounding of q lost matters where the arc tangent is the whole angle.
  const auto [qh, ql] = halvesOf(q);
  const auto [dh, dl] = halvesOf(denominator);
  const V lost = (((numerator - qh * dh) - qh * dl) - ql * dh) - ql * dl;
  const V s = q * q, s2 = s * s, tail = chain<1, 2>(angle, s2) * s + chain<0, 2>(angle, s2);
  const Sum<V> sum = fastSum(high, q + (low + (lost / denominator + (q * s) * tail)));
  const Sum<V> other = fastSum(broadcast<V>(piHigh), 0.0 - sum.high);
  const V left = other.high + (other.low + (piLow - sum.low));
  return orBits(select(lessLanes(x, broadcast<V>(0.0)), left, sum.high), signOf(y));
}

constexpr int lowestWord = 0x20b00000, highestWord = 0x5f2fffff;  // 2^-500 up to, but not including, 2^500
template <class V>
INLINE auto outside(V v) {
  const auto h = highWords(v) & 0x7fffffff;
  return (lowestWord > h) | (h > highestWord);
}

template <class V>
INLINE Parts<V> logarithm(Parts<V> z) {
  const V a = magnitude(z.re), b = magnitude(z.im), less = lessLanes(a, b);
  return {halfLog(select(less, b, a), select(less, a, b)), angleOf(z.re, z.im, a, b)};
}

// Up to a vector's elements, among them such as the vectors aren't made for: these count as 1 + i there, and
// complexLn gives their results, or the same comes from lanes on the axes.
template <class V>
[[gnu::noinline]] void incomplete(const Complex64* src, Complex64* dst, int64_t count) {
  constexpr int lanes = laneCount<V>;
  Complex64 inside[lanes], onAxis[lanes], others[lanes];
  uint64_t isInside = 0, isOnAxis = 0, isCertain = 0;
  for (int i = 0; i < lanes; ++i) {
    inside[i] = {1, 1}, onAxis[i] = {2, 0};
    if (i >= count) continue;
    const Complex64 z = src[i];
    const bool hasZero = toBits(z.re) << 1 == 0 || toBits(z.im) << 1 == 0;
    if (!outside(z.re) && !outside(z.im))
      inside[i] = z, isInside |= uint64_t{1} << i;
    else if (hasZero && !isOutsideOfLog(z.re, z.im))
      onAxis[i] = z, isOnAxis |= uint64_t{1} << i;
    others[i] = z;
  }
  if (isInside != 0) storeParts(inside, logarithm(loadParts<V>(inside)));
  if (isOnAxis != 0 && isAllowed()) {
    using Two = Pack<PartOf<Four>, 2>;  // registers: more take more time
    using U = std::conditional_t<(lanes > laneCount<Two>), Two, V>;
    for (int i = 0; i < lanes; i += laneCount<U>) {
      const Parts<U> z = loadParts<U>(onAxis + i);
      const auto both = certainOnAxis<Base::e>(z.re, z.im);
      storeParts(onAxis + i, Parts<U>{both.log.value, orBits(both.angle, signOf(z.im))});
      isCertain |= signMask(both.log.isCertain) << i;
    }
  }
  for (int i = 0; i < count; ++i) {
    if ((isInside >> i & 1) != 0)
      dst[i] = inside[i];
    else if ((isOnAxis >> i & isCertain >> placeOf<PartOf<V>>(i) & 1) != 0)
      dst[i] = onAxis[i];
    else
      dst[i] = complexLn(others[i]);
  }
}

template <class V>
INLINE void evaluate(const Complex64* src, Complex64* dst, int64_t count) {
  const bool isWhole = count == laneCount<V>;
  const Parts<V> z = isWhole ? loadParts<V>(src) : loadSomeParts<V>(src, count);
  if (any(outside(z.re) | outside(z.im))) [[unlikely]]
    return incomplete<V>(src, dst, count);
  const Parts<V> log = logarithm(z);
  isWhole ? storeParts(dst, log) : storeSomeParts(dst, log, count);
}

nuvStatus loop(const Complex64* src, Complex64* dst, int64_t len) {
  for (; len >= 8; src += 8, dst += 8, len -= 8) evaluate<Block>(src, dst, 8);
  // The rest takes the least registers that hold it.
  if (len > 4)
    evaluate<Block>(src, dst, len);
  else if (len > 2)
    evaluate<Four>(src, dst, len);
  else if (len > 0)
    evaluate<Lanes2>(src, dst, len);
  return nuvStatusOk;
}

}  // namespace
}  // namespace qorvane
