// The arithmetic of atan2(y, x), in lanes of any kind, for ordinary arguments.
//
// With a = |y| and b = |x| the ratio t = a / b isn't formed: an interval of t, found by comparing a
// with multiples of b, has a point c with atan t = atan c + atan u and
//   u = (a - c b) / (b + c a),   for the largest t: atan t = pi/2 + atan(-b / a).
// Numerator and denominator are in two parts, and u too: its quotient comes from the processor's
// approximation y of the reciprocal of the denominator and the series of 1 / (1 + e). Stretches go
// through the stages of atan_stages.h.
#pragma once
#include "invtrig/atan_stages.h"
#include "invtrig/inverse_constants.h"

namespace qorvane {
namespace {

// Of a lane's interval: c, what is added last to atan u, atan c in two parts; kept(v) is v, or zero
// for the largest t.
template <class V, class Kept>
struct Interval {
  V c, hi, lo;
  Kept kept;
};

// v where x is negative, zero elsewhere; x isn't zero or a NaN.
template <class V>
INLINE V whereNegative(V x, V v) {
  return andBits(lessLanes(x, broadcast<V>(0.0)), v);
}

template <class V>
struct Fraction {
  V nh, nl, d, dl;  // numerator; denominator d, cut to its upper part, and dl
};
template <class V, class Kept>
INLINE Fraction<V> fraction(V a, V b, const Interval<V, Kept>& interval) {
  const V c = interval.c;
  const auto kept = interval.kept;
  const V ah = upperPart(a), al = a - ah, bh = upperPart(b), bl = b - bh;
  const V n0 = kept(ah) - c * bh, n1 = kept(al) - c * bl, n = n0 - n1, nh = upperPart(n);
  const V d0 = kept(bh) + c * ah, d1 = kept(bl) + c * al, d = d0 + d1;
  return {nh, (n - nh) + (n1 - (n - n0)), d, (d1 + (d0 - d)) + (d - upperPart(d))};
}

// The angle, from u in two parts and rest = atan(u) - u.
template <class V>
INLINE V sum(V y, V x, V rest, V uh, V ul, V hi, V lo) {
  constexpr Float64 restOfPi = fromBits(0x3ca1a64000000000);  // 1.2246741164581576e-16: pi - RN(pi), cut
  const V t = (ul + lo) + whereNegative(x, broadcast<V>(-restOfPi));
  const V v = ((rest + t) + uh) + hi;
  return orBits(xorBits(v, signOf(x)) + whereNegative(x, broadcast<V>(pi)), signOf(y));
}

template <class V, class IntervalOf>
INLINE V atan2Core(V y, V x, IntervalOf intervalOf) {
  const V a = magnitude(y), b = magnitude(x);
  const auto interval = intervalOf(a, b);
  const auto [nh, nl, d, dl] = fraction(a, b, interval);
  const auto [uh, ul] = quotient(nh, nl, upperPart(d), dl);
  const V u = ul + uh;
  return sum(y, x, atanSeries(u) * u, uh, ul, interval.hi, interval.lo);
}

// The same for a stretch whose numbers and their reciprocals single precision can hold.
template <class IntervalOf>
INLINE void atan2Stages(int64_t count, const Float64* srcA, const Float64* srcB, Float64* dst, IntervalOf intervalOf) {
  alignas(32) Column his, los;
  Stages s;
  eachVector(count, [&](int64_t i) INLINED {
    const Four a = magnitude(load<Four>(srcA + i)), b = magnitude(load<Four>(srcB + i));
    const auto interval = intervalOf(a, b);
    store(his + i, interval.hi), store(los + i, interval.lo);
    const auto [nh, nl, d, dl] = fraction(a, b, interval);
    store(s.nh + i, nh), store(s.nl + i, nl), store(s.d + i, d), store(s.dl + i, dl);
  });
  divide(s, count);
  beginSeries(s, count);
  eachVector(count, [&](int64_t i) INLINED {
    const Four y = load<Four>(srcA + i), x = load<Four>(srcB + i), hi = load<Four>(his + i), lo = load<Four>(los + i);
    store(dst + i, sum(y, x, seriesAt(s, i), load<Four>(s.uh() + i), load<Four>(s.ul() + i), hi, lo));
  });
}

}  // namespace
}  // namespace qorvane
