// e^x, sinh x, cosh x, sin y and cos y in lanes, as short pairs (complex/certified/pairs.h).
//
// Method: x = k ln 2 / 64 + r and y = n pi/256 + r, each with one addition formula,
//   f(a + r) = f(a) (1 + p) + g(a) (r + t),  p = cosh r - 1 or cos r - 1,  t = sinh r - r or sin r - r,
// where f(a) and g(a) come from a table. f(a) and the product of heads in g(a) r are summed exactly;
// all else is below 2^-14 of the result and made in plain double precision.
//
// Error: at most 0.62 * 2^-64 of sinh x, 0.25 of cosh x, 0.79 of sin y and cos y, for x and y that are 0
// or from 2^-100 up to 256; in the forms for large numbers x up to 1024, y up to 10^8 (docs/certainty.md has
// the proof).
#pragma once
#include "complex/certified/pairs.h"
#include "complex/certified/tables.h"

namespace qorvane {
namespace {

// A row's number: `value` + `low` exactly summed, where `low` is small; the same as one number, and as
// a short pair.
template <class V>
struct RowNumber {
  V value, low, whole, head, rest;
};
// The remainder r: its head; its rest and t; p.
template <class V>
struct Remainder {
  V head, tail, p;
};

// f (1 + p) + g (r + t), with minus f (1 + p) - g (r + t).
template <bool minus, class V>
INLINE ShortPair<V> added(const RowNumber<V>& f, const RowNumber<V>& g, const Remainder<V>& r) {
  if constexpr (isFused) {
    const V v = minus ? fusedFrom(f.value, g.value, r.head) : fused(g.value, r.head, f.value);
    const V lost = minus ? fusedFrom(f.value - v, g.value, r.head) : fused(g.value, r.head, f.value - v);
    const V low = minus ? fusedFrom(fusedFrom(lost + f.low, g.low, r.head), g.whole, r.tail)
                        : fused(g.whole, r.tail, fused(g.low, r.head, lost + f.low));
    return shortPair(v, fused(f.whole, r.p, low));
  }
  const V product = g.head * r.head, tail = g.rest * r.head + g.whole * r.tail, scaled = f.whole * r.p;
  if constexpr (minus) {
    const V v = f.value - product;
    return shortPair(v, ((((f.value - v) - product) + f.low) - tail) + scaled);
  } else {
    const V v = f.value + product;
    return shortPair(v, ((((f.value - v) + product) + f.low) + tail) + scaled);
  }
}

// An argument as n steps + r + rest: n in the low word of `shifted`, r rounded.
template <class V>
struct Reduced {
  V shifted, r, rest;
};
// The places of the rows for n.
template <class Words>
INLINE Words rowOfPower(Words n) {
  return (n & 63) << 5;
}
template <class Words>
INLINE Words rowOfTurn(Words n) {
  return (n & 511) << 5;
}
// x = n ln 2 / 64 + r for |x| <= 1024.
template <class V>
INLINE Reduced<V> reducedByLn2(V x) {
  constexpr Float64 shifter = fromBits(0x4338000000000000);     // 1.5 * 2^52
  constexpr Float64 invLn2By64 = fromBits(0x40571547652b82fe);  // 92.33248261689366 = 64 / ln 2
  constexpr Float64 ln2By64Hi = fromBits(0x3f862e42fefa0000);   // 0.010830424696223417, 36 bits: k times it is exact
  constexpr Float64 ln2By64Lo = fromBits(0x3d1cf79abc9e3b3a);   // 2.572804622327669e-14
  const V s = timesPlus(invLn2By64, x, shifter), k = s - shifter;
  const V r0 = minusTimes(x, k, ln2By64Hi);
  if constexpr (isFused) {
    const V r = minusTimes(r0, k, ln2By64Lo);
    return {s, r, minusTimes(r0 - r, k, ln2By64Lo)};
  }
  const V r1 = k * ln2By64Lo, r = r0 - r1;
  return {s, r, (r0 - r) - r1};
}
// With t and p, whose terms have one sign, or alternate ones.
template <bool ofTurn, class V>
INLINE Remainder<V> remainderOf(const Reduced<V>& a) {
  constexpr Float64 sign = ofTurn ? -1 : 1;
  constexpr Float64 t7 = sign * fromBits(0x3f2a01a01a01a01a);  // 1/5040
  constexpr Float64 t5 = fromBits(0x3f81111111111111);         // 1/120
  constexpr Float64 t3 = sign * fromBits(0x3fc5555555555555);  // 1/6
  constexpr Float64 p6 = sign * fromBits(0x3f56c16c16c16c17);  // 1/720
  constexpr Float64 p4 = fromBits(0x3fa5555555555555);         // 1/24
  constexpr Float64 p2 = sign * 0.5;
  const V r = a.r, head = isFused ? r : headOf(r), q = r * r;
  const V t = timesPlus(timesPlus(t7, q, t5), q, t3) * q, p = timesPlus(timesPlus(p6, q, p4), q, p2) * q;
  return {head, timesPlus(t, r, isFused ? a.rest : (r - head) + a.rest), p};
}

template <class V>
struct HyperbolicPairs {
  ShortPair<V> sinh, cosh;
};
// Of x >= 0; in the form for large ones 2^-512 times from 256 up, where squares would overflow, and e^-x
// is left out.
template <bool large, class V, class Offsets>
INLINE HyperbolicPairs<V> hyperbolicPairs(V x, WordsOf<V> n, const Remainder<V>& r, Offsets offsets) {
  const auto exponent = (n << 14) & 0x7ff00000;
  V up, down;
  if constexpr (large) {
    const auto isSmall = 0x40700000 > highWords(x);
    up = fromHighWords<V>(exponent + 0x1fe00000 + (isSmall & 0x20000000));
    down = fromHighWords<V>((0x3fe00000 - exponent) & isSmall);
  } else {
    up = fromHighWords<V>(exponent + 0x3fe00000), down = fromHighWords<V>(0x3fe00000 - exponent);
  }
  const auto row = columns<4, V>(hyperbolicRows, offsets);
  const V rising = row.of[0] * up, risingRest = row.of[1] * up;
  const V falling = row.of[2] * down, fallingRest = row.of[3] * down;
  const auto number = [](V value, V low) INLINED {
    const V whole = value + low, wholeHead = headOf(whole);
    return RowNumber<V>{value, low, whole, wholeHead, (value - wholeHead) + low};
  };
  const V c = rising + falling, d = rising - falling;
  const RowNumber<V> cosh = number(c, ((rising - c) + falling) + (risingRest + fallingRest));
  const RowNumber<V> sinh = number(d, ((rising - d) - falling) + (risingRest - fallingRest));
  return {added<false>(sinh, cosh, r), added<false>(cosh, sinh, r)};
}
template <bool large = false, class V>
INLINE HyperbolicPairs<V> hyperbolicPairs(V x) {
  const Reduced<V> a = reducedByLn2(x);
  const auto n = lowWords(a.shifted);
  return hyperbolicPairs<large>(x, n, remainderOf<false>(a), rowOfPower(n));
}

// `times`, a power of two, times e^x, for x from -708 to 709. Both rows' parts are one: f = g.
template <class V, class Offsets>
INLINE ShortPair<V> exponentialPair(WordsOf<V> n, const Remainder<V>& r, Offsets offsets, V times = broadcast<V>(1.0)) {
  const auto row = twoColumns<V>(hyperbolicRows, offsets);
  const V scale = fromHighWords<V>((wrappingSum(n, 1023 * 64) << 14) & 0x7ff00000) * times;
  const V f = row.first, low = row.second;
  if constexpr (isFused) {
    const V v = fused(f, r.head, f), lost = fused(f, r.head, f - v);
    const auto pair = shortPair(v, fused(f + low, r.p + r.tail, fused(low, r.head, lost + low)));
    return {pair.head * scale, pair.rest * scale};
  }
  const V product = f * r.head, v = f + product;
  const auto pair = shortPair(v, ((f - v) + product) + ((low + low * r.head) + (f + low) * (r.p + r.tail)));
  return {pair.head * scale, pair.rest * scale};
}
template <class V>
INLINE ShortPair<V> exponentialPair(V x, V times = broadcast<V>(1.0)) {
  const Reduced<V> a = reducedByLn2(x);
  const auto n = lowWords(a.shifted);
  return exponentialPair(n, remainderOf<false>(a), rowOfPower(n), times);
}

// y = n pi/256 + r for y >= 0. Next to a multiple of pi/256 the remainder is good to 2^-126 y; in the form for large
// ones to 2^-119 times that multiple's number.
constexpr Float64 nearestToRows = 0x1p-45;
template <class V>
struct ReducedTurn {
  Reduced<V> reduced;
  V isUnsure;  // a mask: the remainder is below `nearest` y, or too small in the form for large numbers
};
template <bool large = false, class V>
INLINE ReducedTurn<V> reducedByPi(V y, Float64 nearest) {
  constexpr Float64 shifter = fromBits(0x4338000000000000);   // 1.5 * 2^52
  constexpr Float64 pieces = fromBits(0x40545f306dc9c883);    // 81.48733086305042 = 256 / pi
  constexpr Float64 pi1 = fromBits(0x3f8921fb54440000);       // 0.012271846303065104, 37 bits: n times it is exact
  constexpr Float64 pi2 = fromBits(0x3d168c234c4c0000);       // 2.0026126184249655e-14, likewise
  constexpr Float64 pi3 = fromBits(0x3ab98a2e03707345);       // 8.252343021083928e-26
  constexpr Float64 pi1Large = fromBits(0x3f8921fa00000000);  // 0.012271836400032043, 20 bits: n up to 2^33
  constexpr Float64 pi2Large = fromBits(0x3e45444200000000);  // 9.903047271109244e-09, likewise
  constexpr Float64 pi3Large = fromBits(0x3cfa308c00000000);  // 5.81526742992472e-15, likewise
  constexpr Float64 pi4Large = fromBits(0x3bb313198a2e0370);  // 4.039205454526645e-21
  const V s = timesPlus(pieces, y, shifter), n = s - shifter;
  V r, r2;
  if constexpr (large) {
    const V r0 = (y - n * pi1Large) - n * pi2Large, r1 = n * pi3Large;
    const V a = r0 - r1, b = n * pi4Large - ((r0 - a) - r1);
    r = a - b, r2 = (a - r) - b;
  } else if constexpr (isFused) {
    const V r0 = minusTimes(y, n, pi1);
    r = minusTimes(r0, n, pi2), r2 = minusTimes(minusTimes(r0 - r, n, pi2), n, pi3);
  } else {
    const V r0 = y - n * pi1, r1 = n * pi2;
    r = r0 - r1, r2 = ((r0 - r) - r1) - n * pi3;
  }
  return {{s, r, r2}, lessLanes(magnitude(r), large ? n * 0x1p-48 : y * nearest)};
}
template <class V>
struct TrigonometricPairs {
  ShortPair<V> sin, cos;
};
template <class V, class Offsets>
INLINE TrigonometricPairs<V> trigonometricPairs(const Remainder<V>& r, Offsets offsets) {
  const auto row = columns<4, V>(trigonometricRows, offsets);
  const auto number = [](V head26, V low) INLINED { return RowNumber<V>{head26, low, head26 + low, head26, low}; };
  const RowNumber<V> sin = number(row.of[0], row.of[1]), cos = number(row.of[2], row.of[3]);
  return {added<false>(sin, cos, r), added<true>(cos, sin, r)};
}
template <class V>
INLINE TrigonometricPairs<V> trigonometricPairs(const Reduced<V>& a) {
  return trigonometricPairs(remainderOf<true>(a), rowOfTurn(lowWords(a.shifted)));
}
template <class V>
struct CertainTurn {
  ShortPair<V> sin, cos;
  V isUnsure;
};
template <bool large = false, class V>
INLINE CertainTurn<V> trigonometricPairs(V y, Float64 nearest = nearestToRows) {
  const auto a = reducedByPi<large>(y, nearest);
  const auto t = trigonometricPairs(a.reduced);
  return {t.sin, t.cos, a.isUnsure};
}

}  // namespace
}  // namespace qorvane
