// What ln and log10 share: the test for arguments outside the fast range and their results, and lane operations on packed high words.
#pragma once
#include "frame/lanes.h"
#include "frame/raise_fp_status.h"

namespace qorvane {
namespace {

// Whether any lane is anything but a positive normal finite number. The difference wraps, which moves those numbers to the bottom of the signed range.
[[gnu::always_inline]] inline bool outsideFastRange(int word) { return static_cast<uint32_t>(word) - 0x00100000 >= 0x7fe00000; }
[[gnu::always_inline]] inline Words4 outsideFastRange(Words4 words) {
  using Unsigned4 [[gnu::vector_size(16)]] = unsigned;
  return reinterpret_cast<Words4>(reinterpret_cast<Unsigned4>(words) - 0x80100000) > static_cast<int>(0xffdfffff);
}
template <int K>
[[gnu::always_inline]] inline Pack<Words4, K> outsideFastRange(Pack<Words4, K> words) {
  return makePack<K>([&](int i) __attribute__((always_inline)) { return outsideFastRange(words.part[i]); });
}
template <class V>
[[gnu::always_inline]] inline bool anyOutsideFastRange(V x) {
  return any(outsideFastRange(highWords(x)));
}

// Levels 1 to 4: anything but a positive finite number. Constants, which raise no flag.
[[gnu::always_inline]] inline nuvStatus fixFault(Float64 x, Float64* result) {
  constexpr uint64_t infinity = 0x7ff0000000000000, sign = uint64_t{1} << 63;
  const auto give = [&](uint64_t pattern, nuvStatus status) { return *result = fromBits(pattern), status; };
  const uint64_t b = toBits(x), magnitude = b & ~sign;
  if (magnitude > infinity || b == infinity) return give(b, nuvStatusOk);
  if (magnitude == 0) return give(sign | infinity, nuvStatusPole);
  return give(0xfff8000000000000, nuvStatusOutOfDomain);
}

// Level 5: the same arguments, with results that raise their flags. Where subnormal numbers count as zero, they do here too.
[[gnu::always_inline]] inline nuvStatus specialFault(Float64 x, Float64* result) {
  const auto give = [&](Float64 value, nuvStatus status) { return *result = value, status; };
  if ((highWord(x) & 0x7ff00000) == 0x7ff00000 && toBits(x) != 0xfff0000000000000) return give(x * x, nuvStatusOk);
  if (x == 0) return give((opaque(0.0) - 1.0) / opaque(0.0), nuvStatusPole);
  return give(opaque(0.0) / opaque(0.0), nuvStatusOutOfDomain);
}

// (x & mask) | set, on the bit patterns.
[[gnu::always_inline]] inline Float64 withBits(Float64 x, uint64_t mask, uint64_t set) { return fromBits((toBits(x) & mask) | set); }
[[gnu::always_inline]] inline Lanes2 withBits(Lanes2 x, uint64_t mask, uint64_t set) { return reinterpret_cast<Lanes2>((bitsOf(x) & mask) | set); }
#ifdef __AVX__
[[gnu::always_inline]] inline Lanes4 withBits(Lanes4 x, uint64_t mask, uint64_t set) {
  return _mm256_or_pd(_mm256_and_pd(x, _mm256_set1_pd(fromBits(mask))), _mm256_set1_pd(fromBits(set)));
}
#endif
template <class V, int K>
[[gnu::always_inline]] inline Pack<V, K> withBits(Pack<V, K> x, uint64_t mask, uint64_t set) {
  return makePack<K>([&](int i) __attribute__((always_inline)) { return withBits(x.part[i], mask, set); });
}

// Integers, packed as highWords packs them, as numbers.
template <class V, class W>
[[gnu::always_inline]] inline V numbersOf(W words) {
  if constexpr (packSize < V >> 0) {
    constexpr int share = packSize<V> / packSize<W>;  // parts of V to one register of words
    return makePack<packSize<V>>([&](int i) __attribute__((always_inline)) {
      const Words4 w = words.part[i / share];
      return numbersOf<PartOf<V>>(i % share == 0 ? w : reinterpret_cast<Words4>(_mm_shuffle_epi32(reinterpret_cast<__m128i>(w), 0xee)));
    });
  } else if constexpr (laneCount<V> == 1) {
    return words;
#ifdef __AVX__
  } else if constexpr (laneCount<V> == 4) {
    return _mm256_cvtepi32_pd(reinterpret_cast<__m128i>(words));
#endif
  } else {
    return _mm_cvtepi32_pd(reinterpret_cast<__m128i>(words));
  }
}

// twoColumns with byte offsets packed as highWords packs them; offset `origin` is the table's first row. Two offsets go to the integer registers at once.
template <class V, class W>
[[gnu::always_inline]] inline TwoColumns<V> twoColumnsAt(const Float64 (*table)[2], uint32_t origin, W offsets) {
  if constexpr (packSize < V >> 0) {
    constexpr int share = packSize<V> / packSize<W>;
    const auto columns = makePack<packSize<V>>([&](int i) __attribute__((always_inline)) {
      const Words4 w = offsets.part[i / share];
      return twoColumnsAt<PartOf<V>>(table, origin, i % share == 0 ? w : reinterpret_cast<Words4>(_mm_shuffle_epi32(reinterpret_cast<__m128i>(w), 0xee)));
    });
    return {makePack<packSize<V>>([&](int i) __attribute__((always_inline)) { return columns.part[i].first; }),
            makePack<packSize<V>>([&](int i) __attribute__((always_inline)) { return columns.part[i].second; })};
  } else if constexpr (laneCount<V> == 1) {
    return twoColumns<V>(table, static_cast<uint32_t>(offsets) - origin);
  } else {
    const Bits2 pairs = reinterpret_cast<Bits2>(offsets);
    const auto row = [&](uint64_t offset) __attribute__((always_inline)) { return rowAt(table, offset - origin); };
    const __m128d row0 = row(static_cast<uint32_t>(pairs[0])), row1 = row(pairs[0] >> 32);
    if constexpr (laneCount<V> == 2) return {_mm_unpacklo_pd(row0, row1), _mm_unpackhi_pd(row0, row1)};
#ifdef __AVX__
    if constexpr (laneCount<V> == 4) {
      const Lanes4 rows02 = _mm256_insertf128_pd(_mm256_castpd128_pd256(row0), row(static_cast<uint32_t>(pairs[1])), 1);
      const Lanes4 rows13 = _mm256_insertf128_pd(_mm256_castpd128_pd256(row1), row(pairs[1] >> 32), 1);
      return {_mm256_unpacklo_pd(rows02, rows13), _mm256_unpackhi_pd(rows02, rows13)};
    }
#endif
  }
}

// One column of numbers, likewise (levels 1 to 4).
template <class V, class W>
[[gnu::always_inline]] inline V columnAt(const Float64* table, W offsets) {
  const auto at = [&](uint64_t offset) __attribute__((always_inline)) {
    return reinterpret_cast<const Float64*>(reinterpret_cast<const char*>(table) + offset);
  };
  if constexpr (packSize < V >> 0) {
    constexpr int share = packSize<V> / packSize<W>;
    return makePack<packSize<V>>([&](int i) __attribute__((always_inline)) {
      const Words4 w = offsets.part[i / share];
      return columnAt<PartOf<V>>(table, i % share == 0 ? w : reinterpret_cast<Words4>(_mm_shuffle_epi32(reinterpret_cast<__m128i>(w), 0xee)));
    });
  } else if constexpr (laneCount<V> == 1) {
    return *at(static_cast<uint32_t>(offsets));
  } else {
    const Bits2 pairs = reinterpret_cast<Bits2>(offsets);
    return Lanes2{*at(static_cast<uint32_t>(pairs[0])), *at(pairs[0] >> 32)};
  }
}

// v in two: in the lanes where c is zero, and in the others; the rest is +0.
template <class V>
struct Split {
  V atZero, elsewhere;
};
[[gnu::always_inline]] inline Split<Float64> splitAtZero(Float64 c, Float64 v) { return c == 0 ? Split<Float64>{v, 0} : Split<Float64>{0, v}; }
[[gnu::always_inline]] inline Split<Lanes2> splitAtZero(Lanes2 c, Lanes2 v) {
  const __m128d isZero = _mm_cmpeq_pd(c, _mm_setzero_pd());
  return {_mm_and_pd(isZero, v), _mm_andnot_pd(isZero, v)};
}
template <class V, int K>
[[gnu::always_inline]] inline Split<Pack<V, K>> splitAtZero(Pack<V, K> c, Pack<V, K> v) {
  const auto parts = makePack<K>([&](int i) __attribute__((always_inline)) { return splitAtZero(c.part[i], v.part[i]); });
  return {makePack<K>([&](int i) __attribute__((always_inline)) { return parts.part[i].atZero; }),
          makePack<K>([&](int i) __attribute__((always_inline)) { return parts.part[i].elsewhere; })};
}

}  // namespace
}  // namespace qorvane
