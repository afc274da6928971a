// The functions in lanes, and their extended routines, from which their bits come.
#pragma once
#include "frame/bits.h"
#include "frame/include/qorvane.h"

namespace qorvane {

enum class Function { sinh, cosh, tanh, sin, cos, tan, asinh, asin, acosh, acos, atan, log10 };

// Whether the parts are sinh cos and cosh sin, or else cosh cos and sinh sin.
constexpr bool hasSinhCos(Function function) { return function == Function::sinh || function == Function::sin; }

// Whether the parts are quotients: sinh cosh / d and sin cos / d, d = sinh^2 + cos^2.
constexpr bool isQuotient(Function function) { return function == Function::tanh || function == Function::tan; }
// Whether the function is that of iz, turned: the hyperbolic functions are those of the imaginary part.
constexpr bool isTurned(Function function) {
  return function == Function::sin || function == Function::cos || function == Function::tan;
}

// One element, and a loop over them in the caller's modes.
template <Function function>
Complex64 element(Complex64 z);
template <Function function>
nuvStatus elements(const Complex64* src, Complex64* dst, int64_t len);

// clang-format off
template <> Complex64 element<Function::sinh>(Complex64);
template <> nuvStatus elements<Function::sinh>(const Complex64*, Complex64*, int64_t);
template <> Complex64 element<Function::cosh>(Complex64);
template <> nuvStatus elements<Function::cosh>(const Complex64*, Complex64*, int64_t);
template <> Complex64 element<Function::sin>(Complex64);
template <> nuvStatus elements<Function::sin>(const Complex64*, Complex64*, int64_t);
template <> Complex64 element<Function::cos>(Complex64);
template <> nuvStatus elements<Function::cos>(const Complex64*, Complex64*, int64_t);
template <> Complex64 element<Function::tanh>(Complex64);
template <> nuvStatus elements<Function::tanh>(const Complex64*, Complex64*, int64_t);
template <> Complex64 element<Function::tan>(Complex64);
template <> nuvStatus elements<Function::tan>(const Complex64*, Complex64*, int64_t);
template <> Complex64 element<Function::asinh>(Complex64);
template <> nuvStatus elements<Function::asinh>(const Complex64*, Complex64*, int64_t);
template <> Complex64 element<Function::asin>(Complex64);
template <> nuvStatus elements<Function::asin>(const Complex64*, Complex64*, int64_t);
template <> Complex64 element<Function::acosh>(Complex64);
template <> nuvStatus elements<Function::acosh>(const Complex64*, Complex64*, int64_t);
template <> Complex64 element<Function::acos>(Complex64);
template <> nuvStatus elements<Function::acos>(const Complex64*, Complex64*, int64_t);
template <> Complex64 element<Function::atan>(Complex64);
template <> nuvStatus elements<Function::atan>(const Complex64*, Complex64*, int64_t);
template <> Complex64 element<Function::log10>(Complex64);
template <> nuvStatus elements<Function::log10>(const Complex64*, Complex64*, int64_t);
// clang-format on

}  // namespace qorvane
