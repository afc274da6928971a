// erfinv for the accuracy tool: MPFR and the C library have erf and erfc, whose values Newton's
// method inverts. Where |x| >= 1/2 it works on erfc(y) = 1 - |x|, of which nothing cancels.
#pragma once
#include <mpfr.h>

#include <cmath>

#include "tools/inverse_erf_quick.h"

namespace accuracy {

// In MPFR, by 200 bits: from 60 right bits in two steps to more than 200.
inline void inverseErf(mpfr_ptr result, mpfr_srcptr x) {
  constexpr mpfr_prec_t bits = 200;
  mpfr_t y, error, slope;
  mpfr_inits2(bits, y, error, slope, nullptr);
  const double a = std::fabs(mpfr_get_d(x, MPFR_RNDN));
  mpfr_set_ld(y, inverseErfQuick(a), MPFR_RNDN);
  for (int i = 0; i < 2; ++i) {
    if (a < 0.5) {
      mpfr_erf(error, y, MPFR_RNDN);
      mpfr_sub_d(error, error, a, MPFR_RNDN);
    } else {
      mpfr_erfc(error, y, MPFR_RNDN);
      mpfr_d_sub(error, 1 - a, error, MPFR_RNDN);
    }
    mpfr_sqr(slope, y, MPFR_RNDN);  // the inverse slope of erf is exp(y^2) sqrt(pi) / 2
    mpfr_exp(slope, slope, MPFR_RNDN);
    mpfr_mul(error, error, slope, MPFR_RNDN);
    mpfr_const_pi(slope, MPFR_RNDN);
    mpfr_sqrt(slope, slope, MPFR_RNDN);
    mpfr_div_2ui(slope, slope, 1, MPFR_RNDN);
    mpfr_mul(error, error, slope, MPFR_RNDN);
    mpfr_sub(y, y, error, MPFR_RNDN);
  }
  mpfr_setsign(result, y, mpfr_signbit(x), MPFR_RNDN);
  mpfr_clears(y, error, slope, nullptr);
}

}  // namespace accuracy
