// erfc's loops over arrays: one element, three or four, short arrays, and stretches in stages. The
// operations are those of erfc.h, so a result doesn't depend on which loop made it.
#pragma once
#include "errorfn/erfc.h"
#include "frame/pipeline.h"

namespace qorvane {
namespace {

// Stretches: the chain of operations is too long for the processor to overlap it with the next
// vector's, so it is cut into stages with numbers in memory in between. k goes there as the key
// k + keyShifter: the lowest byte of its pattern is 2j, and above it stands m + 1023.
constexpr Float64 keyShifter =
    fromBits(0x4328000000000000 + 2 * 1023 * 128);  // 1.5 * 2^51 + 1023 * 128; its unit is 2^-1
constexpr int64_t longestStretch = 256, vector = laneCount<Four>;
struct Stretch {
  alignas(32) Float64 t[longestStretch], r[longestStretch], keys[longestStretch];
  alignas(32) int offsets[longestStretch];
};

// False if there are flagged elements.
INLINE bool reduceStretch(const Float64* x, int64_t count, Stretch& c) {
  Four inside = equalLanes(Four{}, Four{});
  for (int64_t i = 0; i < count; i += vector) {
    const Four m = magnitude(load<Four>(x + i)), mask = highWordWithin(m, 0, erfcFlaggedHighWord), a = andBits(m, mask);
    inside = andBits(inside, mask);
    const auto argument = erfcArgument(a);
    const auto exponent = erfcExponent(a, erfcConstants<Four>());
    store(c.t + i, argument.t), storeWords(c.offsets + i, argument.offset);
    store(c.r + i, exponent.r), store(c.keys + i, exponent.k + keyShifter);
  }
  return signMask(inside) == 15;
}

INLINE uint64_t powerOffset(const Float64* key) { return uint64_t{8} * *reinterpret_cast<const unsigned char*>(key); }
INLINE const Float64* powerAt(const Float64* key) { return addressAt(erfcExpTable, powerOffset(key)); }
INLINE TwoColumns<Four> powersAt(const Float64* keys) {
  return twoColumns<Four>(erfcExpTable, [&](int lane) INLINED { return powerOffset(keys + lane); });
}
INLINE Four scaleAt(const Float64* keys) {
  const BitsOf<Four> shifted = bitsOf(load<Pack<Lanes2, 2>>(keys)) << 44;
  return andBits(valueOf<Four>(shifted), broadcast<Four>(fromBits(0x7ff0000000000000)));
}
// The results of the vector at i, from its g.
INLINE Four lastStage(const Float64* src, int64_t i, HeadAndRest<Four> g, const Stretch& c) {
  const Four x = load<Four>(src + i);
  const auto power = powersAt(c.keys + i);
  const auto product = erfcProduct(g, erfcExpRest(load<Four>(c.r + i), power, erfcConstants<Four>()), power.first);
  return erfcResult(product, orBits(scaleAt(c.keys + i), signOf(x)), x);
}

constexpr auto erfcShort = [](int64_t count, const Float64* x, Float64* y) INLINED {
  return unaryLoop<Four, Raises::no>(
      x, y, count, [](auto v) INLINED { return erfcCore(v); }, erfcIsFlagged, erfcSpecialLane);
};

// evaluate(src, dst, count, c) gets what reduceStretch has left.
template <int64_t shortest, auto evaluate>
INLINE nuvStatus erfcLoop(const Float64* src, Float64* dst, int64_t len) {
  if (len == 1 && !erfcIsFlagged(*src)) return *dst = erfcCore(*src), nuvStatusOk;
  return shortOrLongLoop<longestStretch, shortest, vector>(len, inStages<Stretch, reduceStretch, evaluate>, erfcShort,
                                                           src, dst);
}

}  // namespace
}  // namespace qorvane
