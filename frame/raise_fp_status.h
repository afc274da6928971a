// Makes the hardware set the IEEE flag of an element's status.
#pragma once
#include "frame/bits.h"
#include "frame/include/qorvane.h"

namespace qorvane {
namespace {

// The result is not used, but the operation is made.
INLINE void discard(Float64 x) { asm volatile("" : : "x"(x)); }

INLINE void raiseFpStatus(nuvStatus status) {
  constexpr Float64 largest = fromBits(0x7fefffffffffffff);
  constexpr Float64 aboveSmallestNormal = fromBits(0x0010000000000001);
  switch (status) {
    case nuvStatusOutOfDomain: return discard(opaque(0.0) / opaque(0.0));       // invalid
    case nuvStatusPole: return discard(opaque(1.0) / opaque(0.0));              // divide by zero
    case nuvStatusOverflow: return discard(opaque(largest) * opaque(largest));  // overflow, inexact
    case nuvStatusUnderflow:
      return discard(opaque(aboveSmallestNormal) * opaque(aboveSmallestNormal));  // underflow, inexact
    default: return;
  }
}

}  // namespace
}  // namespace qorvane
