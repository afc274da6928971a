// Rows of special values of complex functions: argument, result and flags.
#pragma once
#include <cfenv>
#include <cmath>
#include <vector>

#include "tests/test_support.h"

namespace qorvane::test {
namespace {

using ComplexUnary = nuvStatus (*)(const Complex64*, Complex64*, int32_t);

constexpr double inf = HUGE_VAL, nan = NAN, tiny = 0x1p-1074;

inline bool same(double a, double b) { return bits(a) == bits(b) || (a != a && b != b); }
// x87 and SSE flags alike.
inline Complex64 evaluate(ComplexUnary f, Complex64 z, int* flags = nullptr) {
  Complex64 result;
  std::feclearexcept(FE_ALL_EXCEPT);
  EXPECT_EQ(f(&z, &result, 1), nuvStatusOk);
  if (flags != nullptr) *flags = std::fetestexcept(FE_ALL_EXCEPT);
  return result;
}

struct Row {
  double x, y, re, im;
  int raised = 0;  // of invalid, division by zero, overflow and underflow, just these
};
inline void expectRows(ComplexUnary f, const std::vector<Row>& rows) {
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (const Row& row : rows) {
      int flags;
      const Complex64 z = evaluate(f, {row.x, row.y}, &flags);
      EXPECT_TRUE(same(z.re, row.re) && same(z.im, row.im))
          << "level " << level << ": f(" << row.x << ", " << row.y << ") = (" << z.re << ", " << z.im << ")";
      EXPECT_EQ(flags & (FE_INVALID | FE_OVERFLOW | FE_UNDERFLOW | FE_DIVBYZERO), row.raised)
          << "level " << level << ": f(" << row.x << ", " << row.y << ")";
    }
  }
}

}  // namespace
}  // namespace qorvane::test
