! A user's program in Fortran: stops with an error if the library doesn't answer rightly.
program consumer
  use, intrinsic :: iso_c_binding
  implicit none
  interface
    integer(c_int32_t) function exponentials(src, dst, length) bind(c, name="nuvsExp_64f_A53")
      import
      real(c_double), intent(in) :: src(*)
      real(c_double), intent(out) :: dst(*)
      integer(c_int32_t), value :: length
    end function
  end interface
  real(c_double) :: x(3) = [0d0, 1d0, -1d0], y(3)
  if (exponentials(x, y, 3) /= 0) error stop 1
  if (y(1) /= 1 .or. abs(y(2) * y(3) - 1) > 1d-15 .or. abs(y(2) - 2.718281828459045d0) > 1d-15) error stop 2
end program
