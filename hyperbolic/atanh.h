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

struct Sum {
  Four hi, lo;
};

// atanh(a), a below 1 and not tiny, as a sum good to 2^-69. 
INLINE Sum atanhSum(Four a) {
  constexpr Float64 halfLn2Hi = fromBits(0x3fd62e42fefa3800), halfLn2Lo = fromBits(0x3d1ef35793c76730);
  constexpr Float64 t7 = fromBits(0x3fc2492492492492), t5 = fromBits(0x3fc999999999999a),
                    t3 = fromBits(0x3fd5555555555555);
  // N = 1 + a and D = 1 - a
  const Four N = 1.0 + a, NLow = a - (N - 1.0), D = 1.0 - a, DLow = (1.0 - D) - a;
  // r, near D / N, in 8 bits
  const __m128i ratio = _mm_castps_si128(_mm_mul_ps(singlesOf(D), _mm_rcp_ps(singlesOf(N))));
  const __m128i rounded = _mm_and_si128(_mm_add_epi32(ratio, _mm_set1_epi32(0x8000)), _mm_set1_epi32(-0x10000));
  const Four r = numbersOfSingles(_mm_castsi128_ps(rounded));
  const Words4 word = reinterpret_cast<Words4>(rounded);
  const Words4 offsets = (word >> 12) & 0x7f0, exponents = 127 - (word >> 23);
  // -ln(r) / 2
  const auto row = twoColumns<Four>(halfLogTable, wordsOfFour(offsets));
  const Four E = numbersOf<Four>(wordsOfFour(exponents));
  const Four tableHi = E * halfLn2Hi + row.first, tableLo = E * halfLn2Lo + row.second;
  // t = n / m with n = N r - D and m = N r + D = 2D + n
  const Four NHead = head(N), n = (NHead * r - D) + (N - NHead) * r, nLow = NLow * r - DLow;
  const Four D2 = D + D, m = D2 + n, mLow = ((D2 - m) + n) + (DLow + DLow + nLow);
  const Four inverse = 1.0 / m, mHead = head(m), tHead = head(n * inverse);
  const Four tRest = (((n - tHead * mHead) - tHead * ((m - mHead) + mLow)) + nLow) * inverse;
  // r = 1: t is a
  const Four isOne = equalLanes(r, broadcast<Four>(1.0));
  const Four t = select(isOne, a, tHead), tLow = withoutBits(tRest, isOne);
  const Four sum = t + tLow, z = sum * sum, cube = ((t7 * z + t5) * z + t3) * z * sum;
  const Four hi = tableHi + t;
  return {hi, (t - (hi - tableHi)) + (tableLo + (tLow + cube))};
}

constexpr int strip = 64;

// The lanes from 1 up, tiny ones but 0, and NaNs.
INLINE Words4 outside(Words4 magnitudes) { return (magnitudes > 0x3fefffff) | (magnitudes < 0x33700000); }
[[gnu::noinline, gnu::cold]] uint64_t putAside(Float64* a) {
  uint64_t aside = 0;
  for (int i = 0; i < 4; ++i)
    if ((highWord(a[i]) - 0x33700000 >= 0x3ff00000 - 0x33700000) && a[i] != 0) {
      aside |= uint64_t{1} << i;
      a[i] = 0;
    }
  return aside;
}

// y where it is certain; the others, as a mask.
INLINE uint64_t atanhFour(const Float64* src, Float64* dst) {
  constexpr Float64 relative = 4.5 * 0x1p-64, absolute = 5.75 * 0x1p-64;
  const Four x = load<Four>(src);
  Four a = magnitude(x);
  uint64_t aside = 0;
  if (any(outside(packHighWords(lowHalf(a), highHalf(a))))) [[unlikely]] {
    alignas(32) Float64 lanes[4];
    store(lanes, a);
    aside = putAside(lanes);
    a = load<Four>(lanes);
  }
  const Sum s = atanhSum(a);
  const Four least = broadcast<Four>(0x1p-8);
  const Four bound = s.hi * relative + withoutBits(broadcast<Four>(absolute), lessLanes(a, least));
  const Four y = s.hi + (s.lo - bound), upper = s.hi + (s.lo + bound);
  store(dst, orBits(y, signOf(x)));
  return aside | (signMask(equalLanes(y, upper)) ^ 15);
}

nuvStatus atanhLoop(const Float64* src, Float64* dst, int64_t len) {
  nuvStatus status = nuvStatusOk;
  for (int count; len > 0; src += count, dst += count, len -= count) {
    count = len < strip ? static_cast<int>(len) : strip;
    alignas(32) Float64 x[strip];
    uint64_t open = 0;
    int i = 0;
    for (; i + 4 <= count; i += 4) {
      store(x + i, load<Four>(src + i));
      open |= atanhFour(x + i, dst + i) << i;
    }
    if (i < count) {
      alignas(32) Float64 y[4];
      for (int lane = 0; lane < 4; ++lane) x[i + lane] = src[i + lane < count ? i + lane : i];
      open |= (atanhFour(x + i, y) & ((1u << (count - i)) - 1)) << i;
      for (int lane = 0; i + lane < count; ++lane) dst[i + lane] = y[lane];
    }
    if (open != 0) [[unlikely]]
      takeStatus<Raises::no>(status, atanhElements(x, dst, count, open));
  }
  return status;
}

}  // namespace
}  // namespace qorvane
