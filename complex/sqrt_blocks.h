// The square root of x + iy, levels 2 to 5: complex/sqrt_steps.h by blocks, the series to seven
// terms; the program that sqrt_ssse3.cpp and sqrt_avx.cpp compile for their registers.
//
// Elements with parts outside 2^-459 to 2^511, or parts further apart than a factor of about 2^58,
// are done one by one; so are the last ones after whole blocks. The bits are the same.
//
// Error: at most 0.502 ulp in either part (docs/accuracy.md has the arguments), in round to
// nearest; the modes are the caller's.
//
// Special values: as csqrt of C has them; a NaN is made quiet on its bits and raises nothing.
#pragma once
#include "complex/sqrt_steps.h"
#include "frame/kernel_frame.h"

namespace qorvane {
namespace {

Complex64 complexSqrt(Float64 x, Float64 y) {
  if ((highWord(x) & 0x7ff00000) == 0x7ff00000 || (highWord(y) & 0x7ff00000) == 0x7ff00000) [[unlikely]]
    return complexSqrtSpecial(x, y);
  return finiteRoot<Terms::seven>(x, y);
}

// Whether any element needs the single way. Words are compared as signed numbers.
INLINE bool anyApart(Parts<Block> z) {
  const auto hx = highWords(z.re) & 0x7fffffff, hy = highWords(z.im) & 0x7fffffff;
  const auto outside = [](auto h) INLINED { return (0x23400000 > h) | (h > 0x5fdfffff); };
  const auto distance = hx - hy;
  return any(outside(hx) | outside(hy) | (distance > 0x3a00000) | (-0x3a00000 > distance));
}

INLINE void single(const Complex64* src, Complex64* dst) {
  const Complex64 z = *src;
  *dst = complexSqrt(z.re, z.im);
}

// Stretches go through two short loops instead of one with a chain of operations that is longer
// than the processor looks ahead; the parts of (|z| + a)/2 stand on the stack between them.
constexpr int64_t longestStretch = 128;
nuvStatus loop(const Complex64* src, Complex64* dst, int64_t len) {
  alignas(32) Float64 upper[longestStretch], rest[longestStretch];
  for (int64_t count; len > 0; src += count, dst += count, len -= count) {
    count = len < longestStretch ? len : longestStretch;
    int64_t i = 0, whole = 0;
    for (; whole + 8 <= count; whole += 8) {
      const Parts<Block> z = loadParts<Block>(src + whole);
      if (anyApart(z)) [[unlikely]]
        break;
      const Halves<Block> t = halfOfSum<Terms::seven>(magnitude(z.re), magnitude(z.im));
      store(upper + whole, t.upper), store(rest + whole, t.rest);
    }
    for (; i < whole; i += 8) {
      const Parts<Block> z = loadParts<Block>(src + i);
      const Halves<Block> t = {load<Block>(upper + i), load<Block>(rest + i)};
      const Root<Block> root = rootFrom<Terms::seven>(t, magnitude(z.im));
      const Block negative = lessLanes(z.re, broadcast<Block>(0.0));
      storeParts(dst + i, Parts<Block>{select(negative, root.i, root.r),
                                       orBits(select(negative, root.r, root.i), signOf(z.im))});
    }
    if (whole < count) count = count - whole < 8 ? count : whole + 8;  // a block with an element for the single way
    for (; i < count; ++i) single(src + i, dst + i);
  }
  return nuvStatusOk;
}

}  // namespace
}  // namespace qorvane
