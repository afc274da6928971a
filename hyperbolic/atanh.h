#pragma once
#include "frame/loops.h"
#include "hyperbolic/atanh_extended.h"

namespace qorvane {
namespace {

// Single precision, four elements.
#ifdef __AVX__
INLINE WordsOf<Four> wordsOfFour(Words4 words) { return words; }
INLINE __m128 singlesOf(Four v) { return _mm256_cvtpd_ps(v); }
INLINE Four numbersOfSingles(__m128 v) { return _mm256_cvtps_pd(v); }
#else
INLINE WordsOf<Four> wordsOfFour(Words4 words) { return {{words}}; }
INLINE __m128 singlesOf(Four v) { return _mm_movelh_ps(_mm_cvtpd_ps(v.part[0]), _mm_cvtpd_ps(v.part[1])); }
INLINE Four numbersOfSingles(__m128 v) { return {{_mm_cvtps_pd(v), _mm_cvtps_pd(_mm_movehl_ps(v, v))}}; }
#endif

INLINE Four head(Four v) { return andBits(v, broadcast<Four>(fromBits(0xfffffffff8000000))); }  // 26 bits

constexpr int strip = 64;

// Numbers of a strip between the stages.
struct Strip {
  alignas(32) Float64 x[strip], t[strip], tLow[strip];
  alignas(32) int r[strip];  // in single precision
};

// The lanes from 1 up, tiny ones but 0, and NaNs.
INLINE Words4 outside(Words4 magnitudes) { return (magnitudes > 0x3fefffff) | (magnitudes < 0x33700000); }
[[gnu::noinline, gnu::cold]] uint64_t putAside(Float64* x, int count) {
  uint64_t aside = 0;
  for (int i = 0; i < count; ++i)
    if (((highWord(x[i]) & 0x7fffffff) - 0x33700000 >= 0x3ff00000 - 0x33700000) && x[i] != 0) {
      aside |= uint64_t{1} << i;
      x[i] = 0;
    }
  return aside;
}

// r, near (1 - a) / (1 + a), in 8 bits
[[gnu::noinline]] void ratios(int count, Strip& strip) {
  for (int i = 0; i < count; i += 4) {
    const Four a = magnitude(load<Four>(strip.x + i));
    const __m128i ratio = _mm_castps_si128(_mm_mul_ps(singlesOf(1.0 - a), _mm_rcp_ps(singlesOf(1.0 + a))));
    const __m128i rounded = _mm_and_si128(_mm_add_epi32(ratio, _mm_set1_epi32(0x8000)), _mm_set1_epi32(-0x10000));
    _mm_store_si128(reinterpret_cast<__m128i*>(strip.r + i), rounded);
  }
}
// t = n / m with n = N r - D, m = N r + D = 2D + n, where N = 1 + a and D = 1 - a
[[gnu::noinline]] void quotients(int count, Strip& strip) {
  for (int i = 0; i < count; i += 4) {
    const Four a = magnitude(load<Four>(strip.x + i));
    const Four r = numbersOfSingles(_mm_load_ps(reinterpret_cast<float*>(strip.r + i)));
    const Four N = 1.0 + a, NLow = a - (N - 1.0), D = 1.0 - a, DLow = (1.0 - D) - a;
    const Four NHead = head(N), n = (NHead * r - D) + (N - NHead) * r, nLow = NLow * r - DLow;
    const Four D2 = D + D, m = D2 + n, mLow = ((D2 - m) + n) + (DLow + DLow + nLow);
    const Four inverse = 1.0 / m, mHead = head(m), tHead = head(n * inverse);
    const Four tRest = (((n - tHead * mHead) - tHead * ((m - mHead) + mLow)) + nLow) * inverse;
    const Four isOne = equalLanes(r, broadcast<Four>(1.0));
    store(strip.t + i, select(isOne, a, tHead));
    store(strip.tLow + i, withoutBits(tRest, isOne));
  }
}
[[gnu::noinline]] uint64_t sums(int count, Strip& strip) {
  constexpr Float64 halfLn2Hi = fromBits(0x3fd62e42fefa3800), halfLn2Lo = fromBits(0x3d1ef35793c76730);
  constexpr Float64 t7 = fromBits(0x3fc2492492492492), t5 = fromBits(0x3fc999999999999a),
                    t3 = fromBits(0x3fd5555555555555);
  constexpr Float64 relative = 4.5 * 0x1p-64, absolute = 5.75 * 0x1p-64;
  uint64_t uncertain = 0;
  for (int i = 0; i < count; i += 4) {
    const Four x = load<Four>(strip.x + i), t = load<Four>(strip.t + i), tLow = load<Four>(strip.tLow + i);
    const Words4 word = reinterpret_cast<Words4>(_mm_load_si128(reinterpret_cast<const __m128i*>(strip.r + i)));
    const auto row = twoColumns<Four>(halfLogTable, wordsOfFour((word >> 12) & 0x7f0));
    const Four E = numbersOf<Four>(wordsOfFour(127 - (word >> 23)));
    const Four tableHi = E * halfLn2Hi + row.first, tableLo = E * halfLn2Lo + row.second;
    const Four sum = t + tLow, z = sum * sum, cube = ((t7 * z + t5) * z + t3) * z * sum;
    const Four hi = tableHi + t, lo = (t - (hi - tableHi)) + (tableLo + (tLow + cube));
    const Four isSmall = lessLanes(magnitude(x), broadcast<Four>(0x1p-8));
    const Four bound = hi * relative + withoutBits(broadcast<Four>(absolute), isSmall);
    const Four y = hi + (lo - bound), upper = hi + (lo + bound);
    store(strip.t + i, orBits(y, signOf(x)));
    uncertain |= (signMask(equalLanes(y, upper)) ^ 15) << i;
  }
  return uncertain;
}

nuvStatus atanhLoop(const Float64* src, Float64* dst, int64_t len) {
  nuvStatus status = nuvStatusOk;
  Strip s;
  for (int count; len > 0; src += count, dst += count, len -= count) {
    count = len < strip ? static_cast<int>(len) : strip;
    const int whole = (count + 3) & ~3;
    Words4 rare{};
    for (int i = 0; i < whole; i += 4) {
      if (i + 4 <= count) {
        store(s.x + i, load<Four>(src + i));
      } else {
        for (int lane = 0; lane < 4; ++lane) s.x[i + lane] = src[i + lane < count ? i + lane : i];
      }
      const Four a = magnitude(load<Four>(s.x + i));
      rare |= outside(packHighWords(lowHalf(a), highHalf(a)));
    }
    uint64_t open = 0;
    alignas(32) Float64 x[strip];
    if (any(rare)) [[unlikely]] {
      __builtin_memcpy(x, s.x, sizeof x);
      open = putAside(s.x, whole);
    }
    ratios(whole, s);
    quotients(whole, s);
    const uint64_t unsure = sums(whole, s);
    for (int i = 0; i < whole; i += 4) {
      if (i + 4 <= count)
        store(dst + i, load<Four>(s.t + i));
      else
        for (int lane = 0; i + lane < count; ++lane) dst[i + lane] = s.t[i + lane];
    }
    const uint64_t all = (open | unsure) & (~uint64_t{0} >> (strip - count));
    if (all != 0) [[unlikely]]
      takeStatus<Raises::no>(status, atanhElements(any(rare) ? x : s.x, dst, count, all));
  }
  return status;
}

}  // namespace
}  // namespace qorvane
