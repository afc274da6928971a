// The right values of the library's functions, by stem: exact ones from MPFR and MPC, and nearly
// exact ones in extended precision, which are quick. The families' rows are in
// <family>/references.inc:
//   {"stem", exact, quick},   or   {"stem", exact, nullptr, Unit::ofTheLarger},
// with the numbers of an element in the order of Arguments in tools/ranges.h, and the results in
// the order of the outputs, of a complex one the real part first.
#pragma once
#include <mpc.h>
#include <mpfr.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
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

// For a + ib in the first quadrant: asin = angle, acos = pi/2 - angle = otherAngle, and acosh. Distances
// and differences are formed with as many bits as it takes for nothing to cancel.
inline void exactHull(mpfr_ptr angle, mpfr_ptr otherAngle, mpfr_ptr acosh, mpfr_srcptr a, mpfr_srcptr b) {
  const auto size = [](mpfr_srcptr x) { return mpfr_regular_p(x) ? std::abs(mpfr_get_exp(x)) : 0; };
  mpfr_t r, s, alpha, product;
  mpfr_inits2(exactBits + 64 + 4 * std::max(size(a), size(b)), r, s, alpha, product, static_cast<mpfr_ptr>(nullptr));
  mpfr_add_ui(alpha, a, 1, nearest);
  mpfr_hypot(r, alpha, b, nearest);
  mpfr_sub_ui(alpha, a, 1, nearest);
  mpfr_hypot(s, alpha, b, nearest);
  mpfr_add(alpha, r, s, nearest);
  mpfr_div_2ui(alpha, alpha, 1, nearest);
  const auto rootOfDifference = [&](mpfr_ptr root, mpfr_srcptr y) {  // sqrt(alpha^2 - y^2)
    mpfr_sub(root, alpha, y, nearest);
    mpfr_add(product, alpha, y, nearest);
    mpfr_mul(root, root, product, nearest);
    mpfr_sqrt(root, root, nearest);
  };
  mpfr_t shortA, shortRoot;
  mpfr_inits2(exactBits, shortA, shortRoot, static_cast<mpfr_ptr>(nullptr));
  rootOfDifference(r, a);
  mpfr_set(shortA, a, nearest);
  mpfr_set(shortRoot, r, nearest);
  mpfr_atan2(angle, shortA, shortRoot, nearest);
  mpfr_atan2(otherAngle, shortRoot, shortA, nearest);
  mpfr_set_ui(s, 1, nearest);
  rootOfDifference(r, s);
  mpfr_sub_ui(alpha, alpha, 1, nearest);
  mpfr_add(shortRoot, r, alpha, nearest);
  mpfr_log1p(acosh, shortRoot, nearest);
  mpfr_clears(r, s, alpha, product, shortA, shortRoot, static_cast<mpfr_ptr>(nullptr));
}

// asin(x + iy), the signs included, and acos.
inline void exactAsin(mpfr_ptr re, mpfr_ptr im, mpfr_srcptr x, mpfr_srcptr y, bool cosine = false) {
  mpfr_t a, b, angle, other;
  mpfr_inits2(exactBits, a, b, angle, other, static_cast<mpfr_ptr>(nullptr));
  mpfr_abs(a, x, nearest);
  mpfr_abs(b, y, nearest);
  exactHull(angle, other, b, a, b);
  if (cosine && mpfr_signbit(x)) mpfr_const_pi(a, nearest), mpfr_sub(other, a, other, nearest);
  mpfr_setsign(re, cosine ? other : angle, !cosine && mpfr_signbit(x), nearest);
  mpfr_setsign(im, b, cosine != (mpfr_signbit(y) != 0), nearest);
  mpfr_clears(a, b, angle, other, static_cast<mpfr_ptr>(nullptr));
}

struct QuickHull {
  long double angle, otherAngle, acosh;
};
inline QuickHull quickHull(long double a, long double b) {
  const long double ap = a + 1, am = a - 1, r = sqrtl(ap * ap + b * b), s = sqrtl(am * am + b * b), alpha = (r + s) / 2;
  const long double p = b * b / (r + ap), beyondA = (p + (am <= 0 ? s - am : b * b / (s + am))) / 2,
                    beyondOne = (p + (am < 0 ? b * b / (s - am) : s + am)) / 2, root = sqrtl(beyondA * (alpha + a));
  return {atan2l(a, root), atan2l(root, a), log1pl(beyondOne + sqrtl(beyondOne * (alpha + 1)))};
}

// Null if the function has none.
const Reference* findReference(std::string_view stem);

// Computes what Kind::hardForReduction draws from, once.
void provideHardArguments();

}  // namespace accuracy
