// What the kernels of Sin, Cos and SinCos share at all levels: the expansion around a point of the
// table, and the loop over blocks.
//
// sin(t + r + e) for a table point t, a remainder r and its tail e is taken apart into terms of
// falling size. sin t stands in the table as sineHi + sineLo, and cos t as cosineHi + cosineLo with
// a power of two for cosineHi: cosineHi * r is exact, so that the sum of the two leading terms has
// a rounding error that can be computed.
//   hi    sineHi + cos t * r, rounded
//   d1    the error of the first of its two sums
//   d2    the error of the second one
//   ps    cos t * (sin r - r)
//   pc    sin t * (cos r - 1)
//   g     the derivative times e, and sineLo
// The kernels add them up in their own orders, hi last.
#pragma once
#include "frame/loops.h"

namespace qorvane {
namespace {

template <class V>
struct SplitSine {
  V cosineLo, cosineHi, sineHi, sineLo;
};

template <class V>
struct Terms {
  V hi, d1, d2, ps, pc, g;
};

// sinPoly is (sin r - r) / r, cosPoly is cos r - 1.
template <class V>
INLINE Terms<V> expand(SplitSine<V> t, V r, V e, V sinPoly, V cosPoly) {
  const V cosine = t.cosineHi + t.cosineLo;
  const V g = (cosine - t.sineHi * r) * e + t.sineLo;
  const V ps = sinPoly * r * cosine;
  const V pc = cosPoly * t.sineHi;
  const V high = t.cosineHi * r, low = t.cosineLo * r;
  const V b = t.sineHi + high;
  const V hi = low + b;
  return {hi, (t.sineHi - b) + high, (b - hi) + low, ps, pc, g};
}

// x = (count * step) + r + e for a step of 2 pi / N in three parts; `shifted` has the count in its
// low bits. Other reductions leave `count` out.
struct Step {
  Float64 inverse, part1, part2, part3;
};
constexpr Float64 roundShifter = 0x1.8p52;
template <class V>
struct Remainder {
  V r, e;
  BitsOf<V> shifted;
  V count{};
};
template <class V>
INLINE Remainder<V> removeSteps(V x, Step step) {
  const V y = x * step.inverse + roundShifter;
  const V k = y - roundShifter;
  const V k2 = k * step.part2;
  const V t = x - k * step.part1;
  const V r = t - k2;
  return {r, ((t - r) - k2) - k * step.part3, bitsOf(y), k};
}

}  // namespace
}  // namespace qorvane
