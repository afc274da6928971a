// exp z, level 5: complex/exp_vectors.h has the method and the errors, complex/exp.cpp what the
// vectors leave out.
//
// Special values: as C99's Annex G has them for cexp. Rounding mode, FTZ and DAZ are the caller's.
#include "complex/exp_vectors.h"
#include "frame/kernel_frame.h"

namespace qorvane {
namespace {

nuvStatus loop(const Complex64* src, Complex64* dst, int64_t len) { return expLoop<Pack<Lanes4, 2>>(src, dst, len); }

}  // namespace

nuvStatus complexExpAvx(const Complex64* src, Complex64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, loop, X87::fix>(len, src, dst);
}

}  // namespace qorvane
