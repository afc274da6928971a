// complexPow: a^b = e^(b ln a) for one element.
//
// Method: complexLn and complexExp, each rounded to double precision, and between them the product in
// double precision.
//
// Error: the product's rounding error times the exponential: |b ln a| ulp or so, where the parts of
// the product don't cancel.
//
// Special values: what the three steps make of them; 0^0 is NaN + iNaN.
#pragma once
#include "complex/exp.h"
#include "complex/ln.h"
#include "complex/scalar.h"

namespace qorvane {
namespace {

INLINE Complex64 complexPow(Complex64 a, Complex64 b) {
  const Complex64 l = complexLn(a);
  const Float64 reRe = b.re * l.re, imIm = b.im * l.im, reIm = b.re * l.im, imRe = b.im * l.re;
  return complexExp({reRe - imIm, reIm + imRe});
}

}  // namespace
}  // namespace qorvane
