// complexPow and complexPowx in lanes, with the bits of complex/pow.cpp: the loop over strips.
//
// ln a, rounded to double precision, its product with b in double precision, and e to that: the logarithm
// and the exponential are each taken where they are certain, and else come from complexLn and complexExp.
#pragma once
#include "complex/certified/pow_stages.h"
#include "complex/exp.h"
#include "complex/pow.h"

namespace qorvane {
namespace {

template <class V, class Exponents>
INLINE void evaluatePowers(PowStrip& s, const Complex64* a, Exponents exponents, Complex64* dst, int count) {
  Words4 isOutsideOrZero{};
  const int whole = loadStrip<V>(a, count, [&](const Complex64* from, int i) INLINED {
    const Parts<V> z = loadParts<V>(from);
    store(s.base.x + i, z.re), store(s.base.y + i, z.im);
    isOutsideOrZero = isOutsideOrZero | eitherOutside<firstHighWord, limitOfLog>(z.re, z.im);
  });
  OutsideOfLog outOfLog;
  logarithms<V>(s.base, outOfLog, any(isOutsideOrZero), whole);
  OutsideOfPower out;
  if (multiplyStage<V>(s, exponents, whole)) [[unlikely]]
    takeOutsideOfPower<V>(s, out, whole);
  uint64_t left = out.mask;
  if (left != allOf(whole)) {
    left |= exponentials<V>(s, out, dst, count, whole);
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
    if (!isOrdered)
      dst[i] = complexPow({re[place], im[place]}, {b.re, b.im});
    else if ((out.mask >> place & 1) != 0)
      dst[i] = complexExp({x[place], y[place]});
    else
      dst[i] = complexExpExtended({x[place], y[place]});
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
