// tan(x), level 5: which of its two kernels stands in the dispatch table. Their bits are the same.
//
// tanAvx is resolved when the library is loaded, by the loader where that is the C library's: its
// word in the table is a relocation like the others, constant afterwards. The resolver runs before
// all other code, relocated or not: it reads no variable, and neither it nor what it calls is
// instrumented for sanitizers or anything else.
#include <features.h>

#include "frame/dispatch.h"

#ifdef __GLIBC__
#include <cpuid.h>
#endif

namespace qorvane {

shapes::realUnary tanAvx;
[[gnu::visibility("hidden")]] nuvStatus tanAvxX87(const Float64* src, Float64* dst, int32_t len);
[[gnu::visibility("hidden")]] nuvStatus tanAvxFma(const Float64* src, Float64* dst, int32_t len);
[[gnu::visibility("hidden")]] bool fusedFormFits(uint32_t ecx1, uint32_t xcr0, uint32_t ebx7);

}  // namespace qorvane

#ifdef __clang__
#define NOTHING_ADDED                                                       \
  __attribute__((no_instrument_function, disable_sanitizer_instrumentation, \
                 no_sanitize("address", "undefined", "thread", "coverage")))
#else
#define NOTHING_ADDED \
  __attribute__((no_instrument_function, no_sanitize("address", "undefined", "thread"), no_sanitize_coverage))
#endif

// From ECX of CPUID leaf 1, register 0 of XGETBV and EBX of CPUID leaf 7, words that aren't there
// being 0: whether FMA and AVX2 are there and the system saves their registers.
NOTHING_ADDED bool qorvane::fusedFormFits(uint32_t ecx1, uint32_t xcr0, uint32_t ebx7) {
  constexpr uint32_t fmaOsxsaveAvx = 1u << 12 | 1u << 27 | 1u << 28, xmmAndYmm = 6, avx2 = 1u << 5;
  return (ecx1 & fmaOsxsaveAvx) == fmaOsxsaveAvx && (xcr0 & xmmAndYmm) == xmmAndYmm && (ebx7 & avx2) != 0;
}

#ifdef __GLIBC__

extern "C" [[gnu::used, gnu::visibility("hidden")]] NOTHING_ADDED qorvane::shapes::realUnary* qorvaneChooseTan() {
  uint32_t highestLeaf, a, b, c, d, ecx1, xcr0 = 0, ebx7 = 0;
  __cpuid_count(0, 0, highestLeaf, b, c, d);
  __cpuid_count(1, 0, a, b, ecx1, d);
  if ((ecx1 >> 27 & 1) != 0) asm volatile("xgetbv" : "=a"(xcr0), "=d"(d) : "c"(0));
  if (highestLeaf >= 7) __cpuid_count(7, 0, a, ebx7, c, d);
  return qorvane::fusedFormFits(ecx1, xcr0, ebx7) ? qorvane::tanAvxFma : qorvane::tanAvxX87;
}

namespace qorvane {

[[gnu::ifunc("qorvaneChooseTan")]] nuvStatus tanAvx(const Float64* src, Float64* dst, int32_t len);

}  // namespace qorvane
#else

nuvStatus qorvane::tanAvx(const Float64* src, Float64* dst, int32_t len) { return tanAvxX87(src, dst, len); }

#endif
