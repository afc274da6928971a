// The loops that kernels share. A block of V is computed whole by `fast`; where `flagged` finds an
// argument outside the fast range in it, `special` recomputes each such element from the argument
// as it was read, and gives its status. What remains after the last block runs through the same
// arithmetic in the parts that V is made of. `raises`: a status sets its IEEE flag.
#pragma once
#include "frame/lanes.h"
#include "frame/raise_fp_status.h"

namespace qorvane {
namespace {

enum class Raises { no, yes };

template <Raises raises>
INLINE void takeStatus(nuvStatus& status, nuvStatus ofElement) {
  if (ofElement == nuvStatusOk) return;
  status = ofElement;
  if (raises == Raises::yes) raiseFpStatus(ofElement);
}

// flagged(V x) -> bool for any lane; special(Float64 x, Float64* y) -> status. Both are also asked
// for single elements, so `flagged` is a generic lambda.
template <Raises raises, class Flagged, class Special>
[[gnu::noinline, gnu::cold]] nuvStatus repairUnary(const Float64* x, Float64* y, int64_t count, nuvStatus status,
                                                   Flagged flagged, Special special) {
  for (int64_t i = 0; i < count; ++i)
    if (flagged(x[i])) takeStatus<raises>(status, special(x[i], y + i));
  return status;
}

template <class V, Raises raises, class Fast, class Flagged, class Special>
INLINE nuvStatus unaryLoop(const Float64* src, Float64* dst, int64_t len, Fast fast, Flagged flagged, Special special) {
  nuvStatus status = nuvStatusOk;
  const auto finish = [&](auto x, auto y, int64_t count) INLINED {
    if (flagged(x)) [[unlikely]] {
      alignas(32) Float64 xs[laneCount<V>], ys[laneCount<V>];
      store(xs, x);
      store(ys, y);
      status = repairUnary<raises>(xs, ys, count, status, flagged, special);
      y = load<decltype(y)>(ys);
    }
    return y;
  };
  int64_t i = 0;
  for (; i + laneCount<V> <= len; i += laneCount<V>) {
    const V x = load<V>(src + i);
    store(dst + i, finish(x, fast(x), laneCount<V>));
  }
  using Part = PartOf<V>;
  for (int64_t count; i < len; i += count) {
    count = len - i < laneCount<Part> ? len - i : laneCount<Part>;
    const Part x = loadPart<Part>(src + i, count);
    storePart(dst + i, finish(x, fast(x), count), count);
  }
  return status;
}

// The same for functions that make no operation on a block before its test, so that arguments
// outside the fast range leave no flag but their own: a flagged block goes through `lane` whole,
// which serves every argument.
template <Raises raises, class Lane>
[[gnu::noinline, gnu::cold]] nuvStatus eachLane(const Float64* x, Float64* y, int64_t count, nuvStatus status,
                                                Lane lane) {
  for (int64_t i = 0; i < count; ++i) takeStatus<raises>(status, lane(x[i], y + i));
  return status;
}

template <class V, Raises raises, class Fast, class Flagged, class Lane>
INLINE nuvStatus guardedUnaryLoop(const Float64* src, Float64* dst, int64_t len, Fast fast, Flagged flagged,
                                  Lane lane) {
  nuvStatus status = nuvStatusOk;
  const auto isFlagged = [&](auto x, Float64* to, int64_t count) INLINED {
    if (!flagged(x)) [[likely]]
      return false;
    alignas(32) Float64 xs[laneCount<V>];
    store(xs, x);
    status = eachLane<raises>(xs, to, count, status, lane);
    return true;
  };
  int64_t i = 0;
  for (; i + laneCount<V> <= len; i += laneCount<V>) {
    const V x = load<V>(src + i);
    if (!isFlagged(x, dst + i, laneCount<V>)) store(dst + i, fast(x));
  }
  using Part = PartOf<V>;
  for (int64_t count; i < len; i += count) {
    count = len - i < laneCount<Part> ? len - i : laneCount<Part>;
    const Part x = loadPart<Part>(src + i, count);
    if (!isFlagged(x, dst + i, count)) storePart(dst + i, fast(x), count);
  }
  return status;
}

// No element is special: `fast` gives every result.
template <class V, class Fast>
INLINE nuvStatus plainLoop(const Float64* src, Float64* dst, int64_t len, Fast fast) {
  return unaryLoop<V, Raises::no>(
      src, dst, len, fast, [](auto) { return false; }, [](Float64, Float64*) { return nuvStatusOk; });
}

}  // namespace
}  // namespace qorvane
