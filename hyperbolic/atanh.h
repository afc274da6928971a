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

// Apart, the stages take 3 % less time with SSE2; in one function, with AVX.
#ifdef __AVX__
#define STAGE INLINE
#else
#define STAGE [[gnu::noinline]]
#endif

#ifdef __AVX__
INLINE __m128 singlesOf(Four v) { return _mm256_cvtpd_ps(v); }
INLINE Four numbersOfSingles(__m128 v) { return _mm256_cvtps_pd(v); }
#else
INLINE __m128 singlesOf(Four v) { return _mm_movelh_ps(_mm_cvtpd_ps(v.part[0]), _mm_cvtpd_ps(v.part[1])); }
INLINE Four numbersOfSingles(__m128 v) { return {{_mm_cvtps_pd(v), _mm_cvtps_pd(_mm_movehl_ps(v, v))}}; }
#endif

STAGE void ratios(Strip& s, int count) {
  for (int i = 0; i < count; i += 4) {
    const Four a = magnitude(load<Four>(s.x + i));
    const __m128i ratio = _mm_castps_si128(_mm_mul_ps(singlesOf(1.0 - a), _mm_rcp_ps(singlesOf(1.0 + a))));
    const __m128i rounded = _mm_and_si128(_mm_add_epi32(ratio, _mm_set1_epi32(0x8000)), _mm_set1_epi32(-0x10000));
    _mm_store_si128(reinterpret_cast<__m128i*>(s.r + i), rounded);
  }
}

// A sum of two numbers.
struct Pair {
  Four hi, lo;
};

// n = N r - D for 1 + a = N + NLow, 1 - a = D + DLow, and the quotient of n and m.
#ifdef __FMA__
INLINE Four sumWithProduct(Four a, Four b, Four c) { return fused(a, b, c); }
INLINE Pair differenceTimes(Four N, Four NLow, Four r, Four D, Four DLow) {
  return {fusedLess(N, r, D), fusedLess(NLow, r, DLow)};
}
INLINE Pair quotient(Pair n, Pair m) {
  const Four inverse = 1.0 / m.hi, t = n.hi * inverse;
  return {t, (fusedFrom(n.hi, t, m.hi) + fusedFrom(n.lo, t, m.lo)) * inverse};
}
#else
INLINE Four sumWithProduct(Four a, Four b, Four c) { return a * b + c; }
// The upper 26 bits: products of heads are exact.
INLINE Four head(Four v) { return andBits(v, broadcast<Four>(fromBits(0xfffffffff8000000))); }
INLINE Pair differenceTimes(Four N, Four NLow, Four r, Four D, Four DLow) {
  const Four NHead = head(N);
  return {(NHead * r - D) + (N - NHead) * r, NLow * r - DLow};
}
INLINE Pair quotient(Pair n, Pair m) {
  const Four inverse = 1.0 / m.hi, mHead = head(m.hi), t = head(n.hi * inverse);
  return {t, (((n.hi - t * mHead) - t * ((m.hi - mHead) + m.lo)) + n.lo) * inverse};
}
#endif

// t from n = N r - D and m = N r + D = 2D + n. Where r is 1, t is a itself.
STAGE void quotients(Strip& s, int count) {
  for (int i = 0; i < count; i += 4) {
    const Four a = magnitude(load<Four>(s.x + i));
    const Four r = numbersOfSingles(_mm_load_ps(reinterpret_cast<const float*>(s.r + i)));
    const Four N = 1.0 + a, NLow = a - (N - 1.0), D = 1.0 - a, DLow = (1.0 - D) - a;
    const Pair n = differenceTimes(N, NLow, r, D, DLow);
    const Four D2 = D + D, m = D2 + n.hi, mLow = ((D2 - m) + n.hi) + (DLow + DLow + n.lo);
    const auto [t, tLow] = quotient(n, {m, mLow});
    const Four isOne = equalLanes(r, broadcast<Four>(1.0));
    store(s.t + i, select(isOne, a, t));
    store(s.tLow + i, withoutBits(tLow, isOne));
  }
}

// The results, in place of t, and a mask of those that aren't certain.
STAGE uint64_t sums(Strip& s, int count) {
  constexpr Float64 halfLn2Hi = fromBits(0x3fd62e42fefa3800);             // 0.34657359027994517
  constexpr Float64 halfLn2Lo = fromBits(0x3d1ef35793c76730);             // 2.7489615093541856e-14
  constexpr Float64 t7 = fromBits(0x3fc2492492492492);                    // 0.14285714285714285
  constexpr Float64 t5 = fromBits(0x3fc999999999999a);                    // 0.2
  constexpr Float64 t3 = fromBits(0x3fd5555555555555);                    // 0.3333333333333333
  constexpr Float64 relative = 4.5 * 0x1p-64, absolute = 5.75 * 0x1p-64;  // of both errors; below 2^-8 relative only
  uint64_t uncertain = 0;
  for (int i = 0; i < count; i += 4) {
    const Four x = load<Four>(s.x + i), t = load<Four>(s.t + i), tLow = load<Four>(s.tLow + i);
    const WordsOf<Four> word = loadWords<Four>(s.r + i);
    const auto row = twoColumns<Four>(halfLogTable, (word >> 12) & 0x7f0);
    const Four k = numbersOf<Four>(127 - (word >> 23));
    const auto fill = broadcast<Four>;
    const Four logHi = sumWithProduct(k, fill(halfLn2Hi), row.first),
               logLo = sumWithProduct(k, fill(halfLn2Lo), row.second);
    const Four sum = t + tLow, z = sum * sum;
    const Four cube = sumWithProduct(sumWithProduct(fill(t7), z, fill(t5)), z, fill(t3)) * z * sum;
    const Four hi = logHi + t, lo = (t - (hi - logHi)) + (logLo + (tLow + cube));
    const Four isSmall = lessLanes(magnitude(x), broadcast<Four>(0x1p-8));
    const Four bound = sumWithProduct(hi, fill(relative), withoutBits(fill(absolute), isSmall));
    const Four y = hi + (lo - bound), upper = hi + (lo + bound);
    store(s.t + i, orBits(y, signOf(x)));
    uncertain |= (signMask(equalLanes(y, upper)) ^ 15) << i;
  }
  return uncertain;
}

// The elements that lanes don't serve: from 1 up, NaNs, and those whose powers might underflow.
INLINE auto outsideLanes(Four x) {
  const auto word = highWords(x) & 0x7fffffff;
  return (word > 0x3fefffff) | (0x33700000 > word);  // 2^-200
}
// Puts 0 in their place, which isn't one of them.
[[gnu::noinline, gnu::cold]] uint64_t takeOutside(Float64* x, int count) {
  uint64_t outside = 0;
  for (int i = 0; i < count; ++i)
    if ((highWord(x[i]) & 0x7fffffff) - 0x33700000 >= 0x3ff00000 - 0x33700000 && toBits(x[i]) << 1 != 0) {
      outside |= uint64_t{1} << i;
      x[i] = 0;
    }
  return outside;
}

nuvStatus atanhStrip(const Float64* src, Float64* dst, int count) {
  Strip s;
  WordsOf<Four> outside{};
  const int whole = (count + 3) & ~3;
  for (int i = 0; i < whole; i += 4) {
    if (i + 4 <= count)
      store(s.x + i, load<Four>(src + i));
    else
      for (int lane = 0; lane < 4; ++lane) s.x[i + lane] = src[i + lane < count ? i + lane : i];
    outside = outside | outsideLanes(load<Four>(s.x + i));
  }
  uint64_t left = 0;
  Float64 x[stripLength];
  const Float64* arguments = s.x;
  if (any(outside)) [[unlikely]] {
    __builtin_memcpy(x, s.x, static_cast<size_t>(whole) * sizeof *x);
    arguments = x;
    left = takeOutside(s.x, whole);
  }
  ratios(s, whole);
  quotients(s, whole);
  left = (left | sums(s, whole)) & (~uint64_t{0} >> (stripLength - count));
  for (int i = 0; i < whole; i += 4) {
    if (i + 4 <= count)
      store(dst + i, load<Four>(s.t + i));
    else
      for (int lane = 0; i + lane < count; ++lane) dst[i + lane] = s.t[i + lane];
  }
  return left == 0 ? nuvStatusOk : atanhElements(arguments, dst, count, left);
}

nuvStatus atanhLoop(const Float64* src, Float64* dst, int64_t len) {
  if (len == 1) return atanhElement(src, dst);
  nuvStatus status = nuvStatusOk;
  for (int count; len > 0; src += count, dst += count, len -= count) {
    count = len < stripLength ? static_cast<int>(len) : stripLength;
    takeStatus<Raises::no>(status, atanhStrip(src, dst, count));
  }
  return status;
}

}  // namespace
}  // namespace qorvane
