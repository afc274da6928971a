// The vocabulary in which kernels are written: lanes of double-precision numbers with the operators of the formulas, and the few operations beside them.
//
// A core is a template over V, the lane type, which is one of
//   Float64         one element (special lanes)
//   Lanes2          two elements, one 128-bit register
//   Lanes4          four elements, one 256-bit register (sources of level 5 only)
//   Pack<V, K>      K of these in lockstep: every operation is written for all K before the next one, so that K independent chains fill the latency of one
// and the same arithmetic is done element by element in all of them. BitsOf<V> has the bit patterns as unsigned 64-bit integers, always in 128-bit registers;
// Words4 has four 32-bit integers.
//
// Everything is in an unnamed namespace: each source has its own copy, made for its own instruction set.
#pragma once
#include <immintrin.h>

#include <utility>

#include "frame/bits.h"

namespace qorvane {
namespace {

using Lanes2 [[gnu::vector_size(16)]] = double;
using Bits2 [[gnu::vector_size(16)]] = unsigned long long;
using Words4 [[gnu::vector_size(16)]] = int;
#ifdef __AVX__
using Lanes4 [[gnu::vector_size(32)]] = double;
#endif

template <class V, int K>
struct Pack {
  V part[K];
};

// Pack{f(0), ..., f(K - 1)}
template <int K, class F>
[[gnu::always_inline]] inline auto makePack(F f) {
  return [&]<int... i>(std::integer_sequence<int, i...>) __attribute__((always_inline)) { return Pack<decltype(f(0)), K>{{f(i)...}}; }
  (std::make_integer_sequence<int, K>{});
}

template <class V>
constexpr int packSize = 0;  // 0: not a pack
template <class V, int K>
constexpr int packSize<Pack<V, K>> = K;

// Part i of a pack; anything else stands for every part of itself.
template <class V>
[[gnu::always_inline]] inline V partOf(V v, int) {
  return v;
}
template <class V, int K>
[[gnu::always_inline]] inline V partOf(Pack<V, K> v, int i) {
  return v.part[i];
}

template <class A, class B>
concept PackOperands = (packSize<A> > 0 || packSize<B> > 0);
template <class A, class B>
constexpr int commonSize = packSize<A> > packSize<B> ? packSize<A> : packSize<B>;

// clang-format off
template <class A, class B> requires PackOperands<A, B>
[[gnu::always_inline]] inline auto operator+(A a, B b) { return makePack<commonSize<A, B>>([&](int i) __attribute__((always_inline)) { return partOf(a, i) + partOf(b, i); }); }
template <class A, class B> requires PackOperands<A, B>
[[gnu::always_inline]] inline auto operator-(A a, B b) { return makePack<commonSize<A, B>>([&](int i) __attribute__((always_inline)) { return partOf(a, i) - partOf(b, i); }); }
template <class A, class B> requires PackOperands<A, B>
[[gnu::always_inline]] inline auto operator*(A a, B b) { return makePack<commonSize<A, B>>([&](int i) __attribute__((always_inline)) { return partOf(a, i) * partOf(b, i); }); }
template <class A, class B> requires PackOperands<A, B>
[[gnu::always_inline]] inline auto operator/(A a, B b) { return makePack<commonSize<A, B>>([&](int i) __attribute__((always_inline)) { return partOf(a, i) / partOf(b, i); }); }
template <class A, class B> requires PackOperands<A, B>
[[gnu::always_inline]] inline auto operator&(A a, B b) { return makePack<commonSize<A, B>>([&](int i) __attribute__((always_inline)) { return partOf(a, i) & partOf(b, i); }); }
template <class A, class B> requires PackOperands<A, B>
[[gnu::always_inline]] inline auto operator|(A a, B b) { return makePack<commonSize<A, B>>([&](int i) __attribute__((always_inline)) { return partOf(a, i) | partOf(b, i); }); }
template <class A, class B> requires PackOperands<A, B>
[[gnu::always_inline]] inline auto operator^(A a, B b) { return makePack<commonSize<A, B>>([&](int i) __attribute__((always_inline)) { return partOf(a, i) ^ partOf(b, i); }); }
template <class A, class B> requires PackOperands<A, B>
[[gnu::always_inline]] inline auto operator>(A a, B b) { return makePack<commonSize<A, B>>([&](int i) __attribute__((always_inline)) { return partOf(a, i) > partOf(b, i); }); }
template <class V, int K>
[[gnu::always_inline]] inline auto operator<<(Pack<V, K> a, int n) { return makePack<K>([&](int i) __attribute__((always_inline)) { return a.part[i] << n; }); }
template <class V, int K>
[[gnu::always_inline]] inline auto operator>>(Pack<V, K> a, int n) { return makePack<K>([&](int i) __attribute__((always_inline)) { return a.part[i] >> n; }); }
// clang-format on

// Lanes of V, the vector that a pack is made of, the type of its bit patterns.
template <class V>
struct LaneTraits;
template <>
struct LaneTraits<Float64> {
  static constexpr int lanes = 1;
  using Part = Float64;
  using Bits = uint64_t;
};
template <>
struct LaneTraits<Lanes2> {
  static constexpr int lanes = 2;
  using Part = Lanes2;
  using Bits = Bits2;
};
template <class V, int K>
struct LaneTraits<Pack<V, K>> {
  static constexpr int lanes = K * LaneTraits<V>::lanes;
  using Part = V;
  using Bits = Pack<typename LaneTraits<V>::Bits, K>;
};
#ifdef __AVX__
template <>
struct LaneTraits<Lanes4> {
  static constexpr int lanes = 4;
  using Part = Lanes4;
  using Bits = Pack<Bits2, 2>;
};
#endif
template <class V>
constexpr int laneCount = LaneTraits<V>::lanes;
template <class V>
using PartOf = typename LaneTraits<V>::Part;
template <class V>
using BitsOf = typename LaneTraits<V>::Bits;

// Loads and stores; no alignment needed.
template <class V>
[[gnu::always_inline]] inline V load(const Float64* p) {
  if constexpr (packSize < V >> 0)
    return makePack<packSize<V>>([&](int i) __attribute__((always_inline)) { return load<PartOf<V>>(p + i * laneCount<PartOf<V>>); });
  else if constexpr (laneCount<V> == 1)
    return *p;
  else {
    V v;
    __builtin_memcpy(&v, p, sizeof v);
    return v;
  }
}
template <class V>
[[gnu::always_inline]] inline void store(Float64* p, V v) {
  if constexpr (packSize < V >> 0)
    makePack<packSize<V>>([&](int i) __attribute__((always_inline)) { return store(p + i * laneCount<PartOf<V>>, v.part[i]), 0; });
  else
    __builtin_memcpy(p, &v, sizeof v);
}

// The first `count` lanes (1 to laneCount<V>), for tails: nothing beyond them is read or written, and the lanes beyond repeat one of them, so that they raise
// no flag of their own.
template <class V>
[[gnu::always_inline]] inline V loadPart(const Float64* p, int64_t count) {
  if constexpr (laneCount<V> == 1) return *p;
  if constexpr (laneCount<V> == 2) return count == 2 ? load<V>(p) : V{*p, *p};
#ifdef __AVX__
  if constexpr (laneCount<V> == 4) {
    if (count == 4) return load<V>(p);
    if (count == 1) return _mm256_broadcast_sd(p);
    const __m128d low = _mm_loadu_pd(p), high = count == 3 ? _mm_loaddup_pd(p + 2) : low;
    return _mm256_insertf128_pd(_mm256_castpd128_pd256(low), high, 1);
  }
#endif
}
template <class V>
[[gnu::always_inline]] inline void storePart(Float64* p, V v, int64_t count) {
  if constexpr (laneCount<V> == 1) *p = v;
  if constexpr (laneCount<V> == 2) count == 2 ? store(p, v) : _mm_storel_pd(p, v);
#ifdef __AVX__
  if constexpr (laneCount<V> == 4) {
    if (count == 4) return store(p, v);
    const __m128d low = _mm256_castpd256_pd128(v);
    if (count == 1) return _mm_storel_pd(p, low);
    _mm_storeu_pd(p, low);
    if (count == 3) _mm_storel_pd(p + 2, _mm256_extractf128_pd(v, 1));
  }
#endif
}

// Bit patterns and back.
[[gnu::always_inline]] inline Bits2 bitsOf(Lanes2 v) { return reinterpret_cast<Bits2>(v); }
[[gnu::always_inline]] inline uint64_t bitsOf(Float64 v) { return toBits(v); }
#ifdef __AVX__
[[gnu::always_inline]] inline Pack<Bits2, 2> bitsOf(Lanes4 v) {
  return {{reinterpret_cast<Bits2>(_mm256_castpd256_pd128(v)), reinterpret_cast<Bits2>(_mm256_extractf128_pd(v, 1))}};
}
#endif
template <class V, int K>
[[gnu::always_inline]] inline auto bitsOf(Pack<V, K> v) {
  return makePack<K>([&](int i) __attribute__((always_inline)) { return bitsOf(v.part[i]); });
}
template <class V>
[[gnu::always_inline]] inline V valueOf(BitsOf<V> b) {
  if constexpr (packSize < V >> 0)
    return makePack<packSize<V>>([&](int i) __attribute__((always_inline)) { return valueOf<PartOf<V>>(b.part[i]); });
  else if constexpr (laneCount<V> == 1)
    return fromBits(b);
#ifdef __AVX__
  else if constexpr (laneCount<V> == 4)
    return _mm256_insertf128_pd(_mm256_castpd128_pd256(reinterpret_cast<__m128d>(b.part[0])), reinterpret_cast<__m128d>(b.part[1]), 1);
#endif
  else
    return reinterpret_cast<V>(b);
}

// The value in every lane.
template <class V>
[[gnu::always_inline]] inline V broadcast(Float64 x) {
  if constexpr (packSize < V >> 0)
    return makePack<packSize<V>>([&](int) __attribute__((always_inline)) { return broadcast<PartOf<V>>(x); });
  else if constexpr (laneCount<V> == 1)
    return x;
#ifdef __AVX__
  else if constexpr (laneCount<V> == 4)
    return _mm256_set1_pd(x);
#endif
  else
    return _mm_set1_pd(x);
}

// Logic on numbers as whole registers, for work on signs and masks that needs no integers.
template <class V>
[[gnu::always_inline]] inline V andBits(V a, V b) {
  if constexpr (packSize < V >> 0)
    return makePack<packSize<V>>([&](int i) __attribute__((always_inline)) { return andBits(a.part[i], b.part[i]); });
  else if constexpr (laneCount<V> == 1)
    return fromBits(toBits(a) & toBits(b));
#ifdef __AVX__
  else if constexpr (laneCount<V> == 4)
    return _mm256_and_pd(a, b);
#endif
  else
    return _mm_and_pd(a, b);
}
template <class V>
[[gnu::always_inline]] inline V orBits(V a, V b) {
  if constexpr (packSize < V >> 0)
    return makePack<packSize<V>>([&](int i) __attribute__((always_inline)) { return orBits(a.part[i], b.part[i]); });
  else if constexpr (laneCount<V> == 1)
    return fromBits(toBits(a) | toBits(b));
#ifdef __AVX__
  else if constexpr (laneCount<V> == 4)
    return _mm256_or_pd(a, b);
#endif
  else
    return _mm_or_pd(a, b);
}

// |x|, and the zero with the sign of x.
template <class V>
[[gnu::always_inline]] inline V magnitude(V x) {
  return andBits(x, broadcast<V>(fromBits(0x7fffffffffffffff)));
}
template <class V>
[[gnu::always_inline]] inline V signOf(V x) {
  return andBits(x, broadcast<V>(-0.0));
}

// The upper 32 bits of every lane, packed four to a register: in order, but a lone Lanes2 gives its two twice.
[[gnu::always_inline]] inline int highWords(Float64 v) { return static_cast<int>(highWord(v)); }
[[gnu::always_inline]] inline Words4 packHighWords(__m128d a, __m128d b) {
  return reinterpret_cast<Words4>(_mm_shuffle_ps(_mm_castpd_ps(a), _mm_castpd_ps(b), 0xdd));
}
[[gnu::always_inline]] inline Words4 highWords(Lanes2 v) { return packHighWords(v, v); }
#ifdef __AVX__
[[gnu::always_inline]] inline Words4 highWords(Lanes4 v) { return packHighWords(_mm256_castpd256_pd128(v), _mm256_extractf128_pd(v, 1)); }
#endif
template <class V, int K>
[[gnu::always_inline]] inline auto highWords(Pack<V, K> v) {
  if constexpr (laneCount<V> == 2 && K % 2 == 0)
    return makePack<K / 2>([&](int i) __attribute__((always_inline)) { return packHighWords(v.part[2 * i], v.part[2 * i + 1]); });
  else
    return makePack<K>([&](int i) __attribute__((always_inline)) { return highWords(v.part[i]); });
}

// Whether any lane of a comparison's result is set.
[[gnu::always_inline]] inline bool any(bool b) { return b; }
[[gnu::always_inline]] inline bool any(Words4 mask) { return _mm_movemask_ps(reinterpret_cast<__m128>(mask)) != 0; }
template <int K>
[[gnu::always_inline]] inline bool any(Pack<Words4, K> mask) {
  Words4 all = mask.part[0];
  for (int i = 1; i < K; ++i) all |= mask.part[i];
  return any(all);
}
template <int K>
[[gnu::always_inline]] inline bool any(Pack<bool, K> mask) {
  bool all = false;
  for (int i = 0; i < K; ++i) all |= mask.part[i];
  return all;
}

// Whether a high word with its sign cleared is at least `limit` in any lane: infinities, NaNs and all numbers from fromBits(limit << 32) up in magnitude.
template <class V>
[[gnu::always_inline]] inline bool anyMagnitudeFrom(V x, int limit) {
  return any((highWords(x) & 0x7fffffff) > limit - 1);
}

// Rows of two numbers, first and second, taken from a table at a byte offset for each lane. The table's rows are 16-byte aligned.
template <class V>
struct TwoColumns {
  V first, second;
};
[[gnu::always_inline]] inline __m128d rowAt(const void* table, uint64_t offset) {
  return _mm_load_pd(reinterpret_cast<const Float64*>(static_cast<const char*>(table) + offset));
}
template <class V>
[[gnu::always_inline]] inline TwoColumns<V> twoColumns(const void* table, BitsOf<V> offsets) {
  if constexpr (packSize < V >> 0) {
    const auto columns = makePack<packSize<V>>([&](int i) __attribute__((always_inline)) { return twoColumns<PartOf<V>>(table, offsets.part[i]); });
    return {makePack<packSize<V>>([&](int i) __attribute__((always_inline)) { return columns.part[i].first; }),
            makePack<packSize<V>>([&](int i) __attribute__((always_inline)) { return columns.part[i].second; })};
  } else if constexpr (laneCount<V> == 1) {
    const Float64* row = reinterpret_cast<const Float64*>(static_cast<const char*>(table) + offsets);
    return {row[0], row[1]};
  } else if constexpr (laneCount<V> == 2) {
    const __m128d row0 = rowAt(table, offsets[0]), row1 = rowAt(table, offsets[1]);
    return {_mm_unpacklo_pd(row0, row1), _mm_unpackhi_pd(row0, row1)};
#ifdef __AVX__
  } else {
    const Lanes4 rows02 = _mm256_insertf128_pd(_mm256_castpd128_pd256(rowAt(table, offsets.part[0][0])), rowAt(table, offsets.part[1][0]), 1);
    const Lanes4 rows13 = _mm256_insertf128_pd(_mm256_castpd128_pd256(rowAt(table, offsets.part[0][1])), rowAt(table, offsets.part[1][1]), 1);
    return {_mm256_unpacklo_pd(rows02, rows13), _mm256_unpackhi_pd(rows02, rows13)};
#endif
  }
}

}  // namespace
}  // namespace qorvane
