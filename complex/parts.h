// Lanes of complex numbers: real and imaginary parts in a vector each.
//
// Four lanes of a 256-bit register hold the elements 0, 2, 1, 3: loading and storing then take one
// step a register. What matters element by element goes through memory.
#pragma once
#include "frame/words.h"

namespace qorvane {
namespace {

template <class V>
struct Parts {
  V re, im;
};

template <class V>
INLINE Parts<V> loadParts(const Complex64* p) {
  if constexpr (isPack<V>) {
    Parts<V> z;
    for (int i = 0; i < packSize<V>; ++i) {
      const auto part = loadParts<PartOf<V>>(p + i * laneCount<PartOf<V>>);
      z.re.part[i] = part.re, z.im.part[i] = part.im;
    }
    return z;
  } else if constexpr (laneCount<V> == 1) {
    return {p->re, p->im};
  } else {
    const V a = load<V>(&p->re), b = load<V>(&p[laneCount<V> / 2].re);
#ifdef __AVX__
    if constexpr (laneCount<V> == 4) return {_mm256_unpacklo_pd(a, b), _mm256_unpackhi_pd(a, b)};
#endif
    if constexpr (laneCount<V> == 2) return {_mm_unpacklo_pd(a, b), _mm_unpackhi_pd(a, b)};
  }
}
template <class V>
INLINE void storeParts(Complex64* p, Parts<V> z) {
  if constexpr (isPack<V>) {
    for (int i = 0; i < packSize<V>; ++i)
      storeParts(p + i * laneCount<PartOf<V>>, Parts<PartOf<V>>{z.re.part[i], z.im.part[i]});
  } else if constexpr (laneCount<V> == 1) {
    *p = {z.re, z.im};
  } else {
#ifdef __AVX__
    if constexpr (laneCount<V> == 4) {
      store<V>(&p[0].re, _mm256_unpacklo_pd(z.re, z.im));
      store<V>(&p[2].re, _mm256_unpackhi_pd(z.re, z.im));
    }
#endif
    if constexpr (laneCount<V> == 2) {
      store<V>(&p[0].re, _mm_unpacklo_pd(z.re, z.im));
      store<V>(&p[1].re, _mm_unpackhi_pd(z.re, z.im));
    }
  }
}

// Whether any part is at least fromBits(limit << 32) in magnitude, infinite or NaN.
template <class V>
INLINE bool anyPartFrom(Parts<V> z, int limit) {
  if constexpr (laneCount<V> == 1) {
    return anyMagnitudeFrom(z.re, limit) || anyMagnitudeFrom(z.im, limit);
  } else if constexpr (isPack<V>) {
    Pack<PartOf<V>, 2 * packSize<V>> all;
    for (int i = 0; i < packSize<V>; ++i) all.part[2 * i] = z.re.part[i], all.part[2 * i + 1] = z.im.part[i];
    return anyMagnitudeFrom(all, limit);
  } else {
    return anyMagnitudeFrom(Pack<V, 2>{{z.re, z.im}}, limit);
  }
}

// Goes over blocks of V and, at the end, of the vectors it is made of, the last one filled up with
// zeros: fast(z) -> parts of the results, or, where flagged(z), slow(const Complex64* z, Complex64*
// results, count).
template <class V, class Flagged, class Fast, class Slow>
INLINE void partsLoop(const Complex64* src, Complex64* dst, int64_t len, Flagged flagged, Fast fast, Slow slow) {
  int64_t i = 0;
  for (; i + laneCount<V> <= len; i += laneCount<V>) {
    const Parts<V> z = loadParts<V>(src + i);
    if (flagged(z)) [[unlikely]]
      slow(src + i, dst + i, laneCount<V>);
    else
      storeParts(dst + i, fast(z));
  }
  using Part = PartOf<V>;
  constexpr int64_t lanes = laneCount<Part>;
  for (; i < len; i += lanes) {
    const int64_t count = len - i < lanes ? len - i : lanes;
    Complex64 filled[lanes] = {}, results[lanes];
    for (int64_t k = 0; k < count; ++k) filled[k] = src[i + k];
    const Parts<Part> z = loadParts<Part>(filled);
    if (flagged(z)) [[unlikely]] {
      slow(filled, results, count);
    } else {
      storeParts(results, fast(z));
    }
    for (int64_t k = 0; k < count; ++k) dst[i + k] = results[k];
  }
}

}  // namespace
}  // namespace qorvane
