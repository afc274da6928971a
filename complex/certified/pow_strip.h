// complexPow and complexPowx in lanes, with the bits of complex/pow.cpp: the loop over strips.
//
// ln a, rounded to double precision, its product with b in double precision, and e to that: the logarithm
// and the exponential are each taken where they are certain, and else come from complexLn and complexExp.
#pragma once
#include "complex/certified/exponential.h"
#include "complex/certified/log_strip.h"
#include "complex/exp.h"
#include "complex/ln.h"
#include "complex/pow.h"

namespace qorvane {
namespace {

// Powers of numbers on the axes often have angles next to multiples of pi/2.
constexpr Float64 nearestToSteps = 0x1p-57;

// Logarithms of the bases; exponents; their product x + iy, and its functions.
struct PowStrip {
  LogStrip base;
  alignas(32) Float64 re[stripLength], im[stripLength];  // but one exponent for all
  alignas(32) Float64 x[stripLength], y[stripLength];
  alignas(32) Float64 expHead[stripLength], expRest[stripLength];
  alignas(32) Float64 sinHead[stripLength], sinRest[stripLength], cosHead[stripLength], cosRest[stripLength];
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

template <class W, class V>
[[gnu::noinline]] uint64_t angleStage(LogStrip& s, int count) {
  uint64_t certain = 0;
  eachVector<W, V>(count, [&]<class U>(U, int i) INLINED {
    const U x = load<U>(s.x + i), y = load<U>(s.y + i);
    const auto angle = certainAngle<Base::e>(x, y);
    store(s.angle + i, orBits(angle.value, signOf(y)));
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
    left |= realParts<Base::e, Pack<V, 2>, V>(s, count);
    left |= angleStage<Pack<V, 4>, V>(s, count);
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
// sine's rest may be as small as y^3/6, times e^-512.
constexpr uint32_t firstOfX = 0x33700000, firstOfY = 0x3af00000, limitOfPower = 0x40800000;
template <uint32_t first, class V>
INLINE auto outsideOfPower(V part) {
  const auto word = highWords(part) & 0x7fffffff;
  return (word > static_cast<int>(limitOfPower - 1)) | (static_cast<int>(first) > word);
}
// b ln a, operation for operation that of complexPow; whether any part is outside, or zero.
template <class V, class Exponents>
INLINE bool multiplyStage(PowStrip& s, Exponents exponents, int count) {
  WordsOf<V> isOutside{};
  for (int i = 0; i < count; i += laneCount<V>) {
    const auto [re, im] = exponents.template at<V>(i);
    const V log = load<V>(s.base.log + i), angle = load<V>(s.base.angle + i);
    const V x = re * log - im * angle, y = re * angle + im * log;
    store(s.x + i, x), store(s.y + i, y);
    isOutside = isOutside | outsideOfPower<firstOfX>(x) | outsideOfPower<firstOfY>(y);
  }
  return any(isOutside);
}
// Whether the lanes serve the whole strip, zeros and all; e^0 is exact.
template <class V>
INLINE bool servesPowers(const PowStrip& s, int count) {
  WordsOf<V> isOther{};
  for (int i = 0; i < count; i += laneCount<V>) {
    const V x = load<V>(s.x + i), y = load<V>(s.y + i);
    const auto anyX = isNonzero(x), anyY = isNonzero(y);
    isOther = isOther | (outsideOfPower<firstOfX>(x) & anyX) | (outsideOfPower<firstOfY>(y) & anyY) | ~(anyX | anyY);
  }
  return !any(isOther);
}
// A mask of the elements outside, which become 0; the product as it was.
struct OutsideOfPower {
  uint64_t mask = 0;
  Float64 x[stripLength], y[stripLength];
};
template <class V>
[[gnu::noinline]] void takeOutsideOfPower(PowStrip& s, OutsideOfPower& out, int count) {
  if (servesPowers<V>(s, count)) return;
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

template <class W, class V>
[[gnu::noinline]] void exponentialStage(PowStrip& s, int count) {
  eachVector<W, V>(count, [&]<class U>(U, int i) INLINED {
    const auto e = exponentialPair(load<U>(s.x + i));
    store(s.expHead + i, e.head), store(s.expRest + i, e.rest);
  });
}
template <class W, class V>
[[gnu::noinline]] uint64_t turnStage(PowStrip& s, int count) {
  uint64_t unsure = 0;
  eachVector<W, V>(count, [&]<class U>(U, int i) INLINED {
    const auto t = trigonometricPairs(magnitude(load<U>(s.y + i)), nearestToSteps);
    store(s.sinHead + i, t.sin.head), store(s.sinRest + i, t.sin.rest);
    store(s.cosHead + i, t.cos.head), store(s.cosRest + i, t.cos.rest);
    unsure |= signMask(t.isUnsure) << i;
  });
  return unsure;
}
template <class W, class V>
[[gnu::noinline]] uint64_t powerStage(const PowStrip& s, Complex64* dst, int count) {
  uint64_t certain = 0;
  eachVector<W, V>(count, [&]<class U>(U, int i) INLINED {
    const auto e = loadPair<U>(s.expHead + i, s.expRest + i);
    const auto sin = loadPair<U>(s.sinHead + i, s.sinRest + i), cos = loadPair<U>(s.cosHead + i, s.cosRest + i);
    const auto power = certainExponential(e, sin, cos, load<U>(s.y + i));
    storeParts(dst + i, power.parts);
    certain |= signMask(power.isCertain) << i;
  });
  return ~certain;
}

template <class V, class Exponents>
INLINE void evaluatePowers(PowStrip& s, const Complex64* a, Exponents exponents, Complex64* dst, int count) {
  using W = Pack<V, 2>;
  WordsOf<V> isOutsideOrZero{};
  const int whole = loadStrip<V>(a, count, [&](const Complex64* from, int i) INLINED {
    const Parts<V> z = loadParts<V>(from);
    store(s.base.x + i, z.re), store(s.base.y + i, z.im);
    isOutsideOrZero = isOutsideOrZero | outside<limitOfLog>(z.re) | outside<limitOfLog>(z.im);
  });
  OutsideOfLog outOfLog;
  logarithms<V>(s.base, outOfLog, any(isOutsideOrZero), whole);
  OutsideOfPower out;
  if (multiplyStage<V>(s, exponents, whole)) [[unlikely]]
    takeOutsideOfPower<V>(s, out, whole);
  uint64_t left = out.mask;
  if (left != allOf(whole)) {
    exponentialStage<W, V>(s, whole);
    left |= turnStage<W, V>(s, whole);
    left |=
        storeStrip(dst, count, whole, [&](Complex64* results) INLINED { return powerStage<W, V>(s, results, whole); });
    left &= allOf(whole);
  }
  if (left == 0) return;
  const Float64 *x = out.mask == 0 ? s.x : out.x, *y = out.mask == 0 ? s.y : out.y;
  const Float64 *re = outOfLog.mask == 0 ? s.base.x : outOfLog.x, *im = outOfLog.mask == 0 ? s.base.y : outOfLog.y;
  for (; left != 0; left &= left - 1) {
    const int place = __builtin_ctzll(left), i = placeOf<V>(place);  // which is its own inverse
    if (i >= count) continue;
    // Which NaN becomes the result depends on the order of operands.
    const bool isOrdered = x[place] == x[place] && y[place] == y[place];
    const auto b = exponents.template at<Float64>(place);
    dst[i] = isOrdered ? complexExp({x[place], y[place]}) : complexPow({re[place], im[place]}, {b.re, b.im});
  }
}
template <class V>
[[gnu::noinline]] void evaluatePow(const Complex64* a, const Complex64* b, Complex64* dst, int count) {
  PowStrip s;
  loadStrip<V>(b, count, [&](const Complex64* from, int i) INLINED {
    const Parts<V> z = loadParts<V>(from);
    store(s.re + i, z.re), store(s.im + i, z.im);
  });
  evaluatePowers<V>(s, a, EachExponent{s.re, s.im}, dst, count);
}
template <class V>
[[gnu::noinline]] void evaluatePowx(const Complex64* a, Complex64 b, Complex64* dst, int count) {
  PowStrip s;
  evaluatePowers<V>(s, a, OneExponent{b}, dst, count);
}

template <class V>
INLINE nuvStatus powLoop(const Complex64* a, const Complex64* b, Complex64* dst, int64_t len) {
  if (!isAllowed()) [[unlikely]]
    return powElements(a, b, dst, len);
  for (int count; len > 0; a += count, b += count, dst += count, len -= count) {
    count = len < stripLength ? static_cast<int>(len) : stripLength;
    evaluatePow<V>(a, b, dst, count);
  }
  return nuvStatusOk;
}
template <class V>
INLINE nuvStatus powxLoop(const Complex64* a, Complex64 b, Complex64* dst, int64_t len) {
  if (!isAllowed()) [[unlikely]]
    return powxElements(a, b, dst, len);
  for (int count; len > 0; a += count, dst += count, len -= count) {
    count = len < stripLength ? static_cast<int>(len) : stripLength;
    evaluatePowx<V>(a, b, dst, count);
  }
  return nuvStatusOk;
}

}  // namespace
}  // namespace qorvane
