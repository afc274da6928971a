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

// Of a lane's interval: c, the mask of what is kept, none for the largest t, and what is added last
// to atan u, atan c in two parts.
template <class V>
struct Interval {
  V c, kept, hi, lo;
};

// v where x is negative, zero elsewhere; x isn't zero or a NaN.
template <class V>
INLINE V whereNegative(V x, V v) {
  return andBits(lessLanes(x, broadcast<V>(0.0)), v);
}

template <class V>
INLINE Fraction<V> fraction(V a, V b, V c, V mask) {
  const auto kept = [mask](V v) INLINED { return andBits(v, mask); };
  const V ah = upperPart(a), al = a - ah, bh = upperPart(b), bl = b - bh;
  const V n0 = kept(ah) - c * bh, n1 = kept(al) - c * bl, n = n0 - n1, nh = upperPart(n);
  const V d0 = kept(bh) + c * ah, d1 = kept(bl) + c * al, d = d0 + d1, dh = upperPart(d);
  return {nh, (n - nh) + (n1 - (n - n0)), dh, (d1 + (d0 - d)) + (d - dh)};
}

constexpr Float64 restOfPi = fromBits(0x3ca1a64000000000);  // 1.2246741164581576e-16: pi - RN(pi), cut

// The angle, from u in two parts, low being ul + lo, and rest = atan(u) - u.
template <class V>
INLINE V sum(V y, V x, V rest, V uh, V low, V hi) {
  const V t = low + whereNegative(x, broadcast<V>(-restOfPi));
  const V v = ((rest + t) + uh) + hi;
  return orBits(xorBits(v, signOf(x)) + whereNegative(x, broadcast<V>(pi)), signOf(y));
}

// The same for a result that isn't subnormal: fewer operations with 256 bits, where the sign bits of x
// select.
template <class V>
INLINE V sumInStretch(V y, V x, V rest, V uh, V low, V hi) {
  if constexpr (laneCount<PartOf<V>> == 4) {
    const V t = select(x, low - restOfPi, low), v = ((rest + t) + uh) + hi;
    return orBits(select(x, pi - v, v), signOf(y));
  } else {
    return sum(y, x, rest, uh, low, hi);
  }
}

template <class V, class IntervalOf>
INLINE V atan2Core(V y, V x, IntervalOf intervalOf) {
  const V a = magnitude(y), b = magnitude(x);
  const auto interval = intervalOf(a, b);
  const auto [nh, nl, dh, dl] = fraction(a, b, interval.c, interval.kept);
  const auto [uh, ul] = quotient(nh, nl, dh, dl);
  const V u = ul + uh;
  return sum(y, x, atanSeries(u) * u, uh, ul + interval.lo, interval.hi);
}

// The same for a stretch whose numbers and their reciprocals single precision can hold.
// begin(Stages&) leaves there the fractions and what is added last.
template <class Begin>
INLINE void atan2Stages(int64_t count, const Float64* srcA, const Float64* srcB, Float64* dst, Begin begin) {
  Stages s;
  begin(s);
  divide(s, count);
  beginSeries(s, count);
  eachGroup<Group, Four>(
      count, [&]<class V>(V, int64_t i) INLINED { store(s.even + i, seriesAt<V>(s, i) * load<V>(s.u + i)); });
  eachGroup<Group, Four>(count, [&]<class V>(V, int64_t i) INLINED {
    const V y = load<V>(srcA + i), x = load<V>(srcB + i), rest = load<V>(s.even + i);
    store(dst + i, sumInStretch(y, x, rest, load<V>(s.uh() + i), load<V>(s.ul() + i), load<V>(s.hi + i)));
  });
}

}  // namespace
}  // namespace qorvane
