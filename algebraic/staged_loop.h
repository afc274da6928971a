// The loop of the roots, in two stages over chunks that stay in the first-level cache: integer work
// first, its results in a table of the chunk, arithmetic after. Either stage alone is short enough
// for the processor to overlap many of its turns, which the whole chain of an element is not.
#pragma once
#include "frame/loops.h"

namespace qorvane {
namespace {

constexpr int64_t chunkSize = 128;

// first(x, i) does the first stage of the four elements at x, or in a Four, the i-th and following of
// the chunk, without an operation that raises flags, and returns a mask of those that lane(x) -> Element
// must serve. finish(middle(begin(x, i)), x, i) gives the results of four ordinary ones; these
// three run for three successive fours at a time.
template <Raises raises, class First, class Begin, class Middle, class Finish, class Lane>
INLINE nuvStatus stagedLoop(const Float64* src, Float64* dst, int64_t len, First first, Begin begin, Middle middle,
                            Finish finish, Lane lane) {
  nuvStatus status = nuvStatusOk;
  if (len == 1) return eachLane<raises>(src, dst, len, status, lane);
  for (int64_t count; len > 0; src += count, dst += count, len -= count) {
    count = len < chunkSize ? len : chunkSize;
    const int64_t whole = count & ~int64_t{3}, rest = count - whole;
    alignas(32) Float64 last[4];  // the elements after the whole fours, some of them repeated
    Words4 flagged{};
    for (int64_t i = 0; i < whole; i += 4) {
      Words4 mask = first(src + i, i);
      asm("" : "+x"(mask));  // or else the compiler makes a blend of the comparison and this sum
      flagged |= mask;
    }
    if (rest != 0) {
      const Four x = loadPart<Four>(src + whole, rest);
      store(last, x);
      flagged |= first(x, whole);
    }
    if (any(flagged)) [[unlikely]] {
      for (int64_t i = 0; i < count; i += 4) {
        const int64_t here = count - i < 4 ? count - i : 4;
        const Four four = loadPart<Four>(src + i, here);
        alignas(32) Float64 x[4];
        store(x, four);
        if (any(first(four, i)))
          status = eachLane<raises>(x, dst + i, here, status, lane);
        else
          storePart(dst + i, finish(middle(begin(x, i)), x, i), here);
      }
      continue;
    }
    if (whole >= 8) {
      auto second = middle(begin(src, 0));
      auto next = begin(src + 4, 4);
      int64_t i = 0;
      for (; i < whole - 8; i += 4) {
        const Four y = finish(second, src + i, i);
        second = middle(next);
        next = begin(src + i + 8, i + 8);
        store(dst + i, y);
      }
      const Four y = finish(second, src + i, i);
      const Four z = finish(middle(next), src + i + 4, i + 4);
      store(dst + i, y);
      store(dst + i + 4, z);
    } else if (whole == 4) {
      store(dst, finish(middle(begin(src, 0)), src, 0));
    }
    if (rest != 0) storePart(dst + whole, finish(middle(begin(last, whole)), last, whole), rest);
  }
  return status;
}

}  // namespace
}  // namespace qorvane
