// The square root of x + iy, levels 2 to 5: complex/sqrt_steps.h by blocks, the series to seven terms; the program that
// sqrt_ssse3.cpp and sqrt_avx.cpp compile for their registers.
//
// Elements with parts outside 2^-459 to 2^511, or parts further apart than a factor of about 2^58, are done one by
// one; so are the last ones after whole blocks. The bits are the same.
//
// Error: at most 0.55 ulp in either part (docs/accuracy.md has the arguments), in round to nearest; the modes are
// the caller's.
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

// A block is eight elements in lockstep. A vector of each part comes from two loads, in the order that these give.
#ifdef __AVX__
using Vector = Lanes4;
INLINE Vector evens(Vector a, Vector b) { return _mm256_unpacklo_pd(a, b); }
INLINE Vector odds(Vector a, Vector b) { return _mm256_unpackhi_pd(a, b); }
// Where x isn't negative, a; elsewhere b.
INLINE Vector chooseBySign(Vector x, Vector a, Vector b) {
  return _mm256_blendv_pd(b, a, _mm256_cmp_pd(_mm256_setzero_pd(), x, _CMP_LE_OQ));
}
#else
using Vector = Lanes2;
INLINE Vector evens(Vector a, Vector b) { return _mm_unpacklo_pd(a, b); }
INLINE Vector odds(Vector a, Vector b) { return _mm_unpackhi_pd(a, b); }
INLINE Vector chooseBySign(Vector x, Vector a, Vector b) {
  const __m128d mask = _mm_cmple_pd(_mm_setzero_pd(), x);
  return _mm_or_pd(_mm_and_pd(mask, a), _mm_andnot_pd(mask, b));
}
#endif
constexpr int vectors = 8 / laneCount<Vector>;
using Block = Pack<Vector, vectors>;
struct Parts {
  Block re, im;
};
INLINE Parts loadParts(const Complex64* z) {
  Parts parts;
  for (int i = 0; i < vectors; ++i) {
    const Float64* p = &z[i * laneCount<Vector>].re;
    const Vector a = load<Vector>(p), b = load<Vector>(p + laneCount<Vector>);
    parts.re.part[i] = evens(a, b), parts.im.part[i] = odds(a, b);
  }
  return parts;
}
INLINE void storeRoots(Complex64* z, Parts arguments, Root<Block> root) {
  for (int i = 0; i < vectors; ++i) {
    const Vector x = arguments.re.part[i], r = root.r.part[i], s = root.i.part[i];
    const Vector re = chooseBySign(x, r, s), im = orBits(chooseBySign(x, s, r), signOf(arguments.im.part[i]));
    Float64* p = &z[i * laneCount<Vector>].re;
    store(p, evens(re, im)), store(p + laneCount<Vector>, odds(re, im));
  }
}

// Whether any element needs the single way. Words are compared as signed numbers.
INLINE bool anyApart(Parts z) {
  const auto hx = highWords(z.re) & 0x7fffffff, hy = highWords(z.im) & 0x7fffffff;
  const auto outside = [](auto h) INLINED { return (0x23400000 > h) | (h > 0x5fdfffff); };
  const auto distance = hx - hy;
  return any(outside(hx) | outside(hy) | (distance > 0x3a00000) | (-0x3a00000 > distance));
}

INLINE void single(const Complex64* src, Complex64* dst) {
  const Complex64 z = *src;
  *dst = complexSqrt(z.re, z.im);
}

// Stretches go through two short loops instead of one with a chain of operations that is longer than the processor
// looks ahead; the parts of (|z| + a)/2 stand on the stack between them.
constexpr int64_t longestStretch = 128;
[[gnu::noinline]] nuvStatus loop(const Complex64* src, Complex64* dst, int64_t len) {
  alignas(32) Float64 upper[longestStretch], rest[longestStretch];
  for (int64_t count; len > 0; src += count, dst += count, len -= count) {
    count = len < longestStretch ? len : longestStretch;
    int64_t i = 0, whole = 0;
    for (; whole + 8 <= count; whole += 8) {
      const Parts z = loadParts(src + whole);
      if (anyApart(z)) [[unlikely]]
        break;
      const Halves<Block> t = halfOfSum<Terms::seven>(magnitude(z.re), magnitude(z.im));
      store(upper + whole, t.upper), store(rest + whole, t.rest);
    }
    for (; i < whole; i += 8) {
      const Parts z = loadParts(src + i);
      const Halves<Block> t = {load<Block>(upper + i), load<Block>(rest + i)};
      storeRoots(dst + i, z, rootFrom<Terms::seven>(t, magnitude(z.im)));
    }
    if (whole < count) count = count - whole < 8 ? count : whole + 8;  // a block with an element for the single way
    for (; i < count; ++i) single(src + i, dst + i);
  }
  return nuvStatusOk;
}

}  // namespace
}  // namespace qorvane
