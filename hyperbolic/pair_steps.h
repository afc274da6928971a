// What asinh and acosh share where they work in pairs of numbers, hi + lo with lo small beside hi: a square root from a
// seed, a logarithm from a table, and the choices between lanes.
#pragma once
#include "frame/lanes.h"
#include "hyperbolic/pair_tables.h"

namespace qorvane {
namespace {

template <class V>
struct Pair {
  V hi, lo;
};

// Lanes where a > b, of ones and zeros; select takes a where the mask has ones.
INLINE Float64 isAbove(Float64 a, Float64 b) { return fromBits(a > b ? ~uint64_t{0} : 0); }
INLINE Lanes2 isAbove(Lanes2 a, Lanes2 b) { return _mm_cmpgt_pd(a, b); }
INLINE Float64 select(Float64 mask, Float64 a, Float64 b) { return toBits(mask) != 0 ? a : b; }
INLINE Lanes2 select(Lanes2 mask, Lanes2 a, Lanes2 b) { return _mm_or_pd(_mm_and_pd(mask, a), _mm_andnot_pd(mask, b)); }
// The smaller one; b where a is a NaN.
INLINE Float64 smaller(Float64 a, Float64 b) { return a < b ? a : b; }
INLINE Lanes2 smaller(Lanes2 a, Lanes2 b) { return _mm_min_pd(a, b); }
#ifdef __AVX__
INLINE Lanes4 isAbove(Lanes4 a, Lanes4 b) { return _mm256_cmp_pd(a, b, _CMP_GT_OQ); }
INLINE Lanes4 select(Lanes4 mask, Lanes4 a, Lanes4 b) { return _mm256_blendv_pd(b, a, mask); }
INLINE Lanes4 smaller(Lanes4 a, Lanes4 b) { return _mm256_min_pd(a, b); }
#endif
template <class V, int K>
INLINE Pack<V, K> isAbove(Pack<V, K> a, Pack<V, K> b) {
  return makePack<K>([&](int i) INLINED { return isAbove(a.part[i], b.part[i]); });
}
template <class V, int K>
INLINE Pack<V, K> select(Pack<V, K> mask, Pack<V, K> a, Pack<V, K> b) {
  return makePack<K>([&](int i) INLINED { return select(mask.part[i], a.part[i], b.part[i]); });
}
template <class V, int K>
INLINE Pack<V, K> smaller(Pack<V, K> a, Pack<V, K> b) {
  return makePack<K>([&](int i) INLINED { return smaller(a.part[i], b.part[i]); });
}

// b without the bits of a.
INLINE Float64 andNot(Float64 a, Float64 b) { return fromBits(~toBits(a) & toBits(b)); }
INLINE Lanes2 andNot(Lanes2 a, Lanes2 b) { return _mm_andnot_pd(a, b); }
#ifdef __AVX__
INLINE Lanes4 andNot(Lanes4 a, Lanes4 b) { return _mm256_andnot_pd(a, b); }
#endif
template <class V, int K>
INLINE Pack<V, K> andNot(Pack<V, K> a, Pack<V, K> b) {
  return makePack<K>([&](int i) INLINED { return andNot(a.part[i], b.part[i]); });
}

template <class V>
INLINE V withBits(V x, uint64_t kept, uint64_t set) {
  return orBits(andBits(x, broadcast<V>(fromBits(kept))), broadcast<V>(fromBits(set)));
}

// Numbers of a table, at a byte offset for each lane.
INLINE const Float64* numberAt(const void* table, uint64_t offset) {
  return reinterpret_cast<const Float64*>(static_cast<const char*>(table) + offset);
}
INLINE Lanes2 gather(const void* table, uint64_t offset0, uint64_t offset1) {
  return _mm_loadh_pd(_mm_load_sd(numberAt(table, offset0)), numberAt(table, offset1));
}
template <class V>
INLINE V oneColumn(const void* table, WordsOf<V> offsets) {
  if constexpr (isPack<V>) {
    constexpr int partsAWord = packSize<V> / packSize<WordsOf<V>>;
    return makePack<packSize<V>>([&](int i) INLINED {
      if constexpr (partsAWord == 1) {
        return oneColumn<PartOf<V>>(table, offsets.part[i]);
      } else {
        const FourOffsets four = separate(offsets.part[i / 2]);
        return gather(table, four.of[2 * (i % 2)], four.of[2 * (i % 2) + 1]);
      }
    });
  } else if constexpr (laneCount<V> == 1) {
    return *numberAt(table, static_cast<uint64_t>(offsets));
  } else {
    const FourOffsets four = separate(offsets);
    const Lanes2 low = gather(table, four.of[0], four.of[1]);
    if constexpr (laneCount<V> == 2) return low;
#ifdef __AVX__
    if constexpr (laneCount<V> == 4)
      return _mm256_insertf128_pd(_mm256_castpd128_pd256(low), gather(table, four.of[2], four.of[3]), 1);
#endif
  }
}
template <class V>
INLINE V numbersOf(WordsOf<V> words) {
  if constexpr (isPack<V> && laneCount<PartOf<V>> == 2) {
    return makePack<packSize<V>>([&](int i) INLINED -> Lanes2 {
      const __m128i four = reinterpret_cast<__m128i>(words.part[i / 2]);
      return _mm_cvtepi32_pd(i % 2 == 0 ? four : _mm_shuffle_epi32(four, 0xee));
    });
  } else if constexpr (isPack<V>) {
    return makePack<packSize<V>>([&](int i) INLINED { return numbersOf<PartOf<V>>(words.part[i]); });
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

// The square root of r = hi + lo, hi from 2^-52 to 2^57, as the sum of two numbers, the first good to 2^-10 and exact.
// The seed y approximates 1 / sqrt(hi) in 11 bits, so that products with it and a short number are exact; then
// sqrt(r) = r y (1 + e)^(-1/2) with e = r y^2 - 1.
template <class V>
INLINE Pair<V> pairRoot(Pair<V> r) {
  // (1 + e)^(-1/2) = 1 + r1 e + r2 e^2 + ...
  constexpr Float64 r7 = fromBits(0xbfcad00000000000), r6 = fromBits(0x3fcce00000000000), r5 = fromBits(0xbfcf800000000000),
                    r4 = fromBits(0x3fd1800000000000), r3 = fromBits(0xbfd4000000000000), r2 = fromBits(0x3fd8000000000000),
                    r1 = fromBits(0xbfe0000000000000);
  const V v = withBits(r.hi, 0x000fffffffffffff, 0x3ff0000000000000);
  const auto word = highWords(r.hi);
  const auto index = lowWords(v + fromBits(0x42b0000000000000)) - ((word & 0x00100000) >> 12);
  const V seed = oneColumn<V>(sqrtSeedTable, index << 3);
  const V y = seed * fromHighWords<V>(0x5ff00000 - (((word + 0x00100000) >> 1) & 0x7ff00000));
  const V head = andBits(r.hi, broadcast<V>(fromBits(0xffffffffffc00000))), rest = (r.hi - head) + r.lo;
  const V y2 = y * y, e = y2 * rest + (head * y2 - 1.0);
  const V p = ((((((r7 * e + r6) * e + r5) * e + r4) * e + r3) * e + r2) * e + r1) * e;
  return {head * y, (p * y) * (head + rest) + rest * y};
}
template <class V>
INLINE Pair<V> normalized(Pair<V> sum) {
  const V hi = sum.hi + sum.lo;
  return {hi, (sum.hi - hi) + sum.lo};
}

// ln(u.hi + u.lo) + extra ln 2.
template <class V>
INLINE V pairLn(Pair<V> u, V extra) {
  constexpr Float64 ln2Hi = fromBits(0x3fe62e42fefa3800), ln2Lo = fromBits(0x3d2ef35793c76730);
  constexpr Float64 c8 = fromBits(0xbfc000b405a2836d), c7 = fromBits(0x3fc249c02481059d), c6 = fromBits(0xbfc555555228b38f),
                    c5 = fromBits(0x3fc9999997b36c81), c4 = fromBits(0xbfd0000000000262), c3 = fromBits(0x3fd5555555555613),
                    c2 = fromBits(0xbfe0000000000000);
  const V m = withBits(u.hi, 0x000fffffffffffff, 0x4000000000000000);
  const V scale = andNot(u.hi, broadcast<V>(fromBits(0x7ff0000000000000)));
  const V ke = numbersOf<V>((highWords(u.hi) >> 20) - 1023) + extra;
  const auto index = lowWords(m + fromBits(0x42e0000000000040)) & 0x7f;
  const auto row = twoColumns<V>(lnTable64, index << 5);
  const V tl = oneColumn<V>(reinterpret_cast<const char*>(lnTable64) + 16, index << 5);
  const V H0 = ke * ln2Hi + row.second, L0 = ke * ln2Lo + tl;
  const V mh = (m + 4194304.0) - 4194304.0;
  const V g = ((m - mh) + u.lo * scale) * row.first, f1 = mh * row.first - 1.0;
  const V L1 = L0 + g, w = g + f1, H1 = f1 + H0;
  const V pl = ((((((c8 * w + c7) * w + c6) * w + c5) * w + c4) * w + c3) * w + c2) * w * w;
  return (pl + L1) + H1;
}

}  // namespace
}  // namespace qorvane
