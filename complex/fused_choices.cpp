// Complex functions, level 5: the kernels without fused multiply-adds, or those with them: see
// frame/fused_choice.h.
#include "frame/fused_choice.h"

#define UNARY(stem)                                                                                              \
  namespace qorvane {                                                                                            \
  shapes::complexUnary complex##stem##Avx;                                                                       \
  [[gnu::visibility("hidden")]] shapes::complexUnary complex##stem##AvxPlain, complex##stem##AvxFma;             \
  }                                                                                                              \
  CHOOSE_AT_LOAD(complex##stem##Avx, complex##stem##AvxPlain, complex##stem##AvxFma, qorvaneChooseComplex##stem, \
                 (const Complex64* src, Complex64* dst, int32_t len), (src, dst, len))

UNARY(Sinh)
UNARY(Cosh)
UNARY(Tanh)
UNARY(Sin)
UNARY(Cos)
UNARY(Tan)
UNARY(Log10)

namespace qorvane {
shapes::complexBinary complexPowAvx;
shapes::complexScalar complexPowxAvx;
[[gnu::visibility("hidden")]] shapes::complexBinary complexPowAvxPlain, complexPowAvxFma;
[[gnu::visibility("hidden")]] shapes::complexScalar complexPowxAvxPlain, complexPowxAvxFma;
}  // namespace qorvane
CHOOSE_AT_LOAD(complexPowAvx, complexPowAvxPlain, complexPowAvxFma, qorvaneChooseComplexPow,
               (const Complex64* a, const Complex64* b, Complex64* dst, int32_t len), (a, b, dst, len))
CHOOSE_AT_LOAD(complexPowxAvx, complexPowxAvxPlain, complexPowxAvxFma, qorvaneChooseComplexPowx,
               (const Complex64* a, Complex64 b, Complex64* dst, int32_t len), (a, b, dst, len))
