#include <cmath>
#include "frame/kernel_frame.h"
#include "frame/loops.h"
#include "hyperbolic/extended_ln.h"

namespace qorvane {
namespace {

INLINE bool flagged(Float64 x) { return (highWord(x) & 0x7fffffff) - 0x3f600000 >= 0x7e700000u - 0x3f600000; }

[[gnu::noinline, gnu::cold]] Float64 asinhLane(Float64 x) {
  constexpr Float64 b3 = fromBits(0x3fb3333333333333), b1 = fromBits(0xbfc5555555555555);
  const Extended a = magnitude(x);
  const uint32_t word = highWord(x) & 0x7fffffff;
  if (word >= 0x7ff00000) return x + x;
  if (word >= 0x3f600000) return withSignOf(static_cast<Float64>(lnExtended(a + root(a * a + 1.0L))), x);
  const Extended w = a * a;
  return withSignOf(static_cast<Float64>(a + a * (w * (b3 * w + b1))), x);
}

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  ExtendedChunk chunk;
  for (int count; len > 0; src += count, dst += count, len -= count) {
    count = len < extendedChunk ? static_cast<int>(len) : extendedChunk;
    uint64_t special = 0;
    Float64 x[extendedChunk];
    for (int c = 0; c < count; ++c) {
      x[c] = src[c];
      const bool is = flagged(src[c]);
      special |= static_cast<uint64_t>(is) << c;
      const Extended a = is ? 1.0 : magnitude(src[c]);
      storeParts(chunk, c, a + root(a * a + 1.0L));
    }
    reduceParts(chunk, count);
    for (int c = 0; c < count; ++c) dst[c] = withSignOf(static_cast<Float64>(lnAt(chunk, c)), x[c]);
    for (; special != 0; special &= special - 1) {
      const int c = __builtin_ctzll(special);
      dst[c] = asinhLane(x[c]);
    }
  }
  return nuvStatusOk;
}

}  // namespace

nuvStatus asinhSse3(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop, X87::fix>(len, src, dst);
}

}  // namespace qorvane
