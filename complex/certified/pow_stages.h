// The stages of complexPow and complexPowx in lanes (complex/certified/pow_strip.h): the logarithms of the
// bases, their products with the exponents, and the exponentials of these.
#pragma once
#include "complex/certified/exponential.h"
#include "complex/certified/log_strip.h"
#include "complex/certified/reduction_strip.h"
#include "complex/ln.h"

namespace qorvane {
namespace {

// Powers of numbers on the axes often have angles next to multiples of pi/2.
constexpr Float64 nearestToSteps = 0x1p-57;

// Logarithms of the bases; exponents; their product x + iy, and its functions.
struct PowStrip {
  LogStrip base;
  alignas(32) Float64 re[stripLength], im[stripLength];  // but one exponent for all
  alignas(32) Float64 x[stripLength], y[stripLength];
  ReducedStrip reducedX, reducedY;
  alignas(32) Float64 expHead[stripLength], expRest[stripLength];
  TurnStrip turn;
};

// The exponents from place i on: one for each element, or one for all.
struct EachExponent {
  const Float64 *re, *im;
  template <class V>
  INLINE Parts<V> at(int i) const {
    return {load<V>(re + i), load<V>(im + i)};
  }
};
struct OneExponent {
  Complex64 b;
  template <class V>
  INLINE Parts<V> at(int) const {
    return {broadcast<V>(b.re), broadcast<V>(b.im)};
  }
};

template <class V>
[[gnu::noinline]] uint64_t angleStage(LogStrip& s, int count) {
  uint64_t certain = 0;
  eachGroup<Pack<V, 2>, V>(count, [&]<class U>(U, int64_t i) INLINED {
    const auto angle = angleAt<Base::e, U>(s, i);
    store(s.angle + i, angle.value);
    certain |= signMask(angle.isCertain) << i;
  });
  return ~certain;
}
// The logarithms of the bases, rounded.
template <class V>
INLINE void logarithms(LogStrip& s, OutsideOfLog& out, bool isOutsideOrZero, int count) {
  if (isOutsideOrZero) [[unlikely]]
    takeOutsideOfLog<V>(s, out, count);
  uint64_t left = out.mask;
  if (out.onAxes) {
    left = axisStage<Base::e, Pack<V, 2>, V>(s, count);
  } else if (left != allOf(count)) {
    left |= realParts<Base::e, V>(s, count);
    angleRemainders<V>(s, count);
    left |= angleStage<V>(s, count);
  }
  left &= allOf(count);
  const Float64 *x = out.mask == 0 ? s.x : out.x, *y = out.mask == 0 ? s.y : out.y;
  for (; left != 0; left &= left - 1) {
    const int i = __builtin_ctzll(left);
    const Complex64 log = complexLn({x[i], y[i]});
    s.log[i] = log.re, s.angle[i] = log.im;
  }
}

// The parts of the product that the lanes serve, beside zeros: 2^-200 <= |x| < 512 and 2^-80 <= |y| < 512. The
// sine's rest may be as small as y^3/6, times e^-512. From |x| = 2^-11 up the bound is the smaller one.
constexpr uint32_t firstOfX = 0x33700000, firstOfY = 0x3af00000, limitOfPower = 0x40800000;
constexpr uint32_t firstOfSmallerBound = 0x3f400000;
template <uint32_t first, class V>
INLINE auto outsideOfPower(V part) {
  const auto word = highWords(part) & 0x7fffffff;
  return (word > static_cast<int>(limitOfPower - 1)) | (static_cast<int>(first) > word);
}
// b ln a, operation for operation that of complexPow; whether any part is outside, or zero, or below 2^-11.
template <class V, class Exponents>
INLINE bool multiplyStage(PowStrip& s, Exponents exponents, int count) {
  Words4 isOutside{};
  for (int i = 0; i < count; i += laneCount<V>) {
    const auto [re, im] = exponents.template at<V>(i);
    const V log = load<V>(s.base.log + i), angle = load<V>(s.base.angle + i);
    const V x = re * log - im * angle, y = re * angle + im * log;
    store(s.x + i, x), store(s.y + i, y);
    isOutside = isOutside | eitherOutside<firstOfSmallerBound, limitOfPower>(x, y);
  }
  return any(isOutside);
}
// Whether the lanes serve the whole strip, zeros and all; whether its products are real. e^0 is exact.
struct ServedPowers {
  bool whole, real;
};
template <class V>
INLINE ServedPowers servedPowers(const PowStrip& s, int count) {
  WordsOf<V> isOther{}, isComplex{};
  for (int i = 0; i < count; i += laneCount<V>) {
    const V x = load<V>(s.x + i), y = load<V>(s.y + i);
    const auto anyX = isNonzero(x), anyY = isNonzero(y);
    isOther = isOther | (outsideOfPower<firstOfX>(x) & anyX) | (outsideOfPower<firstOfY>(y) & anyY) | ~(anyX | anyY);
    isComplex = isComplex | anyY;
  }
  return {!any(isOther), !any(isComplex)};
}
// What such a strip leaves: a mask of the elements outside, which become 0, and the products as they were;
// whether all are real.
struct OutsideOfPower {
  uint64_t mask = 0;
  bool isReal = false;
  Float64 bound = boundFromEleventh;
  Float64 x[stripLength], y[stripLength];
};
template <class V>
[[gnu::noinline]] void takeOutsideOfPower(PowStrip& s, OutsideOfPower& out, int count) {
  out.bound = boundOfExponential;
  const ServedPowers served = servedPowers<V>(s, count);
  if (served.whole) {
    out.isReal = served.real;
    return;
  }
  for (int i = 0; i < count; ++i) {
    out.x[i] = s.x[i], out.y[i] = s.y[i];
    const auto isZero = [](Float64 x) INLINED { return toBits(x) << 1 == 0; };
    const bool xIsZero = isZero(s.x[i]), yIsZero = isZero(s.y[i]);
    if ((xIsZero || !outsideOfPower<firstOfX>(s.x[i])) && (yIsZero || !outsideOfPower<firstOfY>(s.y[i])) &&
        !(xIsZero && yIsZero))
      continue;
    out.mask |= uint64_t{1} << i;
    s.x[i] = s.y[i] = 0;
  }
}

template <class V>
[[gnu::noinline]] void exponentialStage(PowStrip& s, int count) {
  eachGroup<Pack<V, 2>, V>(count, [&]<class U>(U, int64_t i) INLINED {
    const ReducedStrip& x = s.reducedX;
    const auto e = exponentialPair(loadWords<U>(x.n + i), remainderAt<U>(x, i), rowsAt(x.row + i));
    store(s.expHead + i, e.head), store(s.expRest + i, e.rest);
  });
}
template <class V>
[[gnu::noinline]] uint64_t powerStage(const PowStrip& s, Float64 bound, Complex64* dst, int count) {
  uint64_t certain = 0;
  eachGroup<Four, V>(count, [&]<class U>(U, int64_t i) INLINED {
    const auto e = loadPair<U>(s.expHead + i, s.expRest + i);
    const auto t = turnAt<U>(s.turn, i);
    const auto power = certainExponential(e, t.sin, t.cos, load<U>(s.y + i), bound);
    storeParts(dst + i, power.parts);
    certain |= signMask(power.isCertain) << i;
  });
  return ~certain;
}

// With y = 0.
template <class V>
[[gnu::noinline]] uint64_t realPowerStage(const PowStrip& s, Complex64* dst, int count) {
  uint64_t certain = 0;
  eachGroup<Four, V>(count, [&]<class U>(U, int64_t i) INLINED {
    const auto e = fastSum(load<U>(s.expHead + i), load<U>(s.expRest + i));
    const auto power = certainRelative(e, boundOfReal);
    storeParts(dst + i, Parts<U>{power.value, load<U>(s.y + i)});
    certain |= signMask(power.isCertain) << i;
  });
  return ~certain;
}
// The exponentials of the products; a mask of those that aren't certain.
template <class V>
INLINE uint64_t exponentials(PowStrip& s, const OutsideOfPower& out, Complex64* dst, int count, int whole) {
  reduceExponents<false, V>(s.reducedX, s.x, whole);
  exponentialStage<V>(s, whole);
  if (out.isReal)
    return storeStrip(dst, count, whole, [&](Complex64* r) INLINED { return realPowerStage<V>(s, r, whole); });
  const uint64_t unsure = reduceTurns<false, V>(s.reducedY, s.y, nearestToSteps, whole);
  turnStage<V>(s.reducedY, s.turn, whole);
  return unsure |
         storeStrip(dst, count, whole, [&](Complex64* r) INLINED { return powerStage<V>(s, out.bound, r, whole); });
}

}  // namespace
}  // namespace qorvane
