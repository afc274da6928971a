// What the levels of atanh share.
//
// Method: the bits of atanh are those of its evaluation in extended precision (atanh_extended.cpp),
// which is slow. In lanes of double precision it is evaluated here as a sum hi + lo, good to 2^-69,
// and the result is taken where every number within both errors rounds to it; the others, one in a
// hundred for |x| near 0.5 and more for smaller ones, are evaluated in extended precision.
//
// With N = 1 + a, D = 1 - a and a number r of 8 bits near D / N, atanh(a) = -ln(r)/2 + atanh(t)
// with t = (N r - D) / (N r + D), |t| < 2^-8.7. ln(r) comes from a table. r is made from the
// processor's estimate of a reciprocal, which no result depends on.
//
// Where a source is compiled with fused multiply-adds they take the place of products by heads: a
// sixth of the time at level 5.
//
// docs/atanh.md proves both errors.
#pragma once
#include "frame/loops.h"
#include "hyperbolic/atanh_extended.h"
#include "hyperbolic/inverse_tables.h"

namespace qorvane {
namespace {

constexpr int stripLength = 64;

// Numbers between the stages, which are loops of their own: then their chains are short enough for
// the processor to overlap their turns.
struct Strip {
  alignas(32) Float64 x[stripLength], t[stripLength], tLow[stripLength];
  alignas(32) int r[stripLength];  // bit patterns in single precision
};

// In single precision; two numbers twice, so that the other half raises no flag.
INLINE __m128 singlesOf(Lanes2 v) {
  const __m128 low = _mm_cvtpd_ps(v);
  return _mm_movelh_ps(low, low);
}
#ifdef __AVX__
INLINE __m128 singlesOf(Four v) { return _mm256_cvtpd_ps(v); }
#else
INLINE __m128 singlesOf(Four v) { return _mm_movelh_ps(_mm_cvtpd_ps(v.part[0]), _mm_cvtpd_ps(v.part[1])); }
#endif
template <class V>
INLINE V numbersOfSingles(__m128 v) {
  if constexpr (laneCount<V> == 2) return _mm_cvtps_pd(v);
#ifdef __AVX__
  if constexpr (laneCount<V> == 4) return _mm256_cvtps_pd(v);
#else
  if constexpr (laneCount<V> == 4) return {{_mm_cvtps_pd(v), _mm_cvtps_pd(_mm_movehl_ps(v, v))}};
#endif
}

INLINE Words4 fourWordsAt(const int* p) {
  return reinterpret_cast<Words4>(_mm_load_si128(reinterpret_cast<const __m128i*>(p)));
}

// r, as bit patterns in single precision.
template <class V>
INLINE Words4 ratioOf(V x) {
  const V a = magnitude(x);
  const __m128i ratio = _mm_castps_si128(_mm_mul_ps(singlesOf(1.0 - a), _mm_rcp_ps(singlesOf(1.0 + a))));
  return reinterpret_cast<Words4>(_mm_add_epi32(ratio, _mm_set1_epi32(0x8000))) & -0x10000;
}

// n = N r - D for 1 + a = N + NLow and 1 - a = D + DLow, and t = n / m.
template <class V>
struct Difference {
  V n, low;
};
template <class V>
struct Quotient {
  V t, low;
};
// Where r is 1, n is 2a, which may be far smaller than what N and D were rounded by.
template <class V>
INLINE Difference<V> normalized(Difference<V> n) {
  const V sum = n.n + n.low;
  return {sum, (n.n - sum) + n.low};
}
#ifdef __FMA__
template <class V>
INLINE V sumWithProduct(V a, V b, V c) {
  return fused(a, b, c);
}
template <class V>
INLINE Difference<V> differenceOf(V N, V NLow, V r, V D, V DLow) {
  return {fusedLess(N, r, D), fusedLess(NLow, r, DLow)};
}
// n / m, m = D2 + n, without D2Low in D2.
template <class V>
INLINE Quotient<V> divided(Difference<V> n, V D2, V D2Low) {
  const V m = D2 + n.n, mLow = ((D2 - m) + n.n) + (D2Low + n.low);
  const auto [normal, low] = normalized(n);
  const V inverse = 1.0 / m, t = normal * inverse;
  return {t, (fusedFrom(normal, t, m) + fusedFrom(low, t, mLow)) * inverse};
}
#else
template <class V>
INLINE V sumWithProduct(V a, V b, V c) {
  return a * b + c;
}
// The upper 26 bits: products of heads are exact.
template <class V>
INLINE V headOf(V v) {
  return andBits(v, broadcast<V>(fromBits(0xfffffffff8000000)));
}
template <class V>
INLINE Difference<V> differenceOf(V N, V NLow, V r, V D, V DLow) {
  const V NHead = headOf(N);
  return {(NHead * r - D) + (N - NHead) * r, NLow * r - DLow};
}
template <class V>
INLINE Quotient<V> divided(Difference<V> n, V D2, V D2Low) {
  const V m = D2 + n.n, mHead = headOf(m), mRest = ((D2 - mHead) + n.n) + (D2Low + n.low);
  const auto [normal, low] = normalized(n);
  const V inverse = 1.0 / m, t = headOf(normal * inverse);
  return {t, (((normal - t * mHead) - t * mRest) + low) * inverse};
}
#endif

// t from n and m = N r + D = 2D + n.
template <class V>
INLINE Quotient<V> quotientOf(V x, Words4 ratio) {
  const V a = magnitude(x), r = numbersOfSingles<V>(reinterpret_cast<__m128>(ratio));
  const V N = 1.0 + a, NLow = a - (N - 1.0), D = 1.0 - a, DLow = (1.0 - D) - a;
  return divided(differenceOf(N, NLow, r, D, DLow), D + D, DLow + DLow);
}

// The result, and a mask of the lanes where it is certain.
template <class V>
struct Sum {
  V y, isCertain;
};
template <class V>
INLINE Sum<V> sumOf(V x, WordsOf<V> ratio, Quotient<V> quotient) {
  constexpr Float64 halfLn2Hi = fromBits(0x3fd62e42fefa3800);              // 0.34657359027994517
  constexpr Float64 halfLn2Lo = fromBits(0x3d1ef35793c76730);              // 2.7489615093541856e-14
  constexpr Float64 t7 = fromBits(0x3fc2492492492492);                     // 0.14285714285714285
  constexpr Float64 t5 = fromBits(0x3fc999999999999a);                     // 0.2
  constexpr Float64 t3 = fromBits(0x3fd5555555555555);                     // 0.3333333333333333
  constexpr Float64 relative = 4.42 * 0x1p-64, absolute = 4.55 * 0x1p-64;  // of both errors; below 2^-8 relative only
  const auto [t, tLow] = quotient;
  const auto row = twoColumns<V>(halfLogTable, (ratio >> 12) & 0x7f0);
  const V k = numbersOf<V>(127 - (ratio >> 23));
  const auto fill = broadcast<V>;
  const V logHi = sumWithProduct(k, fill(halfLn2Hi), row.first), logLo = sumWithProduct(k, fill(halfLn2Lo), row.second);
  const V sum = t + tLow, z = sum * sum;
  const V cube = sumWithProduct(sumWithProduct(fill(t7), z, fill(t5)), z, fill(t3)) * z * sum;
  const V hi = logHi + t, lo = (t - (hi - logHi)) + (logLo + (tLow + cube));
  const V isSmall = lessLanes(hi, broadcast<V>(0x1p-8));
  const V bound = sumWithProduct(hi, fill(relative), withoutBits(fill(absolute), isSmall));
  const V y = hi + (lo - bound), upper = hi + (lo + bound);
  return {orBits(y, signOf(x)), equalLanes(y, upper)};
}

// The three stages over a strip. The last one gives a mask of the results that aren't certain; x may
// be dst.
INLINE void ratios(const Float64* x, Strip& s, int count) {
  for (int i = 0; i < count; i += 4) storeWords(s.r + i, ratioOf(load<Four>(x + i)));
}
INLINE void quotients(const Float64* x, Strip& s, int count) {
  for (int i = 0; i < count; i += 4) {
    const auto [t, low] = quotientOf(load<Four>(x + i), fourWordsAt(s.r + i));
    store(s.t + i, t), store(s.tLow + i, low);
  }
}
INLINE uint64_t sums(const Float64* x, Float64* dst, const Strip& s, int count) {
  uint64_t uncertain = 0;
  for (int i = 0; i < count; i += 4) {
    const Quotient<Four> quotient = {load<Four>(s.t + i), load<Four>(s.tLow + i)};
    const auto [y, isCertain] = sumOf(load<Four>(x + i), loadWords<Four>(s.r + i), quotient);
    store(dst + i, y);
    uncertain |= (signMask(isCertain) ^ 15) << i;
  }
  return uncertain;
}

// The elements that lanes don't serve: from 1 up, NaNs, and those whose powers might underflow.
template <class V>
INLINE auto outsideLanes(V x) {
  constexpr uint32_t one = 0x3ff00000, least = 0x33700000;  // 2^-200
  return wrappingSum(highWords(x) & 0x7fffffff, signedOf(0x80000000 - least)) > signedOf(0x7fffffff + (one - least));
}
// Copies with 0 in their place, which isn't one of them.
[[gnu::noinline, gnu::cold]] uint64_t takeOutside(const Float64* x, Float64* inLanes, int count) {
  uint64_t outside = 0;
  for (int i = 0; i < count; ++i) {
    const bool is = outsideLanes(x[i]) && toBits(x[i]) << 1 != 0;
    outside |= uint64_t{is} << i;
    inLanes[i] = is ? 0 : x[i];
  }
  return outside;
}

nuvStatus atanhStrip(const Float64* src, Float64* dst, int count) {
  Strip s;
  const int fours = count & ~3, whole = (count + 3) & ~3;
  const Float64* x = src;
  if (fours != whole || src == dst) {
    for (int i = 0; i < fours; i += 4) store(s.x + i, load<Four>(src + i));
    if (fours != whole) store(s.x + fours, loadPart<Four>(src + fours, count - fours));
    x = s.x;
  }
  WordsOf<Four> outside{};
  for (int i = 0; i < whole; i += 4) outside = outside | outsideLanes(load<Four>(x + i));
  uint64_t left = 0;
  Float64 copy[stripLength];
  const Float64* inLanes = x;
  if (any(outside)) [[unlikely]] {
    left = takeOutside(x, copy, whole);
    inLanes = copy;
  }
  ratios(inLanes, s, whole);
  quotients(inLanes, s, whole);
  left |= sums(inLanes, fours == whole ? dst : s.t, s, whole);
  if (fours != whole) {
    for (int i = 0; i < fours; i += 4) store(dst + i, load<Four>(s.t + i));
    for (int i = fours; i < count; ++i) dst[i] = s.t[i];
  }
  left &= ~uint64_t{0} >> (stripLength - count);
  return left == 0 ? nuvStatusOk : atanhElements(x, dst, count, left);
}

[[gnu::noinline]] nuvStatus atanhSingle(const Float64* src, Float64* dst) {
  if (outsideLanes(*src)) [[unlikely]]
    return atanhElement(src, dst);
  const Lanes2 x = broadcast<Lanes2>(*src);
  const Words4 ratio = ratioOf(x);
  const auto [y, isCertain] = sumOf(x, ratio, quotientOf(x, ratio));
  if (signMask(isCertain) == 0) [[unlikely]]
    return atanhElement(src, dst);
  _mm_storel_pd(dst, y);
  return nuvStatusOk;
}

nuvStatus atanhLoop(const Float64* src, Float64* dst, int64_t len) {
  if (len == 1) return atanhSingle(src, dst);
  nuvStatus status = nuvStatusOk;
  for (int count; len > 0; src += count, dst += count, len -= count) {
    count = len < stripLength ? static_cast<int>(len) : stripLength;
    takeStatus<Raises::no>(status, atanhStrip(src, dst, count));
  }
  return status;
}

}  // namespace
}  // namespace qorvane
