// asinh(x), level 1.
//
// Method: the bits are those of a program in x87 extended precision: asinh|x| = ln(a + sqrt(a^2 +
// 1)), a = |x|, from 2^-9 up; below, a polynomial in a^2. From 2^-6 up to 2^26 lanes find most of
// them faster (hyperbolic/log_of_sum.h).
//
// Error: at most 0.862 ulp, just above 2^-9, where the logarithm is that of a number near 1. The
// kernel runs in round-to-nearest with subnormals honoured and 64-bit significands, whatever the
// caller's mode.
//
// Special values: +0, -0, +Inf, -Inf give themselves, NaN the NaN, quiet. No element fails.
#include "frame/kernel_frame.h"
#include "hyperbolic/certain_loop.h"
#include "hyperbolic/extended_ln.h"

namespace qorvane {
namespace {

// From 2^-9 up to 2^1000, above which the sum is too large for the loop's double-precision numbers.
bool isFlagged(Float64 x) { return (highWord(x) & 0x7fffffff) - 0x3f600000 >= 0x7e700000 - 0x3f600000; }

Extended sum(Extended a) { return a + root(a * a + 1.0L); }
Float64 byLogarithm(Float64 x) { return withSignOf(static_cast<Float64>(lnExtended(sum(magnitude(x)))), x); }

[[gnu::noinline, gnu::cold]] Float64 asinhSpecialLane(Float64 x) {
  constexpr Float64 b3 = fromBits(0x3fb3333333333333);  // 0.075
  constexpr Float64 b1 = fromBits(0xbfc5555555555555);  // -0.16666666666666666
  const uint32_t word = highWord(x) & 0x7fffffff;
  if (word >= 0x7ff00000) return x + x;
  if (word >= 0x3f600000) return byLogarithm(x);
  const Extended a = magnitude(x), w = a * a;
  return withSignOf(static_cast<Float64>(a + a * (w * (b3 * w + b1))), x);
}

// Up to a strip of any arguments.
[[gnu::noinline]] nuvStatus asinhProgram(const Float64* src, Float64* dst, int64_t len) {
  if (len == 1 && !isFlagged(src[0])) return dst[0] = byLogarithm(src[0]), nuvStatusOk;
  const int count = static_cast<int>(len);
  ExtendedChunk chunk;
  Float64 x[extendedChunk];
  uint64_t flagged = 0;
  for (int c = 0; c < count; ++c) {
    x[c] = src[c];
    const bool is = isFlagged(x[c]);
    flagged |= uint64_t{is} << c;
    storeParts(chunk, c, sum(is ? 1.0 : magnitude(x[c])));
  }
  reduceParts(chunk, count);
  for (int c = 0; c < count; ++c) dst[c] = withSignOf(static_cast<Float64>(lnAt(chunk, c)), x[c]);
  for (; flagged != 0; flagged &= flagged - 1) {
    const int c = __builtin_ctzll(flagged);
    dst[c] = asinhSpecialLane(x[c]);
  }
  return nuvStatusOk;
}

constexpr Definition definition{Inverse::ofSinh, {7.25, 3.4}, 0x3f90, asinhProgram};

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) { return inverseLoop<definition>(src, dst, len); }

}  // namespace

nuvStatus asinhSse3(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop, X87::fix>(len, src, dst);
}

}  // namespace qorvane
