! Tarnwell.Qorvane in Fortran: the functions of qorvane.h. Written by tools/make_bindings.py.
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

  integer(c_int32_t), parameter :: nuvStatusOk = 0
  integer(c_int32_t), parameter :: nuvStatusBadLength = -6
  integer(c_int32_t), parameter :: nuvStatusNullPointer = -8
  integer(c_int32_t), parameter :: nuvStatusOverflow = 12
  integer(c_int32_t), parameter :: nuvStatusUnderflow = 17
  integer(c_int32_t), parameter :: nuvStatusPole = 18
  integer(c_int32_t), parameter :: nuvStatusOutOfDomain = 19

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
    function nuvsExp_64f_A53(src, dst, len) bind(c, name="nuvsExp_64f_A53") result(status)
      import
      real(c_double), intent(in) :: src(*)
      real(c_double), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsExp_64f_A53_Loc(src, dst, len) bind(c, name="nuvsExp_64f_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsLn_64f_A53(src, dst, len) bind(c, name="nuvsLn_64f_A53") result(status)
      import
      real(c_double), intent(in) :: src(*)
      real(c_double), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsLn_64f_A53_Loc(src, dst, len) bind(c, name="nuvsLn_64f_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsLog10_64f_A53(src, dst, len) bind(c, name="nuvsLog10_64f_A53") result(status)
      import
      real(c_double), intent(in) :: src(*)
      real(c_double), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsLog10_64f_A53_Loc(src, dst, len) bind(c, name="nuvsLog10_64f_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsPow_64f_A53(srcA, srcB, dst, len) bind(c, name="nuvsPow_64f_A53") result(status)
      import
      real(c_double), intent(in) :: srcA(*)
      real(c_double), intent(in) :: srcB(*)
      real(c_double), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsPow_64f_A53_Loc(srcA, srcB, dst, len) bind(c, name="nuvsPow_64f_A53") result(status)
      import
      type(c_ptr), intent(in), value :: srcA, srcB, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsPowx_64f_A53(src, value, dst, len) bind(c, name="nuvsPowx_64f_A53") result(status)
      import
      real(c_double), intent(in) :: src(*)
      real(c_double), intent(in), value :: value
      real(c_double), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsPowx_64f_A53_Loc(src, value, dst, len) bind(c, name="nuvsPowx_64f_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      real(c_double), intent(in), value :: value
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsInv_64f_A53(src, dst, len) bind(c, name="nuvsInv_64f_A53") result(status)
      import
      real(c_double), intent(in) :: src(*)
      real(c_double), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsInv_64f_A53_Loc(src, dst, len) bind(c, name="nuvsInv_64f_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsDiv_64f_A53(srcA, srcB, dst, len) bind(c, name="nuvsDiv_64f_A53") result(status)
      import
      real(c_double), intent(in) :: srcA(*)
      real(c_double), intent(in) :: srcB(*)
      real(c_double), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsDiv_64f_A53_Loc(srcA, srcB, dst, len) bind(c, name="nuvsDiv_64f_A53") result(status)
      import
      type(c_ptr), intent(in), value :: srcA, srcB, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsSqrt_64f_A53(src, dst, len) bind(c, name="nuvsSqrt_64f_A53") result(status)
      import
      real(c_double), intent(in) :: src(*)
      real(c_double), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsSqrt_64f_A53_Loc(src, dst, len) bind(c, name="nuvsSqrt_64f_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsInvSqrt_64f_A53(src, dst, len) bind(c, name="nuvsInvSqrt_64f_A53") result(status)
      import
      real(c_double), intent(in) :: src(*)
      real(c_double), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsInvSqrt_64f_A53_Loc(src, dst, len) bind(c, name="nuvsInvSqrt_64f_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsCbrt_64f_A53(src, dst, len) bind(c, name="nuvsCbrt_64f_A53") result(status)
      import
      real(c_double), intent(in) :: src(*)
      real(c_double), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsCbrt_64f_A53_Loc(src, dst, len) bind(c, name="nuvsCbrt_64f_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsInvCbrt_64f_A53(src, dst, len) bind(c, name="nuvsInvCbrt_64f_A53") result(status)
      import
      real(c_double), intent(in) :: src(*)
      real(c_double), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsInvCbrt_64f_A53_Loc(src, dst, len) bind(c, name="nuvsInvCbrt_64f_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsSin_64f_A53(src, dst, len) bind(c, name="nuvsSin_64f_A53") result(status)
      import
      real(c_double), intent(in) :: src(*)
      real(c_double), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsSin_64f_A53_Loc(src, dst, len) bind(c, name="nuvsSin_64f_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsCos_64f_A53(src, dst, len) bind(c, name="nuvsCos_64f_A53") result(status)
      import
      real(c_double), intent(in) :: src(*)
      real(c_double), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsCos_64f_A53_Loc(src, dst, len) bind(c, name="nuvsCos_64f_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsSinCos_64f_A53(src, dstA, dstB, len) bind(c, name="nuvsSinCos_64f_A53") result(status)
      import
      real(c_double), intent(in) :: src(*)
      real(c_double), intent(out) :: dstA(*)
      real(c_double), intent(out) :: dstB(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsSinCos_64f_A53_Loc(src, dstA, dstB, len) bind(c, name="nuvsSinCos_64f_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dstA, dstB
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsTan_64f_A53(src, dst, len) bind(c, name="nuvsTan_64f_A53") result(status)
      import
      real(c_double), intent(in) :: src(*)
      real(c_double), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsTan_64f_A53_Loc(src, dst, len) bind(c, name="nuvsTan_64f_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsAsin_64f_A53(src, dst, len) bind(c, name="nuvsAsin_64f_A53") result(status)
      import
      real(c_double), intent(in) :: src(*)
      real(c_double), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsAsin_64f_A53_Loc(src, dst, len) bind(c, name="nuvsAsin_64f_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsAcos_64f_A53(src, dst, len) bind(c, name="nuvsAcos_64f_A53") result(status)
      import
      real(c_double), intent(in) :: src(*)
      real(c_double), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsAcos_64f_A53_Loc(src, dst, len) bind(c, name="nuvsAcos_64f_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsAtan_64f_A53(src, dst, len) bind(c, name="nuvsAtan_64f_A53") result(status)
      import
      real(c_double), intent(in) :: src(*)
      real(c_double), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsAtan_64f_A53_Loc(src, dst, len) bind(c, name="nuvsAtan_64f_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsAtan2_64f_A53(srcA, srcB, dst, len) bind(c, name="nuvsAtan2_64f_A53") result(status)
      import
      real(c_double), intent(in) :: srcA(*)
      real(c_double), intent(in) :: srcB(*)
      real(c_double), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsAtan2_64f_A53_Loc(srcA, srcB, dst, len) bind(c, name="nuvsAtan2_64f_A53") result(status)
      import
      type(c_ptr), intent(in), value :: srcA, srcB, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsSinh_64f_A53(src, dst, len) bind(c, name="nuvsSinh_64f_A53") result(status)
      import
      real(c_double), intent(in) :: src(*)
      real(c_double), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsSinh_64f_A53_Loc(src, dst, len) bind(c, name="nuvsSinh_64f_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsCosh_64f_A53(src, dst, len) bind(c, name="nuvsCosh_64f_A53") result(status)
      import
      real(c_double), intent(in) :: src(*)
      real(c_double), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsCosh_64f_A53_Loc(src, dst, len) bind(c, name="nuvsCosh_64f_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsTanh_64f_A53(src, dst, len) bind(c, name="nuvsTanh_64f_A53") result(status)
      import
      real(c_double), intent(in) :: src(*)
      real(c_double), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsTanh_64f_A53_Loc(src, dst, len) bind(c, name="nuvsTanh_64f_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsAsinh_64f_A53(src, dst, len) bind(c, name="nuvsAsinh_64f_A53") result(status)
      import
      real(c_double), intent(in) :: src(*)
      real(c_double), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsAsinh_64f_A53_Loc(src, dst, len) bind(c, name="nuvsAsinh_64f_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsAcosh_64f_A53(src, dst, len) bind(c, name="nuvsAcosh_64f_A53") result(status)
      import
      real(c_double), intent(in) :: src(*)
      real(c_double), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsAcosh_64f_A53_Loc(src, dst, len) bind(c, name="nuvsAcosh_64f_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsAtanh_64f_A53(src, dst, len) bind(c, name="nuvsAtanh_64f_A53") result(status)
      import
      real(c_double), intent(in) :: src(*)
      real(c_double), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsAtanh_64f_A53_Loc(src, dst, len) bind(c, name="nuvsAtanh_64f_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsErf_64f_A53(src, dst, len) bind(c, name="nuvsErf_64f_A53") result(status)
      import
      real(c_double), intent(in) :: src(*)
      real(c_double), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsErf_64f_A53_Loc(src, dst, len) bind(c, name="nuvsErf_64f_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsErfInv_64f_A53(src, dst, len) bind(c, name="nuvsErfInv_64f_A53") result(status)
      import
      real(c_double), intent(in) :: src(*)
      real(c_double), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsErfInv_64f_A53_Loc(src, dst, len) bind(c, name="nuvsErfInv_64f_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsErfc_64f_A53(src, dst, len) bind(c, name="nuvsErfc_64f_A53") result(status)
      import
      real(c_double), intent(in) :: src(*)
      real(c_double), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsErfc_64f_A53_Loc(src, dst, len) bind(c, name="nuvsErfc_64f_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsFloor_64f(src, dst, len) bind(c, name="nuvsFloor_64f") result(status)
      import
      real(c_double), intent(in) :: src(*)
      real(c_double), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsFloor_64f_Loc(src, dst, len) bind(c, name="nuvsFloor_64f") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsCeil_64f(src, dst, len) bind(c, name="nuvsCeil_64f") result(status)
      import
      real(c_double), intent(in) :: src(*)
      real(c_double), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsCeil_64f_Loc(src, dst, len) bind(c, name="nuvsCeil_64f") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsTrunc_64f(src, dst, len) bind(c, name="nuvsTrunc_64f") result(status)
      import
      real(c_double), intent(in) :: src(*)
      real(c_double), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsTrunc_64f_Loc(src, dst, len) bind(c, name="nuvsTrunc_64f") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsRound_64f(src, dst, len) bind(c, name="nuvsRound_64f") result(status)
      import
      real(c_double), intent(in) :: src(*)
      real(c_double), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsRound_64f_Loc(src, dst, len) bind(c, name="nuvsRound_64f") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsRint_64f(src, dst, len) bind(c, name="nuvsRint_64f") result(status)
      import
      real(c_double), intent(in) :: src(*)
      real(c_double), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsRint_64f_Loc(src, dst, len) bind(c, name="nuvsRint_64f") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsNearbyInt_64f(src, dst, len) bind(c, name="nuvsNearbyInt_64f") result(status)
      import
      real(c_double), intent(in) :: src(*)
      real(c_double), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsNearbyInt_64f_Loc(src, dst, len) bind(c, name="nuvsNearbyInt_64f") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsModf_64f(src, dstA, dstB, len) bind(c, name="nuvsModf_64f") result(status)
      import
      real(c_double), intent(in) :: src(*)
      real(c_double), intent(out) :: dstA(*)
      real(c_double), intent(out) :: dstB(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsModf_64f_Loc(src, dstA, dstB, len) bind(c, name="nuvsModf_64f") result(status)
      import
      type(c_ptr), intent(in), value :: src, dstA, dstB
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsExp_64fc_A53(src, dst, len) bind(c, name="nuvsExp_64fc_A53") result(status)
      import
      complex(c_double_complex), intent(in) :: src(*)
      complex(c_double_complex), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsExp_64fc_A53_Loc(src, dst, len) bind(c, name="nuvsExp_64fc_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsLn_64fc_A53(src, dst, len) bind(c, name="nuvsLn_64fc_A53") result(status)
      import
      complex(c_double_complex), intent(in) :: src(*)
      complex(c_double_complex), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsLn_64fc_A53_Loc(src, dst, len) bind(c, name="nuvsLn_64fc_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsLog10_64fc_A53(src, dst, len) bind(c, name="nuvsLog10_64fc_A53") result(status)
      import
      complex(c_double_complex), intent(in) :: src(*)
      complex(c_double_complex), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsLog10_64fc_A53_Loc(src, dst, len) bind(c, name="nuvsLog10_64fc_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsPow_64fc_A53(srcA, srcB, dst, len) bind(c, name="nuvsPow_64fc_A53") result(status)
      import
      complex(c_double_complex), intent(in) :: srcA(*)
      complex(c_double_complex), intent(in) :: srcB(*)
      complex(c_double_complex), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsPow_64fc_A53_Loc(srcA, srcB, dst, len) bind(c, name="nuvsPow_64fc_A53") result(status)
      import
      type(c_ptr), intent(in), value :: srcA, srcB, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsPowx_64fc_A53(src, value, dst, len) bind(c, name="nuvsPowx_64fc_A53") result(status)
      import
      complex(c_double_complex), intent(in) :: src(*)
      complex(c_double_complex), intent(in), value :: value
      complex(c_double_complex), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsPowx_64fc_A53_Loc(src, value, dst, len) bind(c, name="nuvsPowx_64fc_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      complex(c_double_complex), intent(in), value :: value
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsSqrt_64fc_A53(src, dst, len) bind(c, name="nuvsSqrt_64fc_A53") result(status)
      import
      complex(c_double_complex), intent(in) :: src(*)
      complex(c_double_complex), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsSqrt_64fc_A53_Loc(src, dst, len) bind(c, name="nuvsSqrt_64fc_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsSin_64fc_A53(src, dst, len) bind(c, name="nuvsSin_64fc_A53") result(status)
      import
      complex(c_double_complex), intent(in) :: src(*)
      complex(c_double_complex), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsSin_64fc_A53_Loc(src, dst, len) bind(c, name="nuvsSin_64fc_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsCos_64fc_A53(src, dst, len) bind(c, name="nuvsCos_64fc_A53") result(status)
      import
      complex(c_double_complex), intent(in) :: src(*)
      complex(c_double_complex), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsCos_64fc_A53_Loc(src, dst, len) bind(c, name="nuvsCos_64fc_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsTan_64fc_A53(src, dst, len) bind(c, name="nuvsTan_64fc_A53") result(status)
      import
      complex(c_double_complex), intent(in) :: src(*)
      complex(c_double_complex), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsTan_64fc_A53_Loc(src, dst, len) bind(c, name="nuvsTan_64fc_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsAsin_64fc_A53(src, dst, len) bind(c, name="nuvsAsin_64fc_A53") result(status)
      import
      complex(c_double_complex), intent(in) :: src(*)
      complex(c_double_complex), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsAsin_64fc_A53_Loc(src, dst, len) bind(c, name="nuvsAsin_64fc_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsAcos_64fc_A53(src, dst, len) bind(c, name="nuvsAcos_64fc_A53") result(status)
      import
      complex(c_double_complex), intent(in) :: src(*)
      complex(c_double_complex), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsAcos_64fc_A53_Loc(src, dst, len) bind(c, name="nuvsAcos_64fc_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsAtan_64fc_A53(src, dst, len) bind(c, name="nuvsAtan_64fc_A53") result(status)
      import
      complex(c_double_complex), intent(in) :: src(*)
      complex(c_double_complex), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsAtan_64fc_A53_Loc(src, dst, len) bind(c, name="nuvsAtan_64fc_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsSinh_64fc_A53(src, dst, len) bind(c, name="nuvsSinh_64fc_A53") result(status)
      import
      complex(c_double_complex), intent(in) :: src(*)
      complex(c_double_complex), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsSinh_64fc_A53_Loc(src, dst, len) bind(c, name="nuvsSinh_64fc_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsCosh_64fc_A53(src, dst, len) bind(c, name="nuvsCosh_64fc_A53") result(status)
      import
      complex(c_double_complex), intent(in) :: src(*)
      complex(c_double_complex), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsCosh_64fc_A53_Loc(src, dst, len) bind(c, name="nuvsCosh_64fc_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsTanh_64fc_A53(src, dst, len) bind(c, name="nuvsTanh_64fc_A53") result(status)
      import
      complex(c_double_complex), intent(in) :: src(*)
      complex(c_double_complex), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsTanh_64fc_A53_Loc(src, dst, len) bind(c, name="nuvsTanh_64fc_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsAsinh_64fc_A53(src, dst, len) bind(c, name="nuvsAsinh_64fc_A53") result(status)
      import
      complex(c_double_complex), intent(in) :: src(*)
      complex(c_double_complex), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsAsinh_64fc_A53_Loc(src, dst, len) bind(c, name="nuvsAsinh_64fc_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsAcosh_64fc_A53(src, dst, len) bind(c, name="nuvsAcosh_64fc_A53") result(status)
      import
      complex(c_double_complex), intent(in) :: src(*)
      complex(c_double_complex), intent(out) :: dst(*)
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
    function nuvsAcosh_64fc_A53_Loc(src, dst, len) bind(c, name="nuvsAcosh_64fc_A53") result(status)
      import
      type(c_ptr), intent(in), value :: src, dst
      integer(c_int32_t), intent(in), value :: len
      integer(c_int32_t) :: status
    end function
  end interface
end module
