#pragma once
#include "hyperbolic/pair_steps.h"

namespace qorvane {
namespace {

constexpr Float64 twoTo28 = 0x1p28, largestFinite = fromBits(0x7fefffffffffffff);

// a^2 + 1
template <class V>
INLINE Pair<V> squarePlusOne(V a) {
  const V ah = andBits(a, broadcast<V>(fromBits(0xfffffffff8000000))), al = a - ah;
  const V t = al * (a + ah), q = ah * ah, s = q + 1.0, b = q - s;
  const V t2 = t + ((q - (s + b)) + (b + 1.0));
  const V hi = t2 + s;
  return {hi, (s - hi) + t2};
}

template <class V>
INLINE V asinhCore(V x) {
  constexpr Float64 z1 = fromBits(0xbfc555555555551b), z2 = fromBits(0x3fb333333330fac0), z3 = fromBits(0xbfa6db6dafab4472),
                    z4 = fromBits(0x3f9f1c671225ed56), z5 = fromBits(0xbf96e4b04cd3b907), z6 = fromBits(0x3f910437f0a10cfb);
  const V a = magnitude(x);
  const V root2 = smaller(a, broadcast<V>(twoTo28));
  const Pair<V> root = normalized(pairRoot(squarePlusOne(root2)));
  const V sum = root.hi + root2;
  const V rest = (root2 - (sum - root.hi)) + root.lo;
  const V isLarge = isAbove(a, broadcast<V>(twoTo28));
  const V finite = smaller(a, broadcast<V>(largestFinite));
  const V y = pairLn<V>({select(isLarge, finite, sum), andNot(isLarge, rest)}, andBits(isLarge, broadcast<V>(1.0)));
  const V ordinary = andNot(isAbove(a, broadcast<V>(largestFinite)), isAbove(a, broadcast<V>(0.125)));
  const V as = andNot(ordinary, a), w = as * as;
  const V series = as + ((((((z6 * w + z5) * w + z4) * w + z3) * w + z2) * w + z1) * w) * as;
  return orBits(select(ordinary, y, series), signOf(x));
}

}  // namespace
}  // namespace qorvane
