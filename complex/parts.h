// Lanes of complex numbers: real and imaginary parts in a vector each.
//
// Four lanes of a 256-bit register hold the elements 0, 2, 1, 3: loading and storing then take one
// step a register. What matters element by element goes through memory.
#pragma once
#include "frame/include/qorvane.h"
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

// The first `count` elements, one at least, and repetitions in the other places: in registers, since a
// vector's load would wait for single elements on their way to memory.
template <class V>
INLINE Parts<V> loadSomeParts(const Complex64* p, int64_t count) {
  constexpr int lanes = laneCount<PartOf<V>>;
  if constexpr (isPack<V>) {
    const auto some = [&](const Complex64* from, int64_t here) INLINED {
      return here < lanes ? loadSomeParts<PartOf<V>>(from, here) : loadParts<PartOf<V>>(from);
    };
    const auto first = some(p, count);
    Parts<V> z;
    for (int i = 0; i < packSize<V>; ++i) z.re.part[i] = first.re, z.im.part[i] = first.im;
    for (int i = 1; i < packSize<V> && i * lanes < count; ++i) {
      const auto part = some(p + i * lanes, count - i * lanes);
      z.re.part[i] = part.re, z.im.part[i] = part.im;
    }
    return z;
  } else {
    const auto element = [&](int i) INLINED { return load<Lanes2>(&p[i < count ? i : 0].re); };
    if constexpr (lanes == 2) {
      const Lanes2 a = element(0), b = element(1);
      return {_mm_unpacklo_pd(a, b), _mm_unpackhi_pd(a, b)};
    }
#ifdef __AVX__
    if constexpr (lanes == 4) {
      const Lanes4 a = joinHalves(element(0), element(1)), b = joinHalves(element(2), element(3));
      return {_mm256_unpacklo_pd(a, b), _mm256_unpackhi_pd(a, b)};
    }
#endif
  }
}
template <class V>
INLINE void storeSomeParts(Complex64* p, Parts<V> z, int64_t count) {
  if constexpr (isPack<V>) {
    constexpr int lanes = laneCount<PartOf<V>>;
    for (int i = 0; i < packSize<V> && i * lanes < count; ++i)
      storeSomeParts(p + i * lanes, Parts<PartOf<V>>{z.re.part[i], z.im.part[i]}, count - i * lanes);
  } else if constexpr (laneCount<V> == 2) {
    store<Lanes2>(&p->re, _mm_unpacklo_pd(z.re, z.im));
    if (count > 1) store<Lanes2>(&p[1].re, _mm_unpackhi_pd(z.re, z.im));
  }
#ifdef __AVX__
  if constexpr (!isPack<V> && laneCount<V> == 4) {
    const Lanes4 a = _mm256_unpacklo_pd(z.re, z.im), b = _mm256_unpackhi_pd(z.re, z.im);
    if (count > 1)
      store(&p->re, a);
    else
      store(&p->re, lowHalf(a));
    if (count > 3)
      store(&p[2].re, b);
    else if (count > 2)
      store(&p[2].re, lowHalf(b));
  }
#endif
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

// Goes over blocks of V and, at the end, if no more than half a block is left, a vector of those it is
// made of: fast(z) -> parts of the results, or, where flagged(z), slow(const Complex64* z, Complex64*
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
  static_assert(isPack<V> && packSize<V> == 2);
  const auto rest = [&]<class U>(U, int64_t count) INLINED {
    const Parts<U> z = loadSomeParts<U>(src + i, count);
    if (flagged(z)) [[unlikely]]
      slow(src + i, dst + i, count);
    else
      storeSomeParts(dst + i, fast(z), count);
  };
  if (const int64_t count = len - i; count > laneCount<V> / 2)
    rest(V{}, count);
  else if (count > 0)
    rest(PartOf<V>{}, count);
}

}  // namespace
}  // namespace qorvane
