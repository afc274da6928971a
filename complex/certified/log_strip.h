// The logarithm of strips of complex numbers in lanes, with the bits of the extended routines: for log10 z
// and for the powers. As in complex/certified/strip.h, a part is taken where every number within both
// errors rounds to it.
#pragma once
#include "complex/certified/log_pairs.h"
#include "complex/certified/strips.h"

namespace qorvane {
namespace {

// Bounds of the errors (docs/certainty_log.md), of |ln |z|| and absolute; |N - 1| < 0.0299 for certain has
// the routine form N - 1, and below 2^-9 the lanes do, too. The angle's: of it and of the quotient q.
struct LogBounds {
  Float64 ofLog, absolute, ofLogNextToCircle, ofAngle, ofQuotient;
};
constexpr Float64 log10Head = fromBits(0x3fdbcb7b18000000);  // 0.4342944845557213, 26 bits
constexpr Float64 log10OfE = fromBits(0x3fdbcb7b1526e50e);   // 0.4342944819032518
constexpr Float64 log10Rest = fromBits(0xbe26c8d78e6acaa4);  // -2.6524694553078553e-09
constexpr LogBounds lnBounds = {3 * 0x1p-64, 1.8125 * 0x1p-64, 3.1875 * 0x1p-64, 1.03125 * 0x1p-64, 4.25 * 0x1p-64};
constexpr LogBounds log10Bounds = {4.25 * 0x1p-64, 0.7875 * 0x1p-64, 4.4375 * 0x1p-64, 2.28125 * 0x1p-64,
                                   1.875 * 0x1p-64};
constexpr Float64 absoluteOfLess = 0x1p-75, absoluteNextToCircle = 0x1p-127;
constexpr Float64 endOfLess = 0.0299, endOfCircle = 0x1p-9;

// Which logarithm: times log10 e, or as it is.
enum class Base { e, ten };
template <Base base>
constexpr const LogBounds& logBounds = base == Base::ten ? log10Bounds : lnBounds;
template <Base base, class V>
INLINE Sum<V> toBase(Sum<V> x) {
  if constexpr (base == Base::e) return x;
  const V head = headOf(x.high), rest = (x.high - head) + x.low;
  return fastSum(head * log10Head, head * log10Rest + rest * log10OfE);
}

// ln |z|, with the given part of its bounds: all of it, but in tests and tools. Where |N - 1| is below 2^-9
// it isn't good.
template <class V>
struct CertainLog {
  Certain<V> log;
  V isNextToCircle;
};
template <class V>
INLINE V distanceToCircle(Sum<V> norm) {
  return magnitude(norm.high - 1.0);
}
template <Base base, class V>
INLINE CertainLog<V> certainLog(BySize<V> parts, Float64 part = 1) {
  constexpr const LogBounds& bounds = logBounds<base>;
  const auto norm = squaredModulus(parts.larger, parts.smaller);
  const auto ln = lnPair(norm);
  const auto log = toBase<base>(Sum<V>{ln.high * 0.5, ln.low * 0.5});
  const V less = distanceToCircle(norm);
  const V absolute = select(lessLanes(less, broadcast<V>(endOfLess)), broadcast<V>(absoluteOfLess * part),
                            broadcast<V>(bounds.absolute * part));
  return {certainSum(log, magnitude(log.high) * (bounds.ofLog * part) + absolute),
          lessLanes(less, broadcast<V>(endOfCircle))};
}
// The same where |N - 1| is below 2^-9. Nothing is lost in N - 1 where the larger part is 1.
template <Base base, class V>
INLINE Certain<V> certainLogNextToCircle(BySize<V> parts, Float64 part = 1) {
  const auto ln = lnNextToCircle(parts.larger, parts.smaller);
  const auto log = toBase<base>(Sum<V>{ln.high * 0.5, ln.low * 0.5});
  const V absolute =
      withoutBits(broadcast<V>(absoluteNextToCircle * part), equalLanes(parts.larger, broadcast<V>(1.0)));
  return certainSum(log, magnitude(log.high) * (logBounds<base>.ofLogNextToCircle * part) + absolute);
}
// The angle's magnitude.
template <Base base, class V>
INLINE Certain<V> certainAngle(V x, BySize<V> parts, Float64 part = 1) {
  constexpr const LogBounds& bounds = logBounds<base>;
  const auto a = angleSum(x, parts);
  const auto angle = toBase<base>(a.angle);
  return certainSum(angle, angle.high * (bounds.ofAngle * part) + a.quotient * (bounds.ofQuotient * part));
}

// Arguments and their logarithms.
struct LogStrip {
  alignas(32) Float64 x[stripLength], y[stripLength], log[stripLength], angle[stripLength];
};

// The parts that the lanes serve: 2^-100 <= |part| < 2^100, and one zero, but not the point 1, whose
// logarithm is exact.
constexpr uint32_t limitOfLog = 0x46300000;
INLINE bool isOutsideOfLog(Float64 x, Float64 y) {
  const bool yIsZero = toBits(y) << 1 == 0;
  return isOutside(x, limitOfLog) || isOutside(y, limitOfLog) || (yIsZero && (toBits(x) << 1 == 0 || x == 1));
}
// Whether the lanes serve the whole strip, zeros and all.
template <class V>
INLINE bool hasAxesOnly(const LogStrip& s, int count) {
  WordsOf<V> isOther{};
  for (int i = 0; i < count; i += laneCount<V>) {
    const V x = load<V>(s.x + i), y = load<V>(s.y + i);
    const auto low = lowWords(x), high = highWords(x);
    const auto anyX = ((high & 0x7fffffff) | low) != 0, anyY = ((highWords(y) & 0x7fffffff) | lowWords(y)) != 0;
    const auto isOne = ((high ^ 0x3ff00000) | low) == 0;
    isOther = isOther | (outside<limitOfLog>(x) & anyX) | (outside<limitOfLog>(y) & anyY) |
              (~anyY & (~anyX | isOne));
  }
  return !any(isOther);
}

// Saved arguments, if any of them are outside; these become 1 + i in the strip.
struct SavedArguments {
  Float64 x[stripLength], y[stripLength];
};
// A mask of the elements outside.
template <class V>
[[gnu::noinline]] uint64_t takeOutsideOfLog(LogStrip& s, SavedArguments& saved, int count) {
  if (hasAxesOnly<V>(s, count)) return 0;
  uint64_t mask = 0;
  for (int i = 0; i < count; ++i) {
    saved.x[i] = s.x[i], saved.y[i] = s.y[i];
    if (!isOutsideOfLog(s.x[i], s.y[i])) continue;
    mask |= uint64_t{1} << i;
    s.x[i] = s.y[i] = 1;
  }
  return mask;
}

// Masks of the elements that aren't certain, and of those next to the unit circle.
struct LogMasks {
  uint64_t unsure, nextToCircle;
};
template <Base base, class W, class V>
[[gnu::noinline]] LogMasks logStage(LogStrip& s, int count) {
  uint64_t certain = 0, nextToCircle = 0;
  eachVector<W, V>(count, [&]<class U>(U, int i) INLINED {
    const auto log = certainLog<base>(bySize(load<U>(s.x + i), load<U>(s.y + i)));
    store(s.log + i, log.log.value);
    certain |= signMask(log.log.isCertain) << i;
    nextToCircle |= signMask(log.isNextToCircle) << i;
  });
  return {~certain, nextToCircle};
}
// Of those elements, the ones that aren't certain.
template <Base base, class V>
[[gnu::noinline, gnu::cold]] uint64_t circleStage(LogStrip& s, uint64_t elements, int count) {
  uint64_t certain = 0;
  for (int i = 0; i < count; i += laneCount<V>) {
    if ((elements >> i & allOf(laneCount<V>)) == 0) continue;
    const auto parts = bySize(load<V>(s.x + i), load<V>(s.y + i));
    const auto log = certainLogNextToCircle<base>(parts);
    const V distance = distanceToCircle(squaredModulus(parts.larger, parts.smaller));
    const V isNear = lessLanes(distance, broadcast<V>(endOfCircle));
    store(s.log + i, select(isNear, log.value, load<V>(s.log + i)));
    certain |= signMask(log.isCertain) << i;
  }
  return elements & ~certain;
}
// The whole of it; a mask of the elements that aren't certain.
template <Base base, class W, class V>
INLINE uint64_t realParts(LogStrip& s, int count) {
  const LogMasks masks = logStage<base, W, V>(s, count);
  if (masks.nextToCircle == 0) [[likely]]
    return masks.unsure;
  return (masks.unsure & ~masks.nextToCircle) | circleStage<base, V>(s, masks.nextToCircle, count);
}

}  // namespace
}  // namespace qorvane
