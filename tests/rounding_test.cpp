// The rounding functions against integers, in all rounding modes of the caller, and their flags.
#include <cfenv>
#include <cmath>
#include <random>

#include "tests/test_support.h"

namespace qorvane::test {
namespace {

enum Direction {
  nearest,
  down,
  up,
  toZero,
  away
};  // the first four in the order of the rounding modes; away: nearest, ties away from zero
const int modes[] = {FE_TONEAREST, FE_DOWNWARD, FE_UPWARD, FE_TOWARDZERO};

// Made with 64-bit integers; a zero has the sign of x.
double integerNextTo(double x, Direction direction) {
  if (!(std::fabs(x) < 0x1p52)) return x;
  const auto whole = static_cast<int64_t>(std::fabs(x));
  const double rest = std::fabs(x) - static_cast<double>(whole);
  bool further = false;
  switch (direction) {
    case nearest: further = rest > 0.5 || (rest == 0.5 && whole % 2 == 1); break;
    case down: further = rest > 0 && x < 0; break;
    case up: further = rest > 0 && x > 0; break;
    case toZero: break;
    case away: further = rest >= 0.5; break;
  }
  return std::copysign(static_cast<double>(whole + further), x);
}

struct Rounding {
  const char* name;
  Unary f;
  Direction direction;
  bool followsMode;
};
const Rounding roundings[] = {
    {"Floor", nuvsFloor_64f, down, false},   {"Ceil", nuvsCeil_64f, up, false},
    {"Trunc", nuvsTrunc_64f, toZero, false}, {"Round", nuvsRound_64f, away, false},
    {"Rint", nuvsRint_64f, nearest, true},   {"NearbyInt", nuvsNearbyInt_64f, nearest, true},
};

// The documented oddities: the sign of some zeros, and Round at level 5, which sums |x| in the
// caller's mode and corrects only the ties that went down.
double expected(const Rounding& r, double x, Direction mode, int level) {
  const bool roundInMode = r.direction == away && level == 5;
  double y = integerNextTo(x, r.followsMode ? mode : r.direction);
  if (roundInMode && mode != nearest && std::fabs(x) - std::floor(std::fabs(x)) != 0.5)
    y = std::copysign(integerNextTo(std::fabs(x), mode), x);
  if (y != 0) return y;
  if (r.direction == away && level == 4) return 0.0;
  if (mode == down && (roundInMode || (r.followsMode && level < 4))) return -0.0;
  return y;
}

std::vector<double> arguments() {
  std::vector<double> x = {0.0,          0x1p-1074,    0x1p-1022, 0.25,       0.75,       1e-300,
                           0x1p51 + 0.5, 0x1p52 - 0.5, 0x1p52,    0x1p52 + 1, 0x1p53 + 2, 0x1.fffffffffffffp1023,
                           HUGE_VAL};
  std::mt19937_64 random(7);
  for (int exponent = -4; exponent <= 54; ++exponent)
    for (int i = 0; i < 4; ++i) x.push_back(std::ldexp(1 + 0x1p-52 * static_cast<double>(random() >> 12), exponent));
  for (int64_t whole : {0, 1, 2, 3, 4, 255, 256, 1 << 30, (1 << 30) - 1})
    for (double tie : {static_cast<double>(whole), static_cast<double>(whole) + 0.5})
      for (double v : {std::nextafter(tie, 0), tie, std::nextafter(tie, 1e18)}) x.push_back(v);
  for (size_t i = 0, n = x.size(); i < n; ++i) x.push_back(-x[i]);
  return x;
}

TEST(Rounding, IsExactInEveryModeOfTheCaller) {
  const std::vector<double> x = arguments();
  std::vector<double> y(x.size()), z(x.size());
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (Direction mode : {nearest, down, up, toZero}) {
      for (const Rounding& r : roundings) {
        std::fesetround(modes[mode]);
        const nuvStatus status = r.f(x.data(), y.data(), static_cast<int32_t>(x.size()));
        std::fesetround(FE_TONEAREST);
        EXPECT_EQ(status, nuvStatusOk);
        for (size_t i = 0; i < x.size(); ++i)
          ASSERT_EQ(bits(y[i]), bits(expected(r, x[i], mode, level)))
              << r.name << ", level " << level << ", mode " << mode << ", x = " << x[i] << ": " << y[i];
      }
      std::fesetround(modes[mode]);
      const nuvStatus status = nuvsModf_64f(x.data(), y.data(), z.data(), static_cast<int32_t>(x.size()));
      std::fesetround(FE_TONEAREST);
      EXPECT_EQ(status, nuvStatusOk);
      for (size_t i = 0; i < x.size(); ++i) {
        const double whole = integerNextTo(x[i], toZero),
                     fraction = std::copysign(std::isinf(x[i]) ? 0 : x[i] - whole, x[i]);
        ASSERT_TRUE(bits(y[i]) == bits(whole) && bits(z[i]) == bits(fraction))
            << "Modf, level " << level << ", mode " << mode << ", x = " << x[i];
      }
    }
  }
}

constexpr int copies = 21;  // a block and a tail at every level
const double quietNaN = number(0xfff8000000000123), signallingNaN = number(0x7ff0000000000456);

TEST(Rounding, GivesNaNsBackQuietWithSignAndPayload) {
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (double nan : {quietNaN, signallingNaN, number(0x7ff0000000000001), number(0xfff0000000000001)}) {
      const std::vector<double> x(copies, nan);
      std::vector<double> y(copies), z(copies);
      const auto expectQuiet = [&](const char* name) {
        for (const auto& results : {y, z})
          for (double v : results) EXPECT_EQ(bits(v), bits(nan) | 0x0008000000000000) << name << ", level " << level;
      };
      for (const Rounding& r : roundings) {
        r.f(x.data(), y.data(), copies);
        z = y;
        expectQuiet(r.name);
      }
      nuvsModf_64f(x.data(), y.data(), z.data(), copies);
      expectQuiet("Modf");
    }
  }
}

TEST(Rounding, RaisesTheFlagsOfItsArithmeticAndNoOthers) {
  const Unary modfAlone = [](const double* x, double* y, int32_t len) {
    std::vector<double> fraction(static_cast<size_t>(len));
    return nuvsModf_64f(x, y, fraction.data(), len);
  };
  constexpr int inexact = FE_INEXACT, invalid = FE_INVALID;
  const double largest = 0x1.fffffffffffffp1023;
  const struct {
    const char* what;
    Unary f;
    double x;
    int mode, levels1To3, level4, level5;
  } rows[] = {
      {"Rint of a fraction", nuvsRint_64f, 0.25, FE_TONEAREST, inexact, inexact, inexact},
      {"NearbyInt of a fraction", nuvsNearbyInt_64f, 0.25, FE_TONEAREST, inexact, 0, 0},
      {"Floor of a fraction", nuvsFloor_64f, 0.25, FE_TONEAREST, 0, 0, inexact},  // put back with the mode
      {"Floor of a fraction, already down", nuvsFloor_64f, 0.25, FE_DOWNWARD, inexact, inexact, inexact},
      {"Modf of a fraction", modfAlone, 0.25, FE_TONEAREST, 0, 0, 0},
      {"Modf of a fraction, already toward zero", modfAlone, 0.25, FE_TOWARDZERO, inexact, inexact, inexact},
      {"Round of a fraction", nuvsRound_64f, 0.25, FE_TONEAREST, inexact, inexact, inexact},
      {"Round of an integer", nuvsRound_64f, 3.0, FE_TONEAREST, 0, 0, 0},
      {"Rint of the largest number, up", nuvsRint_64f, largest, FE_UPWARD, 0, 0, 0},  // 2^52 is never added to it
      {"Ceil of the largest number, already up", nuvsCeil_64f, largest, FE_UPWARD, 0, 0, 0},
      {"Modf of the largest number", modfAlone, largest, FE_TOWARDZERO, 0, 0, 0},
      {"Rint of infinity", nuvsRint_64f, HUGE_VAL, FE_TONEAREST, 0, 0, 0},
      {"Round of infinity", nuvsRound_64f, HUGE_VAL, FE_TONEAREST, 0, invalid, invalid},  // infinity - infinity inside
      {"Round of a quiet NaN", nuvsRound_64f, quietNaN, FE_TONEAREST, 0, 0, 0},
      {"Rint of a signalling NaN", nuvsRint_64f, signallingNaN, FE_TONEAREST, invalid, invalid, invalid},
  };
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (const auto& row : rows) {
      const std::vector<double> x(copies, row.x);
      std::vector<double> y(copies);
      std::fesetround(row.mode);
      std::feclearexcept(FE_ALL_EXCEPT);
      row.f(x.data(), y.data(), copies);
      const int raised = std::fetestexcept(FE_ALL_EXCEPT);
      std::fesetround(FE_TONEAREST);
      EXPECT_EQ(raised, level < 4    ? row.levels1To3
                        : level == 4 ? row.level4
                                     : row.level5)
          << row.what << ", level " << level;
    }
  }
}

}  // namespace
}  // namespace qorvane::test
