// The reduction of the trigonometric kernels: |x| = h pi/2 + rh + rl with the integer h, the
// remainder at most pi/4 in magnitude, or hardly more, and rh its leading 11 bits.
//
// Method: up to 2^17 pi/4 in three parts, up to 2^30 in five, so short that all products and
// differences before the last one are exact; from there on extReduceLarge, with the bits of 4/pi that
// matter.
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

struct TrigRemainder {
  Extended80 rh, rl;
  uint32_t halfTurns;  // h
};

// The parts of pi/4. n = 2h is below 2^18 with three parts, 2^31 with five.
INLINE Sum quartersRemainder(Extended80 a, Extended80 n) {
  constexpr Float64 p1 = fromBits(0x3fe921fb54442d00);  // 0.785398163397448, 45 bits
  constexpr Float64 p2 = fromBits(0x3ce8469898cc5180);  // 2.6951514290790572e-15, 46 bits
  constexpr Float64 p3 = fromBits(0xb9dfc8f8cbb5bf6c);  // -6.268495103473e-30
  const Extended80 d = a - n * p1, w = leadingPart(d, leading31);
  const Sum r = fastTwoSum(w, (d - w) - n * p2);
  return {r.hi, r.lo - n * p3};
}
INLINE Sum quartersRemainderOfLarge(Extended80 a, Extended80 n) {
  constexpr Float64 q1 = fromBits(0x3fe921fb54400000);  // 0.7853981633670628, 31 bits
  constexpr Float64 q2 = fromBits(0x3dc0b4611a600000);  // 3.038550253151983e-11, 32 bits
  constexpr Float64 q3 = fromBits(0x3b93198a2e000000);  // 1.0111331243632e-21, 28 bits
  constexpr Float64 q4 = fromBits(0x396b839a25200000);  // 4.2392138301654e-32, 32 bits
  constexpr Float64 q5 = fromBits(0x37027044533e63a0);  // 1.0335160549096e-43
  const Extended80 d = a - n * q1, w = leadingPart(d, leading31);
  Sum r = fastTwoSum(w, (d - w) - n * q2);
  r = fastTwoSum(r.hi, r.lo - n * q3);
  r = fastTwoSum(r.hi, r.lo - n * q4);
  return {r.hi, r.lo - n * q5};
}

constexpr uint32_t keyOfLargeReduction = keyFrom(exponentField(30));

// `factor` cuts the remainder that extReduceLarge gives.
INLINE TrigRemainder reduceTrig(const Argument& a, Float64 factor) {
  Sum r;
  uint32_t quarters;
  if (a.key < keyOfLargeReduction) [[likely]] {
    constexpr Float64 fourOverPi = fromBits(0x3ff45f306dc9c883);  // 1.2732395447351628
    quarters = (floorOf(a.magnitude * fourOverPi) + 1) & ~1u;
    const Extended80 n = static_cast<int32_t>(quarters);
    r = a.key < keyFrom(exponentField(17)) ? quartersRemainder(a.magnitude, n)
                                           : quartersRemainderOfLarge(a.magnitude, n);
    factor = leading11;
  } else {
    Float64 parts[2];
    quarters = static_cast<uint32_t>(extReduceLarge(a.magnitude, 0, parts)) + 1;
    r = fastTwoSum(parts[0], parts[1]);
  }
  const Extended80 rh = leadingPart(r.hi, factor);
  return {rh, (r.hi - rh) + r.lo, quarters >> 1};
}

}  // namespace
}  // namespace qorvane
