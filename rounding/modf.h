// Modf at every level: x to its integral part and the fraction that remains, both with the sign of
// x.
//
// Method: with MXCSR set to round toward zero, the shifter (rounding/shifter.h) drops the fraction
// of |x|; the rest is the exact difference.
//
// Error: none. Inexact is raised where there is a fraction, and lost where MXCSR had to be changed.
//
// Special values: from 2^52 up, and for infinities, x and the zero with its sign; NaN gives the
// NaN, quiet, in both. There is no status.
#pragma once
#include "frame/kernel_frame.h"
#include "rounding/shifter.h"

namespace qorvane {
namespace {

template <class V>
struct Parts {
  V whole, fraction;
};

// |x| < 2^52
template <class V>
INLINE Parts<V> separate(V x) {
  const V a = magnitude(x), r = integral(a), sign = signOf(x);
  return {orBits(r, sign), orBits(a - r, sign)};
}

INLINE Parts<Float64> separateOne(Float64 x) {
  if (!anyWithoutFraction(x)) return separate(x);
  if ((toBits(x) & 0x7fffffffffffffff) > 0x7ff0000000000000) return {x + x, x + x};  // makes the NaN quiet
  return {x, signOf(x)};
}

template <class V>
nuvStatus modfLoop(const Float64* src, Float64* dstA, Float64* dstB, int64_t len) {
  int64_t i = 0;
  while (i < len) {
    for (; i + laneCount<V> <= len; i += laneCount<V>) {
      const V x = load<V>(src + i);
      if (anyWithoutFraction(x)) [[unlikely]]
        break;
      const Parts<V> y = separate(x);
      store(dstA + i, y.whole);
      store(dstB + i, y.fraction);
    }
    for (const int64_t end = len - i < laneCount<V> ? len : i + laneCount<V>; i < end; ++i) {
      const Parts<Float64> y = separateOne(src[i]);
      dstA[i] = y.whole;
      dstB[i] = y.fraction;
    }
  }
  return nuvStatusOk;
}

template <class V>
INLINE nuvStatus modfKernel(const Float64* src, Float64* dstA, Float64* dstB, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::forceToZero, modfLoop<V>>(len, src, dstA, dstB);
}

}  // namespace
}  // namespace qorvane
