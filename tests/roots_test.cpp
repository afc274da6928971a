// Square and cube roots and their reciprocals: special values, flags, exact results, and the
// exponents that each level treats in its own way.
#include <cfenv>
#include <cmath>

#include "frame/kernel_frame.h"
#include "tests/test_support.h"

namespace qorvane::test {
namespace {

constexpr uint64_t infinity = 0x7ff0000000000000, zero = 0, minus = 0x8000000000000000, defaultNaN = 0xfff8000000000000;

struct Root {
  const char* name;
  Unary f;
  int order, exponentStep;  // f(2^exponentStep x) = 2^order f(x)
  bool odd;                 // defined for negative numbers
};
constexpr Root roots[] = {{"Sqrt", nuvsSqrt_64f_A53, 1, 2, false},
                          {"InvSqrt", nuvsInvSqrt_64f_A53, -1, 2, false},
                          {"Cbrt", nuvsCbrt_64f_A53, 1, 3, true},
                          {"InvCbrt", nuvsInvCbrt_64f_A53, -1, 3, true}};

// Special values, their statuses and flags: what a single element does, and what it does amid 299
// ordinary ones, which keep their results.
TEST(Roots, SpecialValuesAndTheirFlags) {
  struct Row {
    Unary f;
    uint64_t x, result;
    nuvStatus status;
  };
  const uint64_t quietNaN = 0xfff8000000000123, signallingNaN = 0x7ff0000000000456;
  const Row rows[] = {
      {nuvsSqrt_64f_A53, zero, zero, 0},
      {nuvsSqrt_64f_A53, minus, minus, 0},
      {nuvsSqrt_64f_A53, infinity, infinity, 0},
      {nuvsSqrt_64f_A53, infinity | minus, defaultNaN, nuvStatusOutOfDomain},
      {nuvsSqrt_64f_A53, 0xbff0000000000000, defaultNaN, nuvStatusOutOfDomain},
      {nuvsSqrt_64f_A53, 0x8000000000000001, defaultNaN, nuvStatusOutOfDomain},
      {nuvsSqrt_64f_A53, 0xffefffffffffffff, defaultNaN, nuvStatusOutOfDomain},
      {nuvsSqrt_64f_A53, 1, 0x1e60000000000000, 0},
      {nuvsInvSqrt_64f_A53, zero, infinity, nuvStatusPole},
      {nuvsInvSqrt_64f_A53, minus, infinity | minus, nuvStatusPole},
      {nuvsInvSqrt_64f_A53, infinity, zero, 0},
      {nuvsInvSqrt_64f_A53, infinity | minus, defaultNaN, nuvStatusOutOfDomain},
      {nuvsInvSqrt_64f_A53, 0xbff0000000000000, defaultNaN, nuvStatusOutOfDomain},
      {nuvsInvSqrt_64f_A53, 0x8000000000000001, defaultNaN, nuvStatusOutOfDomain},
      {nuvsInvSqrt_64f_A53, 1, 0x6180000000000000, 0},
      {nuvsCbrt_64f_A53, zero, zero, 0},
      {nuvsCbrt_64f_A53, minus, minus, 0},
      {nuvsCbrt_64f_A53, infinity, infinity, 0},
      {nuvsCbrt_64f_A53, infinity | minus, infinity | minus, 0},
      {nuvsInvCbrt_64f_A53, zero, infinity, nuvStatusPole},
      {nuvsInvCbrt_64f_A53, minus, infinity | minus, nuvStatusPole},
      {nuvsInvCbrt_64f_A53, infinity, zero, 0},
      {nuvsInvCbrt_64f_A53, infinity | minus, minus, 0},
      {nuvsSqrt_64f_A53, quietNaN, quietNaN, 0},
      {nuvsInvSqrt_64f_A53, quietNaN, quietNaN, 0},
      {nuvsCbrt_64f_A53, quietNaN, quietNaN, 0},
      {nuvsInvCbrt_64f_A53, quietNaN, quietNaN, 0},
      {nuvsSqrt_64f_A53, signallingNaN, signallingNaN | 0x0008000000000000, 0},
      {nuvsCbrt_64f_A53, signallingNaN, signallingNaN | 0x0008000000000000, 0},
  };
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (const Row& row : rows) {
      std::feclearexcept(FE_ALL_EXCEPT);
      const Element e = evaluate(row.f, number(row.x));
      const int raised = std::fetestexcept(FE_ALL_EXCEPT);
      EXPECT_EQ(bits(e.value), row.result) << "level " << level << ", x = " << number(row.x) << ": " << e;
      EXPECT_EQ(e.status, row.status) << "level " << level << ", x = " << number(row.x);
      const bool raises = row.x == signallingNaN || (row.f == nuvsSqrt_64f_A53 && level == 5 && row.status != 0);
      if (row.x != 1) {
        EXPECT_EQ(raised, raises ? FE_INVALID : 0) << "level " << level << ", x = " << number(row.x);
      }

      std::vector<double> x(300, 2.0), y(300);
      const double ordinary = evaluate(row.f, 2.0).value;
      for (size_t place : {0u, 127u, 130u, 299u}) x[place] = number(row.x);
      EXPECT_EQ(row.f(x.data(), y.data(), 300), row.status);
      for (size_t i = 0; i < 300; ++i)
        EXPECT_EQ(bits(y[i]), x[i] == 2.0 ? bits(ordinary) : row.result) << "level " << level << ", element " << i;
    }
    const double poleLast[] = {-1, 0}, domainLast[] = {0, -1};
    double y[2];
    EXPECT_EQ(nuvsInvSqrt_64f_A53(poleLast, y, 2), nuvStatusPole);
    EXPECT_EQ(nuvsInvSqrt_64f_A53(domainLast, y, 2), nuvStatusOutOfDomain);
  }
}

// Under DAZ Sqrt at level 5 takes subnormal numbers, negative ones too, for zeros and gives them
// back; the others put their own mode in force.
TEST(Roots, SubnormalNumbersUnderTheCallersModes) {
  constexpr uint32_t ordinary = 0x1f80, denormalsAreZero = 0x40, flushToZero = 0x8000;
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (const Root& root : roots)
      for (uint32_t mode : {flushToZero, denormalsAreZero})
        for (size_t len : {1u, 21u})
          for (uint64_t b : {uint64_t{3} << 30, uint64_t{3} << 30 | minus}) {
            const std::vector<double> x(len, number(b));
            std::vector<double> y(len);
            Element expected = evaluate(root.f, x[0]);
            if (level == 5 && root.f == nuvsSqrt_64f_A53 && mode == denormalsAreZero) expected = {x[0], nuvStatusOk};
            writeMxcsr(ordinary | mode);
            const nuvStatus status = root.f(x.data(), y.data(), static_cast<int32_t>(len));
            writeMxcsr(ordinary);
            for (double v : y)
              EXPECT_TRUE(Element({v, status}) == expected)
                  << root.name << ", level " << level << std::hex << ", mode " << mode << ": " << v;
          }
  }
}

// Where the caller flushes subnormal results, Sqrt at level 5 loses the square of its seed from
// 2^1022 up, amid other numbers as alone.
TEST(Roots, LargeArgumentsUnderFlushToZero) {
  for (int level : supportedLevels()) {
    AtLevel at(level);
    std::vector<double> x(100, 3.0), y(x.size());
    x[70] = 0x1.8p1023;
    const double right = evaluate(nuvsSqrt_64f_A53, x[70]).value;
    writeMxcsr(0x9f80);
    const double flushed = evaluate(nuvsSqrt_64f_A53, x[70]).value;
    nuvsSqrt_64f_A53(x.data(), y.data(), 100);
    writeMxcsr(0x1f80);
    EXPECT_EQ(bits(flushed) == bits(right), level != 5) << level;
    EXPECT_EQ(bits(y[70]), bits(flushed)) << level;
  }
}

// Scaled arguments give scaled results bit for bit over all exponents of normal numbers: no
// exponent has a seed, scale or section of its own. This is also what the seeds of level 5 rest on,
// that the processor's estimate repeats itself from one even power of 2 to the next.
TEST(Roots, ScaleWithTheirArguments) {
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (const Root& root : roots) {
      const int step = root.exponentStep, count = 2046 / step;
      std::vector<double> x(static_cast<size_t>(count)), y(x.size());
      for (int trial = 0; trial < 200; ++trial) {
        const double argument = (1 + std::fmod(trial * 0.6180339887498949, 1)) *
                                (trial % step == 0   ? 1
                                 : trial % step == 1 ? 2
                                                     : 4) *
                                (root.odd && trial % 2 != 0 ? -1 : 1);
        const double atOne = evaluate(root.f, argument).value;
        int first = -1022 / step;
        for (int k = 0; k < count; ++k) x[static_cast<size_t>(k)] = std::ldexp(argument, step * (first + k));
        ASSERT_EQ(root.f(x.data(), y.data(), count), nuvStatusOk) << root.name;
        for (int k = 0; k < count; ++k)
          if (std::isnormal(x[static_cast<size_t>(k)])) {
            ASSERT_EQ(y[static_cast<size_t>(k)], std::ldexp(atOne, root.order * (first + k)))
                << root.name << ", level " << level << ", x = " << x[static_cast<size_t>(k)];
          }
      }
    }
  }
}

// Roots of squares and cubes, and reciprocal roots of powers of 2, come out exact; so do those of
// subnormal numbers.
TEST(Roots, ExactResults) {
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (int64_t n = 1; n < (1 << 26); n += n < 5000 ? 1 : n / 331) {
      const double x = static_cast<double>(n);
      ASSERT_EQ(evaluate(nuvsSqrt_64f_A53, x * x).value, x) << "level " << level;
      ASSERT_EQ(evaluate(nuvsSqrt_64f_A53, std::ldexp(x * x, -1074)).value, std::ldexp(x, -537)) << "level " << level;
      if (n < 1 << 17) {
        ASSERT_EQ(evaluate(nuvsCbrt_64f_A53, -x * x * x).value, -x) << "level " << level;
        ASSERT_EQ(evaluate(nuvsCbrt_64f_A53, std::ldexp(x * x * x, -1074)).value, std::ldexp(x, -358))
            << "level " << level;
      }
    }
    for (int k = -358; k <= 341; ++k) {
      ASSERT_EQ(evaluate(nuvsInvCbrt_64f_A53, std::ldexp(-1.0, 3 * k)).value, std::ldexp(-1.0, -k))
          << "level " << level;
      ASSERT_EQ(evaluate(nuvsInvSqrt_64f_A53, std::ldexp(1.0, 2 * k)).value, std::ldexp(1.0, -k)) << "level " << level;
    }
  }
}

// Both sides of each row and section of the cube roots' tables, and of the fast ranges of the
// square roots, against a wider format: 0.55 ulp, and 0.76 ulp of subnormal arguments.
TEST(Roots, BothSidesOfEveryBoundary) {
  std::vector<double> x;
  for (int exponent : {-1022, -1007, -1006, -2, -1, 0, 1, 2, 3, 1008, 1009, 1023})
    for (int j = 0; j < 32; ++j)
      for (double side : {std::ldexp(1 + j / 32.0, exponent)})
        x.insert(x.end(), {side, std::nextafter(side, HUGE_VAL), std::nextafter(side, 0)});
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (const Root& root : roots)
      for (double argument : x) {
        const long double base = root.exponentStep == 2 ? std::sqrt(static_cast<long double>(argument))
                                                        : std::cbrt(static_cast<long double>(argument));
        const long double exact = root.order < 0 ? 1 / base : base;
        const double got = evaluate(root.f, argument).value;
        const long double ulp = std::ldexp(1.0L, std::ilogb(exact) - 52);
        ASSERT_LE(std::fabs((got - exact) / ulp), std::isnormal(argument) ? 0.55L : 0.76L)
            << root.name << ", level " << level << ", x = " << argument;
      }
  }
}

// The square roots take long stretches another way while all arguments lie from 2^-126 up to 2^128.
// Stretches at the edges of that range and just beyond them, with an outsider at any place, give
// what each element gives alone, in place too, and an argument outside leaves no flag of its own.
TEST(Roots, StretchesGiveWhatSingleElementsGive) {
  const double outsiders[] = {1.0,
                              0x1p-126,
                              std::nextafter(0x1p-126, 0),
                              std::nextafter(0x1p128, 0),
                              0x1p128,
                              0x1p1000,
                              0x1p-1000,
                              0x1p-1074,
                              0.0,
                              HUGE_VAL,
                              -1.0};
  const auto check = [](const Root& root, double outsider, int length, int place) {
    std::vector<double> x(static_cast<size_t>(length)), y(x.size());
    for (size_t i = 0; i < x.size(); ++i)
      x[i] = std::ldexp(1 + static_cast<double>(i) / 1777, static_cast<int>(i % 250) - 124);
    x[static_cast<size_t>(place)] = outsider;
    const Element alone = evaluate(root.f, outsider);
    // Negative arguments have a flag of their own, and inexact results and subnormal operands may
    // leave theirs.
    const auto state = [&] { return readMxcsr() & ~(outsider < 0 ? 0x3fu : 0x22u); };
    const uint32_t before = state();
    ASSERT_EQ(root.f(x.data(), y.data(), length), alone.status);
    ASSERT_EQ(state(), before);
    std::vector<double> inPlace = x;
    root.f(inPlace.data(), inPlace.data(), length);
    ASSERT_EQ(state(), before);
    for (size_t i = 0; i < x.size(); ++i) {
      ASSERT_EQ(bits(y[i]), bits(evaluate(root.f, x[i]).value)) << i;
      ASSERT_EQ(bits(y[i]), bits(inPlace[i])) << "in place, " << i;
    }
  };
  // Rounding to nearest, down, up, toward zero; then with an old underflow, and with exceptions
  // that trap.
  const uint32_t modes[] = {0x1f80, 0x3f80, 0x5f80, 0x7f80, 0x1f90, 0x1900};
  const uint32_t saved = readMxcsr();
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (const Root& root : roots)
      for (double outsider : outsiders)
        for (uint32_t mode : modes)
          for (int length : {47, 48, 71, 600})
            for (int place : {0, 17, length - 9, length - 1}) {
              if (mode == 0x1900 && outsider < 0) continue;
              SCOPED_TRACE(testing::Message() << root.name << ", level " << level << ", " << outsider << " at " << place
                                              << " of " << length << std::hex << ", MXCSR " << mode);
              writeMxcsr(mode);
              check(root, outsider, length, place);
              writeMxcsr(saved);
              if (HasFatalFailure()) return;
            }
  }
}

// Numbers just below 2^-126 become it in single precision, which only a flag tells. It must outlast
// a later stretch that is given up, or not even tried.
TEST(Roots, NumbersJustBelowTheRangeStayRightBesideLaterOutsiders) {
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (const Root& root : roots)
      for (size_t outsider : {600u, 512u}) {  // amid the second stretch, and where that is looked at first
        std::vector<double> x(1100, 3.0), y(x.size());
        for (size_t i = 0; i < 200; ++i) x[i + 50] = std::ldexp(1 - static_cast<double>(i + 1) * 0x1p-32, -126);
        x[outsider] = 0x1p-1000;
        root.f(x.data(), y.data(), 1100);
        for (size_t i = 0; i < x.size(); ++i)
          ASSERT_EQ(bits(y[i]), bits(evaluate(root.f, x[i]).value)) << root.name << ", level " << level << ", " << i;
      }
  }
}

}  // namespace
}  // namespace qorvane::test
