// One element of x^y for the kernel of level 5.
//
// Method: x = 2^k * m, and m is brought near 1 by three short reciprocals in turn, in steps of
// 1/32, 1/512 and 1/32768; the product c of the three is exact, the error of m * c is had from
// products of halves, and log2 x is the sum of k, three rows of logarithms as high + low, and a
// polynomial, to more bits than the kernels have. Its product with y is n/128 + r as in
// explog/pow_core.h.
//
// Error: at most 0.51 ulp, in round-to-nearest; rounding mode, FTZ and DAZ are the caller's.
// Subnormal results are rounded once down to 2^-1032.
//
// Special values: explog/pow_cases.h. Overflow and underflow have status 0, but are raised as
// flags; so are the pole of zero and the invalid arguments.
#include "explog/pow_cases.h"
#include "explog/pow_core.h"
#include "explog/pow_lanes.h"

namespace qorvane {
namespace {

#include "explog/pow_special_tables.inc"

using namespace power;

// Fitted for this routine's ranges: their last bits aren't those of the kernels' polynomials.
// log2(1 + t / L) = t + q2 t + q3 t^2 + q4 t^3 + q5 t^4, |t| <= 2^-15: error 2^-64.6
// 2^r = 1 + p1 r + p2 r^2 + p3 r^3 + p4 r^4 + p5 r^5, |r| <= 2^-8: error 2^-60.4
constexpr Float64 q5 = fromBits(0xbfb550472a9012d8);  // -0.08325619496470027
constexpr Float64 q4 = fromBits(0x3fc47fd462b6dee1);  // 0.16015105075870564
constexpr Float64 q3 = c3;
constexpr Float64 q2 = fromBits(0x3e79c3a6966457e8);  // 9.597935033233503e-08
constexpr Float64 p5 = d5;
constexpr Float64 p4 = d4;
constexpr Float64 p3 = fromBits(0x3fac6b08d704a0c0);  // 0.05550410866482158
constexpr Float64 p2 = fromBits(0x3fcebfbdff82c58f);  // 0.24022650695910072
constexpr Float64 p1 = d1;

// Two halves of 26 bits, by a product that may not overflow.
struct Halves {
  Float64 high, low;
};
Halves halves(Float64 u) {
  const Float64 t = u * fromBits(0x41a0000002000000);  // 134217729 = 2^27 + 1
  const Float64 high = t - (t - u);
  return {high, u - high};
}

int wordOf(Float64 x) { return static_cast<int>(highWord(x)); }
Float64 powerOfTwo(int field) { return fromBits(static_cast<uint64_t>(field) << 52); }
Float64 overflow(Float64 sign) { return (opaque(0x1p1023) * 0x1p1023) * sign; }
Float64 tiny() { return opaque(0x1p-1022) * 0x1p-1022; }

}  // namespace

Element powSpecialLane(Float64 x, Float64 y) {
  const Decision known = decide(x, y);
  if (known.decided) {
    const Float64 value = fromBits(known.pattern);
    if (known.pattern << 1 == infinity << 1 && known.status != nuvStatusOk)
      return {fromBits((known.pattern & signBit) | one) / opaque(0.0), known.status};
    if (known.status != nuvStatusOk) return {opaque(0.0) / opaque(0.0), known.status};
    return {(known.pattern & ~signBit) > infinity ? x + y : value};
  }

  const Float64 sign = signOfPower(x, y);
  Float64 z = fromBits(toBits(x) & ~signBit);
  int scaled = 0;
  if (toBits(z) < 0x0010000000000000) z *= 0x1p200, scaled = -200;

  // Three-stage reduction
  const Float64 m = fromBits((toBits(z) & 0x000fffffffffffff) | one);
  const int i1 = ((wordOf(m) & 0xfc000) + 0x4000) >> 15;
  const Float64 m1 = m * powStage1Rcp[i1];
  const int i2 = ((wordOf(m1) & 0xfc00) + 0x400) >> 11;
  const Float64 m2 = m1 * powStage2Rcp[i2], c12 = powStage1Rcp[i1] * powStage2Rcp[i2];
  const int i3 = ((wordOf(m2) & 0xff0) + 0x10) >> 5;
  const Float64 g = m2 * powStage3Rcp[i3], c = c12 * powStage3Rcp[i3];
  const Float64 k =
      (static_cast<Float64>(((wordOf(z) - 0x3fe7c000) >> 20) + scaled) + powStage1Log[i1][0]) + powStage2Log[i2][0];
  const Float64 big = k + powStage3Log[i3][0], t0 = g - log2eHi;
  const auto [mh, ml] = halves(m);
  const auto [ch, cl] = halves(c);
  const Float64 gError = ((((mh * ch) - g) + (ch * ml)) + (mh * cl)) + (ml * cl);
  const Float64 a = big + t0, aError = (big - a) + t0;

  const int exponents = exponentField(y) + exponentField(a);
  if (exponents < 1985 || a == 0) return {(opaque(1.0) + 0x1p-1022) * sign};
  if (exponents >= 2057) return {(toBits(y) ^ toBits(a)) >> 63 ? tiny() * sign : overflow(sign)};

  const Float64 t = t0 + gError;
  const Float64 lows = powStage1Log[i1][1] + (powStage2Log[i2][1] + powStage3Log[i3][1]);
  const Float64 q = (((q5 * t + q4) * t + q3) * t + q2) * t;
  const Float64 b1 = a + q, b2 = (a - b1) + q;
  const Float64 v = lows + (gError + aError);
  const Float64 l1 = v + b1, l2 = (b1 - l1) + v, low = b2 + l2;

  const auto [lh, ll] = halves(l1);
  const auto [yh, yl] = halves(y);
  const Float64 p = yh * lh;
  const Float64 s = p + shifter;
  const Float64 r = (p - (s - shifter)) + ((((yh * ll) + (ll * yl)) + (lh * yl)) + (low * y));
  const int e = static_cast<int32_t>(toBits(s)) >> 7;
  const auto [th, tl] = powExp2Table[toBits(s) & 127];
  const Float64 rest = ((((p5 * r + p4) * r + p3) * r + p2) * r + p1) * r * th + tl;
  const Float64 power = rest + th;
  const int exponent = exponentField(power) + e - 1023;

  if (exponent >= 1024) return {overflow(sign)};
  if (exponent >= -1022)
    return {fromBits((toBits(power) & 0x800fffffffffffff) | static_cast<uint64_t>(exponent + 1023) << 52) * sign};
  if (exponent < -1084) return {tiny() * sign};
  const Float64 scale = powerOfTwo((e + 1223) & 0x7ff),
                down = sign * 0x1p-200;  // scale is 2^(e + 200)
  if (exponent < -1032) return {(down * (power * scale)) + tiny()};
  const auto [high, rest2] = halves(power);
  return {(((high * scale) * down) + (((rest2 + (rest + (th - power))) * scale) * down)) + tiny()};
}

}  // namespace qorvane
