// What Atan at level 5 and Atan2 share: a quotient in two parts without a division, and the
// polynomial of atan.
#pragma once
#include "frame/words.h"

namespace qorvane {
namespace {

// v with 27 bits cleared: products of two such numbers are exact.
template <class V>
INLINE V upperPart(V v) {
  return andBits(v, broadcast<V>(fromBits(0xfffffffff8000000)));
}

INLINE Words4 reciprocals(Words4 singles) {
  return reinterpret_cast<Words4>(_mm_rcp_ps(reinterpret_cast<__m128>(singles)));
}
INLINE int reciprocals(int single) { return reciprocals(Words4{single})[0]; }
template <int K>
INLINE Pack<Words4, K> reciprocals(Pack<Words4, K> singles) {
  return makePack<K>([&](int i) INLINED { return reciprocals(singles.part[i]); });
}

// About 1 / d, to 12 bits and with a low word of zero, for positive d from 2^-1020 to 2^1020: the
// processor's approximation for the upper 20 bits of the fraction, and the exponent.
template <class V>
INLINE V reciprocalSeed(V d) {
  const auto high = highWords(d);
  const auto root = reciprocals(((high << 3) & 0x007fffff) | 0x3f800000);
  const auto exponent = high & static_cast<int>(0xfff00000);
  return fromHighWords<V>(wrappingSum(root >> 3, 0x7fe00000 - 0x07f00000) - exponent);
}

// With the seed y of 1 / (dh + dl) and e = (dh + dl) y - 1 the reciprocal is y + r,
//   r = y (-e + e^2 - e^3 + e^4 - e^5 + e^6).
template <class V>
INLINE V residual(V dh, V dl, V y) {
  return (dh * y - 1.0) + dl * y;
}
template <class V>
INLINE V reciprocalSeries(V e) {  // up to e^4 of r, negated and divided by y e
  return (((e - 1.0) * e + 1.0) * e - 1.0) * e + 1.0;
}
template <class V>
INLINE V restOfReciprocal(V series, V e, V y) {
  return (series * e - 1.0) * e * y;
}

template <class V>
struct Quotient {
  V hi, lo;
};
template <class V>
INLINE Quotient<V> quotient(V nh, V nl, V dh, V dl) {
  const V y = reciprocalSeed(dh), e = residual(dh, dl, y), r = restOfReciprocal(reciprocalSeries(e), e, y);
  return {y * nh, (r * nh + r * nl) + y * nl};
}

// Coefficients of atan(u) / u - 1, of the even and the odd polynomial.
constexpr Float64 g5 = fromBits(0x3f8be4fbe6733718);  // 0.013620346040990536
constexpr Float64 g4 = fromBits(0x3fa6ad5558fe19c9);  // 0.044291178811409156
constexpr Float64 g3 = fromBits(0x3fae12f1edf7c393);  // 0.058738289164359213
constexpr Float64 g2 = fromBits(0x3fb3b132b731e73a);  // 0.07692257854969578
constexpr Float64 g1 = fromBits(0x3fbc71c719f99f96);  // 0.11111111053617004
constexpr Float64 g0 = fromBits(0x3fc9999999998f43);  // 0.19999999999992654
constexpr Float64 h5 = fromBits(0xbfa04cd71f92185e);  // -0.031836245158999729
constexpr Float64 h4 = fromBits(0xbfaa9e755ca13d23);  // -0.051990191991189393
constexpr Float64 h3 = fromBits(0xbfb1108d326c68ed);  // -0.066658806620043712
constexpr Float64 h2 = fromBits(0xbfb745d119677a4f);  // -0.09090906973094913
constexpr Float64 h1 = fromBits(0xbfc2492492441a21);  // -0.14285714284797371
constexpr Float64 h0 = fromBits(0xbfd5555555555552);  // -0.33333333333333315

// atan(u) / u - 1, as an even and an odd polynomial in z = u^2
template <class V>
INLINE V atanSeries(V u) {
  const V z = u * u, z2 = z * z;
  const V even = ((((g5 * z2 + g4) * z2 + g3) * z2 + g2) * z2 + g1) * z2 + g0;
  const V odd = ((((h5 * z2 + h4) * z2 + h3) * z2 + h2) * z2 + h1) * z2 + h0;
  return even * z2 + odd * z;
}

// Arguments of the kernels that work with these quotients: those below 2^-1020 in magnitude and
// from 2^993 up, infinities and NaNs have special lanes.
template <class W>
INLINE auto outsideQuotients(W highWordOfMagnitude) {
  return wrappingSum(highWordOfMagnitude, 0x7fd00000) > static_cast<int>(0xfdcfffff);
}

}  // namespace
}  // namespace qorvane
