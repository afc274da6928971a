// atan(x), level 5.
//
// Method: |x| falls into one of five intervals, each with a point c, and
//   atan|x| = atan c + atan u,  u = (|x| - c) / (1 + c |x|),
// in the uppermost pi/2 - atan(1 / |x|). The quotient is made in two parts without a division
// (atan_division.h); atan u is a polynomial, atan c stands in the table in two parts.
//
// Error: largest found 0.687 ulp, just below 7/16 (docs/accuracy.md has the arguments), in
// round-to-nearest; rounding mode, FTZ and DAZ are the caller's.
//
// Special values: infinities give +-pi/2, zeros themselves, a NaN itself, quiet.
#include "frame/kernel_frame.h"
#include "invtrig/inverse_constants.h"
#include "invtrig/paired_rows.h"

namespace qorvane {
namespace {

// (t - c) / (1 + c t) for t = ah + al, and -1 / t where `kept` is 0. Numerator and denominator are
// in two parts. All sums but those that give dh and dl are exact: c has two bits, ah 26, and terms of
// opposite signs are near each other.
template <class V>
INLINE Fraction<V> fraction(V ah, V al, V c, V kept) {
  const V n = kept * (ah - al) - c, nh = upperPart(n);
  const V p = c * al, d0 = kept + c * ah, dh = upperPart(d0 + p);
  return {nh, (n - nh) + (kept * al) * 2.0, dh, (d0 - dh) + p};
}

// The sum of what atan u and the interval's point give, the smallest first.
template <class V>
INLINE V sum(V rest, V uh, V t, V hi) {
  return ((rest + t) + uh) + hi;
}

// The byte offset of the row in atanRows for a high word.
INLINE int rowOf(int high) {
  return (4 - (high > 0x3fdc0000) - (high > 0x3fe60000) - (high > 0x3ff30000) - (high > 0x40038000)) << 5;
}
INLINE Words4 rowOf(Words4 high) {
  return ((high > 0x3fdc0000) + (high > 0x3fe60000) + (high > 0x3ff30000) + (high > 0x40038000) + 4) << 5;
}
template <int K>
INLINE Pack<Words4, K> rowOf(Pack<Words4, K> high) {
  return makePack<K>([&](int i) INLINED { return rowOf(high.part[i]); });
}

template <class V>
INLINE V core(V x) {
  const V a = magnitude(x), ah = upperPart(a);
  const auto [c, mask, hi, lo] = columns<4, V>(atanRows, rowOf(highWords(a))).of;
  const auto [nh, nl, dh, dl] = fraction(ah, a - ah, c, andBits(broadcast<V>(1.0), mask));
  const auto [uh, ul] = quotient(nh, nl, dh, dl);
  const V u = ul + uh;
  return orBits(sum(atanSeries(u) * u, uh, ul + lo, hi), signOf(x));
}

template <class V>
INLINE bool isFlagged(V x) {
  return any(outsideQuotients(highWords(magnitude(x))));
}

// For what is flagged, and only there: zeros, infinities, NaNs, magnitudes that atan doesn't change
// or whose atan is pi/2.
Element atanSpecialLane(Float64 x) {
  if (x != x) return {x + x};
  const Float64 a = magnitude(x);
  if (a > 1.0) return {orBits(opaque(halfPi) + halfPiLo, signOf(x))};
  const bool isSubnormal = highWord(a) < 0x00100000;
  return {orBits(isSubnormal ? a * a + a : (opaque(1.0) + a) * a, signOf(x))};
}

constexpr PairedRows rows = pairRows([](Float64 c, bool isLast) { return PointAndKept{c, isLast ? 0.0 : 1.0}; });

// The offsets of rows, and whether all numbers are from 2^-495 up to 2^113. In between they are ordered
// without bit 29 of the high words, too, and no word is a NaN then.
INLINE bool findRows(const Float64* src, int64_t count, RowOffsets& offsets) {
  HighWordRange range = emptyRange();
  eachEight(count, [&](int64_t i, int64_t k) INLINED {
    constexpr int orderedBits = 0x5fffffff, bounds[] = {0x3fdc0000, 0x3fe60000, 0x3ff30000, 0x40038000};
    const __m256 words = eightHighWords(src, i, k), t = _mm256_and_ps(words, singlesOf(orderedBits));
    take(range, words);
    storeOffsets(offsets.of + i, [&](int bound) INLINED {
      return _mm256_cmp_ps(singlesOf(bounds[bound] & orderedBits), t, _CMP_LT_OQ);
    });
  });
  return isWithin(range, 0x21000000, 0x47000000);
}

constexpr auto stretch = [](int64_t count, const Float64* src, Float64* dst) {
  RowOffsets offsets;
  if (!findRows(src, count, offsets)) return false;
  Stages s;
  beginQuotients(s, count, rows, offsets, [&]<class V>(V, int64_t i, V c, V kept) INLINED {
    const V a = magnitude(load<V>(src + i)), ah = upperPart(a), al = a - ah;
    return fractionInStretch(kept * ah - c, kept * al, kept + c * ah, c * al);
  });
  divide(s, count);
  beginSeries(s, count);
  eachGroupInTwo<Group, Four>(
      count, [&]<class V>(V, int64_t i) INLINED { return seriesAt<V>(s, i); },
      [&]<class V>(V, int64_t i, V series) INLINED {
        const V rest = series * load<V>(s.u + i);
        const V v = sum(rest, load<V>(s.uh() + i), load<V>(s.ul() + i), load<V>(s.hi + i));
        store(dst + i, orBits(v, signOf(load<V>(src + i))));
      });
  return true;
};

constexpr auto flagged = [](auto x) INLINED { return isFlagged(x); };
INLINE Element lane(Float64 x) { return flagged(x) ? atanSpecialLane(x) : Element{core(x)}; }

constexpr auto blocks = [](int64_t count, const Float64* src, Float64* dst) {
  return guardedUnaryLoop<Pack<Lanes4, 2>, Raises::yes>(
      src, dst, count, [](auto x) INLINED { return core(x); }, flagged, [](Float64 x) { return lane(x); });
};

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  if (len == 1) return *dst = lane(*src).value, nuvStatusOk;
  return shortOrLongLoop<longestStretch, shortestStretch, vector>(len, stretch, blocks, src, dst);
}

}  // namespace

nuvStatus atanAvx(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, loop>(len, src, dst);
}

}  // namespace qorvane
