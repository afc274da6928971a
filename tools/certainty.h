// The complex functions in lanes as qorvane-certainty sees them.
#pragma once
#include <cmath>
#include <cstdint>
#include <random>
#include <span>

#include "complex/certified/elements.h"

namespace qorvane::certainty {

// Of the bounds that the lanes use.
constexpr double shares[] = {1, 0.85, 0.75, 0.6, 0.5, 0.4, 0.3, 0.2, 0.1};
constexpr int shareCount = sizeof shares / sizeof *shares;

struct Counts {
  int64_t elements = 0, differences = 0, unsure[shareCount] = {}, wrong[shareCount] = {};

  void add(int share, bool isSure, bool isRight) {
    unsure[share] += !isSure;
    wrong[share] += isSure && !isRight;
  }
};

using Random = std::mt19937_64;
struct Distribution {
  const char* name;
  Complex64 (*draw)(Random&);
};
inline double uniform(Random& random, double low, double high) {
  return low + (high - low) * static_cast<double>(random() >> 11) * 0x1p-53;
}
inline double signedPower(Random& random, double from, double to) {
  const double magnitude = std::exp2(uniform(random, from, to));
  return (random() & 1) != 0 ? -magnitude : magnitude;
}
inline Complex64 within(Random& random, double size) {
  const double re = uniform(random, -size, size);
  return {re, uniform(random, -size, size)};
}
// From 2^-exponent to 2^exponent.
inline Complex64 ofAnySize(Random& random, double exponent) {
  const double re = signedPower(random, -exponent, exponent);
  return {re, signedPower(random, -exponent, exponent)};
}
inline Complex64 onCircle(Random& random, double radius) {
  const double angle = uniform(random, 0, 6.283185307179586);
  return {radius * std::cos(angle), radius * std::sin(angle)};
}

using Kernel = nuvStatus(const Complex64*, Complex64*, int32_t);
struct Subject {
  const char* name;
  Complex64 (*element)(Complex64);
  // What the lanes make of one element with each share of the bounds.
  void (*takeShares)(Complex64 z, Complex64 expected, Counts&);
  bool isTurned;               // takes a distribution's points with their parts exchanged
  Kernel *sse3, *avx, *fused;  // the last one may be missing
  std::span<const Distribution> distributions;
};

std::span<const Subject> exponentialSubjects();  // sinh, cosh, tanh, sin, cos, tan
std::span<const Subject> inverseSubjects();      // asinh, asin, acosh, acos, atan
std::span<const Subject> logSubjects();          // log10
std::span<const Subject> powSubjects();          // exp, pow

}  // namespace qorvane::certainty
