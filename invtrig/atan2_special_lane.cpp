// atan2(y, x) for any arguments.
//
// Method: where |y / x| is from 2^-53 to 2^53, both are scaled by one power of two, and the ratio,
// or its distance u from the middle of a sixteenth of a binade, is made in two parts. The angle of
// that middle stands in the table, in two parts too, and what is added to its leading part is
// small.
//
// Error: largest found 0.506 ulp in round-to-nearest; other modes are the caller's.
#include "invtrig/atan2_special_lane.h"

#include "frame/lanes.h"
#include "invtrig/inverse_constants.h"

namespace qorvane {
namespace {

#include "invtrig/atan2_tables.inc"

struct Split {
  Float64 hi, lo;
};
// a + b without an error if |a| >= |b|
Split fastSum(Float64 a, Float64 b) {
  const Float64 sum = a + b;
  return {sum, b - (sum - a)};
}
// a in parts of 26 bits, so that products of parts are exact; |a| far from the ends of the range
Split split(Float64 a) {
  const Float64 t = a * 134217729.0, hi = t - (t - a);
  return {hi, a - hi};
}
// a * b less p, which is near it
Float64 productLess(Float64 a, Float64 b, Float64 p) {
  const Split as = split(a), bs = split(b);
  return (((as.hi * bs.hi - p) + as.hi * bs.lo) + as.lo * bs.hi) + as.lo * bs.lo;
}
// n / d
Split quotient(Split n, Split d) {
  const Float64 q = n.hi / d.hi;
  return {q, ((n.lo - productLess(q, d.hi, n.hi)) - q * d.lo) / d.hi};
}

// atan(q) - q for |q| up to 1/16
Float64 atanRest(Float64 q) {
  constexpr Float64 p6 = fromBits(0xbfb029bd34239994);  // -0.063136887768996452
  constexpr Float64 p5 = fromBits(0x3fb3ab7c1048afd1);  // 0.076835397697038191
  constexpr Float64 p4 = fromBits(0xbfb745be69cca475);  // -0.090907955961158596
  constexpr Float64 p3 = fromBits(0x3fbc71c6f9b157d3);  // 0.11111110301985087
  constexpr Float64 p2 = fromBits(0xbfc2492492382a27);  // -0.14285714282625969
  constexpr Float64 p1 = fromBits(0x3fc99999999991bb);  // 0.19999999999994408
  constexpr Float64 p0 = fromBits(0xbfd5555555555555);  // -0.33333333333333331
  const Float64 z = q * q;
  return ((((((p6 * z + p5) * z + p4) * z + p3) * z + p2) * z + p1) * z + p0) * z * q;
}

// The angle of (b, a) in the first quadrant, or its supplement, for ratios from 2^-106 to 2^106.
// With a point whose angle is known in two parts, base, it is base + u + the rest of atan(u).
Float64 scaledAngle(Float64 a, Float64 b, bool isSupplement) {
  const int exponent = static_cast<int>(highWord(a) >> 20);
  const Float64 scale = exponent < 1      ? 0x1p1022
                        : exponent > 2045 ? 0x1p-1022
                                          : fromBits(static_cast<uint64_t>(2046 - exponent) << 52);
  a = a * scale, b = b * scale;  // exact: 2^-105 or more, and below 2^55

  constexpr uint32_t lowest = 0x3fb00000, pastHighest = 0x40300000;  // 1/16, 16
  const uint32_t ratio = highWord(a / b);
  Split base{0.0, 0.0}, u;
  if (ratio < lowest) {
    u = quotient({a, 0.0}, {b, 0.0});
  } else if (ratio >= pastHighest) {
    base = {halfPi, halfPiLo};
    u = quotient({-b, 0.0}, {a, 0.0});
  } else {  // u = (a - c b) / (b + c a) with the middle c of a sixteenth of a binade
    const uint32_t row = (ratio - lowest) >> 16;
    const Float64 c = fromBits(static_cast<uint64_t>(lowest + 0x8000 + (row << 16)) << 32);
    base = {atanMiddles[row][0], atanMiddles[row][1]};
    const Split as = split(a), bs = split(b);
    const Float64 difference = a - c * bs.hi;  // exact: the terms are near each other
    const Split n = {difference - c * bs.lo, -c * bs.lo - ((difference - c * bs.lo) - difference)};
    const Float64 ca = c * as.hi;
    const Split d = b > ca ? fastSum(b, ca) : fastSum(ca, b);
    u = quotient(n, fastSum(d.hi, d.lo + c * as.lo));
  }
  Float64 rest = u.lo + atanRest(u.hi);
  if (isSupplement) {
    const Split supplement = fastSum(pi, -base.hi);
    base = {supplement.hi, supplement.lo + (piLo - base.lo)};
    u.hi = -u.hi, rest = -rest;
  }
  if (base.hi == 0.0) return u.hi + rest;
  const Split sum = fastSum(base.hi, u.hi);
  return sum.hi + (sum.lo + (base.lo + rest));
}

// Angles that are constants are added up from their parts, for the caller's rounding mode.
Float64 angle(Float64 hi, Float64 lo) { return opaque(hi) + lo; }

Float64 angleOf(Float64 y, Float64 x) {
  const Float64 a = magnitude(y), b = magnitude(x);
  const bool isNegative = toBits(x) >> 63 != 0;
  constexpr Float64 infinity = __builtin_inf();
  const Float64 ofNegativeAxis = isNegative ? angle(pi, piLo) : 0.0;
  if (a == infinity) {
    if (b != infinity) return angle(halfPi, halfPiLo);
    return isNegative ? angle(2.356194490192345, 9.184850993605148e-17) : angle(quarterPi, 3.061616997868383e-17);
  }
  if (a == 0 || b == infinity) return ofNegativeAxis;
  if (b == 0) return angle(halfPi, halfPiLo);

  const int difference = static_cast<int>(highWord(a) >> 20) - static_cast<int>(highWord(b) >> 20);
  if (difference >= 74) return angle(halfPi, halfPiLo);
  if (difference >= 54) return (halfPiLo - x / a) + halfPi;
  if (difference >= -53) return scaledAngle(a, b, isNegative);
  if (isNegative) return ofNegativeAxis;
  const Float64 q = a / b;
  return highWord(q) < 0x00100000 ? q * q + q : q * (q + 1.0);
}

}  // namespace

Element atan2SpecialLane(Float64 y, Float64 x) {
  if (y != y || x != x) return {y + x};
  return {orBits(angleOf(y, x), signOf(y))};
}

}  // namespace qorvane
