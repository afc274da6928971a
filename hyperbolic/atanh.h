#pragma once
#include "frame/loops.h"
#include "hyperbolic/extended_ln.h"

namespace qorvane {
namespace {

INLINE bool atanhFlagged(Float64 x) { return (highWord(x) & 0x7fffffff) - 0x3f700000 >= 0x3ff00000 - 0x3f700000; }

[[gnu::noinline, gnu::cold]] nuvStatus atanhLane(Float64 x, Float64* result) {
  constexpr Float64 t7 = fromBits(0x3fc2492492492492), t5 = fromBits(0x3fc999999999999a), t3 = fromBits(0x3fd5555555555555);
  const auto give = [&](Extended value, nuvStatus status) {
    return *result = withSignOf(static_cast<Float64>(value), x), status;
  };
  const Float64 a = magnitude(x);
  const uint32_t word = highWord(a);
  const Extended xa = a;
  if (word < 0x3f700000) {
    const Extended w = xa * xa;
    return give(xa + xa * (((t7 * w + t5) * w + t3) * w), nuvStatusOk);
  }
  if (word < 0x3ff00000) {
    const Extended d = xa - 1.0L;
    return give(0.5L * lnExtended(((1.0L / (d * d)) * d) * -2.0L - 1.0L), nuvStatusOk);
  }
  if (a == 1.0) return *result = withSignOf(fromBits(0x7ff0000000000000), x), nuvStatusPole;
  *result = withSignOf(fromBits(0x7fffffffffffffff), x);
  return x != x ? nuvStatusOk : nuvStatusOutOfDomain;
}

INLINE nuvStatus atanhLoop(const Float64* src, Float64* dst, int64_t len) {
  ExtendedChunk chunk;
  nuvStatus status = nuvStatusOk;
  for (int count; len > 0; src += count, dst += count, len -= count) {
    count = len < extendedChunk ? static_cast<int>(len) : extendedChunk;
    uint64_t special = 0;
    Float64 x[extendedChunk];
    const int paired = count & ~1;
    for (int c = 0; c < paired; c += 2) {
      x[c] = src[c];
      x[c + 1] = src[c + 1];
      const bool is = atanhFlagged(src[c]) | atanhFlagged(src[c + 1]);
      special |= uint64_t{is ? 3u : 0u} << c;
      const Extended d0 = (is ? 0.5 : magnitude(src[c])) - 1.0L, d1 = (is ? 0.5 : magnitude(src[c + 1])) - 1.0L;
      const Extended R = 1.0L / (d0 * d1);
      storeParts(chunk, c, (d1 * R) * -2.0L - 1.0L);
      storeParts(chunk, c + 1, (d0 * R) * -2.0L - 1.0L);
    }
    if (paired != count) {
      x[paired] = src[paired];
      special |= uint64_t{1} << paired;
    }
    reduceParts(chunk, paired);
    for (int c = 0; c < paired; ++c) dst[c] = withSignOf(static_cast<Float64>(0.5L * lnAt(chunk, c)), x[c]);
    for (; special != 0; special &= special - 1) {
      const int c = __builtin_ctzll(special);
      takeStatus<Raises::no>(status, atanhLane(x[c], dst + c));
    }
  }
  return status;
}

}  // namespace
}  // namespace qorvane
