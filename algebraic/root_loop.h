// The loop of the square root and its reciprocal.
//
// Where a stretch of arguments lies from 2^-126 up to 2^128, single precision holds them, and the processor's estimate of the argument itself serves as the
// seed, without work on exponents: estimates repeat themselves, halved, at four times their argument. Stretches are long, since the pipeline below takes some
// fifty cycles to fill. Any other stretch goes through stagedLoop, with the seeds of root_seed.h, which are the same numbers.
#pragma once
#include "algebraic/root_seed.h"

namespace qorvane {
namespace {

constexpr int64_t longestStretch = 1024, shortestStretch = 64;  // in elements, and taken in eights

// Whether all of `count` arguments lie in that range. The test is made ahead of everything else, for conversions of other numbers would raise flags.
// It is made on the upper halves of high words, as signed numbers; what stands in the lower halves doesn't matter.
[[gnu::always_inline]] inline bool fitsSinglePrecision(const Float64* x, int64_t count) {
  if (highWord(x[0]) - 0x38100000 >= 0x0fe00000) return false;  // where numbers are outside, the first mostly tells it
  __m128i least = _mm_set1_epi16(0x7fff), greatest = _mm_setzero_si128();
  const auto words = [&](int64_t i) __attribute__((always_inline)) {
    return reinterpret_cast<__m128i>(packHighWords(load<Lanes2>(x + i), load<Lanes2>(x + i + 2)));
  };
  for (int64_t i = 0; i < count; i += 16) {
    const int64_t j = i < count - 16 ? i : count - 16;
    const __m128i a = words(j), b = words(j + 4), c = words(j + 8), d = words(j + 12);
    least = _mm_min_epi16(least, _mm_min_epi16(_mm_min_epi16(a, b), _mm_min_epi16(c, d)));
    greatest = _mm_max_epi16(greatest, _mm_max_epi16(_mm_max_epi16(a, b), _mm_max_epi16(c, d)));
  }
  const __m128i outside = _mm_or_si128(_mm_cmplt_epi16(least, _mm_set1_epi16(0x3810)), _mm_cmpgt_epi16(greatest, _mm_set1_epi16(0x47ef)));
  return (_mm_movemask_epi8(outside) & 0xcccc) == 0;
}

// Four arguments cut to single precision: the conversions are exact in every rounding mode.
constexpr uint64_t bitsOfSingle = 0xffffffffe0000000;
#ifdef __AVX__
using Part = Lanes4;
[[gnu::always_inline]] inline __m128 singles(const Float64* x) { return _mm256_cvtpd_ps(andBits(load<Lanes4>(x), broadcast<Lanes4>(fromBits(bitsOfSingle)))); }
[[gnu::always_inline]] inline Lanes4 widened(const float* p) {
  Lanes4 y = _mm256_cvtps_pd(_mm_load_ps(p));
  asm("" : "+x"(y));  // or else the compiler keeps the narrow numbers from turn to turn, and widens them twice, which takes longer than from memory
  return y;
}
#else
using Part = Lanes2;
[[gnu::always_inline]] inline __m128 singles(const Float64* x) {
  const auto two = [&](int i) __attribute__((always_inline)) { return _mm_cvtpd_ps(andBits(load<Lanes2>(x + i), broadcast<Lanes2>(fromBits(bitsOfSingle)))); };
  return _mm_movelh_ps(two(0), two(2));
}
[[gnu::always_inline]] inline Lanes2 widened(const float* p) { return _mm_cvtps_pd(_mm_castpd_ps(_mm_load_sd(reinterpret_cast<const double*>(p)))); }
#endif

// The steps from an argument and its seed to the result. `F` has them, for Float64 too, each but a few operations long.
template <class F, class V>
[[gnu::always_inline]] inline auto productsOf(V x, V y) {
  return F::products(F::withSeed(F::proceed(F::begin(F::terms(x, y * y))), y), x);
}
template <class F, class V>
[[gnu::always_inline]] inline V rootOf(V x, V y) {
  return F::result(productsOf<F>(x, y), x);
}

// Estimates of 1/sqrt(x) for eight arguments, with the bits of `kept`.
template <uint32_t kept>
[[gnu::always_inline]] inline void storeEstimates(const Float64* x, float* estimates) {
  for (int i = 0; i < 8; i += 4) {
    const __m128 roots = _mm_rsqrt_ps(singles(x + i));
    _mm_store_ps(estimates + i, kept == 0xffffffff ? roots : _mm_and_ps(roots, _mm_castsi128_ps(_mm_set1_epi32(static_cast<int>(kept)))));
  }
}

// One vector's chain of operations takes some sixty cycles, and the processor doesn't look far enough ahead to fill them with other vectors. So it is cut
// into seven stages, and a turn of the loop makes one stage for each of seven successive vectors, the oldest first: its operands were ready a turn ago.
template <class F>
[[gnu::always_inline]] inline void pipeline(const Float64* src, const float* estimates, Float64* dst, int64_t count) {
  constexpr int64_t n = laneCount<Part>;
  const auto x = [&](int64_t i) __attribute__((always_inline)) { return load<Part>(src + i); };
  const auto y = [&](int64_t i) __attribute__((always_inline)) { return widened(estimates + i); };
  const auto square = [&](int64_t i) __attribute__((always_inline)) {
    const Part seed = y(i);
    return seed * seed;
  };
  auto y2 = square(0);
  auto terms = F::terms(x(0), y2);
  auto begun = F::begin(terms), half = F::proceed(begun);
  auto seeded = F::withSeed(half, y(0));
  auto products = F::products(seeded, x(0));
  y2 = square(n), terms = F::terms(x(n), y2), begun = F::begin(terms), half = F::proceed(begun), seeded = F::withSeed(half, y(n));
  y2 = square(2 * n), terms = F::terms(x(2 * n), y2), begun = F::begin(terms), half = F::proceed(begun);
  y2 = square(3 * n), terms = F::terms(x(3 * n), y2), begun = F::begin(terms);
  y2 = square(4 * n), terms = F::terms(x(4 * n), y2);
  y2 = square(5 * n);
  const auto turn = [&](int64_t i, auto at) __attribute__((always_inline)) {
    const Part result = F::result(products, x(i));
    products = F::products(seeded, x(at(i + n)));
    seeded = F::withSeed(half, y(at(i + 2 * n)));
    half = F::proceed(begun);
    begun = F::begin(terms);
    terms = F::terms(x(at(i + 5 * n)), y2);
    y2 = square(at(i + 6 * n));
    store(dst + i, result);
  };
  const auto here = [](int64_t i) __attribute__((always_inline)) { return i; };
  const auto orLast = [&](int64_t i) __attribute__((always_inline)) { return i < count ? i : count - n; };
  int64_t i = 0;
  for (; i < count - 6 * n; i += n) turn(i, here);
  for (; i < count; i += n) turn(i, orLast);
}

template <class V>
struct Begun {
  Partial<V> partial;
  V y;
};

// lane(x, y) -> status serves the elements that aren't positive normal numbers.
template <class F, uint32_t kept, Raises raises, class Lane>
[[gnu::always_inline]] inline nuvStatus rootLoop(const Float64* src, Float64* dst, int64_t len, Lane lane) {
  nuvStatus status = nuvStatusOk;
  SeedChunk seeds;
  alignas(32) float estimates[longestStretch];
  for (int64_t count; len > 0; src += count, dst += count, len -= count) {
    count = len < longestStretch ? len : longestStretch;
    if (count >= shortestStretch && fitsSinglePrecision(src, count & ~int64_t{7})) {
      count &= ~int64_t{7};
      for (int64_t i = 0; i < count; i += 8) storeEstimates<kept>(src + i, estimates + i);
      pipeline<F>(src, estimates, dst, count);
      continue;
    }
    const nuvStatus last = stagedLoop<raises>(
        src, dst, count, [&](const Float64* x, int64_t i) __attribute__((always_inline)) { return storeSeeds<kept>(x, seeds, i); },
        [&](const Float64* p, int64_t i) __attribute__((always_inline)) {
          const Four x = load<Four>(p), y = seedsAt(x, seeds, i);
          return Begun<Four>{F::begin(F::terms(x, y * y)), y};
        },
        [](const auto& begun) __attribute__((always_inline)) { return F::withSeed(F::proceed(begun.partial), begun.y); },
        [](const auto& seeded, const Float64* p, int64_t)
            __attribute__((always_inline)) { return F::result(F::products(seeded, load<Four>(p)), load<Four>(p)); },
        lane);
    if (last != nuvStatusOk) status = last;
  }
  return status;
}

}  // namespace
}  // namespace qorvane
