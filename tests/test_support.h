// What the tests share: the levels that this processor can run, and single evaluations at a chosen
// level.
#pragma once
#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <functional>
#include <ostream>
#include <vector>

#include "frame/dispatch.h"
#include "frame/include/qorvane.h"
#include "tools/served.h"

namespace qorvane::test {

// Levels 1 up to the one that the load hook chose; level 0 alone where that is 0.
const std::vector<int>& supportedLevels();

inline uint64_t bits(double x) { return std::bit_cast<uint64_t>(x); }
inline double number(uint64_t pattern) { return std::bit_cast<double>(pattern); }

// Results compare by their bits; all NaNs are one.
struct Element {
  double value;
  nuvStatus status;
};
inline bool operator==(const Element& a, const Element& b) {
  return a.status == b.status && (bits(a.value) == bits(b.value) || (a.value != a.value && b.value != b.value));
}
std::ostream& operator<<(std::ostream& out, const Element& e);

using Unary = nuvStatus (*)(const double*, double*, int32_t);
using Binary = nuvStatus (*)(const double*, const double*, double*, int32_t);

// One element alone.
inline Element evaluate(Unary f, double x) {
  Element e{0, 0};
  e.status = f(&x, &e.value, 1);
  return e;
}
inline Element evaluate(Binary f, double a, double b) {
  Element e{0, 0};
  e.status = f(&a, &b, &e.value, 1);
  return e;
}

}  // namespace qorvane::test
