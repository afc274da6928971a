#pragma once
#include "frame/loops.h"
#include "hyperbolic/pair_strip.h"

namespace qorvane {
namespace {

// a^2 + 1
template <class V>
INLINE Pair<V> squareAnd1(V a) {
  const V head = masked(a, 0xfffffffff8000000), t = (a - head) * (a + head), q = head * head, s = q + 1.0;
  const V one = broadcast<V>(1.0), rest = t + (smaller(q, one) - (s - larger(q, one)));
  const V hi = rest + s;
  return {hi, (s - hi) + rest};
}
// a + root; the root isn't smaller.
template <class V>
INLINE Pair<V> sumWith(V a, Pair<V> root) {
  const Pair<V> r = normalized(root);
  const V sum = r.hi + a;
  return {sum, (a - (sum - r.hi)) + r.lo};
}
// a, infinities and NaNs too
template <class V>
INLINE V asinhSeries(V a) {
  constexpr Float64 z6 = fromBits(0x3f910437f0a10cfb), z5 = fromBits(0xbf96e4b04cd3b907),
                    z4 = fromBits(0x3f9f1c671225ed56), z3 = fromBits(0xbfa6db6dafab4472),
                    z2 = fromBits(0x3fb333333330fac0), z1 = fromBits(0xbfc555555555551b);
  const V w = a * a;
  return a + ((((((z6 * w + z5) * w + z4) * w + z3) * w + z2) * w + z1) * w) * a;
}

// High words of ordinary arguments.
constexpr int ordinaryFrom = 0x3fc00001, ordinaryTo = 0x41b00000;
template <class V>
INLINE auto outsideOrdinary(V x) {
  const auto word = highWords(x) & 0x7fffffff;
  return (ordinaryFrom > word) | (word > ordinaryTo - 1);
}
// Arguments by their formulas: the logarithm of the sum, from 0.125 to 2^28, that of 2a above, and
// the series for all else.
template <class V>
struct Classes {
  V bySum, byDouble, a;  // a is |x|, or 0 where x is a NaN
};
template <class V>
INLINE Classes<V> classesOf(V x) {
  const V a = andBits(magnitude(x), equalLanes(x, x)), isLarge = lessLanes(broadcast<V>(0x1p28), a);
  return {withoutBits(lessLanes(broadcast<V>(0.125), a), isLarge),
          withoutBits(isLarge, lessLanes(broadcast<V>(fromBits(0x7fefffffffffffff)), a)), a};
}
template <class V>
INLINE V logOfDouble(const Classes<V>& x) {
  const V a = select(x.byDouble, x.a, broadcast<V>(1.0));
  return pairLog<V>({a, broadcast<V>(0.0)}, exponentOf(a) + 1.0);
}
template <class V>
INLINE V seriesToo(const Classes<V>& classes, V x, V y) {
  const V byLog = orBits(classes.bySum, classes.byDouble);
  return orBits(select(byLog, y, asinhSeries(withoutBits(magnitude(x), byLog))), signOf(x));
}

template <class V>
INLINE V logOfSum(V a) {
  const Pair<V> u = sumWith(a, pairRoot(squareAnd1(a)));
  return pairLog(u, exponentOf(u.hi));
}
template <class V>
INLINE V asinhOf(V x) {
  if (!any(outsideOrdinary(x))) [[likely]]
    return orBits(logOfSum(magnitude(x)), signOf(x));
  const Classes<V> classes = classesOf(x);
  V y = broadcast<V>(0.0);
  if (signMask(classes.bySum) != 0) y = logOfSum(select(classes.bySum, classes.a, broadcast<V>(1.0)));
  if (signMask(classes.byDouble) != 0) y = select(classes.byDouble, logOfDouble(classes), y);
  return seriesToo(classes, x, y);
}

// The logarithm of the sum for a strip.
template <class V, class W, class Take>
INLINE void logsOfSums(const Float64* src, int64_t count, Strip& strip, Take take) {
  eachRoot<V, W>(
      count, strip, [&](int64_t i) INLINED { return squareAnd1(magnitude(load<V>(src + i))); },
      [&](int64_t i, Pair<V> root) INLINED { setLog(strip, i, sumWith(magnitude(load<V>(src + i)), root)); });
  eachLog<V, W>(count, strip, take);
}
template <class V, class W>
INLINE void asinhStrip(const Float64* src, Float64* dst, int64_t count, Strip& strip) {
  WordsOf<V> outside{};
  for (int64_t i = 0; i < count; i += laneCount<V>) outside = outside | outsideOrdinary(load<V>(src + i));
  if (!any(outside)) [[likely]] {
    logsOfSums<V, W>(src, count, strip,
                     [&](int64_t i, W y) INLINED { store(dst + i, orBits(y, signOf(load<W>(src + i)))); });
    return;
  }
  V bySum = broadcast<V>(0.0), byDouble = bySum;
  eachVector<V>(count, [&](int64_t i) INLINED {
    const Classes<V> classes = classesOf(load<V>(src + i));
    store(strip.argument + i, select(classes.bySum, classes.a, broadcast<V>(1.0)));
    bySum = orBits(bySum, classes.bySum);
    byDouble = orBits(byDouble, classes.byDouble);
  });
  if (signMask(bySum) != 0)
    logsOfSums<V, W>(strip.argument, count, strip, [&](int64_t i, W y) INLINED { store(strip.series + i, y); });
  if (signMask(byDouble) != 0) eachVector<V>(count, [&](int64_t i) INLINED {
      const Classes<V> classes = classesOf(load<V>(src + i));
      store(strip.series + i, select(classes.byDouble, logOfDouble(classes), load<V>(strip.series + i)));
    });
  eachVector<W>(count, [&](int64_t i) INLINED {
    const W x = load<W>(src + i);
    store(dst + i, seriesToo(classesOf(x), x, load<W>(strip.series + i)));
  });
}

template <class V>
[[gnu::noinline]] nuvStatus asinhShort(const Float64* src, Float64* dst, int64_t len) {
  return plainLoop<V>(src, dst, len, [](auto x) INLINED { return asinhOf(x); });
}
template <class V, class W>
[[gnu::noinline]] nuvStatus asinhLong(const Float64* src, Float64* dst, int64_t len) {
  eachStrip<W>(src, dst, len, [](const Float64* x, Float64* y, int64_t count, Strip& strip) INLINED {
    asinhStrip<V, W>(x, y, count, strip);
  });
  return nuvStatusOk;
}

template <class V, class W>
INLINE nuvStatus asinhLoop(const Float64* src, Float64* dst, int64_t len) {
  if (len == 1) return *dst = asinhOf(*src), nuvStatusOk;
  return len <= laneCount<V> ? asinhShort<V>(src, dst, len) : asinhLong<V, W>(src, dst, len);
}

}  // namespace
}  // namespace qorvane
