// What levels 1 to 3 of the square root and all levels of its reciprocal have in common: the
// series, and where they divide x.
#pragma once
#include "algebraic/root_steps.h"

namespace qorvane {
namespace {

constexpr uint64_t withoutLowWord = 0xffffffff00000000;

// The series in e = x y^2 - 1, of which s is all but the 1:
// (1 + e)^(-1/2) = 1 + e (c1 + ... + c5 e^4), |e| <= 2^-10: error 2^-62.1
struct Series {
  static constexpr std::array coefficients = {
      fromBits(0xbfcf800000000000),  // c5 = -0.24609375 = -63/256
      fromBits(0x3fd1800000000000),  // c4 = 0.2734375 = 35/128
      fromBits(0xbfd4000000000000),  // c3 = -0.3125
      fromBits(0x3fd8000000000000),  // c2 = 0.375
      fromBits(0xbfe0000000000000),  // c1 = -0.5
  };
  template <class V>
  INLINE static V residual(Halves<V> terms) {
    return (terms.high - 1.0) + terms.low;
  }
};

}  // namespace
}  // namespace qorvane
