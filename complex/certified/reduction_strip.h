// The exponentials and trigonometric functions of a strip: the stages before their addition formulas, and the
// sine and cosine.
#pragma once
#include "complex/certified/exponential_pairs.h"
#include "complex/certified/strips.h"

namespace qorvane {
namespace {

// Arguments as n steps and a remainder; before the second stage `head` and `tail` are r and its rest.
struct ReducedStrip {
  alignas(32) int n[stripLength], row[stripLength];
  alignas(32) Float64 head[stripLength], tail[stripLength], p[stripLength];
};
template <class V>
INLINE Remainder<V> remainderAt(const ReducedStrip& s, int64_t i) {
  return {load<V>(s.head + i), load<V>(s.tail + i), load<V>(s.p + i)};
}
template <class V, class Make>
INLINE void makeRemainders(ReducedStrip& s, int count, Make make) {
  eachGroup<Pack<V, 2>, V>(count, [&]<class U>(U, int64_t i) INLINED {
    const Remainder<U> r = make(Reduced<U>{U{}, load<U>(s.head + i), load<U>(s.tail + i)});
    store(s.head + i, r.head), store(s.tail + i, r.tail), store(s.p + i, r.p);
  });
}

template <bool ofMagnitude, class V>
[[gnu::noinline]] void exponentReductionStage(ReducedStrip& s, const Float64* x, int count) {
  eachGroup<Four, V>(count, [&]<class U>(U, int64_t i) INLINED {
    const U argument = load<U>(x + i);
    const auto a = reducedByLn2(ofMagnitude ? magnitude(argument) : argument);
    const auto n = lowWords(a.shifted);
    storeWords(s.n + i, n), storeWords(s.row + i, rowOfPower(n));
    store(s.head + i, a.r), store(s.tail + i, a.rest);
  });
}
template <class V>
[[gnu::noinline]] void exponentRemainderStage(ReducedStrip& s, int count) {
  makeRemainders<V>(s, count, [](const auto& a) INLINED { return remainderOf<false>(a); });
}
// x for e^x, or |x|.
template <bool ofMagnitude, class V>
INLINE void reduceExponents(ReducedStrip& s, const Float64* x, int count) {
  exponentReductionStage<ofMagnitude, V>(s, x, count);
  exponentRemainderStage<V>(s, count);
}

template <bool large, class V>
[[gnu::noinline]] uint64_t turnReductionStage(ReducedStrip& s, const Float64* y, Float64 nearest, int count) {
  uint64_t unsure = 0;
  eachGroup<Four, V>(count, [&]<class U>(U, int64_t i) INLINED {
    const auto a = reducedByPi<large>(magnitude(load<U>(y + i)), nearest);
    storeWords(s.row + i, rowOfTurn(lowWords(a.reduced.shifted)));
    store(s.head + i, a.reduced.r), store(s.tail + i, a.reduced.rest);
    unsure |= signMask(a.isUnsure) << i;
  });
  return unsure;
}
template <class V>
[[gnu::noinline]] void turnRemainderStage(ReducedStrip& s, int count) {
  makeRemainders<V>(s, count, [](const auto& a) INLINED { return remainderOf<true>(a); });
}
// |y|; a mask of the elements that are unsure.
template <bool large, class V>
INLINE uint64_t reduceTurns(ReducedStrip& s, const Float64* y, Float64 nearest, int count) {
  const uint64_t unsure = turnReductionStage<large, V>(s, y, nearest, count);
  turnRemainderStage<V>(s, count);
  return unsure;
}

// Sines and cosines of reduced angles.
struct TurnStrip {
  alignas(32) Float64 sinHead[stripLength], sinRest[stripLength], cosHead[stripLength], cosRest[stripLength];
};
template <class V>
[[gnu::noinline]] void turnStage(const ReducedStrip& y, TurnStrip& s, int count) {
  eachGroup<Four, V>(count, [&]<class U>(U, int64_t i) INLINED {
    const auto t = trigonometricPairs(remainderAt<U>(y, i), rowsAt(y.row + i));
    store(s.sinHead + i, t.sin.head), store(s.sinRest + i, t.sin.rest);
    store(s.cosHead + i, t.cos.head), store(s.cosRest + i, t.cos.rest);
  });
}
template <class V>
INLINE TrigonometricPairs<V> turnAt(const TurnStrip& s, int64_t i) {
  return {loadPair<V>(s.sinHead + i, s.sinRest + i), loadPair<V>(s.cosHead + i, s.cosRest + i)};
}

}  // namespace
}  // namespace qorvane
