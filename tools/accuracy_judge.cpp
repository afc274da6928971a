// The error of one result.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "tools/accuracy_measure.h"

namespace accuracy {
namespace {

struct ExactResults {
  mpfr_t x[mostReals], values[2];
  ExactResults(const Function& f, const Point& point) {
    mpfr_inits2(53, x[0], x[1], x[2], x[3], nullptr);
    mpfr_inits2(exactBits, values[0], values[1], nullptr);
    for (size_t r = 0; r < mostReals; ++r) mpfr_set_d(x[r], point[r], MPFR_RNDN);
    f.reference->exact(values, x);
  }
  ExactResults(const ExactResults&) = delete;
  ExactResults& operator=(const ExactResults&) = delete;
  ~ExactResults() { mpfr_clears(x[0], x[1], x[2], x[3], values[0], values[1], nullptr); }
};

}  // namespace

Judgement judgeExactly(const Function& function, const Finding& finding) {
  const ExactResults exact(function, finding.x);
  const mpfr_t& value = exact.values[finding.output];
  const double rounded = mpfr_get_d(value, MPFR_RNDN), y = finding.result;
  if (rounded == y || (std::isnan(rounded) && std::isnan(y))) {
    if (!std::isfinite(y)) return {0, true};
  } else if (std::isnan(rounded) || std::isnan(y) || mpfr_inf_p(value)) {
    return {HUGE_VAL, false};
  }
  // An infinite result counts as 2^1024 here.
  mpfr_t difference;
  mpfr_init2(difference, exactBits);
  mpfr_set_d(difference, std::isinf(y) ? std::copysign(0x1p1023, y) : y, MPFR_RNDN);
  if (std::isinf(y)) mpfr_mul_2ui(difference, difference, 1, MPFR_RNDN);
  mpfr_sub(difference, difference, value, MPFR_RNDN);
  const auto exponentOf = [](const mpfr_t& x) {
    return mpfr_regular_p(x) ? std::clamp(static_cast<long>(mpfr_get_exp(x)) - 1, -1022L, 1023L) : -1022;
  };
  long exponent = exponentOf(value);
  if (function.reference->unit == Unit::ofTheLarger)
    exponent = std::max(exponentOf(exact.values[0]), exponentOf(exact.values[1]));
  mpfr_mul_2si(difference, difference, 52 - exponent, MPFR_RNDN);
  const double error = mpfr_get_d(difference, MPFR_RNDN);
  mpfr_clear(difference);
  return {error, rounded == y};
}

double quickError(double result, long double quick, bool& sure) {
  uint64_t significand;
  uint16_t field;
  std::memcpy(&significand, &quick, 8);
  std::memcpy(&field, reinterpret_cast<const char*>(&quick) + 8, 2);
  const int exponent = std::max((field & 0x7fff) - 16383, -1022);
  // A power of two may stand for a number of the binade below.
  sure = exponent < 1023 && std::isfinite(result) && (significand != uint64_t{1} << 63 || result == quick) &&
         (quick != 0 || result == 0);
  if (!sure) return HUGE_VAL;
  long double unitsIn1 = 1;
  field = static_cast<uint16_t>(16383 + 52 - exponent);
  std::memcpy(reinterpret_cast<char*>(&unitsIn1) + 8, &field, 2);
  return static_cast<double>((result - quick) * unitsIn1);
}

std::string argumentText(const Function& function, const Point& x) {
  std::string all;
  for (size_t r = 0; r < function.reals(); ++r) {
    char text[40];
    std::snprintf(text, sizeof text, "%s%a", r > 0 ? ", " : "", x[r]);
    all += text;
  }
  return all;
}

std::string exactValue(const Function& function, const Finding& finding, int digits) {
  const ExactResults exact(function, finding.x);
  char out[100];
  mpfr_snprintf(out, sizeof out, "%.*Rg", digits, exact.values[finding.output]);
  return out;
}

}  // namespace accuracy
