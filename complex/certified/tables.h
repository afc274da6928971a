// The tables of the lanes: heads have 26 bits, so that products of two heads are exact.
#pragma once
#include "frame/bits.h"

namespace qorvane {

struct alignas(32) HyperbolicRow {
  Float64 risingHead, risingRest, fallingHead, fallingRest;
};
struct alignas(32) TrigonometricRow {
  Float64 sinHead, sinRest, cosHead, cosRest;
};
extern const HyperbolicRow hyperbolicRows[64];         // 2^(j/64) and 2^(-j/64)
extern const TrigonometricRow trigonometricRows[512];  // of j pi/256

}  // namespace qorvane
