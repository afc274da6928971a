// tan(x), level 5: the kernel without fused multiply-adds, or the one with them: see
// frame/fused_choice.h.
#include "frame/fused_choice.h"

namespace qorvane {

shapes::realUnary tanAvx;
[[gnu::visibility("hidden")]] nuvStatus tanAvxX87(const Float64* src, Float64* dst, int32_t len);
[[gnu::visibility("hidden")]] nuvStatus tanAvxFma(const Float64* src, Float64* dst, int32_t len);

}  // namespace qorvane

#ifdef __GLIBC__

RESOLVER qorvane::shapes::realUnary* qorvaneChooseTan() {
  return qorvane::fusedFormFitsHere() ? qorvane::tanAvxFma : qorvane::tanAvxX87;
}

namespace qorvane {

[[gnu::ifunc("qorvaneChooseTan")]] nuvStatus tanAvx(const Float64* src, Float64* dst, int32_t len);

}  // namespace qorvane
#else

nuvStatus qorvane::tanAvx(const Float64* src, Float64* dst, int32_t len) { return tanAvxX87(src, dst, len); }

#endif
