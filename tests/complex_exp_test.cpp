// The complex exponential, hyperbolic and trigonometric functions: special values, the flags that go
// with them, and the boundaries between their paths.
#include <cfenv>
#include <cmath>

#include "complex/certified/exponential.h"
#include "complex/exp.h"
#include "tests/certified_support.h"
#include "tests/complex_rows.h"

namespace qorvane::test {
namespace {

TEST(ComplexExp, SpecialValues) {
  expectRows(nuvsExp_64fc_A53, {
                                   {0.0, 0.0, 1, 0.0},
                                   {-0.0, -0.0, 1, -0.0},
                                   {inf, 0.0, inf, 0.0},
                                   {inf, -0.0, inf, -0.0},
                                   {-inf, -0.0, 0.0, -0.0},
                                   {nan, -0.0, nan, -0.0},
                                   {1000, -0.0, inf, -0.0, FE_OVERFLOW},
                                   {-1000, 0.0, 0.0, 0.0, FE_UNDERFLOW},
                                   {1, inf, nan, nan, FE_INVALID},
                                   {1, nan, nan, nan},
                                   {0.0, -inf, nan, nan, FE_INVALID},
                                   {0.0, nan, nan, nan},
                                   {nan, inf, nan, nan},
                                   {nan, nan, nan, nan},
                                   {nan, 1, nan, nan},
                                   {nan, tiny, nan, nan},
                                   {-inf, inf, 0.0, 0.0},
                                   {-inf, -inf, 0.0, -0.0},
                                   {-inf, -nan, 0.0, 0.0},
                                   {inf, inf, inf, nan, FE_INVALID},
                                   {inf, nan, inf, nan},
                                   {inf, 1, inf, inf},
                                   {inf, 2, -inf, inf},
                                   {inf, 4, -inf, -inf},
                                   {inf, -tiny, inf, -inf},
                                   {-inf, 2, -0.0, 0.0},
                                   {-inf, 4, -0.0, -0.0},
                                   {-inf, -tiny, 0.0, -0.0},
                                   {3000, 2, -inf, inf, FE_OVERFLOW},
                                   {3000, -tiny, inf, -inf, FE_OVERFLOW},
                                   {-3000, 4, -0.0, -0.0, FE_UNDERFLOW},
                                   {1e300, 1e300, -inf, -inf, FE_OVERFLOW},
                                   {2047.9, 2, -inf, inf, FE_OVERFLOW},
                                   {0.0, 1e300, -0x1.2699022adc4c1p-1, -0x1.a2c16b010e385p-1},
                               });
}

TEST(ComplexSinh, SpecialValues) {
  expectRows(nuvsSinh_64fc_A53, {
                                    {0.0, -0.0, 0.0, -0.0},
                                    {-0.0, 0.0, -0.0, 0.0},
                                    {-inf, -0.0, -inf, -0.0},
                                    {nan, -0.0, nan, -0.0},
                                    {-1000, 0.0, -inf, 0.0, FE_OVERFLOW},
                                    {tiny, 0.0, tiny, 0.0, FE_UNDERFLOW},
                                    {-0.0, 2, 0.0, 0x1.d18f6ead1b446p-1},
                                    {0.0, -tiny, 0.0, -tiny, FE_UNDERFLOW},
                                    {inf, 0.5, inf, inf},
                                    {-inf, -0.5, -inf, -inf},
                                    {-inf, tiny, -inf, inf},
                                    {inf, 2, -inf, inf},
                                    {-inf, 4, inf, -inf},
                                    {nan, 1, nan, nan},
                                    {1, inf, nan, nan, FE_INVALID},
                                    {1, nan, nan, nan},
                                    {0.0, inf, 0.0, nan, FE_INVALID},
                                    {-0.0, nan, -0.0, nan},
                                    {-inf, inf, -inf, nan, FE_INVALID},
                                    {inf, nan, inf, nan},
                                    {nan, inf, nan, nan, FE_INVALID},
                                    {nan, nan, nan, nan},
                                    {3000, 2, -inf, inf, FE_OVERFLOW},
                                    {-3000, 2, inf, inf, FE_OVERFLOW},
                                    {-3000, -tiny, -inf, -inf, FE_OVERFLOW},
                                });
}

TEST(ComplexCosh, SpecialValues) {
  expectRows(nuvsCosh_64fc_A53, {
                                    {0.0, -0.0, 1, -0.0},
                                    {-0.0, -0.0, 1, 0.0},
                                    {-1000, 0.0, inf, -0.0, FE_OVERFLOW},
                                    {-inf, -0.0, inf, 0.0},
                                    {nan, -0.0, nan, -0.0},
                                    {-nan, 0.0, nan, 0.0},
                                    {-0.0, 2, -0x1.aa22657537205p-2, -0.0},
                                    {0.0, -tiny, 1, -0.0},
                                    {-inf, 0.5, inf, -inf},
                                    {inf, -tiny, inf, -inf},
                                    {-inf, 2, -inf, -inf},
                                    {inf, 4, -inf, -inf},
                                    {nan, 1, nan, nan},
                                    {1, -inf, nan, nan, FE_INVALID},
                                    {1, nan, nan, nan},
                                    {0.0, inf, nan, 0.0, FE_INVALID},
                                    {-0.0, -inf, nan, 0.0, FE_INVALID},
                                    {-0.0, inf, nan, -0.0, FE_INVALID},
                                    {0.0, nan, nan, -0.0},
                                    {-0.0, nan, nan, 0.0},
                                    {-inf, inf, inf, nan, FE_INVALID},
                                    {-inf, nan, inf, nan},
                                    {nan, inf, nan, nan, FE_INVALID},
                                    {nan, nan, nan, nan},
                                    {-3000, 2, -inf, -inf, FE_OVERFLOW},
                                    {-3000, tiny, inf, -inf, FE_OVERFLOW},
                                });
}

TEST(ComplexTanh, SpecialValues) {
  expectRows(nuvsTanh_64fc_A53, {
                                    {-0.0, 0.0, -0.0, 0.0},
                                    {0.0, 2, 0.0, -0x1.17af62e0950f8p+1},
                                    {-2, -0.0, -0x1.ed9505e1bc3d4p-1, -0.0},
                                    {600, -0.0, 1, -0.0},
                                    {-inf, -0.0, -1, -0.0},
                                    {nan, -0.0, nan, -0.0},
                                    {1, inf, nan, nan, FE_INVALID},
                                    {0.0, -inf, nan, nan, FE_INVALID},
                                    {1, nan, nan, nan},
                                    {0.0, nan, nan, nan},
                                    {-inf, -0.5, -1, -0.0},
                                    {inf, -tiny, 1, -0.0},
                                    {inf, 2, 1, -0.0},
                                    {inf, 4, 1, 0.0},
                                    {-inf, -inf, -1, -0.0},
                                    {inf, nan, 1, 0.0},
                                    {-inf, -nan, -1, 0.0},
                                    {nan, 1, nan, nan},
                                    {nan, inf, nan, nan},
                                    {nan, nan, nan, nan},
                                    {600, 1, 1, 0.0, FE_UNDERFLOW},
                                    {-600, 2, -1, -0.0, FE_UNDERFLOW},
                                    {1e300, -tiny, 1, -0.0, FE_UNDERFLOW},
                                    {511.9, 1, 1, 0.0, FE_UNDERFLOW},
                                    {0.0, tiny, 0.0, tiny, FE_UNDERFLOW},
                                });
}

// sin z = -i sinh(iz), cos z = cosh(iz), tan z = -i tanh(iz), for all parts; a NaN keeps its sign in
// both turns.
TEST(ComplexSin, SinCosAndTanAreTurned) {
  const double parts[] = {0.0, -0.0, 1.5, -700.25, 3000, -1e300, tiny, inf, -inf, nan, -nan, 0x1p-40};
  const auto turned = [](double x) { return x != x ? x : -x; };
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (const double x : parts)
      for (const double y : parts) {
        const Complex64 turn = {turned(y), x};
        const Complex64 sine = evaluate(nuvsSin_64fc_A53, {x, y}), sinh = evaluate(nuvsSinh_64fc_A53, turn);
        const Complex64 tangent = evaluate(nuvsTan_64fc_A53, {x, y}), tanh = evaluate(nuvsTanh_64fc_A53, turn);
        const Complex64 cosine = evaluate(nuvsCos_64fc_A53, {x, y}), cosh = evaluate(nuvsCosh_64fc_A53, turn);
        EXPECT_TRUE(bits(sine.re) == bits(sinh.im) && bits(sine.im) == bits(turned(sinh.re))) << x << ", " << y;
        EXPECT_TRUE(bits(tangent.re) == bits(tanh.im) && bits(tangent.im) == bits(turned(tanh.re))) << x << ", " << y;
        EXPECT_TRUE(bits(cosine.re) == bits(cosh.re) && bits(cosine.im) == bits(cosh.im)) << x << ", " << y;
      }
  }
}

// A quiet NaN keeps its payload; a signalling one comes out quiet and raises invalid.
TEST(ComplexExp, NaNs) {
  const double quiet = number(0x7ff8000000000123), signalling = number(0x7ff0000000000123);
  const auto isQuiet = [](double x) { return (bits(x) & 0x7ff8000000000000) == 0x7ff8000000000000; };
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (ComplexUnary f : {nuvsExp_64fc_A53, nuvsSinh_64fc_A53, nuvsCosh_64fc_A53, nuvsTanh_64fc_A53}) {
      int flags;
      for (const Complex64 z : {Complex64{quiet, 1}, Complex64{1, quiet}}) {
        const Complex64 result = evaluate(f, z, &flags);
        EXPECT_TRUE(bits(result.re) == bits(quiet) && bits(result.im) == bits(quiet)) << z.re << ", " << z.im;
        EXPECT_EQ(flags & FE_INVALID, 0);
      }
      for (const double other : {1.0, nan}) {
        EXPECT_TRUE(isQuiet(evaluate(f, {signalling, other}, &flags).re)) << "beside " << other;
        EXPECT_EQ(flags & FE_INVALID, FE_INVALID);
        EXPECT_TRUE(isQuiet(evaluate(f, {other, signalling}, &flags).im)) << "beside " << other;
        EXPECT_EQ(flags & FE_INVALID, FE_INVALID);
      }
    }
  }
}

// Subnormal parts underflow, also where they are exact; the real part of a cosh doesn't.
TEST(ComplexExp, SubnormalPartsRaiseUnderflow) {
  struct Case {
    ComplexUnary f;
    Complex64 z;
    bool underflows;
  };
  const Case cases[] = {
      {nuvsExp_64fc_A53, {-720, 600}, true},
      {nuvsExp_64fc_A53, {-700, 601}, false},
      {nuvsExp_64fc_A53, {-708, 0.785}, false},                  // both just above 2^-1022
      {nuvsExp_64fc_A53, {-708.2, 0x1.199999a33d99ap+0}, true},  // the real part is subnormal in all 64 bits
      {nuvsSinh_64fc_A53, {0x1p-1040, 1}, true},
      {nuvsSinh_64fc_A53, {1, 0x1p-1040}, true},
      {nuvsCosh_64fc_A53, {1, 0x1p-1040}, true},
      {nuvsCosh_64fc_A53, {0x1p-1000, 0x1p-40}, true},
      {nuvsTanh_64fc_A53, {0x1p-1040, 1}, true},
      {nuvsTanh_64fc_A53, {1, 0x1p-1040}, true},
      {nuvsTanh_64fc_A53, {100, 1}, false},
      {nuvsTanh_64fc_A53, {1, 1}, false},
  };
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (const Case& c : cases) {
      int flags;
      evaluate(c.f, c.z, &flags);
      EXPECT_EQ((flags & FE_UNDERFLOW) != 0, c.underflows) << "level " << level << ": " << c.z.re << ", " << c.z.im;
    }
  }
}

// Where complexExp's range ends, and its forms change, beside special values.
double edgeOfExp(Random& random) {
  const double values[] = {0.0,  0x1p-201, 0x1p-200, 0x1p-81, 0x1p-80, 0x1p-1074, 512,
                           709,  709.78,   745.14,   746,     768,     1024,      2047.9,
                           2048, 1e5,      1e8,      1e300,   inf,     nan,       1.5707963267948966};
  const double value = values[random() % std::size(values)] * (random() % 4 == 0 ? double(random() % 50) : 1);
  return std::copysign(random() % 3 == 0 ? std::nextafter(value, (random() & 1) != 0 ? inf : 0) : value,
                       (random() & 1) != 0 ? 1.0 : -1.0);
}
// A part at least is from 512 up.
Complex64 leftByVectors(Random& random) {
  const double x = uniform(random, -20, 20),
               y = std::copysign(uniform(random, 512, random() % 2 == 0 ? 1e5 : 1e8), uniform(random, -1, 1));
  switch (random() % 10) {
    case 0: return {uniform(random, -512, 709), y};
    case 1: return {signedPower(random, -210, 11), y};
    case 2: return {0, y};
    case 3: return {x, signedPower(random, 9, 30)};
    case 4: return {x, std::round(uniform(random, 326, 6e7)) * 1.5707963267948966};
    case 5: return {uniform(random, 512, 800), x};
    case 6: return {uniform(random, -800, -512), signedPower(random, -90, 28)};
    case 7: return {signedPower(random, 9, 14), signedPower(random, -90, 28)};
    case 8: {
      const Complex64 z = {edgeOfExp(random), edgeOfExp(random)};
      return std::abs(z.re) < 512 && std::abs(z.im) < 512 ? Complex64{z.re, -512} : z;
    }
    default: return {x, y};
  }
}

TEST(ComplexExp, WhatVectorsLeaveHasTheExtendedBits) {
  const Certified exp = {"exp", nuvsExp_64fc_A53, complexExpExtended};
  Random random(7);
  std::vector<Complex64> z(60000);
  for (Complex64& element : z) element = leftByVectors(random);
  expectElements(exp, z);
  for (size_t length = 1; length < 20; ++length) expectElements(exp, {z.begin() + 10, z.begin() + 10 + length});
  expectFlags(exp, {{1, 1000}, {-511, 1e8 - 1}, {0, -600}, {0x1p-200, 700}, {0x1p-400, 700}}, FE_INEXACT);
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (const uint32_t mode : {0x2000u, 0x4000u, 0x6000u, 0x8040u}) {
      std::vector<Complex64> results(200), expected(200);
      _mm_setcsr(0x1f80 | mode);
      nuvsExp_64fc_A53(z.data(), results.data(), 200);
      for (size_t i = 0; i < 200; ++i) expected[i] = complexExpExtended(z[i]);
      _mm_setcsr(0x1f80);
      for (size_t i = 0; i < 200; ++i) EXPECT_TRUE(test::same(results[i], expected[i])) << "mode " << mode << ", " << i;
    }
  }
}

// With that share of the bound.
bool isCertainExponential(Complex64 z, double share) {
  const auto e = exponentialPair(z.re);
  const auto t = trigonometricPairs<true>(std::abs(z.im));
  return toBits(certainProduct(e, t.cos, 0.0, boundOfExponential * share).isCertain) != 0 &&
         toBits(certainProduct(e, t.sin, 0.0, boundOfExponential * share).isCertain) != 0 && toBits(t.isUnsure) == 0;
}

// One element by itself: many that are barely certain, or that a bound too small would take wrongly.
TEST(ComplexExp, OneElementHasTheExtendedBitsAndFlags) {
  Random random(8);
  std::vector<Complex64> z;
  int unsure = 0;
  for (int i = 0; i < 400000; ++i) {
    const Complex64 element = {uniform(random, -20, 20), uniform(random, -20, 20)};
    unsure += !isCertainExponential(element, 1);
    if (!isCertainExponential(element, 1.25)) z.push_back(element);
  }
  EXPECT_NEAR(unsure, 3000, 250);
  for (int i = 0; i < 60000; ++i)
    z.push_back(i % 2 == 0 ? leftByVectors(random) : Complex64{edgeOfExp(random), uniform(random, -20, 20)});
  for (const Complex64& element : z) {
    std::feclearexcept(FE_ALL_EXCEPT);
    const Complex64 expected = complexExpExtended(element);
    const int flags = std::fetestexcept(FE_ALL_EXCEPT);
    std::feclearexcept(FE_ALL_EXCEPT);
    const Complex64 result = complexExp(element);
    EXPECT_TRUE(test::same(result, expected) && std::fetestexcept(FE_ALL_EXCEPT) == flags)
        << std::hexfloat << element.re << ", " << element.im << ": " << result.re << ", " << result.im << ", extended "
        << expected.re << ", " << expected.im;
  }
}

// Blocks of real numbers have a form of their own, whose bits are those of any block.
TEST(ComplexExp, RealBlocksHaveTheBitsOfOthers) {
  Random random(9);
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (int round = 0; round < 2000; ++round) {
      Complex64 z[8], results[8], mixed[8];
      for (Complex64& element : z)
        element = {uniform(random, -512, 512) * (random() % 8 != 0), (random() & 1) != 0 ? 0.0 : -0.0};
      if (round % 4 == 0) z[random() % 8].im = round % 8 == 0 ? tiny : 1.5;
      nuvsExp_64fc_A53(z, results, 8);
      for (int i = 0; i < 8; ++i) {
        Complex64 others[8] = {{1, 1}, {2, 3}, {1, 1}, {2, 3}, {1, 1}, {2, 3}, {1, 1}, z[i]};
        nuvsExp_64fc_A53(others, mixed, 8);
        EXPECT_TRUE(test::same(results[i], mixed[7]))
            << std::hexfloat << z[i].re << ", " << z[i].im << ", level " << level;
      }
    }
  }
}

// Elements that the vectors leave out, beside ones that they serve, at every place and in place.
TEST(ComplexExp, FlaggedElementsLeaveTheirNeighboursAlone) {
  const Complex64 rare[] = {{inf, 1}, {1, 1e300}, {nan, nan}, {512, 1}, {1, -512}, {-3000, 2}};
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (size_t length = 1; length < 20; ++length)
      for (size_t place = 0; place < length; ++place) {
        std::vector<Complex64> z(length), expected(length);
        for (size_t i = 0; i < length; ++i) {
          z[i] =
              i == place ? rare[(place + length) % std::size(rare)] : Complex64{0.37 * double(i) - 2, 1.7 * double(i)};
          expected[i] = evaluate(nuvsExp_64fc_A53, z[i]);
        }
        EXPECT_EQ(nuvsExp_64fc_A53(z.data(), z.data(), static_cast<int32_t>(length)), nuvStatusOk);
        for (size_t i = 0; i < length; ++i)
          EXPECT_TRUE(same(z[i].re, expected[i].re) && same(z[i].im, expected[i].im)) << length << ", " << place;
      }
  }
}

// The vectors' sine of a tiny y, which they scale: it stays exact, and so do zeros.
TEST(ComplexExp, TinyImaginaryParts) {
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (const double y : {-0.0, tiny, -3 * tiny, 0x1.fffffffffffffp-1023, -0x1.23456789abcdep-1000, 0x1p-200}) {
      Complex64 z = evaluate(nuvsExp_64fc_A53, {0.0, y});
      EXPECT_TRUE(z.re == 1 && bits(z.im) == bits(y)) << y;
      z = evaluate(nuvsExp_64fc_A53, {6.931471805599453, y});  // 1024 less 2^-42
      EXPECT_TRUE(std::abs(z.im) <= std::abs(1024 * y) && std::abs(z.im) >= std::abs(1023.9 * y)) << y;
    }
  }
}

}  // namespace
}  // namespace qorvane::test
