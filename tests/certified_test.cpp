// The complex functions in lanes: their bits are those of their extended routines, at every level,
// wherever an element stands and whatever stands beside it.
#include "complex/certified/strip.h"
#include "tests/certified_support.h"

namespace qorvane::test {
namespace {

struct Subject : Certified {
  Function function;
};
const Subject subjects[] = {
    {{"sinh", nuvsSinh_64fc_A53, element<Function::sinh>}, Function::sinh},
    {{"cosh", nuvsCosh_64fc_A53, element<Function::cosh>}, Function::cosh},
    {{"tanh", nuvsTanh_64fc_A53, element<Function::tanh>}, Function::tanh},
    {{"sin", nuvsSin_64fc_A53, element<Function::sin>}, Function::sin},
    {{"cos", nuvsCos_64fc_A53, element<Function::cos>}, Function::cos},
    {{"tan", nuvsTan_64fc_A53, element<Function::tan>}, Function::tan},
};

// Where paths and rows change: the ends of the lanes' range, halves and wholes of the steps, zeros.
double special(Random& random) {
  const double values[] = {0.0,
                           -0.0,
                           0x1p-100,
                           -0x1p-100,
                           std::nextafter(0x1p-100, 0),
                           256,
                           -256,
                           std::nextafter(256, 0),
                           -std::nextafter(256, 0),
                           0x1p-1074,
                           -0x1p-1030,
                           HUGE_VAL,
                           -HUGE_VAL,
                           std::nan(""),
                           1e300,
                           500,
                           -600,
                           710,
                           -720,
                           std::nextafter(1024, 0),
                           -1024,
                           5000.5,
                           std::nextafter(1e8, 0),
                           -1e8,
                           1.5707963267948966,
                           3.141592653589793,
                           201.06192982974676,
                           0.5,
                           0x1p-5};
  constexpr int count = sizeof values / sizeof *values;
  const uint64_t which = random() % (count + 4);
  if (which < count) return values[which];
  const double step = (which & 1) != 0 ? 0.006135923151542565 : 0.0054152123481117085;
  const double at = std::round(uniform(random, -2000, 2000)) * step;
  return (random() & 1) != 0 ? at : std::nextafter(at, (random() & 1) != 0 ? 1e9 : -1e9);
}

TEST(Certified, OrdinaryElementsHaveTheirExtendedBits) {
  for (const Subject& subject : subjects) {
    Random random(1);
    std::vector<Complex64> z(60000);
    for (size_t i = 0; i < z.size(); ++i) {
      const double size = i % 3 == 0 ? 1 : i % 3 == 1 ? 20 : 256;
      z[i] = {uniform(random, -size, size), uniform(random, -size, size)};
      if (i % 7 == 0) z[i].re = signedPower(random, -110, 9);
      if (i % 5 == 0) z[i].im = signedPower(random, -110, 9);
    }
    expectElements(subject, z);
    for (Complex64& element : z) {  // large parts, a third of the trigonometric ones next to a zero
      element = {uniform(random, -1024, 1024), signedPower(random, 0, 28)};
      if (random() % 3 == 0)
        element.im = std::round(uniform(random, -1, 1) * (random() % 2 == 0 ? 6e4 : 6e7)) * 1.5707963267948966 +
                     signedPower(random, -46, -8);
      if (isTurned(subject.function)) element = {element.im, element.re};
    }
    expectElements(subject, z);
  }
}

// With that share of the bounds.
bool isCertain(Function function, double x, double y, double share) {
  const auto h = hyperbolicPairs(std::abs(x));
  const auto t = trigonometricPairs(std::abs(y));
  Certain<Float64> first, second;
  if (isQuotient(function)) {
    const auto q = quotients(h.sinh, h.cosh, t.sin, t.cos, t.cos);
    first = certainPair(q.ofSinhCosh, 0.0, q.boundOfSinhCosh() * share);
    second = certainPair(q.ofSinCos, 0.0, q.boundOfSinCos() * share);
  } else {
    const bool mixed = hasSinhCos(function);
    first = certainProduct(h.sinh, mixed ? t.cos : t.sin, 0.0, boundWithSinh * share);
    second = certainProduct(h.cosh, mixed ? t.sin : t.cos, 0.0, boundWithCosh * share);
  }
  return toBits(first.isCertain) != 0 && toBits(second.isCertain) != 0;
}

// Elements near a boundary between two numbers: those that are just certain, and those that a bound too
// small would take wrongly.
TEST(Certified, BarelyAndUncertainElementsHaveTheirExtendedBits) {
  for (const Subject& subject : subjects) {
    Random random(2);
    std::vector<Complex64> z;
    for (int i = 0; i < 400000; ++i) {
      const double size = i % 2 == 0 ? 1 : 20, x = uniform(random, -size, size), y = uniform(random, -size, size);
      if (!isCertain(subject.function, x, y, 1.25))
        z.push_back(isTurned(subject.function) ? Complex64{y, x} : Complex64{x, y});
    }
    ASSERT_GT(z.size(), 1000u);
    expectElements(subject, z);
  }
}

// Bounds, or sums, that are far from what they should be show in the share that is unsure.
TEST(Certified, TheBoundsAreOfTheRightSize) {
  const std::pair<Function, int> expected[] = {{Function::sinh, 1310}, {Function::cosh, 1374}, {Function::tanh, 2660}};
  for (const auto& [function, count] : expected) {
    Random random(6);
    int unsure = 0;
    for (int i = 0; i < 200000; ++i) {
      const double x = uniform(random, -20, 20);
      unsure += !isCertain(function, x, uniform(random, -20, 20), 1);
    }
    EXPECT_NEAR(unsure, count, 40) << static_cast<int>(function);
  }
}

// The reduction doesn't know the remainder of an angle next to a multiple of pi/256; a little further off it does.
TEST(Certified, AnglesNextToStepsAreUnsure) {
  constexpr long double step = 0.01227184630308512983774470071593555834L;
  for (double number = 1; number < 8e9; number = std::ceil(number * 1.01)) {
    const auto nearest = static_cast<double>(static_cast<long double>(number) * step);
    const double beside = nearest * (1 + 0x1p-40);
    if (nearest < 256) {
      EXPECT_NE(toBits(trigonometricPairs(nearest).isUnsure), 0u) << number;
      EXPECT_EQ(toBits(trigonometricPairs(beside).isUnsure), 0u) << number;
    }
    EXPECT_NE(toBits(trigonometricPairs<true>(nearest).isUnsure), 0u) << number;
    EXPECT_EQ(toBits(trigonometricPairs<true>(beside).isUnsure), 0u) << number;
  }
}

TEST(Certified, EveryLengthAndNeighbourGivesTheSameBits) {
  for (const Subject& subject : subjects) expectEveryLength(subject, 20, special);
}

// From |x| = 256 up tanh's small part is scaled, from 354 up subnormal, from 373 up 0, and from 709 up sinh
// and cosh overflow: flags as the routine's.
// A part below all normal numbers is no zero.
TEST(Certified, LargeAndTinyPartsHaveTheirBitsAndFlags) {
  Random random(5);
  const double edges[] = {256,
                          std::nextafter(512, 0),
                          std::nextafter(256, 0),
                          512,
                          354.19,
                          354.2,
                          354.89,
                          372.7,
                          373.1,
                          0x1p-1074,
                          709.78,
                          710.47,
                          711,
                          std::nextafter(1024, 0),
                          1024,
                          1e5,
                          1e300,
                          1500};
  const double others[] = {0, -0.0, 1, -1, 2, -2, 1.5707963267948966, 0x1p-100, -200};
  for (const Subject& subject : subjects)
    for (int i = 0; i < 3000; ++i) {
      const int edgeCount = sizeof edges / sizeof *edges * 9;
      double x = i < edgeCount ? edges[i / 9] : i % 3 == 0 ? uniform(random, 354, 373) : uniform(random, 256, 800);
      if ((i & 1) != 0) x = -x;
      const double y = i < edgeCount ? others[i % 9] : signedPower(random, -4, 16);
      const Complex64 z = isTurned(subject.function) ? Complex64{y, x} : Complex64{x, y};
      std::feclearexcept(FE_ALL_EXCEPT);
      const Complex64 expected = subject.element(z);
      const int flags = std::fetestexcept(FE_ALL_EXCEPT);
      for (int level : supportedLevels()) {
        AtLevel at(level);
        Complex64 result;
        std::feclearexcept(FE_ALL_EXCEPT);
        subject.served(&z, &result, 1);
        EXPECT_EQ(std::fetestexcept(FE_ALL_EXCEPT), flags) << subject.name << std::hexfloat << z.re << ", " << z.im;
        EXPECT_TRUE(same(result, expected))
            << subject.name << std::hexfloat << "(" << z.re << ", " << z.im << "): " << result.re << ", " << result.im
            << ", extended " << expected.re << ", " << expected.im;
      }
    }
}

TEST(Certified, OtherRoundingsAreTheExtendedRoutines) {
  for (const Subject& subject : subjects) expectCallersRounding(subject);
}

// Parts at the ends of the lanes' range, and quiet NaNs, which raise nothing by themselves; zeros are exact.
TEST(Certified, LanesRaiseInexactOnly) {
  const double nan = std::nan(""), last = std::nextafter(256, 0);
  for (const Subject& subject : subjects) {
    expectFlags(subject,
                {{0x1p-100, 0x1p-100},
                 {nan, nan},
                 {last, last},
                 {-last, 0x1p-100},
                 {0, 3},
                 {3, 0},
                 {nan, 1},
                 {0x1p-100, -last},
                 {0, 0}},
                FE_INEXACT);
    expectFlags(subject, std::vector<Complex64>(9, Complex64{0.0, -0.0}), 0);
  }
}

}  // namespace
}  // namespace qorvane::test
