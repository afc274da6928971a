// The reduction of large arguments modulo pi/2, for single elements.
#pragma once
#include "frame/bits.h"

namespace qorvane {

// x = quadrant * pi/2 + hi + lo, modulo 2 pi.
struct PiOver2Remainder {
  Float64 hi, lo;  // |hi + lo| is at most about pi/4, and hi = RN(hi + lo)
  int quadrant;    // 0 to 3
};

// x is finite and at least 2 in magnitude. In round-to-nearest; raises no flag but inexact.
PiOver2Remainder reducePiOver2(Float64 x);

}  // namespace qorvane
