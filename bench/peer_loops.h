// The loop of a peer: f over whole vectors V, then once more over a padded copy of what remains. V
// is double for a scalar loop. Everything has internal linkage, for the sources that include it are
// compiled for different instruction sets.
#pragma once
#include "bench/contestants.h"

namespace qorvane::bench {
namespace {

template <class V>
struct Two {
  V first, second;
};

template <class V>
INLINE V get(const double* p) {
  V v;
  __builtin_memcpy(&v, p, sizeof v);
  return v;
}
template <class V>
INLINE void put(double* out, double*, V v) {
  __builtin_memcpy(out, &v, sizeof v);
}
template <class V>
INLINE void put(double* out, double* outB, Two<V> v) {
  __builtin_memcpy(out, &v.first, sizeof v.first);
  __builtin_memcpy(outB, &v.second, sizeof v.second);
}

// f(V a, V b, V value) -> V or Two<V>
template <class V, auto f>
void repeat(const Work& work, int64_t times) {
  constexpr int lanes = sizeof(V) / sizeof(double);
  const V value = V{} + work.value;
  for (; times > 0; --times) {
    const Work w = work;
    int64_t i = 0;
    for (; i + lanes <= w.n; i += lanes) put(w.out + i, w.outB + i, f(get<V>(w.a + i), get<V>(w.b + i), value));
    if (i < w.n) {
      double a[lanes], b[lanes], out[lanes], outB[lanes] = {};
      for (int j = 0; j < lanes; ++j) a[j] = w.a[i + j < w.n ? i + j : i], b[j] = w.b[i + j < w.n ? i + j : i];
      put(out, outB, f(get<V>(a), get<V>(b), value));
      for (int64_t j = i; j < w.n; ++j) w.out[j] = out[j - i], w.outB[j] = outB[j - i];
    }
    keep();
  }
}

}  // namespace
}  // namespace qorvane::bench
