// The reduction of the trigonometric kernels: |x| = h pi/2 + rh + rl with the integer h, the
// remainder at most pi/4 in magnitude, or hardly more, and rh its leading 11 bits.
//
// Method: up to 2^17 pi/4 in three parts, up to 2^30 in five, so short that all products and
// differences before the last one are exact; from there on extReduceLarge, with the bits of 4/pi
// that matter.
//
// Error: at most 2^-132 absolutely below 2^30, 2^-74 of the remainder, where it is smallest; from
// there on 2^-100 of the remainder.
#pragma once
#include "complex/extended/extended.h"

namespace qorvane {

// |x| for a finite x from 2^30 up: the low bits of N = floor(|x| * 4/pi) + addend, and what remains
// of |x| beyond the even number of quarters of pi next to it, as remainder[0] + remainder[1].
int32_t extReduceLarge(Extended80 x, int32_t addend, Float64* remainder);

namespace {

// rh has 12 bits at most, so that it, its square and its fourth power are exact in double
// precision.
struct TrigRemainder {
  Float64 rh;
  Extended80 rl;
  uint32_t halfTurns;  // h
};

// a - h pi/2, for h below 2^17 and below 2^30.
INLINE Sum remainderInThreeParts(Extended80 a, Extended80 h) {
  constexpr Float64 p1 = fromBits(0x3ff921fb54442d00);  // 1.5707963267948912, 45 bits
  constexpr Float64 p2 = fromBits(0x3cf8469898cc5180);  // 5.3903028581581316e-15, 46 bits
  constexpr Float64 p3 = fromBits(0xb9efc8f8cbb5bf6c);  // -1.2536990206932499e-29
  const Sum r = fastTwoSum(a - h * p1, -(h * p2));
  return {r.hi, r.lo - h * p3};
}
INLINE Sum remainderInFiveParts(Extended80 a, Extended80 h) {
  constexpr Float64 q1 = fromBits(0x3ff921fb54400000);  // 1.5707963267341256, 31 bits
  constexpr Float64 q2 = fromBits(0x3dd0b4611a600000);  // 6.077100506303966e-11, 32 bits
  constexpr Float64 q3 = fromBits(0x3ba3198a2e000000);  // 2.0222662487111665e-21, 28 bits
  constexpr Float64 q4 = fromBits(0x397b839a25200000);  // 8.478427660348229e-32, 32 bits
  constexpr Float64 q5 = fromBits(0x37127044533e63a0);  // 2.0670321098263988e-43
  Sum r = fastTwoSum(a - h * q1, -(h * q2));
  r = fastTwoSum(r.hi, r.lo - h * q3);
  r = fastTwoSum(r.hi, r.lo - h * q4);
  return {r.hi, r.lo - h * q5};
}

// h is half the even number next to N = floor(|x| * 4/pi), half of an odd N rounded up. So it is
// |x| * 2/pi rounded to nearest, but for a half rounded to even, which 4/pi, rounded, makes rarely,
// but does make.
struct HalfTurns {
  Extended80 number;
  uint32_t integer;
};
INLINE HalfTurns halfTurnsOf(Extended80 a) {
  constexpr Float64 twoOverPi = fromBits(0x3fe45f306dc9c883);  // 0.6366197723675814
  const Extended80 turns = a * twoOverPi;
  Extended80 h = wholePart(turns);
  if (turns - h == 0.5) [[unlikely]]
    h += 1.0;
  return {h, static_cast<uint32_t>(toInt32(h))};
}

INLINE TrigRemainder splitRemainder(Sum r, uint32_t halfTurns, Float64 factor) {
  const Float64 rh = static_cast<Float64>(leadingPart(r.hi, factor));
  return {rh, (r.hi - rh) + r.lo, halfTurns};
}

constexpr uint32_t keyOfFiveParts = keyFrom(exponentField(17)), keyOfLargeReduction = keyFrom(exponentField(30));

// For finite |x| from 2^-5 up. `factor` cuts the remainder that extReduceLarge gives.
INLINE TrigRemainder reduceTrig(const Argument& a, Float64 factor) {
  const Extended80 magnitude = a.magnitude();
  if (a.key < keyOfLargeReduction) {
    const HalfTurns h = halfTurnsOf(magnitude);
    const Sum r =
        a.key < keyOfFiveParts ? remainderInThreeParts(magnitude, h.number) : remainderInFiveParts(magnitude, h.number);
    return splitRemainder(r, h.integer, leading11);
  }
  Float64 parts[2];
  const uint32_t quarters = static_cast<uint32_t>(extReduceLarge(magnitude, 0, parts));
  return splitRemainder(fastTwoSum(parts[0], parts[1]), (quarters + 1) >> 1, factor);
}

}  // namespace
}  // namespace qorvane
