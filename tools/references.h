// The right values of the library's functions, by stem: exact ones from MPFR and MPC, and nearly
// exact ones in extended precision, which are quick. The families' rows are in
// <family>/references.inc:
//   {"stem", exact, quick},   or   {"stem", exact, nullptr, Unit::ofTheLarger},
// with the numbers of an element in the order of Arguments in tools/ranges.h, and the results in
// the order of the outputs, of a complex one the real part first.
#pragma once
#include <mpc.h>
#include <mpfr.h>

#include <string_view>

namespace accuracy {

// The precision that `exact` is called with. The hardest known arguments of these functions need
// about 120 bits to be rounded right.
constexpr mpfr_prec_t exactBits = 160;

// The largest error that `quick` may have, in units in the last place of a double. Extended
// precision has 11 bits more, so this is 8 of its own units.
constexpr double quickErrorBound = 0.004;

using Exact = mpfr_t*;
using Inputs = const mpfr_t*;
using Quick = long double*;
using QuickInputs = const long double*;
constexpr mpfr_rnd_t nearest = MPFR_RNDN;

// What the errors of a complex function's components are counted in: each one's own unit in the last
// place or, where a component that cancels can't be exact to its own, that of the larger one.
enum class Unit { own, ofTheLarger };

struct Reference {
  std::string_view stem;
  void (*exact)(Exact results, Inputs x);
  void (*quick)(Quick results, QuickInputs x);  // the same, within quickErrorBound; null: all is judged by `exact`
  Unit unit = Unit::own;
};

// A complex function of MPC, of one complex number or of two.
template <int (*function)(mpc_ptr, mpc_srcptr, mpc_rnd_t)>
void complexExact(Exact r, Inputs x) {
  mpc_t z;
  mpc_init2(z, exactBits);
  mpc_set_fr_fr(z, x[0], x[1], MPC_RNDNN);
  function(z, z, MPC_RNDNN);
  mpfr_set(r[0], mpc_realref(z), nearest);
  mpfr_set(r[1], mpc_imagref(z), nearest);
  mpc_clear(z);
}
template <int (*function)(mpc_ptr, mpc_srcptr, mpc_srcptr, mpc_rnd_t)>
void complexExact(Exact r, Inputs x) {
  mpc_t a, b;
  mpc_init2(a, exactBits);
  mpc_init2(b, exactBits);
  mpc_set_fr_fr(a, x[0], x[1], MPC_RNDNN);
  mpc_set_fr_fr(b, x[2], x[3], MPC_RNDNN);
  function(a, a, b, MPC_RNDNN);
  mpfr_set(r[0], mpc_realref(a), nearest);
  mpfr_set(r[1], mpc_imagref(a), nearest);
  mpc_clear(a);
  mpc_clear(b);
}

// tanh(x + iy) = (sinh x cosh x + i sin y cos y) / (sinh^2 x + cos^2 y). tan(y + ix) has the parts the
// other way round.
inline void exactTanh(mpfr_ptr re, mpfr_ptr im, mpfr_srcptr x, mpfr_srcptr y) {
  mpfr_t sinh, cosh, sin, cos, d;
  mpfr_inits2(exactBits + 10, sinh, cosh, sin, cos, d, static_cast<mpfr_ptr>(nullptr));
  mpfr_sinh_cosh(sinh, cosh, x, nearest);
  mpfr_sin_cos(sin, cos, y, nearest);
  mpfr_fmma(d, sinh, sinh, cos, cos, nearest);
  mpfr_mul(sinh, sinh, cosh, nearest);
  mpfr_mul(sin, sin, cos, nearest);
  mpfr_div(re, sinh, d, nearest);
  mpfr_div(im, sin, d, nearest);
  mpfr_clears(sinh, cosh, sin, cos, d, static_cast<mpfr_ptr>(nullptr));
}

// Null if the function has none.
const Reference* findReference(std::string_view stem);

// Computes what Kind::hardForReduction draws from, once.
void provideHardArguments();

}  // namespace accuracy
