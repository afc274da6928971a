// Rounding to integers with a shifter, for sources of every level.
//
// Method: for |x| < 2^52 the sum of x and 2^52 with the same sign lies in [2^52, 2^53), where
// numbers are the integers, so the addition rounds x to an integer in the mode in force; taking
// 2^52 off again is exact. From 2^52 on all numbers are integers, but there the sum would round
// them. Levels 1 to 3 and Modf find those, infinities and NaNs by their high words first, so that
// they meet no arithmetic that could raise a flag; Round at level 5 lets them through the sum and
// puts the numbers themselves back.
#pragma once
#include "frame/words.h"

namespace qorvane {
namespace {

constexpr Float64 shifter = 0x1p52;  // the spacing of numbers is 1 from here on

template <class V>
INLINE bool anyWithoutFraction(V x) {
  return anyMagnitudeFrom(x, highWord(shifter));
}

// a >= 0 rounded to an integer; a zero result is -0 where the mode is down.
template <class V>
INLINE V integral(V a) {
  return (a + shifter) - shifter;
}

// The nearest integer of a = |x|, ties away from zero, where r = integral(a) in round-to-nearest:
// the tie that went down to an even number has a - r = 1/2.
template <class V>
INLINE V tieAwayFromZero(V a, V r) {
  return r + andBits(equalLanes(a - r, broadcast<V>(0.5)), broadcast<V>(1.0));
}

}  // namespace
}  // namespace qorvane
