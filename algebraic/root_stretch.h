// The roots' loop for stretches of arguments from 2^-126 up to 2^128.
#pragma once
#include "algebraic/root_seed.h"

namespace qorvane {
namespace {

constexpr int64_t longestStretch = 1024, shortestStretch = 16;

[[gnu::always_inline]] inline bool isNarrow(const Float64* x, int64_t count) {
  __m128i least = _mm_set1_epi32(0x7fff0000), greatest = _mm_setzero_si128();
  for (int64_t i = 0; i < count; i += 4) {
    const __m128i words = reinterpret_cast<__m128i>(packHighWords(load<Lanes2>(x + i), load<Lanes2>(x + i + 2)));
    least = _mm_min_epi16(least, words);
    greatest = _mm_max_epi16(greatest, words);
  }
  const __m128i outside = _mm_or_si128(_mm_cmpgt_epi16(_mm_set1_epi16(0x3810), least), _mm_cmpgt_epi16(greatest, _mm_set1_epi16(0x47ef)));
  return (_mm_movemask_epi8(outside) & 0xcccc) == 0;
}

template <uint32_t kept>
[[gnu::always_inline]] inline void storeEstimates(const Float64* x, float* estimates) {
  const Float64 single = fromBits(0xffffffffe0000000);
#ifdef __AVX__
  const __m256d mask = _mm256_set1_pd(single);
  const __m128 a = _mm256_cvtpd_ps(_mm256_and_pd(_mm256_loadu_pd(x), mask)), b = _mm256_cvtpd_ps(_mm256_and_pd(_mm256_loadu_pd(x + 4), mask));
  __m256 root = _mm256_rsqrt_ps(_mm256_insertf128_ps(_mm256_castps128_ps256(a), b, 1));
  if constexpr (kept != 0xffffffff) root = _mm256_and_ps(root, _mm256_castsi256_ps(_mm256_set1_epi32(static_cast<int>(kept))));
  _mm256_store_ps(estimates, root);
#else
  const __m128d mask = _mm_set1_pd(single);
  for (int j = 0; j < 8; j += 4) {
    const __m128 a = _mm_cvtpd_ps(_mm_and_pd(_mm_loadu_pd(x + j), mask)), b = _mm_cvtpd_ps(_mm_and_pd(_mm_loadu_pd(x + j + 2), mask));
    __m128 root = _mm_rsqrt_ps(_mm_movelh_ps(a, b));
    if constexpr (kept != 0xffffffff) root = _mm_and_ps(root, _mm_castsi128_ps(_mm_set1_epi32(static_cast<int>(kept))));
    _mm_store_ps(estimates + j, root);
  }
#endif
}
[[gnu::always_inline]] inline Four estimatesAt(const float* p) {
#ifdef __AVX__
  return _mm256_cvtps_pd(_mm_load_ps(p));
#else
  const auto two = [&](int i) __attribute__((always_inline)) {
    return Lanes2(_mm_cvtps_pd(_mm_castpd_ps(_mm_load_sd(reinterpret_cast<const double*>(p + i)))));
  };
  return {{two(0), two(2)}};
#endif
}

template <uint32_t kept, class Begin, class Middle, class Finish>
[[gnu::always_inline]] inline void narrowStretch(const Float64* src, Float64* dst, int64_t count, Begin begin, Middle middle, Finish finish) {
  alignas(32) float estimates[longestStretch];
  for (int64_t i = 0; i < count; i += 8) storeEstimates<kept>(src + i, estimates + i);
  const auto first = [&](int64_t i) __attribute__((always_inline)) { return begin(load<Four>(src + i), estimatesAt(estimates + i)); };
  auto second = middle(first(0));
  auto next = first(4);
  int64_t i = 0;
  for (; i < count - 8; i += 4) {
    const Four y = finish(second, load<Four>(src + i));
    second = middle(next);
    next = first(i + 8);
    store(dst + i, y);
  }
  const Four y = finish(second, load<Four>(src + i));
  const Four z = finish(middle(next), load<Four>(src + i + 4));
  store(dst + i, y);
  store(dst + i + 4, z);
}

template <uint32_t kept, Raises raises, class Begin, class Middle, class Finish, class Lane>
[[gnu::always_inline]] inline nuvStatus rootLoop(const Float64* src, Float64* dst, int64_t len, Begin begin, Middle middle, Finish finish, Lane lane) {
  nuvStatus status = nuvStatusOk;
  SeedChunk seeds;
  for (int64_t count; len > 0; src += count, dst += count, len -= count) {
    count = len < longestStretch ? len : longestStretch;
    if (count >= shortestStretch && isNarrow(src, count & ~int64_t{7})) {
      count &= ~int64_t{7};
      narrowStretch<kept>(src, dst, count, begin, middle, finish);
      continue;
    }
    const nuvStatus last = stagedLoop<raises>(
        src, dst, count, [&](const Float64* x, int64_t i) __attribute__((always_inline)) { return storeSeeds<kept>(x, seeds, i); },
        [&](const Float64* x, int64_t i) __attribute__((always_inline)) { return begin(load<Four>(x), seedsAt(load<Four>(x), seeds, i)); },
        middle, [&](const auto& s, const Float64* x, int64_t) __attribute__((always_inline)) { return finish(s, load<Four>(x)); }, lane);
    if (last != nuvStatusOk) status = last;
  }
  return status;
}

}  // namespace
}  // namespace qorvane
