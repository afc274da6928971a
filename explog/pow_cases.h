// The arguments of x^y for which no arithmetic is needed, for both scalar routines.
#pragma once
#include "frame/bits.h"
#include "frame/include/qorvane.h"

namespace qorvane {
namespace {

namespace power {

constexpr uint64_t signBit = uint64_t{1} << 63;
constexpr uint64_t infinity = 0x7ff0000000000000;
constexpr uint64_t one = 0x3ff0000000000000;

enum class Parity { fraction, even, odd };

// Infinities and NaNs count as fractions.
inline Parity parityOf(Float64 y) {
  const uint64_t magnitude = toBits(y) & ~signBit;
  const int exponent = static_cast<int>(magnitude >> 52) - 1023;
  if (magnitude == 0) return Parity::even;
  if (exponent < 0 || magnitude >= infinity) return Parity::fraction;
  if (exponent >= 53) return Parity::even;
  const uint64_t significand = (magnitude & 0x000fffffffffffff) | 0x0010000000000000;
  const uint64_t unit = uint64_t{1} << (52 - exponent);
  if (significand & (unit - 1)) return Parity::fraction;
  return significand & unit ? Parity::odd : Parity::even;
}

// Whether the result is decided without arithmetic. `pattern` is that result: the first NaN
// unchanged, and the default NaN outside the domain.
struct Decision {
  bool decided;
  uint64_t pattern;
  nuvStatus status;
};

inline Decision decide(Float64 xValue, Float64 yValue) {
  const uint64_t x = toBits(xValue), y = toBits(yValue), xMagnitude = x & ~signBit, yMagnitude = y & ~signBit;
  const bool xNegative = x >> 63, yNegative = y >> 63;
  const auto gives = [](uint64_t pattern, nuvStatus status = nuvStatusOk) { return Decision{true, pattern, status}; };

  if (yMagnitude == 0 || x == one) return gives(one);
  if (xMagnitude > infinity) return gives(x);
  if (yMagnitude > infinity) return gives(y);
  const Parity parity = parityOf(yValue);
  const uint64_t sign = xNegative && parity == Parity::odd ? signBit : 0;
  if (xMagnitude == 0) return yNegative ? gives(sign | infinity, nuvStatusOutOfDomain) : gives(sign);
  if (yMagnitude == infinity) {
    if (xMagnitude == one) return gives(one);
    return gives((xMagnitude > one) != yNegative ? infinity : 0);
  }
  if (xMagnitude == infinity) return gives(sign | (yNegative ? 0 : infinity));
  if (xNegative && parity == Parity::fraction) return gives(0xfff8000000000000, nuvStatusOutOfDomain);
  return {false, 0, nuvStatusOk};
}

// The sign of the result for a finite x and an integer y, or a positive x: 1.0 or -1.0.
inline Float64 signOfPower(Float64 x, Float64 y) { return toBits(x) >> 63 && parityOf(y) == Parity::odd ? -1.0 : 1.0; }

constexpr int exponentField(Float64 x) { return static_cast<int>(toBits(x) >> 52) & 0x7ff; }

// The number with the low `count` bits of its pattern cleared.
constexpr Float64 withoutLowBits(Float64 x, int count) { return fromBits(toBits(x) >> count << count); }

}  // namespace power
}  // namespace
}  // namespace qorvane
