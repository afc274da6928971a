// What levels 2 to 5 of asinh share: their one program, in pairs of numbers.
#pragma once
#include "hyperbolic/certain_loop.h"
#include "hyperbolic/pair_steps.h"

namespace qorvane {
namespace {

// a^2 + 1, a up to 2^28: the head's square is exact, and so is the rest of its sum with 1.
template <class V>
INLINE Pair<V> squareAnd1(V a) {
  const V head = masked(a, 0xfffffffff8000000), t = (a - head) * (a + head), q = head * head, s = q + 1.0;
  const V one = broadcast<V>(1.0), rest = t + (smallerLanes(q, one) - (s - largerLanes(q, one)));
  const V hi = rest + s;
  return {hi, (s - hi) + rest};
}
// a + root, the root at least a
template <class V>
INLINE Pair<V> sumWith(V a, Pair<V> root) {
  const Pair<V> r = normalized(root);
  const V sum = r.hi + a;
  return {sum, (a - (sum - r.hi)) + r.lo};
}
template <class V>
INLINE V logOfSum(V a) {
  const Pair<V> u = sumWith(a, pairRoot(squareAnd1(a)));
  return pairLog(u, exponentOf(u.hi));
}
// asinh(a) = a - a^3/6 + ..., fitted; infinities and NaNs give themselves.
template <class V>
INLINE V asinhSeries(V a) {
  constexpr Float64 z6 = fromBits(0x3f910437f0a10cfb);  // 0.01661765485938547
  constexpr Float64 z5 = fromBits(0xbf96e4b04cd3b907);  // -0.02235675305285503
  constexpr Float64 z4 = fromBits(0x3f9f1c671225ed56);  // 0.030381784899401985
  constexpr Float64 z3 = fromBits(0xbfa6db6dafab4472);  // -0.04464285630604871
  constexpr Float64 z2 = fromBits(0x3fb333333330fac0);  // 0.07499999999798046
  constexpr Float64 z1 = fromBits(0xbfc555555555551b);  // -0.16666666666666505
  const V w = a * a;
  return a + ((((((z6 * w + z5) * w + z4) * w + z3) * w + z2) * w + z1) * w) * a;
}

// Ordinary arguments, by their high words, are above 0.125 and below 2^28 and go straight through
// the logarithm of the sum.
constexpr int ordinaryFrom = 0x3fc00001, ordinaryTo = 0x41b00000;
template <class V>
INLINE auto outsideOrdinary(V x) {
  const auto word = highWords(x) & 0x7fffffff;
  return (ordinaryFrom > word) | (word > ordinaryTo - 1);
}
// Where there are others each formula runs for the whole vector or strip, if it has any element for
// it, with harmless arguments in the other lanes: the logarithm of the sum above 0.125, that of 2a
// above 2^28, the series for all else.
template <class V>
struct Classes {
  V bySum, byDouble;  // masks
  V a;                // |x|, or 0 where x is a NaN
};
template <class V>
INLINE Classes<V> classesOf(V x) {
  const V a = andBits(magnitude(x), equalLanes(x, x)), largest = broadcast<V>(fromBits(0x7fefffffffffffff));
  const V isLarge = lessLanes(broadcast<V>(0x1p28), a);
  return {withoutBits(lessLanes(broadcast<V>(0.125), a), isLarge), withoutBits(isLarge, lessLanes(largest, a)), a};
}
template <class V>
INLINE V argumentOfSum(const Classes<V>& x) {
  return select(x.bySum, x.a, broadcast<V>(1.0));
}
// y where it isn't 2a
template <class V>
INLINE V logOfDoubleToo(const Classes<V>& x, V y) {
  const V a = select(x.byDouble, x.a, broadcast<V>(1.0));
  return select(x.byDouble, pairLog<V>({a, broadcast<V>(0.0)}, exponentOf(a) + 1.0), y);
}
// y where it isn't the series, and the sign
template <class V>
INLINE V seriesToo(V x, V y) {
  const Classes<V> classes = classesOf(x);
  const V byLog = orBits(classes.bySum, classes.byDouble);
  return orBits(select(byLog, y, asinhSeries(withoutBits(magnitude(x), byLog))), signOf(x));
}

template <class V>
INLINE V asinhOf(V x) {
  if (!any(outsideOrdinary(x))) [[likely]]
    return orBits(logOfSum(magnitude(x)), signOf(x));
  if (!anyMagnitudeFrom(x, 0x3fc00000)) [[likely]]  // 0.125
    return orBits(asinhSeries(magnitude(x)), signOf(x));
  const Classes<V> classes = classesOf(x);
  V y = broadcast<V>(0.0);
  if (signMask(classes.bySum) != 0) y = logOfSum(argumentOfSum(classes));
  if (signMask(classes.byDouble) != 0) y = logOfDoubleToo(classes, y);
  return seriesToo(x, y);
}

// Up to a strip of any arguments.
template <class V>
[[gnu::noinline]] nuvStatus asinhProgram(const Float64* src, Float64* dst, int64_t len) {
  return plainLoop<V>(src, dst, len, [](auto x) INLINED { return asinhOf(x); });
}
template <class V>
constexpr Definition asinhDefinition{Inverse::ofSinh, {13.9, 0}, 0x3fc0, asinhProgram<V>};
template <class V>
INLINE nuvStatus asinhLoop(const Float64* src, Float64* dst, int64_t len) {
  return inverseLoop<asinhDefinition<V>>(src, dst, len);
}

}  // namespace
}  // namespace qorvane
