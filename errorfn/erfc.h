// What the levels of Erfc share: the rows, the arithmetic and the special arguments. All levels
// give the same bits.
//
// Method: with a = |x|, erfc(a) = g(a) exp(-a^2), and erfc(-a) = 2 - erfc(a). g(a) = exp(a^2)
// erfc(a) is a polynomial in the distance t from the lower end of a's row, four rows a binade,
// summed as head + rest. -a^2 = th + tl, the square of the upper half of a and the remainder; 128
// th / ln 2 = k + rest with the integer k = 128 m + j, so that exp(-a^2) = 2^m * 2^(j/128) *
// exp(r); 2^(j/128) comes from a table as Th + Tl, exp(r) - 1 is its Taylor polynomial. Heads have
// so few bits that their products are exact.
#pragma once
#include "errorfn/rows.h"
#include "frame/element.h"

namespace qorvane {
namespace {

#include "errorfn/erfc_tables.inc"

constexpr Float64 erfcInvLn2By128 = fromBits(0x40671547652b82fe);  // 184.6649652337873 = 128 / ln 2
constexpr Float64 erfcShifter = fromBits(0x4338000000000000);      // 1.5 * 2^52
constexpr Float64 erfcLn2By128Hi = fromBits(0x3f762e4300000000);   // 0.0054152123630046844: k * erfcLn2By128Hi is exact
constexpr Float64 erfcLn2By128Lo =
    fromBits(0xbdb05c610ca86c39);  // -1.4880111718420063e-11: ln 2 / 128 - erfcLn2By128Hi
constexpr Float64 erfcHead = fromBits(0xfffffffff8000000);
constexpr Float64 erfcExp4 = fromBits(0x3f81111111111111), erfcExp3 = fromBits(0x3fa5555555555555);  // 1/120, 1/24
constexpr Float64 erfcExp2 = fromBits(0x3fc5555555555555);                                           // 1/6

// |x| from 26.54 up, infinities and NaNs: positive ones have subnormal results or none.
constexpr int erfcFlaggedHighWord = 0x403a8b12;

// The constants of the arithmetic in every lane of V; all(c) is V with c everywhere.
template <class V>
struct ErfcConstants {
  V head, sign, invLn2By128, shifter, ln2By128Hi, ln2By128Lo, exp4, exp3, exp2, half, one;
};
template <class V, class All>
INLINE constexpr ErfcConstants<V> erfcConstants(All all) {
  return {all(erfcHead),
          all(-0.0),
          all(erfcInvLn2By128),
          all(erfcShifter),
          all(erfcLn2By128Hi),
          all(erfcLn2By128Lo),
          all(erfcExp4),
          all(erfcExp3),
          all(erfcExp2),
          all(0.5),
          all(1.0)};
}
template <class V>
INLINE ErfcConstants<V> erfcConstants() {
  return erfcConstants<V>([](Float64 c) INLINED { return broadcast<V>(c); });
}

// Rows begin at multiples of a quarter binade, the second one at row1.
constexpr Float64 erfcRowBits = fromBits(0x7ffc000000000000), erfcRow1 = 0.25;
constexpr int erfcWordBelowRow1 = 0x3fcc0000;
constexpr int erfcRowShift = 11;  // high words are 2^18 apart, rows 2^7 bytes

// The row of a >= 0 and the distance from its lower end.
template <class V>
struct ErfcArgument {
  V t;
  WordsOf<V> offset;
};
template <class V>
INLINE ErfcArgument<V> erfcArgument(V a) {
  const V belowRow1 = broadcast<V>(fromBits(uint64_t{erfcWordBelowRow1} << 32));
  const V row = andBits(largerLanes(a, belowRow1), broadcast<V>(erfcRowBits));
  return {a - withoutBits(row, lessLanes(a, broadcast<V>(erfcRow1))),
          (highWords(row) - erfcWordBelowRow1) >> erfcRowShift};
}

// -a^2 = k ln 2 / 128 + r; k is shifted - erfcShifter.
template <class V>
struct ErfcExponent {
  V shifted, k, r;
};
template <class V>
INLINE ErfcExponent<V> erfcExponent(V a, const ErfcConstants<V>& c) {
  const V xh = andBits(a, c.head), minusXh = xorBits(xh, c.sign), xl = a - xh;
  const V square = xh * minusXh;
  const V low = (broadcast<V>(2.0) * (minusXh * xl)) - (xl * xl);
  const V th = andBits(square, c.head), tl = (square - th) + low;
  const V shifted = (th * c.invLn2By128) + c.shifter, k = shifted - c.shifter;
  return {shifted, k, ((th - (c.ln2By128Hi * k)) - (c.ln2By128Lo * k)) + tl};
}

// exp(r) = 1 + e. 2^(j/128) exp(r) = Th + e.
template <class V>
INLINE V erfcExpRest(V r, TwoColumns<V> power, const ErfcConstants<V>& c) {
  const V p = ((((c.exp4 * r + c.exp3) * r + c.exp2) * r + c.half) * r + c.one) * r;
  return p * (power.first + power.second) + power.second;
}

// g(a) in three stages, the last one giving it as head + rest.
template <class V, class R>
INLINE V erfcHighTerms(V t, R rows) {
  const auto s14 = slots<V>(rows, 14), s12 = slots<V>(rows, 12), s10 = slots<V>(rows, 10);
  return ((((s14.second * t + s14.first) * t + s12.second) * t + s12.first) * t + s10.second) * t + s10.first;
}
template <class V, class R>
INLINE V erfcMiddleTerms(V q, V t, R rows) {
  const auto s8 = slots<V>(rows, 8), s6 = slots<V>(rows, 6), s4 = slots<V>(rows, 4);
  q = (((q * t + s8.second) * t + s8.first) * t + s6.second) * t + s6.first;
  return ((q * t + s4.second) * t + s4.first) * t;
}
template <class V>
struct HeadAndRest {
  V head, rest;
};
template <class V, class R>
INLINE HeadAndRest<V> erfcScaled(V q, V t, R rows, const ErfcConstants<V>& c) {
  const auto s2 = slots<V>(rows, 2), s0 = slots<V>(rows, 0);
  // The slope s is less than that at the centre, as t >= 0: what its sum lost is q - (s - s3). The
  // same goes for the value y.
  const V s = s2.second + q, slopeLow = (q - (s - s2.second)) + s2.first;
  const V sh = andBits(s, c.head), sl = slopeLow + (s - sh), th = andBits(t, c.head), tl = t - th;
  const V low = ((sl * tl) + (tl * sh)) + (th * sl), product = sh * th;
  const V y = s0.second + product, yh = andBits(y, c.head);
  return {yh, (((product - (y - s0.second)) + low) + s0.first) + (y - yh)};
}

// g(a) * 2^(j/128) exp(r), as head + rest.
template <class V>
INLINE HeadAndRest<V> erfcProduct(HeadAndRest<V> g, V e, V th) {
  return {g.head * th, ((g.rest * e) + (g.head * e)) + (g.rest * th)};
}

// All of these for a >= 0: erfc(a) but for the factor 2^m, and the exponent's `shifted`.
template <class V>
struct ErfcUnscaled {
  HeadAndRest<V> product;
  V shifted;
};
template <class V>
INLINE ErfcUnscaled<V> erfcUnscaled(V a) {
  const auto c = erfcConstants<V>();
  const auto argument = erfcArgument(a);
  const auto exponent = erfcExponent(a, c);
  alignas(16) int offsets[laneCount<Four>];
  storeWords(offsets, argument.offset);
  const Rows rows = {erfcRows, offsets};
  const auto power = twoColumns<V>(erfcExpTable, (lowWords(exponent.shifted) & 127) << 4);
  const V t = argument.t, q = erfcMiddleTerms(erfcHighTerms(t, rows), t, rows);
  return {erfcProduct(erfcScaled(q, t, rows, c), erfcExpRest(exponent.r, power, c), power.first), exponent.shifted};
}

// The result, `scale` being 2^m with the sign of x: the product for x >= 0, 2 minus it for x < 0.
template <class V>
INLINE V erfcSum(V two, HeadAndRest<V> product, V scale) {
  const V u = product.head * scale, sum = two + u;
  return (((two - sum) + u) + (product.rest * scale)) + sum;
}
template <class V>
INLINE V erfcResult(HeadAndRest<V> product, V scale, V x) {
  const V one = broadcast<V>(1.0), two = one - orBits(one, signOf(x));  // 2 or +0
  return erfcSum(two, product, scale);
}

// Flagged arguments, by their high words alone.
[[gnu::noinline, gnu::cold]] Element erfcSpecialLane(Float64 x) {
  constexpr uint32_t lastHighWord = 0x403b39dc;
  constexpr Float64 lastNonZero = fromBits(0x403b39dc41e48bfc);  // 27.226017111108362: above it the result rounds to +0
  const uint32_t word = highWord(x), magnitudeWord = word & 0x7fffffff;
  if (magnitudeWord > 0x7ff00000) return {x * x};
  if (word != magnitudeWord) return {2.0};
  const nuvStatus status = word < 0x7ff00000 && toBits(x) > toBits(lastNonZero) ? nuvStatusUnderflow : nuvStatusOk;
  if (word > lastHighWord) return {0.0, status};

  // A subnormal result, or nearly so: the product as one number times 2^m, so that it rounds but
  // once more. 2^m is subnormal itself and comes out of 2^(m + 154).
  const auto [product, shifted] = erfcUnscaled(broadcast<Lanes2>(x));
  const uint64_t m = toBits(shifted[0]) << 45 & 0xfff0000000000000;
  const Float64 scale = fromBits(m + toBits(0x1p154)) * 0x1p-154;
  return {(product.rest[0] + product.head[0]) * scale, status};
}

constexpr auto erfcIsFlagged = [](auto x) INLINED { return anyMagnitudeFrom(x, erfcFlaggedHighWord); };

template <class V>
INLINE V erfcCore(V x) {
  const V a = magnitude(x);
  const auto [product, shifted] = erfcUnscaled(andBits(a, highWordWithin(a, 0, erfcFlaggedHighWord)));
  const V scale = fromHighWords<V>(((lowWords(shifted) + 1023 * 128) << 13) & 0x7ff00000);
  return erfcResult(product, orBits(scale, signOf(x)), x);
}

}  // namespace
}  // namespace qorvane
