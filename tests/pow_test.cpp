// pow and powx: the special values, the boundaries between the cases, and what a neighbour may and
// may not change.
#include <algorithm>
#include <cfenv>
#include <cmath>

#include "tests/test_support.h"

namespace qorvane::test {
namespace {

constexpr double infinity = HUGE_VAL;
constexpr double largest = 0x1.fffffffffffffp+1023, smallest = 0x1p-1074;
const double nan = number(0x7ff8000000000123);
const double outside = number(0xfff8000000000000);  // what stands for a result outside the domain

Element evaluateFixed(double x, double y) {
  Element e{0, 0};
  e.status = nuvsPowx_64f_A53(&x, y, &e.value, 1);
  return e;
}

struct Row {
  double x, y;
  Element expected;
};

// The rows that don't depend on the size of the result, with exponents that are odd, even and
// fractions up to the last bit that can make them so.
const Row specialRows[] = {
    {nan, 0, {1, 0}},
    {nan, -0.0, {1, 0}},
    {0, 0, {1, 0}},
    {-infinity, 0, {1, 0}},
    {1, nan, {1, 0}},
    {1, -infinity, {1, 0}},
    {1, largest, {1, 0}},
    {nan, 3, {nan, 0}},
    {nan, smallest, {nan, 0}},
    {2, nan, {nan, 0}},
    {-2, nan, {nan, 0}},
    {0, nan, {nan, 0}},
    {-0.0, 3, {-0.0, 0}},
    {0, 3, {0, 0}},
    {-0.0, 0x1.fffffffffffffp+52, {-0.0, 0}},  // 2^53 - 1 is the largest odd number
    {-0.0, 0x1p+53, {0, 0}},
    {-0.0, 0.5, {0, 0}},
    {-0.0, infinity, {0, 0}},
    {-0.0, -1, {-infinity, nuvStatusOutOfDomain}},
    {0, -1, {infinity, nuvStatusOutOfDomain}},
    {-0.0, -2, {infinity, nuvStatusOutOfDomain}},
    {-0.0, -0.5, {infinity, nuvStatusOutOfDomain}},
    {-0.0, -infinity, {infinity, nuvStatusOutOfDomain}},
    {-1, infinity, {1, 0}},
    {-1, -infinity, {1, 0}},
    {-1, largest, {1, 0}},
    {-1, 0x1p+997, {1, 0}},
    {-1, -0x1.0000001p+21, {outside, nuvStatusOutOfDomain}},  // a fraction in the last bit of the low word's part
    {-1, -0x1.0000080p+21, {-1, 0}},
    {-1, 0x1.0000180p+20, {outside, nuvStatusOutOfDomain}},
    {-1, 0x1.00001p+20, {-1, 0}},
    {-1, 0x1.00002p+20, {1, 0}},
    {-1, 0x1.00001p+19, {outside, nuvStatusOutOfDomain}},
    {-1, 0x1.0000000000001p+52, {-1, 0}},
    {-1, 0x1.0000000000001p+51, {outside, nuvStatusOutOfDomain}},
    {1.0000001, infinity, {infinity, 0}},
    {-0.9, infinity, {0, 0}},
    {-2, -infinity, {0, 0}},
    {0.5, -infinity, {infinity, 0}},
    {infinity, smallest, {infinity, 0}},
    {infinity, -smallest, {0, 0}},
    {-infinity, 3, {-infinity, 0}},
    {-infinity, 2, {infinity, 0}},
    {-infinity, 2.5, {infinity, 0}},
    {-infinity, -3, {-0.0, 0}},
    {-infinity, -2.5, {0, 0}},
    {-8, 2.5, {outside, nuvStatusOutOfDomain}},
    {-smallest, 0.5, {outside, nuvStatusOutOfDomain}},
};

// Powers whose result is known, among them those around overflow and underflow, which have no
// status.
const Row powers[] = {
    {2, 1023, {0x1p+1023, 0}},
    {2, 1024, {infinity, 0}},
    {-2, 1025, {-infinity, 0}},
    {0.5, -1023, {0x1p+1023, 0}},
    {largest, 1, {largest, 0}},
    {-largest, 1, {-largest, 0}},
    {largest, 1.0000000000000002, {infinity, 0}},
    {2, -964, {0x1p-964, 0}},
    {2, -1022, {0x1p-1022, 0}},
    {2, -1023, {0x1p-1023, 0}},
    {-2, -1033, {-0x1p-1033, 0}},
    {2, -1074, {smallest, 0}},
    {2, -1076, {0, 0}},
    {2, -1e300, {0, 0}},
    {0.5, -1e300, {infinity, 0}},
    {smallest, 1, {smallest, 0}},
    {-0x0.fffffffffffffp-1022, 1, {-0x0.fffffffffffffp-1022, 0}},
    {0x1p-1022, 1, {0x1p-1022, 0}},
    {0x1.04p-1065, 1, {0x1.04p-1065, 0}},  // the first row of its table that counts down from 1
    {smallest, -0.5, {0x1p+537, 0}},
    {2, smallest, {1, 0}},
    {-8, 3, {-512, 0}},
    {1 + 0x1p-52, 0x1p+60, {0x1.41c7a8814be19p+369, 0}},  // the low part of log2 x counts
    {1 + 0x1p-52, 0x1p+52, {0x1.5bf0a8b145769p+1, 0}},
};

void expectRow(int level, const Row& row, const char* name, Element got) {
  EXPECT_EQ(got, row.expected) << name << ", level " << level << ", x = " << row.x << ", y = " << row.y;
}

TEST(Pow, SpecialValuesAndBoundaries) {
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (const auto& rows : {std::vector<Row>(std::begin(specialRows), std::end(specialRows)),
                             std::vector<Row>(std::begin(powers), std::end(powers))})
      for (const Row& row : rows) {
        expectRow(level, row, "Pow", evaluate(nuvsPow_64f_A53, row.x, row.y));
        expectRow(level, row, "Powx", evaluateFixed(row.x, row.y));
      }
  }
}

// The low bits of a NaN come through, and at levels 1 to 4 and in Powx a signalling one is left as
// it is.
TEST(Pow, NaNsKeepTheirPatterns) {
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (uint64_t pattern : {0x7ff8000000000123u, 0xfff8000000000456u, 0x7ff0000000000001u}) {
      const uint64_t quiet = pattern | 0x0008000000000000;
      EXPECT_EQ(bits(evaluate(nuvsPow_64f_A53, number(pattern), 3).value), level == 5 ? quiet : pattern)
          << "level " << level;
      EXPECT_EQ(bits(evaluate(nuvsPow_64f_A53, 3, number(pattern)).value), level == 5 ? quiet : pattern)
          << "level " << level;
      EXPECT_EQ(bits(evaluateFixed(number(pattern), 3).value), pattern) << "level " << level;
      std::feclearexcept(FE_ALL_EXCEPT);
      EXPECT_EQ(bits(evaluateFixed(3, number(pattern)).value), pattern) << "level " << level;
      EXPECT_EQ(std::fetestexcept(FE_ALL_EXCEPT), 0) << "a NaN as fixed exponent is only looked at, level " << level;
      EXPECT_EQ(bits(evaluateFixed(number(pattern), 2).value), quiet) << "level " << level;
    }
  }
}

// Every power of an integer that is an integer of 53 bits is exact.
TEST(Pow, IntegersAreExact) {
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (int base = -101; base <= 101; ++base) {
      double power = 1;
      for (int n = 1; std::fabs(power * base) <= 0x1p53 && n < 60; ++n) {
        power *= base;
        ASSERT_EQ(evaluate(nuvsPow_64f_A53, base, n).value, power) << base << "^" << n << ", level " << level;
        ASSERT_EQ(evaluateFixed(base, n).value, power) << base << "^" << n << ", level " << level;
      }
    }
  }
}

// The sum that rounds a tiny result at level 5 of Pow turns -0 into +0. Overflow and underflow are
// flags without a status; a result outside the domain raises its own flag, and that of Pow's
// division by zero at level 5.
TEST(Pow, SignsOfZeroAndFlags) {
  struct FlagRow {
    double x, y;
    nuvStatus status;
    int level5, otherwise;  // flags but inexact
  };
  const FlagRow rows[] = {{0, -1, nuvStatusOutOfDomain, FE_DIVBYZERO | FE_INVALID, FE_INVALID},
                          {-8, 2.5, nuvStatusOutOfDomain, FE_INVALID, FE_INVALID},
                          {-8, 3, 0, 0, 0},
                          {nan, 2.5, 0, 0, 0},
                          {2, -1030.3, 0, FE_UNDERFLOW, FE_UNDERFLOW},
                          {3, 700, 0, FE_OVERFLOW, 0}};
  for (int level : supportedLevels()) {
    AtLevel at(level);
    EXPECT_EQ(bits(evaluate(nuvsPow_64f_A53, -2, -1075).value), level == 5 ? 0 : bits(-0.0));
    EXPECT_EQ(bits(evaluateFixed(-2, -1075).value), bits(-0.0));
    EXPECT_EQ(bits(evaluate(nuvsPow_64f_A53, -2, -1087).value), bits(-0.0));
    for (const FlagRow& row : rows) {
      std::feclearexcept(FE_ALL_EXCEPT);
      EXPECT_EQ(evaluate(nuvsPow_64f_A53, row.x, row.y).status, row.status);
      EXPECT_EQ(std::fetestexcept(FE_ALL_EXCEPT & ~FE_INEXACT), level == 5 ? row.level5 : row.otherwise)
          << "level " << level << ", x = " << row.x;
    }
  }
}

// An exponent of 2 squares everything, with no status and no look at x.
// What a block makes of elements that the scalar routine computes leaves no error's flag behind.
TEST(Pow, DiscardedLanesRaiseNoErrors) {
  constexpr int errors = FE_INVALID | FE_OVERFLOW | FE_DIVBYZERO, n = 21;
  const double bases[] = {2.5, infinity, -infinity, nan, 0, -0.0, -3, smallest, largest, 1, 0.75},
               exponents[] = {3.25, infinity, -infinity, nan, largest, -largest, 0x1p+63, smallest, 0, -1e300};
  for (int level : supportedLevels()) {
    AtLevel atLevel(level);
    for (const double special : bases)
      for (const double exponent : exponents)
        for (int at = 0; at < n; at += 5) {
          double x[n], y[n], z[n];
          int expected = 0, expectedFixed = 0;
          for (int i = 0; i < n; ++i) {
            x[i] = i == at ? special : 1.5 + i, y[i] = i == at ? exponent : 2.25;
            std::feclearexcept(FE_ALL_EXCEPT);
            nuvsPow_64f_A53(x + i, y + i, z, 1);
            expected |= std::fetestexcept(errors);
            std::feclearexcept(FE_ALL_EXCEPT);
            nuvsPowx_64f_A53(x + i, exponent, z, 1);
            expectedFixed |= std::fetestexcept(errors);
          }
          std::feclearexcept(FE_ALL_EXCEPT);
          nuvsPow_64f_A53(x, y, z, n);
          EXPECT_EQ(std::fetestexcept(errors) & ~expected, 0) << special << " " << exponent << " level " << level;
          std::feclearexcept(FE_ALL_EXCEPT);
          nuvsPowx_64f_A53(x, exponent, z, n);
          EXPECT_EQ(std::fetestexcept(errors) & ~expectedFixed, 0) << special << " " << exponent << " level " << level;
        }
  }
  std::feclearexcept(FE_ALL_EXCEPT);
}

TEST(Pow, FixedExponent2Squares) {
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (double x : {-3.0, 1e200, -infinity, smallest, 0x1.23456789abcdfp-3, -0.0})
      EXPECT_EQ(evaluateFixed(x, 2), (Element{x * x, 0})) << "level " << level;
  }
}

// A long array gives what its groups of four give one by one: whole stretches well inside the fast
// range, arguments about its ends, a lone one beyond them.
TEST(Pow, FixedExponentTakesStretchesAsItTakesGroups) {
  constexpr int n = 311;
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (double y : {2.5, -2.3, 0.1, 1.007, -1.006, -0x1p-40, 3.0, 1e-310, 700.3, -1e6, 1e5, 0x1.e1fffp+29,
                     0x1.e20011p+29, 0x1p+80, -1e300}) {
      const double reach = std::fmin(963 / std::fabs(y), 1020);
      for (double share :
           {0.3, 0.9999, 1.0001, 1.07, -0.9999, -1.0001, -1.065, -1.07, -1.08}) {  // the negative: one end alone
        std::vector<double> x(n), whole(n), groups(n);
        for (int i = 0; i < n; ++i) {
          const double end = share > 0 && i % 2 ? -1 : std::copysign(1, y);
          x[i] = std::exp2(std::fabs(share) * reach * end * (share == 0.3 ? (i * 37 % n) / 311.0 : 1 - i * 1e-7));
        }
        if (share == 0.3) x[150] = -x[150];  // in the first stretch, not in the second
        nuvStatus ofGroups = nuvStatusOk;
        for (int i = 0; i < n; i += 4) {
          const nuvStatus status = nuvsPowx_64f_A53(x.data() + i, y, groups.data() + i, std::min(4, n - i));
          if (status != nuvStatusOk) ofGroups = status;
        }
        EXPECT_EQ(nuvsPowx_64f_A53(x.data(), y, whole.data(), n), ofGroups);
        for (int i = 0; i < n; ++i)
          ASSERT_EQ(bits(whole[i]), bits(groups[i])) << "level " << level << " x = " << x[i] << " y = " << y;
      }
    }
  }
}

// An element outside the fast range changes nothing for the others at level 5 of Pow. In the other
// kernels its group of four is recomputed, and only that.
TEST(Pow, RepairReachesItsGroupAlone) {
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (int n : {5, 8, 23, 131, 300})
      for (int bad : {0, 3, n / 2, n - 1}) {
        std::vector<double> x, y, plain(n), mixed(n), fixedPlain(n), fixedMixed(n);
        for (int i = 0; i < n; ++i) x.push_back(0.7 + 0.013 * i), y.push_back(11.3 - 0.31 * (i % 70));
        nuvsPow_64f_A53(x.data(), y.data(), plain.data(), n);
        nuvsPowx_64f_A53(x.data(), 7.7, fixedPlain.data(), n);
        x[bad] = -0.0;
        y[bad] = -3;
        EXPECT_EQ(nuvsPow_64f_A53(x.data(), y.data(), mixed.data(), n), nuvStatusOutOfDomain);
        EXPECT_EQ(nuvsPowx_64f_A53(x.data(), -7.7, fixedMixed.data(), n), nuvStatusOutOfDomain);
        EXPECT_EQ(fixedMixed[bad], infinity);
        EXPECT_EQ(nuvsPowx_64f_A53(x.data(), 7.7, x.data(), n), nuvStatusOk);
        EXPECT_EQ(mixed[bad], -infinity);
        for (int i = 0; i < n; ++i) {
          if (i == bad) continue;
          const bool sameGroup = i / 4 == bad / 4 && i / 4 * 4 + 4 <= n;
          const auto near = [&](double a, double b, bool exact) {
            return exact ? bits(a) == bits(b) : std::fabs(a - b) <= 0x1p-52 * std::fabs(b);
          };
          EXPECT_TRUE(near(mixed[i], plain[i], level == 5 || !sameGroup))
              << "level " << level << ", element " << i << " beside " << bad << " of " << n;
          EXPECT_TRUE(near(x[i], fixedPlain[i], !sameGroup))
              << "level " << level << ", element " << i << " beside " << bad << " of " << n;
        }
      }
  }
}

// 2^-1042 is the smallest exponent that leaves its group on the fast path: the others keep their bits.
TEST(Pow, TheSmallestExponentThatStaysInItsGroup) {
  constexpr int n = 2000;
  std::vector<double> x, y, plain(n), beside(n), below(n);
  for (int i = 0; i < n; ++i) x.push_back(0.7 + 0.0013 * i), y.push_back(11.3 - 0.31 * (i % 70));
  for (int level : supportedLevels()) {
    AtLevel at(level);
    const auto powWithEveryFourth = [&](double exponent, std::vector<double>& results) {
      std::vector<double> ys = y;
      for (int i = 1; i < n; i += 4) ys[i] = exponent;
      nuvsPow_64f_A53(x.data(), ys.data(), results.data(), n);
    };
    powWithEveryFourth(1, plain);
    powWithEveryFourth(-0x1p-1042, beside);
    powWithEveryFourth(-0x0.ffffp-1042, below);
    int others = 0;
    for (int i = 0; i < n; ++i) {
      if (i % 4 == 1) continue;
      EXPECT_EQ(bits(beside[i]), bits(plain[i])) << "level " << level << ", element " << i;
      others += bits(below[i]) != bits(plain[i]);
    }
    EXPECT_EQ(others > 0, level < 5) << others;  // else nothing was shown
  }
}

}  // namespace
}  // namespace qorvane::test
