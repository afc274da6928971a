// The C library's functions, one call an element. Compiled with -fno-builtin, so that it is a call
// even where the compiler knows an instruction for it.
#include <math.h>

#include "bench/peer_loops.h"

// <complex.h> is another header in C++.
using ComplexDouble = _Complex double;
extern "C" {
ComplexDouble cexp(ComplexDouble), csin(ComplexDouble), ccos(ComplexDouble), ctan(ComplexDouble);
ComplexDouble csinh(ComplexDouble), ccosh(ComplexDouble), ctanh(ComplexDouble);
ComplexDouble clog(ComplexDouble), clog10(ComplexDouble), cpow(ComplexDouble, ComplexDouble), csqrt(ComplexDouble);
ComplexDouble casin(ComplexDouble), cacos(ComplexDouble), catan(ComplexDouble);
ComplexDouble casinh(ComplexDouble), cacosh(ComplexDouble);
}

namespace qorvane::bench {
namespace {

template <ComplexDouble f(ComplexDouble)>
void repeatComplex(const Call& call, int64_t times) {
  eachCall(call.len, 2, times, [&](int64_t at) {
    for (int64_t i = at; i < at + 2 * call.len; i += 2) {
      ComplexDouble z;
      __builtin_memcpy(&z, call.in[0] + i, sizeof z);
      z = f(z);
      __builtin_memcpy(call.out[0] + i, &z, sizeof z);
    }
  });
}

// Powers; the exponent is the scalar where there is one input.
template <int inputs>
void repeatComplexPow(const Call& call, int64_t times) {
  eachCall(call.len, 2, times, [&](int64_t at) {
    for (int64_t i = at; i < at + 2 * call.len; i += 2) {
      ComplexDouble a, b;
      __builtin_memcpy(&a, call.in[0] + i, sizeof a);
      __builtin_memcpy(&b, inputs == 2 ? call.in[1] + i : call.value, sizeof b);
      a = cpow(a, b);
      __builtin_memcpy(call.out[0] + i, &a, sizeof a);
    }
  });
}

using V = double;
#define CALL(stem, result)                                                                      \
  {                                                                                             \
#stem, repeat < V, [](V a, V b, V value) { return (void)a, (void)b, (void)value, result; }> \
  }

Two<V> sineAndCosine(V a) {
  Two<V> both;
  sincos(a, &both.first, &both.second);
  return both;
}
Two<V> parts(V a) {
  Two<V> both;
  both.second = modf(a, &both.first);
  return both;
}

constexpr Contestant contestants[] = {
    CALL(exp, exp(a)),
    CALL(ln, log(a)),
    CALL(log10, log10(a)),
    CALL(pow, pow(a, b)),
    CALL(powx, pow(a, value)),
    CALL(inv, 1.0 / a),
    CALL(div, a / b),
    CALL(sqrt, sqrt(a)),
    CALL(invSqrt, 1.0 / sqrt(a)),
    CALL(cbrt, cbrt(a)),
    CALL(invCbrt, 1.0 / cbrt(a)),
    CALL(sin, sin(a)),
    CALL(cos, cos(a)),
    CALL(sinCos, sineAndCosine(a)),
    CALL(tan, tan(a)),
    CALL(acosh, acosh(a)),
    CALL(asinh, asinh(a)),
    CALL(atanh, atanh(a)),
    CALL(asin, asin(a)),
    CALL(acos, acos(a)),
    CALL(atan, atan(a)),
    CALL(atan2, atan2(a, b)),
    CALL(sinh, sinh(a)),
    CALL(cosh, cosh(a)),
    CALL(tanh, tanh(a)),
    CALL(erf, erf(a)),
    CALL(erfc, erfc(a)),
    CALL(floor, floor(a)),
    CALL(ceil, ceil(a)),
    CALL(trunc, trunc(a)),
    CALL(round, round(a)),
    CALL(rint, rint(a)),
    CALL(nearbyInt, nearbyint(a)),
    CALL(modf, parts(a)),
    {"complexExp", repeatComplex<cexp>},
    {"complexLn", repeatComplex<clog>},
    {"complexLog10", repeatComplex<clog10>},
    {"complexPow", repeatComplexPow<2>},
    {"complexPowx", repeatComplexPow<1>},
    {"complexSqrt", repeatComplex<csqrt>},
    {"complexSin", repeatComplex<csin>},
    {"complexCos", repeatComplex<ccos>},
    {"complexTan", repeatComplex<ctan>},
    {"complexAsin", repeatComplex<casin>},
    {"complexAcos", repeatComplex<cacos>},
    {"complexAtan", repeatComplex<catan>},
    {"complexSinh", repeatComplex<csinh>},
    {"complexCosh", repeatComplex<ccosh>},
    {"complexTanh", repeatComplex<ctanh>},
    {"complexAsinh", repeatComplex<casinh>},
    {"complexAcosh", repeatComplex<cacosh>},
};

}  // namespace

const Team cLibrary = {"C library", [] { return true; }, contestants, sizeof contestants / sizeof contestants[0]};

}  // namespace qorvane::bench
