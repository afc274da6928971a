// complexAsinh, complexAsin, complexAcosh, complexAcos and complexAtan in lanes, with the bits of their
// extended routines: the loop over strips. As in complex/certified/strip.h, a part is taken where every
// number within both errors rounds to it; the others, one element in 70 (of atan one in 25 to 70), go
// through the routine.
//
// A is the magnitude of the part along the function's cuts, B that of the other one. A zero is replaced
// by 2^-130, which changes no part by more than 2^-77 of it but the one that is a zero itself; that one
// is put right at the end.
#pragma once
#include "complex/certified/inverse_pairs.h"
#include "complex/certified/strips.h"

namespace qorvane {
namespace {

// Of the results (docs/certainty_inverse.md): logarithm, angles.
constexpr Float64 boundOfLog = 9.5 * 0x1p-64, boundOfAsin = 8.875 * 0x1p-64, boundOfAcos = 11.25 * 0x1p-64;

// Those of the inverse tangent: its logarithm comes from a series where it is small, and else has an
// absolute term, from a logarithm next to 1; its angle's error depends on (1 + A^2 + B^2) / |1 - z^2|.
constexpr Float64 boundOfSeries = 5.375 * 0x1p-64, endOfSeries = 0.00738;
constexpr Float64 boundAboveOne = 2.75 * 0x1p-64, absoluteAboveOne = 1.28125 * 0x1p-64;  // quotients above 1: a < 0
constexpr Float64 boundBelowOne = 3.125 * 0x1p-64, absoluteBelowOne = 1.6875 * 0x1p-64;  // and below 1
constexpr Float64 boundOfTangentAngle = 6.25 * 0x1p-64, boundOfShare = 2 * 0x1p-64;

constexpr bool isAcos(Function function) { return function == Function::acos || function == Function::acosh; }
// Whether the real part is the angle, and which part is A.
constexpr bool angleIsReal(Function function) { return function != Function::asinh && function != Function::acosh; }
constexpr bool imaginaryIsA(Function function) { return function == Function::asinh || function == Function::atan; }

// The arguments with their signs, ln's argument less 1, the point on the unit circle, and the logarithm.
struct InverseStrip {
  alignas(32) Float64 a[stripLength], b[stripLength];
  alignas(32) Float64 eHead[stripLength], eRest[stripLength], share[stripLength], log[stripLength];
  alignas(32) Float64 cosHead[stripLength], cosRest[stripLength], sinHead[stripLength], sinRest[stripLength];
};

// The parts that the lanes serve, beside zeros: 2^-100 <= |part| < 2^60.
constexpr uint32_t limitOfInverse = 0x43b00000;

struct Taken {
  uint64_t outside, zero;
};
// Masks of the elements outside, which become 1 + i, and of those with a zero.
[[gnu::noinline, maybe_unused]] Taken takeOutsideOfInverse(InverseStrip& s, int count) {
  Taken taken = {0, 0};
  for (int i = 0; i < count; ++i) {
    const bool aIsZero = toBits(s.a[i]) << 1 == 0, bIsZero = toBits(s.b[i]) << 1 == 0;
    const bool isBranchPoint = bIsZero && (aIsZero || toBits(s.a[i]) << 1 == toBits(1.0) << 1);
    if (isOutside(s.a[i], limitOfInverse) || isOutside(s.b[i], limitOfInverse) || isBranchPoint) {
      taken.outside |= uint64_t{1} << i;
      s.a[i] = s.b[i] = 1;
    } else if (aIsZero || bIsZero) {
      taken.zero |= uint64_t{1} << i;
      Float64& part = aIsZero ? s.a[i] : s.b[i];
      part = fromBits(toBits(part) | toBits(0x1p-130));
    }
  }
  return taken;
}
// The part that is a zero, signed as it is; one of |a| and |b| is zero.
template <Function function>
INLINE void zeroExactly(Complex64& result, Float64 a) {
  const bool aIsZero = toBits(a) << 1 == 0, aIsBelowOne = toBits(a) << 1 < toBits(1.0) << 1;
  Float64 &angle = angleIsReal(function) ? result.re : result.im, &log = angleIsReal(function) ? result.im : result.re;
  const auto zero = [](Float64& part) { part = fromBits(toBits(part) & uint64_t{1} << 63); };
  if (isAcos(function)) {
    if (!aIsZero && aIsBelowOne) zero(log);
    if (!aIsBelowOne && toBits(a) >> 63 == 0) zero(angle);
  } else if (function == Function::atan) {
    if (aIsBelowOne) zero(aIsZero ? log : angle);
  } else {
    if (aIsBelowOne) zero(aIsZero ? angle : log);
  }
}

template <Function function, class W, class V>
[[gnu::noinline]] void pointStage(InverseStrip& s, int count) {
  eachVector<W, V>(count, [&]<class U>(U, int i) INLINED {
    const U a = magnitude(load<U>(s.a + i)), b = magnitude(load<U>(s.b + i));
    Point<U> point;
    if constexpr (function == Function::atan) {
      const auto p = inverseTangentPoint(a, b);
      point = p.point;
      store(s.share + i, p.shareOfRho);
    } else {
      point = inverseSinePoint(a, b, sinhAndCosSquared(excessOf(a, b)));
    }
    store(s.eHead + i, point.e.head), store(s.eRest + i, point.e.rest);
    store(s.cosHead + i, point.cos.head), store(s.cosRest + i, point.cos.rest);
    store(s.sinHead + i, point.sin.head), store(s.sinRest + i, point.sin.rest);
  });
}

// The two parts' magnitudes, with the given part of their bounds: all of it, but in tests and tools. `a`
// has its sign.
template <Function function, class V>
INLINE Certain<V> certainLog(ShortPair<V> e, [[maybe_unused]] V a, Float64 part = 1) {
  constexpr Float64 factor = function == Function::atan ? 0.25 : 0.5;
  const auto log = log1pPair(e);
  const Sum<V> result = {log.high * factor, log.low * factor};
  if constexpr (function != Function::atan) return certainSum(result, result.high * (boundOfLog * part));
  const V bySeries = result.high * (boundOfSeries * part);
  const V isAboveOne = lessLanes(a, broadcast<V>(0.0));
  const V byLog =
      result.high * select(isAboveOne, broadcast<V>(boundAboveOne * part), broadcast<V>(boundBelowOne * part)) +
      select(isAboveOne, broadcast<V>(absoluteAboveOne * part), broadcast<V>(absoluteBelowOne * part));
  return certainSum(result, select(lessLanes(result.high, broadcast<V>(endOfSeries)), bySeries, byLog));
}
// Half of the angle of (cos, sin); of (-cos, sin) for acos |x|, and pi less that is pi/2 and half of the
// angle of (cos, sin). `share` is inverseTangentPoint's.
template <Function function, class V>
INLINE Certain<V> certainAngle(ShortPair<V> cos, ShortPair<V> sin, [[maybe_unused]] V a, [[maybe_unused]] V share,
                               Float64 part = 1) {
  if constexpr (isAcos(function)) {
    const V flip = signOf(xorBits(a, broadcast<V>(-0.0))), isNegative = lessLanes(a, broadcast<V>(0.0));
    const ShortPair<V> flipped = {xorBits(cos.head, flip), xorBits(cos.rest, flip)};
    const auto angle = halfAngle(flipped, sin, andBits(isNegative, broadcast<V>(2.0)));
    return certainSum(angle, angle.high * (boundOfAcos * part));
  } else {
    const auto angle = halfAngle(cos, sin, broadcast<V>(0.0));
    if constexpr (function == Function::asinh || function == Function::asin)
      return certainSum(angle, angle.high * (boundOfAsin * part));
    else
      return certainSum(angle, angle.high * (share * (boundOfShare * part) + boundOfTangentAngle * part));
  }
}

template <Function function, class W, class V>
[[gnu::noinline]] uint64_t logStage(InverseStrip& s, int count) {
  uint64_t certain = 0;
  eachVector<W, V>(count, [&]<class U>(U, int i) INLINED {
    const auto log = certainLog<function>(loadPair<U>(s.eHead + i, s.eRest + i), load<U>(s.a + i));
    store(s.log + i, log.value);
    certain |= signMask(log.isCertain) << i;
  });
  return ~certain;
}
template <Function function, class W, class V>
[[gnu::noinline]] uint64_t angleStage(const InverseStrip& s, Complex64* dst, int count) {
  uint64_t certain = 0;
  eachVector<W, V>(count, [&]<class U>(U, int i) INLINED {
    const U a = load<U>(s.a + i), b = load<U>(s.b + i), log = load<U>(s.log + i);
    const auto angle = certainAngle<function>(loadPair<U>(s.cosHead + i, s.cosRest + i),
                                              loadPair<U>(s.sinHead + i, s.sinRest + i), a, load<U>(s.share + i));
    Parts<U> parts;
    if constexpr (function == Function::acos)
      parts = {angle.value, xorBits(log, signOf(xorBits(b, broadcast<U>(-0.0))))};
    else if constexpr (function == Function::acosh)
      parts = {log, orBits(angle.value, signOf(b))};
    else if constexpr (function == Function::asinh)
      parts = {orBits(log, signOf(b)), orBits(angle.value, signOf(a))};
    else if constexpr (function == Function::asin)
      parts = {orBits(angle.value, signOf(a)), orBits(log, signOf(b))};
    else
      parts = {orBits(angle.value, signOf(b)), orBits(log, signOf(a))};
    storeParts(dst + i, parts);
    certain |= signMask(angle.isCertain) << i;
  });
  return ~certain;
}

template <Function function, class W, class V>
[[gnu::noinline]] void evaluateInverseStrip(const Complex64* src, Complex64* dst, int count) {
  InverseStrip s;
  WordsOf<V> isOutsideOrZero{};
  const int whole = loadStrip<V>(src, count, [&](const Complex64* from, int i) INLINED {
    const Parts<V> z = loadParts<V>(from);
    store(s.a + i, imaginaryIsA(function) ? z.im : z.re), store(s.b + i, imaginaryIsA(function) ? z.re : z.im);
    isOutsideOrZero = isOutsideOrZero | outside<limitOfInverse>(z.re) | outside<limitOfInverse>(z.im);
  });

  Taken taken = {0, 0};
  const Float64 *a = s.a, *b = s.b;
  Float64 savedA[stripLength], savedB[stripLength];
  if (any(isOutsideOrZero)) [[unlikely]] {
    __builtin_memcpy(savedA, s.a, static_cast<size_t>(whole) * sizeof *s.a);
    __builtin_memcpy(savedB, s.b, static_cast<size_t>(whole) * sizeof *s.b);
    a = savedA, b = savedB;
    taken = takeOutsideOfInverse(s, whole);
  }
  uint64_t left = taken.outside;
  if (left != allOf(whole)) {
    pointStage<function, W, V>(s, whole);
    left |= logStage<function, W, V>(s, whole);
    left |= storeStrip(dst, count, whole,
                       [&](Complex64* results) INLINED { return angleStage<function, W, V>(s, results, whole); });
    left &= allOf(whole);
  }
  if ((left | taken.zero) == 0) return;
  for (int i = 0; i < count; ++i) {
    const int place = placeOf<V>(i);
    if ((left >> place & 1) != 0)
      dst[i] =
          element<function>(imaginaryIsA(function) ? Complex64{b[place], a[place]} : Complex64{a[place], b[place]});
    else if ((taken.zero >> place & 1) != 0)
      zeroExactly<function>(dst[i], a[place]);
  }
}

template <Function function, class W, class V>
INLINE nuvStatus inverseLoop(const Complex64* src, Complex64* dst, int64_t len) {
  return stripLoop<function, evaluateInverseStrip<function, W, V>>(src, dst, len);
}

}  // namespace
}  // namespace qorvane
