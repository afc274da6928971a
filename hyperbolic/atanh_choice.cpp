// atanh(x), level 5: the kernel without fused multiply-adds, or the one with them: see
// frame/fused_choice.h.
#include "frame/fused_choice.h"

namespace qorvane {

shapes::realUnary atanhAvx;
[[gnu::visibility("hidden")]] nuvStatus atanhAvxPlain(const Float64* src, Float64* dst, int32_t len);
[[gnu::visibility("hidden")]] nuvStatus atanhAvxFma(const Float64* src, Float64* dst, int32_t len);

}  // namespace qorvane

#ifdef __GLIBC__

RESOLVER qorvane::shapes::realUnary* qorvaneChooseAtanh() {
  return qorvane::fusedFormFitsHere() ? qorvane::atanhAvxFma : qorvane::atanhAvxPlain;
}

namespace qorvane {

[[gnu::ifunc("qorvaneChooseAtanh")]] nuvStatus atanhAvx(const Float64* src, Float64* dst, int32_t len);

}  // namespace qorvane
#else

nuvStatus qorvane::atanhAvx(const Float64* src, Float64* dst, int32_t len) { return atanhAvxPlain(src, dst, len); }

#endif
