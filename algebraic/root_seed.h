// The approximation of 1/sqrt(x) that square roots and their reciprocals begin with, for positive
// normal x.
//
// x is u times an even power of 2 with u in [1, 4), cut to single precision. The processor's
// reciprocal square root of u, good to 1.5 * 2^-12, is cut to 20 fraction bits, which leaves the
// low word of the seed zero: its products with halves of x are exact.
#pragma once
#include "algebraic/staged_loop.h"

namespace qorvane {
namespace {

constexpr uint32_t allBits = 0xffffffff, twentyBits = 0xfffffff8;

// u of four elements: the lowest exponent bit and 23 fraction bits; an odd biased exponent belongs
// to [1, 2), an even one to [2, 4).
INLINE __m128 reducedSingles(Lanes2 a, Lanes2 b) {
  const Words4 fractions =
      packHighWords(reinterpret_cast<Lanes2>(bitsOf(a) << 11), reinterpret_cast<Lanes2>(bitsOf(b) << 11));
  return reinterpret_cast<__m128>(wrappingSum(fractions >> 8, 0x40000000));
}

// The high words of the seeds of four elements, with 20 fraction bits.
INLINE Words4 rootSeeds(Lanes2 a, Lanes2 b) {
  const Words4 root = reinterpret_cast<Words4>(_mm_rsqrt_ps(reducedSingles(a, b)));
  // The exponent of x, halved and negated; the constant also takes the bias of single precision
  // off, and the cut fraction of x under it doesn't borrow.
  const Words4 exponents = wrappingSum(~packHighWords(a, b), 0xb0100000) >> 1 & 0x7ff00000;
  return wrappingSum(root >> 3, exponents);
}

// The seeds of a chunk's elements. storeSeeds makes those of the four elements at x, with the bits
// of `kept` in single precision, and gives the lanes that aren't ordinary; seedsAt gives them back.
#ifdef __AVX__
// Here they are in two factors. With E = 16t + e for the biased exponent E, 1/sqrt(x) = 1/sqrt(2^(e
// - 29) * 1.m) * 2^(497 - 8t). The first is the processor's estimate in single precision; it is the
// estimate of u but for a power of 2, since estimates repeat themselves, halved, at four times
// their argument. The second comes from an estimate too: that of 2^(2t - 127), whose exponent field
// is 190 - t for any estimate within its bound, read as the high word of a double. Elements with t
// = 0 aren't ordinary.
struct SeedScratch {
  alignas(32) float roots[chunkSize];
};
INLINE __m128i bits24To55(const Float64* x) {
  const char* bytes = reinterpret_cast<const char*>(x);
  const auto at = [&](int offset) INLINED { return _mm_loadu_ps(reinterpret_cast<const float*>(bytes + offset)); };
  return _mm_castps_si128(_mm_shuffle_ps(at(3), at(15), 0xd8));
}
INLINE __m128i bits24To55(Lanes4 x) { return reinterpret_cast<__m128i>(lowWords(valueOf<Lanes4>(bitsOf(x) >> 24))); }
INLINE Words4 highWordsAt(const Float64* x) { return packHighWords(load<Lanes2>(x), load<Lanes2>(x + 2)); }
INLINE Words4 highWordsAt(Lanes4 x) { return highWords(x); }
template <uint32_t kept, class X>
INLINE Words4 storeSeeds(X x, SeedScratch& scratch, int64_t i) {
  __m128 root =
      _mm_rsqrt_ps(_mm_castsi128_ps(_mm_add_epi32(_mm_srli_epi32(bits24To55(x), 5), _mm_set1_epi32(0x31000000))));
  if constexpr (kept != allBits) root = _mm_and_ps(root, _mm_castsi128_ps(_mm_set1_epi32(static_cast<int>(kept))));
  _mm_store_ps(scratch.roots + i, root);
  // High words from 0x01000000 to 0x7fefffff are ordinary.
  return wrappingDifference(highWordsAt(x), 0x81000000) > static_cast<int>(0xfeefffff);
}
INLINE Lanes4 seedsAt(Lanes4 x, const SeedScratch& scratch, int64_t i) {
  const __m256 power = _mm256_castpd_ps(andBits(x, broadcast<Lanes4>(fromBits(0x7f00000000000000))));
  const Lanes4 scale =
      andBits<Lanes4>(_mm256_castps_pd(_mm256_rsqrt_ps(power)), broadcast<Lanes4>(fromBits(0x7f80000000000000)));
  return Lanes4(_mm256_cvtps_pd(_mm_load_ps(scratch.roots + i))) * scale;
}
#else
struct SeedScratch {
  alignas(32) Float64 seeds[chunkSize];
};
template <uint32_t kept>
INLINE Words4 storeSeeds(Four x, SeedScratch& scratch, int64_t i) {
  static_assert(kept == twentyBits);
  const auto [a, b] = x.part;
  store(scratch.seeds + i, fromHighWords<Four>({{rootSeeds(a, b)}}));
  // High words from 0x00100000 to 0x7fefffff are ordinary.
  return wrappingDifference(packHighWords(a, b), 0x80100000) > static_cast<int>(0xffdfffff);
}
template <uint32_t kept>
INLINE Words4 storeSeeds(const Float64* x, SeedScratch& scratch, int64_t i) {
  return storeSeeds<kept>(load<Four>(x), scratch, i);
}
INLINE Four seedsAt(Four, const SeedScratch& scratch, int64_t i) { return load<Four>(scratch.seeds + i); }
#endif

INLINE Float64 rootSeed(Float64 x) { return fromHighWords<Lanes2>(rootSeeds(_mm_set_sd(x), _mm_set_sd(1.0)))[0]; }

constexpr Float64 subnormalScale = 0x1p54, subnormalRootScale = 0x1p27;

}  // namespace
}  // namespace qorvane
