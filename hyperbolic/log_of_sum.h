// asinh and acosh in lanes: ln(a + sqrt(a^2 + 1)) and ln(x + sqrt(x^2 - 1)), where they are certain.
//
// Method: the bits of asinh and acosh are those of a program of their level, in pairs of numbers or
// in extended precision, with chains of dependent operations that are long. The same function is
// evaluated here as a sum hi + lo, good to a few units of 2^-64, and the result is taken where every
// number within both errors rounds to it; the others go through the level's program: of everyday
// arguments one in seventy to two thousand, near the lower ends up to one in eighteen, at level 1 up to
// one in four.
//
// The root begins with one in single precision, r, whose square is exact: with s + t = a^2 +- 1 and
// q = (s + t - r^2) / 2r, it is r + q - q^2 / 2r + ..., q < 2^-23 r. u = a + r, and what that leaves
// is added to q. The logarithm's row is that of u's leading 8 bits: with u = 2^k m and c near 1/m,
// ln(u) is k ln 2 - ln(c) + ln(1 + w), w = m c - 1, |w| < 2^-8.8.
//
// docs/asinh_acosh.md proves both errors.
#pragma once
#include "frame/words.h"
#include "hyperbolic/inverse_tables.h"

namespace qorvane {
namespace {

enum class Inverse { ofSinh, ofCosh };

// A bound for both errors, in units of 2^-64: absolute, and relative to the result.
struct Bound {
  Float64 absolute, relative;
};
// a^2 + 1 or a^2 - 1 is s + t. s is exact where a is below 2^26; so is what 1 leaves of it.
template <class V>
struct Square {
  V s, t;
};
template <Inverse inverse, class V>
INLINE Square<V> squareOf(V a) {
  const V head = andBits(a, broadcast<V>(fromBits(0xfffffffff8000000)));  // 26 bits
  const V product = head * head, t = (a - head) * (a + head);
  if constexpr (inverse == Inverse::ofCosh) {
    return {product - 1.0, t};
  } else {
    const V s = product + 1.0;
    return {s, t + (product - (s - 1.0))};
  }
}

// The root in 24 bits. A lone pair is taken twice, so that the other half raises no flag.
INLINE Lanes2 shortRoot(Lanes2 v) {
  const __m128 low = _mm_cvtpd_ps(v);
  return _mm_cvtps_pd(_mm_sqrt_ps(_mm_movelh_ps(low, low)));
}
#ifdef __AVX__
INLINE Lanes4 shortRoot(Lanes4 v) { return _mm256_cvtps_pd(_mm_sqrt_ps(_mm256_cvtpd_ps(v))); }
#endif
template <class V, int K>
INLINE Pack<V, K> shortRoot(Pack<V, K> v) {
  Pack<V, K> roots;
  if constexpr (laneCount<V> == 2)
    for (int i = 0; i < K; i += 2) {
      const __m128 r = _mm_sqrt_ps(_mm_movelh_ps(_mm_cvtpd_ps(v.part[i]), _mm_cvtpd_ps(v.part[i + 1])));
      roots.part[i] = _mm_cvtps_pd(r);
      roots.part[i + 1] = _mm_cvtps_pd(_mm_movehl_ps(r, r));
    }
  else
    for (int i = 0; i < K; ++i) roots.part[i] = shortRoot(v.part[i]);
  return roots;
}

// A first root, of what a^2 +- 1 is in one number.
template <Inverse inverse, class V>
INLINE V firstRoot(V a) {
  return shortRoot(inverse == Inverse::ofCosh ? a * a - 1.0 : a * a + 1.0);
}

// 16 bits of u.
template <class V>
INLINE V headOfSum(V u) {
  return andBits(u, broadcast<V>(fromBits(0xffffffe000000000)));
}
// What they leave of the sum: the rest of u, what its rounding lost, and q - q^2 / 2r.
template <Inverse inverse, class V>
INLINE V restOfSum(V a, V r, V u) {
  const Square<V> square = squareOf<inverse>(a);
  const V inverseOf2r = 0.5 / r, q = ((square.s - r * r) + square.t) * inverseOf2r;
  const V lost = a - (u - r);  // exact: r has 24 bits
  return (((u - headOfSum(u)) + lost) + q) - q * q * inverseOf2r;
}

// Where u's row stands, and k.
template <class V>
INLINE WordsOf<V> rowOf(V u) {
  return (highWords(u) >> 8) & 0xff0;
}
template <class V>
INLINE WordsOf<V> exponentOfSum(V u) {
  return (highWords(u) >> 20) - 1023;
}

// The logarithm is hi + (lo + (ln(1 + w) - w)).
template <class V>
struct LogParts {
  V hi, lo, w;
};
template <class V, class Offsets>
INLINE LogParts<V> logParts(V u, V rest, V k, Offsets offsets) {
  constexpr Float64 ln2Hi = fromBits(0x3fe62e42fefa3a00);  // 0.6931471805599472, a multiple of 2^-47
  constexpr Float64 ln2Lo = fromBits(0xbce0ca86c3898d00);  // -1.8641886737243033e-15
  const auto [halfOfC, minusLogOfC] = twoColumns<V>(logOfSumTable, offsets);
  const V c = halfOfC * withoutBits(broadcast<V>(fromBits(0x7ff0000000000000)), u);  // that is 2^(1 - k)
  const V f = headOfSum(u) * c - 1.0, g = rest * c;
  return {f + (k * ln2Hi + minusLogOfC), k * ln2Lo + g, f + g};
}

// The result, and a mask of the lanes where it is certain.
template <class V>
struct Result {
  V y, isCertain;
};
template <class V>
INLINE Result<V> resultOf(LogParts<V> parts, Bound bound) {
  // ln(1 + w) = w + w^2 (-0.5 + c3 w + ... + c6 w^4), |w| <= 1.13/512: error 2^-60.0, 2^-69.8 absolute
  constexpr Float64 c6 = fromBits(0xbfc5555e6da06d5b);  // -0.16666775086273841
  constexpr Float64 c5 = fromBits(0x3fc999a249ca026f);  // 0.20000103571875935
  constexpr Float64 c4 = fromBits(0xbfcffffffffeba27);  // -0.2499999999976847
  constexpr Float64 c3 = fromBits(0x3fd555555554da9a);  // 0.3333333333315891
  const V w = parts.w, w2 = w * w;
  const V lo = (parts.lo + (c3 * w - 0.5) * w2) + ((c5 * w + c4) + c6 * w2) * (w2 * w2);
  V width = broadcast<V>(bound.absolute * 0x1p-64);
  if (bound.relative != 0) width = width + parts.hi * (bound.relative * 0x1p-64);
  const V y = parts.hi + (lo - width), upper = parts.hi + (lo + width);
  return {y, equalLanes(y, upper)};
}

// Lanes serve magnitudes whose upper 16 bits are from `first` up to 2^26.
constexpr int afterLast = 0x4190;
// For many: the least and the greatest of the upper words, in four places of eight.
struct Extremes {
  __m128i least = _mm_set1_epi16(0x7fff), greatest = _mm_setzero_si128();
};
INLINE void take(Extremes& extremes, Lanes2 a) {
  extremes.least = _mm_min_epi16(extremes.least, _mm_castpd_si128(a));
  extremes.greatest = _mm_max_epi16(extremes.greatest, _mm_castpd_si128(a));
}
#ifdef __AVX__
INLINE void take(Extremes& extremes, Lanes4 a) { take(extremes, lowHalf(a)), take(extremes, highHalf(a)); }
#endif
template <class V, int K>
INLINE void take(Extremes& extremes, Pack<V, K> a) {
  makePack<K>([&](int i) INLINED { return take(extremes, a.part[i]), 0; });
}
INLINE bool areInLanes(Extremes extremes, int first) {
  const __m128i outside = _mm_or_si128(_mm_cmplt_epi16(extremes.least, _mm_set1_epi16(static_cast<short>(first))),
                                       _mm_cmpgt_epi16(extremes.greatest, _mm_set1_epi16(afterLast - 1)));
  return (_mm_movemask_epi8(outside) & 0xc0c0) == 0;
}

template <Inverse inverse, class V>
INLINE V magnitudeOf(V x) {
  return inverse == Inverse::ofSinh ? magnitude(x) : x;
}
template <Inverse inverse, class V>
INLINE V withSignOf(V y, V x) {
  return inverse == Inverse::ofSinh ? orBits(y, signOf(x)) : y;
}

}  // namespace
}  // namespace qorvane
