// pi and its parts as the inverse functions use them: value and what rounding it left over.
#pragma once
#include "frame/bits.h"

namespace qorvane {
namespace {

constexpr Float64 pi = fromBits(0x400921fb54442d18);         // 3.1415926535897931
constexpr Float64 piLo = fromBits(0x3ca1a62633145c07);       // 1.2246467991473532e-16
constexpr Float64 halfPi = fromBits(0x3ff921fb54442d18);     // 1.5707963267948966
constexpr Float64 halfPiLo = fromBits(0x3c91a62633145c07);   // 6.123233995736766e-17
constexpr Float64 quarterPi = fromBits(0x3fe921fb54442d18);  // 0.78539816339744828

}  // namespace
}  // namespace qorvane
