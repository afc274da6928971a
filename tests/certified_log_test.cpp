// The complex logarithm in lanes: its bits are those of the extended routine, at every level, wherever an
// element stands and whatever stands beside it.
#include "complex/certified/log_strip.h"
#include "complex/ln.h"
#include "tests/certified_support.h"

namespace qorvane::test {
namespace {

const Certified log10OfComplex = {"log10", nuvsLog10_64fc_A53, element<Function::log10>};

// The ends of the lanes' range, zeros, 1, powers of 10, and what only the routine takes.
double special(Random& random) {
  const double values[] = {0,
                           1,
                           0.5,
                           2,
                           10,
                           1e10,
                           0x1p-100,
                           std::nextafter(0x1p-100, 0),
                           0x1p100,
                           std::nextafter(0x1p100, 0),
                           0x1p-1074,
                           1e300,
                           HUGE_VAL,
                           std::nan(""),
                           0x1p-1030,
                           std::nextafter(1, 0),
                           std::nextafter(1, 2)};
  return std::copysign(values[random() % (sizeof values / sizeof *values)], (random() & 1) != 0 ? 1.0 : -1.0);
}
// Everywhere that formulas, in the lanes or in the routine, change or lose digits.
Complex64 anyPoint(Random& random) {
  double x = uniform(random, -20, 20), y = uniform(random, -20, 20);
  switch (random() % 9) {
    case 0: break;
    case 1: x = uniform(random, -2, 2), y = uniform(random, -2, 2); break;
    case 2: x = signedPower(random, -102, 102), y = signedPower(random, -102, 102); break;
    case 3: x = signedPower(random, -20, 20), y = signedPower(random, -20, 20); break;
    case 4: {  // the unit circle, and where | |z|^2 - 1 | is about 2^-9 or 0.03
      const double angle = uniform(random, 0, 7), offs[] = {0, 0.015, 0x1p-10};
      const double off = std::copysign(offs[random() % 3], uniform(random, -1, 1));
      const double r = 1 + off + signedPower(random, -60, -8);
      x = r * std::cos(angle), y = r * std::sin(angle);
      break;
    }
    case 5: x = (random() & 1 ? 1 : -1) * (1 + signedPower(random, -54, -3)), y = signedPower(random, -99, -2); break;
    case 6: {  // next to a row of the angles, and between two
      const double c = static_cast<double>(random() % 257) * 0x1p-8;
      y = x * (c + signedPower(random, -60, -12));
      break;
    }
    case 7: y = signedPower(random, -50, 0); break;
    default: y = 0, x = (random() & 1) != 0 ? x : 1 + signedPower(random, -54, -3); break;
  }
  if ((random() & 1) != 0) std::swap(x, y);
  return {x, y};
}

// Whether the lanes are certain of both parts with that share of their bounds.
bool isCertain(Complex64 z, double share) {
  const auto parts = bySize(z.re, z.im);
  const auto log = certainLog<Base::ten>(parts, share);
  const bool ofLog =
      toBits((toBits(log.isNearCircle) != 0 ? certainLogNearCircle<Base::ten>(parts, share) : log.log).isCertain) != 0;
  return ofLog && toBits(certainAngle<Base::ten>(z.re, z.im, share).isCertain) != 0;
}

TEST(CertifiedLog, ElementsHaveTheirExtendedBits) {
  Random random(1);
  std::vector<Complex64> z(300000);
  for (Complex64& element : z) element = anyPoint(random);
  expectElements(log10OfComplex, z);
}

// Elements near a boundary between two numbers: those that are just certain, and those that a bound too
// small would take wrongly.
TEST(CertifiedLog, BarelyAndUncertainElementsHaveTheirExtendedBits) {
  Random random(2);
  std::vector<Complex64> z;
  while (z.size() < 12000) {
    const Complex64 element = anyPoint(random);
    if (!isCertain(element, 1.25)) z.push_back(element);
  }
  expectElements(log10OfComplex, z);
}

template <Base base>
bool isCertainLog(Complex64 z) {
  const auto parts = bySize(z.re, z.im);
  const auto log = certainLog<base>(parts);
  return toBits((toBits(log.isNearCircle) != 0 ? certainLogNearCircle<base>(parts) : log.log).isCertain) != 0;
}
template <Base base>
bool isCertainAngle(Complex64 z) {
  return toBits(certainAngle<base>(z.re, z.im).isCertain) != 0;
}
template <Base base>
bool isCertainOnAxis(Complex64 z) {
  return toBits(certainOnAxis<base>(z.re, 0.0).log.isCertain) != 0;
}

// The share that is unsure is as large as the bounds are: a constant, or a range, that isn't what it should be
// shows in one of these.
TEST(CertifiedLog, TheBoundsAreOfTheRightSize) {
  struct Row {
    Complex64 (*draw)(Random&);
    bool (*ofTen)(Complex64);
    bool (*ofE)(Complex64);
    int expectedOfTen, expectedOfE;  // of 200000
  };
  const Row rows[] = {
      {[](Random& r) {
         return Complex64{uniform(r, 1e6, 1e8), uniform(r, 1e6, 1e8)};
       },
       isCertainLog<Base::ten>, isCertainLog<Base::e>, 719, 342},
      {[](Random& r) {
         return Complex64{uniform(r, -1, 1), uniform(r, 0.2, 1.2)};
       },
       isCertainLog<Base::ten>, isCertainLog<Base::e>, 2734, 2563},
      {[](Random& r) {
         return Complex64{0.6, 0.8 + uniform(r, 0.002, 0.015)};
       },
       isCertainLog<Base::ten>, isCertainLog<Base::e>, 705, 477},
      {[](Random& r) {
         return Complex64{0.6, 0.8 + signedPower(r, -40, -10)};
       },
       isCertainLog<Base::ten>, isCertainLog<Base::e>, 653, 434},
      {[](Random& r) {
         return Complex64{uniform(r, -20, 20), uniform(r, -20, 20)};
       },
       isCertainAngle<Base::ten>, isCertainAngle<Base::e>, 312, 149},
      {[](Random& r) {
         return Complex64{uniform(r, 1, 20), signedPower(r, -30, -8)};
       },
       isCertainAngle<Base::ten>, isCertainAngle<Base::e>, 958, 749},
      {[](Random& r) {
         return Complex64{uniform(r, 0.5, 2), 0};
       },
       isCertainOnAxis<Base::ten>, isCertainOnAxis<Base::e>, 1979, 1706},
  };
  for (const Row& row : rows) {
    Random random(3);
    int unsureOfTen = 0, unsureOfE = 0;
    for (int i = 0; i < 200000; ++i) {
      const Complex64 z = row.draw(random);
      unsureOfTen += !row.ofTen(z), unsureOfE += !row.ofE(z);
    }
    EXPECT_NEAR(unsureOfTen, row.expectedOfTen, row.expectedOfTen / 12.0) << "row " << &row - rows;
    EXPECT_NEAR(unsureOfE, row.expectedOfE, row.expectedOfE / 12.0) << "row " << &row - rows;
  }
}

// Strips of every length, with and without zeros and elements for the routine; on the axes alone, too.
TEST(CertifiedLog, EveryLengthAndNeighbourGivesTheSameBits) {
  Random random(4);
  for (int round = 0; round < 600; ++round) {
    std::vector<Complex64> z(1 + static_cast<size_t>(round) % 75);
    const uint64_t rare = random() % 4;
    for (Complex64& element : z) {
      element = {uniform(random, -2, 2), uniform(random, -2, 2)};
      if (random() % 4 < rare) element.re = special(random);
      if (random() % 4 < rare) element.im = special(random);
      if (round % 3 == 0) {
        double& part = (random() & 1) != 0 ? element.re : element.im;
        part = std::copysign(0.0, part);
        if (round % 2 == 0 && element.re == 0 && element.im == 0) element.re = -1;
      }
    }
    expectElements(log10OfComplex, z);
  }
}

TEST(CertifiedLog, OtherRoundingsAreTheExtendedRoutines) { expectCallersRounding(log10OfComplex); }

// The routine's flags, whatever stands together: elements at the ends of the lanes' range, outside of it, where
// squares would leave that of double precision, with a logarithm that is exact.
TEST(CertifiedLog, FlagsAreTheRoutines) {
  Random random(6);
  const double low = 0x1p-100, high = std::nextafter(0x1p100, 0);
  const Complex64 ends[] = {{low, low}, {high, high},  {low, -high}, {-high, low}, {0, low},      {1e200, 1},
                            {1, 1e200}, {0.5, 1e-200}, {low, 0},     {1, low},     {0x1p99, low}, {high, 1},
                            {0, high},  {high, 0},     {-1, 0},      {0, 1},       {1, 0},        {1, -0.0}};
  for (int round = 0; round < 3000; ++round) {
    std::vector<Complex64> z(1 + random() % 9);
    for (Complex64& element : z) {
      element = round % 2 == 0 ? ends[random() % (sizeof ends / sizeof *ends)] : anyPoint(random);
      if (random() % 16 == 0) element.re = special(random);
    }
    if (round % 10 == 0) z.assign(z.size(), z[0]);
    std::feclearexcept(FE_ALL_EXCEPT);
    for (const Complex64& each : z) element<Function::log10>(each);
    expectFlags(log10OfComplex, z, std::fetestexcept(FE_ALL_EXCEPT));
  }
}

// nuvsLn_64fc_A53 has lanes for elements on the axes: every third one here is off by less than a bound that is a
// quarter too large.
TEST(CertifiedLog, NaturalLogarithmsOnTheAxesHaveTheirExtendedBits) {
  const Certified lnOfComplex = {"ln", nuvsLn_64fc_A53, complexLn};
  Random random(7);
  std::vector<Complex64> z;
  while (z.size() < 60000) {
    double part = uniform(random, -20, 20);
    switch (random() % 5) {
      case 0: break;
      case 1: part = signedPower(random, -101, 101); break;
      case 2: part = std::copysign(1 + signedPower(random, -54, -3), part); break;
      case 3: part = std::copysign(1 + uniform(random, -0.02, 0.02), part); break;
      default: part = special(random); break;
    }
    const double zero = std::copysign(0.0, uniform(random, -1, 1));
    const Complex64 element = (random() & 1) != 0 ? Complex64{part, zero} : Complex64{zero, part};
    const bool isClose = toBits(certainOnAxis<Base::e>(element.re, element.im, 1.25).log.isCertain) == 0;
    if (z.size() % 3 != 0 || isClose) z.push_back(element);
  }
  expectElements(lnOfComplex, z);
  for (size_t at = 0; at < 30000; at += 30) {
    const std::vector<Complex64> some(z.begin() + static_cast<long>(at), z.begin() + static_cast<long>(at + at % 13));
    std::feclearexcept(FE_ALL_EXCEPT);
    for (const Complex64& each : some) complexLn(each);
    expectFlags(lnOfComplex, some, std::fetestexcept(FE_ALL_EXCEPT));
  }
}

// Ln's vectors, with bits of their own, leave parts below 2^-500 and from 2^500 up to the routine.
TEST(CertifiedLog, NaturalLogarithmsBeyondTheVectorsAreTheRoutines) {
  const Certified lnOfComplex = {"ln", nuvsLn_64fc_A53, complexLn};
  Random random(8);
  std::vector<Complex64> z(20000);
  for (Complex64& element : z) {
    const double magnitude =
        random() % 2 == 0 ? std::exp2(uniform(random, -565, -500)) : uniform(random, 1, 4) * 0x1p500;
    const double beyond = random() % 8 != 0 ? magnitude : random() % 2 == 0 ? std::nextafter(0x1p-500, 0) : 0x1p500;
    const double part = std::copysign(beyond, uniform(random, -1, 1)), other = part * uniform(random, -2, 2);
    element = random() % 2 == 0 ? Complex64{part, other} : Complex64{other, part};
  }
  expectElements(lnOfComplex, z);
}

}  // namespace
}  // namespace qorvane::test
