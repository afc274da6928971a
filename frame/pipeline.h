// Software pipelines, for chains of operations that are longer than the processor looks ahead: it
// would wait for one vector where it could work on the next ones. A chain is cut into stages, each a
// lambda of a vector's index that leaves what it makes in variables of its kernel. A turn of the loop
// makes one stage for each of as many successive vectors, the oldest first: its operands were ready
// a turn ago. Numbers that live longer than a turn go through memory.
#pragma once
#include <type_traits>

#include "frame/loops.h"

namespace qorvane {
namespace {

// The last stage for the vector at i, the one before it for the next vector, and so on, but for the
// first `without` stages.
template <int64_t vector, int without, class Stage, class... Later>
INLINE void turn(int64_t i, Stage& stage, Later&... later) {
  if constexpr (sizeof...(later) > 0) turn<vector, without - 1>(i, later...);
  if constexpr (without <= 0) stage(i + int64_t{sizeof...(later)} * vector);
}
template <int count, class Stage, class... Later>
INLINE void firstStages(int64_t i, Stage& stage, Later&... later) {
  stage(i);
  if constexpr (count > 1) firstStages<count - 1>(i, later...);
}

// Vectors of so many elements, up to `count` elements in all, which are more vectors than there are
// stages before the last. No stage runs for a vector beyond the end.
template <int64_t vector, class... Stages>
INLINE void pipeline(int64_t count, Stages... stages) {
  constexpr int fill = sizeof...(stages) - 1;
  int64_t i = 0;
  [&]<int... k>(std::integer_sequence<int, k...>) INLINED {
    (firstStages<fill - k>(k * vector, stages...), ...);
#pragma GCC unroll 2
    for (; i < count - fill * vector; i += vector) turn<vector, 0>(i, stages...);
    ((turn<vector, k + 1>(i, stages...), i += vector), ...);
  }
  (std::make_integer_sequence<int, fill>{});
}

// Where stages are loops of their own, and leave all that they make in memory: f(V, int64_t i) for
// each group of vectors in lockstep, V{} standing for its type, and for what remains, vectors of Last.
template <class Group, class Last, class F>
INLINE void eachGroup(int64_t count, F f) {
  int64_t i = 0;
  for (; i + laneCount<Group> <= count; i += laneCount<Group>) f(Group{}, i);
  if constexpr (laneCount<Group> != laneCount<Last>)
    for (; i < count; i += laneCount<Last>) f(Last{}, i);
}

// The same with a chain cut in two: what first(V, int64_t i) gives second(V, int64_t i, that) takes. A
// group's second half stands beside the next group's first half, and the numbers between stay in
// registers.
template <class Group, class Last, class First, class Second>
INLINE void eachGroupInTwo(int64_t count, First first, Second second) {
  constexpr int64_t lanes = laneCount<Group>;
  int64_t i = 0;
  if (count >= lanes) {
    auto between = first(Group{}, 0);
    for (i = lanes; i + lanes <= count; i += lanes) {
      const auto next = first(Group{}, i);
      second(Group{}, i - lanes, between);
      between = next;
    }
    second(Group{}, i - lanes, between);
  }
  if constexpr (lanes != laneCount<Last>)
    for (; i < count; i += laneCount<Last>) second(Last{}, i, first(Last{}, i));
}

// Goes over arrays in stretches of up to `longest` elements: fast(count, pointers...) -> bool may
// take one of at least `shortest`, cut to a multiple of `unit`; other(count, pointers...) -> status
// takes the rest and raises its flags.
template <int64_t longest, int64_t shortest, int64_t unit, class Fast, class Other, class... Pointers>
INLINE nuvStatus stretchLoop(int64_t len, Fast fast, Other other, Pointers... pointers) {
  nuvStatus status = nuvStatusOk;
  for (int64_t count; len > 0; len -= count, ((pointers += count), ...)) {
    count = len < longest ? len : longest;
    const int64_t whole = count & ~(unit - 1);
    if (count >= shortest && fast(whole, pointers...))
      count = whole;
    else
      takeStatus<Raises::no>(status, other(count, pointers...));
  }
  return status;
}

// The same with a function for each, so that arrays too short for a stretch don't pay for the
// registers and the stack that `fast` wants. Neither captures anything.
template <class Other, class... Pointers>
[[gnu::noinline, gnu::flatten, gnu::aligned(64)]] nuvStatus shortArray(int64_t len, Other other, Pointers... pointers) {
  return other(len, pointers...);
}
template <int64_t longest, int64_t shortest, int64_t unit, class Fast, class Other, class... Pointers>
[[gnu::noinline, gnu::flatten, gnu::aligned(64)]] nuvStatus longArray(int64_t len, Fast fast, Other other,
                                                                      Pointers... pointers) {
  return stretchLoop<longest, shortest, unit>(
      len, fast, [=](int64_t count, Pointers... rest) INLINED { return shortArray(count, other, rest...); },
      pointers...);
}
template <int64_t longest, int64_t shortest, int64_t unit, class Fast, class Other, class... Pointers>
INLINE nuvStatus shortOrLongLoop(int64_t len, Fast fast, Other other, Pointers... pointers) {
  static_assert(std::is_empty_v<Fast> && std::is_empty_v<Other>);
  if (len < shortest) return shortArray(len, other, pointers...);
  return longArray<longest, shortest, unit>(len, fast, other, pointers...);
}

}  // namespace
}  // namespace qorvane
