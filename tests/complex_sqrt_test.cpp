// The complex square root: special values, the boundaries between its ways, and what NaNs raise.
#include <cfenv>
#include <cmath>
#include <complex>
#include <iterator>
#include <random>

#include "tests/test_support.h"

namespace qorvane::test {
namespace {

constexpr double inf = HUGE_VAL, nan = NAN;

bool same(double a, double b) { return bits(a) == bits(b) || (a != a && b != b); }

// Zeros, infinities, NaNs and exact roots, with all signs: what C's csqrt gives.
TEST(ComplexSqrt, SpecialValuesAreThoseOfC) {
  const double values[] = {0.0, 1.0, 4.0, 0x1p-1074, 0x1p-1022, 0x1p1022, inf, nan};
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (const double x : values)
      for (const double y : values)
        for (const double signX : {1.0, -1.0})
          for (const double signY : {1.0, -1.0}) {
            const Complex64 z = {std::copysign(x, signX), std::copysign(y, signY)};
            if (z.re != 0 && z.im != 0 && std::isfinite(x) && std::isfinite(y)) continue;
            Complex64 root;
            EXPECT_EQ(nuvsSqrt_64fc_A53(&z, &root, 1), nuvStatusOk);
            const std::complex<double> expected = std::sqrt(std::complex<double>(z.re, z.im));
            // The sign of an infinite part beside a NaN is nobody's.
            const bool sameIm =
                y != y ? same(std::fabs(root.im), std::fabs(expected.imag())) : same(root.im, expected.imag());
            EXPECT_TRUE(same(root.re, expected.real()) && (sameIm || x != x))
                << "level " << level << ": sqrt(" << z.re << ", " << z.im << ") = (" << root.re << ", " << root.im
                << ")";
          }
  }
}

// Roots whose parts are known: squares of short numbers, on every way.
TEST(ComplexSqrt, SquaresOfShortNumbersAreExact) {
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (const double scale : {0x1p0, 0x1p-500, 0x1p505, 0x1p-300, 0x1p200, 0x1p-530})
      for (const double re : {3.0, 5.0, 1025.0, 0x1p-20})
        for (const double im : {1.0, -7.0, 0x1p-25, 4097.0, -0x1p26}) {
          const Complex64 root = {re * scale, im * scale};
          const Complex64 z = {(re * re - im * im) * scale * scale, 2 * re * im * scale * scale};
          if (z.im == 0 || std::fabs(z.im) < 0x1p-1022 || !std::isfinite(z.re) || !std::isfinite(z.im)) continue;
          Complex64 copies[11], results[11];
          for (Complex64& copy : copies) copy = z;
          nuvsSqrt_64fc_A53(copies, results, 11);
          for (const Complex64& result : results)
            EXPECT_TRUE(result.re == root.re && result.im == root.im)
                << "level " << level << ": sqrt(" << z.re << ", " << z.im << ") = (" << result.re << ", " << result.im
                << ")";
        }
  }
}

// From level 2 on NaNs are made quiet on their bits and raise nothing; x's goes before y's.
TEST(ComplexSqrt, NaNs) {
  for (int level : supportedLevels()) {
    AtLevel at(level);
    const double signalling = number(0x7ff0000000000123), other = number(0xfff8000000000456);
    const Complex64 z[] = {{signalling, other}, {signalling, 2.0}, {1.0, signalling}, {-1.0, other}};
    const uint64_t re[] = {0x7ff8000000000123, 0x7ff8000000000123, 0x7ff8000000000123, 0xfff8000000000456};
    const uint64_t im[] = {0xfff8000000000123, 0x7ff8000000000123, 0x7ff8000000000123, 0xfff8000000000456};
    for (int i = 0; i < 4; ++i) {
      Complex64 root;
      std::feclearexcept(FE_ALL_EXCEPT);
      nuvsSqrt_64fc_A53(&z[i], &root, 1);
      EXPECT_EQ(bits(root.re), re[i]) << "level " << level << ", " << i;
      EXPECT_EQ(bits(root.im), im[i]) << "level " << level << ", " << i;
      EXPECT_EQ(std::fetestexcept(FE_INVALID), level == 1 && i == 2 ? FE_INVALID : 0) << "level " << level << ", " << i;
    }
  }
}

// Whole blocks on an axis, and blocks with elements that go by themselves, have the bits of single elements; on an
// axis the flags, too.
TEST(ComplexSqrt, BlocksHaveTheBitsOfSingleElements) {
  std::mt19937_64 random(1);
  const double parts[] = {0.0,
                          1.0,
                          2.0,
                          4.0,
                          0x1p-1074,
                          0x1.8p-1030,
                          0x1p-1021,
                          1e9,
                          inf,
                          0x1p-459,
                          0x1p-460,
                          0x1p511,
                          number(0x7ff0000000000123),
                          0x1.fffffffffffffp1023};
  const auto part = [&] {
    const double value = random() % 4 != 0 ? std::exp2(static_cast<double>(random() % 80) - 40) * 1.1
                                           : parts[random() % std::size(parts)];
    return (random() & 1) != 0 ? value : -value;
  };
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (int round = 0; round < 6000; ++round) {
      Complex64 z[24], results[24];
      const int kind = round % 4;  // real, imaginary, with some of these, in one block
      for (int i = 0; i < 24; ++i) {
        z[i] = {part(), part()};
        const bool isOnAxis = kind < 2 || (random() % 8 == 0 && (round % 3 != 0 || i / 8 == 1));
        if (isOnAxis) ((kind & 1) != 0 ? z[i].re : z[i].im) = (random() & 1) != 0 ? 0.0 : -0.0;
      }
      std::feclearexcept(FE_ALL_EXCEPT);
      nuvsSqrt_64fc_A53(z, results, 24);
      const int flags = std::fetestexcept(FE_ALL_EXCEPT);
      std::feclearexcept(FE_ALL_EXCEPT);
      for (int i = 0; i < 24; ++i) {
        Complex64 root;
        nuvsSqrt_64fc_A53(&z[i], &root, 1);
        EXPECT_TRUE(same(results[i].re, root.re) && same(results[i].im, root.im))
            << "level " << level << ": sqrt(" << z[i].re << ", " << z[i].im << "), place " << i;
      }
      const int counted = kind < 2 ? FE_ALL_EXCEPT : FE_ALL_EXCEPT & ~FE_INEXACT;
      EXPECT_EQ(flags & counted, std::fetestexcept(counted)) << "level " << level << ", round " << round;
    }
  }
}

}  // namespace
}  // namespace qorvane::test
