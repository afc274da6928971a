// The complex inverse functions in lanes: their bits are those of their extended routines, at every
// level, wherever an element stands and whatever stands beside it.
#include "complex/certified/inverse_strip.h"
#include "tests/certified_support.h"

namespace qorvane::test {
namespace {

// Whether the lanes are certain of both parts of f(a + ib), parts of their bounds given.
template <Function function>
bool isCertain(double a, double b, double ofLog, double ofAngle) {
  if (a == 0) return toBits(axisParts<function, true>(a, b, ofLog).isCertain) != 0;
  if (b == 0) return toBits(axisParts<function, false>(a, b, ofLog).isCertain) != 0;
  const auto parts = certainParts<function>(a, b, ofLog, ofAngle);
  return toBits(parts.log.isCertain) != 0 && toBits(parts.angle.isCertain) != 0;
}

// How many of 100000 elements are unsure: logarithms and angles of parts within 1 and within 20; angles close to
// the unit circle; on the axes A = 0 and B = 0.
struct Unsure {
  int logWithin1, angleWithin1, logWithin20, angleWithin20, angleByCircle, whereAIsZero, whereBIsZero;
};
struct Subject : Certified {
  bool (*certain)(double, double, double, double);
  bool imaginaryIsA;
  Unsure unsure;
};
template <Function function>
constexpr Subject subject(const char* name, ComplexUnary served, Unsure unsure) {
  return {{name, served, element<function>}, isCertain<function>, imaginaryIsA(function), unsure};
}
const Subject subjects[] = {
    subject<Function::asinh>("asinh", nuvsAsinh_64fc_A53, {705, 649, 775, 622, 593, 281, 227}),
    subject<Function::asin>("asin", nuvsAsin_64fc_A53, {705, 649, 775, 622, 593, 281, 227}),
    subject<Function::acosh>("acosh", nuvsAcosh_64fc_A53, {705, 774, 775, 824, 780, 281, 226}),
    subject<Function::acos>("acos", nuvsAcos_64fc_A53, {705, 774, 775, 824, 780, 281, 226}),
    subject<Function::atan>("atan", nuvsAtan_64fc_A53, {827, 356, 2364, 75, 547, 342, 1046}),
};
Complex64 pointOf(const Subject& s, double a, double b) { return s.imaginaryIsA ? Complex64{b, a} : Complex64{a, b}; }

// The ends of the lanes' range, zeros, branch points, and what only the routine takes.
double special(Random& random) {
  const double values[] = {0,
                           1,
                           0.5,
                           1.5,
                           2,
                           0x1p-100,
                           std::nextafter(0x1p-100, 0),
                           1e20,
                           0x1p-11,
                           1e10,
                           0x1p60,
                           std::nextafter(0x1p60, 0),
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
Complex64 anyPoint(const Subject& s, Random& random) {
  double a = uniform(random, -20, 20), b = uniform(random, -20, 20);
  switch (random() % 9) {
    case 0: break;
    case 1: a = uniform(random, -2, 2), b = uniform(random, -2, 2); break;
    case 2: a = signedPower(random, -102, 62), b = signedPower(random, -102, 62); break;
    case 3: a = signedPower(random, -20, 20), b = signedPower(random, -20, 20); break;
    case 4: {  // the unit circle, and where |1 - |z|^2| is about 0.03
      const double angle = uniform(random, 0, 7), off = (random() & 1) != 0 ? 0.015 : 0;
      const double r = 1 + std::copysign(off, uniform(random, -1, 1)) + signedPower(random, -50, -8);
      a = r * std::cos(angle), b = r * std::sin(angle);
      break;
    }
    case 5: a = (random() & 1 ? 1 : -1) * (1 + signedPower(random, -52, -3)), b = signedPower(random, -60, -2); break;
    case 6: b = signedPower(random, -50, 0); break;
    case 7: a = signedPower(random, -50, 0); break;
    default: (random() & 1 ? a : b) = 0, a /= random() & 1 ? 1 : 20; break;
  }
  return pointOf(s, a, b);
}

TEST(CertifiedInverse, ElementsHaveTheirExtendedBits) {
  for (const Subject& subject : subjects) {
    Random random(1);
    std::vector<Complex64> z(100000);
    for (Complex64& element : z) element = anyPoint(subject, random);
    expectElements(subject, z);
  }
}

// Elements near a boundary between two numbers: those that are just certain, and those that a bound too
// small would take wrongly.
TEST(CertifiedInverse, BarelyAndUncertainElementsHaveTheirExtendedBits) {
  for (const Subject& subject : subjects) {
    Random random(2);
    std::vector<Complex64> z;
    for (int i = 0; i < 600000; ++i) {
      // Where the inverse tangent's logarithm is small, and next to the branch points, errors grow.
      const int kind = i % 4;
      const double size = kind == 0 ? 20 : 1;
      double a = uniform(random, -size, size), b = uniform(random, -size, size);
      if (kind == 2) a *= 0.01;
      if (kind == 3) a = 1 + 0.3 * a, b *= 0.3;
      if (!subject.certain(a, b, 1.25, 1.25)) z.push_back(pointOf(subject, a, b));
    }
    ASSERT_GT(z.size(), 1000u);
    expectElements(subject, z);
  }
}

// Bounds, or sums, that are far from what they should be show in the share that is unsure.
TEST(CertifiedInverse, TheBoundsAreOfTheRightSize) {
  for (const Subject& subject : subjects) {
    const auto count = [&](double size, double ofLog, double ofAngle) {
      Random random(3);
      int unsure = 0;
      for (int i = 0; i < 100000; ++i) {
        double a = uniform(random, -size, size), b = uniform(random, -size, size);
        if (size == 0) {
          const double radius = uniform(random, 0.98, 1.03), angle = uniform(random, 0, 7);
          a = radius * std::cos(angle), b = radius * std::sin(angle);
        }
        unsure += !subject.certain(a, b, ofLog, ofAngle);
      }
      return unsure;
    };
    const auto expectCount = [&](int unsure, int expected, const char* what) {
      EXPECT_NEAR(unsure, expected, expected / 15.0) << subject.name << ", " << what;
    };
    expectCount(count(1, 1, 0), subject.unsure.logWithin1, "logarithms within 1");
    expectCount(count(1, 0, 1), subject.unsure.angleWithin1, "angles within 1");
    expectCount(count(20, 1, 0), subject.unsure.logWithin20, "logarithms within 20");
    expectCount(count(20, 0, 1), subject.unsure.angleWithin20, "angles within 20");
    expectCount(count(0, 0, 1), subject.unsure.angleByCircle, "angles by the unit circle");
  }
}

// The same for strips on an axis, which have formulas of their own: all lengths, both signs of the zero,
// both sides of the branch points in one vector, and neighbours that only the routine takes.
TEST(CertifiedInverse, ElementsOnAnAxisHaveTheirExtendedBits) {
  for (const Subject& subject : subjects) {
    Random random(6);
    for (int round = 0; round < 3000; ++round) {
      std::vector<Complex64> z(1 + static_cast<size_t>(round) % 75);
      const bool aIsZero = (random() & 1) != 0;
      const uint64_t kind = random() % 5, rare = random() % 8;
      for (Complex64& element : z) {
        double x = uniform(random, -20, 20);
        if (kind == 1) x = uniform(random, -1, 1);
        if (kind == 2) x = signedPower(random, -102, 62);
        if (kind == 3) x = (random() & 1 ? 1 : -1) * (1 + signedPower(random, -52, -1));
        if (kind == 4) x = signedPower(random, -14, 14);
        if (random() % 16 < rare) x = special(random);
        const double zero = (random() & 1) != 0 ? 0.0 : -0.0;
        element = aIsZero ? pointOf(subject, zero, x) : pointOf(subject, x, zero);
      }
      expectElements(subject, z);
    }
  }
}
TEST(CertifiedInverse, BarelyAndUncertainElementsOnAnAxisHaveTheirExtendedBits) {
  for (const Subject& subject : subjects)
    for (const bool aIsZero : {false, true}) {
      Random random(7);
      std::vector<Complex64> z;
      int unsure = 0;
      for (int i = 0; i < 100000; ++i) {
        const double size = i % 2 == 0 ? 1 : 20, x = uniform(random, -size, size);
        const double a = aIsZero ? 0 : x, b = aIsZero ? x : 0;
        unsure += !subject.certain(a, b, 1, 1);
        if (!subject.certain(a, b, 1.25, 1.25)) z.push_back(pointOf(subject, a, b));
      }
      const int expected = aIsZero ? subject.unsure.whereAIsZero : subject.unsure.whereBIsZero;
      EXPECT_NEAR(unsure, expected, expected / 15.0) << subject.name << (aIsZero ? ", A = 0" : ", B = 0");
      expectElements(subject, z);
    }
}

TEST(CertifiedInverse, EveryLengthAndNeighbourGivesTheSameBits) {
  for (const Subject& subject : subjects) expectEveryLength(subject, 2, special);
}

TEST(CertifiedInverse, OtherRoundingsAreTheExtendedRoutines) {
  for (const Subject& subject : subjects) expectCallersRounding(subject);
}

// At the ends of the lanes' range, outside of it, where squares would leave that of double precision, and
// beside quiet NaNs, which raise nothing by themselves.
TEST(CertifiedInverse, LanesRaiseInexactOnly) {
  const double low = 0x1p-100, high = std::nextafter(0x1p60, 0), nan = std::nan("");
  for (const Subject& subject : subjects)
    expectFlags(subject,
                {{low, low},
                 {high, high},
                 {low, -high},
                 {-high, low},
                 {nan, nan},
                 {0, low},
                 {1e150, 1},
                 {1, 1e150},
                 {0x1p-600, 1},
                 {0.5, 0x1p-600},
                 {low, 0},
                 {1, low},
                 {low, 1},
                 {1, 1},
                 {0, high},
                 {high, 0}},
                FE_INEXACT);
}
// As there, on each axis, beside zeros and branch points.
TEST(CertifiedInverse, LanesOnAnAxisRaiseInexactOnly) {
  const double high = std::nextafter(0x1p60, 0), nan = std::nan("");
  for (const Subject& subject : subjects)
    for (const bool aIsZero : {false, true})
      for (const double special : {nan, 1e300, HUGE_VAL, 0.0, 0.25, -1.0}) {
        if (special == -1 && !aIsZero && subject.element == element<Function::atan>) continue;  // a pole
        std::vector<Complex64> z;
        for (const double x : {0.5, 0x1p-100, -high, special, 2.0, std::nextafter(1, 0), std::nextafter(1, 2)})
          z.push_back(aIsZero ? pointOf(subject, -0.0, x) : pointOf(subject, x, 0));
        expectFlags(subject, z, FE_INEXACT);
      }
}

}  // namespace
}  // namespace qorvane::test
