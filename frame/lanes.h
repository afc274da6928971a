// The vocabulary in which kernels are written: lanes of double-precision numbers with the operators
// of the formulas, and the few operations beside them.
//
// A core is a template over V, the lane type, which is one of
//   Float64         one element (special lanes)
//   Lanes2          two elements, one 128-bit register
//   Lanes4          four elements, one 256-bit register (sources of level 5 only)
//   Pack<V, K>      K of these in lockstep: every operation is written for all K before the next
//                   one, so that K independent chains fill the latency of one
// and the same arithmetic is done element by element in all of them. BitsOf<V> has the bit patterns
// as unsigned 64-bit integers, always in 128-bit registers; Words4 has four 32-bit integers.
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
INLINE Bits2 bitsOf(Lanes2 v) { return reinterpret_cast<Bits2>(v); }
INLINE uint64_t bitsOf(Float64 v) { return toBits(v); }
#ifdef __AVX__
INLINE Pack<Bits2, 2> bitsOf(Lanes4 v) {
  return {{reinterpret_cast<Bits2>(_mm256_castpd256_pd128(v)), reinterpret_cast<Bits2>(_mm256_extractf128_pd(v, 1))}};
}
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
    return _mm256_insertf128_pd(_mm256_castpd128_pd256(reinterpret_cast<__m128d>(b.part[0])),
                                reinterpret_cast<__m128d>(b.part[1]), 1);
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
template <class V>
INLINE V andBits(V a, V b) {
  if constexpr (isPack<V>)
    return makePack<packSize<V>>([&](int i) INLINED { return andBits(a.part[i], b.part[i]); });
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
INLINE V orBits(V a, V b) {
  if constexpr (isPack<V>)
    return makePack<packSize<V>>([&](int i) INLINED { return orBits(a.part[i], b.part[i]); });
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
INLINE V magnitude(V x) {
  return andBits(x, broadcast<V>(fromBits(0x7fffffffffffffff)));
}
template <class V>
INLINE V signOf(V x) {
  return andBits(x, broadcast<V>(-0.0));
}

// The upper and the lower 32 bits of every lane, packed four to a register: in order, but a lone
// Lanes2 gives its two twice.
constexpr int upperHalves = 0xdd, lowerHalves = 0x88;
template <int selection>
INLINE Words4 packWords(__m128d a, __m128d b) {
  return reinterpret_cast<Words4>(_mm_shuffle_ps(_mm_castpd_ps(a), _mm_castpd_ps(b), selection));
}
INLINE Words4 packHighWords(__m128d a, __m128d b) { return packWords<upperHalves>(a, b); }
template <int selection>
INLINE int wordsOf(Float64 v) {
  return static_cast<int>(selection == upperHalves ? toBits(v) >> 32 : toBits(v));
}
template <int selection>
INLINE Words4 wordsOf(Lanes2 v) {
  return packWords<selection>(v, v);
}
#ifdef __AVX__
template <int selection>
INLINE Words4 wordsOf(Lanes4 v) {
  return packWords<selection>(_mm256_castpd256_pd128(v), _mm256_extractf128_pd(v, 1));
}
#endif
template <int selection, class V, int K>
INLINE auto wordsOf(Pack<V, K> v) {
  if constexpr (laneCount<V> == 2 && K % 2 == 0)
    return makePack<K / 2>([&](int i) INLINED { return packWords<selection>(v.part[2 * i], v.part[2 * i + 1]); });
  else
    return makePack<K>([&](int i) INLINED { return wordsOf<selection>(v.part[i]); });
}
template <class V>
INLINE auto highWords(V v) {
  return wordsOf<upperHalves>(v);
}
template <class V>
INLINE auto lowWords(V v) {
  return wordsOf<lowerHalves>(v);
}
template <class V>
using WordsOf = decltype(highWords(V{}));

// The numbers with these high words, their low words zero.
template <class V>
INLINE V fromHighWords(WordsOf<V> words) {
  if constexpr (laneCount<V> == 1) {
    return fromBits(static_cast<uint64_t>(static_cast<uint32_t>(words)) << 32);
  } else if constexpr (isPack<V> && laneCount<PartOf<V>> == 2 && packSize<V> % 2 == 0) {
    return makePack<packSize<V>>([&](int i) INLINED -> Lanes2 {
      const __m128i four = reinterpret_cast<__m128i>(words.part[i / 2]), zero = _mm_setzero_si128();
      return _mm_castsi128_pd(i % 2 == 0 ? _mm_unpacklo_epi32(zero, four) : _mm_unpackhi_epi32(zero, four));
    });
  } else if constexpr (isPack<V>) {
    return makePack<packSize<V>>([&](int i) INLINED { return fromHighWords<PartOf<V>>(words.part[i]); });
  } else {
    const __m128i four = reinterpret_cast<__m128i>(words), zero = _mm_setzero_si128();
    const __m128d low = _mm_castsi128_pd(_mm_unpacklo_epi32(zero, four));
    if constexpr (laneCount<V> == 2) return low;
#ifdef __AVX__
    if constexpr (laneCount<V> == 4)
      return _mm256_insertf128_pd(_mm256_castpd128_pd256(low), _mm_castsi128_pd(_mm_unpackhi_epi32(zero, four)), 1);
#endif
  }
}

// Whether any lane of a comparison's result is set.
INLINE bool any(bool b) { return b; }
INLINE bool any(Words4 mask) { return _mm_movemask_ps(reinterpret_cast<__m128>(mask)) != 0; }
template <int K>
INLINE bool any(Pack<Words4, K> mask) {
  Words4 all = mask.part[0];
  for (int i = 1; i < K; ++i) all |= mask.part[i];
  return any(all);
}
template <int K>
INLINE bool any(Pack<bool, K> mask) {
  bool all = false;
  for (int i = 0; i < K; ++i) all |= mask.part[i];
  return all;
}

// Whether a high word with its sign cleared is at least `limit` in any lane: infinities, NaNs and
// all numbers from fromBits(limit << 32) up in magnitude.
template <class V>
INLINE bool anyMagnitudeFrom(V x, int limit) {
  return any((highWords(x) & 0x7fffffff) > limit - 1);
}
#ifdef __AVX__
// The order of the words doesn't matter here, so two registers are packed at once and the greatest
// words compared.
template <int K>
requires(K % 2 == 0) INLINE bool anyMagnitudeFrom(Pack<Lanes4, K> x, int limit) {
  const __m256 noSign = _mm256_castsi256_ps(_mm256_set1_epi32(0x7fffffff));
  __m128i greatest = _mm_setzero_si128();
  for (int i = 0; i < K; i += 2) {
    const __m256 words = _mm256_and_ps(
        _mm256_shuffle_ps(_mm256_castpd_ps(x.part[i]), _mm256_castpd_ps(x.part[i + 1]), upperHalves), noSign);
    greatest = _mm_max_epi32(greatest, _mm_castps_si128(_mm256_castps256_ps128(words)));
    greatest = _mm_max_epi32(greatest, _mm_castps_si128(_mm256_extractf128_ps(words, 1)));
  }
  return any(reinterpret_cast<Words4>(greatest) > limit - 1);
}
#endif

// Rows of two numbers, first and second, taken from a table at a byte offset for each lane. The
// table's rows are 16-byte aligned.
template <class V>
struct TwoColumns {
  V first, second;
};
INLINE __m128d rowAt(const void* table, uint64_t offset) {
  return _mm_load_pd(reinterpret_cast<const Float64*>(static_cast<const char*>(table) + offset));
}
#ifdef __AVX__
INLINE TwoColumns<Lanes4> transposeRows(__m128d row0, __m128d row1, __m128d row2, __m128d row3) {
  const Lanes4 rows02 = _mm256_insertf128_pd(_mm256_castpd128_pd256(row0), row2, 1);
  const Lanes4 rows13 = _mm256_insertf128_pd(_mm256_castpd128_pd256(row1), row3, 1);
  return {_mm256_unpacklo_pd(rows02, rows13), _mm256_unpackhi_pd(rows02, rows13)};
}
#endif
template <class V>
INLINE TwoColumns<V> twoColumns(const void* table, BitsOf<V> offsets) {
  if constexpr (isPack<V>) {
    const auto columns =
        makePack<packSize<V>>([&](int i) INLINED { return twoColumns<PartOf<V>>(table, offsets.part[i]); });
    return {makePack<packSize<V>>([&](int i) INLINED { return columns.part[i].first; }),
            makePack<packSize<V>>([&](int i) INLINED { return columns.part[i].second; })};
  } else if constexpr (laneCount<V> == 1) {
    const Float64* row = reinterpret_cast<const Float64*>(static_cast<const char*>(table) + offsets);
    return {row[0], row[1]};
  } else if constexpr (laneCount<V> == 2) {
    const __m128d row0 = rowAt(table, offsets[0]), row1 = rowAt(table, offsets[1]);
    return {_mm_unpacklo_pd(row0, row1), _mm_unpackhi_pd(row0, row1)};
#ifdef __AVX__
  } else {
    return transposeRows(rowAt(table, offsets.part[0][0]), rowAt(table, offsets.part[0][1]),
                         rowAt(table, offsets.part[1][0]), rowAt(table, offsets.part[1][1]));
#endif
  }
}

// The same with the offsets as words, which takes half the moves from vector to address registers.
struct FourOffsets {
  uint64_t of[4];
};
INLINE FourOffsets separate(Words4 offsets) {
  const Bits2 pairs = reinterpret_cast<Bits2>(offsets);
  return {{static_cast<uint32_t>(pairs[0]), pairs[0] >> 32, static_cast<uint32_t>(pairs[1]), pairs[1] >> 32}};
}
template <class V>
INLINE TwoColumns<V> twoColumns(const void* table, WordsOf<V> offsets) {
  if constexpr (isPack<V>) {
    constexpr int partsAWord = packSize<V> / packSize<WordsOf<V>>;
    const auto columns = makePack<packSize<V>>([&](int i) INLINED {
      if constexpr (partsAWord == 1)
        return twoColumns<PartOf<V>>(table, offsets.part[i]);
      else {
        const FourOffsets four = separate(offsets.part[i / 2]);
        const __m128d row0 = rowAt(table, four.of[2 * (i % 2)]), row1 = rowAt(table, four.of[2 * (i % 2) + 1]);
        return TwoColumns<PartOf<V>>{_mm_unpacklo_pd(row0, row1), _mm_unpackhi_pd(row0, row1)};
      }
    });
    return {makePack<packSize<V>>([&](int i) INLINED { return columns.part[i].first; }),
            makePack<packSize<V>>([&](int i) INLINED { return columns.part[i].second; })};
  } else if constexpr (laneCount<V> == 1) {
    const Float64* row = reinterpret_cast<const Float64*>(static_cast<const char*>(table) + offsets);
    return {row[0], row[1]};
  } else {
    const FourOffsets four = separate(offsets);
    const __m128d row0 = rowAt(table, four.of[0]), row1 = rowAt(table, four.of[1]);
    if constexpr (laneCount<V> == 2) return {_mm_unpacklo_pd(row0, row1), _mm_unpackhi_pd(row0, row1)};
#ifdef __AVX__
    if constexpr (laneCount<V> == 4)
      return transposeRows(row0, row1, rowAt(table, four.of[2]), rowAt(table, four.of[3]));
#endif
  }
}

}  // namespace
}  // namespace qorvane
