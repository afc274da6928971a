// What the levels of ErfInv share: the rows and the arithmetic.
//
// Method: erfinv(x) = x G(w) with w = 1 - |x|, and G is smooth on a quarter of a binade. Exponent
// and top two significand bits of w tell the row; with the distance t from the quarter's middle, in
// units of the binade, G = F15 + F16 t + P(t), P a polynomial of degree 14 that has the low parts
// of value and slope. The rounding error of w goes into t. The heads of value and slope have 26
// bits, so that they multiply the heads of t and x without error.
#pragma once
#include "errorfn/rows.h"
#include "frame/pipeline.h"

namespace qorvane {
namespace {

#include "errorfn/erfinv_tables.inc"

// |x| from 2^-53 (1 + 2^-20) up and below 1, by high words.
constexpr int erfInvFastFrom = 0x3ca00001, erfInvFastTo = 0x3ff00000;
constexpr Float64 erfInvHead = fromBits(0xfffffffff8000000);

template <class V>
struct ErfInvReduced {
  V t0, t;            // without and with the rounding error of w
  WordsOf<V> offset;  // of the row, in bytes
};

// `a` is |x| in the fast range, or 0: that has a row too.
template <class V>
INLINE ErfInvReduced<V> erfInvReduce(V a) {
  const auto all = [](Float64 x) INLINED { return broadcast<V>(x); };
  const auto bits = [](uint64_t pattern) INLINED { return broadcast<V>(fromBits(pattern)); };
  a = largerLanes(a, bits(uint64_t{erfInvFastFrom} << 32));
  const V w = all(1.0) - a;
  const V t0 = orBits(andBits(w, bits(0x0003ffffffffffff)), all(1.0)) - all(1.125);
  // The error times the inverse of w's binade. Exponent bits complemented make twice the inverse,
  // half the error sets it right.
  const V twice = xorBits(andBits(w, bits(0x7ff0000000000000)), bits(0x7ff0000000000000));
  const V error = (all(1.0) - w) - a;
  constexpr int rowOfLargest = 4091;
  const auto row = rowOfLargest - (highWords(w) >> 18);
  return {t0, t0 + twice * (all(0.5) * error), (row << 7) + (row << 3)};  // 17 numbers a row
}

// P(t) in four stages, and the result from P, the reduced argument and x.
template <int first, class V>
INLINE V erfInvFourTerms(V p, V t, Rows rows) {
  const auto high = slots<V>(rows, first - 1), low = slots<V>(rows, first - 3);
  return (((p * t + high.second) * t + high.first) * t + low.second) * t + low.first;
}
template <class V>
INLINE V erfInvTopTerms(V t, Rows rows) {
  const auto f13 = slots<V>(rows, 13), f11 = slots<V>(rows, 11);
  return ((f13.second * t + f13.first) * t + f11.second) * t + f11.first;
}
template <class V>
INLINE V erfInvSum(V p, V t0, V t, V x, Rows rows) {
  const auto head = [](V v) INLINED { return andBits(v, broadcast<V>(erfInvHead)); };
  const auto f1 = slots<V>(rows, 1), f15 = slots<V>(rows, 15);
  p = ((p * t + f1.second) * t + f1.first) * t + slot<V>(rows, 0);
  const V th = head(t0), xh = head(x);
  const V v = f15.second * th, g = head(v + f15.first);
  const V rest = (((f15.first - g) + v) + f15.second * (t - th)) + p;
  return g * xh + (g * (x - xh) + rest * x);
}

// erfinv(x); what isn't in the fast range is taken for 0, so that it raises no flag.
template <class V>
INLINE V erfInvCore(V x) {
  const V inside = highWordWithin(magnitude(x), erfInvFastFrom, erfInvFastTo), fast = andBits(x, inside);
  const auto reduced = erfInvReduce(magnitude(fast));
  alignas(16) int offsets[laneCount<Four>];
  storeWords(offsets, reduced.offset);
  const Rows rows = {erfInvRows, offsets};
  const V t = reduced.t, p = erfInvFourTerms<6>(erfInvFourTerms<10>(erfInvTopTerms(t, rows), t, rows), t, rows);
  return erfInvSum(p, reduced.t0, t, fast, rows);
}

constexpr auto erfInvIsFlagged = [](auto x) INLINED { return anyHighWordOutside(x, erfInvFastFrom, erfInvFastTo); };

// Stretches: the chain of operations is too long for the processor to overlap it with the next
// vector's, so it is cut into stages, with the reduced arguments of a stretch in memory.
constexpr int64_t longestStretch = 256, vector = laneCount<Four>;
struct Stretch {
  alignas(32) Float64 t0[longestStretch], t[longestStretch];
  alignas(32) int offsets[longestStretch];
};

// False if there are flagged elements.
INLINE bool reduceStretch(const Float64* x, int64_t count, Stretch& c) {
  Four inside = equalLanes(Four{}, Four{});
  for (int64_t i = 0; i < count; i += vector) {
    const Four a = magnitude(load<Four>(x + i)), mask = highWordWithin(a, erfInvFastFrom, erfInvFastTo);
    inside = andBits(inside, mask);
    const auto reduced = erfInvReduce(andBits(a, mask));
    store(c.t0 + i, reduced.t0), store(c.t + i, reduced.t), storeWords(c.offsets + i, reduced.offset);
  }
  return signMask(inside) == 15;
}

// evaluate(src, dst, count, c) gets what reduceStretch has left; special(x) -> Element.
template <int64_t shortest, auto evaluate, auto special>
INLINE nuvStatus erfInvLoop(const Float64* src, Float64* dst, int64_t len) {
  if (len == 1 && !erfInvIsFlagged(*src)) return *dst = erfInvCore(*src), nuvStatusOk;
  return shortOrLongLoop<longestStretch, shortest, vector>(
      len, inStages<Stretch, reduceStretch, evaluate>,
      [](int64_t count, const Float64* x, Float64* y) INLINED {
        return unaryLoop<Four, Raises::yes>(
            x, y, count, [](auto v) INLINED { return erfInvCore(v); }, erfInvIsFlagged, special);
      },
      src, dst);
}

}  // namespace
}  // namespace qorvane
