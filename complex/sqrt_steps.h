// The square root of x + iy, every level: the steps that level 1 (element by element) and the
// others (by blocks) share.
//
// Method: with a = |x|, b = |y|, R = sqrt((|z| + a)/2) and I = (b/2)/R the root is R + iI for x >=
// 0 and I + iR for x < 0, the imaginary part with the sign of y. |z| and R are formed as pairs of
// doubles; roots come from the processor's reciprocal square root in single precision, cut to 13
// bits, so that the error e of its square is exact, and a series in e.
#pragma once
#include <immintrin.h>

#include "complex/pairs.h"

namespace qorvane {
namespace {

// 1/sqrt(v) to about 2^-10, with 13 significant bits, for positive normal v. The upper word of v
// makes a number u in [1, 4) of single precision, v = u * 4^k; the result's exponent field is that
// of v, halved and negated.
INLINE int estimate(int u) {
  return _mm_cvtsi128_si32(_mm_castps_si128(_mm_rsqrt_ss(_mm_castsi128_ps(_mm_cvtsi32_si128(u)))));
}
INLINE Words4 estimate(Words4 u) { return reinterpret_cast<Words4>(_mm_rsqrt_ps(reinterpret_cast<__m128>(u))); }
template <int K>
INLINE Pack<Words4, K> estimate(Pack<Words4, K> u) {
  return makePack<K>([&](int i) INLINED { return estimate(u.part[i]); });
}
template <class V>
INLINE V approxRsqrt(V v) {
  const auto h = highWords(v);
  const auto u = (((h << 3) & 0x00ffffff) ^ 0x00800000) + 0x3f800000;
  const auto exponents = ((h - 0x00100000) & static_cast<int>(0xffe00000)) >> 1;
  return fromHighWords<V>(((estimate(u) >> 3) + 0x57f00000 - exponents) & static_cast<int>(0xffffff00));
}

// (1 + e)^(-1/2) - 1, |e| < 2^-9: the Taylor series to five or seven terms. What is left out is
// below 2^-56 and 2^-76.
enum class Terms { five, seven };
template <Terms terms, class V>
INLINE V series(V e) {
  constexpr Float64 c1 = -0x1p-1, c2 = 0x3p-3, c3 = -0x5p-4, c4 = 0x23p-7, c5 = -0x3fp-8, c6 = 0xe7p-10,
                    c7 = -0x1adp-11;
  const V e2 = e * e;
  if constexpr (terms == Terms::five) {
    const V e4 = e2 * e2;
    return (c5 * e4 + c3 * e2 + c1) * e + (c4 * e2 + c2) * e2;
  } else {
    return (((c7 * e2 + c5) * e2 + c3) * e2 + c1) * e + ((c6 * e2 + c4) * e2 + c2) * e2;
  }
}

// 1/sqrt(t) = w + v for t = upper + rest, and the root of t.
template <class V>
struct Reciprocal {
  V w, v;
};
template <Terms terms, class V>
INLINE Reciprocal<V> reciprocalRoot(Halves<V> t) {
  const V w = approxRsqrt(t.upper), w2 = w * w;
  const V e = (t.upper * w2 - 1.0) + w2 * t.rest;
  return {w, series<terms>(e) * w};
}
template <class V>
INLINE V rootOf(Halves<V> t, Reciprocal<V> r) {
  return (t.rest * r.w + (t.upper + t.rest) * r.v) + t.upper * r.w;
}

// R and I.
template <class V>
struct Root {
  V r, i;
};

// For a and b in the range where neither a^2 + b^2 nor any product of parts leaves the normal
// numbers: (|z| + a)/2, and the root from it.
template <Terms terms, class V>
INLINE Halves<V> halfOfSum(V a, V b) {
  // a^2 + b^2 = n.upper + n.rest
  const Halves<V> as = halvesOf(a), bs = halvesOf(b);
  const V a2 = as.upper * as.upper, b2 = bs.upper * bs.upper, ta = as.upper * as.rest, tb = bs.upper * bs.rest;
  const V p = a2 + b2, pa = p - b2, lostOfP = (a2 - pa) + (b2 - (p - pa));
  const V c = (as.rest * as.rest + ta + ta) + (bs.rest * bs.rest + tb + tb), sum = p + c;
  Halves<V> n = halvesOf(sum);
  n.rest = (n.rest + ((p - sum) + c)) + lostOfP;

  // |z| + a = s + l, and half of it t.upper + t.rest
  const auto [w, v] = reciprocalRoot<terms>(n);
  const V m = n.upper * w, s = m + a, d = a - s;
  const V l = ((d + m) + (a - (s + d))) + (n.rest * w + v * (n.upper + n.rest));
  const V total = s + l, half = 0.5 * total, lost = s - total;
  Halves<V> t = halvesOf(half);
  t.rest = ((lost + l) - ((total + lost) - s)) * 0.5 + t.rest;
  return t;
}
template <Terms terms, class V>
INLINE Root<V> rootFrom(Halves<V> t, V b) {
  const Reciprocal<V> q = reciprocalRoot<terms>(t);
  const Halves<V> cs = halvesOf(0.5 * b);
  return {rootOf(t, q), q.w * cs.upper + (cs.rest * q.w + (q.v * cs.rest + cs.upper * q.v))};
}

template <Terms terms, class V>
INLINE Root<V> mainPath(V a, V b) {
  return rootFrom<terms>(halfOfSum<terms>(a, b), b);
}

// a more than about 2^58 times b > 0: R = sqrt(a), I = (b/2)/R, which may be subnormal: b is scaled
// up, and what comes down is rounded once.
template <Terms terms>
Root<Float64> realDominates(Float64 a, Float64 b) {
  const Halves<Float64> as = halvesOf(a);
  const Float64 w = approxRsqrt(as.upper);  // its square could be subnormal: products with a come first
  const Float64 e = ((as.upper * w) * w - 1.0) + (as.rest * w) * w, v = series<terms>(e) * w;
  const bool scaled = b < 1.0;
  const Halves<Float64> c = halvesOf(b * (scaled ? 0x1p199 : 0.5));
  const Float64 high = w * c.upper, low = c.rest * w + (v * c.rest + c.upper * v);
  Float64 i = high + low;
  if (scaled) {
    constexpr Float64 smallestNormal = 0x1p-822;  // 2^-1022, scaled; added, it leaves the grid of subnormal numbers
    if (i < smallestNormal) {
      const Float64 onGrid = smallestNormal + high;
      i = (onGrid + ((high - (onGrid - smallestNormal)) + low)) - smallestNormal;
    }
    i *= 0x1p-200;
  }
  return {rootOf(as, {w, v}), i};
}

// Any finite x + iy.
template <Terms terms>
Complex64 finiteRoot(Float64 x, Float64 y) {
  const Float64 a = magnitude(x), b = magnitude(y), sign = signOf(y);
  const int hx = static_cast<int>(highWord(a)), hy = static_cast<int>(highWord(b));
  constexpr int farApart = 0x3a00000, lowest = 0x23400000, highest = 0x5fdfffff;
  const bool ordinary = lowest <= hx && hx <= highest && lowest <= hy && hy <= highest;
  Root<Float64> root;
  if (!ordinary && b == 0.0 && a != 0.0) {
    root = {hardwareRoot(a), 0.0};
  } else if (a == 0.0 || hx - hy < -farApart) {
    const bool tiny = hy < 0x00200000;
    const Float64 r = tiny ? hardwareRoot(b * 0x1p199) * 0x1p-100 : hardwareRoot(0.5 * b);
    root = {r, r};
  } else if (hx - hy > farApart) {
    root = realDominates<terms>(a, b);
  } else if (ordinary) {
    root = mainPath<terms>(a, b);
  } else {
    const bool small = hx < 0x3ff00000;
    const Float64 up = small ? 0x1p620 : 0x1p-514, down = small ? 0x1p-310 : 0x1p257;
    root = mainPath<terms>(a * up, b * up);
    root = {root.r * down, root.i * down};
  }
  return x >= 0.0 ? Complex64{root.r, orBits(root.i, sign)} : Complex64{root.i, orBits(root.r, sign)};
}

// An infinity or a NaN among x and y; on bits, so that nothing is raised.
inline Complex64 complexSqrtSpecial(Float64 x, Float64 y) {
  constexpr uint64_t infinity = toBits(__builtin_inf()), quiet = 0x0008000000000000;
  const uint64_t bx = toBits(x), by = toBits(y), mx = toBits(magnitude(x)), my = toBits(magnitude(y));
  const Float64 sign = signOf(y);
  if (my == infinity) return {fromBits(infinity), y};
  if (mx != infinity) {
    const uint64_t nan = (mx > infinity ? bx : by) | quiet;
    return {fromBits(nan), orBits(magnitude(fromBits(nan)), sign)};
  }
  const bool positive = bx == mx;
  if (my > infinity) return positive ? Complex64{x, y} : Complex64{y, fromBits(infinity)};
  return positive ? Complex64{x, sign} : Complex64{0.0, orBits(fromBits(infinity), sign)};
}

}  // namespace
}  // namespace qorvane
