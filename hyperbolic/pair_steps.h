// What asinh and acosh share where they work in pairs of numbers, hi + lo with lo small beside hi:
// the choices between lanes, the columns of tables, the square root and the logarithm of a pair.
#pragma once
#include "frame/lanes.h"
#include "hyperbolic/pair_tables.h"

namespace qorvane {
namespace {

template <class V>
struct Pair {
  V hi, lo;
};

// Lanes where a > b, as masks of ones and zeros.
INLINE Float64 isAbove(Float64 a, Float64 b) { return fromBits(a > b ? ~uint64_t{0} : 0); }
INLINE Lanes2 isAbove(Lanes2 a, Lanes2 b) { return _mm_cmpgt_pd(a, b); }
// a where the mask has ones, b where it has zeros.
INLINE Float64 select(Float64 mask, Float64 a, Float64 b) { return toBits(mask) != 0 ? a : b; }
INLINE Lanes2 select(Lanes2 mask, Lanes2 a, Lanes2 b) {
  return _mm_or_pd(_mm_and_pd(mask, a), _mm_andnot_pd(mask, b));
}
// The smaller one; b where a is a NaN.
INLINE Float64 smaller(Float64 a, Float64 b) { return a < b ? a : b; }
INLINE Lanes2 smaller(Lanes2 a, Lanes2 b) { return _mm_min_pd(a, b); }
// The bits of b that a hasn't.
INLINE Float64 andNot(Float64 a, Float64 b) { return fromBits(~toBits(a) & toBits(b)); }
INLINE Lanes2 andNot(Lanes2 a, Lanes2 b) { return _mm_andnot_pd(a, b); }
INLINE Lanes2 exclusiveOr(Lanes2 a, Lanes2 b) { return _mm_xor_pd(a, b); }
INLINE Float64 exclusiveOr(Float64 a, Float64 b) { return fromBits(toBits(a) ^ toBits(b)); }
#ifdef __AVX__
INLINE Lanes4 isAbove(Lanes4 a, Lanes4 b) { return _mm256_cmp_pd(a, b, _CMP_GT_OQ); }
INLINE Lanes4 select(Lanes4 mask, Lanes4 a, Lanes4 b) { return _mm256_blendv_pd(b, a, mask); }
INLINE Lanes4 smaller(Lanes4 a, Lanes4 b) { return _mm256_min_pd(a, b); }
INLINE Lanes4 andNot(Lanes4 a, Lanes4 b) { return _mm256_andnot_pd(a, b); }
INLINE Lanes4 exclusiveOr(Lanes4 a, Lanes4 b) { return _mm256_xor_pd(a, b); }
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
template <class V, int K>
INLINE Pack<V, K> andNot(Pack<V, K> a, Pack<V, K> b) {
  return makePack<K>([&](int i) INLINED { return andNot(a.part[i], b.part[i]); });
}
template <class V, int K>
INLINE Pack<V, K> exclusiveOr(Pack<V, K> a, Pack<V, K> b) {
  return makePack<K>([&](int i) INLINED { return exclusiveOr(a.part[i], b.part[i]); });
}
// x with the bits under `kept`, and with the bits of `set`.
template <class V>
INLINE V masked(V x, uint64_t kept) {
  return andBits(x, broadcast<V>(fromBits(kept)));
}
template <class V>
INLINE V withExponent(V x, uint64_t set) {
  return orBits(masked(x, 0x000fffffffffffff), broadcast<V>(fromBits(set)));
}

// Columns of a table; at(lane) is the address of a lane's row, or of its number. Rows are 16-byte
// aligned.
template <class V, class At>
INLINE V oneColumnAt(At at) {
  if constexpr (isPack<V>) {
    constexpr int lanes = laneCount<PartOf<V>>;
    return makePack<packSize<V>>(
        [&](int i) INLINED { return oneColumnAt<PartOf<V>>([&](int lane) INLINED { return at(i * lanes + lane); }); });
  } else if constexpr (laneCount<V> == 1) {
    return *at(0);
  } else {
    const Lanes2 low = _mm_loadh_pd(_mm_load_sd(at(0)), at(1));
    if constexpr (laneCount<V> == 2) return low;
#ifdef __AVX__
    if constexpr (laneCount<V> == 4)
      return _mm256_insertf128_pd(_mm256_castpd128_pd256(low), _mm_loadh_pd(_mm_load_sd(at(2)), at(3)), 1);
#endif
  }
}
template <class V, class At>
INLINE TwoColumns<V> twoColumnsAt(At at) {
  if constexpr (isPack<V>) {
    constexpr int lanes = laneCount<PartOf<V>>;
    const auto columns = makePack<packSize<V>>(
        [&](int i) INLINED { return twoColumnsAt<PartOf<V>>([&](int lane) INLINED { return at(i * lanes + lane); }); });
    return {makePack<packSize<V>>([&](int i) INLINED { return columns.part[i].first; }),
            makePack<packSize<V>>([&](int i) INLINED { return columns.part[i].second; })};
  } else if constexpr (laneCount<V> == 1) {
    return {at(0)[0], at(0)[1]};
  } else {
    const __m128d row0 = _mm_load_pd(at(0)), row1 = _mm_load_pd(at(1));
    if constexpr (laneCount<V> == 2) return {_mm_unpacklo_pd(row0, row1), _mm_unpackhi_pd(row0, row1)};
#ifdef __AVX__
    if constexpr (laneCount<V> == 4) return transposeRows(row0, row1, _mm_load_pd(at(2)), _mm_load_pd(at(3)));
#endif
  }
}

// Words as numbers.
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

// Keys are numbers whose lowest 16 bits are an integer, an index with a constant beside it. They
// are taken from memory, which leaves the vector units alone.
struct Keys {
  const Float64* keys;
  INLINE uint64_t operator[](int lane) const {
    uint16_t low;
    __builtin_memcpy(&low, keys + lane, sizeof low);
    return low;
  }
};
template <class V>
struct KeysOf {
  alignas(32) Float64 lane[laneCount<V>];
  INLINE KeysOf(V keys) { store(lane, keys); }
  INLINE uint64_t operator[](int i) const { return Keys{lane}[i]; }
};
template <>
struct KeysOf<Float64> {
  Float64 key;
  INLINE KeysOf(Float64 k) : key(k) {}
  INLINE uint64_t operator[](int) const { return toBits(key) & 0xffff; }
};

// The square root of r = hi + lo with hi from 2^-52 to 2^57, a sum of two numbers: first + rest,
// where first is exact and good to 2^-10. The seed y approximates 1 / sqrt(hi) in 11 bits, so that
// the products y^2 * head and y * head are exact. Then sqrt(r) = r y (1 + e)^(-1/2) with the
// residual e = r y^2 - 1.

// The key of hi's place in the table of seeds: 512 + round(256 (v - 1)) where hi = v * 2^u with v
// in [1, 2), and 256 more where u is odd.
template <class V>
INLINE V seedKey(V hi) {
  const V half = exclusiveOr(masked(hi, 0x0010000000000000), broadcast<V>(1.0));  // 0.5, or 1.0 for odd u
  return withExponent(hi, 0x3fe0000000000000) + (half + fromBits(0x42a0000000000000));  // 2^43
}
template <class V, class K>
INLINE V seed(V hi, const K& keys) {
  const auto y = oneColumnAt<V>([&](int lane) INLINED { return sqrtSeedTable + keys[lane] - 512; });
  const auto floorOfHalf = ((highWords(hi) + 0x00100000) >> 1) & 0x7ff00000;
  return y * fromHighWords<V>(0x5ff00000 - floorOfHalf);
}

template <class V>
struct RootTerms {
  V residual, first, head, rest;
};
template <class V>
INLINE RootTerms<V> rootTerms(Pair<V> r, V y) {
  const V head = masked(r.hi, 0xffffffffffc00000), rest = (r.hi - head) + r.lo;
  const V y2 = y * y, e = y2 * rest + (head * y2 - 1.0);
  return {e, head * y, head + rest, rest * y};
}
template <class V>
INLINE V rootSeries(V e) {  // (1 + e)^(-1/2) - 1
  constexpr Float64 r7 = fromBits(0xbfcad00000000000), r6 = fromBits(0x3fcce00000000000),
                    r5 = fromBits(0xbfcf800000000000), r4 = fromBits(0x3fd1800000000000),
                    r3 = fromBits(0xbfd4000000000000), r2 = fromBits(0x3fd8000000000000),
                    r1 = fromBits(0xbfe0000000000000);
  return ((((((r7 * e + r6) * e + r5) * e + r4) * e + r3) * e + r2) * e + r1) * e;
}
template <class V>
INLINE Pair<V> normalized(Pair<V> sum) {
  const V hi = sum.hi + sum.lo;
  return {hi, (sum.hi - hi) + sum.lo};
}

// ln(u) + extra ln 2 for u = hi + lo from 1 up: with u = 2^k m and c, a short reciprocal near 1/m,
// it is (k + extra) ln 2 - ln(c) + ln(1 + w) and w = m c - 1.
template <class V>
INLINE V logKey(V hi) {  // 64 + 64 round(m - 1)
  return withExponent(hi, 0x4000000000000000) + fromBits(0x42e0000000000000);  // 2^47
}
template <class V>
struct LogTerms {
  V w, lo, hi;  // the logarithm is (series(w) + lo) + hi
};
template <class V>
INLINE V exponentOf(V x) {
  return numbersOf<V>((highWords(x) >> 20) - 1023);
}
template <class V, class K>
INLINE LogTerms<V> logTerms(Pair<V> u, V exponent, const K& keys) {
  constexpr Float64 ln2Hi = fromBits(0x3fe62e42fefa3800), ln2Lo = fromBits(0x3d2ef35793c76730);
  const auto rowAt = [&](int lane) INLINED { return lnTable64[keys[lane] - 64]; };
  const TwoColumns<V> row = twoColumnsAt<V>(rowAt);  // c/2, high part of -ln(c)
  const V rowLow = oneColumnAt<V>([&](int lane) INLINED { return rowAt(lane) + 2; });
  const V m = withExponent(u.hi, 0x4000000000000000), scale = andNot(u.hi, broadcast<V>(fromBits(0x7ff0000000000000)));
  const V mHead = (m + 4194304.0) - 4194304.0;
  const V g = ((m - mHead) + u.lo * scale) * row.first, f = mHead * row.first - 1.0;
  return {g + f, (exponent * ln2Lo + rowLow) + g, f + (exponent * ln2Hi + row.second)};
}
template <class V>
INLINE V logSeries(V w) {  // ln(1 + w) - w
  constexpr Float64 c8 = fromBits(0xbfc000b405a2836d), c7 = fromBits(0x3fc249c02481059d),
                    c6 = fromBits(0xbfc555555228b38f), c5 = fromBits(0x3fc9999997b36c81),
                    c4 = fromBits(0xbfd0000000000262), c3 = fromBits(0x3fd5555555555613),
                    c2 = fromBits(0xbfe0000000000000);
  return ((((((c8 * w + c7) * w + c6) * w + c5) * w + c4) * w + c3) * w + c2) * w * w;
}

// Both as one expression.
template <class V>
INLINE Pair<V> pairRoot(Pair<V> r) {
  const V y = seed(r.hi, KeysOf<V>(seedKey(r.hi)));
  const RootTerms<V> terms = rootTerms(r, y);
  return {terms.first, (rootSeries(terms.residual) * y) * terms.head + terms.rest};
}
template <class V>
INLINE V pairLog(Pair<V> u, V extra) {
  const LogTerms<V> terms = logTerms(u, exponentOf(u.hi) + extra, KeysOf<V>(logKey(u.hi)));
  return (logSeries(terms.w) + terms.lo) + terms.hi;
}

}  // namespace
}  // namespace qorvane
