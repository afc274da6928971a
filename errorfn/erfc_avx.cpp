// erfc(x), level 5.
//
// Method: a polynomial on each of 28 rows, times exp(-x^2) (erfc.h).
//
// Error: for x >= 0 at most 0.63 ulp, near 19.96, from 26.46 up, where results come near to the
// subnormal numbers, 0.78 ulp; for x < 0 at most 0.55 ulp. The kernel runs in round-to-nearest with
// subnormals honoured, whatever the caller's mode.
//
// Special values: above 27.226017111108362 +0 and underflow; smaller results that are subnormal
// have no status; +Inf gives +0, -Inf 2, a NaN itself, quiet, but one whose upper significand bits
// are clear counts as an infinity. Statuses raise no flag but those of the arithmetic; arguments
// next to zero may raise underflow.
#include "errorfn/erfc.h"
#include "frame/kernel_frame.h"
#include "frame/pipeline.h"

namespace qorvane {
namespace {

// Stretches: the reduced arguments of a stretch go to memory, the polynomials are a pipeline over
// what stands there. k goes there as the key k + keyShifter: the lowest byte of its pattern is 2j,
// and above it stands m + 1023.
constexpr Float64 keyShifter =
    fromBits(0x4328000000000000 + 2 * 1023 * 128);  // 1.5 * 2^51 + 1023 * 128; its unit is 2^-1
constexpr int64_t longestStretch = 256, shortestStretch = 16, vector = laneCount<Lanes4>;
struct Stretch {
  alignas(32) Float64 t[longestStretch], r[longestStretch], keys[longestStretch];
  alignas(32) int offsets[longestStretch];
};

INLINE Lanes4 isInside(Lanes4 a) {
  constexpr Float64 limit = fromBits(uint64_t{erfcFlaggedHighWord} << 32);
  return _mm256_cmp_pd(a, _mm256_set1_pd(limit), _CMP_LT_OQ);
}

// False if there are flagged elements.
INLINE bool reduceStretch(const Float64* x, int64_t count, Stretch& c) {
  Lanes4 inside = equalLanes(Lanes4{}, Lanes4{});
  for (int64_t i = 0; i < count; i += vector) {
    const Lanes4 m = magnitude(load<Lanes4>(x + i)), mask = isInside(m), a = andBits(m, mask);
    inside = andBits(inside, mask);
    const auto argument = erfcArgument(a);
    const auto exponent = erfcExponent(a);
    store(c.t + i, argument.t), storeWords(c.offsets + i, argument.offset);
    store(c.r + i, exponent.r), store(c.keys + i, exponent.k + keyShifter);
  }
  return signMask(inside) == 15;
}

INLINE TwoColumns<Lanes4> powersAt(const Float64* keys) {
  return twoColumns<Lanes4>(erfcExpTable, [&](int lane) INLINED {
    return uint64_t{8} * reinterpret_cast<const unsigned char*>(keys + lane)[0];
  });
}
INLINE Lanes4 scaleAt(const Float64* keys) {
  const BitsOf<Lanes4> shifted = bitsOf(load<Pack<Lanes2, 2>>(keys)) << 44;
  return andBits(valueOf<Lanes4>(shifted), broadcast<Lanes4>(fromBits(0x7ff0000000000000)));
}

INLINE void evaluateStretch(const Float64* src, Float64* dst, int64_t count, const Stretch& c) {
  Lanes4 q1, q2;
  HeadAndRest<Lanes4> g;
  const auto t = [&](int64_t i) INLINED { return load<Lanes4>(c.t + i); };
  const auto rows = [&](int64_t i) INLINED { return Rows{erfcRows, c.offsets + i}; };
  pipeline<vector>(
      count, [&](int64_t i) INLINED { q1 = erfcHighTerms(t(i), rows(i)); },
      [&](int64_t i) INLINED { q2 = erfcMiddleTerms(q1, t(i), rows(i)); },
      [&](int64_t i) INLINED { g = erfcScaled(q2, t(i), rows(i)); },
      [&](int64_t i) INLINED {
        const Lanes4 x = load<Lanes4>(src + i);
        const auto power = powersAt(c.keys + i);
        const auto product = erfcProduct(g, erfcExpRest(load<Lanes4>(c.r + i), power), power.first);
        store(dst + i, erfcResult(product, orBits(scaleAt(c.keys + i), signOf(x)), x));
      });
}

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  if (len == 1 && !erfcIsFlagged(*src)) return *dst = erfcCore(*src), nuvStatusOk;
  return shortOrLongLoop<longestStretch, shortestStretch, vector>(
      len,
      [](int64_t count, const Float64* x, Float64* y) INLINED {
        Stretch c;
        const bool fits = reduceStretch(x, count, c);
        if (fits) evaluateStretch(x, y, count, c);
        return fits;
      },
      [](int64_t count, const Float64* x, Float64* y) INLINED {
        return unaryLoop<Lanes4, Raises::no>(
            x, y, count, [](Lanes4 v) INLINED { return erfcCore(v); }, erfcIsFlagged, erfcSpecialLane);
      },
      src, dst);
}

}  // namespace

nuvStatus erfcAvx(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop>(len, src, dst);
}

}  // namespace qorvane
