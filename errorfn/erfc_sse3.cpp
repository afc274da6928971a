// erfc(x), levels 1 to 4.
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

// Each stage is a loop of its own; `values` has what the next one takes on.
constexpr auto evaluate = [](const Float64* src, Float64* dst, int64_t count, const Stretch& c) INLINED {
  alignas(16) Float64 values[longestStretch], rests[longestStretch];
  const auto value = [&](int64_t i) INLINED { return load<Four>(values + i); };
  const auto t = [&](int64_t i) INLINED { return load<Four>(c.t + i); };
  const auto rows = [&](int64_t i) INLINED { return Rows{erfcRows, c.offsets + i}; };
  for (int64_t i = 0; i < count; i += vector) store(values + i, erfcHighTerms(t(i), rows(i)));
  for (int64_t i = 0; i < count; i += vector) store(values + i, erfcMiddleTerms(value(i), t(i), rows(i)));
  for (int64_t i = 0; i < count; i += vector) {
    const auto g = erfcScaled(value(i), t(i), rows(i), erfcConstants<Four>());
    store(values + i, g.head), store(rests + i, g.rest);
  }
  for (int64_t i = 0; i < count; i += vector) store(dst + i, lastStage(src, i, {value(i), load<Four>(rests + i)}, c));
};

// The rows of three or four elements, known one by one. With a count of three the fourth row isn't
// read, and its lane is 0.
template <int count>
struct FewRows {
  const Float64* row[4];
};
template <class V, int count>
INLINE TwoColumns<V> slots(FewRows<count> rows, int k) {
  const auto pair = [&](int lane) INLINED { return load<Lanes2>(rows.row[lane] + k); };
  const Lanes2 a = pair(0), b = pair(1);
  V first = {{_mm_unpacklo_pd(a, b)}}, second = {{_mm_unpackhi_pd(a, b)}};
  if constexpr (count == 4) {
    const Lanes2 c = pair(2), d = pair(3);
    first.part[1] = _mm_unpacklo_pd(c, d), second.part[1] = _mm_unpackhi_pd(c, d);
  } else {
    first.part[1] = _mm_load_sd(rows.row[2] + k), second.part[1] = _mm_load_sd(rows.row[2] + k + 1);
  }
  return {first, second};
}

// Three or four elements, straight on: the next call's chain of operations has to overlap with this
// one's, so every instruction counts. Rows and the test are made from integers, beside the numbers'
// chain. A fourth lane that is left has 0: it makes zeros of zeros and raises nothing.
template <int count>
[[gnu::noinline, gnu::flatten, gnu::aligned(64)]] nuvStatus erfcFew(const Float64* src, Float64* dst) {
  const auto word = [=](int i) INLINED { return static_cast<int>(highWord(src[i % count]) & 0x7fffffff); };
  const int words[] = {word(0), word(1), word(2), word(3)};
  const auto isFlagged = [&](int i) INLINED { return words[i] >= erfcFlaggedHighWord; };
  if (isFlagged(0) || isFlagged(1) || isFlagged(2) || isFlagged(3)) [[unlikely]]
    return shortArray(count, erfcShort, src, dst);
  const auto row = [&](int i) INLINED {
    const int beyond = words[i] - erfcWordBelowRow1;
    return addressAt(erfcRows, static_cast<uint32_t>(beyond < 0 ? 0 : beyond) >> erfcRowShift & ~uint32_t{127});
  };
  const FewRows<count> rows = {{row(0), row(1), row(2), row(3)}};

  const Lanes2 last = count == 4 ? load<Lanes2>(src + count - 2) : _mm_load_sd(src + 2);
  const Four x = joinHalves(load<Lanes2>(src), last), a = magnitude(x);
  const Four start = withoutBits(andBits(a, broadcast<Four>(erfcRowBits)), lessLanes(a, broadcast<Four>(erfcRow1)));
  const Four t = a - start;
  const auto c = erfcConstants<Four>();
  // The two chains take turns, as the processor would take their steps: a fifth less time with SSE2.
  const Four high = erfcHighTerms(t, rows);
  const auto exponent = erfcExponent(a, c);
  const Four q = erfcMiddleTerms(high, t, rows);
  alignas(32) Float64 keys[vector];
  store(keys, exponent.k + keyShifter);
  const FewRows<count> powers = {{powerAt(keys), powerAt(keys + 1), powerAt(keys + 2), powerAt(keys + 3)}};
  const auto power = slots<Four>(powers, 0);
  const Four e = erfcExpRest(exponent.r, power, c), scale = orBits(scaleAt(keys), signOf(x));
  const Four y = erfcResult(erfcProduct(erfcScaled(q, t, rows, c), e, power.first), scale, x);
  store(dst, lowHalf(y));
  count == 4 ? store(dst + 2, highHalf(y)) : _mm_storel_pd(dst + 2, highHalf(y));
  return nuvStatusOk;
}

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  if (len == 3) return erfcFew<3>(src, dst);
  if (len == 4) return erfcFew<4>(src, dst);
  return erfcLoop<8, evaluate>(src, dst, len);
}

}  // namespace

nuvStatus erfcSse3(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop>(len, src, dst);
}

}  // namespace qorvane
