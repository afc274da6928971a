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
#include "invtrig/atan_stages.h"
#include "invtrig/inverse_constants.h"
#include "invtrig/masks_avx.h"

namespace qorvane {
namespace {

#include "invtrig/atan_tables.inc"

// (t - c) / (1 + c t) for t = ah + al, and -1 / t where `kept` is 0. Numerator and denominator are
// in two parts. All sums but those that give dh and dl are exact: c has two bits, ah 26, and terms of
// opposite signs are near each other.
template <class V>
struct Fraction {
  V nh, nl, dh, dl;
};
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

// The row of a number t, cut to its high word, in atanSixteenths: the sum of t and this has four times
// its number in byte 3, with two bits of the fraction. The sum's unit is 2^-30, so that it is exact
// where it matters. What is exactly on a bound belongs to the row below it.
constexpr Float64 keyShifter = 0x1.8p22 + 0x1p-4 - 0x1p-24;
constexpr Float64 lastKey = 2.5;

// Numbers from 2^-1020 up to 2^126.
constexpr auto stretch = [](int64_t count, const Float64* src, Float64* dst) {
  if (!allHighWordsWithin(src, count, 0x00300000, 0x47d00000)) return false;
  alignas(32) Column hi;
  Stages s;
  Float64* const keys = s.u;  // until the quotients come
  eachGroup(count, [&]<class V>(V, int64_t i) INLINED {
    const V cut = andBits(load<V>(src + i), broadcast<V>(fromBits(0x7fffffff00000000)));
    const V key = smallerLanes(cut, broadcast<V>(lastKey)) + keyShifter;
    store(keys + i, andBits(key, broadcast<V>(fromBits(0xfffffffffc000000))));
  });
  eachGroup(count, [&]<class V>(V, int64_t i) INLINED {
    const auto rows = [&](int lane)
                          INLINED { return uint64_t{8} * reinterpret_cast<const unsigned char*>(keys + i + lane)[3]; };
    const V a = magnitude(load<V>(src + i)), ah = upperPart(a);
    const auto [c, kept, ofHi, ofLo] = columns<4, V>(atanSixteenths, rows).of;
    store(hi + i, ofHi), store(s.lo + i, ofLo);
    const auto [nh, nl, dh, dl] = fraction(ah, a - ah, c, kept);
    store(s.nh + i, nh), store(s.nl + i, nl), store(s.dh + i, dh), store(s.dl + i, dl);
  });
  divide(s, count);
  beginSeries(s, count);
  eachGroup(count, [&]<class V>(V, int64_t i) INLINED {
    const V v = sum(seriesAt<V>(s, i), load<V>(s.uh() + i), load<V>(s.ul() + i), load<V>(hi + i));
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
