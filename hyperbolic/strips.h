// Long arrays go in strips: a first pass reduces the arguments of a whole strip, a second one reads
// a table row for each element, with what the first has left on the stack.
#pragma once
#include "frame/pipeline.h"

namespace qorvane {
namespace {

constexpr int64_t longestStrip = 256, shortestStrip = 32;

// The byte offsets of the lanes' rows, for the functions that read rows. They are read anew for
// each step of a pipeline: a compiler that knew that two steps read the same ones would keep them
// in registers, which it doesn't have.
template <class V>
INLINE auto rowsAt(const uint32_t* offsets) {
  const volatile uint32_t* p = offsets;
  if constexpr (laneCount<V> == 2) {
    const uint64_t row0 = p[0], row1 = p[1];
    return [=](int lane) INLINED { return lane == 0 ? row0 : row1; };
  } else {
    const uint64_t row0 = p[0], row1 = p[1], row2 = p[2], row3 = p[3];
    return [=](int lane) INLINED { return lane == 0 ? row0 : lane == 1 ? row1 : lane == 2 ? row2 : row3; };
  }
}

}  // namespace
}  // namespace qorvane
