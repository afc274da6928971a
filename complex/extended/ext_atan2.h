// extAtan2, extAtan, extAbs: angles in extended precision.
//
// Method: the smaller of |x| and |y| over the larger one is next to c = j/128;
// q = (small - c large) / (large + c small) is the tangent of the rest, a polynomial. A table has
// atan c turned into the octant. From 2^-12 down, q is the quotient itself.
//
// Error in units of the last of 64 bits: at most 1.1;
// extAtan 0.9, 0.51 below 1/128.
//
// Special values: as C99's Annex G has them for atan2 and atan; a multiple of pi/4 that isn't exact is
// inexact. A NaN gives the NaN.
#pragma once
#include "complex/extended/angle_table.h"
#include "complex/extended/extended.h"

namespace qorvane {

namespace {

// |x|, a NaN without its sign.
INLINE Extended80 extAbs(Extended80 x) { return __builtin_fabsl(x); }

// atan q - q for |q| <= 2^-7
INLINE Extended80 atanTail(Extended80 q) {
  static constexpr Constant b3 = extended(0xbffd, 0xaaaaaaaaaaaaaa90);  // -0.333333333333333
  // Of these the leading 53 bits do: what they leave is below 2^-77 of the result.
  static constexpr Constant b5 = leading53(extended(0x3ffc, 0xcccccccccc9ba8e3));  // 0.199999999999
  static constexpr Constant b7 = leading53(extended(0xbffc, 0x9249247c9586e873));  // -0.142857141594
  static constexpr Constant b9 = leading53(extended(0x3ffb, 0xe38521d9d93223ac));  // 0.111093773328
  const Extended80 s = q * q, s2 = s * s;
  return (((b9 * s2 + b5) * s2) + (b7 * s2 + b3) * s) * q;
}

// The angle in [0, pi] of the point whose coordinates have the magnitudes `small` and `large`; large
// isn't zero. `exchanged` says that the ordinate is the large one.
INLINE Extended80 angleOf(Extended80 small, Extended80 large, bool exchanged, bool negativeX) {
  constexpr Float64 leading15 = fromBits(0x42f8000000000000);  // 1.5 * 2^48
  const int32_t multipleOfPi = exchanged ? 256 : negativeX ? 512 : 0;
  const Float64 direction = exchanged == negativeX ? 1.0 : -1.0;
  const Extended80 j = wholePart((128.0 * small) / large), c = j * 0x1p-7;
  const AtanRow& row = atanTable[multipleOfPi + toInt32(direction * j)];
  // c has 8 bits: the products and the difference are exact.
  const Extended80 largeShort = leadingPart(large, leading15);
  const Extended80 q = ((small - c * largeShort) - c * (large - largeShort)) / (large + c * small);
  return row.hi + (row.lo + direction * (q + atanTail(q)));
}

// The same for coordinates in double precision that are finite and not both zero.
INLINE Extended80 angleOfFinite(Float64 y, Float64 x) {
  const Float64 ax = __builtin_fabs(x), ay = __builtin_fabs(y);
  const bool exchanged = ax <= ay;
  return angleOf(exchanged ? ax : ay, exchanged ? ay : ax, exchanged, toBits(x) >> 63 != 0);
}

// The arguments' quotient must be above 2^-4000.
[[gnu::noinline, gnu::cold, maybe_unused]] Extended80 extAtan2(Extended80 y, Extended80 x) {
  if (x != x || y != y) return y * x;
  const bool negativeX = (patternOf(x).field & 0x8000) != 0, negativeY = (patternOf(y).field & 0x8000) != 0;
  constexpr Float64 infinity = __builtin_inf();
  Extended80 ax = extAbs(x), ay = extAbs(y);
  if (ax == 0 && ay == 0 && !negativeX) return y;
  if (ax == ay && (ax == 0 || ax == infinity)) {
    ay = ax == 0 ? 0.0 : 1.0;
    ax = 1.0;
  }
  if (ax == infinity || ay == infinity) {
    ax = ax == infinity;
    ay = ay == infinity;
  }
  const bool exchanged = ax <= ay;
  const Extended80 angle = angleOf(exchanged ? ax : ay, exchanged ? ay : ax, exchanged, negativeX);
  return negativeY ? -angle : angle;
}

INLINE Extended80 extAtan(Argument a) {
  const Extended80 x = a.x, t = x * x;
  if (x != x) return x * 1.0L;
  if (a.key >= keyFrom(0x3ff8)) {
    if (a.key >= keyOfInfinity) return a.sign() * angleOf(0.0L, 1.0L, true, false);
    const bool exchanged = a.key >= keyFrom(0x3fff);
    const Extended80 magnitude = a.magnitude();
    return a.sign() * angleOf(exchanged ? 1.0L : magnitude, exchanged ? magnitude : 1.0L, exchanged, false);
  }
  static constexpr Constant a3 = extended(0xbffd, 0xaaaaaaaaaaaaaaab);  // -1/3
  static constexpr Constant a5 = extended(0x3ffc, 0xcccccccccccccccd);  // 1/5
  if (a.key >= keyFrom(0x3ff3)) return x + atanTail(x);
  if (a.key >= keyFrom(0x3fed)) return x + (t * (a5 * t + a3)) * x;
  if (a.key >= keyFrom(0x3fb4)) return x + ((a3 * x) * x) * x;
  return tinyOdd(x);
}

}  // namespace
}  // namespace qorvane
