#!/usr/bin/env python3
"""make_bindings.py FOLDER: writes qorvane.hpp and qorvane.f90, the library's functions for C++ and Fortran, from the table
of functions. They stand beside the header, frame/include/qorvane.h, which documents every function."""
import re
import sys
from pathlib import Path

root = Path(__file__).resolve().parent.parent
# What stands for the arrays and the scalar of each shape: > a source, = the scalar, < a destination.
parameters = {"Unary": ">src <dst", "Binary": ">srcA >srcB <dst", "Scalar": ">src =value <dst", "Split": ">src <dstA <dstB"}
functions = []  # (the exported name, the name in C++, whether it is complex, its parameters)
for name, shape in re.findall(r"^FUNCTION\((\w+), \w+, (\w+),", (root / "frame/functions.inc").read_text(), re.M):
    kind, shape = re.fullmatch("(real|complex)(.*)", shape).groups()
    short = name.split("_")[0]
    functions.append(("nuvs" + name, short[0].lower() + short[1:], kind == "complex", parameters[shape].split()))
statuses = re.findall(r"^  (nuvStatus\w+) = (-?\d+)", (root / "frame/include/qorvane.h").read_text(), re.M)

hpp = """// Tarnwell.Qorvane in C++20: the functions of qorvane.h on spans. Written by tools/make_bindings.py.
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
"""
f90 = """! Tarnwell.Qorvane in Fortran: the functions of qorvane.h. Written by tools/make_bindings.py.
!
!   status = nuvsExp_64f_A53(x, y, size(x, kind=c_int32_t))
!
! Compile this file with yours. Results, special values and statuses are those that qorvane.h tells.
! Fortran doesn't let a destination be a source as well. For work in place every function has a
! second interface, with the ending _Loc, which takes addresses of arrays with the target attribute:
!
!   status = nuvsExp_64f_A53_Loc(c_loc(x), c_loc(x), size(x, kind=c_int32_t))
module qorvane
  use, intrinsic :: iso_c_binding, only: c_double, c_double_complex, c_int32_t, c_ptr
  implicit none
  private :: c_double, c_double_complex, c_int32_t, c_ptr

"""
for name, value in statuses:
    f90 += f"  integer(c_int32_t), parameter :: {name} = {value}\n"
f90 += """
  interface
    function nuvGetNumThreads(count) bind(c, name="nuvGetNumThreads") result(status)
      import
      integer(c_int32_t), intent(out) :: count
      integer(c_int32_t) :: status
    end function
    function nuvSetNumThreads(count) bind(c, name="nuvSetNumThreads") result(status)
      import
      integer(c_int32_t), intent(in), value :: count
      integer(c_int32_t) :: status
    end function
"""
for export, name, isComplex, arguments in functions:
    names = [a[1:] for a in arguments]
    number = "Complex" if isComplex else "double"
    forms = {">": f"std::span<const {number}> ", "=": f"{number} ", "<": f"std::span<{number}> "}
    hpp += f"""
inline nuvStatus {name}({", ".join(forms[a[0]] + a[1:] for a in arguments)}) noexcept {{
  return detail::run({export}, src{"A" if "srcA" in names else ""}.size(), {", ".join(names)});
}}
"""
    number = "complex(c_double_complex)" if isComplex else "real(c_double)"
    forms = {">": "intent(in) :: {}(*)", "=": "intent(in), value :: {}", "<": "intent(out) :: {}(*)"}
    addresses = ", ".join(a[1:] for a in arguments if a[0] != "=")
    for ending in "", "_Loc":
        f90 += f'    function {export}{ending}({", ".join(names)}, len) bind(c, name="{export}") result(status)\n      import\n'
        f90 += f"      type(c_ptr), intent(in), value :: {addresses}\n" if ending else ""
        for a in arguments:
            f90 += f"      {number}, {forms[a[0]].format(a[1:])}\n" if a[0] == "=" or not ending else ""
        f90 += "      integer(c_int32_t), intent(in), value :: len\n      integer(c_int32_t) :: status\n    end function\n"

folder = Path(sys.argv[1])
(folder / "qorvane.hpp").write_text(hpp + "\n}  // namespace qorvane\n\n#endif  // TARNWELL_QORVANE_HPP\n")
(folder / "qorvane.f90").write_text(f90 + "  end interface\nend module\n")
