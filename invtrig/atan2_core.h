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
struct Fraction {
  V nh, nl, dh, dl;  // numerator and denominator
};
template <class V>
INLINE Fraction<V> fraction(V a, V b, V c, V mask) {
  const auto kept = [mask](V v) INLINED { return andBits(v, mask); };
  const V ah = upperPart(a), al = a - ah, bh = upperPart(b), bl = b - bh;
  const V n0 = kept(ah) - c * bh, n1 = kept(al) - c * bl, n = n0 - n1, nh = upperPart(n);
  const V d0 = kept(bh) + c * ah, d1 = kept(bl) + c * al, d = d0 + d1, dh = upperPart(d);
  return {nh, (n - nh) + (n1 - (n - n0)), dh, (d1 + (d0 - d)) + (d - dh)};
}

// The angle, from u in two parts, low being ul + lo, and rest = atan(u) - u.
template <class V>
INLINE V sum(V y, V x, V rest, V uh, V low, V hi) {
  constexpr Float64 restOfPi = fromBits(0x3ca1a64000000000);  // 1.2246741164581576e-16: pi - RN(pi), cut
  const V t = low + whereNegative(x, broadcast<V>(-restOfPi));
  const V v = ((rest + t) + uh) + hi;
  return orBits(xorBits(v, signOf(x)) + whereNegative(x, broadcast<V>(pi)), signOf(y));
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
template <class IntervalOf>
INLINE void atan2Stages(int64_t count, const Float64* srcA, const Float64* srcB, Float64* dst, IntervalOf intervalOf) {
  alignas(32) Column his;
  Stages s;
  eachVector(count, [&](int64_t i) INLINED {
    const auto [c, kept, hi, lo] = intervalOf(magnitude(load<Four>(srcA + i)), magnitude(load<Four>(srcB + i)));
    store(s.c() + i, c), store(s.kept() + i, kept), store(his + i, hi), store(s.lo + i, lo);
  });
  eachVector(count, [&](int64_t i) INLINED {
    const Four a = magnitude(load<Four>(srcA + i)), b = magnitude(load<Four>(srcB + i));
    const auto [nh, nl, dh, dl] = fraction(a, b, load<Four>(s.c() + i), load<Four>(s.kept() + i));
    store(s.nh + i, nh), store(s.nl + i, nl), store(s.dh + i, dh), store(s.dl + i, dl);
  });
  divide(s, count);
  beginSeries(s, count);
  eachGroup(count, [&]<class V>(V, int64_t i) INLINED {
    const V y = load<V>(srcA + i), x = load<V>(srcB + i), hi = load<V>(his + i);
    store(dst + i, sum(y, x, seriesAt<V>(s, i), load<V>(s.uh() + i), load<V>(s.ul() + i), hi));
  });
}

}  // namespace
}  // namespace qorvane
