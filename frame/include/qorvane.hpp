// Tarnwell.Qorvane in C++20: the functions of qorvane.h on spans. Written by tools/make_bindings.py.
//
//   std::vector<double> x = {0.0, 1.0, 1000.0}, y(3);
//   nuvStatus status = qorvane::exp(x, y);   // y = 1, 2.718..., inf; status = nuvStatusOverflow
//
// Results, special values and modes are those that qorvane.h tells, and so is the status: that of the
// failing element of highest index. Sizes must be equal, which is asserted; empty arrays give
// nuvStatusOk. Arrays of any size go in pieces, which changes no bit. A destination may be the very
// array of a source, and overlap in no other way.
#ifndef TARNWELL_QORVANE_HPP
#define TARNWELL_QORVANE_HPP

#include <qorvane.h>

#include <algorithm>
#include <cassert>
#include <complex>
#include <cstddef>
#include <cstdint>
#include <span>

namespace qorvane {

using Complex = std::complex<double>;

namespace detail {

// What the function takes in the place of a span or a scalar, for the piece that begins at an index.
inline const double* argument(std::span<const double> a, std::size_t begin) noexcept { return a.data() + begin; }
inline double* argument(std::span<double> a, std::size_t begin) noexcept { return a.data() + begin; }
inline const Complex64* argument(std::span<const Complex> a, std::size_t begin) noexcept {
  return reinterpret_cast<const Complex64*>(a.data() + begin);
}
inline Complex64* argument(std::span<Complex> a, std::size_t begin) noexcept {
  return reinterpret_cast<Complex64*>(a.data() + begin);
}
inline double argument(double value, std::size_t) noexcept { return value; }
inline Complex64 argument(Complex value, std::size_t) noexcept { return {value.real(), value.imag()}; }

template <class T>
bool hasSize(std::span<T> a, std::size_t size) noexcept {
  return a.size() == size;
}
template <class T>
bool hasSize(T, std::size_t) noexcept {
  return true;
}

// Pieces are a multiple of every block in which a function takes neighbours together.
template <std::size_t piece = std::size_t{1} << 30, class Function, class... Arguments>
nuvStatus run(Function function, std::size_t size, Arguments... arguments) noexcept {
  assert((hasSize(arguments, size) && ...));
  nuvStatus last = nuvStatusOk;
  for (std::size_t begin = 0; begin < size; begin += piece) {
    const auto length = static_cast<std::int32_t>(std::min(piece, size - begin));
    const nuvStatus status = function(argument(arguments, begin)..., length);
    if (status < nuvStatusOk) return status;
    if (status > nuvStatusOk) last = status;
  }
  return last;
}

}  // namespace detail

inline nuvStatus exp(std::span<const double> src, std::span<double> dst) noexcept {
  return detail::run(nuvsExp_64f_A53, src.size(), src, dst);
}

inline nuvStatus ln(std::span<const double> src, std::span<double> dst) noexcept {
  return detail::run(nuvsLn_64f_A53, src.size(), src, dst);
}

inline nuvStatus log10(std::span<const double> src, std::span<double> dst) noexcept {
  return detail::run(nuvsLog10_64f_A53, src.size(), src, dst);
}

inline nuvStatus pow(std::span<const double> srcA, std::span<const double> srcB, std::span<double> dst) noexcept {
  return detail::run(nuvsPow_64f_A53, srcA.size(), srcA, srcB, dst);
}

inline nuvStatus powx(std::span<const double> src, double value, std::span<double> dst) noexcept {
  return detail::run(nuvsPowx_64f_A53, src.size(), src, value, dst);
}

inline nuvStatus inv(std::span<const double> src, std::span<double> dst) noexcept {
  return detail::run(nuvsInv_64f_A53, src.size(), src, dst);
}

inline nuvStatus div(std::span<const double> srcA, std::span<const double> srcB, std::span<double> dst) noexcept {
  return detail::run(nuvsDiv_64f_A53, srcA.size(), srcA, srcB, dst);
}

inline nuvStatus sqrt(std::span<const double> src, std::span<double> dst) noexcept {
  return detail::run(nuvsSqrt_64f_A53, src.size(), src, dst);
}

inline nuvStatus invSqrt(std::span<const double> src, std::span<double> dst) noexcept {
  return detail::run(nuvsInvSqrt_64f_A53, src.size(), src, dst);
}

inline nuvStatus cbrt(std::span<const double> src, std::span<double> dst) noexcept {
  return detail::run(nuvsCbrt_64f_A53, src.size(), src, dst);
}

inline nuvStatus invCbrt(std::span<const double> src, std::span<double> dst) noexcept {
  return detail::run(nuvsInvCbrt_64f_A53, src.size(), src, dst);
}

inline nuvStatus sin(std::span<const double> src, std::span<double> dst) noexcept {
  return detail::run(nuvsSin_64f_A53, src.size(), src, dst);
}

inline nuvStatus cos(std::span<const double> src, std::span<double> dst) noexcept {
  return detail::run(nuvsCos_64f_A53, src.size(), src, dst);
}

inline nuvStatus sinCos(std::span<const double> src, std::span<double> dstA, std::span<double> dstB) noexcept {
  return detail::run(nuvsSinCos_64f_A53, src.size(), src, dstA, dstB);
}

inline nuvStatus tan(std::span<const double> src, std::span<double> dst) noexcept {
  return detail::run(nuvsTan_64f_A53, src.size(), src, dst);
}

inline nuvStatus asin(std::span<const double> src, std::span<double> dst) noexcept {
  return detail::run(nuvsAsin_64f_A53, src.size(), src, dst);
}

inline nuvStatus acos(std::span<const double> src, std::span<double> dst) noexcept {
  return detail::run(nuvsAcos_64f_A53, src.size(), src, dst);
}

inline nuvStatus atan(std::span<const double> src, std::span<double> dst) noexcept {
  return detail::run(nuvsAtan_64f_A53, src.size(), src, dst);
}

inline nuvStatus atan2(std::span<const double> srcA, std::span<const double> srcB, std::span<double> dst) noexcept {
  return detail::run(nuvsAtan2_64f_A53, srcA.size(), srcA, srcB, dst);
}

inline nuvStatus sinh(std::span<const double> src, std::span<double> dst) noexcept {
  return detail::run(nuvsSinh_64f_A53, src.size(), src, dst);
}

inline nuvStatus cosh(std::span<const double> src, std::span<double> dst) noexcept {
  return detail::run(nuvsCosh_64f_A53, src.size(), src, dst);
}

inline nuvStatus tanh(std::span<const double> src, std::span<double> dst) noexcept {
  return detail::run(nuvsTanh_64f_A53, src.size(), src, dst);
}

inline nuvStatus asinh(std::span<const double> src, std::span<double> dst) noexcept {
  return detail::run(nuvsAsinh_64f_A53, src.size(), src, dst);
}

inline nuvStatus acosh(std::span<const double> src, std::span<double> dst) noexcept {
  return detail::run(nuvsAcosh_64f_A53, src.size(), src, dst);
}

inline nuvStatus atanh(std::span<const double> src, std::span<double> dst) noexcept {
  return detail::run(nuvsAtanh_64f_A53, src.size(), src, dst);
}

inline nuvStatus erf(std::span<const double> src, std::span<double> dst) noexcept {
  return detail::run(nuvsErf_64f_A53, src.size(), src, dst);
}

inline nuvStatus erfInv(std::span<const double> src, std::span<double> dst) noexcept {
  return detail::run(nuvsErfInv_64f_A53, src.size(), src, dst);
}

inline nuvStatus erfc(std::span<const double> src, std::span<double> dst) noexcept {
  return detail::run(nuvsErfc_64f_A53, src.size(), src, dst);
}

inline nuvStatus floor(std::span<const double> src, std::span<double> dst) noexcept {
  return detail::run(nuvsFloor_64f, src.size(), src, dst);
}

inline nuvStatus ceil(std::span<const double> src, std::span<double> dst) noexcept {
  return detail::run(nuvsCeil_64f, src.size(), src, dst);
}

inline nuvStatus trunc(std::span<const double> src, std::span<double> dst) noexcept {
  return detail::run(nuvsTrunc_64f, src.size(), src, dst);
}

inline nuvStatus round(std::span<const double> src, std::span<double> dst) noexcept {
  return detail::run(nuvsRound_64f, src.size(), src, dst);
}

inline nuvStatus rint(std::span<const double> src, std::span<double> dst) noexcept {
  return detail::run(nuvsRint_64f, src.size(), src, dst);
}

inline nuvStatus nearbyInt(std::span<const double> src, std::span<double> dst) noexcept {
  return detail::run(nuvsNearbyInt_64f, src.size(), src, dst);
}

inline nuvStatus modf(std::span<const double> src, std::span<double> dstA, std::span<double> dstB) noexcept {
  return detail::run(nuvsModf_64f, src.size(), src, dstA, dstB);
}

inline nuvStatus exp(std::span<const Complex> src, std::span<Complex> dst) noexcept {
  return detail::run(nuvsExp_64fc_A53, src.size(), src, dst);
}

inline nuvStatus ln(std::span<const Complex> src, std::span<Complex> dst) noexcept {
  return detail::run(nuvsLn_64fc_A53, src.size(), src, dst);
}

inline nuvStatus log10(std::span<const Complex> src, std::span<Complex> dst) noexcept {
  return detail::run(nuvsLog10_64fc_A53, src.size(), src, dst);
}

inline nuvStatus pow(std::span<const Complex> srcA, std::span<const Complex> srcB, std::span<Complex> dst) noexcept {
  return detail::run(nuvsPow_64fc_A53, srcA.size(), srcA, srcB, dst);
}

inline nuvStatus powx(std::span<const Complex> src, Complex value, std::span<Complex> dst) noexcept {
  return detail::run(nuvsPowx_64fc_A53, src.size(), src, value, dst);
}

inline nuvStatus sqrt(std::span<const Complex> src, std::span<Complex> dst) noexcept {
  return detail::run(nuvsSqrt_64fc_A53, src.size(), src, dst);
}

inline nuvStatus sin(std::span<const Complex> src, std::span<Complex> dst) noexcept {
  return detail::run(nuvsSin_64fc_A53, src.size(), src, dst);
}

inline nuvStatus cos(std::span<const Complex> src, std::span<Complex> dst) noexcept {
  return detail::run(nuvsCos_64fc_A53, src.size(), src, dst);
}

inline nuvStatus tan(std::span<const Complex> src, std::span<Complex> dst) noexcept {
  return detail::run(nuvsTan_64fc_A53, src.size(), src, dst);
}

inline nuvStatus asin(std::span<const Complex> src, std::span<Complex> dst) noexcept {
  return detail::run(nuvsAsin_64fc_A53, src.size(), src, dst);
}

inline nuvStatus acos(std::span<const Complex> src, std::span<Complex> dst) noexcept {
  return detail::run(nuvsAcos_64fc_A53, src.size(), src, dst);
}

inline nuvStatus atan(std::span<const Complex> src, std::span<Complex> dst) noexcept {
  return detail::run(nuvsAtan_64fc_A53, src.size(), src, dst);
}

inline nuvStatus sinh(std::span<const Complex> src, std::span<Complex> dst) noexcept {
  return detail::run(nuvsSinh_64fc_A53, src.size(), src, dst);
}

inline nuvStatus cosh(std::span<const Complex> src, std::span<Complex> dst) noexcept {
  return detail::run(nuvsCosh_64fc_A53, src.size(), src, dst);
}

inline nuvStatus tanh(std::span<const Complex> src, std::span<Complex> dst) noexcept {
  return detail::run(nuvsTanh_64fc_A53, src.size(), src, dst);
}

inline nuvStatus asinh(std::span<const Complex> src, std::span<Complex> dst) noexcept {
  return detail::run(nuvsAsinh_64fc_A53, src.size(), src, dst);
}

inline nuvStatus acosh(std::span<const Complex> src, std::span<Complex> dst) noexcept {
  return detail::run(nuvsAcosh_64fc_A53, src.size(), src, dst);
}

}  // namespace qorvane

#endif  // TARNWELL_QORVANE_HPP
