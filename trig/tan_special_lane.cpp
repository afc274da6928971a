// tan(x), all levels: one element, whatever its size, without extended precision.
//
// Method: a large x is first reduced modulo pi/2. rh + rl = k * pi/32 + r + e gives the row j of
// the table, k and the quadrant modulo 32, and |r| <= pi/64. In rows 0 to 8 and 24 to 31 tan(j
// pi/32 + r) is its Taylor series of degree 15, with c0 as high + low and a high part of c1 split
// off. Rows 9 to 23 are about the pole: theirs is the series of tan + 1/w, where w + wlo is the
// distance to the nearest multiple of pi/2, taken from rh + rl with a splitting of pi/32 of its
// own. 1/w is a reciprocal n of 18 bits, so that n * u is exact for a u of 35 bits next to w, and a
// correction from the residual 1 - n u and from w - u.
//
// Error: largest found 0.609 ulp, at -23657817.622564353.
//
// Special values: a zero gives the same zero, a NaN the NaN, quiet, an infinity the default NaN and
// out of domain.
#include "trig/reduction.h"
#include "trig/tan.h"

namespace qorvane {
namespace {

#include "trig/tan_tables.inc"

constexpr Float64 thirtyTwoOverPi = fromBits(0x40245f306dc9c883);  // 10.185916357881302
constexpr Float64 shifter = 0x1.8p52;
constexpr Float64 shifterTo16 = 0x1.8p56;  // rounds to a multiple of 16

// pi/32 = step1 + step2 + step3, for the remainder from the row's point.
constexpr Float64 step1 = fromBits(0x3fb921fb54440000);  // 0.09817477042452083
constexpr Float64 step2 = fromBits(0x3d468c234c4c0000);  // 1.6020900947399724e-13
constexpr Float64 step3 = fromBits(0x3ae98a2e03707345);  // 6.601874416867142e-25

// pi/32 = pole1 + pole2 + pole3, for the distance from the pole.
constexpr Float64 pole1 = fromBits(0x3fb921fb54444000);       // 0.0981747704247482
constexpr Float64 pole2 = fromBits(0xbd32e7b967674000);       // -6.716466596861444e-14
constexpr Float64 pole3 = fromBits(0x3aa8a2e03707344a);       // 3.9801982271943437e-26
constexpr Float64 minusPole2 = fromBits(0x3d32e7b9676733af);  // 6.716466596857464e-14 = -(pole2 + pole3)

constexpr uint64_t divisorMask = 0xfffffffffffc0000;  // leaves 35 bits

Float64 masked(Float64 x, uint64_t mask) { return fromBits(toBits(x) & mask); }

}  // namespace

Element tanSpecialLane(Float64 x) {
  const uint32_t magnitude = highWord(x) & 0x7fffffff;
  if (x == 0) return {x};
  if (magnitude >= 0x7ff00000) return {x - x, toBits(x) << 12 == 0 ? nuvStatusOutOfDomain : nuvStatusOk};
  if (magnitude < uint32_t{771} << 20) return {(0x1p55 * x - x) * 0x1p-55};  // below 2^-252

  PiOver2Remainder reduced{x, 0, 0};
  if (magnitude >= 0x40c90000) reduced = reducePiOver2(x);  // from 12800 up
  const Float64 rh = reduced.hi, rl = reduced.lo;

  const Float64 y = rh * thirtyTwoOverPi, y1 = y + shifter, k = y1 - shifter, y2 = y + shifterTo16,
                k16 = y2 - shifterTo16;
  const Float64* const s =
      tanTable32[(static_cast<uint32_t>(toBits(y1)) + 16 * static_cast<uint32_t>(reduced.quadrant)) & 31];

  const Float64 t = rh - step1 * k, r = t - step2 * k, e = (((t - r) - step2 * k) - step3 * k) + rl;

  const Float64 t2 = rh - pole1 * k16, m = pole2 * k16, w = t2 - m, wlo = (((t2 - w) - m) - pole3 * k16) + rl;
  const Float64 u = masked(k16 * minusPole2 + t2, divisorMask);
  const Float64 reciprocal = 1.0 / u, n = masked(reciprocal, toBits(s[19]));

  const Float64 r2 = r * r, r4 = r2 * r2;
  const Float64 low = ((s[5] * r + s[3]) * r2 + s[7] * r4) + ((s[11] * r + s[9]) + s[13] * r2) * (r * r4);
  const Float64 high =
      (((s[1] * r + s[0]) + (s[4] * r + s[2]) * r2) + s[6] * r4) + (r * r4) * ((s[10] * r + s[8]) + s[12] * r2);
  const Float64 series = low + (r4 * r4) * high;

  const Float64 l1 = r * s[16], l2 = r * s[17], lead = l1 + l2;
  const Float64 rest = series + (((s[16] + s[17]) * e + s[15]) + (l2 + (l1 - lead)));

  const Float64 value = n - s[14], out = lead - value, error = lead - (value + out);
  const Float64 poleCorrection = (s[18] * reciprocal) * ((1.0 - n * u) - reciprocal * ((w - u) + wlo));
  return {out + ((rest + error) - poleCorrection)};
}

}  // namespace qorvane
