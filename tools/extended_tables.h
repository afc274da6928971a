// What the generators of the tables in extended precision share: constants as text, and fits.
#pragma once
#include <string>
#include <vector>

#include "tools/table_writer.h"

namespace tables {

inline Exact pi() {
  Exact r;
  mpfr_const_pi(r.value, MPFR_RNDN);
  return r;
}

// As the fields of an extended-precision number.
inline std::string extendedText(const Exact& x) {
  Exact rounded = roundSignificant(x, 64);
  mpz_t significand;
  mpz_init(significand);
  mpfr_exp_t exponent = mpfr_get_z_2exp(significand, rounded.value);
  const bool negative = mpz_sgn(significand) < 0;
  mpz_abs(significand, significand);
  while (mpz_sizeinbase(significand, 2) > 64) mpz_fdiv_q_2exp(significand, significand, 1), ++exponent;
  while (mpz_sizeinbase(significand, 2) < 64) mpz_mul_2exp(significand, significand, 1), --exponent;
  char text[80];
  std::snprintf(text, sizeof text, "extended(0x%04x, 0x%016" PRIx64 ")",
                static_cast<unsigned>(0x3fff + 63 + exponent) | (negative ? 0x8000u : 0u), mpz_get_ui(significand));
  mpz_clear(significand);
  return text;
}

// The polynomial of degree count - 1 that agrees with f in the zeros of the Chebyshev polynomial of
// degree `count` on [from, to]: its coefficients, by Newton's divided differences.
template <class F>
std::vector<Exact> interpolate(F f, int count, const Exact& from, const Exact& to) {
  std::vector<Exact> nodes, c;
  for (int i = 0; i < count; ++i) {
    const Exact cosine = call(mpfr_cos, pi() * Exact(2 * i + 1) / Exact(2 * count));
    nodes.push_back(from + (to - from) * (Exact(1) - cosine) / Exact(2));
    c.push_back(f(nodes.back()));
  }
  for (int order = 1; order < count; ++order)
    for (int i = count - 1; i >= order; --i) c[i] = (c[i] - c[i - 1]) / (nodes[i] - nodes[i - order]);
  // Newton's form to powers, from the innermost bracket out.
  std::vector<Exact> power(count);
  for (int i = count - 1; i >= 0; --i) {
    for (int k = count - 1; k >= 1; --k) power[k] = power[k - 1] - nodes[i] * power[k];
    power[0] = c[i] - nodes[i] * power[0];
  }
  return power;
}

}  // namespace tables
