// What ln and log10 share at levels 1 to 4: the test for arguments outside the fast range and their
// results, lane operations on packed high words, the terms before the polynomial, and the loop.
#pragma once
#include "frame/loops.h"

namespace qorvane {
namespace {

// words - k, modulo 2^32: words outside the fast range wrap.
INLINE int wrappingDifference(int word, uint32_t k) { return static_cast<int>(static_cast<uint32_t>(word) - k); }
INLINE Words4 wrappingDifference(Words4 words, uint32_t k) {
  using Unsigned4 [[gnu::vector_size(16)]] = unsigned;
  return reinterpret_cast<Words4>(reinterpret_cast<Unsigned4>(words) - k);
}
template <int K>
INLINE Pack<Words4, K> wrappingDifference(Pack<Words4, K> words, uint32_t k) {
  return makePack<K>([&](int i) INLINED { return wrappingDifference(words.part[i], k); });
}

// Whether any lane is anything but a positive normal finite number. The difference moves those
// numbers to the bottom of the signed range.
template <class V>
INLINE bool anyOutsideFastRange(V x) {
  return any(wrappingDifference(highWords(x), 0x80100000) > static_cast<int>(0xffdfffff));
}

INLINE bool isPositiveSubnormal(Float64 x) { return toBits(x) - 1 < 0x000fffffffffffff; }

// Everything but positive finite numbers. The results are constants or the argument itself: no flag
// is raised.
INLINE nuvStatus fixFault(Float64 x, Float64* result) {
  constexpr uint64_t infinity = 0x7ff0000000000000, sign = uint64_t{1} << 63;
  const auto give = [&](uint64_t pattern, nuvStatus status) { return *result = fromBits(pattern), status; };
  const uint64_t b = toBits(x), magnitude = b & ~sign;
  if (magnitude > infinity || b == infinity) return give(b, nuvStatusOk);
  if (magnitude == 0) return give(sign | infinity, nuvStatusPole);
  return give(0xfff8000000000000, nuvStatusOutOfDomain);
}

// The bits of x under the mask, with the exponent of 1.
template <class V>
INLINE V significand(V x, uint64_t mask) {
  return valueOf<V>((bitsOf(x) & mask) | uint64_t{0x3ff0000000000000});
}

// The two words for part i of a pack of Lanes2, brought to the lower half.
template <int K>
INLINE Words4 wordsOfPart(Pack<Words4, K> words, int i) {
  const Words4 four = words.part[i / 2];
  return i % 2 == 0 ? four : reinterpret_cast<Words4>(_mm_shuffle_epi32(reinterpret_cast<__m128i>(four), 0xee));
}

// Integers, packed as highWords packs them, as numbers.
template <class V, class W>
INLINE V numbersOf(W words) {
  if constexpr (isPack<V>)
    return makePack<packSize<V>>([&](int i) INLINED { return numbersOf<PartOf<V>>(wordsOfPart(words, i)); });
  else if constexpr (laneCount<V> == 1)
    return words;
  else
    return _mm_cvtepi32_pd(reinterpret_cast<__m128i>(words));
}

// Two lanes' non-negative words as one 64-bit integer: one move to the integer registers for two
// addresses.
INLINE uint64_t pairOf(Words4 words) { return reinterpret_cast<Bits2>(words)[0]; }

// One column, of rows numbered likewise.
template <class V, class W>
INLINE V columnAt(const Float64* table, W rows) {
  if constexpr (isPack<V>)
    return makePack<packSize<V>>([&](int i) INLINED { return columnAt<PartOf<V>>(table, wordsOfPart(rows, i)); });
  else if constexpr (laneCount<V> == 1)
    return table[rows];
  else
    return Lanes2{table[static_cast<uint32_t>(pairOf(rows))], table[pairOf(rows) >> 32]};
}

// Two columns.
template <class V, class W>
INLINE TwoColumns<V> twoColumnsAt(const Float64 (*table)[2], W rows) {
  if constexpr (isPack<V>) {
    const auto columns =
        makePack<packSize<V>>([&](int i) INLINED { return twoColumnsAt<PartOf<V>>(table, wordsOfPart(rows, i)); });
    return {makePack<packSize<V>>([&](int i) INLINED { return columns.part[i].first; }),
            makePack<packSize<V>>([&](int i) INLINED { return columns.part[i].second; })};
  } else if constexpr (laneCount<V> == 1) {
    return {table[rows][0], table[rows][1]};
  } else {
    const Lanes2 row0 = _mm_load_pd(table[static_cast<uint32_t>(pairOf(rows))]),
                 row1 = _mm_load_pd(table[pairOf(rows) >> 32]);
    return {_mm_unpacklo_pd(row0, row1), _mm_unpackhi_pd(row0, row1)};
  }
}

// v in two: in the lanes where c is zero, and in the others; the rest is +0.
template <class V>
struct Split {
  V atZero, elsewhere;
};
INLINE Split<Float64> splitAtZero(Float64 c, Float64 v) { return c == 0 ? Split<Float64>{v, 0} : Split<Float64>{0, v}; }
INLINE Split<Lanes2> splitAtZero(Lanes2 c, Lanes2 v) {
  const __m128d isZero = _mm_cmpeq_pd(c, _mm_setzero_pd());
  return {_mm_and_pd(isZero, v), _mm_andnot_pd(isZero, v)};
}
template <class V, int K>
INLINE Split<Pack<V, K>> splitAtZero(Pack<V, K> c, Pack<V, K> v) {
  const auto parts = makePack<K>([&](int i) INLINED { return splitAtZero(c.part[i], v.part[i]); });
  return {makePack<K>([&](int i) INLINED { return parts.part[i].atZero; }),
          makePack<K>([&](int i) INLINED { return parts.part[i].elsewhere; })};
}

// What a logarithm is summed up from: rest + T, where rest still lacks r times a polynomial in r.
template <class V>
struct LeadingTerms {
  V r, low, T;  // T: the leading terms; low: the low parts, to be added after the polynomial
  V elsewhere;
};

// From k and the mantissa f, its upper part fh and the row's reciprocal and logarithm; f *
// reciprocal - scale is r, and k * (unitHi + unitLo) the exponent's term.
template <class V>
INLINE LeadingTerms<V> leadingTerms(V k, V f, V fh, V reciprocal, TwoColumns<V> row, Float64 scale, Float64 unitHi,
                                    Float64 unitLo) {
  const V fl = f - fh;
  const V uh = (fh * reciprocal) - scale, ul = fl * reciprocal, r = ul + uh;
  const V A = (unitHi * k) + row.first, C = (unitLo * k) + row.second;
  // With C = 0, near 1, A is 0 too and ul belongs to the leading term; elsewhere it would be lost
  // in T and joins the low terms.
  const auto [nearOne, elsewhere] = splitAtZero(C, ul);
  return {r, C, (uh + A) + nearOne, elsewhere};
}

// The logarithm in two parts, with its polynomial p.
template <class V>
struct TwoTerms {
  V rest, T;
};
template <class V>
INLINE TwoTerms<V> withPolynomial(LeadingTerms<V> t, V p) {
  return {((t.r * p) + t.low) + t.elsewhere, t.T};
}

// core(V x) -> TwoTerms<V>; fix(Float64 x, Float64* y) -> status, for an element outside the fast
// range.
template <class CoreFunction, class Fix>
INLINE nuvStatus logLoop(const Float64* src, Float64* dst, int64_t len, CoreFunction core, Fix fix) {
  return unaryLoop<Pack<Lanes2, 4>, Raises::no>(
      src, dst, len,
      [=](auto x) INLINED {
        const auto c = core(x);
        return c.rest + c.T;
      },
      [](auto x) INLINED { return anyOutsideFastRange(x); }, fix);
}

// The positive subnormal numbers go through the same core, times 2^52; logOf2To52 is what that
// adds.
template <class CoreFunction>
INLINE nuvStatus fixLane(Float64 x, Float64* result, CoreFunction core, Float64 logOf2To52) {
  if (!isPositiveSubnormal(x)) return fixFault(x, result);
  const TwoTerms<Float64> c = core(x * 0x1p52);
  *result = (c.rest - logOf2To52) + c.T;
  return nuvStatusOk;
}

}  // namespace
}  // namespace qorvane
