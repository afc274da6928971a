// complexLog10 in lanes, with the bits of its extended routine: the loop over strips.
#pragma once
#include "complex/certified/log_strip.h"

namespace qorvane {
namespace {

template <class V>
[[gnu::noinline]] uint64_t log10AngleStage(const LogStrip& s, Complex64* dst, int count) {
  uint64_t certain = 0;
  eachGroup<Pack<V, 2>, V>(count, [&]<class U>(U, int64_t i) INLINED {
    const auto angle = angleAt<Base::ten, U>(s, i);
    storeParts(dst + i, Parts<U>{load<U>(s.log + i), angle.value});
    certain |= signMask(angle.isCertain) << i;
  });
  return ~certain;
}

template <class V>
[[gnu::noinline]] uint64_t storeAxes(const LogStrip& s, Complex64* dst, int count) {
  for (int i = 0; i < count; i += laneCount<V>) storeParts(dst + i, Parts<V>{load<V>(s.log + i), load<V>(s.angle + i)});
  return 0;
}

template <class W, class V>
[[gnu::noinline]] void evaluateLog10Strip(const Complex64* src, Complex64* dst, int count) {
  if (count == 1) {  // a vector for one element takes longer than the routine
    *dst = element<Function::log10>(*src);
    return;
  }
  LogStrip s;
  Words4 isOutsideOrZero{};
  const int whole = loadStrip<V>(src, count, [&](const Complex64* from, int i) INLINED {
    const Parts<V> z = loadParts<V>(from);
    store(s.x + i, z.re), store(s.y + i, z.im);
    isOutsideOrZero = isOutsideOrZero | eitherOutside<firstHighWord, limitOfLog>(z.re, z.im);
  });
  OutsideOfLog out;
  if (any(isOutsideOrZero)) [[unlikely]]
    takeOutsideOfLog<V>(s, out, whole);
  const Float64 *x = out.mask == 0 ? s.x : out.x, *y = out.mask == 0 ? s.y : out.y;
  uint64_t left = out.mask;
  if (out.onAxes) {
    left = axisStage<Base::ten, W, V>(s, whole);
    storeStrip(dst, count, whole, [&](Complex64* results) INLINED { return storeAxes<V>(s, results, whole); });
  } else if (left != allOf(whole)) {
    left |= realParts<Base::ten, V>(s, whole);
    angleRemainders<V>(s, whole);
    left |= storeStrip(dst, count, whole,
                       [&](Complex64* results) INLINED { return log10AngleStage<V>(s, results, whole); });
  }
  for (left &= allOf(whole); left != 0; left &= left - 1) {
    const int place = __builtin_ctzll(left), i = placeOf<V>(place);  // which is its own inverse
    if (i < count) dst[i] = element<Function::log10>({x[place], y[place]});
  }
}

template <class W, class V>
INLINE nuvStatus log10Loop(const Complex64* src, Complex64* dst, int64_t len) {
  return stripLoop<Function::log10, evaluateLog10Strip<W, V>>(src, dst, len);
}

}  // namespace
}  // namespace qorvane
