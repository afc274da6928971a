// The square root of x + iy, levels 2 to 5: complex/sqrt_steps.h by blocks, the series to seven
// terms; the program that sqrt_ssse3.cpp and sqrt_avx.cpp compile for their registers.
//
// Elements with parts outside 2^-459 to 2^511, or parts further apart than a factor of about 2^58,
// are done one by one, but for blocks on an axis. The bits are the same.
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
template <class V>
INLINE bool anyApart(Parts<V> z) {
  const auto hx = highWords(z.re) & 0x7fffffff, hy = highWords(z.im) & 0x7fffffff;
  const auto outside = [](auto h) INLINED { return (0x23400000 > h) | (h > 0x5fdfffff); };
  const auto distance = hx - hy;
  return any(outside(hx) | outside(hy) | (distance > 0x3a00000) | (-0x3a00000 > distance));
}

INLINE void single(const Complex64* src, Complex64* dst) {
  const Complex64 z = *src;
  *dst = complexSqrt(z.re, z.im);
}

template <class V>
INLINE Halves<V> vectorHalfOfSum(Parts<V> z) {
  return halfOfSum<Terms::seven>(magnitude(z.re), magnitude(z.im));
}
template <class V>
INLINE Parts<V> vectorRoot(Parts<V> z, Halves<V> t) {
  const Root<V> root = rootFrom<Terms::seven>(t, magnitude(z.im));
  const V negative = lessLanes(z.re, broadcast<V>(0.0));
  return {select(negative, root.i, root.r), orBits(select(negative, root.r, root.i), signOf(z.im))};
}

// A block on one axis: one root is all.
INLINE bool axisBlock(Parts<Block> z, Complex64* dst) {
  const Block a = magnitude(z.re), b = magnitude(z.im);
  const auto outside = [](Block v, int lowest) INLINED {
    const auto h = highWords(v);
    return any((lowest > h) | (h > 0x7fefffff));
  };
  if (!any(isNonzero(b)) && !outside(a, 0)) {
    const Block root = hardwareRoot(a), negative = lessLanes(z.re, broadcast<Block>(0.0));
    storeParts(dst, Parts<Block>{withoutBits(root, negative), orBits(andBits(root, negative), signOf(z.im))});
    return true;
  }
  if (!any(isNonzero(a)) && !outside(b, 0x00200000)) {
    const Block root = hardwareRoot(b * 0.5);
    storeParts(dst, Parts<Block>{root, orBits(root, signOf(z.im))});
    return true;
  }
  return false;
}

// A block in which some need the single way; among the vectors these count as 1 + i.
[[gnu::noinline]] void mixedBlock(const Complex64* src, Complex64* dst) {
  if (axisBlock(loadParts<Block>(src), dst)) return;
  Complex64 z[8];
  uint32_t apart = 0;
  for (int i = 0; i < 8; ++i) {
    z[i] = src[i];
    if (!anyApart(Parts<Float64>{z[i].re, z[i].im})) continue;
    apart |= 1u << i;
    z[i] = {1, 1};
  }
  if (__builtin_popcount(apart) < 2 + laneCount<PartOf<Block>>) {  // else the vectors take longer
    const Parts<Block> parts = loadParts<Block>(z);
    storeParts(z, vectorRoot(parts, vectorHalfOfSum(parts)));
  } else {
    apart = 0xff;
  }
  for (int i = 0; i < 8; ++i)
    if ((apart >> i & 1) != 0)
      single(src + i, dst + i);
    else
      dst[i] = z[i];
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
      const Halves<Block> t = vectorHalfOfSum(z);
      store(upper + whole, t.upper), store(rest + whole, t.rest);
    }
    for (; i < whole; i += 8) {
      const Parts<Block> z = loadParts<Block>(src + i);
      const Halves<Block> t = {load<Block>(upper + i), load<Block>(rest + i)};
      storeParts(dst + i, vectorRoot(z, t));
    }
    if (count - whole >= 8) {
      mixedBlock(src + whole, dst + whole);
      count = whole + 8;
    } else {
      const auto some = [&]<class V>(V, int64_t n) INLINED {
        const Parts<V> z = loadSomeParts<V>(src + i, n);
        if (anyApart(z)) return;
        storeSomeParts(dst + i, vectorRoot(z, vectorHalfOfSum(z)), n);
        i += n;
      };
      if (count - i > 4)
        some(Block{}, count - i);
      else if (count - i > 1)
        some(Four{}, count - i);
      for (; i < count; ++i) single(src + i, dst + i);
    }
  }
  return nuvStatusOk;
}

}  // namespace
}  // namespace qorvane
