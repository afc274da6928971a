// The logarithms, the square root and the inverse functions in extended precision, by themselves,
// against MPFR: the errors that their sources state.
#include <gtest/gtest.h>
#include <mpfr.h>

#include <cfenv>
#include <cmath>
#include <cstdlib>
#include <random>

#include "complex/extended/ext_asin.h"
#include "complex/extended/ext_asinh.h"
#include "complex/extended/ext_atan2.h"
#include "complex/extended/ext_atanh.h"
#include "complex/extended/ext_log1p.h"

namespace qorvane::test {
namespace {

using Exact = int(mpfr_ptr, mpfr_srcptr, mpfr_rnd_t);

// In units of the last of 64 bits of the exact value, which `value` is.
double errorOf(Extended80 result, mpfr_ptr value) {
  if (mpfr_zero_p(value)) return result == 0 ? 0 : HUGE_VAL;
  mpfr_t difference;
  mpfr_init2(difference, 200);
  mpfr_set_ld(difference, result, MPFR_RNDN);
  mpfr_sub(difference, difference, value, MPFR_RNDN);
  mpfr_mul_2si(difference, difference, 64 - mpfr_get_exp(value), MPFR_RNDN);
  const double error = mpfr_get_d(difference, MPFR_RNDN);
  mpfr_clear(difference);
  return std::abs(error);
}

struct Number {
  mpfr_t value;
  explicit Number(Extended80 x) { mpfr_init2(value, 200), mpfr_set_ld(value, x, MPFR_RNDN); }
  Number(const Number&) = delete;
  Number& operator=(const Number&) = delete;
  ~Number() { mpfr_clear(value); }
};

struct Worst {
  double error = 0;
  Extended80 x = 0, y = 0;
  void take(double e, Extended80 atX, Extended80 atY = 0) {
    if (!(e <= error)) error = e, x = atX, y = atY;
  }
};

int perBinade() {
  const char* const count = std::getenv("QORVANE_EXTENDED_COUNT");
  return count ? std::atoi(count) : 40;
}

// A number of 64 bits, or of 53, or of few, from `low` to twice that.
Extended80 randomNumber(std::mt19937_64& random, Extended80 low) {
  const int shift = random() % 3 == 0 ? 11 : random() % 3 == 0 ? static_cast<int>(random() % 60) : 0;
  return std::ldexp(static_cast<Extended80>(random() >> shift << shift | uint64_t{1} << 63), -63) * low;
}

struct Row {
  const char* name;
  Extended80 (*kernel)(Extended80);
  Exact* exact;
  Extended80 from, to;
  bool bothSigns;
  double bound;
};

Extended80 log80(Extended80 x) { return extLog(x); }
Extended80 log1p80(Extended80 x) { return extLog1p(x); }
Extended80 log1pOfNegative(Extended80 x) { return extLog1p(-x); }
int log1pOfNegativeExact(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t mode) {
  return mpfr_neg(r, x, mode), mpfr_log1p(r, r, mode);
}
Extended80 logOrdinary(Extended80 x) { return logOfOrdinary(roundedArgument(x)); }
Extended80 log1pOrdinary(Extended80 x) { return log1pOfOrdinary(roundedArgument(x)); }
Extended80 sqrt80(Extended80 x) { return extSqrt(x); }
Extended80 sqrtOrdinary(Extended80 x) { return rootOfOrdinary(x); }
Extended80 asin80(Extended80 x) { return extAsin(Argument(x)); }
Extended80 acos80(Extended80 x) { return extAcos(Argument(x)); }
Extended80 atan80(Extended80 x) { return extAtan(Argument(x)); }
Extended80 atanh80(Extended80 x) { return extAtanh(Argument(x)); }
Extended80 asinh80(Extended80 x) { return extAsinh(static_cast<Float64>(x)); }
Extended80 acosh80(Extended80 x) { return extAcosh(static_cast<Float64>(x)); }

TEST(ExtendedInverse, ErrorsStayWithinTheirBounds) {
  const Extended80 tiny = 0x1p-16000L, huge = 0x1p16000L;
  const Row rows[] = {
      {"sqrt", sqrt80, mpfr_sqrt, 0x1p-16382L, 0x1p16383L, false, 0.53},
      {"sqrt", sqrtOrdinary, mpfr_sqrt, 0x1p-1020L, 0x1p1020L, false, 0.53},
      {"log", log80, mpfr_log, tiny, 0.5, false, 1.6},
      {"log", log80, mpfr_log, 0.5, 0.96875, false, 17},
      {"log", log80, mpfr_log, 0.96875, 1.0625, false, 0.52},
      {"log", log80, mpfr_log, 1.0625, huge, false, 1.6},
      {"log", logOrdinary, mpfr_log, 1.0625, 0x1p1000L, false, 1.6},
      {"log1p", log1p80, mpfr_log1p, 0x1p-16000L, 0x1p-4, true, 0.53},
      {"log1p", log1p80, mpfr_log1p, 0x1p-4, huge, false, 1.6},
      {"log1p of negative numbers", log1pOfNegative, log1pOfNegativeExact, 0x1p-4, 0.5, false, 10},
      {"log1p", log1pOrdinary, mpfr_log1p, 0x1p-16, 0x1p1000, false, 1.6},
      {"atan", atan80, mpfr_atan, tiny, 0x1p-7, true, 0.51},
      {"atan", atan80, mpfr_atan, 0x1p-7, huge, true, 0.9},
      {"atanh", atanh80, mpfr_atanh, tiny, 0.25, true, 0.54},
      {"atanh", atanh80, mpfr_atanh, 0.25, 1, true, 1.6},
      {"asin", asin80, mpfr_asin, tiny, 0.5, true, 0.64},
      {"asin", asin80, mpfr_asin, 0.5, 1, true, 0.56},
      {"acos", acos80, mpfr_acos, tiny, 1, true, 0.56},
      {"asinh", asinh80, mpfr_asinh, 0x1p-1060L, 0.5, true, 0.56},
      {"asinh", asinh80, mpfr_asinh, 0.5, 0x1p1023L, true, 1.6},
      {"acosh", acosh80, mpfr_acosh, 1, 1.5, false, 0.56},
      {"acosh", acosh80, mpfr_acosh, 1.5, 0x1p1023L, false, 1.6},
  };
  for (const Row& row : rows) {
    std::mt19937_64 random(1);
    Worst worst;
    const int count = perBinade();
    // Every binade next to 1, every 13th farther away, every 97th beyond double precision.
    const auto step = [](int e) { return e < -1080 || e > 1080 ? 97 : e < -80 || e > 80 ? 13 : 1; };
    for (int e = std::ilogb(row.from); std::ldexp(1.0L, e) < row.to; e += step(e)) {
      const Extended80 low = std::ldexp(1.0L, e);
      for (int i = 0; i < 2 * count; ++i) {
        Extended80 x = i == 0   ? std::fmax(row.from, low)
                       : i == 1 ? std::nextafter(std::fmin(row.to, 2 * low), 0.0L)
                                : randomNumber(random, low);
        // In the neighbourhood of 1, too.
        if (i % 4 == 3 && (low == 1 || low == 0.5))
          x = 1 + (low == 1 ? 1 : -1) * std::ldexp(x, -static_cast<int>(random() % 62) - 1);
        if (row.kernel == asinh80 || row.kernel == acosh80) x = static_cast<Float64>(x);
        if (x < row.from || x >= row.to) continue;
        if (row.bothSigns && (random() & 1) != 0) x = -x;
        Number value(x);
        row.exact(value.value, value.value, MPFR_RNDN);
        worst.take(errorOf(row.kernel(x), value.value), x);
      }
    }
    EXPECT_LE(worst.error, row.bound) << row.name << " at " << std::hexfloat << worst.x;
    if (std::getenv("QORVANE_EXTENDED_COUNT"))
      printf("%s %Lg %Lg: %.4f at %.21Lg\n", row.name, row.from, row.to, worst.error, worst.x);
  }
}

// Angles of points in all octants: quotients of numbers with 64 bits, and with 53.
TEST(ExtendedInverse, AnglesStayWithinTheirBounds) {
  std::mt19937_64 random(1);
  Worst worst;
  for (int i = 0; i < 400 * perBinade(); ++i) {
    const int e = static_cast<int>(random() % 16) - 8, far = i % 8 == 0 ? static_cast<int>(random() % 4000) - 2000 : 0;
    Extended80 y = randomNumber(random, 1), x = randomNumber(random, std::ldexp(1.0L, i % 8 == 0 ? far : e));
    if (i % 2 == 0) y = static_cast<Float64>(y);
    if (i % 2 == 0 && far > -1000 && far < 1000) x = static_cast<Float64>(x);
    if ((random() & 1) != 0) y = -y;
    if ((random() & 1) != 0) x = -x;
    const Number exactX(x);
    Number value(y);
    mpfr_atan2(value.value, value.value, exactX.value, MPFR_RNDN);
    worst.take(errorOf(extAtan2(y, x), value.value), x, y);
  }
  EXPECT_LE(worst.error, 1.1) << std::hexfloat << worst.y << " / " << worst.x;
  if (std::getenv("QORVANE_EXTENDED_COUNT")) printf("atan2: %.4f\n", worst.error);
}

}  // namespace
}  // namespace qorvane::test
