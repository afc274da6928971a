// ln(x), level 5.
//
// Method: x = 2^(E - 1013) * f with the biased exponent E and f in [2^-10, 2^-9). R is the
// processor's estimate of 1/f, rounded to an integer from 512 to 1024, and r = f * R - 1, so that
// ln x = (E - 1023) ln 2 + ln(1024 / R) + ln(1 + r). The first two terms are E times ln 2 and a row
// of a table, each as high + low; the third is a polynomial of degree 5, |r| < 2^-9.5. f * R is
// made of two exact products. A row and the exponent's term cancel exactly at x just below 1 (E =
// 1022, R = 512) and at x from 1 up (E = 1023, R = 1024).
//
// Error: at most 0.746 ulp for normal x (found at 0.99902), 1.499 ulp for subnormal x (found at
// 2^-1027.11). Rounding mode and DAZ are the caller's. The estimate chooses among rows
// that are all right, so that results of processors with different estimates may differ in the last
// bit.
//
// Special values: NaN gives the NaN, +Inf +Inf; +0 and -0 give -Inf and a pole; below zero the
// result is a NaN, out of the domain. Statuses raise their flags.
#include "explog/log_avx.h"
#include "frame/kernel_frame.h"

namespace qorvane {
namespace {

#include "explog/ln_tables.inc"

constexpr Float64 ln2Hi = fromBits(0x3fe62e42fefa0000);  // 0.6931471805582987: E * ln2Hi + a row's high part is exact
constexpr Float64 ln2Lo = fromBits(0x3d7cf79abc9e0000);  // 1.6465949582866463e-12: ln 2 - ln2Hi

// ln(1 + r) = r + r^2 (a2 + a3 r + a4 r^2 + a5 r^3), |r| <= 2^-9.5: error 2^-52.2
constexpr Float64 a5 = fromBits(0x3fc9999cacdb4d0a);  // 0.2000003665949424
constexpr Float64 a4 = fromBits(0xbfd0000148058ee1);  // -0.2500003054940248
constexpr Float64 a3 = fromBits(0x3fd55555555543c5);  // 0.33333333333308374
constexpr Float64 a2 = fromBits(0xbfdffffffffff81f);  // -0.49999999999988803

// The pattern of R has R - 512 in bits 14 to 23.
constexpr Reduction reduction = {1, 10, 512, lnTableInteger};

constexpr auto core = []<class V>(const Reduced<V>& reduced) INLINED {
  const auto& [f, R, E, high, low] = reduced;
  const V fh = andBits(f, broadcast<V>(fromBits(~uint64_t{0x3ffffff}))), fl = f - fh;
  const V uh = (fh * R) - 1.0, ul = fl * R, r = uh + ul;
  const V A = (E * ln2Hi) + high, B = (E * ln2Lo) + low;
  const V S = A + r, g = r - (S - A);
  const V r2 = r * r;
  const V Q = (((a5 * r) + a4) * r2) + ((a3 * r) + a2);
  return ((B + g) + (Q * r2)) + S;
};

[[gnu::noinline, gnu::cold]] Element lnSpecialLane(Float64 x) {
  // ln(1 + r) = r + r^2 (b2 + ... + b8 r^6), |r| <= 2^-7: error 2^-63.2
  constexpr Float64 b8 = fromBits(0xbfc000b405a2836d);            // -0.1250214602960357
  constexpr Float64 b7 = fromBits(0x3fc249c02481059d);            // 0.1428756883852146
  constexpr Float64 b6 = fromBits(0xbfc555555228b38f);            // -0.1666666651884978
  constexpr Float64 b5 = fromBits(0x3fc9999997b36c81);            // 0.19999999911565072
  constexpr Float64 b4 = fromBits(0xbfd0000000000262);            // -0.25000000000003386
  constexpr Float64 b3 = fromBits(0x3fd5555555555613);            // 0.33333333333334386
  constexpr Float64 b2 = fromBits(0xbfe0000000000000);            // -0.5
  constexpr Float64 specialLn2Hi = fromBits(0x3fe62e42fefa3800);  // 0.6931471805598903
  constexpr Float64 specialLn2Lo = fromBits(0x3d2ef35793c76730);  // 5.497923018708371e-14: ln 2 - specialLn2Hi

  if (highWord(x) >= 0x7ff00000 || !(x > 0)) return specialFault(x);

  const auto [e, yh, yl, i] = reduceSubnormal(x, 0x1p21);  // yh is a multiple of 2^-31
  const Float64* row = lnTableSpecial[i];
  const Float64 uh = (row[0] * yh) - 1.0, ul = row[0] * yl, r = uh + ul;
  const Float64 A = (e * specialLn2Hi) + row[1], B = (e * specialLn2Lo) + row[2];
  const Float64 p = (((((b8 * r + b7) * r + b6) * r + b5) * r + b4) * r + b3) * r;
  return {((((p + b2) * (r * r) + A) + B) + uh) + ul};
}

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  return logLoop<reduction>(src, dst, len, core, lnSpecialLane);
}

}  // namespace

nuvStatus lnAvx(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, loop>(len, src, dst);
}

}  // namespace qorvane
