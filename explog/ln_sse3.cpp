// ln(x), levels 1 to 4.
//
// Method: x = 2^k * f with f in [1, 2). The mantissa's top bits, rounded to 9, choose a row with a
// short reciprocal c of f, and r = f * c - 1, so that ln x = k ln 2 - ln c + ln(1 + r). The first
// two terms are each high + low; the third is a polynomial of degree 5, |r| < 2^-9.99. f * c is
// made of two products, the first exact. From f = 1.5 up k is one more and the row ln 2 less, so
// that all but the polynomial is zero on both sides of 1.
//
// Error: at most 0.59 ulp, near 1 (0.583 found at 1.00098). The kernel runs in round-to-nearest
// with subnormals honoured, whatever the caller's mode.
//
// Special values: NaN gives the same NaN, +Inf +Inf; +0 and -0 give -Inf and a pole; below zero the
// result is a NaN, out of the domain. Statuses raise no flag.
#include "explog/log_sse3.h"
#include "frame/kernel_frame.h"

namespace qorvane {
namespace {

#include "explog/ln_tables.inc"

constexpr Float64 ln2Hi = fromBits(0x3fe62e42fefa3800);  // 0.6931471805598903: k * ln2Hi + a row's high part is exact
constexpr Float64 ln2Lo = fromBits(0x3d2ef35793c76730);  // 5.497923018708371e-14: ln 2 - ln2Hi

// ln(1 + r) = r + r^2 (a2 + a3 r + a4 r^2 + a5 r^3), |r| <= 2^-9.99: error 2^-56.3
constexpr Float64 a5 = fromBits(0x3fc9999b39037e04);  // 0.2000001934420511
constexpr Float64 a4 = fromBits(0xbfd00000d588d052);  // -0.2500001988694339
constexpr Float64 a3 = fromBits(0x3fd555555555512a);  // 0.3333333333332741
constexpr Float64 a2 = fromBits(0xbfdffffffffffca9);  // -0.49999999999995254

constexpr auto core = [](auto x) INLINED {
  using V = decltype(x);
  const auto words = highWords(x);
  const auto row = (((words & 0xffc00) + 0x400) & 0x1ff800) >> 8;  // byte offset in the table of reciprocals
  const auto twice = [&](int lane) INLINED { return 2 * laneOf<laneCount<V>>(row, lane); };
  const V k = numbersOf<V>(wrappingDifference(words, 0x3fe7fc00) >> 20);
  const V f = significand(x, 0x000fffffffffffff), fh = significand(x, 0x000fffff00000000);
  const auto t = leadingTerms(k, f, fh, column<V>(lnTableReciprocal, row), twoColumns<V>(lnTableMantissa, twice), 1.0,
                              ln2Hi, ln2Lo);
  const V r = t.r;
  return withPolynomial(t, (((a5 * r + a4) * r + a3) * r + a2) * r);
};

[[gnu::noinline, gnu::cold]] Element lnSpecialLane(Float64 x) {
  constexpr Float64 ln2By52 = fromBits(0x404205966f2b4f12);  // 36.04365338911715
  return specialLane(x, core, ln2By52);
}

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) { return logLoop(src, dst, len, core, lnSpecialLane); }

}  // namespace

nuvStatus lnSse3(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop>(len, src, dst);
}

}  // namespace qorvane
