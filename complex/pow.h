// complexPow: a^b = e^(b ln a) for one element, and loops over elements in the caller's modes: what the
// powers in lanes leave out.
#pragma once
#include "frame/include/qorvane.h"

namespace qorvane {

Complex64 complexPow(Complex64 a, Complex64 b);
nuvStatus powElements(const Complex64* a, const Complex64* b, Complex64* dst, int64_t len);
nuvStatus powxElements(const Complex64* a, Complex64 b, Complex64* dst, int64_t len);

}  // namespace qorvane
