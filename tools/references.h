// The right values of the library's functions, by stem: exact ones from MPFR, and nearly exact ones
// in extended precision, which are quick.
#pragma once
#include <mpfr.h>

#include <string_view>

namespace accuracy {

// The precision that `exact` is called with. The hardest known arguments of these functions need
// about 120 bits to be rounded right.
constexpr mpfr_prec_t exactBits = 160;

// The largest error that `quick` may have, in units in the last place of a double. Extended
// precision has 11 bits more, so this is 8 of its own units.
constexpr double quickErrorBound = 0.004;

struct Reference {
  std::string_view stem;
  void (*exact)(mpfr_t* results, mpfr_srcptr a, mpfr_srcptr b);       // as many results as the function has outputs
  void (*quick)(long double* results, long double a, long double b);  // the same, within quickErrorBound
};

// Null if the function has none.
const Reference* findReference(std::string_view stem);

}  // namespace accuracy
