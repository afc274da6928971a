// The vocabulary in which kernels are written: lanes of double-precision numbers with the operators
// of the formulas, and the few operations beside them. frame/words.h has 32-bit integers and tables.
//
// A core is a template over V, the lane type, which is one of
//   Float64         one element (special lanes)
//   Lanes2          two elements, one 128-bit register
//   Lanes4          four elements, one 256-bit register (sources of level 5 only)
//   Pack<V, K>      K of these in lockstep: every operation is written for all K before the next
//                   one, so that K independent chains fill the latency of one
// and the same arithmetic is done element by element in all of them. BitsOf<V> has the bit patterns
// as unsigned 64-bit integers, always in 128-bit registers.
//
// Everything is in an unnamed namespace: each source has its own copy, made for its own instruction
// set.
#pragma once
#include <immintrin.h>

#include <utility>

#include "frame/bits.h"

namespace qorvane {
namespace {

using Lanes2 [[gnu::vector_size(16)]] = double;
using Bits2 [[gnu::vector_size(16)]] = unsigned long long;
#ifdef __AVX__
using Lanes4 [[gnu::vector_size(32)]] = double;
#endif

template <class V, int K>
struct Pack {
  V part[K];
};

// Pack{f(0), ..., f(K - 1)}
template <int K, class F>
INLINE auto makePack(F f) {
  return [&]<int... i>(std::integer_sequence<int, i...>) INLINED { return Pack<decltype(f(0)), K>{{f(i)...}}; }
  (std::make_integer_sequence<int, K>{});
}

template <class V>
constexpr int packSize = 0;  // 0: not a pack
template <class V, int K>
constexpr int packSize<Pack<V, K>> = K;
template <class V>
constexpr bool isPack = packSize<V> != 0;

// Part i of a pack; anything else stands for every part of itself.
template <class V>
INLINE V partOf(V v, int) {
  return v;
}
template <class V, int K>
INLINE V partOf(Pack<V, K> v, int i) {
  return v.part[i];
}

template <class A, class B>
concept PackOperands = isPack<A> || isPack<B>;
template <class A, class B>
constexpr int commonSize = packSize<A> > packSize<B> ? packSize<A> : packSize<B>;

// clang-format off
template <class A, class B> requires PackOperands<A, B>
INLINE auto operator+(A a, B b) { return makePack<commonSize<A, B>>([&](int i) INLINED { return partOf(a, i) + partOf(b, i); }); }
template <class A, class B> requires PackOperands<A, B>
INLINE auto operator-(A a, B b) { return makePack<commonSize<A, B>>([&](int i) INLINED { return partOf(a, i) - partOf(b, i); }); }
template <class A, class B> requires PackOperands<A, B>
INLINE auto operator*(A a, B b) { return makePack<commonSize<A, B>>([&](int i) INLINED { return partOf(a, i) * partOf(b, i); }); }
template <class A, class B> requires PackOperands<A, B>
INLINE auto operator/(A a, B b) { return makePack<commonSize<A, B>>([&](int i) INLINED { return partOf(a, i) / partOf(b, i); }); }
template <class A, class B> requires PackOperands<A, B>
INLINE auto operator&(A a, B b) { return makePack<commonSize<A, B>>([&](int i) INLINED { return partOf(a, i) & partOf(b, i); }); }
template <class A, class B> requires PackOperands<A, B>
INLINE auto operator|(A a, B b) { return makePack<commonSize<A, B>>([&](int i) INLINED { return partOf(a, i) | partOf(b, i); }); }
template <class A, class B> requires PackOperands<A, B>
INLINE auto operator^(A a, B b) { return makePack<commonSize<A, B>>([&](int i) INLINED { return partOf(a, i) ^ partOf(b, i); }); }
template <class A, class B> requires PackOperands<A, B>
INLINE auto operator>(A a, B b) { return makePack<commonSize<A, B>>([&](int i) INLINED { return partOf(a, i) > partOf(b, i); }); }
template <class A, class B> requires PackOperands<A, B>
INLINE auto operator!=(A a, B b) { return makePack<commonSize<A, B>>([&](int i) INLINED { return partOf(a, i) != partOf(b, i); }); }
template <class V, int K>
INLINE auto operator<<(Pack<V, K> a, int n) { return makePack<K>([&](int i) INLINED { return a.part[i] << n; }); }
template <class V, int K>
INLINE auto operator>>(Pack<V, K> a, int n) { return makePack<K>([&](int i) INLINED { return a.part[i] >> n; }); }
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
INLINE V load(const Float64* p) {
  if constexpr (isPack<V>)
    return makePack<packSize<V>>([&](int i) INLINED { return load<PartOf<V>>(p + i * laneCount<PartOf<V>>); });
  else if constexpr (laneCount<V> == 1)
    return *p;
  else {
    V v;
    __builtin_memcpy(&v, p, sizeof v);
    return v;
  }
}
template <class V>
INLINE void store(Float64* p, V v) {
  if constexpr (isPack<V>)
    makePack<packSize<V>>([&](int i) INLINED { return store(p + i * laneCount<PartOf<V>>, v.part[i]), 0; });
  else
    __builtin_memcpy(p, &v, sizeof v);
}

// The first `count` lanes (1 to laneCount<V>), for tails: nothing beyond them is read or written,
// and the lanes beyond repeat one of them, so that they raise no flag of their own.
template <class V>
INLINE V loadPart(const Float64* p, int64_t count) {
  if constexpr (laneCount<V> == 1) return *p;
  if constexpr (laneCount<V> == 2) return count == 2 ? load<V>(p) : V{*p, *p};
  if constexpr (isPack<V>) {
    if (count == laneCount<V>) return load<V>(p);
    return makePack<packSize<V>>([&](int i) INLINED {
      constexpr int lanes = laneCount<PartOf<V>>;
      const int64_t left = count - i * lanes;
      return loadPart<PartOf<V>>(left > 0 ? p + i * lanes : p, left <= 0 ? 1 : left < lanes ? left : lanes);
    });
  }
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
INLINE void storePart(Float64* p, V v, int64_t count) {
  if constexpr (laneCount<V> == 1) *p = v;
  if constexpr (laneCount<V> == 2) count == 2 ? store(p, v) : _mm_storel_pd(p, v);
  if constexpr (isPack<V>) {
    if (count == laneCount<V>) return store(p, v);
    for (int i = 0; i < packSize<V>; ++i) {
      constexpr int lanes = laneCount<PartOf<V>>;
      const int64_t left = count - i * lanes;
      if (left > 0) storePart(p + i * lanes, v.part[i], left < lanes ? left : lanes);
    }
  }
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

// Four elements on any level, and their halves.
#ifdef __AVX__
using Four = Lanes4;
INLINE Lanes2 lowHalf(Lanes4 v) { return _mm256_castpd256_pd128(v); }
INLINE Lanes2 highHalf(Lanes4 v) { return _mm256_extractf128_pd(v, 1); }
INLINE Lanes4 joinHalves(Lanes2 low, Lanes2 high) { return _mm256_insertf128_pd(_mm256_castpd128_pd256(low), high, 1); }
#else
using Four = Pack<Lanes2, 2>;
INLINE Four joinHalves(Lanes2 low, Lanes2 high) { return {{low, high}}; }
#endif
INLINE Lanes2 lowHalf(Pack<Lanes2, 2> v) { return v.part[0]; }
INLINE Lanes2 highHalf(Pack<Lanes2, 2> v) { return v.part[1]; }

// Bit patterns and back.
INLINE uint64_t bitsOf(Float64 v) { return toBits(v); }
INLINE Bits2 bitsOf(Lanes2 v) { return reinterpret_cast<Bits2>(v); }
#ifdef __AVX__
INLINE Pack<Bits2, 2> bitsOf(Lanes4 v) { return {{bitsOf(lowHalf(v)), bitsOf(highHalf(v))}}; }
#endif
template <class V, int K>
INLINE auto bitsOf(Pack<V, K> v) {
  return makePack<K>([&](int i) INLINED { return bitsOf(v.part[i]); });
}
template <class V>
INLINE V valueOf(BitsOf<V> b) {
  if constexpr (isPack<V>)
    return makePack<packSize<V>>([&](int i) INLINED { return valueOf<PartOf<V>>(b.part[i]); });
  else if constexpr (laneCount<V> == 1)
    return fromBits(b);
#ifdef __AVX__
  else if constexpr (laneCount<V> == 4)
    return joinHalves(reinterpret_cast<Lanes2>(b.part[0]), reinterpret_cast<Lanes2>(b.part[1]));
#endif
  else
    return reinterpret_cast<V>(b);
}

// The value in every lane.
template <class V>
INLINE V broadcast(Float64 x) {
  if constexpr (isPack<V>)
    return makePack<packSize<V>>([&](int) INLINED { return broadcast<PartOf<V>>(x); });
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
enum class Logic { conjunction, disjunction, difference, exclusive };
template <Logic logic, class V>
INLINE V combineBits(V a, V b) {
  if constexpr (isPack<V>) {
    return makePack<packSize<V>>([&](int i) INLINED { return combineBits<logic>(a.part[i], b.part[i]); });
  } else if constexpr (laneCount<V> == 1) {
    if constexpr (logic == Logic::conjunction) return fromBits(toBits(a) & toBits(b));
    if constexpr (logic == Logic::disjunction) return fromBits(toBits(a) | toBits(b));
    if constexpr (logic == Logic::difference) return fromBits(~toBits(a) & toBits(b));
    if constexpr (logic == Logic::exclusive) return fromBits(toBits(a) ^ toBits(b));
  } else if constexpr (laneCount<V> == 2) {
    if constexpr (logic == Logic::conjunction) return _mm_and_pd(a, b);
    if constexpr (logic == Logic::disjunction) return _mm_or_pd(a, b);
    if constexpr (logic == Logic::difference) return _mm_andnot_pd(a, b);
    if constexpr (logic == Logic::exclusive) return _mm_xor_pd(a, b);
  }
#ifdef __AVX__
  else {
    if constexpr (logic == Logic::conjunction) return _mm256_and_pd(a, b);
    if constexpr (logic == Logic::disjunction) return _mm256_or_pd(a, b);
    if constexpr (logic == Logic::difference) return _mm256_andnot_pd(a, b);
    if constexpr (logic == Logic::exclusive) return _mm256_xor_pd(a, b);
  }
#endif
}
// clang-format off
template <class V> INLINE V andBits(V a, V b) { return combineBits<Logic::conjunction>(a, b); }
template <class V> INLINE V orBits(V a, V b) { return combineBits<Logic::disjunction>(a, b); }
template <class V> INLINE V xorBits(V a, V b) { return combineBits<Logic::exclusive>(a, b); }
template <class V> INLINE V withoutBits(V v, V mask) { return combineBits<Logic::difference>(mask, v); }  // v & ~mask
// clang-format on

// |x|, and the zero with the sign of x.
template <class V>
INLINE V magnitude(V x) {
  return andBits(x, broadcast<V>(fromBits(0x7fffffffffffffff)));
}
template <class V>
INLINE V signOf(V x) {
  return andBits(x, broadcast<V>(-0.0));
}

// The processor's square root, rounded as the mode is.
template <class V>
INLINE V hardwareRoot(V x) {
  if constexpr (isPack<V>)
    return makePack<packSize<V>>([&](int i) INLINED { return hardwareRoot(x.part[i]); });
  else if constexpr (laneCount<V> == 1)
    return _mm_cvtsd_f64(_mm_sqrt_sd(_mm_setzero_pd(), _mm_set_sd(x)));
#ifdef __AVX__
  else if constexpr (laneCount<V> == 4)
    return _mm256_sqrt_pd(x);
#endif
  else
    return _mm_sqrt_pd(x);
}

// Masks of numbers have all bits set in a lane, or none. These are C's == and <: for a NaN they are
// false, and lessLanes then raises invalid, while equalLanes doesn't but for a signalling one.
template <class V>
INLINE V equalLanes(V a, V b) {
  if constexpr (isPack<V>)
    return makePack<packSize<V>>([&](int i) INLINED { return equalLanes(a.part[i], b.part[i]); });
  else if constexpr (laneCount<V> == 1)
    return _mm_cvtsd_f64(_mm_cmpeq_sd(_mm_set_sd(a), _mm_set_sd(b)));
#ifdef __AVX__
  else if constexpr (laneCount<V> == 4)
    return _mm256_cmp_pd(a, b, _CMP_EQ_OQ);
#endif
  else
    return _mm_cmpeq_pd(a, b);
}
template <class V>
INLINE V lessLanes(V a, V b) {
  if constexpr (isPack<V>)
    return makePack<packSize<V>>([&](int i) INLINED { return lessLanes(a.part[i], b.part[i]); });
  else if constexpr (laneCount<V> == 1)
    return _mm_cvtsd_f64(_mm_cmplt_sd(_mm_set_sd(a), _mm_set_sd(b)));
#ifdef __AVX__
  else if constexpr (laneCount<V> == 4)
    return _mm256_cmp_pd(a, b, _CMP_LT_OS);
#endif
  else
    return _mm_cmplt_pd(a, b);
}
// The smaller and the larger of two numbers, not NaNs.
template <class V>
INLINE V smallerLanes(V a, V b) {
  if constexpr (isPack<V>)
    return makePack<packSize<V>>([&](int i) INLINED { return smallerLanes(a.part[i], b.part[i]); });
  else if constexpr (laneCount<V> == 1)
    return _mm_cvtsd_f64(_mm_min_sd(_mm_set_sd(a), _mm_set_sd(b)));
#ifdef __AVX__
  else if constexpr (laneCount<V> == 4)
    return _mm256_min_pd(a, b);
#endif
  else
    return _mm_min_pd(a, b);
}
template <class V>
INLINE V largerLanes(V a, V b) {
  if constexpr (isPack<V>)
    return makePack<packSize<V>>([&](int i) INLINED { return largerLanes(a.part[i], b.part[i]); });
  else if constexpr (laneCount<V> == 1)
    return _mm_cvtsd_f64(_mm_max_sd(_mm_set_sd(a), _mm_set_sd(b)));
#ifdef __AVX__
  else if constexpr (laneCount<V> == 4)
    return _mm256_max_pd(a, b);
#endif
  else
    return _mm_max_pd(a, b);
}
// a where the mask is set, b elsewhere
template <class V>
INLINE V select(V mask, V a, V b) {
  if constexpr (isPack<V>)
    return makePack<packSize<V>>([&](int i) INLINED { return select(mask.part[i], a.part[i], b.part[i]); });
#ifdef __AVX__
  else if constexpr (laneCount<V> == 4) {
    // g++ makes comparisons and branches of the builtin where it knows the mask to be a whole one.
    asm("vblendvpd %3, %2, %1, %0" : "=x"(b) : "x"(b), "x"(a), "x"(mask));
    return b;
  }
#endif
  else
    return orBits(andBits(mask, a), withoutBits(b, mask));
}

// The lowest bit of the pattern as the sign bit, the others zero.
template <class V>
INLINE V lowestBitAsSign(V v) {
#ifdef __AVX2__
  if constexpr (isPack<V>)
    return makePack<packSize<V>>([&](int i) INLINED { return lowestBitAsSign(v.part[i]); });
  else if constexpr (laneCount<V> == 4)
    return _mm256_castsi256_pd(_mm256_slli_epi64(_mm256_castpd_si256(v), 63));
  else
#endif
    return valueOf<V>(bitsOf(v) << 63);
}

#ifdef __FMA__
// a * b + c, a * b - c and c - a * b with one rounding. Sources with the ending _fma only.
INLINE Lanes2 fused(Lanes2 a, Lanes2 b, Lanes2 c) { return _mm_fmadd_pd(a, b, c); }
INLINE Lanes2 fusedLess(Lanes2 a, Lanes2 b, Lanes2 c) { return _mm_fmsub_pd(a, b, c); }
INLINE Lanes2 fusedFrom(Lanes2 c, Lanes2 a, Lanes2 b) { return _mm_fnmadd_pd(a, b, c); }
INLINE Lanes4 fused(Lanes4 a, Lanes4 b, Lanes4 c) { return _mm256_fmadd_pd(a, b, c); }
INLINE Lanes4 fusedLess(Lanes4 a, Lanes4 b, Lanes4 c) { return _mm256_fmsub_pd(a, b, c); }
INLINE Lanes4 fusedFrom(Lanes4 c, Lanes4 a, Lanes4 b) { return _mm256_fnmadd_pd(a, b, c); }
template <int K>
INLINE Pack<Lanes4, K> fused(Pack<Lanes4, K> a, Pack<Lanes4, K> b, Pack<Lanes4, K> c) {
  return makePack<K>([&](int i) INLINED { return fused(a.part[i], b.part[i], c.part[i]); });
}
template <int K>
INLINE Pack<Lanes4, K> fusedLess(Pack<Lanes4, K> a, Pack<Lanes4, K> b, Pack<Lanes4, K> c) {
  return makePack<K>([&](int i) INLINED { return fusedLess(a.part[i], b.part[i], c.part[i]); });
}
template <int K>
INLINE Pack<Lanes4, K> fusedFrom(Pack<Lanes4, K> c, Pack<Lanes4, K> a, Pack<Lanes4, K> b) {
  return makePack<K>([&](int i) INLINED { return fusedFrom(c.part[i], a.part[i], b.part[i]); });
}
#endif

// The sign bits of the lanes, lane 0 lowest.
template <class V>
INLINE uint64_t signMask(V v) {
  if constexpr (isPack<V>) {
    uint64_t mask = 0;
    for (int i = 0; i < packSize<V>; ++i) mask |= signMask(v.part[i]) << (i * laneCount<PartOf<V>>);
    return mask;
  } else if constexpr (laneCount<V> == 1)
    return toBits(v) >> 63;
#ifdef __AVX__
  else if constexpr (laneCount<V> == 4)
    return static_cast<uint64_t>(_mm256_movemask_pd(v));
#endif
  else
    return static_cast<uint64_t>(_mm_movemask_pd(v));
}

}  // namespace
}  // namespace qorvane
