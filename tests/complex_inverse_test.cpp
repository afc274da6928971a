// The complex logarithm, powers and inverse functions: special values with their flags, symmetries
// at the cuts, and what the power is made of.
#include <mpc.h>

#include <random>

#include "complex/inverse.h"
#include "complex/ln.h"
#include "tests/complex_rows.h"

namespace qorvane::test {
namespace {

constexpr double pi = M_PI, largest = 0x1.fffffffffffffp1023;

TEST(ComplexLog10, SpecialValues) {
  constexpr double turn = 0x1.5d47c4cb2fba1p+0;  // pi log10 e
  expectRows(nuvsLog10_64fc_A53, {
                                     {0.0, 0.0, -inf, 0.0, FE_DIVBYZERO},
                                     {0.0, -0.0, -inf, -0.0, FE_DIVBYZERO},
                                     {-0.0, 0.0, -inf, turn, FE_DIVBYZERO},
                                     {-0.0, -0.0, -inf, -turn, FE_DIVBYZERO},
                                     {1, 0.0, 0.0, 0.0},
                                     {-1, -0.0, 0.0, -turn},
                                     {-1, 0.0, 0.0, turn},
                                     {0.0, -100, 2, -turn / 2},
                                     {largest, -0.0, 0x1.34413509f79ffp+8, -0.0},
                                     {tiny, 0.0, -0x1.434e6420f4374p+8, 0.0},
                                     {1e300, 5e-324, 300, 0.0, FE_UNDERFLOW},
                                     {-inf, -inf, inf, -0.75 * turn},
                                     {inf, inf, inf, turn / 4},
                                     {1, inf, inf, turn / 2},
                                     {-0.0, -inf, inf, -turn / 2},
                                     {-inf, -1, inf, -turn},
                                     {inf, -1, inf, -0.0},
                                     {nan, inf, inf, nan},
                                     {-inf, nan, inf, nan},
                                     {nan, 1, nan, nan},
                                     {0.0, nan, nan, nan},
                                     {nan, nan, nan, nan},
                                 });
}

TEST(ComplexAsinh, SpecialValues) {
  expectRows(nuvsAsinh_64fc_A53, {
                                     {0.0, -0.0, 0.0, -0.0},
                                     {-0.0, 0.0, -0.0, 0.0},
                                     {tiny, tiny, tiny, tiny, FE_UNDERFLOW},
                                     {-3, -0.0, -0x1.d185b507edc0ep+0, -0.0},
                                     {-0.0, 0.5, -0.0, 0x1.0c152382d7366p-1},
                                     {0.0, 1, 0.0, pi / 2},
                                     {-0.0, 1, -0.0, pi / 2},
                                     {0.0, 2, 0x1.5124271980435p+0, pi / 2},
                                     {-0.0, -2, -0x1.5124271980435p+0, -pi / 2},
                                     {-0.0, inf, -inf, pi / 2},
                                     {-1, -inf, -inf, -pi / 2},
                                     {inf, -1, inf, -0.0},
                                     {-inf, -0.0, -inf, -0.0},
                                     {-inf, inf, -inf, pi / 4},
                                     {-inf, nan, -inf, nan},
                                     {inf, nan, inf, nan},
                                     {nan, 0.0, nan, 0.0},
                                     {nan, -0.0, nan, -0.0},
                                     {nan, -inf, inf, nan},
                                     {nan, 1, nan, nan},
                                     {0.0, nan, nan, nan},
                                     {1, nan, nan, nan},
                                     {nan, nan, nan, nan},
                                     {largest, largest, 0x1.636945819d7c5p+9, pi / 4},
                                 });
}

TEST(ComplexAcos, SpecialValues) {
  expectRows(nuvsAcos_64fc_A53, {
                                    {0.0, 0.0, pi / 2, -0.0},
                                    {-0.0, -0.0, pi / 2, 0.0},
                                    {0.0, 0.5, pi / 2, -0x1.ecc2caec5160ap-2},
                                    {-0.0, tiny, pi / 2, -tiny, FE_UNDERFLOW},
                                    {0.5, -0.0, 0x1.0c152382d7366p+0, 0.0},
                                    {-0.5, 0.0, 0x1.0c152382d7366p+1, -0.0},
                                    {1, 0.0, 0.0, -0.0},
                                    {-1, -0.0, pi, 0.0},
                                    {2, 0.0, 0.0, -0x1.5124271980435p+0},
                                    {-2, -0.0, pi, 0x1.5124271980435p+0},
                                    {0.0, -inf, pi / 2, inf},
                                    {1, inf, pi / 2, -inf},
                                    {-inf, 1, pi, -inf},
                                    {inf, -1, 0.0, inf},
                                    {-inf, inf, 3 * pi / 4, -inf},
                                    {inf, inf, pi / 4, -inf},
                                    {0.0, nan, pi / 2, nan},
                                    {-0.0, nan, pi / 2, nan},
                                    {1, nan, nan, nan},
                                    {nan, 0.0, nan, nan},
                                    {nan, 1, nan, nan},
                                    {nan, -inf, nan, inf},
                                    {nan, nan, nan, nan},
                                });
}

TEST(ComplexAcosh, SpecialValues) {
  expectRows(nuvsAcosh_64fc_A53, {
                                     {0.0, 0.0, 0.0, pi / 2},
                                     {-0.0, -0.0, 0.0, -pi / 2},
                                     {0.0, -0.5, 0x1.ecc2caec5160ap-2, -pi / 2},
                                     {0.5, -0.0, 0.0, -0x1.0c152382d7366p+0},
                                     {1, -0.0, 0.0, -0.0},
                                     {2, -0.0, 0x1.5124271980435p+0, -0.0},
                                     {-2, 0.0, 0x1.5124271980435p+0, pi},
                                     {-1, -0.0, 0.0, -pi},
                                     {0.0, inf, inf, pi / 2},
                                     {-1, -inf, inf, -pi / 2},
                                     {-inf, 1, inf, pi},
                                     {inf, -1, inf, -0.0},
                                     {-inf, inf, inf, 3 * pi / 4},
                                     {inf, -inf, inf, -pi / 4},
                                     {-inf, nan, inf, nan},
                                     {nan, inf, inf, nan},
                                     {nan, 1, nan, nan},
                                     {1, nan, nan, nan},
                                     {0.0, nan, nan, nan},
                                     {nan, nan, nan, nan},
                                 });
}

TEST(ComplexAtan, SpecialValues) {
  expectRows(nuvsAtan_64fc_A53, {
                                    {0.0, -0.0, 0.0, -0.0},
                                    {-0.0, 0.5, -0.0, 0x1.193ea7aad030bp-1},
                                    {0.5, 0.0, 0x1.dac670561bb4fp-2, 0.0},
                                    {-inf, -0.0, -pi / 2, -0.0},
                                    {0.0, 1, 0.0, inf, FE_DIVBYZERO},
                                    {-0.0, -1, -0.0, -inf, FE_DIVBYZERO},
                                    {0.0, 2, pi / 2, 0x1.193ea7aad030bp-1},
                                    {-0.0, -2, -pi / 2, -0x1.193ea7aad030bp-1},
                                    {0.0, 1e300, pi / 2, 1e-300},
                                    {tiny, tiny, tiny, tiny, FE_UNDERFLOW},
                                    {1, inf, pi / 2, 0.0},
                                    {-inf, -inf, -pi / 2, -0.0},
                                    {-inf, 3, -pi / 2, 0.0},
                                    {nan, inf, nan, 0.0},
                                    {inf, nan, pi / 2, -0.0},
                                    {nan, 0.0, nan, 0.0},
                                    {nan, 1, nan, nan},
                                    {1, nan, nan, nan},
                                    {0.0, nan, nan, nan},
                                    {nan, nan, nan, nan},
                                });
}

TEST(ComplexAsin, IsAsinhTurned) {
  expectRows(nuvsAsin_64fc_A53, {
                                    {2, 0.0, pi / 2, 0x1.5124271980435p+0},
                                    {2, -0.0, pi / 2, -0x1.5124271980435p+0},
                                    {-2, 0.0, -pi / 2, 0x1.5124271980435p+0},
                                    {-0.5, -0.0, -0x1.0c152382d7366p-1, -0.0},
                                    {-0.0, -3, -0.0, -0x1.d185b507edc0ep+0},
                                    {nan, inf, nan, inf},
                                    {inf, nan, nan, -inf},
                                });
}

TEST(ComplexPow, SpecialValuesComeFromItsSteps) {
  const struct {
    Complex64 a, b, result;
  } rows[] = {
      {{0.0, 0.0}, {0.0, 0.0}, {nan, nan}}, {{0.0, 0.0}, {2, 0.0}, {0.0, 0.0}}, {{3, -4}, {0.0, 0.0}, {1, 0.0}},
      {{nan, 1}, {2, 0.0}, {nan, nan}},     {{2, 1}, {2, nan}, {nan, nan}},
  };
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (const auto& row : rows) {
      Complex64 power, powerx;
      EXPECT_EQ(nuvsPow_64fc_A53(&row.a, &row.b, &power, 1), nuvStatusOk);
      EXPECT_EQ(nuvsPowx_64fc_A53(&row.a, row.b, &powerx, 1), nuvStatusOk);
      EXPECT_TRUE(same(power.re, row.result.re)) << power.re << " for " << row.a.re;
      EXPECT_TRUE(same(std::fabs(power.im), row.result.im)) << power.im << " for " << row.a.re;
      EXPECT_TRUE(same(powerx.re, power.re) && same(powerx.im, power.im));
    }
  }
}

double errorOf(double result, mpfr_ptr value) {
  mpfr_t difference;
  mpfr_init2(difference, 200);
  mpfr_set_d(difference, result, MPFR_RNDN);
  mpfr_sub(difference, difference, value, MPFR_RNDN);
  mpfr_mul_2si(difference, difference, 53 - mpfr_get_exp(value), MPFR_RNDN);
  const double error = std::fabs(mpfr_get_d(difference, MPFR_RNDN));
  mpfr_clear(difference);
  return error;
}

// The exponential of b times the logarithm, both rounded to double precision: half a unit each part.
TEST(ComplexPow, RoundsTheExponentialOfTheRoundedProductWell) {
  std::mt19937_64 random(1);
  std::uniform_real_distribution<double> part(-20, 20);
  mpc_t value;
  mpc_init2(value, 200);
  for (int i = 0; i < 20000; ++i) {
    const Complex64 a{part(random), part(random)}, b{part(random), part(random)}, l = complexLn(a);
    Complex64 power;
    nuvsPow_64fc_A53(&a, &b, &power, 1);
    const double reRe = b.re * l.re, imIm = b.im * l.im, reIm = b.re * l.im, imRe = b.im * l.re;
    mpc_set_d_d(value, reRe - imIm, reIm + imRe, MPC_RNDNN);
    mpc_exp(value, value, MPC_RNDNN);
    ASSERT_LE(errorOf(power.re, mpc_realref(value)), 0.51) << a.re << " " << a.im << " ^ " << b.re << " " << b.im;
    ASSERT_LE(errorOf(power.im, mpc_imagref(value)), 0.51) << a.re << " " << a.im << " ^ " << b.re << " " << b.im;
  }
  mpc_clear(value);
}

// A number and its neighbours across a cut and an axis get the same bits but for signs.
TEST(ComplexInverse, ResultsAreSymmetric) {
  std::mt19937_64 random(1);
  for (int i = 0; i < 20000; ++i) {
    const auto part = [&] {
      return std::ldexp(1 + static_cast<double>(random() >> 12) * 0x1p-52, static_cast<int>(random() % 40) - 20);
    };
    const Complex64 z{part(), part()};
    const Complex64 asinh = complexAsinh(z), acos = complexAcos(z), atanh = complexAtanh(z), acosh = complexAcosh(z);
    EXPECT_TRUE(acosh.re == -acos.im && acosh.im == acos.re);
    for (const Complex64 sign : {Complex64{1, -1}, {-1, 1}, {-1, -1}}) {
      const Complex64 turned{sign.re * z.re, sign.im * z.im};
      const Complex64 a = complexAsinh(turned), t = complexAtanh(turned), c = complexAcos(turned);
      EXPECT_TRUE(a.re == sign.re * asinh.re && a.im == sign.im * asinh.im);
      EXPECT_TRUE(t.im == sign.im * atanh.im && (sign.re < 0 || t.re == atanh.re)) << z.re << " " << z.im;
      EXPECT_TRUE(c.im == sign.im * acos.im && (sign.re < 0 || c.re == acos.re));
    }
  }
}

}  // namespace
}  // namespace qorvane::test
