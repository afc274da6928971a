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
void repeat(const Call& call, int64_t times) {
  constexpr int lanes = sizeof(V) / sizeof(double);
  const V value = V{} + call.value[0];
  eachCall(call.len, 1, times, [&](int64_t at) {
    const double *const a = call.in[0] + at, *const b = call.in[1] + at;
    double *const out = call.out[0] + at, *const outB = call.out[1] + at;
    const int64_t n = call.len;
    int64_t i = 0;
    for (; i + lanes <= n; i += lanes) put(out + i, outB + i, f(get<V>(a + i), get<V>(b + i), value));
    if (i < n) {
      double lastA[lanes], lastB[lanes], last[lanes], lastOutB[lanes] = {};
      for (int j = 0; j < lanes; ++j) lastA[j] = a[i + j < n ? i + j : i], lastB[j] = b[i + j < n ? i + j : i];
      put(last, lastOutB, f(get<V>(lastA), get<V>(lastB), value));
      for (int64_t j = i; j < n; ++j) out[j] = last[j - i], outB[j] = lastOutB[j - i];
    }
  });
}

}  // namespace
}  // namespace qorvane::bench

// Contestants of vectors V. Unary functions are called with an argument only, so that operands that f doesn't use are
// never loaded.
// clang-format off
#define UNARY(stem, function) {#stem, repeat<V, [](V a, V, V) { return function(a); }>}
#define BINARY(stem, second, function) {#stem, repeat<V, [](V a, V b, V value) { return (void)b, (void)value, function(a, second); }>}
#define SPLIT(stem, function) {#stem, repeat<V, [](V a, V, V) { const auto both = function(a); return Two<V>{both.x, both.y}; }>}
// clang-format on
