// What the speed programs run: a contestant is one way to evaluate a function over arrays, the
// library's own at a level or a peer's.
#pragma once
#include <cstdint>

#include "frame/bits.h"
#include "tools/call.h"

namespace qorvane::bench {

struct Contestant {
  const char* stem;  // the function, as in frame/functions.inc
  void (*repeat)(const Call& call, int64_t times);
};

struct Team {
  const char* name;
  bool (*runsHere)();  // whether this processor has the instructions
  const Contestant* first;
  int count;
};

// The library's functions, one entry a row of frame/functions.inc; they run at whatever
// DispatchLevel says.
extern const Team library;
// The complex functions' kernels of level 5 for processors without fused multiply-adds.
extern const Team unfused;
// The C library's function in a scalar loop, SLEEF's function of 1.0 ulp (or the exact one, where
// that is all there is) and the C library's vector function of 4 ulp in a vector loop, and the loop over the bare instruction that does the same
// work.
extern const Team cLibrary, sleefSse4, sleefAvx, sleefAvx2, sleefAvx512, libmvecSse4, libmvecAvx, libmvecAvx2,
    libmvecAvx512, bareAvx;

// A turn's calls of short arrays take one piece after the other of the first `walk` elements, and
// begin again: if all calls had the same few elements, all branches of a function would be predicted.
constexpr int walk = 1000;
INLINE static constexpr int64_t callsOfAWalk(int len) { return len < walk ? walk / len : 1; }

// one(at) for each call, `at` the place of its piece in the arrays. Nothing that was stored in them
// may be left out, nor any call be merged with the next.
template <class One>
INLINE static void eachCall(int len, int parts, int64_t times, One one) {
  const int64_t step = int64_t{len} * parts, end = callsOfAWalk(len) * step;
  for (int64_t at = 0; times > 0; --times) {
    one(at);
    asm volatile("" : : : "memory");
    at = at + step == end ? 0 : at + step;
  }
}

}  // namespace qorvane::bench
