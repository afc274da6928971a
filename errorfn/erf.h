// What the levels of Erf share: the rows and the arithmetic.
//
// Method: |x| has its row by its top three significand bits, eight rows a binade from 1/8 to 6, one
// below and one above. With the distance u from the row's centre, erf|x| = S1 + S0 + S2 u + S3 u^2
// + ... + S11 u^10. The head of S2 u is exact and added to S1 with its rounding error; all else is
// a small correction. The sign of x is put back at the end.
//
// The centre isn't read from the row: it follows from |x|, before the row's address does. From 6
// up, where the result is 1 whatever u is, |x| is taken for 6, so that infinities raise no flag.
#pragma once
#include "errorfn/rows.h"
#include "frame/loops.h"

namespace qorvane {
namespace {

#include "errorfn/erf_tables.inc"

constexpr Float64 erfUpperHalf = fromBits(0xffffffff00000000);

// The distance from the centre of the row, and the row's byte offset.
template <class V>
struct ErfReduced {
  V u;
  WordsOf<V> offset;
};

// `a` is |x|, or 0 for what isn't in the fast range.
template <class V>
INLINE ErfReduced<V> erfReduce(V a) {
  constexpr Float64 rowBits = fromBits(0x7ffe000000000000);  // the part of a pattern that tells its row
  constexpr Float64 halfRow = fromBits(0x0001000000000000);  // from there to the centre
  // The row from 5.5 up is fitted up to where erf rounds to 1 only.
  constexpr Float64 lastCentre = fromBits(0x4016d7da46e4b314);  // 5.7107936
  constexpr Float64 belowRow1 = 15.0 / 128, row1 = 0.125, lastRow = 6.0;
  constexpr int first = static_cast<int>(highWord(belowRow1)), shift = 10;  // high words are 2^17 apart, rows 2^7 bytes
  const auto all = [](Float64 x) INLINED { return broadcast<V>(x); };
  const V b = smallerLanes(a, all(lastRow));
  const V row = andBits(largerLanes(b, all(belowRow1)), all(rowBits));
  const V centre = smallerLanes(orBits(row, all(halfRow)), all(lastCentre));
  return {b - withoutBits(centre, lessLanes(b, all(row1))), (highWords(row) - first) >> shift};
}

// The arithmetic, in three stages.
template <class V>
INLINE V erfHighTerms(V u, Rows rows) {
  const auto s10 = slots<V>(rows, 10), s8 = slots<V>(rows, 8);
  return ((s10.second * u + s10.first) * u + s8.second) * u + s8.first;
}
template <class V>
INLINE V erfMiddleTerms(V q, V u, Rows rows) {
  const auto s6 = slots<V>(rows, 6), s4 = slots<V>(rows, 4);
  return (((q * u + s6.second) * u + s6.first) * u + s4.second) * u + s4.first;
}
template <class V>
INLINE V erfSum(V q, V u, Rows rows) {
  const auto s2 = slots<V>(rows, 2), s0 = slots<V>(rows, 0);
  const V uh = andBits(u, broadcast<V>(erfUpperHalf)), ul = u - uh;
  const V lh = andBits(s2.first, broadcast<V>(erfUpperHalf)), ll = s2.first - lh;
  const V tail = (q * u + s2.second) * u * u;
  // |m| < S1, or S1 = 0: the error of the sum s is m - (s - S1), in every rounding mode.
  const V m = lh * uh, s = m + s0.second;
  const V low = ((ll * uh + (lh * ul + ll * ul)) + tail) + s0.first;
  return s + (low + (m - (s - s0.second)));
}

// erf(x), x in the fast range in the lanes that `inside` has set.
template <class V>
INLINE V erfCore(V x, V inside) {
  const ErfReduced<V> reduced = erfReduce(andBits(magnitude(x), inside));
  alignas(16) int offsets[laneCount<Four>];
  storeWords(offsets, reduced.offset);
  const Rows rows = {erfRows, offsets};
  const V u = reduced.u, q = erfMiddleTerms(erfHighTerms(u, rows), u, rows);
  return orBits(erfSum(q, u, rows), signOf(x));
}

// What isn't in the fast range: infinities, NaNs and small numbers, whose product with 2 / sqrt(pi)
// is made as high + low far from the subnormal numbers and brought down, from normalFrom up with
// one rounding. head(s) is the leading half of s.
template <class Head>
INLINE Element erfOutside(Float64 x, Float64 normalFrom, Head head) {
  constexpr Float64 slope = fromBits(0x3ff20dd750429b6d);      // 1.1283791670955126 = 2 / sqrt(pi)
  constexpr Float64 slopeHi = fromBits(0x3ff20dd750000000);    // 1.1283791661262512
  constexpr Float64 slopeLo = fromBits(0x3e10a6db446b8ea4);    // 9.692613531930338e-10
  constexpr Float64 splitFrom = fromBits(0x0000010000000000);  // 5.43230922487e-312
  constexpr Float64 up = 0x1p200, down = 0x1p-200;

  const Float64 a = magnitude(x);
  if (toBits(a) > 0x7ff0000000000000) return {x + x};
  if (toBits(a) == 0x7ff0000000000000) return {orBits(1.0, signOf(x))};
  if (toBits(a) == 0) return {x};
  const Float64 s = x * up, sh = head(s), sl = s - sh;
  const Float64 t = (sh * slopeLo + sl * slopeLo) + slopeHi * sl;
  if (a >= normalFrom) return {(t + slopeHi * sh) * down};
  if (a < splitFrom) return {x * slope};
  const Float64 m = sh * slopeHi, mh = head(m);
  return {mh * down + ((m - mh) + t) * down};
}

}  // namespace
}  // namespace qorvane
