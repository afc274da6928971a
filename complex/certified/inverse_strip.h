// complexAsinh, complexAsin, complexAcosh, complexAcos and complexAtan in lanes, with the bits of their
// extended routines: the loop over strips. As in complex/certified/strip.h, a part is taken where every
// number within both errors rounds to it; the others, one element in 70 (of atan one in 40 to 100), go
// through the routine.
//
// Strips that lie on an axis have formulas of their own (complex/certified/inverse_axis.h).
//
// A is the magnitude of the part along the function's cuts, B that of the other one. A zero is replaced
// by 2^-130, which changes no part by more than 2^-77 of it but the one that is a zero itself; that one
// is put right at the end.
#pragma once
#include "complex/certified/inverse_axis.h"
#include "complex/certified/inverse_stages.h"

namespace qorvane {
namespace {

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

// A strip with nothing but zeros in b, or in a.
template <Function function, bool aIsZero, class W, class V>
[[gnu::noinline]] uint64_t axisStage(const InverseStrip& s, Complex64* dst, int count) {
  uint64_t certain = 0;
  eachGroup<W, V>(count, [&]<class U>(U, int64_t i) INLINED {
    const U a = load<U>(s.a + i), b = load<U>(s.b + i);
    const auto p = axisParts<function, aIsZero>(a, b);
    storeParts(dst + i, signedParts<function>(p.angle, p.log, a, b));
    certain |= signMask(p.isCertain) << i;
  });
  return ~certain;
}

// Whether a or b is zero all over a strip, and whether the other one is anywhere outside of what
// the lanes serve on that axis, or perhaps so.
struct Axis {
  bool aIsZero, bIsZero, hasOutside;
};
template <class V>
INLINE Axis axisOf(const InverseStrip& s, int count) {
  V anyA = broadcast<V>(0.0), anyB = anyA;
  WordsOf<V> outsideA{}, outsideB{};
  for (int i = 0; i < count; i += laneCount<V>) {
    const V a = load<V>(s.a + i), b = load<V>(s.b + i);
    anyA = orBits(anyA, a), anyB = orBits(anyB, b);
    outsideA = outsideA | outside<limitOfInverse>(a) | ((highWords(a) & 0x7fffffff) == 0x3ff00000);
    outsideB = outsideB | outside<limitOfInverse>(b);
  }
  const auto isZero = [](V part) INLINED { return !any(isNonzero(part)); };
  const bool aIsZero = isZero(anyA);
  return {aIsZero, isZero(anyB), aIsZero ? any(outsideB) : any(outsideA)};
}
// The logarithm from its routine.
template <Function function>
INLINE void completeLog(Complex64& result, Float64 a, Float64 b) {
  const auto parts = signedParts<function>(0.0, extendedLog<function>(a, b), a, b);
  (angleIsReal(function) ? result.im : result.re) = angleIsReal(function) ? parts.im : parts.re;
}
// The angle from its routine; where an element is outside or has a zero, all of it, unless nothing
// is left to do but the zero.
template <Function function>
[[gnu::noinline]] void complete(Complex64& result, Float64 a, Float64 b, bool isSpecial, bool isLeft) {
  if (!isLeft) return zeroExactly<function>(result, a);
  if (isSpecial) {
    result = element<function>(imaginaryIsA(function) ? Complex64{b, a} : Complex64{a, b});
    return;
  }
  const auto parts = signedParts<function>(extendedAngle<function>(a, b), 0.0, a, b);
  (angleIsReal(function) ? result.re : result.im) = angleIsReal(function) ? parts.re : parts.im;
}

template <Function function, bool aIsZero, class W, class V>
[[gnu::noinline]] void evaluateAxis(InverseStrip& s, Complex64* dst, int count, int whole, bool hasOutside) {
  Float64 saved[longStrip];
  Float64* const x = aIsZero ? s.b : s.a;
  uint64_t outside = 0;
  if (hasOutside) [[unlikely]]
    for (int i = 0; i < whole; ++i) {
      saved[i] = x[i];
      if (isOutside(x[i], limitOfInverse) || toBits(x[i]) << 1 == 0 ||
          (!aIsZero && toBits(x[i]) << 1 == toBits(1.0) << 1)) {
        outside |= uint64_t{1} << i;
        x[i] = 0.5;
      }
    }
  uint64_t left = outside | storeStrip<longStrip>(dst, count, whole, [&](Complex64* results) INLINED {
                    return axisStage<function, aIsZero, W, V>(s, results, whole);
                  });
  left &= allOf(whole);
  for (; left != 0; left &= left - 1) {
    const int place = __builtin_ctzll(left), i = placeOf<V>(place);
    if (i >= count) continue;
    if ((outside >> place & 1) != 0) x[place] = saved[place];
    const Float64 a = s.a[place], b = s.b[place];
    dst[i] = element<function>(imaginaryIsA(function) ? Complex64{b, a} : Complex64{a, b});
  }
}

template <Function function, class W, class V>
[[gnu::noinline]] void evaluateInverseStrip(const Complex64* src, Complex64* dst, int count) {
  StripOf<function> s;
  WordsOf<V> isOutsideOrZero{};
  const int whole = loadStrip<V>(src, count, [&](const Complex64* from, int i) INLINED {
    const Parts<V> z = loadParts<V>(from);
    store(s.a + i, imaginaryIsA(function) ? z.im : z.re), store(s.b + i, imaginaryIsA(function) ? z.re : z.im);
    isOutsideOrZero = isOutsideOrZero | outside<limitOfInverse>(z.re) | outside<limitOfInverse>(z.im);
  });

  Taken taken = {0, 0};
  const Float64 *a = s.a, *b = s.b;
  Float64 savedA[longStrip], savedB[longStrip];
  if (any(isOutsideOrZero)) [[unlikely]] {
    const Axis axis = axisOf<V>(s, whole);
    if (axis.bIsZero) return evaluateAxis<function, false, W, V>(s, dst, count, whole, axis.hasOutside);
    if (axis.aIsZero) return evaluateAxis<function, true, W, V>(s, dst, count, whole, axis.hasOutside);
    __builtin_memcpy(savedA, s.a, static_cast<size_t>(whole) * sizeof *s.a);
    __builtin_memcpy(savedB, s.b, static_cast<size_t>(whole) * sizeof *s.b);
    a = savedA, b = savedB;
    taken = takeOutsideOfInverse(s, whole);
  }
  uint64_t leftLogs = taken.outside, leftAngles = leftLogs;
  if (taken.outside != allOf(whole)) {
    firstStages<function, W, V>(s, whole);
    leftLogs |= logStage<function, W, V>(s, whole);
    leftAngles |= storeStrip<longStrip>(
        dst, count, whole, [&](Complex64* results) INLINED { return angleStage<function, W, V>(s, results, whole); });
  }
  // The logarithms first: what is left of them has long been known, and nobody waits for the last
  // angles.
  const uint64_t special = taken.outside | taken.zero;
  for (uint64_t rest = leftLogs & ~special & allOf(whole); rest != 0; rest &= rest - 1) {
    const int place = __builtin_ctzll(rest), i = placeOf<V>(place);
    if (i < count) completeLog<function>(dst[i], a[place], b[place]);
  }
  for (uint64_t rest = (leftAngles | special) & allOf(whole); rest != 0; rest &= rest - 1) {
    const int place = __builtin_ctzll(rest), i = placeOf<V>(place);
    if (i >= count) continue;
    const bool isLeft = ((leftLogs | leftAngles) >> place & 1) != 0;
    complete<function>(dst[i], a[place], b[place], (special >> place & 1) != 0, isLeft);
  }
}

template <Function function, class W, class V>
INLINE nuvStatus inverseLoop(const Complex64* src, Complex64* dst, int64_t len) {
  return stripLoop<function, evaluateInverseStrip<function, W, V>, longStrip>(src, dst, len);
}

}  // namespace
}  // namespace qorvane
