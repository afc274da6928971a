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
#include "errorfn/erfc_loops.h"
#include "frame/kernel_frame.h"

namespace qorvane {
namespace {

// The polynomials are a pipeline.
constexpr auto evaluate = [](const Float64* src, Float64* dst, int64_t count, const Stretch& c) INLINED {
  Lanes4 q1, q2;
  HeadAndRest<Lanes4> g;
  const auto t = [&](int64_t i) INLINED { return load<Lanes4>(c.t + i); };
  const auto rows = [&](int64_t i) INLINED { return Rows{erfcRows, c.offsets + i}; };
  pipeline<vector>(
      count, [&](int64_t i) INLINED { q1 = erfcHighTerms(t(i), rows(i)); },
      [&](int64_t i) INLINED { q2 = erfcMiddleTerms(q1, t(i), rows(i)); },
      [&](int64_t i) INLINED { g = erfcScaled(q2, t(i), rows(i), erfcConstants<Lanes4>()); },
      [&](int64_t i) INLINED { store(dst + i, lastStage(src, i, g, c)); });
};

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) { return erfcLoop<16, evaluate>(src, dst, len); }
[[gnu::noinline]] nuvStatus anyLength(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop>(len, src, dst);
}

// Three or four elements, straight on: the next call's chain of operations has to overlap with this
// one's, and how far the processor looks ahead is bound by its vector registers: every operation
// counts that writes one. So a constant is read from memory by the operation that wants it, and rows
// come in four slots at a time. Reading MXCSR waits for all operations before it: it costs half as
// much where rows are on their way by then.
struct FewConstants {
  ErfcConstants<Lanes4> arithmetic;
  Lanes4 magnitude, rowBits, row1, keyShifter, exponent, two;
};
// Four elements are lanes 0 to 3; three are lanes 0, 1 and 3, and lane 2 is 0.
template <int count>
constexpr FewConstants fewConstants = [] {
  constexpr Float64 noSign = fromBits(0x7fffffffffffffff);
  const auto all = [](Float64 c) { return Lanes4{c, c, c, c}; };
  FewConstants constants = {};
  constants.arithmetic = erfcConstants<Lanes4>(all);
  constants.magnitude = Lanes4{noSign, noSign, count == 3 ? 0 : noSign, noSign};
  constants.rowBits = all(erfcRowBits), constants.row1 = all(erfcRow1);
  constants.keyShifter = all(0x1.8p39 + 1023 * 128);  // its unit is 2^-13
  constants.exponent = all(fromBits(0x7ff0000000000000)), constants.two = all(2.0);
  return constants;
}();

struct FewSlots {
  Lanes4 of[16];
};
template <class V>
INLINE TwoColumns<V> slots(const FewSlots& few, int k) {
  return {few.of[k], few.of[k + 1]};
}
// Slots k to k + 3, k a multiple of four. Of three elements, lane 2 has the number beside lane 3's:
// with 0 for t it makes numbers of its size, and can't raise but inexact, which every element raises.
template <int count>
INLINE void readSlots(FewSlots& few, const Float64* const (&rows)[4], int k) {
  const auto pair = [&](int i, int first) INLINED { return load<Lanes2>(rows[i] + first); };
  const auto quad = [&](int i, int first) INLINED { return load<Lanes4>(rows[i] + first); };
  const auto upper = [](Lanes4 a, Lanes4 b) INLINED -> Lanes4 { return _mm256_permute2f128_pd(a, b, 0x31); };
  const auto even = [&](int i, int j) INLINED -> Lanes4 { return _mm256_unpacklo_pd(quad(i, k), quad(j, k)); };
  const auto odd = [&](int i, int j) INLINED -> Lanes4 { return _mm256_unpackhi_pd(quad(i, k), quad(j, k)); };
  const Lanes4 even01 = even(0, 1), odd01 = odd(0, 1);
  Lanes2 lowEven, lowOdd = pair(3, k);
  Lanes4 highEven, highOdd = quad(3, k);
  if (count == 4) {
    highEven = even(2, 3), lowEven = lowHalf(highEven);
    highOdd = odd(2, 3), lowOdd = lowHalf(highOdd);
  } else if (k > 0) {
    lowEven = pair(3, k - 1), highEven = quad(3, k - 1);
  } else {  // nothing is read before the table
    highEven = _mm256_permute_pd(quad(3, 0), 5), lowEven = lowHalf(highEven);
  }
  few.of[k] = joinHalves(lowHalf(even01), lowEven), few.of[k + 1] = joinHalves(lowHalf(odd01), lowOdd);
  few.of[k + 2] = upper(even01, highEven), few.of[k + 3] = upper(odd01, highOdd);
}

template <int count>
[[gnu::noinline, gnu::flatten, gnu::aligned(64)]] nuvStatus erfcFew(const Float64* src, Float64* dst) {
  const FewConstants* constants = &fewConstants<count>;
  asm("" : "+r"(constants));  // or they would be copied to registers
  const FewConstants& own = *constants;
  const ErfcConstants<Lanes4>& c = own.arithmetic;

  const Lanes4 x = joinHalves(load<Lanes2>(src), load<Lanes2>(src + count - 2));
  const auto word = [&](int i) INLINED { return static_cast<int>(highWord(src[i]) & 0x7fffffff); };
  const int words[] = {word(0), word(1), word(2), word(count - 1)};
  const auto isFlagged = [&](int i) INLINED { return words[i] >= erfcFlaggedHighWord; };
  if (isFlagged(0) || isFlagged(1) || isFlagged(2) || isFlagged(3)) [[unlikely]]
    return anyLength(src, dst, count);
  const auto row = [&](int i) INLINED {
    const int beyond = words[i] - erfcWordBelowRow1;
    return addressAt(erfcRows, static_cast<uint32_t>(beyond < 0 ? 0 : beyond) >> erfcRowShift & ~uint32_t{127});
  };
  const Float64* const rows[] = {row(0), row(1), row(2), row(3)};
  FewSlots few;
  readSlots<count>(few, rows, 12), readSlots<count>(few, rows, 8);
  const Lanes4 y = computeInMode<Mode::clearMode>(andBits(x, own.magnitude), [&](Lanes4 a) INLINED {
    const Lanes4 t = a - withoutBits(andBits(a, own.rowBits), lessLanes(a, own.row1));
    const Lanes4 high = erfcHighTerms(t, few);
    const auto exponent = erfcExponent(a, c);
    readSlots<count>(few, rows, 4);
    const Lanes4 q = erfcMiddleTerms(high, t, few);

    // From bit 20 of a key's pattern up stands m + 1023, as in a number's upper word; from bit 13, j.
    const Lanes4 key = exponent.k + own.keyShifter;
    const Lanes4 upperWords = _mm256_castps_pd(_mm256_moveldup_ps(_mm256_castpd_ps(key)));
    const Lanes4 scale = orBits(andBits(upperWords, own.exponent), andBits(x, c.sign));
    Float64 keys[vector];
    store(keys, key);
    asm("" : "+m"(keys));  // or words would be taken from registers, in two operations each
    const auto power = [&](int i) INLINED {
      uint32_t lowWord;
      __builtin_memcpy(&lowWord, keys + i, sizeof lowWord);
      return rowAt(erfcExpTable, lowWord >> 9 & 127 << 4);
    };
    const Lanes4 power02 = count == 4 ? joinHalves(power(0), power(2)) : Lanes4(_mm256_zextpd128_pd256(power(0)));
    const Lanes4 power13 = joinHalves(power(1), power(3));
    const TwoColumns<Lanes4> powers = {_mm256_unpacklo_pd(power02, power13), _mm256_unpackhi_pd(power02, power13)};

    const Lanes4 e = erfcExpRest(exponent.r, powers, c);
    readSlots<count>(few, rows, 0);
    const Lanes4 two = select(x, own.two, broadcast<Lanes4>(0));  // looks at the sign alone
    return erfcSum(two, erfcProduct(erfcScaled(q, t, few, c), e, powers.first), scale);
  });
  store(dst + count - 2, highHalf(y));  // of three, lane 2 goes where lane 1 comes next
  store(dst, lowHalf(y));
  return nuvStatusOk;
}

}  // namespace

nuvStatus erfcAvx(const Float64* src, Float64* dst, int32_t len) {
  if (len != 1 && !isNull(src) && !isNull(dst)) {
    if (len == 3) return erfcFew<3>(src, dst);
    if (len == 4) return erfcFew<4>(src, dst);
  }
  return runKernel<Check::pointersFirst, Mode::clearMode, loop>(len, src, dst);
}

}  // namespace qorvane
