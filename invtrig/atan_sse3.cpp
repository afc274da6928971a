// atan(x), levels 1 to 4.
//
// Method: |x| falls into one of five intervals, each with a point c, and
//   atan|x| = atan c + atan u,  u = (|x| - c) / (1 + c |x|),
// in the uppermost pi/2 - atan(1 / |x|). atan u is a polynomial, atan c stands in the table in two
// parts.
//
// Error: largest found 0.856 ulp, just above 11/16, where u rounds (docs/accuracy.md has the
// arguments). The kernel runs in round-to-nearest with subnormals honoured, whatever the caller's
// mode.
//
// Special values need no care: infinities give +-pi/2, zeros themselves, a NaN itself, quiet.
#include "frame/kernel_frame.h"
#include "frame/loops.h"

namespace qorvane {
namespace {

#include "invtrig/atan_tables.inc"

// atan(u) / u - 1, as an odd and an even polynomial in z = u^2
template <class V>
INLINE V atanSeries(V u) {
  constexpr Float64 e5 = fromBits(0xbf90a0140b247b6e);  // -0.016235650481170569
  constexpr Float64 e4 = fromBits(0xbfa9785816ac714d);  // -0.049746277617216163
  constexpr Float64 e3 = fromBits(0xbfb10d58403897a0);  // -0.066609875367430841
  constexpr Float64 e2 = fromBits(0xbfb745cdae905490);  // -0.090908865182462838
  constexpr Float64 e1 = fromBits(0xbfc2492491fdfc9c);  // -0.14285714252226661
  constexpr Float64 e0 = fromBits(0xbfd5555555555509);  // -0.33333333333332909
  constexpr Float64 o4 = fromBits(0x3fa2ad8f0c29b3cb);  // 0.036480397566833331
  constexpr Float64 o3 = fromBits(0x3faddd7216b6a1b8);  // 0.058330120347293371
  constexpr Float64 o2 = fromBits(0x3fb3b0f1459b9fd4);  // 0.07691867775866379
  constexpr Float64 o1 = fromBits(0x3fbc71c6fd40e520);  // 0.11111110375586646
  constexpr Float64 o0 = fromBits(0x3fc999999998e492);  // 0.19999999999967616
  const V z = u * u, z2 = z * z;
  const V odd = ((((e5 * z2 + e4) * z2 + e3) * z2 + e2) * z2 + e1) * z2 + e0;
  const V even = (((o4 * z2 + o3) * z2 + o2) * z2 + o1) * z2 + o0;
  return odd * z + even * z2;
}

// The byte offset of the row in atanRows for a high word.
template <class W>
INLINE W rowOf(W high) {
  const W above = (high > 0x3fdc0000) + (high > 0x3fe60000) + (high > 0x3ff30000) + (high > 0x40038000);
  return (above + 4) << 5;  // a mask is -1
}

template <class V>
INLINE V atan(V x) {
  const V a = magnitude(x);
  const auto [c, kept, hi, lo] = columns<4, V>(atanRows, rowOf(highWords(a))).of;
  const V u = (andBits(a, kept) - c) / (c * a + andBits(broadcast<V>(1.0), kept));
  return orBits(((atanSeries(u) * u + lo) + u) + hi, signOf(x));
}

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  return plainLoop<Pack<Lanes2, 2>>(src, dst, len, [](auto x) INLINED { return atan(x); });
}

}  // namespace

nuvStatus atanSse3(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop>(len, src, dst);
}

}  // namespace qorvane
