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
      [&](int64_t i) INLINED { g = erfcScaled(q2, t(i), rows(i)); },
      [&](int64_t i) INLINED { store(dst + i, lastStage(src, i, g, c)); });
};

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) { return erfcLoop<16, evaluate>(src, dst, len); }

}  // namespace

nuvStatus erfcAvx(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop>(len, src, dst);
}

}  // namespace qorvane
