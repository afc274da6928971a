// One element of x^y for the kernels of levels 1 to 4, and for those of a fixed exponent at every
// level.
//
// Method: that of explog/pow_core.h, which holds for every positive x once subnormal ones are
// scaled by 2^52; the polynomial of 2^r is evaluated by Horner's rule here. Results below 2^-964
// are put together from parts so that they are rounded once.
//
// Error: at most 0.514 ulp, near overflow; 0.526 ulp for subnormal results down to 2^-1070, 1.0 ulp
// below that; 1.23 ulp where |x - 1| is near 2^-11 and |y log2 x| near 1000. The caller's mode is
// round-to-nearest with subnormals honoured.
//
// Special values: explog/pow_cases.h. Results that overflow or underflow have status 0.
#include "explog/pow_cases.h"
#include "explog/pow_core.h"
#include "explog/pow_lanes.h"

namespace qorvane {
namespace {

using namespace power;

// sign * 2^(e + n/128 + r) for e from -1075 to -964. The factor 2^e is made of two, since it may be
// subnormal.
Float64 gradual(Float64 sign, int e, Float64 r, Float64 th, Float64 tl) {
  const Float64 s = fromBits(static_cast<uint64_t>(e + 111 + 1023) << 52),
                down = sign * 0x1p-111;  // s is 2^(e + 111)
  if ((highWord((s * th) * down) & 0x7fffffff) <= 0x100000) {
    // Near or below the smallest normal number: the upper parts scaled down are exact, and the last
    // sum rounds to the spacing of subnormal numbers.
    const Float64 upper = (((r * ((d5 * r + d4) * r)) * r) * r * th + tl) + ((d3 * r + d2) * r * r * th);
    const Float64 u = upper + (d1 * r * th);
    const Float64 thCut = withoutLowBits(th, 48), uCut = withoutLowBits(u, 32);
    return ((s * thCut) * down) + ((((u - uCut) + (th - thCut)) + uCut) * (down * s));
  }
  const Float64 q = r * ((((d5 * r + d4) * r + d3) * r + d2) * r + d1);
  const Float64 thCut = withoutLowBits(th, 32), qCut = withoutLowBits(q, 24);
  const Float64 thRest = th - thCut, qRest = q - qCut;
  return (((((tl + ((q * tl) + (thRest * qRest))) + (qRest * thCut)) + (thRest * qCut)) + (qCut * thCut)) + th) *
         (down * s);
}

}  // namespace

Element powFixLane(Float64 x, Float64 y) {
  const Decision known = decide(x, y);
  if (known.decided) return {fromBits(known.pattern), known.status};

  const Float64 sign = signOfPower(x, y);
  Float64 magnitude = fromBits(toBits(x) & ~signBit), offset = 0;
  if (toBits(magnitude) < 0x0010000000000000) magnitude *= 0x1p52, offset = -52;

  const int word = static_cast<int>(highWord(magnitude)), row = ((word & 0xffe00) + 0x200) >> 10;
  const Float64 k = static_cast<Float64>((word - 0x3fe7fe00) >> 20) + offset;
  const auto leading =
      leadingLog<Float64>(magnitude, {powRcpTable[row], powLog2Table[row][0], powLog2Table[row][1], k});
  const Float64 infinite = sign * fromBits(infinity), zero = sign * 0.0;
  if (exponentField(leading.a) + exponentField(y) - 2 * 1023 > 11)
    return {(toBits(leading.a) ^ toBits(y)) >> 63 ? zero : infinite};

  const auto log =
      completeLog<Program::longer>(leading.a2, leading.low, leading.t, upperPolynomial<Program::longer>(leading.t));
  const Product<Float64> p = product(log.high, log.low, splitExponent(y));
  const int e = static_cast<int32_t>(toBits(p.shifted)) >> 7;
  if (e > 1024) return {infinite};
  if (e < -1075) return {zero};
  const auto [th, tl] = powExp2Table[toBits(p.shifted) & 127];
  const Float64 r = p.r;
  if (e < -963) return {gradual(sign, e, r, th, tl)};
  const Float64 z = ((((((d5 * r + d4) * r + d3) * r + d2) * r + d1) * th) * r + tl) + th;
  const int half = e >= 1023;  // 2^(e - 1) then, and twice the sign
  return {((half ? 2 * sign : sign) * z) * fromBits(static_cast<uint64_t>(e - half + 1023) << 52)};
}

}  // namespace qorvane
