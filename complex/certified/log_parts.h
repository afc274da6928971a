// The logarithm's parts in lanes with the bounds of their errors: taken where every number within both errors
// rounds to one, as in complex/certified/strip.h.
#pragma once
#include "complex/certified/log_pairs.h"
#include "complex/certified/strips.h"

namespace qorvane {
namespace {

// Bounds of the errors (docs/certainty_log.md), of |ln |z|| and absolute; next to the unit circle, where
// the routine forms N - 1; and of the angle and of its quotient q.
struct LogBounds {
  Float64 ofLog, absolute, ofLogByLess, ofAngle, ofQuotient;
};
constexpr Float64 log10Head = fromBits(0x3fdbcb7b18000000);  // 0.4342944845557213, 26 bits
constexpr Float64 log10OfE = fromBits(0x3fdbcb7b1526e50e);   // 0.4342944819032518
constexpr Float64 log10Rest = fromBits(0xbe26c8d78e6acaa4);  // -2.6524694553078553e-09
constexpr LogBounds lnBounds = {3 * 0x1p-64, 1.8125 * 0x1p-64, 3.1875 * 0x1p-64, 1.03125 * 0x1p-64, 4.25 * 0x1p-64};
constexpr LogBounds log10Bounds = {4.25 * 0x1p-64, 0.7875 * 0x1p-64, 4.4375 * 0x1p-64, 2.28125 * 0x1p-64,
                                   1.875 * 0x1p-64};
// N is good to 2^-75 by itself, N - 1 from its exact terms to 2^-127; the ends of their ranges, of R = |ln |z||
// and of |N - 1|. Where R is below its end, |N - 1| is below 0.0299.
constexpr Float64 absoluteOfNorm = 0x1p-75, absoluteOfLess = 0x1p-127;
constexpr Float64 endOfCircle = 0.0147, endOfLess = 0x1p-9;

// Which logarithm: times log10 e, or as it is.
enum class Base { e, ten };
template <Base base>
constexpr const LogBounds& logBounds = base == Base::ten ? log10Bounds : lnBounds;
template <Base base>
constexpr Float64 toBase(Float64 ln) {
  return base == Base::ten ? ln * log10OfE : ln;
}
// That many times x, to the base.
template <Base base, class V>
INLINE Sum<V> toBase(Sum<V> x, Float64 times) {
  if constexpr (base == Base::e) return {x.high * times, x.low * times};
  if constexpr (isFused) {
    const V high = x.high * (log10Head * times), lost = fusedLess(x.high, broadcast<V>(log10Head * times), high);
    return fastSum(high, timesPlus(log10OfE * times, x.low, timesPlus(log10Rest * times, x.high, lost)));
  }
  const ShortPair<V> p = pairOf(x);
  return fastSum(p.head * (log10Head * times), p.head * (log10Rest * times) + p.rest * (log10OfE * times));
}

// ln |z|, with the given part of its bounds: all of it, but in tests and tools; and whether z is so near the
// circle that it takes the other function.
template <class V>
struct CertainLog {
  Certain<V> log;
  V isNearCircle;
};
template <Base base, class V>
INLINE CertainLog<V> certainLog(Sum<V> lnOfNorm, Float64 part = 1) {
  constexpr const LogBounds& bounds = logBounds<base>;
  const auto log = toBase<base>(lnOfNorm, 0.5);
  const V size = magnitude(log.high), isNear = lessLanes(size, broadcast<V>(endOfCircle * toBase<base>(1.0)));
  return {certainSum(log, timesPlus(bounds.ofLog * part, size, bounds.absolute * part)), isNear};
}
template <Base base, class V>
INLINE CertainLog<V> certainLog(BySize<V> z, Float64 part = 1) {
  return certainLog<base>(logRemainder<false>(squaredModulus(z)).all(), part);
}
// Nothing is lost in N - 1 where the larger part is 1.
template <Base base, class V>
INLINE Certain<V> certainLogNearCircle(BySize<V> z, Float64 part = 1) {
  const auto norm = squaredModulus(z), byNorm = logRemainder<true>(norm).all(), byLess = lnNextToCircle(z);
  const V isNext = lessLanes(magnitude(norm.high - 1.0), broadcast<V>(endOfLess));
  const V absolute = select(isNext, broadcast<V>(absoluteOfLess * part), broadcast<V>(absoluteOfNorm * part));
  const auto log =
      toBase<base>(Sum<V>{select(isNext, byLess.high, byNorm.high), select(isNext, byLess.low, byNorm.low)}, 0.5);
  return certainSum(log, magnitude(log.high) * (logBounds<base>.ofLogByLess * part) +
                             withoutBits(absolute, equalLanes(z.larger, broadcast<V>(1.0))));
}
// The angle's magnitude.
template <Base base, class V>
INLINE Certain<V> certainAngle(const AngleRemainder<V>& remainder, Float64 part = 1) {
  constexpr const LogBounds& bounds = logBounds<base>;
  const auto a = angleSum(remainder);
  const auto certain = [&](Sum<V> angle) INLINED {
    return certainSum(angle, timesPlus(bounds.ofAngle * part, angle.high, a.quotient * (bounds.ofQuotient * part)));
  };
  if constexpr (base == Base::e) return certain(a.angle);
  return certain(toBase<base>(a.angle, 1));
}
template <Base base, class V>
INLINE Certain<V> certainAngle(V x, V y, Float64 part = 1) {
  return certainAngle<base>(angleRemainder(x, y), part);
}

// Both parts where one part of z is 0. Nothing is lost in N - 1 there.
template <class V>
struct CertainAxis {
  Certain<V> log;
  V angle;
};
template <Base base, class V>
INLINE CertainAxis<V> certainOnAxis(V x, V y, Float64 part = 1) {
  constexpr const LogBounds& bounds = logBounds<base>;
  // pi/2 log10 e, 0.6821881769209207 - 3.4292220243961786e-17, or pi/2, 1.5707963267948966 + 6.123233995736766e-17
  constexpr Float64 quarterTurn = fromBits(base == Base::ten ? 0x3fe5d47c4cb2fba1 : 0x3ff921fb54442d18);
  constexpr Float64 quarterRest =
      fromBits(base == Base::ten ? 0xbc83c4a373b7fc66 : 0x3c91a62633145c07);  // makes it inexact
  const V zero = broadcast<V>(0.0), larger = largerLanes(magnitude(x), magnitude(y));
  const auto log = toBase<base>(logRemainder<true>(Sum<V>{larger, zero}).all(), 1);
  const V isNear = lessLanes(magnitude(larger - 1.0), broadcast<V>(endOfCircle));
  const V absolute = withoutBits(broadcast<V>(bounds.absolute * part), isNear);
  const V quarters = select(equalLanes(x, zero), broadcast<V>(1.0), andBits(lessLanes(x, zero), broadcast<V>(2.0)));
  return {certainSum(log, magnitude(log.high) * (bounds.ofLogByLess * part) + absolute),
          quarters * quarterTurn + quarters * quarterRest};
}

}  // namespace
}  // namespace qorvane
