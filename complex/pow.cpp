// complexPow, all levels: one element.
//
// Method: complexLn and complexExpExtended, each rounded to double precision, and between them the product in
// double precision.
//
// Error: the product's rounding error times the exponential: |b ln a| ulp or so, where the parts of
// the product don't cancel.
//
// Special values: what the three steps make of them; 0^0 is NaN + iNaN.
#include "complex/pow.h"

#include "complex/exp.h"
#include "complex/ln.h"

namespace qorvane {

// Not inlined: which of two NaNs becomes the result depends on the order of operands.
[[gnu::noinline]] Complex64 complexPow(Complex64 a, Complex64 b) {
  const Complex64 l = complexLn(a);
  const Float64 reRe = b.re * l.re, imIm = b.im * l.im, reIm = b.re * l.im, imRe = b.im * l.re;
  return complexExpExtended({reRe - imIm, reIm + imRe});
}

nuvStatus powElements(const Complex64* a, const Complex64* b, Complex64* dst, int64_t len) {
  for (int64_t i = 0; i < len; ++i) dst[i] = complexPow(a[i], b[i]);
  return nuvStatusOk;
}
nuvStatus powxElements(const Complex64* a, Complex64 b, Complex64* dst, int64_t len) {
  for (int64_t i = 0; i < len; ++i) dst[i] = complexPow(a[i], b);
  return nuvStatusOk;
}

}  // namespace qorvane
