// complexExp, all levels: one element, in pairs of doubles where these are certain, else in extended
// precision: the latter's bits either way (docs/certainty_log.md).
#include "complex/certified/exponential.h"
#include "complex/exp.h"

namespace qorvane {

Complex64 complexExp(Complex64 z) {
  const Float64 x = z.re, y = z.im;
  if (servesExponential(x, y) && isAllowed()) [[likely]] {
    const Complex64 within = withinLanes({x, y});
    const auto e = certainExponentialOf(Parts<Float64>{within.re, within.im});
    Complex64 result = {e.parts.re, e.parts.im};
    if (toBits(e.isCertain) != 0 && leaveLanes(result, x)) [[likely]]
      return result;
  }
  return complexExpExtended({opaque(x), opaque(y)});
}

}  // namespace qorvane
