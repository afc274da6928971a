#pragma once
#include "hyperbolic/pair_steps.h"
#include "frame/loops.h"

namespace qorvane {
namespace {

constexpr Float64 twoTo28 = 0x1p28, largestFinite = fromBits(0x7fefffffffffffff);
constexpr int64_t strip = 64;

// a^2 + 1
template <class V>
INLINE Pair<V> squarePlusOne(V a) {
  const V ah = masked(a, 0xfffffffff8000000), al = a - ah;
  const V t = al * (a + ah), q = ah * ah, s = q + 1.0, b = q - s;
  const V t2 = t + ((q - (s + b)) + (b + 1.0));
  const V hi = t2 + s;
  return {hi, (s - hi) + t2};
}
template <class V>
INLINE V asinhSeries(V a) {
  constexpr Float64 z1 = fromBits(0xbfc555555555551b), z2 = fromBits(0x3fb333333330fac0),
                    z3 = fromBits(0xbfa6db6dafab4472), z4 = fromBits(0x3f9f1c671225ed56),
                    z5 = fromBits(0xbf96e4b04cd3b907), z6 = fromBits(0x3f910437f0a10cfb);
  const V w = a * a;
  return a + ((((((z6 * w + z5) * w + z4) * w + z3) * w + z2) * w + z1) * w) * a;
}
// root + a with root at least a
template <class V>
INLINE Pair<V> rootPlus(Pair<V> root, V a) {
  const V sum = root.hi + a;
  return {sum, (a - (sum - root.hi)) + root.lo};
}
template <class V>
struct Argument {
  Pair<V> u;
  V extra;
};
// Above 2^28 it is 2a.
template <class V>
INLINE Argument<V> withLarge(Pair<V> u, V a) {
  const V isLarge = isAbove(a, broadcast<V>(twoTo28)), finite = smaller(a, broadcast<V>(largestFinite));
  return {{select(isLarge, finite, u.hi), andNot(isLarge, u.lo)}, andBits(isLarge, broadcast<V>(1.0))};
}
template <class V>
INLINE V withSmall(V y, V x) {
  const V a = magnitude(x);
  const V ordinary = andNot(isAbove(a, broadcast<V>(largestFinite)), isAbove(a, broadcast<V>(0.125)));
  return select(ordinary, y, asinhSeries(andNot(ordinary, a)));
}

INLINE bool all(Float64 mask) { return toBits(mask) != 0; }
INLINE bool all(Lanes2 mask) { return _mm_movemask_pd(mask) == 3; }
#ifdef __AVX__
INLINE bool all(Lanes4 mask) { return _mm256_movemask_pd(mask) == 15; }
#endif
template <class V, int K>
INLINE bool all(Pack<V, K> mask) {
  V both = mask.part[0];
  for (int i = 1; i < K; ++i) both = andBits(both, mask.part[i]);
  return all(both);
}

template <class V>
INLINE V asinhCore(V x) {
  const V a = magnitude(x), bounded = smaller(a, broadcast<V>(twoTo28));
  const Pair<V> root = normalized(pairRoot(squarePlusOne(bounded)));
  const Pair<V> u = rootPlus(root, bounded);
  if (all(andNot(isAbove(a, bounded), isAbove(a, broadcast<V>(0.125))))) [[likely]]
    return orBits(pairLog(u, broadcast<V>(0.0)), signOf(x));
  const Argument<V> arg = withLarge(u, a);
  return orBits(withSmall(pairLog(arg.u, arg.extra), x), signOf(x));
}

struct Strip {
  alignas(32) Float64 hi[strip], lo[strip], key[strip], y[strip], e[strip], head[strip], rest[strip], extra[strip];
  alignas(32) Float64 x[strip], result[strip];
};
template <class V, class F>
INLINE void each(int64_t count, F f) {
  for (int64_t i = 0; i < count; i += laneCount<V>) f(i);
}

template <class V>
[[gnu::noinline]] bool squares(const Float64* src, int64_t count, Strip& b) {
  auto ordinary = isAbove(broadcast<V>(1.0), broadcast<V>(0.0));
  each<V>(count, [&](int64_t i) INLINED {
    const V a = magnitude(load<V>(src + i)), bounded = smaller(a, broadcast<V>(twoTo28));
    const Pair<V> s = squarePlusOne(bounded);
    ordinary = andBits(ordinary, andNot(isAbove(a, bounded), isAbove(a, broadcast<V>(0.125))));
    store(b.hi + i, s.hi);
    store(b.lo + i, s.lo);
    store(b.key + i, seedKey(s.hi));
  });
  alignas(32) Float64 mask[laneCount<V>];
  store(mask, ordinary);
  uint64_t all = ~uint64_t{0};
  for (Float64 m : mask) all &= toBits(m);
  return all != 0;
}
template <class V>
[[gnu::noinline]] void residuals(int64_t count, Strip& b) {
  each<V>(count, [&](int64_t i) INLINED {
    const V hi = load<V>(b.hi + i), y = seed(hi, Keys{b.key + i});
    const RootTerms<V> terms = rootTerms<V>({hi, load<V>(b.lo + i)}, y);
    store(b.y + i, y);
    store(b.e + i, terms.residual);
    store(b.hi + i, terms.first);
    store(b.head + i, terms.head);
    store(b.rest + i, terms.rest);
  });
}
template <class V>
[[gnu::noinline]] void rootPolynomials(int64_t count, Strip& b) {
  each<V>(count, [&](int64_t i) INLINED { store(b.e + i, rootSeries(load<V>(b.e + i)) * load<V>(b.y + i)); });
}
template <class V, bool ordinary>
[[gnu::noinline]] void sums(const Float64* src, int64_t count, Strip& b) {
  each<V>(count, [&](int64_t i) INLINED {
    const V a = magnitude(load<V>(src + i));
    const Pair<V> root =
        normalized<V>({load<V>(b.hi + i), load<V>(b.e + i) * load<V>(b.head + i) + load<V>(b.rest + i)});
    Pair<V> u;
    if constexpr (ordinary) {
      u = rootPlus(root, a);
    } else {
      const Argument<V> arg = withLarge(rootPlus(root, smaller(a, broadcast<V>(twoTo28))), a);
      u = arg.u;
      store(b.extra + i, arg.extra);
    }
    store(b.hi + i, u.hi);
    store(b.lo + i, u.lo);
    store(b.key + i, logKey(u.hi));
  });
}
template <class V, bool ordinary>
[[gnu::noinline]] void rows(int64_t count, Strip& b) {
  each<V>(count, [&](int64_t i) INLINED {
    const V hi = load<V>(b.hi + i);
    V exponent = exponentOf(hi);
    if constexpr (!ordinary) exponent = exponent + load<V>(b.extra + i);
    const LogTerms<V> terms = logTerms<V>({hi, load<V>(b.lo + i)}, exponent, Keys{b.key + i});
    store(b.e + i, terms.w);
    store(b.lo + i, terms.lo);
    store(b.hi + i, terms.hi);
  });
}
template <class V, bool ordinary>
[[gnu::noinline]] void results(const Float64* src, Float64* dst, int64_t count, Strip& b) {
  each<V>(count, [&](int64_t i) INLINED {
    const V y = (logSeries(load<V>(b.e + i)) + load<V>(b.lo + i)) + load<V>(b.hi + i);
    if constexpr (ordinary)
      store(dst + i, orBits(y, signOf(load<V>(src + i))));
    else
      store(b.e + i, y);
  });
  if constexpr (!ordinary) each<V>(count, [&](int64_t i) INLINED {
      const V x = load<V>(src + i);
      store(dst + i, orBits(withSmall(load<V>(b.e + i), x), signOf(x)));
    });
}

INLINE Float64 asinhOne(Float64 x) {
  const Float64 a = magnitude(x);
  if (!(a > 0.125 && a <= largestFinite)) return orBits(asinhSeries(a), signOf(x));
  if (a > twoTo28) return orBits(pairLog<Float64>({a, 0}, 1), signOf(x));
  return orBits(pairLog(rootPlus(normalized(pairRoot(squarePlusOne(a))), a), 0.0), signOf(x));
}

template <class V>
[[gnu::noinline]] nuvStatus shortLoop(const Float64* src, Float64* dst, int64_t len) {
  return plainLoop<V>(src, dst, len, [](auto x) INLINED { return asinhCore(x); });
}
template <class V, class W>
[[gnu::noinline]] nuvStatus longLoop(const Float64* src, Float64* dst, int64_t len) {
  Strip b;
  for (int64_t count; len > 0; src += count, dst += count, len -= count) {
    count = len < strip ? len : strip;
    const int64_t whole = (count + laneCount<W> - 1) / laneCount<W> * laneCount<W>;
    const Float64* from = src;
    Float64* to = dst;
    if (whole != count) {
      __builtin_memcpy(b.x, src, static_cast<size_t>(count) * sizeof *src);
      for (int64_t i = count; i < whole; ++i) b.x[i] = src[0];
      from = b.x;
      to = b.result;
    }
    const bool ordinary = squares<V>(from, whole, b);
    residuals<V>(whole, b);
    rootPolynomials<W>(whole, b);
    if (ordinary) {
      sums<V, true>(from, whole, b);
      rows<V, true>(whole, b);
      results<W, true>(from, to, whole, b);
    } else {
      sums<V, false>(from, whole, b);
      rows<V, false>(whole, b);
      results<W, false>(from, to, whole, b);
    }
    if (whole != count) __builtin_memcpy(dst, b.result, static_cast<size_t>(count) * sizeof *dst);
  }
  return nuvStatusOk;
}
template <class V, class W>
INLINE nuvStatus asinhLoop(const Float64* src, Float64* dst, int64_t len) {
  if (len == 1) return *dst = asinhOne(*src), nuvStatusOk;
  if (len <= laneCount<V>) return shortLoop<V>(src, dst, len);
  return longLoop<V, W>(src, dst, len);
}

}  // namespace
}  // namespace qorvane
