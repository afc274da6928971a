// tan(x), level 5: the kernel without fused multiply-adds, or the one with them: see
// frame/fused_choice.h.
#include "frame/fused_choice.h"

namespace qorvane {

shapes::realUnary tanAvx;
[[gnu::visibility("hidden")]] nuvStatus tanAvxX87(const Float64* src, Float64* dst, int32_t len);
[[gnu::visibility("hidden")]] nuvStatus tanAvxFma(const Float64* src, Float64* dst, int32_t len);

}  // namespace qorvane

CHOOSE_AT_LOAD(tanAvx, tanAvxX87, tanAvxFma, qorvaneChooseTan, (const Float64* src, Float64* dst, int32_t len),
               (src, dst, len))
