#pragma once
#include "frame/loops.h"
#include "hyperbolic/pair_steps.h"

namespace qorvane {
namespace {

constexpr Float64 twoTo28 = 0x1p28;
constexpr int fastRangeFrom = 0x3ff00000, fastRangeTo = 0x7ff00000;

// x^2 - 1
template <class V>
INLINE Pair<V> squareMinusOne(V x) {
  const V xh = andBits(x, broadcast<V>(fromBits(0xfffffffff8000000)));
  const V t = (x - xh) * (x + xh), s = xh * xh - 1.0, hi = t + s;
  return {hi, (s - hi) + t};
}

template <class V>
INLINE V acoshCore(V x) {
  constexpr Float64 n8 = fromBits(0x3f050e16464bfb1b), n7 = fromBits(0xbf1c73d6f559c80f), n6 = fromBits(0x3f31c45756012e6a),
                    n5 = fromBits(0xbf46e8b7818c0c1d), n4 = fromBits(0x3f5f1c71bfecd52d), n3 = fromBits(0xbf76db6db6d6156f),
                    n2 = fromBits(0x3f93333333333147), n1 = fromBits(0xbfb5555555555555);
  const V one = broadcast<V>(1.0);
  const V d = x - 1.0, isFar = lessLanes(broadcast<V>(1.0625), x), isLarge = lessLanes(broadcast<V>(twoTo28), x);
  const V xm = select(isLarge, broadcast<V>(twoTo28), x);
  const Pair<V> square = squareMinusOne(xm);
  const V d2 = select(lessLanes(one, x), d + d, one);
  const Pair<V> terms = pairRoot<V>({select(isFar, square.hi, d2), andBits(isFar, square.lo)});
  const Pair<V> root = normalized(terms);
  const V sum = root.hi + xm;
  const V rest = (root.hi - (sum - xm)) + root.lo;
  const V hi = select(isLarge, x, sum);
  const V far = pairLog<V>({hi, withoutBits(rest, isLarge)}, exponentOf(hi) + andBits(isLarge, one));
  const V Q = (((((((n8 * d + n7) * d + n6) * d + n5) * d + n4) * d + n3) * d + n2) * d + n1) * d;
  const V near = andBits(lessLanes(one, x), (Q * root.hi + terms.lo) + terms.hi);
  return select(isFar, far, near);
}

template <class V>
INLINE bool acoshFlagged(V x) {
  return any(wrappingSum(highWords(x), 0x40100000) > static_cast<int>(0xbfffffff));
}

[[gnu::noinline, gnu::cold]] nuvStatus acoshSpecialLane(Float64 x, Float64* result) {
  if (x >= 1.0 && x <= fromBits(0x7fefffffffffffff)) return *result = acoshCore(x), nuvStatusOk;
  if (x > 1.0 || x != x) return *result = x + x, nuvStatusOk;
  return *result = opaque(0.0) / opaque(0.0), nuvStatusOutOfDomain;
}

}  // namespace
}  // namespace qorvane
