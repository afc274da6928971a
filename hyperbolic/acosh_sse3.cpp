// acosh(x), level 1.
//
// Method: the bits are those of a program in x87 extended precision: ln(x + sqrt(x^2 - 1)) from 1 +
// 2^-13 up; below, sqrt(2d) times a polynomial in d = x - 1. From 1.0625 up to 2^26 lanes find most
// of them faster (hyperbolic/log_of_sum.h).
//
// Error: at most 0.763 ulp, just above 1 + 2^-13, where the logarithm is that of a number near 1.
// The kernel runs in round-to-nearest with subnormals honoured and 64-bit significands, whatever
// the caller's mode.
//
// Special values: 1 gives +0, +Inf itself, a NaN without sign the NaN, quiet, one with a sign the
// NaN of all ones but the sign; so does what is below 1, -Inf included, and is out of domain,
// without a flag.
#include "frame/kernel_frame.h"
#include "frame/loops.h"
#include "hyperbolic/certain_loop.h"
#include "hyperbolic/extended_ln.h"

namespace qorvane {
namespace {

// From 1 + 2^-13 up to 2^1000, above which the sum is too large for the loop's double-precision
// numbers.
bool isFlagged(Float64 x) { return highWord(x) - 0x3ff00200 >= 0x7e700000 - 0x3ff00200; }

Extended sum(Extended x) { return x + root(x * x - 1.0L); }
Float64 byLogarithm(Float64 x) { return static_cast<Float64>(lnExtended(sum(x))); }

[[gnu::noinline, gnu::cold]] Element acoshSpecialLane(Float64 x) {
  constexpr Float64 g3 = fromBits(0xbf76d772cca47234);  // -0.005576561389059754
  constexpr Float64 g2 = fromBits(0x3f9333330a736759);  // 0.018749997628084134
  constexpr Float64 g1 = fromBits(0xbfb555555554cfd2);  // -0.083333333332859
  const int word = static_cast<int>(highWord(x));
  if (word >= 0x7ff00000) return {opaque(x) + 0.0};
  if (word >= 0x3ff00200) return {byLogarithm(x)};
  if (word >= 0x3ff00000) {
    const Extended d = x - 1.0L;
    return {static_cast<Float64>(root(2.0L * d) * (((g3 * d + g2) * d + g1) * d + 1.0L))};
  }
  return {fromBits(0x7fffffffffffffff), x != x ? nuvStatusOk : nuvStatusOutOfDomain};
}

// Up to a strip of any arguments.
[[gnu::noinline]] nuvStatus acoshProgram(const Float64* src, Float64* dst, int64_t len) {
  if (len == 1 && !isFlagged(src[0])) return dst[0] = byLogarithm(src[0]), nuvStatusOk;
  const int count = static_cast<int>(len);
  ExtendedChunk chunk;
  Float64 x[extendedChunk];
  uint64_t flagged = 0;
  for (int c = 0; c < count; ++c) {
    x[c] = src[c];
    const bool is = isFlagged(x[c]);
    flagged |= uint64_t{is} << c;
    storeParts(chunk, c, sum(is ? 2.0 : x[c]));
  }
  reduceParts(chunk, count);
  for (int c = 0; c < count; ++c) dst[c] = static_cast<Float64>(lnAt(chunk, c));
  nuvStatus status = nuvStatusOk;
  for (; flagged != 0; flagged &= flagged - 1) {
    const int c = __builtin_ctzll(flagged);
    takeElement<Raises::no>(status, dst + c, acoshSpecialLane(x[c]));
  }
  return status;
}

constexpr Definition definition{Inverse::ofCosh, {7, 3.4}, 0x3ff1, acoshProgram};

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) { return inverseLoop<definition>(src, dst, len); }

}  // namespace

nuvStatus acoshSse3(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop, X87::fix>(len, src, dst);
}

}  // namespace qorvane
