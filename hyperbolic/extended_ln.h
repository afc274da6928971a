// The logarithm in x87 extended precision, for u from 1 up.
//
// u = 2^e (1 + i/256 + D): ln u = (e ln 2 + ln(1 + i/256)) + w P(w) with w = D / (1 + i/256).
#pragma once
#include "frame/lanes.h"

namespace qorvane {
namespace {

#include "hyperbolic/ln_256_tables.inc"

using Extended = long double;

constexpr int extendedChunk = 64;

// Numbers u = high + low of a chunk, high rounded, between the loops; `parts` makes of them e and D = high + low.
struct ExtendedChunk {
  alignas(16) Float64 high[extendedChunk], low[extendedChunk], e[extendedChunk];
  int row[extendedChunk];
};

INLINE Extended lnSum(Extended D, Extended e, const Float64* row) {
  constexpr Extended ln2 = 0xb.17217f7d1cf79acp-4L;
  constexpr Float64 c6 = fromBits(0xbfc51ed447a1b8c5), c5 = fromBits(0x3fc9995c6a12e46a), c4 = fromBits(0xbfcfffffe04ecef7),
                    c3 = fromBits(0x3fd5555555519f2a), c2 = fromBits(0xbfdfffffffffffaf);
  const Extended w = D * row[2];
  const Extended L = (e * ln2 + row[0]) + row[1];
  const Extended P = ((((c6 * w + c5) * w + c4) * w + c3) * w + c2) * w + 1.0L;
  return L + w * P;
}

INLINE void storeParts(ExtendedChunk& chunk, int c, Extended u) {
  const Float64 high = static_cast<Float64>(u);
  chunk.high[c] = high;
  chunk.low[c] = static_cast<Float64>(u - high);
}

INLINE void reduceParts(ExtendedChunk& chunk, int count) {
  for (int c = 0; c < count; ++c) {
    const uint64_t below = toBits(chunk.high[c]) - (toBits(chunk.low[c]) >> 63);
    const uint64_t base = below & 0xfffff00000000000;
    const int e = static_cast<int>(base >> 52) - 1023;
    const Float64 scale = fromBits(static_cast<uint64_t>(1023 - e) << 52);
    chunk.row[c] = static_cast<int>(base >> 44 & 255);
    chunk.high[c] = (chunk.high[c] - fromBits(base)) * scale;
    chunk.low[c] *= scale;
    chunk.e[c] = e;
  }
}
INLINE Extended lnAt(const ExtendedChunk& chunk, int c) {
  return lnSum(Extended{chunk.high[c]} + chunk.low[c], chunk.e[c], lnTable256[chunk.row[c]]);
}

INLINE Extended lnExtended(Extended u) {
  Float64 extra = 0;
  if (u >= 0x1p1000L) u *= 0x1p-64L, extra = 64;
  ExtendedChunk one;
  storeParts(one, 0, u);
  reduceParts(one, 1);
  one.e[0] += extra;
  return lnAt(one, 0);
}

INLINE Extended root(Extended x) { return __builtin_sqrtl(x); }
INLINE Float64 withSignOf(Float64 y, Float64 x) { return fromBits(toBits(y) | (toBits(x) & 0x8000000000000000)); }

}  // namespace
}  // namespace qorvane
