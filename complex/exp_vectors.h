// exp z = e^x (cos y + i sin y) in vectors of double precision, for |x| and |y| below 512; all
// levels.
//
// Method: x = (64 m + j) ln 2 / 64 + r, so that e^x = 2^m * 2^(j/64) * e^r, and y = n pi/32 + r +
// rl; 2^(j/64) and sine and cosine of n pi/32 come from tables, the rest is polynomials. Both
// factors are sums of two numbers, the upper one cut to 26 bits, so that the products of upper
// parts are exact. The sine of a tiny y is kept scaled by 2^100, so that its lower part isn't lost.
//
// Error: at most 0.523 ulp a part, 0.589 next to the zeros of sine and cosine (the largest found
// has y = -45.553093477052002), 1.0 for an imaginary part that is subnormal or above by less than
// 2^60, since its lower part then is.
#pragma once
#include "complex/certified/exponential.h"
#include "complex/exp.h"

namespace qorvane {
namespace {

#include "complex/complex_exp_tables.inc"

// From 512 up, infinities and NaNs.
constexpr int expFlaggedHighWord = 0x40800000;

constexpr Float64 shifter = fromBits(0x4338000000000000);  // 1.5 * 2^52
constexpr Float64 upper26 = fromBits(0xfffffffff8000000);  // a mask

// e^x = (upper + lower) * 2^m, 2^m being `scale`.
template <class V>
struct ExpParts {
  V upper, lower, scale;
};
template <class V>
INLINE ExpParts<V> expParts(V x) {
  constexpr Float64 invLn2By64 = fromBits(0x40571547652b82fe);  // 92.33248261689366 = 64 / ln 2
  constexpr Float64 ln2By64Hi = fromBits(0x3f862e42fefa0000);   // 0.010830424696223417: k times it is exact
  constexpr Float64 ln2By64Lo = fromBits(0x3d1cf79abc9e3b3a);   // 2.572804622327669e-14
  constexpr Float64 c6 = fromBits(0x3f56c16a1c2a3ffd);          // 0.0013888870459233254
  constexpr Float64 c5 = fromBits(0x3f8111123aaf20d3);          // 0.008333341995140497
  constexpr Float64 c4 = fromBits(0x3fa5555555558fcc);          // 0.04166666666677052
  constexpr Float64 c3 = fromBits(0x3fc55555555548f8);          // 0.1666666666665788
  constexpr Float64 c2 = 0.5;
  const V s = x * invLn2By64 + shifter, k = s - shifter;
  const auto n = lowWords(s);
  const auto row = twoColumns<V>(expTable64, (n & 63) << 4);
  const V r = (x - k * ln2By64Hi) - k * ln2By64Lo;
  const V g = (c6 * r + c5) * r + c4, p = ((g * r + c3) * r + c2) * r;
  const V e = ((p * r + r) + row.second) * row.first, sum = row.first + e;
  const V upper = andBits(sum, broadcast<V>(upper26));
  return {upper, (sum - upper) + (e - (sum - row.first)),
          fromHighWords<V>(wrappingSum(n, 1023 * 64) << 14 & 0x7ff00000)};
}

// y = n pi/32 + r + rl; sin r = r + sine r, cos r = 1 + cosine.
template <class V>
struct TurnedAngle {
  WordsOf<V> n;
  V r, rl, sineOfR, cosine;
};
template <class V>
INLINE TurnedAngle<V> turnedAngle(V y) {
  constexpr Float64 thirtyTwoOverPi = fromBits(0x40245f306dc9c883);  // 10.185916357881302
  constexpr Float64 p1 = fromBits(0x3fb921fb54400000);               // 0.09817477042088285: n times it is exact
  constexpr Float64 p2 = fromBits(0x3d90b4611a600000);               // 3.798187816439979e-12, likewise
  constexpr Float64 p3 = fromBits(0x3b63198a2e037073);               // 1.2639164054974691e-22
  constexpr Float64 a7 = fromBits(0x3ec71de3a556c734);               // 2.7557319223985893e-06
  constexpr Float64 a5 = fromBits(0xbf2a01a01a01a01a);               // -1/5040
  constexpr Float64 a3 = fromBits(0x3f81111111111111);               // 1/120
  constexpr Float64 a1 = fromBits(0xbfc5555555555555);               // -1/6
  constexpr Float64 b6 = fromBits(0x3efa01a01a01a01a);               // 1/40320
  constexpr Float64 b4 = fromBits(0xbf56c16c16c16c17);               // -1/720
  constexpr Float64 b2 = fromBits(0x3fa5555555555555);               // 1/24
  constexpr Float64 b0 = -0.5;
  const V s = y * thirtyTwoOverPi + shifter, k = s - shifter;
  const V r0 = y - k * p1, r1 = k * p2, r = r0 - r1, rl = ((r0 - r) - r1) - k * p3;
  const V q = r * r;
  const V sine = q * (((a7 * q + a5) * q + a3) * q + a1);
  const V cosine = ((q * (b6 * q + b4) + b2) * q + b0) * q;
  return {lowWords(s), r, rl, sine * r, cosine};
}

// The sine of the row's angle + r + rl as w + f.
template <class V>
struct TurnedSine {
  V w, f;
};
template <class V>
INLINE TurnedSine<V> turnedSine(const TurnedAngle<V>& a, const Float64 (*table)[4]) {
  const auto row = columns<4, V>(table, (a.n & 63) << 5);
  const V cosLo = row.of[0], sinHi = row.of[1], sinLo = row.of[2], cosHi = row.of[3];
  const V u1 = cosHi * a.r, v = sinHi + u1, u2 = cosLo * a.r, w = v + u2, cos = cosLo + cosHi;
  const V corr = (a.rl * (cos - sinHi * a.r) + sinLo + ((sinHi - v) + u1)) + ((v - w) + u2);
  return {w, (corr + a.sineOfR * cos) + a.cosine * sinHi};
}

// w + f with the upper part cut to 26 bits.
template <class V>
struct UpperLower {
  V upper, lower;
};
template <class V>
INLINE UpperLower<V> cutSum(V w, V f) {
  const V sum = w + f, upper = andBits(sum, broadcast<V>(upper26));
  return {upper, (sum - upper) + (f - (sum - w))};
}

// Where the angles of all elements are 0: the same, the cosine being 1.
template <class V>
INLINE bool isReal(Parts<V> z) {
  return signMask(equalLanes(z.im, broadcast<V>(0.0))) == ~uint64_t{0} >> (64 - laneCount<V>);
}
template <class V>
INLINE Parts<V> expOfReal(Parts<V> z) {
  const ExpParts<V> e = expParts(z.re);
  return {(e.upper + e.lower) * e.scale, z.im};
}

template <class V>
INLINE Parts<V> expOf(Parts<V> z) {
  constexpr Float64 up = fromBits(0x4630000000000000), down = fromBits(0x39b0000000000000);  // 2^100, 2^-100
  constexpr Float64 upperWord = fromBits(0xffffffff00000000);                                // a mask
  const ExpParts<V> e = expParts(z.re);
  const TurnedAngle<V> a = turnedAngle(z.im);
  const TurnedSine<V> c = turnedSine(a, sineTable64 + 16), s = turnedSine(a, sineTable64);

  const auto cos = cutSum(c.w, c.f);
  const V re = (e.upper * cos.upper + (e.upper * cos.lower + (e.lower * cos.upper + e.lower * cos.lower))) * e.scale;

  const auto sin = cutSum(s.w * up, s.f * up);
  const V product = e.upper * sin.upper, high = andBits(product, broadcast<V>(upperWord));
  const V rest = (product - high) + (e.upper * sin.lower + (e.lower * sin.upper + e.lower * sin.lower));
  const V scale = e.scale * down, im = high * scale + rest * scale;
  return {re, select(equalLanes(z.im, broadcast<V>(0.0)), z.im, im)};
}

// A block with flagged elements: they count as 0 among the vectors, which leaves no flag, and
// complexExp gives their results, or the same comes from lanes where these serve more than two of them.
template <class V>
[[gnu::noinline]] void expOfFlagged(const Complex64* src, Complex64* dst, int64_t count) {
  constexpr int lanes = laneCount<V>;
  constexpr Complex64 ordinary = {0, 1};
  Complex64 cleared[lanes], inLanes[lanes];
  uint64_t flagged = 0, served = 0;
  int servedCount = 0;
  for (int i = 0; i < lanes; ++i) {
    cleared[i] = {0, 0}, inLanes[i] = ordinary;
    if (i >= count) continue;
    const Complex64 z = src[i];
    if (!anyPartFrom(Parts<Float64>{z.re, z.im}, expFlaggedHighWord)) {
      cleared[i] = z;
      continue;
    }
    flagged |= uint64_t{1} << i;
    if (!servesExponential(z.re, z.im)) continue;
    inLanes[i] = withinLanes(z);
    served |= uint64_t{1} << i, ++servedCount;
  }
  if (flagged != allOf(static_cast<int>(count))) storeParts(cleared, expOf(loadParts<V>(cleared)));
  uint64_t certain = 0;
  if (servedCount > 2 && isAllowed()) {
    const auto e = certainExponentialOf(loadParts<V>(inLanes));
    storeParts(inLanes, e.parts);
    certain = signMask(e.isCertain);
  }
  for (int i = 0; i < count; ++i) {
    const bool isServed = (served >> i & 1) != 0, isCertain = (certain >> placeOf<PartOf<V>>(i) & 1) != 0;
    if ((flagged >> i & 1) == 0)
      dst[i] = cleared[i];
    else if (isServed && isCertain && leaveLanes(inLanes[i], src[i].re))
      dst[i] = inLanes[i];
    else
      dst[i] = isServed ? complexExp(src[i]) : complexExpExtended(src[i]);
  }
}

// Up to a block whose first angle is 0, or with flagged elements.
template <class V>
[[gnu::noinline]] void expOfRare(const Complex64* src, Complex64* dst, int64_t count) {
  const Parts<V> z = loadSomeParts<V>(src, count);
  if (anyPartFrom(z, expFlaggedHighWord))
    expOfFlagged<V>(src, dst, count);
  else
    storeSomeParts(dst, isReal(z) ? expOfReal(z) : expOf(z), count);
}

template <class V>
INLINE nuvStatus expLoop(const Complex64* src, Complex64* dst, int64_t len) {
  partsLoop<V>(
      src, dst, len,
      [](auto z) INLINED {
        if constexpr (laneCount<decltype(z.re)> == laneCount<V>)
          return anyPartFrom(z, expFlaggedHighWord) || partOf(z.im, 0)[0] == 0;
        else
          return anyPartFrom(z, expFlaggedHighWord);
      },
      [](auto z) INLINED { return expOf(z); }, expOfRare<V>);
  return nuvStatusOk;
}

}  // namespace
}  // namespace qorvane
