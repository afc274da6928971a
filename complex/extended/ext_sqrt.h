// extSqrt: the square root in extended precision.
//
// Method: x = 4^n v with 1 <= v < 4, r from a table with 1/sqrt(v) to 8 bits,
// sqrt(v) = v r (1 + u)^(-1/2) with u = v r^2 - 1, a polynomial of degree 7 of u. The products with v's
// leading 42 bits are exact.
//
// Error in units of the last of 64 bits: at most 0.53.
//
// Special values: a zero gives the zero, +Inf +Inf, a NaN the NaN; less than 0 NaN and invalid.
#pragma once
#include "complex/extended/extended.h"

namespace qorvane {

// 1/sqrt(v), 10 bits: of v = 1 + i/256 in row i, of v = 2 (1 + i/256) in row 256 + i; i from 0 to 256.
extern const Float64 invSqrtTable[513];

namespace {

// sqrt(x) as the exact product of r and the leading 42 bits of x, and what is left; r is 1/sqrt(x) to 8
// bits, with 10 bits, and `rounded` is x in double precision. What u^3 and the higher powers give is
// made there: it wants 42 bits.
INLINE Sum rootByEstimate(Extended80 x, Float64 rounded, Float64 r) {
  static constexpr Constant splitter{fromBits(0x4150000040000000), 0};  // 2^22 + 1
  static constexpr Constant c1{-0.5, 0}, c2{0.375, 0};                  // (1 + u)^(-1/2) = 1 + c1 u + c2 u^2 + ...
  constexpr Float64 c3 = -0.3125, c4 = 0.2734375, c5 = -0.24609375, c6 = 0.2255859375, c7 = -0.20947265625;
  const Float64 r2 = r * r, v = rounded * r2 - 1.0, v2 = v * v;
  const Float64 tail = (v2 * v) * ((c3 + c4 * v) + v2 * ((c5 + c6 * v) + v2 * c7));
  const Extended80 product = x * splitter, xh = product - (product - x), xl = x - xh;
  const Extended80 u = (xh * r2 - 1.0) + xl * r2, p = u * (u * c2 + c1) + tail;
  return {xh * r, xl * r + p * (x * r)};
}

// The table's entry for x, times the power of two that 1/sqrt(x) has. x is in double precision, normal.
INLINE Float64 rootEstimate(Float64 x) {
  const uint64_t bits = toBits(x), fraction = bits & 0xfffffffffffff, odd = ~bits >> 52 & 1;
  const uint64_t index = (fraction + 0x7ffffffffff + (fraction >> 44 & 1)) >> 44;
  const int64_t half = (static_cast<int64_t>(bits >> 52) - 1023 - static_cast<int64_t>(odd)) >> 1;
  return fromBits(toBits(invSqrtTable[index + (odd << 8)]) - (static_cast<uint64_t>(half) << 52));
}

// x must be within the normal range of double precision: its place in the table comes from x rounded
// to double precision.
INLINE Sum rootSumOfOrdinary(Extended80 x) {
  const Float64 rounded = static_cast<Float64>(x);
  return rootByEstimate(x, rounded, rootEstimate(rounded));
}
INLINE Extended80 rootOfOrdinary(Extended80 x) {
  const Sum root = rootSumOfOrdinary(x);
  return root.hi + root.lo;
}
// The same with what rounding leaves.
INLINE Sum rootAndRest(Extended80 x) {
  const Sum root = rootSumOfOrdinary(x);
  return fastTwoSum(root.hi, root.lo);
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
  const Extended80 v = significandOf(x) * powerOfTwo(odd);
  const uint64_t half = p.significand >> 1;
  const uint32_t index = static_cast<uint32_t>((half + 0x1fffffffffffff + (half >> 54 & 1)) >> 54) - 256;
  const Sum parts = rootByEstimate(v, static_cast<Float64>(v), invSqrtTable[index + static_cast<uint32_t>(odd << 8)]);
  const Extended80 root = parts.hi + parts.lo;
  // In two steps, since double precision reaches only half as far.
  const int32_t n = (e - odd) >> 1;
  const int32_t first = n / 16;
  Extended80 result = root;
  for (int i = 0; i < 15; ++i) result *= powerOfTwo(first);
  return result * powerOfTwo(n - 15 * first);
}

}  // namespace
}  // namespace qorvane
