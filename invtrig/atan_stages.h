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

constexpr int64_t longestStretch = 144, shortestStretch = 12, vector = laneCount<Four>;
using Column = Float64[longestStretch];

// What a turn of a loop takes: with 256 bits two vectors in lockstep.
#ifdef __AVX__
using Group = Pack<Lanes4, 2>;
#else
using Group = Four;
#endif

struct Stages {
  alignas(32) Column nh, nl, dh, dl;  // numerator and denominator
  alignas(32) Column hi, lo;          // what is added last; lo goes to the quotient's low part
  alignas(32) Column even, odd, u;
  alignas(32) float seeds[longestStretch];
  // What stands where later numbers will: an interval's point and mask. What takes the place of
  // earlier ones: the quotient, its low part with lo, the reciprocal, powers of u.
  Float64* c() { return even; }
  Float64* kept() { return odd; }
  Float64* uh() { return nh; }
  Float64* ul() { return nl; }
  Float64* y() { return dh; }
  Float64* e() { return dl; }
  Float64* z() { return dh; }
  Float64* z2() { return dl; }
};

// (n0 - n1) / (d0 + d1) as a stretch's numerator and denominator, each in two parts. Its numbers are
// far from subnormal ones, so n0 - nh and d0 - dh are exact, and the low parts are those of the longer
// ways in which `fraction` of either kernel makes them.
template <class V>
struct Fraction {
  V nh, nl, dh, dl;
};
template <class V>
INLINE Fraction<V> fractionInStretch(V n0, V n1, V d0, V d1) {
  const V nh = upperPart(n0 - n1), dh = upperPart(d0 + d1);
  return {nh, (n0 - nh) + n1, dh, (d0 - dh) + d1};
}
INLINE void storeFraction(Stages& s, int64_t i, auto fraction) {
  store(s.nh + i, fraction.nh), store(s.nl + i, fraction.nl), store(s.dh + i, fraction.dh),
      store(s.dl + i, fraction.dl);
}

// f(int64_t i) for each vector.
template <class F>
INLINE void eachVector(int64_t count, F f) {
  for (int64_t i = 0; i < count; i += vector) f(i);
}
// The reciprocals' seeds for a group, in single precision, which must hold the denominators and
// their reciprocals: there the processor's approximation is that of reciprocalSeed, since it repeats
// itself from binade to binade.
constexpr int seedBits = static_cast<int>(0xfffffff8);
#ifdef __AVX__
INLINE __m128 cutToSingles(Lanes4 dh) {
  return _mm256_cvtpd_ps(andBits(dh, broadcast<Lanes4>(fromBits(0xffffffff00000000))));
}
INLINE void storeSeeds(float* seeds, Lanes4 dh) {
  storeWords(seeds, reciprocals(reinterpret_cast<Words4>(cutToSingles(dh))) & seedBits);
}
INLINE void storeSeeds(float* seeds, Pack<Lanes4, 2> dh) {
  const __m256 singles = _mm256_set_m128(cutToSingles(dh.part[1]), cutToSingles(dh.part[0]));
  _mm256_store_ps(seeds, _mm256_and_ps(_mm256_rcp_ps(singles), _mm256_castsi256_ps(_mm256_set1_epi32(seedBits))));
}
INLINE Lanes4 seedsAt(Lanes4, const float* p) { return _mm256_cvtps_pd(_mm_load_ps(p)); }
INLINE Pack<Lanes4, 2> seedsAt(Pack<Lanes4, 2>, const float* p) {
  return {{seedsAt(Lanes4{}, p), seedsAt(Lanes4{}, p + vector)}};
}
#else
INLINE void storeSeeds(float* seeds, Four dh) {
  storeWords(seeds, reciprocals(wrappingSum(highWords(dh) << 3, 0x40000000)).part[0] & seedBits);
}
INLINE Four seedsAt(Four, const float* p) {
  const __m128 four = _mm_load_ps(p);
  return {{_mm_cvtps_pd(four), _mm_cvtps_pd(_mm_movehl_ps(four, four))}};
}
#endif

// From the fractions to u, the quotients.
INLINE void divide(Stages& s, int64_t count) {
  eachGroup<Group, Four>(count, [&]<class V>(V, int64_t i) INLINED { storeSeeds(s.seeds + i, load<V>(s.dh + i)); });
  eachGroup<Group, Four>(count, [&]<class V>(V, int64_t i) INLINED {
    const V y = seedsAt(V{}, s.seeds + i);
    store(s.e() + i, residual(load<V>(s.dh + i), load<V>(s.dl + i), y));
    store(s.y() + i, y);
  });
  eachGroup<Group, Four>(
      count, [&]<class V>(V, int64_t i) INLINED { store(s.even + i, reciprocalSeries(load<V>(s.e() + i))); });
  eachGroup<Group, Four>(count, [&]<class V>(V, int64_t i) INLINED {
    const V y = load<V>(s.y() + i), nh = load<V>(s.nh + i), nl = load<V>(s.nl + i);
    const V r = restOfReciprocal(load<V>(s.even + i), load<V>(s.e() + i), y);
    const V uh = y * nh, ul = (r * nh + r * nl) + y * nl;
    store(s.u + i, ul + uh);
    store(s.uh() + i, uh);
    store(s.ul() + i, ul + load<V>(s.lo + i));
  });
}

// From the quotients to the first half of the polynomials; seriesAt does the second.
INLINE void beginSeries(Stages& s, int64_t count) {
  eachGroupInTwo<Group, Four>(
      count,
      [&]<class V>(V, int64_t i) INLINED {
        const V u = load<V>(s.u + i), z = u * u, z2 = z * z;
        store(s.z() + i, z), store(s.z2() + i, z2);
        return z2;
      },
      [&]<class V>(V, int64_t i, V z2) INLINED {
        store(s.even + i, ((g5 * z2 + g4) * z2 + g3) * z2 + g2);
        store(s.odd + i, ((h5 * z2 + h4) * z2 + h3) * z2 + h2);
      });
}

// From there to atan(u) / u - 1.
template <class V>
INLINE V seriesAt(Stages& s, int64_t i) {
  const V z = load<V>(s.z() + i), z2 = load<V>(s.z2() + i);
  const V even = (load<V>(s.even + i) * z2 + g1) * z2 + g0;
  const V odd = (load<V>(s.odd + i) * z2 + h1) * z2 + h0;
  return even * z2 + odd * z;
}

}  // namespace
}  // namespace qorvane
