// asinh and acosh in lanes: ln(a + sqrt(a^2 + 1)) and ln(x + sqrt(x^2 - 1)), where they are certain.
//
// Method: the bits of asinh and acosh are those of a program of their level, in pairs of numbers or
// in extended precision, with chains of dependent operations that are long. The same function is
// evaluated here as a sum hi + lo, good to a few units of 2^-64, and the result is taken where every
// number within both errors rounds to it; the others, one in fifty to one in a thousand, go through
// the level's program.
//
// The root begins with one in single precision, r, whose square is exact: with s + t = a^2 +- 1 and
// q = (s + t - r^2) / 2r, it is r + q - q^2 / 2r + ..., q < 2^-23 r. u = a + r, and what that leaves
// is added to q. The logarithm's row is that of u's leading 8 bits: with u = 2^k m and c near 1/m,
// ln(u) is k ln 2 - ln(c) + ln(1 + w), w = m c - 1, |w| < 2^-8.8.
//
// docs/asinh_acosh.md proves both errors.
#pragma once
#include "frame/pipeline.h"
#include "hyperbolic/inverse_tables.h"

namespace qorvane {
namespace {

constexpr int stripLength = 64;

enum class Inverse { ofSinh, ofCosh };

// A bound for both errors, in units of 2^-64: absolute, and relative to the result.
struct Bound {
  Float64 absolute, relative;
};
// A function at a level: `first`, in the upper 16 bits, is where the lanes' arguments begin, and
// program(x, y, count) evaluates up to stripLength arguments of any kind.
struct Definition {
  Inverse inverse;
  Bound bound;
  int first;
  nuvStatus (*program)(const Float64* x, Float64* y, int64_t count);
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

// The root in 24 bits. Two numbers are taken twice, so that the other half raises no flag.
INLINE Lanes2 shortRoot(Lanes2 v) {
  const __m128 low = _mm_cvtpd_ps(v);
  return _mm_cvtps_pd(_mm_sqrt_ps(_mm_movelh_ps(low, low)));
}
#ifdef __AVX__
INLINE Lanes4 shortRoot(Lanes4 v) { return _mm256_cvtps_pd(_mm_sqrt_ps(_mm256_cvtpd_ps(v))); }
template <int K>
INLINE Pack<Lanes4, K> shortRoot(Pack<Lanes4, K> v) {
  return makePack<K>([&](int i) INLINED { return shortRoot(v.part[i]); });
}
#else
INLINE Four shortRoot(Four v) {
  const __m128 r = _mm_sqrt_ps(_mm_movelh_ps(_mm_cvtpd_ps(v.part[0]), _mm_cvtpd_ps(v.part[1])));
  return {{_mm_cvtps_pd(r), _mm_cvtps_pd(_mm_movehl_ps(r, r))}};
}
#endif

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
  // ln(1 + w) - w = w^2 (-0.5 + c3 w + ... + c6 w^4), |w| <= 1.13/512: error 2^-69.8, absolute
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

#ifdef __AVX__
using Group = Lanes4;
#else
using Group = Four;
#endif

// Numbers between the stages, which are loops of their own: then their chains are short enough for
// the processor to overlap their turns.
#ifdef __AVX__
using Eight = Pack<Lanes4, 2>;
INLINE Eight pairOf(Four low, Four high) { return {{low, high}}; }
INLINE Four lowFour(Eight v) { return v.part[0]; }
INLINE Four highFour(Eight v) { return v.part[1]; }
#else
using Eight = Pack<Lanes2, 4>;
INLINE Eight pairOf(Four low, Four high) { return {{low.part[0], low.part[1], high.part[0], high.part[1]}}; }
INLINE Four lowFour(Eight v) { return {{v.part[0], v.part[1]}}; }
INLINE Four highFour(Eight v) { return {{v.part[2], v.part[3]}}; }
INLINE Eight shortRoot(Eight v) { return pairOf(shortRoot(lowFour(v)), shortRoot(highFour(v))); }
#endif
struct Strip {
  alignas(32) Float64 x[stripLength], root[stripLength], u[stripLength], rest[stripLength], w[stripLength];
  alignas(32) int row[stripLength], exponent[stripLength];
};

[[gnu::noinline]] uint64_t uncertainOf(Strip& s, int64_t count) {
  uint64_t uncertain = 0;
  for (int64_t i = 0; i < count; i += 4) uncertain |= (signMask(load<Four>(s.u + i)) ^ 15) << i;
  return uncertain;
}
// Of a mask of lanes.
template <class V>
INLINE bool isSetInAll(V mask) {
  if constexpr (isPack<V>) {
    PartOf<V> all = mask.part[0];
    for (int i = 1; i < packSize<V>; ++i) all = andBits(all, mask.part[i]);
    return isSetInAll(all);
  } else {
    return signMask(mask) == (1 << laneCount<V>) - 1;
  }
}
// All stages, for a multiple of four arguments in the lanes' range. Gives a mask of the results that
// aren't certain. x may be dst.
template <Inverse inverse>
INLINE uint64_t stages(const Float64* x, Float64* dst, int64_t count, Bound bound, Strip& s) {
  eachGroup<Group, Four>(count, [&]<class V>(V, int64_t i) INLINED {
    const V a = magnitudeOf<inverse>(load<V>(x + i));
    const V r = firstRoot<inverse>(a);
    store(s.root + i, r), store(s.u + i, a + r);
  });
  eachGroup<Group, Four>(count, [&]<class V>(V, int64_t i) INLINED {
    const V a = magnitudeOf<inverse>(load<V>(x + i)), u = load<V>(s.u + i);
    storeWords(s.row + i, rowOf(u)), storeWords(s.exponent + i, exponentOfSum(u));
    store(s.rest + i, restOfSum<inverse>(a, load<V>(s.root + i), u));
  });
  Float64 *const hi = s.root, *const lo = s.rest;
  eachGroup<Group, Four>(count, [&]<class V>(V, int64_t i) INLINED {
    const auto offsets = [&](int lane) INLINED { return static_cast<uint64_t>(s.row[i + lane]); };
    const LogParts<V> parts = logParts(load<V>(s.u + i), load<V>(s.rest + i), numbersAt<V>(s.exponent + i), offsets);
    store(hi + i, parts.hi), store(lo + i, parts.lo), store(s.w + i, parts.w);
  });
  Four all = equalLanes(broadcast<Four>(0.0), broadcast<Four>(0.0));
  eachGroup<Group, Four>(count, [&]<class V>(V, int64_t i) INLINED {
    const auto [y, isCertain] = resultOf<V>({load<V>(hi + i), load<V>(lo + i), load<V>(s.w + i)}, bound);
    store(s.u + i, isCertain);
    all = andBits(all, isCertain);
    store(dst + i, withSignOf<inverse>(y, load<V>(x + i)));
  });
  return isSetInAll(all) ? 0 : uncertainOf(s, count);
}

// Those arguments whose bit is set, together.
template <const Definition& f>
[[gnu::noinline]] nuvStatus byProgram(const Float64* src, Float64* dst, uint64_t set) {
  Float64 x[stripLength], y[stripLength];
  if (set == 0) return nuvStatusOk;
  if ((set & (set - 1)) == 0) {
    const int place = __builtin_ctzll(set);
    const nuvStatus status = f.program(src + place, y, 1);
    dst[place] = y[0];
    return status;
  }
  int count = 0;
  for (uint64_t left = set; left != 0; left &= left - 1) x[count++] = src[__builtin_ctzll(left)];
  const nuvStatus status = f.program(x, y, count);
  count = 0;
  for (uint64_t left = set; left != 0; left &= left - 1) dst[__builtin_ctzll(left)] = y[count++];
  return status;
}
// The others of a strip are replaced by a harmless number.
template <Inverse inverse>
[[gnu::noinline]] uint64_t takeOutside(const Float64* x, Float64* inLanes, int64_t count, int first) {
  uint64_t outside = 0;
  for (int64_t i = 0; i < count; i += 4) {
    const Four v = load<Four>(x + i);
    const auto words = highWords(magnitudeOf<inverse>(v));
    const auto mask = ((first << 16) > words) | (words > (afterLast << 16) - 1);
    store(inLanes + i, v);
    outside |= static_cast<uint64_t>(_mm_movemask_ps(reinterpret_cast<__m128>(partOf(mask, 0)))) << i;
  }
  for (uint64_t left = outside; left != 0; left &= left - 1) inLanes[__builtin_ctzll(left)] = 2.0;
  return outside;
}

// Up to a vector's lanes, the others with one of them; and back.
INLINE Four loadUpTo3(const Float64* p, int64_t count) {
  const Lanes2 low = loadPart<Lanes2>(p, count == 1 ? 1 : 2);
  return joinHalves(low, count == 3 ? _mm_set1_pd(p[2]) : low);
}
INLINE void storeUpTo3(Float64* p, Four y, int64_t count) {
  storePart(p, lowHalf(y), count == 1 ? 1 : 2);
  if (count == 3) _mm_storel_pd(p + 2, highHalf(y));
}
template <class V>
INLINE V loadUpTo(const Float64* p, int64_t count) {
  if constexpr (laneCount<V> == 2) return loadPart<Lanes2>(p, count);
  if constexpr (laneCount<V> == 4) return count == 4 ? load<Four>(p) : loadUpTo3(p, count);
  if constexpr (laneCount<V> == 8) return pairOf(load<Four>(p), count == 8 ? load<Four>(p + 4) : loadUpTo3(p + 4, count - 4));
}
template <class V>
INLINE void storeUpTo(Float64* p, V y, int64_t count) {
  if constexpr (laneCount<V> == 2) storePart(p, y, count);
  if constexpr (laneCount<V> == 4) count == 4 ? store(p, y) : storeUpTo3(p, y, count);
  if constexpr (laneCount<V> == 8) {
    store(p, lowFour(y));
    count == 8 ? store(p + 4, highFour(y)) : storeUpTo3(p + 4, highFour(y), count - 4);
  }
}

template <const Definition& f>
INLINE nuvStatus strip(const Float64* src, Float64* dst, int64_t count) {
  Strip s;
  const int64_t whole = (count + 3) & ~int64_t{3}, fours = count & ~int64_t{3};
  const Float64* x = src;
  if (count != whole || src == dst) {
    for (int64_t i = 0; i < fours; i += 4) store(s.x + i, load<Four>(src + i));
    if (fours != count) store(s.x + fours, loadUpTo3(src + fours, count - fours));
    x = s.x;
  }
  Extremes extremes;
  for (int64_t i = 0; i < whole; i += 4) take(extremes, magnitudeOf<f.inverse>(load<Four>(x + i)));
  uint64_t left = 0;
  Float64 inLanes[stripLength];
  const Float64* arguments = x;
  if (!areInLanes(extremes, f.first)) [[unlikely]] {
    left = takeOutside<f.inverse>(x, inLanes, whole, f.first);
    arguments = inLanes;
  }
  if (count == whole) {
    left |= stages<f.inverse>(arguments, dst, whole, f.bound, s);
  } else {
    left |= stages<f.inverse>(arguments, s.w, whole, f.bound, s);
    for (int64_t i = 0; i < fours; i += 4) store(dst + i, load<Four>(s.w + i));
    storeUpTo3(dst + fours, load<Four>(s.w + fours), count - fours);
  }
  left &= ~uint64_t{0} >> (stripLength - count);
  return left == 0 ? nuvStatusOk : byProgram<f>(x, dst, left);
}
template <const Definition& f>
[[gnu::noinline, gnu::cold]] nuvStatus byParts(const Float64* src, Float64* dst, int64_t count) {
  return strip<f>(src, dst, count);
}

// Up to a vector's lanes in one piece.
template <class V, const Definition& f>
INLINE nuvStatus few(const Float64* src, Float64* dst, int64_t count) {
  constexpr Inverse inverse = f.inverse;
  const V x = loadUpTo<V>(src, count), a = magnitudeOf<inverse>(x);
  Extremes extremes;
  take(extremes, a);
  if (!areInLanes(extremes, f.first)) [[unlikely]]
    return byParts<f>(src, dst, count);
  const V r = firstRoot<inverse>(a), u = a + r;
  const auto parts = logParts(u, restOfSum<inverse>(a, r, u), numbersOf<V>(exponentOfSum(u)), rowOf(u));
  const auto [y, isCertain] = resultOf(parts, f.bound);
  if (isSetInAll(isCertain)) [[likely]]
    return storeUpTo(dst, withSignOf<inverse>(y, x), count), nuvStatusOk;
  if (src == dst) return byParts<f>(src, dst, count);
  storeUpTo(dst, withSignOf<inverse>(y, x), count);
  return byProgram<f>(src, dst, ~signMask(isCertain) & (~uint64_t{0} >> (stripLength - count)));
}
template <class V, const Definition& f>
[[gnu::noinline]] nuvStatus fewApart(const Float64* src, Float64* dst, int64_t count) {
  return few<V, f>(src, dst, count);
}
template <const Definition& f>
[[gnu::noinline]] nuvStatus eachStrip(const Float64* src, Float64* dst, int64_t len) {
  nuvStatus status = nuvStatusOk;
  for (int64_t count; len > 0; src += count, dst += count, len -= count) {
    count = len < stripLength ? len : stripLength;
    takeStatus<Raises::no>(status, strip<f>(src, dst, count));
  }
  return status;
}
template <const Definition& f>
INLINE nuvStatus inverseLoop(const Float64* src, Float64* dst, int64_t len) {
  if (len == 1) return few<Lanes2, f>(src, dst, 1);
  if (len <= 2) return fewApart<Lanes2, f>(src, dst, len);
  if (len <= 4) return fewApart<Four, f>(src, dst, len);
  if (len <= 8) return fewApart<Eight, f>(src, dst, len);
  return eachStrip<f>(src, dst, len);
}

}  // namespace
}  // namespace qorvane
