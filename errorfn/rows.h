// Tables with one long row for each lane: where the rows are, and their slots as columns.
#pragma once
#include "frame/words.h"

namespace qorvane {
namespace {

// A table, and for each lane the byte offset of its row. The offsets are in memory: from there one
// is a load away from being an address, from a vector register two or three operations.
struct Rows {
  const void* table;
  const int* offsets;
};
INLINE const Float64* rowOf(Rows rows, int lane) {
  return addressAt(rows.table, static_cast<uint32_t>(rows.offsets[lane]));
}
template <class V>
INLINE Rows rowsOfPart(Rows rows, int i) {
  return {rows.table, rows.offsets + i * laneCount<PartOf<V>>};
}

// Slots k and k + 1.
template <class V>
INLINE TwoColumns<V> slots(Rows rows, int k) {
  if constexpr (isPack<V>) {
    TwoColumns<V> columns;
    for (int i = 0; i < packSize<V>; ++i) {
      const auto ofPart = slots<PartOf<V>>(rowsOfPart<V>(rows, i), k);
      columns.first.part[i] = ofPart.first, columns.second.part[i] = ofPart.second;
    }
    return columns;
  } else if constexpr (laneCount<V> == 1) {
    return {rowOf(rows, 0)[k], rowOf(rows, 0)[k + 1]};
  } else if constexpr (laneCount<V> == 2) {
    const __m128d a = _mm_loadu_pd(rowOf(rows, 0) + k), b = _mm_loadu_pd(rowOf(rows, 1) + k);
    return {_mm_unpacklo_pd(a, b), _mm_unpackhi_pd(a, b)};
#ifdef __AVX__
  } else {
    const auto two = [&](const Float64* low, const Float64* high) INLINED -> Lanes4 {
      const __m256d first = _mm256_castpd128_pd256(_mm_loadu_pd(low + k));
      // The upper half of an aligned 32 bytes is already where it belongs: a blend costs less than
      // an insertion.
      if (k % 4 == 2) return _mm256_blend_pd(first, _mm256_loadu_pd(high + k - 2), 12);
      return _mm256_insertf128_pd(first, _mm_loadu_pd(high + k), 1);
    };
    const Lanes4 a = two(rowOf(rows, 0), rowOf(rows, 2)), b = two(rowOf(rows, 1), rowOf(rows, 3));
    return {_mm256_unpacklo_pd(a, b), _mm256_unpackhi_pd(a, b)};
#endif
  }
}

// Slot k alone.
template <class V>
INLINE V slot(Rows rows, int k) {
  const auto two = [&](int lane)
                       INLINED { return _mm_loadh_pd(_mm_load_sd(rowOf(rows, lane) + k), rowOf(rows, lane + 1) + k); };
  if constexpr (isPack<V>)
    return makePack<packSize<V>>([&](int i) INLINED { return slot<PartOf<V>>(rowsOfPart<V>(rows, i), k); });
  else if constexpr (laneCount<V> == 1)
    return rowOf(rows, 0)[k];
  else if constexpr (laneCount<V> == 2)
    return two(0);
#ifdef __AVX__
  else
    return _mm256_insertf128_pd(_mm256_castpd128_pd256(two(0)), two(2), 1);
#endif
}

// All bits where the high word of a lies in [from, to), a >= +0; no flag is raised. A number alone
// comes here only if it does.
INLINE Float64 highWordWithin(Float64, int, int) { return fromBits(~uint64_t{0}); }
INLINE Lanes2 highWordWithin(Lanes2 a, int from, int to) {
  const Words4 words = reinterpret_cast<Words4>(_mm_shuffle_epi32(_mm_castpd_si128(a), 0xf5));
  return reinterpret_cast<Lanes2>((words > from - 1) & (to > words));
}
template <int K>
INLINE Pack<Lanes2, K> highWordWithin(Pack<Lanes2, K> a, int from, int to) {
  return makePack<K>([&](int i) INLINED { return highWordWithin(a.part[i], from, to); });
}
#ifdef __AVX__
INLINE Lanes4 highWordWithin(Lanes4 a, int from, int to) {
  const auto limit = [](int word) INLINED { return _mm256_set1_pd(fromBits(static_cast<uint64_t>(word) << 32)); };
  const Lanes4 below = _mm256_cmp_pd(a, limit(to), _CMP_LT_OQ);
  return from == 0 ? below : _mm256_and_pd(_mm256_cmp_pd(a, limit(from), _CMP_GE_OQ), below);
}
#endif

// The same of |x|, asked of all lanes at once: whether any lies outside.
template <class V>
INLINE bool anyHighWordOutside(V x, int from, int to) {
  const auto words = highWords(x) & 0x7fffffff;
  if constexpr (laneCount<V> == 1)
    return words < from || words >= to;
  else
    return any((from > words) | (words > to - 1));
}

// For shortOrLongLoop: a stretch that reduce(x, count, c) finds no flagged element in goes through
// evaluate(x, y, count, c).
template <class Stretch, auto reduce, auto evaluate>
constexpr auto inStages = [](int64_t count, const Float64* x, Float64* y) INLINED {
  Stretch c;
  const bool fits = reduce(x, count, c);
  if (fits) evaluate(x, y, count, c);
  return fits;
};

}  // namespace
}  // namespace qorvane
