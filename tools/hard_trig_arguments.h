// The arguments that a reduction modulo pi/2 finds hardest: for every exponent, the numbers that
// come nearest to a multiple of pi/2.
#pragma once
#include <mpfr.h>

#include <cmath>
#include <vector>

namespace tables {

// For every e from -52 to 971, the numbers m * 2^e with m below 2^53 for which m is the denominator
// of one of the last two convergents of 2^e * 2/pi: no integer up to m times 2^e comes nearer to a
// multiple of pi/2. Even multiples are hard for the sine, odd ones for the cosine. Ascending in e,
// positive, with repetitions.
inline std::vector<double> hardTrigArguments() {
  constexpr int placesOfTwoOverPi = 1400, placesOfFraction = 400;
  mpfr_t quotient;
  mpfr_init2(quotient, placesOfTwoOverPi + 64);
  mpfr_const_pi(quotient, MPFR_RNDN);
  mpfr_d_div(quotient, 2, quotient, MPFR_RNDN);
  mpfr_mul_2si(quotient, quotient, placesOfTwoOverPi, MPFR_RNDN);
  mpz_t twoOverPi, numerator, denominator, partial, remainder;
  mpz_inits(twoOverPi, numerator, denominator, partial, remainder, nullptr);
  mpfr_get_z(twoOverPi, quotient, MPFR_RNDD);

  std::vector<double> arguments;
  const double largestFactor = std::ldexp(1.0, 53);
  for (int e = -52; e <= 971; ++e) {
    // Whole multiples of 2^e don't matter: the continued fraction of the fraction alone has the
    // same denominators.
    mpz_fdiv_q_2exp(numerator, twoOverPi, static_cast<mp_bitcnt_t>(placesOfTwoOverPi - placesOfFraction - e));
    mpz_fdiv_r_2exp(numerator, numerator, placesOfFraction);
    mpz_set_ui(denominator, 0);
    mpz_setbit(denominator, placesOfFraction);
    double before = 0, last = 1;
    while (mpz_sgn(numerator) != 0) {
      mpz_fdiv_qr(partial, remainder, denominator, numerator);
      const double quotientDigit = mpz_get_d(partial);
      if (quotientDigit * last + before >= largestFactor) break;
      const double next = quotientDigit * last + before;  // exact, being below 2^53
      before = last;
      last = next;
      mpz_swap(denominator, numerator);
      mpz_swap(numerator, remainder);
    }
    if (before > 0) arguments.push_back(std::ldexp(before, e));
    arguments.push_back(std::ldexp(last, e));
  }
  mpz_clears(twoOverPi, numerator, denominator, partial, remainder, nullptr);
  mpfr_clear(quotient);
  return arguments;
}

}  // namespace tables
