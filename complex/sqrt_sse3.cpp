// The square root of x + iy, level 1: complex/sqrt_steps.h element by element, the series to five
// terms.
//
// Error: see complex/sqrt_blocks.h; the modes are the caller's.
//
// Special values: as csqrt of C has them. A NaN part with a finite one gives NaNs, an infinite y
// gives +Inf and y. What isn't a number is made by arithmetic where x is finite, so a signalling
// NaN raises invalid there.
#include "complex/sqrt_steps.h"
#include "frame/kernel_frame.h"

namespace qorvane {
namespace {

Complex64 complexSqrt(Float64 x, Float64 y) {
  if ((highWord(x) & 0x7ff00000) == 0x7ff00000) [[unlikely]]
    return complexSqrtSpecial(x, y);
  if ((highWord(y) & 0x7ff00000) == 0x7ff00000) [[unlikely]] {
    const Float64 v = 1.0 + y;
    return {v * v, v};
  }
  return finiteRoot<Terms::five>(x, y);
}

nuvStatus loop(const Complex64* src, Complex64* dst, int64_t len) {
  for (int64_t i = 0; i < len; ++i) {
    const Complex64 z = src[i];
    dst[i] = complexSqrt(z.re, z.im);
  }
  return nuvStatusOk;
}

}  // namespace

nuvStatus complexSqrtSse3(const Complex64* src, Complex64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, loop>(len, src, dst);
}

}  // namespace qorvane
