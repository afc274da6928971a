// The other half of the vocabulary: 32-bit integers, packed four to a register, in which kernels
// find exponents, ranges and rows, and the rows of tables.
//
// The words of a V are its lanes' upper or lower halves, or integers made from them, in order
// (WordsOf<V>): an int for Float64, a Words4 or a pack of them for vectors. Two Lanes2 share one;
// a lone Lanes2 has its two twice.
#pragma once
#include "frame/lanes.h"

namespace qorvane {
namespace {

using Words4 [[gnu::vector_size(16)]] = int;

// Sums and differences modulo 2^32, of words or of words and a number; plain ones may not overflow.
using UnsignedWords4 [[gnu::vector_size(16)]] = unsigned;
INLINE uint32_t unsignedOf(uint32_t word) { return word; }
INLINE UnsignedWords4 unsignedOf(Words4 words) { return reinterpret_cast<UnsignedWords4>(words); }
INLINE int signedOf(uint32_t word) { return static_cast<int>(word); }
INLINE Words4 signedOf(UnsignedWords4 words) { return reinterpret_cast<Words4>(words); }
template <class A, class B>
INLINE A wrappingSum(A a, B b) {
  if constexpr (isPack<A>)
    return makePack<packSize<A>>([&](int i) INLINED { return wrappingSum(a.part[i], partOf(b, i)); });
  else
    return signedOf(unsignedOf(a) + unsignedOf(b));
}
template <class A, class B>
INLINE A wrappingDifference(A a, B b) {
  if constexpr (isPack<A>)
    return makePack<packSize<A>>([&](int i) INLINED { return wrappingDifference(a.part[i], partOf(b, i)); });
  else
    return signedOf(unsignedOf(a) - unsignedOf(b));
}

// The upper and the lower 32 bits of every lane.
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
  return packWords<selection>(lowHalf(v), highHalf(v));
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

// Words that are all ones where the number isn't 0; nothing is raised.
template <class V>
INLINE auto isNonzero(V v) {
  return ((highWords(v) & 0x7fffffff) | lowWords(v)) != 0;
}

// The words of part i of a pack, in the lower half where two parts share them.
template <class V>
INLINE auto wordsOfPart(WordsOf<V> words, int i) {
  if constexpr (packSize<WordsOf<V>> == packSize<V>) {
    return words.part[i];
  } else {
    const __m128i four = reinterpret_cast<__m128i>(words.part[i / 2]);
    return reinterpret_cast<Words4>(i % 2 == 0 ? four : _mm_shuffle_epi32(four, 0xee));
  }
}

// Words that stand in memory, and back.
template <class V>
INLINE WordsOf<V> loadWords(const void* p) {
  if constexpr (laneCount<V> == 2 && !isPack<V>) {
    return reinterpret_cast<Words4>(_mm_loadl_epi64(static_cast<const __m128i*>(p)));
  } else {
    WordsOf<V> words;
    __builtin_memcpy(&words, p, sizeof words);
    return words;
  }
}
template <class W>
INLINE void storeWords(void* p, W words) {
  __builtin_memcpy(p, &words, sizeof words);
}

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
    if constexpr (laneCount<V> == 2)
      return low;
    else
      return joinHalves(low, _mm_castsi128_pd(_mm_unpackhi_epi32(zero, four)));
  }
}

// Integers as numbers; the second from memory, which spares moving the upper pairs of Lanes2 down.
template <class V>
INLINE V numbersOf(WordsOf<V> words) {
  if constexpr (isPack<V>)
    return makePack<packSize<V>>([&](int i) INLINED { return numbersOf<PartOf<V>>(wordsOfPart<V>(words, i)); });
  else if constexpr (laneCount<V> == 1)
    return words;
#ifdef __AVX__
  else if constexpr (laneCount<V> == 4)
    return _mm256_cvtepi32_pd(reinterpret_cast<__m128i>(words));
#endif
  else
    return _mm_cvtepi32_pd(reinterpret_cast<__m128i>(words));
}
template <class V>
INLINE V numbersAt(const int* p) {
  if constexpr (isPack<V>)
    return makePack<packSize<V>>([&](int i) INLINED { return numbersAt<PartOf<V>>(p + i * laneCount<PartOf<V>>); });
  else
    return numbersOf<V>(loadWords<V>(p));
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

// Rows of tables, 16-byte aligned, each at a byte offset for its lane. `offsets` are bit patterns,
// words (which takes half the moves from vector to address registers), or a function of the lane's
// index, for those that stand in memory or want a factor.
template <int lanes, class Offsets>
INLINE uint64_t laneOf(Offsets offsets, int lane) {
  if constexpr (requires { offsets(lane); }) {
    return offsets(lane);
  } else if constexpr (isPack<Offsets>) {
    constexpr int each = lanes / packSize<Offsets>;
    return laneOf<each>(partOf(offsets, lane / each), lane % each);
  } else if constexpr (sizeof offsets == sizeof(int)) {
    return static_cast<uint32_t>(offsets);
  } else if constexpr (sizeof offsets == sizeof(uint64_t)) {
    return offsets;
  } else if constexpr (sizeof offsets[0] == sizeof(uint64_t)) {
    return lane == 0 ? offsets[0] : offsets[1];
  } else {
    const Bits2 pairs = reinterpret_cast<Bits2>(offsets);
    const uint64_t pair = lane < 2 ? pairs[0] : pairs[1];
    return lane % 2 == 0 ? static_cast<uint32_t>(pair) : pair >> 32;
  }
}
INLINE const Float64* addressAt(const void* table, uint64_t offset) {
  return reinterpret_cast<const Float64*>(static_cast<const char*>(table) + offset);
}
INLINE __m128d rowAt(const void* table, uint64_t offset) { return _mm_load_pd(addressAt(table, offset)); }

// One number of a row, from tables of any alignment.
template <class V, class Offsets>
INLINE V column(const void* table, Offsets offsets) {
  const auto at = [&](int lane) INLINED { return addressAt(table, laneOf<laneCount<V>>(offsets, lane)); };
  if constexpr (isPack<V>) {
    return makePack<packSize<V>>([&](int i) INLINED {
      constexpr int lanes = laneCount<PartOf<V>>;
      return column<PartOf<V>>(table,
                               [&](int lane) INLINED { return laneOf<laneCount<V>>(offsets, i * lanes + lane); });
    });
  } else if constexpr (laneCount<V> == 1) {
    return *at(0);
  } else if constexpr (laneCount<V> == 2) {
    return V{*at(0), *at(1)};
  } else {
    return V{*at(0), *at(1), *at(2), *at(3)};
  }
}

// The first two numbers of a row.
template <class V>
struct TwoColumns {
  V first, second;
};
#ifdef __AVX__
INLINE TwoColumns<Lanes4> transposeRows(__m128d row0, __m128d row1, __m128d row2, __m128d row3) {
  const Lanes4 rows02 = joinHalves(row0, row2), rows13 = joinHalves(row1, row3);
  return {_mm256_unpacklo_pd(rows02, rows13), _mm256_unpackhi_pd(rows02, rows13)};
}
#endif
template <class V, class Offsets>
INLINE TwoColumns<V> twoColumns(const void* table, Offsets offsets) {
  const auto row = [&](int lane) INLINED { return rowAt(table, laneOf<laneCount<V>>(offsets, lane)); };
  if constexpr (isPack<V>) {
    const auto columns = makePack<packSize<V>>([&](int i) INLINED {
      constexpr int lanes = laneCount<PartOf<V>>;
      return twoColumns<PartOf<V>>(table,
                                   [&](int lane) INLINED { return laneOf<laneCount<V>>(offsets, i * lanes + lane); });
    });
    return {makePack<packSize<V>>([&](int i) INLINED { return columns.part[i].first; }),
            makePack<packSize<V>>([&](int i) INLINED { return columns.part[i].second; })};
  } else if constexpr (laneCount<V> == 1) {
    const Float64* numbers = addressAt(table, laneOf<1>(offsets, 0));
    return {numbers[0], numbers[1]};
  } else if constexpr (laneCount<V> == 2) {
    const __m128d row0 = row(0), row1 = row(1);
    return {_mm_unpacklo_pd(row0, row1), _mm_unpackhi_pd(row0, row1)};
#ifdef __AVX__
  } else {
    return transposeRows(row(0), row(1), row(2), row(3));
#endif
  }
}

// The first n numbers of a row, n even, as .of[0] to .of[n - 1].
template <class V, int n>
struct Columns {
  V of[n];
};
template <int n, class V, class Offsets>
INLINE Columns<V, n> columns(const void* table, Offsets offsets) {
  Columns<V, n> all;
  [&]<int... k>(std::integer_sequence<int, k...>) INLINED {
    const TwoColumns<V> pairs[] = {twoColumns<V>(addressAt(table, 16 * k), offsets)...};
    ((all.of[2 * k] = pairs[k].first, all.of[2 * k + 1] = pairs[k].second), ...);
  }
  (std::make_integer_sequence<int, n / 2>{});
  return all;
}

}  // namespace
}  // namespace qorvane
