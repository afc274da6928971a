// erfc(x), level 5.
#include "errorfn/erfc.h"
#include "frame/kernel_frame.h"

namespace qorvane {
namespace {

constexpr auto isFlagged = [](auto x) INLINED { return anyMagnitudeFrom(x, erfcFlaggedHighWord); };

INLINE Lanes4 isInside(Lanes4 a) {
  constexpr Float64 limit = fromBits(uint64_t{erfcFlaggedHighWord} << 32);
  return _mm256_cmp_pd(a, _mm256_set1_pd(limit), _CMP_LT_OQ);
}

INLINE Lanes4 core(Lanes4 x) {
  using V = Lanes4;
  const V a = andBits(magnitude(x), isInside(magnitude(x)));  // what is flagged is taken for 0
  const auto argument = erfcArgument(a);
  const auto exponent = erfcExponent(a);
  alignas(16) int offsets[4];
  store(offsets, argument.offset);
  const Rows rows = {erfcRows, offsets};
  const V q = erfcMiddleTerms(erfcHighTerms(argument.t, rows), argument.t, rows);
  const auto power = twoColumns<V>(erfcExpTable, (lowWords(exponent.shifted) & 127) << 4);
  const auto product = erfcProduct(erfcScaled(q, argument.t, rows), erfcExpRest(exponent.r, power), power.first);
  const V scale = fromHighWords<V>(((lowWords(exponent.shifted) + 1023 * 128) << 13) & 0x7ff00000);
  return erfcResult(product, orBits(scale, signOf(x)), x);
}

constexpr Float64 keyShifter =
    fromBits(0x4328000000000000 + 2 * 1023 * 128);  // 1.5 * 2^51 + 1023 * 128; a unit is worth 2 in the pattern

constexpr int64_t longestStretch = 256, shortestStretch = 16, ahead = 12;
struct Stretch {
  alignas(32) Float64 t[longestStretch + ahead], r[longestStretch + ahead], keys[longestStretch + ahead];
  alignas(32) int offsets[longestStretch + ahead];
};

// False if there are flagged elements.
INLINE bool reduceStretch(const Float64* x, int64_t count, Stretch& c) {
  Lanes4 inside = _mm256_cmp_pd(Lanes4{}, Lanes4{}, _CMP_EQ_OQ);
  for (int64_t i = 0; i < count; i += 4) {
    const Lanes4 m = magnitude(load<Lanes4>(x + i)), mask = isInside(m), a = andBits(m, mask);
    inside = andBits(inside, mask);
    const auto argument = erfcArgument(a);
    const auto exponent = erfcExponent(a);
    store(c.t + i, argument.t), store(c.offsets + i, argument.offset);
    store(c.r + i, exponent.r), store(c.keys + i, exponent.k + keyShifter);
  }
  // The pipeline begins three vectors more than there are.
  store(c.t + count, Pack<Lanes4, 3>{});
  for (int k = 0; k < ahead; k += 4) store(c.offsets + count + k, Words4{});
  return _mm256_movemask_pd(inside) == 15;
}

INLINE TwoColumns<Lanes4> powersAt(const Float64* keys) {
  const auto row = [&](int lane) INLINED {
    return rowAt(erfcExpTable, uint64_t{8} * reinterpret_cast<const unsigned char*>(keys + lane)[0]);
  };
  return transposeRows(row(0), row(1), row(2), row(3));
}
INLINE Lanes4 scaleAt(const Float64* keys) {
  const BitsOf<Lanes4> shifted = bitsOf(load<Pack<Lanes2, 2>>(keys)) << 44;
  return _mm256_and_pd(valueOf<Lanes4>(shifted), _mm256_set1_pd(fromBits(0x7ff0000000000000)));
}

INLINE void pipeline(const Float64* src, Float64* dst, int64_t count, const Stretch& c) {
  Lanes4 q1, q2;
  HeadAndRest<Lanes4> g;
  const auto t = [&](int64_t i) INLINED { return load<Lanes4>(c.t + i); };
  const auto rows = [&](int64_t i) INLINED { return Rows{erfcRows, c.offsets + i}; };
  const auto stage1 = [&](int64_t i) INLINED { q1 = erfcHighTerms(t(i), rows(i)); };
  const auto stage2 = [&](int64_t i) INLINED { q2 = erfcMiddleTerms(q1, t(i), rows(i)); };
  const auto stage3 = [&](int64_t i) INLINED { g = erfcScaled(q2, t(i), rows(i)); };
  const auto stage4 = [&](int64_t i) INLINED {
    const Lanes4 x = load<Lanes4>(src + i);
    const auto power = powersAt(c.keys + i);
    const auto product = erfcProduct(g, erfcExpRest(load<Lanes4>(c.r + i), power), power.first);
    return erfcResult(product, orBits(scaleAt(c.keys + i), signOf(x)), x);
  };
  stage1(0), stage2(0), stage3(0), stage1(4), stage2(4), stage1(8);
  for (int64_t i = 0; i < count; i += 4) {
    const Lanes4 y = stage4(i);
    stage3(i + 4);
    stage2(i + 8);
    stage1(i + 12);
    store(dst + i, y);
  }
}

[[gnu::noinline]] nuvStatus shortLoop(const Float64* src, Float64* dst, int64_t len) {
  return unaryLoop<Lanes4, Raises::no>(
      src, dst, len, [](Lanes4 x) INLINED { return core(x); }, isFlagged,
      [](Float64 x, Float64* y) {
        const Element e = erfcSpecialLane(x);
        return *y = e.value, e.status;
      });
}
[[gnu::noinline]] nuvStatus longLoop(const Float64* src, Float64* dst, int64_t len) {
  nuvStatus status = nuvStatusOk;
  Stretch c;
  for (int64_t count; len > 0; src += count, dst += count, len -= count) {
    count = len < longestStretch ? len : longestStretch;
    if (count >= shortestStretch && reduceStretch(src, count & ~int64_t{3}, c))
      pipeline(src, dst, count &= ~int64_t{3}, c);
    else
      takeStatus<Raises::no>(status, shortLoop(src, dst, count));
  }
  return status;
}
[[gnu::noinline]] nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  return len < shortestStretch ? shortLoop(src, dst, len) : longLoop(src, dst, len);
}

}  // namespace

nuvStatus erfcAvx(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop>(len, src, dst);
}

}  // namespace qorvane
