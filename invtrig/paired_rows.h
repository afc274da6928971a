// The intervals' rows for neighbouring lanes together: one row for any two intervals, so that its
// columns are loaded as they stand, with nothing to transpose. Level 5 only.
#pragma once
#include "invtrig/atan_stages.h"
#include "invtrig/masks_avx.h"

namespace qorvane {
namespace {

#include "invtrig/atan_tables.inc"

// In a row: c, `kept`, then what is added last in two parts, each for both lanes. The lowest interval is
// number 0 here; the row of the intervals i and k is i + 5 k.
constexpr int intervalCount = 5;
struct PairedRow {
  Float64 c[2], kept[2], hi[2], lo[2];
};
struct PairedRows {
  alignas(64) PairedRow row[intervalCount * intervalCount];
};
// fill(Float64 c, bool isLast) -> what stands in c and in `kept`
struct PointAndKept {
  Float64 c, kept;
};
template <class Fill>
constexpr PairedRows pairRows(Fill fill) {
  PairedRows rows{};
  for (int k = 0; k < intervalCount * intervalCount; ++k)
    for (int lane = 0; lane < 2; ++lane) {
      const int interval = lane == 0 ? k % intervalCount : k / intervalCount;
      const auto& row = atanRows[intervalCount - 1 - interval];
      const PointAndKept point = fill(row[0], interval == intervalCount - 1);
      PairedRow& pair = rows.row[k];
      pair.c[lane] = point.c, pair.kept[lane] = point.kept, pair.hi[lane] = row[2], pair.lo[lane] = row[3];
    }
  return rows;
}

// Byte offsets of rows, one part for either lane of a pair. They stand as eightHighWords has them.
struct RowOffsets {
  alignas(32) uint32_t of[longestStretch];
};
static_assert(longestStretch % 8 == 0);

// For eight numbers: isAbove(int k) is a mask of those that are above the k-th bound.
template <class IsAbove>
INLINE void storeOffsets(uint32_t* to, IsAbove isAbove) {
  const auto offset = [](int interval) INLINED {
    const int first = interval * static_cast<int>(sizeof(PairedRow)), second = intervalCount * first;
    return _mm256_castsi256_ps(_mm256_set_epi32(second, first, second, first, second, first, second, first));
  };
  __m256 offsets = _mm256_and_ps(isAbove(0), offset(1));
  for (int k = 1; k < intervalCount - 1; ++k) offsets = selectSingles(isAbove(k), offset(k + 1), offsets);
  _mm256_store_ps(reinterpret_cast<float*>(to), offsets);
}

// Two columns for a vector of four lanes, or two of them, at i.
using PairedColumn = Float64 (PairedRow::*)[2];
template <PairedColumn first, PairedColumn second>
INLINE TwoColumns<Lanes4> pairedColumns(const PairedRows& rows, const uint32_t* offsets) {
  const auto at = [&](const uint32_t* two) INLINED {
    return reinterpret_cast<const PairedRow*>(addressAt(&rows, uint64_t{two[0]} + two[1]));
  };
  const PairedRow *low = at(offsets), *high = at(offsets + 4);
  return {joinHalves(_mm_load_pd(low->*first), _mm_load_pd(high->*first)),
          joinHalves(_mm_load_pd(low->*second), _mm_load_pd(high->*second))};
}
template <PairedColumn first, PairedColumn second, class V>
INLINE TwoColumns<V> pairedColumns(const PairedRows& rows, const RowOffsets& offsets, int64_t i) {
  if constexpr (isPack<V>) {
    const auto both = makePack<packSize<V>>(
        [&](int k) INLINED { return pairedColumns<first, second>(rows, offsets.of + i + 2 * k); });
    return {makePack<packSize<V>>([&](int k) INLINED { return both.part[k].first; }),
            makePack<packSize<V>>([&](int k) INLINED { return both.part[k].second; })};
  } else {
    return pairedColumns<first, second>(rows, offsets.of + i);
  }
}

// From the offsets to numerators and denominators, fractionOf(V, int64_t i, V c, V kept) -> Fraction, and
// what is added last.
template <class FractionOf>
INLINE void beginQuotients(Stages& s, int64_t count, const PairedRows& rows, const RowOffsets& offsets,
                           FractionOf fractionOf) {
  eachGroupInTwo<Group, Four>(
      count,
      [&]<class V>(V, int64_t i) INLINED {
        const auto [hi, lo] = pairedColumns<&PairedRow::hi, &PairedRow::lo, V>(rows, offsets, i);
        store(s.hi + i, hi), store(s.lo + i, lo);
        return pairedColumns<&PairedRow::c, &PairedRow::kept, V>(rows, offsets, i);
      },
      [&]<class V>(V, int64_t i, TwoColumns<V> point)
          INLINED { storeFraction(s, i, fractionOf(V{}, i, point.first, point.second)); });
}

}  // namespace
}  // namespace qorvane
