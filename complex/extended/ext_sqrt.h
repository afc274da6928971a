// extSqrt: the square root in extended precision.
//
// Method: x = 4^n v with 1 <= v < 4, r from a table with 1/sqrt(v) to 8 bits,
// sqrt(v) = v r (1 + u)^(-1/2) with u = v r^2 - 1, a polynomial of degree 7 of u. The products with v's
// leading 42 bits are exact. It needs no root of the hardware, and two roots overlap where the
// hardware's would wait for each other.
//
// Error in units of the last of 64 bits: at most 0.51.
//
// Special values: a zero gives the zero, +Inf +Inf, a NaN the NaN; less than 0 NaN and invalid.
#pragma once
#include "complex/extended/extended.h"

namespace qorvane {

// 1/sqrt(v), 10 bits: of v = 1 + i/256 in row i, of v = 2 (1 + i/256) in row 256 + i; i from 0 to 256.
extern const Float64 invSqrtTable[513];

namespace {

// 1 <= v < 4; `row` belongs to the number of nine bits next to v.
INLINE Extended80 rootOfScaled(Extended80 v, uint32_t row) {
  static constexpr Constant splitter{fromBits(0x4150000040000000), 0};  // 2^22 + 1: leaves 42 bits
  // (1 + u)^(-1/2) - 1
  static constexpr Constant c1{-0.5, 0}, c2{0.375, 0}, c3{-0.3125, 0}, c4{0.2734375, 0}, c5{-0.24609375, 0},
      c6{0.2255859375, 0}, c7{-0.20947265625, 0};
  const Float64 r = invSqrtTable[row], r2 = r * r;
  const Extended80 product = v * splitter, vh = product - (product - v), vl = v - vh;
  const Extended80 u = (vh * r2 - 1.0) + vl * r2, u2 = u * u;
  const Extended80 p3 = (u * c4 + c3) + u2 * ((u * c6 + c5) + u2 * c7);
  const Extended80 p = u * (u * c2 + c1) + (u2 * u) * p3;
  return vh * r + (vl + p * v) * r;
}

// x must be within the normal range of double precision, and 2^1023 at most: where the table's row is
// comes from the number rounded to double precision.
INLINE Extended80 rootOfOrdinary(Extended80 x) {
  const uint64_t bits = toBits(static_cast<Float64>(x)), fraction = bits & 0xfffffffffffff;
  const int32_t e = static_cast<int32_t>(bits >> 52) - 1023, odd = e & 1;
  const uint32_t index = static_cast<uint32_t>((fraction + 0x7ffffffffff + (fraction >> 44 & 1)) >> 44);
  const Extended80 root = rootOfScaled(x * powerOfTwo(odd - e), index + static_cast<uint32_t>(odd << 8));
  return root * powerOfTwo((e - odd) >> 1);
}

// The significand as a number from 1 to 2; x isn't subnormal.
INLINE Extended80 significandOf(Extended80 x) { return static_cast<Extended80>(patternOf(x).significand) * 0x1p-63; }

[[gnu::noinline, gnu::cold, maybe_unused]] Extended80 extSqrt(Extended80 x) {
  constexpr Float64 infinity = __builtin_inf();
  if (x == 0) return x;
  if (!(x > 0)) return x < 0 ? opaque(infinity) * 0.0L : x + infinity;
  Pattern p = patternOf(x);
  if (p.field == 0x7fff) return x + infinity;
  int32_t e = static_cast<int32_t>(p.field) - 0x3fff;
  if (p.field == 0) {
    x *= 0x1p200;
    p = patternOf(x);
    e = static_cast<int32_t>(p.field) - 0x3fff - 200;
  }
  const int32_t odd = e & 1;
  const uint64_t half = p.significand >> 1;
  const uint32_t index = static_cast<uint32_t>((half + 0x1fffffffffffff + (half >> 54 & 1)) >> 54) - 256;
  const Extended80 root = rootOfScaled(significandOf(x) * powerOfTwo(odd), index + static_cast<uint32_t>(odd << 8));
  // In two steps, since double precision reaches only half as far.
  const int32_t n = (e - odd) >> 1;
  const int32_t first = n / 16;
  Extended80 result = root;
  for (int i = 0; i < 15; ++i) result *= powerOfTwo(first);
  return result * powerOfTwo(n - 15 * first);
}

}  // namespace
}  // namespace qorvane
