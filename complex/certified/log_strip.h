// The logarithm of strips of complex numbers in lanes, with the bits of the extended routines: for log10 z
// and for the powers.
#pragma once
#include "complex/certified/log_parts.h"

namespace qorvane {
namespace {

// Arguments, their logarithms, and what stages leave for the next ones.
struct LogStrip {
  alignas(32) Float64 x[stripLength], y[stripLength], log[stripLength], angle[stripLength];
  alignas(32) Float64 larger[stripLength], smaller[stripLength], ratio[stripLength];  // this is shifted
  alignas(32) Float64 norm[stripLength], normRest[stripLength];
  alignas(16) int wordOfNorm[stripLength], rowOfNorm[stripLength];
  alignas(32) Float64 base[stripLength], baseRest[stripLength], head[stripLength], rest[stripLength];
  alignas(32) Float64 numerator[stripLength], numeratorRest[stripLength], reciprocal[stripLength];
};
// The parts that the lanes serve: 2^-100 <= |part| < 2^100, and one zero. The logarithm of 1 is exact: a strip
// of nothing else leaves it to the routine.
constexpr uint32_t limitOfLog = 0x46300000;
INLINE bool isOutsideOfLog(Float64 x, Float64 y) {
  const bool yIsZero = toBits(y) << 1 == 0;
  return isOutside(x, limitOfLog) || isOutside(y, limitOfLog) || (yIsZero && (toBits(x) << 1 == 0 || x == 1));
}
// Whether the lanes serve the whole strip, zeros and all; whether all its elements have a zero.
struct ServedStrip {
  bool whole, onAxes;
};
template <class V>
INLINE ServedStrip servedStrip(const LogStrip& s, int count) {
  WordsOf<V> isOther{}, isOff{}, isInexact{};
  for (int i = 0; i < count; i += laneCount<V>) {
    const V x = load<V>(s.x + i), y = load<V>(s.y + i);
    const auto anyX = isNonzero(x), anyY = isNonzero(y);
    isOther = isOther | (outside<limitOfLog>(x) & anyX) | (outside<limitOfLog>(y) & anyY) | ~(anyX | anyY);
    isOff = isOff | (anyX & anyY);
    isInexact = isInexact | anyY | (((highWords(x) ^ 0x3ff00000) | lowWords(x)) != 0);
  }
  return {!any(isOther) && any(isInexact), !any(isOff)};
}

// What a strip with zeros or elements outside leaves: a mask of these, which become 1 + i in the strip;
// whether all the others are on axes; and the arguments as they were.
struct OutsideOfLog {
  uint64_t mask = 0;
  bool onAxes = false;
  Float64 x[stripLength], y[stripLength];
};
template <class V>
[[gnu::noinline]] void takeOutsideOfLog(LogStrip& s, OutsideOfLog& out, int count) {
  const ServedStrip served = servedStrip<V>(s, count);
  if (served.whole) {
    out.onAxes = served.onAxes;
    return;
  }
  for (int i = 0; i < count; ++i) {
    out.x[i] = s.x[i], out.y[i] = s.y[i];
    if (!isOutsideOfLog(s.x[i], s.y[i])) continue;
    out.mask |= uint64_t{1} << i;
    s.x[i] = s.y[i] = 1;
  }
}

// Larger and smaller part, their ratio, and the norm with its row.
template <class V>
[[gnu::noinline]] void normStage(LogStrip& s, int count) {
  eachGroup<Four, V>(count, [&]<class U>(U, int64_t i) INLINED {
    const auto parts = bySize(load<U>(s.x + i), load<U>(s.y + i));
    store(s.larger + i, parts.larger), store(s.smaller + i, parts.smaller);
    store(s.ratio + i, shiftedRatio(parts));
    const auto norm = squaredModulus(parts);
    store(s.norm + i, norm.high), store(s.normRest + i, norm.low);
    const auto word = wordsOfLog(norm.high);
    storeWords(s.wordOfNorm + i, word), storeWords(s.rowOfNorm + i, rowOfLog(word));
  });
}
template <class V>
[[gnu::noinline]] void logRowStage(LogStrip& s, int count) {
  eachGroup<Four, V>(count, [&]<class U>(U, int64_t i) INLINED {
    const Sum<U> norm = {load<U>(s.norm + i), load<U>(s.normRest + i)};
    const auto a = logRemainder<false>(norm, loadWords<U>(s.wordOfNorm + i), rowsAt(s.rowOfNorm + i));
    store(s.base + i, a.base), store(s.baseRest + i, a.baseRest);
    store(s.head + i, a.z.head), store(s.rest + i, a.z.rest);
  });
}
template <class V>
[[gnu::noinline]] void logRestStage(LogStrip& s, int count) {
  eachGroup<Pack<V, 2>, V>(count, [&]<class U>(U, int64_t i)
                                      INLINED { store(s.rest + i, restOfLog1p(loadPair<U>(s.head + i, s.rest + i))); });
}
// Masks of the elements that aren't certain, and of those near the unit circle.
struct LogMasks {
  uint64_t unsure, nearCircle;
};
template <Base base, class V>
[[gnu::noinline]] LogMasks logStage(LogStrip& s, int count) {
  uint64_t certain = 0, nearCircle = 0;
  eachGroup<Pack<V, 2>, V>(count, [&]<class U>(U, int64_t i) INLINED {
    const auto ln = sumOfLog(load<U>(s.base + i), load<U>(s.baseRest + i), load<U>(s.head + i), load<U>(s.rest + i));
    const auto log = certainLog<base>(ln);
    store(s.log + i, log.log.value);
    certain |= signMask(log.log.isCertain) << i;
    nearCircle |= signMask(log.isNearCircle) << i;
  });
  return {~certain, nearCircle};
}
// Of those near the circle, the ones that aren't certain.
template <Base base, class V>
[[gnu::noinline]] uint64_t circleStage(LogStrip& s, uint64_t elements, int count) {
  uint64_t certain = 0;
  for (int i = 0; i < count; i += laneCount<V>) {
    if ((elements >> i & allOf(laneCount<V>)) == 0) continue;
    const auto parts = bySize(load<V>(s.x + i), load<V>(s.y + i));
    const V two = broadcast<V>(2.0);  // the other elements, so that nothing overflows
    const auto log =
        certainLogNearCircle<base>(BySize<V>{smallerLanes(parts.larger, two), smallerLanes(parts.smaller, two)});
    Float64 values[laneCount<V>];
    store(values, log.value);
    for (int lane = 0; lane < laneCount<V>; ++lane)
      if ((elements >> (i + lane) & 1) != 0) s.log[i + lane] = values[lane];
    certain |= signMask(log.isCertain) << i;
  }
  return elements & ~certain;
}
// Both parts on the axes; a mask of the elements that aren't certain.
template <Base base, class W, class V>
[[gnu::noinline]] uint64_t axisStage(LogStrip& s, int count) {
  uint64_t certain = 0;
  eachGroup<W, V>(count, [&]<class U>(U, int64_t i) INLINED {
    const U y = load<U>(s.y + i);
    const auto both = certainOnAxis<base>(load<U>(s.x + i), y);
    store(s.log + i, both.log.value), store(s.angle + i, orBits(both.angle, signOf(y)));
    certain |= signMask(both.log.isCertain) << i;
  });
  return ~certain;
}
// The real parts elsewhere; a mask of the elements that aren't certain.
template <Base base, class V>
INLINE uint64_t realParts(LogStrip& s, int count) {
  normStage<V>(s, count);
  logRowStage<V>(s, count);
  logRestStage<V>(s, count);
  const LogMasks masks = logStage<base, V>(s, count);
  if (masks.nearCircle == 0) [[likely]]
    return masks.unsure;
  return (masks.unsure & ~masks.nearCircle) | circleStage<base, V>(s, masks.nearCircle, count);
}

// The angles, after the norms, but for the last stage.
template <class V>
[[gnu::noinline]] void fractionStage(LogStrip& s, int count) {
  eachGroup<Four, V>(count, [&]<class U>(U, int64_t i) INLINED {
    const BySize<U> parts = {load<U>(s.larger + i), load<U>(s.smaller + i)};
    const auto f = fractionOf(parts, load<U>(s.ratio + i));
    store(s.numerator + i, f.numerator.high), store(s.numeratorRest + i, f.numerator.low);
    store(s.head + i, f.denominator.head), store(s.rest + i, f.denominator.rest);
    store(s.reciprocal + i, f.reciprocal);
  });
}
template <class V>
[[gnu::noinline]] void angleRowStage(LogStrip& s, int count) {
  eachGroup<Four, V>(count, [&]<class U>(U, int64_t i) INLINED {
    const Fraction<U> f = {{load<U>(s.numerator + i), load<U>(s.numeratorRest + i)},
                           loadPair<U>(s.head + i, s.rest + i),
                           load<U>(s.reciprocal + i)};
    const auto row = [&](int lane) INLINED { return rowOfRatio(toBits(s.ratio[i + lane])); };
    const auto a = angleRemainder(load<U>(s.x + i), load<U>(s.y + i), load<U>(s.larger + i), f, row);
    store(s.base + i, a.base), store(s.baseRest + i, a.baseRest);
    store(s.head + i, a.q.head), store(s.rest + i, a.q.rest);
  });
}
template <class V>
INLINE void angleRemainders(LogStrip& s, int count) {
  fractionStage<V>(s, count);
  angleRowStage<V>(s, count);
}
template <Base base, class U>
INLINE Certain<U> angleAt(const LogStrip& s, int64_t i) {
  const AngleRemainder<U> a = {load<U>(s.base + i), load<U>(s.baseRest + i), loadPair<U>(s.head + i, s.rest + i)};
  const auto angle = certainAngle<base>(a);
  return {orBits(angle.value, signOf(load<U>(s.y + i))), angle.isCertain};
}

}  // namespace
}  // namespace qorvane
