#include "frame/kernel_frame.h"
#include "frame/loops.h"
#include "hyperbolic/extended_ln.h"

namespace qorvane {
namespace {

INLINE bool flagged(Float64 x) { return highWord(x) - 0x3ff00200 >= 0x7e700000u - 0x3ff00200; }

[[gnu::noinline, gnu::cold]] nuvStatus acoshLane(Float64 x, Float64* result) {
  constexpr Float64 g3 = fromBits(0xbf76d772cca47234), g2 = fromBits(0x3f9333330a736759), g1 = fromBits(0xbfb555555554cfd2);
  const auto give = [&](Extended value, nuvStatus status) { return *result = static_cast<Float64>(value), status; };
  const int word = static_cast<int>(highWord(x));
  if (word >= 0x7ff00000) return give(x, nuvStatusOk);
  if (word >= 0x3ff00200) return give(lnExtended(x + root(Extended{x} * x - 1.0L)), nuvStatusOk);
  if (word >= 0x3ff00000) {
    const Extended d = x - 1.0L;
    return give(root(2.0L * d) * (((g3 * d + g2) * d + g1) * d + 1.0L), nuvStatusOk);
  }
  *result = fromBits(0x7fffffffffffffff);
  return x != x ? nuvStatusOk : nuvStatusOutOfDomain;
}

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  ExtendedChunk chunk;
  nuvStatus status = nuvStatusOk;
  for (int count; len > 0; src += count, dst += count, len -= count) {
    count = len < extendedChunk ? static_cast<int>(len) : extendedChunk;
    uint64_t special = 0;
    Float64 x[extendedChunk];
    for (int c = 0; c < count; ++c) {
      x[c] = src[c];
      const bool is = flagged(src[c]);
      special |= static_cast<uint64_t>(is) << c;
      const Extended a = is ? 2.0 : src[c];
      storeParts(chunk, c, a + root(a * a - 1.0L));
    }
    reduceParts(chunk, count);
    for (int c = 0; c < count; ++c) dst[c] = static_cast<Float64>(lnAt(chunk, c));
    for (; special != 0; special &= special - 1) {
      const int c = __builtin_ctzll(special);
      takeStatus<Raises::no>(status, acoshLane(x[c], dst + c));
    }
  }
  return status;
}

}  // namespace

nuvStatus acoshSse3(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop, X87::fix>(len, src, dst);
}

}  // namespace qorvane
