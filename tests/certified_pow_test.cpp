// The complex powers in lanes: their bits are those of complexPow, at every level, wherever an element
// stands and whatever stands beside it.
#include "complex/certified/pow_strip.h"
#include "tests/certified_support.h"

namespace qorvane::test {
namespace {

struct Power {
  Complex64 a, b;
};

// In place over the exponents, and Powx in place with the first of them.
void expectPowers(const std::vector<Power>& powers) {
  const auto length = static_cast<int32_t>(powers.size());
  std::vector<Complex64> a, b, expected, expectedX;
  for (const Power& p : powers) {
    a.push_back(p.a), b.push_back(p.b);
    expected.push_back(complexPow(p.a, p.b)), expectedX.push_back(complexPow(p.a, b[0]));
  }
  for (int level : supportedLevels()) {
    AtLevel at(level);
    std::vector<Complex64> results = b, resultsX = a;
    ASSERT_EQ(nuvsPow_64fc_A53(a.data(), results.data(), results.data(), length), nuvStatusOk);
    ASSERT_EQ(nuvsPowx_64fc_A53(resultsX.data(), b[0], resultsX.data(), length), nuvStatusOk);
    int shown = 0;
    for (size_t i = 0; i < powers.size() && shown < 5; ++i) {
      if (same(results[i], expected[i]) && same(resultsX[i], expectedX[i])) continue;
      ++shown;
      ADD_FAILURE() << std::hexfloat << "(" << a[i].re << ", " << a[i].im << ")^(" << b[i].re << ", " << b[i].im
                    << ") at level " << level << ", place " << i << " of " << length << ": " << results[i].re << ", "
                    << results[i].im << ", extended " << expected[i].re << ", " << expected[i].im
                    << "; with the first exponent " << resultsX[i].re << ", " << resultsX[i].im << ", extended "
                    << expectedX[i].re << ", " << expectedX[i].im;
    }
  }
}
void expectFlags(const std::vector<Power>& powers, int flags) {
  std::vector<Complex64> a, b, results(powers.size());
  for (const Power& p : powers) a.push_back(p.a), b.push_back(p.b);
  for (int level : supportedLevels()) {
    AtLevel at(level);
    std::feclearexcept(FE_ALL_EXCEPT);
    nuvsPow_64fc_A53(a.data(), b.data(), results.data(), static_cast<int32_t>(a.size()));
    EXPECT_EQ(std::fetestexcept(FE_ALL_EXCEPT), flags) << "level " << level;
  }
}

Complex64 within(Random& random, double size) {
  const double re = uniform(random, -size, size);
  return {re, uniform(random, -size, size)};
}
// Zeros, units, the ends of the lanes' ranges of bases, of exponents' products, and what only the routine takes.
double special(Random& random) {
  const double values[] = {0,
                           0,
                           1,
                           0.5,
                           2,
                           1e10,
                           0x1p-100,
                           std::nextafter(0x1p-100, 0),
                           std::nextafter(0x1p100, 0),
                           0x1p100,
                           7,
                           160,
                           300,
                           1e-60,
                           1e-70,
                           0x1p-1074,
                           1e300,
                           HUGE_VAL,
                           std::nan("")};
  return std::copysign(values[random() % (sizeof values / sizeof *values)], (random() & 1) != 0 ? 1.0 : -1.0);
}
Power anyPower(Random& random) {
  Power p = {within(random, 20), within(random, 2)};
  const auto small = [&] { return static_cast<double>(random() % 21) - 10; };
  switch (random() % 8) {
    case 0: break;
    case 1: p.b = within(random, 60); break;  // results from 2^-1000 to 2^1000, and over- and underflow
    case 2: p.a = {signedPower(random, -102, 102), signedPower(random, -102, 102)}, p.b = within(random, 3); break;
    case 3: p.b = {signedPower(random, -210, 0), signedPower(random, -210, 0)}; break;
    case 4: p.b = {small(), 0}; break;
    case 5: {  // whole powers of numbers on the axes, whose angles are next to multiples of pi/2
      const double size = random() % 4 == 0 ? 1 : uniform(random, 0, 20), signedSize = std::copysign(size, small());
      p.a = (random() & 1) != 0 ? Complex64{signedSize, 0} : Complex64{0, signedSize};
      p.b = {small() / (random() % 4 == 0 ? 2 : 1), 0};
      break;
    }
    case 6: {
      const double angle = uniform(random, -3.2, 3.2), r = 1 + signedPower(random, -60, -5);
      p.a = {r * std::cos(angle), r * std::sin(angle)};
      break;
    }
    default: p.a = {uniform(random, -20, 20), 0}; break;
  }
  return p;
}

// Whether the lanes are certain of e^z, and of e^x alone, with that bound.
bool isCertain(Complex64 z, double bound) {
  const auto e = exponentialPair(z.re);
  const auto t = trigonometricPairs(std::abs(z.im), nearestToSteps);
  return toBits(certainExponential(e, t.sin, t.cos, z.im, bound).isCertain) != 0 && toBits(t.isUnsure) == 0;
}
bool isCertain(double x, double bound) {
  const auto e = exponentialPair(x);
  const auto sum = fastSum(e.head, e.rest);
  return toBits(certainSum(sum, sum.high * bound).isCertain) != 0;
}

TEST(CertifiedPow, ElementsHaveTheirExtendedBits) {
  Random random(1);
  std::vector<Power> powers(200000);
  for (Power& p : powers) p = anyPower(random);
  expectPowers(powers);
}

// Elements near a boundary between two numbers: those that are just certain, and those that a bound too
// small would take wrongly.
TEST(CertifiedPow, BarelyAndUncertainElementsHaveTheirExtendedBits) {
  Random random(2);
  std::vector<Power> powers;
  while (powers.size() < 5000) {
    const Complex64 a = within(random, 20), log = complexLn(a);
    const Power p = {a, (random() & 1) != 0 ? Complex64{1, 0} : Complex64{0, 1}};
    const Complex64 product = p.b.im == 0 ? log : Complex64{-log.im, log.re};
    if (!isCertain(product, boundOfExponential * 1.25)) powers.push_back(p);
  }
  expectPowers(powers);
}

// Exponents so small that x is below 2^-11, and strips of real powers, with bounds of their own.
TEST(CertifiedPow, BarelyCertainElementsOfTheOtherBoundsHaveTheirExtendedBits) {
  Random random(6);
  std::vector<Power> powers;
  while (powers.size() < 2000) {
    const Complex64 a = within(random, 20), log = complexLn(a);
    const double b = std::exp2(uniform(random, -18, -12));
    if (!isCertain(Complex64{b * log.re, b * log.im}, boundOfExponential * 1.25)) powers.push_back({a, {b, 0}});
  }
  expectPowers(powers);
  powers.clear();
  while (powers.size() < 2000) {
    const double a = uniform(random, 0, 20), zero = (random() & 1) != 0 ? 0.0 : -0.0;
    if (!isCertain(complexLn({a, 0}).re, boundOfReal * 1.25)) powers.push_back({{a, zero}, {1, 0}});
  }
  expectPowers(powers);
}

TEST(CertifiedPow, RealPowersHaveTheirExtendedBits) {
  Random random(7);
  for (size_t round = 0; round < 600; ++round) {
    std::vector<Power> powers(1 + round % 75);
    for (Power& p : powers) {
      p = {{std::exp2(uniform(random, -20, 20)), 0}, {uniform(random, -20, 20), (random() & 1) != 0 ? 0.0 : -0.0}};
      if (random() % 64 == 0) p.a.re = std::abs(special(random));
      if (random() % 64 == 0) p.b.re = special(random);
      if (round % 5 == 0 && random() % 8 == 0) p.a.im = signedPower(random, -20, 4);
    }
    expectPowers(powers);
  }
}

// Bounds, or sums, that are far from what they should be show in the share that is unsure.
TEST(CertifiedPow, TheBoundIsOfTheRightSize) {
  Random random(3);
  int unsure = 0, fromEleventh = 0, real = 0;
  for (int i = 0; i < 200000; ++i) {
    const Complex64 z = within(random, 10);
    unsure += !isCertain(z, boundOfExponential);
    fromEleventh += !isCertain(z, boundFromEleventh);
    real += !isCertain(z.re, boundOfReal);
  }
  EXPECT_NEAR(unsure, 1519, 120);
  EXPECT_NEAR(fromEleventh, 1230, 110);
  EXPECT_NEAR(real, 344, 60);
}

// The reduction doesn't know the remainder of an angle that is too close to a multiple of pi/256.
TEST(CertifiedPow, AnglesNextToStepsAreUnsure) {
  const __float128 step = (static_cast<__float128>(3.141592653589793) + 1.2246467991473532e-16) / 256;
  int close = 0;
  for (int number = 1; number < 41000; ++number) {
    const double y = static_cast<double>(number * step);
    const double distance = std::abs(static_cast<double>(y - number * step)) / y;
    const bool isUnsure = toBits(trigonometricPairs(y, nearestToSteps).isUnsure) != 0;
    if (std::abs(distance - 0x1p-57) > 0x1p-63) {
      EXPECT_EQ(isUnsure, distance < 0x1p-57) << number;
    }
    close += distance < 0x1p-57;
  }
  EXPECT_GT(close, 1000);
}

TEST(CertifiedPow, EveryLengthAndNeighbourGivesTheSameBits) {
  Random random(4);
  for (size_t round = 0; round < 600; ++round) {
    std::vector<Power> powers(1 + round % 75);
    const uint64_t rare = random() % 4;
    for (Power& p : powers) {
      p = {within(random, 3), within(random, 3)};
      for (double* part : {&p.a.re, &p.a.im, &p.b.re, &p.b.im})
        if (random() % 8 < rare) *part = special(random);
    }
    expectPowers(powers);
  }
}

TEST(CertifiedPow, OtherRoundingsAreTheRoutines) {
  Random random(5);
  std::vector<Complex64> a(100), b(100), results(100), resultsX(100);
  for (Complex64& z : a) z = within(random, 20);
  for (Complex64& z : b) z = within(random, 3);
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (const uint32_t rounding : {0x2000u, 0x4000u, 0x6000u, 0x8040u}) {
      const uint32_t saved = _mm_getcsr();
      _mm_setcsr(saved | rounding);
      nuvsPow_64fc_A53(a.data(), b.data(), results.data(), 100);
      nuvsPowx_64fc_A53(a.data(), b[0], resultsX.data(), 100);
      int different = 0;
      for (size_t i = 0; i < 100; ++i)
        different += !same(results[i], complexPow(a[i], b[i])) + !same(resultsX[i], complexPow(a[i], b[0]));
      _mm_setcsr(saved);
      EXPECT_EQ(different, 0) << "level " << level << ", mode " << std::hex << rounding;
    }
  }
}

// The routine's flags, whatever stands together: elements at the ends of the lanes' ranges, and powers that are
// exact.
TEST(CertifiedPow, FlagsAreTheRoutines) {
  Random random(6);
  const Power ends[] = {
      {{2, 1}, {300, 1}},  {{2, 1}, {1e-61, 1e-61}},     {{1, 2}, {1, 2}}, {{-1, 0}, {3, 0}}, {{0, 1}, {2, 0}},
      {{2, 0}, {2, 0}},    {{0x1p99, 0x1p-100}, {7, 0}}, {{1, 0}, {2, 3}}, {{2, 1}, {0, 0}},  {{1, 0}, {0, 0}},
      {{3, 4}, {1000, 0}}, {{2, 0x1p-108}, {-737, 0}},  // a sine whose cube would be subnormal
      {{0, 0}, {1, 0}}};
  for (int round = 0; round < 3000; ++round) {
    std::vector<Power> powers(1 + random() % 9);
    for (Power& p : powers) {
      p = round % 2 == 0 ? ends[random() % (sizeof ends / sizeof *ends)] : anyPower(random);
      if (random() % 16 == 0) p.a.re = special(random);
      if (random() % 16 == 0) p.b.re = special(random);
    }
    if (round % 10 == 0) powers.assign(powers.size(), powers[0]);
    std::feclearexcept(FE_ALL_EXCEPT);
    for (const Power& p : powers) complexPow(p.a, p.b);
    expectFlags(powers, std::fetestexcept(FE_ALL_EXCEPT));
  }
}

}  // namespace
}  // namespace qorvane::test
