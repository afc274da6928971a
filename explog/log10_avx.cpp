// log10(x), level 5.
//
// Method: x = 2^(E - 1013) * f with the biased exponent E and f in [2^-10, 2^-9). R is C0 times the
// processor's estimate of 1/f, rounded to an integer from 222 to 444, where C0 = 0.43359375 = 444 /
// 1024 is a short number close to log10 e, and r = f * R - C0. Then log10 x = (E - 1023) log10 2 +
// log10(444 / R) + log10(1 + r / C0); the first two terms are E times log10 2 and a row of a table,
// each as high + low. The last term begins with r itself, needing no product: the polynomial's
// first coefficient is only log10 e / C0 - 1. f * R is made of two exact products. A row and the
// exponent's term cancel exactly at x just below 1 (E = 1022, R = 222) and at x from 1 up (E =
// 1023, R = 444).
//
// Error: at most 0.513 ulp for normal x (found at 0.99889), 1.00 ulp for subnormal x.
// Rounding mode and DAZ are the caller's. The estimate chooses among rows that are all right, so
// that results of processors with different estimates may differ in the last bit.
//
// Special values: NaN gives the NaN, +Inf +Inf; +0 and -0 give -Inf and a pole; below zero the
// result is a NaN, out of the domain. Statuses raise their flags. The powers of ten from 10^0 to
// 10^22 have exact results.
#include "explog/log_avx.h"
#include "frame/kernel_frame.h"

namespace qorvane {
namespace {

#include "explog/log10_tables.inc"

constexpr Float64 log10Of2Hi =
    fromBits(0x3fd34413509f0000);  // 0.30102999566224753: E * log10Of2Hi + a row's high part is exact
constexpr Float64 log10Of2Lo = fromBits(0x3d7e7fbcc47c0000);  // 1.7336659603714182e-12: log10 2 - log10Of2Hi
constexpr Float64 scale = fromBits(0x3fdbc00000000000);       // 0.43359375 = C0

// log10(1 + r / C0) = r + r (p1 + p2 r + p3 r^2 + p4 r^3 + p5 r^4 + p6 r^5), |r| <= 2^-9.8: error
// 2^-57.4
constexpr Float64 p6 = fromBits(0xc025c91a15f7eb9f);  // -10.892777143968315
constexpr Float64 p5 = fromBits(0x4016aba863a166db);  // 5.667634541250403
constexpr Float64 p4 = fromBits(0xc008930964d2fa9b);  // -3.07179526108605
constexpr Float64 p3 = fromBits(0x3ffc6a02dc954978);  // 1.77588163533491
constexpr Float64 p2 = fromBits(0xbff27af2dc77b115);  // -1.1550167667401798
constexpr Float64 p1 = fromBits(0x3f5a7a6cbf2e410c);  // 0.0016161024074997114

// The pattern of R counts R in bits 15 and up from 256, in bits 16 and up below: the rows are 16
// bytes apart, and 32 below 256.
constexpr Reduction reduction = {0.43359375f, 11, 222, log10TableInteger};

constexpr auto core = []<class V>(const Reduced<V>& reduced) INLINED {
  const auto& [f, R, E, high, low] = reduced;
  const V fh = andBits(f, broadcast<V>(fromBits(~uint64_t{0x3ffffff}))), fl = f - fh;
  const V uh = (fh * R) - scale, ul = fl * R, r = uh + ul;
  const V A = (E * log10Of2Hi) + high, B = (E * log10Of2Lo) + low;
  const V S = A + r, g = r - (S - A);
  const V r2 = r * r;
  const V Q = (((((p6 * r) + p5) * r2) + ((p4 * r) + p3)) * r2) + ((p2 * r) + p1);
  return ((B + g) + (Q * r)) + S;
};

[[gnu::noinline, gnu::cold]] Element log10SpecialLane(Float64 x) {
  // log10(1 + r / C0) = r + r (b1 + ... + b8 r^7), |r| <= C0 / 128: error 2^-60.6
  constexpr Float64 b8 = fromBits(0xc045b3214e75eea2);                 // -43.39945393331915
  constexpr Float64 b7 = fromBits(0x40358992e1b1aa78);                 // 21.537397485614264
  constexpr Float64 b6 = fromBits(0xc025c90e698cfb68);                 // -10.89268808217976
  constexpr Float64 b5 = fromBits(0x4016ab9f7b1efe5c);                 // 5.667600559012126
  constexpr Float64 b4 = fromBits(0xc008930964d42479);                 // -3.0717952611199135
  constexpr Float64 b3 = fromBits(0x3ffc6a02dc963a31);                 // 1.7758816353485936
  constexpr Float64 b2 = fromBits(0xbff27af2dc77b115);                 // -1.1550167667401798
  constexpr Float64 b1 = fromBits(0x3f5a7a6cbf2e4107);                 // 0.0016161024074997103
  constexpr Float64 specialLog10Of2Hi = fromBits(0x3fd34413509f8000);  // 0.3010299956640665
  constexpr Float64 specialLog10Of2Lo =
      fromBits(0xbd380433b83b532a);  // -8.532344317057107e-14: log10 2 - specialLog10Of2Hi

  if (highWord(x) >= 0x7ff00000 || !(x > 0)) return specialFault(x);

  const auto [e, yh, yl, i] = reduceSubnormal(x, 0x1p23);  // yh is a multiple of 2^-29
  const Float64* row = log10TableSpecial[i];
  const Float64 uh = (row[0] * yh) - scale, ul = row[0] * yl, r = uh + ul;
  const Float64 A = (e * specialLog10Of2Hi) + row[1], B = (e * specialLog10Of2Lo) + row[2];
  const Float64 p = ((((((b8 * r + b7) * r + b6) * r + b5) * r + b4) * r + b3) * r + b2) * r + b1;
  return {(A + uh) + ((ul + (B + (ul * p))) + (uh * p))};
}

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  return logLoop<reduction>(src, dst, len, core, log10SpecialLane);
}

}  // namespace

nuvStatus log10Avx(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, loop>(len, src, dst);
}

}  // namespace qorvane
