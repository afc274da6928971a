// log10(x), levels 1 to 4.
//
// Method: x = 2^k * f with f in [1, 2). The mantissa's top bits, rounded to 9, choose a row with c
// close to C0 / f, where C0 = 0.43359375 is a short number close to log10 e, and r = f * c - C0.
// Then log10 x = k log10 2 + log10(C0 / c) + log10(1 + r / C0); the first two terms are each high +
// low. The last term begins with r itself, needing no product: the polynomial's first coefficient
// is only log10 e / C0 - 1. |r| < 2^-11, and f * c is made of two exact products. At f just below 2
// the row is log10 2, which the exponent's term cancels for x just below 1.
//
// Error: at most 0.586 ulp, near 1 (found at 0.99972). The kernel runs in round-to-nearest
// with subnormals honoured, whatever the caller's mode.
//
// Special values: NaN gives the same NaN, +Inf +Inf; +0 and -0 give -Inf and a pole; below zero the
// result is a NaN, out of the domain. Statuses raise no flag. The powers of ten from 10^0 to 10^22
// have exact results.
#include "explog/log_sse3.h"
#include "frame/kernel_frame.h"

namespace qorvane {
namespace {

#include "explog/log10_tables.inc"

constexpr Float64 log10Of2Hi =
    fromBits(0x3fd34413509f7800);  // 0.30102999566395283: k * log10Of2Hi + a row's high part is exact
constexpr Float64 log10Of2Lo = fromBits(0x3d1fef311f12b358);  // 2.8363394551044964e-14: log10 2 - log10Of2Hi
constexpr Float64 scale = fromBits(0x3fdbc00000000000);       // 0.43359375 = C0

// log10(1 + r / C0) = r + r (p1 + p2 r + p3 r^2 + p4 r^3 + p5 r^4), |r| <= C0 2^-9.99: error
// 2^-56.3
constexpr Float64 p5 = fromBits(0x4016aba0f9751ec1);  // 5.667606256268926
constexpr Float64 p4 = fromBits(0xc008930aac7d7c50);  // -3.0717977023883023
constexpr Float64 p3 = fromBits(0x3ffc6a02dc962e0f);  // 1.7758816353479039
constexpr Float64 p2 = fromBits(0xbff27af2dc77af28);  // -1.1550167667400704
constexpr Float64 p1 = fromBits(0x3f5a7a6cbf2e4108);  // 0.0016161024074997105

constexpr auto core = [](auto x) INLINED {
  using V = decltype(x);
  const auto words = highWords(x);
  const auto row = (((words & 0xffc00) + 0x400) & 0x1ff800) >> 8;  // byte offset in the table of reciprocals
  const auto twice = [&](int lane) INLINED { return 2 * laneOf<laneCount<V>>(row, lane); };
  const V k = numbersOf<V>((words >> 20) - 0x3ff);
  const V f = significand(x, 0x000fffffffffffff), fh = significand(x, 0x000fffff80000000);
  const auto t = leadingTerms(k, f, fh, column<V>(log10TableReciprocal, row), twoColumns<V>(log10TableMantissa, twice),
                              scale, log10Of2Hi, log10Of2Lo);
  const V r = t.r;
  return withPolynomial(t, (((p5 * r + p4) * r + p3) * r + p2) * r + p1);
};

[[gnu::noinline, gnu::cold]] Element log10SpecialLane(Float64 x) {
  constexpr Float64 log10Of2By52 = fromBits(0x402f4e9f6303263e);  // 15.653559774527022
  return specialLane(x, core, log10Of2By52);
}

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) { return logLoop(src, dst, len, core, log10SpecialLane); }

}  // namespace

nuvStatus log10Sse3(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop>(len, src, dst);
}

}  // namespace qorvane
