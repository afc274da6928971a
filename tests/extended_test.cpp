// The kernels in extended precision, by themselves, against MPFR: the errors that their sources
// state, on which the error bounds of the complex functions rest.
#include <mpfr.h>

#include <cmath>
#include <random>

#include "complex/extended/ext_exp.h"
#include "complex/extended/ext_sin_cos.h"
#include "complex/extended/ext_sinh_cosh.h"
#include "complex/extended/ext_tan.h"
#include "complex/extended/ext_tanh.h"
#include "tests/test_support.h"
#include "tools/hard_trig_arguments.h"

namespace qorvane::test {
namespace {

using Kernel = Extended80(Float64);
using Exact = int(mpfr_ptr, mpfr_srcptr, mpfr_rnd_t);

// In units of the last of 64 bits of the exact value.
double errorOf(Extended80 result, Exact exact, Extended80 x) {
  mpfr_t value, difference;
  mpfr_init2(value, 160);
  mpfr_init2(difference, 160);
  mpfr_set_ld(value, x, MPFR_RNDN);
  exact(value, value, MPFR_RNDN);
  mpfr_set_ld(difference, result, MPFR_RNDN);
  mpfr_sub(difference, difference, value, MPFR_RNDN);
  mpfr_mul_2si(difference, difference, 64 - mpfr_get_exp(value), MPFR_RNDN);
  const double error = mpfr_get_d(difference, MPFR_RNDN);
  mpfr_clears(value, difference, nullptr);
  return std::abs(error);
}

struct Worst {
  double error = 0, x = 0;
  void take(double e, double at) {
    if (!(e <= error)) error = e, x = at;
  }
};

// |x| in [from, to), both signs: `perBinade` of every binade, its ends among them.
Worst worstIn(Kernel kernel, Exact exact, double from, double to, int perBinade, uint64_t seed) {
  std::mt19937_64 random(seed);
  Worst worst;
  for (double low = from, high; low < to; low = high) {
    high = std::min(to, std::ldexp(1.0, std::ilogb(low) + 1));
    const uint64_t first = bits(low), count = bits(high) - first;
    for (int i = 0; i < perBinade; ++i) {
      const uint64_t step = i < 2 ? static_cast<uint64_t>(i) * (count - 1) : random() % count;
      const double x = number((first + step) | (random() & 1) << 63);
      worst.take(errorOf(kernel(x), exact, x), x);
    }
  }
  return worst;
}

Extended80 exp80(Float64 x) { return extExp(x); }
Extended80 sinh80(Float64 x) { return extSinh(x); }
Extended80 cosh80(Float64 x) { return extCosh(x); }
Extended80 sinhOfBoth(Float64 x) { return extSinhCosh(x).sinh; }
Extended80 coshOfBoth(Float64 x) { return extSinhCosh(x).cosh; }
Extended80 sin80(Float64 x) { return extSin(x); }
Extended80 cos80(Float64 x) { return extCos(x); }
Extended80 sinOfBoth(Float64 x) { return extSinCos(x).sin; }
Extended80 cosOfBoth(Float64 x) { return extSinCos(x).cos; }
Extended80 tan80(Float64 x) { return extTan(x); }
Extended80 tanh80(Float64 x) { return extTanh(x); }

TEST(Extended, ErrorsStayWithinTheirBounds) {
  struct Row {
    const char* name;
    Kernel* kernel;
    Exact* exact;
    double from, to, bound;
  };
  const Row rows[] = {
      {"exp", exp80, mpfr_exp, 0x1p-80, 0x1p-18, 0.501},
      {"exp", exp80, mpfr_exp, 0x1p-18, 0x1p-11, 1.0},
      {"exp", exp80, mpfr_exp, 0x1p-11, 11355, 0.501},
      {"sinh", sinh80, mpfr_sinh, 0x1p-80, 11356.5, 0.533},
      {"sinh of both", sinhOfBoth, mpfr_sinh, 0x1p-80, 11356.5, 0.533},
      {"cosh", cosh80, mpfr_cosh, 0x1p-80, 0.5, 1.0},
      {"cosh", cosh80, mpfr_cosh, 0.5, 11356.5, 0.503},
      {"cosh of both", coshOfBoth, mpfr_cosh, 0x1p-80, 0.5, 1.0},
      {"cosh of both", coshOfBoth, mpfr_cosh, 0.5, 11356.5, 0.503},
      {"sin", sin80, mpfr_sin, 0x1p-80, HUGE_VAL, 0.523},
      {"sin of both", sinOfBoth, mpfr_sin, 0x1p-80, HUGE_VAL, 0.523},
      {"cos", cos80, mpfr_cos, 0x1p-80, HUGE_VAL, 0.523},
      {"cos of both", cosOfBoth, mpfr_cos, 0x1p-80, HUGE_VAL, 0.523},
      {"tan", tan80, mpfr_tan, 0x1p-80, HUGE_VAL, 0.62},
      {"tanh", tanh80, mpfr_tanh, 0x1p-80, 0x1p5, 0.546},
  };
  const char* const count = getenv("QORVANE_EXTENDED_COUNT");
  for (const Row& row : rows) {
    const Worst worst = worstIn(row.kernel, row.exact, row.from, std::min(row.to, 0x1.fffffffffffffp1023),
                                count ? atoi(count) : 300, 1);
    EXPECT_LE(worst.error, row.bound) << row.name << " at " << std::hexfloat << worst.x;
    if (count) printf("%s %g %g: %.4f at %.17g\n", row.name, row.from, row.to, worst.error, worst.x);
  }
}

// Next to the multiples of pi/4 of every size, where the reduction cancels most and the kernels change
// from one polynomial to the other.
TEST(Extended, TrigonometricKernelsAreGoodNextToMultiplesOfPi) {
  std::vector<double> arguments = tables::hardTrigArguments();
  for (size_t i = 0, n = arguments.size(); i < n; ++i) arguments.push_back(std::ldexp(arguments[i], -1));
  for (int k = 1; k < 2000; ++k)
    for (const double x : {k * 0.78539816339744831, (k << 17) * 0.78539816339744831})
      arguments.insert(arguments.end(), {x, std::nextafter(x, 0), std::nextafter(x, 1e300)});
  Worst sine, cosine, tangent;
  for (const double x : arguments) {
    if (!(x >= 0x1p-5 && x < 0x1p1023)) continue;
    sine.take(std::max(errorOf(sin80(x), mpfr_sin, x), errorOf(sinOfBoth(x), mpfr_sin, x)), x);
    cosine.take(std::max(errorOf(cos80(x), mpfr_cos, x), errorOf(cosOfBoth(x), mpfr_cos, x)), x);
    tangent.take(errorOf(tan80(x), mpfr_tan, x), x);
  }
  EXPECT_LE(sine.error, 0.523) << std::hexfloat << sine.x;
  EXPECT_LE(cosine.error, 0.523) << std::hexfloat << cosine.x;
  EXPECT_LE(tangent.error, 0.62) << std::hexfloat << tangent.x;
}

// Powers have angles beyond the numbers of double precision: every bit of 4/pi is needed by some of them.
TEST(Extended, TrigonometricKernelsReduceNumbersOfEveryExponent) {
  std::mt19937_64 random(3);
  for (int exponent = 30; exponent < 16384; exponent += 11) {
    const Extended80 x = std::ldexp(static_cast<Extended80>(random() | uint64_t{1} << 63), exponent - 63);
    const auto both = extSinCos(x);
    EXPECT_LE(errorOf(both.sin, mpfr_sin, x), 0.523) << "2^" << exponent;
    EXPECT_LE(errorOf(both.cos, mpfr_cos, x), 0.523) << "2^" << exponent;
  }
}

}  // namespace
}  // namespace qorvane::test
