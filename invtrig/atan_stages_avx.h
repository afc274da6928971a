// The stages in which stretches of numbers go through the tangents' quotient and polynomial.
//
// A vector's chain of operations takes more than a hundred cycles, and the processor doesn't look
// far enough ahead to fill them with other vectors. So it is cut into loops over what stands in
// memory, each with a chain that is short. The operations are those of atan_division.h, and so are
// the bits.
#pragma once
#include "frame/pipeline.h"
#include "invtrig/atan_division.h"
#include "invtrig/masks_avx.h"

namespace qorvane {
namespace {

constexpr int64_t longestStretch = 192, shortestStretch = 24, vector = laneCount<Lanes4>;
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

// f(int64_t i) for each vector.
template <class F>
INLINE void eachVector(int64_t count, F f) {
  for (int64_t i = 0; i < count; i += vector) f(i);
}

// From the fractions to the quotients. Single precision must hold the denominators and their
// reciprocals: there the processor's approximation is that of reciprocalSeed, since it repeats
// itself from binade to binade.
INLINE void divide(Stages& s, int64_t count) {
  using V = Lanes4;
  eachVector(count, [&](int64_t i) INLINED {
    const Words4 high = packHighWords(load<Lanes2>(s.d + i), load<Lanes2>(s.d + i + 2));
    storeWords(s.seeds + i, reciprocals(wrappingSum(high << 3, 0x40000000)) & static_cast<int>(0xfffffff8));
  });
  eachVector(count, [&](int64_t i) INLINED {
    const V y = _mm256_cvtps_pd(_mm_load_ps(s.seeds + i));
    store(s.e() + i, residual(upperPart(load<V>(s.d + i)), load<V>(s.dl + i), y));
    store(s.y() + i, y);
  });
  eachVector(count, [&](int64_t i) INLINED { store(s.even + i, reciprocalSeries(load<V>(s.e() + i))); });
  eachVector(count, [&](int64_t i) INLINED {
    const V y = load<V>(s.y() + i), nh = load<V>(s.nh + i), nl = load<V>(s.nl + i);
    const V r = restOfReciprocal(load<V>(s.even + i), load<V>(s.e() + i), y);
    store(s.uh() + i, y * nh);
    store(s.ul() + i, (r * nh + r * nl) + y * nl);
  });
}

// From the quotients to the first half of the polynomials; atanSeriesAt does the second.
INLINE void beginSeries(Stages& s, int64_t count) {
  using V = Lanes4;
  eachVector(count, [&](int64_t i) INLINED {
    const V u = load<V>(s.ul() + i) + load<V>(s.uh() + i), z = u * u, z2 = z * z;
    store(s.u + i, u), store(s.z() + i, z), store(s.z2() + i, z2);
    store(s.even + i, ((g5 * z2 + g4) * z2 + g3) * z2 + g2);
    store(s.odd + i, ((h5 * z2 + h4) * z2 + h3) * z2 + h2);
  });
}
INLINE Lanes4 seriesAt(Stages& s, int64_t i) {  // atan(u) - u
  using V = Lanes4;
  const V z = load<V>(s.z() + i), z2 = load<V>(s.z2() + i);
  const V even = (load<V>(s.even + i) * z2 + g1) * z2 + g0;
  const V odd = (load<V>(s.odd + i) * z2 + h1) * z2 + h0;
  return (even * z2 + odd * z) * load<V>(s.u + i);
}

// Mask of the numbers a with from <= a < to.
INLINE Lanes4 isWithin(Lanes4 a, Float64 from, Float64 to) {
  return withoutBits(quietlyLess(a, broadcast<Lanes4>(to)), quietlyLess(a, broadcast<Lanes4>(from)));
}

}  // namespace
}  // namespace qorvane
