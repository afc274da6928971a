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
    const auto g = erfcScaled(value(i), t(i), rows(i));
    store(values + i, g.head), store(rests + i, g.rest);
  }
  for (int64_t i = 0; i < count; i += vector) store(dst + i, lastStage(src, i, {value(i), load<Four>(rests + i)}, c));
};

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) { return erfcLoop<8, evaluate>(src, dst, len); }

}  // namespace

nuvStatus erfcSse3(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop>(len, src, dst);
}

}  // namespace qorvane
