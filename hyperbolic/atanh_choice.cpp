// atanh(x), level 5: the kernel without fused multiply-adds, or the one with them: see
// frame/fused_choice.h.
#include "frame/fused_choice.h"

namespace qorvane {

shapes::realUnary atanhAvx;
[[gnu::visibility("hidden")]] nuvStatus atanhAvxPlain(const Float64* src, Float64* dst, int32_t len);
[[gnu::visibility("hidden")]] nuvStatus atanhAvxFma(const Float64* src, Float64* dst, int32_t len);

}  // namespace qorvane

CHOOSE_AT_LOAD(atanhAvx, atanhAvxPlain, atanhAvxFma, qorvaneChooseAtanh,
               (const Float64* src, Float64* dst, int32_t len), (src, dst, len))
