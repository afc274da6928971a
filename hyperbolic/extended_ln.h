// The logarithm in x87 extended precision, of u from 1 up: with u = 2^e (c + D), c = 1 + i/256 and
// D below 2^-8, it is (e ln 2 + ln(c)) + w P(w) with w = D / c; ln(c) comes from a table as the sum
// of two numbers.
//
// Extended numbers are slow to store and load, and their exponents are reached through memory only.
// So u goes there as the sum of two double-precision numbers, and e, i and D are made from those.
#pragma once
#include "frame/words.h"
#include "hyperbolic/inverse_tables.h"

namespace qorvane {
namespace {

using Extended = long double;

constexpr int extendedChunk = 64;

// Elements between the x87 loops: u, later D, as high + low.
struct ExtendedChunk {
  alignas(16) Float64 high[extendedChunk], low[extendedChunk], e[extendedChunk];
  int row[extendedChunk];
};
INLINE void storeParts(ExtendedChunk& chunk, int c, Extended u) {
  const Float64 high = static_cast<Float64>(u);
  chunk.high[c] = high;
  chunk.low[c] = static_cast<Float64>(u - high);
}
// All exact. Where high was rounded up to 2^e (1 + i/256), u itself stands below: hence the number
// below high.
INLINE void reduceParts(ExtendedChunk& chunk, int count) {
  for (int c = 0; c < count; ++c) {
    const uint64_t below = toBits(chunk.high[c]) - (toBits(chunk.low[c]) >> 63);
    const uint64_t base = below & 0xfffff00000000000, exponent = base >> 52;
    const Float64 scale = fromBits((2046 - exponent) << 52);
    chunk.row[c] = static_cast<int>(base >> 44 & 255);
    chunk.high[c] = (chunk.high[c] - fromBits(base)) * scale;
    chunk.low[c] *= scale;
    chunk.e[c] = static_cast<Float64>(static_cast<int>(exponent) - 1023);
  }
}

INLINE Extended lnAt(const ExtendedChunk& chunk, int c) {
  constexpr Extended ln2 = 0xb.17217f7d1cf79acp-4L;     // 64 bits
  constexpr Float64 c6 = fromBits(0xbfc51ed447a1b8c5);  // -0.16500333306925632
  constexpr Float64 c5 = fromBits(0x3fc9995c6a12e46a);  // 0.19999270610222492
  constexpr Float64 c4 = fromBits(0xbfcfffffe04ecef7);  // -0.24999998524219055
  constexpr Float64 c3 = fromBits(0x3fd5555555519f2a);  // 0.3333333333198306
  constexpr Float64 c2 = fromBits(0xbfdfffffffffffaf);  // -0.4999999999999955
  const auto& [high, low, reciprocal, unused] = lnTable256[chunk.row[c]];
  const Extended w = (Extended{chunk.high[c]} + chunk.low[c]) * reciprocal;
  const Extended L = (chunk.e[c] * ln2 + high) + low;
  const Extended P = ((((c6 * w + c5) * w + c4) * w + c3) * w + c2) * w + 1.0L;
  return L + w * P;
}

// One u alone, up to the largest that 2x may give.
INLINE Extended lnExtended(Extended u) {
  const bool isLarge = u >= 0x1p1000L;
  ExtendedChunk one;
  storeParts(one, 0, isLarge ? u * 0x1p-64L : u);
  reduceParts(one, 1);
  if (isLarge) one.e[0] += 64;
  return lnAt(one, 0);
}

INLINE Extended root(Extended x) { return __builtin_sqrtl(x); }
INLINE Float64 withSignOf(Float64 y, Float64 x) { return orBits(y, signOf(x)); }

}  // namespace
}  // namespace qorvane
