// erfinv in extended precision, for the accuracy tool and the demonstration; tools/inverse_erf.h
// has it in MPFR.
#pragma once
#include <cmath>

namespace accuracy {

// The logarithm of erfc is so close to a parabola that Newton's method on it gets from anywhere to
// anywhere.
inline long double inverseErfQuick(long double x) {
  constexpr long double twoOverRootPi = 1.12837916709551257389615890312154517L;
  const long double a = std::fabs(x), w = 1 - a;
  long double y = a < 0.5L ? a / twoOverRootPi : std::sqrt(-std::log(w));
  for (int i = 0; i < 6; ++i) {
    const long double slope = twoOverRootPi * std::exp(-y * y);
    if (a < 0.5L) {
      y -= (std::erf(y) - a) / slope;
    } else {
      const long double value = std::erfc(y);
      y += (i < 4 ? std::log(value / w) * value : value - w) / slope;
    }
  }
  return std::copysign(y, x);
}

}  // namespace accuracy
