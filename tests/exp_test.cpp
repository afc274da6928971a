// exp: the boundaries between its cases, at every level.
#include <cfenv>
#include <cmath>
#include <vector>

#include "tests/test_support.h"

namespace qorvane::test {
namespace {

constexpr double infinity = HUGE_VAL;

TEST(Exp, ResultsAndStatusesAtTheBoundariesOfItsCases) {
  struct Row {
    uint64_t x;
    double low, high;  // the result lies in [low, high]
    nuvStatus status;
  };
  const double smallest = number(1);
  const Row rows[] = {
      {0x0000000000000000, 1, 1, 0},
      {0x8000000000000000, 1, 1, 0},
      {0x000fffffffffffff, 1, 1, 0},
      {0x8000000000000001, 1, 1, 0},
      {0x7ff0000000000000, infinity, infinity, 0},
      {0xfff0000000000000, 0, 0, 0},
      {0x40862e42fefa39ef, 1.797693134862273e308, 1.797693134862274e308,
       0},  // the largest argument with a finite result
      {0x40862e42fefa39f0, infinity, infinity, nuvStatusOverflow},
      {0x7fefffffffffffff, infinity, infinity, nuvStatusOverflow},
      {0xc086232bdd7abcd2, 0x1p-1022, 0x1.0000000001p-1022, 0},  // the smallest with a normal one
      {0xc086232bdd7abcd3, 0x0.fffffffffp-1022, 0x1p-1022, nuvStatusUnderflow},
      {0xc0874910d52d3051, smallest, smallest, nuvStatusUnderflow},  // the smallest with one above zero
      {0xc0874910d52d3052, 0, 0, nuvStatusUnderflow},
      {0xffefffffffffffff, 0, 0, nuvStatusUnderflow},
  };
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (const Row& row : rows) {
      const Element e = evaluate(nuvsExp_64f_A53, number(row.x));
      EXPECT_TRUE(e.value >= row.low && e.value <= row.high && e.status == row.status)
          << "level " << level << ", x = " << number(row.x) << ": " << e;
    }
  }
}

// A NaN comes back as the NaN of all ones at levels 1 to 4, and as itself, quiet, at level 5.
TEST(Exp, NaNs) {
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (uint64_t nan : {0x7ff8000000000123u, 0xfff8000000000456u, 0x7ff0000000000001u}) {
      const Element e = evaluate(nuvsExp_64f_A53, number(nan));
      EXPECT_EQ(bits(e.value), level == 5 ? nan | 0x0008000000000000 : ~uint64_t{0}) << "level " << level;
      EXPECT_EQ(e.status, nuvStatusOk);
    }
  }
}

// At level 5 no arithmetic of the fast path is made on arguments outside its range: they raise the
// flags of their statuses and nothing else. The other levels promise no flags.
TEST(Exp, RaisesNoFlagButThoseOfItsStatusesAtLevel5) {
  struct FlagRow {
    double x;
    int flags;  // but inexact
  };
  const FlagRow rows[] = {
      {infinity, 0},        {-infinity, 0},         {std::nan(""), 0},      {710, FE_OVERFLOW},
      {-1e3, FE_UNDERFLOW}, {0x1p252, FE_OVERFLOW}, {-1e127, FE_UNDERFLOW}, {0x1.eb6096a7fdea3p+752, FE_OVERFLOW},
      {1e308, FE_OVERFLOW}, {-1e308, FE_UNDERFLOW}};
  if (supportedLevels().back() != 5) return;
  AtLevel at(5);
  for (const FlagRow& row : rows)
    for (int n : {1, 3, 8, 40}) {
      std::vector<double> x(n, 0.5), y(n);
      x[n / 2] = row.x;
      std::feclearexcept(FE_ALL_EXCEPT);
      nuvsExp_64f_A53(x.data(), y.data(), n);
      EXPECT_EQ(std::fetestexcept(FE_ALL_EXCEPT & ~FE_INEXACT), row.flags) << "x = " << row.x << ", n = " << n;
    }
}

}  // namespace
}  // namespace qorvane::test
