// The loops that kernels share, over blocks of V and, after the last block, over the parts that V is
// made of: an element goes through the same arithmetic wherever it stands. `raises`: a status sets
// its IEEE flag.
//
// What lies outside the fast range, where `flagged` finds any in a block, is served by scalar
// routines that give an Element: a special lane serves the flagged elements alone, a fix lane every
// element of a block with one.
#pragma once
#include "frame/element.h"
#include "frame/raise_fp_status.h"
#include "frame/words.h"

namespace qorvane {
namespace {

enum class Raises { no, yes };

template <Raises raises>
INLINE void takeStatus(nuvStatus& status, nuvStatus ofElement) {
  if (ofElement == nuvStatusOk) return;
  status = ofElement;
  if (raises == Raises::yes) raiseFpStatus(ofElement);
}
template <Raises raises>
INLINE void takeElement(nuvStatus& status, Float64* y, Element element) {
  *y = element.value;
  takeStatus<raises>(status, element.status);
}

// For one, two or more inputs: fast(V x...) -> V; flagged(V x...) -> bool, for any lane; special(Float64
// x...) -> Element, from the arguments as they were read. Both are also asked for single elements, so
// `flagged` is a generic lambda. All arithmetic is made for flagged elements too.
template <Raises raises, int lanes, class Flagged, class Special, int... k>
[[gnu::noinline, gnu::cold]] nuvStatus repair(std::integer_sequence<int, k...>, const Float64 (*x)[lanes], Float64* y,
                                              int64_t count, nuvStatus status, Flagged flagged, Special special) {
  for (int64_t i = 0; i < count; ++i)
    if (flagged(x[k][i]...)) takeElement<raises>(status, y + i, special(x[k][i]...));
  return status;
}

template <class V, Raises raises, class Fast, class Flagged, class Special, class... Sources>
INLINE nuvStatus elementLoop(Float64* dst, int64_t len, Fast fast, Flagged flagged, Special special,
                             Sources... sources) {
  nuvStatus status = nuvStatusOk;
  const auto finish = [&](int64_t count, auto... x) INLINED {
    auto y = fast(x...);
    if (flagged(x...)) [[unlikely]] {
      alignas(32) Float64 xs[sizeof...(x)][laneCount<V>], ys[laneCount<V>];
      [&]<int... k>(std::integer_sequence<int, k...> inputs) INLINED {
        (store(xs[k], x), ...);
        store(ys, y);
        status = repair<raises>(inputs, xs, ys, count, status, flagged, special);
      }
      (std::make_integer_sequence<int, sizeof...(x)>{});
      y = load<decltype(y)>(ys);
    }
    return y;
  };
  int64_t i = 0;
  for (; i + laneCount<V> <= len; i += laneCount<V>) store(dst + i, finish(laneCount<V>, load<V>(sources + i)...));
  if constexpr (isPack<V> && packSize<V> == 2) {
    if (const int64_t count = len - i; count > laneCount<V> / 2) {  // faster than both parts one by one
      storePart(dst + i, finish(count, loadPart<V>(sources + i, count)...), count);
      return status;
    }
  }
  using Part = PartOf<V>;
  for (int64_t count; i < len; i += count) {
    count = len - i < laneCount<Part> ? len - i : laneCount<Part>;
    storePart(dst + i, finish(count, loadPart<Part>(sources + i, count)...), count);
  }
  return status;
}
template <class V, Raises raises, class Fast, class Flagged, class Special>
INLINE nuvStatus unaryLoop(const Float64* src, Float64* dst, int64_t len, Fast fast, Flagged flagged, Special special) {
  return elementLoop<V, raises>(dst, len, fast, flagged, special, src);
}
template <class V, Raises raises, class Fast, class Flagged, class Special>
INLINE nuvStatus binaryLoop(const Float64* srcA, const Float64* srcB, Float64* dst, int64_t len, Fast fast,
                            Flagged flagged, Special special) {
  return elementLoop<V, raises>(dst, len, fast, flagged, special, srcA, srcB);
}

// The same, where an unflagged element alone goes straight to `fast`. The loop has a function of its
// own: it would otherwise share registers and be laid out worse.
template <class V, Raises raises, class Fast, class Flagged, class Special>
[[gnu::noinline, gnu::flatten]] nuvStatus severalElements(const Float64* src, Float64* dst, int64_t len, Fast fast,
                                                          Flagged flagged, Special special) {
  return unaryLoop<V, raises>(src, dst, len, fast, flagged, special);
}
template <class V, Raises raises, class Fast, class Flagged, class Special>
INLINE nuvStatus oneOrSeveral(const Float64* src, Float64* dst, int64_t len, Fast fast, Flagged flagged,
                              Special special) {
  if (len == 1 && !flagged(*src)) return *dst = fast(*src), nuvStatusOk;
  return severalElements<V, raises>(src, dst, len, fast, flagged, special);
}

// The same for functions that make no operation on a block before its test, so that arguments
// outside the fast range leave no flag but their own: a flagged block goes through the fix lane
// whole.
template <Raises raises, class Lane>
[[gnu::noinline, gnu::cold]] nuvStatus eachLane(const Float64* x, Float64* y, int64_t count, nuvStatus status,
                                                Lane lane) {
  for (int64_t i = 0; i < count; ++i) takeElement<raises>(status, y + i, lane(x[i]));
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
  if constexpr (isPack<V> && packSize<V> == 2) {
    if (const int64_t count = len - i; count > laneCount<V> / 2) {  // faster than both parts one by one
      const V x = loadPart<V>(src + i, count);
      if (!isFlagged(x, dst + i, count)) storePart(dst + i, fast(x), count);
      return status;
    }
  }
  using Part = PartOf<V>;
  for (; i + laneCount<Part> <= len; i += laneCount<Part>) {
    const Part x = load<Part>(src + i);
    if (!isFlagged(x, dst + i, laneCount<Part>)) store(dst + i, fast(x));
  }
  if (const int64_t count = len - i; count > 0) {
    const Part x = loadPart<Part>(src + i, count);
    if (!isFlagged(x, dst + i, count)) storePart(dst + i, fast(x), count);
  }
  return status;
}

// No element is special: `fast` gives every result.
template <class V, class Fast>
INLINE nuvStatus plainLoop(const Float64* src, Float64* dst, int64_t len, Fast fast) {
  return unaryLoop<V, Raises::no>(
      src, dst, len, fast, [](auto) { return false; }, [](Float64 x) { return Element{x}; });
}

// All of V, or the first `count` lanes of a vector.
template <class V>
INLINE void put(Float64* p, V v, int64_t count) {
  if constexpr (isPack<V>)
    store(p, v);
  else
    storePart(p, v, count);
}

// Blocks of V whose elements have a common fate: if `flagged` finds any, the whole block goes to
// `slow`, otherwise to `fast`; both are given the arguments and the index of the first, and store
// the results. After the last block each element is a block of its own, but unflagged ones may
// still be computed together.
//   flagged(V x) -> bool;  fast(V x, int64_t i, int64_t count);  slow(V x, int64_t i, int64_t
//   count) -> status
template <class V, class Flagged, class Fast, class Slow>
INLINE nuvStatus blockLoop(const Float64* src, int64_t len, Flagged flagged, Fast fast, Slow slow) {
  nuvStatus status = nuvStatusOk;
  const auto compute = [&](auto x, int64_t i, int64_t count) INLINED {
    if (flagged(x)) [[unlikely]] {
      const nuvStatus ofBlock = slow(x, i, count);
      if (ofBlock != nuvStatusOk) status = ofBlock;
    } else {
      fast(x, i, count);
    }
  };
  int64_t i = 0;
  for (; i + laneCount<V> <= len; i += laneCount<V>) compute(load<V>(src + i), i, laneCount<V>);
  using Part = PartOf<V>;
  for (int64_t count; i < len; i += count) {
    count = len - i < laneCount<Part> ? len - i : laneCount<Part>;
    Part x = loadPart<Part>(src + i, count);
    if (flagged(x)) [[unlikely]] {
      count = 1;
      x = broadcast<Part>(src[i]);
    }
    compute(x, i, count);
  }
  return status;
}

}  // namespace
}  // namespace qorvane
