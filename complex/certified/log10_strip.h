// complexLog10 in lanes, with the bits of its extended routine: the loop over strips.
#pragma once
#include "complex/certified/log_strip.h"

namespace qorvane {
namespace {

template <class W, class V>
[[gnu::noinline]] uint64_t log10AngleStage(const LogStrip& s, Complex64* dst, int count) {
  uint64_t certain = 0;
  eachVector<W, V>(count, [&]<class U>(U, int i) INLINED {
    const U x = load<U>(s.x + i), y = load<U>(s.y + i);
    const auto angle = certainAngle<Base::ten>(x, bySize(x, y));
    storeParts(dst + i, Parts<U>{load<U>(s.log + i), orBits(angle.value, signOf(y))});
    certain |= signMask(angle.isCertain) << i;
  });
  return ~certain;
}

template <class W, class V>
[[gnu::noinline]] void evaluateLog10Strip(const Complex64* src, Complex64* dst, int count) {
  LogStrip s;
  WordsOf<V> isOutsideOrZero{};
  const int whole = loadStrip<V>(src, count, [&](const Complex64* from, int i) INLINED {
    const Parts<V> z = loadParts<V>(from);
    store(s.x + i, z.re), store(s.y + i, z.im);
    isOutsideOrZero = isOutsideOrZero | outside<limitOfLog>(z.re) | outside<limitOfLog>(z.im);
  });
  uint64_t left = 0;
  SavedArguments saved;
  if (any(isOutsideOrZero)) [[unlikely]]
    left = takeOutsideOfLog<V>(s, saved, whole);
  const Float64 *x = left == 0 ? s.x : saved.x, *y = left == 0 ? s.y : saved.y;
  if (left != allOf(whole)) {
    left |= realParts<Base::ten, W, V>(s, whole);
    left |= storeStrip(dst, count, whole,
                       [&](Complex64* results) INLINED { return log10AngleStage<W, V>(s, results, whole); });
    left &= allOf(whole);
  }
  if (left == 0) return;
  for (int i = 0; i < count; ++i) {
    const int place = placeOf<V>(i);
    if ((left >> place & 1) != 0) dst[i] = element<Function::log10>({x[place], y[place]});
  }
}

template <class W, class V>
INLINE nuvStatus log10Loop(const Complex64* src, Complex64* dst, int64_t len) {
  return stripLoop<Function::log10, evaluateLog10Strip<W, V>>(src, dst, len);
}

}  // namespace
}  // namespace qorvane
