// What levels 2 to 5 of acosh share: their one program, in pairs of numbers.
#pragma once
#include "hyperbolic/certain_loop.h"
#include "hyperbolic/pair_steps.h"

namespace qorvane {
namespace {

// x^2 - 1, x up to 2^28: the head's square and what 1 leaves of it are exact.
template <class V>
INLINE Pair<V> squareLess1(V x) {
  const V head = masked(x, 0xfffffffff8000000);
  const V t = (x - head) * (x + head), s = head * head - 1.0, hi = t + s;
  return {hi, (s - hi) + t};
}
// x + root, the root below x
template <class V>
INLINE Pair<V> sumWith(V x, Pair<V> root) {
  const Pair<V> r = normalized(root);
  const V sum = r.hi + x;
  return {sum, (r.hi - (sum - x)) + r.lo};
}
// Near 1 it is sqrt(2d) (1 - d/12 + ...) with d = x - 1, fitted.
template <class V>
INLINE V nearSeries(V d, Pair<V> root) {
  constexpr Float64 n8 = fromBits(0x3f050e16464bfb1b);  // 4.015927769351041e-05
  constexpr Float64 n7 = fromBits(0xbf1c73d6f559c80f);  // -0.00010853766920052042
  constexpr Float64 n6 = fromBits(0x3f31c45756012e6a);  // 0.00027110225892521564
  constexpr Float64 n5 = fromBits(0xbf46e8b7818c0c1d);  // -0.0006991287255860877
  constexpr Float64 n4 = fromBits(0x3f5f1c71bfecd52d);  // 0.0018988715016353228
  constexpr Float64 n3 = fromBits(0xbf76db6db6d6156f);  // -0.0055803571425533235
  constexpr Float64 n2 = fromBits(0x3f93333333333147);  // 0.018749999999998292
  constexpr Float64 n1 = fromBits(0xbfb5555555555555);  // -0.08333333333333333
  const V q = (((((((n8 * d + n7) * d + n6) * d + n5) * d + n4) * d + n3) * d + n2) * d + n1) * d;
  return (q * (root.hi + root.lo) + root.lo) + root.hi;
}

// Ordinary arguments, by their high words, are above 1.0625 and below 2^28 and go straight through
// the logarithm of the sum. Those from 1 to infinity have formulas; the special lane has the
// others.
constexpr int ordinaryFrom = 0x3ff10001, ordinaryTo = 0x41b00000;
template <class V>
INLINE auto outsideOrdinary(V x) {
  const auto word = highWords(x);
  return (ordinaryFrom > word) | (word > ordinaryTo - 1);
}
template <class V>
INLINE auto outsideFormulas(V x) {
  const auto word = highWords(x);
  return (0x3ff00000 > word) | (word > 0x7fefffff);
}
constexpr auto isFlagged = [](auto x) INLINED { return any(outsideFormulas(x)); };

// Masks for arguments from 1 up: near 1, the logarithm of the sum above 1.0625, that of 2x above
// 2^28.
template <class V>
struct Classes {
  V isNear, bySum, byDouble;
};
template <class V>
INLINE Classes<V> classesOf(V x) {
  const V isFar = lessLanes(broadcast<V>(1.0625), x), isLarge = lessLanes(broadcast<V>(0x1p28), x);
  return {withoutBits(equalLanes(x, x), isFar), withoutBits(isFar, isLarge), isLarge};
}
template <class V>
INLINE V logOfDouble(V x) {
  return pairLog<V>({x, broadcast<V>(0.0)}, exponentOf(x) + 1.0);
}
// d where x is near 1. The root of 0 is beyond the seeds, so for 1 itself it is another, and the
// result is cleared.
template <class V>
INLINE V nearDistance(V x) {
  const V one = broadcast<V>(1.0);
  return select(andBits(classesOf(x).isNear, lessLanes(one, x)), x - 1.0, one);
}
template <class V>
INLINE V nearOne(V x, V d, Pair<V> root) {
  return andBits(lessLanes(broadcast<V>(1.0), x), nearSeries(d, root));
}

template <class V>
INLINE V logOfSum(V x) {
  const Pair<V> u = sumWith(x, pairRoot(squareLess1(x)));
  return pairLog(u, exponentOf(u.hi));
}
template <class V>
INLINE V acoshOf(V x) {
  if (!any(outsideOrdinary(x))) [[likely]]
    return logOfSum(x);
  const Classes<V> classes = classesOf(x);
  V y = broadcast<V>(0.0);
  if (signMask(classes.bySum) != 0) y = logOfSum(select(classes.bySum, x, broadcast<V>(2.0)));
  if (signMask(classes.byDouble) != 0) y = select(classes.byDouble, logOfDouble(x), y);
  if (signMask(classes.isNear) != 0) {
    const V d = nearDistance(x), zero = broadcast<V>(0.0);
    y = select(classes.isNear, nearOne(x, d, pairRoot<V>({d + d, zero})), y);
  }
  return y;
}

// Any argument; those outside the domain raise invalid by their division.
[[gnu::noinline, gnu::cold]] Element acoshSpecialLane(Float64 x) {
  if (!isFlagged(x)) return {acoshOf(x)};
  if (x != x || x > 1.0) return {opaque(x) + opaque(x)};
  return {opaque(0.0) / opaque(0.0), nuvStatusOutOfDomain};
}

// Up to a strip of any arguments.
template <class V>
[[gnu::noinline]] nuvStatus acoshProgram(const Float64* src, Float64* dst, int64_t len) {
  return guardedUnaryLoop<V, Raises::yes>(
      src, dst, len, [](auto x) INLINED { return acoshOf(x); }, isFlagged, acoshSpecialLane);
}
template <class V>
constexpr Definition acoshDefinition{Inverse::ofCosh, {8.4, 0}, 0x3ff1, acoshProgram<V>};
template <class V>
INLINE nuvStatus acoshLoop(const Float64* src, Float64* dst, int64_t len) {
  return inverseLoop<acoshDefinition<V>>(src, dst, len);
}

}  // namespace
}  // namespace qorvane
