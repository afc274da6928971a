// The pipeline of the square root and its reciprocal, for long stretches of arguments from 2^-126
// up to 2^128: single precision holds them, and the processor's estimate of the argument itself
// serves as the seed, without work on exponents; estimates repeat themselves, halved, at four times
// their argument.
//
// One vector's chain of operations takes some eighty cycles, and the processor doesn't look far
// enough ahead to fill them with other vectors. So it is cut into stages of two or three
// operations, and a turn of the loop makes one stage for each of as many successive vectors, the
// oldest first: its operands were ready a turn ago.
#pragma once
#include "algebraic/root_steps.h"
#include "frame/kernel_frame.h"
#include "frame/loops.h"

namespace qorvane {
namespace {

constexpr int64_t longestStretch = 512,
                  shortestStretch = 48;  // in elements; what a stretch takes stays in the first-level cache

// Arguments cut to single precision, which makes the conversion exact, and seeds from there.
constexpr uint64_t bitsOfSingle = 0xffffffffe0000000;
#ifdef __AVX__
using Part = Lanes4;
INLINE __m128 singles(Lanes4 x) { return _mm256_cvtpd_ps(andBits(x, broadcast<Lanes4>(fromBits(bitsOfSingle)))); }
INLINE Lanes4 widened(const float* p) { return _mm256_cvtps_pd(_mm_load_ps(p)); }
INLINE void storeSingles(float* p, __m128 v) { _mm_store_ps(p, v); }
#else
using Part = Lanes2;
INLINE __m128 singles(Lanes2 x) { return _mm_cvtpd_ps(andBits(x, broadcast<Lanes2>(fromBits(bitsOfSingle)))); }
INLINE Lanes2 widened(const float* p) {
  return _mm_cvtps_pd(_mm_castpd_ps(_mm_load_sd(reinterpret_cast<const double*>(p))));
}
INLINE void storeSingles(float* p, __m128 v) { _mm_storel_pi(reinterpret_cast<__m64*>(p), v); }
#endif
constexpr int64_t n = laneCount<Part>;

// Estimates of 1/sqrt(x), with the bits of `kept`.
template <uint32_t kept>
INLINE void storeEstimates(float* p, Part x) {
  const __m128 roots = _mm_rsqrt_ps(singles(x));
  storeSingles(
      p, kept == 0xffffffff ? roots : _mm_and_ps(roots, _mm_castsi128_ps(_mm_set1_epi32(static_cast<int>(kept)))));
}

// What the stages leave to each other. Long-lived numbers go through memory: the estimates, which a
// later turn finds there without waiting for them; the seeds; and what a square root ends with.
template <class F>
struct Stages {
  static constexpr int middles = F::coefficients.size() - 3, count = middles + 6, lead = 4;
  Part y, errors;
  Halves<Part> opened, terms;
  Partial<Part> partial[middles + 1];
  Part series;
  Product<Part> product;
};
struct Buffers {
  alignas(32) float estimates[longestStretch];
  alignas(32) Float64 high[longestStretch], low[longestStretch], seeds[longestStretch];
};

// Stages `newest` to `oldest` of a turn. The last takes the vector at i, those before it the
// vectors that follow; estimates, stage 0, lead by four more.
template <class F, uint32_t kept, int newest, int oldest>
INLINE void turn(Stages<F>& s, Buffers& buffers, const Float64* src, Float64* dst, int64_t i) {
  constexpr int last = Stages<F>::count, middles = Stages<F>::middles;
  constexpr auto runs = [](int stage) { return newest <= stage && stage <= oldest; };
  const auto at = [&](int stage) INLINED { return i + (last - stage) * n; };
  const auto x = [&](int stage) INLINED { return load<Part>(src + at(stage)); };
  if constexpr (runs(last))
    store(dst + i, F::result(s.product, Halves<Part>{load<Part>(buffers.high + i), load<Part>(buffers.low + i)}));
  if constexpr (runs(0)) {
    const int64_t ahead = at(1) + Stages<F>::lead * n;
    storeEstimates<kept>(buffers.estimates + ahead, load<Part>(src + ahead));
  }
  if constexpr (runs(last - 1)) s.product = F::product(s.series, x(last - 1), load<Part>(buffers.seeds + at(last - 1)));
  if constexpr (runs(last - 2)) s.series = lastStep<F>(s.partial[middles]);
  if constexpr (middles > 1 && runs(5)) s.partial[2] = middleStep<F, 2>(s.partial[1]);
  if constexpr (runs(4)) s.partial[1] = middleStep<F, 1>(s.partial[0]);
  if constexpr (runs(3)) {
    s.partial[0] = firstStep<F>(F::residual(s.terms));
    s.errors = s.errors + s.partial[0].e;
  }
  if constexpr (runs(2)) s.terms = F::terms(x(2), s.y, s.opened);
  if constexpr (runs(1)) {
    s.y = widened(buffers.estimates + at(1));
    store(buffers.seeds + at(1), s.y);
    s.opened = F::open(x(1), s.y);
    if constexpr (F::endsWithHalves) {
      store(buffers.high + at(1), s.opened.high);
      store(buffers.low + at(1), s.opened.low);
    }
  }
}

// Computes `count` elements, a multiple of 4 from shortestStretch to longestStretch, of arrays that
// don't overlap. For an argument outside the range the seed is zero, infinite or a NaN, so that its
// residual is a NaN or at least 1 in magnitude, while all others' in a lane don't add up to more
// than 0.2: the sum tells. Then false is the answer, and what has been stored is of no use.
template <class F, uint32_t kept>
INLINE bool pipeline(const Float64* src, Float64* dst, int64_t count) {
  Buffers buffers;
  Stages<F> s;
  constexpr int stages = Stages<F>::count, lead = Stages<F>::lead;
  static_assert((stages - 1 + lead) * n <= shortestStretch);
  s.errors = broadcast<Part>(0.0);
  for (int64_t i = 0; i < (stages - 1 + lead) * n; i += n)
    storeEstimates<kept>(buffers.estimates + i, load<Part>(src + i));
  const auto fill = [&]<int... k>(std::integer_sequence<int, k...>) INLINED {
    (turn<F, kept, 1, k + 1>(s, buffers, src, dst, (k + 1 - stages) * n), ...);
  };
  fill(std::make_integer_sequence<int, stages - 1>{});
  int64_t i = 0;
#pragma GCC unroll 2
  for (; i < count - (stages - 1 + lead) * n; i += n) turn<F, kept, 0, stages>(s, buffers, src, dst, i);
  for (; i < count - (stages - 1) * n; i += n) turn<F, kept, 1, stages>(s, buffers, src, dst, i);
  const auto drain = [&]<int... k>(std::integer_sequence<int, k...>) INLINED {
    (turn<F, kept, k + 2, stages>(s, buffers, src, dst, i + k * n), ...);
  };
  drain(std::make_integer_sequence<int, stages - 1>{});
  return !anyMagnitudeFrom(s.errors, 0x3fe00000);
}

}  // namespace
}  // namespace qorvane
