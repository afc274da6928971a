// What the kernels of x^y share: log2 of x as H + G, its product with y as n/128 + r, and 2 to that
// power.
//
// log2 stage: with k and m from x = 2^k * m, and a row i of tables near m, u = m * rcp - L is small
// and log2 x = k + hi + lo + log2(1 + u/L). The product m * rcp is known exactly as g + p, because
// m is split in two and rcp is short. H + G holds log2 x to about 68 bits.
// Product stage: H and y are split too, so that P = yc * Hc is exact; n is 128 P rounded to an
// integer, and r the rest of y log2 x, |r| <= 2^-8 about. 2^(n/128 + r) = 2^e * 2^(j/128) * 2^r
// with n = 128 e + j: a power of two, a table's row and a polynomial of degree 5.
#pragma once
#include "explog/pow_tables.h"
#include "frame/words.h"

namespace qorvane {
namespace {

namespace power {

constexpr Float64 log2eHi = fromBits(0x3ff7154740000000);  // 1.4426949024200439 = L: log2 e to 23 bits
constexpr Float64 shifter = 0x1.8p45;                      // a sum with it is rounded to a multiple of 1/128

// c2 makes up for L not being log2 e:
// log2(1 + t / L) = t + c2 t + c3 t^2 + c4 t^3 + c5 t^4 + c6 t^5 + c7 t^6 + c8 t^7, |t| <= 2^-9:
// error 2^-64.0;
// log2(1 + t / L) = t + c2 t + c3 t^2 + c4 t^3 + c5 t^4 + c6 t^5 + c7 t^6, |t| <= 2^-9:
// error 2^-59.8
constexpr Float64 c8 = fromBits(0x3f903950cf599c56);  // 0.015843641906397053, in the kernels that use it
constexpr Float64 c7 = fromBits(0xbf9b4ea0e9419f52);  // -0.026667131649815552
constexpr Float64 c6 = fromBits(0x3fa7a334ddfc9f86);  // 0.04616704187202374
constexpr Float64 c5 = fromBits(0xbfb550472a8bb463);  // -0.08325619496072671
constexpr Float64 c4 = fromBits(0x3fc47fd462b3b816);  // 0.16015105075297303
constexpr Float64 c3 = fromBits(0xbfd62e4346694107);  // -0.3465736568077919
constexpr Float64 c2 = fromBits(0x3e79c3a6966457ee);  // 9.597935033233511e-08

// 2^r = 1 + d1 r + d2 r^2 + d3 r^3 + d4 r^4 + d5 r^5, |r| <= 2^-8: error 2^-60.4
constexpr Float64 d5 = fromBits(0x3f55d87fe78a6731);  // 0.0013333558146428443
constexpr Float64 d4 = fromBits(0x3f83b2ab6fba4e77);  // 0.009618129107628477
constexpr Float64 d3 = fromBits(0x3fac6b08d704a0bf);  // 0.055504108664821576
constexpr Float64 d2 = fromBits(0x3fcebfbdff82c58e);  // 0.2402265069591007
constexpr Float64 d1 = fromBits(0x3fe62e42fefa39ef);  // 0.6931471805599453

// Two programs, with results that may differ in the last bit: powers of levels 1 to 4, and of a
// fixed exponent at every level, come from the long one (c8, and the exponential's polynomial in
// powers of r), powers at level 5 from the short one.
enum class Program { longer, shorter };

// A number cut to its upper 26 bits: the product of two such is exact.
template <class V>
INLINE V cut(V x) {
  return andBits(x, broadcast<V>(fromBits(0xfffffffff8000000)));
}

// A row of the tables near m, and the exponent k that goes with it: the rows from 512 up stand for
// m/2.
template <class V>
struct LogRow {
  V rcp, hi, lo, k;
};

// m * rcp - L as t0 + p: p is the rounding error of the product.
template <class V>
struct ReducedArgument {
  V t0, p;
};
template <class V>
INLINE ReducedArgument<V> reduceArgument(V x, V rcp) {
  const V m = orBits(andBits(x, broadcast<V>(fromBits(0x000fffffffffffff))), broadcast<V>(1.0));
  const V mh = cut(m), ml = m - mh;
  const V g = m * rcp;
  return {g - log2eHi, ((mh * rcp) - g) + (ml * rcp)};
}

// log2 x but for the polynomial in t: a2 + low, where a2 = a + p.
template <class V>
struct LeadingLog {
  V a, a2, low, t;
};
// From big = k + hi, which is exact, and the row's lo.
template <class V>
INLINE LeadingLog<V> leadingSum(V big, ReducedArgument<V> u, V lo) {
  const V a = big + u.t0, e1 = (big - a) + u.t0;
  const V a2 = a + u.p, e2 = (a - a2) + u.p;
  return {a, a2, (e2 + e1) + lo, u.t0 + u.p};
}
template <class V>
INLINE LeadingLog<V> leadingLog(V x, LogRow<V> row) {
  return leadingSum(row.k + row.hi, reduceArgument(x, row.rcp), row.lo);
}

// log2 x as H + G
template <class V>
struct Log2 {
  V high, low;
};
// The polynomial in two halves, since a half is a chain short enough for the loops of
// explog/pow_stages.h.
template <Program program, class V>
INLINE V upperPolynomial(V t) {
  if constexpr (program == Program::longer)
    return ((c8 * t + c7) * t + c6) * t + c5;
  else
    return (c7 * t + c6) * t + c5;
}
template <Program program, class V>
INLINE V lowerPart(V low, V t, V upper) {
  const V polynomial = (((upper * t + c4) * t + c3) * t + c2) * t;
  return program == Program::longer ? low + polynomial : polynomial + low;
}
template <class V>
INLINE Log2<V> log2From(V a2, V w) {
  const V high = a2 + w;
  return {high, w - (high - a2)};
}
template <Program program, class V>
INLINE Log2<V> completeLog(V a2, V low, V t, V upper) {
  return log2From(a2, lowerPart<program>(low, t, upper));
}

// y log2 x = n/128 + r; n is in the low 32 bits of `shifted`, `rounded` is n/128. `p` is the exact
// product of the upper parts.
template <class V>
struct Product {
  V p, shifted, rounded, r;
};
template <class Y>
struct Exponent {
  Y all, upper, rest;
};
template <class Y>
INLINE Exponent<Y> splitExponent(Y y) {
  const Y upper = cut(y);
  return {y, upper, y - upper};
}
// y * high as p + rest. With a short exponent, one of at most 26 bits, y.rest is zero, and so are
// two of the three products: the sum is the same without them but for the sign of a zero, which no
// later addition keeps.
enum class Split { full, shortExponent };
template <class V>
struct LeadingProduct {
  V p, rest;
};
template <Split split = Split::full, class V, class Y>
INLINE LeadingProduct<V> leadingProduct(V high, Exponent<Y> y) {
  const V hc = cut(high), hl = high - hc;
  if constexpr (split == Split::shortExponent)
    return {y.upper * hc, y.upper * hl};
  else
    return {y.upper * hc, y.rest * hc + (y.upper * hl + y.rest * hl)};
}
// yLow is y times the low part of log2 x.
template <class V>
INLINE Product<V> completeProduct(LeadingProduct<V> h, V yLow) {
  const V s = h.p + shifter, v = s - shifter;
  return {h.p, s, v, (h.rest + yLow) + (h.p - v)};
}
template <class V, class Y>
INLINE Product<V> product(V high, V low, Exponent<Y> y) {
  return completeProduct(leadingProduct(high, y), y.all * low);
}

// 2^r - 1 in three parts of falling degree
template <class V>
struct PowerTerms {
  V upper, middle, first;
};
template <Program program, class V>
INLINE PowerTerms<V> powerTerms(V r) {
  if constexpr (program == Program::longer) {
    return {((((d5 * r + d4) * r) * r) * r) * r, ((d3 * r + d2) * r) * r, r * d1};
  } else {
    const V r2 = r * r;
    return {(d5 * r + d4) * (r2 * r2), (d3 * r + d2) * r2, d1 * r};
  }
}
// 2^(n/128 + r), from the table's row th + tl = 2^(j/128) and a normal scale = 2^e
template <class V>
INLINE V powerFrom(PowerTerms<V> terms, V th, V tl, V scale) {
  return (((((terms.upper * th) + tl) + (terms.middle * th)) + (terms.first * th)) + th) * scale;
}
template <Program program, class V>
INLINE V completePower(V r, V th, V tl, V scale) {
  return powerFrom(powerTerms<program>(r), th, tl, scale);
}

}  // namespace power
}  // namespace
}  // namespace qorvane
