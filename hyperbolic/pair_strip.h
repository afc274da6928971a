// asinh and acosh over many elements: strips, and each stage of the long chain of operations a loop
// of its own over a strip, with numbers in memory in between. A stage's chain is short enough for
// the processor to overlap its turns.
#pragma once
#include "hyperbolic/pair_steps.h"

namespace qorvane {
namespace {

constexpr int64_t stripLength = 64;

// Numbers between the stages. x and y are for strips whose length isn't a multiple of the vectors'.
struct Strip {
  alignas(32) Float64 hi[stripLength], lo[stripLength], key[stripLength], seed[stripLength], series[stripLength],
      head[stripLength], rest[stripLength], argument[stripLength];
  alignas(32) Float64 x[stripLength], y[stripLength];
};

template <class V, class Stage>
[[gnu::noinline]] void eachVector(int64_t count, Stage stage) {
  for (int64_t i = 0; i < count; i += laneCount<V>) stage(i);
}

// Square roots: start(i) -> Pair<V> is the number under the root; take(i, root) gets the two
// numbers that are the root.
template <class V, class W, class Start, class Take>
INLINE void eachRoot(int64_t count, Strip& strip, Start start, Take take) {
  eachVector<V>(count, [&](int64_t i) INLINED {
    const Pair<V> r = start(i);
    store(strip.hi + i, r.hi);
    store(strip.lo + i, r.lo);
    store(strip.key + i, seedKey(r.hi));
  });
  eachVector<V>(count, [&](int64_t i) INLINED {
    const Pair<V> r = {load<V>(strip.hi + i), load<V>(strip.lo + i)};
    const V y = seed(r.hi, [&](int lane) INLINED { return (keyAt(strip.key + i + lane) - firstSeedKey) << 3; });
    const RootTerms<V> terms = rootTerms(r, y);
    store(strip.seed + i, y);
    store(strip.series + i, terms.residual);
    store(strip.hi + i, terms.first);
    store(strip.head + i, terms.head);
    store(strip.rest + i, terms.rest);
  });
  eachVector<W>(count, [&](int64_t i) INLINED {
    store(strip.series + i, rootSeries(load<W>(strip.series + i)) * load<W>(strip.seed + i));
  });
  eachVector<V>(count, [&](int64_t i) INLINED {
    const V low = load<V>(strip.series + i) * load<V>(strip.head + i) + load<V>(strip.rest + i);
    take(i, Pair<V>{load<V>(strip.hi + i), low});
  });
}
// Logarithms of what setLog has put into the strip: take(i, y).
template <class V>
INLINE void setLog(Strip& strip, int64_t i, Pair<V> u) {
  store(strip.hi + i, u.hi);
  store(strip.lo + i, u.lo);
  store(strip.key + i, logKey(u.hi));
}
template <class V, class W, class Take>
INLINE void eachLog(int64_t count, Strip& strip, Take take) {
  eachVector<V>(count, [&](int64_t i) INLINED {
    const Pair<V> u = {load<V>(strip.hi + i), load<V>(strip.lo + i)};
    const auto offsets = [&](int lane) INLINED { return (keyAt(strip.key + i + lane) - firstLogKey) << 5; };
    const LogTerms<V> terms = logTerms(u, exponentOf(u.hi), offsets);
    store(strip.series + i, terms.w);
    store(strip.lo + i, terms.lo);
    store(strip.hi + i, terms.hi);
  });
  eachVector<W>(count, [&](int64_t i) INLINED {
    take(i, (logSeries(load<W>(strip.series + i)) + load<W>(strip.lo + i)) + load<W>(strip.hi + i));
  });
}

// evaluate(src, dst, count, strip) for all strips, with counts that are multiples of W's lanes:
// elements beyond the last one repeat the first of its strip.
template <class W, class Evaluate>
INLINE void eachStrip(const Float64* src, Float64* dst, int64_t len, Evaluate evaluate) {
  Strip strip;
  for (int64_t count; len > 0; src += count, dst += count, len -= count) {
    count = len < stripLength ? len : stripLength;
    const int64_t whole = (count + laneCount<W> - 1) / laneCount<W> * laneCount<W>;
    if (whole == count) {
      evaluate(src, dst, count, strip);
      continue;
    }
    __builtin_memcpy(strip.x, src, static_cast<size_t>(count) * sizeof *src);
    for (int64_t i = count; i < whole; ++i) strip.x[i] = src[0];
    evaluate(strip.x, strip.y, whole, strip);
    __builtin_memcpy(dst, strip.y, static_cast<size_t>(count) * sizeof *dst);
  }
}

}  // namespace
}  // namespace qorvane
