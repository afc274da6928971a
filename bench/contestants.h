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
// The C library's function in a scalar loop, SLEEF's function of 1.0 ulp (or the exact one, where
// that is all there is) and the C library's vector function of 4 ulp in a vector loop, and the loop over the bare instruction that does the same
// work.
extern const Team cLibrary, sleefSse4, sleefAvx, sleefAvx2, sleefAvx512, libmvecSse4, libmvecAvx, libmvecAvx2,
    libmvecAvx512, bareAvx;

// Nothing that was stored in the arrays may be left out, nor any call be merged with the next.
INLINE static void keep() { asm volatile("" : : : "memory"); }

}  // namespace qorvane::bench
