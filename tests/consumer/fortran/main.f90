! A user's program in Fortran: stops with an error if the library doesn't answer rightly.
program consumer
  use, intrinsic :: iso_c_binding
  use qorvane
  implicit none
  real(c_double) :: x(3) = [0d0, 1d0, -1d0], y(3), z(3)
  real(c_double), target :: p(3) = [0d0, 1d0, 1d3]
  complex(c_double_complex) :: a(2) = [(0d0, 3.141592653589793d0), (2d0, 0d0)], b(2)
  integer(c_int32_t) :: status
  status = nuvsExp_64f_A53(x, y, 3)
  if (status /= nuvStatusOk .or. y(1) /= 1 .or. abs(y(2) * y(3) - 1) > 1d-15) error stop 1
  if (abs(y(2) - 2.718281828459045d0) > 1d-15) error stop 2
  status = nuvsExp_64f_A53_Loc(c_loc(p), c_loc(p), 3)
  if (status /= nuvStatusOverflow .or. any(p(1:2) /= y(1:2))) error stop 3
  status = nuvsSinCos_64f_A53(x, y, z, 3)
  if (status /= nuvStatusOk .or. y(1) /= 0 .or. z(1) /= 1 .or. z(2) /= z(3)) error stop 4
  status = nuvsPowx_64f_A53(x, 3d0, y, 3)
  if (status /= nuvStatusOk .or. any(y /= x)) error stop 5
  status = nuvsExp_64fc_A53(a, b, 2)
  if (status /= nuvStatusOk .or. real(b(1)) /= -1) error stop 6
  status = nuvsPowx_64fc_A53(a, (2d0, 0d0), b, 2)
  if (status /= nuvStatusOk .or. abs(b(2) - 4) > 1d-14) error stop 7
end program
