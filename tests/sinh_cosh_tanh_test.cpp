// sinh, cosh and tanh: the boundaries between their cases, the rule of pairs, flags and rounding
// modes.
#include <cfenv>
#include <cmath>
#include <vector>

#include "tests/test_support.h"

namespace qorvane::test {
namespace {

constexpr double infinity = HUGE_VAL;

// An element between ordinary ones, in an array of n, at each of its places: the same everywhere.
void expectEverywhere(Unary f, double x, Element expected, uint64_t ulps, int level) {
  for (const int n : {1, 3, 4, 9, 40})
    for (int place = 0; place<n; place += n> 9 ? 13 : 1) {
      std::vector<double> src(n, 1.25), dst(n);
      src[place] = x;
      const Element e{0, f(src.data(), dst.data(), n)};
      EXPECT_TRUE(bits(dst[place]) - bits(expected.value) + ulps <= 2 * ulps && e.status == expected.status)
          << "level " << level << ", x = " << x << " at " << place << " of " << n << ": " << dst[place] << ", status "
          << e.status << " instead of " << expected.value << ", " << expected.status;
    }
}

TEST(SinhAndCosh, ResultsAndStatusesAtTheBoundariesOfTheirCases) {
  struct Row {
    uint64_t x, sinh, cosh;  // rounded correctly
    nuvStatus status;
    bool exact;
  };
  constexpr uint64_t inf = 0x7ff0000000000000, one = 0x3ff0000000000000;
  const Row rows[] = {
      {0x0000000000000000, 0x0000000000000000, one, 0, true},
      {0x0000000000000001, 0x0000000000000001, one, 0, true},
      {0x000fffffffffffff, 0x000fffffffffffff, one, 0, true},
      {0x3fa1eb84ffffffff, 0x3fa1ec74c9fb5d50, 0x3ff002825177d46b, 0, false},  // the polynomial for small arguments
      {0x3fa1eb8500000000, 0x3fa1ec74c9fb5d51, 0x3ff002825177d46b, 0, false},  // ends, levels 1 to 4
      {0x3fcfacfc00000000, 0x3fd0000071974915, 0x3ff07e0f6d931dee, 0, false},  // another order of the last sum
      {0x40861d99ffffffff, 0x7fafe6d6fd5d9a2b, 0x7fafe6d6fd5d9a2b, 0, false},  // the fast range of cosh ends, level 5
      {0x40861d9a00000000, 0x7fafe6d6fd5d9e28, 0x7fafe6d6fd5d9e28, 0, false},
      {0x40862336f49c3c4f, 0x7fc0163da9fb327f, 0x7fc0163da9fb327f, 0, false},  // n passes 1022 * 64
      {0x40862336f49c3c50, 0x7fc0163da9fb3482, 0x7fc0163da9fb3482, 0, false},
      {0x40862de9ffffffff, 0x7fdea3a3ca3b64cd, 0x7fdea3a3ca3b64cd, 0, false},  // the fast range of sinh ends, level 5
      {0x40862dea00000000, 0x7fdea3a3ca3b68a2, 0x7fdea3a3ca3b68a2, 0, false},
      {0x408633c3789878ff, 0x7fefd3c22b8f6ba9, 0x7fefd3c22b8f6ba9, 0, false},  // n reaches 1025 * 64
      {0x408633c378987900, 0x7fefd3c22b8f6fa3, 0x7fefd3c22b8f6fa3, 0, false},
      {0x408633ce8fb9f87d, 0x7feffffffffffd3b, 0x7feffffffffffd3b, 0, false},  // the largest finite results
      {0x408633ce8fb9f87e, inf, inf, nuvStatusOverflow, true},
      {0x7fefffffffffffff, inf, inf, nuvStatusOverflow, true},
      {inf, inf, inf, 0, true},
  };
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (const Row& row : rows)
      for (const uint64_t sign : {uint64_t{0}, uint64_t{1} << 63}) {
        const uint64_t ulps = row.exact ? 0 : 1;
        expectEverywhere(nuvsSinh_64f_A53, number(row.x ^ sign), {number(row.sinh ^ sign), row.status}, ulps, level);
        expectEverywhere(nuvsCosh_64f_A53, number(row.x ^ sign), {number(row.cosh), row.status}, ulps, level);
      }
  }
}

TEST(Tanh, SmallGreatAndInfiniteArguments) {
  struct Row {
    uint64_t x, y;
  };
  constexpr uint64_t one = 0x3ff0000000000000;
  const Row rows[] = {{0, 0},
                      {1, 1},
                      {0x000fffffffffffff, 0x000fffffffffffff},
                      {0x3e2fffffffffffff, 0x3e2fffffffffffff},
                      {0x4033ffffffffffff, one},
                      {0x4034000000000000, one},
                      {0x7fefffffffffffff, one},
                      {0x7ff0000000000000, one}};
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (const Row& row : rows)
      for (const uint64_t sign : {uint64_t{0}, uint64_t{1} << 63})
        expectEverywhere(nuvsTanh_64f_A53, number(row.x ^ sign), {number(row.y ^ sign), nuvStatusOk}, 0, level);
  }
}

// Bits of NaNs: all ones at levels 1 to 4, quieted at level 5; tanh hands them through.
TEST(SinhAndCosh, NaNs) {
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (const uint64_t nan : {0x7ff8000000000123u, 0xfff8000000000456u, 0x7ff0000000000001u})
      for (const Unary f : {&nuvsSinh_64f_A53, &nuvsCosh_64f_A53, &nuvsTanh_64f_A53}) {
        const uint64_t expected = f == &nuvsTanh_64f_A53 ? nan : level == 5 ? nan | 0x0008000000000000 : ~uint64_t{0};
        expectEverywhere(f, number(nan), {number(expected), nuvStatusOk}, 0, level);
      }
  }
}

// The edges and the middles of all rows of the tables, against the C library's extended precision.
TEST(SinhAndTanh, EveryRow) {
  std::vector<double> x;
  for (int i = 0; i < 61; ++i) {
    const double start = number(uint64_t{0x3fbe0000 + (static_cast<uint64_t>(i) << 17)} << 32);
    for (const double share : {0.0, 0.25, 0.5, 0.75})
      x.insert(x.end(), {start * (1 + share / 8), std::nextafter(start * (1 + share / 8), 0)});
  }
  for (int i = 0; i < 8190; ++i) {
    const double middle = i * 0.086643397569993164, edge = (i + 0.5) * 0.086643397569993164;
    x.insert(x.end(), {middle, edge, std::nextafter(edge, 0), std::nextafter(edge, 1e3), -edge});
  }
  std::vector<double> y(x.size());
  const auto expect = [&](Unary f, long double (*exact)(long double), double most, int level) {
    EXPECT_EQ(f(x.data(), y.data(), static_cast<int32_t>(x.size())), nuvStatusOk);
    for (size_t i = 0; i < x.size(); ++i) {
      const long double right = exact(x[i]);
      const double rounded = static_cast<double>(right),
                   ulp = std::nextafter(std::fabs(rounded), infinity) - std::fabs(rounded);
      EXPECT_LE(std::fabs(static_cast<double>((y[i] - right) / ulp)), most) << "level " << level << ", x = " << x[i];
    }
  };
  for (int level : supportedLevels()) {
    AtLevel at(level);
    expect(nuvsSinh_64f_A53, std::sinh, level == 5 ? 1.01 : 1.53, level);
    expect(nuvsCosh_64f_A53, std::cosh, 0.77, level);
    expect(nuvsTanh_64f_A53, std::tanh, 0.77, level);
  }
}

// At levels 1 to 4 the polynomial for small arguments serves pairs of them, elements 0 and 1 or 2
// and 3 of four; an element beyond the last four is by itself.
TEST(Sinh, PairsOfSmallArguments) {
  const double x = number(0x3f96b5daafe2c2fc), y = number(0x3f92a6e61abdf319);  // 0.0222, 0.0182
  const uint64_t small = 0x3f96b654b3a2ba95, mixed = 0x3f96b654b3a2ba94;
  const uint64_t smallY = 0x3f92a729b2d2f9b3, mixedY = 0x3f92a729b2d2f9b4;
  const double z = number(0x3fa1eb8500000000);  // not small
  const std::vector<double> src = {x, y, x, z, z, y, -y, x, x, infinity, y, y, NAN, x, x, 1e3, x, z, y};
  const uint64_t sign = uint64_t{1} << 63;
  const std::vector<uint64_t> expected = {small,  smallY, mixed, 0,     0,     mixedY, smallY ^ sign, small, mixed, 0,
                                          smallY, smallY, 0,     mixed, mixed, 0,      small,         0,     smallY};
  for (int level : supportedLevels()) {
    if (level == 5) continue;
    AtLevel at(level);
    std::vector<double> dst = src;
    EXPECT_EQ(nuvsSinh_64f_A53(dst.data(), dst.data(), static_cast<int32_t>(dst.size())), nuvStatusOverflow);
    for (size_t i = 0; i < src.size(); ++i)
      EXPECT_TRUE(expected[i] == 0 || bits(dst[i]) == expected[i]) << "level " << level << ", element " << i;
  }
}

// Level 5 makes no arithmetic on arguments outside the fast range but their own; tanh makes none at
// any level.
TEST(SinhCoshTanh, RaiseNoFlagButThoseOfTheirStatuses) {
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (const Unary f : {&nuvsSinh_64f_A53, &nuvsCosh_64f_A53, &nuvsTanh_64f_A53})
      for (const double x : {infinity, -infinity, std::nan(""), 709.8, 710.4758, 711.0, -1e3, 1e300, 1e15, 3e9})
        for (const int n : {1, 3, 8, 40}) {
          const bool overflows = std::isfinite(x) && std::fabs(x) > 710.5 && f != &nuvsTanh_64f_A53;
          if (level < 5 && overflows) continue;
          std::vector<double> src(n, 0.5), dst(n);
          src[n / 2] = x;
          std::feclearexcept(FE_ALL_EXCEPT);
          f(src.data(), dst.data(), n);
          EXPECT_EQ(std::fetestexcept(FE_ALL_EXCEPT & ~FE_INEXACT), overflows ? FE_OVERFLOW : 0)
              << "level " << level << ", x = " << x << ", n = " << n;
        }
  }
}

// The caller's rounding mode at level 5: long arrays give what single elements do, zeros keep their
// sign, and the reduction, which then rounds the wrong way, costs no more than a few digits.
TEST(SinhAndCosh, DirectedRoundingAtLevel5) {
  if (supportedLevels().back() != 5) return;
  AtLevel at(5);
  std::vector<double> x = {0.0, -0.0, 5e-324, -5e-324}, y(400);
  for (int i = 0; i < 396; ++i) x.push_back(std::ldexp(1 + i / 396.0, i % 17 - 12) * (i % 3 == 0 ? -1 : 1));
  for (const int mode : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO, FE_TONEAREST})
    for (const Unary f : {&nuvsSinh_64f_A53, &nuvsCosh_64f_A53}) {
      std::fesetround(mode);
      f(x.data(), y.data(), 400);
      std::vector<double> alone(400);
      for (size_t i = 0; i < x.size(); ++i) f(&x[i], &alone[i], 1);
      std::fesetround(FE_TONEAREST);
      for (size_t i = 0; i < x.size(); ++i) {
        EXPECT_EQ(bits(y[i]), bits(alone[i])) << "mode " << mode << ", x = " << x[i];
        const double right = f == &nuvsSinh_64f_A53 ? std::sinh(x[i]) : std::cosh(x[i]);
        EXPECT_TRUE(x[i] != 0 || bits(y[i]) == bits(right)) << "mode " << mode;
        EXPECT_LE(std::fabs(y[i] - right), 1e-13 * std::fabs(right) + 1e-21) << "mode " << mode << ", x = " << x[i];
      }
    }
}

}  // namespace
}  // namespace qorvane::test
