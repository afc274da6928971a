// ln and log10: their special values, exact results, and the error where rows meet, at every level.
#include <cfenv>
#include <cmath>
#include <random>

#include "tests/test_support.h"

namespace qorvane::test {
namespace {

constexpr double infinity = HUGE_VAL;

struct Logarithm {
  const char* name;
  Unary function;
  long double (*reference)(long double);
  struct {
    double normal, subnormal;  // bounds of the error in ulp
  } levels1To4, level5;
};
const Logarithm logarithms[] = {{"ln", nuvsLn_64f_A53, logl, {0.605, 0.605}, {0.765, 1.52}},
                                {"log10", nuvsLog10_64f_A53, log10l, {0.605, 0.605}, {0.533, 1.02}}};

template <class Check>
void forEachLevel(Check check) {
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (const Logarithm& f : logarithms) {
      SCOPED_TRACE(testing::Message() << f.name << ", level " << level);
      check(f, level);
    }
  }
}

TEST(Log, SpecialValuesStatusesAndFlags) {
  struct Row {
    uint64_t x, result, resultLevel5;
    nuvStatus status;
    int flagsLevel5;  // at levels 1 to 4 none
  };
  constexpr uint64_t nan = 0xfff8000000000000, minusInfinity = 0xfff0000000000000;
  const Row rows[] = {
      {0x0000000000000000, minusInfinity, minusInfinity, nuvStatusPole, FE_DIVBYZERO},
      {0x8000000000000000, minusInfinity, minusInfinity, nuvStatusPole, FE_DIVBYZERO},
      {0x8000000000000001, nan, nan, nuvStatusOutOfDomain, FE_INVALID},
      {0x800fffffffffffff, nan, nan, nuvStatusOutOfDomain, FE_INVALID},
      {0x8010000000000000, nan, nan, nuvStatusOutOfDomain, FE_INVALID},
      {0xbff0000000000000, nan, nan, nuvStatusOutOfDomain, FE_INVALID},
      {0xffefffffffffffff, nan, nan, nuvStatusOutOfDomain, FE_INVALID},
      {0xfff0000000000000, nan, nan, nuvStatusOutOfDomain, FE_INVALID},
      {0x7ff0000000000000, 0x7ff0000000000000, 0x7ff0000000000000, nuvStatusOk, 0},
      {0x7ff8000000000123, 0x7ff8000000000123, 0x7ff8000000000123, nuvStatusOk, 0},
      {0xfff8000000000456, 0xfff8000000000456, 0xfff8000000000456, nuvStatusOk, 0},
      {0x7ff0000000000001, 0x7ff0000000000001, 0x7ff8000000000001, nuvStatusOk, FE_INVALID},
      {0xfff0000000000001, 0xfff0000000000001, 0xfff8000000000001, nuvStatusOk, FE_INVALID},
      {0x3ff0000000000000, 0, 0, nuvStatusOk, 0},  // 1
  };
  forEachLevel([&](const Logarithm& f, int level) {
    for (const Row& row : rows) {
      const double x = number(row.x);
      double y = 1;
      std::feclearexcept(FE_ALL_EXCEPT);
      const nuvStatus status = f.function(&x, &y, 1);
      const int flags = std::fetestexcept(FE_DIVBYZERO | FE_INVALID | FE_OVERFLOW | FE_UNDERFLOW);
      EXPECT_TRUE(bits(y) == (level == 5 ? row.resultLevel5 : row.result) && status == row.status &&
                  flags == (level == 5 ? row.flagsLevel5 : 0))
          << std::hex << row.x << ": " << bits(y) << ", status " << std::dec << status << ", flags " << flags;
    }
  });
}

TEST(Log, ExactResults) {
  for (int level : supportedLevels()) {
    AtLevel at(level);
    double power = 1;
    for (int k = 0; k <= 22; ++k, power *= 10)
      EXPECT_EQ(evaluate(nuvsLog10_64f_A53, power), (Element{double(k), 0})) << "level " << level << ", 10^" << k;
    EXPECT_EQ(bits(evaluate(nuvsLn_64f_A53, 2.0).value), 0x3fe62e42fefa39efu) << "level " << level;
  }
}

// Where rows of the tables meet, and elsewhere at random: a wrong row, or a low part lost near 1,
// shows as thousands of ulp.
TEST(Log, ErrorAtTheBordersOfRows) {
  std::vector<uint64_t> xs = {0x000fffffffffffff, 0x0010000000000000, 0x7fefffffffffffff, 0x0000000000000001,
                              0x0008000000000000};
  for (uint64_t half = 0; half < 2048; ++half)  // all borders of the rows by mantissa
    for (uint64_t exponent : {0x001u, 0x3feu, 0x3ffu, 0x400u, 0x7feu})
      for (uint64_t step : {0u, 1u, 2u}) xs.push_back(((exponent << 52) | (half << 41)) + step - 1);
  std::mt19937_64 random(3);
  for (int i = 0; i < 20000; ++i) {
    xs.push_back(bits(1 + (static_cast<double>(random()) * 0x1p-63 - 1) * std::exp2(-static_cast<double>(i % 53))));
    xs.push_back(0x0010000000000000 + random() % 0x7fe0000000000000);
    if (i % 10 == 0) xs.push_back(1 + random() % 0x000fffffffffffff);
  }
  forEachLevel([&](const Logarithm& f, int level) {
    const auto& bounds = level == 5 ? f.level5 : f.levels1To4;
    double worst = 0;
    for (uint64_t pattern : xs) {
      const double x = number(pattern);
      if (x == 1 || x == infinity) continue;
      const Element e = evaluate(f.function, x);
      const long double exact = f.reference(x);
      const double error = static_cast<double>(std::fabs(std::ldexp(e.value - exact, 52 - std::ilogb(exact))));
      ASSERT_TRUE(error <= (x < 0x1p-1022 ? bounds.subnormal : bounds.normal) && e.status == 0)
          << x << ": " << e << ", error " << error << " ulp";
      worst = std::fmax(worst, error);
    }
    EXPECT_GT(worst, 0.5);  // no accuracy beyond the format's: the errors are real ones
  });
}

}  // namespace
}  // namespace qorvane::test
