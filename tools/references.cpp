#include "tools/references.h"

#include <cmath>

namespace accuracy {
namespace {

using Exact = mpfr_t*;
using Argument = mpfr_srcptr;
using Quick = long double*;
using Extended = long double;
constexpr mpfr_rnd_t nearest = MPFR_RNDN;

// The rounding functions' quick values are exact.
constexpr Reference references[] = {
    {"exp", [](Exact r, Argument a, Argument) { mpfr_exp(r[0], a, nearest); },
     [](Quick r, Extended a, Extended) { r[0] = std::exp(a); }},
    {"ln", [](Exact r, Argument a, Argument) { mpfr_log(r[0], a, nearest); },
     [](Quick r, Extended a, Extended) { r[0] = std::log(a); }},
    {"log10", [](Exact r, Argument a, Argument) { mpfr_log10(r[0], a, nearest); },
     [](Quick r, Extended a, Extended) { r[0] = std::log10(a); }},
    {"pow", [](Exact r, Argument a, Argument b) { mpfr_pow(r[0], a, b, nearest); },
     [](Quick r, Extended a, Extended b) { r[0] = std::pow(a, b); }},
    {"powx", [](Exact r, Argument a, Argument b) { mpfr_pow(r[0], a, b, nearest); },
     [](Quick r, Extended a, Extended b) { r[0] = std::pow(a, b); }},
    {"inv", [](Exact r, Argument a, Argument) { mpfr_ui_div(r[0], 1, a, nearest); },
     [](Quick r, Extended a, Extended) { r[0] = 1 / a; }},
    {"div", [](Exact r, Argument a, Argument b) { mpfr_div(r[0], a, b, nearest); },
     [](Quick r, Extended a, Extended b) { r[0] = a / b; }},
    {"sqrt", [](Exact r, Argument a, Argument) { mpfr_sqrt(r[0], a, nearest); },
     [](Quick r, Extended a, Extended) { r[0] = std::sqrt(a); }},
    {"invSqrt", [](Exact r, Argument a, Argument) { mpfr_rec_sqrt(r[0], a, nearest); },
     [](Quick r, Extended a, Extended) { r[0] = 1 / std::sqrt(a); }},
    {"cbrt", [](Exact r, Argument a, Argument) { mpfr_cbrt(r[0], a, nearest); },
     [](Quick r, Extended a, Extended) { r[0] = std::cbrt(a); }},
    {"invCbrt", [](Exact r, Argument a, Argument) { mpfr_cbrt(r[0], a, nearest), mpfr_ui_div(r[0], 1, r[0], nearest); },
     [](Quick r, Extended a, Extended) { r[0] = 1 / std::cbrt(a); }},
    {"sin", [](Exact r, Argument a, Argument) { mpfr_sin(r[0], a, nearest); },
     [](Quick r, Extended a, Extended) { r[0] = std::sin(a); }},
    {"cos", [](Exact r, Argument a, Argument) { mpfr_cos(r[0], a, nearest); },
     [](Quick r, Extended a, Extended) { r[0] = std::cos(a); }},
    {"sinCos", [](Exact r, Argument a, Argument) { mpfr_sin_cos(r[0], r[1], a, nearest); },
     [](Quick r, Extended a, Extended) { r[0] = std::sin(a), r[1] = std::cos(a); }},
    {"tan", [](Exact r, Argument a, Argument) { mpfr_tan(r[0], a, nearest); },
     [](Quick r, Extended a, Extended) { r[0] = std::tan(a); }},
    {"floor", [](Exact r, Argument a, Argument) { mpfr_floor(r[0], a); },
     [](Quick r, Extended a, Extended) { r[0] = std::floor(a); }},
    {"ceil", [](Exact r, Argument a, Argument) { mpfr_ceil(r[0], a); },
     [](Quick r, Extended a, Extended) { r[0] = std::ceil(a); }},
    {"trunc", [](Exact r, Argument a, Argument) { mpfr_trunc(r[0], a); },
     [](Quick r, Extended a, Extended) { r[0] = std::trunc(a); }},
    {"round", [](Exact r, Argument a, Argument) { mpfr_round(r[0], a); },
     [](Quick r, Extended a, Extended) { r[0] = std::round(a); }},
    {"rint", [](Exact r, Argument a, Argument) { mpfr_rint(r[0], a, nearest); },
     [](Quick r, Extended a, Extended) { r[0] = std::rint(a); }},
    {"nearbyInt", [](Exact r, Argument a, Argument) { mpfr_rint(r[0], a, nearest); },
     [](Quick r, Extended a, Extended) { r[0] = std::nearbyint(a); }},
    {"modf", [](Exact r, Argument a, Argument) { mpfr_modf(r[0], r[1], a, nearest); },
     [](Quick r, Extended a, Extended) { r[1] = std::modf(a, &r[0]); }},
};

}  // namespace

const Reference* findReference(std::string_view stem) {
  for (const Reference& reference : references)
    if (reference.stem == stem) return &reference;
  return nullptr;
}

}  // namespace accuracy
