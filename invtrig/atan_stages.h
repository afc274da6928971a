// The stages in which stretches of numbers go through the tangents' quotient and polynomial.
//
// A vector's chain of operations takes more than a hundred cycles, and the processor doesn't look
// far enough ahead to fill them with other vectors. So it is cut into loops over what stands in
// memory, each with a chain that is short. The operations are those of atan_division.h, and so are
// the bits.
#pragma once
#include "frame/pipeline.h"
#include "invtrig/atan_division.h"

namespace qorvane {
namespace {

constexpr int64_t longestStretch = 200, shortestStretch = 12, vector = laneCount<Four>;
using Column = Float64[longestStretch];

struct Stages {
  alignas(32) Column nh, nl, d, dl;  // numerator and denominator, the latter not cut
  alignas(32) Column even, odd, u;
  alignas(16) float seeds[longestStretch];
  // What takes the place of earlier numbers: the quotient, the reciprocal, powers of u.
  Float64* uh() { return nh; }
  Float64* ul() { return nl; }
  Float64* y() { return d; }
  Float64* e() { return dl; }
  Float64* z() { return d; }
  Float64* z2() { return dl; }
};

#ifdef __AVX__
INLINE Four widened(const float* p) { return _mm256_cvtps_pd(_mm_load_ps(p)); }
#else
INLINE Four widened(const float* p) {
  const __m128 four = _mm_load_ps(p);
  return {{_mm_cvtps_pd(four), _mm_cvtps_pd(_mm_movehl_ps(four, four))}};
}
#endif

// f(int64_t i) for each vector.
template <class F>
INLINE void eachVector(int64_t count, F f) {
  for (int64_t i = 0; i < count; i += vector) f(i);
}

// From the fractions to the quotients. Single precision must hold the denominators and their
// reciprocals: there the processor's approximation is that of reciprocalSeed, since it repeats
// itself from binade to binade.
INLINE void divide(Stages& s, int64_t count) {
  eachVector(count, [&](int64_t i) INLINED {
    const Words4 high = packHighWords(load<Lanes2>(s.d + i), load<Lanes2>(s.d + i + 2));
    storeWords(s.seeds + i, reciprocals(wrappingSum(high << 3, 0x40000000)) & static_cast<int>(0xfffffff8));
  });
  eachVector(count, [&](int64_t i) INLINED {
    const Four y = widened(s.seeds + i);
    store(s.e() + i, residual(upperPart(load<Four>(s.d + i)), load<Four>(s.dl + i), y));
    store(s.y() + i, y);
  });
  eachVector(count, [&](int64_t i) INLINED { store(s.even + i, reciprocalSeries(load<Four>(s.e() + i))); });
  eachVector(count, [&](int64_t i) INLINED {
    const Four y = load<Four>(s.y() + i), nh = load<Four>(s.nh + i), nl = load<Four>(s.nl + i);
    const Four r = restOfReciprocal(load<Four>(s.even + i), load<Four>(s.e() + i), y);
    store(s.uh() + i, y * nh);
    store(s.ul() + i, (r * nh + r * nl) + y * nl);
  });
}

// From the quotients to the first half of the polynomials; atanSeriesAt does the second.
INLINE void beginSeries(Stages& s, int64_t count) {
  eachVector(count, [&](int64_t i) INLINED {
    const Four u = load<Four>(s.ul() + i) + load<Four>(s.uh() + i), z = u * u, z2 = z * z;
    store(s.u + i, u), store(s.z() + i, z), store(s.z2() + i, z2);
    store(s.even + i, ((g5 * z2 + g4) * z2 + g3) * z2 + g2);
    store(s.odd + i, ((h5 * z2 + h4) * z2 + h3) * z2 + h2);
  });
}
INLINE Four seriesAt(Stages& s, int64_t i) {  // atan(u) - u
  const Four z = load<Four>(s.z() + i), z2 = load<Four>(s.z2() + i);
  const Four even = (load<Four>(s.even + i) * z2 + g1) * z2 + g0;
  const Four odd = (load<Four>(s.odd + i) * z2 + h1) * z2 + h0;
  return (even * z2 + odd * z) * load<Four>(s.u + i);
}

}  // namespace
}  // namespace qorvane
